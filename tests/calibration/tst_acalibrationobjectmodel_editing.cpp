#include "calibrationmodel.h"
#include "core/testercomplaints.h"

#include <QtTest/QtTest>

#include <random>

using namespace calibrationtest;

// Edits through the model: each goes to the store and to the file, and ends in a reset.
class TestACalibrationObjectModelEditing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QLocale::setDefault(QLocale::c()); }

    void whatIsNoEditIsRefused();

    void aFrequencyEdit_data();
    void aFrequencyEdit();
    void theFirstFrequencyOfAnObject();
    void aMoveStaysOpenUntilTheReset_data();
    void aMoveStaysOpenUntilTheReset();
    void aMoveDownByOneIsNone();
    void aDeletionIsAnnouncedBeforeTheStoreKnows();
    void theTesterObjectsToADeletion();
    void negatingTheLastRowChangesNothing();
    void anEditorClosedAsItWasOpenedKeepsAWholeFrequency_data();
    void anEditorClosedAsItWasOpenedKeepsAWholeFrequency();
    void theFrequencyOfARowBetweenHertzIsReplaced_data();
    void theFrequencyOfARowBetweenHertzIsReplaced();
    void theOwnTextOfAFrequencyBelowZeroDeletesIt_data();
    void theOwnTextOfAFrequencyBelowZeroDeletesIt();

    void aGainEdit_data();
    void aGainEdit();
    void aGainEditSignals();
    void aGainInTheLastRowIsAtZero();
    void aGainBelongsToTheWholeHertzOfItsRow();
    void anEditorClosedAsItWasOpenedKeepsTheGain_data();
    void anEditorClosedAsItWasOpenedKeepsTheGain();
    void theTextOfTheLastRowChangesNothing();
    void gainsAreReadInEveryLocale();
    void aPointIsADecimalSignInEveryLocale();
    void digitsAreGroupedWhereTheLocaleShowsThemSo();

    void aRenameGoesToTheFile();
    void aRenameSignals();
    void aRenameOfAnObjectWithoutALabelDoesNothing();
    void aRenameOfAnObjectWithoutALabelOntoAnotherOverwritesThatOne();
    void aRenameToAnEmptyLabel();
    void aRenameOntoALabelOfAnotherFile();
    void entriesOfAnObjectWithoutALabelAreRefused();
    void entriesOfAnObjectThatShowsNoneAreEdited();
    void anEditOfAnObjectWhoseFileHasGoneResetsAllTheSame();
    void anEditOfAnInstalledObjectGoesToTheUser();

    void randomEditsMatchAPlainTable();
};

void TestACalibrationObjectModelEditing::whatIsNoEditIsRefused()
{
    Calibrations c({ramp()});
    const QModelIndex cell = c.cell(kCable, "ramp", 0, 1);
    QVERIFY(!c.model->setData(cell, 5.0, Qt::DisplayRole));
    QVERIFY(!c.model->setData(cell, 5.0, 256));
    QVERIFY(!c.model->setData(cell, QVariant(), Qt::EditRole));
    for (const QModelIndex &index : {QModelIndex(), c.top(), c.type(kCable)})
        QVERIFY(!c.model->setData(index, "x", Qt::EditRole));
    QCOMPARE(c.takeLog(), QStringList());
}

