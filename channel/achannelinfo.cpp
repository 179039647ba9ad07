#include "channel/achannelinfo.h"

#include "channel/achannelinfo_walk.h"

#include <algorithm>
#include <vector>

namespace {

constexpr int kAnyChannel = AChannelInfo::Channel | AChannelInfo::AutoChannel; // accepted as a stored type

AFrequency frequencyFromVariant(const QVariant &value)
{
    AFrequency frequency;
    switch (value.userType()) {
    case QMetaType::Double:
        frequency.setValue(value.toDouble(), AFrequency::MHz);
        break;
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        frequency.setValue(value.toLongLong(), AFrequency::Hz);
        break;
    default:
        frequency = AFrequency(value.toByteArray().constData());
    }
    return frequency;
}

AChannelInfo::RangeType typeFromNumber(int number)
{
    switch (number) {
    case AChannelInfo::Generic:
    case AChannelInfo::Direction:
    case AChannelInfo::Provider:
    case AChannelInfo::Channel:
    case AChannelInfo::AutoChannel:
    case kAnyChannel:
        return static_cast<AChannelInfo::RangeType>(number);
    default:
        return AChannelInfo::Generic;
    }
}

// Shared: a QVariant keeps a colour on the heap.
const QVariant &noColor()
{
    static const QVariant color = QVariant::fromValue(QColor());
    return color;
}

} // namespace

AChannelInfo::AChannelInfo(AChannelInfo *parent, RangeType type, const AFrequency &begin, const AFrequency &end,
                           const QString &label, bool selectable)
    : m_parent(parent)
    , m_beginFrequency(begin)
    , m_endFrequency(end)
    , m_label(label)
    , m_selectable(selectable)
    , m_color(noColor())
    , m_type(type)
{}

AChannelInfo::AChannelInfo(const AChannelInfo &other)
    : m_parent(nullptr)
    , m_selectable(false)
    , m_type(Generic)
{
    copyFields(other);
    std::vector<std::pair<const AChannelInfo *, AChannelInfo *>> pending{{&other, this}};
    while (!pending.empty()) {
        const auto [source, target] = pending.back();
        pending.pop_back();
        target->m_children.reserve(source->m_children.size());
        for (const AChannelInfo *child : source->m_children) {
            auto *copy = new AChannelInfo(nullptr, Generic, {}, {}, {}, false);
            copy->copyFields(*child);
            target->enter(copy);
            if (!child->m_children.isEmpty())
                pending.emplace_back(child, copy);
        }
    }
}

AChannelInfo::~AChannelInfo()
{
    if (m_parent)
        leaveParent();

    // Every node below is cut loose before any is deleted, so that the depth of the tree costs no stack and no node
    // searches its siblings.
    std::vector<AChannelInfo *> doomed;
    const auto cutLooseChildren = [&doomed](AChannelInfo *node) {
        for (AChannelInfo *child : qAsConst(node->m_children)) {
            if (child->m_parent == node)
                child->m_parent = nullptr;
            doomed.push_back(child);
        }
        node->m_children.clear();
    };
    cutLooseChildren(this);
    std::size_t next = 0;
    while (next < doomed.size()) // it grows
        cutLooseChildren(doomed[next++]);
    for (AChannelInfo *node : doomed)
        delete node;
}

// All but the place in the tree: parent, children and row.
void AChannelInfo::copyFields(const AChannelInfo &other)
{
    m_beginFrequency = other.m_beginFrequency;
    m_endFrequency = other.m_endFrequency;
    m_label = other.m_label;
    m_selectable = other.m_selectable;
    m_color = other.m_color;
    m_type = other.m_type;
    m_profileId = other.m_profileId;
    m_comment = other.m_comment;
    m_channelDefinitions = other.m_channelDefinitions;
    m_mirrorEntryFrequency = other.m_mirrorEntryFrequency;
}

