#include "apps/programrun.h"

#include <QtGui/QImage>
#include <QtTest/QtTest>

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
    void init();

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
    void keepsAFileThatCanNotBeReplaced();
    void refusesAPictureThatGetsTooLarge();
    void reportsOutputThatCanNotBeWritten();
    void refusesWrongUsage_data();
    void refusesWrongUsage();
    void helps();

private:
    QString path(const QString &name) const { return m_directory->filePath(name); }
    QString write(const QString &name, const QByteArray &content);

    std::unique_ptr<QTemporaryDir> m_directory;
};

void TestLogoCommand::init()
{
    m_directory = std::make_unique<QTemporaryDir>();
    QVERIFY(m_directory->isValid());
}

QString TestLogoCommand::write(const QString &name, const QByteArray &content)
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("could not write %s", qPrintable(file.fileName()));
    return file.fileName();
}

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
    const Run result = run(kDevice + QStringList{"--output", path("logo.png"), "--ascii"});
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
    QStringList arguments = kDevice + QStringList{"--output", path(name)};
    if (scale != 1)
        arguments += QStringList{"--scale", QString::number(scale)};
    const Run result = run(arguments);
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(result.output, QString()); // with --output it is printed on demand
    const QImage image = QImage(path(name)).convertToFormat(QImage::Format_RGB32);
    QCOMPARE(image, imageOf(kLogo, 25).scaled(51 * scale, 25 * scale));
    QCOMPARE(QDir(m_directory->path()).entryList(QDir::Files), QStringList{name}); // and nothing beside it
}

