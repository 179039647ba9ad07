#include <core/aveldorandevice.h>
#include <core/devicevariables.h>
#include <core/emu.h>

#include <QtCore/QSet>
#include <QtCore/QStringList>
#include <QtTest/QtTest>

#include <cstddef>
#include <cstring>
#include <limits>

class TestDeviceVariables : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFieldsStandInOrder();
    void thereAreFiftyThree();
    void otherIndicesGiveNull_data();
    void otherIndicesGiveNull();
    void eachIsFoundByItsName();
    void otherNamesGiveNull_data();
    void otherNamesGiveNull();
    void identifiersAreUniqueAndNotZero();
    void namesAreTerminatedAscii();
    void eachHasAtMostOneKind();
    void enumerationsHaveKeysAndLabels();
    void levelUnitsAreAllThatThereAre();
    void eachEditorHasAVariable_data();
    void eachEditorHasAVariable();
    void someAreNotOffered();
    void anUnknownIdentifierShowsAPlainNumber();
};

namespace {

constexpr int kCount = 53;
constexpr quint16 kKinds = 0x0004 | 0x0008 | 0x0010 | 0x0040 | 0x0080 | 0x0100;

} // namespace

void TestDeviceVariables::theFieldsStandInOrder()
{
    QCOMPARE(offsetof(device_variable_desc, identifier), std::size_t(0));
    QCOMPARE(offsetof(device_variable_desc, deviceMask), std::size_t(4));
    QCOMPARE(offsetof(device_variable_desc, name), std::size_t(8));
    QCOMPARE(offsetof(device_variable_desc, flags), std::size_t(40));
    QCOMPARE(offsetof(device_variable_desc, enumeration), std::size_t(48));
}

void TestDeviceVariables::thereAreFiftyThree()
{
    for (int i = 0; i < kCount; ++i)
        QVERIFY(get_vardesc(i));
}

