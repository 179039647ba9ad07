#include "apps/commandchecks.h"
#include "apps/waterfallpicture.h"

class TestWaterfallCommand : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_runs = std::make_unique<WaterfallRuns>(); }

    void linearUnitsAreDrawnInDecibels();
    void levelsThatDoNotConvertAreLeftOut();
    void negativePowersAreLeftOut();
    void unknownUnitsStandAsTheyAre();
    void tellsWhatItDrew();

    void aRecordingCutShortIsDrawnAsFarAsItGoes();
    void anyDamageIsReported();
    void whereNothingIsToBeDrawnThereIsNoPicture_data();
    void whereNothingIsToBeDrawnThereIsNoPicture();
    void reportsAPictureThatCanNotBeWritten();
    void keepsAnOldPictureIfTheRecordingIsNone();
    void neverReplacesTheRecording();
    void drawsWithoutADisplay();
    void refusesWrongUsage_data();
    void refusesWrongUsage();
    void helps();

private:
    std::unique_ptr<WaterfallRuns> m_runs;
};

// --- units and texts ---

void TestWaterfallCommand::linearUnitsAreDrawnInDecibels()
{
    QVector<double> volts(101, 1e-6); // 0 dBµV
    volts[50] = 1e-3;                 // 60 dBµV
    volts[75] = 0.0;
    const Picture picture = m_runs->drawn({sweep(0, 100, 0.1, volts, kVolt)}); // from 65 to 0
    COMPARE_NEAR(picture.brightness(0.5, 0.5), 0x30 + (0xff - 0x30) * 60 / 65.0, 4.0);
    QCOMPARE(picture.brightness(0.2, 0.5), 0x30);
    QCOMPARE(picture.brightness(0.75, 0.5), 0x30); // minus infinity
    QVERIFY2(m_runs->drawIt(m_runs->path("a.mdr")).told.contains("highest level 60.00 dBµV at 105 MHz"),
             qPrintable(m_runs->drawIt(m_runs->path("a.mdr")).told));
}

void TestWaterfallCommand::levelsThatDoNotConvertAreLeftOut()
{
    QList<ASweep> sweeps = {sweep(0, 100, 1, levels(11)), sweep(1, 100, 1, QVector<double>(11, 1e-3), kWatt)};
    const Picture picture = m_runs->drawn(sweeps);
    QVERIFY(picture.brightness(0.5, 0.75) >= 0xd0); // 0 dBm
    constexpr int kFieldStrength = 8;
    sweeps += sweep(2, 100, 1, levels(11), kFieldStrength);
    const Run result = m_runs->drawIt(m_runs->record(sweeps));
    QCOMPARE(result.exitStatus, 1);
    QCOMPARE(result.errors,
             QStringLiteral("aveldoran: %1: left out: 11 levels, in a unit that doesn't convert to dBm\n")
                 .arg(m_runs->path("a.mdr")));
    const Picture partly(m_runs->path("a.png"));
    QVERIFY(partly.brightness(0.5, 0.5) >= 0xd0);
    QCOMPARE(partly.brightness(0.5, 0.9), -1);
}

void TestWaterfallCommand::negativePowersAreLeftOut()
{
    QVector<double> watts(11, 1e-3);
    watts[5] = -1.0;
    const Run result = m_runs->drawIt(m_runs->record({sweep(0, 100, 1, watts, kWatt)}));
    QCOMPARE(result.exitStatus, 1);
    QVERIFY2(result.errors.contains(": left out: 1 level, below 0, which is no number of dB"),
             qPrintable(result.errors));
    QVERIFY(!result.errors.contains("convert"));
}

void TestWaterfallCommand::unknownUnitsStandAsTheyAre()
{
    const Picture picture = m_runs->drawn({sweep(0, 100, 1, levels(11, {{5, -20}}), 99)});
    QVERIFY(picture.brightness(0.5, 0.5) >= 0xd0);
    const Run result = m_runs->drawIt(m_runs->path("a.mdr"));
    QVERIFY(result.told.endsWith(", highest level -20.00 at 105 MHz\n"));
}

void TestWaterfallCommand::tellsWhatItDrew()
{
    QList<ASweep> sweeps;
    for (int i = 0; i < 1200; ++i)
        sweeps += sweep(i, 100, 0.5, levels(i == 7 ? 1001 : 21, {{3, i == 40 ? -33.333 : -90.0}}));
    Run result = m_runs->drawIt(m_runs->record(sweeps));
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.output, QString());
    QCOMPARE(result.told, m_runs->path("a.png") +
                              QStringLiteral(": written; 1200 sweeps of at most 1001 points, 100 MHz to 600 MHz, "
                                             "2024-05-17T08:00:00Z to 2024-05-17T08:20:00Z (20:00), "
                                             "highest level -33.33 dBm at 101.5 MHz\n"));
    result = m_runs->drawIt(m_runs->record({ASweep(sweep(0, 100, 0.5, {-1}).values)}));
    QCOMPARE(result.told,
             m_runs->path("a.png") + QStringLiteral(": written; 1 sweep of at most 1 point, 100 MHz to 100 MHz, "
                                                    "highest level -1.00 dBm at 100 MHz\n"));
}

