#include "fuzz/memoryfile.h"
#include "fuzz/require.h"

#include <core/emu.h>
#include <marker/aspectrummarkerlist.h>

#include <QtCore/QByteArray>
#include <QtCore/QSet>
#include <QtCore/QSettings>

#include <cstdint>

#include <fcntl.h>

// A settings file of any bytes: each of its groups is loaded as a setup. The markers must be whole, follow a trace,
// and come back when they are stored.

namespace {

constexpr int kTraces = 10;
constexpr int kBelievedEntries = 1000; // that a count may bring by itself
constexpr int kMaxEntries = 20000;     // an input may hold more, which only takes time

void ignoreMessages(QtMsgType, const QMessageLogContext &, const QString &) {}

// Another name for the file each time, since QSettings goes by name, size and time when it decides whether to read.
class FreshName
{
public:
    explicit FreshName(const MemoryFile &file)
    {
        constexpr int kFirstDescriptor = 100;
        constexpr int kNames = 200; // more than QSettings remembers
        static int next = 0;
        const int original = ::open(file.name().toLatin1().constData(), O_RDONLY | O_CLOEXEC);
        m_descriptor = ::fcntl(original, F_DUPFD_CLOEXEC, kFirstDescriptor + next++ % kNames);
        require(original >= 0 && m_descriptor >= 0);
        ::close(original);
    }
    ~FreshName() { ::close(m_descriptor); }
    FreshName(const FreshName &) = delete;
    FreshName &operator=(const FreshName &) = delete;
    QString name() const { return QStringLiteral("/proc/self/fd/%1").arg(m_descriptor); }

private:
    int m_descriptor;
};

QList<AMeasurementValue> someTrace()
{
    QList<AMeasurementValue> data;
    for (int i = 0; i < 32; ++i) {
        AFrequency frequency;
        frequency.setValue(i, AFrequency::kHz);
        data.append(AMeasurementValue(i % 3 - i % 5, 0, frequency, 0, 0.0));
    }
    return data;
}

QSet<const ASpectrumMarker *> heldMarkers(const ASpectrumMarkerList &list)
{
    QSet<const ASpectrumMarker *> held;
    for (int trace = 0; trace < kTraces; ++trace) {
        const QList<ASpectrumMarker *> *markers = list.trace(trace);
        require(!markers || !markers->isEmpty());
        for (int i = 0; markers && i < markers->size(); ++i) {
            require(markers->at(i)->trace() == trace && !held.contains(markers->at(i)));
            held.insert(markers->at(i));
        }
    }
    return held;
}

void checkList(const ASpectrumMarkerList &list)
{
    const QSet<const ASpectrumMarker *> held = heldMarkers(list);
    for (const ASpectrumMarker *marker : held) {
        const ASpectrumMarker *reference = marker->referenceMarker();
        require(reference != marker && (!reference || held.contains(reference)));
        require(!marker->label(true, emu_find(0), nullptr).isEmpty());
    }
    require(list.all().size() == list.listcount() && list.listcount() <= held.size());
}

void checkStored(QSettings *settings, ASpectrumMarkerList *list)
{
    list->storeSetup(settings, QStringLiteral("copy/of"));
    ASpectrumMarkerList copy;
    copy.loadSetup(settings, list->setupName());
    checkList(copy);
    // With ten markers of a type keys can be equal, and unknown types share their keys anyway.
    bool isDistinct = list->listcount() < kTraces && heldMarkers(*list).size() == list->listcount();
    for (int i = 0; i < list->listcount(); ++i)
        isDistinct = isDistinct && list->counterIndex(list->at(i)) > 0;
    if (!isDistinct)
        return;
    require(copy.listcount() == list->listcount());
    for (int i = 0; i < copy.listcount(); ++i) {
        const ASpectrumMarker *a = list->at(i);
        const ASpectrumMarker *b = copy.at(i);
        require(a->type() == b->type() && a->trace() == b->trace() && a->index() == b->index());
        require(a->targetFrequency() == b->targetFrequency() && a->displayOptions() == b->displayOptions());
        require(a->isEnabled() == b->isEnabled());
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    // QSettings itself makes objects of any type out of these, before any reader sees them.
    const QByteArray text = QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<int>(size));
    if (text.contains("@Variant(") || text.contains("@DataStream("))
        return 0;

    qInstallMessageHandler(ignoreMessages);
    const MemoryFile file(data, size);
    const FreshName fresh(file);
    QSettings settings(fresh.name(), QSettings::IniFormat);
    if (settings.allKeys().size() > kMaxEntries)
        return 0;

    QStringList names = settings.childGroups().mid(0, 4);
    names.append(QString());
    for (const QString &name : qAsConst(names)) {
        ASpectrumMarkerList list;
        list.loadSetup(&settings, name);
        require(heldMarkers(list).size() <= kBelievedEntries + settings.allKeys().size());
        checkList(list);
        list.updateMarkerValues(someTrace(), 0, AFrequency(), AFrequency("1 GHz"), 0, AFrequency());
        checkList(list);
        checkStored(&settings, &list);
        while (list.listcount() > 0 && list.listcount() < kTraces)
            require(list.removeMarker(list.at(0)) == 0);
    }
    return 0;
}
