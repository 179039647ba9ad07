#include "apps/aveldoran/commands.h"
#include "apps/aveldoran/console.h"

#include <bootlogo/abootlogodata.h>
#include <core/asimulateddevice.h>

#include <QtCore/QBuffer>
#include <QtCore/QCommandLineParser>
#include <QtCore/QDate>
#include <QtCore/QFile>
#include <QtCore/QMap>
#include <QtCore/QSaveFile>
#include <QtCore/QSettings>
#include <QtGui/QBitmap>
#include <QtGui/QImage>

#include <algorithm>
#include <limits>
#include <memory>

namespace {

constexpr int kMaxScale = 100;
constexpr int kMaxSide = 32767; // of a picture in a file

// Where the device memory holds the calibration date.
constexpr unsigned short kCalibrationDate = 31;

enum class OutputFormat
{
    None,
    Png,
    Bmp,
    Bitstream,
};

struct Options
{
    QString model;
    QString firmware;
    QString serial;
    int revision = 1;
    int optionMask = 0;
    QString customOption;
    QString background;
    QDate calibrated;
    QString settings;
    QString output;
    OutputFormat format = OutputFormat::None;
    int scale = 1;
    bool print = false;
};

// --- the command line ---

void addOptions(QCommandLineParser *parser)
{
    const auto add = [parser](const char *name, const char *value, const QString &description) {
        parser->addOption({QLatin1String(name), description, QLatin1String(value)});
    };
    add("model", "M", QStringLiteral("The model name of the device."));
    add("firmware", "F", QStringLiteral("Its firmware version."));
    add("serial", "S", QStringLiteral("Its serial number."));
    add("revision", "N", QStringLiteral("The generation of its hardware, 1 if not given."));
    add("options", "MASK", QStringLiteral("The bits of its options, a number such as 5 or 0x5."));
    add("custom-option", "TEXT", QStringLiteral("The text of option bit 8."));
    add("background", "FILE", QStringLiteral("A picture to write on, instead of the template."));
    add("calibrated", "DATE", QStringLiteral("When it was calibrated, such as 2026-03-31."));
    add("settings", "FILE.ini", QStringLiteral("A layout: what goes where. A field without a key is left out."));
    add("output", "FILE", QStringLiteral("Write FILE.png, FILE.bmp, or the device's bit stream as FILE.bin."));
    add("scale", "N", QStringLiteral("Draw each pixel of a picture file N by N, up to %1.").arg(kMaxScale));
    parser->addOption({QStringLiteral("ascii"),
                       QStringLiteral("Print the logo with block characters; what is done without --output.")});
}

bool readText(const QCommandLineParser &parser, const QString &name, QString *text)
{
    if (!parser.isSet(name)) {
        Console::error(QStringLiteral("logo: --%1 is missing").arg(name));
        return false;
    }
    *text = parser.value(name);
    return true;
}

// Decimal, or hexadecimal after "0x".
bool readNumber(const QCommandLineParser &parser, const QString &name, int least, int most, int *number)
{
    if (!parser.isSet(name))
        return true;
    const QString text = parser.value(name);
    const bool isHexadecimal = text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive);
    bool ok = false;
    *number = isHexadecimal ? text.midRef(2).toInt(&ok, 16) : text.toInt(&ok);
    if (ok && *number >= least && *number <= most)
        return true;
    Console::error(QStringLiteral("logo: --%1 is '%2', expected a number from %3 to %4")
                       .arg(name, text, QString::number(least), QString::number(most)));
    return false;
}

bool readDate(const QCommandLineParser &parser, const QString &name, QDate *date)
{
    if (!parser.isSet(name))
        return true;
    const QString text = parser.value(name);
    *date = QDate::fromString(text, Qt::ISODate);
    if (date->isValid())
        return true;
    Console::error(QStringLiteral("logo: --%1 is '%2', expected a date such as 2026-03-31").arg(name, text));
    return false;
}

