#include "channel/achannelinfomodel.h"

#include "channel/achannelinfo.h"

#include <QtCore/QSet>
#include <QtGui/QBrush>

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

constexpr const char *kHeaders[] = {
    // by AChannelInfo::Columns
    QT_TRANSLATE_NOOP("AChannelInfoModel", "Name"),
    QT_TRANSLATE_NOOP("AChannelInfoModel", "Qualified name"),
    QT_TRANSLATE_NOOP("AChannelInfoModel", "Start Freq"),
    QT_TRANSLATE_NOOP("AChannelInfoModel", "Stop Freq"),
    QT_TRANSLATE_NOOP("AChannelInfoModel", "Type"),
    QT_TRANSLATE_NOOP("AChannelInfoModel", "Selectable"),
    QT_TRANSLATE_NOOP("AChannelInfoModel", "Color"),
    QT_TRANSLATE_NOOP("AChannelInfoModel", "Profile ID"),
    QT_TRANSLATE_NOOP("AChannelInfoModel", "Comment"),
    QT_TRANSLATE_NOOP("AChannelInfoModel", "Auto Channel Definition"),
    QT_TRANSLATE_NOOP("AChannelInfoModel", "Mirror Entry Freq"),
};
constexpr int kColumnCount = std::size(kHeaders);
static_assert(kColumnCount == AChannelInfo::ColumnMirrorEntryFreq + 1, "one header for each column");

constexpr qreal kBackgroundAlpha = 0.5;

bool isFrequencyColumn(int column)
{
    return column == AChannelInfo::ColumnStartFreq || column == AChannelInfo::ColumnStopFreq ||
           column == AChannelInfo::ColumnMirrorEntryFreq;
}

bool isColouredColumn(int column)
{
    return column == AChannelInfo::ColumnName || column == AChannelInfo::ColumnQualifiedName ||
           column == AChannelInfo::ColumnColor;
}

QString shownFrequency(const QVariant &hertz)
{
    const AFrequency frequency = AFrequency::fromValue(hertz.toLongLong(), AFrequency::Hz);
    return frequency.canonicalText();
}

qlonglong hertzFromText(const QString &text)
{
    return AFrequency(text.toLatin1().constData()).intValue(AFrequency::Hz);
}

// Whether a node is `top` or below it.
bool isWithin(const AChannelInfo *node, const AChannelInfo *top)
{
    while (node && node != top)
        node = node->parent();
    return node;
}

} // namespace

AChannelInfoModel::AChannelInfoModel(QObject *parent, const AChannelInfo *root)
    : QAbstractItemModel(parent)
    , m_rootItem(root ? const_cast<AChannelInfo *>(root)
                      : new AChannelInfo(nullptr, AChannelInfo::Generic, {}, {}, {}, false))
{}

AChannelInfoModel::~AChannelInfoModel()
{
    delete m_rootItem;
}

QModelIndex AChannelInfoModel::index(int row, int column, const QModelIndex &parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, nodeAt(parent)->child(row));
}

QModelIndex AChannelInfoModel::parent(const QModelIndex &index) const
{
    const AChannelInfo *node = index.isValid() ? nodeAt(index) : nullptr;
    if (!node || !node->parent() || node->parent() == m_rootItem)
        return {};
    return indexOf(node->parent(), 0);
}

int AChannelInfoModel::rowCount(const QModelIndex &parent) const
{
    const AChannelInfo *node = nodeAt(parent);
    return node && parent.column() <= 0 ? node->childCount() : 0;
}

int AChannelInfoModel::columnCount(const QModelIndex &parent) const
{
    Q_UNUSED(parent)
    return kColumnCount;
}

QVariant AChannelInfoModel::data(const QModelIndex &index, int role) const
{
    const AChannelInfo *node = index.isValid() ? nodeAt(index) : nullptr;
    if (!node)
        return {};
    if (role == Qt::DisplayRole || role == Qt::EditRole) {
        const QVariant value = node->data(index.column());
        return isFrequencyColumn(index.column()) ? shownFrequency(value) : value;
    }
    if (role == Qt::BackgroundRole && isColouredColumn(index.column())) {
        QColor color = node->color();
        if (!color.isValid())
            return {};
        color.setAlphaF(kBackgroundAlpha);
        return QBrush(color);
    }
    return {};
}

bool AChannelInfoModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    AChannelInfo *node = index.isValid() ? nodeAt(index) : nullptr;
    if (!node || (role != Qt::DisplayRole && role != Qt::EditRole))
        return false;
    if (value.userType() == QMetaType::QString && isFrequencyColumn(index.column()))
        return setData(index, hertzFromText(value.toString()), role);
    node->setData(static_cast<AChannelInfo::Columns>(index.column()), value);
    Q_EMIT dataChanged(index, index);
    return true;
}

