#include "channelmodel.h"

#include <QtTest/QtTest>

#include <random>

using namespace channelmodel;
using namespace channeltree;

namespace {

// Doubles what is written as a number.
class DoublingModel : public AChannelInfoModel
{
public:
    using AChannelInfoModel::AChannelInfoModel;
    QList<QVariant> written;
    QList<int> roles;

    bool setData(const QModelIndex &index, const QVariant &value, int role) override
    {
        written.append(value);
        roles.append(role);
        if (value.userType() == QMetaType::LongLong)
            return AChannelInfoModel::setData(index, value.toLongLong() * 2, role) && false;
        return AChannelInfoModel::setData(index, value, role);
    }
};

} // namespace

// Cells that are written, and rows that are added and removed.
class TestAChannelInfoModelEditing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cellsAreEdited_data();
    void cellsAreEdited();
    void textsInFrequencyColumnsAreReadAsWholeHertz_data();
    void textsInFrequencyColumnsAreReadAsWholeHertz();
    void bytesKeepPartsOfAHertz();
    void textsGoThroughTheVirtualSetData();
    void otherRolesAreNotWritten();

    void aNewRangeIsPlacedLast();
    void rangesAreAddedBelowTheFirstColumnOnly();
    void aNodeWithChildrenIsRemovedOnRequestOnly();
    void whatIsNoNodeIsNotRemoved();
    void anySequenceOfChangesKeepsTheModelConsistent();
};

void TestAChannelInfoModelEditing::cellsAreEdited_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QVariant>("stored");
    const QVariant definitions = QVariantList{definition("1", "2", "3", 4)};
    QTest::newRow("name") << 0 << QVariant(QStringLiteral("x")) << QVariant(QStringLiteral("x"));
    QTest::newRow("qualified name") << 1 << QVariant(QStringLiteral("x")) << QVariant(QStringLiteral("old"));
    QTest::newRow("begin in MHz") << 2 << QVariant(100.0) << QVariant(100000000LL);
    QTest::newRow("begin in Hz") << 2 << QVariant(100) << QVariant(100LL);
    QTest::newRow("begin in bytes") << 2 << QVariant(QByteArray("1 kHz")) << QVariant(1000LL);
    QTest::newRow("end in MHz") << 3 << QVariant(0.5) << QVariant(500000LL);
    QTest::newRow("type") << 4 << QVariant(16) << QVariant(16);
    QTest::newRow("type as text") << 4 << QVariant(QStringLiteral("8")) << QVariant(8);
    QTest::newRow("type that doesn't exist") << 4 << QVariant(3) << QVariant(2);
    QTest::newRow("selectable") << 5 << QVariant(true) << QVariant(true);
    QTest::newRow("selectable as text") << 5 << QVariant(QStringLiteral("true")) << QVariant(true);
    QTest::newRow("colour") << 6 << QVariant(QColor(Qt::red)) << QVariant(QColor(Qt::red));
    QTest::newRow("colour as text") << 6 << QVariant(QStringLiteral("x")) << QVariant(QStringLiteral("x"));
    QTest::newRow("profile id") << 7 << QVariant(QStringLiteral("fm")) << QVariant(QStringLiteral("fm"));
    QTest::newRow("comment") << 8 << QVariant(5) << QVariant(QStringLiteral("5"));
    QTest::newRow("definitions, though no user may") << 9 << definitions << definitions;
    QTest::newRow("mirror in MHz") << 10 << QVariant(1.5) << QVariant(1500000LL);
}

void TestAChannelInfoModelEditing::cellsAreEdited()
{
    QFETCH(int, column);
    QFETCH(QVariant, value);
    QFETCH(QVariant, stored);
    for (const int role : {int(Qt::DisplayRole), int(Qt::EditRole)}) {
        AChannelInfo *root = node(nullptr, QString());
        AChannelInfo *edited = node(root, QStringLiteral("old"));
        AChannelInfoModel model(nullptr, root);
        const QAbstractItemModelTester tester(&model, kReport);
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        const QModelIndex index = model.index(0, column);
        QVERIFY(model.setData(index, value, role)); // true even where nothing is stored
        QCOMPARE(inspect(edited->data(column)), inspect(stored));
        QCOMPARE(changed.size(), 1);
        QCOMPARE(changed.at(0).at(0).toModelIndex(), index);
        QCOMPARE(changed.at(0).at(1).toModelIndex(), index);
        QVERIFY(changed.at(0).at(2).value<QVector<int>>().isEmpty());
    }
}

