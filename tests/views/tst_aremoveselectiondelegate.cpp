#include "views/aremoveselectiondelegate.h"

#include "delegatecell.h"
#include "editorkeys.h"
#include "recordingstyle.h"

#include <QtWidgets/QHeaderView>
#include <QtWidgets/QTableView>

class TestARemoveSelectionDelegate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutAFrameASelectedItemLooksUnselected();
    void theFrameIsTwoPixelsInsideTheCell();
    void theFrameHasThePensColour_data();
    void theFrameHasThePensColour();
    void aBrushFillsTheCell();
    void onlyTheSelectionIsTakenAway();
    void anUnselectedItemHasNoFrame();
    void aViewShowsTheFrame();
};

namespace {

QImage look(bool drawFrame, QStyle::State state, const QPen &pen = QPen(Qt::darkRed))
{
    const ARemoveSelectionDelegate delegate(drawFrame);
    const Cell cell("text");
    PaintedCell painted;
    painted.option.state = state;
    painted.pen = pen;
    return painted.paint(delegate, cell.index()) && painted.isUntouchedOutside() ? painted.image : QImage();
}

constexpr QStyle::State kPlain = QStyle::State_Enabled | QStyle::State_Active;

} // namespace

void TestARemoveSelectionDelegate::withoutAFrameASelectedItemLooksUnselected()
{
    QVERIFY(!look(false, kPlain).isNull());
    QCOMPARE(look(false, kPlain | QStyle::State_Selected), look(false, kPlain));
}

void TestARemoveSelectionDelegate::theFrameIsTwoPixelsInsideTheCell()
{
    const QImage plain = look(true, kPlain);
    const QImage framed = look(true, kPlain | QStyle::State_Selected);
    QVERIFY(!framed.isNull());
    const QRect cell = PaintedCell().option.rect;
    const QRect inside = cell.adjusted(2, 2, -2, -2);
    for (int y = 0; y < framed.height(); ++y) {
        for (int x = 0; x < framed.width(); ++x) {
            const bool isFrame = cell.contains(x, y) && !inside.contains(x, y);
            QCOMPARE(framed.pixelColor(x, y), isFrame ? QColor(Qt::darkRed) : plain.pixelColor(x, y));
        }
    }
}

void TestARemoveSelectionDelegate::theFrameHasThePensColour_data()
{
    QTest::addColumn<QColor>("color");
    QTest::newRow("black") << QColor(Qt::black);
    QTest::newRow("blue") << QColor(Qt::blue);
}

void TestARemoveSelectionDelegate::theFrameHasThePensColour()
{
    QFETCH(QColor, color);
    QCOMPARE(look(true, kPlain | QStyle::State_Selected, color).pixelColor(PaintedCell().option.rect.topLeft()), color);
}

// The painter's brush counts too.
void TestARemoveSelectionDelegate::aBrushFillsTheCell()
{
    const ARemoveSelectionDelegate delegate(true);
    const Cell cell("text");
    PaintedCell painted;
    painted.option.state = kPlain | QStyle::State_Selected;
    painted.brush = Qt::yellow;
    QVERIFY(painted.paint(delegate, cell.index()));
    QCOMPARE(painted.image.pixelColor(painted.option.rect.center()), QColor(Qt::yellow));
}

void TestARemoveSelectionDelegate::onlyTheSelectionIsTakenAway()
{
    RecordingStyle *style = RecordingStyle::install();
    for (const bool drawFrame : {false, true}) {
        style->calls.clear();
        look(drawFrame, kPlain | QStyle::State_Selected | QStyle::State_MouseOver);
        QCOMPARE(style->elements(), QStringList("item"));
        QCOMPARE(style->calls.first().state, kPlain | QStyle::State_MouseOver);
        QCOMPARE(style->calls.first().text, QString("text"));
        QCOMPARE(style->calls.first().rect, PaintedCell().option.rect);
    }
}

void TestARemoveSelectionDelegate::anUnselectedItemHasNoFrame()
{
    QCOMPARE(look(true, kPlain), look(false, kPlain));
}

void TestARemoveSelectionDelegate::aViewShowsTheFrame()
{
    QStandardItemModel model(2, 2);
    for (int row = 0; row < 2; ++row) {
        for (int column = 0; column < 2; ++column) {
            model.setItem(row, column, new QStandardItem("cell"));
            model.item(row, column)->setBackground(QColor("#b8e0b8"));
        }
    }
    QTableView view;
    view.setModel(&model);
    view.setItemDelegate(new ARemoveSelectionDelegate(true, &view));
    view.setSelectionBehavior(QAbstractItemView::SelectRows); // one selected cell is without the focus then
    view.show();
    QVERIFY(QTest::qWaitForWindowActive(&view));
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(model.index(1, 1)).center());
    QVERIFY(view.selectionModel()->isSelected(model.index(1, 0)));
    const QPixmap picture = view.grab();
    editorkeys::keepPicture(picture, "frame-selected.png");
    const QImage image = view.viewport()->grab().toImage();
    const QPoint corner = view.visualRect(model.index(1, 0)).topLeft();
    const QColor text = view.palette().color(QPalette::Text);
    QCOMPARE(image.pixelColor(corner), text);
    QCOMPARE(image.pixelColor(corner + QPoint(1, 1)), text);
    QCOMPARE(image.pixelColor(corner + QPoint(2, 2)), QColor("#b8e0b8"));
    QCOMPARE(image.pixelColor(view.visualRect(model.index(0, 0)).topLeft()), QColor("#b8e0b8"));
}

QTEST_MAIN(TestARemoveSelectionDelegate)
#include "tst_aremoveselectiondelegate.moc"
