#pragma once

#include "tests/views/editorkeys.h"

#include <QtGui/QStandardItemModel>
#include <QtTest/QtTest>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QStyleFactory>
#include <QtWidgets/QTableView>

// Painted cells against what they imitate, pixel by pixel, in the style Fusion. CTest runs programs with this at scale
// factor 1 and at 2.
namespace celllook {

constexpr int kWidth = 240;
constexpr int kHeight = 28;

inline int expectedScale()
{
    return qEnvironmentVariableIntValue("QT_SCALE_FACTOR") == 2 ? 2 : 1;
}

inline void useFusion()
{
    QLocale::setDefault(QLocale::c());
    QApplication::setStyle(QStyleFactory::create("fusion"));
    QCOMPARE(qRound(qApp->devicePixelRatio()), expectedScale());
}

// A bare table of one row, one cell of which is looked at: nothing but the cells is drawn.
class CellView : public QTableView
{
public:
    CellView(const QVariantList &values, int column, Qt::LayoutDirection direction)
        : m_cells(1, values.size())
        , m_column(column)
    {
        for (int each = 0; each < values.size(); ++each)
            m_cells.setData(m_cells.index(0, each), values.at(each));
        setModel(&m_cells);
        setLayoutDirection(direction);
        setFrameShape(QFrame::NoFrame);
        setShowGrid(false);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        horizontalHeader()->hide();
        verticalHeader()->hide();
        horizontalHeader()->setDefaultSectionSize(kWidth);
        verticalHeader()->setDefaultSectionSize(kHeight);
        resize(values.size() * kWidth, kHeight);
    }

    QModelIndex cell() const { return m_cells.index(0, m_column); }
    QStyleOptionViewItem option() const
    {
        QStyleOptionViewItem option = viewOptions();
        option.rect = QRect(QPoint(), visualRect(cell()).size());
        return option;
    }
    QImage painted() { return viewport()->grab(visualRect(cell())).toImage().convertToFormat(QImage::Format_RGB32); }

private:
    QStandardItemModel m_cells;
    int m_column;
};

// An editor alone on the ground of the view, as large as the view's cell and as it is without the focus.
class LoneEditor : public QWidget
{
public:
    // That which the view's delegate makes for the cell.
    explicit LoneEditor(const CellView &view)
        : LoneEditor(view, [&view](QWidget *parent) {
            QWidget *made = view.itemDelegate()->createEditor(parent, view.option(), view.cell());
            view.itemDelegate()->setEditorData(made, view.cell());
            return made;
        })
    {}

    template<typename Make>
    LoneEditor(const CellView &view, Make make)
    {
        setBackgroundRole(QPalette::Base);
        setAutoFillBackground(true);
        setLayoutDirection(view.layoutDirection());
        resize(view.option().rect.size());
        editor = make(this);
        editor->setGeometry(rect());
        editor->setAutoFillBackground(false);
    }

    QImage look() { return grab().toImage().convertToFormat(QImage::Format_RGB32); }

    QWidget *editor;
};

// The part in which two pictures differ; invalid if they are the same.
inline QRect difference(const QImage &a, const QImage &b)
{
    QRect different;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            if (a.pixel(x, y) != b.pixel(x, y))
                different |= QRect(x, y, 1, 1);
        }
    }
    return different;
}

inline void keepLook(const QImage &image, const char *title, Qt::LayoutDirection direction, const char *what)
{
    QString name = QStringLiteral("%1-%2-%3x-%4.png")
                       .arg(QLatin1String(title), direction == Qt::RightToLeft ? "rtl" : "ltr",
                            QString::number(expectedScale()), QLatin1String(what));
    editorkeys::keepPicture(QPixmap::fromImage(image), name.replace(QLatin1Char(' '), QLatin1Char('-')));
}

// Two pictures of a cell must be the same, to the pixel. What the second one is of is named.
inline void compareLooks(const QImage &painted, const QImage &other, const char *title, Qt::LayoutDirection direction,
                         const char *what)
{
    keepLook(painted, title, direction, "painted");
    keepLook(other, title, direction, what);
    QCOMPARE(painted.size(), QSize(kWidth, kHeight) * expectedScale());
    QCOMPARE(other.size(), painted.size());
    QCOMPARE(difference(painted, other), QRect());
}

} // namespace celllook

Q_DECLARE_METATYPE(Qt::LayoutDirection)