void TestAChannelInfoModelEditing::textsInFrequencyColumnsAreReadAsWholeHertz_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qlonglong>("hertz");
    QTest::newRow("MHz") << QStringLiteral("100 MHz") << 100000000LL;
    QTest::newRow("without blank") << QStringLiteral("1.5kHz") << 1500LL;
    QTest::newRow("GHz") << QStringLiteral("2,4 GHz") << 2400000000LL;
    QTest::newRow("without unit") << QStringLiteral("100") << 100LL;
    QTest::newRow("a part of a hertz is cut off") << QStringLiteral("7.9") << 7LL;
    QTest::newRow("below zero") << QStringLiteral("-3 kHz") << -3000LL;
    QTest::newRow("beyond a double") << QStringLiteral("9007199254740993") << 9007199254740993LL;
    QTest::newRow("unknown unit") << QStringLiteral("100 mhz") << 0LL;
    QTest::newRow("empty") << QString() << 0LL;
    QTest::newRow("no number") << QStringLiteral("x") << 0LL;
    QTest::newRow("beyond Latin-1") << QString::fromUtf8("5 \xe2\x82\xac") << 0LL;
    QTest::newRow("Latin-1") << QString::fromUtf8("5 \xc2\xb5Hz") << 0LL;
    // one byte in Latin-1, which is no blank
    QTest::newRow("no-break space") << QString::fromUtf8("5\xc2\xa0MHz") << 0LL;
}

void TestAChannelInfoModelEditing::textsInFrequencyColumnsAreReadAsWholeHertz()
{
    QFETCH(QString, text);
    QFETCH(qlonglong, hertz);
    for (const int column : {2, 3, 10}) {
        AChannelInfo *root = node(nullptr, QString());
        AChannelInfo *edited = node(root, QString(), "1 MHz", "1 MHz");
        edited->setData(AChannelInfo::ColumnMirrorEntryFreq, 1);
        AChannelInfoModel model(nullptr, root);
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        QVERIFY(model.setData(model.index(0, column), text));
        QCOMPARE(edited->data(column).toLongLong(), hertz);
        QCOMPARE(changed.size(), 1);
    }
}

void TestAChannelInfoModelEditing::bytesKeepPartsOfAHertz()
{
    AChannelInfo *root = node(nullptr, QString());
    const AChannelInfo *edited = node(root, QString(), "1 MHz", "1 MHz");
    AChannelInfoModel model(nullptr, root);
    QVERIFY(model.setData(model.index(0, 2), QByteArray("7.9")));
    QCOMPARE(edited->beginFrequency(), AFrequency("7.9"));
    QVERIFY(model.setData(model.index(0, 2), QStringLiteral("7.9")));
    QCOMPARE(edited->beginFrequency(), AFrequency("7"));
}

void TestAChannelInfoModelEditing::textsGoThroughTheVirtualSetData()
{
    DoublingModel model(nullptr, unsortedPlan());
    QVERIFY(!model.setData(model.index(0, 2), QStringLiteral("5 kHz"), Qt::DisplayRole)); // its answer is the answer
    QCOMPARE(model.index(0, 2).data().toString(), QStringLiteral("10.000000 kHz"));
    QCOMPARE(model.written, QVariantList({QStringLiteral("5 kHz"), 5000LL}));
    QCOMPARE(model.roles, (QList<int>{Qt::DisplayRole, Qt::DisplayRole}));
    QVERIFY(model.setData(model.index(0, 0), QStringLiteral("5 kHz"), Qt::EditRole));
    QCOMPARE(model.written.size(), 3);
}

