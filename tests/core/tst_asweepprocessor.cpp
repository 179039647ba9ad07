#include "core/astoragelocation.h"
#include "core/asweepprocessor.h"
#include "core/emu.h"
#include "core/recordings.h"

#include <QtCore/QDir>
#include <QtTest/QtTest>

#include <random>

// What each mode of peak suppression does to a spectrum.

namespace {

constexpr double kFloor = -100.0;

class Processor : public ASweepProcessor
{
public:
    ASweep process(ASweep sweep)
    {
        deliver(&sweep);
        return sweep;
    }
};

// A flat floor with peaks on it, as "index height" in decibels.
using Peaks = QList<QPair<int, double>>;

QList<AMeasurementValue> spectrum(int count, const Peaks &peaks, int unit = kdBm)
{
    QList<AMeasurementValue> values;
    const auto level = [unit](double decibels) {
        const emu_entry *entry = emu_find(unit);
        return entry->logarithmic ? decibels : std::pow(10.0, decibels / entry->decibelsPerDecade);
    };
    for (int i = 0; i < count; ++i)
        values.append(AMeasurementValue(level(kFloor), static_cast<unsigned char>(unit), hertz(1000.0 * i), 5, 0.5));
    for (const auto &[index, height] : peaks)
        values[index].level = level(kFloor + height);
    return values;
}

// The points above the floor, as they are given to spectrum(): "20+5 60+30".
QString peaksOf(const QList<AMeasurementValue> &values)
{
    QStringList texts;
    for (int i = 0; i < values.size(); ++i) {
        const emu_entry *unit = emu_find(values[i].unit);
        const double level =
            unit->logarithmic ? values[i].level : unit->decibelsPerDecade * std::log10(values[i].level);
        const double height = std::round((level - kFloor) * 1e6) / 1e6;
        if (height != 0.0 || std::isnan(height))
            texts += QStringLiteral("%1%2%3").arg(i).arg(height < 0.0 ? "" : "+").arg(height);
    }
    return texts.join(QLatin1Char(' '));
}

// The example of docs/recordings.md: narrow peaks 8, 15 and 40 dB high, one of three points, and a broad signal.
Peaks documentedPeaks()
{
    Peaks peaks = {{20, 8}, {40, 15}, {60, 40}, {79, 12}, {80, 25}, {81, 12}};
    for (int i = 100; i < 108; ++i)
        peaks.append({i, 30});
    return peaks;
}

const char kBroad[] = " 100+30 101+30 102+30 103+30 104+30 105+30 106+30 107+30";

} // namespace

class TestASweepProcessor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsWithoutSuppression();
    void keepsWhatWasSet();
    void anUnknownModeIsNone();
    void theModesOnOneSpectrum_data();
    void theModesOnOneSpectrum();
    void aLinearUnitIsLoweredByTheSameDecibels_data();
    void aLinearUnitIsLoweredByTheSameDecibels();
    void pointsOfOtherUnitsAreComparedInOne();
    void anUnknownUnitIsTakenForDecibels();
    void whatIsAPeak_data();
    void whatIsAPeak();
    void noiseKeepsItsFloor();
    void aSlopeIsNoPeak();
    void onlyTheLevelsChange();
    void withoutSuppressionEveryBitStays();
    void levelsThatAreNoNumbersStay();
    void aGapIsNeitherPartOfAPeakNorItsEnd();
    void zerosOfALinearUnitAreTheFloor();
    void sweepsWithoutSurroundingsStay_data();
    void sweepsWithoutSurroundingsStay();
    void aSharedListIsNotChanged();
    void theSignalHandsOutTheSuppressedSweep();

    void aFileSaysWhatIsLoweredWhere();
    void aFileHasNoEffectInAnotherMode_data();
    void aFileHasNoEffectInAnotherMode();
    void customWithoutAFileChangesNothing();
    void anEmptyNameTakesTheFileAway();
    void aDataFileIsFoundByItsName();
    void formsOfAFile_data();
    void formsOfAFile();
    void damagedFilesAreRefused_data();
    void damagedFilesAreRefused();
    void filesThatCannotBeReadAreRefused();

