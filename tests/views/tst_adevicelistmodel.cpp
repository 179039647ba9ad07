#include "core/usbtestbed.h"
#include "views/devicetable.h"
#include "views/opendevice.h"
#include "views/translatedtexts.h"

#include <QtCore/QSortFilterProxyModel>
#include <QtTest/QAbstractItemModelTester>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QTableView>

#include <memory>

using namespace devicetable;

class TestADeviceListModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void aFreshModelIsEmptyUntilItsFirstRefreshHasFinished();
    void columnsHaveTitles();
    void titlesAreTranslatable();
    void aRowShowsAChip();
    void onlyTheDisplayRoleHasData();
    void rowsHaveNoChildren();
    void listsAnalysersGeneratorsAndLoggersAlone();
    void aChipWithTwoChannelsIsTwoRows();
    void devicesComeAndGo();
    void eachRefreshResetsOnce();
    void aRefreshWithinARefreshResetsOnce();
    void nothingThatDoesNotExistHasData();
    void chipsTravelInVariants();
    void aViewKeepsWorkingWhenItsRowsGo();
    void theModelMayBeDeletedWhileItRefreshesOrResets();

    void aChipIsFoundByAnyCellOfItsRow();
    void aChipIsFoundAfterItsRowHasMoved();
    void aChipIsFoundThroughAProxy();
    void aChipIsFoundByTheRowOfACopy_data();
    void aChipIsFoundByTheRowOfACopy();
    void aRowThatIsGoneGivesTheFirstChip();
    void ofChipsThatShowTheSameTheFirstIsFound();
    void anEmptyListGivesAnEmptyRecord();

private:
    std::unique_ptr<UsbTestbed> m_bed;
};

void TestADeviceListModel::init()
{
    m_bed = std::make_unique<UsbTestbed>();
    QVERIFY2(m_bed->isUsable(), "to be run under umockdev-wrapper");
}

void TestADeviceListModel::cleanup()
{
    m_bed.reset();
}

void TestADeviceListModel::aFreshModelIsEmptyUntilItsFirstRefreshHasFinished()
{
    m_bed->plug("1-1", "0403", "6014", 1);
    QObject parent;
    auto *model = new ADeviceListModel(&parent);
    const QAbstractItemModelTester tester(model);
    QCOMPARE(model->parent(), &parent);
    QTest::qWait(20);
    QCOMPARE(model->rowCount(), 0);
    QCOMPARE(model->columnCount(), 6);
    QVERIFY(QMetaObject::invokeMethod(model, "refresh")); // a slot that views and actions can be connected to
    QCOMPARE(model->rowCount(), 0);
    QTRY_COMPARE(model->rowCount(), 1);
    QVERIFY((std::is_base_of<QAbstractTableModel, ADeviceListModel>::value));
}

void TestADeviceListModel::columnsHaveTitles()
{
    const ADeviceListModel model;
    QStringList titles;
    for (int column = 0; column < model.columnCount(); ++column)
        titles << model.headerData(column, Qt::Horizontal).toString();
    QCOMPARE(titles, (QStringList{"Connected", "ID", "Name", "Description", "VendorID", "ProductID"}));
    for (int section : {-1, 6, INT_MAX, INT_MIN})
        QVERIFY(!model.headerData(section, Qt::Horizontal).isValid());
    for (int section : {0, 5, 99}) {
        QCOMPARE(model.headerData(section, Qt::Vertical), QVariant(section));
        QCOMPARE(model.headerData(section, Qt::Vertical).type(), QVariant::Int);
    }
    for (int role : {int(Qt::EditRole), int(Qt::DecorationRole), int(Qt::ToolTipRole), int(Qt::UserRole), -1}) {
        QVERIFY(!model.headerData(0, Qt::Horizontal, role).isValid());
        QVERIFY(!model.headerData(0, Qt::Vertical, role).isValid());
    }
}

void TestADeviceListModel::titlesAreTranslatable()
{
    const TranslatedTexts german("ADeviceListModel", {{"Connected", "Verbunden"}, {"ProductID", "Produkt"}});
    const ADeviceListModel model;
    QCOMPARE(model.headerData(0, Qt::Horizontal).toString(), QStringLiteral("Verbunden"));
    QCOMPARE(model.headerData(5, Qt::Horizontal).toString(), QStringLiteral("Produkt"));
}

