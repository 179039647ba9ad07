#include "calibration/acalibrationobjectmodel.h"

#include "datamanager/adatamanager.h"

#include <QtCore/QDebug>
#include <QtCore/QHash>
#include <QtCore/QLocale>

#include <algorithm>
#include <iterator>

namespace {

enum Level
{
    TopLevel = 0,
    TypeLevel = 1,
    ObjectLevel = 2,
    EntryLevel = 3
};

enum Column
{
    FrequencyColumn = 0,
    GainColumn = 1,
    EntryColumns = 2
};

constexpr int kTypes = 4;          // their numbers are their rows
constexpr quintptr kTopId = 0;     // a type's id is its row + 1
constexpr quintptr kFirstHash = 5; // an id from here on is a hash

// An index knows its object by the hash of a text, type and label, since the registry hands out copies: all rows of one
// table have one id, of the same text behind a "!". Hashes are taken to be different, and above the ids of the types.
quintptr objectId(int type, const QString &label)
{
    return qHash(QString::number(type) + label, 0);
}

quintptr entryId(int type, const QString &label)
{
    return qHash(QLatin1Char('!') + QString::number(type) + label, 0);
}

// Not translated, deliberately: an edit that leaves the text as it is, is known by it.
QString addValueText()
{
    return QStringLiteral("-- add value --");
}

AFrequency readFrequency(const QVariant &value)
{
    const long long number = value.toLongLong();
    const QString text = value.toString();
    return number != 0 && !text.endsWith(QLatin1String("Hz")) ? AFrequency::fromValue(number, AFrequency::Hz)
                                                              : AFrequency(text.toLatin1().constData());
}

QLocale withoutGroups(QLocale locale)
{
    locale.setNumberOptions(locale.numberOptions() | QLocale::RejectGroupSeparator);
    return locale;
}

// A "." that could group digits in the locale is taken for the decimal sign, before what the locale makes of it. Digits
// are grouped where the locale shows them so.
double readNumber(const QString &text)
{
    const QLocale own;
    const QLocale asShown = own.numberOptions() & QLocale::OmitGroupSeparator ? withoutGroups(own) : own;
    for (const QLocale &locale : {withoutGroups(own), withoutGroups(QLocale::c()), asShown}) {
        bool ok = false;
        const double number = locale.toDouble(text, &ok);
        if (ok)
            return number;
    }
    return 0.0;
}

// Takes "3.5", and "3.5 dB" with whatever follows the number.
double readGain(const QVariant &value)
{
    bool ok = false;
    const double number = value.toDouble(&ok);
    if (ok && number != 0.0)
        return number;
    const QStringList parts = value.toString().split(QLatin1Char(' '));
    for (const QString &part : parts) {
        const double read = readNumber(part);
        if (read != 0.0)
            return read;
    }
    return 0.0;
}

// The row that a frequency moves an entry to: that of the last key which doesn't exceed it, or 0.
int rowFor(const QList<AFrequency> &keys, const AFrequency &frequency)
{
    const auto above = std::upper_bound(keys.begin(), keys.end(), frequency);
    return std::max(0, static_cast<int>(above - keys.begin()) - 1);
}

// A table has no numbers for its entries, so this takes as many steps as the row is away from the nearer end.
QMap<AFrequency, double>::const_iterator entryAt(const QMap<AFrequency, double> &level, int row)
{
    return row < level.size() / 2 ? std::next(level.begin(), row) : std::prev(level.end(), level.size() - row);
}

} // namespace

ACalibrationObjectModel::ACalibrationObjectModel(QObject *parent)
    : QAbstractItemModel(parent)
    , m_manager(ADataManager::instance())
{
    connect(m_manager, &ADataManager::calibrationDataChanged, this, &ACalibrationObjectModel::reload);
    connect(m_manager, &QObject::destroyed, this, &ACalibrationObjectModel::reload);
}

// What an index stands for.
struct ACalibrationObjectModel::Node
{
    int level = TopLevel;
    int type = -1; // from TypeLevel on
    int row = -1;  // of the object, from ObjectLevel on
    QString label; // of the object
    quintptr objectId = 0;
};

