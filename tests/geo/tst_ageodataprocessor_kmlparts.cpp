#include "core/emu.h"

#include "geo/processor.h"

#include <QtTest/QtTest>

#include <cmath>
#include <memory>

namespace {

using Points = QList<AGeoData *>;

struct Path
{
    QString name = "Path";
    QString styleUrl = "#lineRed";
    QString altitudeMode = "relativeToGround";
    bool withTimeTrack = false;
    int labelFlags = 0;
    float elevationScale = 100.0F;
};

AGeoData described(qint64 milliseconds, const QString &name, const QString &description)
{
    AGeoData record = position(milliseconds);
    record.recordName = name;
    record.description = description;
    return record;
}

} // namespace

class TestAGeoDataProcessorKmlParts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aStyleHasTheColourReversedAndACurtainHalfAsOpaque_data();
    void aStyleHasTheColourReversedAndACurtainHalfAsOpaque();
    void theValueRow_data();
    void theValueRow();
    void theBalloonIsClosed();
    void withoutABalloonTheDescriptionIsEmpty();
    void theLabelFollowsTheName_data();
    void theLabelFollowsTheName();
    void theHeightIsThatOfTheValueInTheRecording_data();
    void theHeightIsThatOfTheValueInTheRecording();
    void theHeightIsOfTheValueNotOfWhatIsShown();
    void anEmptyRangeGivesNoNumber();
    void theValueInTheName();
    void theLocaleIsForFrequenciesAlone();
    void placeholdersInTextsStayWhole();
    void aSensorPointHasAHeightAndNoDescription();
    void aPathWithoutPoints();
    void aPathOfPointsWithoutDescriptions();
    void aPathWithWaypoints();
    void aPathWithATimeTrack();
    void aPointWithoutADescriptionIsPartOfTheLineAlone();
    void theNameOfAWaypoint_data();
    void theNameOfAWaypoint();
    void numbersHaveSixDecimals();
    void aPointWithoutATimeHasAnEmptyWhen();
    void whatXmlCantHoldIsLeftOut();
    void withoutADocumentThereIsNoElement();
    void nullAmongThePointsIsPassedOver();
    void pathsOfManyPointsGrowWithTheirNumber();

private:
    QDomElement path(const QList<AGeoData> &records, const Path &path)
    {
        m_document.clear();
        Points points;
        for (const AGeoData &record : records)
            points.append(const_cast<AGeoData *>(&record)); // the path only reads
        const Processor processor(nullptr);
        return processor.addKmlPath(&m_document, path.name, points, path.styleUrl, path.altitudeMode,
                                    path.withTimeTrack, path.labelFlags, path.elevationScale);
    }

    QDomDocument m_document;
};

void TestAGeoDataProcessorKmlParts::aStyleHasTheColourReversedAndACurtainHalfAsOpaque_data()
{
    QTest::addColumn<QString>("color");
    QTest::addColumn<int>("width");
    QTest::addColumn<QString>("outlined");
    QTest::addColumn<QStringList>("texts");

    const QString bare = "LineStyle(color) PolyStyle(color)";
    const QString wide = "LineStyle(color width) PolyStyle(color)";
    QTest::newRow("red") << "ff0000ff" << -1 << bare << QStringList{"ff0000ff", "7f0000ff", "(none)"};
    QTest::newRow("every pair moves") << "11223344" << -1 << bare << QStringList{"44332211", "22332211", "(none)"};
    QTest::newRow("width 0") << "ff0000ff" << 0 << wide << QStringList{"ff0000ff", "7f0000ff", "0"};
    QTest::newRow("width 12") << "ff0000ff" << 12 << wide << QStringList{"ff0000ff", "7f0000ff", "12"};
    QTest::newRow("an opacity of 1") << "ff000001" << -1 << bare << QStringList{"010000ff", "000000ff", "(none)"};
    QTest::newRow("capitals") << "AABBCCFE" << -1 << bare << QStringList{"FECCBBAA", "7fCCBBAA", "(none)"};
    QTest::newRow("a leading zero") << "0000001e" << -1 << bare << QStringList{"1e000000", "0f000000", "(none)"};
}

