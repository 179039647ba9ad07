#include "core/documentedfiles.h"
#include "core/nmealog.h"

#include <cmath>

// What sentences become: positions, times, dates and sensors.
class TestAGpsLoggerDevice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void oneSentenceGivesARecord_data();
    void oneSentenceGivesARecord();
    void whatGivesNoRecord_data();
    void whatGivesNoRecord();
    void aRecordHasNoNameAndNoText();
    void theSentencesOfOneTimeAreOneRecord();
    void fractionsOfASecondAreTimesOfTheirOwn();
    void aVoidSentenceTakesTheRecordOfItsTime_data();
    void aVoidSentenceTakesTheRecordOfItsTime();
    void anEmptyQualityIsNotVoid();
    void theQualityOfAFix_data();
    void theQualityOfAFix();
    void theDateOfARecord_data();
    void theDateOfARecord();
    void withoutAnyDateItIsTheCurrentOne();
    void aDateOnItsOwnIsNoRecord();
    void theTimeOfAFullSecondDoesNotCutAFractionalOne();
    void sensorsBelongToTheTimeTheyFollow();
    void sensorsBeforeTheFirstTimeBelongToIt();
    void sensorsOfAVoidTimeAreGone();
    void headingFromTheCompass_data();
    void headingFromTheCompass();
    void aHeadingInATiltedVehicle_data();
    void aHeadingInATiltedVehicle();
    void transducers_data();
    void transducers();
    void rawAxesAreTheRecordsOwn();
    void theDocumentedContentIsRead();
};

void TestAGpsLoggerDevice::oneSentenceGivesARecord_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<float>("latitude");
    QTest::addColumn<float>("longitude");
    QTest::addColumn<float>("altitude");
    QTest::addColumn<QTime>("time");
    const QTime noon(12, 35, 19);
    const auto row = [](const char *name, const QByteArray &content, float latitude, float longitude, float altitude,
                        const QTime &time) {
        QTest::newRow(name) << content << latitude << longitude << altitude << time;
    };
    row("RMC", "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A\r\n", 4807.038F, 1131.0F, 0.0F,
        noon);
    row("GGA", "$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n", 4807.038F, 1131.0F, 545.4F,
        noon);
    row("GLL", "$GPGLL,4916.45,N,12311.12,W,225444,A*31\r\n", 4916.45F, -12311.12F, 0.0F, QTime(22, 54, 44));
    row("GLL of old, without a status", nmea("GPGLL,4916.45,N,12311.12,W,225444"), 4916.45F, -12311.12F, 0.0F,
        QTime(22, 54, 44));
    row("GLL with a mode", nmea("GNGLL,4916.45,S,12311.12,E,225444.250,A,A"), -4916.45F, 12311.12F, 0.0F,
        QTime(22, 54, 44, 250));
    row("another talker", nmea("GLGGA,123519,4807.038,S,01131.000,W,2,08,0.9,545.4,M,46.9,M,,"), -4807.038F, -1131.0F,
        545.4F, noon);
    row("a talker that is no receiver", nmea("IIRMC,123519,A,4807.038,N,01131.000,E,,,230394,,"), 4807.038F, 1131.0F,
        0.0F, noon);
    row("no checksum", "$GPGLL,4916.45,N,12311.12,W,225444,A\r\n", 4916.45F, -12311.12F, 0.0F, QTime(22, 54, 44));
    row("no end of line", "$GPGLL,4916.45,N,12311.12,W,225444,A*31", 4916.45F, -12311.12F, 0.0F, QTime(22, 54, 44));
    row("neither", "$GPGLL,4916.45,N,12311.12,W,225444,A", 4916.45F, -12311.12F, 0.0F, QTime(22, 54, 44));
    row("no checksum, and a tab at the end", "$GPGLL,4916.45,N,12311.12,W,225444,A\t\r\n", 4916.45F, -12311.12F, 0.0F,
        QTime(22, 54, 44));
    row("no checksum, and blanks at the end", "$GPGLL,4916.45,N,12311.12,W,225444,A  \r\n", 4916.45F, -12311.12F, 0.0F,
        QTime(22, 54, 44));
    row("LF alone", nmea("GPGLL,4916.45,N,12311.12,W,225444,A", "\n"), 4916.45F, -12311.12F, 0.0F, QTime(22, 54, 44));
    row("a checksum in small letters",
        "$GPGLL,4916.45,N,12311.12,W,225447,A*32\n$GPGLL,4807.038,N,01131.000,E,"
        "225447,A*2a\n",
        4807.038F, 1131.0F, 0.0F, QTime(22, 54, 47));
    row("fractions beyond milliseconds are cut", nmea("GPGLL,4916.45,N,12311.12,W,225444.9999,A"), 4916.45F, -12311.12F,
        0.0F, QTime(22, 54, 44, 999));
    row("a trailing decimal sign", nmea("GPGLL,4916.,N,12311.,W,225444.,A"), 4916.0F, -12311.0F, 0.0F,
        QTime(22, 54, 44));
    row("many digits", nmea("GPGLL,4916.450000000000000000000,N,00000012311.12,W,225444,A"), 4916.45F, -12311.12F, 0.0F,
        QTime(22, 54, 44));
    row("below the sea", nmea("GPGGA,123519,3130.0,N,03530.0,E,1,08,0.9,-430.5,M,,M,,"), 3130.0F, 3530.0F, -430.5F,
        noon);
    row("no altitude", nmea("GPGGA,123519,3130.0,N,03530.0,E,1,08,0.9,,M,,M,,"), 3130.0F, 3530.0F, 0.0F, noon);
    row("an altitude that is cut off", "$GPGGA,123519,3130.0,N,03530.0,E,1,08,0.9,43", 3130.0F, 3530.0F, 0.0F, noon);
    row("where the equator meets the first meridian", nmea("GPGLL,0000.0,S,00000.0,W,123519,A"), 0.0F, 0.0F, 0.0F,
        noon);
    row("the pole", nmea("GPGLL,9000.0,N,18000.0,W,123519,A"), 9000.0F, -18000.0F, 0.0F, noon);
    row("with a tag block", "\\s:r3669961,c:1120959341*57\\" + nmea("GPGLL,4916.45,N,12311.12,W,225444,A"), 4916.45F,
        -12311.12F, 0.0F, QTime(22, 54, 44));
}

