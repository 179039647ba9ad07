#include "core/usbtestbed.h"
#include "views/opendevice.h"

#include <core/agpsloggerdevice.h>
#include <views/adevicelistmodel.h>

#include <QtCore/QSortFilterProxyModel>
#include <QtCore/QTranslator>
#include <QtGui/QStandardItemModel>
#include <QtTest/QAbstractItemModelTester>
#include <QtTest/QtTest>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QTableView>

#include <memory>

namespace {

constexpr quint32 kBus = 3 * 256;

QStringList rowTexts(const QAbstractItemModel &model, int row)
{
    QStringList texts;
    for (int column = 0; column < model.columnCount(); ++column)
        texts << model.index(row, column).data().toString();
    return texts;
}

QStringList namesIn(const QAbstractItemModel &model)
{
    QStringList names;
    for (int row = 0; row < model.rowCount(); ++row)
        names << model.index(row, ADeviceListModel::ColumnName).data().toString();
    return names;
}

QList<bool> connectedIn(const QAbstractItemModel &model)
{
    QList<bool> states;
    for (int row = 0; row < model.rowCount(); ++row)
        states << model.index(row, ADeviceListModel::ColumnConnected).data().toBool();
    return states;
}

void copyRow(const QAbstractItemModel &model, int row, QStandardItemModel *copy)
{
    QList<QStandardItem *> items;
    for (int column = 0; column < model.columnCount(); ++column) {
        items << new QStandardItem;
        items.last()->setData(model.index(row, column).data(), Qt::DisplayRole);
    }
    copy->appendRow(items);
}

void refresh(ADeviceListModel *model)
{
    QSignalSpy resets(model, &QAbstractItemModel::modelReset);
    model->refresh();
    QVERIFY(resets.wait());
}

} // namespace

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

    void anOpenDeviceIsConnected_data();
    void anOpenDeviceIsConnected();
    void channelsOfOneChipAreToldApart();
    void anOpenDeviceWithoutALetterIsBothChannels();
    void theReceiverOfAnOpenDeviceIsConnected();
    void theFirstMatchEndsTheSearch();
    void driversAreAskedForEveryRole();
    void openingAndClosingResetNothing();
    void nullAmongTheOpenDevicesIsPassedOver();

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
    QVERIFY(AVeldoranFactory::openDevices().isEmpty());
}

