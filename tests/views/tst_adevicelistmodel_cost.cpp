#include "tests/views/allocationcount.h"
#include "tests/views/manydevices.h"

#include <QtTest/QtTest>

class TestADeviceListModelCost : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void comparingAllocatesNothing_data();
    void comparingAllocatesNothing();
    void theCounterCounts();

private:
    ManyDevices m_devices;
};

void TestADeviceListModelCost::initTestCase()
{
    QVERIFY2(m_devices.isComplete(), "to be run under umockdev-wrapper");
}

void TestADeviceListModelCost::comparingAllocatesNothing_data()
{
    QTest::addColumn<int>("openDevices");
    QTest::newRow("none open") << 0;
    QTest::newRow("ten open") << 10;
    QTest::newRow("a hundred open") << 100;
}

void TestADeviceListModelCost::comparingAllocatesNothing()
{
    QFETCH(int, openDevices);
    m_devices.open(openDevices);
    QCOMPARE(AVeldoranFactory::openDevices().size(), openDevices);
    const long before = allocationCount;
    const int connected = m_devices.showAll();
    const long allocations = allocationCount - before;
    QCOMPARE(connected, 0); // so that each cell was compared with each device
    QCOMPARE(allocations, 0L);
}

void TestADeviceListModelCost::theCounterCounts()
{
    if (!kCountsAllocations)
        QSKIP("the sanitizer has an allocator of its own");
    const long before = allocationCount;
    const QString text(100, QLatin1Char('x'));
    QCOMPARE(allocationCount - before, 1L);
    QCOMPARE(text.size(), 100);
}

QTEST_GUILESS_MAIN(TestADeviceListModelCost)
#include "tst_adevicelistmodel_cost.moc"