QVariant AChannelInfoModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= kColumnCount)
        return {};
    return tr(kHeaders[section]);
}

Qt::ItemFlags AChannelInfoModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    const bool isReadOnly = index.column() == AChannelInfo::ColumnQualifiedName ||
                            index.column() == AChannelInfo::ColumnAutoChannelDefinition;
    const Qt::ItemFlags shown = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    return isReadOnly ? shown : shown | Qt::ItemIsEditable;
}

void AChannelInfoModel::sort(int column, Qt::SortOrder order)
{
    if (!m_rootItem)
        return;
    Q_EMIT layoutAboutToBeChanged();
    m_rootItem->sortChildren(column, order);
    m_mayHoldStaleIndexes = true;
    const QModelIndexList persistent = persistentIndexList();
    for (const QModelIndex &before : persistent) {
        // Those at the top level are left as they are, deliberately: they keep the row that an application saved.
        AChannelInfo *node = nodeAt(before);
        if (before.parent().isValid() && node->row() >= 0)
            changePersistentIndex(before, indexOf(node, before.column()));
    }
    Q_EMIT layoutChanged();
}

AChannelInfo *AChannelInfoModel::setModelRoot(AChannelInfo *root)
{
    if (root == m_rootItem)
        return nullptr;
    beginResetModel();
    AChannelInfo *previous = std::exchange(m_rootItem, root);
    m_toBeRemoved.fill(nullptr);
    m_mayHoldStaleIndexes = false;
    endResetModel();
    return previous;
}

AChannelInfo *AChannelInfoModel::getItem(const QModelIndex &index)
{
    return nodeAt(index);
}

QModelIndex AChannelInfoModel::addItem(const QModelIndex &parent, const QString &label)
{
    AChannelInfo *enclosing = nodeAt(parent);
    if (!enclosing || parent.column() >= 1)
        return {};
    const QModelIndex place = enclosing == m_rootItem ? QModelIndex() : indexOf(enclosing, 0);
    const int row = enclosing->childCount();
    beginInsertRows(place, row, row);
    const bool isSelectable = !enclosing->parent();
    enclosing->appendChild(new AChannelInfo(enclosing, AChannelInfo::Generic, enclosing->beginFrequency(),
                                            enclosing->endFrequency(), label, isSelectable));
    endInsertRows();
    return index(row, 0, place);
}

bool AChannelInfoModel::removeItem(const QModelIndex &index, bool recursive)
{
    const auto isRemovable = [this, recursive](const AChannelInfo *node) {
        return node && node != m_rootItem && (recursive || node->childCount() == 0);
    };
    AChannelInfo *node = index.isValid() ? nodeAt(index) : nullptr;
    if (!isRemovable(node))
        return false;
    m_toBeRemoved.append(node);
    mendStaleIndexes(); // whose receivers may remove nodes
    node = m_toBeRemoved.takeLast();
    if (!isRemovable(node))
        return false;
    const int row = node->row();
    beginRemoveRows(parent(indexOf(node, 0)), row, row);
    for (AChannelInfo *&pending : m_toBeRemoved) {
        if (isWithin(pending, node))
            pending = nullptr;
    }
    delete node;
    endRemoveRows();
    return true;
}

// Null for an index of another model.
AChannelInfo *AChannelInfoModel::nodeAt(const QModelIndex &index) const
{
    if (!index.isValid())
        return m_rootItem;
    return index.model() == this ? static_cast<AChannelInfo *>(index.internalPointer()) : nullptr;
}

QModelIndex AChannelInfoModel::indexOf(AChannelInfo *node, int column) const
{
    return createIndex(node->row(), column, node);
}

// A removal moves persistent indexes by their rows. Those that a sort left at another row would come to name other
// nodes or deleted ones, so each gets its node's row first; of two that then are the same, Qt can keep one. The signals
// come even if there is none: proxies hold their own and make ours of them in between.
void AChannelInfoModel::mendStaleIndexes()
{
    if (!m_mayHoldStaleIndexes)
        return;
    Q_EMIT layoutAboutToBeChanged();
    m_mayHoldStaleIndexes = false; // not before: a receiver's removal needs the mending as well
    const auto isStale = [this](const QModelIndex &index) { return nodeAt(index)->row() != index.row(); };
    const QModelIndexList persistent = persistentIndexList();
    QSet<QModelIndex> held;
    for (const QModelIndex &index : persistent) {
        if (!isStale(index))
            held.insert(index);
    }
    for (const QModelIndex &index : persistent) {
        if (!isStale(index))
            continue;
        const QModelIndex mended = indexOf(nodeAt(index), index.column());
        changePersistentIndex(index, held.contains(mended) ? QModelIndex() : mended);
        held.insert(mended);
    }
    Q_EMIT layoutChanged();
}
