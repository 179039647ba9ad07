#include "core/testercomplaints.h"
#include "views/translatedtexts.h"
#include "views/triggeractions.h"

#include <QtGui/QStandardItemModel>
#include <QtTest/QtTest>

using namespace triggeractions;

namespace {

// Makes indexes that no view would have.
class Probe : public ATriggerActionListModel
{
public:
    QModelIndex indexAt(int row, int column) const { return createIndex(row, column); }
};

} // namespace

class TestATriggerActionListModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutAListThereIsNothingToEdit();
    void showsTheList();
    void typesWithoutANameShowNothing_data();
    void typesWithoutANameShowNothing();
    void onlyDisplayAndEditRolesHaveData();
    void titles_data();
    void titles();
    void titlesAreTranslatable();
    void settingAListResets();
    void everyIndexHasAllRowsAndColumns();
    void everyIndexIsEditable();
    void theTesterObjectsToTwoHabitsOfEachIndex();
    void theTesterObjectsToARemovalPastTheEnd_data();
    void theTesterObjectsToARemovalPastTheEnd();
    void allElseIsAsInAnyModel();

    void aTypeIsChosenByItsName_data();
    void aTypeIsChosenByItsName();
    void aTextIsStoredAsItIs_data();
    void aTextIsStoredAsItIs();
    void anEditOfAnotherColumnChangesNothing();
    void otherRolesAreRefused();
    void anEditSignalsItsCell();

    void rowsThatTheListLostAreRefused();
    void indexesOfOtherModelsAreRefused();
};

void TestATriggerActionListModel::withoutAListThereIsNothingToEdit()
{
    QObject parent;
    Probe model;
    model.setParent(&parent);
    QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    QSignalSpy inserts(&model, &QAbstractItemModel::rowsAboutToBeInserted);
    QSignalSpy removals(&model, &QAbstractItemModel::rowsAboutToBeRemoved);
    QVERIFY(!model.triggerActions());
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(model.columnCount(), 2);
    QVERIFY(!model.data(model.indexAt(0, 0)).isValid());
    QVERIFY(!model.setData(model.indexAt(0, 0), ATriggerAction::actionNames().at(1)));
    QVERIFY(!model.setData(model.indexAt(0, 1), QStringLiteral("text")));
    QVERIFY(!model.insertRows(0, 1));
    QVERIFY(!model.removeRows(0, 1));
    QVERIFY(!model.insertRow(0));
    QVERIFY(!model.removeRow(0));
    QCOMPARE(changes.count() + inserts.count() + removals.count(), 0);
    model.setParent(nullptr);
    QVERIFY((std::is_base_of<QAbstractListModel, ATriggerActionListModel>::value));
}

void TestATriggerActionListModel::showsTheList()
{
    QList<ATriggerAction> list = threeActions();
    const QStringList names = ATriggerAction::actionNames();
    for (int type = 0; type < 5; ++type)
        list << action(type, QString::number(type));
    ATriggerActionListModel model;
    model.setTriggerActions(&list);
    QCOMPARE(model.triggerActions(), &list);
    QCOMPARE(shownTexts(model), (QStringList{names.at(1) + "|Overload", names.at(2) + "|beep -f 440",
                                             names.at(4) + "|/tmp/a.png", names.at(0) + "|0", names.at(1) + "|1",
                                             names.at(2) + "|2", names.at(3) + "|3", names.at(4) + "|4"}));
    for (int column : {0, 1}) {
        QCOMPARE(model.index(1, column).data(Qt::EditRole), model.index(1, column).data());
        QCOMPARE(model.index(1, column).data().type(), QVariant::String);
    }
}

void TestATriggerActionListModel::typesWithoutANameShowNothing_data()
{
    QTest::addColumn<int>("type");
    for (int type : {-1, 5, INT_MAX, INT_MIN})
        QTest::addRow("%d", type) << type;
}

void TestATriggerActionListModel::typesWithoutANameShowNothing()
{
    QFETCH(int, type);
    QList<ATriggerAction> list{action(type, QStringLiteral("text"))};
    ATriggerActionListModel model;
    model.setTriggerActions(&list);
    QVERIFY(!model.index(0, 0).data().isValid());
    QVERIFY(!model.index(0, 0).data(Qt::EditRole).isValid());
    QCOMPARE(model.index(0, 1).data().toString(), QStringLiteral("text"));
    QVERIFY(model.setData(model.index(0, 1), QStringLiteral("other")));
    QCOMPARE(int(list.first().type()), type);
}