void TestACalibrationObjectModelEditing::aFrequencyEdit_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("result");
    QTest::addColumn<QStringList>("entries"); // in megahertz
    const QStringList same{"10|1", "20|2", "30|4"};
    const auto row = [](const char *name, int number, const QVariant &value, const QStringList &entries) {
        QTest::newRow(name) << number << value << true << entries;
    };
    const auto refused = [&](const char *name, int number, const QVariant &value) {
        QTest::newRow(name) << number << value << false << same;
    };
    row("within its place", 1, "25 MHz", {"10|1", "25|3", "30|4"});
    row("down by one", 0, "25 MHz", {"20|2", "25|3", "30|4"});
    row("down to the end", 0, "35 MHz", {"20|2", "30|4", "35|4"});
    row("up to the top", 2, "5 MHz", {"5|1", "10|1", "20|2"});
    row("up by one", 2, "15 MHz", {"10|1", "15|1.5", "20|2"});
    row("to its own", 1, "20 MHz", same);
    row("added in between", 3, "15 MHz", {"10|1", "15|1.5", "20|2", "30|4"});
    row("added in front", 3, "1 MHz", {"1|1", "10|1", "20|2", "30|4"});
    row("added at the end", 3, "40 MHz", {"10|1", "20|2", "30|4", "40|4"});
    refused("another row's", 1, "10 MHz");
    refused("another row's, as a number", 1, 30000000);
    refused("another row's, added", 3, "30 MHz");
    row("other unit", 3, "2,4 GHz", {"10|1", "20|2", "30|4", "2400|4"});
    row("hertz as text", 3, "15000000", {"10|1", "15|1.5", "20|2", "30|4"});
    row("hertz with a unit", 3, "15000000Hz", {"10|1", "15|1.5", "20|2", "30|4"});
    row("int", 3, 15000000, {"10|1", "15|1.5", "20|2", "30|4"});
    row("64 bit", 3, qlonglong(9000000000000000000), {"10|1", "20|2", "30|4", "9000000000000|4"});
    row("double", 3, 15e6, {"10|1", "15|1.5", "20|2", "30|4"});
    row("zero", 3, 0, {"0|1", "10|1", "20|2", "30|4"});
    row("no frequency", 3, "text", {"0|1", "10|1", "20|2", "30|4"});
    row("no frequency on a row", 1, "text", {"0|1", "10|1", "30|4"});
    row("negative", 1, "-1", {"10|1", "30|4"});
    row("negative with a unit", 0, "-5 kHz", {"20|2", "30|4"});
    row("negative number", 2, -1, {"10|1", "20|2"});
}

void TestACalibrationObjectModelEditing::aFrequencyEdit()
{
    QFETCH(int, row);
    QFETCH(QVariant, value);
    QFETCH(bool, result);
    QFETCH(QStringList, entries);
    Calibrations c({ramp("before"), ramp(), ramp("z")});
    const QByteArray before = readFile(c.file);
    QCOMPARE(c.model->setData(c.cell(kCable, "ramp", row, 0), value), result);
    QStringList megahertz;
    for (const QString &entry : c.saved("ramp"))
        megahertz << QString::number(entry.section('|', 0, 0).toDouble() / 1e6, 'g', 15) + '|' + entry.section('|', 1);
    QCOMPARE(megahertz, entries);
    QCOMPARE(c.table(kCable, "ramp").size(), entries.size() + 1);
    QCOMPARE(c.table(kCable, "ramp").last(), kAddRow);
    QCOMPARE(c.saved("before"), (QStringList{"10000000|1", "20000000|2", "30000000|4"}));
    QCOMPARE(c.saved("z"), c.saved("before"));
    if (!result) {
        QCOMPARE(c.takeLog(), QStringList());
        QCOMPARE(readFile(c.file), before);
    }
}

void TestACalibrationObjectModelEditing::theFirstFrequencyOfAnObject()
{
    Calibrations c({ACalibrationData("empty", kCable)});
    QVERIFY(c.model->setData(c.cell(kCable, "empty", 0, 0), "5 MHz"));
    QCOMPARE(c.takeLog(), (QStringList{"data 0,0-0,1", "calibration 2", "to reset", "reset"}));
    QCOMPARE(c.table(kCable, "empty"), (QStringList{"5.000 MHz|0 dB", kAddRow}));
}

void TestACalibrationObjectModelEditing::aMoveStaysOpenUntilTheReset_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("move");
    QTest::newRow("down") << 0 << "35 MHz"
                          << "to move 0-0 to 2";
    QTest::newRow("up") << 2 << "5 MHz"
                        << "to move 2-2 to 0";
    QTest::newRow("added in between") << 3 << "15 MHz"
                                      << "to move 3-3 to 0";
    QTest::newRow("added at the end") << 3 << "40 MHz"
                                      << "to move 3-3 to 2";
    QTest::newRow("within its place") << 1 << "25 MHz" << QString();
}

