#include "apps/commandchecks.h"
#include "apps/folder.h"
#include "apps/programrun.h"

#include <QtGui/QImage>
#include <QtTest/QtTest>

#include <sys/stat.h>

namespace {

const QStringList kDevice = {"logo", "--model", "60105", "--firmware", "2.07", "--serial", "002311"};

// 51 by 25 pixels, two rows in a line.
const QString kLogo = QString::fromUtf8("█▀██▀█▀▀▀█▀▀█▀▀██▀█████████████▀▀██▀███▀██▀██▀▀▀███\n"
                                        "█ ▀▄███ ██ █ █ █▄█ ███████████ ▀▀█ █ █▄ █ █ █ ▀████\n"
                                        "█ █▄▀██ ██ ███ █▀ ▀███████████ ▀ █▄▀▄██ █▄▀▄█▀▀▄███\n"
                                        "▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀▀\n"
                                        "█▀▀ ▀█▀ █▀▄ █▀▄▀█ █   █   ▄▀▄   ▄▀▄ ▀▀█            \n"
                                        "█▀▀  █  █▀▄ █ ▀ █ █ █ █    ▄▀   █ █  █             \n"
                                        "▀   ▀▀▀ ▀ ▀ ▀   ▀  ▀ ▀  ▀ ▀▀▀ ▀  ▀  ▀              \n"
                                        "█▀▀ █▀▀ █▀▄ ▀█▀ ▄▀▄ █     ▄▀▄ ▄▀▄ ▄▀▄ ▀▀▄ ▄█ ▄█    \n"
                                        "▀▀█ █▀  █▀▄  █  █▀█ █     █ █ █ █  ▄▀  ▀▄  █  █    \n"
                                        "▀▀▀ ▀▀▀ ▀ ▀ ▀▀▀ ▀ ▀ ▀▀▀    ▀   ▀  ▀▀▀ ▀▀   ▀  ▀    \n"
                                        "                                                   \n"
                                        "                                                   \n"
                                        "▀▀▀                                                \n");

QStringList lines(const Run &result)
{
    return result.output.split('\n');
}

// The picture that the block characters show, in the colours of a picture file.
QImage imageOf(const QString &blocks, int rows)
{
    const QStringList texts = blocks.split('\n', Qt::SkipEmptyParts);
    QImage image(texts.constFirst().size(), rows, QImage::Format_RGB32);
    for (int y = 0; y < rows; ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const ushort block = texts.at(y / 2).at(x).unicode();
            const bool lit = block == 0x2588 || block == (y % 2 == 0 ? 0x2580 : 0x2584);
            image.setPixelColor(x, y, lit ? Qt::black : Qt::white);
        }
    }
    return image;
}

} // namespace

class TestLogoCommand : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = std::make_unique<Folder>(); }

    void printsTheLogo();
    void needsNoDisplay();
    void writesPictures_data();
    void writesPictures();
    void writesTheBitStream();
    void printsBesideAnOutputIfAsked();
    void describesTheDevice();
    void readsOptionsInBothForms_data();
    void readsOptionsInBothForms();
    void remindsOfTheCalibration();
    void takesBackgroundAndLayout();
    void leavesFieldsWithoutAKeyOut();
    void namesFilesThatCanNotBeUsed_data();
    void namesFilesThatCanNotBeUsed();
    void keepsAFileThatCanNotBeReplaced_data();
    void keepsAFileThatCanNotBeReplaced();
    void replacesRegularFilesAlone();
    void leavesItsInputsAlone();
    void leavesSettingsOfTheUserAlone();
    void refusesLooseLayouts_data();
    void refusesLooseLayouts();
    void takesLayoutsOfEveryForm_data();
    void takesLayoutsOfEveryForm();
    void takesDatesThatADeviceCanKeep_data();
    void takesDatesThatADeviceCanKeep();
    void refusesAPictureThatGetsTooLarge();
    void reportsOutputThatCanNotBeWritten();
    void refusesWrongUsage_data();
    void refusesWrongUsage();
    void helps();

