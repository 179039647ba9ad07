#include "apps/commandchecks.h"
#include "apps/folder.h"
#include "apps/programrun.h"
#include "core/documentedfiles.h"
#include "core/usbtestbed.h"

#include <QtTest/QtTest>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>

#include <memory>

class TestDevicesCommand : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void listsWhatIsAttached();
    void listsEveryUsbDevice();
    void followsDevicesThatComeAndGo();
    void printsJson();
    void printsTheJsonOfTheDocument();
    void saysThatNothingIsAttached();
    void knowsTheChipsOfTheSetting();
    void whatADeviceDoesNotTellIsADash();
    void keepsTerminalControlOutOfItsOutput();
    void reportsOutputThatCanNotBeWritten();
    void refusesWrongUsage_data();
    void refusesWrongUsage();
    void helps();

private:
    std::unique_ptr<UsbTestbed> m_bed;
};

void TestDevicesCommand::init()
{
    m_bed = std::make_unique<UsbTestbed>();
    QVERIFY2(m_bed->isUsable(), "to be run under umockdev-wrapper");
}

void TestDevicesCommand::cleanup()
{
    m_bed.reset();
}

void TestDevicesCommand::listsWhatIsAttached()
{
    m_bed->plug("1-1", "0403", "6010", 5, "FT1", "Dual Analyser");
    m_bed->plug("1-2", "1d6b", "0002", 1, "hub", "Root Hub");
    m_bed->plug("1-3", "04d8", "000a", 117, "G 7", "Generator");
    m_bed->plug("1-4", "10c4", "ea60", 6, "L1", QString::fromUtf8("L\xc3\xb6gger").toUtf8());
    const Run result = run({"devices"});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(result.output, QString::fromUtf8("Kind       USB id     Bus  Device  Name  Description\n"
                                              "analyser   0403:6010    3       5  FT1A  Dual Analyser A\n"
                                              "analyser   0403:6010    3       5  FT1B  Dual Analyser B\n"
                                              "generator  04d8:000a    3     117  G 7   Generator\n"
                                              "gpslogger  10c4:ea60    3       6  L1    L\xc3\xb6gger\n"));
}

void TestDevicesCommand::listsEveryUsbDevice()
{
    m_bed->plug("1-1", "1d6b", "0002", 1, "hub", "Root Hub");
    m_bed->plug("1-2", "0403", "6014", 2, "FT1", "Analyser");
    const Run result = run({"devices", "--all"});
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(result.output, QStringLiteral("Kind      USB id     Bus  Device  Name  Description\n"
                                           "-         1d6b:0002    3       1  hub   Root Hub\n"
                                           "analyser  0403:6014    3       2  FT1   Analyser\n"));
}

void TestDevicesCommand::followsDevicesThatComeAndGo()
{
    const auto count = [] { return jsonOf(run({"devices", "--format=json"})).size(); };
    QCOMPARE(count(), 0);
    const QString path = m_bed->plug("1-1", "0403", "6010", 5);
    QCOMPARE(count(), 2);
    m_bed->unplug(path);
    QCOMPARE(count(), 0);
}

void TestDevicesCommand::printsJson()
{
    m_bed->plug("1-1", "1209", "0001", 9, "S \"1\"", "Probe");
    const Run result = run({"devices", "--format", "json"});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    const QJsonArray expected{QJsonObject{{"kinds", QJsonArray{"analyser"}},
                                          {"id", 0x12090001},
                                          {"vendorId", 0x1209},
                                          {"productId", 1},
                                          {"name", "S \"1\""},
                                          {"description", "Probe"},
                                          {"bus", 3},
                                          {"device", 9}}};
    QCOMPARE(jsonOf(result), expected);
}

void TestDevicesCommand::printsTheJsonOfTheDocument()
{
    const QList<QByteArray> files = documentedFiles("JSON of `devices`");
    QCOMPARE(files.size(), 1);
    m_bed->plug("1-1", "0403", "6010", 5, "FT1", "Dual Analyser");
    QCOMPARE(run({"devices", "--format", "json"}).output, QString::fromUtf8(files.first()));
}

void TestDevicesCommand::saysThatNothingIsAttached()
{
    m_bed->plug("1-1", "1d6b", "0002", 1, "hub");
    const Run text = run({"devices"});
    QCOMPARE(text.exitStatus, 0);
    QCOMPARE(text.output, QStringLiteral("No measurement device is attached.\n"));
    const Run json = run({"devices", "--format", "json"});
    QCOMPARE(json.exitStatus, 0);
    QCOMPARE(json.output, QStringLiteral("[]\n"));
    m_bed.reset();
    m_bed = std::make_unique<UsbTestbed>();
    QCOMPARE(run({"devices", "--all"}).output, QStringLiteral("No USB device is attached.\n"));
}

void TestDevicesCommand::knowsTheChipsOfTheSetting()
{
    m_bed->plug("1-1", "067b", "2303", 4, "P1", "Receiver");
    const Folder folder;
    folder.write("Aveldoran/aveldoran.conf", "[Devices]\nUsbIds=067b:2303=gpslogger, 067b:2303=generator\n");
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_CONFIG_HOME", folder.path());
    const Run result = run({"devices"}, {}, environment);
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(result.output.section('\n', 1),
             QStringLiteral("generator,gpslogger  067b:2303    3       4  P1    Receiver\n"));
    QCOMPARE(run({"devices"}).output, QStringLiteral("No measurement device is attached.\n"));
}

void TestDevicesCommand::whatADeviceDoesNotTellIsADash()
{
    g_free(umockdev_testbed_add_device(m_bed->handle(), "usb", "1-1", nullptr, "idVendor", "0403", "idProduct", "6014",
                                       nullptr, "DEVTYPE", "usb_device", nullptr));
    QCOMPARE(run({"devices"}).output, QStringLiteral("Kind      USB id     Bus  Device  Name  Description\n"
                                                     "analyser  0403:6014    -       -  -     -\n"));
    const QJsonArray json = jsonOf(run({"devices", "--format", "json"}));
    QCOMPARE(json.first().toObject().keys(),
             (QStringList{"description", "id", "kinds", "name", "productId", "vendorId"}));
}

void TestDevicesCommand::keepsTerminalControlOutOfItsOutput()
{
    m_bed->plug("1-1", "0403", "6014", 5, "S1", "two\nlines \x1b[2J");
    const Run result = run({"devices"});
    QCOMPARE(result.output.count('\n'), 2);
    QVERIFY2(result.output.endsWith(QStringLiteral("two lines ") + QChar(QChar::ReplacementCharacter) + "[2J\n"),
             qPrintable(result.output));
}

void TestDevicesCommand::reportsOutputThatCanNotBeWritten()
{
    verifyReportsFullDisk({"devices"});
}

void TestDevicesCommand::refusesWrongUsage_data()
{
    addWrongUsageColumns();
    QTest::newRow("an argument") << QStringList{"x"} << "devices: expected no argument, found 'x'";
    QTest::newRow("unknown option") << QStringList{"--al"} << "unknown option '--al'";
    QTest::newRow("unknown format") << QStringList{"--format", "xml"}
                                    << "devices: --format expects text or json, not 'xml'";
}

void TestDevicesCommand::refusesWrongUsage()
{
    verifyRefused({"devices"});
}

void TestDevicesCommand::helps()
{
    verifyHelps("devices", {"--all", "Example:"});
}

QTEST_GUILESS_MAIN(TestDevicesCommand)
#include "tst_devices_command.moc"
