#include "views/triggeractions.h"

#include <QtCore/QSortFilterProxyModel>
#include <QtTest/QtTest>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListView>
#include <QtWidgets/QTableView>
#include <QtWidgets/QTreeView>

#include <memory>

using namespace triggeractions;

namespace {

// The editor of a cell, which a user has opened and typed into.
QLineEdit *openEditor(QAbstractItemView *view, const QModelIndex &cell, const QString &text)
{
    view->setCurrentIndex(cell);
    view->edit(cell);
    auto *editor = view->viewport()->findChild<QLineEdit *>();
    if (editor) {
        editor->selectAll();
        QTest::keyClicks(editor, text);
    }
    return editor;
}

// A table that shows a list of actions, and the editor of one of its cells.
struct ActionTable
{
    explicit ActionTable(QList<ATriggerAction> *list)
    {
        model.setTriggerActions(list);
        view.setModel(&model);
        view.show();
    }
    void typeIntoTheLastRow() { editor = openEditor(&view, model.index(2, 1), QStringLiteral("typed")); }
    void pressReturnIfStillOpen()
    {
        if (editor)
            QTest::keyClick(editor.data(), Qt::Key_Return);
        QTRY_VERIFY(!editor);
    }

    ATriggerActionListModel model;
    QTableView view;
    QPointer<QLineEdit> editor;
};

} // namespace

class TestATriggerActionListModelView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void whatIsTypedComesIntoTheList_data();
    void whatIsTypedComesIntoTheList();
    void anEditorWhoseRowIsRemovedChangesNothing();
    void anEditorWhoseListIsTakenAwayChangesNothing();
    void anEditorWhoseRowItsOwnerRemovedChangesNothing();
    void viewsSurviveWhatCallersGet_data();
    void viewsSurviveWhatCallersGet();
    void aTableKeepsEmptyRowsAfterARemovalPastTheEnd_data();
    void aTableKeepsEmptyRowsAfterARemovalPastTheEnd();

private:
    QList<ATriggerAction> m_list;
};

void TestATriggerActionListModelView::init()
{
    m_list = threeActions();
}

void TestATriggerActionListModelView::whatIsTypedComesIntoTheList_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("entry");
    const QString name = ATriggerAction::actionNames().at(TakeScreenshotAction);
    QTest::newRow("type") << 0 << name << "4:beep -f 440";
    QTest::newRow("no type") << 0 << "Fly Away"
                             << "2:beep -f 440";
    QTest::newRow("text") << 1 << "beep"
                          << "2:beep";
}

void TestATriggerActionListModelView::whatIsTypedComesIntoTheList()
{
    QFETCH(int, column);
    QFETCH(QString, typed);
    ActionTable table(&m_list);
    QCOMPARE(table.view.horizontalHeader()->count(), 2);
    table.editor = openEditor(&table.view, table.model.index(1, column), typed);
    QVERIFY(table.editor);
    table.pressReturnIfStillOpen();
    QVERIFY(!table.view.viewport()->findChild<QLineEdit *>());
    QTEST(texts(m_list).at(1), "entry");
}

void TestATriggerActionListModelView::anEditorWhoseRowIsRemovedChangesNothing()
{
    ActionTable table(&m_list);
    table.typeIntoTheLastRow();
    QVERIFY(table.editor);
    QVERIFY(table.model.removeRows(1, 2));
    table.pressReturnIfStillOpen();
    QCOMPARE(texts(m_list), QStringList{"1:Overload"});
}

void TestATriggerActionListModelView::anEditorWhoseListIsTakenAwayChangesNothing()
{
    ActionTable table(&m_list);
    table.typeIntoTheLastRow();
    QVERIFY(table.editor);
    table.model.setTriggerActions(nullptr);
    table.pressReturnIfStillOpen();
    QCOMPARE(texts(m_list), texts(threeActions()));
}

void TestATriggerActionListModelView::anEditorWhoseRowItsOwnerRemovedChangesNothing()
{
    ActionTable table(&m_list);
    table.typeIntoTheLastRow();
    QVERIFY(table.editor);
    m_list.removeLast(); // nobody tells the model
    table.view.grab();
    QVERIFY(table.editor);
    table.pressReturnIfStillOpen();
    table.view.grab();
    QCOMPARE(texts(m_list), (QStringList{"1:Overload", "2:beep -f 440"}));
}