private:
    std::unique_ptr<Folder> m_folder;
};

void TestLogoCommand::printsTheLogo()
{
    const Run result = run(kDevice);
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(result.output, kLogo);
    QCOMPARE(run(kDevice + QStringList{"--ascii"}).output, kLogo);
}

void TestLogoCommand::needsNoDisplay()
{
    QVERIFY(qputenv("QT_QPA_PLATFORM", "nonexistent"));
    const QByteArray runtimeDirectory = qgetenv("XDG_RUNTIME_DIR");
    qunsetenv("XDG_RUNTIME_DIR");
    const Run result = run(kDevice + QStringList{"--output", m_folder->path("logo.png"), "--ascii"});
    qputenv("QT_QPA_PLATFORM", "offscreen");
    if (!runtimeDirectory.isEmpty())
        qputenv("XDG_RUNTIME_DIR", runtimeDirectory);
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(result.output, kLogo);
}

void TestLogoCommand::writesPictures_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("scale");
    QTest::newRow("png") << "logo.png" << 1;
    QTest::newRow("bmp") << "logo.bmp" << 1;
    QTest::newRow("in capitals") << "LOGO.PNG" << 1;
    QTest::newRow("scaled png") << "logo.png" << 8;
    QTest::newRow("scaled bmp") << "logo.bmp" << 3;
}

void TestLogoCommand::writesPictures()
{
    QFETCH(QString, name);
    QFETCH(int, scale);
    QStringList arguments = kDevice + QStringList{"--output", m_folder->path(name)};
    if (scale != 1)
        arguments += QStringList{"--scale", QString::number(scale)};
    const Run result = run(arguments);
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(result.output, QString()); // with --output it is printed on demand
    const QImage image = QImage(m_folder->path(name)).convertToFormat(QImage::Format_RGB32);
    QCOMPARE(image, imageOf(kLogo, 25).scaled(51 * scale, 25 * scale));
    QCOMPARE(m_folder->names(), QStringList{name}); // and nothing beside it
}

void TestLogoCommand::writesTheBitStream()
{
    const Run result = run(kDevice + QStringList{"--output", m_folder->path("logo.bin")});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    const QByteArray stream = m_folder->read("logo.bin");
    QCOMPARE(stream.size(), 160);
    const QImage image = imageOf(kLogo, 25);
    for (int bit = 0; bit < 51 * 25; ++bit) {
        const bool lit = (stream.at(bit / 8) >> (bit % 8) & 1) != 0;
        QCOMPARE(lit, image.pixelColor(bit % 51, 24 - bit / 51) == Qt::black);
    }
}

void TestLogoCommand::printsBesideAnOutputIfAsked()
{
    const Run result = run(kDevice + QStringList{"--output", m_folder->path("logo.png"), "--ascii"});
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(result.output, kLogo);
    QVERIFY(QFile::exists(m_folder->path("logo.png")));
}

void TestLogoCommand::describesTheDevice()
{
    const Run dashed = run({"logo", "--model=--serial", "--firmware", "2.07", "--serial", "002311"});
    QCOMPARE(dashed.exitStatus, 0); // said to be its value
    const Run result = run(kDevice + QStringList{"--revision", "5", "--options", "9", "--custom-option", "cal"});
    QCOMPARE(result.exitStatus, 0);
    QVERIFY(lines(result).at(2).startsWith(QString::fromUtf8("█ █▄▀██ ██ ███ █▀ ▀█▀▀▀█▀▀▄███"))); // KTM2_5
    QCOMPARE(lines(result).mid(10, 3),
             QString::fromUtf8("▄▀▄ ▄▀▄ ▄█   ▄▀▀ ▄▀▄ █                             \n"
                               "█ █ █ █  █   █   █▀█ █                             \n"
                               " ▀   ▀   ▀    ▀▀ ▀ ▀ ▀▀▀                           ")
                 .split('\n')); // 001 CAL
}