private:
    QString path(const char *name) const { return m_dir.filePath(QString::fromLatin1(name)); }
    // Sets the mode, and the ranges of SuppressionCustom by way of a file.
    bool suppress(ASweepProcessor *processor, ASweepProcessor::PeakSuppressionMode mode, const char *ranges) const
    {
        const bool ok =
            writeFile(path("ranges.txt"), ranges) && processor->setPeakSuppression(path("ranges.txt"), false);
        processor->setPeakSuppression(mode);
        return ok;
    }

    QTemporaryDir m_dir;
};

void TestASweepProcessor::startsWithoutSuppression()
{
    const ASweepProcessor processor;
    QCOMPARE(processor.peakSuppressionMode(), ASweepProcessor::NoSuppression);
    QVERIFY(processor.peakSuppressionFile().isEmpty());
}

void TestASweepProcessor::keepsWhatWasSet()
{
    ASweepProcessor processor;
    for (int mode = 0; mode <= 4; ++mode) {
        processor.setPeakSuppression(static_cast<ASweepProcessor::PeakSuppressionMode>(mode));
        QCOMPARE(static_cast<int>(processor.peakSuppressionMode()), mode);
    }
    QVERIFY(!processor.setPeakSuppression(QStringLiteral("missing.txt"), true));
    QCOMPARE(processor.peakSuppressionFile(), QStringLiteral("missing.txt"));
    QCOMPARE(processor.peakSuppressionMode(), ASweepProcessor::NoSuppression);
}

void TestASweepProcessor::anUnknownModeIsNone()
{
    ASweepProcessor processor;
    processor.setPeakSuppression(ASweepProcessor::Suppression10);
    processor.setPeakSuppression(static_cast<ASweepProcessor::PeakSuppressionMode>(5));
    QCOMPARE(processor.peakSuppressionMode(), ASweepProcessor::NoSuppression);
}

void TestASweepProcessor::theModesOnOneSpectrum_data()
{
    QTest::addColumn<ASweepProcessor::PeakSuppressionMode>("mode");
    QTest::addColumn<QString>("expected");
    QTest::newRow("10") << ASweepProcessor::Suppression10 << "40+5 60+30 79+2 80+15 81+2";
    QTest::newRow("20") << ASweepProcessor::Suppression20 << "60+20 80+5";
    QTest::newRow("noise floor") << ASweepProcessor::SuppressionNF << "";
    QTest::newRow("custom") << ASweepProcessor::SuppressionCustom << "20+8 40+3 60+40";
    QTest::newRow("none") << ASweepProcessor::NoSuppression << "20+8 40+15 60+40 79+12 80+25 81+12";
}

void TestASweepProcessor::theModesOnOneSpectrum()
{
    QFETCH(ASweepProcessor::PeakSuppressionMode, mode);
    QFETCH(QString, expected);
    Processor processor;
    QVERIFY(suppress(&processor, mode, "39 kHz; 41 kHz; 12\n70 kHz; 110 kHz; all\n"));
    const ASweep result = processor.process(ASweep(spectrum(130, documentedPeaks())));
    QCOMPARE(peaksOf(result.values), (expected + kBroad).trimmed());
}

void TestASweepProcessor::aLinearUnitIsLoweredByTheSameDecibels_data()
{
    QTest::addColumn<int>("unit");
    for (const int unit : {0, 1, 4, 5, 8, 9, 10, 11, 15, 16, 17})
        QTest::addRow("%d", unit) << unit;
}

void TestASweepProcessor::aLinearUnitIsLoweredByTheSameDecibels()
{
    QFETCH(int, unit);
    Processor processor;
    processor.setPeakSuppression(ASweepProcessor::Suppression10);
    const ASweep result = processor.process(ASweep(spectrum(130, documentedPeaks(), unit)));
    QCOMPARE(peaksOf(result.values), QStringLiteral("40+5 60+30 79+2 80+15 81+2") + kBroad);
}

void TestASweepProcessor::pointsOfOtherUnitsAreComparedInOne()
{
    QList<AMeasurementValue> values = spectrum(60, {{30, 25}});
    const QList<AMeasurementValue> mixed = [&values] {
        QList<AMeasurementValue> list = values;
        for (int i = 1; i < list.size(); i += 2)
            list[i] = list[i].convertTo(kdBuV);
        list[30] = list[30].convertTo(kV);
        return list;
    }();
    Processor processor;
    processor.setPeakSuppression(ASweepProcessor::Suppression10);
    const ASweep result = processor.process(ASweep(mixed));
    for (int i = 0; i < mixed.size(); ++i) {
        QCOMPARE(result.values[i].unit, mixed[i].unit);
        const double lowered = mixed[i].convertTo(kdBm).level - result.values[i].convertTo(kdBm).level;
        QVERIFY(std::fabs(lowered - (i == 30 ? 10.0 : 0.0)) < 1e-6);
    }
}