void AChannelInfo::appendChild(AChannelInfo *child)
{
    if (child->m_parent == this && child->row() >= 0)
        return;
    const bool standsInSomeList = child->m_number >= 0;
    if (!standsInSomeList || !m_children.contains(child))
        enter(child);
}

void AChannelInfo::enter(AChannelInfo *child)
{
    child->m_parent = this;
    child->m_number = m_firstNumber + m_children.size();
    m_children.append(child);
}

void AChannelInfo::leaveParent()
{
    const int position = row();
    if (position < 0)
        return;
    m_parent->m_children.removeAt(position);
    if (position == 0)
        ++m_parent->m_firstNumber;
}

void AChannelInfo::numberChildren() const
{
    qint64 number = m_firstNumber;
    for (const AChannelInfo *child : m_children) {
        if (child->m_parent == this) // else it was given away, and its number is of the other parent
            child->m_number = number;
        ++number;
    }
}

// Constant time. All siblings are numbered anew only when more than kSearched of them were removed since the last time.
int AChannelInfo::row() const
{
    constexpr qint64 kSearched = 256;
    if (!m_parent)
        return 0;
    if (m_number < 0)
        return -1;
    const QList<AChannelInfo *> &siblings = m_parent->m_children;
    const auto numberedRow = [this] { return m_number - m_parent->m_firstNumber; };

    // A number is never too small: nodes enter at the end, so siblings only move towards the front.
    const qint64 last = std::min<qint64>(numberedRow(), siblings.size() - 1);
    for (qint64 position = last; position >= 0 && position > last - kSearched; --position) {
        if (siblings.at(static_cast<int>(position)) == this) {
            m_number = m_parent->m_firstNumber + position;
            return static_cast<int>(position);
        }
    }
    m_parent->numberChildren();
    const qint64 position = numberedRow();
    const bool isThere = position >= 0 && position < siblings.size() && siblings.at(static_cast<int>(position)) == this;
    return isThere ? static_cast<int>(position) : -1;
}

int AChannelInfo::columnCount() const
{
    return ColumnMirrorEntryFreq + 1; // the last one
}

QColor AChannelInfo::color() const
{
    return colorFromVariant(m_color);
}

QColor AChannelInfo::colorFromVariant(const QVariant &value)
{
    if (value.userType() != QMetaType::QString)
        return value.value<QColor>();
    const QString text = value.toString(); // asked first, since QColor warns about a text that is no colour
    return QColor::isValidColor(text) ? QColor(text) : QColor();
}

QString AChannelInfo::name(bool withRange) const
{
    QStringList labels;
    for (const AChannelInfo *node = this; node && !node->hasDefaultProfile(); node = node->m_parent)
        labels.prepend(node->m_label);
    QString text = labels.join(QLatin1Char(' ')) + QLatin1Char(' ');
    if (withRange)
        text += QStringLiteral(" (%1 - %2)").arg(m_beginFrequency.canonicalText(), m_endFrequency.canonicalText());
    return text.trimmed();
}

// Qualified names leave out the labels of a default profile's node and of all above it.
bool AChannelInfo::hasDefaultProfile() const
{
    return m_profileId.startsWith(QLatin1String("default"));
}

// Whether name(false) is `name`, found from the last character on without building a text: most nodes differ there.
bool AChannelInfo::isNamed(const QString &name) const
{
    const auto isBlankAt = [&name](int position) { return name.at(position).isSpace(); };
    if (!name.isEmpty() && (isBlankAt(0) || isBlankAt(name.size() - 1)))
        return false;

    int left = name.size(); // of `name`, not matched yet
    const auto matches = [&name, &left](QChar c) {
        const bool isOuterBlank = (left == name.size() || left == 0) && c.isSpace();
        return isOuterBlank || (left > 0 && name.at(--left) == c);
    };
    for (const AChannelInfo *node = this; node && !node->hasDefaultProfile(); node = node->m_parent) {
        if (!matches(QLatin1Char(' ')))
            return false;
        for (int i = node->m_label.size() - 1; i >= 0; --i) {
            if (!matches(node->m_label.at(i)))
                return false;
        }
    }
    return left == 0;
}

