#include "channel/achannelinfomodel.h"

#include "channelmodel.h"

#include <QtCore/QTranslator>
#include <QtGui/QBrush>
#include <QtGui/QStandardItemModel>
#include <QtTest/QtTest>

#include <memory>

using namespace channelmodel;
using namespace channeltree;

namespace {

const QStringList kHeaders{QStringLiteral("Name"),
                           QStringLiteral("Qualified name"),
                           QStringLiteral("Start Freq"),
                           QStringLiteral("Stop Freq"),
                           QStringLiteral("Type"),
                           QStringLiteral("Selectable"),
                           QStringLiteral("Color"),
                           QStringLiteral("Profile ID"),
                           QStringLiteral("Comment"),
                           QStringLiteral("Auto Channel Definition"),
                           QStringLiteral("Mirror Entry Freq")};

// Marks every text of the model as translated.
class Translator : public QTranslator
{
public:
    QString translate(const char *context, const char *text, const char *disambiguation, int n) const override
    {
        Q_UNUSED(disambiguation)
        Q_UNUSED(n)
        return qstrcmp(context, "AChannelInfoModel") == 0 ? QString::fromLatin1(text) + QLatin1Char('!') : QString();
    }
    bool isEmpty() const override { return false; }
};

} // namespace

class TestAChannelInfoModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anEmptyModelHasARootOfItsOwn();
    void theModelTakesItsRootOver();
    void indexesCarryTheirNodes();
    void thereAreNoIndexesOutsideTheTree();
    void onlyTheFirstColumnHasRows();
    void aPartOfATreeIsShown();
    void headersAreNamedAndTranslated();
    void flagsDependOnTheColumn();
    void cellsShowTheNode();
    void frequenciesShowWholeHertz_data();
    void frequenciesShowWholeHertz();
    void colouredNodesHaveAHalfTransparentBackground_data();
    void colouredNodesHaveAHalfTransparentBackground();
    void otherRolesAreEmpty();

    void anotherRootReplacesTheWholeTree();
    void aModelWithoutARootHasNoRows();
    void indexesOfOtherModelsDoNothing();
};

void TestAChannelInfoModel::anEmptyModelHasARootOfItsOwn()
{
    AChannelInfoModel model(this, nullptr);
    const QAbstractItemModelTester tester(&model, kReport);
    QCOMPARE(static_cast<QObject &>(model).parent(), this);
    QCOMPARE(model.QObject::parent(), this);
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(model.columnCount(), kColumnCount);
    AChannelInfo *root = model.getItem(QModelIndex());
    QVERIFY(root);
    QCOMPARE(root->type(), AChannelInfo::Generic);
    QVERIFY(root->beginFrequency().isNull() && root->endFrequency().isNull());
    QVERIFY(root->label().isEmpty() && !root->selectable() && !root->parent());
}

void TestAChannelInfoModel::theModelTakesItsRootOver()
{
    // nobody else deletes it, and the leak checker would see it
    const AChannelInfo *root = unsortedPlan();
    AChannelInfoModel model(nullptr, root);
    QCOMPARE(model.getItem(QModelIndex()), root);
    QCOMPARE(treeText(model), QStringLiteral("d b(f e) c a(h g)"));
}

void TestAChannelInfoModel::indexesCarryTheirNodes()
{
    AChannelInfo *root = unsortedPlan();
    AChannelInfoModel model(nullptr, root);
    const QAbstractItemModelTester tester(&model, kReport);
    for (int row = 0; row < root->childCount(); ++row) {
        AChannelInfo *node = root->child(row);
        const QModelIndex top = model.index(row, 0);
        for (int column = 0; column < kColumnCount; ++column) {
            const QModelIndex index = model.index(row, column);
            QVERIFY(index.isValid());
            QCOMPARE(index.row(), row);
            QCOMPARE(index.column(), column);
            QCOMPARE(index.internalPointer(), static_cast<void *>(node));
            QCOMPARE(model.getItem(index), node);
            QVERIFY(!model.parent(index).isValid());
        }
        QCOMPARE(model.rowCount(top), node->childCount());
        for (int below = 0; below < node->childCount(); ++below) {
            const QModelIndex index = model.index(below, 5, top);
            QCOMPARE(model.getItem(index), node->child(below));
            QCOMPARE(model.parent(index), top);
        }
    }
}

