#include "core/acalibrationdata.h"

#include "calibrationobjects.h"

#include <QtTest/QtTest>

#include <cmath>
#include <csignal>
#include <cstring>
#include <limits>
#include <random>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Random = std::mt19937_64;

constexpr qint64 kMax = std::numeric_limits<qint64>::max();
constexpr qint64 kMin = std::numeric_limits<qint64>::min();

AFrequency randomFrequency(Random *random)
{
    AFrequency whole = hertz(static_cast<qint64>((*random)()) >> ((*random)() % 64));
    const double fraction =
        std::ldexp(static_cast<double>(static_cast<qint64>((*random)())), -64 - int((*random)() % 40));
    AFrequency part;
    part.setValue(fraction, AFrequency::Hz);
    switch ((*random)() % 4) {
    case 0:
        return whole;
    case 1:
        return part;
    case 2:
        return whole / 1000.0;
    default:
        return whole + part;
    }
}

double randomGain(Random *random)
{
    const quint64 bits = (*random)();
    double gain = 0.0;
    switch ((*random)() % 4) {
    case 0:
        return static_cast<double>(static_cast<qint64>(bits % 20001) - 10000) / 100.0;
    case 1:
        return bits % 3 == 0 ? kNan : bits % 3 == 1 ? kInfinity : -kInfinity;
    default:
        std::memcpy(&gain, &bits, sizeof gain);
        return gain;
    }
}

QString randomLabel(Random *random)
{
    static const QString pieces[] = {QString(),
                                     "Horn 3115",
                                     "Ä\u00df\u20ac",
                                     "\u65e5\u672c\u8a9e",
                                     "\u0639\u0631\u0628\u064a",
                                     "\U0001f4e1",
                                     " ",
                                     "\t",
                                     "\n",
                                     "\r",
                                     "\r\n",
                                     "\"",
                                     "\"\"",
                                     "'",
                                     ";",
                                     ",",
                                     "#",
                                     "[antenna]",
                                     "]",
                                     "<level/>",
                                     "&amp;",
                                     "]]>",
                                     "--x",
                                     "\\",
                                     "\\n",
                                     "\\u0041",
                                     "%1",
                                     QString(QChar(0)),
                                     QString(QChar(1)),
                                     QString(QChar(0x7f)),
                                     QChar(0x85),
                                     QChar(0xa0),
                                     QString(QChar(0x2028)),
                                     QChar(0xfeff),
                                     QString(QChar(0xfffe)),
                                     QChar(0xffff),
                                     QChar(0xd800),
                                     QString(QChar(0xdc00)),
                                     "\U0001fffe",
                                     "caldata 1"};
    QString label;
    for (quint64 i = (*random)() % 5; i > 0; --i)
        label += pieces[(*random)() % std::size(pieces)];
    return label;
}

Objects randomObjects(Random *random)
{
    constexpr ACalibrationData::CalibrationType types[] = {ACalibrationData::Preamplifier, ACalibrationData::Antenna,
                                                           ACalibrationData::Cable, ACalibrationData::Attenuator,
                                                           ACalibrationData::AnyType};
    Objects objects;
    for (quint64 i = (*random)() % 40; i > 0; --i) {
        ACalibrationData next(randomLabel(random), types[(*random)() % std::size(types)]);
        for (quint64 k = (*random)() % 6; k > 0; --k)
            next.addLevel(randomFrequency(random), randomGain(random));
        objects.append(next);
        if ((*random)() % 8 == 0)
            objects.append(next); // equal label and type, and an equal object even
    }
    return objects;
}

} // namespace

class TestACalibrationData : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void aDefaultObjectIsEmpty();
    void anObjectNeverHasAllTypes();
    void copiesAreIndependent();
    void comparesLabelTypeAndTable();
    void anObjectWithNanEqualsItself();
    void entriesAreReplacedAndRemoved();
    void gains_data();
    void gains();
    void gainsOverTheWholeFrequencyRange();
    void infiniteGainsStandWhereTheyAre();
    void objectsTravelInVariants();

    void theSuffixChoosesTheForm_data();
    void theSuffixChoosesTheForm();
    void theFormIsKnownByContent();
    void savedListsReadBack_data();
    void savedListsReadBack();
    void anEmptyListReadsBackAsEmpty();
    void everyFrequencyReadsBack();
    void everyGainReadsBackToTheBit();
    void largeTablesReadBack_data();
    void largeTablesReadBack();
    void aLongLabelIsNotRepeated();
    void readingAppends();

    void aFailedSaveLeavesTheOldFile_data();
    void aFailedSaveLeavesTheOldFile();
    void whatCannotBeWrittenIsRefused();

