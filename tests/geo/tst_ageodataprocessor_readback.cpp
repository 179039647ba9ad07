#include "geo/kmlwriter.h"

#include "geo/processor.h"

#include <QtCore/QProcess>
#include <QtCore/QStandardPaths>
#include <QtGui/QVector3D>
#include <QtTest/QtTest>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>

// Other programs read what is written.

namespace {

constexpr int kSweeps = 256; // with this number of waypoints a sweep in the time of the last finds it
constexpr int kPaths = 3;    // of measured values
constexpr float kScaleMetres = 100.0F;
constexpr double kSixDecimals = 0.6e-6;
constexpr double kMillimetre = 0.6e-3;

struct Coordinates
{
    double longitude;
    double latitude;
    double height;
};

using Line = QList<Coordinates>;

AGeoData drivePosition(int i)
{
    AGeoData record =
        position(i * 1000LL, 4830.0F + 0.25F * static_cast<float>(i), 1115.0F - 3.5F * static_cast<float>(i % 50));
    record.altitude = 400.0F + static_cast<float>(i);
    record.airPressure = 990.0F - static_cast<float>(i % 9);
    for (int axis = 0; axis < 3; ++axis)
        record.gyroscope[axis] = 0.001F * static_cast<float>(i % (20 + axis));
    record.accelerometer[0] = 0.001F * static_cast<float>(i % 30);
    record.accelerometer[1] = 0.001F * static_cast<float>(i % 40);
    record.accelerometer[2] = 1.0F;
    record.magnetometer[0] = 1.0F;
    record.magnetometer[1] = -0.01F - 0.001F * static_cast<float>(i);
    record.recordName = "P" + QString::number(i);
    return record;
}

bool isAt(const Coordinates &found, const Coordinates &expected, double precision)
{
    return std::fabs(found.longitude - expected.longitude) < kSixDecimals &&
           std::fabs(found.latitude - expected.latitude) < kSixDecimals &&
           std::fabs(found.height - expected.height) < precision;
}

bool areAt(const QList<Coordinates> &found, const QList<Coordinates> &expected, double precision)
{
    return std::equal(found.begin(), found.end(), expected.begin(), expected.end(),
                      [precision](const Coordinates &a, const Coordinates &b) { return isAt(a, b, precision); });
}

// Up and down at each point, as a curtain is drawn.
Line curtain(const Line &path)
{
    Line line;
    for (const Coordinates &point : path)
        line << point << Coordinates{point.longitude, point.latitude, point.height + 0.005};
    return line;
}

QByteArray outputOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(60000) || process.exitCode() != 0)
        return "failed: " + process.readAllStandardError();
    return process.readAllStandardOutput();
}

// The points of a GPX file's elements of a name.
QList<Coordinates> points(const QDomElement &element, const QString &tag)
{
    QList<Coordinates> result;
    const QDomNodeList elements = element.elementsByTagName(tag);
    for (int i = 0; i < elements.size(); ++i) {
        const QDomElement point = elements.at(i).toElement();
        result.append(
            {point.attribute("lon").toDouble(), point.attribute("lat").toDouble(), textAt(point, "ele").toDouble()});
    }
    return result;
}

// "1 2 3,4 5 6"
Line coordinates(const QString &tuples)
{
    Line line;
    for (const QString &tuple : tuples.split(',')) {
        const QStringList numbers = tuple.split(' ');
        if (numbers.size() == 3)
            line.append({numbers.at(0).toDouble(), numbers.at(1).toDouble(), numbers.at(2).toDouble()});
    }
    return line;
}

} // namespace

class TestAGeoDataProcessorReadback : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void gpsbabelReadsPointsAndLinesBack();
    void gpsbabelReadsATimeTrackBack();
    void ogrinfoReadsPointsAndLines();
    void theDocumentIsWellFormed();

