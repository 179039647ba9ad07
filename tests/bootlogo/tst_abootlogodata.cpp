#include "bootlogo/logopicture.h"

#include <bootlogo/abootlogodata.h>

#include <QtTest/QtTest>

#include <limits>

using logopicture::rowsOf;

namespace {

constexpr int kMax = std::numeric_limits<int>::max();
constexpr int kMin = std::numeric_limits<int>::min();
constexpr int kMostPixels = 2147483632;

} // namespace

class TestABootlogoData : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewPictureHasNoPixels();
    void resizingGivesAClearPictureAndTellsTheSizeFirst();
    void resizingClearsWhatALoadedStreamHeld();
    void resizingToTheCurrentSizeDoesNothing();
    void resizingToOneSideMoreIsAChange();
    void sizesThatNoPictureCanHaveAreRefused_data();
    void sizesThatNoPictureCanHaveAreRefused();
    void theLargestPictureHasAllItsPixels();
    void anEmptyPictureMayHaveOneSide();
    void clearingKeepsTheSize();
    void aPixelIsSetAndTold();
    void pixelsOutsideThePictureAreDarkAndStaySo_data();
    void pixelsOutsideThePictureAreDarkAndStaySo();
    void aStreamBeginsWithTheBottomRow();
    void aStreamHasNoGapBetweenRows();
    void aStreamOfAClearPictureIsAsLongAsNeeded_data();
    void aStreamOfAClearPictureIsAsLongAsNeeded();
    void unusedBitsOfTheLastByteAreZero();
    void aStreamIsLoadedBitByBit();
    void loadingAStreamSaysNothingAndKeepsTheSize();
    void aLongerStreamComesBackWhole();
    void aShorterStreamLeavesTheRestDark();
    void anyStreamComesBackAsItWas();
    void clearingAfterAStreamBringsBackTheSizeOfThePicture();
    void aPictureCanBeChangedFromItsOwnSignals();
};

void TestABootlogoData::aNewPictureHasNoPixels()
{
    QObject parent;
    auto *logo = new ABootlogoData(&parent);
    QCOMPARE(logo->parent(), &parent);
    QCOMPARE(logo->cols(), 0);
    QCOMPARE(logo->rows(), 0);
    QCOMPARE(logo->toBitstream(), QByteArray());
    QVERIFY(!logo->pixel(0, 0));
}

void TestABootlogoData::resizingGivesAClearPictureAndTellsTheSizeFirst()
{
    ABootlogoData logo(nullptr);
    logopicture::draw(&logo, {"####", "####", "####"});
    QStringList order;
    connect(&logo, &ABootlogoData::imageResized, this, [&](int cols, int rows) {
        order.append(QStringLiteral("resized %1 %2").arg(cols).arg(rows));
        QCOMPARE(rowsOf(logo), QStringList({".....", "....."}));
    });
    connect(&logo, &ABootlogoData::imageReset, this, [&] { order.append(QStringLiteral("reset")); });
    connect(&logo, &ABootlogoData::pixelChanged, this, [&] { order.append(QStringLiteral("pixel")); });
    logo.resize(5, 2);
    QCOMPARE(order, QStringList({"resized 5 2", "reset"}));
    QCOMPARE(logo.cols(), 5);
    QCOMPARE(logo.rows(), 2);
    QCOMPARE(logo.toBitstream(), QByteArray(2, '\0'));
}

void TestABootlogoData::resizingClearsWhatALoadedStreamHeld()
{
    ABootlogoData logo(nullptr);
    logo.resize(3, 3);
    for (const QSize size : {QSize(4, 4), QSize(2, 2), QSize(4, 1)}) { // more pixels, fewer, and as many
        logo.loadBitstream(QByteArray(100, '\xff'));
        logo.resize(size.width(), size.height());
        QCOMPARE(logo.toBitstream(), QByteArray((size.width() * size.height() + 7) / 8, '\0'));
    }
}

void TestABootlogoData::resizingToTheCurrentSizeDoesNothing()
{
    ABootlogoData logo(nullptr);
    logo.resize(3, 1);
    logo.setPixel(1, 0, true);
    const QSignalSpy resized(&logo, &ABootlogoData::imageResized);
    const QSignalSpy reset(&logo, &ABootlogoData::imageReset);
    logo.resize(3, 1);
    QVERIFY(resized.isEmpty() && reset.isEmpty());
    QCOMPARE(rowsOf(logo), QStringList{".#."});
}