void TestAChannelInfoModel::thereAreNoIndexesOutsideTheTree()
{
    AChannelInfoModel model(nullptr, unsortedPlan());
    for (const auto &place : {qMakePair(-1, 0), qMakePair(4, 0), qMakePair(0, -1), qMakePair(0, 11)})
        QVERIFY(!model.index(place.first, place.second).isValid());
    QVERIFY(!model.index(0, 0, model.index(0, 0)).isValid());
    QVERIFY(!model.parent(QModelIndex()).isValid());
}

void TestAChannelInfoModel::onlyTheFirstColumnHasRows()
{
    AChannelInfoModel model(nullptr, unsortedPlan());
    QCOMPARE(model.rowCount(model.index(1, 0)), 2);
    QVERIFY(model.hasChildren(model.index(1, 0)));
    QVERIFY(!model.hasChildren(model.index(0, 0)));
    for (int column = 1; column < kColumnCount; ++column) {
        QCOMPARE(model.rowCount(model.index(1, column)), 0);
        QCOMPARE(model.columnCount(model.index(1, column)), kColumnCount);
        QVERIFY(!model.index(0, 0, model.index(1, column)).isValid());
    }
}

void TestAChannelInfoModel::aPartOfATreeIsShown()
{
    // a root may itself stand below another node, which loses it with the model
    const std::unique_ptr<AChannelInfo> above(node(nullptr, QStringLiteral("above")));
    AChannelInfo *root = unsortedPlan();
    above->appendChild(root);
    {
        AChannelInfoModel model(nullptr, root);
        const QAbstractItemModelTester tester(&model, kReport);
        QCOMPARE(treeText(model), QStringLiteral("d b(f e) c a(h g)"));
        QVERIFY(!model.parent(model.index(1, 0)).isValid());
        QCOMPARE(model.index(1, 1).data().toString(), QStringLiteral("above  b"));
        // below a root that has a parent nothing new is selectable
        QVERIFY(!model.getItem(model.addItem(QModelIndex(), QStringLiteral("x")))->selectable());
    }
    QCOMPARE(above->childCount(), 0);
}

void TestAChannelInfoModel::headersAreNamedAndTranslated()
{
    AChannelInfoModel model(nullptr, nullptr);
    QCOMPARE(headerTexts(model), kHeaders);
    QCOMPARE(model.headerData(0, Qt::Horizontal, Qt::DisplayRole).userType(), int(QMetaType::QString));
    for (const int section : {-1, 11, 1000})
        QVERIFY(!model.headerData(section, Qt::Horizontal).isValid());
    for (int section = 0; section < kColumnCount; ++section) {
        QVERIFY(!model.headerData(section, Qt::Vertical).isValid());
        for (const int role : {int(Qt::EditRole), int(Qt::ToolTipRole), int(Qt::TextAlignmentRole), int(Qt::UserRole)})
            QVERIFY(!model.headerData(section, Qt::Horizontal, role).isValid());
    }

    Translator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    QStringList translated = kHeaders;
    translated.replaceInStrings(QRegularExpression(QStringLiteral("$")), QStringLiteral("!"));
    QCOMPARE(headerTexts(model), translated);
    QCoreApplication::removeTranslator(&translator);
}

void TestAChannelInfoModel::flagsDependOnTheColumn()
{
    AChannelInfoModel model(nullptr, unsortedPlan());
    QCOMPARE(model.flags(QModelIndex()), Qt::NoItemFlags);
    for (int column = 0; column < kColumnCount; ++column) {
        const Qt::ItemFlags readOnly = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
        const Qt::ItemFlags expected = column == 1 || column == 9 ? readOnly : readOnly | Qt::ItemIsEditable;
        QCOMPARE(model.flags(model.index(0, column)), expected);
        QCOMPARE(model.flags(model.index(0, column, model.index(1, 0))), expected);
    }
}