void TestATriggerActionListModel::onlyDisplayAndEditRolesHaveData()
{
    QList<ATriggerAction> list = threeActions();
    ATriggerActionListModel model;
    model.setTriggerActions(&list);
    for (int role : {int(Qt::DecorationRole), int(Qt::ToolTipRole), int(Qt::CheckStateRole), int(Qt::UserRole), -1}) {
        QVERIFY(!model.index(0, 0).data(role).isValid());
        QVERIFY(!model.index(0, 1).data(role).isValid());
    }
}

void TestATriggerActionListModel::titles_data()
{
    QTest::addColumn<int>("section");
    QTest::addColumn<QString>("title");
    QTest::newRow("type") << 0 << "Action Type";
    QTest::newRow("text") << 1 << "Message Text, Command Line, Audio File or Screenshot target";
    for (int section : {2, -1, INT_MAX, INT_MIN})
        QTest::addRow("%d", section) << section << "???";
}

void TestATriggerActionListModel::titles()
{
    QFETCH(int, section);
    const ATriggerActionListModel model;
    QTEST(model.headerData(section, Qt::Horizontal, Qt::DisplayRole).toString(), "title");
    QTEST(model.headerData(section, Qt::Horizontal, Qt::EditRole).toString(), "title");
    for (int role : {int(Qt::DecorationRole), int(Qt::ToolTipRole), int(Qt::UserRole), -1})
        QVERIFY(!model.headerData(section, Qt::Horizontal, role).isValid());
    for (int role : {int(Qt::DisplayRole), int(Qt::EditRole)})
        QVERIFY(!model.headerData(section, Qt::Vertical, role).isValid());
}

void TestATriggerActionListModel::titlesAreTranslatable()
{
    const QByteArray longTitle = "Message Text, Command Line, Audio File or Screenshot target";
    const TranslatedTexts german("ATriggerActionListModel",
                                 {{"Action Type", "Aktion"}, {longTitle, "Ziel"}, {"???", "deliberately not"}});
    const ATriggerActionListModel model;
    QStringList titles;
    for (int section : {0, 1, 2})
        titles << model.headerData(section, Qt::Horizontal).toString();
    QCOMPARE(titles, (QStringList{"Aktion", "Ziel", "???"}));
}

void TestATriggerActionListModel::settingAListResets()
{
    QList<ATriggerAction> list = threeActions();
    ATriggerActionListModel model;
    QSignalSpy begins(&model, &QAbstractItemModel::modelAboutToBeReset);
    QSignalSpy ends(&model, &QAbstractItemModel::modelReset);
    QList<ATriggerAction> *before = &list;
    connect(&model, &QAbstractItemModel::modelAboutToBeReset, this, [&] { before = model.triggerActions(); });
    model.setTriggerActions(&list);
    QVERIFY(!before);
    QCOMPARE(model.rowCount(), 3);
    model.setTriggerActions(&list); // also the same one, which may have changed
    QCOMPARE(before, &list);
    model.setTriggerActions(nullptr);
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(begins.count(), 3);
    QCOMPARE(ends.count(), 3);
    QCOMPARE(texts(list), texts(threeActions()));
}

void TestATriggerActionListModel::everyIndexHasAllRowsAndColumns()
{
    QList<ATriggerAction> list = threeActions();
    ATriggerActionListModel model;
    model.setTriggerActions(&list);
    const QStandardItemModel other(1, 1);
    for (const QModelIndex &parent : {QModelIndex(), model.index(0, 0), model.index(2, 1), other.index(0, 0)}) {
        QCOMPARE(model.rowCount(parent), 3);
        QCOMPARE(model.columnCount(parent), 2);
    }
    const QAbstractItemModel &seenByAView = model;
    QVERIFY(!seenByAView.hasChildren(model.index(0, 0))); // so that it doesn't descend
}

void TestATriggerActionListModel::everyIndexIsEditable()
{
    QList<ATriggerAction> list = threeActions();
    ATriggerActionListModel model;
    model.setTriggerActions(&list);
    const Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsEditable;
    for (int column : {0, 1})
        QCOMPARE(model.flags(model.index(1, column)), flags); // and not Qt::ItemNeverHasChildren
    QCOMPARE(model.flags(QModelIndex()), Qt::ItemFlags(Qt::ItemIsEditable));
}