void TestABootlogoData::resizingToOneSideMoreIsAChange()
{
    ABootlogoData logo(nullptr);
    logo.resize(3, 2);
    const QSignalSpy resized(&logo, &ABootlogoData::imageResized);
    logo.resize(2, 2);
    logo.resize(2, 3);
    logo.resize(3, 2); // as many pixels, another shape
    QCOMPARE(resized.size(), 3);
}

void TestABootlogoData::sizesThatNoPictureCanHaveAreRefused_data()
{
    QTest::addColumn<int>("cols");
    QTest::addColumn<int>("rows");
    QTest::newRow("negative columns") << -1 << 25;
    QTest::newRow("negative rows") << 51 << -1;
    QTest::newRow("both") << -5 << -5;
    QTest::newRow("the smallest numbers") << kMin << kMin;
    QTest::newRow("the largest numbers") << kMax << kMax;
    QTest::newRow("one bit too many") << kMostPixels + 1 << 1;
    QTest::newRow("more bits than bytes can hold") << kMax << 1;
    QTest::newRow("a product that fits 32 bits when cut") << 65536 << 65537;
}

void TestABootlogoData::sizesThatNoPictureCanHaveAreRefused()
{
    QFETCH(int, cols);
    QFETCH(int, rows);
    ABootlogoData logo(nullptr);
    logo.resize(2, 1);
    logo.setPixel(0, 0, true);
    const QSignalSpy resized(&logo, &ABootlogoData::imageResized);
    const QSignalSpy reset(&logo, &ABootlogoData::imageReset);
    const QString warning = QStringLiteral("A boot logo can't have %1 by %2 pixels").arg(cols).arg(rows);
    QTest::ignoreMessage(QtWarningMsg, qPrintable(warning));
    logo.resize(cols, rows);
    QVERIFY(resized.isEmpty() && reset.isEmpty());
    QCOMPARE(rowsOf(logo), QStringList{"#."});
}

void TestABootlogoData::theLargestPictureHasAllItsPixels()
{
    ABootlogoData logo(nullptr);
    logo.resize(kMostPixels, 1);
    QCOMPARE(logo.cols(), kMostPixels);
    logo.setPixel(kMostPixels - 1, 0, true);
    QVERIFY(logo.pixel(kMostPixels - 1, 0));
    QVERIFY(!logo.pixel(kMostPixels - 2, 0));
}

void TestABootlogoData::anEmptyPictureMayHaveOneSide()
{
    ABootlogoData logo(nullptr);
    for (const QSize size : {QSize(kMax, 0), QSize(0, kMax)}) {
        logo.resize(size.width(), size.height());
        QCOMPARE(logo.cols(), size.width());
        QCOMPARE(logo.rows(), size.height());
        logo.setPixel(0, 0, true);
        QVERIFY(!logo.pixel(0, 0));
        QCOMPARE(logo.toBitstream(), QByteArray());
    }
}

void TestABootlogoData::clearingKeepsTheSize()
{
    ABootlogoData logo(nullptr);
    logo.resize(3, 2);
    logo.setPixel(1, 1, true);
    const QSignalSpy reset(&logo, &ABootlogoData::imageReset);
    const QSignalSpy resized(&logo, &ABootlogoData::imageResized);
    const QSignalSpy pixels(&logo, &ABootlogoData::pixelChanged);
    logo.clear();
    QCOMPARE(reset.size(), 1);
    QVERIFY(resized.isEmpty() && pixels.isEmpty());
    QCOMPARE(rowsOf(logo), QStringList({"...", "..."}));
}

void TestABootlogoData::aPixelIsSetAndTold()
{
    ABootlogoData logo(nullptr);
    logo.resize(3, 2);
    const QSignalSpy pixels(&logo, &ABootlogoData::pixelChanged);
    logo.setPixel(2, 1, true);
    QVERIFY(logo.pixel(2, 1));
    logo.setPixel(2, 1, true); // told although nothing changes
    logo.setPixel(0, 0, true);
    logo.setPixel(2, 1, false);
    logo.setPixel(1, 0, false);
    QCOMPARE(rowsOf(logo), QStringList({"...", "#.."}));
    const QList<QVariantList> expected = {{2, 1}, {2, 1}, {0, 0}, {2, 1}, {1, 0}};
    QCOMPARE(static_cast<const QList<QVariantList> &>(pixels), expected);
}