void TestAChannelInfoModel::cellsShowTheNode()
{
    auto *root = node(nullptr, QString());
    root->appendChild(fullTree());
    AChannelInfoModel model(nullptr, root);
    const QAbstractItemModelTester tester(&model, kReport);
    QCOMPARE(
        rowTexts(model, 0),
        QStringList({QStringLiteral("root"), QStringLiteral("root"), QStringLiteral("10.000000 Hz"),
                     QStringLiteral("20.000000 Hz"), QStringLiteral("4"), QStringLiteral("true"), QStringLiteral("red"),
                     QStringLiteral("profile"), QStringLiteral("comment"), QString(), QStringLiteral("7.000000 kHz")}));
    const QModelIndex deep = indexAt(model, {QStringLiteral("root"), QStringLiteral("a"), QStringLiteral("deep")});
    QVERIFY(deep.isValid());
    for (int column = 0; column < kColumnCount; ++column) {
        const QModelIndex index = deep.sibling(0, column);
        QCOMPARE(inspect(index.data(Qt::EditRole)), inspect(index.data(Qt::DisplayRole)));
        if (column == 2 || column == 3 || column == 10)
            QCOMPARE(index.data().userType(), int(QMetaType::QString));
        else
            QCOMPARE(inspect(index.data()), inspect(model.getItem(deep)->data(column)));
    }
    QCOMPARE(deep.sibling(0, 1).data().toString(), QStringLiteral("root a deep"));
    QCOMPARE(deep.sibling(0, 9).data().toList().size(), 1);
    for (const int role : {int(Qt::DisplayRole), int(Qt::EditRole), int(Qt::BackgroundRole)})
        QVERIFY(!model.data(QModelIndex(), role).isValid());
}

void TestAChannelInfoModel::frequenciesShowWholeHertz_data()
{
    QTest::addColumn<QByteArray>("frequency");
    QTest::addColumn<QString>("shown");
    QTest::newRow("zero") << QByteArray("0") << QStringLiteral("0.000000 Hz");
    QTest::newRow("MHz") << QByteArray("100 MHz") << QStringLiteral("100.000000 MHz");
    QTest::newRow("never GHz") << QByteArray("2.4 GHz") << QStringLiteral("2400.000000 MHz");
    QTest::newRow("kHz") << QByteArray("12.5 kHz") << QStringLiteral("12.500000 kHz");
    QTest::newRow("below zero") << QByteArray("-5 MHz") << QStringLiteral("-5.000000 MHz");
    QTest::newRow("a part of a hertz") << QByteArray("999.75") << QStringLiteral("999.000000 Hz");
    QTest::newRow("beyond a double") << QByteArray("9007199254740993") << QStringLiteral("9007199254.740993 MHz");
}

void TestAChannelInfoModel::frequenciesShowWholeHertz()
{
    QFETCH(QByteArray, frequency);
    QFETCH(QString, shown);
    AChannelInfo *root = node(nullptr, QString());
    node(root, QString(), frequency.constData(), frequency.constData())
        ->setData(AChannelInfo::ColumnMirrorEntryFreq, QString::fromLatin1(frequency));
    AChannelInfoModel model(nullptr, root);
    for (const int column : {2, 3, 10}) {
        QCOMPARE(model.index(0, column).data().toString(), shown);
        // what is shown can be written back
        QVERIFY(model.setData(model.index(0, column), shown));
        QCOMPARE(model.index(0, column).data().toString(), shown);
    }
}

void TestAChannelInfoModel::colouredNodesHaveAHalfTransparentBackground_data()
{
    QTest::addColumn<QVariant>("color");
    QTest::addColumn<QColor>("shown");
    QTest::newRow("colour") << QVariant(QColor(1, 2, 3)) << QColor(1, 2, 3);
    QTest::newRow("with an alpha of its own") << QVariant(QColor(1, 2, 3, 4)) << QColor(1, 2, 3);
    QTest::newRow("text") << QVariant(QStringLiteral("#336699")) << QColor(0x33, 0x66, 0x99);
    QTest::newRow("name") << QVariant(QStringLiteral("red")) << QColor(Qt::red);
    QTest::newRow("none") << QVariant(QColor()) << QColor();
    QTest::newRow("nothing") << QVariant() << QColor();
    QTest::newRow("text that is no colour") << QVariant(QStringLiteral("reddish")) << QColor();
}

void TestAChannelInfoModel::colouredNodesHaveAHalfTransparentBackground()
{
    QFETCH(QVariant, color);
    QFETCH(QColor, shown);
    AChannelInfo *root = node(nullptr, QString());
    root->setData(AChannelInfo::ColumnColor, QColor(Qt::green)); // not inherited
    node(root, QString())->setData(AChannelInfo::ColumnColor, color);
    AChannelInfoModel model(nullptr, root);
    const QAbstractItemModelTester tester(&model, kReport);
    for (int column = 0; column < kColumnCount; ++column) {
        const QVariant background = model.index(0, column).data(Qt::BackgroundRole);
        if (!shown.isValid() || (column != 0 && column != 1 && column != 6)) {
            QVERIFY(!background.isValid());
            continue;
        }
        QCOMPARE(background.userType(), int(QMetaType::QBrush));
        QColor expected = shown;
        expected.setAlphaF(0.5);
        QCOMPARE(background.value<QBrush>(), QBrush(expected, Qt::SolidPattern));
    }
}

