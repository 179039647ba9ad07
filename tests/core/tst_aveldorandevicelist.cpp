#include "core/usbtestbed.h"

#include <core/asettings.h>
#include <core/asimulateddevice.h>
#include <core/aveldorandevicefilter.h>
#include <core/aveldorandevicelist.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTimer>
#include <QtTest/QtTest>

#include <memory>

class TestAVeldoranDeviceList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void isEmptyBeforeTheFirstFetch();
    void aSystemWithoutDevicesGivesAnEmptyList();
    void anEntrySaysWhatTheSystemKnows();
    void withoutAFilterEveryUsbDeviceIsListed();
    void aDeviceNeedsNoInitialisationByUdev();
    void interfacesAndOtherSubsystemsAreNoDevices();
    void missingTextsAreEmpty();
    void aChipWithTwoChannelsIsTwoEntries();
    void stopsAtTheFirstMatch();
    void devicesComeAndGo();
    void aDeviceThatGoesWhileItIsListedIsLeftOut();
    void entriesStayUntilTheNextOnesAreComplete();
    void finishedNeverComesFromWithinFetch();
    void twoFetchesFinishOnce();
    void aFetchAmidAnotherListsEachDeviceOnce();
    void theEventLoopTurnsWhileDevicesAreListed();
    void theListMayBeDeletedWhileItFetchesOrFinishes();
    void ownsItsFilter();
    void theFilterChoosesByKind_data();
    void theFilterChoosesByKind();
    void theSettingAddsChips_data();
    void theSettingAddsChips();
    void aSimulatedDeviceComesLast();

private:
    static bool fetch(AVeldoranDeviceList &list);

    std::unique_ptr<UsbTestbed> m_bed;
    QTemporaryDir m_directory;
};

namespace {

QStringList namesIn(const AVeldoranDeviceList &list)
{
    QStringList names;
    for (int i = 0; i < list.count(); ++i)
        names.append(list.at(i).name);
    return names;
}

} // namespace

void TestAVeldoranDeviceList::init()
{
    m_bed = std::make_unique<UsbTestbed>();
    QVERIFY2(m_bed->isUsable(), "to be run under umockdev-wrapper");
    auto *settings = new QSettings(m_directory.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat, this);
    settings->clear();
    ASettings::setApplicationSettings(settings);
}

void TestAVeldoranDeviceList::cleanup()
{
    delete ASettings::applicationSettings();
    m_bed.reset();
}

bool TestAVeldoranDeviceList::fetch(AVeldoranDeviceList &list)
{
    QSignalSpy finished(&list, &AVeldoranDeviceList::finished);
    list.fetch();
    return finished.wait();
}

void TestAVeldoranDeviceList::isEmptyBeforeTheFirstFetch()
{
    m_bed->plug("1-1", "0403", "6014", 1);
    const AVeldoranDeviceList list(nullptr);
    QCOMPARE(list.count(), 0);
    QVERIFY(list.at(0) == AVeldoranChipInformation());
    QVERIFY(list.at(-1) == AVeldoranChipInformation());
}

void TestAVeldoranDeviceList::aSystemWithoutDevicesGivesAnEmptyList()
{
    AVeldoranDeviceList list(nullptr);
    QVERIFY(fetch(list));
    QCOMPARE(list.count(), 0);
}

void TestAVeldoranDeviceList::anEntrySaysWhatTheSystemKnows()
{
    m_bed->plug("1-1", "1d6b", "00ff", 17, "Ser Ä 7\n", " Sonde µV ");
    AVeldoranDeviceList list(nullptr);
    QVERIFY(fetch(list));
    QCOMPARE(list.count(), 1);
    QCOMPARE(list.at(0).id, 0x1d6b00ff);
    QCOMPARE(list.at(0).vendorId, static_cast<unsigned short>(0x1d6b));
    QCOMPARE(list.at(0).productId, static_cast<unsigned short>(0x00ff));
    QCOMPARE(list.at(0).name, QString::fromUtf8("Ser Ä 7"));
    QCOMPARE(list.at(0).description, QString::fromUtf8("Sonde µV"));
    QCOMPARE(list.at(0).location, 3U * 256 + 17);
    QVERIFY(list.at(1) == AVeldoranChipInformation());
}