void TestABootlogoData::pixelsOutsideThePictureAreDarkAndStaySo_data()
{
    QTest::addColumn<int>("col");
    QTest::addColumn<int>("row");
    QTest::newRow("left") << -1 << 0;
    QTest::newRow("right") << 3 << 0;
    QTest::newRow("below") << 0 << -1;
    QTest::newRow("above") << 0 << 2;
    QTest::newRow("far") << kMax << kMax;
    QTest::newRow("farther") << kMin << kMin;
}

void TestABootlogoData::pixelsOutsideThePictureAreDarkAndStaySo()
{
    QFETCH(int, col);
    QFETCH(int, row);
    ABootlogoData logo(nullptr);
    logo.resize(3, 2);
    logo.loadBitstream(QByteArray(2, '\xff')); // lit bits behind the picture, too
    const QByteArray before = logo.toBitstream();
    const QSignalSpy pixels(&logo, &ABootlogoData::pixelChanged);
    QVERIFY(!logo.pixel(col, row));
    logo.setPixel(col, row, false);
    logo.setPixel(col, row, true);
    QVERIFY(!logo.pixel(col, row));
    QVERIFY(pixels.isEmpty());
    QCOMPARE(logo.toBitstream(), before);
}

void TestABootlogoData::aStreamBeginsWithTheBottomRow()
{
    ABootlogoData logo(nullptr);
    logo.resize(51, 25);
    logo.loadBitstream(QByteArray(1, '\x01') + QByteArray(159, '\0'));
    QVERIFY(logo.pixel(0, 0));
    QCOMPARE(rowsOf(logo).join(QString()).count('#'), 1);
    logo.clear();
    logo.setPixel(1, 0, true);
    logo.setPixel(8, 0, true);
    QCOMPARE(logo.toBitstream().left(3).toHex(), QByteArray("020100"));
}

void TestABootlogoData::aStreamHasNoGapBetweenRows()
{
    ABootlogoData logo(nullptr);
    logopicture::draw(&logo, {"..#", //
                              ".#.", //
                              "###"});
    QCOMPARE(logo.toBitstream().toHex(), QByteArray("1701"));
    ABootlogoData other(nullptr);
    other.resize(3, 3);
    other.loadBitstream(QByteArray::fromHex("1701"));
    QCOMPARE(rowsOf(other), rowsOf(logo));
}

void TestABootlogoData::aStreamOfAClearPictureIsAsLongAsNeeded_data()
{
    QTest::addColumn<int>("cols");
    QTest::addColumn<int>("rows");
    QTest::addColumn<int>("bytes");
    QTest::newRow("51 by 25") << 51 << 25 << 160;
    QTest::newRow("one pixel") << 1 << 1 << 1;
    QTest::newRow("a whole byte") << 8 << 1 << 1;
    QTest::newRow("one more") << 3 << 3 << 2;
    QTest::newRow("none") << 0 << 0 << 0;
    QTest::newRow("no row") << 51 << 0 << 0;
}

void TestABootlogoData::aStreamOfAClearPictureIsAsLongAsNeeded()
{
    QFETCH(int, cols);
    QFETCH(int, rows);
    QFETCH(int, bytes);
    ABootlogoData logo(nullptr);
    logo.resize(cols, rows);
    QCOMPARE(logo.toBitstream(), QByteArray(bytes, '\0'));
}

void TestABootlogoData::unusedBitsOfTheLastByteAreZero()
{
    ABootlogoData logo(nullptr);
    logo.resize(51, 25);
    for (int row = 0; row < 25; ++row) {
        for (int col = 0; col < 51; ++col)
            logo.setPixel(col, row, true);
    }
    QCOMPARE(logo.toBitstream(), QByteArray(159, '\xff') + '\x07');
}

void TestABootlogoData::aStreamIsLoadedBitByBit()
{
    ABootlogoData logo(nullptr);
    logo.resize(8, 2);
    logo.setPixel(7, 0, true); // what was lit is cleared where the stream says so
    QVERIFY(logo.loadBitstream(QByteArray::fromHex("0d80")));
    QCOMPARE(rowsOf(logo), QStringList({".......#", "#.##...."}));
}

