#include <core/agpsloggerdevice.h>
#include <core/aveldoranchipinformation.h>
#include <core/aveldorandevice.h>
#include <core/aveldoranfactory.h>
#include <core/aveldoraninterface.h>

#include "core/fieldorder.h"
#include "core/virtualtable.h"

#include <QtCore/QVariant>
#include <QtTest/QtTest>

#include <iterator>
#include <memory>
#include <type_traits>

class TestAVeldoranDevice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theBaseClassIsADeviceThatSaysNothing();
    void virtualOperationsComeInTheAgreedOrder();
    void aDriverAnswersThroughTheBaseClass();
    void featureNumbersHaveThreeDigits_data();
    void featureNumbersHaveThreeDigits();
    void theGpsDeviceIsNotOwned();
    void aDeletedGpsDeviceIsGone();
    void openDevicesIsTheListItself();
    void aDeletedDeviceLeavesTheOpenOnes();
    void anInterfaceNamesItsDevice();
    void theFieldsOfChipInformationLieInTheAgreedOrder();
    void chipInformationIsAValue();
    void chipInformationIsAMetatype();
    void chipIdsHaveThirtyTwoBits();
    void deviceTypesTwoAndEightExist();
};

namespace {

class Driver : public AVeldoranDevice
{
public:
    QString customOptionText() const override { return QStringLiteral("X7"); }
    int hardwareRevision() const override { return 3; }
    bool isReady() const override { return true; }
    QStringList informationList() const override { return {QStringLiteral("M1")}; }
    quint16 optionMask() const override { return 0x8001; }
    bool hasCapability(int capability) const override { return capability == 8; }
    AVeldoranChipInformation chipInformation() const override
    {
        AVeldoranChipInformation chip;
        chip.location = 258;
        return chip;
    }
};

class Replay : public AVeldoranInterface
{
public:
    using AVeldoranInterface::AVeldoranInterface;
    using AVeldoranInterface::setDevice;
};

} // namespace

void TestAVeldoranDevice::theBaseClassIsADeviceThatSaysNothing()
{
    const AVeldoranDevice device;
    QVERIFY(!device.isReady());
    QCOMPARE(device.hardwareRevision(), 0);
    QCOMPARE(device.optionMask(), quint16(0));
    QVERIFY(!device.hasCapability(2));
    QVERIFY(device.informationList().size() >= 7);
    QVERIFY(device.chipInformation() == AVeldoranChipInformation());
    QVERIFY(!device.gpsDevice());
}

void TestAVeldoranDevice::virtualOperationsComeInTheAgreedOrder()
{
    const std::ptrdiff_t offsets[] = {
        tableOffset(&AVeldoranDevice::customOptionText), tableOffset(&AVeldoranDevice::hardwareRevision),
        tableOffset(&AVeldoranDevice::isReady),          tableOffset(&AVeldoranDevice::informationList),
        tableOffset(&AVeldoranDevice::optionMask),       tableOffset(&AVeldoranDevice::hasCapability),
        tableOffset(&AVeldoranDevice::chipInformation),
    };
    for (std::size_t i = 1; i < std::size(offsets); ++i)
        QCOMPARE(offsets[i] - offsets[i - 1], std::ptrdiff_t(sizeof(void *)));
}

void TestAVeldoranDevice::aDriverAnswersThroughTheBaseClass()
{
    const Driver driver;
    const AVeldoranDevice &device = driver;
    QCOMPARE(device.customOptionText(), QStringLiteral("X7"));
    QCOMPARE(device.hardwareRevision(), 3);
    QVERIFY(device.isReady());
    QCOMPARE(device.informationList(), QStringList{QStringLiteral("M1")});
    QCOMPARE(device.optionMask(), quint16(0x8001));
    QVERIFY(device.hasCapability(8));
    QCOMPARE(device.chipInformation().location, 258U);
}

void TestAVeldoranDevice::featureNumbersHaveThreeDigits_data()
{
    QTest::addColumn<int>("bit");
    QTest::addColumn<QString>("number");
    for (int i = 0; i < 15; ++i)
        QTest::addRow("%d", 1 << i) << (1 << i)
                                    << QStringLiteral("0") + (i < 9 ? QStringLiteral("0") : QString()) +
                                           QString::number(i + 1);
    QTest::newRow("none") << 0 << QStringLiteral("000");
    QTest::newRow("two bits") << 3 << QStringLiteral("000");
    QTest::newRow("bit 15") << 0x8000 << QStringLiteral("000");
}

void TestAVeldoranDevice::featureNumbersHaveThreeDigits()
{
    QFETCH(int, bit);
    QTEST(AVeldoranDevice::featureNumber(static_cast<AVeldoranFeature>(bit)), "number");
}

