#include "views/editorlook.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QStyle>

namespace {

template<typename Option>
Option editorOption(const QStyleOptionViewItem &cell, QStyle::State state)
{
    Option editor;
    editor.rect = cell.rect;
    editor.state = state | QStyle::State_Enabled;
    editor.direction = cell.direction;
    editor.fontMetrics = cell.fontMetrics;
    editor.palette = cell.palette;
    return editor;
}

} // namespace

void editorlook::drawComboBox(QPainter *painter, const QStyleOptionViewItem &cell, const QString &text)
{
    const QStyle *style = QApplication::style();
    auto box = editorOption<QStyleOptionComboBox>(cell, cell.state | QStyle::State_ReadOnly);
    box.currentText = text;
    style->drawComplexControl(QStyle::CC_ComboBox, &box, painter);
    style->drawControl(QStyle::CE_ComboBoxLabel, &box, painter);
}

void editorlook::drawCheckBox(QPainter *painter, const QStyleOptionViewItem &cell, QStyle::State state, bool isOn,
                              const QString &text)
{
    auto box = editorOption<QStyleOptionButton>(cell, state | (isOn ? QStyle::State_On : QStyle::State_Off));
    box.text = text;
    QApplication::style()->drawControl(QStyle::CE_CheckBox, &box, painter);
}

void editorlook::drawSpinBox(QPainter *painter, const QStyleOptionViewItem &cell, const QString &text)
{
    const QStyle *style = QApplication::style();
    auto box = editorOption<QStyleOptionSpinBox>(cell, cell.state | QStyle::State_ReadOnly);
    box.frame = true;
    style->drawComplexControl(QStyle::CC_SpinBox, &box, painter);
    style->drawItemText(painter, cell.rect, Qt::AlignHCenter | Qt::AlignVCenter, QPalette(), true, text,
                        QPalette::NoRole);
}