// Nothing is kept from one call to the next: this walks the labels of all types, once, and hashes two texts for each.
// An id that no label has stands for nothing, which counts as the top level.
ACalibrationObjectModel::Node ACalibrationObjectModel::nodeOf(const QModelIndex &index) const
{
    const quintptr id = index.internalId();
    if (!index.isValid() || id == kTopId)
        return {};
    if (id < kFirstHash)
        return {TypeLevel, index.row(), -1, QString(), 0};
    QString text;
    for (int type = 0; type < kTypes; ++type) {
        const QString prefix = QLatin1Char('!') + QString::number(type);
        const QStringList labels = names(type);
        for (int i = 0; i < labels.size(); ++i) {
            text.resize(0); // keeps its memory
            text += prefix;
            text += labels.at(i);
            const quintptr hash = qHash(QStringView(text).mid(1), 0);
            // The label at the index's row and not at `i`, deliberately: an index that was made before the objects
            // moved stands for what its row shows now.
            if (hash == id)
                return {ObjectLevel, type, i, labels.value(index.row()), hash};
            if (qHash(QStringView(text), 0) == id)
                return {EntryLevel, type, i, labels.at(i), hash};
        }
    }
    return {};
}

QModelIndex ACalibrationObjectModel::index(int row, int column, const QModelIndex &parent) const
{
    if (!parent.isValid()) // numbers below 0 deliberately included
        return row < 1 && column < 1 ? createIndex(0, 0, kTopId) : QModelIndex();
    if (row < 0 || column < 0)
        return {};
    const Node node = nodeOf(parent);
    switch (node.level) {
    case TopLevel:
        return row < kTypes && column < 1 ? createIndex(row, column, static_cast<quintptr>(row) + 1) : QModelIndex();
    case TypeLevel: {
        const QStringList labels = names(node.type);
        return row < labels.size() && column < 1 ? createIndex(row, column, objectId(node.type, labels.at(row)))
                                                 : QModelIndex();
    }
    case ObjectLevel: {
        const ACalibrationData object = objectOf(node);
        return row <= object.level().size() && column < EntryColumns
                   ? createIndex(row, column, entryId(object.type(), object.label()))
                   : QModelIndex();
    }
    default:
        return {};
    }
}

QModelIndex ACalibrationObjectModel::parent(const QModelIndex &index) const
{
    const Node node = nodeOf(index);
    switch (node.level) {
    case TypeLevel:
        return createIndex(0, 0, kTopId);
    case ObjectLevel:
        return createIndex(node.type, 0, static_cast<quintptr>(node.type) + 1);
    case EntryLevel:
        return createIndex(node.row, 0, node.objectId);
    default:
        return {};
    }
}

int ACalibrationObjectModel::rowCount(const QModelIndex &parent) const
{
    if (!parent.isValid())
        return 1;
    const Node node = nodeOf(parent);
    switch (node.level) {
    case TopLevel:
        return kTypes;
    case TypeLevel:
        return names(node.type).size();
    case ObjectLevel:
        return node.label.startsWith(QLatin1String("--")) ? 0 : objectOf(node).level().size() + 1;
    case EntryLevel:
        return 0;
    default:
        return -1;
    }
}

int ACalibrationObjectModel::columnCount(const QModelIndex &parent) const
{
    if (!parent.isValid())
        return 1;
    switch (nodeOf(parent).level) {
    case TopLevel:
    case TypeLevel:
        return 1;
    case ObjectLevel:
        return EntryColumns;
    case EntryLevel:
        return 0;
    default:
        return -1;
    }
}

QVariant ACalibrationObjectModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    if (role != LevelRole && role != Qt::DisplayRole && role != Qt::EditRole)
        return {};
    const Node node = nodeOf(index);
    if (role == LevelRole)
        return node.level;
    switch (node.level) {
    case TypeLevel:
        switch (node.type) {
        case ACalibrationData::Preamplifier:
            return tr("Preamplifier");
        case ACalibrationData::Antenna:
            return tr("Antenna");
        case ACalibrationData::Cable:
            return tr("Cable");
        case ACalibrationData::Attenuator:
            return tr("Attenuator");
        default:
            return QStringLiteral("n/a"); // not translated, deliberately: no user sees a fifth type
        }
    case ObjectLevel:
        return node.label;
    case EntryLevel:
        return entryData(objectOf(node), index, role);
    default:
        return {};
    }
}

