#pragma once

#include "core/afrequency.h"
#include "core/aveldoranexport.h"

#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QPair>
#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtCore/qnamespace.h>
#include <QtGui/QColor>

class AProfile;
class QDomDocument;
class QDomElement;
class QIODevice;

// One node of the channel plan: a named frequency range with narrower ranges below it. A node owns its children, and
// takes itself out of its parent when it is deleted, so a subtree is removed by deleting its top node. Trees of any
// depth and width are walked without recursion, except by comparing and reading.
//
// A mirror of a range is a copy of it at another frequency, such as the downlink that belongs to an uplink. It is a
// node of its own beside the range, or not there but known by the frequency where it would begin. docs/channels.md
// shows the use of the tree, docs/formats.md has the channel section of a profile.
class AVELDORAN_DATA_EXPORT AChannelInfo
{
public:
    // Used as bits by hasChildsWithType and the expansion, as plain values elsewhere.
    enum RangeType
    {
        Generic = 2,      // a plain grouping range
        Direction = 4,    // a transmission direction
        Provider = 8,     // one provider's or service's range
        Channel = 16,     // one channel
        AutoChannel = 32, // a channel generated from a definition
    };

    // What data() and setData() take, and AChannelInfoModel shows.
    enum Columns
    {
        ColumnName,
        ColumnQualifiedName, // read-only
        ColumnStartFreq,     // the frequency columns are read as hertz in a qlonglong
        ColumnStopFreq,
        ColumnType,
        ColumnSelectable,
        ColumnColor,
        ColumnProfileId,
        ColumnComment,
        ColumnAutoChannelDefinition, // a QVariantList of QVariantMap
        ColumnMirrorEntryFreq,       // where the mirror begins (not a distance); 0 for none
    };

    // A run of "count" equally wide channels (int). The first begins at "start", each is as wide as "width", and
    // "space" lies between two of them, below 0 where they overlap (frequency texts). The first one's number is
    // "first", from one to the next it rises by "step" (int). "color" (QColor or text) is that of all; one that is none
    // leaves them the node's. What is missing or no number is 0, so a definition without a count makes no channel.
    using Definition = QMap<QString, QVariant>;

    // Nodes of a tree, each with its depth or its stacking level.
    using FlatList = QList<QPair<AChannelInfo *, int>>;

    // Stores `parent` but doesn't enter the node in its children: call appendChild for that.
    AChannelInfo(AChannelInfo *parent, RangeType type, const AFrequency &begin, const AFrequency &end,
                 const QString &label, bool selectable);
    AChannelInfo(const AChannelInfo &other); // a deep copy without a parent
    AChannelInfo &operator=(const AChannelInfo &) = delete;
    ~AChannelInfo();

    // Takes ownership of a node that stands in no other list of children. Does nothing if it is a child already.
    void appendChild(AChannelInfo *child);

    // The place in the tree; a root has no parent.
    AChannelInfo *parent() const { return m_parent; }
    AChannelInfo *child(int row) { return m_children.at(row); } // `row` must be below childCount()
    int childCount() const { return m_children.size(); }
    int row() const; // 0 without a parent, -1 if the parent doesn't list the node; not searched from the front
    int columnCount() const;

    // The fields of this node alone; setData() changes them.
    AFrequency beginFrequency() const { return m_beginFrequency; }
    AFrequency endFrequency() const { return m_endFrequency; }
    const QString &label() const { return m_label; }
    QString comment() const { return m_comment; }
    RangeType type() const { return m_type; }
    bool selectable() const { return m_selectable; }
    QColor color() const; // invalid if the node has none or its text is no colour
    QList<Definition> channelDefinitions() const { return m_channelDefinitions; }

    // The labels from the root down to this node; of a profile whose id begins with "default" only those below the
    // profile's node. `withRange` appends the range in brackets.
    QString name(bool withRange) const;

    // Whether any node strictly below this one has a type that shares a bit with `mask`.
    bool hasChildsWithType(RangeType mask) const;

    // "Generic" to "AutoChannel", not translated; "unknown" for a number that is no RangeType.
    static QString mapTypeToString(int type);

    QVariant data(int column) const; // invalid for a column that doesn't exist

    // In the frequency columns a double is megahertz, an integer hertz, and anything else a text. A type that doesn't
    // exist is stored as Generic. Columns that don't exist or can't be written are ignored.
    void setData(Columns column, QVariant value);

    // Replaces all of them. Channels that were made of the old ones stay.
    void setChannelDefinitions(QList<Definition> definitions);

    // Equal ranges with equal children in any order; a tree with unexpanded definitions equals the same tree
    // expanded. parent, selectable and profile id take no part: the same plan loaded from another profile is equal.
    bool operator==(const AChannelInfo &other) const;
    bool operator!=(const AChannelInfo &other) const { return !(*this == other); }

    // --- reading profiles ---

