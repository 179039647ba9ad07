#include "fuzz/memoryfile.h"
#include "fuzz/require.h"

#include <channel/achannelinfo.h>
#include <core/aprofile.h>

#include <cstdint>
#include <memory>

// A profile file of any bytes becomes a tree, with and without its mirrors and channels; what the tree then says of
// itself has to agree.

namespace {

constexpr qint64 kMaxExpandedChannels = 10000; // an input may ask for billions, which is no finding

void readTree(AProfile *profile, bool expandMirrors)
{
    AChannelInfo root(nullptr, AChannelInfo::Generic, {}, {}, {}, false);
    require(AChannelInfo::fromProfile(profile, &root, expandMirrors, false));
    const AChannelInfo copy(root);
    require(copy == root);
    const qint64 expected = root.definedChannelCount();
    if (expected > kMaxExpandedChannels)
        return;
    const int compactSize = root.channels(0).size();
    root.processChannelDefinitions(true, true);
    require(root.channels(0).size() == compactSize + expected);
    require(root.stackedChannels(0).size() <= compactSize + expected);
    require(copy == root);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const MemoryFile file(data, size);
    const std::unique_ptr<AProfile> profile(AProfile::fromFile(file.name()));
    require(profile != nullptr);
    if (!profile->isValid()) {
        require(!profile->errorText().isEmpty());
        require(!AChannelInfo::fromProfile(profile.get(), nullptr, true, true));
        return 0;
    }
    readTree(profile.get(), false);
    readTree(profile.get(), true);
    return 0;
}
