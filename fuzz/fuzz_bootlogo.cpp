#include "fuzz/memoryfile.h"
#include "fuzz/require.h"

#include <bootlogo/abootlogodata.h>
#include <core/aveldorandevice.h>

#include <QtCore/QSettings>
#include <QtGui/QBitmap>
#include <QtGui/QGuiApplication>
#include <QtGui/QImageReader>

#include <cstdint>
#include <cstring>

// A stream of any bytes in a picture of any size, a text of any characters at any place, a logo composed of any
// settings, device texts and device memory, and one on any picture: no more than the picture is drawn on, and each
// pixel as the text says. The first byte of an input says which.

namespace {

// The input part by part; past its end all is zero and empty.
class Input
{
public:
    Input(const std::uint8_t *data, std::size_t size)
        : m_bytes(reinterpret_cast<const char *>(data), static_cast<int>(size))
    {}

    template<typename Number>
    Number number()
    {
        Number value = 0;
        const QByteArray bytes = take(sizeof(Number));
        std::memcpy(&value, bytes.constData(), static_cast<std::size_t>(bytes.size()));
        return value;
    }

    QByteArray rest() { return take(m_bytes.size()); }

    // Up to the next "|".
    QByteArray field()
    {
        const int end = m_bytes.indexOf('|', m_position);
        const QByteArray bytes = end < 0 ? rest() : take(end - m_position);
        m_position += end < 0 ? 0 : 1;
        return bytes;
    }

    QString text() { return QString::fromUtf8(field()); }

private:
    QByteArray take(int size)
    {
        const QByteArray bytes = m_bytes.mid(m_position, size);
        m_position += bytes.size();
        return bytes;
    }

    QByteArray m_bytes;
    int m_position = 0;
};

class FuzzedDevice : public AVeldoranDevice
{
public:
    QStringList information;
    QString customOption;
    int revision = 0;
    quint16 options = 0;