void TestADeviceListModel::aRowShowsAChip()
{
    m_bed->plug("1-1", "0403", "6014", 7, "FT Ä", " Sonde µV ");
    ADeviceListModel model;
    const QAbstractItemModelTester tester(&model);
    refresh(&model);
    QCOMPARE(rowTexts(model, 0), (QStringList{"false", QString::number(0x04036014), QString::fromUtf8("FT Ä"),
                                              QString::fromUtf8("Sonde µV"), "1027", "24596"}));
    QList<int> types;
    for (int column = 0; column < model.columnCount(); ++column)
        types << model.index(0, column).data().userType();
    QCOMPARE(types, (QList<int>{QMetaType::Bool, QMetaType::Int, QMetaType::QString, QMetaType::QString, QMetaType::Int,
                                QMetaType::Int}));
}

void TestADeviceListModel::onlyTheDisplayRoleHasData()
{
    m_bed->plug("1-1", "0403", "6014", 1);
    ADeviceListModel model;
    refresh(&model);
    for (int column = 0; column < model.columnCount(); ++column) {
        for (int role : {int(Qt::EditRole), int(Qt::DecorationRole), int(Qt::ToolTipRole), int(Qt::CheckStateRole),
                         int(Qt::UserRole), -1})
            QVERIFY(!model.data(model.index(0, column), role).isValid());
        QVERIFY(model.data(model.index(0, column)).isValid());
        QVERIFY(!(model.flags(model.index(0, column)) & Qt::ItemIsEditable));
        QVERIFY(!model.setData(model.index(0, column), 1));
    }
}

void TestADeviceListModel::rowsHaveNoChildren()
{
    m_bed->plug("1-1", "0403", "6014", 1);
    ADeviceListModel model;
    refresh(&model);
    const QModelIndex cell = model.index(0, 0);
    QVERIFY(cell.isValid());
    QCOMPARE(model.rowCount(cell), 0);
    QCOMPARE(model.columnCount(cell), 0);
    QVERIFY(!model.index(0, 0, cell).isValid());
}

void TestADeviceListModel::listsAnalysersGeneratorsAndLoggersAlone()
{
    m_bed->plug("1-1", "1d6b", "0002", 1, "hub");
    m_bed->plug("1-2", "1209", "0001", 2, "analyser");
    m_bed->plug("1-3", "0403", "6015", 3, "generator");
    m_bed->plug("1-4", "10c4", "ea60", 4, "logger");
    m_bed->plug("1-5", "1209", "0002", 5, "unknown");
    ADeviceListModel model;
    refresh(&model);
    QCOMPARE(namesIn(model), (QStringList{"analyser", "generator", "logger"})); // and nothing simulated
}

void TestADeviceListModel::aChipWithTwoChannelsIsTwoRows()
{
    m_bed->plug("1-1", "0403", "6010", 1, "FT1", "Dual");
    m_bed->plug("1-2", "0403", "6014", 2, "FT2", "Single");
    ADeviceListModel model;
    refresh(&model);
    QCOMPARE(namesIn(model), (QStringList{"FT1A", "FT1B", "FT2"}));
    QCOMPARE(rowTexts(model, 1).at(ADeviceListModel::ColumnDescription), QStringLiteral("Dual B"));
}

void TestADeviceListModel::devicesComeAndGo()
{
    ADeviceListModel model;
    const QAbstractItemModelTester tester(&model);
    refresh(&model);
    QCOMPARE(model.rowCount(), 0);
    const QString first = m_bed->plug("1-1", "0403", "6014", 1, "first");
    refresh(&model);
    QCOMPARE(namesIn(model), QStringList{"first"});
    m_bed->plug("1-2", "0403", "6010", 2, "second");
    QTest::qWait(20);
    QCOMPARE(model.rowCount(), 1); // it doesn't follow the system by itself
    refresh(&model);
    QCOMPARE(namesIn(model), (QStringList{"first", "secondA", "secondB"}));
    m_bed->unplug(first);
    model.refresh();
    QCOMPARE(model.rowCount(), 3);
    QTRY_COMPARE(namesIn(model), (QStringList{"secondA", "secondB"}));
}

void TestADeviceListModel::eachRefreshResetsOnce()
{
    m_bed->plug("1-1", "0403", "6014", 1);
    ADeviceListModel model;
    QSignalSpy begins(&model, &QAbstractItemModel::modelAboutToBeReset);
    QSignalSpy ends(&model, &QAbstractItemModel::modelReset);
    for (int count = 1; count <= 3; ++count) { // also those that change nothing
        refresh(&model);
        QCOMPARE(begins.count(), count);
        QCOMPARE(ends.count(), count);
    }
}