void TestAGpsLoggerDevice::oneSentenceGivesARecord()
{
    QFETCH(QByteArray, content);
    const QList<AGeoData> records = recordsOf(content);
    QCOMPARE(records.size(), 1);
    QTEST(records.first().latitude, "latitude");
    QTEST(records.first().longitude, "longitude");
    QTEST(records.first().altitude, "altitude");
    QTEST(records.first().recordTime.time(), "time");
    QCOMPARE(records.first().recordTime.timeSpec(), Qt::UTC);
    QVERIFY(!std::signbit(records.first().latitude) || records.first().latitude < 0.0F);
}

void TestAGpsLoggerDevice::whatGivesNoRecord_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("ends of lines") << QByteArray("\r\n\n\r\r\n");
    QTest::newRow("a dollar") << QByteArray("$");
    QTest::newRow("dollars") << QByteArray("$$$$\r\n$*$,\n");
    QTest::newRow("a wrong checksum") << QByteArray("$GPGLL,4916.45,N,12311.12,W,225444,A*32\r\n");
    QTest::newRow("half a checksum") << QByteArray("$GPGLL,4916.45,N,12311.12,W,225444,A*3\r\n");
    QTest::newRow("no digits of a checksum") << QByteArray("$GPGLL,4916.45,N,12311.12,W,225444,A*\r\n");
    QTest::newRow("letters that are no digits") << QByteArray("$GPGLL,4916.45,N,12311.12,W,225444,A*g1\r\n");
    QTest::newRow("noise within, no checksum") << QByteArray("$GPGLL,4916.45,N,123\x01.12,W,225444,A\r\n");
    QTest::newRow("void RMC") << rmc("123519", "170524", "V");
    QTest::newRow("void GLL") << gll("123519", "V");
    QTest::newRow("GGA without a fix") << gga("123519", "545.4", "0");
    QTest::newRow("no time") << gga("");
    QTest::newRow("time cut") << gga("12351");
    QTest::newRow("hour 24") << gga("240000");
    QTest::newRow("minute 60") << gga("126000");
    QTest::newRow("second 61") << gga("123561");
    QTest::newRow("time with a letter") << gga("12x519");
    QTest::newRow("no latitude") << nmea("GPGLL,,N,12311.12,W,225444,A");
    QTest::newRow("no position") << nmea("GPRMC,225444,A,,,,,,,170524,,");
    QTest::newRow("no hemisphere") << nmea("GPGLL,4916.45,,12311.12,W,225444,A");
    QTest::newRow("a hemisphere of the other sort") << nmea("GPGLL,4916.45,E,12311.12,W,225444,A");
    QTest::newRow("beyond the pole") << nmea("GPGLL,9000.01,N,12311.12,W,225444,A");
    QTest::newRow("beyond half around") << nmea("GPGLL,4916.45,N,18000.1,W,225444,A");
    QTest::newRow("60 minutes") << nmea("GPGLL,4960.0,N,12311.12,W,225444,A");
    QTest::newRow("a sign") << nmea("GPGLL,-4916.45,N,12311.12,W,225444,A");
    QTest::newRow("two decimal signs") << nmea("GPGLL,49.16.45,N,12311.12,W,225444,A");
    QTest::newRow("an exponent") << nmea("GPGLL,49e2,N,12311.12,W,225444,A");
    QTest::newRow("a number too long") << nmea("GPGLL,1234567890123456789012345,N,12311.12,W,225444,A");
    QTest::newRow("a maker's own sentence") << nmea("PGRMC,225444,A,4807.038,N,01131.000,E,022.4,084.4,170524,,");
    QTest::newRow("another sentence") << nmea("GPGSA,A,3,28,08,11,27,07,,,,,,,,4.9,1.6,4.5");
    QTest::newRow("no comma behind the kind") << nmea("GPGLLX,4916.45,N,12311.12,W,225444,A");
    QTest::newRow("a date alone") << nmea("GPZDA,123519,17,05,2024,00,00");
    QTest::newRow("a heading alone") << nmea("HCHDG,101.1,,,7.1,W");
    QTest::newRow("cut by the next dollar") << QByteArray("$GPGLL,4916.45,N,12311.12,W,225444$GPGSA,A\r\n");
}

