#include "core/aprofile.h"

#include "core/profilefiles.h"

#include <QtCore/QDir>
#include <QtTest/QtTest>

using namespace profilefiles;

namespace {

const char kGood[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<!-- A plan -->
<profile id="fm-de" showInChannelList="1">
  <label>FM broadcast</label>
  <label lang="de">UKW &amp; Höfe</label>
  <description lang="en"><![CDATA[Band II]]></description>
  <begin>87.5 MHz</begin>
  <end>108 MHz</end>
  <?tool x?>
  <channels>
    <channels start="87.6 MHz" width="200 kHz" count="102"/>
    <range label="Lower half" type="provider"><end>98 MHz</end></range>
  </channels>
</profile>
)";

// The child's memory when nothing large is held, sanitizers included, is well below this.
constexpr qint64 kMemoryBoundMegabytes = 800;
constexpr qint64 kTimeBoundMs = 30000;

QByteArray repeated(const QByteArray &text, int count)
{
    return text.repeated(count);
}

} // namespace

class TestAProfileDamage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatCannotBeOpenedIsNull();
    void anUnreadableFileIsNull();
    void pipesAndDevicesDoNotBlock();
    void contentThatIsNoXmlIsInvalid_data();
    void contentThatIsNoXmlIsInvalid();
    void aFileCutAnywhereIsInvalid();
    void everyFlippedByteIsReadOrRefused();
    void errorsNameTheLine();
    void aThousandLevelsAreRead();
    void aHundredThousandLevelsAreRefused();
    void entitiesDoNotGrowWithoutBound_data();
    void entitiesDoNotGrowWithoutBound();
    void externalEntitiesAreNotRead_data();
    void externalEntitiesAreNotRead();
    void aDocumentTypeIsAccepted();
    void declarationsAreRefused_data();
    void declarationsAreRefused();
    void attributesAreBounded_data();
    void attributesAreBounded();
    void markupThatHidesAttributesIsSeenThrough_data();
    void markupThatHidesAttributesIsSeenThrough();
    void commonEncodingsAreRead_data();
    void commonEncodingsAreRead();
    void aGigabyteOfZerosIsRefusedQuickly();
    void longTextsAreRead();
    void manyElementsAreReadInLinearTime();

private:
    ProfileDir m_dir;
};

void TestAProfileDamage::whatCannotBeOpenedIsNull()
{
    QVERIFY(!AProfile::fromFile(m_dir.path(QStringLiteral("missing.profile"))));
    QVERIFY(!AProfile::fromFile(m_dir.path()));
    QVERIFY(!AProfile::fromFile(m_dir.path(QStringLiteral("missing/a.profile"))));
    QVERIFY(!AProfile::fromFile(QString()));
    QVERIFY(!AProfile::fromFile(m_dir.path(QString(5000, QLatin1Char('n')))));
    QVERIFY(QDir(m_dir.path()).mkpath(QStringLiteral("dir.profile")));
    QVERIFY(!AProfile::fromFile(m_dir.path(QStringLiteral("dir.profile"))));
    const QString dangling = m_dir.path(QStringLiteral("dangling.profile"));
    QVERIFY(QFile::link(m_dir.path(QStringLiteral("missing")), dangling));
    QVERIFY(!AProfile::fromFile(dangling));
    const QString loop = m_dir.path(QStringLiteral("loop.profile"));
    QVERIFY(QFile::link(loop, loop));
    QVERIFY(!AProfile::fromFile(loop));
}

void TestAProfileDamage::anUnreadableFileIsNull()
{
    const QString name = m_dir.path(QStringLiteral("secret.profile"));
    QVERIFY(writeFile(name, kGood));
    QCOMPARE(chmod(qPrintable(m_dir.path()), 0755), 0);
    QCOMPARE(chmod(qPrintable(name), 0644), 0);
    const auto read = [&] {
        return inUnprivilegedChild([&name] { return ProfilePtr(AProfile::fromFile(name)) ? 1 : 0; }).status;
    };
    QCOMPARE(read(), 1);
    QCOMPARE(chmod(qPrintable(name), 0), 0);
    QCOMPARE(read(), 0);
}

