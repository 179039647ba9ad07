#include "channel/achannelinfo.h"

#include "channel/channelxml.h"
#include "channel/referencereader.h"

#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <random>

using namespace channelxml;

namespace {

// Makes channel sections in which everything that a reader could meet stands next to everything else: few different
// frequencies, so that edges touch, every spelling of a name, and mirrors in any place.
class Generator
{
public:
    explicit Generator(quint32 seed)
        : m_random(seed)
    {}

    QByteArray range(const QByteArray &tag, int depth)
    {
        QByteArray xml = "<" + tag;
        if (!chance(8))
            xml += " label=\"" + QByteArray::number(m_label++) + "\"";
        if (chance(2))
            xml += " type=\"" + pick({"direction", "Channel", "PROVIDER", "generic", "autochannel", "", "x"}) + "\"";
        if (chance(2))
            xml += " selectable=\"" + pick({"0", "1", "no", "", " 0", "00"}) + "\"";
        if (chance(20))
            xml += " Selectable=\"1\" LABEL=\"x\" Type=\"channel\"";
        xml += ">";
        const bool ordered = chance(2); // the usual form: edges first
        if (ordered)
            xml += edge("begin", below(8) * 10) + edge("end", 80 + below(12) * 10);
        const int parts = below(7);
        for (int i = 0; i < parts; ++i)
            xml += part(depth, ordered);
        return xml + "</" + tag + ">";
    }

    QByteArray rangeTag() { return spelled("range"); }

    AFrequency frequency() { return chance(3) ? AFrequency() : megahertz(below(25) * 10 - 40); }

    bool chance(int oneIn) { return below(oneIn) == 0; }

    int below(int bound) { return int(m_random() % quint32(bound)); }

private:
    QByteArray pick(std::initializer_list<const char *> choices)
    {
        return QByteArray(choices.begin()[below(int(choices.size()))]);
    }

    QByteArray spelled(const char *name)
    {
        QByteArray result(name);
        if (chance(6))
            return result.toUpper();
        if (chance(6))
            result[0] = char(result.at(0) - 'a' + 'A');
        return result;
    }

    QByteArray element(const char *name, const QByteArray &content, const QByteArray &attributes = QByteArray())
    {
        const QByteArray tag = spelled(name);
        if (content.isEmpty() && chance(2))
            return "<" + tag + attributes + "/>";
        return "<" + tag + attributes + ">" + content + "</" + tag + ">";
    }

    QByteArray number(int megahertz)
    {
        const QByteArray text = QByteArray::number(megahertz);
        switch (below(12)) {
        case 0:
            return QByteArray::number(qint64(megahertz) * 1000) + " kHz";
        case 1:
            return " " + text + "MHz ";
        case 2:
            return QByteArray::number(qint64(megahertz) * 1000000) + " Hz";
        case 3:
            return QByteArray::number(megahertz / 1000.0) + " GHz";
        case 4:
            return QByteArray();
        case 5:
            return text + pick({",5", " KHz", "x", ".5", "e0", ".0000005", " MHz x", ",5 MHz"});
        default:
            return text + " MHz";
        }
    }

    QByteArray edge(const char *name, int megahertz)
    {
        const QByteArray text = chance(3) ? QByteArray::number(megahertz) : number(megahertz);
        if (chance(15) && !text.isEmpty())
            return element(name, text.left(1) + "<!-- c -->" + text.mid(1));
        if (chance(15))
            return element(name, "<![CDATA[" + text + "]]>");
        return element(name, text);
    }

    QByteArray channels()
    {
        QByteArray attributes;
        const auto add = [&](const char *name, const QByteArray &value) {
            if (chance(2))
                attributes += " " + QByteArray(name) + "=\"" + value + "\"";
        };
        add("start", number(below(20) * 10));
        add("width", number(below(4)));
        add("space", pick({"0", "1 MHz", "25 kHz", "-500 kHz", "0.5", ""}));
        add("first", pick({"1", "-2", "21", "x", "0x10", "007", ""}));
        add("count", pick({"1", "2", "3", "0", "-1", "x"}));
        add("step", pick({"1", "0", "-1", "5", "1.5"}));
        add("color", "red");
        return element("channels", chance(10) ? QByteArray("<begin>3</begin>") : QByteArray(), attributes);
    }