void TestLogoCommand::writesTheBitStream()
{
    const Run result = run(kDevice + QStringList{"--output", path("logo.bin")});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QFile file(path("logo.bin"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray stream = file.readAll();
    QCOMPARE(stream.size(), 160);
    const QImage image = imageOf(kLogo, 25);
    for (int bit = 0; bit < 51 * 25; ++bit) {
        const bool lit = (stream.at(bit / 8) >> (bit % 8) & 1) != 0;
        QCOMPARE(lit, image.pixelColor(bit % 51, 24 - bit / 51) == Qt::black);
    }
}

void TestLogoCommand::printsBesideAnOutputIfAsked()
{
    const Run result = run(kDevice + QStringList{"--output", path("logo.png"), "--ascii"});
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(result.output, kLogo);
    QVERIFY(QFile::exists(path("logo.png")));
}

void TestLogoCommand::describesTheDevice()
{
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
    QCOMPARE(run(kDevice + QStringList{"--calibrated", "1999-12-31"}).output, kLogo); // no date of a device
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
    const QString layout = write("layout.ini", "LogoPositionSerial=0x0\n");
    const QString background = write("background.pbm", "P4\n24 6\n" + QByteArray(18, '\0'));
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
    const QString noPicture = "no picture of a known kind and of at most 16,777,216 pixels";
    const QString noLayout = "no layout of a logo, expected lines such as LogoPositionType=1x19";
    QTest::newRow("no background") << "--background"
                                   << "missing.png"
                                   << "No such file or directory";
    QTest::newRow("a background that is a directory") << "--background"
                                                      << "."
                                                      << "file to open is a directory";
    QTest::newRow("a background that is none") << "--background"
                                               << "text.txt" << noPicture;
    QTest::newRow("a background that is too large") << "--background"
                                                    << "large.pbm" << noPicture;
    QTest::newRow("no layout") << "--settings"
                               << "missing.ini"
                               << "No such file or directory";
    QTest::newRow("a layout that is a directory") << "--settings"
                                                  << "."
                                                  << "file to open is a directory";
    QTest::newRow("a layout that is none") << "--settings"
                                           << "text.txt" << noLayout;
    QTest::newRow("a layout in a group") << "--settings"
                                         << "group.ini" << noLayout;
    QTest::newRow("an empty layout") << "--settings"
                                     << "empty.ini" << noLayout;
    QTest::newRow("an output nowhere") << "--output"
                                       << "missing/logo.png"
                                       << "could not be written: No such file or directory";
}

void TestLogoCommand::namesFilesThatCanNotBeUsed()
{
    QFETCH(QString, option);
    QFETCH(QString, name);
    QFETCH(QString, reason);
    write("text.txt", "A text\nthat is no file of the program\n");
    write("large.pbm", "P4\n5000 5000\n");
    write("group.ini", "[Logo]\nLogoPositionType=1x19\n");
    write("empty.ini", "");
    const Run result = run(kDevice + QStringList{option, path(name)});
    QCOMPARE(result.exitStatus, 1);
    QCOMPARE(result.output, QString());
    QCOMPARE(result.errors, QStringLiteral("aveldoran: %1: %2\n").arg(path(name), reason));
}

void TestLogoCommand::keepsAFileThatCanNotBeReplaced()
{
    const QString file = write("logo.bin", "old");
    const Run result = run(kDevice + QStringList{"--output", file, "--background", path("missing.png")});
    QCOMPARE(result.exitStatus, 1);
    QFile old(file);
    QVERIFY(old.open(QIODevice::ReadOnly));
    QCOMPARE(old.readAll(), QByteArray("old"));
}

void TestLogoCommand::refusesAPictureThatGetsTooLarge()
{
    const QString background = write("background.pbm", "P4\n1000 1\n" + QByteArray(125, '\0'));
    const Run result =
        run(kDevice + QStringList{"--background", background, "--output", path("logo.png"), "--scale", "40"});
    QCOMPARE(result.exitStatus, 1);
    QCOMPARE(result.errors, QStringLiteral("aveldoran: logo: a picture with sides of 40,000 pixels is too large, "
                                           "expected at most 32,767\n"));
    QVERIFY(!QFile::exists(path("logo.png")));
}

void TestLogoCommand::reportsOutputThatCanNotBeWritten()
{
    const Run result = run(kDevice, "/dev/full");
    QCOMPARE(result.exitStatus, 1);
    QVERIFY2(result.errors.startsWith("aveldoran: could not write the output: "), qPrintable(result.errors));
}

void TestLogoCommand::refusesWrongUsage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("reason");
    const auto with = [](const QStringList &more) { return kDevice + more; };
    QTest::newRow("no model") << QStringList{"logo", "--firmware", "1", "--serial", "2"} << "--model is missing";
    QTest::newRow("no firmware") << QStringList{"logo", "--model", "1", "--serial", "2"} << "--firmware is missing";
    QTest::newRow("no serial number") << QStringList{"logo", "--model", "1", "--firmware", "2"}
                                      << "--serial is missing";
    QTest::newRow("an unknown option") << with({"--colour"}) << "Unknown option 'colour'";
    QTest::newRow("an argument") << with({"file"}) << "'file' is no option";
    QTest::newRow("no number") << with({"--revision", "two"}) << "--revision is 'two', expected a number from 0 to";
    QTest::newRow("a negative revision") << with({"--revision", "-1"}) << "expected a number from 0 to";
    QTest::newRow("too many options") << with({"--options", "0x10000"}) << "expected a number from 0 to 65535";
    QTest::newRow("no hexadecimal number") << with({"--options", "0xg"}) << "--options is '0xg'";
    QTest::newRow("no date") << with({"--calibrated", "yesterday"}) << "expected a date such as 2026-03-31";
    QTest::newRow("no such date") << with({"--calibrated", "2026-02-30"}) << "--calibrated is '2026-02-30'";
    QTest::newRow("an unknown kind of file") << with({"--output", "logo.jpg"}) << "ends in .png, .bmp or .bin";
    QTest::newRow("an empty output") << with({"--output", ""}) << "--output is ''";
    QTest::newRow("no scale") << with({"--output", "a.png", "--scale", "0"}) << "expected a number from 1 to 100";
    QTest::newRow("a scale for a bit stream") << with({"--output", "a.bin", "--scale", "2"}) << "--scale needs";
    QTest::newRow("a scale for the terminal") << with({"--scale", "2"}) << "--scale needs";
}

void TestLogoCommand::refusesWrongUsage()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, reason);
    const Run result = run(arguments);
    QCOMPARE(result.exitStatus, 2);
    QCOMPARE(result.output, QString());
    QVERIFY2(result.errors.contains(reason), qPrintable(result.errors));
    QCOMPARE(result.errors.count('\n'), 1);
}

void TestLogoCommand::helps()
{
    const Run result = run({"logo", "--help"});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QVERIFY(result.output.startsWith("Usage: aveldoran logo "));
    QVERIFY(result.output.contains("--calibrated"));
    QVERIFY(run({"--help"}).output.contains("logo"));
}

QTEST_MAIN(TestLogoCommand)
#include "tst_logo_command.moc"