void TestADeviceListModel::aRefreshWithinARefreshResetsOnce()
{
    m_bed->plug("1-1", "0403", "6014", 1);
    m_bed->plug("1-2", "0403", "6014", 2);
    ADeviceListModel model;
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    model.refresh();
    QCoreApplication::processEvents();
    model.refresh();
    QVERIFY(resets.wait());
    QTest::qWait(50);
    QCOMPARE(resets.count(), 1);
    QCOMPARE(model.rowCount(), 2);
}

void TestADeviceListModel::nothingThatDoesNotExistHasData()
{
    class Probe : public ADeviceListModel
    {
    public:
        QModelIndex indexAt(int row, int column) const { return createIndex(row, column); }
    };
    const QString path = m_bed->plug("1-1", "0403", "6014", 1);
    Probe model;
    refresh(&model);
    QVERIFY(model.indexAt(0, 0).data().isValid());
    for (const QModelIndex &index : {QModelIndex(), model.indexAt(0, 6), model.indexAt(0, INT_MAX), model.indexAt(1, 0),
                                     model.indexAt(INT_MAX, 1)})
        QVERIFY(!model.data(index).isValid());
    for (const auto &[row, column] : {std::pair(-1, 0), {0, -1}, {1, 0}, {0, 6}})
        QVERIFY(!model.index(row, column).isValid());
    const QStandardItemModel other(3, 6);
    QVERIFY(!model.data(other.index(0, 1)).isValid());

    const QModelIndex gone = model.index(0, 1);
    m_bed->unplug(path);
    refresh(&model);
    QVERIFY(!model.data(gone).isValid());
}

void TestADeviceListModel::chipsTravelInVariants()
{
    QVERIFY(QMetaType::type("AVeldoranChipInformation") != QMetaType::UnknownType);
    m_bed->plug("1-1", "0403", "6014", 1, "FT1");
    ADeviceListModel model;
    refresh(&model);
    const QVariant chip = QVariant::fromValue(model.chipinfo(model.index(0, 0)));
    QCOMPARE(QByteArray(chip.typeName()), QByteArray("AVeldoranChipInformation"));
    QCOMPARE(chip.value<AVeldoranChipInformation>().name, QStringLiteral("FT1"));
}

void TestADeviceListModel::aViewKeepsWorkingWhenItsRowsGo()
{
    m_bed->plug("1-1", "0403", "6014", 1, "stays");
    const QString second = m_bed->plug("1-2", "0403", "6010", 2, "goes");
    ADeviceListModel model;
    const QAbstractItemModelTester tester(&model);
    QTableView view;
    view.setModel(&model);
    view.show();
    refresh(&model);
    view.setCurrentIndex(model.index(2, 2));
    view.edit(model.index(2, 2));
    const QPersistentModelIndex held = model.index(2, 2);
    view.grab();
    m_bed->unplug(second);
    refresh(&model);
    view.grab();
    QCOMPARE(view.verticalHeader()->count(), 1);
    QVERIFY(!view.currentIndex().isValid());
    QVERIFY(!held.isValid());
    QCOMPARE(model.chipinfo(held).name, QStringLiteral("stays"));
}

void TestADeviceListModel::theModelMayBeDeletedWhileItRefreshesOrResets()
{
    m_bed->plug("1-1", "0403", "6014", 1);
    auto model = std::make_unique<ADeviceListModel>();
    model->refresh();
    model.reset();
    QTest::qWait(20);

    auto *other = new ADeviceListModel;
    bool isDeleted = false;
    connect(other, &QAbstractItemModel::modelReset, this, [&] {
        delete other;
        isDeleted = true;
    });
    other->refresh();
    QTRY_VERIFY(isDeleted);
}

void TestADeviceListModel::aChipIsFoundByAnyCellOfItsRow()
{
    m_bed->plug("1-1", "0403", "6014", 5, "FT1", "Probe");
    m_bed->plug("1-2", "1209", "0001", 6, "FT2", "Analyser");
    ADeviceListModel model;
    refresh(&model);
    for (int column = 0; column < model.columnCount(); ++column) {
        QVERIFY(model.chipinfo(model.index(0, column)) == chipOf(0x0403, 0x6014, "FT1", "Probe", kBus + 5));
        QVERIFY(model.chipinfo(model.index(1, column)) == chipOf(0x1209, 0x0001, "FT2", "Analyser", kBus + 6));
    }
}

