#include "apps/aveldoran/tracefile.h"
#include "core/documentedfiles.h"

#include <core/asweep.h>
#include <core/emu.h>

#include <QtCore/QBuffer>
#include <QtTest/QtTest>

#include <cmath>
#include <vector>

namespace {

// "100 MHz -40 dBm; 101 MHz -41 dBm", or the error as "error: ...".
QString pointsOf(QByteArray content)
{
    QBuffer buffer(&content);
    if (!buffer.open(QIODevice::ReadOnly))
        return QStringLiteral("no buffer");
    Trace trace;
    QString errorText;
    if (!readTrace(&buffer, &trace, &errorText))
        return QStringLiteral("error: ") + errorText;
    QStringList texts;
    for (const AMeasurementValue &value : qAsConst(trace.values)) {
        if (value.unit != trace.unit || value.leading != 0 || value.trailing != 0.0)
            return QStringLiteral("a point is not as it should be");
        texts += value.frequency.formatString(QStringLiteral("%1 %2"), AFrequency::NoUnit, 0, 'g', 12) + ' ' +
                 QString::number(value.level) + ' ' + QString::fromUcs4(emu_find(value.unit)->name);
    }
    return texts.join(QStringLiteral("; "));
}

QString examplePath(const char *name)
{
    return QStringLiteral(AVELDORAN_EXAMPLES_DIR "/data/traces/") + QLatin1String(name);
}

} // namespace

class TestTraceFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsTheFilesOfTheDocument();
    void readsEveryForm_data();
    void readsEveryForm();
    void namesTheLineOfWhatItRefuses_data();
    void namesTheLineOfWhatItRefuses();
    void readsLevelsThatAreNoNumbers();
    void everyUnitIsReadByItsName();
    void refusesOneLineWithoutAnEnd();
    void refusesMorePointsThanItHolds();
    void namesTheFileThatCanNotBeRead_data();
    void namesTheFileThatCanNotBeRead();
    void aFileCutAnywhereGivesPointsOrAnError();
    void theCarriersOfTheExampleAreItsHighestPeaks();
};

void TestTraceFile::readsTheFilesOfTheDocument()
{
    const QList<QByteArray> files = documentedFiles("Trace files");
    QCOMPARE(files.size(), 2);
    QList<Trace> traces;
    for (QByteArray content : files) {
        QBuffer buffer(&content);
        QVERIFY(buffer.open(QIODevice::ReadOnly));
        Trace trace;
        QString errorText;
        QVERIFY2(readTrace(&buffer, &trace, &errorText), qPrintable(errorText));
        QCOMPARE(trace.unit, kEmuDecibelMilliwatt);
        traces.append(trace);
    }
    QCOMPARE(traces.at(0).values.size(), 3);
    QCOMPARE(traces.at(1).values.size(), 1);
    QCOMPARE(traces.at(0).values.at(1), traces.at(1).values.first()); // 88.5 MHz in either form
    QCOMPARE(traces.at(1).values.first().level, -38.7);
}

