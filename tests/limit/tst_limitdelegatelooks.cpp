#include "limit/alimitselectiondelegate.h"
#include "limit/alimitsuffixdelegate.h"

#include "views/celllook.h"

#include <QtWidgets/QComboBox>
#include <QtWidgets/QDoubleSpinBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QStyledItemDelegate>

#include <functional>

// What a limit editor shows: the cells are plain ones of the delegates' texts, the editors plain ones of Qt.

using namespace celllook;

namespace {

constexpr char kLongLabel[] = "linear over the logarithm of the frequency, from one level to the next";

const QMap<unsigned int, QString> kLabels = {{0, "step"}, {1, "linear"}, {2, "logarithmic"}, {3, kLongLabel}};

struct LimitCell
{
    const char *title;
    std::function<QStyledItemDelegate *(QObject *)> make;
    QVariant value;
    QString text; // that is seen
    QVariant otherValue;
};

const LimitCell &cellNamed(const QByteArray &title)
{
    const auto interpolation = [](QObject *parent) { return new ALimitSelectionDelegate(kLabels, parent); };
    const auto frequency = [](QObject *parent) { return new ALimitSuffixDelegate("MHz", 6, parent); };
    const auto level = [](QObject *parent) { return new ALimitSuffixDelegate("dB\u00b5V/m", 3, parent); };
    const auto whole = [](QObject *parent) { return new ALimitSuffixDelegate("dB", 0, parent); };
    static const LimitCell kCells[] = {
        {"label", interpolation, "1", "linear", "2"},
        {"long label", interpolation, 3u, kLongLabel, "0"},
        {"unknown label", interpolation, 17, "", "0"},
        {"frequency", frequency, "     87.5000000", "87.5 MHz", "108"},
        {"level", level, -30.5, "-30.5 dB\u00b5V/m", 56.125},
        {"without decimals", whole, 100, "10 dB", 105},
    };
    for (const LimitCell &cell : kCells) {
        if (title == cell.title)
            return cell;
    }
    qFatal("no cell %s", title.constData());
}

// A view of a limit's cell, and one of a plain cell that holds the text.
struct TwoViews
{
    TwoViews(const LimitCell &cell, Qt::LayoutDirection direction)
        : limit({cell.value}, 0, direction)
        , plain({cell.text}, 0, direction)
    {
        limit.setItemDelegate(cell.make(&limit));
        plain.setItemDelegate(new QStyledItemDelegate(&plain));
    }

    CellView limit;
    CellView plain;
};

const std::initializer_list<const char *> kShown = {"label",     "long label", "unknown label",
                                                    "frequency", "level",      "without decimals"};

void addBothWays(std::initializer_list<const char *> titles)
{
    QTest::addColumn<QByteArray>("title");
    QTest::addColumn<Qt::LayoutDirection>("direction");
    for (const char *title : titles) {
        QTest::addRow("%s", title) << QByteArray(title) << Qt::LeftToRight;
        QTest::addRow("%s, right to left", title) << QByteArray(title) << Qt::RightToLeft;
    }
}

using Change = std::function<void(CellView *)>;

constexpr int kNarrow = 80;

// A frequency that is edited in the middle one of three cells of a width.
struct OpenFrequency
{
    OpenFrequency(double megahertz, int cellWidth, Qt::LayoutDirection direction)
        : view({QString(), megahertz, QString()}, 1, direction)
    {
        view.setItemDelegate(cellNamed("frequency").make(&view));
        for (int column = 0; column < 3; ++column)
            view.setColumnWidth(column, cellWidth);
        view.show();
        view.edit(view.cell());
        box = qobject_cast<QDoubleSpinBox *>(view.indexWidget(view.cell()));
        if (!box)
            qFatal("no editor is open");
        edit = box->findChild<QLineEdit *>();
    }

    QRect cell() const { return view.visualRect(view.cell()); }