void TestADeviceListModel::aChipIsFoundAfterItsRowHasMoved()
{
    const QString first = m_bed->plug("1-1", "0403", "6014", 5, "FT1", "Probe");
    m_bed->plug("1-2", "0403", "6014", 6, "FT2", "Probe");
    m_bed->plug("1-3", "0403", "6014", 7, "FT3", "Probe");
    ADeviceListModel model;
    refresh(&model);
    QStandardItemModel remembered;
    copyRow(model, 1, &remembered);
    m_bed->unplug(first);
    refresh(&model);
    QCOMPARE(namesIn(model), (QStringList{"FT2", "FT3"}));
    QVERIFY(model.chipinfo(remembered.index(0, 0)) == chipOf(0x0403, 0x6014, "FT2", "Probe", kBus + 6));
}

void TestADeviceListModel::aChipIsFoundThroughAProxy()
{
    m_bed->plug("1-1", "0403", "6014", 5, "FT1", "Probe");
    m_bed->plug("1-2", "0403", "6014", 6, "FT2", "Probe");
    ADeviceListModel model;
    QSortFilterProxyModel proxy;
    proxy.setSourceModel(&model);
    proxy.sort(ADeviceListModel::ColumnName, Qt::DescendingOrder);
    refresh(&model);
    QCOMPARE(model.chipinfo(proxy.index(0, 0)).name, QStringLiteral("FT2"));
    QCOMPARE(model.chipinfo(proxy.index(1, 3)).name, QStringLiteral("FT1"));
}

void TestADeviceListModel::aChipIsFoundByTheRowOfACopy_data()
{
    QTest::addColumn<int>("column"); // what differs from the second chip; 0 is not compared
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("isFound");
    QTest::newRow("as it is") << 0 << QVariant(true) << true;
    QTest::newRow("the number as text") << 1 << QVariant(QString::number(0x12090001)) << true;
    QTest::newRow("id") << 1 << QVariant(0x12090002) << false;
    QTest::newRow("name") << 2 << QVariant(QStringLiteral("ft2")) << false;
    QTest::newRow("name with a letter") << 2 << QVariant(QStringLiteral("FT2A")) << false;
    QTest::newRow("description") << 3 << QVariant() << false;
    QTest::newRow("vendor") << 4 << QVariant(0x1209 + 0x10000) << false;
    QTest::newRow("product") << 5 << QVariant(QStringLiteral("x")) << false;
}

void TestADeviceListModel::aChipIsFoundByTheRowOfACopy()
{
    QFETCH(int, column);
    QFETCH(QVariant, value);
    m_bed->plug("1-1", "0403", "6014", 5, "FT1", "Probe");
    m_bed->plug("1-2", "1209", "0001", 6, "FT2", "Probe");
    ADeviceListModel model;
    refresh(&model);
    QStandardItemModel copy;
    copyRow(model, 1, &copy);
    copy.setData(copy.index(0, column), value);
    QTEST(model.chipinfo(copy.index(0, 0)).name == QLatin1String("FT2"), "isFound");
}

void TestADeviceListModel::aRowThatIsGoneGivesTheFirstChip()
{
    m_bed->plug("1-1", "0403", "6014", 5, "FT1", "Probe");
    const QString second = m_bed->plug("1-2", "0403", "6014", 6, "FT2", "Probe");
    ADeviceListModel model;
    refresh(&model);
    const QModelIndex row = model.index(1, 0);
    m_bed->unplug(second);
    refresh(&model);
    QCOMPARE(model.chipinfo(row).name, QStringLiteral("FT1"));
    QCOMPARE(model.chipinfo(QModelIndex()).name, QStringLiteral("FT1"));
    const QStandardItemModel narrow(1, 1);
    QCOMPARE(model.chipinfo(narrow.index(0, 0)).name, QStringLiteral("FT1"));
}

void TestADeviceListModel::ofChipsThatShowTheSameTheFirstIsFound()
{
    m_bed->plug("1-1", "0403", "6014", 5, "FT1", "Probe");
    m_bed->plug("1-2", "0403", "6014", 6, "FT1", "Probe");
    ADeviceListModel model;
    refresh(&model);
    QCOMPARE(model.chipinfo(model.index(1, 0)).location, kBus + 5);
}

void TestADeviceListModel::anEmptyListGivesAnEmptyRecord()
{
    const ADeviceListModel model;
    QVERIFY(model.chipinfo(QModelIndex()) == AVeldoranChipInformation());
    QVERIFY(model.chipinfo(model.index(0, 0)) == AVeldoranChipInformation());
}

QTEST_MAIN(TestADeviceListModel)
#include "tst_adevicelistmodel.moc"
