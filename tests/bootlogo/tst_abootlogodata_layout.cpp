#include "bootlogo/logodevice.h"

#include <bootlogo/abootlogodata.h>

#include <QtGui/QImage>
#include <QtTest/QtTest>

#include <algorithm>

using logopicture::rowsOf;
using logopicture::templateStream;
using logopicture::templateWith;

namespace {

const QMap<QString, QString> kDefaults = {{"LogoPositionType", "1x19"},      {"LogoPositionModel", "30x19"},
                                          {"LogoPositionFirmware", "26x12"}, {"LogoPositionSerial", "26x6"},
                                          {"LogoPositionOptions", "0x0"},    {"LogoInvertArea", "0x18-51x7"},
                                          {"CalibrationWarningDays", "730"}};

// Lit where the area lies in a clear picture of 6 by 4.
QStringList inverted(const QRect &area)
{
    QStringList rows;
    for (int row = 3; row >= 0; --row) {
        QString text;
        for (int col = 0; col < 6; ++col)
            text += area.contains(col, row) ? '#' : '.';
        rows.append(text);
    }
    return rows;
}

} // namespace

class TestABootlogoDataLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void aNewObjectResetsTheDefaultLayout();
    void theDefaultSettingsAreReadWithoutOthers();
    void aSettingsObjectOfTheCallerIsReadAlone();
    void aFieldWithoutSettingIsLeftOut_data();
    void aFieldWithoutSettingIsLeftOut();
    void whatNoFieldShowsIsNotAskedFor();
    void positionsAreRead_data();
    void positionsAreRead();
    void invertsTheArea_data();
    void invertsTheArea();
    void anAreaOfAnySizeCostsWhatLiesInThePicture();
    void invertsAfterTheTexts();
    void tellsTheFieldsInOrder();
    void tellsTheInvertedPixelsColumnByColumn();

private:
    bool compose(ABootlogoData *logo, const QString &background = {});
    QString write(const QString &name, const QByteArray &content);
    QString saveClear(const QString &name, const QSize &size);

    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<QSettings> m_layout;
    LogoDevice m_device;
    DeviceMemory m_memory;
};

void TestABootlogoDataLayout::init()
{
    m_directory = std::make_unique<QTemporaryDir>();
    QVERIFY(m_directory->isValid());
    m_layout = std::make_unique<QSettings>(m_directory->filePath("layout.ini"), QSettings::IniFormat);
}

void TestABootlogoDataLayout::cleanup()
{
    m_layout.reset();
    m_device.information = LogoDevice().information;
}

bool TestABootlogoDataLayout::compose(ABootlogoData *logo, const QString &background)
{
    return logo->fromDeviceInformation(background, m_layout.get(), &m_device, m_memory, QString(), 0);
}

