#include "fuzz/require.h"

#include <geo/ageodataprocessor.h>
#include <geo/kmlwriter.h>

#include <QtCore/QBuffer>

#include <cstdint>
#include <memory>

// A GPX file of any bytes gives points or an error with its place; whatever was read becomes a KML document that can be
// read again.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    QByteArray content(reinterpret_cast<const char *>(data), static_cast<int>(size));
    QBuffer file(&content);
    AGeoDataProcessor processor(nullptr);
    QString errorMessage;
    int line = 0;
    int column = 0;
    const bool ok = processor.loadGpxDocument(&file, &errorMessage, &line, &column);
    require(!ok || errorMessage.isEmpty());
    require(errorMessage.isEmpty() || (line > 0 && column >= 0));
    require(ok || !errorMessage.isEmpty() || processor.getMasterTrackElement().isNull());

    const QDateTime start = QDateTime::fromMSecsSinceEpoch(0, Qt::UTC);
    processor.findWaypoint(start, start.addYears(100), 1000);
    const std::unique_ptr<QDomDocument> kml(processor.toKml(errorMessage, 0.0F, true, true, true, 1, true, 7));
    QBuffer written;
    require(written.open(QIODevice::ReadWrite) && writeKml(*kml, &written));
    require(QDomDocument().setContent(written.data()));
    return 0;
}
