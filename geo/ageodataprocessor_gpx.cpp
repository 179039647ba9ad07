#include "geo/ageodataprocessor.h"

#include "core/boundeddom.h"
#include "geo/waypoint.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <vector>

namespace {

const QLatin1String kTrack("trk");
const QLatin1String kPoint("trkpt");

// All nodes below a node, in document order.
class NodeWalk
{
public:
    explicit NodeWalk(const QDomNode &top)
        : m_top(top)
        , m_node(top)
    {}

    bool next()
    {
        const QDomNode child = m_node.firstChild();
        if (!child.isNull()) {
            m_node = child;
            ++m_depth;
            return true;
        }
        for (; m_depth > 0; --m_depth) {
            const QDomNode sibling = m_node.nextSibling();
            if (!sibling.isNull()) {
                m_node = sibling;
                return true;
            }
            m_node = m_node.parentNode();
        }
        return false;
    }
    const QDomNode &node() const { return m_node; }
    int depth() const { return m_depth; } // below the top

private:
    QDomNode m_top; // keeps the document alive
    QDomNode m_node;
    int m_depth = 0;
};

QDomElement firstElementBelow(const QDomElement &element, const QString &name)
{
    NodeWalk walk(element);
    while (walk.next()) {
        if (walk.node().isElement() && walk.node().nodeName() == name)
            return walk.node().toElement();
    }
    return {};
}

// QDomElement::text(), which would copy what is nested once for each level.
QString textOf(const QDomElement &element)
{
    QString text;
    NodeWalk walk(element);
    while (walk.next()) {
        if (walk.node().isText())
            text.append(walk.node().nodeValue());
    }
    return text;
}

enum TextOfPoint
{
    Elevation,
    Name,
    Description,
    Time,
    TextCount,
};

const QLatin1String kTextNames[TextCount] = {QLatin1String("ele"), QLatin1String("name"), QLatin1String("desc"),
                                             QLatin1String("time")};

// Gathers the texts of points in one walk over the nodes that hold them: of each name that of the first element at any
// depth. Points may stand within points, and the first element of the inner one may be that of all around it.
class PointTexts
{
public:
    struct Point
    {
        QDomElement element;
        QString texts[TextCount];
    };

    // Ends the points and elements that the walk has left.
    void leave(const NodeWalk &walk) { leave(walk.depth()); }
    void leaveAll() { leave(0); }

    // Each takes the node that the walk stands on.
    void enterPoint(const NodeWalk &walk)
    {
        m_openPoints.push_back({m_points.size(), walk.depth()});
        m_points.push_back({walk.node().toElement(), {}});
    }
    void enterElement(const NodeWalk &walk, const QString &name)
    {
        const auto *const known = std::find(std::begin(kTextNames), std::end(kTextNames), name);
        if (known == std::end(kTextNames))
            return;
        const auto kind = static_cast<std::size_t>(known - std::begin(kTextNames));
        std::size_t &lacking = m_firstLacking[kind];
        if (lacking < m_openPoints.size())
            m_openTexts.push_back({kind, lacking, m_openPoints.size(), walk.depth(), m_text.size()});
        lacking = m_openPoints.size();
    }
    void enterText(const NodeWalk &walk)
    {
        if (m_openTexts.empty())
            return;
        const QString text = walk.node().nodeValue();
        m_text.append(text);
        m_readLength += text.size();
    }

    // All so far, in document order. The texts of those that the walk is within may be missing.
    std::vector<Point> &points() { return m_points; }
    bool isWithinPoint() const { return !m_openPoints.empty(); }

private:
    struct OpenPoint
    {
        std::size_t index;
        int depth;
    };
    // An element whose text is that of the open points from one up to before another.
    struct OpenText
    {
        std::size_t kind;
        std::size_t fromPoint;
        std::size_t toPoint;
        int depth;
        int begin; // in m_text
    };

    void leave(int depth)
    {
        while (!m_openTexts.empty() && m_openTexts.back().depth >= depth) {
            finish(m_openTexts.back());
            m_openTexts.pop_back();
        }
        if (m_openTexts.empty())
            m_text.resize(0); // keeps its memory
        while (!m_openPoints.empty() && m_openPoints.back().depth >= depth)
            m_openPoints.pop_back();
        for (std::size_t &lacking : m_firstLacking)
            lacking = std::min(lacking, m_openPoints.size());
    }

    void finish(const OpenText &open)
    {
        // A text is part of those of all elements around it, which multiply a file where names of points hold points
        // with names. Only such a file can come to this.
        constexpr qint64 kMaxCopies = 16;
        const int length = m_text.size() - open.begin;
        if (m_copiedLength + length > kMaxCopies * m_readLength)
            return;
        m_copiedLength += length;
        const QString text(m_text.constData() + open.begin, length);
        for (std::size_t i = open.fromPoint; i < open.toPoint; ++i)
            m_points[m_openPoints[i].index].texts[open.kind] = text;
    }

    std::vector<Point> m_points;
    std::vector<OpenPoint> m_openPoints;
    std::size_t m_firstLacking[TextCount] = {}; // of the open points: all behind it lack the text, too
    std::vector<OpenText> m_openTexts;
    QString m_text; // of the outermost open text, with those within it
    qint64 m_readLength = 0;
    qint64 m_copiedLength = 0;
};

struct Track
{
    static constexpr std::size_t kNoPoint = std::numeric_limits<std::size_t>::max();