    // No glyph lies beyond an edge, where a click would hit one that is not the first or the last.
    bool isTextWhole() const
    {
        const int middle = edit->height() / 2;
        return edit->cursorPositionAt({0, middle}) == 0 &&
               edit->cursorPositionAt({edit->width() - 1, middle}) == edit->text().size();
    }

    CellView view;
    QDoubleSpinBox *box = nullptr;
    QLineEdit *edit = nullptr;
};

} // namespace

Q_DECLARE_METATYPE(Change)

class TestLimitDelegateLooks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { useFusion(); }

    void aCellLooksAsAPlainOneOfItsText_data() { addBothWays(kShown); }
    void aCellLooksAsAPlainOneOfItsText();
    void aCellFollowsViewAndModel_data();
    void aCellFollowsViewAndModel();
    void aListIsEditedInAPlainComboBox_data() { addBothWays({"label", "long label", "unknown label"}); }
    void aListIsEditedInAPlainComboBox();
    void aNumberIsEditedInAPlainSpinBox_data() { addBothWays({"frequency", "level", "without decimals"}); }
    void aNumberIsEditedInAPlainSpinBox();
    void aSpinBoxHasRoomForItsText_data();
    void aSpinBoxHasRoomForItsText();
    void aSpinBoxThatHasRoomIsAsWideAsItsCell();
    void aSpinBoxGrowsAndShrinksWithWhatIsTyped();
    void aSpinBoxStaysInTheView();
    void aSpinBoxFollowsItsColumn();
    void anOpenEditorHidesTheCellBelow_data() { addBothWays(kShown); }
    void anOpenEditorHidesTheCellBelow();
    void aNewSuffixIsSeenAtTheNextPainting();
};

void TestLimitDelegateLooks::aCellLooksAsAPlainOneOfItsText()
{
    QFETCH(QByteArray, title);
    QFETCH(Qt::LayoutDirection, direction);
    const LimitCell &cell = cellNamed(title);
    TwoViews views(cell, direction);
    const QImage painted = views.limit.painted();
    compareLooks(painted, views.plain.painted(), title, direction, "plain");
    QCOMPARE(views.limit.sizeHintForIndex(views.limit.cell()), views.plain.sizeHintForIndex(views.plain.cell()));
    views.limit.model()->setData(views.limit.cell(), cell.otherValue);
    QVERIFY(difference(painted, views.limit.painted()).isValid());
}

void TestLimitDelegateLooks::aCellFollowsViewAndModel_data()
{
    QTest::addColumn<QByteArray>("title");
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::addColumn<Change>("change");
    const auto role = [](int which, const QVariant &value) {
        return [which, value](CellView *view) { view->model()->setData(view->cell(), value, which); };
    };
    QFont bold;
    bold.setBold(true);
    const std::pair<const char *, Change> changes[] = {
        {"selected", [](CellView *view) { view->selectAll(); }},
        {"disabled", [](CellView *view) { view->setEnabled(false); }},
        {"narrow", [](CellView *view) { view->setColumnWidth(0, 40); }},
        {"aligned", role(Qt::TextAlignmentRole, int(Qt::AlignRight | Qt::AlignBottom))},
        {"coloured", role(Qt::ForegroundRole, QColor("#cc0000"))},
        {"on a ground", role(Qt::BackgroundRole, QColor("#b8e0b8"))},
        {"bold", role(Qt::FontRole, bold)},
        {"decorated", role(Qt::DecorationRole, QColor("#3366cc"))},
        {"checkable", role(Qt::CheckStateRole, Qt::Checked)},
    };
    for (const char *title : {"label", "level"}) {
        for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
            for (const auto &change : changes)
                QTest::addRow("%s %s%s", title, change.first, direction == Qt::RightToLeft ? ", right to left" : "")
                    << QByteArray(title) << direction << change.second;
        }
    }
}