void TestAChannelInfoModel::otherRolesAreEmpty()
{
    auto *root = node(nullptr, QString());
    root->appendChild(fullTree());
    AChannelInfoModel model(nullptr, root);
    for (const int role :
         {int(Qt::DecorationRole), int(Qt::ToolTipRole), int(Qt::FontRole), int(Qt::TextAlignmentRole),
          int(Qt::ForegroundRole), int(Qt::CheckStateRole), int(Qt::SizeHintRole), int(Qt::UserRole), -1, 1000}) {
        for (int column = 0; column < kColumnCount; ++column)
            QVERIFY(!model.index(0, column).data(role).isValid());
    }
}

void TestAChannelInfoModel::anotherRootReplacesTheWholeTree()
{
    AChannelInfo *first = unsortedPlan();
    AChannelInfoModel model(nullptr, first);
    const QAbstractItemModelTester tester(&model, kReport);
    QSignalSpy resetting(&model, &QAbstractItemModel::modelAboutToBeReset);
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
    QCOMPARE(model.setModelRoot(first), nullptr);
    QCOMPARE(resetting.size() + reset.size(), 0);
    QCOMPARE(model.getItem({}), first);

    const QPersistentModelIndex b = indexAt(model, {QStringLiteral("b")});
    auto *second = node(nullptr, QString());
    node(second, QStringLiteral("only"));
    QString whileResetting;
    connect(&model, &QAbstractItemModel::modelAboutToBeReset, this, [&] { whileResetting = treeText(model); });
    const std::unique_ptr<AChannelInfo> previous(model.setModelRoot(second));
    QCOMPARE(previous.get(), first);
    QCOMPARE(resetting.size(), 1);
    QCOMPARE(reset.size(), 1);
    QCOMPARE(whileResetting, QStringLiteral("d b(f e) c a(h g)"));
    QCOMPARE(treeText(model), QStringLiteral("only"));
    QVERIFY(!b.isValid());
    QCOMPARE(previous->channels(0).size(), 9); // it is whole, and the caller's
}

void TestAChannelInfoModel::aModelWithoutARootHasNoRows()
{
    AChannelInfo *first = unsortedPlan();
    AChannelInfoModel model(nullptr, first);
    const QAbstractItemModelTester tester(&model, kReport);
    const std::unique_ptr<AChannelInfo> previous(model.setModelRoot(nullptr));
    QCOMPARE(previous.get(), first);
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(model.columnCount(), kColumnCount);
    QCOMPARE(model.getItem({}), nullptr);
    QVERIFY(!model.index(0, 0).isValid());
    QCOMPARE(headerTexts(model), kHeaders);

    // what needs a root does nothing
    QSignalSpy inserting(&model, &QAbstractItemModel::rowsAboutToBeInserted);
    QSignalSpy sorting(&model, &QAbstractItemModel::layoutAboutToBeChanged);
    model.sort(0, Qt::AscendingOrder);
    QVERIFY(!model.addItem({}, QStringLiteral("x")).isValid());
    QVERIFY(!model.removeItem({}, true));
    QCOMPARE(inserting.size() + sorting.size(), 0);

    QCOMPARE(model.setModelRoot(nullptr), nullptr);
    QCOMPARE(model.setModelRoot(unsortedPlan()), nullptr);
    QCOMPARE(model.rowCount(), 4);
}

void TestAChannelInfoModel::indexesOfOtherModelsDoNothing()
{
    QStandardItemModel other(3, kColumnCount);
    const QModelIndex foreign = other.index(1, 0);
    AChannelInfoModel model(nullptr, unsortedPlan());
    const QStringList before = outline(model.getItem({}));
    QCOMPARE(model.getItem(foreign), nullptr);
    QCOMPARE(model.rowCount(foreign), 0);
    QVERIFY(!model.index(0, 0, foreign).isValid());
    QVERIFY(!model.parent(foreign).isValid());
    QVERIFY(!model.data(foreign, Qt::DisplayRole).isValid());
    QVERIFY(!model.setData(foreign, QStringLiteral("x"), Qt::EditRole));
    QVERIFY(!model.addItem(foreign, QStringLiteral("x")).isValid());
    QVERIFY(!model.removeItem(foreign, true));
    QCOMPARE(outline(model.getItem({})), before);
}

QTEST_GUILESS_MAIN(TestAChannelInfoModel)
#include "tst_achannelinfomodel.moc"
