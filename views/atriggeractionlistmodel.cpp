#include "views/atriggeractionlistmodel.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace {

// QList keeps its size in bytes, with a header, in an int.
constexpr int kMaxActions = (std::numeric_limits<int>::max() - 1024) / static_cast<int>(sizeof(void *));

} // namespace

ATriggerActionListModel::ATriggerActionListModel(QObject *parent)
    : QAbstractListModel(parent)
{}

ATriggerActionListModel::~ATriggerActionListModel() = default;

void ATriggerActionListModel::setTriggerActions(QList<ATriggerAction> *actions)
{
    beginResetModel();
    m_triggerActions = actions;
    endResetModel();
}

int ATriggerActionListModel::rowCount(const QModelIndex & /*parent*/) const
{
    return m_triggerActions ? m_triggerActions->size() : 0;
}

int ATriggerActionListModel::columnCount(const QModelIndex & /*parent*/) const
{
    return ColumnCount;
}

// The owner may have shortened the list since the index was made.
bool ATriggerActionListModel::hasRow(const QModelIndex &index) const
{
    return m_triggerActions && index.model() == this && index.row() < m_triggerActions->size();
}

QVariant ATriggerActionListModel::data(const QModelIndex &index, int role) const
{
    if (!hasRow(index) || (role != Qt::DisplayRole && role != Qt::EditRole))
        return {};
    const ATriggerAction &action = m_triggerActions->at(index.row());
    if (index.column() == ColumnText)
        return action.data();
    if (index.column() != ColumnType || action.type() < NoTriggerAction || action.type() > TakeScreenshotAction)
        return {};
    return ATriggerAction::actionNames().at(action.type());
}

bool ATriggerActionListModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!hasRow(index) || role != Qt::EditRole)
        return false;
    ATriggerAction &action = (*m_triggerActions)[index.row()];
    const int type = index.column() == ColumnType ? ATriggerAction::actionNames().indexOf(value.toString()) : -1;
    if (type >= 0)
        action.setType(static_cast<TriggerActionType>(type));
    if (index.column() == ColumnText)
        action.setData(value.toString());
    Q_EMIT dataChanged(index, index); // also after a text that names no type: an editor then shows the old one again
    return true;
}

QVariant ATriggerActionListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || (role != Qt::DisplayRole && role != Qt::EditRole))
        return {};
    switch (section) {
    case ColumnType:
        return tr("Action Type");
    case ColumnText:
        return tr("Message Text, Command Line, Audio File or Screenshot target");
    default:
        return QStringLiteral("???");
    }
}

bool ATriggerActionListModel::insertRows(int /*row*/, int count, const QModelIndex & /*parent*/)
{
    if (!m_triggerActions)
        return false;
    const int size = m_triggerActions->size();
    if (count > kMaxActions - size)
        return false;
    const int added = std::max(count, 0); // views and proxies crash on a range of a negative length
    beginInsertRows(QModelIndex(), size, size + added - 1);
    std::fill_n(std::back_inserter(*m_triggerActions), added, ATriggerAction());
    endInsertRows();
    return true;
}

bool ATriggerActionListModel::removeRows(int row, int count, const QModelIndex & /*parent*/)
{
    if (!m_triggerActions)
        return false;
    // What lies before the first row is not announced: Qt would move the indexes of the rows behind by too much, as it
    // would for a negative count. A range past the end is deliberately announced as it was asked for: observers are
    // told the caller's range.
    const int first = std::max(row, 0);
    const qint64 last = std::max<qint64>(qint64(row) + std::max(count, 0), first) - 1;
    beginRemoveRows(QModelIndex(), first, static_cast<int>(std::min<qint64>(last, std::numeric_limits<int>::max())));
    const auto actions = m_triggerActions->begin();
    const int size = m_triggerActions->size();
    m_triggerActions->erase(actions + std::min(first, size),
                            actions + static_cast<int>(std::min<qint64>(last + 1, size)));
    endRemoveRows();
    return true;
}

Qt::ItemFlags ATriggerActionListModel::flags(const QModelIndex &index) const
{
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): without the flag that QAbstractListModel adds
    return QAbstractItemModel::flags(index) | Qt::ItemIsEditable;
}
