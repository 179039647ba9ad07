#include "delegatesamples.h"
#include "editorkeys.h"

#include <QtGui/QStandardItemModel>
#include <QtWidgets/QStyleFactory>
#include <QtWidgets/QTableView>
#include <QtWidgets/QTreeView>

// What is seen of a selection in views, which paint highlights of their own, in the style Fusion.

namespace {

constexpr char kHighlight[] = "#308cc6";
constexpr char kGround[] = "#b8e0b8";

const DelegateSample kUnframed = {
    "no frame", [](QObject *parent) { return new ARemoveSelectionDelegate(false, parent); }, {}, "text", 1, "", "", {}};

struct Shown
{
    QColor selected; // the ground of a cell, where nothing is written
    QColor other;
};

Shown show(QAbstractItemView *view, const DelegateSample &sample, bool hasGround)
{
    QStandardItemModel model(2, 2);
    for (int row = 0; row < 2; ++row) {
        for (int column = 0; column < 2; ++column) {
            model.setData(model.index(row, column), sample.value);
            if (hasGround)
                model.setData(model.index(row, column), QColor(kGround), Qt::BackgroundRole);
        }
    }
    QPalette palette = view->palette();
    palette.setColor(QPalette::Base, Qt::white);
    if (palette.color(QPalette::Highlight) != palette.color(QPalette::Base))
        palette.setColor(QPalette::Highlight, QColor(kHighlight));
    view->setPalette(palette);
    view->setModel(&model);
    view->setItemDelegate(sample.make(view));
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->show();
    view->selectionModel()->select(model.index(1, 0), QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    const QImage image = view->viewport()->grab().toImage();
    editorkeys::keepPicture(QPixmap::fromImage(image),
                            QStringLiteral("selection-%1-%2-%3.png")
                                .arg(QLatin1String(view->metaObject()->className()), QLatin1String(sample.title))
                                .arg(hasGround));
    const auto ground = [&](int row) {
        return image.pixelColor(view->visualRect(model.index(row, 1)).bottomRight() - QPoint(4, 4));
    };
    const Shown shown = {ground(1), ground(0)};
    view->setModel(nullptr);
    return shown;
}

} // namespace

class TestDelegateSelection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setStyle(QStyleFactory::create("fusion")); }

    void aTableShowsItsHighlightBelowTheCells_data() { addSamples(); }
    void aTableShowsItsHighlightBelowTheCells();
    void aTreeShowsNone_data() { addSamples(); }
    void aTreeShowsNone();
    void aTableWithoutAHighlightShowsNone_data() { addSamples(); }
    void aTableWithoutAHighlightShowsNone();
    void aGroundOfTheCellCoversTheHighlight();

private:
    static void addSamples();
};

void TestDelegateSelection::addSamples()
{
    QTest::addColumn<const DelegateSample *>("sample");
    QTest::newRow("no frame") << &kUnframed;
    for (const DelegateSample &sample : delegateSamples()) {
        if (qstrcmp(sample.title, "frame") == 0 || qstrcmp(sample.title, "yes or no") == 0)
            QTest::newRow(sample.title) << &sample;
    }
}

void TestDelegateSelection::aTableShowsItsHighlightBelowTheCells()
{
    QFETCH(const DelegateSample *, sample);
    QTableView view;
    const Shown shown = show(&view, *sample, false);
    QCOMPARE(shown.selected, QColor(kHighlight));
    QCOMPARE(shown.other, QColor(Qt::white));
}

void TestDelegateSelection::aTreeShowsNone()
{
    QFETCH(const DelegateSample *, sample);
    QTreeView view;
    const Shown shown = show(&view, *sample, false);
    QCOMPARE(shown.selected, QColor(Qt::white));
    QCOMPARE(shown.other, QColor(Qt::white));
}

void TestDelegateSelection::aTableWithoutAHighlightShowsNone()
{
    QFETCH(const DelegateSample *, sample);
    QTableView view;
    QPalette palette = view.palette();
    palette.setColor(QPalette::Highlight, palette.color(QPalette::Base));
    view.setPalette(palette);
    const Shown shown = show(&view, *sample, false);
    QCOMPARE(shown.selected, QColor(Qt::white));
    QCOMPARE(shown.other, QColor(Qt::white));
}

void TestDelegateSelection::aGroundOfTheCellCoversTheHighlight()
{
    QTableView view;
    const Shown shown = show(&view, kUnframed, true);
    QCOMPARE(shown.selected, QColor(kGround));
    QCOMPARE(shown.other, QColor(kGround));
}

QTEST_MAIN(TestDelegateSelection)
#include "tst_delegateselection.moc"