void TestAVeldoranDeviceList::withoutAFilterEveryUsbDeviceIsListed()
{
    m_bed->plug("1-1", "0403", "6014", 1, "S1");
    m_bed->plug("1-2", "1d6b", "0002", 2, "S2");
    AVeldoranDeviceList list(nullptr);
    QVERIFY(fetch(list));
    QCOMPARE(namesIn(list), (QStringList{QStringLiteral("S1"), QStringLiteral("S2")}));
    list.setDeviceFilter(new AVeldoranDeviceFilter(true, true, true, false));
    QVERIFY(fetch(list));
    QCOMPARE(namesIn(list), QStringList{QStringLiteral("S1")});
    list.setDeviceFilter(nullptr);
    QVERIFY(fetch(list));
    QCOMPARE(list.count(), 2);
}

void TestAVeldoranDeviceList::aDeviceNeedsNoInitialisationByUdev()
{
    // The test bed has no database of udev: every device in it is one that udev has not seen.
    m_bed->plug("1-1", "0403", "6014", 1);
    AVeldoranDeviceList list(nullptr);
    QVERIFY(fetch(list));
    QCOMPARE(list.count(), 1);
}

void TestAVeldoranDeviceList::interfacesAndOtherSubsystemsAreNoDevices()
{
    const QByteArray parent = m_bed->plug("1-1", "0403", "6014", 1).toUtf8();
    g_free(umockdev_testbed_add_device(m_bed->handle(), "usb", "1-1:1.0", parent.constData(), "idVendor", "0403",
                                       "idProduct", "6014", nullptr, "DEVTYPE", "usb_interface", nullptr));
    g_free(umockdev_testbed_add_device(m_bed->handle(), "usb", "1-9", nullptr, "idVendor", "0403", "idProduct", "6014",
                                       nullptr, nullptr, nullptr));
    g_free(umockdev_testbed_add_device(m_bed->handle(), "tty", "ttyUSB0", parent.constData(), "idVendor", "0403",
                                       "idProduct", "6014", nullptr, "DEVTYPE", "usb_device", nullptr));
    AVeldoranDeviceList list(nullptr);
    QVERIFY(fetch(list));
    QCOMPARE(list.count(), 1);
}

void TestAVeldoranDeviceList::missingTextsAreEmpty()
{
    g_free(umockdev_testbed_add_device(m_bed->handle(), "usb", "1-1", nullptr, "idVendor", "0403", "idProduct", "6014",
                                       nullptr, "DEVTYPE", "usb_device", nullptr));
    g_free(umockdev_testbed_add_device(m_bed->handle(), "usb", "1-2", nullptr, "idVendor", "xyz", "idProduct", "123456",
                                       "busnum", "-1", nullptr, "DEVTYPE", "usb_device", nullptr));
    AVeldoranDeviceList list(nullptr);
    QVERIFY(fetch(list));
    QCOMPARE(list.count(), 2);
    QCOMPARE(list.at(0).id, 0x04036014);
    QVERIFY(list.at(0).name.isEmpty());
    QVERIFY(list.at(0).description.isEmpty());
    QCOMPARE(list.at(0).location, 0U);
    QVERIFY(list.at(1) == AVeldoranChipInformation());
}

void TestAVeldoranDeviceList::aChipWithTwoChannelsIsTwoEntries()
{
    m_bed->plug("1-1", "0403", "6010", 5, "FT1", "Dual RS232");
    m_bed->plug("1-2", "0403", "6014", 6, "FT2A", "Single B");
    AVeldoranDeviceList list(nullptr);
    list.setDeviceFilter(new AVeldoranDeviceFilter(true, false, false, false));
    QVERIFY(fetch(list));
    QCOMPARE(namesIn(list), (QStringList{QStringLiteral("FT1A"), QStringLiteral("FT1B"), QStringLiteral("FT2A")}));
    QCOMPARE(list.at(0).description, QStringLiteral("Dual RS232 A"));
    QCOMPARE(list.at(1).description, QStringLiteral("Dual RS232 B"));
    QCOMPARE(list.at(2).description, QStringLiteral("Single B"));
    QCOMPARE(list.at(0).id, list.at(1).id);
    QCOMPARE(list.at(0).location, list.at(1).location);
}