void TestLogoCommand::readsOptionsInBothForms_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("decimal") << "19";
    QTest::newRow("hexadecimal") << "0x13";
    QTest::newRow("in capitals") << "0X13";
    QTest::newRow("with leading zeros, which make nothing octal") << "0019";
}

void TestLogoCommand::readsOptionsInBothForms()
{
    QFETCH(QString, text);
    const Run result = run(kDevice + QStringList{"--options", text});
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(lines(result).at(11),
             QString::fromUtf8("█ █ █ █  █   █ █ █ █  ▄▀   █ █ █ █ ▀▀▄             ")); // 001 002 005
}

void TestLogoCommand::remindsOfTheCalibration()
{
    const Run overdue = run(kDevice + QStringList{"--calibrated", "2019-12-31"});
    QCOMPARE(overdue.exitStatus, 0);
    QVERIFY(lines(overdue).at(1).startsWith(QString::fromUtf8("█▀▄█ █▄  █ ▄ █"))); // NEW
    const QString today = QDate::currentDate().toString(Qt::ISODate);
    QCOMPARE(run(kDevice + QStringList{"--calibrated", today}).output, kLogo);
}

void TestLogoCommand::takesBackgroundAndLayout()
{
    const QString logos = QStringLiteral(AVELDORAN_EXAMPLES_DIR "/data/logos/");
    const Run wide = run(kDevice + QStringList{"--background", logos + "wide.pbm", "--settings", logos + "wide.ini"});
    QCOMPARE(wide.errors, QString());
    QCOMPARE(wide.exitStatus, 0);
    QCOMPARE(lines(wide).size(), 16 + 1);
    QCOMPARE(lines(wide).constFirst().size(), 96);
    QVERIFY(lines(wide).at(2).contains(QString::fromUtf8("█ ██ ▀▄███ ██ █ █ █▄█ "))); // KTM2 in the band
    const QStringList serial = lines(wide).filter(QString::fromUtf8("  █ █ █ █ ▀ █  ▄▀ ▀█ ▀█  "));
    QCOMPARE(serial.size(), 1);

    QCOMPARE(run(kDevice + QStringList{"--settings", logos + "template.ini"}).output, kLogo);
}

void TestLogoCommand::leavesFieldsWithoutAKeyOut()
{
    const QString layout = m_folder->write("layout.ini", "LogoPositionSerial=0x0\n");
    const QString background = m_folder->write("background.pbm", "P4\n24 6\n" + QByteArray(18, '\0'));
    const Run result = run(kDevice + QStringList{"--settings", layout, "--background", background});
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(result.output, QString::fromUtf8(" ▄   ▄   ▄  ▄▄   ▄  ▄   \n"
                                              "█ █ █ █ ▀ █  ▄▀ ▀█ ▀█   \n"
                                              "▀▄▀ ▀▄▀ ▄█▄ ▄▄▀  █  █   \n"));
}

void TestLogoCommand::namesFilesThatCanNotBeUsed_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");
    const QString noPicture = "no picture of a known kind and of at most 16777216 pixels";
    const QString noLayout = "no layout of a logo, expected lines such as LogoPositionType=1x19";
    QTest::newRow("no background") << "--background"
                                   << "missing.png"
                                   << "can't be read: No such file or directory";
    QTest::newRow("a background that is a directory") << "--background"
                                                      << "."
                                                      << "can't be read: file to open is a directory";
    QTest::newRow("a background that is none") << "--background"
                                               << "text.txt" << noPicture;
    QTest::newRow("a background that is too large") << "--background"
                                                    << "large.pbm" << noPicture;
    QTest::newRow("no layout") << "--settings"
                               << "missing.ini"
                               << "can't be read: No such file or directory";
    QTest::newRow("a layout that is a directory") << "--settings"
                                                  << "."
                                                  << "can't be read: file to open is a directory";
    QTest::newRow("a layout that is none") << "--settings"
                                           << "text.txt" << noLayout;
    QTest::newRow("a layout in a group") << "--settings"
                                         << "group.ini" << noLayout;
    QTest::newRow("an empty layout") << "--settings"
                                     << "empty.ini" << noLayout;
    QTest::newRow("an output nowhere") << "--output"
                                       << "missing/logo.png"
                                       << "can't be written: No such file or directory";
}

