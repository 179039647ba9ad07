#pragma once

#include "core/aveldoranexport.h"

#include <QtCore/QString>
#include <QtWidgets/QStyledItemDelegate>

// Shows and edits a cell that holds a number with a unit behind it.
class AVELDORAN_DATA_EXPORT ALimitSuffixDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    // The suffix stands behind a blank, `decimals` is the largest number of decimals.
    ALimitSuffixDelegate(const QString &suffix, int decimals, QObject *parent = nullptr);
    ~ALimitSuffixDelegate() override;

    void setSuffix(const QString &suffix); // for what is shown and edited from then on

    // A spin box from -1e9 to 1e9. In a cell too narrow for its text it grows over the next ones.
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    // The number in the form of `locale`, without zeros at its end but for one behind the decimal point. The point is
    // that of the default locale: where `locale` has another one, or without decimals, zeros that count go as well.
    QString displayText(const QVariant &value, const QLocale &locale) const override;

private:
    QString m_suffix;
    int m_decimals;
};