void TestACalibrationObjectModelEditing::aMoveStaysOpenUntilTheReset()
{
    QFETCH(int, row);
    QFETCH(QString, value);
    QFETCH(QString, move);
    Calibrations c({ramp()});
    const QPersistentModelIndex persistent = c.cell(kCable, "ramp", 1, 0);
    QVERIFY(c.model->setData(c.cell(kCable, "ramp", row, 0), value));
    QStringList expected{QStringLiteral("data %1,0-%1,1").arg(row), "calibration 2", "to reset", "reset"};
    if (!move.isEmpty())
        expected.prepend(move);
    QCOMPARE(c.takeLog(), expected);
    QVERIFY(!persistent.isValid());
    // Later edits, removals and resets find a model in order.
    QVERIFY(c.model->setData(c.cell(kCable, "ramp", 1, 0), "100 MHz"));
    QVERIFY(c.model->removeRows(0, 1, c.object(kCable, "ramp")));
    c.takeLog();
    const QPersistentModelIndex kept = c.object(kCable, "ramp");
    c.manager->addCalibrationData(ramp("new"), "-");
    QVERIFY(!kept.isValid());
    QCOMPARE(c.takeLog(), (QStringList{"calibration 2", "to reset", "reset"}));
}

// The place below the next row is where it stands already, in the way moves count.
void TestACalibrationObjectModelEditing::aMoveDownByOneIsNone()
{
    Calibrations c({ramp()});
    QVERIFY(c.model->setData(c.cell(kCable, "ramp", 0, 0), "25 MHz"));
    QCOMPARE(c.takeLog(), (QStringList{"data 0,0-0,1", "calibration 2", "to reset", "reset"}));
    QCOMPARE(c.table(kCable, "ramp"), (QStringList{"20.000 MHz|2 dB", "25.000 MHz|3 dB", "30.000 MHz|4 dB", kAddRow}));
}

void TestACalibrationObjectModelEditing::aDeletionIsAnnouncedBeforeTheStoreKnows()
{
    Calibrations c({ramp()});
    QVERIFY(c.model->setData(c.cell(kCable, "ramp", 1, 0), "-1 MHz"));
    QCOMPARE(c.takeLog(), (QStringList{"to remove 1-1", "removed 1-1", "calibration 2", "to reset", "reset"}));
}

void TestACalibrationObjectModelEditing::theTesterObjectsToADeletion()
{
    Calibrations c({ramp()});
    const QStringList complaints =
        complaintsAbout(c.model.get(), [&c] { c.model->setData(c.cell(kCable, "ramp", 1, 0), "-1 MHz"); });
    QCOMPARE(complaints.size(), 1);
    QVERIFY2(complaints.first().contains("rowCount"), qPrintable(complaints.first()));
}

void TestACalibrationObjectModelEditing::negatingTheLastRowChangesNothing()
{
    Calibrations c({ramp()});
    const QByteArray before = readFile(c.file);
    QVERIFY(!c.model->setData(c.cell(kCable, "ramp", 3, 0), "-1 MHz"));
    QVERIFY(!c.model->setData(c.cell(kCable, "ramp", 3, 0), -20000000));
    QCOMPARE(c.takeLog(), QStringList());
    QCOMPARE(readFile(c.file), before);
}

void TestACalibrationObjectModelEditing::anEditorClosedAsItWasOpenedKeepsAWholeFrequency_data()
{
    QTest::addColumn<QByteArray>("frequency");
    for (const char *frequency : {"20 MHz", "8333 Hz", "0", "9223372036854775807"})
        QTest::newRow(frequency) << QByteArray(frequency);
}

void TestACalibrationObjectModelEditing::anEditorClosedAsItWasOpenedKeepsAWholeFrequency()
{
    QFETCH(QByteArray, frequency);
    const ACalibrationData before = object("o", kCable, {{frequency.constData(), 1}, {"7 MHz", 3}});
    const int row = before.level().keys().indexOf(AFrequency(frequency));
    for (bool asText : {false, true}) {
        Calibrations c({before});
        const QModelIndex cell = c.cell(kCable, "o", row, 0);
        const QVariant value = cell.data(Qt::EditRole);
        QVERIFY(c.model->setData(cell, asText ? QVariant(value.toString()) : value));
        QCOMPARE(c.model->getCalObject(c.object(kCable, "o")), before);
    }
}

void TestACalibrationObjectModelEditing::theFrequencyOfARowBetweenHertzIsReplaced_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("with a unit") << QVariant("8333 Hz");
    QTest::newRow("what the editor shows") << QVariant("8333");
    QTest::newRow("what the editor shows, as a number") << QVariant(qlonglong(8333));
}

