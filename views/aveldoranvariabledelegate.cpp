#include "views/aveldoranvariabledelegate.h"

#include "core/afrequency.h"
#include "views/editorlook.h"
#include "views/filtertable.h"

#include <QtCore/QHash>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDoubleSpinBox>
#include <QtWidgets/QLineEdit>

#include <cmath>

namespace {

using Desc = device_variable_desc;

constexpr int kFallbackVariable = device_variable_count - 1;

enum class Look
{
    FilterList,
    EnumerationList,
    CheckBox,
    SpinBox
};

// How the values of one kind of variables are shown and edited.
struct KindTraits
{
    quint16 flag; // that tells the kind
    Look look;
    double least = 0; // this and what follows: of a spin box
    double most = 0;
    int decimals = 0;
    const char *unit = "";
    const char *unitOfLowFrequencyAnalyser = unit;
};

// The first kind whose flag a variable has is its kind. The last one is that of plain numbers, which have none.
const KindTraits kKinds[] = {
    {Desc::Filter, Look::FilterList},
    {Desc::Enumeration, Look::EnumerationList},
    {Desc::Switch, Look::CheckBox},
    {Desc::Frequency, Look::SpinBox, 0, 30000, 3, AFrequency::MHz_Suffix, AFrequency::kHz_Suffix},
    {Desc::Milliseconds, Look::SpinBox, 0, 50000, 0, "ms"},
    {Desc::Seconds, Look::SpinBox, 0, 1000, 0, "s"},
    {0, Look::SpinBox, -100000, 100000, 1},
};

const KindTraits &traitsOf(const Desc &desc)
{
    const KindTraits *kind = kKinds;
    while (kind->flag != 0 && (desc.flags & kind->flag) == 0)
        ++kind;
    return *kind;
}

QString unitOf(const KindTraits &kind, VeldoranDeviceType type)
{
    return QLatin1String(type == LowFrequencyAnalyser ? kind.unitOfLowFrequencyAnalyser : kind.unit);
}

QMap<float, QString> parseLabels(const char *enumeration)
{
    QMap<float, QString> labels;
    const QString text = QString::fromUtf8(enumeration);
    const QVector<QStringRef> parts = text.splitRef(QLatin1Char(';'));
    for (const QStringRef &part : parts) {
        const int colon = part.indexOf(QLatin1Char(':'));
        if (colon < 0 || part.indexOf(QLatin1Char(':'), colon + 1) >= 0)
            continue;
        bool isNumber = false;
        const float key = part.left(colon).toFloat(&isNumber);
        if (isNumber && !std::isnan(key)) // a NaN has no place in an order, and would take that of another key
            labels.insert(key, part.mid(colon + 1).toString());
    }
    return labels;
}

// The label of a key; none in a null text. Each text is parsed once: descriptions are constants, and there are few.
QString enumLabel(const char *enumeration, float key)
{
    static QHash<QByteArray, QMap<float, QString>> labels;
    const int length = static_cast<int>(qstrlen(enumeration));
    auto known = labels.find(QByteArray::fromRawData(enumeration, length));
    if (known == labels.end())
        known = labels.insert(QByteArray(enumeration, length), parseLabels(enumeration));
    return known->value(key);
}

QString filterLabel(VeldoranDeviceType type, int row)
{
    const filtertable::Filter *filter = filtertable::filterAt(type, row);
    return filter ? QString::fromUtf8(filter->label) : QString();
}

} // namespace

AVeldoranVariableDelegate::AVeldoranVariableDelegate(QObject *parent)
    : QStyledItemDelegate(parent)
{}

AVeldoranVariableDelegate::~AVeldoranVariableDelegate() = default;

void AVeldoranVariableDelegate::setOptions(VeldoranDeviceType type, bool storeNames, bool emptyEntry)
{
    m_deviceType = type;
    m_storeNames = storeNames;
    m_emptyEntry = emptyEntry;
}

void AVeldoranVariableDelegate::setColumns(int nameColumn, int valueColumn)
{
    m_nameColumn = nameColumn;
    m_valueColumn = valueColumn;
}

void AVeldoranVariableDelegate::setBlacklist(const QStringList &names)
{
    m_blacklist = names;
}

QString AVeldoranVariableDelegate::variableName(const QVariant &value) const
{
    const unsigned int identifier = value.toUInt();
    const Desc *desc = identifier != 0 ? numberedVariable(identifier) : nullptr;
    return desc ? QString::fromLatin1(desc->name) : value.toString();
}

