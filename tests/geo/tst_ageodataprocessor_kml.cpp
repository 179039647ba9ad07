#include "core/asettings.h"

#include "geo/processor.h"

#include <QtCore/QSettings>
#include <QtGui/QVector3D>
#include <QtTest/QtTest>

#include <memory>

namespace {

// What toKml() is asked for.
struct Request
{
    QString name = "Drive";
    float elevationScale = 100.0F;
    bool withBalloons = true;
    bool withGpsTrack = false;
    bool withTimeTrack = false;
    int labelFlags = 0;
    bool absoluteGpsAltitude = false;
    unsigned int sensorFlags = 0;
};

QDomElement documentElement(const QDomDocument &kml)
{
    return kml.documentElement().firstChildElement("Document");
}

QStringList folderNames(const QDomDocument &kml)
{
    QStringList names;
    for (const QDomElement &folder : childrenNamed(documentElement(kml), "Folder"))
        names.append(textAt(folder, "name"));
    return names;
}

QDomElement folder(const QDomDocument &kml, const QString &name)
{
    for (const QDomElement &each : childrenNamed(documentElement(kml), "Folder")) {
        if (textAt(each, "name") == name)
            return each;
    }
    return {};
}

// The heights of a path, every second of the tuples.
QStringList heights(const QDomElement &pathFolder)
{
    QStringList result;
    const QStringList lines = textAt(pathFolder, "Placemark/LineString/coordinates").split('\n');
    for (int i = 0; i + 1 < lines.size(); i += 2)
        result.append(lines.at(i).section(',', 2));
    return result;
}

const QStringList kMeasured{"Maximum Values", "Average Values", "Minimum Values"};

} // namespace

class TestAGeoDataProcessorKml : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void theSkeleton();
    void theLineStyles_data();
    void theLineStyles();
    void theIconHostIsASetting_data();
    void theIconHostIsASetting();
    void anEmptyProcessorGivesAValidDocument();
    void theGpsFolderHoldsAllWaypointsByTime();
    void theGpsFolderIsAsAskedFor_data();
    void theGpsFolderIsAsAskedFor();
    void onlyTheNameOfTheWaypointFolderIsReplaced();
    void theMeasuredFolders_data();
    void theMeasuredFolders();
    void theBalloonsOfMeasuredPoints();
    void withoutBalloonsThereIsTheGreyLine();
    void atScaleZeroPathsKeepTheirAltitude();
    void theThreePathsShareOneScale();
    void theValueInTheNameIsBitTen();
    void timeTracksAreAsAskedFor();
    void theSensorFolders_data();
    void theSensorFolders();
    void eachSensorFillsTheHeight();
    void sensorFoldersAreAboveGroundWithoutTracksAndNames();
    void theHeadingOfTheRecordIsShown();
    void aFirstValueThatIsNoNumberStaysTheRange();
    void theCeilingOfTheDriveIsAtTheScale();
    void aScaleBelowZeroKeepsTheAltitudes();
    void withoutMeasurementsThereAreNoSensors();
    void aSecondCallGivesAnEqualDocument();
    void aDriveFromRecordingToDocument();

private:
    std::unique_ptr<QDomDocument> kml(const Request &request = Request())
    {
        return std::unique_ptr<QDomDocument>(m_processor->toKml(
            request.name, request.elevationScale, request.withBalloons, request.withGpsTrack, request.withTimeTrack,
            request.labelFlags, request.absoluteGpsAltitude, request.sensorFlags));
    }
    void measure(const QList<double> &maxima);

    std::unique_ptr<Processor> m_processor;
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<QSettings> m_settings;
};

void TestAGeoDataProcessorKml::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_settings = std::make_unique<QSettings>(m_dir->filePath("settings.ini"), QSettings::IniFormat);
    ASettings::setApplicationSettings(m_settings.get());
    m_processor = std::make_unique<Processor>(nullptr);
}