bool chooseFormat(const QCommandLineParser &parser, Options *options)
{
    options->output = parser.value(QStringLiteral("output"));
    options->print = parser.isSet(QStringLiteral("ascii")) || !parser.isSet(QStringLiteral("output"));
    const QString name = options->output.toLower();
    if (name.endsWith(QLatin1String(".png")))
        options->format = OutputFormat::Png;
    else if (name.endsWith(QLatin1String(".bmp")))
        options->format = OutputFormat::Bmp;
    else if (name.endsWith(QLatin1String(".bin")))
        options->format = OutputFormat::Bitstream;

    if (options->format == OutputFormat::None && parser.isSet(QStringLiteral("output"))) {
        Console::error(QStringLiteral("logo: --output is '%1', expected a name that ends in .png, .bmp or .bin")
                           .arg(options->output));
        return false;
    }
    const bool isPicture = options->format == OutputFormat::Png || options->format == OutputFormat::Bmp;
    if (parser.isSet(QStringLiteral("scale")) && !isPicture) {
        Console::error(QStringLiteral("logo: --scale needs an --output that ends in .png or .bmp"));
        return false;
    }
    return true;
}

bool readOptions(const QStringList &arguments, Options *options, int *exitStatus)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Composes the boot logo of a device, prints it, and writes it as a picture or as the bit stream that the "
        "device takes.\n\nExample: aveldoran logo --model 6060 --firmware 1.44 --serial 002311 --output logo.png "
        "--scale 8"));
    addOptions(&parser);
    if (!Console::parse(&parser, arguments, exitStatus))
        return false;

    *exitStatus = ExitUsage;
    if (!parser.positionalArguments().isEmpty()) {
        Console::error(QStringLiteral("logo: '%1' is no option").arg(parser.positionalArguments().constFirst()));
        return false;
    }
    options->customOption = parser.value(QStringLiteral("custom-option"));
    options->background = parser.value(QStringLiteral("background"));
    options->settings = parser.value(QStringLiteral("settings"));
    return readText(parser, QStringLiteral("model"), &options->model) &&
           readText(parser, QStringLiteral("firmware"), &options->firmware) &&
           readText(parser, QStringLiteral("serial"), &options->serial) &&
           readNumber(parser, QStringLiteral("revision"), 0, std::numeric_limits<int>::max(), &options->revision) &&
           readNumber(parser, QStringLiteral("options"), 0, 0xffff, &options->optionMask) &&
           readNumber(parser, QStringLiteral("scale"), 1, kMaxScale, &options->scale) &&
           readDate(parser, QStringLiteral("calibrated"), &options->calibrated) && chooseFormat(parser, options);
}

// --- composing ---

// What QSettings and QBitmap don't say of a file.
bool canBeOpened(const QString &name)
{
    QFile file(name);
    if (file.open(QIODevice::ReadOnly))
        return true;
    Console::error(QStringLiteral("%1: %2").arg(name, file.errorString()));
    return false;
}

// Null, with a message, if the file is no layout.
std::unique_ptr<QSettings> openLayout(const QString &name)
{
    if (!canBeOpened(name))
        return nullptr;
    auto layout = std::make_unique<QSettings>(name, QSettings::IniFormat);
    const QStringList keys = layout->childKeys();
    const bool hasField = std::any_of(keys.cbegin(), keys.cend(), [](const QString &key) {
        return key.startsWith(QLatin1String("LogoPosition")) || key == QLatin1String("LogoInvertArea") ||
               key == QLatin1String("CalibrationWarningDays");
    });
    if (layout->status() != QSettings::NoError || !hasField) {
        Console::error(
            QStringLiteral("%1: no layout of a logo, expected lines such as LogoPositionType=1x19").arg(name));
        return nullptr;
    }
    return layout;
}

// Month, day, and the low and the high two digits of the year, two decimal digits a byte.
QByteArray dateForMemory(const QDate &date)
{
    return QByteArray::fromHex(date.toString(QStringLiteral("MMdd")).toLatin1() +
                               QByteArray::number(date.year() % 100).rightJustified(2, '0') +
                               QByteArray::number(date.year() / 100).rightJustified(2, '0'));
}

