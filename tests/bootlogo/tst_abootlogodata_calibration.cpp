#include "bootlogo/logodevice.h"

#include <bootlogo/abootlogodata.h>

#include <QtGui/QImage>
#include <QtTest/QtTest>

using logopicture::rowsOf;
using logopicture::templateStream;

namespace {

QByteArray dateBytes(const QDate &date)
{
    const QString digits = date.toString("MMddyyyy");
    return QByteArray::fromHex((digits.mid(0, 4) + digits.mid(6, 2) + digits.mid(4, 2)).toLatin1());
}

// Waits where midnight would fall between now and the comparison.
QDate today()
{
    const QTime lastSeconds(23, 59, 50);
    while (QTime::currentTime() >= lastSeconds)
        QTest::qSleep(500);
    return QDate::currentDate();
}

} // namespace

class TestABootlogoDataCalibration : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_layout.reset(); }

    void anOverdueCalibrationLeavesTheReminderAlone();
    void theReminderStandsAtTheTopOfAnyPicture();
    void theReminderIsToldAfterAClear();
    void theReminderIsWrittenLineByLine();
    void theReminderComesAfterTheWholeLogo();
    void comesTheDayAfterTheLastOne_data();
    void comesTheDayAfterTheLastOne();
    void readsTheDate_data();
    void readsTheDate();
    void readsTheDays_data();
    void readsTheDays();
    void comesByDefaultAfterTwoYears();

private:
    bool isReminder(const QByteArray &date);

    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<QSettings> m_layout;
    LogoDevice m_device;
};

void TestABootlogoDataCalibration::init()
{
    m_directory = std::make_unique<QTemporaryDir>();
    QVERIFY(m_directory->isValid());
    m_layout = std::make_unique<QSettings>(m_directory->filePath("layout.ini"), QSettings::IniFormat);
    m_layout->setValue("CalibrationWarningDays", "730");
}

bool TestABootlogoDataCalibration::isReminder(const QByteArray &date)
{
    DeviceMemory memory = {{31, date}};
    ABootlogoData logo(nullptr);
    if (!logo.fromDeviceInformation(QString(), m_layout.get(), &m_device, memory, QString(), 0))
        qFatal("refused");
    return logo.toBitstream() != templateStream();
}

void TestABootlogoDataCalibration::anOverdueCalibrationLeavesTheReminderAlone()
{
    ABootlogoData logo(nullptr);
    DeviceMemory memory = {{31, QByteArray::fromHex("06150820")}};
    QVERIFY(logo.fromDeviceInformation(QString(), nullptr, &m_device, memory, QString(), 0x7f));
    const QStringList expected = {"...................................................", //
                                  "#..#.###.#...#.....................................", //
                                  "##.#.#...#...#.....................................", //
                                  "#.##.##..#.#.#.....................................", //
                                  "#..#.#...#.#.#.....................................", //
                                  "#..#.###..#.#......................................", //
                                  "...................................................", //
                                  ".##..#..#...###.##..##...#..###.###.###.#..#.......", //
                                  "#...#.#.#....#..#.#.#.#.#.#..#...#..#.#.##.#.......", //
                                  "#...###.#....#..##..##..###..#...#..#.#.#.##.......", //
                                  "#...#.#.#....#..#.#.#.#.#.#..#...#..#.#.#..#.......", //
                                  ".##.#.#.###.###.##..#.#.#.#..#..###.###.#..#.......", //
                                  "...................................................", //
                                  "##..###..##..#.#.###.##..###.##..#.................", //
                                  "#.#.#...#..#.#.#..#..#.#.#...#.#.#.................", //
                                  "##..##..#..#.#.#..#..##..##..#.#.#.................", //
                                  "#.#.#...#.##.#.#..#..#.#.#...#.#...................", //
                                  "#.#.###..###.###.###.#.#.###.##..#.................", //
                                  "...................................................", //
                                  "...................................................", //
                                  "...................................................", //
                                  "...................................................", //
                                  "...................................................", //
                                  "...................................................", //
                                  "..................................................."};
    QCOMPARE(rowsOf(logo), expected);
    QCOMPARE(logo.toBitstream().size(), 160);
}