void TestAGeoDataProcessorKml::cleanup()
{
    ASettings::setApplicationSettings(nullptr);
}

// One sweep for each maximum, with a minimum 20 dB below, a second apart, and with sensors that rise.
void TestAGeoDataProcessorKml::measure(const QList<double> &maxima)
{
    for (int i = 0; i < maxima.size(); ++i) {
        ASweep sweep(levels({maxima.at(i) - 20.0, maxima.at(i)}), at(i * 1000), at(i * 1000 + 100));
        AGeoData record = nmeaPosition(i * 1000);
        record.recordName = "P" + QString::number(i);
        record.airPressure = 990.0F + static_cast<float>(i);
        record.accelerometer[0] = -0.1F * static_cast<float>(i);
        record.accelerometer[1] = 0.2F * static_cast<float>(i);
        record.accelerometer[2] = 1.0F;
        record.magnetometer[0] = 1.0F;
        record.magnetometer[1] = -0.1F - 0.1F * static_cast<float>(i);
        record.gyroscope[0] = 0.1F * static_cast<float>(i);
        record.gyroscope[1] = 1.0F - 0.1F * static_cast<float>(i);
        record.gyroscope[2] = 0.5F;
        sweep.setGeoData(record);
        m_processor->addSweep(sweep);
    }
    m_processor->processMeasurementData(nullptr);
}

void TestAGeoDataProcessorKml::theSkeleton()
{
    const auto document = kml();
    const QDomNode declaration = document->firstChild();
    QCOMPARE(declaration.nodeName(), QString("xml"));
    QVERIFY(declaration.nodeValue().contains("version='1.0'"));
    QVERIFY(declaration.nodeValue().contains("encoding='UTF-8'"));
    const QDomElement root = document->documentElement();
    QCOMPARE(root.tagName(), QString("kml"));
    QCOMPARE(root.attributes().size(), 2);
    QCOMPARE(root.attribute("xmlns"), QString("http://www.opengis.net/kml/2.2"));
    QCOMPARE(root.attribute("xmlns:gx"), QString("http://www.google.com/kml/ext/2.2"));
    QCOMPARE(root.childNodes().size(), 1);
    const QString lineStyle = "Style(LineStyle(color) PolyStyle(color)) ";
    QVERIFY2(outline(root).startsWith("Document(name open " + lineStyle.repeated(6) +
                                      "Style(IconStyle(Icon(href))) Folder("),
             qPrintable(outline(root)));
    QCOMPARE(textAt(documentElement(*document), "name"), QString("Drive"));
    QCOMPARE(textAt(documentElement(*document), "open"), QString("1"));
    QStringList ids;
    for (const QDomElement &style : childrenNamed(documentElement(*document), "Style"))
        ids.append(style.attribute("id"));
    QCOMPARE(ids, (QStringList{"lineGreen", "lineRed", "lineBlue", "lineYellow", "linePink", "lineGrey", "dataPoint"}));
}

void TestAGeoDataProcessorKml::theLineStyles_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("curtain");
    QTest::newRow("lineGreen") << "ff00ff00"
                               << "7f00ff00";
    QTest::newRow("lineRed") << "ff0000ff"
                             << "7f0000ff";
    QTest::newRow("lineBlue") << "ffff0000"
                              << "7fff0000";
    QTest::newRow("lineYellow") << "ff00ffff"
                                << "7f00ffff";
    QTest::newRow("linePink") << "ffaaffff"
                              << "7faaffff";
    QTest::newRow("lineGrey") << "ffaaaaaa"
                              << "7faaaaaa";
}

void TestAGeoDataProcessorKml::theLineStyles()
{
    QFETCH(QString, line);
    QFETCH(QString, curtain);
    const auto document = kml();
    for (const QDomElement &style : childrenNamed(documentElement(*document), "Style")) {
        if (style.attribute("id") != QString(QTest::currentDataTag()))
            continue;
        QCOMPARE(textAt(style, "LineStyle/color"), line);
        QCOMPARE(textAt(style, "PolyStyle/color"), curtain);
        return;
    }
    QFAIL("no such style");
}

