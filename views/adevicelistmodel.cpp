#include "views/adevicelistmodel.h"

#include "core/agpsloggerdevice.h"
#include "core/aveldorandevice.h"
#include "core/aveldorandevicefilter.h"
#include "core/aveldorandevicelist.h"
#include "core/aveldoranfactory.h"

#include <QtCore/QStringView>

namespace {

constexpr const char *kHeaders[ADeviceListModel::ColumnCount] = {
    QT_TRANSLATE_NOOP("ADeviceListModel", "Connected"), QT_TRANSLATE_NOOP("ADeviceListModel", "ID"),
    QT_TRANSLATE_NOOP("ADeviceListModel", "Name"),      QT_TRANSLATE_NOOP("ADeviceListModel", "Description"),
    QT_TRANSLATE_NOOP("ADeviceListModel", "VendorID"),  QT_TRANSLATE_NOOP("ADeviceListModel", "ProductID"),
};

bool hasChannelLetter(QStringView text)
{
    return !text.isEmpty() && (text.back() == QLatin1Char('A') || text.back() == QLatin1Char('B'));
}

// Whether the texts are equal once the one that alone has a channel letter is without it. Copies nothing: every cell of
// a table compares with every open device.
bool matchWithoutLetter(QStringView a, QStringView b, bool withBlank)
{
    if (a == b)
        return true;
    if (hasChannelLetter(a) == hasChannelLetter(b))
        return false;
    const QStringView marked = hasChannelLetter(a) ? a : b;
    const QStringView bare = hasChannelLetter(a) ? b : a;
    const int suffixLength = withBlank ? 2 : 1;
    if (marked.size() != bare.size() + suffixLength)
        return false;
    return (!withBlank || marked.at(bare.size()) == QLatin1Char(' ')) && marked.startsWith(bare);
}

bool areSameChip(const AVeldoranChipInformation &open, const AVeldoranChipInformation &listed)
{
    return open.vendorId == listed.vendorId && open.id == listed.id && open.productId == listed.productId &&
           (open.location == 0 || listed.location == 0 || open.location == listed.location) &&
           matchWithoutLetter(open.description, listed.description, true) &&
           matchWithoutLetter(open.name, listed.name, false);
}

bool isOpen(const AVeldoranChipInformation &listed)
{
    const QList<AVeldoranDevice *> devices = AVeldoranFactory::openDevices();
    for (const AVeldoranDevice *device : devices) {
        if (!device)
            continue;
        if (areSameChip(device->chipInformation(), listed))
            return true;
        const AGpsLoggerDevice *receiver = device->gpsDevice();
        if (receiver && areSameChip(receiver->chipinfo(), listed))
            return true;
    }
    return false;
}

} // namespace

struct ADeviceListModel::Private
{
    std::unique_ptr<AVeldoranDeviceList> list;
};

ADeviceListModel::ADeviceListModel(QObject *parent)
    : QAbstractTableModel(parent)
    , d(std::make_unique<Private>())
{
    d->list = std::make_unique<AVeldoranDeviceList>(nullptr);
    d->list->setStopAtFirstMatch(false);
    d->list->setDeviceFilter(new AVeldoranDeviceFilter(true, true, true, false));
    connect(d->list.get(), &AVeldoranDeviceList::finished, this, &ADeviceListModel::onVeldoranDeviceListFinished);
}

ADeviceListModel::~ADeviceListModel() = default;

int ADeviceListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : d->list->count();
}

int ADeviceListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant ADeviceListModel::data(const QModelIndex &index, int role) const
{
    if (index.model() != this || index.row() >= d->list->count()) // the second: a row of before the last refresh
        return {};
    const AVeldoranChipInformation &chip = d->list->at(index.row());
    const bool isConnected = isOpen(chip); // drivers are asked whatever the role
    if (role != Qt::DisplayRole)
        return {};
    switch (index.column()) {
    case ColumnConnected:
        return isConnected;
    case ColumnId:
        return chip.id;
    case ColumnName:
        return chip.name;
    case ColumnDescription:
        return chip.description;
    case ColumnVendorId:
        return static_cast<int>(chip.vendorId);
    case ColumnProductId:
        return static_cast<int>(chip.productId);
    default:
        return {};
    }
}

QVariant ADeviceListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Vertical)
        return section; // from 0, as in the list of the devices
    return section >= 0 && section < ColumnCount ? tr(kHeaders[section]) : QVariant();
}

AVeldoranChipInformation ADeviceListModel::chipinfo(QModelIndex index) const
{
    const auto shown = [&index](int column) { return index.sibling(index.row(), column).data(); };
    const int id = shown(ColumnId).toInt();
    const QString name = shown(ColumnName).toString();
    const QString description = shown(ColumnDescription).toString();
    const int vendorId = shown(ColumnVendorId).toInt();
    const int productId = shown(ColumnProductId).toInt();
    for (int i = 0; i < d->list->count(); ++i) {
        const AVeldoranChipInformation &chip = d->list->at(i);
        if (chip.id == id && chip.name == name && chip.description == description && chip.vendorId == vendorId &&
            chip.productId == productId)
            return chip;
    }
    return d->list->at(0);
}

void ADeviceListModel::refresh()
{
    d->list->fetch();
}

void ADeviceListModel::onVeldoranDeviceListFinished()
{
    beginResetModel();
    endResetModel();
}
