#include "bootlogo/logodevice.h"

#include <bootlogo/abootlogodata.h>

#include <QtTest/QtTest>

using logopicture::rowsOf;
using logopicture::templateStream;
using logopicture::templateWith;

class TestABootlogoDataComposition : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void theTemplateIsThisPicture();
    void composesTheDefaultLogo();
    void composesALogoOfAllThatIsLong();
    void refusesUnsuitableDevices_data();
    void refusesUnsuitableDevices();
    void refusesShortDeviceInformation();
    void takesMoreDeviceInformationThanItNeeds();
    void composingAgainBeginsWithTheBackground();
    void findsTheFirmwareVersion_data();
    void findsTheFirmwareVersion();
    void firmwareGivenWinsOverTheMemory();
    void aLongFirmwareListIsNoWork();
    void firmwareIsCutToWhatLatin1Holds_data();
    void firmwareIsCutToWhatLatin1Holds();
    void otherTextsAreWrittenAsTheyAre();
    void theTypeTellsTheRevisionBesideAShortName_data();
    void theTypeTellsTheRevisionBesideAShortName();
    void aLongModelNameGrowsLeftwards_data();
    void aLongModelNameGrowsLeftwards();
    void aModelNameLeftOfAllColumnsIsNotSeen();
    void writesTheOptions_data();
    void writesTheOptions();
    void leavesDeviceMemoryAlone();

private:
    // The stream after a composition with `m_layout`.
    QByteArray compose(const QString &firmware = {}, unsigned short options = 0);
    void only(const char *key, const char *value = "0x8");

    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<QSettings> m_layout;
    LogoDevice m_device;
    DeviceMemory m_memory;
};

void TestABootlogoDataComposition::init()
{
    m_directory = std::make_unique<QTemporaryDir>();
    QVERIFY(m_directory->isValid());
    m_layout = std::make_unique<QSettings>(m_directory->filePath("layout.ini"), QSettings::IniFormat);
}

void TestABootlogoDataComposition::cleanup()
{
    m_layout.reset();
    m_device.information = LogoDevice().information;
    m_device.customOption = LogoDevice().customOption;
    m_device.revision = 1;
    m_device.optionBits = 0;
    m_device.ready = true;
    m_device.capabilities = 8;
    m_memory.clear();
}

QByteArray TestABootlogoDataComposition::compose(const QString &firmware, unsigned short options)
{
    ABootlogoData logo(nullptr);
    if (!logo.fromDeviceInformation(QString(), m_layout.get(), &m_device, m_memory, firmware, options))
        return "refused";
    return logo.toBitstream();
}

// A layout with this field alone.
void TestABootlogoDataComposition::only(const char *key, const char *value)
{
    m_layout->clear();
    m_layout->setValue(key, value);
}

void TestABootlogoDataComposition::theTemplateIsThisPicture()
{
    ABootlogoData logo(nullptr);
    QVERIFY(logo.fromDeviceInformation(QString(), m_layout.get(), &m_device, m_memory, QString(), 0));
    QCOMPARE(logo.toBitstream(), templateStream());
    const QStringList expected = {"...................................................", //
                                  "...................................................", //
                                  "...................................................", //
                                  "...................................................", //
                                  "...................................................", //
                                  ".###..........................###..................", //
                                  "...................................................", //
                                  "...................................................", //
                                  "###.###.##..##.##.#...#............................", //
                                  "#....#..#.#.#.#.#.#...#............................", //
                                  "###..#..##..#.#.#.#.#.#............................", //
                                  "#....#..#.#.#...#.#.#.#............................", //
                                  "#...###.#.#.#...#..#.#..#.###......................", //
                                  "...................................................", //
                                  "###.###.##..###..#..#..............................", //
                                  "#...#...#.#..#..#.#.#..............................", //
                                  "###.##..##...#..###.#..............................", //
                                  "..#.#...#.#..#..#.#.#..............................", //
                                  "###.###.#.#.###.#.#.###...###......................", //
                                  "...................................................", //
                                  "...................................................", //
                                  "...................................................", //
                                  "...................................................", //
                                  "...................................................", //
                                  "###................................................"};
    QCOMPARE(rowsOf(logo), expected);
}

