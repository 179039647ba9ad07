#pragma once

#include "core/afrequency.h"
#include "core/aveldoranexport.h"

#include <QtWidgets/QStyledItemDelegate>

// Shows and edits a cell that holds a frequency as a text which AFrequency reads, such as "2.4 GHz".
class AVELDORAN_DATA_EXPORT AFrequencyDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit AFrequencyDelegate(QObject *parent = nullptr);
    ~AFrequencyDelegate() override;

    // A minus sign is accepted from then on if `allowNegative` is set. The unit, MHz at first, has no influence on what
    // is stored: a number that is typed without a unit is stored without one, and AFrequency reads that as hertz.
    void setOptions(AFrequency::Unit defaultUnit, bool allowNegative);

    // A read-only spin box with the frequency in the form of the default locale, whatever the column.
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    // A line edit that shows three decimals and the unit that the frequency chooses. It accepts a decimal number with
    // "." or ",", and a unit from Hz to GHz one blank behind it. The text is committed as it was typed. A negative
    // frequency opens with its sign, which is not accepted without `allowNegative`: Return does nothing until it is
    // gone.
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;

private:
    AFrequency::Unit m_defaultUnit = AFrequency::MHz;
    bool m_allowNegative = false;
};