void TestLimitDelegateLooks::aCellFollowsViewAndModel()
{
    QFETCH(QByteArray, title);
    QFETCH(Qt::LayoutDirection, direction);
    QFETCH(Change, change);
    TwoViews views(cellNamed(title), direction);
    const QImage before = views.limit.painted();
    change(&views.limit);
    change(&views.plain);
    const QImage painted = views.limit.painted();
    keepLook(painted, QByteArray(QTest::currentDataTag()).split(',').first(), direction, "painted");
    QVERIFY(painted.size() != before.size() || difference(painted, before).isValid());
    QCOMPARE(painted.size(), views.plain.painted().size());
    QCOMPARE(difference(painted, views.plain.painted()), QRect());
}

void TestLimitDelegateLooks::aListIsEditedInAPlainComboBox()
{
    QFETCH(QByteArray, title);
    QFETCH(Qt::LayoutDirection, direction);
    const LimitCell &cell = cellNamed(title);
    TwoViews views(cell, direction);
    LoneEditor editor(views.limit);
    LoneEditor plain(views.limit, [&cell](QWidget *parent) {
        auto *box = new QComboBox(parent);
        box->addItems(kLabels.values());
        box->setCurrentIndex(box->findText(cell.text));
        return box;
    });
    compareLooks(editor.look(), plain.look(), title + " editor", direction, "plain");
}

void TestLimitDelegateLooks::aNumberIsEditedInAPlainSpinBox()
{
    QFETCH(QByteArray, title);
    QFETCH(Qt::LayoutDirection, direction);
    const QMap<QByteArray, QPair<double, QString>> numbers = {
        {"frequency", {87.5, "87.500000 MHz"}},
        {"level", {-30.5, "-30.500 dB\u00b5V/m"}},
        {"without decimals", {100, "100 dB"}},
    };
    const auto [number, text] = numbers[title];
    TwoViews views(cellNamed(title), direction);
    LoneEditor editor(views.limit);
    LoneEditor plain(views.limit, [number = number, text = text](QWidget *parent) {
        auto *box = new QDoubleSpinBox(parent);
        box->setRange(-1e9, 1e9);
        const QString digits = text.section(QLatin1Char(' '), 0, 0);
        box->setDecimals(digits.contains(QLatin1Char('.')) ? digits.section(QLatin1Char('.'), 1).size() : 0);
        box->setSuffix(text.mid(digits.size()));
        box->setValue(number);
        return box;
    });
    QCOMPARE(qobject_cast<QDoubleSpinBox *>(plain.editor)->text(), text);
    compareLooks(editor.look(), plain.look(), title + " editor", direction, "plain");
}

void TestLimitDelegateLooks::aSpinBoxHasRoomForItsText_data()
{
    QTest::addColumn<double>("megahertz");
    QTest::addColumn<QString>("text");
    QTest::addColumn<Qt::LayoutDirection>("direction");
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        const char *suffix = direction == Qt::RightToLeft ? ", right to left" : "";
        QTest::addRow("usual%s", suffix) << 1234.567891 << "1234.567891 MHz" << direction;
        QTest::addRow("longest%s", suffix) << -1e9 << "-1000000000.000000 MHz" << direction;
    }
}

void TestLimitDelegateLooks::aSpinBoxHasRoomForItsText()
{
    QFETCH(double, megahertz);
    QFETCH(QString, text);
    QFETCH(Qt::LayoutDirection, direction);
    const OpenFrequency open(megahertz, kNarrow, direction);
    editorkeys::keepPicture(open.view.viewport()->grab(), QLatin1String(QTest::currentDataTag()) + ".png");
    QCOMPARE(open.box->text(), text);
    QVERIFY(open.isTextWhole());
    const QRect grown = open.box->geometry();
    QVERIFY(grown.width() > kNarrow);
    QCOMPARE(grown.top(), open.cell().top());
    QCOMPARE(grown.height(), open.cell().height());
    if (direction == Qt::LeftToRight)
        QCOMPARE(grown.left(), open.cell().left());
    else
        QCOMPARE(grown.right(), open.cell().right());
}

