#include "bootlogo/abootlogodata.h"
#include "bootlogo/logobackground.h"
#include "core/aveldorandevice.h"

#include <QtCore/QDate>
#include <QtCore/QDateTime>
#include <QtCore/QPoint>
#include <QtCore/QStringList>
#include <QtGui/QBitmap>

#include <algorithm>
#include <limits>
#include <optional>

namespace {

constexpr char kPositionType[] = "LogoPositionType";
constexpr char kPositionModel[] = "LogoPositionModel";
constexpr char kPositionFirmware[] = "LogoPositionFirmware";
constexpr char kPositionSerial[] = "LogoPositionSerial";
constexpr char kPositionOptions[] = "LogoPositionOptions";
constexpr char kInvertArea[] = "LogoInvertArea";
constexpr char kCalibrationWarningDays[] = "CalibrationWarningDays";

constexpr struct
{
    const char *key;
    const char *value;
} kDefaultLayout[] = {
    {kPositionType, "1x19"},   {kPositionModel, "30x19"},  {kPositionFirmware, "26x12"},     {kPositionSerial, "26x6"},
    {kPositionOptions, "0x0"}, {kInvertArea, "0x18-51x7"}, {kCalibrationWarningDays, "730"},
};

// Where the device memory holds what.
constexpr unsigned short kCalibrationDate = 31;
constexpr unsigned short kFirmwareVersions = 38;

constexpr int kTemplateCols = 51;
constexpr int kTemplateRows = 25;

// The labels of firmware and serial number, and an underscore where each text of the default layout begins.
constexpr unsigned char kTemplate[] = {
    0x07, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
    0x00, 0x00, 0xdc, 0xd5, 0xd5, 0x71, 0x00, 0x00, 0x80, 0xa2, 0xa4, 0x02, 0x00, 0x00, 0x00, 0x37, 0x23, 0x17,
    0x00, 0x00, 0x00, 0x88, 0x28, 0xa9, 0x00, 0x00, 0x00, 0xc0, 0xdd, 0x9c, 0x04, 0x00, 0x00, 0x00, 0x00, 0x00,
    0x00, 0x00, 0x00, 0x00, 0x10, 0x57, 0x91, 0xd2, 0x01, 0x00, 0x80, 0x90, 0x8a, 0x2a, 0x00, 0x00, 0x00, 0x9c,
    0x4c, 0x55, 0x01, 0x00, 0x00, 0x20, 0xa4, 0xaa, 0x08, 0x00, 0x00, 0x00, 0x77, 0xb3, 0x45, 0x00, 0x00, 0x00,
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x1c, 0x00, 0x00, 0x80, 0x03,
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
};

// --- settings ---

// Empty if the field is switched off.
QString layoutText(const QSettings &settings, const char *key)
{
    return settings.value(QLatin1String(key)).toString();
}

// "30x19": what stands before the first "x" and after the last one. What is no number is 0.
QPoint pairFromText(const QString &text)
{
    const QChar separator = QLatin1Char('x');
    return {text.leftRef(text.indexOf(separator)).toInt(), text.midRef(text.lastIndexOf(separator) + 1).toInt()};
}

struct Area
{
    QPoint corner;
    QPoint size; // columns and rows
};

// "0x18-51x7": the pairs before the first "-" and after the last one.
Area areaFromText(const QString &text)
{
    const QChar separator = QLatin1Char('-');
    return {pairFromText(text.left(text.indexOf(separator))), pairFromText(text.mid(text.lastIndexOf(separator) + 1))};
}

// --- device data ---

// The text of the last part that has one and doesn't begin with "_". The list is walked in place, from its end.
QString firmwareFromMemory(const QByteArray &list)
{
    for (int end = list.size(); end >= 0;) {
        const int begin = end > 0 ? list.lastIndexOf(';', end - 1) + 1 : 0;
        if (begin == end || list.at(begin) != '_') {
            const char *part = list.constData() + begin;
            const char *partEnd = list.constData() + end;
            const char *textEnd = std::find_if(part, partEnd, [](char c) { return c == '=' || c == '\0'; });
            QString firmware = QString::fromUtf8(part, static_cast<int>(textEnd - part));
            if (!firmware.isEmpty())
                return firmware;
        }
        end = begin - 1;
    }
    return {};
}

// Beside a longer model name there is no room for the revision.
QString typeText(int revision, const QString &model)
{
    constexpr int kFirstShownRevision = 2;
    constexpr int kLongModel = 6;

    return revision >= kFirstShownRevision && model.size() < kLongModel ? QStringLiteral("KTm2_%1").arg(revision)
                                                                        : QStringLiteral("KTm2");
}

QString optionsText(const AVeldoranDevice &device, unsigned short options)
{
    constexpr unsigned kLastOption = 0x4000;
    constexpr int kMostWithLeadingZeros = 4;

    const unsigned mask = options | device.optionMask();
    QStringList texts;
    for (unsigned bit = 1; bit <= kLastOption; bit <<= 1U) {
        if ((mask & bit) == 0)
            continue;
        const auto feature = static_cast<AVeldoranFeature>(bit);
        texts.append(feature == CustomOption ? device.customOptionText() : AVeldoranDevice::featureNumber(feature));
    }
    if (texts.size() > kMostWithLeadingZeros) {
        for (QString &text : texts) {
            if (text.startsWith(QLatin1Char('0')))
                text.remove(0, 1);
        }
    }
    return texts.join(QLatin1Char(' '));
}

// Month, day, low and high two digits of the year, each a byte of two decimal digits. Invalid if it is no date from
// the year 2000 on.
QDate dateFromMemory(const QByteArray &bytes)
{
    constexpr int kSize = 4;
    if (bytes.size() != kSize)
        return {};
    // Deliberately signed: a byte from 0x80 on counts below 0, and is no day and no month.
    const auto decimal = [&bytes](int index) {
        // NOLINTNEXTLINE(bugprone-signed-char-misuse): the sign is meant
        const int value = static_cast<signed char>(bytes.at(index));
        return value / 16 * 10 + value % 16;
    };
    const int month = decimal(0);
    const int day = decimal(1);
    const int year = decimal(3) * 100 + decimal(2);
    return day <= 31 && month <= 12 && year >= 2000 ? QDate(year, month, day) : QDate();
}

bool calibrationIsOverdue(const QByteArray &memory, const QString &warningDays)
{
    const QDate calibrated = dateFromMemory(memory);
    const int days = warningDays.toInt();
    return calibrated.isValid() && days >= 1 && calibrated.addDays(days).startOfDay() < QDateTime::currentDateTime();
}

// --- background ---

bool loadBackground(const QString &bitmapFile, ABootlogoData *logo)
{
    if (bitmapFile.isEmpty()) {
        logo->resize(kTemplateCols, kTemplateRows);
        return logo->loadBitstream(
            QByteArray::fromRawData(reinterpret_cast<const char *>(kTemplate), sizeof(kTemplate)));
    }
    const QBitmap bitmap = readLogoBackground(bitmapFile);
    if (bitmap.isNull())
        return false;
    logo->resize(bitmap.width(), bitmap.height());
    return logo->loadBitmap(bitmap);
}

// --- steps of the composition, each left out if its setting is ---

// None of a field that the layout leaves out; what it would show is not asked for, then.
std::optional<QPoint> cornerOf(const char *key, const QSettings &layout)
{
    const QString position = layoutText(layout, key);
    return position.isEmpty() ? std::nullopt : std::make_optional(pairFromText(position));
}

// `columnsToTheLeft` of the corner.
void writeField(const QPoint &corner, const QString &text, ABootlogoData *logo, qint64 columnsToTheLeft = 0)
{
    const qint64 col = corner.x() - columnsToTheLeft;
    // What begins so far on the left ends there: no text is long enough to reach the picture.
    if (col >= std::numeric_limits<int>::min())
        logo->writeText(static_cast<int>(col), corner.y(), text);
}

// A long name grows leftwards, three columns a character.
qint64 growthOfModel(const QString &model)
{
    constexpr int kFittingLength = 5;
    constexpr int kColumnsPerCharacter = 3;

    return qint64{kColumnsPerCharacter} * std::max(0, model.size() - kFittingLength);
}

// Costs by the part of the area that lies in the picture, whatever the setting says.
void invertArea(const QSettings &layout, ABootlogoData *logo)
{
    const QString text = layoutText(layout, kInvertArea);
    if (text.isEmpty())
        return;
    const Area area = areaFromText(text);
    const auto end = [](int begin, int length, int limit) {
        return static_cast<int>(std::min<qint64>(qint64{begin} + length, limit));
    };
    const int endCol = end(area.corner.x(), area.size.x(), logo->cols());
    const int endRow = end(area.corner.y(), area.size.y(), logo->rows());
    for (int col = std::max(0, area.corner.x()); col < endCol; ++col) {
        for (int row = std::max(0, area.corner.y()); row < endRow; ++row)
            logo->setPixel(col, row, !logo->pixel(col, row));
    }
}

void writeCalibrationReminder(ABootlogoData *logo)
{
    logo->clear();
    logo->writeText(0, logo->rows() - 6, QStringLiteral("new"));
    logo->writeText(0, logo->rows() - 12, QStringLiteral("calibration"));
    logo->writeText(0, logo->rows() - 18, QStringLiteral("required!"));
}

} // namespace

