#include "marker/aspectrummarkerlist.h"

#include "marker/markertraces.h"

#include <QtCore/QFile>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>

#include <ctime>
#include <random>

using namespace markertest;

// Setups from files that are foreign, damaged or made to harm.

namespace {

constexpr int kBelievedEntries = 1000; // of a count that nothing else confirms
constexpr int kManyEntries = 20000;

// A file of these bytes; a new one each time, since QSettings remembers what it read.
class SettingsFile
{
public:
    explicit SettingsFile(const QByteArray &bytes)
        : m_settings(write(m_directory.filePath(QStringLiteral("settings.ini")), bytes), QSettings::IniFormat)
    {}
    QSettings *settings() { return &m_settings; }

private:
    static QString write(const QString &fileName, const QByteArray &bytes)
    {
        if (!testbasics::writeFile(fileName, bytes))
            qFatal("can't write %s", qPrintable(fileName));
        return fileName;
    }
    QTemporaryDir m_directory;
    QSettings m_settings;
};

QByteArray fileWith(const QByteArray &entry, int count = 1)
{
    return "[s]\nMarker\\size=" + QByteArray::number(count) + "\n" + entry + "\n";
}

// What a load makes of the file.
QString loadedFrom(const QByteArray &bytes)
{
    SettingsFile file(bytes);
    ASpectrumMarkerList list;
    list.loadSetup(file.settings(), QStringLiteral("s"));
    QStringList markers;
    for (int i = 0; i < list.listcount(); ++i) {
        const ASpectrumMarker *marker = list.at(i);
        markers.append(QStringLiteral("%1/%2/%3/%4/%5/%6")
                           .arg(static_cast<int>(marker->type()))
                           .arg(marker->trace())
                           .arg(marker->targetFrequency().toString())
                           .arg(static_cast<int>(marker->displayOptions()))
                           .arg(marker->isEnabled() ? 1 : 0)
                           .arg(list.indexOf(marker->referenceMarker())));
    }
    return markers.join(QLatin1Char(' '));
}

int loadedCount(const QByteArray &bytes)
{
    const QString text = loadedFrom(bytes);
    return text.isEmpty() ? 0 : text.count(QLatin1Char(' ')) + 1;
}

QByteArray validFile()
{
    const QTemporaryDir directory;
    const QString fileName = directory.filePath(QStringLiteral("valid.ini"));
    {
        QSettings settings(fileName, QSettings::IniFormat);
        ASpectrumMarkerList list;
        list.addMarker(ASpectrumMarker::TypeMax, 0, AFrequency());
        list.addMarker(ASpectrumMarker::TypeStd, 2, megahertz(100))->setReferenceMarker(list.at(0));
        list.storeSetup(&settings, QStringLiteral("s"));
    }
    return testbasics::readFile(fileName);
}

} // namespace

class TestASpectrumMarkerListSetupDamage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void malformedValuesAreZeroOrDefault_data();
    void malformedValuesAreZeroOrDefault();
    void aCountIsBelievedAsFarAsItIsConfirmed_data();
    void aCountIsBelievedAsFarAsItIsConfirmed();
    void entriesBeyondTheBelievedOnesKeepTheirPosition();
    void namesThatAreNoPositionsAreIgnored();
    void entriesBehindTheCountAreIgnored();
    void foreignKeysAreIgnored();
    void everyByteMayBeDamaged();
    void theFileMayBeCutAnywhere();
    void randomSettingsGiveWholeLists();
    void manyEntriesTakeNoLong_data();
    void manyEntriesTakeNoLong();
};

