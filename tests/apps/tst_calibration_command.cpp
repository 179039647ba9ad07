#include "apps/commandchecks.h"
#include "apps/folder.h"
#include "apps/pixels.h"
#include "apps/programrun.h"

#include <core/acalibrationdata.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtTest/QtTest>

#include <QtGui/QImage>

namespace {

constexpr char kExamples[] = AVELDORAN_EXAMPLES_DIR "/data/calibration";

constexpr char kObjects[] = "caldata 1\n"
                            "[cable] Long\n10 MHz -1\n1 GHz -9.5\n"
                            "[antenna] Horn\n1 GHz 7\n2 GHz 9\n18 GHz 14\n"
                            "[cable] Empty\n"
                            "[antenna] Dipole\n145 MHz 2.15\n"
                            "[] Strange\n-1 kHz nan\n1 kHz inf\n";

int countColoured(const QImage &image)
{
    return countPixelsIf(image, [](const QColor &color) { return color.hsvSaturation() > 100; });
}

} // namespace

class TestCalibrationCommand : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = std::make_unique<Folder>(); }

    void listsObjectsByType();
    void tellsTheGainAtAFrequency();
    void printsJson();
    void tellsTheGainAtAFrequencyInJson();
    void jsonOfNothingIsAnEmptyList();
    void readsDirectoriesAndThoseBelowThem();
    void writesNoCalibrationFile();
    void namesWhatItCanNotRead_data();
    void namesWhatItCanNotRead();
    void keepsTerminalControlOutOfItsOutput();
    void listsTheExamples();
    void drawsTheExamples();
    void marksTheFrequencyInItsPicture();
    void drawsWhateverIsInAFile_data();
    void drawsWhateverIsInAFile();
    void refusesWrongUsage_data();
    void refusesWrongUsage();
    void helps();

private:
    std::unique_ptr<Folder> m_folder;
};

void TestCalibrationCommand::listsObjectsByType()
{
    const Run result = run({"calibration", m_folder->write("a", kObjects)});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(result.output, QString("Antennas\n"
                                    "  Horn  3 entries  1000 MHz to 18000 MHz  7.00 dBi to 14.00 dBi\n"
                                    "  Dipole  1 entry  145 MHz to 145 MHz  2.15 dBi\n"
                                    "Cables\n"
                                    "  Long  2 entries  10 MHz to 1000 MHz  -9.50 dB to -1.00 dB\n"
                                    "  Empty  no entries\n"
                                    "Of no particular type\n"
                                    "  Strange  2 entries  -1 kHz to 1 kHz  inf dB\n"));
}

void TestCalibrationCommand::tellsTheGainAtAFrequency()
{
    const Run result = run({"calibration", "--at", "1.5 GHz", m_folder->write("a", kObjects)});
    QCOMPARE(result.exitStatus, 0);
    const QStringList lines = result.output.split('\n');
    QVERIFY(lines.at(1).endsWith("14.00 dBi; at 1500 MHz: 8.00 dBi"));
    QVERIFY(lines.at(2).endsWith("; at 1500 MHz: 2.15 dBi, held from the end of the table"));
    QVERIFY(lines.at(4).endsWith("; at 1500 MHz: -9.50 dB, held from the end of the table"));
    QCOMPARE(lines.at(5), QString("  Empty  no entries"));
}

void TestCalibrationCommand::printsJson()
{
    const QString first = m_folder->write("a", kObjects);
    const QString second = m_folder->write("b", "[preamplifier] Low noise\n1.5 Hz 20\n[attenuator]\n1 Hz nan\n");
    const Run result = run({"calibration", "--format", "json", first, second});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    const auto object = [](const QString &file, const char *type, const char *label, const char *unit, int entries) {
        return QJsonObject{{"file", file}, {"type", type}, {"label", label}, {"unit", unit}, {"entries", entries}};
    };
    const auto withRange = [](QJsonObject of, double beginHz, double endHz) {
        of["beginHz"] = beginHz;
        of["endHz"] = endHz;
        return of;
    };
    const auto withGains = [](QJsonObject of, const QJsonValue &lowest, const QJsonValue &highest) {
        of["lowestGain"] = lowest;
        of["highestGain"] = highest;
        return of;
    };
    const QJsonArray expected = {
        withGains(withRange(object(second, "preamplifier", "Low noise", "dB", 1), 1.5, 1.5), 20, 20),
        withGains(withRange(object(first, "antenna", "Horn", "dBi", 3), 1e9, 18e9), 7, 14),
        withGains(withRange(object(first, "antenna", "Dipole", "dBi", 1), 145e6, 145e6), 2.15, 2.15),
        withGains(withRange(object(first, "cable", "Long", "dB", 2), 10e6, 1e9), -9.5, -1),
        object(first, "cable", "Empty", "dB", 0),
        withRange(object(second, "attenuator", "", "dB", 1), 1, 1), // no gain is a number
        withGains(withRange(object(first, "any", "Strange", "dB", 2), -1000, 1000), QJsonValue(), QJsonValue()),
    };
    verifyJson(result, expected);
    QCOMPARE(result.output.count('\n'), expected.size() + 2); // one object a line
}