void TestAVeldoranDevice::theGpsDeviceIsNotOwned()
{
    AGpsLoggerDevice logger(nullptr, nullptr);
    {
        AVeldoranDevice device;
        device.setGpsDevice(&logger);
        QCOMPARE(device.gpsDevice(), &logger);
    }
    QVERIFY(!logger.init());
}

void TestAVeldoranDevice::aDeletedGpsDeviceIsGone()
{
    AVeldoranDevice device;
    auto logger = std::make_unique<AGpsLoggerDevice>(nullptr, nullptr);
    device.setGpsDevice(logger.get());
    logger.reset();
    QVERIFY(!device.gpsDevice());
}

void TestAVeldoranDevice::openDevicesIsTheListItself()
{
    QVERIFY(AVeldoranFactory::openDevices().isEmpty());
    AVeldoranDevice device;
    AVeldoranFactory::openDevices().append(&device);
    QCOMPARE(AVeldoranFactory::openDevices(), QList<AVeldoranDevice *>{&device});
    AVeldoranFactory::openDevices().clear();
    QVERIFY(AVeldoranFactory::openDevices().isEmpty());
}

void TestAVeldoranDevice::aDeletedDeviceLeavesTheOpenOnes()
{
    AVeldoranDevice stays;
    {
        AVeldoranDevice goes;
        AVeldoranFactory::openDevices() << &goes << &stays << &goes;
    }
    QCOMPARE(AVeldoranFactory::openDevices(), QList<AVeldoranDevice *>{&stays});
    AVeldoranFactory::openDevices().clear();
}

void TestAVeldoranDevice::anInterfaceNamesItsDevice()
{
    Driver driver;
    Replay replay;
    QVERIFY(!replay.device());
    replay.setDevice(&driver);
    QCOMPARE(replay.device(), &driver);
    QCOMPARE(Replay(&driver).device(), &driver);
}

void TestAVeldoranDevice::theFieldsOfChipInformationLieInTheAgreedOrder()
{
    const AVeldoranChipInformation chip;
    QCOMPARE(static_cast<const void *>(&chip.id), static_cast<const void *>(&chip));
    QVERIFY(areInOrder(chip.id, chip.name, chip.description, chip.vendorId, chip.productId, chip.location));
}

void TestAVeldoranDevice::chipInformationIsAValue()
{
    AVeldoranChipInformation chip;
    QCOMPARE(chip.id, 0);
    QCOMPARE(chip.location, 0U);
    chip.name = QStringLiteral("A1");
    const AVeldoranChipInformation copy = chip;
    QVERIFY(copy == chip);
    chip.name = QStringLiteral("A2");
    QVERIFY(copy != chip);
    QCOMPARE(copy.name, QStringLiteral("A1"));

    const auto differs = [&copy](auto change) {
        AVeldoranChipInformation other = copy;
        change(other);
        return other != copy;
    };
    QVERIFY(differs([](auto &other) { other.id = 1; }));
    QVERIFY(differs([](auto &other) { other.description = QStringLiteral("d"); }));
    QVERIFY(differs([](auto &other) { other.vendorId = 1; }));
    QVERIFY(differs([](auto &other) { other.productId = 1; }));
    QVERIFY(differs([](auto &other) { other.location = 1; }));
}

void TestAVeldoranDevice::chipInformationIsAMetatype()
{
    QVERIFY(QMetaType::type("AVeldoranChipInformation") != QMetaType::UnknownType);
    AVeldoranChipInformation chip;
    chip.description = QStringLiteral("Dual RS232");
    const QVariant variant = QVariant::fromValue(chip);
    QCOMPARE(variant.typeName(), "AVeldoranChipInformation");
    QVERIFY(variant.value<AVeldoranChipInformation>() == chip);
}

void TestAVeldoranDevice::chipIdsHaveThirtyTwoBits()
{
    QCOMPARE(AVeldoranChipInformation::idOf(0, 0), 0);
    QCOMPARE(AVeldoranChipInformation::idOf(0x0403, 0x6010), 0x04036010);
    QCOMPARE(static_cast<quint32>(AVeldoranChipInformation::idOf(0xffff, 0x0001)), 0xffff0001U);
}

void TestAVeldoranDevice::deviceTypesTwoAndEightExist()
{
    QCOMPARE(static_cast<int>(LowFrequencyAnalyser), 2);
    QCOMPARE(static_cast<int>(SpectrumAnalyser), 8);
    QVERIFY((std::is_convertible_v<VeldoranDeviceType, int>));
}

QTEST_GUILESS_MAIN(TestAVeldoranDevice)
#include "tst_aveldorandevice.moc"