void TestAVeldoranDeviceList::stopsAtTheFirstMatch()
{
    m_bed->plug("1-1", "1d6b", "0002", 1, "hub");
    m_bed->plug("1-2", "0403", "6010", 2, "two");
    m_bed->plug("1-3", "0403", "6014", 3, "one");
    AVeldoranDeviceList list(nullptr);
    list.setDeviceFilter(new AVeldoranDeviceFilter(true, false, false, true));
    list.setStopAtFirstMatch(true);
    QVERIFY(fetch(list));
    QCOMPARE(namesIn(list), QStringList{QStringLiteral("twoA")});
    list.setStopAtFirstMatch(false);
    QVERIFY(fetch(list));
    QCOMPARE(list.count(), 4);
}

void TestAVeldoranDeviceList::devicesComeAndGo()
{
    AVeldoranDeviceList list(nullptr);
    const QString first = m_bed->plug("1-1", "0403", "6014", 1, "first");
    QVERIFY(fetch(list));
    QCOMPARE(namesIn(list), QStringList{QStringLiteral("first")});
    m_bed->plug("1-2", "0403", "6010", 2, "second");
    QVERIFY(fetch(list));
    QCOMPARE(list.count(), 3);
    m_bed->unplug(first);
    QVERIFY(fetch(list));
    QCOMPARE(namesIn(list), (QStringList{QStringLiteral("secondA"), QStringLiteral("secondB")}));
    m_bed->plug("1-1", "0403", "6014", 9, "first");
    QVERIFY(fetch(list));
    QCOMPARE(list.count(), 3);
}

void TestAVeldoranDeviceList::aDeviceThatGoesWhileItIsListedIsLeftOut()
{
    m_bed->plug("1-1", "0403", "6014", 1, "first");
    const QString second = m_bed->plug("1-2", "0403", "6014", 2, "second");
    m_bed->plug("1-3", "0403", "6014", 3, "third");
    AVeldoranDeviceList list(nullptr);
    QSignalSpy finished(&list, &AVeldoranDeviceList::finished);
    list.fetch();
    QCoreApplication::processEvents(); // the scan, or the scan and the first device
    QCOMPARE(finished.count(), 0);
    m_bed->unplug(second);
    QVERIFY(finished.wait());
    QCOMPARE(namesIn(list), (QStringList{QStringLiteral("first"), QStringLiteral("third")}));
}

void TestAVeldoranDeviceList::entriesStayUntilTheNextOnesAreComplete()
{
    const QString path = m_bed->plug("1-1", "0403", "6014", 1, "first");
    AVeldoranDeviceList list(nullptr);
    QVERIFY(fetch(list));
    m_bed->unplug(path);
    list.fetch();
    QCOMPARE(list.count(), 1);
    int countAtFinish = -1;
    connect(&list, &AVeldoranDeviceList::finished, this, [&] { countAtFinish = list.count(); });
    QVERIFY(QTest::qWaitFor([&] { return countAtFinish >= 0; }));
    QCOMPARE(countAtFinish, 0);
}

void TestAVeldoranDeviceList::finishedNeverComesFromWithinFetch()
{
    AVeldoranDeviceList list(nullptr);
    QSignalSpy finished(&list, &AVeldoranDeviceList::finished);
    list.fetch();
    QCOMPARE(finished.count(), 0);
    QVERIFY(finished.wait());
}

void TestAVeldoranDeviceList::twoFetchesFinishOnce()
{
    m_bed->plug("1-1", "0403", "6014", 1);
    AVeldoranDeviceList list(nullptr);
    QSignalSpy finished(&list, &AVeldoranDeviceList::finished);
    list.fetch();
    QCoreApplication::processEvents();
    list.fetch();
    QVERIFY(finished.wait());
    QTest::qWait(50);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(list.count(), 1);
}