void TestAProfileDamage::pipesAndDevicesDoNotBlock()
{
    const QString pipe = m_dir.path(QStringLiteral("pipe.profile"));
    QCOMPARE(mkfifo(qPrintable(pipe), 0644), 0);
    for (const QString &name : {pipe, QStringLiteral("/dev/zero"), QStringLiteral("/dev/null")}) {
        const ChildResult result = inChild([&name] {
            alarm(30);
            const ProfilePtr profile(AProfile::fromFile(name));
            return profile && profile->isValid() ? 1 : 0;
        });
        QCOMPARE(result.status, 0);
        QVERIFY(result.milliseconds < kTimeBoundMs);
    }
}

void TestAProfileDamage::contentThatIsNoXmlIsInvalid_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("blank") << QByteArray(" \n");
    QTest::newRow("byte order mark alone") << QByteArray("\xef\xbb\xbf");
    QTest::newRow("declaration alone") << QByteArray("<?xml version=\"1.0\"?>");
    QTest::newRow("comment alone") << QByteArray("<!-- x -->");
    QTest::newRow("text") << QByteArray("profile");
    QTest::newRow("one zero byte") << QByteArray(1, '\0');
    QTest::newRow("zero bytes") << QByteArray(100, '\0');
    QTest::newRow("zero byte in a text") << profileXml(QByteArray("<label>a\0b</label>", 18));
    QTest::newRow("zero byte in an attribute") << profileXml({}, QByteArray("id=\"a\0b\"", 8));
    QTest::newRow("zero byte between elements") << profileXml(QByteArray("<a/>\0<b/>", 9));
    QTest::newRow("reference to zero") << profileXml("<label>&#0;</label>");
    QTest::newRow("reference to a control character") << profileXml("<label>&#1;</label>");
    QTest::newRow("control character") << profileXml("<label>\x01</label>");
    QTest::newRow("bytes that are no utf-8") << profileXml("<label>\xff\xfe</label>");
    QTest::newRow("latin 1 without a declaration") << profileXml("<label>H\xf6"
                                                                 "fe</label>");
    QTest::newRow("undeclared entity") << profileXml("<label>&nothing;</label>");
    QTest::newRow("wrong end tag") << QByteArray("<profile id=\"p\"><a></b></profile>");
    QTest::newRow("two roots") << QByteArray("<profile id=\"p\"/><profile id=\"q\"/>");
    QTest::newRow("text after the root") << QByteArray("<profile id=\"p\"/>x");
    QTest::newRow("attribute twice") << QByteArray("<profile id=\"p\" id=\"q\"/>");
    QTest::newRow("attribute without quotes") << QByteArray("<profile id=p/>");
    QTest::newRow("unknown encoding") << QByteArray("<?xml version=\"1.0\" encoding=\"x-none\"?><profile id=\"p\"/>");
    QTest::newRow("html") << QByteArray("<!DOCTYPE html><html><br></html>");
    QTest::newRow("png") << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16);
}

void TestAProfileDamage::contentThatIsNoXmlIsInvalid()
{
    QFETCH(QByteArray, content);
    const ProfilePtr profile = m_dir.read(content);
    QVERIFY(profile); // it could be opened
    QVERIFY(!profile->isValid());
    QVERIFY(!profile->errorText().isEmpty());
    QCOMPARE(profile->source(), m_dir.path(QStringLiteral("read.profile")));
    QCOMPARE(profile->flags(), 0u);
}

void TestAProfileDamage::aFileCutAnywhereIsInvalid()
{
    const QByteArray good(kGood);
    const int whole = good.lastIndexOf('>') + 1;
    for (int length = 0; length <= good.size(); ++length) {
        const ProfilePtr profile = m_dir.read(good.left(length));
        QVERIFY(profile);
        if (profile->isValid() != (length >= whole) || profile->errorText().isEmpty() != (length >= whole))
            QFAIL(qPrintable(QString::number(length)));
    }
}

