#include "apps/aveldoran/commandline.h"
#include "apps/aveldoran/commands.h"
#include "apps/aveldoran/console.h"
#include "apps/aveldoran/inputfile.h"
#include "apps/aveldoran/options.h"
#include "apps/aveldoran/outputfile.h"
#include "apps/aveldoran/valuetext.h"

#include <bootlogo/abootlogodata.h>
#include <core/asimulateddevice.h>

#include <QtCore/QBuffer>
#include <QtCore/QCommandLineParser>
#include <QtCore/QDate>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QMap>
#include <QtCore/QRegularExpression>
#include <QtCore/QSettings>
#include <QtGui/QBitmap>
#include <QtGui/QImage>

#include <algorithm>
#include <iterator>
#include <limits>
#include <memory>
#include <utility>

namespace {

constexpr char kCommand[] = "logo";

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

constexpr struct
{
    const char *name;
    const char *value; // null if it has none
    const char *description;
    const char *defaultValue = nullptr; // told at the end of the description
} kOptions[] = {
    {"model", "NAME", "The model name of the device. Required."},
    {"firmware", "VERSION", "Its firmware version. Required."},
    {"serial", "NUMBER", "Its serial number. Required."},
    {"revision", "N", "The generation of its hardware", "1"},
    {"options", "MASK", "The bits of its options, a number such as 5 or 0x5."},
    {"custom-option", "TEXT", "The text of option 004 (value 8)."},
    {"background", "FILE", "A picture to write on, of up to 16777216 pixels, instead of the template."},
    {"calibrated", "DATE", "When it was calibrated, such as 2026-03-31."},
    {"settings", "FILE.ini", "A layout: what goes where. A field without a key is left out."},
    {"output", "FILE", "Write FILE.png, FILE.bmp, or the device's bit stream as FILE.bin."},
    {"scale", "N", "Draw each pixel of a picture file N by N, up to 100", "1"},
    {"ascii", nullptr, "Print the logo with block characters; what is done without --output."},
};
constexpr int kMaxScale = 100;

constexpr char kDescription[] =
    "Composes the boot logo of a device, prints it, and writes it as a picture or as the bit stream that the device "
    "takes. --model, --firmware and --serial are required.\n\n"
    "A lit pixel is black in a picture file. Printed, it has the colour of the terminal's text: on a dark terminal it "
    "is light, the reverse of the picture.\n\n"
    "The positions on the logo are those of the template, or of --settings. Settings of the user are neither read nor "
    "written.";

void addOptions(QCommandLineParser *parser)
{
    for (const auto &option : kOptions) {
        const QLatin1String name(option.name);
        const QLatin1String description(option.description);
        const QLatin1String value(option.value ? option.value : "");
        parser->addOption(option.defaultValue
                              ? optionWithDefault(name, description, value, QLatin1String(option.defaultValue))
                              : QCommandLineOption(name, description, value));
    }
}

bool readText(const QCommandLineParser &parser, const QString &name, QString *text)
{
    *text = parser.value(name);
    return requireOption(parser, kCommand, name);
}

// Digits alone: decimal ones, or hexadecimal ones after "0x".
bool readMask(const QCommandLineParser &parser, const QString &name, int *mask)
{
    if (!parser.isSet(name))
        return true;
    constexpr int kMost = 0xffff;
    static const QRegularExpression form(QStringLiteral("\\A(?:0[xX]([0-9a-fA-F]+)|([0-9]+))\\z"));
    const QString text = parser.value(name);
    const QRegularExpressionMatch match = form.match(text);
    bool ok = false;
    *mask = match.capturedLength(1) > 0 ? match.capturedRef(1).toInt(&ok, 16) : match.capturedRef(2).toInt(&ok);
    return (ok && *mask >= 0 && *mask <= kMost) ||
           refuseOption(kCommand, name, QStringLiteral("a whole number from 0 to 65535 (0xffff)"), text);
}

// Two decimal digits a byte, and a device takes bytes from 0x80 on for negative numbers.
bool deviceCanKeepYear(int year)
{
    constexpr int kFirst = 2000;
    constexpr int kEnd = 80;
    return year >= kFirst && year / 100 < kEnd && year % 100 < kEnd;
}

bool readDate(const QCommandLineParser &parser, const QString &name, QDate *date)
{
    if (!parser.isSet(name))
        return true;
    static const QRegularExpression form(QStringLiteral("\\A[0-9]{4}-[0-9]{2}-[0-9]{2}\\z"));
    const QString text = parser.value(name);
    *date = form.match(text).hasMatch() ? QDate::fromString(text, Qt::ISODate) : QDate();
    if (!date->isValid())
        return refuseOption(kCommand, name, QStringLiteral("a date such as '2026-03-31'"), text);
    return deviceCanKeepYear(date->year()) ||
           refuseOption(
               kCommand, name,
               QStringLiteral("a year that a device can keep, from 2000 to 7979 with its last two digits below 80"),
               text);
}

bool chooseFormat(const QCommandLineParser &parser, Options *options)
{
    const QStringList suffixes{QStringLiteral(".png"), QStringLiteral(".bmp"), QStringLiteral(".bin")};
    if (!readOutputOption(parser, kCommand, QStringLiteral("output"), {options->background, options->settings},
                          suffixes, &options->output))
        return false;
    options->print = parser.isSet(QStringLiteral("ascii")) || !parser.isSet(QStringLiteral("output"));
    const QString name = options->output.toLower();
    if (name.endsWith(suffixes.at(0)))
        options->format = OutputFormat::Png;
    else if (name.endsWith(suffixes.at(1)))
        options->format = OutputFormat::Bmp;
    else if (name.endsWith(suffixes.at(2)))
        options->format = OutputFormat::Bitstream;

    const bool isPicture = options->format == OutputFormat::Png || options->format == OutputFormat::Bmp;
    if (parser.isSet(QStringLiteral("scale")) && !isPicture) {
        CommandLine::usageError(kCommand, QStringLiteral("--scale needs an --output that ends in .png or .bmp"));
        return false;
    }
    return true;
}

bool readOptions(const QStringList &arguments, Options *options, int *exitStatus)
{
    QCommandLineParser parser;
    CommandLine::describe(
        &parser, QLatin1String(kDescription),
        {QStringLiteral("aveldoran logo --model 60105 --firmware 2.07 --serial 002311 --output logo.png --scale 8"),
         QStringLiteral("aveldoran logo --model 60105 --firmware 2.07 --serial 002311 --revision 2 --options 0x13"),
         QStringLiteral("aveldoran logo --model 60105 --firmware 2.07 --serial 002311 --background "
                        "examples/data/logos/wide.pbm --settings examples/data/logos/wide.ini")});
    addOptions(&parser);
    if (!CommandLine::parse(&parser, kCommand, arguments, exitStatus))
        return false;

    *exitStatus = ExitUsage;
    options->customOption = parser.value(QStringLiteral("custom-option"));
    constexpr int kMaxRevision = std::numeric_limits<int>::max();
    return readNoArgument(parser, kCommand) && readText(parser, QStringLiteral("model"), &options->model) &&
           readText(parser, QStringLiteral("firmware"), &options->firmware) &&
           readText(parser, QStringLiteral("serial"), &options->serial) &&
           readFileOption(parser, kCommand, QStringLiteral("background"), &options->background) &&
           readFileOption(parser, kCommand, QStringLiteral("settings"), &options->settings) &&
           readNumberOption(parser, kCommand, QStringLiteral("revision"), 0, kMaxRevision, &options->revision) &&
           readMask(parser, QStringLiteral("options"), &options->optionMask) &&
           readNumberOption(parser, kCommand, QStringLiteral("scale"), 1, kMaxScale, &options->scale) &&
           readDate(parser, QStringLiteral("calibrated"), &options->calibrated) && chooseFormat(parser, options);
}

// --- composing ---

bool isPosition(const QString &text)
{
    const QStringList numbers = text.split(QLatin1Char('x'));
    return numbers.size() == 2 && std::all_of(numbers.cbegin(), numbers.cend(), [](const QString &number) {
               bool ok = false;
               number.toInt(&ok);
               return ok;
           });
}

bool isArea(const QString &text)
{
    const QStringList parts = text.split(QLatin1Char('-'));
    return parts.size() == 2 && isPosition(parts.constFirst()) && isPosition(parts.constLast());
}

bool isDays(const QString &text)
{
    bool ok = false;
    return text.toInt(&ok) >= 0 && ok;
}

constexpr char kExpectedPosition[] = "a column and a row such as 26x6";

constexpr struct
{
    const char *key;
    bool (*isValid)(const QString &text);
    const char *expected;
} kLayoutKeys[] = {
    {"LogoPositionType", isPosition, kExpectedPosition},
    {"LogoPositionModel", isPosition, kExpectedPosition},
    {"LogoPositionFirmware", isPosition, kExpectedPosition},
    {"LogoPositionSerial", isPosition, kExpectedPosition},
    {"LogoPositionOptions", isPosition, kExpectedPosition},
    {"LogoInvertArea", isArea, "a corner and a size such as 0x18-51x7"},
    {"CalibrationWarningDays", isDays, "a number of days such as 730"},
};

// What the library reads as 0 or leaves out is refused here, unless it is empty.
bool checkLayoutValue(const QSettings &layout, const QString &file, const QString &key)
{
    const auto *known = std::find_if(std::begin(kLayoutKeys), std::end(kLayoutKeys),
                                     [&key](const auto &candidate) { return key == QLatin1String(candidate.key); });
    if (known == std::end(kLayoutKeys)) {
        Console::error(
            QStringLiteral("%1: '%2' is no key of a layout, expected one such as LogoPositionType").arg(file, key));
        return false;
    }
    const QVariant value = layout.value(key); // with commas a list
    const QString text = value.toStringList().join(QLatin1Char(','));
    const bool isText = !value.isValid() || value.type() == QVariant::String;
    if (isText && (text.isEmpty() || known->isValid(text)))
        return true;
    Console::error(QStringLiteral("%1: %2 is '%3', expected %4").arg(file, key, text, QLatin1String(known->expected)));
    return false;
}

// Null, with a message, if the file is no layout.
std::unique_ptr<QSettings> openLayout(const QString &name)
{
    if (!canBeRead(name))
        return nullptr;
    auto layout = std::make_unique<QSettings>(name, QSettings::IniFormat);
    const QStringList keys = layout->childKeys();
    if (layout->status() != QSettings::NoError || keys.isEmpty()) {
        Console::error(
            QStringLiteral("%1: no layout of a logo, expected lines such as LogoPositionType=1x19").arg(name));
        return nullptr;
    }
    const bool isValid = std::all_of(keys.cbegin(), keys.cend(),
                                     [&](const QString &key) { return checkLayoutValue(*layout, name, key); });
    return isValid ? std::move(layout) : nullptr;
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
    // With a name that it finds no file of, the library would go on to others.
    if (!options.background.isEmpty() && !QFileInfo::exists(options.background) && !canBeRead(options.background))
        return false;
    DescribedDevice device(options);
    QMap<unsigned short, QByteArray> memory;
    if (options.calibrated.isValid())
        memory.insert(kCalibrationDate, dateForMemory(options.calibrated));
    if (logo->fromDeviceInformation(options.background, layout.get(), &device, memory, QString(), 0))
        return true;
    if (canBeRead(options.background))
        Console::error(
            QStringLiteral("%1: no picture of a known kind and of at most 16777216 pixels").arg(options.background));
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
        Console::error(QStringLiteral("%1: can't be written: Its longer side would be %2, expected at most %3")
                           .arg(options.output, countText(longestSide, "pixel"), QString::number(kMaxSide)));
        return false;
    }
    const QImage image = logo.toBitmap().toImage().scaled(logo.cols() * options.scale, logo.rows() * options.scale);
    QBuffer buffer(content);
    if (!image.save(&buffer, options.format == OutputFormat::Png ? "PNG" : "BMP")) {
        Console::error(QStringLiteral("%1: can't be written: The picture can't be encoded").arg(options.output));
        return false;
    }
    return true;
}

bool writeLogo(const ABootlogoData &logo, const Options &options)
{
    QByteArray content;
    const bool isWritten = encode(logo, options, &content) && Console::attempt([&](QString *errorText) {
                               return writeOutputFile(options.output, content, errorText);
                           });
    if (!isWritten)
        return false;
    if (options.format == OutputFormat::Bitstream)
        Console::tellWritten(options.output, countText(content.size(), "byte"));
    else
        Console::tellWritten(options.output,
                             QStringLiteral("%1 x %2").arg(QString::number(logo.cols() * options.scale),
                                                           countText(qint64{logo.rows()} * options.scale, "pixel")));
    return true;
}

} // namespace

int runLogo(const QStringList &arguments)
{
    Options options;
    int exitStatus = ExitDone;
    if (!readOptions(arguments, &options, &exitStatus))
        return exitStatus;

    // The library writes its default layout into the default settings. Where there can be no file they stay in memory.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("/dev/null"));
    ABootlogoData logo(nullptr);
    if (!compose(options, &logo))
        return ExitFailed;
    const bool complete = options.format == OutputFormat::None || writeLogo(logo, options);
    if (options.print)
        Console::write(blockCharacters(logo));
    return Console::finish() && complete ? ExitDone : ExitFailed;
}