void TestLogoCommand::namesFilesThatCanNotBeUsed()
{
    QFETCH(QString, option);
    QFETCH(QString, name);
    QFETCH(QString, reason);
    m_folder->write("text.txt", "A text\nthat is no file of the program\n");
    m_folder->write("large.pbm", "P4\n4097 4096\n" + QByteArray(513 * 4096, '\0'));
    m_folder->write("group.ini", "[Logo]\nLogoPositionType=1x19\n");
    m_folder->write("empty.ini", "");
    const Run result = run(kDevice + QStringList{option, m_folder->path(name)});
    verifyFailed(result, QStringLiteral("%1: %2").arg(m_folder->path(name), reason));
}

void TestLogoCommand::keepsAFileThatCanNotBeReplaced_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("blocks"); // of 512 bytes, which is all that the program can write into a file
    QTest::newRow("nothing is written") << "logo.bin" << 0;
    QTest::newRow("a picture cut short") << "logo.bmp" << 1;
    QTest::newRow("a large picture cut short") << "logo.bmp" << 100;
}

void TestLogoCommand::keepsAFileThatCanNotBeReplaced()
{
    QFETCH(QString, name);
    QFETCH(int, blocks);
    const QString file = m_folder->write(name, "old");
    QString command = QStringLiteral("trap '' XFSZ; ulimit -f %1; exec '%2' %3 --output '%4'")
                          .arg(QString::number(blocks), AVELDORAN_PROGRAM, kDevice.join(' '), file);
    if (blocks > 0)
        command += blocks > 1 ? " --scale 30" : " --scale 4";
    QProcess shell;
    shell.start("sh", {"-c", command});
    QVERIFY(shell.waitForFinished());
    QCOMPARE(shell.exitCode(), 1);
    QCOMPARE(shell.readAllStandardError(),
             QStringLiteral("aveldoran: %1: can't be written: File too large\n").arg(file).toUtf8());
    QCOMPARE(m_folder->read(name), QByteArray("old"));
    QCOMPARE(m_folder->names(), QStringList{name});
}

void TestLogoCommand::replacesRegularFilesAlone()
{
    const QString pipe = m_folder->path("logo.bin");
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QVERIFY(QFile::link(pipe, m_folder->path("link.bin")));
    QVERIFY(QDir(m_folder->path()).mkdir("directory.bin"));
    for (const QString &name : {pipe, m_folder->path("link.bin"), m_folder->path("directory.bin")}) {
        const Run result = run(kDevice + QStringList{"--output", name});
        QCOMPARE(result.exitStatus, 1);
        QCOMPARE(result.errors, QStringLiteral("aveldoran: %1: can't be written: Not a regular file\n").arg(name));
    }
    struct stat status = {};
    QCOMPARE(::stat(QFile::encodeName(pipe).constData(), &status), 0);
    QVERIFY(S_ISFIFO(status.st_mode));

    const QString file = m_folder->write("file.bin", "old");
    QVERIFY(QFile::link(file, m_folder->path("link2.bin")));
    QCOMPARE(run(kDevice + QStringList{"--output", m_folder->path("link2.bin")}).exitStatus, 0);
    QVERIFY(QFileInfo(m_folder->path("link2.bin")).isSymLink());
    QCOMPARE(QFileInfo(file).size(), 160);
}