void TestCalibrationCommand::tellsTheGainAtAFrequencyInJson()
{
    const Run result = run({"calibration", "--at", "1.5 GHz", "--format", "json", m_folder->write("a", kObjects)});
    QCOMPARE(result.exitStatus, 0);
    const QJsonArray objects = jsonOf(result);
    QCOMPARE(objects.size(), 5);
    const auto verifyAt = [&objects](int index, const QJsonValue &gain, bool held) {
        const QJsonObject object = objects.at(index).toObject();
        QCOMPARE(object["targetHz"], QJsonValue(1.5e9));
        QCOMPARE(object["gain"], gain);
        QCOMPARE(object["held"], QJsonValue(held));
    };
    verifyAt(0, 8, false); // the horn, between two entries
    verifyAt(1, 2.15, true);
    verifyAt(2, -9.5, true);
    verifyAt(4, QJsonValue::Null, true); // infinite
    for (const char *key : {"targetHz", "gain", "held", "beginHz", "lowestGain"})
        QVERIFY2(!objects.at(3).toObject().contains(QLatin1String(key)), key); // without entries
}

void TestCalibrationCommand::jsonOfNothingIsAnEmptyList()
{
    QCOMPARE(run({"calibration", "--format", "json", m_folder->write("a", "caldata 1\n")}).output, QString("[]\n"));
    const Run unread = run({"calibration", "--format", "json", m_folder->path("missing")});
    QCOMPARE(unread.exitStatus, 1);
    QCOMPARE(unread.output, QString("[]\n"));
}

void TestCalibrationCommand::readsDirectoriesAndThoseBelowThem()
{
    m_folder->write("all/b.xml", "<calibrations><calibration label='b' type='cable'/></calibrations>");
    m_folder->write("all/a.offsets", "label;type;frequency;gain\na;cable;1;2\n");
    m_folder->write("all/sub/c.caldata", "[cable] c\n");
    m_folder->write("all/readme.txt", "text");
    const Run result = run({"calibration", m_folder->path("all")});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.output, QString("Cables\n  a  1 entry  1 Hz to 1 Hz  2.00 dB\n  b  no entries\n  c  no entries\n"));
}

// The registry would write the first of two files with one label.
void TestCalibrationCommand::writesNoCalibrationFile()
{
    const QByteArray first = "[cable] x # not a remark\n1 MHz 5 # a remark\n";
    m_folder->write("a.caldata", first);
    m_folder->write("b.caldata", "[cable] x # not a remark\n1 MHz 6\n");
    QCOMPARE(run({"calibration", m_folder->path()}).exitStatus, 0);
    QCOMPARE(m_folder->read("a.caldata"), first);
    QCOMPARE(m_folder->names().size(), 2);
}

void TestCalibrationCommand::namesWhatItCanNotRead_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("error");
    QTest::newRow("missing") << "missing.xml"
                             << "missing.xml: can't be read: No such file or directory";
    QTest::newRow("garbage") << "garbage.xml"
                             << "garbage.xml': line 1: expected '<', 'caldata 1',";
    QTest::newRow("a bad line") << "bad.caldata"
                                << "bad.caldata': line 2: expected a frequency and a gain";
    QTest::newRow("empty directory") << "empty"
                                     << "empty: no calibration files";
}

void TestCalibrationCommand::namesWhatItCanNotRead()
{
    QFETCH(QString, name);
    QFETCH(QString, error);
    m_folder->write("garbage.xml", "garbage");
    m_folder->write("bad.caldata", "[cable] bad\n1 MHz five\n");
    QVERIFY(QDir().mkdir(m_folder->path("empty")));
    const Run result = run({"calibration", m_folder->path(name), m_folder->write("good.caldata", "[cable] good\n")});
    QCOMPARE(result.exitStatus, 1);
    QVERIFY2(result.errors.startsWith("aveldoran: ") && result.errors.contains(error), qPrintable(result.errors));
    QCOMPARE(result.output, QString("Cables\n  good  no entries\n"));
}

void TestCalibrationCommand::keepsTerminalControlOutOfItsOutput()
{
    const Run result = run({"calibration", m_folder->write("a", "[cable] \"a\\u001b[31m\\nb\"\n[cable]\n")});
    QCOMPARE(result.exitStatus, 0);
    QVERIFY(!result.output.contains(QChar(0x1b)));
    QCOMPARE(result.output.count('\n'), 3);
    QVERIFY(result.output.endsWith("  -  no entries\n"));
}

