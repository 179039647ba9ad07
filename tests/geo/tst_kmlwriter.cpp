#include "geo/kmlwriter.h"

#include "geo/processor.h"

#include <QtTest/QtTest>

#include <memory>
#include <random>

namespace {

QByteArray saved(const QDomDocument &document)
{
    QByteArray bytes;
    QTextStream stream(&bytes);
    document.save(stream, 1);
    stream.flush();
    return bytes;
}

QByteArray written(const QDomDocument &document)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return writeKml(document, &buffer) ? buffer.data() : QByteArray("failed");
}

// Takes so many bytes, and then no more.
class FullDevice : public QIODevice
{
    Q_OBJECT

public:
    explicit FullDevice(qint64 room)
        : m_room(room)
    {
        open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    }

protected:
    qint64 readData(char *, qint64) override { return -1; }
    qint64 writeData(const char *, qint64 size) override
    {
        const qint64 taken = qMin(size, m_room);
        m_room -= taken;
        return taken > 0 || size == 0 ? taken : -1;
    }

private:
    qint64 m_room;
};

QDomDocument parsed(const QByteArray &content)
{
    QDomDocument document;
    document.setContent(content);
    return document;
}

} // namespace

Q_DECLARE_METATYPE(QDomDocument)

class TestKmlWriter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theBytesAreThoseOfSave_data();
    void theBytesAreThoseOfSave();
    void randomDocumentsToo();
    void aDriveToo();
    void deepDocumentsAreWritten();
    void aFullDeviceGivesFalse();
};

void TestKmlWriter::theBytesAreThoseOfSave_data()
{
    QTest::addColumn<QDomDocument>("document");

    QTest::newRow("nothing") << QDomDocument();
    QTest::newRow("a declaration") << parsed("<?xml version='1.0' encoding='UTF-8'?><a/>");
    QTest::newRow("elements") << parsed("<a><b/><c><d/></c></a>");
    QTest::newRow("texts") << parsed("<a><b>x</b><c> y </c></a>");
    QTest::newRow("texts beside elements") << parsed("<a>x<b/>y<c><d/>z</c><e>w<f/></e></a>");
    QTest::newRow("sections") << parsed("<a><b><![CDATA[<x>&]]></b><c>t<![CDATA[u]]></c><![CDATA[v]]><d/></a>");
    QTest::newRow("comments") << parsed("<!-- one --><a><!-- two --><b/>t<!-- three --></a>");
    QTest::newRow("instructions") << parsed("<a><?x y?><b><?z?></b>t<?u v?></a>");
    QTest::newRow("other characters") << parsed("<a b='\xc3\xa4'>\xe2\x82\xac \xf0\x9f\x93\xa1 x\xc3\xa4y</a>");

    QDomDocument escapes;
    QDomElement element = escapes.createElement("a");
    element.setAttribute("b", "<&>\"'\n\r\t]]>\xe4");
    element.appendChild(escapes.createTextNode("<&>\"'\n\r\t]]> ]>"));
    escapes.appendChild(element);
    QTest::newRow("escapes") << escapes;

    QDomDocument empty;
    element = empty.createElement("a");
    QDomElement inner = empty.createElement("b");
    inner.appendChild(empty.createTextNode(QString()));
    element.appendChild(inner);
    element.appendChild(empty.createComment("-"));
    empty.appendChild(element);
    QTest::newRow("an empty text") << empty;

    QDomDocument large;
    element = large.createElement("a");
    element.appendChild(large.createTextNode(QString(3000000, QChar(0xe4)) + QString(1000, '&')));
    large.appendChild(element);
    QTest::newRow("a large text") << large;
}

void TestKmlWriter::theBytesAreThoseOfSave()
{
    QFETCH(QDomDocument, document);
    QCOMPARE(written(document), saved(document));
}

void TestKmlWriter::randomDocumentsToo()
{
    std::mt19937 random(3);
    const QStringList texts{"", "x", " ", "<&>", QString::fromUtf8("\xc3\xa4\xf0\x9f\x93\xa1"), "]]>", "\r\n"};
    for (int round = 0; round < 300; ++round) {
        QDomDocument document;
        QList<QDomElement> elements{document.createElement("root")};
        document.appendChild(elements.first());
        for (int i = 0; i < 40; ++i) {
            QDomElement parent = elements.at(static_cast<int>(random() % static_cast<unsigned>(elements.size())));
            const QString text = texts.at(static_cast<int>(random() % static_cast<unsigned>(texts.size())));
            switch (random() % 6) {
            case 0:
                parent.appendChild(document.createTextNode(text));
                break;
            case 1:
                parent.appendChild(document.createCDATASection("c"));
                break;
            case 2:
                parent.appendChild(document.createComment("c-"));
                break;
            case 3:
                parent.setAttribute("a" + QString::number(i), text);
                break;
            default:
                elements.append(parent.appendChild(document.createElement("e")).toElement());
            }
        }
        QCOMPARE(written(document), saved(document));
    }
}

void TestKmlWriter::aDriveToo()
{
    Processor processor(nullptr);
    for (int i = 0; i < 50; ++i) {
        processor.addNmeaRecord(nmeaPosition(i * 1000));
        ASweep sweep(levels({-50.0 - i, -40.0}, i % 2 ? kdBm : kV), at(i * 1000), at(i * 1000));
        AGeoData record = nmeaPosition(i * 1000);
        record.recordName = QString::fromUtf8("<\xc2\xb5>");
        sweep.setGeoData(record);
        processor.addSweep(sweep);
    }
    processor.processMeasurementData(nullptr);
    const std::unique_ptr<QDomDocument> document(processor.toKml("A & B", 100.0F, true, true, true, 1025, true, 7));
    const QByteArray bytes = written(*document);
    QCOMPARE(bytes, saved(*document));
    QDomDocument again;
    QVERIFY(again.setContent(bytes));
    QCOMPARE(outline(again.documentElement()), outline(document->documentElement()));
}

void TestKmlWriter::deepDocumentsAreWritten()
{
    constexpr int kDepth = 5000;
    QDomDocument document;
    QDomElement root = document.createElement("a");
    document.appendChild(root);
    QDomNode node = root;
    for (int i = 1; i < kDepth; ++i)
        node = node.appendChild(document.createElement("a"));
    QCOMPARE(written(document).count("<a"), kDepth);
}

void TestKmlWriter::aFullDeviceGivesFalse()
{
    QDomDocument document;
    QDomElement root = document.appendChild(document.createElement("a")).toElement();
    for (int i = 0; i < 20; ++i) {
        QDomElement element = root.appendChild(document.createElement("b")).toElement();
        element.appendChild(document.createTextNode(QString(100000, 'x')));
    }
    const int size = written(document).size();
    for (const int room : {0, 1, 500000, size - 1}) {
        FullDevice device(room);
        QVERIFY(!writeKml(document, &device));
    }
    FullDevice device(size);
    QVERIFY(writeKml(document, &device));
}

QTEST_GUILESS_MAIN(TestKmlWriter)
#include "tst_kmlwriter.moc"