void TestASweepProcessor::anUnknownUnitIsTakenForDecibels()
{
    QList<AMeasurementValue> values = spectrum(60, {{30, 25}});
    for (AMeasurementValue &value : values)
        value.unit = 99;
    Processor processor;
    processor.setPeakSuppression(ASweepProcessor::Suppression10);
    QCOMPARE(processor.process(ASweep(values)).values[30].level, kFloor + 15.0);
}

void TestASweepProcessor::whatIsAPeak_data()
{
    QTest::addColumn<Peaks>("before");
    QTest::addColumn<QString>("after"); // down to the floor
    const auto run = [](int first, int count, double height) {
        Peaks peaks;
        for (int i = 0; i < count; ++i)
            peaks.append({first + i, height});
        return peaks;
    };
    QTest::newRow("6 dB are none") << run(30, 1, 6.0) << "30+6";
    QTest::newRow("more are one") << run(30, 1, 6.001) << "";
    QTest::newRow("five points are narrow") << run(30, 5, 20.0) << "";
    QTest::newRow("six are not") << run(30, 6, 20.0) << "30+20 31+20 32+20 33+20 34+20 35+20";
    QTest::newRow("a shoulder that is low does not count") << Peaks{{29, 5}, {30, 20}, {31, 5}} << "29+5 31+5";
    QTest::newRow("the first point") << run(0, 1, 20.0) << "";
    QTest::newRow("the first five") << run(0, 5, 20.0) << "";
    QTest::newRow("the last point") << run(59, 1, 20.0) << "";
    QTest::newRow("the last five") << run(55, 5, 20.0) << "";
    QTest::newRow("two close ones") << run(30, 2, 20.0) + run(33, 2, 12.0) << "";
    QTest::newRow("a dip is none") << run(30, 1, -20.0) << "30-20";
}

void TestASweepProcessor::whatIsAPeak()
{
    QFETCH(Peaks, before);
    QFETCH(QString, after);
    Processor processor;
    processor.setPeakSuppression(ASweepProcessor::SuppressionNF);
    QCOMPARE(peaksOf(processor.process(ASweep(spectrum(60, before))).values), after);
}

// The median of a noise does not move, and no level rises.
void TestASweepProcessor::noiseKeepsItsFloor()
{
    std::mt19937 random(7);
    std::normal_distribution<double> noise(kFloor, 2.0);
    QList<AMeasurementValue> before = spectrum(20000, {});
    for (AMeasurementValue &value : before)
        value.level = noise(random);
    const auto median = [](const QList<AMeasurementValue> &values) {
        std::vector<double> levels;
        for (const AMeasurementValue &value : values)
            levels.push_back(value.level);
        std::nth_element(levels.begin(), levels.begin() + values.size() / 2, levels.end());
        return levels[static_cast<std::size_t>(values.size() / 2)];
    };
    for (const auto mode : {ASweepProcessor::Suppression10, ASweepProcessor::SuppressionNF}) {
        Processor processor;
        processor.setPeakSuppression(mode);
        const QList<AMeasurementValue> after = processor.process(ASweep(before)).values;
        QVERIFY(std::fabs(median(after) - median(before)) < 0.05);
        int changed = 0;
        for (int i = 0; i < before.size(); ++i) {
            QVERIFY(after[i].level <= before[i].level);
            changed += after[i].level != before[i].level ? 1 : 0;
        }
        QVERIFY2(changed < before.size() / 100, qPrintable(QString::number(changed)));
    }
}

void TestASweepProcessor::aSlopeIsNoPeak()
{
    QList<AMeasurementValue> values = spectrum(200, {});
    for (int i = 0; i < values.size(); ++i)
        values[i].level = kFloor + 0.5 * i;
    Processor processor;
    processor.setPeakSuppression(ASweepProcessor::SuppressionNF);
    QVERIFY(same(processor.process(ASweep(values)).values, values));
}