    QDomElement element;
    std::size_t firstPoint = kNoPoint;
};

// All tracks of a document, and the points that are the first of any, in one pass: a search for each would take a pass
// over all that nested tracks hold, for each of them.
std::vector<Track> tracksOf(const QDomDocument &document, PointTexts *firstPoints)
{
    struct Open
    {
        std::size_t track;
        int depth;
    };
    std::vector<Track> tracks;
    std::vector<Open> open; // those that still lack a point
    NodeWalk walk(document);
    while (walk.next()) {
        firstPoints->leave(walk);
        while (!open.empty() && open.back().depth >= walk.depth())
            open.pop_back();
        if (walk.node().isText()) {
            firstPoints->enterText(walk);
        } else if (walk.node().isElement()) {
            const QString name = walk.node().nodeName();
            if (name == kTrack) {
                open.push_back({tracks.size(), walk.depth()});
                tracks.push_back({walk.node().toElement()});
            } else if (name != kPoint) {
                firstPoints->enterElement(walk, name);
            } else if (!open.empty()) {
                for (const Open &waiting : open)
                    tracks[waiting.track].firstPoint = firstPoints->points().size();
                open.clear();
                firstPoints->enterPoint(walk);
            }
        }
    }
    firstPoints->leaveAll();
    return tracks;
}

// 0 if it is none.
float numberFrom(const QString &text)
{
    return static_cast<float>(text.toDouble());
}

// Makes the records of points. Points within points may share their texts, of any length, so each is converted once:
// whether two share their data is known at once, whether they are equal only at their end.
class RecordMaker
{
public:
    RecordMaker() { m_time.setTimeSpec(Qt::UTC); }

    AGeoData record(const PointTexts::Point &point)
    {
        if (!point.texts[Elevation].isSharedWith(m_elevationText)) {
            m_elevationText = point.texts[Elevation];
            m_elevation = numberFrom(m_elevationText);
        }
        if (!point.texts[Time].isSharedWith(m_timeText)) {
            m_timeText = point.texts[Time];
            m_time = QDateTime::fromString(m_timeText, Qt::ISODate);
            m_time.setTimeSpec(Qt::UTC); // keeps the clock reading, whatever its offset
        }
        AGeoData record;
        record.latitude = numberFrom(point.element.attribute(QStringLiteral("lat")));
        record.longitude = numberFrom(point.element.attribute(QStringLiteral("lon")));
        record.altitude = m_elevation;
        record.recordName = point.texts[Name];
        record.description = point.texts[Description];
        record.recordTime = m_time;
        addBalloon(&record);
        return record;
    }

private:
    QString m_elevationText;
    float m_elevation = 0.0F;
    QString m_timeText;
    QDateTime m_time;
};

} // namespace

bool AGeoDataProcessor::loadGpxDocument(QIODevice *device, QString *errorMessage, int *errorLine, int *errorColumn)
{
    XmlError error;
    const bool isRead = setBoundedContent(&m_gpxDocument, device, &error);
    if (!isRead) {
        if (errorMessage)
            *errorMessage = error.text;
        if (errorLine)
            *errorLine = static_cast<int>(error.line);
        if (errorColumn)
            *errorColumn = static_cast<int>(error.column);
    }
    // What stands before the damage is read like any other content.
    const bool isParsed = parseGpxTrackData();
    return isRead && isParsed;
}

bool AGeoDataProcessor::parseGpxTrackData()
{
    const QDomElement master = getMasterTrackElement();
    if (master.isNull())
        return false;
    PointTexts points;
    RecordMaker maker;
    const auto storePoints = [&] {
        for (const PointTexts::Point &point : points.points())
            storeWaypoint(maker.record(point));
        points.points().clear();
    };
    NodeWalk walk(master);
    while (walk.next()) {
        points.leave(walk);
        if (!points.isWithinPoint())
            storePoints(); // together with those within it, since their order is that of the document
        if (walk.node().isText()) {
            points.enterText(walk);
        } else if (walk.node().isElement()) {
            const QString name = walk.node().nodeName();
            if (name == kPoint)
                points.enterPoint(walk);
            else
                points.enterElement(walk, name);
        }
    }
    points.leaveAll();
    storePoints();
    return true;
}

QDomElement AGeoDataProcessor::getMasterTrackElement()
{
    QDomElement master;
    QDateTime latest;
    std::size_t timedPoint = Track::kNoPoint;
    QDateTime start; // of the timed point
    PointTexts firstPoints;
    const std::vector<Track> tracks = tracksOf(m_gpxDocument, &firstPoints);
    for (const Track &track : tracks) {
        if (track.element.attribute(QStringLiteral("name")).startsWith(QLatin1String("_TRIMOSA_DATA_TRACK")))
            continue;
        if (track.firstPoint != timedPoint) {
            timedPoint = track.firstPoint;
            // Qt's text form is meant: a time in ISO form, as GPX has them, isn't valid here, and so the last track is
            // the master.
            start = timedPoint == Track::kNoPoint
                        ? QDateTime()
                        : QDateTime::fromString(firstPoints.points()[timedPoint].texts[Time], Qt::TextDate);
        }
        const bool beginsLater = start.isValid() && start > latest;
        if (beginsLater || !latest.isValid()) {
            master = track.element;
            latest = start;
        }
    }
    return master;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature is fixed
QString AGeoDataProcessor::getDataOfElement(QDomElement element, QString path)
{
    int from = 0;
    while (true) {
        while (from < path.size() && path.at(from) == QLatin1Char('/'))
            ++from;
        if (from == path.size())
            return textOf(element);
        const int slash = path.indexOf(QLatin1Char('/'), from);
        const int to = slash < 0 ? path.size() : slash;
        element = firstElementBelow(element, path.mid(from, to - from));
        if (element.isNull())
            return {};
        from = to;
    }
}