// A simulated device that says of itself what the command line says.
class DescribedDevice : public ASimulatedDevice
{
public:
    explicit DescribedDevice(const Options &options)
        : m_options(options)
    {}
    QString customOptionText() const override { return m_options.customOption; }
    int hardwareRevision() const override { return m_options.revision; }
    QStringList informationList() const override
    {
        QStringList information = ASimulatedDevice::informationList();
        information[ModelName] = m_options.model;
        information[FirmwareVersion] = m_options.firmware;
        information[SerialNumber] = m_options.serial;
        return information;
    }
    quint16 optionMask() const override { return static_cast<quint16>(m_options.optionMask); }

private:
    const Options &m_options;
};

bool compose(const Options &options, ABootlogoData *logo)
{
    std::unique_ptr<QSettings> layout;
    if (!options.settings.isEmpty()) {
        layout = openLayout(options.settings);
        if (!layout)
            return false;
    }
    DescribedDevice device(options);
    QMap<unsigned short, QByteArray> memory;
    if (options.calibrated.isValid())
        memory.insert(kCalibrationDate, dateForMemory(options.calibrated));
    if (logo->fromDeviceInformation(options.background, layout.get(), &device, memory, QString(), 0))
        return true;
    if (canBeOpened(options.background))
        Console::error(
            QStringLiteral("%1: no picture of a known kind and of at most 16,777,216 pixels").arg(options.background));
    return false;
}

// --- showing ---

// Two rows of the picture in a line.
QString blockCharacters(const ABootlogoData &logo)
{
    constexpr ushort kBlocks[] = {' ', 0x2580, 0x2584, 0x2588}; // none, the upper half, the lower half, both
    QString text;
    for (int row = logo.rows() - 1; row >= 0; row -= 2) {
        for (int col = 0; col < logo.cols(); ++col)
            text += QChar(kBlocks[(logo.pixel(col, row) ? 1 : 0) + (logo.pixel(col, row - 1) ? 2 : 0)]);
        text += QLatin1Char('\n');
    }
    return text;
}

bool encode(const ABootlogoData &logo, const Options &options, QByteArray *content)
{
    if (options.format == OutputFormat::Bitstream) {
        *content = logo.toBitstream();
        return true;
    }
    const qint64 longestSide = qint64{std::max(logo.cols(), logo.rows())} * options.scale;
    if (longestSide > kMaxSide) {
        Console::error(QStringLiteral("logo: a picture with sides of %L1 pixels is too large, expected at most %L2")
                           .arg(longestSide)
                           .arg(kMaxSide));
        return false;
    }
    const QImage image = logo.toBitmap().toImage().scaled(logo.cols() * options.scale, logo.rows() * options.scale);
    QBuffer buffer(content);
    if (!image.save(&buffer, options.format == OutputFormat::Png ? "PNG" : "BMP")) {
        Console::error(QStringLiteral("%1: the picture could not be encoded").arg(options.output));
        return false;
    }
    return true;
}

// The file is replaced when the new one is complete.
bool writeFile(const QString &name, const QByteArray &content)
{
    QSaveFile file(name);
    if (file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.commit())
        return true;
    Console::error(QStringLiteral("%1: could not be written: %2").arg(name, file.errorString()));
    return false;
}

} // namespace

int runLogo(const QStringList &arguments)
{
    Options options;
    int exitStatus = ExitDone;
    if (!readOptions(arguments, &options, &exitStatus))
        return exitStatus;

    ABootlogoData logo(nullptr);
    if (!compose(options, &logo))
        return ExitFailed;
    bool complete = true;
    if (options.format != OutputFormat::None) {
        QByteArray content;
        complete = encode(logo, options, &content) && writeFile(options.output, content);
    }
    if (options.print)
        Console::write(blockCharacters(logo));
    return Console::finish() && complete ? ExitDone : ExitFailed;
}