void TestAGeoDataProcessorKmlParts::aStyleHasTheColourReversedAndACurtainHalfAsOpaque()
{
    QFETCH(QString, color);
    QFETCH(int, width);
    QFETCH(QString, outlined);
    QFETCH(QStringList, texts);
    QDomDocument document;
    const Processor processor(nullptr);
    const QDomElement style = processor.createStyleElement(&document, "anId", color, width);
    QVERIFY(style.parentNode().isNull());
    QCOMPARE(style.tagName(), QString("Style"));
    QCOMPARE(style.attribute("id"), QString("anId"));
    QCOMPARE(outline(style), outlined);
    QCOMPARE((QStringList{textAt(style, "LineStyle/color"), textAt(style, "PolyStyle/color"),
                          textAt(style, "LineStyle/width")}),
             texts);
}

void TestAGeoDataProcessorKmlParts::theValueRow_data()
{
    QTest::addColumn<double>("level");
    QTest::addColumn<int>("unit");
    QTest::addColumn<QString>("text");
    QTest::newRow("dBm") << -47.12345 << kdBm << "-47.123 dBm";
    QTest::newRow("dBm has no prefix") << 0.001 << kdBm << "0.001 dBm";
    QTest::newRow("millivolt") << 0.0123456 << kV << "12.346 mV";
    QTest::newRow("divided in extended precision") << 5.0065e-6 << kV << QString::fromUtf8("5.006 \u00b5V");
    QTest::newRow("rounded after that") << 0.0050025 << kV << "5.003 mV";
    QTest::newRow("volt up to 5000") << 4999.0 << kV << "4999.000 V";
    QTest::newRow("kilovolt from 5000") << 5000.0 << kV << "5.000 kV";
    QTest::newRow("microwatt") << 4e-6 << kW << QString::fromUtf8("4000.000 nW");
    QTest::newRow("zero volt") << 0.0 << kV << "0.000 V";
    QTest::newRow("negative volt") << -0.5 << kV << "-500.000 mV";
    QTest::newRow("no number") << std::nan("") << kV << "nan V";
    QTest::newRow("an unknown unit") << 12.5 << 99 << "12.500 ";
}

void TestAGeoDataProcessorKmlParts::theValueRow()
{
    QFETCH(double, level);
    QFETCH(int, unit);
    QFETCH(QString, text);
    const Processor processor(nullptr);
    const AMeasurementValue value(level, static_cast<quint8>(unit), megahertz(100), 0, 0.0);
    const std::unique_ptr<AGeoData> point(
        processor.completeWaypoint(described(0, "P", "<table>"), value, "Average", false, 0.0F, false, false));
    QCOMPARE(point->description, "<table><tr><td>Average Value:</td><td>" + text + "</td></tr>\n</table>\n");
}

void TestAGeoDataProcessorKmlParts::theBalloonIsClosed()
{
    const Processor processor(nullptr);
    const AMeasurementValue value(-50.0, kdBm, AFrequency("100.5 MHz"), 0, 0.0);
    const std::unique_ptr<AGeoData> point(
        processor.completeWaypoint(described(0, "P", "<table>\n"), value, "Maximum", true, 0.0F, false, false));
    QCOMPARE(point->description, QString("<table>\n<tr><td>Maximum Value:</td><td>-50.000 dBm</td></tr>\n"
                                         "<tr><td>Frequency:</td><td>100.500000 MHz</td></tr>\n</table>\n"));
    QCOMPARE(point->recordName, QString("P Maximum"));
    QCOMPARE(point->altitude, 500.0F);
    QCOMPARE(point->recordTime, at(0));
}

