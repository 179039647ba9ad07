#define QT_STATICPLUGIN // the one below

#include "bootlogo/logodevice.h"

#include <bootlogo/abootlogodata.h>

#include <QtCore/QtPlugin>
#include <QtGui/QImage>
#include <QtGui/QImageIOPlugin>
#include <QtTest/QtTest>

using logopicture::rowsOf;

namespace {

QByteArray littleEndian(qint32 number)
{
    const qint32 bytes = qToLittleEndian(number);
    return {reinterpret_cast<const char *>(&bytes), sizeof bytes};
}

// A clear picture of that many pixels, in full.
QByteArray portableBitmap(int cols, int rows)
{
    return QStringLiteral("P4\n%1 %2\n").arg(cols).arg(rows).toLatin1() + QByteArray((cols + 7) / 8 * rows, '\0');
}

// A run-length coded bitmap of 8 bits a pixel that ends before its first row; a negative height is stored downwards.
QByteArray codedBitmap(qint32 cols, qint32 rows)
{
    return "BM" + littleEndian(64) + littleEndian(0) + littleEndian(62) + littleEndian(40) + littleEndian(cols) +
           littleEndian(rows) + QByteArray::fromHex("01000800") + littleEndian(1) + littleEndian(0) + littleEndian(0) +
           littleEndian(0) + littleEndian(2) + littleEndian(0) + littleEndian(0) + littleEndian(0xffffff) +
           QByteArray::fromHex("0001");
}

// An icon of 16 by 16 pixels, as it says, around a picture.
QByteArray icon(const QByteArray &picture, qint32 offset = 22)
{
    return QByteArray::fromHex("000001000100101000000100") + QByteArray::fromHex("2000") +
           littleEndian(picture.size()) + littleEndian(offset) + picture;
}

QByteArray clearPng(int cols, int rows)
{
    QImage image(cols, rows, QImage::Format_Mono);
    image.fill(1);
    QByteArray content;
    QBuffer buffer(&content);
    if (!image.save(&buffer, "PNG"))
        qFatal("no PNG of %d by %d pixels", cols, rows);
    return content;
}

// How much memory the program has used at most since the last reset, in kB; below 0 if the system doesn't say.
class MemoryPeak
{
public:
    static bool reset()
    {
        QFile file("/proc/self/clear_refs");
        return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write("5") == 1;
    }
    static qint64 kilobytes()
    {
        QFile file("/proc/self/status");
        if (!file.open(QIODevice::ReadOnly))
            return -1;
        const QString status = file.readAll();
        const QRegularExpressionMatch match = QRegularExpression("VmHWM:\\s*(\\d+)").match(status);
        return match.hasMatch() ? match.captured(1).toLongLong() : -1;
    }
};

} // namespace

// Pictures of a kind whose reader says 1 by 1 pixel and then gives what the file says after its "LYING".
class LyingPictureHandler : public QImageIOHandler
{
public:
    bool canRead() const override { return device()->peek(5) == "LYING"; }
    bool read(QImage *image) override
    {
        const QList<QByteArray> size = device()->readAll().mid(5).split('x');
        *image = QImage(size.value(0).toInt(), size.value(1).toInt(), QImage::Format_Mono);
        image->fill(1);
        return !image->isNull();
    }
    bool supportsOption(ImageOption option) const override { return option == Size; }
    QVariant option(ImageOption option) const override { return option == Size ? QVariant(QSize(1, 1)) : QVariant(); }
};

class LyingPicturePlugin : public QImageIOPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QImageIOHandlerFactoryInterface_iid FILE "lyingpicture.json")

public:
    Capabilities capabilities(QIODevice *device, const QByteArray &) const override
    {
        return device && device->isReadable() && device->peek(5) == "LYING" ? CanRead : Capabilities();
    }
    QImageIOHandler *create(QIODevice *device, const QByteArray &) const override
    {
        auto *handler = new LyingPictureHandler;
        handler->setDevice(device);
        return handler;
    }
};

Q_IMPORT_PLUGIN(LyingPicturePlugin)