void TestAGpsLoggerDevice::whatGivesNoRecord()
{
    QFETCH(QByteArray, content);
    QCOMPARE(recordsOf(content).size(), 0);
    QCOMPARE(timesOf(recordsOf(content + rmc("010203"))), QList<QDateTime>{utc(2024, 5, 17, 1, 2, 3)});
}

void TestAGpsLoggerDevice::aRecordHasNoNameAndNoText()
{
    const QList<AGeoData> records = recordsOf(rmc("123519") + gga("123519", "545.4", "4"));
    QCOMPARE(records.size(), 1);
    const AGeoData &record = records.first();
    QVERIFY(record.recordName.isEmpty());
    QVERIFY(record.description.isEmpty()); // an application would not write its own otherwise
    QCOMPARE(record.fix, quint8(4));
    QCOMPARE(record.speed, 22.4F);
    QCOMPARE(record.course, 84.4F);
    QCOMPARE(record.airPressure, 0.0F);
    QCOMPARE(record.estimateHeading(true), 0.0);
}

void TestAGpsLoggerDevice::theSentencesOfOneTimeAreOneRecord()
{
    const QByteArray other = nmea("GPGSA,A,3,28,08,11,27,07,,,,,,,,4.9,1.6,4.5");
    const QList<AGeoData> records =
        recordsOf(gga("123519") + other + rmc("123519.000") + gll("123519.0") + gll("123520") + rmc("123520") + other +
                  gga("123520", "546.5") + rmc("123521"));
    QCOMPARE(timesOf(records), (QList<QDateTime>{utc(2024, 5, 17, 12, 35, 19), utc(2024, 5, 17, 12, 35, 20),
                                                 utc(2024, 5, 17, 12, 35, 21)}));
    QCOMPARE(records.at(0).altitude, 545.4F);
    QCOMPARE(records.at(0).speed, 22.4F);
    QCOMPARE(records.at(1).altitude, 546.5F);
    QCOMPARE(records.at(2).altitude, 0.0F);
}

