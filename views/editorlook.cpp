#include "views/editorlook.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QStyle>

void editorlook::drawSpinBox(QPainter *painter, const QStyleOptionViewItem &cell, const QString &text)
{
    const QStyle *style = QApplication::style();
    auto box = editorOption<QStyleOptionSpinBox>(cell, cell.state | QStyle::State_Enabled | QStyle::State_ReadOnly);
    box.frame = true;
    style->drawComplexControl(QStyle::CC_SpinBox, &box, painter);
    style->drawItemText(painter, cell.rect, Qt::AlignHCenter | Qt::AlignVCenter, QPalette(), true, text,
                        QPalette::NoRole);
}