void TestAGeoDataProcessorKml::theIconHostIsASetting_data()
{
    QTest::addColumn<QVariant>("setting");
    QTest::addColumn<QString>("address");
    const QString path = "/mapfiles/kml/pal3/icon61.png";
    QTest::newRow("unset") << QVariant() << "http://maps.google.com" + path;
    QTest::newRow("empty") << QVariant("") << "http://maps.google.com" + path;
    QTest::newRow("a host") << QVariant("icons.example.org") << "http://icons.example.org" + path;
    QTest::newRow("a host and port") << QVariant("localhost:8080") << "http://localhost:8080" + path;
    QTest::newRow("an address") << QVariant("https://icons.example.org/kml/") << "https://icons.example.org/kml" + path;
}

void TestAGeoDataProcessorKml::theIconHostIsASetting()
{
    QFETCH(QVariant, setting);
    QFETCH(QString, address);
    if (setting.isValid())
        m_settings->setValue("Kml/IconHost", setting);
    const auto document = kml();
    const QDomElement style = childrenNamed(documentElement(*document), "Style").last();
    QCOMPARE(textAt(style, "IconStyle/Icon/href"), address);
}

void TestAGeoDataProcessorKml::anEmptyProcessorGivesAValidDocument()
{
    Request request;
    request.sensorFlags = 7;
    const auto document = kml(request);
    QCOMPARE(folderNames(*document), kMeasured);
    for (const QString &name : kMeasured) {
        const QDomElement measured = folder(*document, name);
        QCOMPARE(childrenNamed(measured, "Placemark").size(), 2);
        QCOMPARE(textAt(measured, "Placemark/LineString/coordinates"), QString());
        QVERIFY(measured.firstChildElement("Folder").isNull());
    }
}

void TestAGeoDataProcessorKml::theGpsFolderHoldsAllWaypointsByTime()
{
    for (const auto &[name, time] : {std::pair("late", 2000), std::pair("first of a time", 1000),
                                     std::pair("second of a time", 1000), std::pair("early", 0)}) {
        AGeoData record = nmeaPosition(time);
        record.recordName = name;
        m_processor->addNmeaRecord(record);
    }
    Request request;
    request.withGpsTrack = true;
    request.labelFlags = 1;
    const auto document = kml(request);
    QCOMPARE(folderNames(*document), QStringList{"Original GPS Data"} + kMeasured);
    const QDomElement gps = folder(*document, "Original GPS Data");
    QStringList names;
    for (const QDomElement &placemark : childrenNamed(gps.firstChildElement("Folder"), "Placemark"))
        names.append(textAt(placemark, "name"));
    QCOMPARE(names, (QStringList{"early", "second of a time", "first of a time", "late"}));
    QCOMPARE(heights(gps), QStringList({"500.000000", "500.000000", "500.000000", "500.000000"}));
    QCOMPARE(textAt(gps, "Placemark/styleUrl"), QString("#lineGreen"));
    QCOMPARE(m_processor->m_waypoints.size(), 4);
}

void TestAGeoDataProcessorKml::theGpsFolderIsAsAskedFor_data()
{
    QTest::addColumn<bool>("absolute");
    QTest::addColumn<bool>("withTimeTrack");
    QTest::addColumn<QString>("altitudeMode");
    QTest::newRow("on the ground") << false << false << "clampToGround";
    QTest::newRow("absolute") << true << false << "absolute";
    QTest::newRow("with time") << false << true << "clampToGround";
}