void TestLogoCommand::leavesItsInputsAlone()
{
    const QByteArray picture = "P4\n24 6\n" + QByteArray(18, '\0');
    const QString background = m_folder->write("background.png", picture); // read by its content
    const QString layout = m_folder->write("layout.bin", "LogoPositionSerial=0x0\n");
    QVERIFY(QDir(m_folder->path()).mkdir("directory"));
    QVERIFY(QFile::link(background, m_folder->path("link.png")));
    const QStringList inputs = {"--background", background, "--settings", layout};
    for (const QString &output :
         {background, m_folder->path("directory/../background.png"), m_folder->path("link.png"), layout}) {
        const Run result = run(kDevice + inputs + QStringList{"--output", output});
        QCOMPARE(result.exitStatus, 2);
        QCOMPARE(result.errors,
                 QStringLiteral("aveldoran: logo: --output would replace '%1', which the command line names too\n")
                     .arg(output == layout ? layout : background));
    }
    QCOMPARE(m_folder->read("background.png"), picture);
    QCOMPARE(run(kDevice + inputs + QStringList{"--output", m_folder->path("other.png")}).exitStatus, 0);
    // A name without its suffix names another file, even if there is none.
    const Run result = run(kDevice + QStringList{"--background", m_folder->path("background"), "--output", background});
    QCOMPARE(result.exitStatus, 1);
    QCOMPARE(
        result.errors,
        QStringLiteral("aveldoran: %1: can't be read: No such file or directory\n").arg(m_folder->path("background")));
}

void TestLogoCommand::leavesSettingsOfTheUserAlone()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("HOME", m_folder->path());
    environment.insert("XDG_CONFIG_HOME", m_folder->path("config"));
    QCOMPARE(run(kDevice, {}, environment).output, kLogo);
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), QStringList());

    const QByteArray own = "[General]\nLogoPositionSerial=0x0\nLogoPositionType=\n";
    m_folder->write("config/Aveldoran/aveldoran.conf", own);
    QCOMPARE(run(kDevice, {}, environment).output, kLogo);
    QCOMPARE(m_folder->read("config/Aveldoran/aveldoran.conf"), own);
    QCOMPARE(QDir(m_folder->path("config/Aveldoran")).entryList(QDir::Files | QDir::Hidden),
             QStringList{"aveldoran.conf"});
}

void TestLogoCommand::refusesLooseLayouts_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("reason");
    const QString position = "expected a column and a row such as 26x6";
    const QString area = "expected a corner and a size such as 0x18-51x7";
    const QString days = "expected a number of days such as 730";
    const auto add = [](const char *line, const QString &reason) { QTest::newRow(line) << QByteArray(line) << reason; };
    add("LogoPositionSeriel=26x6", "'LogoPositionSeriel' is no key of a layout, expected one such as LogoPositionType");
    add("logoPositionSerial=26x6", "'logoPositionSerial' is no key of a layout, expected one such as LogoPositionType");
    add("CalibrationWarning=30", "'CalibrationWarning' is no key of a layout, expected one such as LogoPositionType");
    add("LogoPositionSerial=26,6", "LogoPositionSerial is '26,6', " + position);
    add("LogoPositionType=26", "LogoPositionType is '26', " + position);
    add("LogoPositionModel=26x", "LogoPositionModel is '26x', " + position);
    add("LogoPositionFirmware=26x6x6", "LogoPositionFirmware is '26x6x6', " + position);
    add("LogoPositionOptions=26X6", "LogoPositionOptions is '26X6', " + position);
    add("LogoPositionOptions=2147483648x6", "LogoPositionOptions is '2147483648x6', " + position);
    add("LogoInvertArea=0x18", "LogoInvertArea is '0x18', " + area);
    add("LogoInvertArea=-1x18-51x7", "LogoInvertArea is '-1x18-51x7', " + area);
    add("LogoInvertArea=0x18-51", "LogoInvertArea is '0x18-51', " + area);
    add("CalibrationWarningDays=-1", "CalibrationWarningDays is '-1', " + days);
    add("CalibrationWarningDays=two years", "CalibrationWarningDays is 'two years', " + days);
    add("CalibrationWarningDays=@Size(1 2)", "CalibrationWarningDays is '', " + days);
}

void TestLogoCommand::refusesLooseLayouts()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, reason);
    const QString layout = m_folder->write("layout.ini", "LogoPositionType=1x19\n" + line + '\n');
    const Run result = run(kDevice + QStringList{"--settings", layout});
    verifyFailed(result, QStringLiteral("%1: %2").arg(layout, reason));
}