void TestABootlogoData::loadingAStreamSaysNothingAndKeepsTheSize()
{
    ABootlogoData logo(nullptr);
    logo.resize(4, 4);
    const QSignalSpy reset(&logo, &ABootlogoData::imageReset);
    const QSignalSpy resized(&logo, &ABootlogoData::imageResized);
    const QSignalSpy pixels(&logo, &ABootlogoData::pixelChanged);
    QVERIFY(logo.loadBitstream(QByteArray(100, '\x55')));
    QVERIFY(reset.isEmpty() && resized.isEmpty() && pixels.isEmpty());
    QCOMPARE(logo.cols(), 4);
    QCOMPARE(logo.rows(), 4);
}

void TestABootlogoData::aLongerStreamComesBackWhole()
{
    ABootlogoData logo(nullptr);
    logo.resize(51, 25);
    const QByteArray stream = QByteArray(160, '\xff');
    logo.loadBitstream(stream);
    QCOMPARE(logo.toBitstream(), stream); // 1280 bits of a picture of 1275
    logo.loadBitstream(QByteArray(1000, '\xa5'));
    logo.setPixel(0, 0, false);
    QCOMPARE(logo.toBitstream(), '\xa4' + QByteArray(999, '\xa5'));
}

void TestABootlogoData::aShorterStreamLeavesTheRestDark()
{
    ABootlogoData logo(nullptr);
    logo.resize(4, 4);
    QVERIFY(logo.loadBitstream(QByteArray(1, '\xff')));
    QCOMPARE(rowsOf(logo), QStringList({"....", "....", "####", "####"}));
    const QSignalSpy pixels(&logo, &ABootlogoData::pixelChanged);
    logo.setPixel(0, 2, true);
    logo.setPixel(3, 3, true);
    logo.writeText(0, 0, QStringLiteral("!"));
    QCOMPARE(pixels.size(), 2 + 4); // in the picture, though nothing holds those above
    QCOMPARE(rowsOf(logo), QStringList({"....", "....", ".###", "####"}));
    QCOMPARE(logo.toBitstream(), QByteArray(1, '\xef'));

    QVERIFY(logo.loadBitstream({}));
    QCOMPARE(rowsOf(logo), QStringList({"....", "....", "....", "...."}));
    QCOMPARE(logo.toBitstream(), QByteArray());
}

void TestABootlogoData::anyStreamComesBackAsItWas()
{
    ABootlogoData logo(nullptr);
    logo.resize(7, 5);
    for (int size = 0; size < 300; ++size) {
        QByteArray stream(size, '\0');
        for (int i = 0; i < size; ++i)
            stream[i] = static_cast<char>(i * 37 + size);
        logo.loadBitstream(stream);
        QCOMPARE(logo.toBitstream(), stream);
        for (int bit = 0; bit < 35; ++bit) {
            const bool expected = bit / 8 < size && (static_cast<uchar>(stream.at(bit / 8)) >> (bit % 8) & 1) != 0;
            QCOMPARE(logo.pixel(bit % 7, bit / 7), expected);
        }
    }
}

void TestABootlogoData::clearingAfterAStreamBringsBackTheSizeOfThePicture()
{
    ABootlogoData logo(nullptr);
    logo.resize(3, 3);
    logo.loadBitstream(QByteArray(100, '\xff'));
    logo.clear();
    QCOMPARE(logo.toBitstream(), QByteArray(2, '\0'));
    logo.loadBitstream({});
    logo.clear();
    logo.setPixel(2, 2, true);
    QCOMPARE(logo.toBitstream().toHex(), QByteArray("0001"));
}

void TestABootlogoData::aPictureCanBeChangedFromItsOwnSignals()
{
    ABootlogoData logo(nullptr);
    logo.resize(20, 5);
    connect(&logo, &ABootlogoData::pixelChanged, &logo, [&] { logo.resize(2, 2); });
    logo.writeText(0, 0, QStringLiteral("MMM"));
    QCOMPARE(logo.cols(), 2);
    QCOMPARE(logo.toBitstream().size(), 1);
}

QTEST_GUILESS_MAIN(TestABootlogoData)
#include "tst_abootlogodata.moc"