void TestAProfileDamage::everyFlippedByteIsReadOrRefused()
{
    const QByteArray good(kGood);
    int refused = 0;
    QStringList lost;
    for (int mask : {0x01, 0x20, 0x80, 0xff}) {
        for (int i = 0; i < good.size(); ++i) {
            QByteArray content = good;
            content[i] = char(content.at(i) ^ mask);
            const ProfilePtr profile = m_dir.read(content);
            QVERIFY(profile);
            QCOMPARE(profile->errorText().isEmpty(), profile->isValid());
            if (!profile->isValid()) {
                ++refused;
                continue;
            }
            const ProfilePtr again = m_dir.saved(*profile);
            const QString german = QStringLiteral("de");
            if (!again || !again->isValid() || again->id() != profile->id() || again->begin() != profile->begin() ||
                again->end() != profile->end() || again->label(german) != profile->label(german) ||
                again->channelData().isElement() != profile->channelData().isElement() ||
                again->showInChannelList() != profile->showInChannelList())
                lost.append(QStringLiteral("byte %1, mask %2").arg(i).arg(mask));
        }
    }
    QVERIFY(refused > good.size());
    QCOMPARE(lost.join(QLatin1String("; ")), QString());
}

void TestAProfileDamage::errorsNameTheLine()
{
    const ProfilePtr profile = m_dir.read("<profile id=\"p\">\n<label>x</label>\n<label></wrong>\n</profile>");
    QVERIFY(!profile->isValid());
    QVERIFY2(profile->errorText().contains(QLatin1Char('3')), qPrintable(profile->errorText()));
}

void TestAProfileDamage::aThousandLevelsAreRead()
{
    // The profile itself is the first level.
    const auto nested = [](const QByteArray &name, int levels) {
        return profileXml(repeated("<" + name + ">", levels - 1) + repeated("</" + name + ">", levels - 1));
    };
    for (const char *name : {"a", "channels"}) {
        const ProfilePtr deep = m_dir.read(nested(name, 1000));
        QVERIFY(deep);
        QVERIFY2(deep->isValid(), qPrintable(deep->errorText()));
        const ProfilePtr again = m_dir.saved(*deep);
        QVERIFY(again && again->isValid());
        const ProfilePtr deeper = m_dir.read(nested(name, 1001));
        QVERIFY(deeper);
        QVERIFY(!deeper->isValid());
        QVERIFY(!deeper->errorText().isEmpty());
    }
    // Breadth is no depth.
    QVERIFY(m_dir.read(profileXml(repeated("<a><b/></a>", 5000)))->isValid());
}

void TestAProfileDamage::aHundredThousandLevelsAreRefused()
{
    for (const char *name : {"a", "channels", "label"}) {
        const QByteArray begin = "<" + QByteArray(name) + ">";
        const QByteArray end = "</" + QByteArray(name) + ">";
        const ProfilePtr closed = m_dir.read(profileXml(repeated(begin, 100000) + repeated(end, 100000)));
        QVERIFY(closed && !closed->isValid());
        const ProfilePtr open = m_dir.read("<profile id=\"p\">" + repeated(begin, 100000));
        QVERIFY(open && !open->isValid());
    }
}

void TestAProfileDamage::entitiesDoNotGrowWithoutBound_data()
{
    QTest::addColumn<QByteArray>("content");
    QByteArray laughs = "<!DOCTYPE profile [<!ENTITY l0 \"lollollollol\">";
    for (int i = 1; i < 30; ++i) {
        const QByteArray inner = "&l" + QByteArray::number(i - 1) + ";";
        laughs += "<!ENTITY l" + QByteArray::number(i) + " \"" + repeated(inner, 10) + "\">";
    }
    laughs += "]>";
    QTest::newRow("in a text") << laughs + "<profile id=\"p\"><label>&l29;</label></profile>";
    QTest::newRow("in an attribute") << laughs + "<profile id=\"&l29;\"/>";
    QTest::newRow("in the channel section")
        << laughs + "<profile id=\"p\"><channels><range label=\"&l29;\"/></channels></profile>";
    QTest::newRow("recursive") << QByteArray("<!DOCTYPE profile [<!ENTITY a \"&b;\"><!ENTITY b \"&a;\">]>"
                                             "<profile id=\"p\"><label>&a;</label></profile>");
    QTest::newRow("of itself") << QByteArray("<!DOCTYPE profile [<!ENTITY a \"&a;\">]><profile id=\"&a;\"/>");
    // A single entity of a moderate length, named very often: 1.2 MB of file for 1.6 GB of text.
    const QByteArray often = "<!DOCTYPE profile [<!ENTITY a \"" + QByteArray(4000, 'x') + "\">]>";
    QTest::newRow("named often") << often + "<profile id=\"p\"><label>" + repeated("&a;", 400000) +
                                        "</label></profile>";
    QTest::newRow("behind an identifier that seems to end the document type")
        << QByteArray(often).replace(" [", " SYSTEM \">\" [") + "<profile id=\"p\"><label>" + repeated("&a;", 400000) +
               "</label></profile>";
    QTest::newRow("named often in attributes") << often + "<profile id=\"" + repeated("&a;", 400000) + "\"/>";
    QTest::newRow("named often in elements")
        << often + "<profile id=\"p\">" + repeated("<label>&a;</label>", 200000) + "</profile>";
}

