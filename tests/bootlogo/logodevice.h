#pragma once

#include "bootlogo/logopicture.h"

#include <core/aveldorandevice.h>

#include <QtCore/QByteArray>
#include <QtCore/QMap>
#include <QtCore/QSettings>
#include <QtCore/QStringList>

// A device that says what a test wants it to say, and the pictures that come of it.
class LogoDevice : public AVeldoranDevice
{
public:
    QStringList information = {"6060", "1", "2", "3", "1.44", "5", "002311"};
    QString customOption = "xt";
    int revision = 1;
    quint16 optionBits = 0;
    bool ready = true;
    int capabilities = 8;

    QString customOptionText() const override { return customOption; }
    int hardwareRevision() const override { return revision; }
    bool isReady() const override { return ready; }
    QStringList informationList() const override { return information; }
    quint16 optionMask() const override { return optionBits; }
    bool hasCapability(int capability) const override { return (capabilities & capability) != 0; }
};

using DeviceMemory = QMap<unsigned short, QByteArray>;

namespace logopicture {

inline QByteArray templateStream()
{
    return QByteArray::fromHex(
        "0700000000000000000000000000000000000000000000000000000000000000000000000000dcd5d571000080a2a4020000"
        "003723170000008828a9000000c0dd9c04000000000000000000105791d2010080908a2a0000009c4c5501000020a4aa0800"
        "000077b345000000000000000000000000000000001c00008003000000000000000000000000000000000000000000000000"
        "00000000000000000000");
}

struct Text
{
    int col;
    int row;
    QString text;
};

// The template with these texts on it, as a stream.
inline QByteArray templateWith(const QList<Text> &texts)
{
    ABootlogoData logo(nullptr);
    logo.resize(51, 25);
    logo.loadBitstream(templateStream());
    for (const Text &text : texts)
        logo.writeText(text.col, text.row, text.text);
    return logo.toBitstream();
}

} // namespace logopicture