QString TestABootlogoDataLayout::write(const QString &name, const QByteArray &content)
{
    QFile file(m_directory->filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("could not write %s", qPrintable(file.fileName()));
    return file.fileName();
}

QString TestABootlogoDataLayout::saveClear(const QString &name, const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    const QString file = m_directory->filePath(name);
    if (!image.save(file))
        qFatal("could not write %s", qPrintable(file));
    return file;
}

void TestABootlogoDataLayout::aNewObjectResetsTheDefaultLayout()
{
    {
        QSettings settings;
        settings.clear();
        settings.setValue("LogoPositionType", "3x3");
        settings.setValue("Other", "kept");
    }
    const ABootlogoData logo(nullptr);
    const QSettings settings;
    for (auto entry = kDefaults.cbegin(); entry != kDefaults.cend(); ++entry) {
        QCOMPARE(settings.value(entry.key()), QVariant(entry.value()));
        QCOMPARE(settings.value(entry.key()).type(), QVariant::String);
    }
    QCOMPARE(settings.value("Other").toString(), QString("kept"));
    QCOMPARE(settings.allKeys().size(), kDefaults.size() + 1);
}

void TestABootlogoDataLayout::theDefaultSettingsAreReadWithoutOthers()
{
    ABootlogoData logo(nullptr);
    QSettings settings;
    for (auto entry = kDefaults.cbegin(); entry != kDefaults.cend(); ++entry)
        settings.remove(entry.key());
    settings.setValue("LogoPositionSerial", "2x3");
    QVERIFY(logo.fromDeviceInformation(QString(), nullptr, &m_device, m_memory, QString(), 0));
    QCOMPARE(logo.toBitstream(), templateWith({{2, 3, "002311"}}));
}

void TestABootlogoDataLayout::aSettingsObjectOfTheCallerIsReadAlone()
{
    ABootlogoData logo(nullptr);
    QVERIFY(compose(&logo));
    QCOMPARE(logo.toBitstream(), templateStream());
    m_layout->setValue("Group/LogoPositionSerial", "2x3"); // in a group it is another key
    QVERIFY(compose(&logo));
    QCOMPARE(logo.toBitstream(), templateStream());

    write("own.ini", "[General]\nLogoPositionSerial=2x3\n"); // as a file is read
    m_layout = std::make_unique<QSettings>(m_directory->filePath("own.ini"), QSettings::IniFormat);
    QVERIFY(compose(&logo));
    QCOMPARE(logo.toBitstream(), templateWith({{2, 3, "002311"}}));
    QCOMPARE(m_layout->allKeys(), QStringList{"LogoPositionSerial"});
}

void TestABootlogoDataLayout::aFieldWithoutSettingIsLeftOut_data()
{
    QTest::addColumn<QString>("key");
    for (auto entry = kDefaults.cbegin(); entry != kDefaults.cend(); ++entry)
        QTest::newRow(qPrintable(entry.key())) << entry.key();
}

void TestABootlogoDataLayout::aFieldWithoutSettingIsLeftOut()
{
    QFETCH(QString, key);
    m_memory.insert(31, key == "CalibrationWarningDays" ? QByteArray::fromHex("01010020") : QByteArray());
    m_device.optionBits = 1;
    // The fields one by one, so that none hides another.
    QStringList without;
    for (const QVariant &value : {QVariant(), QVariant(""), QVariant(QStringList{"1", "2"})}) {
        m_layout->clear();
        for (auto entry = kDefaults.cbegin(); entry != kDefaults.cend(); ++entry)
            m_layout->setValue(entry.key(), entry.value());
        ABootlogoData logo(nullptr);
        QVERIFY(compose(&logo));
        const QStringList with = rowsOf(logo);
        m_layout->remove(key);
        if (value.isValid())
            m_layout->setValue(key, value); // a list of texts is no text
        QVERIFY(compose(&logo));
        QVERIFY(rowsOf(logo) != with);
        if (without.isEmpty())
            without = rowsOf(logo);
        QCOMPARE(rowsOf(logo), without);
    }
    m_device.optionBits = 0;
    m_memory.clear();
}

void TestABootlogoDataLayout::whatNoFieldShowsIsNotAskedFor()
{
    struct ReticentDevice : LogoDevice
    {
        int hardwareRevision() const override { return ++questions, LogoDevice::hardwareRevision(); }
        quint16 optionMask() const override { return ++questions, LogoDevice::optionMask(); }
        QString customOptionText() const override { return ++questions, LogoDevice::customOptionText(); }
        mutable int questions = 0;
    } device;
    device.optionBits = 8;
    ABootlogoData logo;
    QVERIFY(logo.fromDeviceInformation(QString(), m_layout.get(), &device, m_memory, QString(), 0));
    QCOMPARE(device.questions, 0);
    m_layout->setValue("LogoPositionType", "1x19");
    QVERIFY(logo.fromDeviceInformation(QString(), m_layout.get(), &device, m_memory, QString(), 0));
    QCOMPARE(device.questions, 1);
    m_layout->setValue("LogoPositionOptions", "0x0");
    QVERIFY(logo.fromDeviceInformation(QString(), m_layout.get(), &device, m_memory, QString(), 0));
    QCOMPARE(device.questions, 4);
}

void TestABootlogoDataLayout::positionsAreRead_data()
{
    QTest::addColumn<QVariant>("text");
    QTest::addColumn<int>("col");
    QTest::addColumn<int>("row");
    const auto add = [](const char *text, int col, int row) { QTest::newRow(text) << QVariant(text) << col << row; };
    add("2x8", 2, 8);
    add("-2x8", -2, 8);
    add("2x-2", 2, -2);
    add(" 2 x 8 ", 2, 8);
    add("+2x08", 2, 8);
    add("2x3x8", 2, 8);
    add("2xx8", 2, 8);
    add("5", 5, 5);
    add("x", 0, 0);
    add("x8", 0, 8);
    add("2x", 2, 0);
    add("2X8", 0, 0);
    add("2.5x8", 0, 8);
    add("0x2", 0, 2);
    add("ax8", 0, 8);
    add("0x0x2", 0, 2);
    add("nonsense", 0, 0);
    add(" ", 0, 0);
    add("2,8", 0, 0);
    add("2147483647x2147483647", 2147483647, 2147483647);
    add("-2147483648x-2147483648", -2147483647 - 1, -2147483647 - 1);
    add("2147483648x8", 0, 8);
    add("2x99999999999999999999", 2, 0);
    QTest::newRow("a number") << QVariant(5) << 5 << 5;
}

void TestABootlogoDataLayout::positionsAreRead()
{
    QFETCH(QVariant, text);
    QFETCH(int, col);
    QFETCH(int, row);
    const QList<QPair<QString, QString>> fields = {{"LogoPositionType", "KTm2"},
                                                   {"LogoPositionModel", "6060"},
                                                   {"LogoPositionFirmware", "1.44"},
                                                   {"LogoPositionSerial", "002311"},
                                                   {"LogoPositionOptions", "001"}};
    m_device.optionBits = 1;
    ABootlogoData logo(nullptr);
    for (const auto &[key, written] : fields) {
        m_layout->clear();
        m_layout->setValue(key, text);
        QVERIFY(compose(&logo));
        QCOMPARE(logo.toBitstream(), templateWith({{col, row, written}}));
    }
    m_device.optionBits = 0;
}

void TestABootlogoDataLayout::invertsTheArea_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QRect>("area");
    QTest::newRow("inside") << "1x1-3x2" << QRect(1, 1, 3, 2);
    QTest::newRow("one pixel in the corner") << "0x0-1x1" << QRect(0, 0, 1, 1);
    QTest::newRow("all") << "0x0-6x4" << QRect(0, 0, 6, 4);
    QTest::newRow("beyond right and top") << "4x2-30x20" << QRect(4, 2, 2, 2);
    QTest::newRow("outside") << "6x4-3x3" << QRect();
    QTest::newRow("no width") << "1x1-0x2" << QRect();
    QTest::newRow("no height") << "1x1-2x0" << QRect();
    QTest::newRow("a minus is a separator: the first part is empty") << "-1x1-3x2" << QRect(0, 0, 3, 2);
    QTest::newRow("the first and the last part") << "1x1-5x5-3x2" << QRect(1, 1, 3, 2);
    QTest::newRow("one part is both") << "2x3" << QRect(2, 3, 2, 1);
    QTest::newRow("nonsense") << "all" << QRect();
    QTest::newRow("no corner") << "nonsense-2x1" << QRect(0, 0, 2, 1);
    QTest::newRow("no size") << "1x1-" << QRect();
    QTest::newRow("one number for both sides") << "1-2" << QRect(1, 1, 2, 2);
    QTest::newRow("the largest numbers") << "2147483647x2147483647-2147483647x2147483647" << QRect();
    QTest::newRow("the largest size") << "1x1-2147483647x2147483647" << QRect(1, 1, 5, 3);
    QTest::newRow("too large a number is 0") << "1x1-2147483648x2" << QRect();
    // The sign that is no hyphen reaches the numbers.
    QTest::newRow("a negative corner") << QString("%1x%1-3x3").arg(QString(QChar(0x2212)) + "1") << QRect(0, 0, 2, 2);
    QTest::newRow("a negative size") << QString("3x3-%1x%1").arg(QString(QChar(0x2212)) + "2") << QRect();
}