void TestASweepProcessor::onlyTheLevelsChange()
{
    ASweep sweep(spectrum(60, {{30, 25}}), utc(0), utc(20));
    sweep.setGeoData(richPosition());
    Processor processor;
    processor.setPeakSuppression(ASweepProcessor::Suppression20);
    ASweep result = processor.process(sweep);
    QCOMPARE(result.values[30].level, kFloor + 5.0);
    result.values[30].level = kFloor + 25.0;
    QVERIFY(same(result, sweep));
}

void TestASweepProcessor::withoutSuppressionEveryBitStays()
{
    QList<AMeasurementValue> values = spectrum(130, documentedPeaks());
    values[3].level = kNaN;
    Processor processor;
    QVERIFY(same(processor.process(ASweep(values)).values, values));
}

void TestASweepProcessor::levelsThatAreNoNumbersStay()
{
    QList<AMeasurementValue> values = spectrum(60, {{10, 20}, {29, 20}, {31, 20}, {50, 8}});
    values[30].level = kNaN; // inside of a peak, which stays one
    values[10].level = kInfinity;
    values[45].level = -kInfinity;
    values[51].level = kNaN;
    Processor processor;
    processor.setPeakSuppression(ASweepProcessor::SuppressionNF);
    const QList<AMeasurementValue> result = processor.process(ASweep(values)).values;
    QVERIFY(std::isnan(result[30].level));
    QVERIFY(std::isnan(result[51].level));
    QCOMPARE(result[10].level, kInfinity);
    QCOMPARE(result[45].level, -kInfinity);
    for (const int i : {29, 31, 50})
        QCOMPARE(result[i].level, kFloor);

    const QList<AMeasurementValue> nothing = points(std::vector<double>(50, kNaN));
    QVERIFY(same(processor.process(ASweep(nothing)).values, nothing));
}

void TestASweepProcessor::aGapIsNeitherPartOfAPeakNorItsEnd()
{
    Peaks peaks; // five points around one gap, six around another
    for (const int i : {20, 21, 23, 24, 25, 50, 51, 52, 54, 55, 56})
        peaks.append({i, 20.0});
    QList<AMeasurementValue> values = spectrum(80, peaks);
    values[22].level = kNaN;
    values[53].level = kNaN;
    Processor processor;
    processor.setPeakSuppression(ASweepProcessor::SuppressionNF);
    QCOMPARE(peaksOf(processor.process(ASweep(values)).values),
             QStringLiteral("22+nan 50+20 51+20 52+20 53+nan 54+20 55+20 56+20"));
}

void TestASweepProcessor::zerosOfALinearUnitAreTheFloor()
{
    QList<AMeasurementValue> values = spectrum(40, {}, kV);
    for (AMeasurementValue &value : values)
        value.level = 0.0;
    values[20].level = 5.0;
    values[5].level = -1.0; // has no decibels
    Processor processor;
    processor.setPeakSuppression(ASweepProcessor::Suppression20);
    QCOMPARE(processor.process(ASweep(values)).values[20].level, 0.5);
    processor.setPeakSuppression(ASweepProcessor::SuppressionNF);
    const QList<AMeasurementValue> result = processor.process(ASweep(values)).values;
    QCOMPARE(result[20].level, 0.0);
    QCOMPARE(result[5].level, -1.0);
}

void TestASweepProcessor::sweepsWithoutSurroundingsStay_data()
{
    QTest::addColumn<int>("count");
    for (const int count : {0, 1, 2})
        QTest::addRow("%d", count) << count;
}

void TestASweepProcessor::sweepsWithoutSurroundingsStay()
{
    QFETCH(int, count);
    QList<AMeasurementValue> values = spectrum(count, {});
    if (count > 0)
        values.last().level = 0.0;
    for (int mode = 0; mode <= 4; ++mode) {
        Processor processor;
        processor.setPeakSuppression(static_cast<ASweepProcessor::PeakSuppressionMode>(mode));
        QVERIFY(same(processor.process(ASweep(values)).values, values));
    }
}

void TestASweepProcessor::aSharedListIsNotChanged()
{
    const ASweep sweep(spectrum(60, {{30, 25}}));
    const ASweep kept = sweep;
    Processor processor;
    processor.setPeakSuppression(ASweepProcessor::SuppressionNF);
    processor.process(sweep);
    QCOMPARE(kept.values[30].level, kFloor + 25.0);
}