ABootlogoData::ABootlogoData(QObject *parent)
    : QObject(parent)
{
    // Deliberately over what stands there: an application that wants another layout hands in its own settings.
    for (const auto &entry : kDefaultLayout)
        m_settings.setValue(QLatin1String(entry.key), QString::fromLatin1(entry.value));
}

ABootlogoData::~ABootlogoData() = default;

bool ABootlogoData::fromDeviceInformation(const QString &bitmapFile, QSettings *settings, AVeldoranDevice *device,
                                          QMap<unsigned short, QByteArray> &memory, QString firmware,
                                          unsigned short options)
{
    if (!device || !device->isReady() || !device->hasCapability(AVeldoranDevice::BootLogo) ||
        device->hasCapability(AVeldoranDevice::FixedBootLogo)) {
        return false;
    }
    const QStringList information = device->informationList();
    if (information.size() < AVeldoranDevice::InformationCount || !loadBackground(bitmapFile, this))
        return false;

    const QString &model = information.at(AVeldoranDevice::ModelName);
    if (firmware.isEmpty())
        firmware = firmwareFromMemory(memory.value(kFirmwareVersions));
    if (firmware.isEmpty())
        firmware = information.at(AVeldoranDevice::FirmwareVersion);
    // Up to a NUL, where the text from the plain bytes ends.
    firmware = QString::fromLatin1(firmware.trimmed().toLatin1().constData());

    const QSettings &layout = settings ? *settings : m_settings;
    if (const auto corner = cornerOf(kPositionFirmware, layout))
        writeField(*corner, firmware, this);
    if (const auto corner = cornerOf(kPositionType, layout))
        writeField(*corner, typeText(device->hardwareRevision(), model), this);
    if (const auto corner = cornerOf(kPositionModel, layout))
        writeField(*corner, model, this, growthOfModel(model));
    if (const auto corner = cornerOf(kPositionSerial, layout))
        writeField(*corner, information.at(AVeldoranDevice::SerialNumber), this);
    if (const auto corner = cornerOf(kPositionOptions, layout))
        writeField(*corner, optionsText(*device, options), this);
    invertArea(layout, this);

    if (calibrationIsOverdue(memory.value(kCalibrationDate), layoutText(layout, kCalibrationWarningDays)))
        writeCalibrationReminder(this);
    return true;
}