void TestABootlogoDataComposition::composesTheDefaultLogo()
{
    ABootlogoData logo(nullptr);
    m_device.optionBits = 1 | 0x80;
    QVERIFY(logo.fromDeviceInformation(QString(), nullptr, &m_device, m_memory, QString(), 0));
    const QStringList expected = {"###################################################", //
                                  "#.##.#...#..#..##.#############..##.###..##.#######", //
                                  "#.#.###.##.#.#.#.#.###########.###.#.#.###.#.######", //
                                  "#..####.##.#.#.###.###########...#.#.#...#.#.######", //
                                  "#.#.###.##.###.##.############.#.#.#.#.#.#.#.######", //
                                  "#.##.##.##.###.#...###########...##.##...##.#######", //
                                  "###################################################", //
                                  "...................................................", //
                                  "###.###.##..##.##.#...#....#...#.#.#.#.............", //
                                  "#....#..#.#.#.#.#.#...#...##...#.#.#.#.............", //
                                  "###..#..##..#.#.#.#.#.#....#...###.###.............", //
                                  "#....#..#.#.#...#.#.#.#....#.....#...#.............", //
                                  "#...###.#.#.#...#..#.#..#..#.#...#...#.............", //
                                  "...................................................", //
                                  "###.###.##..###..#..#......#...#...#..##...#..#....", //
                                  "#...#...#.#..#..#.#.#.....#.#.#.#.#.#...#.##.##....", //
                                  "###.##..##...#..###.#.....#.#.#.#...#..#...#..#....", //
                                  "..#.#...#.#..#..#.#.#.....#.#.#.#..#....#..#..#....", //
                                  "###.###.#.#.###.#.#.###....#...#..###.##...#..#....", //
                                  "...................................................", //
                                  ".#...#...#....#...#..###...........................", //
                                  "#.#.#.#.##...#.#.#.#.#.#...........................", //
                                  "#.#.#.#..#...#.#.#.#.###...........................", //
                                  "#.#.#.#..#...#.#.#.#.#.#...........................", //
                                  ".#...#...#....#...#..###..........................."};
    QCOMPARE(rowsOf(logo), expected);
    QCOMPARE(logo.toBitstream().size(), 160);
}

void TestABootlogoDataComposition::composesALogoOfAllThatIsLong()
{
    ABootlogoData logo(nullptr);
    m_device.information = QStringList{"60105X3", "", "", "", "9.99", "", "40177", "more"};
    m_device.customOption = "custom";
    m_device.revision = 5;
    m_device.optionBits = 1 | 8 | 0x10;
    QVERIFY(logo.fromDeviceInformation(QString(), nullptr, &m_device, m_memory, "2.07", 2 | 8 | 0x20));
    const QStringList expected = {"###################################################", //
                                  "#.##.#...#..#..##.#######..##.###.##.##...#.#.#..##", //
                                  "#.#.###.##.#.#.#.#.#####.###.#.#..#.#.#.####.####.#", //
                                  "#..####.##.#.#.###.#####...#.#.##.#.#.#..###.###.##", //
                                  "#.#.###.##.###.##.######.#.#.#.##.#.#.###.##.####.#", //
                                  "#.##.##.##.###.#...#####...##.###.##.##..##.#.#..##", //
                                  "###################################################", //
                                  "...................................................", //
                                  "###.###.##..##.##.#...#....#.....#..###............", //
                                  "#....#..#.#.#.#.#.#...#...#.#...#.#...#............", //
                                  "###..#..##..#.#.#.#.#.#.....#...#.#..#.............", //
                                  "#....#..#.#.#...#.#.#.#....#....#.#..#.............", //
                                  "#...###.#.#.#...#..#.#..#.###.#..#..#..............", //
                                  "...................................................", //
                                  "###.###.##..###..#..#.....#.#..#...#.###.###.......", //
                                  "#...#...#.#..#..#.#.#.....#.#.#.#.##...#...#.......", //
                                  "###.##..##...#..###.#.....###.#.#..#..#...#........", //
                                  "..#.#...#.#..#..#.#.#.......#.#.#..#..#...#........", //
                                  "###.###.#.#.###.#.#.###.....#..#...#.#...#.........", //
                                  "...................................................", //
                                  ".#...#....#...#.....##.#.#.###.###.###.##.##....#..", //
                                  "#.#.##...#.#.#.#...#...#.#.#....#..#.#.#.#.#...#.#.", //
                                  "#.#..#...#.#...#...#...#.#.###..#..#.#.#.#.#...#.#.", //
                                  "#.#..#...#.#..#....#...#.#...#..#..#.#.#...#...#.#.", //
                                  ".#...#....#..###....##.###.###..#..###.#...#....#.."};
    QCOMPARE(rowsOf(logo), expected);
}