    QString customOptionText() const override { return customOption; }
    int hardwareRevision() const override { return revision; }
    bool isReady() const override { return true; }
    QStringList informationList() const override { return information; }
    quint16 optionMask() const override { return options; }
    bool hasCapability(int capability) const override { return capability == BootLogo; }
};

// Neither is destroyed: that would write their settings to files.
ABootlogoData &picture()
{
    static ABootlogoData &logo = *new ABootlogoData(nullptr);
    return logo;
}

QSettings &layout()
{
    static QSettings &settings = *new QSettings(QStringLiteral("/nonexistent/layout.ini"), QSettings::IniFormat);
    return settings;
}

// Sizes that are refused, and those of small pictures: one in between would take megabytes for each input.
void loadStream(Input *input)
{
    ABootlogoData &logo = picture();
    const auto cols = input->number<qint32>();
    const auto rows = input->number<qint32>();
    const qint64 pixels = qint64{cols} * rows;
    logo.resize(0, 0);
    if (cols < 0 || rows < 0 || pixels < 65536 || pixels > 2147483632)
        logo.resize(cols, rows);
    const QByteArray stream = input->rest();
    require(logo.loadBitstream(stream));
    require(logo.toBitstream() == stream);
    const int lastCol = logo.cols() - 1;
    const int lastRow = logo.rows() - 1;
    const QPoint corners[] = {{0, 0}, {lastCol, lastRow}, {lastCol, 0}, {0, lastRow}}; // of a single row each twice
    const auto isHeld = [&](const QPoint &at) {
        return lastCol >= 0 && lastRow >= 0 && (qint64{at.y()} * logo.cols() + at.x()) / 8 < stream.size();
    };
    for (const QPoint &at : corners) {
        const qint64 bit = qint64{at.y()} * logo.cols() + at.x();
        const bool lit = isHeld(at) && (stream.at(static_cast<int>(bit / 8)) >> (bit % 8) & 1) != 0;
        require(logo.pixel(at.x(), at.y()) == lit);
    }
    for (const QPoint &at : corners) {
        logo.setPixel(at.x(), at.y(), true);
        require(logo.pixel(at.x(), at.y()) == isHeld(at));
    }
    require(!logo.pixel(logo.cols(), 0) && !logo.pixel(0, logo.rows()) && !logo.pixel(-1, 0) && !logo.pixel(0, -1));
    require(logo.toBitstream().size() == stream.size());
}

void writeText(Input *input)
{
    ABootlogoData &logo = picture();
    const int cols = input->number<quint8>() % 64;
    const int rows = input->number<quint8>() % 32;
    const auto col = input->number<qint32>();
    const auto row = input->number<qint32>();
    const QString text = input->text();
    logo.resize(0, 0);
    logo.resize(cols, rows);
    logo.loadBitstream(QByteArray(logo.toBitstream().size(), '\xff'));
    logo.writeText(col, row, text);

    const LetterBits bits = ABootlogoData::textToBits(text);
    const auto inPicture = [&](qint64 x, qint64 y) { return x >= 0 && x < cols && y >= 0 && y < rows; };
    QBitArray lit(cols * rows);
    for (const QPoint &point : bits.points) {
        require(bits.bounds.contains(point));
        if (inPicture(qint64{col} + point.x(), qint64{row} + point.y()))
            lit.setBit((row + point.y()) * cols + col + point.x());
    }
    for (int y = 0; y < rows; ++y) {
        for (int x = 0; x < cols; ++x) {
            const bool covered = y >= row && y <= qint64{row} + 4 && x >= col && x <= qint64{col} + bits.bounds.right();
            require(logo.pixel(x, y) == (!covered || lit.testBit(y * cols + x)));
        }
    }
}

void compose(Input *input)
{
    static const char *const kKeys[] = {"LogoPositionType",      "LogoPositionModel",   "LogoPositionFirmware",
                                        "LogoPositionSerial",    "LogoPositionOptions", "LogoInvertArea",
                                        "CalibrationWarningDays"};
    for (const char *key : kKeys)
        layout().setValue(QLatin1String(key), input->text());
    FuzzedDevice device;
    for (int i = 0; i < AVeldoranDevice::InformationCount; ++i)
        device.information.append(QString());
    device.information[AVeldoranDevice::ModelName] = input->text();
    device.information[AVeldoranDevice::FirmwareVersion] = input->text();
    device.information[AVeldoranDevice::SerialNumber] = input->text();
    device.customOption = input->text();
    device.revision = input->field().toInt();
    device.options = input->field().toUShort();
    const QString firmware = input->text();
    QMap<unsigned short, QByteArray> memory = {{31, input->field()}, {38, input->rest()}};

    ABootlogoData &logo = picture();
    require(logo.fromDeviceInformation(QString(), &layout(), &device, memory, firmware, 0));
    require(logo.cols() == 51 && logo.rows() == 25);
    const QByteArray stream = logo.toBitstream();
    require(stream.size() == 160);
    require(static_cast<unsigned char>(stream.at(159)) < 8); // no bit behind the picture was drawn on
    require(logo.fromDeviceInformation(QString(), &layout(), &device, memory, firmware, 0));
    require(logo.toBitstream() == stream);
}

// Left out is what rightly takes long, a picture that says that it is large and not too large. One that holds more than
// it says isn't.
void loadBackground(Input *input)
{
    constexpr qint64 kMostPixels = 16777216;
    constexpr qint64 kMostSaid = 65536;
    const QByteArray content = input->rest();
    const MemoryFile file(reinterpret_cast<const std::uint8_t *>(content.constData()),
                          static_cast<std::size_t>(content.size()));
    const QSize said = QImageReader(file.name()).size();
    const qint64 pixelsSaid = qint64{said.width()} * said.height();
    if (pixelsSaid > kMostSaid && pixelsSaid <= kMostPixels)
        return;

    FuzzedDevice device;
    for (int i = 0; i < AVeldoranDevice::InformationCount; ++i)
        device.information.append(QString());
    QMap<unsigned short, QByteArray> memory;
    layout().clear();
    ABootlogoData &logo = picture();
    logo.resize(3, 2);
    const bool isLoaded = logo.fromDeviceInformation(file.name(), &layout(), &device, memory, QString(), 0);
    const qint64 pixels = qint64{logo.cols()} * logo.rows();
    require(pixels > 0 && pixels <= kMostPixels);
    require(isLoaded || (logo.cols() == 3 && logo.rows() == 2));
    require(logo.toBitstream().size() == (pixels + 7) / 8);
    require(logo.toBitmap().size() == QSize(logo.cols(), logo.rows()));
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argumentCount = 1;
    static char name[] = "fuzz_bootlogo";
    static char *arguments[] = {name, nullptr};
    static const QGuiApplication &application = *new QGuiApplication(argumentCount, arguments); // for bitmaps
    Q_UNUSED(application)

    // No settings of the user are read or written.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("/nonexistent"));
    QSettings::setPath(QSettings::NativeFormat, QSettings::SystemScope, QStringLiteral("/nonexistent"));
    QCoreApplication::setOrganizationName(QStringLiteral("Aveldoran"));
    QCoreApplication::setApplicationName(QStringLiteral("fuzz_bootlogo"));
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {}); // sizes are refused with one
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Input input(data, size);
    switch (input.number<char>()) {
    case 's':
        loadStream(&input);
        break;
    case 't':
        writeText(&input);
        break;
    case 'b':
        loadBackground(&input);
        break;
    default:
        compose(&input);
    }
    return 0;
}
