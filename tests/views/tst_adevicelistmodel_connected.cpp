#include "core/usbtestbed.h"
#include "views/devicetable.h"
#include "views/opendevice.h"

#include <core/agpsloggerdevice.h>

#include <memory>

using namespace devicetable;

// The column "Connected": which chips the application has open.
class TestADeviceListModelConnected : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void anOpenDeviceIsConnected_data();
    void anOpenDeviceIsConnected();
    void channelsOfOneChipAreToldApart();
    void anOpenDeviceWithoutALetterIsBothChannels();
    void theReceiverOfAnOpenDeviceIsConnected();
    void theFirstMatchEndsTheSearch();
    void driversAreAskedForEveryRole();
    void openingAndClosingResetNothing();
    void nullAmongTheOpenDevicesIsPassedOver();

private:
    std::unique_ptr<UsbTestbed> m_bed;
};

void TestADeviceListModelConnected::init()
{
    m_bed = std::make_unique<UsbTestbed>();
    QVERIFY2(m_bed->isUsable(), "to be run under umockdev-wrapper");
    QVERIFY(AVeldoranFactory::openDevices().isEmpty());
}

void TestADeviceListModelConnected::cleanup()
{
    m_bed.reset();
    AVeldoranFactory::openDevices().clear();
}

void TestADeviceListModelConnected::anOpenDeviceIsConnected_data()
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

void TestADeviceListModelConnected::anOpenDeviceIsConnected()
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

void TestADeviceListModelConnected::channelsOfOneChipAreToldApart()
{
    m_bed->plug("1-1", "0403", "6010", 5, "FT1", "Dual");
    ADeviceListModel model;
    refresh(&model);
    const OpenDevice device(chipOf(0x0403, 0x6010, "FT1B", "Dual B", kBus + 5));
    QCOMPARE(connectedIn(model), (QList<bool>{false, true}));
}

void TestADeviceListModelConnected::anOpenDeviceWithoutALetterIsBothChannels()
{
    m_bed->plug("1-1", "0403", "6010", 5, "FT1", "Dual");
    ADeviceListModel model;
    refresh(&model);
    const OpenDevice device(chipOf(0x0403, 0x6010, "FT1", "Dual", kBus + 5));
    QCOMPARE(connectedIn(model), (QList<bool>{true, true}));
}

void TestADeviceListModelConnected::theReceiverOfAnOpenDeviceIsConnected()
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

void TestADeviceListModelConnected::theFirstMatchEndsTheSearch()
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

void TestADeviceListModelConnected::driversAreAskedForEveryRole()
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

void TestADeviceListModelConnected::openingAndClosingResetNothing()
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

void TestADeviceListModelConnected::nullAmongTheOpenDevicesIsPassedOver()
{
    m_bed->plug("1-1", "0403", "6014", 5, "FT1", "Probe");
    ADeviceListModel model;
    refresh(&model);
    AVeldoranFactory::openDevices().append(nullptr);
    QCOMPARE(connectedIn(model), QList<bool>{false});
    const OpenDevice device(chipOf(0x0403, 0x6014, "FT1", "Probe", 0));
    QCOMPARE(connectedIn(model), QList<bool>{true});
}

QTEST_GUILESS_MAIN(TestADeviceListModelConnected)
#include "tst_adevicelistmodel_connected.moc"