void TestCalibrationCommand::listsTheExamples()
{
    const Run result = run({"calibration", "--at", "145MHz", kExamples});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    for (const char *heading : {"Preamplifiers\n", "Antennas\n", "Cables\n", "Attenuators\n"})
        QVERIFY(result.output.contains(heading));
    QVERIFY(!result.output.contains("Of no particular type"));
    // What such parts do: cables lose the more the higher the frequency, a horn gains between 0 and 20 dBi.
    QList<ACalibrationData> objects;
    const QDir examples(kExamples);
    for (const QString &name : examples.entryList({"*.xml", "*.caldata", "*.offsets"}))
        QVERIFY(ACalibrationData::readAll(examples.filePath(name), objects, ACalibrationData::AnyType));
    QCOMPARE(objects.size(), 9);
    for (const ACalibrationData &object : qAsConst(objects)) {
        const QList<double> gains = object.level().values();
        QVERIFY(gains.size() >= 4);
        for (int i = 0; i < gains.size(); ++i) {
            const double gain = gains.at(i);
            switch (object.type()) {
            case ACalibrationData::Cable:
                QVERIFY(gain < 0.0 && (i == 0 || gain <= gains.at(i - 1)));
                break;
            case ACalibrationData::Antenna:
                QVERIFY(gain > -20.0 && gain < 20.0);
                break;
            case ACalibrationData::Attenuator:
                QVERIFY(gain < 0.0);
                break;
            default:
                QVERIFY(gain > 15.0 && gain < 30.0);
            }
        }
    }
}

void TestCalibrationCommand::drawsTheExamples()
{
    const Run result = run({"calibration", "--plot", m_folder->path("a.png"), kExamples});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QVERIFY(countColoured(QImage(m_folder->path("a.png"))) > 2000);
    const Run nowhere = run({"calibration", "--plot", m_folder->path("missing/a.png"), kExamples});
    QCOMPARE(nowhere.exitStatus, 1);
    QVERIFY(nowhere.errors.contains("missing/a.png: can't be written"));
}

void TestCalibrationCommand::marksTheFrequencyInItsPicture()
{
    const auto countMarker = [this](const QStringList &options) {
        if (run(QStringList{"calibration", "--plot", m_folder->path("a.png")} + options +
                QStringList{m_folder->path("a")})
                .exitStatus != 0)
            return -1;
        const QImage image(m_folder->path("a.png"));
        return countPixelsIf(image, [](const QColor &color) { // a dark red, as no curve has
            return color.red() > 100 && color.green() < 60 && color.blue() < 90;
        });
    };
    m_folder->write("a", kObjects);
    QCOMPARE(countMarker({}), 0);
    QVERIFY(countMarker({"--at", "20 MHz"}) > 100); // the cable
    QVERIFY(countMarker({"--at", "3 GHz"}) > 100);  // the horn
    // Outside of all tables no curve is there to mark.
    QCOMPARE(countMarker({"--at", "1 kHz"}), 0);
    QCOMPARE(countMarker({"--at", "20 GHz"}), 0);
}

void TestCalibrationCommand::drawsWhateverIsInAFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("nothing") << QByteArray("caldata 1\n");
    QTest::newRow("no entries") << QByteArray("[cable] a\n");
    QTest::newRow("one entry") << QByteArray("[cable] a\n1 MHz 5\n");
    QTest::newRow("nothing to draw") << QByteArray("[cable] a\n-1 MHz 5\n0 5\n1 MHz nan\n2 MHz inf\n");
    QTest::newRow("extremes") << QByteArray("[cable] a\n1e-300 -1e308\n9223372036854775807 1e308\n");
}

void TestCalibrationCommand::drawsWhateverIsInAFile()
{
    QFETCH(QByteArray, content);
    const Run result =
        run({"calibration", "--at", "0", "--plot", m_folder->path("a.png"), m_folder->write("a", content)});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QVERIFY(!QImage(m_folder->path("a.png")).isNull());
}

void TestCalibrationCommand::refusesWrongUsage_data()
{
    addWrongUsageColumns();
    QTest::newRow("no file") << QStringList{}
                             << "calibration: a calibration file is missing; see 'aveldoran calibration --help'";
    QTest::newRow("unknown option") << QStringList{"--gain", "a"} << "unknown option '--gain'";
    QTest::newRow("no frequency") << QStringList{"--at", "high", "a"}
                                  << "--at expects a frequency such as '100 MHz', not 'high'";
    QTest::newRow("empty frequency") << QStringList{"--at", "", "a"}
                                     << "--at expects a frequency such as '100 MHz', not ''";
    QTest::newRow("unknown format") << QStringList{"--format", "JSON", "a"}
                                    << "calibration: --format expects text or json, not 'JSON'";
    QTest::newRow("no PNG") << QStringList{"--plot", "a.jpg", "a"}
                            << "--plot expects the name of a file that ends in .png, not 'a.jpg'";
    QTest::newRow("empty picture") << QStringList{"--plot", "", "a"} << "--plot expects the name of a file, not ''";
}

void TestCalibrationCommand::refusesWrongUsage()
{
    verifyRefused({"calibration"});
}

void TestCalibrationCommand::helps()
{
    verifyHelps("calibration", {"--at", "--format", "--plot"});
}

QTEST_GUILESS_MAIN(TestCalibrationCommand)
#include "tst_calibration_command.moc"