QVariant ACalibrationObjectModel::entryData(const ACalibrationData &object, const QModelIndex &index, int role)
{
    const QMap<AFrequency, double> &level = object.level();
    if (index.row() > level.size())
        return {};
    if (index.row() == level.size())
        return addValueText();
    const auto entry = entryAt(level, index.row());
    if (index.column() == FrequencyColumn) {
        if (role == Qt::EditRole)
            return static_cast<qlonglong>(entry.key().intValue(AFrequency::Hz));
        return entry.key().formatString(QStringLiteral("%L1 %2"), AFrequency::NoUnit, 0, 'f', 3);
    }
    const QLatin1String unit(object.type() == ACalibrationData::Antenna ? "dBi" : "dB");
    return QStringLiteral("%L1 %2").arg(entry.value(), 0, 'g', -1).arg(unit);
}

bool ACalibrationObjectModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !value.isValid())
        return false;
    const Node node = nodeOf(index);
    switch (node.level) {
    case ObjectLevel:
        return rename(index, objectOf(node), value.toString());
    case EntryLevel:
        switch (index.column()) {
        case FrequencyColumn:
            return setFrequency(index, objectOf(node), value);
        case GainColumn:
            return setGain(index, objectOf(node), value);
        default:
            return false;
        }
    default:
        return false;
    }
}

bool ACalibrationObjectModel::rename(const QModelIndex &index, ACalibrationData object, const QString &label)
{
    const QString oldLabel = object.label();
    object.setLabel(label);
    Q_EMIT dataChanged(index, index);
    update(object, oldLabel);
    return true;
}

bool ACalibrationObjectModel::setGain(const QModelIndex &index, ACalibrationData object, const QVariant &value)
{
    if (object.label().isEmpty())
        return false;
    // An editor may be closed as it was opened, and what it showed may have fewer digits than the gain.
    const bool isUnchanged = value.toString() == entryData(object, index, Qt::EditRole).toString();
    const bool isAddRow = index.row() >= object.level().size();
    if (isAddRow && isUnchanged)
        return false;
    // The whole hertz that the row has for an editor, deliberately: a gain for an entry between two whole hertz makes
    // one of its own below it. The last row has no frequency, which counts as 0 Hz.
    if (!isUnchanged) {
        const QModelIndex sibling = index.siblingAtColumn(FrequencyColumn);
        const long long hertz = entryData(object, sibling, Qt::EditRole).toLongLong();
        object.addLevel(AFrequency::fromValue(hertz, AFrequency::Hz), readGain(value));
    }
    Q_EMIT dataChanged(index, index);
    update(object);
    return true;
}

bool ACalibrationObjectModel::setFrequency(const QModelIndex &index, ACalibrationData object, const QVariant &value)
{
    if (object.label().isEmpty())
        return false;
    const QList<AFrequency> keys = object.level().keys();
    const int oldRow = index.row();
    const bool isEntry = oldRow < keys.size(); // and not the row that adds one
    if (!isEntry && value.toString() == addValueText())
        return false;

    // What an editor showed is taken like any other value, deliberately: an entry below zero goes, and one between two
    // whole hertz moves.
    const AFrequency frequency = readFrequency(value);
    if (frequency < AFrequency()) {
        if (!isEntry)
            return false;
        beginRemoveRows(index.parent(), oldRow, oldRow);
        object.removeLevel(keys.at(oldRow));
        endRemoveRows();
        update(object);
        return true;
    }

    const double gain = object.valueAt(frequency, true);
    if (!keys.isEmpty()) {
        if (object.level().contains(frequency) && !(isEntry && keys.at(oldRow) == frequency))
            return false;
        const int newRow = rowFor(keys, frequency);
        if (newRow != index.row())
            beginMoveRows(index.parent(), oldRow, oldRow, index.parent(), newRow);
        if (isEntry)
            object.removeLevel(keys.at(oldRow));
    }
    object.addLevel(frequency, gain);
    // Deliberately a comparison with the old row and not with the new one: the move stays open until the store's signal
    // resets the model, since the rows don't show the new order before.
    if (oldRow != index.row())
        endMoveRows();
    Q_EMIT dataChanged(index.sibling(std::min(oldRow, index.row()), FrequencyColumn),
                       index.sibling(std::max(oldRow, index.row()), GainColumn));
    update(object);
    return true;
}

QVariant ACalibrationObjectModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole) {
        if (section == FrequencyColumn)
            return tr("Frequency");
        if (section == GainColumn)
            return tr("Gain");
    }
    return QAbstractItemModel::headerData(section, orientation, role);
}