// --- damage and refusals ---

void TestWaterfallCommand::aRecordingCutShortIsDrawnAsFarAsItGoes()
{
    QList<ASweep> sweeps;
    for (int i = 0; i < 20; ++i)
        sweeps += sweep(i, 100, 0.1, levels(101, {{i < 10 ? 20 : 80, -20}}));
    QFile file(m_runs->record(sweeps));
    QVERIFY(file.resize(file.size() / 2));
    const Run result = m_runs->drawIt(file.fileName());
    QCOMPARE(result.exitStatus, 1);
    QVERIFY2(result.errors.startsWith("aveldoran: " + file.fileName() + ": The recording breaks off"),
             qPrintable(result.errors));
    QVERIFY2(result.told.contains(": written; 10 sweeps of"), qPrintable(result.told));
    const QRectF bright = Picture(m_runs->path("a.png")).area(0xd0);
    COMPARE_NEAR(bright.center().x(), 0.2, 0.01);
    COMPARE_NEAR(bright.height(), 1.0, 0.01);
}

void TestWaterfallCommand::anyDamageIsReported()
{
    const QString recording =
        m_runs->record({sweep(0, 100, 1, levels(11)), sweep(1, 100, 1, levels(11)), sweep(2, 100, 1, levels(11))});
    const QByteArray whole = m_runs->read("a.mdr");
    QVERIFY(whole.size() > 127);
    for (int i = 0; i < whole.size(); i += 127) {
        QByteArray damaged = whole;
        damaged[i] = static_cast<char>(~damaged[i]);
        m_runs->write("a.mdr", damaged);
        QFile::remove(m_runs->path("a.png"));
        const Run result = m_runs->drawIt(recording, {"--width", "800"});
        QCOMPARE(result.exitStatus, 1);
        QVERIFY(result.errors.startsWith("aveldoran: " + recording + ": "));
        QCOMPARE(QFile::exists(m_runs->path("a.png")), result.told.contains(" sweep"));
    }
}

void TestWaterfallCommand::whereNothingIsToBeDrawnThereIsNoPicture_data()
{
    QTest::addColumn<QString>("sort");
    QTest::addColumn<QString>("reason");

    QTest::newRow("missing") << "missing"
                             << "can't be read: No such file or directory";
    QTest::newRow("a directory") << "directory"
                                 << "";
    QTest::newRow("an empty file") << "nothing"
                                   << "Not a recording";
    QTest::newRow("something else") << "text"
                                    << "Not a recording";
    QTest::newRow("no sweeps") << "no sweeps"
                               << "no sweeps in this recording";
    QTest::newRow("sweeps without values") << "no values"
                                           << "no levels in this recording";
    QTest::newRow("no level is a number") << "NaN"
                                          << "no levels in this recording";
    QTest::newRow("no level is finite") << "infinite"
                                        << "no levels in this recording";
}

void TestWaterfallCommand::whereNothingIsToBeDrawnThereIsNoPicture()
{
    QFETCH(QString, sort);
    QFETCH(QString, reason);
    if (sort == "directory") {
        QVERIFY(QDir().mkdir(m_runs->path("a.mdr")));
    } else if (sort == "nothing" || sort == "text") {
        m_runs->write("a.mdr", sort == "text" ? QByteArray(5000, 'x') : QByteArray());
    } else if (sort == "no sweeps") {
        m_runs->record({});
    } else if (sort == "no values") {
        m_runs->record({ASweep(), ASweep()});
    } else if (sort == "NaN") {
        m_runs->record({sweep(0, 100, 1, QVector<double>(5, kNaN))});
    } else if (sort == "infinite") {
        m_runs->record({sweep(0, 100, 1, {kInfinity, -kInfinity})});
    }
    const Run result = m_runs->drawIt(m_runs->path("a.mdr"));
    QCOMPARE(result.exitStatus, 1);
    QCOMPARE(result.output, QString());
    QVERIFY2(result.errors.startsWith("aveldoran: " + m_runs->path("a.mdr") + ": " + reason),
             qPrintable(result.errors));
    QCOMPARE(result.errors.count('\n'), 1);
    QVERIFY(!QFile::exists(m_runs->path("a.png")));
}

