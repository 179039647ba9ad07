#include "fuzz/require.h"

#include <channel/achannelinfo.h>
#include <channel/efisimport.h>

#include <QtCore/QBuffer>
#include <QtCore/QDate>

#include <cstdint>

// An EFIS export of any bytes becomes a tree; as many allocations have to be in it as a plain reading of the lines
// finds.

namespace {

void ignoreMessages(QtMsgType, const QMessageLogContext &, const QString &) {}

// QString::fromUtf8 of a QByteArray would end at a zero byte.
QDate dateFrom(const QByteArray &field)
{
    return QDate::fromString(QString::fromUtf8(field.constData(), field.size()), QStringLiteral("yyyy-MM-dd"));
}

int allocationsIn(const QByteArray &line)
{
    const QList<QByteArray> fields = parseEfisLine(line);
    require(fields.size() == line.count(';') + 1);
    if (fields.size() < 10)
        return 0;
    const QByteArray kind = fields.first().toLower();
    const QDate today = QDate::currentDate();
    if ((kind != "yes" && kind != "no") || dateFrom(fields.at(5)) > today || dateFrom(fields.at(6)) < today)
        return 0;
    return kind == "yes" ? 2 : 1;
}

int allocationsIn(QBuffer *buffer)
{
    int count = 0;
    while (buffer->bytesAvailable() > 5)
        count += allocationsIn(buffer->readLine());
    return count;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    qInstallMessageHandler(ignoreMessages);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    QByteArray content(reinterpret_cast<const char *>(data), static_cast<int>(size));
    EfisEntry entry;
    parseEfisFrequencyRange(&entry, content);
    require(entry.name.isEmpty() && entry.direction == 0);

    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    AChannelInfo root(nullptr, AChannelInfo::Generic, {}, {}, {}, false);
    const bool anyTaken = AChannelInfo::fromEfisCSV(&buffer, &root);
    const qint64 unread = buffer.bytesAvailable();
    require(unread <= 5);
    buffer.seek(0);
    const int expected = allocationsIn(&buffer);
    require(anyTaken == (expected > 0));

    int found = 0;
    const AChannelInfo::FlatList ranges = root.channels(0);
    for (const auto &[range, depth] : ranges) {
        require(range->type() ==
                (range->childCount() > 0 || depth == 0 ? AChannelInfo::Generic : AChannelInfo::Provider));
        require(depth <= 2);
        found += range->type() == AChannelInfo::Provider ? 1 : 0;
    }
    require(found == expected);
    return 0;
}
