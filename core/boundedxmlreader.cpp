#include "core/boundedxmlreader.h"

#include "core/xmldocument.h"

#include <QtCore/QCoreApplication>

#include <algorithm>

namespace {

bool declaresOnlyShortEntities(const QXmlStreamReader &xml)
{
    const QXmlStreamEntityDeclarations entities = xml.entityDeclarations();
    return std::all_of(entities.cbegin(), entities.cend(), [](const QXmlStreamEntityDeclaration &entity) {
        return isShortEntity(entity.value().toString());
    });
}

} // namespace

// Hands on a file, and ends it where the current token has become too long.
class BoundedXmlReader::Device : public QIODevice
{
public:
    explicit Device(QIODevice *file)
        : m_file(file)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    void tokenEnds() { m_left = kMaxXmlTokenBytes; }
    bool hasEndedFile() const { return m_left == 0; }
    bool isSequential() const override { return true; }
    bool atEnd() const override { return hasEndedFile() || m_file->atEnd(); }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        const qint64 count = m_file->read(data, qMin(maxSize, m_left));
        m_left -= qMax<qint64>(count, 0);
        return count;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QIODevice *m_file;
    qint64 m_left = kMaxXmlTokenBytes;
};

BoundedXmlReader::BoundedXmlReader(QIODevice *file)
    : m_device(std::make_unique<Device>(file))
    , m_xml(m_device.get())
{
    m_xml.setNamespaceProcessing(false);
}

BoundedXmlReader::~BoundedXmlReader() = default;

bool BoundedXmlReader::readNext()
{
    m_depth -= m_xml.isEndElement() ? 1 : 0;
    if (m_xml.atEnd())
        return false;
    m_xml.readNext();
    if (m_device->hasEndedFile()) {
        m_xml.raiseError(QCoreApplication::translate("AveldoranCore", "A tag, comment or text is longer than %1 bytes")
                             .arg(kMaxXmlTokenBytes));
    }
    m_device->tokenEnds();
    m_depth += m_xml.isStartElement() ? 1 : 0;
    if (m_xml.isDTD() && !declaresOnlyShortEntities(m_xml)) {
        m_xml.raiseError(entityErrorText());
    }
    if (m_depth > kMaxXmlDepth)
        m_xml.raiseError(nestingErrorText());
    return !m_xml.hasError();
}