    QByteArray mirror()
    {
        ++m_mirrors;
        QByteArray attributes;
        if (chance(3))
            attributes = " mode=\"" + pick({"relative", "absolute", "Relative", ""}) + "\"";
        return element("mirror", number(below(24) * 5 - 40), attributes);
    }

    QByteArray part(int depth, bool ordered)
    {
        switch (below(16)) {
        case 0:
            return ordered && !chance(4) ? mirrorIfAny() : edge("begin", below(20) * 10 - 20);
        case 1:
            return ordered && !chance(4) ? mirrorIfAny() : edge("end", below(20) * 10);
        case 2:
            return element("color", pick({"red", "#3366cc", "", "no colour"}));
        case 3:
            return element("comment", pick({"a", "b", "", "<![CDATA[<c>]]>"}));
        case 4:
        case 5:
        case 6:
        case 7:
        case 8:
            return depth > 0 ? range(rangeTag(), depth - 1) : channels();
        case 9:
        case 10:
            return channels();
        case 11:
        case 12:
            return mirrorIfAny();
        case 13:
            return pick({"<!-- <begin>1</begin> -->", "text", "<![CDATA[<end>1</end>]]>", "<?begin 1?>",
                         "<author>me</author>", "<ranges/>", "<label>x</label>"});
        case 14:
            return chance(3) ? "<x>" + part(0, true) + mirrorIfAny() + channels() + "</x>" : mirrorIfAny();
        default:
            return element("range", QByteArray());
        }
    }

    QByteArray mirrorIfAny() { return m_mirrors < 6 ? mirror() : QByteArray(); }

    std::mt19937 m_random;
    int m_label = 1;
    int m_mirrors = 0;
};

void ignoreMessages(QtMsgType, const QMessageLogContext &, const QString &) {} // of colours that don't exist

QByteArray failure(quint32 seed, const QString &difference, const QByteArray &xml)
{
    return QStringLiteral("seed %1, %2\n%3").arg(seed).arg(difference, QString::fromUtf8(xml)).toUtf8();
}

constexpr quint32 kSeeds = 2500;

} // namespace

class TestAChannelInfoXmlRandom : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void init() { qInstallMessageHandler(ignoreMessages); }
    void cleanup() { qInstallMessageHandler(nullptr); }

    void rangesAreReadByTheRules_data();
    void rangesAreReadByTheRules();
    void profilesAreReadByTheRules_data();
    void profilesAreReadByTheRules();

private:
    QTemporaryDir m_dir;
    std::unique_ptr<QSettings> m_settings;
};

void TestAChannelInfoXmlRandom::initTestCase()
{
    m_settings = std::make_unique<QSettings>(m_dir.filePath(QStringLiteral("test.ini")), QSettings::IniFormat);
    m_settings->setValue(QStringLiteral("Application/Language"), QStringLiteral("de"));
    ASettings::setApplicationSettings(m_settings.get());
}

void TestAChannelInfoXmlRandom::cleanupTestCase()
{
    ASettings::setApplicationSettings(nullptr);
}

void TestAChannelInfoXmlRandom::rangesAreReadByTheRules_data()
{
    QTest::addColumn<bool>("expandMirrors");
    QTest::addColumn<bool>("expandAutoChannels");
    QTest::newRow("as they stand") << false << false;
    QTest::newRow("mirrors") << true << false;
    QTest::newRow("channels") << false << true;
    QTest::newRow("mirrors and channels") << true << true;
}