void TestAProfileDamage::entitiesDoNotGrowWithoutBound()
{
    QFETCH(QByteArray, content);
    const QString name = m_dir.path(QStringLiteral("bomb.profile"));
    QVERIFY(writeFile(name, content));
    const ChildResult result = inChild([&name] {
        const ProfilePtr profile(AProfile::fromFile(name));
        return profile && !profile->isValid() && !profile->errorText().isEmpty() ? 0 : 1;
    });
    QCOMPARE(result.status, 0);
    QVERIFY2(result.megabytes < kMemoryBoundMegabytes, qPrintable(QString::number(result.megabytes)));
    QVERIFY2(result.milliseconds < kTimeBoundMs, qPrintable(QString::number(result.milliseconds)));
}

void TestAProfileDamage::externalEntitiesAreNotRead_data()
{
    QTest::addColumn<QByteArray>("document"); // FILE stands for the other file
    QTest::newRow("entity in a text") << QByteArray(
        "<!DOCTYPE profile [<!ENTITY x SYSTEM \"FILE\">]><profile id=\"p\"><label>&x;</label></profile>");
    QTest::newRow("entity in an attribute")
        << QByteArray("<!DOCTYPE profile [<!ENTITY x SYSTEM \"FILE\">]><profile id=\"p&x;\"/>");
    QTest::newRow("public entity") << QByteArray("<!DOCTYPE profile [<!ENTITY x PUBLIC \"-//X\" \"FILE\">]>"
                                                 "<profile id=\"p\"><label>&x;</label></profile>");
    QTest::newRow("parameter entity") << QByteArray(
        "<!DOCTYPE profile [<!ENTITY % e SYSTEM \"FILE\"> %e;]><profile id=\"p\"><label>&secret;</label></profile>");
    QTest::newRow("external subset") << QByteArray(
        "<!DOCTYPE profile SYSTEM \"FILE\"><profile id=\"p\"><label>&secret;</label></profile>");
    QTest::newRow("inclusion") << QByteArray("<profile id=\"p\" xmlns:xi=\"http://www.w3.org/2001/XInclude\"><label>"
                                             "<xi:include href=\"FILE\" parse=\"text\"/></label></profile>");
}

void TestAProfileDamage::externalEntitiesAreNotRead()
{
    QFETCH(QByteArray, document);
    const QString other = m_dir.path(QStringLiteral("other.txt"));
    QVERIFY(writeFile(other, "<!ENTITY secret \"hidden\">hidden"));
    for (const QByteArray &prefix : {QByteArray("file://"), QByteArray()}) {
        const ProfilePtr profile = m_dir.read(QByteArray(document).replace("FILE", prefix + other.toUtf8()));
        QVERIFY(profile);
        QVERIFY(!profile->id().contains(QLatin1String("hidden")));
        QVERIFY(!profile->label(QString()).contains(QLatin1String("hidden")));
        QVERIFY(!profile->errorText().contains(QLatin1String("hidden")));
    }
}

void TestAProfileDamage::aDocumentTypeIsAccepted()
{
    const ProfilePtr profile = m_dir.read("<!DOCTYPE profile SYSTEM \"profile.dtd\">\n<profile id=\"p\"/>");
    QVERIFY(profile);
    QVERIFY2(profile->isValid(), qPrintable(profile->errorText()));
    const ProfilePtr again = m_dir.saved(*profile);
    QVERIFY(again && again->isValid());
}