void TestABootlogoDataComposition::refusesUnsuitableDevices_data()
{
    QTest::addColumn<bool>("isNull");
    QTest::addColumn<bool>("ready");
    QTest::addColumn<int>("capabilities");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("suitable") << false << true << 8 << true;
    QTest::newRow("other capabilities don't matter") << false << true << (0x7fff & ~128) << true;
    QTest::newRow("no device") << true << true << 8 << false;
    QTest::newRow("not ready") << false << false << 8 << false;
    QTest::newRow("without 8") << false << true << (0x7fff & ~128 & ~8) << false;
    QTest::newRow("with 128") << false << true << (8 | 128) << false;
}

void TestABootlogoDataComposition::refusesUnsuitableDevices()
{
    QFETCH(bool, isNull);
    QFETCH(bool, ready);
    QFETCH(int, capabilities);
    QFETCH(bool, accepted);
    m_device.ready = ready;
    m_device.capabilities = capabilities;
    ABootlogoData logo(nullptr);
    logopicture::draw(&logo, {"#.#"});
    const QSignalSpy resized(&logo, &ABootlogoData::imageResized);
    const QSignalSpy reset(&logo, &ABootlogoData::imageReset);
    const QSignalSpy pixels(&logo, &ABootlogoData::pixelChanged);
    QCOMPARE(logo.fromDeviceInformation(QString(), nullptr, isNull ? nullptr : &m_device, m_memory, QString(), 0),
             accepted);
    QCOMPARE(rowsOf(logo) == QStringList{"#.#"}, !accepted);
    QCOMPARE(resized.isEmpty() && reset.isEmpty() && pixels.isEmpty(), !accepted);
}

void TestABootlogoDataComposition::refusesShortDeviceInformation()
{
    ABootlogoData logo(nullptr);
    logopicture::draw(&logo, {"#.#"});
    for (int size = 0; size < 7; ++size) {
        m_device.information = LogoDevice().information.mid(0, size);
        QVERIFY(!logo.fromDeviceInformation(QString(), nullptr, &m_device, m_memory, "1.0", 0));
        QCOMPARE(rowsOf(logo), QStringList{"#.#"});
    }
}

void TestABootlogoDataComposition::takesMoreDeviceInformationThanItNeeds()
{
    only("LogoPositionSerial");
    m_device.information.append("another");
    QCOMPARE(compose(), templateWith({{0, 8, "002311"}}));
}

void TestABootlogoDataComposition::composingAgainBeginsWithTheBackground()
{
    ABootlogoData logo(nullptr);
    QVERIFY(logo.fromDeviceInformation(QString(), nullptr, &m_device, m_memory, "1.44", 0x1f));
    m_device.information[0] = "1";
    m_device.information[6] = "2";
    QVERIFY(logo.fromDeviceInformation(QString(), nullptr, &m_device, m_memory, "3", 0));
    ABootlogoData fresh(nullptr);
    QVERIFY(fresh.fromDeviceInformation(QString(), nullptr, &m_device, m_memory, "3", 0));
    QCOMPARE(logo.toBitstream(), fresh.toBitstream());
}

void TestABootlogoDataComposition::findsTheFirmwareVersion_data()
{
    QTest::addColumn<QByteArray>("memory");
    QTest::addColumn<QString>("firmware");
    const QString ofDevice = "1.44";
    QTest::newRow("one part") << QByteArray("2.1=abc") << "2.1";
    QTest::newRow("the last of several") << QByteArray("2.1=abc;2.2=def;2.3=ghi") << "2.3";
    QTest::newRow("one without further data") << QByteArray("2.1=a;2.2") << "2.2";
    QTest::newRow("passes over a part with an underscore") << QByteArray("2.1=a;2.2=b;_9=c") << "2.2";
    QTest::newRow("passes over several") << QByteArray("2.1=a;_7=b;_8=c;_9") << "2.1";
    QTest::newRow("an underscore further in") << QByteArray("2.1=a;2_2=b") << "2_2";
    QTest::newRow("passes over a part without text") << QByteArray("2.1=a;=b") << "2.1";
    QTest::newRow("passes over an empty part") << QByteArray("2.1=a;;") << "2.1";
    QTest::newRow("passes over a part that begins with NUL") << QByteArray("2.1=a;\0z=b", 10) << "2.1";
    QTest::newRow("ends at NUL") << QByteArray("2.1\0\0;=x", 8) << "2.1";
    QTest::newRow("the first piece of several") << QByteArray("2.1=3=4") << "2.1";
    QTest::newRow("a blank is text") << QByteArray("2.1=a; =b") << "";
    QTest::newRow("UTF-8") << QByteArray("2.1\xc3\xa4"
                                         "5=x")
                           << QString("2.1") + QChar(0xe4) + "5";
    QTest::newRow("none but an underscore") << QByteArray("_2.1=a") << ofDevice;
    QTest::newRow("an underscore alone") << QByteArray("_") << ofDevice;
    QTest::newRow("separators alone") << QByteArray(";;;") << ofDevice;
    QTest::newRow("empty") << QByteArray("") << ofDevice;
    QTest::newRow("null") << QByteArray() << ofDevice;
    QTest::newRow("NUL") << QByteArray(1, '\0') << ofDevice;
}