void TestAChannelInfoModelEditing::otherRolesAreNotWritten()
{
    AChannelInfoModel model(nullptr, unsortedPlan());
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    const QStringList before = outline(model.getItem({}));
    for (const int role : {1, 3, int(Qt::BackgroundRole), int(Qt::CheckStateRole), int(Qt::UserRole), -1}) {
        for (int column = 0; column < kColumnCount; ++column)
            QVERIFY(!model.setData(model.index(0, column), QStringLiteral("5 kHz"), role));
    }
    QVERIFY(!model.setData(QModelIndex(), QStringLiteral("x"), Qt::EditRole));
    QCOMPARE(changed.size(), 0);
    QCOMPARE(outline(model.getItem({})), before);
}

void TestAChannelInfoModelEditing::aNewRangeIsPlacedLast()
{
    AChannelInfoModel model(nullptr, nullptr);
    const QAbstractItemModelTester tester(&model, kReport);
    AChannelInfo *root = model.getItem({});
    root->setData(AChannelInfo::ColumnStopFreq, QStringLiteral("3 GHz"));
    QSignalSpy inserting(&model, &QAbstractItemModel::rowsAboutToBeInserted);
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);

    const QModelIndex top = model.addItem(QModelIndex(), QStringLiteral("top"));
    QCOMPARE(top, model.index(0, 0));
    AChannelInfo *topNode = model.getItem(top);
    QVERIFY(topNode->selectable());
    QCOMPARE(topNode->parent(), root);
    QCOMPARE(topNode->type(), AChannelInfo::Generic);
    QCOMPARE(topNode->label(), QStringLiteral("top"));
    QCOMPARE(topNode->beginFrequency(), AFrequency());
    QCOMPARE(topNode->endFrequency(), AFrequency("3 GHz"));

    topNode->setData(AChannelInfo::ColumnStartFreq, QStringLiteral("1.5"));
    topNode->setData(AChannelInfo::ColumnType, AChannelInfo::Provider);
    topNode->setData(AChannelInfo::ColumnColor, QStringLiteral("red"));
    for (int i = 0; i < 3; ++i) {
        const QModelIndex below = model.addItem(top, QString::number(i));
        QCOMPARE(below, model.index(i, 0, top));
        AChannelInfo *node = model.getItem(below);
        QVERIFY(!node->selectable());
        QCOMPARE(node->type(), AChannelInfo::Generic);
        QCOMPARE(node->beginFrequency(), AFrequency("1.5"));
        QCOMPARE(node->endFrequency(), AFrequency("3 GHz"));
        QVERIFY(!node->color().isValid());
        QCOMPARE(inserted.last().at(0).toModelIndex(), top);
        QCOMPARE(inserted.last().at(1).toInt(), i);
        QCOMPARE(inserted.last().at(2).toInt(), i);
    }
    QCOMPARE(inserting.size(), 4);
    QCOMPARE(inserted.size(), 4);
    QCOMPARE(inserted.at(0).at(0).toModelIndex(), QModelIndex());
    QCOMPARE(treeText(model), QStringLiteral("top(0 1 2)"));
}

void TestAChannelInfoModelEditing::rangesAreAddedBelowTheFirstColumnOnly()
{
    AChannelInfoModel model(nullptr, unsortedPlan());
    QSignalSpy inserting(&model, &QAbstractItemModel::rowsAboutToBeInserted);
    const QStringList before = outline(model.getItem({}));
    for (int column = 1; column < kColumnCount; ++column)
        QVERIFY(!model.addItem(model.index(1, column), QStringLiteral("x")).isValid());
    QCOMPARE(inserting.size(), 0);
    QCOMPARE(outline(model.getItem({})), before);
}