void TestAGeoDataProcessorKml::theGpsFolderIsAsAskedFor()
{
    QFETCH(bool, absolute);
    QFETCH(bool, withTimeTrack);
    QFETCH(QString, altitudeMode);
    m_processor->addNmeaRecord(nmeaPosition(0));
    Request request;
    request.withGpsTrack = true;
    request.absoluteGpsAltitude = absolute;
    request.withTimeTrack = withTimeTrack;
    const auto document = kml(request);
    const QDomElement gps = folder(*document, "Original GPS Data");
    QCOMPARE(textAt(gps, "Placemark/LineString/altitudeMode"), altitudeMode);
    QCOMPARE(textAt(gps, "Folder/Placemark/Point/altitudeMode"), altitudeMode);
    QCOMPARE(textAt(gps, "Placemark/gx:Track/altitudeMode"), withTimeTrack ? altitudeMode : "(none)");
    QCOMPARE(textAt(gps, "Folder/name"), QString("GPS Waypoints"));
}

void TestAGeoDataProcessorKml::onlyTheNameOfTheWaypointFolderIsReplaced()
{
    AGeoData record = nmeaPosition(0);
    record.recordName = "Measurement of a point";
    m_processor->addNmeaRecord(record);
    measure({-50.0, -40.0});
    Request request;
    request.withGpsTrack = true;
    request.labelFlags = 1;
    const auto document = kml(request);
    const QDomElement gps = folder(*document, "Original GPS Data");
    QCOMPARE(textAt(gps, "name"), QString("Original GPS Data"));
    QCOMPARE(textAt(gps, "Placemark/name"), QString("Elevation Profile"));
    QCOMPARE(textAt(gps, "Folder/name"), QString("GPS Waypoints"));
    QCOMPARE(textAt(gps, "Folder/Placemark/name"), QString("Measurement of a point"));
    QCOMPARE(textAt(folder(*document, "Maximum Values"), "Folder/name"), QString("Measurement Waypoints"));
}

void TestAGeoDataProcessorKml::theMeasuredFolders_data()
{
    QTest::addColumn<QString>("style");
    QTest::addColumn<bool>("hasFrequency");
    QTest::newRow("Maximum") << "#lineRed" << true;
    QTest::newRow("Average") << "#lineYellow" << false;
    QTest::newRow("Minimum") << "#lineBlue" << true;
}

void TestAGeoDataProcessorKml::theMeasuredFolders()
{
    QFETCH(QString, style);
    QFETCH(bool, hasFrequency);
    const QString label = QTest::currentDataTag();
    measure({-50.0, -40.0});
    Request request;
    request.labelFlags = 1;
    const auto document = kml(request);
    QCOMPARE(folderNames(*document), kMeasured);
    const QDomElement measured = folder(*document, label + " Values");
    QCOMPARE(textAt(measured, "Placemark/styleUrl"), style);
    QCOMPARE(textAt(measured, "Placemark/LineString/altitudeMode"), QString("relativeToGround"));
    const QList<QDomElement> placemarks = childrenNamed(measured.firstChildElement("Folder"), "Placemark");
    QCOMPARE(placemarks.size(), 2);
    QCOMPARE(textAt(placemarks.first(), "name"), "P0 " + label);
    const QString description = textAt(placemarks.first(), "description");
    QVERIFY(description.contains("<td>" + label + " Value:</td>"));
    QCOMPARE(description.contains("Frequency"), hasFrequency);
    QCOMPARE(childrenNamed(measured, "Placemark").size(), 1);
}

void TestAGeoDataProcessorKml::theBalloonsOfMeasuredPoints()
{
    measure({-50.0});
    const auto document = kml();
    QCOMPARE(textAt(folder(*document, "Maximum Values"), "Folder/Placemark/description"),
             m_processor->m_kmlData.first().geoData.description +
                 "<tr><td>Maximum Value:</td><td>-50.000 dBm</td></tr>\n"
                 "<tr><td>Frequency:</td><td>101.000000 MHz</td></tr>\n</table>\n");
}