void TestADeviceListModel::cleanup()
{
    m_bed.reset();
    AVeldoranFactory::openDevices().clear();
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
    class Marked : public QTranslator
    {
    public:
        bool isEmpty() const override { return false; }
        QString translate(const char *context, const char *text, const char *, int) const override
        {
            return qstrcmp(context, "ADeviceListModel") == 0 ? QStringLiteral("T:") + QLatin1String(text) : QString();
        }
    };
    const ADeviceListModel model;
    Marked translator;
    QCoreApplication::installTranslator(&translator);
    const QString first = model.headerData(0, Qt::Horizontal).toString();
    const QString last = model.headerData(5, Qt::Horizontal).toString();
    QCoreApplication::removeTranslator(&translator);
    QCOMPARE(first, QStringLiteral("T:Connected"));
    QCOMPARE(last, QStringLiteral("T:ProductID"));
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

void TestADeviceListModel::anOpenDeviceIsConnected_data()
{
    QTest::addColumn<QString>("listedName"); // of a chip 0403:6014 with these texts at this device number
    QTest::addColumn<QString>("listedDescription");
    QTest::addColumn<int>("listedDevice");
    QTest::addColumn<AVeldoranChipInformation>("open");
    QTest::addColumn<bool>("connected");
    const auto row = [](const char *title, const char *name, const char *description,
                        const AVeldoranChipInformation &open, bool connected, int device = 5) {
        QTest::newRow(title) << QString::fromUtf8(name) << QString::fromUtf8(description) << device << open
                             << connected;
    };
    const auto open = [](const char *name, const char *description, quint32 location = kBus + 5) {
        return chipOf(0x0403, 0x6014, QString::fromUtf8(name), QString::fromUtf8(description), location);
    };
    row("the same", "FT1", "Probe", open("FT1", "Probe"), true);
    row("open with the letter A", "FT1", "Probe", open("FT1A", "Probe A"), true);
    row("open with the letter B", "FT1", "Probe", open("FT1B", "Probe B"), true);
    row("listed with the letter A", "FT1A", "Probe A", open("FT1", "Probe"), true);
    row("listed with the letter B", "FT1B", "Probe B", open("FT1", "Probe"), true);
    row("the same letter", "FT1A", "Probe A", open("FT1A", "Probe A"), true);
    row("open A, listed B", "FT1B", "Probe B", open("FT1A", "Probe A"), false);
    row("open B, listed A", "FT1A", "Probe A", open("FT1B", "Probe B"), false);
    row("a letter on either side, one each", "FT1A", "Probe", open("FT1", "Probe A"), true);
    row("only the names differ by a letter", "FT1", "Probe", open("FT1A", "Probe"), true);
    row("only the descriptions differ by a letter", "FT1", "Probe", open("FT1", "Probe B"), true);
    row("different letters in the names alone", "FT1B", "Probe", open("FT1A", "Probe"), false);
    row("a serial number that ends in a letter", "FT1B", "Probe", open("FT1BA", "Probe A"), false);
    row("two letters more", "FT1", "Probe", open("FT1AB", "Probe A"), false);
    row("another letter", "FT1", "Probe", open("FT1C", "Probe C"), false);
    row("a small letter", "FT1", "Probe", open("FT1a", "Probe a"), false);
    row("a blank in the name", "FT1", "Probe", open("FT1 A", "Probe A"), false);
    row("no blank in the description", "FT1", "Probe", open("FT1A", "ProbeA"), false);
    row("another sign before the letter", "FT1", "Probe", open("FT1A", "Probe-A"), false);
    row("two blanks before the letter", "FT1", "Probe", open("FT1A", "Probe  A"), false);
    row("another name", "FT1", "Probe", open("FT2", "Probe"), false);
    row("a longer name", "FT1", "Probe", open("FT12", "Probe"), false);
    row("another case of the name", "FT1", "Probe", open("ft1", "Probe"), false);
    row("another case of the description", "FT1", "Probe", open("FT1", "PROBE"), false);
    row("another description", "FT1", "Probe", open("FT1", "Sonde"), false);
    row("no texts", "", "", open("", ""), true);
    row("letters alone against nothing", "", "", open("A", " A"), true);
    row("a description that is the letter", "", "", open("A", "A"), false);
    row("the letter as a name", "B", "Probe", open("", "Probe"), true);
    row("beyond Latin", "\xc3\x84\xe2\x82\xac", "\xce\xbcV",
        open("\xc3\x84\xe2\x82\xac"
             "A",
             "\xce\xbcV A"),
        true);
    row("the open one has no location", "FT1", "Probe", open("FT1", "Probe", 0), true);
    row("the listed one has no location", "FT1", "Probe", open("FT1", "Probe"), true, 0);
    row("neither has a location", "FT1", "Probe", open("FT1", "Probe", 0), true, 0);
    row("another location", "FT1", "Probe", open("FT1", "Probe", kBus + 6), false);
    row("no location helps no other name", "FT1", "Probe", open("FT2", "Probe", 0), false);
    AVeldoranChipInformation other = open("FT1", "Probe");
    other.vendorId = 0x0404;
    row("another vendor", "FT1", "Probe", other, false);
    other = open("FT1", "Probe");
    other.productId = 0x6015;
    row("another product", "FT1", "Probe", other, false);
    other = open("FT1", "Probe");
    ++other.id;
    row("another id", "FT1", "Probe", other, false);
    row("an empty record", "FT1", "Probe", AVeldoranChipInformation(), false);
}

void TestADeviceListModel::anOpenDeviceIsConnected()
{
    QFETCH(QString, listedName);
    QFETCH(QString, listedDescription);
    QFETCH(int, listedDevice);
    QFETCH(AVeldoranChipInformation, open);
    if (listedDevice == 0)
        g_free(umockdev_testbed_add_device(m_bed->handle(), "usb", "1-1", nullptr, "idVendor", "0403", "idProduct",
                                           "6014", "serial", listedName.toUtf8().constData(), "product",
                                           listedDescription.toUtf8().constData(), nullptr, "DEVTYPE", "usb_device",
                                           nullptr));
    else
        m_bed->plug("1-1", "0403", "6014", listedDevice, listedName.toUtf8().constData(),
                    listedDescription.toUtf8().constData());
    ADeviceListModel model;
    refresh(&model);
    QCOMPARE(namesIn(model), QStringList{listedName});
    QCOMPARE(model.chipinfo(model.index(0, 0)).location, listedDevice == 0 ? 0U : kBus + listedDevice);
    QCOMPARE(connectedIn(model), QList<bool>{false});
    const OpenDevice device(open);
    QTEST(connectedIn(model).first(), "connected");
}

void TestADeviceListModel::channelsOfOneChipAreToldApart()
{
    m_bed->plug("1-1", "0403", "6010", 5, "FT1", "Dual");
    ADeviceListModel model;
    refresh(&model);
    const OpenDevice device(chipOf(0x0403, 0x6010, "FT1B", "Dual B", kBus + 5));
    QCOMPARE(connectedIn(model), (QList<bool>{false, true}));
}

void TestADeviceListModel::anOpenDeviceWithoutALetterIsBothChannels()
{
    m_bed->plug("1-1", "0403", "6010", 5, "FT1", "Dual");
    ADeviceListModel model;
    refresh(&model);
    const OpenDevice device(chipOf(0x0403, 0x6010, "FT1", "Dual", kBus + 5));
    QCOMPARE(connectedIn(model), (QList<bool>{true, true}));
}

void TestADeviceListModel::theReceiverOfAnOpenDeviceIsConnected()
{
    m_bed->plug("1-1", "0403", "6014", 5, "FT1", "Analyser");
    m_bed->plug("1-2", "10c4", "ea60", 6, "R1", "Receiver");
    m_bed->plug("1-3", "10c4", "ea60", 7, "R2", "Receiver");
    ADeviceListModel model;
    refresh(&model);
    AGpsLoggerDevice receiver(nullptr, nullptr);
    OpenDevice device(chipOf(0x0403, 0x6014, "FT1", "Analyser", kBus + 5));
    device.setGpsDevice(&receiver);
    QCOMPARE(connectedIn(model), (QList<bool>{true, false, false}));
    receiver.setChipinfo(chipOf(0x10c4, 0xea60, "R1A", "Receiver A", 0));
    QCOMPARE(connectedIn(model), (QList<bool>{true, true, false}));
    device.setGpsDevice(nullptr);
    QCOMPARE(connectedIn(model), (QList<bool>{true, false, false}));
}

void TestADeviceListModel::theFirstMatchEndsTheSearch()
{
    m_bed->plug("1-1", "0403", "6014", 5, "FT1", "Probe");
    ADeviceListModel model;
    refresh(&model);
    const OpenDevice other(chipOf(0x0403, 0x6014, "FT0", "Probe", 0));
    const OpenDevice match(chipOf(0x0403, 0x6014, "FT1", "Probe", 0));
    const OpenDevice behind(chipOf(0x0403, 0x6014, "FT1", "Probe", 0));
    QVERIFY(model.index(0, 0).data().toBool());
    QCOMPARE(other.takeAskedCount(), 1);
    QCOMPARE(match.takeAskedCount(), 1);
    QCOMPARE(behind.takeAskedCount(), 0);
}

void TestADeviceListModel::driversAreAskedForEveryRole()
{
    m_bed->plug("1-1", "0403", "6014", 5, "FT1", "Probe");
    ADeviceListModel model;
    refresh(&model);
    const OpenDevice device(chipOf(0x0403, 0x6014, "FT1", "Probe", 0));
    model.index(0, ADeviceListModel::ColumnName).data();
    QCOMPARE(device.takeAskedCount(), 1);
    QVERIFY(!model.index(0, ADeviceListModel::ColumnName).data(Qt::DecorationRole).isValid());
    QCOMPARE(device.takeAskedCount(), 1);
}

void TestADeviceListModel::openingAndClosingResetNothing()
{
    m_bed->plug("1-1", "0403", "6014", 5, "FT1", "Probe");
    ADeviceListModel model;
    refresh(&model);
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    {
        const OpenDevice device(chipOf(0x0403, 0x6014, "FT1", "Probe", 0));
        QCOMPARE(connectedIn(model), QList<bool>{true});
    }
    QCOMPARE(connectedIn(model), QList<bool>{false});
    QCOMPARE(resets.count() + changes.count(), 0);
}

void TestADeviceListModel::nullAmongTheOpenDevicesIsPassedOver()
{
    m_bed->plug("1-1", "0403", "6014", 5, "FT1", "Probe");
    ADeviceListModel model;
    refresh(&model);
    AVeldoranFactory::openDevices().append(nullptr);
    QCOMPARE(connectedIn(model), QList<bool>{false});
    const OpenDevice device(chipOf(0x0403, 0x6014, "FT1", "Probe", 0));
    QCOMPARE(connectedIn(model), QList<bool>{true});
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