bool ACalibrationObjectModel::removeRows(int row, int count, const QModelIndex &parent)
{
    const Node node = nodeOf(parent);
    // A fixed text, deliberately: what a compiler makes of the signature differs.
    qDebug("%s (row %d, count %d, type %d)",
           "virtual bool ACalibrationObjectModel::removeRows(int, int, const QModelIndex&)", row, count, node.level);
    switch (node.level) {
    case TopLevel:
        return false;
    case TypeLevel:
        removeObjects(row, count, parent);
        return true; // deliberately, whatever was there
    case ObjectLevel:
        return removeEntries(row, count, parent, objectOf(node));
    default:
        qDebug("unknown type");
        return false;
    }
}

void ACalibrationObjectModel::removeObjects(int row, int count, const QModelIndex &parent)
{
    const int begin = std::max(row, 0);
    const auto end = static_cast<int>(std::min(qint64{row} + count, qint64{rowCount(parent)}));
    if (begin >= end)
        return;
    m_isRemovingRows = true;
    beginRemoveRows(parent, begin, end - 1);
    // The numbers deliberately don't follow the objects that move up.
    for (int number = begin; number < end; ++number) {
        const ACalibrationData object = getCalObject(index(number, 0, parent));
        if (!object.label().isEmpty() && m_manager)
            m_manager->removeCalibrationData(object.label(), object.type(), true);
    }
    endRemoveRows();
    m_isRemovingRows = false;
    reload(); // also brings back what the store could not remove
}

bool ACalibrationObjectModel::removeEntries(int row, int count, const QModelIndex &parent, ACalibrationData object)
{
    if (object.label().isEmpty()) {
        qDebug("empty object");
        return false;
    }
    const QList<AFrequency> keys = object.level().keys();
    const auto end = static_cast<int>(std::min(qint64{row} + count, qint64{keys.size()})); // the last row stays
    if (row < 0 || row >= end)
        return false;
    for (int i = row; i < end; ++i)
        object.removeLevel(keys.at(i));
    // An object that shows no rows has entries all the same; nothing is announced where nothing goes from view.
    if (rowCount(parent) == 0) {
        update(object);
        return true;
    }
    m_isRemovingRows = true;
    beginRemoveRows(parent, row, end - 1);
    if (m_manager)
        m_manager->updateCalibrationData(object, QString());
    endRemoveRows();
    m_isRemovingRows = false;
    reload();
    return true;
}

Qt::ItemFlags ACalibrationObjectModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    const Qt::ItemFlags shown = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    return nodeOf(index).level == EntryLevel ? shown | Qt::ItemIsEditable : shown;
}

ACalibrationData ACalibrationObjectModel::getCalObject(const QModelIndex &index) const
{
    const Node node = nodeOf(index);
    return node.level == ObjectLevel ? objectOf(node) : ACalibrationData();
}

ACalibrationData ACalibrationObjectModel::objectOf(const Node &node) const
{
    return m_manager
               ? m_manager->getCalibrationForName(node.label, static_cast<ACalibrationData::CalibrationType>(node.type))
               : ACalibrationData();
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature that callers know
QModelIndex ACalibrationObjectModel::indexForObject(ACalibrationData object) const
{
    const QModelIndex type = index(object.type(), 0, index(0, 0));
    const int row = type.isValid() ? names(type.row()).indexOf(object.label()) : -1;
    return row < 0 ? QModelIndex() : index(row, 0, type);
}

void ACalibrationObjectModel::reload()
{
    // A reset between the beginning and the end of a removal would leave freed persistent indexes behind.
    if (m_isRemovingRows)
        return;
    m_wasReset = true;
    beginResetModel();
    endResetModel();
}

QStringList ACalibrationObjectModel::names(int type) const
{
    return m_manager ? m_manager->getCalibrationNames(static_cast<ACalibrationData::CalibrationType>(type))
                     : QStringList();
}

// Writes an edit back, which resets the model. The store is silent where no file holds the object any more; the rows
// that an edit has announced must be set right then too.
void ACalibrationObjectModel::update(const ACalibrationData &object, const QString &oldLabel)
{
    m_wasReset = false;
    if (m_manager)
        m_manager->updateCalibrationData(object, oldLabel);
    if (!m_wasReset)
        reload();
}