private:
    QString path(const QString &name) const { return m_dir->filePath(name); }
    bool save(const QString &form, const Objects &objects) const
    {
        return ACalibrationData::saveAll(path(QStringLiteral("file.") + form), objects);
    }
    bool read(const QString &form, Objects *objects) const
    {
        return ACalibrationData::readAll(path(QStringLiteral("file.") + form), *objects, ACalibrationData::AllTypes);
    }

    std::unique_ptr<QTemporaryDir> m_dir;
};

void TestACalibrationData::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
}

void TestACalibrationData::aDefaultObjectIsEmpty()
{
    const ACalibrationData data;
    QVERIFY(data.label().isEmpty());
    QCOMPARE(data.type(), ACalibrationData::AnyType);
    QVERIFY(data.level().isEmpty());
    QCOMPARE(data.valueAt(hertz(5), true), 0.0);
}

void TestACalibrationData::anObjectNeverHasAllTypes()
{
    QCOMPARE(ACalibrationData(QString(), ACalibrationData::AllTypes).type(), ACalibrationData::AnyType);
    QCOMPARE(ACalibrationData(QString(), ACalibrationData::Cable).type(), ACalibrationData::Cable);
}

void TestACalibrationData::copiesAreIndependent()
{
    ACalibrationData original = object("a", ACalibrationData::Cable, {{"1 MHz", 1.0}});
    ACalibrationData copy(original);
    copy.setLabel("b");
    copy.addLevel(hertz(5), 2.0);
    QCOMPARE(original.label(), QString("a"));
    QCOMPARE(original.level().size(), 1);
    original = copy;
    QCOMPARE(original, copy);
    QCOMPARE(original.level().size(), 2);
}

void TestACalibrationData::comparesLabelTypeAndTable()
{
    const ACalibrationData data = object("a", ACalibrationData::Cable, {{"1 MHz", 1.0}});
    QVERIFY(data == object("a", ACalibrationData::Cable, {{"1000 kHz", 1.0}}));
    QVERIFY(data != object("b", ACalibrationData::Cable, {{"1 MHz", 1.0}}));
    QVERIFY(data != object("a", ACalibrationData::Antenna, {{"1 MHz", 1.0}}));
    QVERIFY(data != object("a", ACalibrationData::Cable, {{"1 MHz", 1.5}}));
    QVERIFY(data != object("a", ACalibrationData::Cable, {{"2 MHz", 1.0}}));
    QVERIFY(data != object("a", ACalibrationData::Cable));
    QVERIFY(data != object("a", ACalibrationData::Cable, {{"1 MHz", 1.0}, {"2 MHz", 1.0}}));
}

void TestACalibrationData::anObjectWithNanEqualsItself()
{
    const ACalibrationData data = object("a", ACalibrationData::Cable, {{"1 MHz", kNan}});
    QVERIFY(data == data);
    QVERIFY(data == object("a", ACalibrationData::Cable, {{"1 MHz", -kNan}}));
    QVERIFY(data != object("a", ACalibrationData::Cable, {{"1 MHz", 0.0}}));
}

void TestACalibrationData::entriesAreReplacedAndRemoved()
{
    ACalibrationData data;
    data.addLevel(AFrequency("2 MHz"), 2.0);
    data.addLevel(AFrequency("1 MHz"), 1.0);
    data.addLevel(AFrequency("-1 MHz"), 0.0);
    data.addLevel(AFrequency("2000 kHz"), 3.0);
    QCOMPARE(data.level().keys(), (QList<AFrequency>{"-1 MHz", "1 MHz", "2 MHz"}));
    QCOMPARE(data.level().values(), (QList<double>{0.0, 1.0, 3.0}));
    data.removeLevel(AFrequency("1 MHz"));
    data.removeLevel(AFrequency("7 MHz"));
    QCOMPARE(data.level().keys(), (QList<AFrequency>{"-1 MHz", "2 MHz"}));
}