void TestAGeoDataProcessorKml::withoutBalloonsThereIsTheGreyLine()
{
    measure({-50.0, -40.0});
    Request request;
    request.withBalloons = false;
    request.elevationScale = 250.0F;
    const auto document = kml(request);
    for (const QString &name : kMeasured) {
        const QDomElement measured = folder(*document, name);
        QVERIFY(measured.firstChildElement("Folder").isNull());
        const QList<QDomElement> placemarks = childrenNamed(measured, "Placemark");
        QCOMPARE(placemarks.size(), 2);
        QCOMPARE(textAt(placemarks.last(), "name"), QString("Maximum"));
        QVERIFY(textAt(placemarks.last(), "LineString/coordinates").endsWith(",250.005000\n"));
    }
}

void TestAGeoDataProcessorKml::atScaleZeroPathsKeepTheirAltitude()
{
    measure({-50.0, -40.0});
    Request request;
    request.elevationScale = 0.0F;
    const auto document = kml(request);
    const QDomElement measured = folder(*document, "Maximum Values");
    QCOMPARE(heights(measured), QStringList({"500.000000", "500.000000"}));
    QCOMPARE(textAt(measured, "Placemark/LineString/altitudeMode"), QString("relativeToGround"));
}

void TestAGeoDataProcessorKml::theThreePathsShareOneScale()
{
    measure({-60.0, -40.0}); // minima of -80 and -60: 40 dB in all
    const auto document = kml();
    QCOMPARE(heights(folder(*document, "Maximum Values")), QStringList({"50.000000", "100.000000"}));
    QCOMPARE(heights(folder(*document, "Minimum Values")), QStringList({"0.000000", "50.000000"}));
}

void TestAGeoDataProcessorKml::theValueInTheNameIsBitTen()
{
    measure({-50.0});
    Request request;
    request.labelFlags = 1 | 1024;
    const auto document = kml(request);
    QCOMPARE(textAt(folder(*document, "Maximum Values"), "Folder/Placemark/name"),
             QString("P0 Maximum (-50.00 dBm @ 101.000000 MHz)"));
}

void TestAGeoDataProcessorKml::timeTracksAreAsAskedFor()
{
    measure({-50.0, -40.0});
    Request request;
    request.withTimeTrack = true;
    const auto with = kml(request);
    const auto without = kml();
    for (const QString &name : kMeasured) {
        QCOMPARE(textAt(folder(*with, name), "Placemark/gx:Track/when"), QString("2024-05-17T12:30:00Z"));
        QCOMPARE(textAt(folder(*without, name), "Placemark/gx:Track/when"), QString("(none)"));
    }
}

void TestAGeoDataProcessorKml::theSensorFolders_data()
{
    QTest::addColumn<unsigned int>("flags");
    QTest::addColumn<QStringList>("names");
    const QStringList compass{"Compass Heading"};
    const QStringList tilt{"Tilt X-Axis (Pitch)", "Tilt Y-Axis (Roll)"};
    const QStringList gyro{"Gyro X-Axis", "Gyro Y-Axis", "Gyro Z-Axis"};
    const QStringList pressure{"Air Pressure"};
    QTest::newRow("none") << 0U << QStringList();
    QTest::newRow("gyroscope") << 1U << tilt + gyro;
    QTest::newRow("compass") << 2U << compass + tilt;
    QTest::newRow("both") << 3U << compass + tilt + gyro;
    QTest::newRow("pressure") << 4U << pressure;
    QTest::newRow("gyroscope and pressure") << 5U << tilt + gyro + pressure;
    QTest::newRow("compass and pressure") << 6U << compass + tilt + pressure;
    QTest::newRow("all") << 7U << compass + tilt + gyro + pressure;
    QTest::newRow("another bit") << 8U << QStringList();
}

void TestAGeoDataProcessorKml::theSensorFolders()
{
    QFETCH(unsigned int, flags);
    QFETCH(QStringList, names);
    measure({-50.0, -40.0, -45.0});
    Request request;
    request.sensorFlags = flags;
    QCOMPARE(folderNames(*kml(request)), kMeasured + names);
}