void TestAGeoDataProcessorKmlParts::withoutABalloonTheDescriptionIsEmpty()
{
    const Processor processor(nullptr);
    const AGeoData record = described(0, "P", "<table>");
    const AMeasurementValue value(-50.0, kdBm, megahertz(100), 0, 0.0);
    const std::unique_ptr<AGeoData> point(
        processor.completeWaypoint(record, value, "Maximum", true, 0.0F, true, false));
    QCOMPARE(point->description, QString());
    QCOMPARE(point->recordName, QString("P"));
    QCOMPARE(point->altitude, record.altitude);
    QCOMPARE(point->latitude, record.latitude);
    QCOMPARE(point->longitude, record.longitude);
    QCOMPARE(point->recordTime, record.recordTime);
}

void TestAGeoDataProcessorKmlParts::theLabelFollowsTheName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("result");
    QTest::newRow("a name") << "P"
                            << "P Maximum";
    QTest::newRow("none") << ""
                          << " Maximum";
    QTest::newRow("the label already") << "P Maximum"
                                       << "P Maximum";
    QTest::newRow("the label alone") << "Maximum"
                                     << "Maximum";
    QTest::newRow("another case") << "P maximum"
                                  << "P maximum Maximum";
    QTest::newRow("amid") << "Maximum P"
                          << "Maximum P Maximum";
}

void TestAGeoDataProcessorKmlParts::theLabelFollowsTheName()
{
    QFETCH(QString, name);
    QFETCH(QString, result);
    const Processor processor(nullptr);
    const std::unique_ptr<AGeoData> point(
        processor.completeWaypoint(described(0, name, ""), AMeasurementValue(), "Maximum", false, 0.0F, false, false));
    QCOMPARE(point->recordName, result);
}

void TestAGeoDataProcessorKmlParts::theHeightIsThatOfTheValueInTheRecording_data()
{
    QTest::addColumn<double>("level");
    QTest::addColumn<float>("scale");
    QTest::addColumn<float>("altitude");
    QTest::newRow("the lowest") << -100.0 << 200.0F << 0.0F;
    QTest::newRow("the highest") << 0.0 << 200.0F << 200.0F;
    QTest::newRow("between") << -75.0 << 200.0F << 50.0F;
    QTest::newRow("beyond") << 50.0 << 200.0F << 300.0F;
    QTest::newRow("scale 0") << -75.0 << 0.0F << 500.0F;
    QTest::newRow("scale below 0") << -75.0 << -1.0F << 500.0F;
}

void TestAGeoDataProcessorKmlParts::theHeightIsThatOfTheValueInTheRecording()
{
    QFETCH(double, level);
    QFETCH(float, scale);
    QFETCH(float, altitude);
    Processor processor(nullptr);
    processor.m_minimum.level = -100.0;
    processor.m_maximum.level = 0.0;
    const AMeasurementValue value(level, kdBm, megahertz(100), 0, 0.0);
    for (const bool withoutBalloon : {false, true}) {
        const std::unique_ptr<AGeoData> point(
            processor.completeWaypoint(position(0), value, "Maximum", true, scale, withoutBalloon, false));
        QCOMPARE(point->altitude, altitude);
    }
}

// 50 mV is half of 100 mV.
void TestAGeoDataProcessorKmlParts::theHeightIsOfTheValueNotOfWhatIsShown()
{
    Processor processor(nullptr);
    processor.m_maximum.level = 0.1;
    const AMeasurementValue value(0.05, kV, megahertz(100), 0, 0.0);
    const std::unique_ptr<AGeoData> point(
        processor.completeWaypoint(described(0, "P", "<table>"), value, "Maximum", false, 100.0F, false, false));
    QVERIFY(point->description.contains("50.000 mV"));
    QCOMPARE(point->altitude, 50.0F);
}