void TestACalibrationData::gains_data()
{
    QTest::addColumn<QByteArray>("frequency");
    QTest::addColumn<double>("held");
    QTest::addColumn<double>("cut");
    const auto row = [](const char *frequency, double held, double cut) {
        QTest::newRow(frequency) << QByteArray(frequency) << held << cut;
    };
    row("0 MHz", 10.0, 0.0);
    row("99.999 MHz", 10.0, 0.0);
    row("100 MHz", 10.0, 10.0);
    row("125 MHz", 12.5, 12.5);
    row("200 MHz", 20.0, 20.0);
    row("300 MHz", 17.0, 17.0);
    row("400 MHz", 14.0, 14.0);
    row("401 MHz", 14.0, 0.0);
    row("-1 GHz", 10.0, 0.0);
}

void TestACalibrationData::gains()
{
    QFETCH(QByteArray, frequency);
    const ACalibrationData data =
        object("a", ACalibrationData::Antenna, {{"100 MHz", 10.0}, {"200 MHz", 20.0}, {"400 MHz", 14.0}});
    QTEST(data.valueAt(AFrequency(frequency), true), "held");
    QTEST(data.valueAt(AFrequency(frequency), false), "cut");
}

void TestACalibrationData::gainsOverTheWholeFrequencyRange()
{
    ACalibrationData data;
    data.addLevel(hertz(kMin), -1.0);
    data.addLevel(hertz(kMax), 1.0);
    QCOMPARE(data.valueAt(hertz(kMin), true), -1.0);
    QCOMPARE(data.valueAt(hertz(kMin / 2), true), -0.5);
    QVERIFY(std::fabs(data.valueAt(hertz(0), true)) < 1e-15);
    QCOMPARE(data.valueAt(hertz(kMax / 2), true), 0.5);
    QCOMPARE(data.valueAt(hertz(kMax), true), 1.0);

    ACalibrationData narrow; // closer together than a double of their size can say
    narrow.addLevel(hertz(kMax - 4), 0.0);
    narrow.addLevel(hertz(kMax), 4.0);
    QCOMPARE(narrow.valueAt(hertz(kMax - 3), true), 1.0);

    const ACalibrationData fine = object("a", ACalibrationData::Cable, {{"0.25", 1.0}, {"0.75", 2.0}});
    QCOMPARE(fine.valueAt(AFrequency("0.5"), true), 1.5);
}

void TestACalibrationData::infiniteGainsStandWhereTheyAre()
{
    const ACalibrationData data =
        object("a", ACalibrationData::Cable, {{"1 Hz", -1e308}, {"2 Hz", 1e308}, {"3 Hz", kInfinity}, {"4 Hz", 5.0}});
    QCOMPARE(data.valueAt(AFrequency("2 Hz"), true), 1e308);
    QCOMPARE(data.valueAt(AFrequency("4 Hz"), true), 5.0);
    QCOMPARE(data.valueAt(AFrequency("1.75 Hz"), true), 0.5e308);
    QCOMPARE(data.valueAt(AFrequency("3.5 Hz"), true), kInfinity);
}

void TestACalibrationData::objectsTravelInVariants()
{
    const ACalibrationData data = object("a", ACalibrationData::Cable, {{"1 MHz", 1.0}});
    QCOMPARE(QVariant::fromValue(data).value<ACalibrationData>(), data);
    QCOMPARE(QVariant::fromValue(data.type()).value<ACalibrationData::CalibrationType>(), ACalibrationData::Cable);
}

void TestACalibrationData::theSuffixChoosesTheForm_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("start");
    QTest::newRow("xml") << "a.xml" << QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<calibrations>");
    QTest::newRow("no suffix") << "caldata" << QByteArray("<?xml ");
    QTest::newRow("other suffix") << "a.caldata.bak" << QByteArray("<?xml ");
    QTest::newRow("caldata") << "a.b.caldata" << QByteArray("caldata 1\n");
    QTest::newRow("CalData") << "a.CalData" << QByteArray("caldata 1\n");
    QTest::newRow("offsets") << "a.offsets" << QByteArray("object;label;");
}

