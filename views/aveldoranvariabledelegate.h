#pragma once

#include "core/aveldorandevice.h"
#include "core/aveldoranexport.h"
#include "core/devicevariables.h"

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtWidgets/QStyledItemDelegate>

// Shows and edits a table of device settings. One column names a variable, by its name or its number; the other holds
// its value, and is painted and edited as the kind of the variable asks: a list of filters or of an enumeration, a
// switch, or a number with its unit.
class AVELDORAN_DATA_EXPORT AVeldoranVariableDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit AVeldoranVariableDelegate(QObject *parent = nullptr);
    ~AVeldoranVariableDelegate() override;

    // The device whose variables are offered, a SpectrumAnalyser at first; for a LowFrequencyAnalyser, frequencies are
    // kilohertz and its filters others. With `storeNames`, as at first, a chosen name is stored as text. Without, the
    // number of the variable that the cell already held is stored, so that choosing another leaves the cell as it is; a
    // number that the device doesn't know is replaced by that of the last variable.
    // With `emptyEntry`, as at first, a name can be taken away.
    void setOptions(VeldoranDeviceType type, bool storeNames, bool emptyEntry);
    void setColumns(int nameColumn, int valueColumn); // 0 and 1 at first
    void setBlacklist(const QStringList &names);      // variables that are not offered, but shown where they stand

    // The name of the variable with that number if the device has it, else the value's text.
    QString variableName(const QVariant &value) const;

    // The variable that a cell of either column belongs to; null in other columns and for an unknown name. A number
    // that none of the device's variables has gives the last variable of the table.
    const device_variable_desc *variableInfo(const QModelIndex &index) const;

    // The labels of an enumeration by their keys. What is no pair of a number and a label is passed over, the later of
    // two equal keys holds. Empty for null.
    QMap<float, QString> parseEnumValues(const device_variable_desc *desc) const;

    // Value cells of a known variable look like their editor; filters and keys without a label are empty. The label is
    // that of the cell's value as QVariant::toInt() takes it: reals are rounded, and a text with decimals is 0.
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    // Names: a combo box. Values: a combo box, a check box or a spin box, which commit a key, 1.0 or 0.0, or a double.
    // Without a known variable: a line edit. A combo box in which nothing is selected, since it doesn't offer what the
    // cell holds, commits nothing.
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;

private:
    bool isOfDevice(const device_variable_desc *desc) const;
    const device_variable_desc *numberedVariable(unsigned int identifier) const;
    QWidget *createNameEditor(QWidget *parent) const;
    QWidget *createValueEditor(QWidget *parent, const device_variable_desc &desc) const;
    bool setNameEditorData(QWidget *editor, const QModelIndex &index) const;
    bool setValueEditorData(QWidget *editor, const QModelIndex &index) const;
    bool setNameData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const;
    bool setValueData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const;

    VeldoranDeviceType m_deviceType = SpectrumAnalyser;
    bool m_storeNames = true;
    bool m_emptyEntry = true;
    QStringList m_blacklist;
    int m_nameColumn = 0;
    int m_valueColumn = 1;
};
