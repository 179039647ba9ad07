#pragma once

#include <QtWidgets/QStyleOptionViewItem>

class QPainter;

// Private to the delegates: cells that are painted as if their editor were open. The editor fills the cell.
namespace editorlook {

// A read-only combo box with the text as the current one.
void drawComboBox(QPainter *painter, const QStyleOptionViewItem &cell, const QString &text);

// A check box that has `state`, which says whether the cell is selected and the like, besides its own.
void drawCheckBox(QPainter *painter, const QStyleOptionViewItem &cell, QStyle::State state, bool isOn,
                  const QString &text);

// A read-only spin box with the text in the middle of the cell, in the painter's pen and font.
void drawSpinBox(QPainter *painter, const QStyleOptionViewItem &cell, const QString &text);

} // namespace editorlook