void TestACalibrationData::theSuffixChoosesTheForm()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, start);
    QVERIFY(ACalibrationData::saveAll(path(name), smallList()));
    QCOMPARE(readFile(path(name)).left(start.size()), start);
}

void TestACalibrationData::theFormIsKnownByContent()
{
    for (const char *form : kForms) {
        for (const char *suffix : kForms) {
            QVERIFY(save(form, smallList()));
            QFile::remove(path("renamed"));
            QVERIFY(QFile::copy(path(QStringLiteral("file.") + form), path("renamed")));
            const QString name = path(QStringLiteral("other.") + suffix);
            QFile::remove(name);
            QVERIFY(QFile::rename(path("renamed"), name));
            Objects objects;
            QVERIFY(ACalibrationData::readAll(name, objects, ACalibrationData::Attenuator));
            QCOMPARE(objects, smallList());
        }
    }
}

void TestACalibrationData::savedListsReadBack_data()
{
    addForms();
}

void TestACalibrationData::savedListsReadBack()
{
    QFETCH(QString, form);
    Random random(1);
    for (int i = 0; i < 150; ++i) { // few files, as each is synced to the disk
        const Objects objects = randomObjects(&random);
        QVERIFY(save(form, objects));
        Objects back;
        if (!read(form, &back) || back != objects)
            QFAIL(readFile(path(QStringLiteral("file.") + form)).constData());
    }
}

void TestACalibrationData::anEmptyListReadsBackAsEmpty()
{
    for (const char *form : kForms) {
        QVERIFY(save(form, {}));
        Objects objects;
        QVERIFY(read(form, &objects));
        QVERIFY(objects.isEmpty());
    }
}

void TestACalibrationData::everyFrequencyReadsBack()
{
    Random random(2);
    ACalibrationData data;
    for (const char *text : {"-0.3", "0.3", "-0.1", "0.1", "1e-300", "-1e-300", "5e-324", "-1.5", "0.9999999999999999",
                             "9007199254740993", "9223372036854775807", "-9223372036854775808", "123456789.000001"})
        data.addLevel(AFrequency(text), 1.0);
    QCOMPARE(data.level().size(), 13);
    for (int i = 0; i < 20000; ++i)
        data.addLevel(randomFrequency(&random), 1.0);
    for (const char *form : kForms) {
        QVERIFY(save(form, {data}));
        Objects back;
        QVERIFY(read(form, &back));
        QCOMPARE(back.size(), 1);
        QVERIFY(back.first() == data);
    }
}

void TestACalibrationData::everyGainReadsBackToTheBit()
{
    Random random(3);
    ACalibrationData data;
    qint64 frequency = 0;
    for (const double gain :
         {0.0, -0.0, 5e-324, -2.2250738585072011e-308, 1.7976931348623157e308, kInfinity, -kInfinity})
        data.addLevel(hertz(++frequency), gain);
    for (int i = 0; i < 20000; ++i) {
        const quint64 bits = random();
        double gain = 0.0;
        std::memcpy(&gain, &bits, sizeof gain);
        data.addLevel(hertz(++frequency), std::isnan(gain) ? 1.0 : gain);
    }
    for (const char *form : kForms) {
        QVERIFY(save(form, {data}));
        Objects back;
        QVERIFY(read(form, &back));
        QCOMPARE(back.size(), 1);
        const QList<double> before = data.level().values();
        const QList<double> after = back.first().level().values();
        QCOMPARE(after.size(), before.size());
        for (int i = 0; i < before.size(); ++i)
            QVERIFY(std::memcmp(&before.at(i), &after.at(i), sizeof(double)) == 0);
    }
}

void TestACalibrationData::largeTablesReadBack_data()
{
    addForms();
}

