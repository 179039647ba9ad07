#include "delegatesamples.h"
#include "editorkeys.h"

#include <QtGui/QStandardItemModel>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QTableView>
#include <QtWidgets/QTreeView>
#include <QtWidgets/QVBoxLayout>

using namespace editorkeys;

namespace {

constexpr int kRow = 1; // of three

enum Opening
{
    ByF2,
    ByADoubleClick
};

enum Leaving
{
    ByReturn,
    ByTab,
    ByEscape,
    ByAClickBeside
};

// A window with a view of the sample's cell among others, and something beside it that takes the focus.
template<typename View>
class SampleWindow : public QWidget
{
public:
    explicit SampleWindow(const DelegateSample &sample)
        : m_sample(sample)
        , m_model(3, 2)
    {
        auto *layout = new QVBoxLayout(this);
        view = new View;
        other = new QLineEdit;
        layout->addWidget(view);
        layout->addWidget(other);
        view->setModel(&m_model);
        view->setItemDelegate(sample.make(view));
        view->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
        for (int row = 0; row < m_model.rowCount(); ++row) {
            m_model.setData(m_model.index(row, 0), sample.name);
            m_model.setData(m_model.index(row, 1), sample.value);
        }
        resize(600, 300);
        show();
    }

    QModelIndex cell() const { return m_model.index(kRow, m_sample.column); }
    QWidget *editor() const { return view->indexWidget(cell()); }
    QStandardItemModel &model() { return m_model; }

    void click(QWidget *widget, const QPoint &at) { QTest::mouseClick(widget, Qt::LeftButton, {}, at); }
    bool open(Opening by = ByF2)
    {
        if (!QTest::qWaitForWindowActive(this))
            return false;
        if (by == ByF2) {
            view->setCurrentIndex(cell());
            QTest::keyClick(view, Qt::Key_F2);
        } else {
            const QPoint at = view->visualRect(cell()).center();
            click(view->viewport(), at);
            QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, at);
        }
        return editor();
    }
    void leave(Leaving by)
    {
        if (by == ByAClickBeside)
            click(other, other->rect().center());
        else
            QTest::keyClick(editor(), by == ByTab ? Qt::Key_Tab : by == ByEscape ? Qt::Key_Escape : Qt::Key_Return);
    }

    // Each cell but the edited one is as it was.
    bool othersAreUntouched() const
    {
        for (int row = 0; row < m_model.rowCount(); ++row) {
            for (int column = 0; column < 2; ++column) {
                const QModelIndex index = m_model.index(row, column);
                if (index != cell() && index.data() != (column == 0 ? m_sample.name : m_sample.value))
                    return false;
            }
        }
        return true;
    }

    View *view;
    QLineEdit *other;

private:
    const DelegateSample &m_sample;
    QStandardItemModel m_model;
};

QVariant initialValue(const DelegateSample &sample)
{
    return sample.column == 0 ? sample.name : sample.value;
}

// Opens the editor of the sample's cell, types and leaves the editor, which must commit that and nothing else.
template<typename View>
void typeAndLeave(const DelegateSample &sample, Opening opening, Leaving leaving)
{
    SampleWindow<View> window(sample);
    QVERIFY(window.open(opening));
    type(window.editor(), sample.typed);
    QCOMPARE(window.cell().data(Qt::EditRole), initialValue(sample));
    window.leave(leaving);
    QCOMPARE(window.other->hasFocus(), leaving == ByAClickBeside);
    QTRY_VERIFY(!window.editor());
    QCOMPARE(window.cell().data(Qt::EditRole), sample.committed);
    QCOMPARE(window.cell().data(Qt::EditRole).userType(), sample.committed.userType());
    QVERIFY(window.othersAreUntouched());
}

// Return commits what the open editor shows. The frequency editor shows another text of the same frequency.
void commitWhatIsShown(SampleWindow<QTableView> *window, const QVariant &expected, const char *expectedFrequency)
{
    window->leave(ByReturn);
    QTRY_VERIFY(!window->editor());
    const bool isFrequency = qobject_cast<AFrequencyDelegate *>(window->view->itemDelegate());
    QCOMPARE(window->cell().data(Qt::EditRole), isFrequency ? QVariant(expectedFrequency) : expected);
}

// An open editor into which is typed goes with its cell, at Return at the latest.
void typeIntoALostEditor(SampleWindow<QTableView> *window, const DelegateSample &sample,
                         const std::function<void(QStandardItemModel *)> &loseTheCell)
{
    const QPointer<QWidget> editor = window->editor();
    type(editor, sample.typed);
    loseTheCell(&window->model());
    if (editor)
        QTest::keyClick(editor, Qt::Key_Return);
    QTRY_VERIFY(!editor);
}

} // namespace

