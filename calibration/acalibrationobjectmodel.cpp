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

// An index knows its object by the hash of a text, since the registry hands out copies: all rows of one table have one
// id. Hashes are taken to be different, and above the ids of the types.
QString objectText(int type, const QString &label)
{
    return QString::number(type) + label;
}

quintptr objectId(const QString &text)
{
    return qHash(text, 0);
}

quintptr entryId(const QString &text)
{
    return qHash(QLatin1Char('!') + text, 0);
}

QString addValueText()
{
    return QStringLiteral("-- add value --");
}

int levelOf(const QModelIndex &index)
{
    return index.data(ACalibrationObjectModel::LevelRole).toInt();
}

AFrequency hertz(long long value)
{
    AFrequency frequency;
    frequency.setValue(value, AFrequency::Hz);
    return frequency;
}

AFrequency readFrequency(const QVariant &value)
{
    const long long number = value.toLongLong();
    const QString text = value.toString();
    return number != 0 && !text.endsWith(QLatin1String("Hz")) ? hertz(number) : AFrequency(text.toLatin1().constData());
}

// A "." that could group digits in the locale is taken for the decimal sign, before what the locale makes of it.
double readNumber(const QString &text)
{
    QLocale plain;
    plain.setNumberOptions(plain.numberOptions() | QLocale::RejectGroupSeparator);
    for (const QLocale &locale : {plain, QLocale::c(), QLocale()}) {
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

} // namespace

ACalibrationObjectModel::ACalibrationObjectModel(QObject *parent)
    : QAbstractItemModel(parent)
    , m_manager(ADataManager::instance())
{
    connect(m_manager, &ADataManager::calibrationDataChanged, this, &ACalibrationObjectModel::reload);
    connect(m_manager, &QObject::destroyed, this, &ACalibrationObjectModel::reload);
}

QModelIndex ACalibrationObjectModel::index(int row, int column, const QModelIndex &parent) const
{
    if (row < 0 || column < 0)
        return {};
    if (!parent.isValid())
        return row < 1 && column < 1 ? createIndex(row, column, kTopId) : QModelIndex();
    switch (levelOf(parent)) {
    case TopLevel:
        return row < kTypes && column < 1 ? createIndex(row, column, static_cast<quintptr>(row) + 1) : QModelIndex();
    case TypeLevel: {
        const QStringList labels = names(parent.row());
        return row < labels.size() && column < 1
                   ? createIndex(row, column, objectId(objectText(parent.row(), labels.at(row))))
                   : QModelIndex();
    }
    case ObjectLevel: {
        const ACalibrationData object = getCalObject(parent);
        return row <= object.level().size() && column < EntryColumns
                   ? createIndex(row, column, entryId(objectText(object.type(), object.label())))
                   : QModelIndex();
    }
    default:
        return {};
    }
}

QModelIndex ACalibrationObjectModel::parent(const QModelIndex &index) const
{
    const quintptr id = index.internalId();
    if (!index.isValid() || id == kTopId)
        return {};
    if (id < kFirstHash)
        return createIndex(0, 0, kTopId);
    for (int type = 0; type < kTypes; ++type) {
        const QStringList labels = names(type);
        for (int i = 0; i < labels.size(); ++i) {
            const QString text = objectText(type, labels.at(i));
            const quintptr hash = objectId(text);
            if (hash == id)
                return createIndex(type, 0, static_cast<quintptr>(type) + 1);
            if (entryId(text) == id)
                return createIndex(i, 0, hash);
        }
    }
    return {};
}

int ACalibrationObjectModel::rowCount(const QModelIndex &parent) const
{
    if (!parent.isValid())
        return 1;
    switch (levelOf(parent)) {
    case TopLevel:
        return kTypes;
    case TypeLevel:
        return names(parent.row()).size();
    case ObjectLevel:
        return parent.data().toString().startsWith(QLatin1String("--")) ? 0 : getCalObject(parent).level().size() + 1;
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
    switch (levelOf(parent)) {
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
    const QModelIndex above = index.parent();
    if (role == LevelRole) {
        const int level = above.isValid() ? levelOf(above) + 1 : TopLevel;
        return level <= EntryLevel ? level : TopLevel;
    }
    if (role != Qt::DisplayRole && role != Qt::EditRole)
        return {};
    switch (levelOf(index)) {
    case TypeLevel:
        switch (index.row()) {
        case ACalibrationData::Preamplifier:
            return tr("Preamplifier");
        case ACalibrationData::Antenna:
            return tr("Antenna");
        case ACalibrationData::Cable:
            return tr("Cable");
        case ACalibrationData::Attenuator:
            return tr("Attenuator");
        default:
            return QStringLiteral("n/a");
        }
    case ObjectLevel:
        return names(above.row()).value(index.row());
    case EntryLevel:
        return entryData(index, role);
    default:
        return {};
    }
}

QVariant ACalibrationObjectModel::entryData(const QModelIndex &index, int role) const
{
    const ACalibrationData object = getCalObject(index.parent());
    const QMap<AFrequency, double> &level = object.level();
    if (index.row() > level.size())
        return {};
    if (index.row() == level.size())
        return addValueText();
    const auto entry = std::next(level.begin(), index.row());
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
    switch (levelOf(index)) {
    case ObjectLevel:
        return rename(index, value.toString());
    case EntryLevel:
        switch (index.column()) {
        case FrequencyColumn:
            return setFrequency(index, value);
        case GainColumn:
            return setGain(index, value);
        default:
            return false;
        }
    default:
        return false;
    }
}

bool ACalibrationObjectModel::rename(const QModelIndex &index, const QString &label)
{
    ACalibrationData object = getCalObject(index);
    const QString oldLabel = object.label();
    object.setLabel(label);
    Q_EMIT dataChanged(index, index);
    update(object, oldLabel);
    return true;
}

bool ACalibrationObjectModel::setGain(const QModelIndex &index, const QVariant &value)
{
    ACalibrationData object = getCalObject(index.parent());
    if (object.label().isEmpty())
        return false;
    const QList<AFrequency> keys = object.level().keys();
    // An editor may be closed as it was opened, and what it showed may have fewer digits than the gain.
    const bool isUnchanged = value.toString() == index.data(Qt::EditRole).toString();
    const bool isAddRow = index.row() >= keys.size();
    if (isAddRow && isUnchanged)
        return false;
    if (!isUnchanged) // the last row has no frequency, which counts as 0 Hz
        object.addLevel(isAddRow ? AFrequency() : keys.at(index.row()), readGain(value));
    Q_EMIT dataChanged(index, index);
    update(object);
    return true;
}

bool ACalibrationObjectModel::setFrequency(const QModelIndex &index, const QVariant &value)
{
    ACalibrationData object = getCalObject(index.parent());
    if (object.label().isEmpty())
        return false;
    const QList<AFrequency> keys = object.level().keys();
    const int oldRow = index.row();
    const bool isEntry = oldRow < keys.size(); // and not the row that adds one
    // As for a gain: an entry between two whole hertz stays where it is.
    const bool isUnchanged = value.toString() == index.data(Qt::EditRole).toString();
    if (isUnchanged && !isEntry)
        return false;
    const AFrequency frequency = isUnchanged ? keys.at(oldRow) : readFrequency(value);

    if (frequency < AFrequency() && !isUnchanged) {
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
    const int level = levelOf(parent);
    qDebug("%s (row %d, count %d, type %d)",
           "virtual bool ACalibrationObjectModel::removeRows(int, int, const QModelIndex&)", row, count, level);
    if (level == TopLevel)
        return false;
    if (level != TypeLevel && level != ObjectLevel) {
        qDebug("unknown type");
        return false;
    }
    if (row < 0 || count < 1 || row > rowCount(parent) - count)
        return false;
    return level == TypeLevel ? removeObjects(row, count, parent) : removeEntries(row, count, parent);
}

bool ACalibrationObjectModel::removeObjects(int row, int count, const QModelIndex &parent)
{
    m_isRemovingRows = true;
    beginRemoveRows(parent, row, row + count - 1);
    // The numbers deliberately don't follow the objects that move up.
    for (int number = row; number < row + count; ++number) {
        const ACalibrationData object = getCalObject(index(number, 0, parent));
        if (!object.label().isEmpty() && m_manager)
            m_manager->removeCalibrationData(object.label(), object.type(), true);
    }
    endRemoveRows();
    m_isRemovingRows = false;
    reload(); // also brings back what the store could not remove
    return true;
}

bool ACalibrationObjectModel::removeEntries(int row, int count, const QModelIndex &parent)
{
    ACalibrationData object = getCalObject(parent);
    if (object.label().isEmpty()) {
        qDebug("empty object");
        return false;
    }
    const QList<AFrequency> keys = object.level().keys();
    const int end = std::min(row + count, keys.size()); // the row that adds an entry stays
    if (row >= end)
        return false;
    m_isRemovingRows = true;
    beginRemoveRows(parent, row, end - 1);
    for (int i = row; i < end; ++i)
        object.removeLevel(keys.at(i));
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
    return levelOf(index) == EntryLevel ? shown | Qt::ItemIsEditable : shown;
}

ACalibrationData ACalibrationObjectModel::getCalObject(const QModelIndex &index) const
{
    if (!m_manager || levelOf(index) != ObjectLevel || !index.isValid())
        return {};
    return m_manager->getCalibrationForName(index.data().toString(),
                                            static_cast<ACalibrationData::CalibrationType>(index.parent().row()));
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