void TestASweepProcessor::theSignalHandsOutTheSuppressedSweep()
{
    Processor processor;
    processor.setPeakSuppression(ASweepProcessor::Suppression20);
    QString seen;
    connect(&processor, &ASweepProcessor::sweepFinished, this, [&seen](ASweep &sweep) {
        seen = peaksOf(sweep.values);
        sweep.values.clear(); // the receiver's to change
    });
    QVERIFY(processor.process(ASweep(spectrum(60, {{30, 25}}))).values.isEmpty());
    QCOMPARE(seen, QStringLiteral("30+5"));
}

// --- files ---

void TestASweepProcessor::aFileSaysWhatIsLoweredWhere()
{
    Processor processor;
    QVERIFY(suppress(&processor, ASweepProcessor::SuppressionCustom,
                     "30000; 30000; 4\n50 kHz; 59 kHz; 100\n10 kHz; 20.5 kHz; 0\n"));
    const Peaks before = {{5, 20}, {15, 20}, {30, 20}, {40, 20}, {50, 20}, {59, 20}};
    QCOMPARE(peaksOf(processor.process(ASweep(spectrum(70, before))).values), QStringLiteral("5+20 15+20 30+16 40+20"));
}

void TestASweepProcessor::aFileHasNoEffectInAnotherMode_data()
{
    QTest::addColumn<ASweepProcessor::PeakSuppressionMode>("mode");
    QTest::addColumn<double>("height");
    QTest::newRow("10") << ASweepProcessor::Suppression10 << 15.0;
    QTest::newRow("20") << ASweepProcessor::Suppression20 << 5.0;
    QTest::newRow("none") << ASweepProcessor::NoSuppression << 25.0;
}

void TestASweepProcessor::aFileHasNoEffectInAnotherMode()
{
    QFETCH(ASweepProcessor::PeakSuppressionMode, mode);
    QFETCH(double, height);
    Processor processor;
    QVERIFY(suppress(&processor, mode, "0; 1 GHz; all\n"));
    QCOMPARE(processor.process(ASweep(spectrum(60, {{30, 25}}))).values[30].level, kFloor + height);
}

void TestASweepProcessor::customWithoutAFileChangesNothing()
{
    const QList<AMeasurementValue> values = spectrum(60, {{30, 25}});
    Processor processor;
    processor.setPeakSuppression(ASweepProcessor::SuppressionCustom);
    QVERIFY(same(processor.process(ASweep(values)).values, values));
    QVERIFY(!processor.setPeakSuppression(path("missing.txt"), false));
    QVERIFY(same(processor.process(ASweep(values)).values, values));
}

void TestASweepProcessor::anEmptyNameTakesTheFileAway()
{
    const QList<AMeasurementValue> values = spectrum(60, {{30, 25}});
    QVERIFY(writeFile(path("ranges.txt"), "0; 1 GHz; all\n"));
    Processor processor;
    processor.setPeakSuppression(ASweepProcessor::SuppressionCustom);
    QVERIFY(processor.setPeakSuppression(path("ranges.txt"), false));
    QCOMPARE(processor.process(ASweep(values)).values[30].level, kFloor);
    QVERIFY(processor.setPeakSuppression(QString(), true));
    QVERIFY(processor.peakSuppressionFile().isEmpty());
    QVERIFY(same(processor.process(ASweep(values)).values, values));
}

void TestASweepProcessor::aDataFileIsFoundByItsName()
{
    QVERIFY(QDir(m_dir.path()).mkpath(QStringLiteral("installed")));
    QVERIFY(writeFile(path("installed/spurs.txt"), "0; 1 GHz; all\n"));
    AStorageLocation::setRoot(AStorageLocation::Installed, path("installed"));
    AStorageLocation::setRoot(AStorageLocation::User, path("user"));
    Processor processor;
    const bool byName = processor.setPeakSuppression(QStringLiteral("spurs.txt"), true);
    const bool byPath = ASweepProcessor().setPeakSuppression(QStringLiteral("spurs.txt"), false);
    AStorageLocation::setRoot(AStorageLocation::Installed, QString());
    AStorageLocation::setRoot(AStorageLocation::User, QString());
    QVERIFY(byName);
    QVERIFY(!byPath);
    QCOMPARE(processor.peakSuppressionFile(), QStringLiteral("spurs.txt"));
    processor.setPeakSuppression(ASweepProcessor::SuppressionCustom);
    QCOMPARE(processor.process(ASweep(spectrum(60, {{30, 25}}))).values[30].level, kFloor);
}