void TestASpectrumMarkerListSetupDamage::malformedValuesAreZeroOrDefault_data()
{
    QTest::addColumn<QByteArray>("entry");
    QTest::addColumn<QString>("markers"); // type/trace/frequency/options/enabled/reference
    const auto row = [](const char *name, const char *entry, const char *markers) {
        QTest::newRow(name) << QByteArray("Marker\\1\\") + entry << QString::fromLatin1(markers);
    };
    row("type is text", "Type=high", ""); // 0 is obsolete
    row("type is empty", "Type=", "");
    row("type has a fraction", "Type=6.0", "");
    row("type is a list", "Type=6, 7", "");
    row("type holds a NUL", "Type=\"6\\x0\"", "");
    row("type is unknown", "Type=99", "99/0/0/9/1/-1");
    row("type is negative", "Type=-6", "-6/0/0/9/1/-1");
    row("type is far too large", "Type=99999999999999999999999", "");
    row("trace is text", "Trace=first", "2/0/0/9/1/-1");
    row("trace is too large", "Trace=10", "");
    row("trace is negative", "Trace=-1", "");
    row("trace is the smallest", "Trace=-2147483648", "");
    row("frequency is text", "TargetFrequency=100 MHz", "2/0/0/9/1/-1");
    row("frequency is negative", "TargetFrequency=-100", "2/0/0/9/1/-1");
    row("frequency is the largest", "TargetFrequency=9223372036854775807", "2/0/9223372036854775807/9/1/-1");
    row("frequency is beyond 64 bits", "TargetFrequency=18446744073709551616", "2/0/0/9/1/-1");
    row("frequency is bytes", "TargetFrequency=@ByteArray(12)", "2/0/12/9/1/-1");
    row("frequency is nothing", "TargetFrequency=@Invalid()", "2/0/0/9/1/-1");
    row("options are text", "DisplayOptions=all", "2/0/0/0/1/-1");
    row("options are any bits", "DisplayOptions=-2147483648", "2/0/0/-2147483648/1/-1");
    row("enabled is text", "Enabled=yes", "2/0/0/9/1/-1");
    row("enabled is false", "Enabled=false", "2/0/0/9/0/-1");
    row("enabled is a number", "Enabled=0", "2/0/0/9/0/-1");
    row("reference is text", "ReferenceMarkerIndex=x", "2/0/0/9/1/-1"); // 0 is itself
    row("an unreadable line", "Type", "2/0/0/9/1/-1");
}

void TestASpectrumMarkerListSetupDamage::malformedValuesAreZeroOrDefault()
{
    QFETCH(QByteArray, entry);
    MessageLog log;
    QTEST(loadedFrom(fileWith(entry)), "markers");
}

void TestASpectrumMarkerListSetupDamage::aCountIsBelievedAsFarAsItIsConfirmed_data()
{
    QTest::addColumn<QByteArray>("size");
    QTest::addColumn<int>("loaded");
    QTest::newRow("negative") << QByteArray("-5") << 0;
    QTest::newRow("text") << QByteArray("many") << 0;
    QTest::newRow("missing") << QByteArray() << 0;
    QTest::newRow("believed") << QByteArray("1000") << kBelievedEntries;
    QTest::newRow("more") << QByteArray("1001") << kBelievedEntries;
    QTest::newRow("largest") << QByteArray("2147483647") << kBelievedEntries;
    QTest::newRow("beyond an int") << QByteArray("2147483648") << 0;
    QTest::newRow("beyond 64 bits") << QByteArray("99999999999999999999") << 0;
}

void TestASpectrumMarkerListSetupDamage::aCountIsBelievedAsFarAsItIsConfirmed()
{
    QFETCH(QByteArray, size);
    QElapsedTimer timer;
    timer.start();
    QTEST(loadedCount("[s]\nMarker\\1\\Type=6\n" + (size.isEmpty() ? size : "Marker\\size=" + size + "\n")), "loaded");
    QVERIFY(timer.elapsed() < 5000);
}

void TestASpectrumMarkerListSetupDamage::entriesBeyondTheBelievedOnesKeepTheirPosition()
{
    QByteArray entries;
    entries += "Marker\\2000\\Type=6\n"; // waits for the one after next
    entries += "Marker\\2000\\ReferenceMarkerIndex=2147483645\n";
    entries += "Marker\\3000\\Type=0\n";
    entries += "Marker\\2147483646\\Type=7\n";
    const QString loaded = loadedFrom(fileWith(entries, 2147483647));
    QCOMPARE(loaded.count(QLatin1String("2/0/0/9/1/-1")), kBelievedEntries);
    QVERIFY(loaded.endsWith(QStringLiteral(" 6/0/0/9/1/1001 7/0/0/9/1/-1")));
}

void TestASpectrumMarkerListSetupDamage::namesThatAreNoPositionsAreIgnored()
{
    QByteArray entries;
    for (const char *name : {"01500", "+1501", "1502x", "-1503", "150 4", "99999999999"})
        entries += QByteArray("Marker\\") + name + "\\Type=6\n";
    QCOMPARE(loadedCount(fileWith(entries, 10000)), kBelievedEntries);
    QCOMPARE(loadedCount(fileWith(entries + "Marker\\1500\\Type=6\n", 10000)), kBelievedEntries + 1);
}

void TestASpectrumMarkerListSetupDamage::entriesBehindTheCountAreIgnored()
{
    QCOMPARE(loadedFrom(fileWith("Marker\\1\\Type=6\nMarker\\2\\Type=7\n", 1)), QStringLiteral("6/0/0/9/1/-1"));
    QCOMPARE(loadedCount(fileWith("Marker\\1500\\Type=6\nMarker\\1501\\Type=6\n", 1500)), kBelievedEntries + 1);
}