void TestAGpsLoggerDevice::fractionsOfASecondAreTimesOfTheirOwn()
{
    const QList<AGeoData> records = recordsOf(rmc("123519.1") + rmc("123519.2") + gga("123519.20") + rmc("123519.299"));
    QCOMPARE(timesOf(records), (QList<QDateTime>{utc(2024, 5, 17, 12, 35, 19, 100), utc(2024, 5, 17, 12, 35, 19, 200),
                                                 utc(2024, 5, 17, 12, 35, 19, 299)}));
}

void TestAGpsLoggerDevice::aVoidSentenceTakesTheRecordOfItsTime_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("RMC last") << gga("123519") + rmc("123519", "170524", "V");
    QTest::newRow("RMC first") << rmc("123519", "170524", "V") + gga("123519");
    QTest::newRow("GGA last") << rmc("123519") + gga("123519", "1", "0");
    QTest::newRow("GLL last") << rmc("123519") + gll("123519", "V");
}

void TestAGpsLoggerDevice::aVoidSentenceTakesTheRecordOfItsTime()
{
    QFETCH(QByteArray, content);
    QCOMPARE(timesOf(recordsOf(rmc("123518") + content + rmc("123520"))),
             (QList<QDateTime>{utc(2024, 5, 17, 12, 35, 18), utc(2024, 5, 17, 12, 35, 20)}));
}

void TestAGpsLoggerDevice::anEmptyQualityIsNotVoid()
{
    for (const QByteArray &quality : {QByteArray(), QByteArray("x")}) {
        const QList<AGeoData> records = recordsOf(rmc("123519") + gga("123519", "545.4", quality));
        QCOMPARE(records.size(), 1);
        QCOMPARE(records.first().fix, quint8(1));
        QCOMPARE(records.first().altitude, 545.4F);
    }
}

void TestAGpsLoggerDevice::theQualityOfAFix_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("quality");
    QTest::newRow("not said") << rmc("123519") << 1;
    QTest::newRow("GGA first") << gga("123519", "1", "4") + rmc("123519") + gll("123519") << 4;
    QTest::newRow("GGA last") << rmc("123519") + gga("123519", "1", "5") << 5;
    QTest::newRow("the largest") << gga("123519", "1", "8") << 8;
    QTest::newRow("beyond it") << gga("123519", "1", "9") << 8;
    QTest::newRow("beyond a byte") << gga("123519", "1", "300") << 8;
    QTest::newRow("beyond an integer") << gga("123519", "1", "99999999999") << 8;
}

void TestAGpsLoggerDevice::theQualityOfAFix()
{
    QFETCH(QByteArray, content);
    QFETCH(int, quality);
    const QList<AGeoData> records = recordsOf(content);
    QCOMPARE(records.size(), 1);
    QCOMPARE(int(records.first().fix), quality);
}