void TestASweepProcessor::formsOfAFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<double>("height"); // of a peak of 25 dB at 30 kHz
    QTest::newRow("nothing") << QByteArray("") << 25.0;
    QTest::newRow("a byte order mark") << QByteArray("\xef\xbb\xbf"
                                                     "29 kHz;31 kHz;5\n")
                                       << 20.0;
    QTest::newRow("remarks") << QByteArray("# spurs\n\n   \n") << 25.0;
    QTest::newRow("a unit and a comma") << QByteArray("29,9kHz ; 0.0301 MHz;7,5 dB") << 17.5;
    QTest::newRow("line ends of another system") << QByteArray("# a\r\n29 kHz;31 kHz;5\r\n") << 20.0;
    QTest::newRow("any order") << QByteArray("40 kHz;50 kHz;1\n29 kHz;31 kHz;5\n1 kHz;2 kHz;1\n") << 20.0;
    QTest::newRow("neighbours") << QByteArray("29 kHz;29.9 kHz;1\n30 kHz;31 kHz;5\n") << 20.0;
    QTest::newRow("a range that begins below zero") << QByteArray("-1 MHz;1 MHz;5\n") << 20.0;
}

void TestASweepProcessor::formsOfAFile()
{
    QFETCH(QByteArray, content);
    QFETCH(double, height);
    QVERIFY(writeFile(path("form.txt"), content));
    Processor processor;
    processor.setPeakSuppression(ASweepProcessor::SuppressionCustom);
    QString errorText;
    QVERIFY2(processor.setPeakSuppression(path("form.txt"), false, &errorText), qPrintable(errorText));
    QCOMPARE(processor.process(ASweep(spectrum(60, {{30, 25}}))).values[30].level, kFloor + height);
}

void TestASweepProcessor::damagedFilesAreRefused_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("inError");
    QTest::newRow("too few") << QByteArray("# a\n1;2\n") << "2";
    QTest::newRow("a second byte order mark") << QByteArray("\xef\xbb\xbf\xef\xbb\xbf"
                                                            "1;2;3\n")
                                              << "1";
    QTest::newRow("too many") << QByteArray("1;2;3;4\n") << "1";
    QTest::newRow("no frequency") << QByteArray("1;2;3\n\nx;2;3\n") << "3";
    QTest::newRow("no decibels") << QByteArray("1;2;\n") << "1";
    QTest::newRow("other decibels") << QByteArray("1;2;all of it\n") << "1";
    QTest::newRow("negative decibels") << QByteArray("1;2;-3\n") << "1";
    QTest::newRow("NaN") << QByteArray("1;2;nan\n") << "1";
    QTest::newRow("infinite") << QByteArray("1;2;inf\n") << "1";
    QTest::newRow("end below the begin") << QByteArray("2;1;3\n") << "1";
    QTest::newRow("overlap") << QByteArray("1;5;3\n5;7;3\n") << "";
    QTest::newRow("binary") << QByteArray("1;2;3\n\0\0", 8) << "";
    QTest::newRow("a long line") << QByteArray(100000, '1') << "";
}

void TestASweepProcessor::damagedFilesAreRefused()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, inError);
    Processor processor;
    processor.setPeakSuppression(ASweepProcessor::SuppressionCustom);
    QVERIFY(writeFile(path("damaged.txt"), content));
    QString errorText;
    QVERIFY(!processor.setPeakSuppression(path("damaged.txt"), false, &errorText));
    QVERIFY(!errorText.isEmpty());
    QVERIFY2(errorText.contains(inError), qPrintable(errorText));
    const QList<AMeasurementValue> values = spectrum(60, {{30, 25}, {0, 10}});
    QVERIFY(same(processor.process(ASweep(values)).values, values));
}

void TestASweepProcessor::filesThatCannotBeReadAreRefused()
{
    ASweepProcessor processor;
    for (const QString &name : {path("missing.txt"), m_dir.path(), QStringLiteral("/dev/zero")}) {
        QString errorText;
        QVERIFY2(!processor.setPeakSuppression(name, false, &errorText), qPrintable(name));
        QVERIFY(!errorText.isEmpty());
        QVERIFY(!processor.setPeakSuppression(name, false));
    }
}

QTEST_GUILESS_MAIN(TestASweepProcessor)
#include "tst_asweepprocessor.moc"