void TestAProfileDamage::declarationsAreRefused_data()
{
    QTest::addColumn<QByteArray>("declarations");
    QTest::newRow("none") << QByteArray();
    QTest::newRow("entity") << QByteArray("<!ENTITY fm \"FM\">");
    QTest::newRow("element") << QByteArray("<!ELEMENT profile ANY>");
    // Each element would get each of the defaults.
    QTest::newRow("defaults") << QByteArray("<!ATTLIST profile id CDATA \"x\">");
    QByteArray many;
    for (int i = 0; i < 100000; ++i)
        many += "<!ATTLIST a b" + QByteArray::number(i) + " CDATA \"x\">";
    QTest::newRow("many defaults") << many;
}

void TestAProfileDamage::declarationsAreRefused()
{
    QFETCH(QByteArray, declarations);
    const ProfilePtr profile = m_dir.read("<!DOCTYPE profile [" + declarations + "]><profile id=\"p\"/>");
    QVERIFY(profile);
    QVERIFY(!profile->isValid());
    QVERIFY(!profile->errorText().isEmpty());
    profile->setId(QStringLiteral("p"));
    QVERIFY(!profile->isValid()); // what could not be read is not mended by an id
}

void TestAProfileDamage::attributesAreBounded_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QByteArray>("between");
    QTest::addColumn<bool>("valid");
    QTest::newRow("few") << 200 << QByteArray(" ") << true;
    QTest::newRow("most") << 255 << QByteArray("\n") << true; // and the id
    QTest::newRow("one more") << 256 << QByteArray(" ") << false;
    QTest::newRow("very many") << 20000 << QByteArray(" ") << false;
}