void TestAVeldoranDeviceList::aFetchAmidAnotherListsEachDeviceOnce()
{
    constexpr int kDevices = 20;
    for (int i = 0; i < kDevices; ++i)
        m_bed->plug(qPrintable(QStringLiteral("1-%1").arg(i)), "0403", "6014", i);
    AVeldoranDeviceList list(nullptr);
    QSignalSpy finished(&list, &AVeldoranDeviceList::finished);
    list.fetch();
    for (int turn = 0; turn < 5; ++turn)
        QCoreApplication::processEvents();
    QCOMPARE(finished.count(), 0);
    list.fetch();
    QVERIFY(finished.wait());
    QCOMPARE(list.count(), kDevices);
}

void TestAVeldoranDeviceList::theEventLoopTurnsWhileDevicesAreListed()
{
    constexpr int kDevices = 60;
    for (int i = 0; i < kDevices; ++i)
        m_bed->plug(qPrintable(QStringLiteral("1-%1").arg(i)), "0403", "6014", i);
    AVeldoranDeviceList list(nullptr);
    int turns = 0;
    QTimer other;
    connect(&other, &QTimer::timeout, this, [&] { ++turns; });
    other.start(0);
    QVERIFY(fetch(list));
    QCOMPARE(list.count(), kDevices);
    QVERIFY2(turns > kDevices / 2, qPrintable(QString::number(turns)));
}

void TestAVeldoranDeviceList::theListMayBeDeletedWhileItFetchesOrFinishes()
{
    m_bed->plug("1-1", "0403", "6014", 1);
    auto list = std::make_unique<AVeldoranDeviceList>(nullptr);
    list->fetch();
    list.reset();
    QTest::qWait(20);

    auto *other = new AVeldoranDeviceList(nullptr);
    bool isDeleted = false;
    connect(other, &AVeldoranDeviceList::finished, this, [&] {
        delete other;
        isDeleted = true;
    });
    other->fetch();
    QVERIFY(QTest::qWaitFor([&] { return isDeleted; }));
}

void TestAVeldoranDeviceList::ownsItsFilter()
{
    class Counted : public AVeldoranDeviceFilter
    {
    public:
        explicit Counted(int *alive)
            : AVeldoranDeviceFilter(true, true, true, false)
            , m_alive(alive)
        {
            ++*m_alive;
        }
        ~Counted() override { --*m_alive; }

    private:
        int *m_alive;
    };
    int alive = 0;
    {
        AVeldoranDeviceList list(nullptr);
        auto *filter = new Counted(&alive);
        list.setDeviceFilter(filter);
        list.setDeviceFilter(filter);
        QCOMPARE(alive, 1);
        list.setDeviceFilter(new Counted(&alive));
        QCOMPARE(alive, 1);
    }
    QCOMPARE(alive, 0);
}

void TestAVeldoranDeviceList::theFilterChoosesByKind_data()
{
    QTest::addColumn<bool>("analysers");
    QTest::addColumn<bool>("generators");
    QTest::addColumn<bool>("gpsLoggers");
    QTest::addColumn<QStringList>("names");
    const QStringList analysers{QStringLiteral("a1A"), QStringLiteral("a1B"), QStringLiteral("a2"),
                                QStringLiteral("a3")};
    const QStringList generators{QStringLiteral("g1"), QStringLiteral("g2")};
    const QStringList loggers{QStringLiteral("l1"), QStringLiteral("l2")};
    QTest::newRow("none") << false << false << false << QStringList();
    QTest::newRow("analysers") << true << false << false << analysers;
    QTest::newRow("generators") << false << true << false << generators;
    QTest::newRow("GPS loggers") << false << false << true << loggers;
    QTest::newRow("all") << true << true << true << analysers + generators + loggers;
}

