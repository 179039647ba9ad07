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
    void doubleClick()
    {
        const QPoint at = view->visualRect(cell()).center();
        click(view->viewport(), at);
        QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, at);
    }
    void pressF2()
    {
        view->setCurrentIndex(cell());
        QTest::keyClick(view, Qt::Key_F2);
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
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.pressF2();
    QVERIFY(window.editor());
    QVERIFY(window.editor()->inherits(sample->editor));
    QVERIFY(window.editor()->hasFocus());
    QCOMPARE(window.editor()->focusPolicy() & Qt::StrongFocus, Qt::StrongFocus);
    QCOMPARE(window.cell().data(Qt::EditRole), initialValue(*sample));
}

void TestDelegatesInViews::aDoubleClickOpensTheEditorAndReturnCommits()
{
    QFETCH(const DelegateSample *, sample);
    SampleWindow<QTableView> window(*sample);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.doubleClick();
    QVERIFY(window.editor());
    type(window.editor(), sample->typed);
    QCOMPARE(window.cell().data(Qt::EditRole), initialValue(*sample));
    QTest::keyClick(window.editor(), Qt::Key_Return);
    QTRY_VERIFY(!window.editor());
    QCOMPARE(window.cell().data(Qt::EditRole), sample->committed);
    QCOMPARE(window.cell().data(Qt::EditRole).userType(), sample->committed.userType());
    QVERIFY(window.othersAreUntouched());
}

void TestDelegatesInViews::losingTheFocusCommits()
{
    QFETCH(const DelegateSample *, sample);
    SampleWindow<QTableView> window(*sample);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.pressF2();
    type(window.editor(), sample->typed);
    window.click(window.other, window.other->rect().center());
    QVERIFY(window.other->hasFocus());
    QTRY_VERIFY(!window.editor());
    QCOMPARE(window.cell().data(Qt::EditRole), sample->committed);
    QVERIFY(window.othersAreUntouched());
}

void TestDelegatesInViews::tabCommits()
{
    QFETCH(const DelegateSample *, sample);
    SampleWindow<QTableView> window(*sample);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.pressF2();
    type(window.editor(), sample->typed);
    QTest::keyClick(window.editor(), Qt::Key_Tab);
    QTRY_VERIFY(!window.editor());
    QCOMPARE(window.cell().data(Qt::EditRole), sample->committed);
}

void TestDelegatesInViews::escapeLeavesTheCell()
{
    QFETCH(const DelegateSample *, sample);
    SampleWindow<QTableView> window(*sample);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QSignalSpy changes(&window.model(), &QAbstractItemModel::dataChanged);
    window.pressF2();
    type(window.editor(), sample->typed);
    QTest::keyClick(window.editor(), Qt::Key_Escape);
    QTRY_VERIFY(!window.editor());
    QCOMPARE(changes.count(), 0);
    QCOMPARE(window.cell().data(Qt::EditRole), initialValue(*sample));
}

void TestDelegatesInViews::openingAndClosingKeepsWhatTheCellMeans()
{
    QFETCH(const DelegateSample *, sample);
    SampleWindow<QTableView> window(*sample);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.pressF2();
    QTest::keyClick(window.editor(), Qt::Key_Return);
    QTRY_VERIFY(!window.editor());
    // The frequency editor shows, and so commits, another text of the same frequency.
    if (qobject_cast<AFrequencyDelegate *>(window.view->itemDelegate()))
        QCOMPARE(window.cell().data(Qt::EditRole), QVariant("2400.000 MHz"));
    else
        QCOMPARE(window.cell().data(Qt::EditRole), initialValue(*sample));
}

void TestDelegatesInViews::aTreeEditsAsATable()
{
    QFETCH(const DelegateSample *, sample);
    SampleWindow<QTreeView> window(*sample);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.doubleClick();
    QVERIFY(window.editor());
    type(window.editor(), sample->typed);
    QTest::keyClick(window.editor(), Qt::Key_Return);
    QTRY_VERIFY(!window.editor());
    QCOMPARE(window.cell().data(Qt::EditRole), sample->committed);
    QVERIFY(window.othersAreUntouched());
}

void TestDelegatesInViews::anOpenEditorFollowsTheModel()
{
    QFETCH(const DelegateSample *, sample);
    SampleWindow<QTableView> window(*sample);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.pressF2();
    window.model().setData(window.cell(), sample->committed, Qt::EditRole);
    QTest::keyClick(window.editor(), Qt::Key_Return);
    QTRY_VERIFY(!window.editor());
    if (qobject_cast<AFrequencyDelegate *>(window.view->itemDelegate()))
        QCOMPARE(window.cell().data(Qt::EditRole), QVariant("1.500 MHz"));
    else
        QCOMPARE(window.cell().data(Qt::EditRole), sample->committed);
}

void TestDelegatesInViews::theRowOfAnOpenEditorMayGo()
{
    QFETCH(const DelegateSample *, sample);
    SampleWindow<QTableView> window(*sample);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.pressF2();
    const QPointer<QWidget> editor = window.editor();
    type(editor, sample->typed);
    QVERIFY(window.model().removeRows(kRow, 2));
    if (editor)
        QTest::keyClick(editor, Qt::Key_Return);
    QTRY_VERIFY(!editor);
    QCOMPARE(window.model().rowCount(), 1);
    QVERIFY(window.othersAreUntouched());
}

void TestDelegatesInViews::theModelOfAnOpenEditorMayBeReset()
{
    QFETCH(const DelegateSample *, sample);
    SampleWindow<QTableView> window(*sample);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.pressF2();
    const QPointer<QWidget> editor = window.editor();
    type(editor, sample->typed);
    window.model().clear();
    if (editor)
        QTest::keyClick(editor, Qt::Key_Return);
    QTRY_VERIFY(!editor);
    QCOMPARE(window.model().rowCount(), 0);
}

void TestDelegatesInViews::theDelegateOfAnOpenEditorMayGo()
{
    QFETCH(const DelegateSample *, sample);
    SampleWindow<QTableView> window(*sample);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.pressF2();
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
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.pressF2();
    QCOMPARE(window.editor()->geometry(), window.view->visualRect(window.cell()));
}

// What the validator only half accepts is not committed by Return, and dropped with the focus.
void TestDelegatesInViews::aTextThatIsNoFrequencyKeepsItsEditorOpen()
{
    DelegateSample sample = delegateSamples().at(5);
    SampleWindow<QTableView> window(sample);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.pressF2();
    for (const char *typed : {"12.", "12 M", ""}) {
        type(window.editor(), typed);
        if (*typed == '\0')
            QTest::keyClick(window.editor(), Qt::Key_Delete);
        QTest::keyClick(window.editor(), Qt::Key_Return);
        QTest::qWait(20);
        QVERIFY2(window.editor(), typed);
    }
    window.click(window.other, window.other->rect().center());
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
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.pressF2();
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