class TestABootlogoDataBackground : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void aBackgroundGivesTheLogoItsSize_data();
    void aBackgroundGivesTheLogoItsSize();
    void readsKindsThatSayTheirSizeInOddWays_data();
    void readsKindsThatSayTheirSizeInOddWays();
    void aBackgroundThatIsNoPictureIsRefused_data();
    void aBackgroundThatIsNoPictureIsRefused();
    void aBackgroundHasUpToSoManyPixels_data();
    void aBackgroundHasUpToSoManyPixels();
    void whatHasTooManyPixelsIsNotDecoded_data();
    void whatHasTooManyPixelsIsNotDecoded();
    void aBackgroundDrawnAnewIsReadAnew();

private:
    bool compose(ABootlogoData *logo, const QString &background);
    QString write(const QString &name, const QByteArray &content);

    std::unique_ptr<QTemporaryDir> m_directory;
    LogoDevice m_device;
    DeviceMemory m_memory;
};

void TestABootlogoDataBackground::init()
{
    m_directory = std::make_unique<QTemporaryDir>();
    QVERIFY(m_directory->isValid());
}

// With an empty layout: the background alone.
bool TestABootlogoDataBackground::compose(ABootlogoData *logo, const QString &background)
{
    QSettings layout(m_directory->filePath("layout.ini"), QSettings::IniFormat);
    return logo->fromDeviceInformation(background, &layout, &m_device, m_memory, QString(), 0);
}

QString TestABootlogoDataBackground::write(const QString &name, const QByteArray &content)
{
    QFile file(m_directory->filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("could not write %s", qPrintable(file.fileName()));
    return file.fileName();
}

void TestABootlogoDataBackground::aBackgroundGivesTheLogoItsSize_data()
{
    QTest::addColumn<QString>("suffix");
    for (const char *suffix : {"png", "bmp", "pbm", "xbm", "xpm", "ppm"})
        QTest::newRow(suffix) << suffix;
}

void TestABootlogoDataBackground::aBackgroundGivesTheLogoItsSize()
{
    QFETCH(QString, suffix);
    const QStringList rows = {"..###..#..", //
                              "#........#", //
                              "#.#.#.#..."};
    const QString file = m_directory->filePath("background." + suffix);
    for (const bool paletteIsReversed : {false, true}) {
        QImage image(10, 3, QImage::Format_Mono);
        image.setColorTable(paletteIsReversed ? QVector<QRgb>{qRgb(0, 0, 0), qRgb(255, 255, 255)}
                                              : QVector<QRgb>{qRgb(255, 255, 255), qRgb(0, 0, 0)});
        for (int y = 0; y < 3; ++y) {
            for (int x = 0; x < 10; ++x)
                image.setPixel(x, y, (rows.at(y).at(x) == '#') != paletteIsReversed ? 1 : 0); // '#' is black
        }
        QVERIFY(image.save(file));
        ABootlogoData logo(nullptr);
        logo.resize(51, 25);
        QVERIFY(compose(&logo, file));
        QCOMPARE(rowsOf(logo), rows);
        QCOMPARE(logo.toBitstream().size(), 4);
    }
}

void TestABootlogoDataBackground::readsKindsThatSayTheirSizeInOddWays_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QSize>("size");
    QTest::newRow("a bitmap stored from the top downwards") << codedBitmap(30, -20) << QSize(30, 20);
    QTest::newRow("an icon around a larger picture") << icon(clearPng(300, 200)) << QSize(300, 200);
    QTest::newRow("a reader that says too little") << QByteArray("LYING30x20") << QSize(30, 20);
}

void TestABootlogoDataBackground::readsKindsThatSayTheirSizeInOddWays()
{
    QFETCH(QByteArray, content);
    QFETCH(QSize, size);
    ABootlogoData logo(nullptr);
    QVERIFY(compose(&logo, write("background", content)));
    QCOMPARE(QSize(logo.cols(), logo.rows()), size);
}