// That a cell has rows and the invalid index is editable is required, so these are the complaints that the model
// causes as long as existing rows are removed.
void TestATriggerActionListModel::theTesterObjectsToTwoHabitsOfEachIndex()
{
    QList<ATriggerAction> list = threeActions();
    ATriggerActionListModel model;
    model.setTriggerActions(&list);
    const QStringList complaints = complaintsAbout(&model, [&model] {
        model.insertRows(0, 2);
        model.setData(model.index(0, 1), QStringLiteral("x"));
        model.removeRows(1, 2);
    });
    bool hasFlagsComplaint = false;
    bool hasChildrenComplaint = false;
    for (const QString &text : complaints) {
        const bool isFlags = text.contains(QLatin1String("flags == Qt::ItemIsDropEnabled || flags == 0"));
        const bool isChildren = text.contains(QLatin1String("model->hasChildren(topIndex)")) ||
                                text.contains(QLatin1String("model->parent(childIndex)"));
        QVERIFY2(isFlags || isChildren, qPrintable(text));
        hasFlagsComplaint = hasFlagsComplaint || isFlags;
        hasChildrenComplaint = hasChildrenComplaint || isChildren;
    }
    QVERIFY(hasFlagsComplaint && hasChildrenComplaint);
}

void TestATriggerActionListModel::theTesterObjectsToARemovalPastTheEnd_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("complaints");
    QTest::newRow("up to the end") << 1 << 2 << 0;
    QTest::newRow("past the end") << 1 << 10 << 1;
    QTest::newRow("from the end") << 3 << 1 << 1; // farther behind it, the tester crashes
}

// As many rows are announced as were asked for, more than go.
void TestATriggerActionListModel::theTesterObjectsToARemovalPastTheEnd()
{
    QFETCH(int, row);
    QFETCH(int, count);
    QList<ATriggerAction> list = threeActions();
    OrdinaryModel model;
    model.setTriggerActions(&list);
    const QStringList complaints = complaintsAbout(&model, [&] { QVERIFY(model.removeRows(row, count)); });
    QTEST(complaints.size(), "complaints");
    for (const QString &text : complaints)
        QVERIFY2(text.contains(QLatin1String("rowCount(parent)")), qPrintable(text));
}

void TestATriggerActionListModel::allElseIsAsInAnyModel()
{
    QList<ATriggerAction> list = threeActions();
    OrdinaryModel model;
    const QAbstractItemModelTester tester(&model);
    model.setTriggerActions(&list);
    QVERIFY(model.insertRows(0, 2));
    QVERIFY(model.setData(model.index(3, 0), ATriggerAction::actionNames().at(3)));
    QVERIFY(model.setData(model.index(3, 1), QStringLiteral("a.wav")));
    QVERIFY(model.removeRows(1, 2));
    QVERIFY(model.removeRows(0, 0));
    QVERIFY(model.insertRows(0, 0));
    QCOMPARE(texts(list), (QStringList{"1:Overload", "3:a.wav", "0:"}));
    QVERIFY(model.removeRows(0, 3));
    QVERIFY(model.insertRow(7));
    model.setTriggerActions(nullptr);
    QCOMPARE(texts(list), QStringList{"0:"});
}

void TestATriggerActionListModel::aTypeIsChosenByItsName_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("type");
    const QStringList names = ATriggerAction::actionNames();
    for (int type = 0; type < names.size(); ++type)
        QTest::addRow("%s", qPrintable(names.at(type))) << QVariant(names.at(type)) << type;
    QTest::newRow("bytes") << QVariant(names.at(3).toUtf8()) << 3;
    constexpr int kAsBefore = 2;
    QTest::newRow("another case") << QVariant(names.at(3).toUpper()) << kAsBefore;
    QTest::newRow("a blank more") << QVariant(names.at(3) + ' ') << kAsBefore;
    QTest::newRow("a part") << QVariant(names.at(3).left(4)) << kAsBefore;
    QTest::newRow("a number") << QVariant(3) << kAsBefore;
    QTest::newRow("empty") << QVariant(QString()) << kAsBefore;
    QTest::newRow("nothing") << QVariant() << kAsBefore;
    QTest::newRow("long") << QVariant(QString(1000000, 'x')) << kAsBefore;
}

void TestATriggerActionListModel::aTypeIsChosenByItsName()
{
    QFETCH(QVariant, value);
    QFETCH(int, type);
    QList<ATriggerAction> list = threeActions();
    ATriggerActionListModel model;
    model.setTriggerActions(&list);
    QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    QVERIFY(model.setData(model.index(1, 0), value));
    QCOMPARE(texts(list), (QStringList{"1:Overload", QString::number(type) + ":beep -f 440", "4:/tmp/a.png"}));
    QCOMPARE(changes.count(), 1); // also if nothing has changed
}

