#pragma once

#include <QtCore/QLocale>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtGui/QStandardItemModel>
#include <QtTest/QtTest>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QStyledItemDelegate>

// What the tests of delegates share: a model of one cell, a default locale for as long as it is wanted, and what holds
// for several delegates alike.

struct Cell
{
    explicit Cell(const QVariant &value)
    {
        model.setItem(0, 0, new QStandardItem);
        model.setData(index(), value, Qt::EditRole);
    }
    QModelIndex index() const { return model.index(0, 0); }
    QVariant value() const { return index().data(Qt::EditRole); }

    QStandardItemModel model;
};

struct DefaultLocale
{
    explicit DefaultLocale(const QLocale &locale) { QLocale::setDefault(locale); }
    ~DefaultLocale() { QLocale::setDefault(m_before); }
    DefaultLocale(const DefaultLocale &) = delete;
    DefaultLocale &operator=(const DefaultLocale &) = delete;

private:
    QLocale m_before;
};

// The cell alone, on white.
inline QImage lookOf(const QAbstractItemDelegate &delegate, const QModelIndex &cell)
{
    QStyleOptionViewItem option;
    option.rect = QRect(0, 0, 150, 30);
    QImage image(option.rect.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    delegate.paint(&painter, option, cell);
    return image;
}

// A cell must be painted and measured as a plain one of that text.
inline void compareToAPlainItem(const QAbstractItemDelegate &delegate, const QModelIndex &cell, const QString &text)
{
    const QStyledItemDelegate plain;
    const Cell other(text);
    QCOMPARE(lookOf(delegate, cell), lookOf(plain, other.index()));
    QCOMPARE(delegate.sizeHint({}, cell), plain.sizeHint({}, other.index()));
}

// The editor of a cell of that value must take the cell's place, wherever it is then.
inline void compareEditorToItsCell(const QAbstractItemDelegate &delegate, const QVariant &value)
{
    QWidget parent;
    const Cell cell(value);
    QStyleOptionViewItem option;
    QWidget *editor = delegate.createEditor(&parent, option, cell.index());
    option.rect = QRect(7, 11, 130, 40);
    delegate.updateEditorGeometry(editor, option, cell.index());
    QCOMPARE(editor->geometry(), option.rect);
}

// An editor that the delegate didn't make must be served by way of its user property.
inline void compareForeignEditor(const QAbstractItemDelegate &delegate, QWidget *editor, const QVariant &value,
                                 const QVariant &edited)
{
    const QByteArray property = editor->metaObject()->userProperty().name();
    Cell cell(value);
    delegate.setEditorData(editor, cell.index());
    QCOMPARE(editor->property(property), value);
    QVERIFY(editor->setProperty(property, edited));
    delegate.setModelData(editor, &cell.model, cell.index());
    QCOMPARE(cell.value(), edited);
}

inline void compareForeignLineEdit(const QAbstractItemDelegate &delegate)
{
    QLineEdit editor;
    compareForeignEditor(delegate, &editor, QStringLiteral("1"), QStringLiteral("2"));
}
