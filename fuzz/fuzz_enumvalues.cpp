#include "fuzz/require.h"

#include <core/devicevariables.h>
#include <views/aveldoranvariabledelegate.h>

#include <QtCore/QStringList>

#include <cmath>
#include <cstdint>
#include <string>

// Any text becomes the labels of an enumeration: those of a second, plainer reading, in the order of their keys.

namespace {

// The pairs in the order of the text, as the format's words have it.
QList<QPair<float, QString>> pairsOf(const char *text)
{
    QList<QPair<float, QString>> pairs;
    const QStringList parts = QString::fromUtf8(text).split(QLatin1Char(';'), Qt::KeepEmptyParts);
    for (const QString &part : parts) {
        const QStringList pieces = part.split(QLatin1Char(':'), Qt::KeepEmptyParts);
        bool isNumber = false;
        const float key = pieces.first().toFloat(&isNumber);
        if (pieces.size() == 2 && isNumber && !std::isnan(key))
            pairs.append({key, pieces.last()});
    }
    return pairs;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char *>(data), size);
    device_variable_desc desc = {};
    desc.enumeration = text.c_str();
    static const AVeldoranVariableDelegate delegate;
    const QMap<float, QString> labels = delegate.parseEnumValues(&desc);

    const QList<QPair<float, QString>> pairs = pairsOf(text.c_str());
    QMap<float, QString> expected;
    for (const auto &[key, label] : pairs)
        expected[key] = label;
    require(labels == expected);
    float before = 0;
    for (auto label = labels.cbegin(); label != labels.cend(); ++label) {
        require(label == labels.cbegin() || before < label.key());
        before = label.key();
        require(!label.value().contains(QLatin1Char(';')) && !label.value().contains(QLatin1Char(':')));
    }
    return 0;
}