void TestAGeoDataProcessorKmlParts::anEmptyRangeGivesNoNumber()
{
    Processor processor(nullptr);
    processor.m_minimum.level = processor.m_maximum.level = -50.0;
    const AMeasurementValue value(-50.0, kdBm, megahertz(100), 0, 0.0);
    const std::unique_ptr<AGeoData> point(
        processor.completeWaypoint(position(0), value, "Maximum", true, 10.0F, true, false));
    QVERIFY(std::isnan(point->altitude));
    const QDomElement folder = path({*point}, {});
    QCOMPARE(textAt(folder, "Placemark/LineString/coordinates"),
             QString("11.250000,48.500000,nan\n11.250000,48.500000,nan\n"));
    const std::unique_ptr<AGeoData> sensor(processor.completeWaypoint(position(0), 3.0F, 10.0F, 3.0F, 3.0F));
    QVERIFY(std::isnan(sensor->altitude));
}

void TestAGeoDataProcessorKmlParts::theValueInTheName()
{
    const Processor processor(nullptr);
    const AMeasurementValue value(0.0015, kV, AFrequency("100.5 MHz"), 0, 0.0);
    for (const bool withoutBalloon : {false, true}) {
        const std::unique_ptr<AGeoData> point(
            processor.completeWaypoint(described(0, "P", ""), value, "Maximum", true, 0.0F, withoutBalloon, true));
        QCOMPARE(point->recordName, QString(withoutBalloon ? "P" : "P Maximum") + " (" + value.formatValueString(true) +
                                        " @ 100.500000 MHz)");
    }
}

void TestAGeoDataProcessorKmlParts::theLocaleIsForFrequenciesAlone()
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    const Processor processor(nullptr);
    const AMeasurementValue value(-50.25, kdBm, AFrequency("1234.5 MHz"), 0, 0.0);
    std::unique_ptr<AGeoData> point(
        processor.completeWaypoint(described(0, "P", "<table>"), value, "Maximum", true, 0.0F, false, true));
    const QDomElement folder = path({*point}, {});
    QLocale::setDefault(before);
    QCOMPARE(point->description, QString("<table><tr><td>Maximum Value:</td><td>-50.250 dBm</td></tr>\n"
                                         "<tr><td>Frequency:</td><td>1.234,500000 MHz</td></tr>\n</table>\n"));
    QVERIFY2(point->recordName.endsWith("@ 1.234,500000 MHz)"), qPrintable(point->recordName));
    QCOMPARE(textAt(folder, "Folder/Placemark/Point/coordinates"), QString("11.250000,48.500000,500.000000"));
    QCOMPARE(textAt(folder, "Placemark/LineString/coordinates"),
             QString("11.250000,48.500000,500.000000\n11.250000,48.500000,500.005000\n"));
}

void TestAGeoDataProcessorKmlParts::placeholdersInTextsStayWhole()
{
    const Processor processor(nullptr);
    const AMeasurementValue value(1.0, kdBm, megahertz(100), 0, 0.0);
    const std::unique_ptr<AGeoData> point(
        processor.completeWaypoint(described(0, "%1 %3", "%2"), value, "%2", true, 0.0F, false, true));
    QCOMPARE(point->description, QString("%2<tr><td>%2 Value:</td><td>1.000 dBm</td></tr>\n"
                                         "<tr><td>Frequency:</td><td>100.000000 MHz</td></tr>\n</table>\n"));
    QCOMPARE(point->recordName, QString("%1 %3 %2 (1.00 dBm @ 100.000000 MHz)"));
}

void TestAGeoDataProcessorKmlParts::aSensorPointHasAHeightAndNoDescription()
{
    const Processor processor(nullptr);
    const AGeoData record = described(0, "P", "<table>");
    std::unique_ptr<AGeoData> point(processor.completeWaypoint(record, 20.0F, 100.0F, 10.0F, 50.0F));
    QCOMPARE(point->altitude, 25.0F);
    QCOMPARE(point->description, QString());
    QCOMPARE(point->recordName, QString("P"));
    point.reset(processor.completeWaypoint(record, 20.0F, 0.0F, 10.0F, 50.0F));
    QCOMPARE(point->altitude, 500.0F);
}