void TestABootlogoDataCalibration::theReminderStandsAtTheTopOfAnyPicture()
{
    QImage image(20, 9, QImage::Format_Mono);
    image.fill(1);
    const QString file = m_directory->filePath("background.png");
    QVERIFY(image.save(file));
    DeviceMemory memory = {{31, QByteArray::fromHex("06150820")}};
    ABootlogoData logo(nullptr);
    QVERIFY(logo.fromDeviceInformation(file, nullptr, &m_device, memory, QString(), 0));
    QCOMPARE(rowsOf(logo), QStringList({"....................", //
                                        "#..#.###.#...#......", //
                                        "##.#.#...#...#......", //
                                        "#.##.##..#.#.#......", //
                                        "#..#.#...#.#.#......", //
                                        "#..#.###..#.#.......", //
                                        "....................", //
                                        ".##..#..#...###.##..", //
                                        "#...#.#.#....#..#.#."}));
}

void TestABootlogoDataCalibration::theReminderIsToldAfterAClear()
{
    ABootlogoData logo(nullptr);
    DeviceMemory memory = {{31, QByteArray::fromHex("06150820")}};
    logo.resize(51, 25);
    QString order;
    connect(&logo, &ABootlogoData::imageReset, this, [&] { order += 'r'; });
    connect(&logo, &ABootlogoData::pixelChanged, this, [&] { order += 'p'; });
    QVERIFY(logo.fromDeviceInformation(QString(), m_layout.get(), &m_device, memory, QString(), 0));
    const int painted = ABootlogoData::textToBits("new").bounds.width() +
                        ABootlogoData::textToBits("calibration").bounds.width() +
                        ABootlogoData::textToBits("required!").bounds.width();
    QCOMPARE(order, 'r' + QString(5 * painted, 'p'));
}

void TestABootlogoDataCalibration::theReminderIsWrittenLineByLine()
{
    ABootlogoData logo(nullptr);
    DeviceMemory memory = {{31, QByteArray::fromHex("06150820")}};
    QList<int> lines; // the bottom row of each
    connect(&logo, &ABootlogoData::pixelChanged, this, [&](int, int row) {
        const int line = row - (row - 7) % 6;
        if (lines.isEmpty() || lines.constLast() != line)
            lines.append(line);
    });
    QVERIFY(logo.fromDeviceInformation(QString(), m_layout.get(), &m_device, memory, QString(), 0));
    QCOMPARE(lines, QList<int>({25 - 6, 25 - 12, 25 - 18}));
}

void TestABootlogoDataCalibration::theReminderComesAfterTheWholeLogo()
{
    QStringList told;
    const auto signalsOf = [&](const char *date) {
        ABootlogoData logo(nullptr);
        connect(&logo, &ABootlogoData::imageResized, this, [&] { told.append("resized"); });
        connect(&logo, &ABootlogoData::imageReset, this, [&] { told.append("reset"); });
        connect(&logo, &ABootlogoData::pixelChanged, this, [&](int col, int row) {
            told.append(QString("%1 %2 %3").arg(col).arg(row).arg(logo.pixel(col, row)));
        });
        told.clear();
        DeviceMemory memory = {{31, QByteArray::fromHex(date)}};
        if (!logo.fromDeviceInformation(QString(), nullptr, &m_device, memory, QString(), 1))
            qFatal("refused");
        return told;
    };
    const QStringList withoutReminder = signalsOf("00000000");
    const QStringList withReminder = signalsOf("06150820");
    QVERIFY(withoutReminder.size() > 51 * 7); // the inverted band and the texts
    QCOMPARE(withReminder.mid(0, withoutReminder.size()), withoutReminder);
    QCOMPARE(withReminder.value(withoutReminder.size()), QString("reset"));
}

void TestABootlogoDataCalibration::comesTheDayAfterTheLastOne_data()
{
    QTest::addColumn<int>("days");
    QTest::addColumn<int>("daysAgo");
    QTest::addColumn<bool>("reminder");
    for (const int days : {1, 30, 730, 5000}) {
        QTest::addRow("%d days, the day before", days) << days << days - 1 << false;
        QTest::addRow("%d days, the day itself, from midnight on", days) << days << days << true;
        QTest::addRow("%d days, the day after", days) << days << days + 1 << true;
    }
    QTest::newRow("calibrated tomorrow") << 1 << -1 << false;
}

