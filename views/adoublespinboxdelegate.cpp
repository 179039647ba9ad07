#include "views/adoublespinboxdelegate.h"

#include "core/afrequency.h"

#include <QtWidgets/QDoubleSpinBox>

ADoubleSpinBoxDelegate::ADoubleSpinBoxDelegate(QObject *parent)
    : QItemDelegate(parent)
{}

ADoubleSpinBoxDelegate::~ADoubleSpinBoxDelegate() = default;

QWidget *ADoubleSpinBoxDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &) const
{
    constexpr double kMaximumMHz = 20000.0;
    constexpr int kDecimals = 3;
    auto *box = new QDoubleSpinBox(parent);
    box->setMinimum(0.0);
    box->setMaximum(kMaximumMHz);
    box->setDecimals(kDecimals);
    box->setSuffix(QLatin1String(AFrequency::MHz_Suffix)); // deliberately without a blank: the form applications expect
    return box;
}

void ADoubleSpinBoxDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    if (auto *box = qobject_cast<QDoubleSpinBox *>(editor))
        box->setValue(index.data(Qt::EditRole).toDouble());
    else
        QItemDelegate::setEditorData(editor, index);
}

void ADoubleSpinBoxDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    auto *box = qobject_cast<QDoubleSpinBox *>(editor);
    if (!box) {
        QItemDelegate::setModelData(editor, model, index);
        return;
    }
    box->interpretText();
    model->setData(index, box->value(), Qt::EditRole);
}

void ADoubleSpinBoxDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                                  const QModelIndex &) const
{
    editor->setGeometry(option.rect);
}
