#include "limit/alimitmodel.h"

#include "core/emu.h"

namespace {

bool isFrequencyColumn(int column)
{
    return column == ALimitModel::ColumnBegin || column == ALimitModel::ColumnEnd ||
           column == ALimitModel::ColumnBeginFrequency || column == ALimitModel::ColumnEndFrequency;
}

} // namespace

ALimitModel::ALimitModel(QObject *parent)
    : QStandardItemModel(parent)
    , m_headerLabels({tr("Name"), tr("Begin"), tr("End"), tr("Unit"), tr("Description"), tr("Color"),
                      tr("Begin Frequency"), tr("End Frequency"), tr("Begin Value"), tr("End Value"),
                      tr("Interpolation")})
{
    setHorizontalHeaderLabels(m_headerLabels);
    m_units.reserve(kEmuCount);
    for (int id = 0; id < kEmuCount; ++id)
        m_units.append(emu_find(id));
}

ALimitModel::~ALimitModel() = default;

bool ALimitModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!isFrequencyColumn(index.column()) || (role != Qt::DisplayRole && role != Qt::EditRole))
        return QStandardItemModel::setData(index, value, role);
    const AFrequency frequency = AFrequency::fromValue(value.toDouble(), AFrequency::MHz);
    return QStandardItemModel::setData(index, frequencyText(frequency), role);
}

QStringList ALimitModel::unitLabels() const
{
    QStringList labels;
    labels.reserve(m_units.size());
    for (const emu_entry *unit : m_units)
        labels.append(QString::fromUcs4(unit->name));
    return labels;
}

QString ALimitModel::frequencyText(const AFrequency &frequency)
{
    constexpr int kWidth = 15;
    constexpr int kDecimals = 7;
    return frequency.formatString(QStringLiteral("%1"), AFrequency::MHz, kWidth, 'f', kDecimals);
}

void ALimitModel::clearRows()
{
    clear();                                   // drops the titles too
    setHorizontalHeaderLabels(m_headerLabels); // and with them makes the columns
}
