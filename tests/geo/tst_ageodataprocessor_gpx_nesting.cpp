#include "geo/processor.h"

#include <QtTest/QtTest>

#include <numeric>
#include <random>

// Elements within elements of the same sort: each point has the first match at any depth, and the cost is that of the
// file.

namespace {

constexpr int kLargeText = 1000000;

QByteArray repeated(const QByteArray &text, int count)
{
    return text.repeated(count);
}

// As the form is defined, by searches for each point.
QString textBelow(const QDomElement &element, const QString &name)
{
    const QDomNodeList found = element.elementsByTagName(name);
    return found.isEmpty() ? QString() : found.at(0).toElement().text();
}

QDomElement masterTrack(const QDomDocument &document)
{
    QDomElement master;
    QDateTime latest;
    const QDomNodeList tracks = document.elementsByTagName("trk");
    for (int i = 0; i < tracks.size(); ++i) {
        const QDomElement track = tracks.at(i).toElement();
        if (track.attribute("name").startsWith("_TRIMOSA_DATA_TRACK"))
            continue;
        const QDomNodeList points = track.elementsByTagName("trkpt");
        const QString time = points.isEmpty() ? QString() : textBelow(points.at(0).toElement(), "time");
        const QDateTime start = QDateTime::fromString(time, Qt::TextDate);
        if ((start.isValid() && start > latest) || !latest.isValid()) {
            master = track;
            latest = start;
        }
    }
    return master;
}

QStringList pointTexts(const QDomElement &track)
{
    QMultiMap<QDateTime, QString> texts;
    const QDomNodeList points = track.elementsByTagName("trkpt");
    for (int i = 0; i < points.size(); ++i) {
        const QDomElement point = points.at(i).toElement();
        QDateTime time = QDateTime::fromString(textBelow(point, "time"), Qt::ISODate);
        time.setTimeSpec(Qt::UTC);
        texts.insert(time, QStringList{point.attribute("lat"), textBelow(point, "name"), textBelow(point, "desc"),
                                       QString::number(textBelow(point, "ele").toFloat()), time.toString(Qt::ISODate)}
                               .join('|'));
    }
    return texts.values();
}

QStringList waypointTexts(const Processor &processor)
{
    QStringList texts;
    for (const AGeoData *record : processor.m_waypoints) {
        const QString description = record->description.startsWith("<table>") ? QString() : record->description;
        texts.append(QStringList{QString::number(double(record->latitude)), record->recordName, description,
                                 QString::number(double(record->altitude)), record->recordTime.toString(Qt::ISODate)}
                         .join('|'));
    }
    return texts;
}

class RandomContent
{
public:
    explicit RandomContent(unsigned int seed)
        : m_generator(seed)
    {}

    QByteArray elements(int depth)
    {
        QByteArray content;
        for (int count = 1 + below(4); count > 0; --count)
            content += depth == 0 || below(3) == 0 ? text() : element(depth);
        return content;
    }

private:
    int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(m_generator); }

    QByteArray text()
    {
        const QByteArray texts[] = {"7",
                                    "x",
                                    "2024-05-17T12:30:00Z",
                                    "2024-05-17T12:30:01Z",
                                    "Fri May 17 12:30:00 2024",
                                    "Sat May 18 12:30:00 2024",
                                    "<![CDATA[<c>]]>",
                                    "<!-- c -->",
                                    "<?p q?>"};
        return texts[below(9)];
    }

    QByteArray element(int depth)
    {
        const QByteArray names[] = {"trk", "trkpt", "trkpt", "ele", "name", "desc", "time", "time", "a"};
        const QByteArray name = names[below(9)];
        QByteArray attributes;
        if (name == "trkpt")
            attributes = " lat='" + QByteArray::number(++m_points) + "'";
        else if (name == "trk" && below(6) == 0)
            attributes = " name='_TRIMOSA_DATA_TRACK'";
        return '<' + name + attributes + '>' + elements(depth - 1) + "</" + name + '>';
    }

    std::mt19937 m_generator;
    int m_points = 0;
};

} // namespace

class TestAGeoDataProcessorGpxNesting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anyNestingIsReadAsItIsDefined();
    void pointsNestedDeepAreAllRead();
    void aTextOfManyPointsIsReadOnce_data();
    void aTextOfManyPointsIsReadOnce();
    void namesWithinNamesMultiplyAFileByALimit();
    void tracksWithinPointsAreReadInOnePass();
    void pointsOfDataTracksMayBeNestedDeep();
    void damageBehindNestedPointsIsReported();
};

void TestAGeoDataProcessorGpxNesting::anyNestingIsReadAsItIsDefined()
{
    int pointCount = 0;
    int withoutTrack = 0;
    for (unsigned int seed = 0; seed < 3000; ++seed) {
        RandomContent random(seed);
        const QByteArray content = "<gpx>" + random.elements(6) + "</gpx>";
        QDomDocument document;
        QVERIFY(document.setContent(content));
        const QDomElement master = masterTrack(document);
        Processor processor(nullptr);
        QCOMPARE(processor.loadGpx(content), !master.isNull());
        const QStringList expected = master.isNull() ? QStringList() : pointTexts(master);
        QVERIFY2(waypointTexts(processor) == expected, content.constData());
        const QDomElement own = processor.getMasterTrackElement();
        QCOMPARE(own.isNull(), master.isNull());
        QCOMPARE(own.lineNumber(), master.lineNumber());
        QCOMPARE(own.columnNumber(), master.columnNumber());
        QCOMPARE(processor.getDataOfElement(processor.m_gpxDocument.documentElement(), QString()),
                 document.documentElement().text());
        pointCount += expected.size();
        withoutTrack += master.isNull() ? 1 : 0;
    }
    QVERIFY(pointCount > 1000);
    QVERIFY(withoutTrack > 100);
}