    // Reads a profile below `parent`: one node for its whole range, with its channel section below. False for a null
    // or invalid profile. `expandMirrors` makes each mirror a sibling before its range, otherwise only the frequency
    // where it begins is kept, of several the last; `expandAutoChannels` turns definitions into channels at once.
    static bool fromProfile(AProfile *profile, AChannelInfo *parent, bool expandMirrors, bool expandAutoChannels);

    // Reads one "range" element. Gives the nodes made directly below `parent`, mirrored copies first; none for an
    // element of another name. A range that begins at or above its parent's end, or ends at or below its begin, is
    // dropped, as far as these stand before it and are not 0.
    static QList<AChannelInfo *> processXmlElement(QDomElement *element, AChannelInfo *parent, bool selectable,
                                                   bool expandMirrors, bool expandAutoChannels);

    // --- writing, and reading EFIS exports ---

    // A "Range" element for this node and all below it, in the form that processXmlElement reads; the caller attaches
    // it. The document, which must not be null, only makes the nodes. Texts are taken as they stand, with characters
    // that XML can't hold: AProfile::setChannelData leaves those out. Not all comes back when it is read: generated
    // channels become plain ranges, and colours of definitions, profile ids, edges below 0, parts of a hertz from 1 MHz
    // on and texts that are no colour are lost. So are ranges that begin at or above their parent's end or end at or
    // below its begin, with all below them: a single frequency in a range of that frequency alone is one.
    QDomElement toDomNode(QDomDocument *document) const;

    // Reads an EFIS export (docs/formats.md) until fewer than six bytes are available and adds the allocations that are
    // valid today below `parent`, which must not be null and gets the range of the first and the last of them. False,
    // and nothing changed, if the device can't be read or holds no such allocation. The caller owns both.
    static bool fromEfisCSV(QIODevice *io, AChannelInfo *parent);

    // --- expansion and flat views ---

    // Turns the definitions of this node and all below into channels, behind the children that are there.
    // `clearExpanded` first deletes those that were made before, `clearDefinitions` drops the definitions afterwards.
    // Costs time and memory by the number of channels.
    void processChannelDefinitions(bool clearDefinitions, bool clearExpanded);

    // How many channels processChannelDefinitions would make here and below; nothing is made.
    qint64 definedChannelCount() const;

    // Deletes the direct children with the AutoChannel bit and tells how many they were.
    int clearExpandedAutoChannels();

    // The subtree, each node before those below it, with its depth counted from `level`.
    FlatList channels(int level);

    // The subtree with levels on which no two siblings overlap. Children for which 49 levels don't suffice, and those
    // that begin below 0 Hz, are left out.
    FlatList stackedChannels(int level) const;

    // --- search ---

    // The first node of the subtree, in the order of channels(), whose label or qualified name is `name`.
    const AChannelInfo *findByName(const QString &name) const;

    // The first node of the subtree with that profile id.
    const AChannelInfo *findByProfileId(const QString &id) const;

    // --- sorting ---

    // Sorts the children of this node and of all below by a column's text; the start and stop frequencies by number,
    // but where a mirror begins as text of digits. Children with equal texts keep their order, and a descending
    // order is the ascending one reversed, equal ones included. A column without texts, or one that doesn't exist, has
    // equal ones, and so have start and stop frequencies from 9.22 THz on. Those below 0 go by their digits: they stand
    // behind the positive ones of as many digits or fewer, the ones nearest to 0 first.
    void sortChildren(int column, Qt::SortOrder order);

private:
    class Reader;
    class Walk;
    struct ComparedNode;

    static QColor colorFromVariant(const QVariant &value);
    QDomElement fieldsToDomNode(QDomDocument *document) const;
    void appendDefinitions(QDomDocument *document, QDomElement *element) const;
    void enter(AChannelInfo *child);
    void leaveParent();
    void numberChildren() const;
    bool hasDefaultProfile() const;
    bool isNamed(const QString &name) const;
    void copyFields(const AChannelInfo &other);
    bool hasEqualFields(const AChannelInfo &other) const;
    qint64 expandedChildCount() const;
    QVariant channelColor(const Definition &definition) const;
    bool generatesLike(const AChannelInfo &other) const;
    void expandOwnDefinitions();
    QString sortKey(int column, bool showsTextAbove) const;

    AChannelInfo *m_parent;
    AFrequency m_beginFrequency;
    AFrequency m_endFrequency;
    QString m_label;
    bool m_selectable;
    QList<AChannelInfo *> m_children;
    QVariant m_color;
    RangeType m_type;
    QString m_profileId;
    QString m_comment;
    QList<Definition> m_channelDefinitions;
    AFrequency m_mirrorEntryFrequency;

    // Children are numbered in their order. A removal at the front leaves the numbers as they are and raises the first
    // one; one further back makes the numbers behind it too large, which row() mends. -1: in no list of children.
    mutable qint64 m_number = -1;
    qint64 m_firstNumber = 0; // of this node's children
};