void TestAGpsLoggerDevice::theDateOfARecord_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QList<QDateTime>>("times");
    const QDateTime noon = utc(2024, 5, 17, 12, 35, 19);
    const QDateTime before = utc(2024, 5, 16, 23, 59, 59);
    const QDateTime after = utc(2024, 5, 17, 0, 0, 1);
    const QByteArray zda = nmea("GPZDA,123519,17,05,2024,00,00");
    const auto row = [](const char *name, const QByteArray &content, const QList<QDateTime> &times) {
        QTest::newRow(name) << content << times;
    };
    row("of RMC", rmc("123519"), {noon});
    row("of RMC, behind GGA", gga("123519") + rmc("123519"), {noon});
    row("of ZDA", zda + gga("123519"), {noon});
    row("of ZDA, behind GGA", gga("123519") + zda, {noon});
    row("of ZDA with the digits of days and months alone", nmea("GPZDA,123519,17,5,2024,,") + gga("123519"), {noon});
    row("year 79", rmc("123519", "170579"), {utc(2079, 5, 17, 12, 35, 19)});
    row("year 80", rmc("123519", "170580"), {utc(1980, 5, 17, 12, 35, 19)});
    row("year 99", rmc("123519", "170599"), {utc(1999, 5, 17, 12, 35, 19)});
    row("year 00", rmc("123519", "290200"), {utc(2000, 2, 29, 12, 35, 19)});
    row("no such date, then one", rmc("123518", "310224") + rmc("123519"), {noon.addSecs(-1), noon});
    row("no date, then one", rmc("123518", "") + rmc("123519"), {noon.addSecs(-1), noon});
    row("before the first date of the file", gga("123517") + gll("123518") + rmc("123519"),
        {noon.addSecs(-2), noon.addSecs(-1), noon});
    row("before midnight and the first date", gga("235959") + gga("000000") + rmc("000001"),
        {before, after.addSecs(-1), after});
    row("two midnights before the first date", gga("120000") + gga("000500") + gga("235959") + rmc("000001"),
        {utc(2024, 5, 15, 12, 0, 0), utc(2024, 5, 16, 0, 5, 0), before, after});
    row("across midnight without a date", rmc("235959", "160524") + gga("000001"), {before, after});
    row("across the end of a leap year", rmc("235959", "311224") + gga("000000"),
        {utc(2024, 12, 31, 23, 59, 59), utc(2025, 1, 1, 0, 0, 0)});
    row("two midnights", rmc("235958", "150524") + gga("120000") + gga("235959") + gga("000001"),
        {utc(2024, 5, 15, 23, 59, 58), utc(2024, 5, 16, 12, 0, 0), before, after});
    row("a straggler from before midnight", rmc("000001") + gll("235959") + gga("000002"),
        {after, before, after.addSecs(1)});
    row("ZDA across midnight behind the fix",
        nmea("GPZDA,235959,16,05,2024,,") + gga("235959.5") + nmea("GPZDA,000000,17,05,2024,,") + gga("000000.5"),
        {before.addMSecs(500), after.addMSecs(-500)});
    row("ZDA of the next day does not redate a dated fix", rmc("235959", "160524") + nmea("GPZDA,000000,17,05,2024,,"),
        {before});
    row("the next morning", rmc("180000", "160524") + gga("083000"),
        {utc(2024, 5, 16, 18, 0, 0), utc(2024, 5, 17, 8, 30, 0)});
    row("a little back is no day", rmc("123519") + gga("123518"), {noon, noon.addSecs(-1)});
    row("a new date of RMC", rmc("123519") + rmc("123519.5", "180524") + gga("123521"),
        {noon, noon.addDays(1).addMSecs(500), noon.addDays(1).addSecs(2)});
    row("of a void fix, when there is no other", rmc("123518", "170524", "V") + gga("123519"), {noon});
    row("a void fix does not change a date", rmc("123518") + rmc("123518.5", "060180", "V") + gga("123519"),
        {noon.addSecs(-1), noon});
    row("a fix wins over a void one before it", rmc("123517", "060180", "V") + gga("123518") + rmc("123519"),
        {noon.addSecs(-1), noon});
    row("blanks behind it", "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,170524 \t \r\n", {noon});
    row("the same time on three days",
        rmc("123519", "160524") + rmc("123519") + gga("123519") + rmc("123519", "180524"),
        {noon.addDays(-1), noon, noon.addDays(1)});
    row("the same time again on the day before", rmc("123519") + rmc("123519", "160524"), {noon, noon.addDays(-1)});
    row("ZDA of the day before, for a fix just after midnight",
        gga("000000.5") + nmea("GPZDA,235959,16,05,2024,,") + gga("000001.5"),
        {after.addMSecs(-500), after.addMSecs(500)});
    row("ZDA does not redate a dated fix, whatever follows",
        rmc("123519") + gga("123519") + nmea("GPZDA,123519,20,5,2024"), {noon});
    row("the first of two void dates counts for what is before",
        gga("123517") + rmc("123518", "170524", "V") + rmc("123518.5", "190524", "V"), {noon.addSecs(-2)});
    row("a leap second", rmc("235959", "160524") + gga("235960.5"), {before, utc(2024, 5, 17, 0, 0, 0, 500)});
}