void TestASpectrumMarkerListSetupDamage::foreignKeysAreIgnored()
{
    QCOMPARE(loadedFrom(fileWith("Marker\\1\\Type=6\nMarker\\1\\Colour=red\nMarker\\1\\Type\\more=7\n"
                                 "Marker\\0\\Type=7\nmarker\\1\\Trace=5\nOther\\1\\Type=7\nMarker=5\n")),
             QStringLiteral("6/0/0/9/1/-1"));
}

void TestASpectrumMarkerListSetupDamage::everyByteMayBeDamaged()
{
    const QByteArray valid = validFile();
    QCOMPARE(loadedCount(valid), 2);
    MessageLog log;
    for (int i = 0; i < valid.size(); ++i) {
        for (const int flip : {0x01, 0x80}) {
            QByteArray damaged = valid;
            damaged[i] = static_cast<char>(damaged.at(i) ^ flip);
            QVERIFY(loadedCount(damaged) <= kBelievedEntries);
        }
        QByteArray zeroed = valid;
        zeroed[i] = '\0';
        QVERIFY(loadedCount(zeroed) <= kBelievedEntries);
    }
}

void TestASpectrumMarkerListSetupDamage::theFileMayBeCutAnywhere()
{
    const QByteArray valid = validFile();
    MessageLog log;
    for (int length = 0; length < valid.size(); ++length)
        QVERIFY(loadedCount(valid.left(length)) <= 2);
}

void TestASpectrumMarkerListSetupDamage::randomSettingsGiveWholeLists()
{
    std::mt19937 random(11);
    const auto below = [&random](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    const QByteArray keys[] = {"Enabled", "Type", "Trace", "TargetFrequency", "DisplayOptions", "ReferenceMarkerIndex"};
    const QByteArray values[] = {"0", "1", "2", "3",  "4",          "5",          "6",   "7", "9",
                                 "8", "",  "x", "-1", "2147483647", "4294967298", "1e9", "-"};
    MessageLog log;
    for (int run = 0; run < 100; ++run) {
        QByteArray bytes = "[s]\nMarker\\size=" + QByteArray::number(below(60)) + "\n";
        for (int line = 0; line < 200; ++line) {
            bytes +=
                "Marker\\" + QByteArray::number(below(60)) + "\\" + keys[below(6)] + "=" + values[below(17)] + "\n";
        }
        SettingsFile file(bytes);
        ASpectrumMarkerList list;
        list.loadSetup(file.settings(), QStringLiteral("s"));
        update(&list, traceOf({1, 9, 2, 8, 3}));
        int held = 0;
        for (int trace = 0; trace < 10; ++trace) {
            const QList<ASpectrumMarker *> *markers = list.trace(trace);
            for (int i = 0; markers && i < markers->size(); ++i) {
                const ASpectrumMarker *marker = markers->at(i);
                QCOMPARE(marker->trace(), trace);
                QVERIFY(marker->referenceMarker() != marker);
                marker->label(true, nullptr, nullptr);
                ++held;
            }
        }
        QVERIFY(held >= list.listcount());
        QVERIFY(held <= 60);
    }
}

void TestASpectrumMarkerListSetupDamage::manyEntriesTakeNoLong_data()
{
    QTest::addColumn<int>("types");
    QTest::newRow("of one type") << 1;
    QTest::newRow("each of its own type") << kManyEntries;
}

void TestASpectrumMarkerListSetupDamage::manyEntriesTakeNoLong()
{
    QFETCH(int, types);
    QByteArray bytes = "[s]\nMarker\\size=" + QByteArray::number(kManyEntries) + "\n";
    for (int i = 0; i < kManyEntries; ++i) {
        const QByteArray entry = "Marker\\" + QByteArray::number(i + 1) + "\\";
        bytes += entry + "Trace=" + QByteArray::number(9 - i % 10) + "\n" + entry +
                 "ReferenceMarkerIndex=" + QByteArray::number(kManyEntries - i) + "\n";
        if (types > 1)
            bytes += entry + "Type=" + QByteArray::number(100 + i % types) + "\n";
    }
    SettingsFile file(bytes);
    ASpectrumMarkerList list;
    const std::clock_t start = std::clock(); // processor time, so that other work on the machine counts nothing
    list.loadSetup(file.settings(), QStringLiteral("s"));
    const auto elapsedMs = qint64(std::clock() - start) * 1000 / CLOCKS_PER_SEC;
    QVERIFY2(elapsedMs < 10000, qPrintable(QString::number(elapsedMs)));
    int held = 0;
    for (int trace = 0; trace < 10; ++trace)
        held += list.trace(trace)->size();
    QCOMPARE(held, kManyEntries);
}

QTEST_GUILESS_MAIN(TestASpectrumMarkerListSetupDamage)
#include "tst_aspectrummarkerlist_setup_damage.moc"