class TestDelegatesInViews : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void aKeyOpensTheEditor_data() { addDelegateSampleRows(); }
    void aKeyOpensTheEditor();
    void aDoubleClickOpensTheEditorAndReturnCommits_data() { addDelegateSampleRows(); }
    void aDoubleClickOpensTheEditorAndReturnCommits();
    void losingTheFocusCommits_data() { addDelegateSampleRows(); }
    void losingTheFocusCommits();
    void tabCommits_data() { addDelegateSampleRows(); }
    void tabCommits();
    void escapeLeavesTheCell_data() { addDelegateSampleRows(); }
    void escapeLeavesTheCell();
    void openingAndClosingKeepsWhatTheCellMeans_data() { addDelegateSampleRows(); }
    void openingAndClosingKeepsWhatTheCellMeans();
    void aTreeEditsAsATable_data() { addDelegateSampleRows(); }
    void aTreeEditsAsATable();
    void anOpenEditorFollowsTheModel_data() { addDelegateSampleRows(); }
    void anOpenEditorFollowsTheModel();
    void theRowOfAnOpenEditorMayGo_data() { addDelegateSampleRows(); }
    void theRowOfAnOpenEditorMayGo();
    void theModelOfAnOpenEditorMayBeReset_data() { addDelegateSampleRows(); }
    void theModelOfAnOpenEditorMayBeReset();
    void theDelegateOfAnOpenEditorMayGo_data() { addDelegateSampleRows(); }
    void theDelegateOfAnOpenEditorMayGo();
    void anEditorFillsItsCell_data() { addDelegateSampleRows(); }
    void anEditorFillsItsCell();
    void aTextThatIsNoFrequencyKeepsItsEditorOpen();
    void aNegativeFrequencyNeedsLeaveToBeCommitted_data();
    void aNegativeFrequencyNeedsLeaveToBeCommitted();
};

void TestDelegatesInViews::initTestCase()
{
    QLocale::setDefault(QLocale::c());
}

void TestDelegatesInViews::aKeyOpensTheEditor()
{
    QFETCH(const DelegateSample *, sample);
    SampleWindow<QTableView> window(*sample);
    QVERIFY(window.open());
    QVERIFY(window.editor()->inherits(sample->editor));
    QVERIFY(window.editor()->hasFocus());
    QCOMPARE(window.editor()->focusPolicy() & Qt::StrongFocus, Qt::StrongFocus);
    QCOMPARE(window.cell().data(Qt::EditRole), initialValue(*sample));
}

void TestDelegatesInViews::aDoubleClickOpensTheEditorAndReturnCommits()
{
    QFETCH(const DelegateSample *, sample);
    typeAndLeave<QTableView>(*sample, ByADoubleClick, ByReturn);
}

void TestDelegatesInViews::losingTheFocusCommits()
{
    QFETCH(const DelegateSample *, sample);
    typeAndLeave<QTableView>(*sample, ByF2, ByAClickBeside);
}

void TestDelegatesInViews::tabCommits()
{
    QFETCH(const DelegateSample *, sample);
    typeAndLeave<QTableView>(*sample, ByF2, ByTab);
}

void TestDelegatesInViews::escapeLeavesTheCell()
{
    QFETCH(const DelegateSample *, sample);
    SampleWindow<QTableView> window(*sample);
    QSignalSpy changes(&window.model(), &QAbstractItemModel::dataChanged);
    QVERIFY(window.open());
    type(window.editor(), sample->typed);
    window.leave(ByEscape);
    QTRY_VERIFY(!window.editor());
    QCOMPARE(changes.count(), 0);
    QCOMPARE(window.cell().data(Qt::EditRole), initialValue(*sample));
}

void TestDelegatesInViews::openingAndClosingKeepsWhatTheCellMeans()
{
    QFETCH(const DelegateSample *, sample);
    SampleWindow<QTableView> window(*sample);
    QVERIFY(window.open());
    commitWhatIsShown(&window, initialValue(*sample), "2400.000 MHz");
}

void TestDelegatesInViews::aTreeEditsAsATable()
{
    QFETCH(const DelegateSample *, sample);
    typeAndLeave<QTreeView>(*sample, ByADoubleClick, ByReturn);
}