void TestAGpsLoggerDevice::theDateOfARecord()
{
    QFETCH(QByteArray, content);
    QFETCH(QList<QDateTime>, times);
    QCOMPARE(timesOf(recordsOf(content)), times);
}

void TestAGpsLoggerDevice::withoutAnyDateItIsTheCurrentOne()
{
    const QDate before = QDateTime::currentDateTimeUtc().date();
    const QList<AGeoData> records = recordsOf(gga("235959") + gll("000001"));
    const QDate after = QDateTime::currentDateTimeUtc().date();
    QCOMPARE(records.size(), 2);
    const QDate date = records.at(0).recordTime.date();
    QVERIFY(date >= before && date <= after);
    QCOMPARE(records.at(1).recordTime.date(), date.addDays(1));
}

void TestAGpsLoggerDevice::aDateOnItsOwnIsNoRecord()
{
    const QByteArray zda = nmea("GPZDA,123519,17,05,2024,00,00");
    QCOMPARE(recordsOf(zda + zda + nmea("GPZDA,123520,17,05,2024,00,00")).size(), 0);
}

void TestAGpsLoggerDevice::theTimeOfAFullSecondDoesNotCutAFractionalOne()
{
    const QList<AGeoData> records = recordsOf(gga("123519.379") + nmea("GPZDA,123519,17,05,2024,00,00") +
                                              nmea("HCHDG,90.0,,,,") + rmc("123519.379"));
    QCOMPARE(timesOf(records), QList<QDateTime>{utc(2024, 5, 17, 12, 35, 19, 379)});
    QCOMPARE(records.first().altitude, 545.4F);
    QCOMPARE(records.first().speed, 22.4F);
    QVERIFY(std::abs(records.first().estimateHeading(true) - 90.0) < 1e-4);
}

void TestAGpsLoggerDevice::sensorsBelongToTheTimeTheyFollow()
{
    const QList<AGeoData> records = recordsOf(rmc("123519") + nmea("WIXDR,P,1.0132,B,BARO") + rmc("123520") +
                                              rmc("123521") + nmea("WIXDR,P,98765,P,BARO"));
    QCOMPARE(records.size(), 3);
    QCOMPARE(records.at(0).airPressure, 1013.2F);
    QCOMPARE(records.at(1).airPressure, 0.0F);
    QCOMPARE(records.at(2).airPressure, 987.65F);
}

void TestAGpsLoggerDevice::sensorsBeforeTheFirstTimeBelongToIt()
{
    const QList<AGeoData> records = recordsOf(nmea("WIXDR,P,1.0132,B,BARO") + rmc("123519") + rmc("123520"));
    QCOMPARE(records.size(), 2);
    QCOMPARE(records.at(0).airPressure, 1013.2F);
    QCOMPARE(records.at(1).airPressure, 0.0F);
}

void TestAGpsLoggerDevice::sensorsOfAVoidTimeAreGone()
{
    const QList<AGeoData> records =
        recordsOf(rmc("123519", "170524", "V") + nmea("WIXDR,P,1.0132,B,BARO") + rmc("123520"));
    QCOMPARE(records.size(), 1);
    QCOMPARE(records.at(0).airPressure, 0.0F);
}