void TestTraceFile::readsEveryForm_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("points");

    const QString two = QStringLiteral("100 MHz -40.5 dBm; 101.5 MHz -41 dBm");
    QTest::newRow("units in each line") << QByteArray("100 MHz,-40.5,dBm\n101.5 MHz,-41,dBm\n") << two;
    QTest::newRow("units beside the levels") << QByteArray("100 MHz;-40.5 dBm\n101.5 MHz;-41 dBm\n") << two;
    QTest::newRow("without a blank") << QByteArray("100MHz;-40.5dBm\n101.5MHz;-41dBm\n") << two;
    QTest::newRow("units in the titles") << QByteArray("Frequency [MHz];Level [dBm]\n100;-40.5\n101.5;-41\n") << two;
    QTest::newRow("round brackets") << QByteArray("f (MHz),P (dBm)\n100,-40.5\n101.5,-41\n") << two;
    QTest::newRow("bare numbers are hertz and dBm") << QByteArray("100000000,-40.5\n101500000,-41\n") << two;
    QTest::newRow("decimal commas") << QByteArray("100 MHz;-40,5;dBm\n101,5 MHz;-41,0;dBm\n") << two;
    QTest::newRow("decimal commas between tabs") << QByteArray("100 MHz\t-40,5\n101,5 MHz\t-41,0\n") << two;
    QTest::newRow("decimal commas in quotes")
        << QByteArray("\"100 MHz\",\"-40,5\",dBm\n\"101,5 MHz\",\"-41,0\",dBm\n") << two;
    QTest::newRow("exponents") << QByteArray("1e8;-4.05E+01\n1.015e+8 Hz;-0.41e2 dBm\n") << two;
    QTest::newRow("line ends of other systems") << QByteArray("100 MHz;-40.5\r\n101.5 MHz;-41\r\n") << two;
    QTest::newRow("no line end at the end") << QByteArray("100 MHz;-40.5\n101.5 MHz;-41") << two;
    QTest::newRow("a byte order mark") << QByteArray("\xef\xbb\xbf"
                                                     "100 MHz;-40.5\n101.5 MHz;-41\n")
                                       << two;
    QTest::newRow("comments and empty lines")
        << QByteArray("# taken in May\n\n100 MHz;-40.5\n  \n# on\n101.5 MHz;-41\n\n") << two;
    QTest::newRow("blanks around") << QByteArray("  100 MHz ; -40.5 ; dBm\t\n101.5 MHz ;-41\n") << two;
    QTest::newRow("separators behind the last field") << QByteArray("100 MHz,-40.5,,\n101.5 MHz,-41,dBm,\n") << two;
    QTest::newRow("titles in another order")
        << QByteArray("Unit;Level;Frequency\ndBm;-40.5;100 MHz\ndBm;-41;101.5 MHz\n") << two;
    QTest::newRow("further columns under titles")
        << QByteArray("Frequency [MHz],Level,Max hold\n100,-40.5,-30\n101.5,-41,-30\n") << two;
    QTest::newRow("titles that say nothing") << QByteArray("x,y,z\n100 MHz,-40.5,dBm\n101.5 MHz,-41,dBm\n") << two;
    QTest::newRow("a unit of its own beats the title's")
        << QByteArray("Frequency [GHz];Level [V]\n100 MHz;-40.5 dBm\n101.5 MHz;-41 dBm\n") << two;
    QTest::newRow("signs") << QByteArray("+100 MHz;-40.5\n101.5 MHz;-41\n") << two;
    QTest::newRow("one point at 0 Hz") << QByteArray("0;+0.5\n") << QStringLiteral("0 Hz 0.5 dBm");
    QTest::newRow("frequencies may repeat") << QByteArray("5;1\n5;2\n") << QStringLiteral("5 Hz 1 dBm; 5 Hz 2 dBm");
    QTest::newRow("a micro in UTF-8") << QByteArray("5;1;dB\xc2\xb5V\n") << QStringLiteral("5 Hz 1 dBµV");
    QTest::newRow("a Greek mu") << QByteArray("5;1;dB\xce\xbcV\n") << QStringLiteral("5 Hz 1 dBµV");
    QTest::newRow("a micro in Latin-1") << QByteArray("5;1;dB\xb5V\n") << QStringLiteral("5 Hz 1 dBµV");
    QTest::newRow("a micro as u") << QByteArray("5;1;dBuV/m\n") << QStringLiteral("5 Hz 1 dBµV/m");
    QTest::newRow("spellings may change")
        << QByteArray("5;1;dBuV\n6;1;dB\xb5V\n") << QStringLiteral("5 Hz 1 dBµV; 6 Hz 1 dBµV");
}

void TestTraceFile::readsEveryForm()
{
    QFETCH(QByteArray, content);
    QTEST(pointsOf(content), "points");
}