void TestATriggerActionListModelView::viewsSurviveWhatCallersGet_data()
{
    QTest::addColumn<bool>("inserts");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("hasParent");
    QTest::addColumn<int>("rest");
    QTest::newRow("insert none") << true << 0 << 0 << false << 3;
    QTest::newRow("insert fewer than none") << true << 0 << -2 << false << 3;
    QTest::newRow("insert far fewer than none") << true << 0 << -1000 << false << 3;
    QTest::newRow("insert below a row") << true << 0 << 2 << true << 5;
    QTest::newRow("remove past the end") << false << 1 << 100 << false << 1;
    QTest::newRow("remove behind the end") << false << 7 << 2 << false << 3;
    QTest::newRow("remove none") << false << 1 << 0 << false << 3;
    QTest::newRow("remove fewer than none") << false << 2 << -3 << false << 3;
    QTest::newRow("remove from before the first") << false << -2 << 4 << false << 1;
    QTest::newRow("remove before the first") << false << -5 << 2 << false << 3;
    QTest::newRow("remove below a row") << false << 0 << 2 << true << 1;
}

void TestATriggerActionListModelView::viewsSurviveWhatCallersGet()
{
    QFETCH(bool, inserts);
    QFETCH(int, row);
    QFETCH(int, count);
    QFETCH(bool, hasParent);
    ATriggerActionListModel model;
    model.setTriggerActions(&m_list);
    QSortFilterProxyModel proxy;
    proxy.setSourceModel(&model);
    proxy.sort(1);
    const std::unique_ptr<QAbstractItemView> views[] = {
        std::make_unique<QTableView>(), std::make_unique<QTreeView>(), std::make_unique<QListView>(),
        std::make_unique<QTableView>(), std::make_unique<QTreeView>(),
    };
    for (int i = 0; i < 5; ++i) {
        QAbstractItemModel *shown = &proxy;
        if (i < 3)
            shown = &model;
        views[i]->setModel(shown);
        views[i]->show();
        views[i]->selectAll();
        QVERIFY(openEditor(views[i].get(), shown->index(2, i % 2), QStringLiteral("typed")));
    }
    const QModelIndex parent = hasParent ? model.index(0, 0) : QModelIndex();
    QVERIFY(inserts ? model.insertRows(row, count, parent) : model.removeRows(row, count, parent));
    QTEST(model.rowCount(), "rest");
    for (const auto &view : views)
        view->grab();

    // and go on
    QVERIFY(model.insertRows(0, 2));
    for (const auto &view : views)
        view->grab();
    QVERIFY(model.removeRows(0, 1));
    for (const auto &view : views)
        view->grab();
    model.setTriggerActions(nullptr);
    QCOMPARE(proxy.rowCount(), 0);
    for (const auto &view : views)
        view->grab();
}

void TestATriggerActionListModelView::aTableKeepsEmptyRowsAfterARemovalPastTheEnd_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("rest");
    QTest::addColumn<int>("shown");
    QTest::newRow("up to the end") << 1 << 2 << 1 << 1;
    QTest::newRow("past the end") << 1 << 10 << 1 << 3;
    QTest::newRow("one past the end") << 2 << 2 << 2 << 3;
    QTest::newRow("behind the end") << 5 << 1 << 3 << 3;
}

// The header of a view takes no part in a removal past its end.
void TestATriggerActionListModelView::aTableKeepsEmptyRowsAfterARemovalPastTheEnd()
{
    QFETCH(int, row);
    QFETCH(int, count);
    ActionTable table(&m_list);
    QCOMPARE(table.view.verticalHeader()->count(), 3);
    QVERIFY(table.model.removeRows(row, count));
    QTEST(table.model.rowCount(), "rest");
    QTEST(table.view.verticalHeader()->count(), "shown");
    table.model.setTriggerActions(&m_list);
    QCOMPARE(table.view.verticalHeader()->count(), table.model.rowCount());
}

QTEST_MAIN(TestATriggerActionListModelView)
#include "tst_atriggeractionlistmodel_view.moc"