void TestATriggerActionListModel::aTextIsStoredAsItIs_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("text") << QVariant(QStringLiteral(" a\tb\n")) << " a\tb\n";
    QTest::newRow("number") << QVariant(1.5) << "1.5";
    QTest::newRow("nothing") << QVariant() << QString();
    QTest::newRow("no text") << QVariant(QSize(1, 2)) << QString();
    QTest::newRow("the same") << QVariant(QStringLiteral("beep -f 440")) << "beep -f 440";
}

void TestATriggerActionListModel::aTextIsStoredAsItIs()
{
    QFETCH(QVariant, value);
    QFETCH(QString, text);
    QList<ATriggerAction> list = threeActions();
    ATriggerActionListModel model;
    model.setTriggerActions(&list);
    QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    QVERIFY(model.setData(model.index(1, 1), value, Qt::EditRole));
    QCOMPARE(texts(list), (QStringList{"1:Overload", "2:" + text, "4:/tmp/a.png"}));
    QCOMPARE(changes.count(), 1);
}

void TestATriggerActionListModel::anEditOfAnotherColumnChangesNothing()
{
    QList<ATriggerAction> list = threeActions();
    Probe model;
    model.setTriggerActions(&list);
    QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    for (int column : {2, 3, INT_MAX}) {
        const QModelIndex index = model.indexAt(1, column);
        QVERIFY(!model.data(index).isValid());
        QVERIFY(!model.data(index, Qt::EditRole).isValid());
        QVERIFY(model.setData(index, ATriggerAction::actionNames().at(0)));
    }
    QCOMPARE(changes.count(), 3);
    QCOMPARE(texts(list), texts(threeActions()));
}

void TestATriggerActionListModel::otherRolesAreRefused()
{
    QList<ATriggerAction> list = threeActions();
    ATriggerActionListModel model;
    model.setTriggerActions(&list);
    QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    for (int role : {int(Qt::DisplayRole), int(Qt::CheckStateRole), int(Qt::UserRole), -1}) {
        QVERIFY(!model.setData(model.index(1, 0), ATriggerAction::actionNames().at(0), role));
        QVERIFY(!model.setData(model.index(1, 1), QStringLiteral("x"), role));
    }
    QVERIFY(!model.setData(QModelIndex(), QStringLiteral("x"), Qt::EditRole));
    QCOMPARE(changes.count(), 0);
    QCOMPARE(texts(list), texts(threeActions()));
}

void TestATriggerActionListModel::anEditSignalsItsCell()
{
    QList<ATriggerAction> list = threeActions();
    ATriggerActionListModel model;
    model.setTriggerActions(&list);
    QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    QStringList atSignal;
    connect(&model, &QAbstractItemModel::dataChanged, this, [&] { atSignal = texts(list); });
    QVERIFY(model.setData(model.index(2, 1), QStringLiteral("b.png")));
    QCOMPARE(changes.count(), 1);
    QCOMPARE(changes.at(0).at(0).toModelIndex(), model.index(2, 1));
    QCOMPARE(changes.at(0).at(1).toModelIndex(), model.index(2, 1));
    QVERIFY(changes.at(0).at(2).value<QVector<int>>().isEmpty());
    QCOMPARE(atSignal.last(), QStringLiteral("4:b.png"));
}

void TestATriggerActionListModel::rowsThatTheListLostAreRefused()
{
    QList<ATriggerAction> list = threeActions();
    ATriggerActionListModel model;
    model.setTriggerActions(&list);
    QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    const QModelIndex last = model.index(2, 1);
    list.removeLast(); // by its owner
    QVERIFY(!model.data(last).isValid());
    QVERIFY(!model.setData(last, QStringLiteral("x")));
    QVERIFY(!model.setData(last.siblingAtColumn(0), ATriggerAction::actionNames().at(0)));
    list.clear();
    QVERIFY(!model.setData(last, QStringLiteral("x")));
    model.setTriggerActions(nullptr);
    QVERIFY(!model.data(last).isValid());
    QVERIFY(!model.setData(last, QStringLiteral("x")));
    QCOMPARE(changes.count(), 0);
}

void TestATriggerActionListModel::indexesOfOtherModelsAreRefused()
{
    QList<ATriggerAction> list = threeActions();
    ATriggerActionListModel model;
    model.setTriggerActions(&list);
    const QStandardItemModel other(3, 2);
    QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    QVERIFY(!model.data(other.index(1, 1)).isValid());
    QVERIFY(!model.setData(other.index(1, 1), QStringLiteral("x")));
    QCOMPARE(changes.count(), 0);
    QCOMPARE(texts(list), texts(threeActions()));
}

QTEST_GUILESS_MAIN(TestATriggerActionListModel)
#include "tst_atriggeractionlistmodel.moc"