void TestABootlogoDataComposition::findsTheFirmwareVersion()
{
    QFETCH(QByteArray, memory);
    QFETCH(QString, firmware);
    only("LogoPositionFirmware");
    m_memory.insert(38, memory);
    QCOMPARE(compose(), templateWith({{0, 8, firmware}}));
}

void TestABootlogoDataComposition::firmwareGivenWinsOverTheMemory()
{
    only("LogoPositionFirmware");
    QCOMPARE(compose(), templateWith({{0, 8, "1.44"}}));
    m_memory.insert(38, "2.1=a");
    QCOMPARE(compose(), templateWith({{0, 8, "2.1"}}));
    QCOMPARE(compose("3.0"), templateWith({{0, 8, "3.0"}}));
    QCOMPARE(compose("_3.0"), templateWith({{0, 8, "_3.0"}}));
    QCOMPARE(compose(" "), templateWith({})); // no version, but given
}

void TestABootlogoDataComposition::aLongFirmwareListIsNoWork()
{
    only("LogoPositionFirmware");
    m_memory.insert(38, "2.1=a;" + QByteArray(5000000, ';') + QByteArray("_9=x;").repeated(1000000));
    QCOMPARE(compose(), templateWith({{0, 8, "2.1"}}));
    m_memory.insert(38, QByteArray(10000000, '8'));
    QCOMPARE(compose(), templateWith({{0, 8, "88888888888888888888"}}));
}

void TestABootlogoDataComposition::firmwareIsCutToWhatLatin1Holds_data()
{
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<QString>("written");
    QTest::newRow("trimmed") << "  1.5 \t\n"
                             << "1.5";
    QTest::newRow("trimmed before blanks that are no Latin-1 are lost") << QString(QChar(0x2003)) + "1.5"
                                                                        << "1.5";
    QTest::newRow("cut at NUL, after trimming") << QString("1.5 ") + QChar(0) + "6"
                                                << "1.5 ";
    QTest::newRow("nothing before NUL") << QString(QChar(0)) + "6"
                                        << "";
    QTest::newRow("a long s is no S, since it is no Latin-1") << QString("1") + QChar(0x17f) + "5"
                                                              << "1?5";
    QTest::newRow("small letters") << "v1.5b"
                                   << "V1.5B";
}

void TestABootlogoDataComposition::firmwareIsCutToWhatLatin1Holds()
{
    QFETCH(QString, firmware);
    QFETCH(QString, written);
    only("LogoPositionFirmware");
    QCOMPARE(compose(firmware), templateWith({{0, 8, written}}));
}

void TestABootlogoDataComposition::otherTextsAreWrittenAsTheyAre()
{
    const QString text = QString(" 1") + QChar(0x17f) + QChar(0) + "5 ";
    only("LogoPositionSerial");
    m_device.information[6] = text;
    QCOMPARE(compose(), templateWith({{0, 8, " 1s?5 "}}));
    only("LogoPositionModel");
    m_device.information[0] = text.left(5);
    QCOMPARE(compose(), templateWith({{0, 8, " 1s?5"}}));
    only("LogoPositionOptions");
    m_device.optionBits = 8;
    m_device.customOption = text;
    QCOMPARE(compose(), templateWith({{0, 8, " 1s?5 "}}));
}

void TestABootlogoDataComposition::theTypeTellsTheRevisionBesideAShortName_data()
{
    QTest::addColumn<int>("revision");
    QTest::addColumn<QString>("model");
    QTest::addColumn<QString>("type");
    QTest::newRow("revision 1") << 1 << "6060"
                                << "KTm2";
    QTest::newRow("revision 2") << 2 << "6060"
                                << "KTm2_2";
    QTest::newRow("revision 14, 5 characters") << 14 << "60105"
                                               << "KTm2_14";
    QTest::newRow("6 characters") << 2 << "60105X"
                                  << "KTm2";
    QTest::newRow("no name") << 3 << ""
                             << "KTm2_3";
    QTest::newRow("revision 0") << 0 << "6060"
                                << "KTm2";
    QTest::newRow("a negative one") << -2 << "6060"
                                    << "KTm2";
    QTest::newRow("a very high one") << 2147483647 << "6060"
                                     << "KTm2_2147483647";
}