const Desc *AVeldoranVariableDelegate::variableInfo(const QModelIndex &index) const
{
    QModelIndex name = index;
    if (index.column() == m_valueColumn) {
        if (!index.model())
            return nullptr;
        name = index.sibling(index.row(), m_nameColumn);
    } else if (index.column() != m_nameColumn) {
        return nullptr;
    }
    const QVariant value = name.data(Qt::EditRole);
    const unsigned int identifier = value.toUInt();
    if (identifier == 0)
        return find_vardesc(value.toString().toLatin1().constData());
    // Deliberately the last one for an unknown number: its value can still be seen and edited as a plain one.
    const Desc *desc = numberedVariable(identifier);
    return desc ? desc : get_vardesc(kFallbackVariable);
}

QMap<float, QString> AVeldoranVariableDelegate::parseEnumValues(const device_variable_desc *desc) const
{
    return desc && desc->enumeration ? parseLabels(desc->enumeration) : QMap<float, QString>();
}

void AVeldoranVariableDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                      const QModelIndex &index) const
{
    const Desc *desc = index.column() == m_valueColumn ? variableInfo(index) : nullptr;
    if (!desc) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    const KindTraits &kind = traitsOf(*desc);
    switch (kind.look) {
    case Look::FilterList:
        editorlook::drawComboBox(painter, option, filterLabel(m_deviceType, index.data(Qt::EditRole).toInt()));
        break;
    case Look::EnumerationList: {
        const auto key = static_cast<float>(index.data(Qt::EditRole).toInt());
        editorlook::drawComboBox(painter, option, enumLabel(desc->enumeration, key));
        break;
    }
    case Look::CheckBox: {
        const bool isOn = index.data(Qt::DisplayRole).toFloat() > 0;
        editorlook::drawCheckBox(painter, option, option.state, isOn, isOn ? tr("On") : tr("Off"));
        break;
    }
    case Look::SpinBox: {
        const QString unit = unitOf(kind, m_deviceType);
        const QString text = index.data(Qt::DisplayRole).toString();
        editorlook::drawSpinBox(painter, option, unit.isEmpty() ? text : QStringLiteral("%1 %2").arg(text, unit));
        break;
    }
    }
}

QWidget *AVeldoranVariableDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &,
                                                 const QModelIndex &index) const
{
    QWidget *editor = nullptr;
    if (index.column() == m_nameColumn)
        editor = createNameEditor(parent);
    else if (const Desc *desc = index.column() == m_valueColumn ? variableInfo(index) : nullptr)
        editor = createValueEditor(parent, *desc);
    else
        editor = new QLineEdit(parent);
    setEditorData(editor, index);
    editor->setFocusPolicy(Qt::StrongFocus);
    return editor;
}

void AVeldoranVariableDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    const bool isDone = index.column() == m_nameColumn    ? setNameEditorData(editor, index)
                        : index.column() == m_valueColumn ? setValueEditorData(editor, index)
                                                          : false;
    if (!isDone)
        QStyledItemDelegate::setEditorData(editor, index);
}

void AVeldoranVariableDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    // Nothing is selected where the cell holds what the box doesn't offer, which is not to be overwritten.
    const auto *box = qobject_cast<QComboBox *>(editor);
    if (box && box->currentIndex() < 0)
        return;
    const bool isDone = index.column() == m_nameColumn    ? setNameData(editor, model, index)
                        : index.column() == m_valueColumn ? setValueData(editor, model, index)
                                                          : false;
    if (!isDone)
        QStyledItemDelegate::setModelData(editor, model, index);
}

bool AVeldoranVariableDelegate::isOfDevice(const Desc *desc) const
{
    return desc && (desc->deviceMask & static_cast<quint32>(m_deviceType)) != 0;
}

const Desc *AVeldoranVariableDelegate::numberedVariable(unsigned int identifier) const
{
    for (int i = 0; i < device_variable_count; ++i) {
        const Desc *desc = get_vardesc(i);
        if (isOfDevice(desc) && desc->identifier == identifier)
            return desc;
    }
    return nullptr;
}

QWidget *AVeldoranVariableDelegate::createNameEditor(QWidget *parent) const
{
    constexpr unsigned int kDeciding = Desc::Readable | Desc::Writable | Desc::Internal;
    constexpr unsigned int kOffered = Desc::Readable | Desc::Writable;
    auto *box = new QComboBox(parent);
    if (m_emptyEntry)
        box->addItem(QString());
    for (int i = 0; i < device_variable_count; ++i) {
        const Desc *desc = get_vardesc(i);
        if (!isOfDevice(desc) || (desc->flags & kDeciding) != kOffered)
            continue;
        const QString name = QString::fromLatin1(desc->name);
        if (!m_blacklist.contains(name))
            box->addItem(name);
    }
    if (!m_emptyEntry)
        box->setCurrentIndex(-1); // an empty cell can't be shown, so nothing is to be committed for it
    return box;
}