void TestDelegatesInViews::anOpenEditorFollowsTheModel()
{
    QFETCH(const DelegateSample *, sample);
    SampleWindow<QTableView> window(*sample);
    QVERIFY(window.open());
    window.model().setData(window.cell(), sample->committed, Qt::EditRole);
    commitWhatIsShown(&window, sample->committed, "1.500 MHz");
}

void TestDelegatesInViews::theRowOfAnOpenEditorMayGo()
{
    QFETCH(const DelegateSample *, sample);
    SampleWindow<QTableView> window(*sample);
    QVERIFY(window.open());
    typeIntoALostEditor(&window, *sample, [](QStandardItemModel *model) { QVERIFY(model->removeRows(kRow, 2)); });
    QCOMPARE(window.model().rowCount(), 1);
    QVERIFY(window.othersAreUntouched());
}

void TestDelegatesInViews::theModelOfAnOpenEditorMayBeReset()
{
    QFETCH(const DelegateSample *, sample);
    SampleWindow<QTableView> window(*sample);
    QVERIFY(window.open());
    typeIntoALostEditor(&window, *sample, [](QStandardItemModel *model) { model->clear(); });
    QCOMPARE(window.model().rowCount(), 0);
}

void TestDelegatesInViews::theDelegateOfAnOpenEditorMayGo()
{
    QFETCH(const DelegateSample *, sample);
    SampleWindow<QTableView> window(*sample);
    QVERIFY(window.open());
    const QPointer<QWidget> editor = window.editor();
    delete window.view->itemDelegate();
    if (editor)
        type(editor, sample->typed);
    QCOMPARE(window.cell().data(Qt::EditRole), initialValue(*sample));
}

void TestDelegatesInViews::anEditorFillsItsCell()
{
    QFETCH(const DelegateSample *, sample);
    SampleWindow<QTableView> window(*sample);
    QVERIFY(window.open());
    QCOMPARE(window.editor()->geometry(), window.view->visualRect(window.cell()));
}

// What the validator only half accepts is not committed by Return, and dropped with the focus.
void TestDelegatesInViews::aTextThatIsNoFrequencyKeepsItsEditorOpen()
{
    DelegateSample sample = delegateSamples().at(5);
    SampleWindow<QTableView> window(sample);
    QVERIFY(window.open());
    for (const char *typed : {"12.", "12 M", ""}) {
        type(window.editor(), typed);
        if (*typed == '\0')
            QTest::keyClick(window.editor(), Qt::Key_Delete);
        QTest::keyClick(window.editor(), Qt::Key_Return);
        QTest::qWait(20);
        QVERIFY2(window.editor(), typed);
    }
    window.leave(ByAClickBeside);
    QTRY_VERIFY(!window.editor());
    QCOMPARE(window.cell().data(Qt::EditRole), QVariant("2.4 GHz"));
}

void TestDelegatesInViews::aNegativeFrequencyNeedsLeaveToBeCommitted_data()
{
    QTest::addColumn<bool>("allowNegative");
    QTest::addColumn<QVariant>("committed"); // by opening the editor and Return
    QTest::newRow("with leave") << true << QVariant("-1.000 MHz");
    QTest::newRow("without") << false << QVariant("-1 MHz");
}

void TestDelegatesInViews::aNegativeFrequencyNeedsLeaveToBeCommitted()
{
    QFETCH(bool, allowNegative);
    DelegateSample sample = delegateSamples().at(5);
    sample.value = "-1 MHz";
    sample.make = [allowNegative](QObject *parent) {
        auto *delegate = new AFrequencyDelegate(parent);
        delegate->setOptions(AFrequency::MHz, allowNegative);
        return delegate;
    };
    SampleWindow<QTableView> window(sample);
    QVERIFY(window.open());
    auto *editor = qobject_cast<QLineEdit *>(window.editor());
    QVERIFY(editor);
    QCOMPARE(editor->text(), QString("-1.000 MHz"));
    QTest::keyClick(editor, Qt::Key_Return);
    QTest::qWait(20);
    QCOMPARE(window.editor() == nullptr, allowNegative);
    QTEST(window.cell().data(Qt::EditRole), "committed");
    if (allowNegative)
        return;
    QTest::keyClick(editor, Qt::Key_Home);
    QTest::keyClick(editor, Qt::Key_Delete);
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_VERIFY(!window.editor());
    QCOMPARE(window.cell().data(Qt::EditRole), QVariant("1.000 MHz"));
}

QTEST_MAIN(TestDelegatesInViews)
#include "tst_delegates_in_views.moc"
