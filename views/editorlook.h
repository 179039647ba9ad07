#pragma once

#include <QtWidgets/QStyleOptionViewItem>

class QPainter;

// Private to the delegates: cells that are painted as if their editor were open.
namespace editorlook {

// The option of an editor that fills the cell.
template<typename Option>
Option editorOption(const QStyleOptionViewItem &cell, QStyle::State state)
{
    Option editor;
    editor.rect = cell.rect;
    editor.state = state;
    editor.direction = cell.direction;
    editor.fontMetrics = cell.fontMetrics;
    editor.palette = cell.palette;
    return editor;
}

// A read-only spin box with the text in the middle of the cell, in the painter's pen and font.
void drawSpinBox(QPainter *painter, const QStyleOptionViewItem &cell, const QString &text);

} // namespace editorlook