void TestAChannelInfoXmlRandom::rangesAreReadByTheRules()
{
    QFETCH(bool, expandMirrors);
    QFETCH(bool, expandAutoChannels);
    qint64 nodes = 0;
    int dropped = 0;
    int copied = 0;
    for (quint32 seed = 1; seed <= kSeeds; ++seed) {
        Generator generator(seed);
        const QByteArray xml = generator.range(generator.rangeTag(), 3);
        const AFrequency begin = generator.frequency();
        const AFrequency end = generator.frequency();
        const bool selectable = generator.chance(2);
        QDomDocument document;
        if (!document.setContent(xml))
            QFAIL(xml.constData());
        QDomElement element = document.documentElement();

        referencereader::Node expectedRoot;
        expectedRoot.begin = begin;
        expectedRoot.end = end;
        const QList<referencereader::Node *> expected =
            referencereader::readElement(element, &expectedRoot, selectable, {expandMirrors, expandAutoChannels});
        const NodePtr root = makeRoot(begin, end);
        const QString before = textOf(document);
        const QList<AChannelInfo *> actual =
            AChannelInfo::processXmlElement(&element, root.get(), selectable, expandMirrors, expandAutoChannels);

        const QString difference = referencereader::difference(root.get(), &expectedRoot);
        if (!difference.isEmpty())
            QFAIL(failure(seed, difference, xml).constData());
        bool isSameList = actual.size() == expected.size();
        for (int i = 0; isSameList && i < actual.size(); ++i) {
            isSameList = actual.at(i)->parent() == root.get() &&
                         actual.at(i)->row() == expectedRoot.children.indexOf(expected.at(i));
        }
        if (!isSameList)
            QFAIL(failure(seed, QStringLiteral("returned list"), xml).constData());
        if (textOf(document) != before)
            QFAIL(failure(seed, QStringLiteral("the element was changed"), xml).constData());
        nodes += referencereader::nodeCount(&expectedRoot);
        dropped += expected.isEmpty() ? 1 : 0;
        copied += expected.size() > 1 ? 1 : 0;
    }
    // The sections are neither trivial nor all dropped.
    QVERIFY2(nodes > 4 * qint64(kSeeds), qPrintable(QString::number(nodes)));
    QVERIFY2(dropped > 50 && dropped < int(kSeeds) / 2, qPrintable(QString::number(dropped)));
    QVERIFY2(expandMirrors == (copied > int(kSeeds) / 10), qPrintable(QString::number(copied)));
}

void TestAChannelInfoXmlRandom::profilesAreReadByTheRules_data()
{
    rangesAreReadByTheRules_data();
}

void TestAChannelInfoXmlRandom::profilesAreReadByTheRules()
{
    QFETCH(bool, expandMirrors);
    QFETCH(bool, expandAutoChannels);
    qint64 nodes = 0;
    for (quint32 seed = 1; seed <= kSeeds; ++seed) {
        Generator generator(seed + 1000000);
        AProfile profile;
        profile.setId(QStringLiteral("p%1").arg(seed));
        if (generator.chance(2))
            profile.setLabel(QStringLiteral("label"), QString());
        if (generator.chance(2))
            profile.setLabel(QStringLiteral("Titel"), QStringLiteral("de"));
        if (generator.chance(2))
            profile.setDescription(QStringLiteral("description"), QString());
        profile.setShowInChannelList(generator.chance(2));
        AFrequency low = generator.frequency();
        AFrequency high = generator.frequency();
        if (high < low && !generator.chance(10))
            std::swap(low, high);
        profile.setRange(low, high);
        QByteArray xml;
        if (!generator.chance(20)) {
            xml = generator.range("channels", 3);
            QDomDocument document;
            if (!document.setContent(xml))
                QFAIL(xml.constData());
            profile.setChannelData(document.documentElement());
        }
        const QString before = textOf(profile.channelData().ownerDocument());

        referencereader::Node expected;
        if (generator.chance(4)) {
            expected.begin = generator.frequency();
            expected.end = generator.frequency();
        }
        const NodePtr root = makeRoot(expected.begin, expected.end);
        const bool read = referencereader::readProfile(&profile, &expected, {expandMirrors, expandAutoChannels});
        if (AChannelInfo::fromProfile(&profile, root.get(), expandMirrors, expandAutoChannels) != read)
            QFAIL(failure(seed, QStringLiteral("result"), xml).constData());
        const QString difference = referencereader::difference(root.get(), &expected);
        if (!difference.isEmpty())
            QFAIL(failure(seed, difference, xml).constData());
        if (textOf(profile.channelData().ownerDocument()) != before)
            QFAIL(failure(seed, QStringLiteral("the profile was changed"), xml).constData());
        nodes += referencereader::nodeCount(&expected);
    }
    QVERIFY2(nodes > 4 * qint64(kSeeds), qPrintable(QString::number(nodes)));
}

QTEST_GUILESS_MAIN(TestAChannelInfoXmlRandom)
#include "tst_achannelinfo_xml_random.moc"