void TestAGeoDataProcessorKmlParts::aPathWithoutPoints()
{
    const QDomElement folder = path({}, {});
    QVERIFY(folder.parentNode().isNull());
    QCOMPARE(folder.tagName(), QString("Folder"));
    QCOMPARE(outline(folder),
             QString("name open Placemark(name styleUrl LineString(extrude tessellate altitudeMode coordinates)) "
                     "Placemark(name styleUrl LineString(extrude tessellate altitudeMode coordinates))"));
    const QDomElement grey = childrenNamed(folder, "Placemark").last();
    QCOMPARE(textAt(folder, "Placemark/LineString/coordinates"), QString());
    QCOMPARE(textAt(grey, "LineString/coordinates"), QString());
    QCOMPARE(textAt(grey, "name"), QString("Maximum"));
}

void TestAGeoDataProcessorKmlParts::aPathOfPointsWithoutDescriptions()
{
    AGeoData low = position(0, -48.5F, 11.25F);
    low.altitude = 1.5F;
    AGeoData high = position(1000, 48.75F, -11.5F);
    high.altitude = 2.0F;
    const QDomElement folder = path({low, high}, {"N", "#s", "absolute", false, 3, 150.0F});
    const QList<QDomElement> placemarks = childrenNamed(folder, "Placemark");
    QCOMPARE(placemarks.size(), 2);
    QCOMPARE(textAt(folder, "name"), QString("N"));
    QCOMPARE(textAt(folder, "open"), QString("1"));
    QCOMPARE(textAt(placemarks.first(), "name"), QString("Elevation Profile"));
    QCOMPARE(textAt(placemarks.first(), "styleUrl"), QString("#s"));
    QCOMPARE(textAt(placemarks.first(), "LineString/coordinates"),
             QString("11.250000,-48.500000,1.500000\n11.250000,-48.500000,1.505000\n"
                     "-11.500000,48.750000,2.000000\n-11.500000,48.750000,2.005000\n"));
    QCOMPARE(textAt(placemarks.last(), "name"), QString("Maximum"));
    QCOMPARE(textAt(placemarks.last(), "styleUrl"), QString("#lineGrey"));
    QCOMPARE(textAt(placemarks.last(), "LineString/coordinates"),
             QString("11.250000,-48.500000,150.000000\n11.250000,-48.500000,150.005000\n"
                     "-11.500000,48.750000,150.000000\n-11.500000,48.750000,150.005000\n"));
    for (const QDomElement &placemark : placemarks) {
        QCOMPARE(textAt(placemark, "LineString/extrude"), QString("1"));
        QCOMPARE(textAt(placemark, "LineString/tessellate"), QString("1"));
        QCOMPARE(textAt(placemark, "LineString/altitudeMode"), QString("absolute"));
    }
    QVERIFY(folder.firstChildElement("Folder").isNull());
}

void TestAGeoDataProcessorKmlParts::aPathWithWaypoints()
{
    const QDomElement folder =
        path({described(0, "A", "<b>a & b</b>"), described(1000, "B", "b")}, {"N", "#s", "absolute", false, 1, 1.0F});
    QCOMPARE(outline(folder),
             QString("name open Placemark(name styleUrl LineString(extrude tessellate altitudeMode coordinates)) "
                     "Folder(name visibility "
                     "Placemark(visibility name description styleUrl Point(coordinates altitudeMode)) "
                     "Placemark(visibility name description styleUrl Point(coordinates altitudeMode)))"));
    const QDomElement waypoints = folder.firstChildElement("Folder");
    QCOMPARE(textAt(waypoints, "name"), QString("Measurement Waypoints"));
    QCOMPARE(textAt(waypoints, "visibility"), QString("0"));
    const QDomElement first = waypoints.firstChildElement("Placemark");
    QCOMPARE(textAt(first, "visibility"), QString("0"));
    QCOMPARE(textAt(first, "name"), QString("A"));
    QCOMPARE(textAt(first, "description"), QString("<b>a & b</b>"));
    QCOMPARE(textAt(first, "styleUrl"), QString("#dataPoint"));
    QCOMPARE(textAt(first, "Point/coordinates"), QString("11.250000,48.500000,500.000000"));
    QCOMPARE(textAt(first, "Point/altitudeMode"), QString("absolute"));
}