void TestACalibrationObjectModelEditing::theFrequencyOfARowBetweenHertzIsReplaced()
{
    QFETCH(QVariant, value);
    Calibrations c({object("o", kCable, {{"8333.33", 1}, {"9000.5", 2}})});
    QVERIFY(c.model->setData(c.cell(kCable, "o", 0, 0), value));
    QCOMPARE(c.saved("o"), (QStringList{"8333|1", "9000.5|2"}));
    QVERIFY(c.model->setData(c.cell(kCable, "o", 1, 0), "-1"));
    QCOMPARE(c.saved("o"), QStringList{"8333|1"});
}

void TestACalibrationObjectModelEditing::theOwnTextOfAFrequencyBelowZeroDeletesIt_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("text") << QVariant("-3000");
    QTest::newRow("number") << QVariant(qlonglong(-3000));
}

void TestACalibrationObjectModelEditing::theOwnTextOfAFrequencyBelowZeroDeletesIt()
{
    QFETCH(QVariant, value);
    Calibrations c({object("o", kCable, {{"-3 kHz", 1}, {"1 MHz", 2}})});
    QCOMPARE(c.cell(kCable, "o", 0, 0).data(Qt::EditRole).toString(), value.toString());
    QVERIFY(c.model->setData(c.cell(kCable, "o", 0, 0), value));
    QCOMPARE(c.takeLog(), (QStringList{"to remove 0-0", "removed 0-0", "calibration 2", "to reset", "reset"}));
    QCOMPARE(c.saved("o"), QStringList{"1000000|2"});
}

void TestACalibrationObjectModelEditing::aGainEdit_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("gain");
    const auto row = [](const char *name, const QVariant &value, const char *gain) {
        QTest::newRow(name) << value << QString(gain);
    };
    row("double", -3.25, "-3.25");
    row("int", 7, "7");
    row("zero", 0.0, "0");
    row("text", "-3.25", "-3.25");
    row("unit", "-3.25 dB", "-3.25");
    row("antenna's unit", "3 dBi", "3");
    row("blanks", "  5.5  dB", "5.5");
    row("the second part", "gain 5.5 dB", "5.5");
    row("a later part that is not zero", "0 5.5", "5.5");
    row("exponent", "1e-3 dB", "0.001");
    row("zero with a unit", "0 dB", "0");
    row("no number", "text", "0");
    row("empty", "", "0");
    row("unit without a blank", "5dB", "0");
}

void TestACalibrationObjectModelEditing::aGainEdit()
{
    QFETCH(QVariant, value);
    QFETCH(QString, gain);
    Calibrations c({ramp()});
    QVERIFY(c.model->setData(c.cell(kCable, "ramp", 1, 1), value));
    QCOMPARE(c.saved("ramp"), (QStringList{"10000000|1", "20000000|" + gain, "30000000|4"}));
}

void TestACalibrationObjectModelEditing::aGainEditSignals()
{
    Calibrations c({ramp()});
    QVERIFY(c.model->setData(c.cell(kCable, "ramp", 1, 1), 5));
    QCOMPARE(c.takeLog(), (QStringList{"data 1,1-1,1", "calibration 2", "to reset", "reset"}));
}

void TestACalibrationObjectModelEditing::aGainInTheLastRowIsAtZero()
{
    Calibrations c({ramp()});
    QVERIFY(c.model->setData(c.cell(kCable, "ramp", 3, 1), "5 dB"));
    QCOMPARE(c.saved("ramp"), (QStringList{"0|5", "10000000|1", "20000000|2", "30000000|4"}));
}

void TestACalibrationObjectModelEditing::aGainBelongsToTheWholeHertzOfItsRow()
{
    Calibrations c({object("o", kCable, {{"8333.33", 1}})});
    QVERIFY(c.model->setData(c.cell(kCable, "o", 0, 1), 5));
    QCOMPARE(c.saved("o"), (QStringList{"8333|5", "8333.33|1"}));
    // From then on the whole hertz have a row of their own.
    QVERIFY(c.model->setData(c.cell(kCable, "o", 0, 1), 6));
    QCOMPARE(c.saved("o"), (QStringList{"8333|6", "8333.33|1"}));
}