void TestABootlogoDataComposition::theTypeTellsTheRevisionBesideAShortName()
{
    QFETCH(int, revision);
    QFETCH(QString, model);
    QFETCH(QString, type);
    only("LogoPositionType");
    m_device.revision = revision;
    m_device.information[0] = model;
    QCOMPARE(compose(), templateWith({{0, 8, type}}));
}

void TestABootlogoDataComposition::aLongModelNameGrowsLeftwards_data()
{
    QTest::addColumn<QString>("model");
    QTest::addColumn<int>("col");
    QTest::newRow("none") << "" << 30;
    QTest::newRow("1 character") << "6" << 30;
    QTest::newRow("5 characters") << "60105" << 30;
    QTest::newRow("6 characters") << "60105X" << 27;
    QTest::newRow("7 characters") << "60105X3" << 24;
    QTest::newRow("20 characters") << "12345678901234567890" << -15;
    QTest::newRow("a million characters") << QString(1000000, 'M') << 30 - 3 * 999995;
}

void TestABootlogoDataComposition::aLongModelNameGrowsLeftwards()
{
    QFETCH(QString, model);
    QFETCH(int, col);
    only("LogoPositionModel", "30x19");
    m_device.information[0] = model;
    QCOMPARE(compose(), templateWith({{col, 19, model}}));
}

void TestABootlogoDataComposition::aModelNameLeftOfAllColumnsIsNotSeen()
{
    for (const char *position : {"-2147483648x8", "-2147483647x8", "-2147483640x8"}) {
        only("LogoPositionModel", position);
        for (const int length : {6, 8, 1000}) {
            m_device.information[0] = QString(length, 'M');
            QCOMPARE(compose(), templateStream());
        }
    }
}

void TestABootlogoDataComposition::writesTheOptions_data()
{
    QTest::addColumn<int>("ofDevice");
    QTest::addColumn<int>("extra");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << 0 << 0 << "";
    QTest::newRow("one of the device") << 1 << 0 << "001";
    QTest::newRow("one more") << 0 << 1 << "001";
    QTest::newRow("both") << 1 << 1 << "001";
    QTest::newRow("in ascending order") << 0x4000 << (2 | 4) << "002 003 015";
    QTest::newRow("the custom one") << 9 << 8 << "001 xt";
    QTest::newRow("four keep their zeros") << 0x4003 << 0x10 << "001 002 005 015";
    QTest::newRow("five lose one each") << 0x4007 << 0x10 << "01 02 03 05 15";
    QTest::newRow("all") << 0x7fff << 0 << "01 02 03 xt 05 06 07 08 09 10 11 12 13 14 15";
    QTest::newRow("the highest bit is none") << 0x8000 << 0x8000 << "";
}

void TestABootlogoDataComposition::writesTheOptions()
{
    QFETCH(int, ofDevice);
    QFETCH(int, extra);
    QFETCH(QString, text);
    only("LogoPositionOptions", "-1x0");
    m_device.optionBits = static_cast<quint16>(ofDevice);
    // Without an option nothing is written: the underscore of the template stays.
    QCOMPARE(compose({}, static_cast<unsigned short>(extra)), templateWith({{-1, 0, text}}));

    only("LogoPositionOptions", "-150x0"); // where the text ends
    QCOMPARE(compose({}, static_cast<unsigned short>(extra)), templateWith({{-150, 0, text}}));

    m_device.customOption = "00";
    only("LogoPositionOptions");
    const QString custom = text.count(' ') >= 4 ? "0" : "00";
    QCOMPARE(compose({}, static_cast<unsigned short>(extra)),
             templateWith({{0, 8, QString(text).replace("xt", custom)}}));
}

void TestABootlogoDataComposition::leavesDeviceMemoryAlone()
{
    m_memory = {{7, "x"}, {38, "2.1=a;_2"}, {31, "\x01\x01\x01\x20"}};
    const DeviceMemory before = m_memory;
    compose();
    QCOMPARE(m_memory, before);
    m_memory.clear();
    compose();
    QVERIFY(m_memory.isEmpty());
}

QTEST_GUILESS_MAIN(TestABootlogoDataComposition)
#include "tst_abootlogodata_composition.moc"