void TestACalibrationData::largeTablesReadBack()
{
    QFETCH(QString, form);
    Objects objects;
    ACalibrationData table("large", ACalibrationData::Cable);
    for (int i = 0; i < 200000; ++i)
        table.addLevel(hertz(qint64(i) * 12345), i / 1000.0);
    objects << table;
    for (int i = 0; i < 20000; ++i)
        objects << object(QStringLiteral("same"), ACalibrationData::Antenna);
    QVERIFY(save(form, objects));
    Objects back;
    QVERIFY(read(form, &back));
    QVERIFY(back == objects);
}

void TestACalibrationData::aLongLabelIsNotRepeated()
{
    ACalibrationData data(QString(1000000, QLatin1Char('x')), ACalibrationData::Cable);
    ACalibrationData other(QString(1000000, QChar(1)), ACalibrationData::Antenna);
    for (int i = 0; i < 1000; ++i) {
        data.addLevel(hertz(i), i);
        other.addLevel(hertz(i), -i);
    }
    for (const char *form : kForms) {
        QVERIFY(save(form, {data, other}));
        QVERIFY(QFileInfo(path(QStringLiteral("file.") + form)).size() < 10000000);
        Objects back;
        QVERIFY(read(form, &back));
        QVERIFY(back == (Objects{data, other}));
    }
}

void TestACalibrationData::readingAppends()
{
    QVERIFY(save("xml", smallList()));
    Objects objects = {object("first", ACalibrationData::Cable)};
    QVERIFY(read("xml", &objects));
    QCOMPARE(objects.size(), 4);
    QCOMPARE(objects.first().label(), QString("first"));
    QCOMPARE(objects.mid(1), smallList());
}

void TestACalibrationData::aFailedSaveLeavesTheOldFile_data()
{
    addForms();
}

void TestACalibrationData::aFailedSaveLeavesTheOldFile()
{
    QFETCH(QString, form);
    Objects large;
    for (int i = 0; i < 20; ++i) {
        large << object(QString::number(i), ACalibrationData::Cable);
        for (int k = 0; k < 500; ++k)
            large.last().addLevel(hertz(k), k);
    }
    QVERIFY(save(form, smallList()));
    const QString name = path(QStringLiteral("file.") + form);
    const QByteArray before = readFile(name);
    for (const rlim_t limit : {rlim_t(0), rlim_t(1), rlim_t(100), rlim_t(16384), rlim_t(70000), rlim_t(100000)}) {
        const pid_t child = ::fork();
        QVERIFY(child >= 0);
        if (child == 0) { // a limit can't be lifted again, so a process of its own saves under it
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit fileSize = {limit, limit};
            const bool isLimited = ::setrlimit(RLIMIT_FSIZE, &fileSize) == 0;
            ::_exit(isLimited && !ACalibrationData::saveAll(name, large) ? 0 : 1);
        }
        int status = -1;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QVERIFY(WIFEXITED(status));
        QCOMPARE(WEXITSTATUS(status), 0);
        QCOMPARE(readFile(name), before);
        QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
    }
    QVERIFY(ACalibrationData::saveAll(name, large));
    QVERIFY(QFileInfo(name).size() > 100000);
}

void TestACalibrationData::whatCannotBeWrittenIsRefused()
{
    QVERIFY(!ACalibrationData::saveAll(path("missing/file.xml"), smallList()));
    QVERIFY(!QFile::exists(path("missing")));
    QVERIFY(!ACalibrationData::saveAll(m_dir->path(), smallList()));
    QVERIFY(!ACalibrationData::saveAll(QString(), smallList()));
    QCOMPARE(mkfifo(qPrintable(path("pipe.xml")), 0600), 0);
    QVERIFY(!ACalibrationData::saveAll(path("pipe.xml"), smallList())); // it would become a plain file
    QVERIFY(!QFileInfo(path("pipe.xml")).isFile());

    QVERIFY(save("xml", smallList()));
    const ACalibrationData tooLong(QString((1 << 24) + 1, QLatin1Char('x')), ACalibrationData::Cable);
    QVERIFY(!save("xml", {tooLong}));
    Objects objects;
    QVERIFY(read("xml", &objects));
    QCOMPARE(objects, smallList());
}

QTEST_GUILESS_MAIN(TestACalibrationData)
#include "tst_acalibrationdata.moc"