void TestAGpsLoggerDevice::headingFromTheCompass_data()
{
    QTest::addColumn<QByteArray>("sentence");
    QTest::addColumn<double>("heading");
    QTest::newRow("bare") << nmea("HCHDG,101.1,,,,") << 101.1;
    QTest::newRow("deviation and variation are not applied") << nmea("HCHDG,98.3,2.0,E,12.6,W") << 98.3;
    QTest::newRow("north") << nmea("HCHDG,0.0,,,,") << 0.0;
    QTest::newRow("just west of north") << nmea("IIHDG,359.9,,,,") << 359.9;
    QTest::newRow("a full circle") << nmea("IIHDG,360.0,,,,") << 0.0;
    QTest::newRow("the last one holds") << nmea("HCHDG,10,,,,") + nmea("HCHDG,200.5,,,,") << 200.5;
    QTest::newRow("none") << nmea("HCHDG,,,,,") << 0.0;
    QTest::newRow("no number") << nmea("HCHDG,east,,,,") << 0.0;
}

void TestAGpsLoggerDevice::headingFromTheCompass()
{
    QFETCH(QByteArray, sentence);
    QFETCH(double, heading);
    const QList<AGeoData> records = recordsOf(rmc("123519") + sentence);
    QCOMPARE(records.size(), 1);
    const double off = std::abs(records.first().estimateHeading(true) - heading);
    QVERIFY2(std::min(off, 360.0 - off) < 1e-4, qPrintable(QString::number(records.first().estimateHeading(true))));
    QCOMPARE(records.first().convertTiltToDegree(), QVector3D());
}

void TestAGpsLoggerDevice::aHeadingInATiltedVehicle_data()
{
    QTest::addColumn<QByteArray>("tilt");
    QTest::addColumn<QVector3D>("degrees");
    QTest::newRow("angles") << nmea("YXXDR,A,-12.5,D,PITCH,A,30.25,D,ROLL") << QVector3D(-12.5F, 30.25F, 0);
    QTest::newRow("the short name, in two sentences")
        << nmea("YXXDR,A,4.0,D,PTCH") + nmea("YXXDR,A,-60,D,ROLL") << QVector3D(4, -60, 0);
    QTest::newRow("small letters") << nmea("YXXDR,A,4.0,D,Pitch,A,5.0,D,roll") << QVector3D(4, 5, 0);
    QTest::newRow("level") << nmea("YXXDR,A,0.0,D,PITCH,A,0.0,D,ROLL") << QVector3D(0, 0, 0);
    QTest::newRow("pitch alone") << nmea("YXXDR,A,45,D,PITCH") << QVector3D(45, 0, 0);
    QTest::newRow("from the raw axes") << nmea("YXXDR,G,-1,,ACCX,G,0,,ACCY,G,1,,ACCZ") << QVector3D(45, 0, 0);
}

void TestAGpsLoggerDevice::aHeadingInATiltedVehicle()
{
    QFETCH(QByteArray, tilt);
    QFETCH(QVector3D, degrees);
    const QByteArray compass = nmea("HCHDG,123.25,,,,");
    for (const QByteArray &sensors : {tilt + compass, compass + tilt}) {
        const QList<AGeoData> records = recordsOf(rmc("123519") + sensors);
        QCOMPARE(records.size(), 1);
        QVERIFY(std::abs(records.first().estimateHeading(true) - 123.25) < 1e-3);
        QVERIFY((records.first().convertTiltToDegree() - degrees).length() < 1e-4F);
    }
}