void TestACalibrationObjectModelEditing::anEditorClosedAsItWasOpenedKeepsTheGain_data()
{
    QTest::addColumn<double>("gain");
    for (double gain : {1.0, 0.0, -1234.0, 1234567.0, 12.3456789, 1e-300, -0.001, kNan, kInfinity})
        QTest::newRow(qPrintable(QString::number(gain))) << gain;
}

void TestACalibrationObjectModelEditing::anEditorClosedAsItWasOpenedKeepsTheGain()
{
    QFETCH(double, gain);
    const ACalibrationData before = object("o", kCable, {{"1000000.5 Hz", gain}});
    for (const QLocale &locale : {QLocale::c(), QLocale(QLocale::German), QLocale(QLocale::Persian)}) {
        QLocale::setDefault(locale);
        Calibrations c({before});
        const QModelIndex cell = c.cell(kCable, "o", 0, 1);
        QVERIFY(c.model->setData(cell, cell.data(Qt::EditRole)));
        QCOMPARE(c.model->getCalObject(c.object(kCable, "o")), before);
    }
}

void TestACalibrationObjectModelEditing::theTextOfTheLastRowChangesNothing()
{
    Calibrations c({ramp()});
    for (int column : {0, 1})
        QVERIFY(!c.model->setData(c.cell(kCable, "ramp", 3, column), "-- add value --"));
    QCOMPARE(c.takeLog(), QStringList());
}

void TestACalibrationObjectModelEditing::gainsAreReadInEveryLocale()
{
    const QList<QLocale> locales =
        QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry);
    QVERIFY(locales.size() > 100);
    Calibrations c;
    c.manager->addCalibrationData(flat("o", kCable, 0), "-");
    for (const QLocale &locale : locales) {
        QLocale::setDefault(locale);
        for (double gain : {-12.5, 3.0, 1234.5, 0.001}) {
            // What another row would show.
            const QString shown = QStringLiteral("%L1 dB").arg(gain, 0, 'g', -1);
            QVERIFY(c.model->setData(c.cell(kCable, "o", 0, 1), 7.0));
            QVERIFY(c.model->setData(c.cell(kCable, "o", 0, 1), shown));
            const double read = c.model->getCalObject(c.object(kCable, "o")).valueAt("1 MHz", true);
            QVERIFY2(read == gain, qPrintable(locale.name() + QLatin1Char(' ') + shown));
        }
    }
}

void TestACalibrationObjectModelEditing::aPointIsADecimalSignInEveryLocale()
{
    for (const QLocale &locale : {QLocale::c(), QLocale(QLocale::German), QLocale(QLocale::French),
                                  QLocale(QLocale::Spanish), QLocale(QLocale::Swedish), QLocale(QLocale::Arabic)}) {
        QLocale::setDefault(locale);
        Calibrations c({ramp()});
        for (const auto &[text, gain] : {std::pair("-0.512 dB", -0.512), std::pair("1.234", 1.234),
                                         std::pair("1.5 dB", 1.5), std::pair("-12.25", -12.25)}) {
            QVERIFY(c.model->setData(c.cell(kCable, "ramp", 0, 1), QString(text)));
            QCOMPARE(c.model->getCalObject(c.object(kCable, "ramp")).valueAt("10 MHz", true), gain);
        }
    }
}

void TestACalibrationObjectModelEditing::digitsAreGroupedWhereTheLocaleShowsThemSo()
{
    for (const auto &[locale, gain] : {std::pair(QLocale::c(), 0.0), std::pair(QLocale(QLocale::German), 1.234),
                                       std::pair(QLocale(QLocale::English), 1234.0)}) {
        QLocale::setDefault(locale);
        Calibrations c({ramp()});
        QVERIFY(c.model->setData(c.cell(kCable, "ramp", 0, 1), "1,234 dB"));
        QCOMPARE(c.model->getCalObject(c.object(kCable, "ramp")).valueAt("10 MHz", true), gain);
    }
}

void TestACalibrationObjectModelEditing::aRenameGoesToTheFile()
{
    Calibrations c({ramp("a"), ramp("b"), ramp("c")});
    QVERIFY(c.model->setData(c.object(kCable, "a"), "z"));
    QCOMPARE(c.manager->getCalibrationNames(kCable), (QStringList{"b", "c", "z"}));
    QCOMPARE(c.saved("z"), (QStringList{"10000000|1", "20000000|2", "30000000|4"}));
    QCOMPARE(c.saved("a"), QStringList());
    QCOMPARE(c.object(kCable, "z").row(), 2);
    QCOMPARE(c.table(kCable, "z").size(), 4);
}