void TestABootlogoDataCalibration::comesTheDayAfterTheLastOne()
{
    QFETCH(int, days);
    QFETCH(int, daysAgo);
    QFETCH(bool, reminder);
    m_layout->setValue("CalibrationWarningDays", QString::number(days));
    QCOMPARE(isReminder(dateBytes(today().addDays(-daysAgo))), reminder);
}

void TestABootlogoDataCalibration::readsTheDate_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("reminder");
    const auto hex = [](const char *digits) { return QByteArray::fromHex(digits); };
    QTest::newRow("long ago") << hex("12310020") << true;
    QTest::newRow("the first day") << hex("01010020") << true;
    QTest::newRow("the day before, 1999, as 2000 less 1") << hex("1231ff20") << false;
    QTest::newRow("a year of the 1900s that a byte can hold") << hex("12317919") << false;
    QTest::newRow("a year beyond 79 counts down: 1999 is 1833") << hex("12319919") << false;
    QTest::newRow("in a hundred years") << hex("01012121") << false;
    QTest::newRow("zero bytes") << hex("00000000") << false;
    QTest::newRow("no entry") << QByteArray() << false;
    QTest::newRow("too short") << hex("123100") << false;
    QTest::newRow("too long") << hex("1231002000") << false;
    QTest::newRow("month 13") << hex("13010520") << false;
    QTest::newRow("month 0") << hex("00010520") << false;
    QTest::newRow("day 0") << hex("01000520") << false;
    QTest::newRow("day 32") << hex("01320520") << false;
    QTest::newRow("30 February") << hex("02300520") << false;
    QTest::newRow("29 February") << hex("02290420") << true;
    QTest::newRow("29 February of another year") << hex("02290520") << false;
    QTest::newRow("digits above 9: month 1 is 0 and 1, 12 is 0 and 12") << hex("0c010520") << true;
    QTest::newRow("digits above 9: day 1f is 25") << hex("011f0520") << true;
    QTest::newRow("digits above 9: day 2f is 35") << hex("012f0520") << false;
    QTest::newRow("a negative month") << hex("81010520") << false;
    QTest::newRow("a negative day") << hex("01990520") << false;
    QTest::newRow("a year beyond 79 counts down: 2099 is 1933") << hex("01019920") << false;
    QTest::newRow("and 2180 is 2020") << hex("01018021") << true;
    QTest::newRow("a negative century") << hex("01010599") << false;
    QTest::newRow("all ones") << hex("ffffffff") << false;
}

void TestABootlogoDataCalibration::readsTheDate()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, reminder);
    QCOMPARE(isReminder(bytes), reminder);
}

void TestABootlogoDataCalibration::readsTheDays_data()
{
    QTest::addColumn<QString>("days");
    QTest::addColumn<bool>("reminder");
    QTest::newRow("one") << "1" << true;
    QTest::newRow("none") << "0" << false;
    QTest::newRow("negative") << "-1" << false;
    QTest::newRow("empty") << "" << false;
    QTest::newRow("no number") << "two years" << false;
    QTest::newRow("a fraction") << "1.5" << false;
    QTest::newRow("the most") << "2147483647" << false;
    QTest::newRow("more than that is no number") << "2147483648" << false;
}

void TestABootlogoDataCalibration::readsTheDays()
{
    QFETCH(QString, days);
    QFETCH(bool, reminder);
    m_layout->setValue("CalibrationWarningDays", days);
    QCOMPARE(isReminder(QByteArray::fromHex("01010020")), reminder);
    m_layout->remove("CalibrationWarningDays");
    QVERIFY(!isReminder(QByteArray::fromHex("01010020")));
}

void TestABootlogoDataCalibration::comesByDefaultAfterTwoYears()
{
    for (const auto &[daysAgo, reminder] : {std::pair(729, false), std::pair(730, true)}) {
        ABootlogoData logo(nullptr);
        DeviceMemory memory = {{31, dateBytes(today().addDays(-daysAgo))}};
        QVERIFY(logo.fromDeviceInformation(QString(), nullptr, &m_device, memory, QString(), 0));
        QCOMPARE(rowsOf(logo).constFirst().contains('#'), !reminder); // the inverted band
    }
}

QTEST_MAIN(TestABootlogoDataCalibration)
#include "tst_abootlogodata_calibration.moc"