void TestAGeoDataProcessorKmlParts::aPathWithATimeTrack()
{
    const QDomElement folder = path({position(0), position(1500)}, {"N", "#s", "absolute", true, 0, 1.0F});
    const QDomElement placemark = folder.firstChildElement("Placemark");
    QCOMPARE(outline(placemark), QString("name styleUrl gx:Track(extrude altitudeMode when gx:coord when gx:coord) "
                                         "LineString(extrude tessellate altitudeMode coordinates)"));
    const QDomElement track = placemark.firstChildElement("gx:Track");
    QCOMPARE(textAt(track, "extrude"), QString("1"));
    QCOMPARE(textAt(track, "altitudeMode"), QString("absolute"));
    QCOMPARE(textAt(track, "when"), QString("2024-05-17T12:30:00Z"));
    QCOMPARE(childrenNamed(track, "when").last().text(), QString("2024-05-17T12:30:01Z"));
    QCOMPARE(textAt(track, "gx:coord"), QString("11.250000 48.500000 500.000000"));
    QCOMPARE(textAt(placemark, "LineString/coordinates").count('\n'), 4);
}

void TestAGeoDataProcessorKmlParts::aPointWithoutADescriptionIsPartOfTheLineAlone()
{
    const QDomElement folder = path({described(0, "A", "a"), position(1000), described(2000, "C", "c")}, {});
    QCOMPARE(textAt(folder, "Placemark/LineString/coordinates").count('\n'), 6);
    QCOMPARE(childrenNamed(folder.firstChildElement("Folder"), "Placemark").size(), 2);
    QCOMPARE(childrenNamed(folder, "Placemark").size(), 1);
}

void TestAGeoDataProcessorKmlParts::theNameOfAWaypoint_data()
{
    QTest::addColumn<int>("flags");
    QTest::addColumn<QString>("name");
    QTest::newRow("no flags: no name") << 0 << "(none)";
    QTest::newRow("record") << 1 << "A";
    QTest::newRow("time") << 2 << "2024-05-17T12:30:00Z";
    QTest::newRow("the record wins over the time") << 3 << "A";
    QTest::newRow("another flag: an empty name") << 4 << "";
    QTest::newRow("the value's flag alone: an empty name") << 1024 << "";
    QTest::newRow("the value's flag and the time") << 1026 << "2024-05-17T12:30:00Z";
}

void TestAGeoDataProcessorKmlParts::theNameOfAWaypoint()
{
    QFETCH(int, flags);
    QFETCH(QString, name);
    Path asked;
    asked.labelFlags = flags;
    const QDomElement folder = path({described(0, "A", "a")}, asked);
    QCOMPARE(textAt(folder, "Folder/Placemark/name"), name);
}

void TestAGeoDataProcessorKmlParts::numbersHaveSixDecimals()
{
    AGeoData record = position(0, 48.1234567F, -0.00000049F);
    record.altitude = 1e10F;
    record.description = "d";
    const QDomElement folder = path({record}, {});
    QCOMPARE(textAt(folder, "Folder/Placemark/Point/coordinates"), QString("%1,%2,%3")
                                                                       .arg(double(record.longitude), 0, 'f', -1)
                                                                       .arg(double(record.latitude), 0, 'f', -1)
                                                                       .arg(double(record.altitude), 0, 'f', -1));
    QVERIFY(textAt(folder, "Folder/Placemark/Point/coordinates").endsWith(",48.123455,10000000000.000000"));
}