void TestABootlogoDataLayout::invertsTheArea()
{
    QFETCH(QString, text);
    QFETCH(QRect, area);
    const QString background = saveClear("clear.png", {6, 4});
    m_layout->setValue("LogoInvertArea", text);
    ABootlogoData logo(nullptr);
    const QSignalSpy pixels(&logo, &ABootlogoData::pixelChanged);
    QVERIFY(compose(&logo, background));
    QCOMPARE(rowsOf(logo), inverted(area));
    QCOMPARE(pixels.size(), 6 * 4 + rowsOf(logo).join(QString()).count('#')); // the background, and the area
}

void TestABootlogoDataLayout::anAreaOfAnySizeCostsWhatLiesInThePicture()
{
    m_layout->setValue("LogoInvertArea", "0x0-2147483647x2147483647");
    ABootlogoData logo(nullptr);
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < 100; ++i)
        QVERIFY(compose(&logo));
    QVERIFY(timer.elapsed() < 5000); // pixel by pixel over the area it would be years
    QCOMPARE(logo.pixel(50, 24), true);
}

void TestABootlogoDataLayout::invertsAfterTheTexts()
{
    m_layout->setValue("LogoPositionSerial", "0x0");
    m_layout->setValue("LogoInvertArea", "0x0-4x3");
    m_device.information[6] = "11";
    ABootlogoData logo(nullptr);
    QVERIFY(compose(&logo, saveClear("clear.png", {6, 5})));
    QCOMPARE(rowsOf(logo), QStringList({".#..#.", //
                                        "##.##.", //
                                        "#.###.", //
                                        "#.###.", //
                                        "#.###."}));
}