void TestAVeldoranDeviceList::theFilterChoosesByKind()
{
    QFETCH(bool, analysers);
    QFETCH(bool, generators);
    QFETCH(bool, gpsLoggers);
    m_bed->plug("1-1", "0403", "6010", 1, "a1");
    m_bed->plug("1-2", "0403", "6014", 2, "a2");
    m_bed->plug("1-3", "1209", "0001", 3, "a3");
    m_bed->plug("1-4", "0403", "6015", 4, "g1");
    m_bed->plug("1-5", "04d8", "000a", 5, "g2");
    m_bed->plug("1-6", "0403", "6001", 6, "l1");
    m_bed->plug("1-7", "10c4", "ea60", 7, "l2");
    m_bed->plug("1-8", "1209", "0002", 8, "no1");
    m_bed->plug("1-9", "6010", "0403", 9, "no2");
    AVeldoranDeviceList list(nullptr);
    list.setDeviceFilter(new AVeldoranDeviceFilter(analysers, generators, gpsLoggers, false));
    QVERIFY(fetch(list));
    QTEST(namesIn(list), "names");
}

void TestAVeldoranDeviceList::theSettingAddsChips_data()
{
    QTest::addColumn<QVariant>("setting");
    QTest::addColumn<unsigned int>("kinds");
    const auto row = [](const char *name, const QVariant &setting, unsigned int kinds) {
        QTest::newRow(name) << setting << kinds;
    };
    row("none", QVariant(), 0U);
    row("one", QStringLiteral("1209:0002=analyser"), 1U);
    row("generator", QStringLiteral("1209:2=generator"), 2U);
    row("logger", QStringLiteral(" 1209 : 0002 = GpsLogger "), 4U);
    row("several", QStringList{QStringLiteral("ffff:ffff=generator"), QStringLiteral("1209:0002=analyser")}, 1U);
    row("two kinds", QStringList{QStringLiteral("1209:0002=gpslogger"), QStringLiteral("1209:0002=analyser")}, 5U);
    row("another chip", QStringLiteral("1209:0003=analyser"), 0U);
    row("no kind", QStringLiteral("1209:0002"), 0U);
    row("an unknown kind", QStringLiteral("1209:0002=printer"), 0U);
    row("no product", QStringLiteral("1209=analyser"), 0U);
    row("no hexadecimal number", QStringLiteral("12x9:0002=analyser"), 0U);
    row("a number with a prefix", QStringLiteral("0x1209:0x2=analyser"), 0U);
    row("a number with a sign", QStringLiteral("+1209:2=analyser"), 0U);
    row("more than four digits", QStringLiteral("00001209:00002=analyser"), 0U);
    row("an empty number", QStringLiteral("1209:=analyser"), 0U);
    row("too many parts", QStringLiteral("1209:0002:1=analyser"), 0U);
    row("too many signs", QStringLiteral("1209:0002=analyser=1"), 0U);
    row("empty", QString(), 0U);
    row("a number", 12, 0U);
}

void TestAVeldoranDeviceList::theSettingAddsChips()
{
    QFETCH(QVariant, setting);
    ASettings::setValue(QStringLiteral("Devices/UsbIds"), setting);
    QTEST(AVeldoranDeviceFilter::kindsOf(0x1209, 0x0002), "kinds");
    QCOMPARE(AVeldoranDeviceFilter::kindsOf(0x0403, 0x6014), 1U);

    QFETCH(unsigned int, kinds);
    m_bed->plug("1-1", "1209", "0002", 1);
    AVeldoranDeviceList list(nullptr);
    list.setDeviceFilter(new AVeldoranDeviceFilter(true, false, false, false));
    QVERIFY(fetch(list));
    QCOMPARE(list.count() == 1, (kinds & AVeldoranDeviceFilter::Analyser) != 0);
}

void TestAVeldoranDeviceList::aSimulatedDeviceComesLast()
{
    m_bed->plug("1-1", "0403", "6001", 1, "logger");
    AVeldoranDeviceList list(nullptr);
    list.setDeviceFilter(new AVeldoranDeviceFilter(true, true, true, true));
    QVERIFY(fetch(list));
    QCOMPARE(list.count(), 2);
    QVERIFY(list.at(1) == ASimulatedDevice::simulatedChip());
    list.setDeviceFilter(new AVeldoranDeviceFilter(false, false, false, true));
    QVERIFY(fetch(list));
    QCOMPARE(list.count(), 1);
    QVERIFY(list.at(0) == ASimulatedDevice::simulatedChip());
}

QTEST_GUILESS_MAIN(TestAVeldoranDeviceList)
#include "tst_aveldorandevicelist.moc"