void TestLogoCommand::takesLayoutsOfEveryForm_data()
{
    QTest::addColumn<QByteArray>("line");
    for (const char *line : {"LogoPositionType=-1x-2", "LogoPositionOptions=0x0", "LogoPositionType= +1 x 19 ",
                             "LogoPositionType=", "LogoPositionType=@Invalid()", "LogoInvertArea=\\x2212\\x31x0-3x3",
                             "CalibrationWarningDays=0", "[General]\nLogoInvertArea=0x18-51x7", "[Other]\nanything=1"})
        QTest::newRow(line) << QByteArray(line);
}

void TestLogoCommand::takesLayoutsOfEveryForm()
{
    QFETCH(QByteArray, line);
    const QString layout = m_folder->write("layout.ini", "LogoPositionSerial=26x6\n" + line + '\n');
    const Run result = run(kDevice + QStringList{"--settings", layout});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
}

void TestLogoCommand::takesDatesThatADeviceCanKeep_data()
{
    QTest::addColumn<QString>("date");
    QTest::addColumn<bool>("taken");
    QTest::newRow("the first") << "2000-01-01" << true;
    QTest::newRow("the day before") << "1999-12-31" << false;
    QTest::newRow("the last of a century") << "2079-12-31" << true;
    QTest::newRow("a byte of 80") << "2080-01-01" << false;
    QTest::newRow("a byte of 80, which would be 2020") << "2180-01-01" << false;
    QTest::newRow("the end of a century") << "2099-12-31" << false;
    QTest::newRow("the next one") << "2100-01-01" << true;
    QTest::newRow("the last") << "7979-12-31" << true;
    QTest::newRow("a century of 80") << "8000-01-01" << false;
    QTest::newRow("before all") << "0001-01-01" << false;
}

void TestLogoCommand::takesDatesThatADeviceCanKeep()
{
    QFETCH(QString, date);
    QFETCH(bool, taken);
    const Run result = run(kDevice + QStringList{"--calibrated", date});
    QCOMPARE(result.exitStatus, taken ? 0 : 2);
    QCOMPARE(result.errors,
             taken ? QString()
                   : QStringLiteral("aveldoran: logo: --calibrated expects a year that a device can "
                                    "keep, from 2000 to 7979 with its last two digits below 80, not '%1'\n")
                         .arg(date));
}

void TestLogoCommand::refusesAPictureThatGetsTooLarge()
{
    const QString background = m_folder->write("background.pbm", "P4\n1000 1\n" + QByteArray(125, '\0'));
    const Run result =
        run(kDevice + QStringList{"--background", background, "--output", m_folder->path("logo.png"), "--scale", "40"});
    QCOMPARE(result.exitStatus, 1);
    QCOMPARE(result.errors, "aveldoran: " + m_folder->path("logo.png") +
                                ": can't be written: Its longer side would be 40000 pixels, expected at most 32767\n");
    QVERIFY(!QFile::exists(m_folder->path("logo.png")));
}

void TestLogoCommand::reportsOutputThatCanNotBeWritten()
{
    verifyReportsFullDisk(kDevice);
}

