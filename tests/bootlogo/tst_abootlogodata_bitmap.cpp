#include "bootlogo/logopicture.h"

#include <bootlogo/abootlogodata.h>

#include <QtGui/QBitmap>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtTest/QtTest>

using logopicture::rowsOf;

namespace {

// '#' is Qt::color1.
QBitmap bitmapOf(const QStringList &rows)
{
    QBitmap bitmap(rows.constFirst().size(), rows.size());
    bitmap.clear();
    QPainter painter(&bitmap);
    painter.setPen(Qt::color1);
    for (int y = 0; y < rows.size(); ++y) {
        for (int x = 0; x < rows.at(y).size(); ++x) {
            if (rows.at(y).at(x) == '#')
                painter.drawPoint(x, y);
        }
    }
    return bitmap;
}

const QStringList kPicture = {"..##.", //
                              "#....", //
                              "#...#"};

} // namespace

class TestABootlogoDataBitmap : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theBottomRowIsTheLowestOfTheBitmap();
    void aLitPixelIsBlackInAnImage();
    void aPictureWiderThanAPainterReachesKeepsItsPixels_data();
    void aPictureWiderThanAPainterReachesKeepsItsPixels();
    void aPictureWithoutPixelsIsANullBitmap();
    void aShortStreamIsAClearBitmapAbove();
    void aBitmapComesBackAsItWas();
    void loadsTheLowestRowAsTheBottomRow();
    void loadingClearsFirstAndTellsEachPixelColumnByColumn();
    void loadingKeepsTheSizeAndScalesWithoutSmoothing_data();
    void loadingKeepsTheSizeAndScalesWithoutSmoothing();
    void loadingBringsTheBitsBackToThePicture();
    void aNullBitmapGivesAClearPicture();
    void aPictureWithoutPixelsTakesNothing();
};

void TestABootlogoDataBitmap::theBottomRowIsTheLowestOfTheBitmap()
{
    ABootlogoData logo(nullptr);
    logopicture::draw(&logo, kPicture);
    const QBitmap bitmap = logo.toBitmap();
    QCOMPARE(bitmap.size(), QSize(5, 3));
    QCOMPARE(bitmap.toImage(), bitmapOf(kPicture).toImage());
}

void TestABootlogoDataBitmap::aLitPixelIsBlackInAnImage()
{
    ABootlogoData logo(nullptr);
    logopicture::draw(&logo, {"#."});
    const QImage image = logo.toBitmap().toImage();
    QCOMPARE(image.pixel(0, 0), qRgb(0, 0, 0));
    QCOMPARE(image.pixel(1, 0), qRgb(255, 255, 255));
}

void TestABootlogoDataBitmap::aPictureWiderThanAPainterReachesKeepsItsPixels_data()
{
    QTest::addColumn<int>("cols");
    QTest::addColumn<int>("rows");
    QTest::newRow("wide") << 100000 << 2;
    QTest::newRow("high") << 2 << 100000;
}

void TestABootlogoDataBitmap::aPictureWiderThanAPainterReachesKeepsItsPixels()
{
    QFETCH(int, cols);
    QFETCH(int, rows);
    ABootlogoData logo(nullptr);
    logo.resize(cols, rows);
    const QList<QPoint> lit = {{0, 0}, {cols - 1, 0}, {0, rows - 1}, {cols - 1, rows - 1}, {cols / 2, rows / 2}};
    for (const QPoint &point : lit)
        logo.setPixel(point.x(), point.y(), true);
    const QBitmap bitmap = logo.toBitmap();
    QCOMPARE(bitmap.size(), QSize(cols, rows));
    const QImage image = bitmap.toImage();
    for (const QPoint &point : lit)
        QCOMPARE(image.pixel(point.x(), rows - 1 - point.y()), qRgb(0, 0, 0));
    QCOMPARE(image.pixel(1, 0), cols > 2 ? qRgb(255, 255, 255) : qRgb(0, 0, 0));

    ABootlogoData other(nullptr);
    other.resize(cols, rows);
    other.loadBitmap(bitmap);
    QCOMPARE(other.toBitstream(), logo.toBitstream());
}

void TestABootlogoDataBitmap::aPictureWithoutPixelsIsANullBitmap()
{
    ABootlogoData logo(nullptr);
    QVERIFY(logo.toBitmap().isNull());
    logo.resize(5, 0);
    QVERIFY(logo.toBitmap().isNull());
}

void TestABootlogoDataBitmap::aShortStreamIsAClearBitmapAbove()
{
    ABootlogoData logo(nullptr);
    logo.resize(4, 4);
    logo.loadBitstream(QByteArray(1, '\xff'));
    QCOMPARE(logo.toBitmap().toImage(), bitmapOf({"....", "....", "####", "####"}).toImage());
    logo.loadBitstream(QByteArray(100, '\xff'));
    QCOMPARE(logo.toBitmap().toImage(), bitmapOf({"####", "####", "####", "####"}).toImage());
}