void TestDeviceVariables::otherIndicesGiveNull_data()
{
    QTest::addColumn<int>("index");
    for (const int index : {-1, 53, 54, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        QTest::addRow("%d", index) << index;
}

void TestDeviceVariables::otherIndicesGiveNull()
{
    QFETCH(int, index);
    QVERIFY(!get_vardesc(index));
}

void TestDeviceVariables::eachIsFoundByItsName()
{
    for (int i = 0; i < kCount; ++i)
        QCOMPARE(find_vardesc(get_vardesc(i)->name), get_vardesc(i));
}

void TestDeviceVariables::otherNamesGiveNull_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("another") << QByteArray("Frequency of nothing");
    QTest::newRow("other case") << QByteArray("startfrequency");
    QTest::newRow("a part") << QByteArray("Start");
    QTest::newRow("more") << QByteArray("StartFrequency ");
    QTest::newRow("long") << QByteArray(10000, 'S');
}

void TestDeviceVariables::otherNamesGiveNull()
{
    QFETCH(QByteArray, name);
    QVERIFY(!find_vardesc(name.constData()));
    QVERIFY(!find_vardesc(nullptr));
}

void TestDeviceVariables::identifiersAreUniqueAndNotZero()
{
    QSet<int> identifiers;
    for (int i = 0; i < kCount; ++i)
        identifiers.insert(get_vardesc(i)->identifier);
    QCOMPARE(identifiers.size(), kCount);
    QVERIFY(!identifiers.contains(0)); // a text reads as 0
}

void TestDeviceVariables::namesAreTerminatedAscii()
{
    for (int i = 0; i < kCount; ++i) {
        const QByteArray name(get_vardesc(i)->name);
        QVERIFY(!name.isEmpty() && name.size() < 32);
        for (const char character : name)
            QVERIFY(character > ' ' && character < 0x7f);
        QCOMPARE(name.toUInt(), 0U); // a number is an identifier
        QVERIFY(get_vardesc(i)->deviceMask != 0);
        QVERIFY(std::strlen(get_vardesc(i)->description) > 0);
    }
}

void TestDeviceVariables::eachHasAtMostOneKind()
{
    for (int i = 0; i < kCount; ++i) {
        const quint16 flags = get_vardesc(i)->flags;
        const unsigned int kind = flags & kKinds;
        QVERIFY((kind & (kind - 1)) == 0);
        QVERIFY((flags & 0x0003) != 0);
        QCOMPARE((flags & 0x0100) != 0, get_vardesc(i)->enumeration != nullptr);
    }
}

void TestDeviceVariables::enumerationsHaveKeysAndLabels()
{
    for (int i = 0; i < kCount; ++i) {
        if (!get_vardesc(i)->enumeration)
            continue;
        const QStringList entries = QString::fromLatin1(get_vardesc(i)->enumeration).split(QLatin1Char(';'));
        QVERIFY(entries.size() >= 2);
        QSet<float> keys;
        for (const QString &entry : entries) {
            const QStringList parts = entry.split(QLatin1Char(':'));
            QCOMPARE(parts.size(), 2);
            bool ok = false;
            keys.insert(parts.first().toFloat(&ok));
            QVERIFY(ok);
            QVERIFY(!parts.last().isEmpty());
        }
        QCOMPARE(keys.size(), entries.size());
    }
}

void TestDeviceVariables::levelUnitsAreAllThatThereAre()
{
    const QStringList entries = QString::fromLatin1(find_vardesc("LevelUnit")->enumeration).split(QLatin1Char(';'));
    int count = 0;
    for (; emu_find(count); ++count) {
        QVERIFY(count < entries.size());
        QString name = QString::fromUcs4(emu_find(count)->name);
        name.replace(QChar(0xb5), QLatin1Char('u')).replace(QChar(0xb2), QLatin1Char('2'));
        name.replace(QChar(0xd7), QLatin1Char('x'));
        QCOMPARE(entries.at(count), QStringLiteral("%1:%2").arg(count).arg(name));
    }
    QCOMPARE(entries.size(), count);
}

void TestDeviceVariables::eachEditorHasAVariable_data()
{
    QTest::addColumn<int>("deviceType");
    QTest::addColumn<int>("kind");
    for (const int deviceType : {2, 8}) {
        for (const int kind : {0, 0x0004, 0x0008, 0x0010, 0x0040, 0x0080, 0x0100})
            QTest::addRow("type %d, kind 0x%04x", deviceType, kind) << deviceType << kind;
    }
}

void TestDeviceVariables::eachEditorHasAVariable()
{
    QFETCH(int, deviceType);
    QFETCH(int, kind);
    int count = 0;
    for (int i = 0; i < kCount; ++i) {
        const device_variable_desc *variable = get_vardesc(i);
        const bool isOffered =
            (variable->flags & 0x1003) == 3 && (variable->deviceMask & static_cast<quint32>(deviceType)) != 0;
        count += isOffered && (variable->flags & kKinds) == kind;
    }
    QVERIFY(count > 0);
}

void TestDeviceVariables::someAreNotOffered()
{
    int readOnly = 0;
    int writeOnly = 0;
    int internal = 0;
    int ofOtherDevices = 0;
    int ofLowFrequencies = 0;
    for (int i = 0; i < kCount; ++i) {
        const device_variable_desc *variable = get_vardesc(i);
        readOnly += (variable->flags & 3) == 1;
        writeOnly += (variable->flags & 3) == 2;
        internal += (variable->flags & 0x1003) == 0x1003;
        ofOtherDevices += (variable->deviceMask & 8) == 0;
        ofLowFrequencies += (variable->deviceMask & 10) == 2;
    }
    QVERIFY(readOnly > 0);
    QVERIFY(writeOnly > 0);
    QVERIFY(internal > 0);
    QVERIFY(ofOtherDevices > ofLowFrequencies);
    QVERIFY(ofLowFrequencies > 0);
}

void TestDeviceVariables::anUnknownIdentifierShowsAPlainNumber()
{
    const device_variable_desc *last = get_vardesc(52);
    QCOMPARE(last->flags & kKinds, 0);
    QVERIFY((last->deviceMask & 2) != 0 && (last->deviceMask & 8) != 0);
}

QTEST_GUILESS_MAIN(TestDeviceVariables)
#include "tst_devicevariables.moc"