void TestAGeoDataProcessorGpxNesting::pointsNestedDeepAreAllRead()
{
    constexpr int kDepth = 997; // and "gpx", "trk" and "name" make 1000
    Processor processor(nullptr);
    QVERIFY(processor.loadGpx("<gpx><trk>" + repeated("<trkpt lat='1' lon='2'>", kDepth) + "<name>P</name>" +
                              repeated("</trkpt>", kDepth) + "</trk></gpx>"));
    QCOMPARE(processor.m_waypoints.size(), kDepth);
    for (const AGeoData *record : qAsConst(processor.m_waypoints))
        QCOMPARE(record->recordName, QString("P"));
}

void TestAGeoDataProcessorGpxNesting::aTextOfManyPointsIsReadOnce_data()
{
    QTest::addColumn<int>("points");
    QTest::addColumn<QByteArray>("content"); // of the innermost
    const QByteArray text(kLargeText, 'x');
    QTest::newRow("names within names of all sorts") << 16
                                                     << "<ele><name><desc><time>" + repeated("<a>", 970) + text +
                                                            repeated("</a>", 970) + "</time></desc></name></ele>";
    QTest::newRow("a long number") << 990 << "<ele>" + QByteArray(kLargeText, '1') + "</ele>";
    QTest::newRow("a long time") << 990 << "<time>2024-05-17T12:30:00." + QByteArray(kLargeText, '0') + "</time>";
    QTest::newRow("no time") << 990 << "<time>" + text + "</time>";
    QTest::newRow("a name") << 990 << "<name>" + text + "</name>";
    QTest::newRow("none of them") << 990 << repeated("<b/>", 100000);
}

void TestAGeoDataProcessorGpxNesting::aTextOfManyPointsIsReadOnce()
{
    QFETCH(int, points);
    QFETCH(QByteArray, content);
    Processor processor(nullptr);
    const CpuClock clock;
    QVERIFY(processor.loadGpx("<gpx><trk>" + repeated("<trkpt>", points) + content + repeated("</trkpt>", points) +
                              "</trk></gpx>"));
    QVERIFY2(clock.seconds() < 3.0, qPrintable(QString::number(clock.seconds())));
    QCOMPARE(processor.m_waypoints.size(), points);
}

// A name that holds points with names is made of their texts, too, so each of 499 would have all of the file's text.
void TestAGeoDataProcessorGpxNesting::namesWithinNamesMultiplyAFileByALimit()
{
    const auto nested = [](int depth, const QByteArray &text) {
        return "<gpx><trk>" + repeated("<trkpt><name>a", depth) + text + repeated("</name></trkpt>", depth) +
               "</trk></gpx>";
    };
    const auto lengths = [](const Processor &processor) {
        QList<int> result; // from the innermost
        for (const AGeoData *record : processor.m_waypoints)
            result.append(record->recordName.size());
        return result;
    };
    Processor processor(nullptr);
    QVERIFY(processor.loadGpx(nested(16, QByteArray(kLargeText, 'x'))));
    QList<int> expected;
    for (int i = 1; i <= 16; ++i)
        expected.append(kLargeText + i);
    QCOMPARE(lengths(processor), expected);

    Processor another(nullptr);
    const CpuClock clock;
    QVERIFY(another.loadGpx(nested(499, QByteArray(kLargeText, 'x'))));
    QVERIFY2(clock.seconds() < 3.0, qPrintable(QString::number(clock.seconds())));
    const QList<int> limited = lengths(another);
    QCOMPARE(limited.size(), 499);
    QCOMPARE(limited.first(), kLargeText + 1);
    QCOMPARE(limited.last(), 0);
    QVERIFY(std::accumulate(limited.begin(), limited.end(), qint64(0)) <= 16 * qint64(kLargeText + 499));
}

void TestAGeoDataProcessorGpxNesting::tracksWithinPointsAreReadInOnePass()
{
    constexpr int kDepth = 499;
    Processor processor(nullptr);
    const CpuClock clock;
    QVERIFY(processor.loadGpx("<gpx>" + repeated("<trk><trkpt>", kDepth) + repeated("<b/>", 200000) +
                              repeated("</trkpt></trk>", kDepth) + "</gpx>"));
    QVERIFY2(clock.seconds() < 5.0, qPrintable(QString::number(clock.seconds())));
    QCOMPARE(processor.m_waypoints.size(), 1); // the innermost track is the last
}

void TestAGeoDataProcessorGpxNesting::pointsOfDataTracksMayBeNestedDeep()
{
    Processor processor(nullptr);
    QVERIFY(processor.loadGpx("<gpx><trk name='_TRIMOSA_DATA_TRACK'>" + repeated("<trkpt>", 100) +
                              repeated("</trkpt>", 100) + "</trk>" + repeated("<trkpt>", 100) +
                              repeated("</trkpt>", 100) + "<trk><trkpt/></trk></gpx>"));
    QCOMPARE(processor.m_waypoints.size(), 1);
}

void TestAGeoDataProcessorGpxNesting::damageBehindNestedPointsIsReported()
{
    const QByteArray content = "<gpx><trk>" + repeated("<trkpt>", 100) + "\n<a x=1/>";
    QDomDocument document;
    QString errorText;
    QVERIFY(!document.setContent(content, &errorText));
    Processor processor(nullptr);
    QVERIFY(!processor.loadGpx(content));
    QCOMPARE(processor.errorText, errorText);
    QCOMPARE(processor.line, 2);
    QCOMPARE(processor.m_waypoints.size(), 100);
}

QTEST_GUILESS_MAIN(TestAGeoDataProcessorGpxNesting)
#include "tst_ageodataprocessor_gpx_nesting.moc"