void TestLimitDelegateLooks::aSpinBoxThatHasRoomIsAsWideAsItsCell()
{
    const OpenFrequency open(-1e9, 2 * kWidth, Qt::LeftToRight);
    QCOMPARE(open.box->geometry(), open.cell());
    QVERIFY(open.isTextWhole());
}

void TestLimitDelegateLooks::aSpinBoxGrowsAndShrinksWithWhatIsTyped()
{
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        const OpenFrequency open(1.0, kNarrow, direction);
        const int before = open.box->width();
        editorkeys::type(open.box, "-123456789.123456");
        QVERIFY(open.box->width() > before);
        QVERIFY(open.isTextWhole());
        QCOMPARE(open.box->geometry().right() == open.cell().right(), direction == Qt::RightToLeft);
        editorkeys::type(open.box, "1");
        QVERIFY(open.box->width() < before);
        QVERIFY(open.isTextWhole());
        open.edit->clear();
        QCOMPARE(open.box->geometry(), open.cell());
    }
}

void TestLimitDelegateLooks::aSpinBoxStaysInTheView()
{
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        OpenFrequency open(-1e9, kNarrow, direction);
        open.view.resize(2 * kNarrow + 50, kHeight);
        const QRect grown = open.box->geometry();
        QVERIFY(grown.width() > kNarrow);
        QCOMPARE(grown & open.view.viewport()->rect(), grown); // all of it, with its buttons
        QCOMPARE(direction == Qt::LeftToRight ? grown.right() : grown.left(),
                 direction == Qt::LeftToRight ? open.view.viewport()->width() - 1 : 0);
    }
}

void TestLimitDelegateLooks::aSpinBoxFollowsItsColumn()
{
    OpenFrequency open(1234.567891, kNarrow, Qt::LeftToRight);
    const int grown = open.box->width();
    open.view.setColumnWidth(1, 2 * kWidth);
    QTRY_COMPARE(open.box->geometry(), open.cell());
    open.view.setColumnWidth(1, 2 * kNarrow / 3);
    QTRY_COMPARE(open.box->width(), grown);
    open.view.setColumnWidth(0, 2 * kNarrow);
    QTRY_COMPARE(open.box->geometry().topLeft(), open.cell().topLeft());
    QTRY_COMPARE(open.box->width(), grown);
}

void TestLimitDelegateLooks::anOpenEditorHidesTheCellBelow()
{
    QFETCH(QByteArray, title);
    QFETCH(Qt::LayoutDirection, direction);
    const LimitCell &cell = cellNamed(title);
    TwoViews views(cell, direction);
    views.limit.show();
    QVERIFY(QTest::qWaitForWindowActive(&views.limit));
    views.limit.edit(views.limit.cell());
    QWidget *editor = views.limit.indexWidget(views.limit.cell());
    QVERIFY(editor);
    QCOMPARE(editor->geometry(), views.limit.visualRect(views.limit.cell()));
    const QImage over = views.limit.painted();
    keepLook(over, title, direction, "open");
    views.limit.model()->blockSignals(true); // so that only the cell below differs, and not what the editor shows
    QVERIFY(views.limit.model()->setData(views.limit.cell(), cell.otherValue));
    views.limit.model()->blockSignals(false);
    QCOMPARE(difference(over, views.limit.painted()), QRect());
}

void TestLimitDelegateLooks::aNewSuffixIsSeenAtTheNextPainting()
{
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        LimitCell cell = cellNamed("level");
        cell.text = "-30.5 dBm";
        TwoViews views(cell, direction);
        const QImage before = views.limit.painted();
        qobject_cast<ALimitSuffixDelegate *>(views.limit.itemDelegate())->setSuffix("dBm");
        const QImage painted = views.limit.painted();
        QVERIFY(difference(before, painted).isValid());
        compareLooks(painted, views.plain.painted(), "new suffix", direction, "plain");
    }
}

QTEST_MAIN(TestLimitDelegateLooks)
#include "tst_limitdelegatelooks.moc"