void TestABootlogoDataBitmap::aBitmapComesBackAsItWas()
{
    ABootlogoData logo(nullptr);
    logo.resize(51, 25);
    QByteArray stream(160, '\0');
    for (int i = 0; i < stream.size(); ++i)
        stream[i] = static_cast<char>(i * 101);
    logo.loadBitstream(stream);
    const QBitmap bitmap = logo.toBitmap();
    ABootlogoData other(nullptr);
    other.resize(51, 25);
    other.loadBitmap(bitmap);
    QCOMPARE(rowsOf(other), rowsOf(logo));
    QCOMPARE(other.toBitmap().toImage(), bitmap.toImage());
}

void TestABootlogoDataBitmap::loadsTheLowestRowAsTheBottomRow()
{
    ABootlogoData logo(nullptr);
    logo.resize(5, 3);
    QVERIFY(logo.loadBitmap(bitmapOf(kPicture)));
    QCOMPARE(rowsOf(logo), kPicture);
    QVERIFY(logo.pixel(4, 0));
}

void TestABootlogoDataBitmap::loadingClearsFirstAndTellsEachPixelColumnByColumn()
{
    ABootlogoData logo(nullptr);
    logo.resize(2, 2);
    logo.setPixel(1, 1, true);
    QStringList order;
    connect(&logo, &ABootlogoData::imageReset, this, [&] { order.append("reset " + rowsOf(logo).join('/')); });
    connect(&logo, &ABootlogoData::imageResized, this, [&] { order.append("resized"); });
    connect(&logo, &ABootlogoData::pixelChanged, this,
            [&](int col, int row) { order.append(QString("%1 %2").arg(col).arg(row)); });
    logo.loadBitmap(bitmapOf({"#.", "##"}));
    QCOMPARE(order, QStringList({"reset ../..", "0 0", "0 1", "1 0", "1 1"})); // the clear one, too
    QCOMPARE(rowsOf(logo), QStringList({"#.", "##"}));
}

void TestABootlogoDataBitmap::loadingKeepsTheSizeAndScalesWithoutSmoothing_data()
{
    QTest::addColumn<QStringList>("bitmap");
    QTest::addColumn<QStringList>("rows");
    QTest::newRow("larger") << QStringList{"#.", ".#"} << QStringList{"##..", "##..", "##..", "..##", "..##", "..##"};
    QTest::newRow("smaller") << QStringList{"########....", "########....", "########....", "########....",
                                            "########....", "########....", "....########", "....########",
                                            "....########", "....########", "....########", "....########"}
                             << QStringList{"###.", "###.", "###.", ".###", ".###", ".###"};
    QTest::newRow("one pixel") << QStringList{"#"} << QStringList{"####", "####", "####", "####", "####", "####"};
}

void TestABootlogoDataBitmap::loadingKeepsTheSizeAndScalesWithoutSmoothing()
{
    QFETCH(QStringList, bitmap);
    QFETCH(QStringList, rows);
    ABootlogoData logo(nullptr);
    logo.resize(4, 6);
    QVERIFY(logo.loadBitmap(bitmapOf(bitmap)));
    QCOMPARE(logo.cols(), 4);
    QCOMPARE(logo.rows(), 6);
    QCOMPARE(rowsOf(logo), rows);
}

void TestABootlogoDataBitmap::loadingBringsTheBitsBackToThePicture()
{
    ABootlogoData logo(nullptr);
    logo.resize(5, 3);
    logo.loadBitstream(QByteArray(100, '\xff'));
    logo.loadBitmap(bitmapOf(kPicture));
    QCOMPARE(logo.toBitstream().toHex(), QByteArray("3130"));
}

void TestABootlogoDataBitmap::aNullBitmapGivesAClearPicture()
{
    ABootlogoData logo(nullptr);
    logopicture::draw(&logo, kPicture);
    const QSignalSpy reset(&logo, &ABootlogoData::imageReset);
    const QSignalSpy pixels(&logo, &ABootlogoData::pixelChanged);
    QVERIFY(logo.loadBitmap(QBitmap()));
    QCOMPARE(reset.size(), 1);
    QVERIFY(pixels.isEmpty());
    QCOMPARE(rowsOf(logo), QStringList({".....", ".....", "....."}));
}

void TestABootlogoDataBitmap::aPictureWithoutPixelsTakesNothing()
{
    ABootlogoData logo(nullptr);
    const QSignalSpy pixels(&logo, &ABootlogoData::pixelChanged);
    QVERIFY(logo.loadBitmap(bitmapOf(kPicture)));
    QVERIFY(pixels.isEmpty());
    QCOMPARE(logo.toBitstream(), QByteArray());
}

QTEST_MAIN(TestABootlogoDataBitmap)
#include "tst_abootlogodata_bitmap.moc"