void TestTraceFile::namesTheLineOfWhatItRefuses_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("error");

    const QString units = QStringLiteral("dBm, dBW, dBV, dBmV, dBµV, V, dBV/m, dBmW/m², dBµV/m, V/m, W, W/m², dBW/m², "
                                         "dBA/m, dBµA/m, A/m, dB, ×");
    QTest::newRow("an empty file") << QByteArray() << QStringLiteral(" no points in this trace");
    QTest::newRow("titles alone") << QByteArray("Frequency;Level\n") << QStringLiteral(" no points in this trace");
    QTest::newRow("comments alone") << QByteArray("# 1;2\n") << QStringLiteral(" no points in this trace");
    QTest::newRow("one title") << QByteArray("# x\nSpectrum\n")
                               << QStringLiteral("2: expected titles of a frequency and a level, or a frequency such "
                                                 "as 100 MHz");
    QTest::newRow("a text among points") << QByteArray("5;1\nabc;2\n")
                                         << QStringLiteral("2: expected a frequency such as 100 MHz, found 'abc'");
    QTest::newRow("an unknown frequency unit")
        << QByteArray("5 THz;1\n") << QStringLiteral("1: expected a frequency such as 100 MHz, found '5 THz'");
    QTest::newRow("words between number and unit")
        << QByteArray("0 x MHz;1\n") << QStringLiteral("1: expected a frequency such as 100 MHz, found '0 x MHz'");
    QTest::newRow("two decimal signs") << QByteArray("1.000.5;1\n")
                                       << QStringLiteral("1: expected a frequency such as 100 MHz, found '1.000.5'");
    QTest::newRow("a negative frequency")
        << QByteArray("-5 MHz;1\n") << QStringLiteral("1: expected a frequency such as 100 MHz, found '-5 MHz'");
    QTest::newRow("a frequency beyond all") << QByteArray("1e30 GHz;1\n")
                                            << QStringLiteral("1: expected a frequency such as 100 MHz, found '1e30 "
                                                              "GHz'");
    QTest::newRow("no level") << QByteArray("5\n") << QStringLiteral("1: expected a level such as -37.5, found ''");
    QTest::newRow("an empty level") << QByteArray("5;;dBm\n")
                                    << QStringLiteral("1: expected a level such as -37.5, found ''");
    QTest::newRow("a level in words") << QByteArray("5;low\n")
                                      << QStringLiteral("1: expected a level such as -37.5, found 'low'");
    QTest::newRow("a level beyond all") << QByteArray("5;1e999\n")
                                        << QStringLiteral("1: expected a level such as -37.5, found '1e999'");
    QTest::newRow("an unknown unit") << QByteArray("5;1;dBfoo\n")
                                     << QStringLiteral("1: expected a unit (%1), found 'dBfoo'").arg(units);
    QTest::newRow("an unknown unit in the title")
        << QByteArray("f;Level [dBfoo]\n5;1\n") << QStringLiteral("1: expected a unit (%1), found 'dBfoo'").arg(units);
    QTest::newRow("an unknown frequency unit in the title")
        << QByteArray("f [mhz];Level\n5;1\n") << QStringLiteral("1: expected Hz, kHz, MHz or GHz, found 'mhz'");
    QTest::newRow("another unit than before")
        << QByteArray("5;1;dBm\n6;1;V\n")
        << QStringLiteral("2: expected the unit of the points before, dBm, found 'V'");
    QTest::newRow("descending frequencies")
        << QByteArray("5 MHz;1\n4 MHz;1\n")
        << QStringLiteral("2: 4 MHz is below the frequency before it, expected ascending frequencies");
    QTest::newRow("decimal commas between commas")
        << QByteArray("87,5 MHz,-40,5,dBm\n")
        << QStringLiteral("1: expected frequency, level and unit, found 5 fields (decimal commas need another "
                          "separator)");
    QTest::newRow("too many fields") << QByteArray("5;1;dBm;2\n")
                                     << QStringLiteral("1: expected frequency, level and unit, found 4 fields");
    QTest::newRow("a byte 0") << QByteArray("5;1\n\0;2\n", 8) << QStringLiteral("2: this is no text file");
    QTest::newRow("UTF-16") << QByteArray("\xff\xfe\x35\0\x3b\0\x31\0", 8) << QStringLiteral("1: this is no text file");
    QTest::newRow("a long text is quoted in part")
        << QByteArray("5;") + QByteArray(100, 'x') + QByteArray("\n")
        << QStringLiteral("1: expected a level such as -37.5, found '%1…'").arg(QString(40, 'x'));
}

void TestTraceFile::namesTheLineOfWhatItRefuses()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, error);
    QString found = pointsOf(content);
    QVERIFY2(found.startsWith(QLatin1String("error: ")), qPrintable(found));
    QCOMPARE(found.remove(0, 7), error);
}

void TestTraceFile::readsLevelsThatAreNoNumbers()
{
    QCOMPARE(pointsOf("1;nan\n2;NaN dBm\n3;inf\n4;-Inf;dBm\n5;1\n"),
             QStringLiteral("1 Hz nan dBm; 2 Hz nan dBm; 3 Hz inf dBm; 4 Hz -inf dBm; 5 Hz 1 dBm"));
}