void TestAGpsLoggerDevice::transducers_data()
{
    QTest::addColumn<QByteArray>("fields");
    QTest::addColumn<float>("pressure");
    QTest::addColumn<float>("pitch");
    QTest::newRow("pressure in bar") << QByteArray("P,1.0132,B,Barometer") << 1013.2F << 0.0F;
    QTest::newRow("pressure in pascal") << QByteArray("P,101320,P,") << 1013.2F << 0.0F;
    QTest::newRow("pressure in an unknown unit") << QByteArray("P,30.1,I,BARO") << 0.0F << 0.0F;
    QTest::newRow("pressure without a unit") << QByteArray("P,30.1,,BARO") << 0.0F << 0.0F;
    QTest::newRow("among others") << QByteArray("C,19.5,C,AIR,A,7.5,D,PITCH,H,55,P,HUM,P,0.95,B,BARO") << 950.0F
                                  << 7.5F;
    QTest::newRow("cut behind a quadruple") << QByteArray("A,7.5,D,PITCH,P,1.0") << 0.0F << 7.5F;
    QTest::newRow("no number") << QByteArray("P,,B,BARO,A,x,D,PITCH") << 0.0F << 0.0F;
    QTest::newRow("no type") << QByteArray(",1.0,B,BARO,A,7.5,D,PITCH") << 0.0F << 7.5F;
    QTest::newRow("many") << QByteArray("A,1,D,OTHER,").repeated(40) + "A,7.5,D,PTCH" << 0.0F << 7.5F;
    QTest::newRow("nothing") << QByteArray() << 0.0F << 0.0F;
    QTest::newRow("commas") << QByteArray(",,,,,,,,,,") << 0.0F << 0.0F;
}

void TestAGpsLoggerDevice::transducers()
{
    QFETCH(QByteArray, fields);
    QFETCH(float, pitch);
    const QList<AGeoData> records = recordsOf(rmc("123519") + nmea("YXXDR," + fields));
    QCOMPARE(records.size(), 1);
    QTEST(records.first().airPressure, "pressure");
    QVERIFY(std::abs(records.first().convertTiltToDegree().x() - pitch) < 1e-4F);
}

void TestAGpsLoggerDevice::rawAxesAreTheRecordsOwn()
{
    const QList<AGeoData> records = recordsOf(rmc("123519") + nmea("YXXDR,G,0.1,G,ACCX,G,-0.2,G,ACCY,G,0.97,G,ACCZ") +
                                              nmea("YXXDR,G,20.5,T,MAGX,G,-3.25,T,MAGY,G,43,T,MAGZ") +
                                              nmea("YXXDR,A,90,D,GYRX,A,-180,D,GYRY,A,1.5,R,GYRZ"));
    QCOMPARE(records.size(), 1);
    const AGeoData &record = records.first();
    QCOMPARE(record.accelerometer[0], 0.1F);
    QCOMPARE(record.accelerometer[1], -0.2F);
    QCOMPARE(record.accelerometer[2], 0.97F);
    QCOMPARE(record.magnetometer[0], 20.5F);
    QCOMPARE(record.magnetometer[1], -3.25F);
    QCOMPARE(record.magnetometer[2], 43.0F);
    QCOMPARE(record.gyroscope[2], 1.5F);
    QVERIFY((record.convertGyroToDegree() - QVector3D(90.0F, -180.0F, 85.943669F)).length() < 1e-3F);
}

void TestAGpsLoggerDevice::theDocumentedContentIsRead()
{
    const QList<QByteArray> files = documentedFiles("NMEA content");
    QCOMPARE(files.size(), 1);
    const QList<AGeoData> records = recordsOf(files.first());
    QCOMPARE(timesOf(records), QList<QDateTime>{utc(2024, 5, 17, 12, 35, 19)});
    const AGeoData &record = records.first();
    QCOMPARE(record.latitude, 4807.038F);
    QCOMPARE(record.altitude, 545.4F);
    QCOMPARE(record.speed, 22.4F);
    QCOMPARE(record.airPressure, 1013.2F);
    QVERIFY(std::abs(record.estimateHeading(true) - 101.1) < 1e-3);
    QVERIFY((record.convertTiltToDegree() - QVector3D(-2.5F, 1.0F, 0.0F)).length() < 1e-4F);
}

QTEST_GUILESS_MAIN(TestAGpsLoggerDevice)
#include "tst_agpsloggerdevice.moc"
