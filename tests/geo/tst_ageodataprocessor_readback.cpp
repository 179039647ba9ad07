#include "geo/kmlwriter.h"

#include "geo/processor.h"

#include <QtCore/QProcess>
#include <QtCore/QStandardPaths>
#include <QtTest/QtTest>

#include <cmath>
#include <memory>

// Other programs read what is written.

namespace {

constexpr int kSweeps = 256; // with this number of waypoints a sweep in the time of the last finds it
constexpr int kPaths = 3;    // of measured values
constexpr double kSixDecimals = 0.6e-6;

struct Coordinates
{
    double longitude;
    double latitude;
};

AGeoData drivePosition(int i)
{
    AGeoData record =
        position(i * 1000LL, 4830.0F + 0.25F * static_cast<float>(i), 1115.0F - 3.5F * static_cast<float>(i % 50));
    record.altitude = 400.0F + static_cast<float>(i);
    record.recordName = "P" + QString::number(i);
    return record;
}

bool isAt(const AGeoData &record, const Coordinates &coordinates)
{
    return std::fabs(double(record.latitude) - coordinates.latitude) < kSixDecimals &&
           std::fabs(double(record.longitude) - coordinates.longitude) < kSixDecimals;
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
QList<Coordinates> points(const QByteArray &gpx, const QString &tag)
{
    QDomDocument document;
    document.setContent(gpx);
    QList<Coordinates> result;
    const QDomNodeList elements = document.elementsByTagName(tag);
    for (int i = 0; i < elements.size(); ++i) {
        const QDomElement element = elements.at(i).toElement();
        result.append({element.attribute("lon").toDouble(), element.attribute("lat").toDouble()});
    }
    return result;
}

} // namespace

class TestAGeoDataProcessorReadback : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void gpsbabelReadsThePointsBack();
    void gpsbabelReadsATimeTrackBack();
    void ogrinfoReadsTheDocument();
    void theDocumentIsWellFormed();

private:
    // The name of a file with the drive, measured points with balloons included.
    QString write(bool withTimeTrack)
    {
        const std::unique_ptr<QDomDocument> document(
            m_processor.toKml("Drive & more", 100.0F, true, true, withTimeTrack, 1, true, 7));
        const QString name = m_dir.filePath(withTimeTrack ? "track.kml" : "drive.kml");
        QFile file(name);
        return file.open(QIODevice::WriteOnly) && writeKml(*document, &file) && file.flush() ? name : QString();
    }

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

void TestAGeoDataProcessorReadback::gpsbabelReadsThePointsBack()
{
    const QString program = QStandardPaths::findExecutable("gpsbabel");
    if (program.isEmpty())
        QSKIP("gpsbabel is not installed");
    const QString name = write(false);
    const QByteArray gpx = outputOf(program, {"-i", "kml", "-f", name, "-o", "gpx", "-F", "-"});
    const QList<Coordinates> waypoints = points(gpx, "wpt");
    QVERIFY2(waypoints.size() == kSweeps * (1 + kPaths), gpx.left(500).constData());
    for (int path = 0; path <= kPaths; ++path) {
        for (int i = 0; i < kSweeps; ++i) {
            const AGeoData &record = *m_processor.m_waypoints.value(at(i * 1000LL));
            QVERIFY(isAt(record, waypoints.at(path * kSweeps + i)));
        }
    }
}

void TestAGeoDataProcessorReadback::gpsbabelReadsATimeTrackBack()
{
    const QString program = QStandardPaths::findExecutable("gpsbabel");
    if (program.isEmpty())
        QSKIP("gpsbabel is not installed");
    const QByteArray gpx = outputOf(program, {"-i", "kml", "-f", write(true), "-o", "gpx", "-F", "-"});
    // It takes the tracks with times; the lines have two tuples for each point.
    QDomDocument document;
    QVERIFY(document.setContent(gpx));
    const QDomNodeList tracks = document.elementsByTagName("trk");
    int timed = 0;
    for (int t = 0; t < tracks.size(); ++t) {
        const QDomNodeList trackPoints = tracks.at(t).toElement().elementsByTagName("trkpt");
        if (tracks.at(t).toElement().elementsByTagName("time").isEmpty())
            continue;
        ++timed;
        QCOMPARE(trackPoints.size(), kSweeps);
        for (int i = 0; i < kSweeps; ++i) {
            const QDomElement element = trackPoints.at(i).toElement();
            const AGeoData &record = *m_processor.m_waypoints.value(at(i * 1000LL));
            QVERIFY(isAt(record, {element.attribute("lon").toDouble(), element.attribute("lat").toDouble()}));
            QCOMPARE(QDateTime::fromString(textAt(element, "time"), Qt::ISODate), at(i * 1000LL));
        }
    }
    QCOMPARE(timed, 1 + kPaths);
}

void TestAGeoDataProcessorReadback::ogrinfoReadsTheDocument()
{
    const QString program = QStandardPaths::findExecutable("ogrinfo");
    if (program.isEmpty())
        QSKIP("ogrinfo is not installed");
    const QString output = QString::fromUtf8(outputOf(program, {"-al", write(false)}));
    // One layer for each folder that has placemarks of its own.
    int waypoints = 0;
    QRegularExpressionMatchIterator matches =
        QRegularExpression("POINT Z? ?\\((\\S+) (\\S+) \\S+\\)").globalMatch(output);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        const AGeoData &record = *m_processor.m_waypoints.value(at(waypoints % kSweeps * 1000LL));
        QVERIFY(isAt(record, {match.captured(1).toDouble(), match.captured(2).toDouble()}));
        ++waypoints;
    }
    QVERIFY2(waypoints == kSweeps * (1 + kPaths), qPrintable(output.left(2000)));
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
