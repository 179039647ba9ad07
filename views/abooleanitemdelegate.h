#pragma once

#include "core/aveldoranexport.h"

#include <QtCore/QString>
#include <QtWidgets/QStyledItemDelegate>

// Shows and edits a cell that holds a truth value as one of two texts.
class AVELDORAN_DATA_EXPORT ABooleanItemDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit ABooleanItemDelegate(QObject *parent = nullptr); // "True" and "False" in the language of that moment
    // Texts of the application's own, which stay as they are when the language changes.
    ABooleanItemDelegate(const QString &trueText, const QString &falseText, QObject *parent = nullptr);
    ~ABooleanItemDelegate() override;

    // As a plain item. They do what those of the base do, and are exported for derived classes to link to.
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    // A combo box of the two texts, the one for true first. It shows what Qt::DisplayRole holds, commits a bool, and
    // fills the cell.
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;

    // One of the two texts, for what QVariant::toBool() makes of the value.
    QString displayText(const QVariant &value, const QLocale &locale) const override;

private:
    QString m_trueText;
    QString m_falseText;
};