private:
    // The name of a file with the drive, measured points with balloons included.
    QString write(bool withTimeTrack)
    {
        const std::unique_ptr<QDomDocument> document(
            m_processor.toKml("Drive & more", kScaleMetres, true, true, withTimeTrack, 1, true, 7));
        const QString name = m_dir.filePath(withTimeTrack ? "track.kml" : "drive.kml");
        QFile file(name);
        return file.open(QIODevice::WriteOnly) && writeKml(*document, &file) && file.flush() ? name : QString();
    }

    QList<Line> placemarkPaths() const;
    QList<Line> sensorPaths() const;
    QList<Line> lines() const;
    QDomDocument readWithGpsbabel(const QString &program, bool withTimeTrack);

    Processor m_processor{nullptr};
    QTemporaryDir m_dir;
};

void TestAGeoDataProcessorReadback::initTestCase()
{
    for (int i = 0; i < kSweeps; ++i) {
        m_processor.addNmeaRecord(drivePosition(i));
        ASweep sweep(levels({-70.0 - i % 7, -50.0 - i % 11}), at(i * 1000LL), at(i * 1000LL + 100));
        m_processor.addSweep(sweep);
    }
    QCOMPARE(m_processor.assignWaypoints(0), kSweeps);
    m_processor.processMeasurementData(nullptr);
}

// The drive, and the three values along it.
QList<Line> TestAGeoDataProcessorReadback::placemarkPaths() const
{
    const double lowest = m_processor.m_minimum.level;
    const double extent = m_processor.m_maximum.level - lowest;
    QList<Line> paths{{}, {}, {}, {}};
    for (const auto &entry : m_processor.m_kmlData) {
        const auto longitude = double(entry.geoData.longitude);
        const auto latitude = double(entry.geoData.latitude);
        paths[0].append({longitude, latitude, double(entry.geoData.altitude)});
        int path = 1;
        for (const AMeasurementValue &value : {entry.maximum, entry.average, entry.minimum}) {
            const double height = (value.level - lowest) / extent * double(kScaleMetres);
            paths[path++].append({longitude, latitude, double(static_cast<float>(height))});
        }
    }
    return paths;
}

QList<Line> TestAGeoDataProcessorReadback::sensorPaths() const
{
    const std::function<float(const AGeoData &)> sensors[] = {
        [](const AGeoData &record) { return static_cast<float>(record.estimateHeading(true)); },
        [](const AGeoData &record) { return record.convertTiltToDegree().x(); },
        [](const AGeoData &record) { return record.convertTiltToDegree().y(); },
        [](const AGeoData &record) { return record.convertGyroToDegree().x(); },
        [](const AGeoData &record) { return record.convertGyroToDegree().y(); },
        [](const AGeoData &record) { return record.convertGyroToDegree().z(); },
        [](const AGeoData &record) { return record.airPressure; },
    };
    QList<Line> paths;
    for (const auto &sensor : sensors) {
        QList<float> values;
        for (const auto &entry : m_processor.m_kmlData)
            values.append(sensor(entry.geoData));
        const float lowest = *std::min_element(values.cbegin(), values.cend());
        const float highest = *std::max_element(values.cbegin(), values.cend());
        Line path;
        for (int i = 0; i < values.size(); ++i) {
            const AGeoData &record = m_processor.m_kmlData.at(i).geoData;
            const float height = (values.at(i) - lowest) / (highest - lowest) * kScaleMetres;
            path.append({double(record.longitude), double(record.latitude), double(height)});
        }
        paths.append(path);
    }
    return paths;
}

// All in the document, those of the sensors each with its ceiling.
QList<Line> TestAGeoDataProcessorReadback::lines() const
{
    QList<Line> result;
    for (const Line &path : placemarkPaths())
        result.append(curtain(path));
    for (Line path : sensorPaths()) {
        result.append(curtain(path));
        for (Coordinates &point : path)
            point.height = double(kScaleMetres);
        result.append(curtain(path));
    }
    return result;
}

QDomDocument TestAGeoDataProcessorReadback::readWithGpsbabel(const QString &program, bool withTimeTrack)
{
    QDomDocument document;
    document.setContent(outputOf(program, {"-i", "kml", "-f", write(withTimeTrack), "-o", "gpx", "-F", "-"}));
    return document;
}

