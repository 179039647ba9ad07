#include "fuzz/memoryfile.h"
#include "fuzz/require.h"

#include <limit/alimitmodel.h>

#include <cstdint>

// A file of any bytes gives rows or a message, never both. What was loaded can be saved and loaded again, with as many
// limits and pieces, and from the third time on nothing changes.

namespace {

int countPieces(const ALimitModel &model)
{
    int pieces = 0;
    for (int row = 0; row < model.rowCount(); ++row)
        pieces += model.rowCount(model.index(row, 0));
    return pieces;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    ALimitModel model;
    int errors = 0;
    QObject::connect(&model, &ALimitModel::loadError, &model, [&errors](const QString &text) {
        require(!text.isEmpty());
        ++errors;
    });
    const MemoryFile input(data, size);
    const bool loaded = model.loadFromFile(input.name());
    require(loaded == (errors == 0));
    require(loaded || model.rowCount() == 0);
    require(model.columnCount() == ALimitModel::ColumnInterpolation + 1);

    const int limits = model.rowCount();
    const int pieces = countPieces(model);
    MemoryFile output(nullptr, 0);
    QByteArray last;
    for (int pass = 0; loaded && pass < 4; ++pass) {
        require(model.saveToFile(output.name()));
        const QByteArray content = output.content();
        require(pass < 3 || content == last);
        last = content;
        require(model.loadFromFile(output.name()));
        require(model.rowCount() == limits);
        require(countPieces(model) == pieces);
    }
    return 0;
}