void TestACalibrationObjectModelEditing::aRenameSignals()
{
    Calibrations c({ramp("a"), ramp("b")});
    QVERIFY(c.model->setData(c.object(kCable, "b"), "z"));
    QCOMPARE(c.takeLog(),
             (QStringList{"data 1,0-1,0", "calibration 2", "to reset", "reset", "calibration 2", "to reset", "reset"}));
}

// The store takes an empty old label for none, and looks for the new one.
void TestACalibrationObjectModelEditing::aRenameOfAnObjectWithoutALabelDoesNothing()
{
    Calibrations c({ramp("")});
    const QByteArray before = readFile(c.file);
    QVERIFY(c.model->setData(c.object(kCable, ""), "new"));
    QCOMPARE(c.takeLog(), (QStringList{"data 0,0-0,0", "to reset", "reset"}));
    QCOMPARE(c.manager->getCalibrationNames(kCable), QStringList{""});
    QCOMPARE(readFile(c.file), before);
}

void TestACalibrationObjectModelEditing::aRenameOfAnObjectWithoutALabelOntoAnotherOverwritesThatOne()
{
    Calibrations c({ramp(""), flat("other", kCable, 9)});
    QVERIFY(c.model->setData(c.object(kCable, ""), "other"));
    QCOMPARE(c.manager->getCalibrationNames(kCable), (QStringList{"", "other"}));
    QCOMPARE(c.saved(""), (QStringList{"10000000|1", "20000000|2", "30000000|4"}));
    QCOMPARE(c.saved("other"), c.saved(""));
}

void TestACalibrationObjectModelEditing::aRenameToAnEmptyLabel()
{
    Calibrations c({ramp("a"), ramp("b")});
    QVERIFY(c.model->setData(c.object(kCable, "a"), ""));
    QCOMPARE(c.manager->getCalibrationNames(kCable), (QStringList{"", "b"}));
    QCOMPARE(c.saved("a"), QStringList());
    QCOMPARE(c.saved("").size(), 3);
}

void TestACalibrationObjectModelEditing::aRenameOntoALabelOfAnotherFile()
{
    Calibrations c({ramp("a"), ramp("c")});
    const QString other = QFileInfo(c.file).path() + "/b.caldata";
    c.manager->addCalibrationData(flat("b", kCable, 9), other);
    QVERIFY(c.model->setData(c.object(kCable, "a"), "b"));
    QCOMPARE(c.manager->getCalibrationNames(kCable), (QStringList{"b", "c"}));
    QCOMPARE(c.table(kCable, "b").size(), 4); // the one that was renamed
    QCOMPARE(c.saved("b").size(), 3);
    QCOMPARE(onDisk(other), QStringList{"b|2|9"}); // stays, hidden by it
}

void TestACalibrationObjectModelEditing::entriesOfAnObjectThatShowsNoneAreEdited()
{
    Calibrations c({ramp("-- none --")});
    QCOMPARE(c.model->rowCount(c.object(kCable, "-- none --")), 0);
    QVERIFY(c.model->setData(c.cell(kCable, "-- none --", 1, 1), 7));
    QVERIFY(c.model->setData(c.cell(kCable, "-- none --", 0, 0), "5 MHz"));
    QVERIFY(c.model->setData(c.cell(kCable, "-- none --", 3, 0), "40 MHz"));
    QCOMPARE(c.saved("-- none --"), (QStringList{"5000000|1", "20000000|7", "30000000|4", "40000000|4"}));
    QVERIFY(c.model->setData(c.cell(kCable, "-- none --", 0, 0), -1));
    QCOMPARE(c.saved("-- none --"), (QStringList{"20000000|7", "30000000|4", "40000000|4"}));
}

void TestACalibrationObjectModelEditing::entriesOfAnObjectWithoutALabelAreRefused()
{
    Calibrations c({ramp("")});
    for (int row : {0, 3}) {
        for (int column : {0, 1})
            QVERIFY(!c.model->setData(c.cell(kCable, "", row, column), 5));
    }
    QCOMPARE(c.takeLog(), QStringList());
}