void TestAChannelInfoModelEditing::aNodeWithChildrenIsRemovedOnRequestOnly()
{
    AChannelInfoModel model(nullptr, unsortedPlan());
    const QAbstractItemModelTester tester(&model, kReport);
    QSignalSpy removing(&model, &QAbstractItemModel::rowsAboutToBeRemoved);
    QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
    const QPersistentModelIndex b = indexAt(model, {QStringLiteral("b")});
    const QPersistentModelIndex e = indexAt(model, {QStringLiteral("b"), QStringLiteral("e")}, 4);
    const QPersistentModelIndex g = indexAt(model, {QStringLiteral("a"), QStringLiteral("g")}, 3);

    QVERIFY(!model.removeItem(b, false));
    QCOMPARE(removing.size() + removed.size(), 0);
    QCOMPARE(treeText(model), QStringLiteral("d b(f e) c a(h g)"));

    QVERIFY(model.removeItem(b, true));
    QCOMPARE(treeText(model), QStringLiteral("d c a(h g)"));
    QCOMPARE(removing.size(), 1);
    QCOMPARE(removed.size(), 1);
    QCOMPARE(removed.at(0).at(0).toModelIndex(), QModelIndex());
    QCOMPARE(removed.at(0).at(1).toInt(), 1);
    QCOMPARE(removed.at(0).at(2).toInt(), 1);
    QVERIFY(!b.isValid() && !e.isValid());
    QCOMPARE(g.parent(), indexAt(model, {QStringLiteral("a")}));

    // any column names the node
    QVERIFY(model.removeItem(indexAt(model, {QStringLiteral("a"), QStringLiteral("h")}, 7), false));
    QCOMPARE(removed.last().at(0).toModelIndex(), indexAt(model, {QStringLiteral("a")}));
    QCOMPARE(removed.last().at(1).toInt(), 0);
    QCOMPARE(g.row(), 0);
    QCOMPARE(g.data().toString(), QStringLiteral("1200.000000 MHz"));
    QVERIFY(model.removeItem(g, true));
    QVERIFY(model.removeItem(indexAt(model, {QStringLiteral("a")}), false));
    QCOMPARE(treeText(model), QStringLiteral("d c"));
}

void TestAChannelInfoModelEditing::whatIsNoNodeIsNotRemoved()
{
    AChannelInfoModel model(nullptr, unsortedPlan());
    QSignalSpy removing(&model, &QAbstractItemModel::rowsAboutToBeRemoved);
    QVERIFY(!model.removeItem(QModelIndex(), true));
    QVERIFY(!model.removeItem(QModelIndex(), false));
    QCOMPARE(removing.size(), 0);
    QCOMPARE(model.rowCount(), 4);
}

void TestAChannelInfoModelEditing::anySequenceOfChangesKeepsTheModelConsistent()
{
    std::mt19937 random(6);
    AChannelInfoModel model(nullptr, nullptr);
    const QAbstractItemModelTester tester(&model, kReport);
    const auto randomIndex = [&] {
        QModelIndex index;
        while (model.rowCount(index) > 0 && random() % 4 != 0)
            index = model.index(int(random() % uint(model.rowCount(index))), 0, index);
        return index;
    };
    const QModelIndex top = model.addItem({}, QStringLiteral("top"));
    QList<QPersistentModelIndex> held;
    for (int step = 0; step < 400; ++step) {
        const QModelIndex index = randomIndex();
        switch (random() % 8) {
        case 0:
            if (index != top && index.isValid())
                QVERIFY(model.removeItem(index, true));
            break;
        case 1:
            model.sort(int(random() % 13) - 1, random() % 2 ? Qt::AscendingOrder : Qt::DescendingOrder);
            break;
        case 2:
            if (index.isValid())
                QVERIFY(model.setData(index, QString::number(random() % 20)));
            break;
        case 3:
            held.append(index.sibling(index.row(), int(random() % kColumnCount)));
            break;
        default:
            if (index.isValid())
                QVERIFY(model.addItem(index, QString::number(random() % 20)).isValid());
        }
        // an index that is held still names its node at its row
        for (const QPersistentModelIndex &persistent : qAsConst(held)) {
            if (persistent.isValid())
                QCOMPARE(model.index(persistent.row(), persistent.column(), persistent.parent()),
                         QModelIndex(persistent));
        }
    }
    QVERIFY(model.getItem({})->channels(0).size() > 20);
}

QTEST_GUILESS_MAIN(TestAChannelInfoModelEditing)
#include "tst_achannelinfomodel_editing.moc"