void TestABootlogoDataLayout::tellsTheFieldsInOrder()
{
    m_layout->setValue("LogoPositionFirmware", "0x50");
    m_layout->setValue("LogoPositionType", "0x40");
    m_layout->setValue("LogoPositionModel", "0x30");
    m_layout->setValue("LogoPositionSerial", "0x20");
    m_layout->setValue("LogoPositionOptions", "0x10");
    m_layout->setValue("LogoInvertArea", "0x0-1x1");
    m_device.optionBits = 1;
    ABootlogoData logo(nullptr);
    QList<int> order;
    connect(&logo, &ABootlogoData::imageResized, this, [&] { order.append(-2); });
    connect(&logo, &ABootlogoData::imageReset, this, [&] { order.append(-1); });
    int backgroundPixels = 60 * 60;
    connect(&logo, &ABootlogoData::pixelChanged, this, [&](int, int row) {
        if (backgroundPixels > 0)
            --backgroundPixels;
        else if (order.constLast() != row / 10)
            order.append(row / 10);
    });
    QVERIFY(compose(&logo, saveClear("clear.png", {60, 60})));
    m_device.optionBits = 0;
    QCOMPARE(order, QList<int>({-2, -1, -1, 5, 4, 3, 2, 1, 0}));
}

void TestABootlogoDataLayout::tellsTheInvertedPixelsColumnByColumn()
{
    m_layout->setValue("LogoInvertArea", "49x23-5x5");
    ABootlogoData logo(nullptr);
    const QSignalSpy pixels(&logo, &ABootlogoData::pixelChanged);
    QVERIFY(compose(&logo));
    const QList<QVariantList> expected = {{49, 23}, {49, 24}, {50, 23}, {50, 24}};
    QCOMPARE(static_cast<const QList<QVariantList> &>(pixels), expected);
}

QTEST_MAIN(TestABootlogoDataLayout)
#include "tst_abootlogodata_layout.moc"