void TestAGeoDataProcessorReadback::gpsbabelReadsPointsAndLinesBack()
{
    const QString program = QStandardPaths::findExecutable("gpsbabel");
    if (program.isEmpty())
        QSKIP("gpsbabel is not installed");
    const QDomDocument gpx = readWithGpsbabel(program, false);
    Line expected;
    for (const Line &path : placemarkPaths())
        expected.append(path);
    QCOMPARE(expected.size(), kSweeps * (1 + kPaths));
    QVERIFY(areAt(points(gpx.documentElement(), "wpt"), expected, kMillimetre));

    const QDomNodeList tracks = gpx.elementsByTagName("trk");
    const QList<Line> expectedLines = lines();
    QCOMPARE(tracks.size(), expectedLines.size());
    for (int t = 0; t < tracks.size(); ++t) {
        const Line line = points(tracks.at(t).toElement(), "trkpt");
        QCOMPARE(line.size(), 2 * kSweeps);
        QVERIFY(areAt(line, expectedLines.at(t), kMillimetre));
    }
}

void TestAGeoDataProcessorReadback::gpsbabelReadsATimeTrackBack()
{
    const QString program = QStandardPaths::findExecutable("gpsbabel");
    if (program.isEmpty())
        QSKIP("gpsbabel is not installed");
    const QDomDocument gpx = readWithGpsbabel(program, true);
    const QList<Line> paths = placemarkPaths();
    const QDomNodeList tracks = gpx.elementsByTagName("trk");
    int timed = 0;
    for (int t = 0; t < tracks.size(); ++t) {
        const QDomElement track = tracks.at(t).toElement();
        if (track.elementsByTagName("time").isEmpty())
            continue;
        QVERIFY(timed < paths.size());
        QVERIFY(areAt(points(track, "trkpt"), paths.at(timed), kMillimetre));
        const QDomNodeList trackPoints = track.elementsByTagName("trkpt");
        for (int i = 0; i < trackPoints.size(); ++i) {
            const QString time = textAt(trackPoints.at(i).toElement(), "time");
            QCOMPARE(QDateTime::fromString(time, Qt::ISODate), at(i * 1000LL));
        }
        ++timed;
    }
    QCOMPARE(timed, 1 + kPaths);
}

void TestAGeoDataProcessorReadback::ogrinfoReadsPointsAndLines()
{
    const QString program = QStandardPaths::findExecutable("ogrinfo");
    if (program.isEmpty())
        QSKIP("ogrinfo is not installed");
    const QString output = QString::fromUtf8(outputOf(program, {"-al", write(false)}));
    Line found;
    QRegularExpressionMatchIterator matches = QRegularExpression(" POINT Z \\(([^)]*)\\)").globalMatch(output);
    while (matches.hasNext())
        found.append(coordinates(matches.next().captured(1)));
    Line expected;
    for (const Line &path : placemarkPaths())
        expected.append(path);
    QVERIFY2(found.size() == expected.size(), qPrintable(output.left(2000)));
    QVERIFY(areAt(found, expected, kSixDecimals));

    const QList<Line> expectedLines = lines();
    int count = 0;
    matches = QRegularExpression(" LINESTRING Z \\(([^)]*)\\)").globalMatch(output);
    while (matches.hasNext()) {
        const Line line = coordinates(matches.next().captured(1));
        QVERIFY(count < expectedLines.size());
        QCOMPARE(line.size(), 2 * kSweeps);
        QVERIFY(areAt(line, expectedLines.at(count), kSixDecimals));
        ++count;
    }
    QCOMPARE(count, expectedLines.size());
}

void TestAGeoDataProcessorReadback::theDocumentIsWellFormed()
{
    QFile file(write(true));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QXmlStreamReader xml(&file); // with namespaces
    int placemarks = 0;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const bool isExtension = xml.name() == QLatin1String("Track") || xml.name() == QLatin1String("coord");
        QCOMPARE(xml.namespaceUri().toString(), isExtension ? QString("http://www.google.com/kml/ext/2.2")
                                                            : QString("http://www.opengis.net/kml/2.2"));
        placemarks += xml.name() == QLatin1String("Placemark") ? 1 : 0;
    }
    QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
    // The waypoints, the line of each path, and the ceiling of each sensor's.
    QCOMPARE(placemarks, (kSweeps + 1) * (1 + kPaths) + 2 * 7);
}

QTEST_GUILESS_MAIN(TestAGeoDataProcessorReadback)
#include "tst_ageodataprocessor_readback.moc"
