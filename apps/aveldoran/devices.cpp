#include "apps/aveldoran/commandline.h"
#include "apps/aveldoran/commands.h"
#include "apps/aveldoran/console.h"
#include "apps/aveldoran/jsonlist.h"
#include "apps/aveldoran/options.h"
#include "apps/aveldoran/texttable.h"

#include <core/aveldorandevicefilter.h>
#include <core/aveldorandevicelist.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QEventLoop>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>

namespace {

constexpr char kCommand[] = "devices";

struct Options
{
    bool all = false; // also what is no measurement device
    bool asJson = false;
};

bool readOptions(const QStringList &arguments, Options *options, int *exitStatus)
{
    QCommandLineParser parser;
    CommandLine::describe(
        &parser,
        QStringLiteral("Lists the attached analysers, generators and GPS loggers, one USB chip a line; a chip with two "
                       "channels is two of them. The setting Devices/UsbIds adds chips to those that are known."),
        {QStringLiteral("aveldoran devices --format json")});
    const QCommandLineOption all(QStringLiteral("all"), QStringLiteral("List every USB device."));
    parser.addOptions({all, formatOption()});
    if (!CommandLine::parse(&parser, kCommand, arguments, exitStatus))
        return false;

    *exitStatus = ExitUsage;
    options->all = parser.isSet(all);
    return readNoArgument(parser, kCommand) && readFormatOption(parser, kCommand, &options->asJson);
}

void fetch(AVeldoranDeviceList *list)
{
    QEventLoop loop;
    QObject::connect(list, &AVeldoranDeviceList::finished, &loop, &QEventLoop::quit);
    list->fetch();
    loop.exec();
}

QStringList kindsOf(const AVeldoranChipInformation &chip)
{
    const unsigned int kinds = AVeldoranDeviceFilter::kindsOf(chip.vendorId, chip.productId);
    QStringList names; // as in the setting
    if (kinds & AVeldoranDeviceFilter::Analyser)
        names += QStringLiteral("analyser");
    if (kinds & AVeldoranDeviceFilter::Generator)
        names += QStringLiteral("generator");
    if (kinds & AVeldoranDeviceFilter::GpsLogger)
        names += QStringLiteral("gpslogger");
    return names;
}

QString hexadecimal(unsigned short id)
{
    return QStringLiteral("%1").arg(id, 4, 16, QLatin1Char('0'));
}

QStringList rowOf(const AVeldoranChipInformation &chip)
{
    const bool isLocated = chip.location != 0;
    return {Console::oneLineOrDash(kindsOf(chip).join(QLatin1Char(','))),
            hexadecimal(chip.vendorId) + QLatin1Char(':') + hexadecimal(chip.productId),
            isLocated ? QString::number(chip.location / 256) : QStringLiteral("-"),
            isLocated ? QString::number(chip.location % 256) : QStringLiteral("-"),
            Console::oneLineOrDash(chip.name.simplified()),
            Console::oneLineOrDash(chip.description.simplified())};
}

void printText(const AVeldoranDeviceList &list, bool all)
{
    if (list.count() == 0) {
        Console::write(all ? QStringLiteral("No USB device is attached.\n")
                           : QStringLiteral("No measurement device is attached.\n"));
        return;
    }
    QVector<QStringList> rows = {{QStringLiteral("Kind"), QStringLiteral("USB id"), QStringLiteral("Bus"),
                                  QStringLiteral("Device"), QStringLiteral("Name"), QStringLiteral("Description")}};
    for (int i = 0; i < list.count(); ++i)
        rows += rowOf(list.at(i));
    Console::write(textTable(rows, {{TableColumn::Word, 2},
                                    {TableColumn::Word, 2},
                                    {TableColumn::Number, 2},
                                    {TableColumn::Number, 2},
                                    {TableColumn::Word, 2},
                                    {TableColumn::Word, 2}}));
}

QJsonObject chipAsJson(const AVeldoranChipInformation &chip)
{
    QJsonObject object;
    object[QStringLiteral("kinds")] = QJsonArray::fromStringList(kindsOf(chip));
    object[QStringLiteral("id")] = chip.id;
    object[QStringLiteral("vendorId")] = chip.vendorId;
    object[QStringLiteral("productId")] = chip.productId;
    object[QStringLiteral("name")] = chip.name;
    object[QStringLiteral("description")] = chip.description;
    if (chip.location != 0) {
        object[QStringLiteral("bus")] = static_cast<int>(chip.location / 256);
        object[QStringLiteral("device")] = static_cast<int>(chip.location % 256);
    }
    return object;
}

void printJson(const AVeldoranDeviceList &list)
{
    JsonList json;
    for (int i = 0; i < list.count(); ++i)
        json.add(chipAsJson(list.at(i)));
    json.end();
}

} // namespace

int runDevices(const QStringList &arguments)
{
    Options options;
    int exitStatus = ExitDone;
    if (!readOptions(arguments, &options, &exitStatus))
        return exitStatus;

    AVeldoranDeviceList list(nullptr);
    if (!options.all)
        list.setDeviceFilter(new AVeldoranDeviceFilter(true, true, true, false));
    fetch(&list);
    if (options.asJson)
        printJson(list);
    else
        printText(list, options.all);
    return Console::finish() ? ExitDone : ExitFailed;
}