bool AChannelInfo::hasChildsWithType(RangeType mask) const
{
    Walk walk(const_cast<AChannelInfo *>(this)); // only read
    walk.next();
    while (walk.next()) {
        if (walk.node()->m_type & mask)
            return true;
    }
    return false;
}

QString AChannelInfo::mapTypeToString(int type)
{
    switch (type) {
    case Generic:
        return QStringLiteral("Generic");
    case Direction:
        return QStringLiteral("Direction");
    case Provider:
        return QStringLiteral("Provider");
    case Channel:
    case kAnyChannel:
        return QStringLiteral("Channel");
    case AutoChannel:
        return QStringLiteral("AutoChannel");
    default:
        return QStringLiteral("unknown");
    }
}

QVariant AChannelInfo::data(int column) const
{
    switch (column) {
    case ColumnName:
        return m_label;
    case ColumnQualifiedName:
        return name(false);
    case ColumnStartFreq:
        return m_beginFrequency.intValue(AFrequency::Hz);
    case ColumnStopFreq:
        return m_endFrequency.intValue(AFrequency::Hz);
    case ColumnType:
        return static_cast<int>(m_type);
    case ColumnSelectable:
        return m_selectable;
    case ColumnColor:
        return m_color;
    case ColumnProfileId:
        return m_profileId;
    case ColumnComment:
        return m_comment;
    case ColumnAutoChannelDefinition: {
        QVariantList definitions;
        for (const Definition &definition : m_channelDefinitions)
            definitions.append(definition);
        return definitions;
    }
    case ColumnMirrorEntryFreq:
        return m_mirrorEntryFrequency.intValue(AFrequency::Hz);
    default:
        return {};
    }
}

void AChannelInfo::setData(Columns column, QVariant value) // NOLINT(performance-unnecessary-value-param)
{
    switch (column) {
    case ColumnName:
        m_label = value.toString();
        break;
    case ColumnStartFreq:
        m_beginFrequency = frequencyFromVariant(value);
        break;
    case ColumnStopFreq:
        m_endFrequency = frequencyFromVariant(value);
        break;
    case ColumnType:
        m_type = typeFromNumber(value.toInt());
        break;
    case ColumnSelectable:
        m_selectable = value.toBool();
        break;
    case ColumnColor:
        m_color = value;
        break;
    case ColumnProfileId:
        m_profileId = value.toString();
        break;
    case ColumnComment:
        m_comment = value.toString();
        break;
    case ColumnAutoChannelDefinition: {
        m_channelDefinitions.clear();
        const QVariantList definitions = value.toList();
        for (const QVariant &definition : definitions)
            m_channelDefinitions.append(definition.toMap());
        break;
    }
    case ColumnMirrorEntryFreq:
        m_mirrorEntryFrequency = frequencyFromVariant(value);
        break;
    case ColumnQualifiedName:
    default:
        break;
    }
}

void AChannelInfo::setChannelDefinitions(QList<Definition> definitions) // NOLINT(performance-unnecessary-value-param)
{
    QVariantList packed;
    packed.reserve(definitions.size());
    for (const Definition &definition : qAsConst(definitions))
        packed.append(definition);
    setData(ColumnAutoChannelDefinition, packed);
}

const AChannelInfo *AChannelInfo::findByName(const QString &name) const
{
    Walk walk(const_cast<AChannelInfo *>(this)); // only read
    while (walk.next()) {
        if (walk.node()->m_label == name || walk.node()->isNamed(name))
            return walk.node();
    }
    return nullptr;
}

const AChannelInfo *AChannelInfo::findByProfileId(const QString &id) const
{
    Walk walk(const_cast<AChannelInfo *>(this)); // only read
    while (walk.next()) {
        if (walk.node()->m_profileId == id)
            return walk.node();
    }
    return nullptr;
}
