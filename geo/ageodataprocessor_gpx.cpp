#include "geo/ageodataprocessor.h"

#include "core/boundeddom.h"
#include "geo/waypoint.h"

#include <vector>

namespace {

constexpr std::size_t kMaxPointNesting = 16;

const QLatin1String kTrack("trk");
const QLatin1String kPoint("trkpt");

// All elements below a node, in document order.
class ElementWalk
{
public:
    explicit ElementWalk(const QDomNode &top)
        : m_top(top)
        , m_node(top)
    {}

    bool next()
    {
        do {
            step();
        } while (!m_node.isNull() && !m_node.isElement());
        return !m_node.isNull();
    }
    QDomElement element() const { return m_node.toElement(); }
    bool isNamed(const QString &name) const { return m_node.nodeName() == name; }
    bool isNamed(const QLatin1String &name) const { return m_node.nodeName() == name; }
    int depth() const { return m_depth; } // below the top

private:
    void step()
    {
        const QDomNode child = m_node.firstChild();
        if (!child.isNull()) {
            m_node = child;
            ++m_depth;
            return;
        }
        for (; m_depth > 0; --m_depth) {
            const QDomNode sibling = m_node.nextSibling();
            if (!sibling.isNull()) {
                m_node = sibling;
                return;
            }
            m_node = m_node.parentNode();
        }
        m_node = QDomNode();
    }

    QDomNode m_top; // keeps the document alive
    QDomNode m_node;
    int m_depth = 0;
};

QDomElement firstElementBelow(const QDomElement &element, const QString &name)
{
    ElementWalk walk(element);
    while (walk.next()) {
        if (walk.isNamed(name))
            return walk.element();
    }
    return {};
}

// The points that a walk is within. Points within points each hold the texts of all those inside, so their nesting
// multiplies a file.
class OpenPoints
{
public:
    // Takes the next element of the walk. False if it is a point within too many others.
    bool take(const ElementWalk &walk)
    {
        while (!m_depths.empty() && m_depths.back() >= walk.depth())
            m_depths.pop_back();
        if (walk.isNamed(kPoint))
            m_depths.push_back(walk.depth());
        return m_depths.size() <= kMaxPointNesting;
    }

private:
    std::vector<int> m_depths;
};

// Null if there is none.
QDomElement pointNestedTooDeep(const QDomDocument &document)
{
    OpenPoints points;
    ElementWalk walk(document);
    while (walk.next()) {
        if (!points.take(walk))
            return walk.element();
    }
    return {};
}

struct Track
{
    QDomElement element;
    QDomElement firstPoint;
};

// All tracks of a document with their first points, in one pass: a search for each would take a pass over all that
// nested tracks hold, for each of them. None if points are nested too deep.
std::vector<Track> tracksOf(const QDomDocument &document)
{
    struct Open
    {
        std::size_t track;
        int depth;
    };
    std::vector<Track> tracks;
    std::vector<Open> open; // those that still lack a point
    OpenPoints points;
    ElementWalk walk(document);
    while (walk.next()) {
        if (!points.take(walk))
            return {};
        while (!open.empty() && open.back().depth >= walk.depth())
            open.pop_back();
        if (walk.isNamed(kTrack)) {
            open.push_back({tracks.size(), walk.depth()});
            tracks.push_back({walk.element(), {}});
        } else if (walk.isNamed(kPoint)) {
            for (const Open &waiting : open)
                tracks[waiting.track].firstPoint = walk.element();
            open.clear();
        }
    }
    return tracks;
}

// 0 if it is none.
float number(const QString &text)
{
    return static_cast<float>(text.toDouble());
}

// The texts of the first element of each name below a point, in one pass over it.
struct PointTexts
{
    static constexpr int kCount = 4;
    QString elevation, name, description, time;

    explicit PointTexts(const QDomElement &point)
    {
        const QLatin1String names[kCount] = {QLatin1String("ele"), QLatin1String("name"), QLatin1String("desc"),
                                             QLatin1String("time")};
        QString *const texts[kCount] = {&elevation, &name, &description, &time};
        bool isFound[kCount] = {};
        int missing = kCount;
        ElementWalk walk(point);
        while (missing > 0 && walk.next()) {
            for (int i = 0; i < kCount; ++i) {
                if (!isFound[i] && walk.isNamed(names[i])) {
                    *texts[i] = walk.element().text();
                    isFound[i] = true;
                    --missing;
                    break;
                }
            }
        }
    }
};

} // namespace

bool AGeoDataProcessor::loadGpxDocument(QIODevice *device, QString *errorMessage, int *errorLine, int *errorColumn)
{
    DomError error;
    bool isRead = setBoundedContent(&m_gpxDocument, device, &error);
    // What stands before the damage is read like any other content.
    const bool isParsed = parseGpxTrackData();
    const QDomElement tooDeep = isParsed ? QDomElement() : pointNestedTooDeep(m_gpxDocument);
    if (!tooDeep.isNull()) {
        error = {tr("Track points are nested more than %1 deep").arg(kMaxPointNesting), tooDeep.lineNumber(),
                 tooDeep.columnNumber()};
        isRead = false;
    }
    if (!isRead) {
        if (errorMessage)
            *errorMessage = error.text;
        if (errorLine)
            *errorLine = error.line;
        if (errorColumn)
            *errorColumn = error.column;
    }
    return isRead && isParsed;
}

bool AGeoDataProcessor::parseGpxTrackData()
{
    const QDomElement master = getMasterTrackElement();
    if (master.isNull())
        return false;
    ElementWalk walk(master);
    while (walk.next()) {
        if (!walk.isNamed(kPoint))
            continue;
        const QDomElement point = walk.element();
        AGeoData record;
        record.latitude = number(point.attribute(QStringLiteral("lat")));
        record.longitude = number(point.attribute(QStringLiteral("lon")));
        const PointTexts texts(point);
        record.altitude = number(texts.elevation);
        record.recordName = texts.name;
        record.description = texts.description;
        record.recordTime = QDateTime::fromString(texts.time, Qt::ISODate);
        record.recordTime.setTimeSpec(Qt::UTC); // keeps the clock reading, whatever its offset
        addBalloon(&record);
        storeWaypoint(record);
    }
    return true;
}

QDomElement AGeoDataProcessor::getMasterTrackElement()
{
    QDomElement master;
    QDateTime latest;
    QDomElement timedPoint;
    QDateTime start;
    const std::vector<Track> tracks = tracksOf(m_gpxDocument);
    for (const Track &track : tracks) {
        if (track.element.attribute(QStringLiteral("name")).startsWith(QLatin1String("_TRIMOSA_DATA_TRACK")))
            continue;
        if (track.firstPoint != timedPoint) {
            timedPoint = track.firstPoint;
            // Qt's text form is meant: a time in ISO form, as GPX has them, isn't valid here, and so the last track is
            // the master.
            start = QDateTime::fromString(getDataOfElement(timedPoint, QStringLiteral("time")), Qt::TextDate);
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
            return element.text();
        const int slash = path.indexOf(QLatin1Char('/'), from);
        const int to = slash < 0 ? path.size() : slash;
        element = firstElementBelow(element, path.mid(from, to - from));
        if (element.isNull())
            return {};
        from = to;
    }
}