QWidget *AVeldoranVariableDelegate::createValueEditor(QWidget *parent, const Desc &desc) const
{
    const KindTraits &kind = traitsOf(desc);
    switch (kind.look) {
    case Look::FilterList: {
        auto *box = new QComboBox(parent);
        for (int row = 0; row < filtertable::filterCount(m_deviceType); ++row)
            box->addItem(filterLabel(m_deviceType, row), row);
        return box;
    }
    case Look::EnumerationList: {
        auto *box = new QComboBox(parent);
        const QMap<float, QString> labels = parseEnumValues(&desc);
        for (auto label = labels.cbegin(); label != labels.cend(); ++label)
            box->addItem(label.value(), label.key());
        return box;
    }
    case Look::CheckBox: {
        auto *box = new QCheckBox(parent);
        box->setAutoFillBackground(true); // or the painted cell shows through
        return box;
    }
    case Look::SpinBox:
        break;
    }
    auto *box = new QDoubleSpinBox(parent);
    box->setRange(kind.least, kind.most);
    box->setDecimals(kind.decimals);
    const QString unit = unitOf(kind, m_deviceType);
    if (!unit.isEmpty())
        box->setSuffix(QLatin1Char(' ') + unit);
    return box;
}

bool AVeldoranVariableDelegate::setNameEditorData(QWidget *editor, const QModelIndex &index) const
{
    auto *box = qobject_cast<QComboBox *>(editor);
    if (!box)
        return false;
    const QString name = variableName(index.data(Qt::EditRole));
    if (!name.isEmpty())
        box->setCurrentIndex(box->findData(name, Qt::DisplayRole, Qt::MatchCaseSensitive));
    return true;
}

bool AVeldoranVariableDelegate::setValueEditorData(QWidget *editor, const QModelIndex &index) const
{
    const Desc *desc = variableInfo(index);
    if (!desc)
        return false;
    const QVariant value = index.data(Qt::EditRole);
    switch (traitsOf(*desc).look) {
    case Look::FilterList:
    case Look::EnumerationList: {
        auto *box = qobject_cast<QComboBox *>(editor);
        if (box)
            box->setCurrentIndex(box->findData(value.toFloat(), Qt::UserRole, Qt::MatchCaseSensitive));
        return box;
    }
    case Look::CheckBox: {
        auto *box = qobject_cast<QCheckBox *>(editor);
        if (box)
            box->setChecked(value.toDouble() > 0);
        return box;
    }
    case Look::SpinBox:
        break;
    }
    auto *box = qobject_cast<QDoubleSpinBox *>(editor);
    if (box)
        box->setValue(value.toDouble());
    return box;
}

bool AVeldoranVariableDelegate::setNameData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    const auto *box = qobject_cast<QComboBox *>(editor);
    if (!box)
        return false;
    if (box->currentText().isEmpty())
        model->setData(index, QVariant(), Qt::EditRole);
    else if (m_storeNames)
        model->setData(index, box->currentText(), Qt::EditRole);
    else if (const Desc *desc = variableInfo(index)) // deliberately of the cell, not of the text: stored numbers stay
        model->setData(index, int(desc->identifier), Qt::EditRole);
    return true;
}

bool AVeldoranVariableDelegate::setValueData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    const Desc *desc = variableInfo(index);
    if (!desc)
        return false;
    switch (traitsOf(*desc).look) {
    case Look::FilterList:
    case Look::EnumerationList: {
        const auto *box = qobject_cast<QComboBox *>(editor);
        if (box)
            model->setData(index, box->currentData(Qt::UserRole), Qt::EditRole);
        return box;
    }
    case Look::CheckBox: {
        const auto *box = qobject_cast<QCheckBox *>(editor);
        if (box)
            model->setData(index, box->isChecked() ? 1.0 : 0.0, Qt::EditRole);
        return box;
    }
    case Look::SpinBox:
        break;
    }
    auto *box = qobject_cast<QDoubleSpinBox *>(editor);
    if (box) {
        box->interpretText();
        model->setData(index, box->value(), Qt::EditRole);
    }
    return box;
}
