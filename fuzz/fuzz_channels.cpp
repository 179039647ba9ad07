#include "fuzz/memoryfile.h"
#include "fuzz/require.h"

#include <channel/achannelinfo.h>
#include <core/aprofile.h>

#include <QtXml/QDomDocument>

#include <cstdint>
#include <memory>

// The channel section of a profile file of any bytes is read, written and read back. A tree that a section can hold
// comes back equal; any other loses what the format has no place for once, and then stays the same.

namespace {

using Tree = std::unique_ptr<AChannelInfo>;

constexpr int kMaxRanges = 20000; // comparing costs by the pairs of equal siblings, and an input may mirror a lot

void ignoreMessages(QtMsgType, const QMessageLogContext &, const QString &) {}

bool isHeldBySection(const AFrequency &frequency)
{
    return frequency >= AFrequency() && AFrequency(frequency.canonicalText().toLatin1().constData()) == frequency;
}

bool isHeldBySection(const AChannelInfo &range)
{
    const AChannelInfo *parent = range.parent();
    const bool outside = parent && ((!parent->endFrequency().isNull() && !range.beginFrequency().isNull() &&
                                     range.beginFrequency() >= parent->endFrequency()) ||
                                    (!parent->beginFrequency().isNull() && !range.endFrequency().isNull() &&
                                     range.endFrequency() <= parent->beginFrequency()));
    const QVariant color = range.data(AChannelInfo::ColumnColor);
    if (outside || !isHeldBySection(range.beginFrequency()) || !isHeldBySection(range.endFrequency()))
        return false;
    if (color.userType() == QMetaType::QString && !range.color().isValid())
        return false;
    const QList<AChannelInfo::Definition> definitions = range.channelDefinitions();
    for (const AChannelInfo::Definition &definition : definitions) {
        if (definition.value(QStringLiteral("color")) != color)
            return false; // read before the colour of its range
    }
    return true;
}

bool isHeldBySection(AChannelInfo *tree)
{
    const AChannelInfo::FlatList ranges = tree->channels(0);
    for (const auto &entry : ranges) {
        if (!isHeldBySection(*entry.first))
            return false;
    }
    return true;
}

// Below a root of its own, as the only child.
Tree readBack(const AChannelInfo &tree)
{
    QDomDocument document;
    QDomElement element = tree.toDomNode(&document);
    require(element.tagName() == QLatin1String("Range"));
    auto root =
        std::make_unique<AChannelInfo>(nullptr, AChannelInfo::Generic, AFrequency(), AFrequency(), QString(), false);
    AChannelInfo::processXmlElement(&element, root.get(), tree.selectable(), true, false);
    require(root->childCount() == 1);
    return root;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    qInstallMessageHandler(ignoreMessages);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const MemoryFile file(data, size);
    const std::unique_ptr<AProfile> profile(AProfile::fromFile(file.name()));
    require(profile != nullptr);
    AChannelInfo root(nullptr, AChannelInfo::Generic, {}, {}, {}, false);
    if (!AChannelInfo::fromProfile(profile.get(), &root, true, false) || root.channels(0).size() > kMaxRanges)
        return 0;
    for (int row = 0; row < root.childCount(); ++row) {
        AChannelInfo *tree = root.child(row);
        const Tree once = readBack(*tree);
        const Tree twice = readBack(*once->child(0));
        require(*twice->child(0) == *once->child(0));
        if (isHeldBySection(tree))
            require(*once->child(0) == *tree);
    }
    return 0;
}