void TestWaterfallCommand::reportsAPictureThatCanNotBeWritten()
{
    m_runs->record({sweep(0, 100, 1, levels(11))});
    const QString output = m_runs->path("missing/a.png");
    const Run result = run({"waterfall", m_runs->path("a.mdr"), "--output", output});
    QCOMPARE(result.exitStatus, 1);
    QVERIFY2(result.errors.startsWith("aveldoran: " + output + ": can't be written: "), qPrintable(result.errors));
    QCOMPARE(result.output, QString());
}

void TestWaterfallCommand::keepsAnOldPictureIfTheRecordingIsNone()
{
    m_runs->write("a.png", "old");
    QCOMPARE(m_runs->drawIt(m_runs->path("missing.mdr")).exitStatus, 1);
    QCOMPARE(m_runs->read("a.png"), QByteArray("old"));
}

void TestWaterfallCommand::neverReplacesTheRecording()
{
    QVERIFY(QFile::rename(m_runs->record({sweep(0, 100, 1, levels(11))}), m_runs->path("rec.png")));
    QVERIFY(QFile::link(m_runs->path("rec.png"), m_runs->path("link.png")));
    const QByteArray before = m_runs->read("rec.png");
    for (const char *output : {"rec.png", "link.png"}) {
        const Run result = run({"waterfall", m_runs->path("rec.png"), "--output", m_runs->path(QLatin1String(output))});
        QCOMPARE(result.exitStatus, 2);
        QCOMPARE(result.errors, QStringLiteral("aveldoran: waterfall: --output would replace '%1', which the "
                                               "command line names too\n")
                                    .arg(m_runs->path("rec.png")));
    }
    QCOMPARE(m_runs->read("rec.png"), before);
}

void TestWaterfallCommand::drawsWithoutADisplay()
{
    const Run result =
        run({"waterfall", m_runs->record({sweep(0, 100, 1, levels(11))}), "--output", m_runs->path("a.PNG")}, {},
            environmentWithoutDisplay());
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QVERIFY(!QImage(m_runs->path("a.PNG")).isNull());
}

void TestWaterfallCommand::refusesWrongUsage_data()
{
    addWrongUsageColumns();

    QTest::newRow("no recording") << QStringList{"--output", "a.png"} << "a recording is missing";
    QTest::newRow("two recordings") << QStringList{"a", "b", "--output", "a.png"} << "expected one recording, found 2";
    QTest::newRow("no output") << QStringList{"a.mdr"} << "--output is missing; see 'aveldoran waterfall --help'";
    QTest::newRow("no PNG file") << QStringList{"a.mdr", "--output", "a.jpg"}
                                 << "--output expects the name of a file that ends in .png, not 'a.jpg'";
    QTest::newRow("an output without a name") << QStringList{"a.mdr", "--output"} << "missing value after '--output'";
    QTest::newRow("unknown option") << QStringList{"a.mdr", "--height", "5"} << "unknown option '--height'";
    const auto withOption = [](const QString &name, const QString &value) {
        return QStringList{"a.mdr", "--output", "a.png", "--" + name + '=' + value};
    };
    for (const QString width : {"799", "8001", "-1", "wide", "", "99999999999"})
        QTest::addRow("width '%s'", qPrintable(width))
            << withOption("width", width)
            << QStringLiteral("waterfall: --width expects a whole number from 800 to 8000, not '%1'").arg(width);
    for (const QString dynamic : {"0", "-1", "1001", "1000000000", "1.5", "NaN"})
        QTest::addRow("dynamic '%s'", qPrintable(dynamic))
            << withOption("dynamic", dynamic)
            << QStringLiteral("waterfall: --dynamic expects a whole number from 1 to 1000, not '%1'").arg(dynamic);
    for (const QString name : {"from", "to"}) {
        for (const QString color : {"bluish", "", "#12345", "#80ff0000", "transparent"})
            QTest::addRow("%s '%s'", qPrintable(name), qPrintable(color))
                << withOption(name, color)
                << QStringLiteral("waterfall: --%1 expects an opaque colour such as 'navy' or '#102040', not '%2'")
                       .arg(name, color);
    }
}

void TestWaterfallCommand::refusesWrongUsage()
{
    verifyRefused({"waterfall"});
}

void TestWaterfallCommand::helps()
{
    verifyHelps("waterfall", {"aveldoran waterfall", "--output", "--width", "--dynamic", "--from", "--to", "Example:"});
}

QTEST_GUILESS_MAIN(TestWaterfallCommand)
#include "tst_waterfall_command.moc"