void TestAProfileDamage::attributesAreBounded()
{
    QFETCH(int, count);
    QFETCH(QByteArray, between);
    QFETCH(bool, valid);
    // Nothing but attributes of one tag counts.
    QByteArray xml = "<!-- <a =============> - --><?x <?a = <a = '\" ?><profile id='='";
    for (int i = 0; i < count; ++i)
        xml += between + "a" + QByteArray::number(i) + (i % 2 ? "='&lt;=\">'" : "=\"=='>==\"");
    xml += "><![CDATA[<a " + QByteArray("b='' ").repeated(300) + "]]>" + QByteArray("=\"").repeated(300) +
           QByteArray("<x a='' b='' c=''/>").repeated(300) + "</profile>";
    for (const bool wide : {false, true}) {
        QByteArray content = xml;
        if (wide) {
            const QString text = QChar(QChar::ByteOrderMark) + QString::fromLatin1(xml);
            content = QByteArray(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
        }
        const ProfilePtr profile = m_dir.read(content);
        QVERIFY(profile);
        QVERIFY2(profile->isValid() == valid, qPrintable(profile->errorText()));
        if (!valid)
            QVERIFY2(profile->errorText().contains(QLatin1String("256 attributes")), qPrintable(profile->errorText()));
    }
}

void TestAProfileDamage::markupThatHidesAttributesIsSeenThrough_data()
{
    QTest::addColumn<QByteArray>("content");
    QByteArray wide = "<profile id='p'><x";
    for (int i = 0; i < 1000; ++i)
        wide += " a" + QByteArray::number(i) + "=''";
    wide += "/></profile>";
    const auto utf16 = [](const QString &text) {
        const QString marked = QChar(QChar::ByteOrderMark) + text;
        return QByteArray(reinterpret_cast<const char *>(marked.utf16()), marked.size() * 2);
    };
    QTest::newRow("plain") << wide;
    QTest::newRow("a comment that seems to end") << "<!--><![CDATA[-->" + wide;
    QTest::newRow("a comment of dashes") << "<!---->" + wide;
    QTest::newRow("a document type with a quoted end") << "<!DOCTYPE profile SYSTEM \">'\">" + wide;
    QTest::newRow("wide characters with the bytes of a dash")
        << utf16(QStringLiteral("<!--%1><![CDATA[-->").arg(QChar(0x2d2d)) + QString::fromLatin1(wide));
    QTest::newRow("big endian") << QByteArray::fromHex("feff") + [&wide] {
        QByteArray bytes;
        for (const char c : qAsConst(wide))
            bytes.append('\0').append(c);
        return bytes;
    }();
    QTest::newRow("another encoding") << "<?xml version='1.0' encoding='UTF-7'?>" + wide.replace("<x", "+ADw-x");
    QTest::newRow("two encodings") << QByteArray("<?xml version='1.0' encoding='UTF-16'?>") + wide;
}

void TestAProfileDamage::markupThatHidesAttributesIsSeenThrough()
{
    QFETCH(QByteArray, content);
    const ProfilePtr profile = m_dir.read(content);
    QVERIFY(profile);
    QVERIFY(!profile->isValid());
    QVERIFY2(profile->errorText().contains(QLatin1String("256 attributes")) ||
                 profile->errorText().contains(QLatin1String("encoding")),
             qPrintable(profile->errorText()));
}

void TestAProfileDamage::commonEncodingsAreRead_data()
{
    QTest::addColumn<QByteArray>("encoding");
    QTest::addColumn<QByteArray>("letter");
    QTest::newRow("UTF-8") << QByteArray("utf-8") << QByteArray("\xc3\xa4");
    QTest::newRow("Latin-1") << QByteArray("ISO-8859-1") << QByteArray("\xe4");
    QTest::newRow("Windows") << QByteArray("windows-1252") << QByteArray("\xe4");
}

void TestAProfileDamage::commonEncodingsAreRead()
{
    QFETCH(QByteArray, encoding);
    QFETCH(QByteArray, letter);
    const ProfilePtr profile = m_dir.read("<?xml version='1.0' encoding='" + encoding + "'?><profile id='p'><label>" +
                                          letter + "</label></profile>");
    QVERIFY(profile && profile->isValid());
    QCOMPARE(profile->label(QString()), QString(QChar(0xe4)));
}

void TestAProfileDamage::aGigabyteOfZerosIsRefusedQuickly()
{
    const QString name = m_dir.path(QStringLiteral("zeros.profile"));
    for (const QByteArray &start :
         {QByteArray(), QByteArray("<profile id=\"p\">"), QByteArray("<profile id=\"p\"/>")}) {
        QVERIFY(writeFile(name, start));
        QCOMPARE(truncate(qPrintable(name), 1024L * 1024 * 1024), 0);
        const ChildResult result = inChild([&name] {
            const ProfilePtr profile(AProfile::fromFile(name));
            return profile && !profile->isValid() ? 0 : 1;
        });
        QCOMPARE(result.status, 0);
        QVERIFY2(result.megabytes < kMemoryBoundMegabytes, qPrintable(QString::number(result.megabytes)));
        QVERIFY2(result.milliseconds < kTimeBoundMs, qPrintable(QString::number(result.milliseconds)));
    }
    QVERIFY(QFile::remove(name));
}

void TestAProfileDamage::longTextsAreRead()
{
    const QByteArray text(5 * 1024 * 1024, 'x');
    const ProfilePtr profile = m_dir.read("<profile id=\"" + text + "\"><label lang=\"" + text + "\">" + text +
                                          "</label><other a=\"" + text + "\"/></profile>");
    QVERIFY(profile);
    QVERIFY2(profile->isValid(), qPrintable(profile->errorText().left(200)));
    QCOMPARE(profile->id().size(), text.size());
    QCOMPARE(profile->label(QString()).size(), text.size());
    QByteArray content;
    const ProfilePtr again = m_dir.saved(*profile, &content);
    QVERIFY(again && again->isValid());
    QVERIFY(content.size() > 4 * text.size());
    QVERIFY(again->label(QString::fromLatin1(text)) == QString::fromLatin1(text));
}

void TestAProfileDamage::manyElementsAreReadInLinearTime()
{
    const auto milliseconds = [this](int count) {
        QElapsedTimer timer;
        timer.start();
        const ProfilePtr profile = m_dir.read(
            profileXml(repeated("<label lang=\"xx\">t</label>", count) + repeated("<unknown>t<b/>u</unknown>", count) +
                       "<channels>" + repeated("<range><begin>1</begin></range>", count) + "</channels>"));
        if (!profile || !profile->isValid() || !m_dir.saved(*profile))
            return qint64(-1);
        return timer.elapsed();
    };
    const qint64 few = milliseconds(10000);
    const qint64 many = milliseconds(100000);
    QVERIFY(few >= 0 && many >= 0);
    // Ten times as much takes ten times as long, not a hundred times.
    QVERIFY2(many < 40 * qMax<qint64>(few, 20), qPrintable(QStringLiteral("%1 ms, %2 ms").arg(few).arg(many)));
}

QTEST_GUILESS_MAIN(TestAProfileDamage)
#include "tst_aprofile_damage.moc"