void TestAGeoDataProcessorKml::eachSensorFillsTheHeight()
{
    measure({-50.0, -40.0, -45.0});
    Request request;
    request.sensorFlags = 7;
    const auto document = kml(request);

    using Sensor = std::pair<QString, std::function<float(const AGeoData &)>>;
    const Sensor sensors[] = {
        {"Compass Heading", [](const AGeoData &r) { return static_cast<float>(r.estimateHeading(true)); }},
        {"Tilt X-Axis (Pitch)", [](const AGeoData &r) { return r.convertTiltToDegree().x(); }},
        {"Tilt Y-Axis (Roll)", [](const AGeoData &r) { return r.convertTiltToDegree().y(); }},
        {"Gyro X-Axis", [](const AGeoData &r) { return r.convertGyroToDegree().x(); }},
        {"Gyro Y-Axis", [](const AGeoData &r) { return r.convertGyroToDegree().y(); }},
        {"Air Pressure", [](const AGeoData &r) { return r.airPressure; }},
    };
    for (const auto &[name, value] : sensors) {
        QList<float> values;
        for (const auto &entry : qAsConst(m_processor->m_kmlData))
            values.append(value(entry.geoData));
        const float low = *std::min_element(values.begin(), values.end());
        const float high = *std::max_element(values.begin(), values.end());
        QVERIFY(low < high);
        QStringList expected;
        for (const float each : values)
            expected.append(QString::number(double((each - low) / (high - low) * 100.0F), 'f', 6));
        QCOMPARE(heights(folder(*document, name)), expected);
    }
    // One value throughout is a range without extent.
    QCOMPARE(heights(folder(*document, "Gyro Z-Axis")), QStringList({"nan", "nan", "nan"}));
}

void TestAGeoDataProcessorKml::sensorFoldersAreAboveGroundWithoutTracksAndNames()
{
    measure({-50.0, -40.0});
    Request request;
    request.sensorFlags = 7;
    request.withTimeTrack = true;
    request.labelFlags = 3;
    const auto document = kml(request);
    const QList<QPair<QString, QString>> styles{
        {"Compass Heading", "#linePink"}, {"Tilt X-Axis (Pitch)", "#lineRed"}, {"Tilt Y-Axis (Roll)", "#lineBlue"},
        {"Gyro X-Axis", "#lineRed"},      {"Gyro Y-Axis", "#lineBlue"},        {"Gyro Z-Axis", "#lineYellow"},
        {"Air Pressure", "#lineBlue"}};
    for (const auto &[name, style] : styles) {
        const QDomElement sensor = folder(*document, name);
        QCOMPARE(textAt(sensor, "Placemark/styleUrl"), style);
        QCOMPARE(textAt(sensor, "Placemark/LineString/altitudeMode"), QString("relativeToGround"));
        QVERIFY(sensor.firstChildElement("Placemark").firstChildElement("gx:Track").isNull());
        QVERIFY(sensor.firstChildElement("Folder").isNull());
        QCOMPARE(textAt(childrenNamed(sensor, "Placemark").last(), "name"), QString("Maximum"));
    }
}

void TestAGeoDataProcessorKml::theHeadingOfTheRecordIsShown()
{
    measure({-50.0, -40.0, -45.0});
    Request request;
    request.sensorFlags = 2;
    const QStringList before = heights(folder(*kml(request), "Compass Heading"));
    for (auto &entry : m_processor->m_kmlData)
        entry.heading = 360.0F - entry.heading;
    QCOMPARE(heights(folder(*kml(request), "Compass Heading")), before);
    QVERIFY(before.contains("100.000000"));
}