void TestAGeoDataProcessorKmlParts::aPointWithoutATimeHasAnEmptyWhen()
{
    AGeoData record = position(0);
    record.recordTime = QDateTime();
    Path asked;
    asked.withTimeTrack = true;
    QCOMPARE(textAt(path({record}, asked), "Placemark/gx:Track/when"), QString());
    record.recordTime = QDateTime(QDate(2024, 5, 17), QTime(12, 30), Qt::OffsetFromUTC, 5400);
    QCOMPARE(textAt(path({record}, asked), "Placemark/gx:Track/when"), QString("2024-05-17T12:30:00+01:30"));
}

void TestAGeoDataProcessorKmlParts::whatXmlCantHoldIsLeftOut()
{
    const QString emoji = QString::fromUtf8("\xf0\x9f\x93\xa1");
    Path asked;
    asked.labelFlags = 1;
    const QDomElement folder =
        path({described(0, QString("A") + QChar(0) + QChar(0xd800) + "B" + emoji, QString(QChar(1)) + "d")}, asked);
    QCOMPARE(textAt(folder, "Folder/Placemark/name"), "AB" + emoji);
    QCOMPARE(textAt(folder, "Folder/Placemark/description"), QString("d"));
}

void TestAGeoDataProcessorKmlParts::withoutADocumentThereIsNoElement()
{
    const Processor processor(nullptr);
    QVERIFY(processor.createStyleElement(nullptr, "anId", "ff0000ff", 1).isNull());
    QVERIFY(processor.addKmlPath(nullptr, "N", {}, "#s", "absolute", true, 1, 1.0F).isNull());
}

void TestAGeoDataProcessorKmlParts::nullAmongThePointsIsPassedOver()
{
    AGeoData record = position(0);
    const Processor processor(nullptr);
    const auto coordinates = [&](const Points &points) {
        QDomDocument document;
        const QDomElement folder = processor.addKmlPath(&document, "N", points, "#s", "absolute", true, 1, 1.0F);
        return QStringList{textAt(folder, "Placemark/LineString/coordinates"),
                           textAt(folder.lastChildElement("Placemark"), "LineString/coordinates"), outline(folder)};
    };
    QCOMPARE(coordinates({nullptr, &record, nullptr}), coordinates({&record}));
    QCOMPARE(coordinates({nullptr}), coordinates({}));
    record.description = "d";
    QCOMPARE(coordinates({nullptr, &record, nullptr}), coordinates({&record}));
}

void TestAGeoDataProcessorKmlParts::pathsOfManyPointsGrowWithTheirNumber()
{
    constexpr int kFew = 20000;
    constexpr int kTimes = 10;
    AGeoData record = position(0);
    const Processor processor(nullptr);
    const auto secondsFor = [&](int count) {
        Points points;
        for (int i = 0; i < count; ++i)
            points.append(&record);
        QDomDocument document;
        const CpuClock clock;
        const QDomElement folder = processor.addKmlPath(&document, "N", points, "#s", "absolute", false, 0, 1.0F);
        const double seconds = clock.seconds();
        if (textAt(folder, "Placemark/LineString/coordinates").count('\n') != 2 * count)
            QTest::qFail("points are missing", __FILE__, __LINE__);
        return seconds;
    };
    secondsFor(kFew); // warms up
    const double few = secondsFor(kFew);
    const double many = secondsFor(kFew * kTimes);
    QVERIFY2(many < 3 * kTimes * few + 0.05, qPrintable(QString("%1 s and %2 s").arg(few).arg(many)));
}

QTEST_GUILESS_MAIN(TestAGeoDataProcessorKmlParts)
#include "tst_ageodataprocessor_kmlparts.moc"