void TestTraceFile::everyUnitIsReadByItsName()
{
    for (int id = 0; id < 18; ++id) {
        const QString name = QString::fromUcs4(emu_find(id)->name);
        QCOMPARE(pointsOf(QStringLiteral("5;1;%1\n").arg(name).toUtf8()), QStringLiteral("5 Hz 1 ") + name);
    }
}

void TestTraceFile::refusesOneLineWithoutAnEnd()
{
    const QString tooLong = QStringLiteral("error: 1: the line is longer than %1 bytes").arg(kMaxTraceLineBytes);
    QCOMPARE(pointsOf(QByteArray(10000000, ' ')), tooLong);
    QCOMPARE(pointsOf("5;1" + QByteArray(kMaxTraceLineBytes - 2, ' ')), tooLong);
    QCOMPARE(pointsOf("5;1" + QByteArray(kMaxTraceLineBytes - 3, ' ')), QStringLiteral("5 Hz 1 dBm"));
    QCOMPARE(pointsOf("5;1" + QByteArray(kMaxTraceLineBytes - 3, ' ') + "\n6;2\n"),
             QStringLiteral("5 Hz 1 dBm; 6 Hz 2 dBm"));
}

void TestTraceFile::refusesMorePointsThanItHolds()
{
    QByteArray content = QByteArray("1;2\n").repeated(kMaxTracePoints + 1);
    QBuffer buffer(&content);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    Trace trace;
    QString errorText;
    QVERIFY(!readTrace(&buffer, &trace, &errorText));
    QCOMPARE(errorText,
             QStringLiteral("%1: more than %2 points").arg(QString::number(kMaxTracePoints + 1)).arg(kMaxTracePoints));
}

void TestTraceFile::namesTheFileThatCanNotBeRead_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("missing") << QStringLiteral("/nonexistent/a.csv");
    QTest::newRow("a directory") << QDir::tempPath();
    QTest::newRow("no name") << QString();
    QTest::newRow("a device that fails") << QStringLiteral("/proc/self/mem");
}

void TestTraceFile::namesTheFileThatCanNotBeRead()
{
    QFETCH(QString, name);
    Trace trace;
    QString errorText;
    QVERIFY(!readTraceFile(name, &trace, &errorText));
    QVERIFY2(errorText.startsWith(name + QStringLiteral(": can't be read: ")), qPrintable(errorText));
}

void TestTraceFile::aFileCutAnywhereGivesPointsOrAnError()
{
    const QByteArray whole = "# t\n\"Frequency [MHz]\";\"Level [dBm]\"\n1,5;-3\n2;-4e0 dBm\n3 GHz;nan\n";
    for (int size = 0; size <= whole.size(); ++size) {
        for (const char replaced : {'\0', '"', ';', 'e', '-', '\xff'}) {
            QByteArray content = whole.left(size);
            QVERIFY(!pointsOf(content).isEmpty());
            if (size == 0)
                continue;
            content = whole;
            content[size - 1] = replaced;
            QVERIFY(!pointsOf(content).isEmpty());
        }
    }
}

void TestTraceFile::theCarriersOfTheExampleAreItsHighestPeaks()
{
    Trace trace;
    Trace carriers;
    QString errorText;
    QVERIFY2(readTraceFile(examplePath("broadband.csv"), &trace, &errorText), qPrintable(errorText));
    QVERIFY2(readTraceFile(examplePath("broadband-carriers.csv"), &carriers, &errorText), qPrintable(errorText));
    QCOMPARE(trace.values.size(), 10001);
    QCOMPARE(carriers.values.size(), 12);

    const auto higher = [](const AMeasurementValue &a, const AMeasurementValue &b) { return a.level > b.level; };
    std::vector<AMeasurementValue> expected(carriers.values.cbegin(), carriers.values.cend());
    std::stable_sort(expected.begin(), expected.end(), higher);
    for (const char *spacing : {"0 Hz", "1 MHz", "2 MHz"}) {
        std::vector<AMeasurementValue> found(20);
        QCOMPARE(ASweep::extractPeaks(trace.values, 0, trace.values.size() - 1, found.data(), 20, nullptr, 0,
                                      trace.unit, AFrequency(spacing)),
                 20);
        for (std::size_t i = 0; i < expected.size(); ++i)
            QVERIFY2(found[i] == expected[i], qPrintable(found[i].frequency.canonicalText()));
        QVERIFY(found[12].level < expected.back().level - 10.0); // what follows is noise
    }
}

QTEST_APPLESS_MAIN(TestTraceFile)
#include "tst_tracefile.moc"