// The label stays when a file has gone, and no file takes the edit, so the store is silent.
void TestACalibrationObjectModelEditing::anEditOfAnObjectWhoseFileHasGoneResetsAllTheSame()
{
    Calibrations c({ramp()});
    settle(); // of the file's own making
    QSignalSpy resets(c.model.get(), &QAbstractItemModel::modelReset);
    QVERIFY(QFile::remove(c.file));
    QTRY_COMPARE(resets.count(), 1);
    c.takeLog();
    const QStringList before = c.table(kCable, "ramp");
    QCOMPARE(before.size(), 4);
    const QStringList reset{"to reset", "reset"};
    QVERIFY(c.model->setData(c.cell(kCable, "ramp", 0, 0), "35 MHz"));
    QCOMPARE(c.takeLog(), QStringList({"to move 0-0 to 2", "data 0,0-0,1"}) + reset);
    QVERIFY(c.model->setData(c.cell(kCable, "ramp", 0, 0), "-1"));
    QCOMPARE(c.takeLog(), QStringList({"to remove 0-0", "removed 0-0"}) + reset);
    QVERIFY(c.model->removeRows(0, 1, c.object(kCable, "ramp")));
    QCOMPARE(c.takeLog(), QStringList({"to remove 0-0", "removed 0-0"}) + reset);
    QVERIFY(c.model->setData(c.object(kCable, "ramp"), "new"));
    QCOMPARE(c.takeLog(), QStringList({"data 0,0-0,0"}) + reset);
    QCOMPARE(c.table(kCable, "ramp"), before);
    QVERIFY(!QFile::exists(c.file));
}

void TestACalibrationObjectModelEditing::anEditOfAnInstalledObjectGoesToTheUser()
{
    Calibrations c;
    const QString installed = AStorageLocation::calibrationPath(AStorageLocation::Installed, kCable) + "a.caldata";
    QVERIFY(QDir().mkpath(QFileInfo(installed).path()) && ACalibrationData::saveAll(installed, {ramp()}));
    const QByteArray before = readFile(installed);
    c.manager->addCalibrationFile(installed, kCable);
    QVERIFY(c.model->setData(c.cell(kCable, "ramp", 0, 1), 5));
    QVERIFY(c.model->setData(c.cell(kCable, "ramp", 3, 0), "40 MHz"));
    QCOMPARE(c.saved("ramp"), (QStringList{"10000000|5", "20000000|2", "30000000|4", "40000000|4"}));
    QCOMPARE(readFile(installed), before);
}

void TestACalibrationObjectModelEditing::randomEditsMatchAPlainTable()
{
    std::mt19937 random(1);
    Calibrations c({ACalibrationData("o", kCable)});
    ACalibrationData plain("o", kCable);
    for (int step = 0; step < 150; ++step) {
        const QList<AFrequency> keys = plain.level().keys();
        const int row = int(random() % unsigned(keys.size() + 1));
        const bool isEntry = row < keys.size();
        const AFrequency frequency = hertz(1 + int(random() % 20));
        switch (random() % 6) {
        case 0: // delete
            QCOMPARE(c.model->setData(c.cell(kCable, "o", row, 0), "-1"), isEntry);
            if (isEntry)
                plain.removeLevel(keys.at(row));
            break;
        case 1: // gain
            if (!isEntry)
                break;
            QVERIFY(c.model->setData(c.cell(kCable, "o", row, 1), double(step + 1)));
            plain.addLevel(keys.at(row), step + 1);
            break;
        default: { // frequency
            const bool isTaken = plain.level().contains(frequency) && !(isEntry && keys.at(row) == frequency);
            QCOMPARE(c.model->setData(c.cell(kCable, "o", row, 0), frequency.intValue(AFrequency::Hz)), !isTaken);
            if (isTaken)
                break;
            const double gain = plain.valueAt(frequency, true);
            if (isEntry)
                plain.removeLevel(keys.at(row));
            plain.addLevel(frequency, gain);
        }
        }
        QCOMPARE(c.model->getCalObject(c.object(kCable, "o")), plain);
    }
    Objects saved;
    QVERIFY(ACalibrationData::readAll(c.file, saved, kAnyType));
    QCOMPARE(saved, Objects{plain});
}

QTEST_GUILESS_MAIN(TestACalibrationObjectModelEditing)
#include "tst_acalibrationobjectmodel_editing.moc"