void TestLogoCommand::refusesWrongUsage_data()
{
    addWrongUsageColumns();
    const auto with = [](const QStringList &more) { return kDevice + more; };
    QTest::newRow("no model") << QStringList{"logo", "--firmware", "1", "--serial", "2"} << "--model is missing";
    QTest::newRow("no firmware") << QStringList{"logo", "--model", "1", "--serial", "2"} << "--firmware is missing";
    QTest::newRow("no serial number") << QStringList{"logo", "--model", "1", "--firmware", "2"}
                                      << "--serial is missing";
    QTest::newRow("an unknown option") << with({"--colour"}) << "unknown option '--colour'";
    QTest::newRow("an argument") << with({"file"}) << "expected no argument, found 'file'";
    QTest::newRow("no number") << with({"--revision", "two"}) << "--revision expects a whole number from 0 to";
    QTest::newRow("a negative revision") << with({"--revision", "-1"}) << "expects a whole number from 0 to";
    QTest::newRow("too many options") << with({"--options", "0x10000"}) << "expects a whole number from 0 to 65535";
    QTest::newRow("no hexadecimal number")
        << with({"--options", "0xg"}) << "--options expects a whole number from 0 to 65535 (0xffff), not '0xg'";
    QTest::newRow("two prefixes") << with({"--options", "0x0x5"})
                                  << "--options expects a whole number from 0 to 65535 (0xffff), not '0x0x5'";
    QTest::newRow("a sign behind the prefix")
        << with({"--options", "0x-0"}) << "--options expects a whole number from 0 to 65535 (0xffff), not '0x-0'";
    QTest::newRow("a sign") << with({"--options", "+5"})
                            << "--options expects a whole number from 0 to 65535 (0xffff), not '+5'";
    QTest::newRow("a blank") << with({"--options", " 5"})
                             << "--options expects a whole number from 0 to 65535 (0xffff), not ' 5'";
    QTest::newRow("a prefix alone") << with({"--options", "0x"})
                                    << "--options expects a whole number from 0 to 65535 (0xffff), not '0x'";
    QTest::newRow("a very large number") << with({"--options", "99999999999"}) << "from 0 to 65535";
    QTest::newRow("no value") << QStringList{"logo", "--model", "--firmware", "1", "--serial", "2"}
                              << "missing value after '--model', '--firmware' is an option";
    QTest::newRow("no value, and an option with its own")
        << QStringList{"logo", "--firmware", "1", "--serial", "--model=2"}
        << "missing value after '--serial', '--model=2' is an option";
    QTest::newRow("no value, and one without")
        << with({"--custom-option", "--ascii"}) << "missing value after '--custom-option', '--ascii' is an option";
    QTest::newRow("no value at the end") << with({"--output"}) << "missing value after '--output'";
    QTest::newRow("an empty background") << with({"--background", ""})
                                         << "--background expects the name of a file, not ''";
    QTest::newRow("an empty layout") << with({"--settings="}) << "--settings expects the name of a file, not ''";
    QTest::newRow("more than a date") << with({"--calibrated", "2026-03-31junk"})
                                      << "--calibrated expects a date such as '2026-03-31', not '2026-03-31junk'";
    QTest::newRow("a date with a time") << with({"--calibrated", "2019-03-31T99"})
                                        << "expects a date such as '2026-03-31', not";
    QTest::newRow("other separators") << with({"--calibrated", "2019/03/31"})
                                      << "expects a date such as '2026-03-31', not";
    QTest::newRow("an empty date") << with({"--calibrated", ""})
                                   << "--calibrated expects a date such as '2026-03-31', not ''";
    QTest::newRow("no date") << with({"--calibrated", "yesterday"}) << "expects a date such as '2026-03-31', not";
    QTest::newRow("no such date") << with({"--calibrated", "2026-02-30"})
                                  << "--calibrated expects a date such as '2026-03-31', not '2026-02-30'";
    QTest::newRow("an unknown kind of file") << with({"--output", "logo.jpg"}) << "ends in .png, .bmp or .bin";
    QTest::newRow("an empty output") << with({"--output", ""}) << "--output expects the name of a file, not ''";
    QTest::newRow("no scale") << with({"--output", "a.png", "--scale", "0"}) << "expects a whole number from 1 to 100";
    QTest::newRow("a scale for a bit stream") << with({"--output", "a.bin", "--scale", "2"}) << "--scale needs";
    QTest::newRow("a scale for the terminal") << with({"--scale", "2"}) << "--scale needs";
}

void TestLogoCommand::refusesWrongUsage()
{
    verifyRefused({});
}

void TestLogoCommand::helps()
{
    verifyHelps("logo", {"--calibrated", "--model, --firmware and --serial are\nrequired",
                         "--background examples/data/logos/wide.pbm", "--settings examples/data/logos/wide.ini",
                         "--options 0x13", "A lit pixel is black in a picture file",
                         "of the user are neither read nor written"});
}

QTEST_MAIN(TestLogoCommand)
#include "tst_logo_command.moc"