void TestAGeoDataProcessorKml::aFirstValueThatIsNoNumberStaysTheRange()
{
    measure({-50.0, -40.0, -45.0});
    Request request;
    request.sensorFlags = 4;
    const float nan = std::numeric_limits<float>::quiet_NaN();
    m_processor->m_kmlData[1].geoData.airPressure = nan;
    QCOMPARE(heights(folder(*kml(request), "Air Pressure")), QStringList({"0.000000", "nan", "100.000000"}));
    m_processor->m_kmlData[0].geoData.airPressure = nan;
    QCOMPARE(heights(folder(*kml(request), "Air Pressure")), QStringList({"nan", "nan", "nan"}));
}

void TestAGeoDataProcessorKml::theCeilingOfTheDriveIsAtTheScale()
{
    m_processor->addNmeaRecord(nmeaPosition(0));
    m_processor->m_waypoints.first()->description.clear();
    Request request;
    request.withGpsTrack = true;
    request.elevationScale = 250.0F;
    const auto document = kml(request);
    const QDomElement gps = folder(*document, "Original GPS Data");
    QCOMPARE(heights(gps), QStringList{"500.000000"});
    QCOMPARE(textAt(gps.lastChildElement("Placemark"), "LineString/coordinates"),
             QString("11.250000,48.500000,250.000000\n11.250000,48.500000,250.005000\n"));
}

void TestAGeoDataProcessorKml::aScaleBelowZeroKeepsTheAltitudes()
{
    measure({-50.0, -40.0});
    Request request;
    request.elevationScale = -3.0F;
    request.withBalloons = false;
    request.sensorFlags = 4;
    const auto document = kml(request);
    for (const QString &name : QStringList{"Maximum Values", "Air Pressure"}) {
        const QDomElement path = folder(*document, name);
        QCOMPARE(heights(path), QStringList({"500.000000", "500.000000"}));
        QVERIFY(textAt(path.lastChildElement("Placemark"), "LineString/coordinates")
                    .startsWith("11.250000,48.500000,-3.000000\n11.250000,48.500000,-2.995000\n"));
    }
}

void TestAGeoDataProcessorKml::withoutMeasurementsThereAreNoSensors()
{
    m_processor->addNmeaRecord(nmeaPosition(0));
    Request request;
    request.sensorFlags = 7;
    QCOMPARE(folderNames(*kml(request)), kMeasured);
}

void TestAGeoDataProcessorKml::aSecondCallGivesAnEqualDocument()
{
    m_processor->addNmeaRecord(nmeaPosition(0));
    measure({-50.0, -40.0});
    Request request;
    request.withGpsTrack = true;
    request.withTimeTrack = true;
    request.labelFlags = 1027;
    request.sensorFlags = 7;
    const QString first = kml(request)->toString();
    QCOMPARE(kml(request)->toString(), first);
    QCOMPARE(m_processor->m_kmlData.size(), 2);
    QCOMPARE(m_processor->m_kmlData.first().geoData.recordName, QString("P0"));
}

void TestAGeoDataProcessorKml::aDriveFromRecordingToDocument()
{
    for (int i = 0; i < 8; ++i) {
        m_processor->addNmeaRecord(position(i * 1000, 4830.0F + static_cast<float>(i), 1115.0F));
        ASweep sweep(levels({-50.0 - i, -40.0 - i}), at(i * 1000 + 200), at(i * 1000 + 300));
        m_processor->addSweep(sweep);
    }
    QCOMPARE(m_processor->assignWaypoints(1000), 8);
    m_processor->processMeasurementData(nullptr);
    Request request;
    request.withGpsTrack = true;
    const auto document = kml(request);
    const QDomElement maxima = folder(*document, "Maximum Values");
    QVERIFY(textAt(maxima, "Folder/Placemark/Point/coordinates").startsWith("11.250000,48.5"));
    QCOMPARE(heights(maxima).size(), 8);
    QVERIFY(textAt(maxima, "Folder/Placemark/description").startsWith("<table>\n<tr><td>Date:"));
}

QTEST_GUILESS_MAIN(TestAGeoDataProcessorKml)
#include "tst_ageodataprocessor_kml.moc"
