#include "views/aremoveselectiondelegate.h"

#include <QtGui/QPainter>

ARemoveSelectionDelegate::ARemoveSelectionDelegate(bool drawFrame, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_drawFrame(drawFrame)
{}

ARemoveSelectionDelegate::~ARemoveSelectionDelegate() = default;

void ARemoveSelectionDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                     const QModelIndex &index) const
{
    QStyleOptionViewItem unselected = option;
    const bool isSelected = unselected.state.testFlag(QStyle::State_Selected);
    unselected.state.setFlag(QStyle::State_Selected, false);
    QStyledItemDelegate::paint(painter, unselected, index);
    if (!isSelected || !m_drawFrame)
        return;
    painter->drawRect(option.rect.adjusted(0, 0, -1, -1));
    painter->drawRect(option.rect.adjusted(1, 1, -2, -2));
}