void TestABootlogoDataBackground::aBackgroundThatIsNoPictureIsRefused_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("no picture");
    QTest::newRow("half a PNG") << QByteArray::fromHex("89504e470d0a1a0a0000000d49484452");
    QTest::newRow("a head without pixels") << QByteArray("P4\n10 3\n");
    QTest::newRow("an icon that ends behind its directory") << icon(QByteArray());
    QTest::newRow("an icon whose picture lies behind its end") << icon(QByteArray(24, '\0'), 1000000);
    QTest::newRow("an icon of nothing") << QByteArray::fromHex("00000100");
    QTest::newRow("no pixels") << QByteArray("P1\n0 0\n");
}

void TestABootlogoDataBackground::aBackgroundThatIsNoPictureIsRefused()
{
    QFETCH(QByteArray, content);
    ABootlogoData logo(nullptr);
    logopicture::draw(&logo, {"#.#"});
    QVERIFY(!compose(&logo, write("background.png", content)));
    QVERIFY(!compose(&logo, m_directory->filePath("missing.png")));
    QVERIFY(!compose(&logo, m_directory->path()));
    QCOMPARE(rowsOf(logo), QStringList{"#.#"});
}

void TestABootlogoDataBackground::aBackgroundHasUpToSoManyPixels_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("as many as there can be") << portableBitmap(4096, 4096) << true;
    QTest::newRow("a row more") << portableBitmap(4096, 4097) << false;
    QTest::newRow("a column more") << portableBitmap(4097, 4096) << false;
    QTest::newRow("a bitmap stored upwards") << codedBitmap(4097, 4097) << false;
    QTest::newRow("a bitmap stored from the top downwards") << codedBitmap(4097, -4097) << false;
    QTest::newRow("a small file of 256 million pixels") << codedBitmap(16000, -16000) << false;
    QTest::newRow("a picture in an icon") << icon(clearPng(4097, 4096)) << false;
    QTest::newRow("a reader that says too little") << QByteArray("LYING4097x4096") << false;
}

void TestABootlogoDataBackground::aBackgroundHasUpToSoManyPixels()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, accepted);
    ABootlogoData logo(nullptr);
    logopicture::draw(&logo, {"#.#"});
    QCOMPARE(compose(&logo, write("background", content)), accepted);
    QCOMPARE(logo.cols() * logo.rows(), accepted ? 16777216 : 3);
}

void TestABootlogoDataBackground::whatHasTooManyPixelsIsNotDecoded_data()
{
    QTest::addColumn<QByteArray>("content");
    const QByteArray png = clearPng(20000, 20000); // 50 MB when decoded
    QTest::newRow("a PNG") << png;
    QTest::newRow("an icon") << icon(png);
    QTest::newRow("a bitmap stored from the top downwards") << codedBitmap(10000, -10000);
}

void TestABootlogoDataBackground::whatHasTooManyPixelsIsNotDecoded()
{
    constexpr qint64 kAllowedKilobytes = 16000;
    QFETCH(QByteArray, content);
    const QString file = write("background", content);
    if (!MemoryPeak::reset() || MemoryPeak::kilobytes() < 0)
        QSKIP("the system doesn't tell the peak of memory");
    const qint64 before = MemoryPeak::kilobytes();
    ABootlogoData logo(nullptr);
    QVERIFY(!compose(&logo, file));
    QVERIFY(MemoryPeak::kilobytes() - before < kAllowedKilobytes);
}

void TestABootlogoDataBackground::aBackgroundDrawnAnewIsReadAnew()
{
    ABootlogoData logo(nullptr);
    QVERIFY(compose(&logo, write("background.pbm", "P1\n2 1\n1 0\n")));
    QCOMPARE(rowsOf(logo), QStringList{"#."});
    QVERIFY(compose(&logo, write("background.pbm", "P1\n2 1\n0 1\n"))); // in the same second, of the same size
    QCOMPARE(rowsOf(logo), QStringList{".#"});
}

QTEST_MAIN(TestABootlogoDataBackground)
#include "tst_abootlogodata_background.moc"
