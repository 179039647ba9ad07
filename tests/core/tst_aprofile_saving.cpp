#include "core/aprofile.h"

#include "core/profilefiles.h"

#include <QtCore/QDir>
#include <QtTest/QtTest>

#include <sys/stat.h>

#include <csignal>

using namespace profilefiles;

namespace {

// Everything that a file may hold beside what a profile knows.
const char kRich[] = R"xml(<?xml version="1.0" encoding="UTF-8"?>
<?style sheet="a.css"?>
<!-- before -->
<profile id="fm &quot;de&quot;" showInChannelList="0" owner="me" xmlns:x="urn:x" x:rank="3">
  <label>FM &amp; AM</label>
  <label lang="de" x:by="n">UKW &lt;Rundfunk&gt;</label>
  <!-- between -->
  <?tool data="1"?>
  <description lang="en"><![CDATA[Band <II> & more]]></description>
  <note>Some <b>bold</b> and <i>italic</i> <b>words</b>, &#181; &#x1F4E1;.<!-- in text -->
    A second line.</note>
  <blank> </blank>
  <lines a="one&#10;two&#9;three&#13;four">one&#13;
two	three</lines>
  <x:ext xmlns:y="urn:y" y:a="1" a="2"><y:deep xmlns="urn:default"><plain/></y:deep></x:ext>
  <begin note="kept">87.5</begin>
  <end>108 MHz</end>
  <channels kind="plan">
    <unknown>text</unknown>
    <!-- plan -->
    <range label="Lower half" type="provider" x:a="1"><end>98 MHz</end></range>
  </channels>
  <channels><range label="second"/></channels>
  <label>another</label>
  <empty></empty>
  <split><![CDATA[a]]]]><![CDATA[>b]]></split>
</profile>
<!-- after -->
<?last one?>
)xml";

QByteArray rich()
{
    return QByteArray(kRich);
}

// Elements need their document: Qt leaves a dangling pointer in one that outlives it.
QDomDocument sectionWith(const std::function<QDomNode(QDomDocument &)> &makeChild)
{
    QDomDocument document;
    QDomNode section = document.appendChild(document.createElement(QStringLiteral("channels")));
    section.appendChild(makeChild(document));
    return document;
}

} // namespace

Q_DECLARE_METATYPE(QDomDocument)

class TestAProfileSaving : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatWasReadIsWritten();
    void savingTwiceGivesTheSameBytes();
    void theBytesAreThose();
    void textsKeepWhatStandsBetweenThem();
    void settersKeepWhatTheyDoNotTouch();
    void savingOverItsOwnFileKeepsAll();
    void savingChangesNothingOfTheProfile();
    void frequenciesSurviveSaving_data();
    void frequenciesSurviveSaving();
    void textsSurviveSaving_data();
    void textsSurviveSaving();
    void charactersThatXmlCannotHoldAreLeftOut_data();
    void charactersThatXmlCannotHoldAreLeftOut();
    void theChannelSectionLeavesThemOutAsWell_data();
    void theChannelSectionLeavesThemOutAsWell();
    void whatIsSavedCanBeReadBack_data();
    void whatIsSavedCanBeReadBack();
    void namespacesOfAnApplicationsSectionAreDeclared();
    void aDefaultProfileWithAnIdIsSaved();
    void aProfileThatCouldNotBeReadDoesNotWipeItsFile();

    void aFullDiskLeavesTheOldFile_data();
    void aFullDiskLeavesTheOldFile();
    void aCrashLeavesTheOldFile();
    void aReadOnlyDirectoryFails();
    void placesThatCannotHoldAFileFail();
    void savingLeavesNoOtherFile();
    void aNewFileIsWritten();

private:
    ProfileDir m_dir;
};

void TestAProfileSaving::whatWasReadIsWritten()
{
    const QStringList expected = xmlEvents(rich());
    QVERIFY(expected.size() > 50);
    const ProfilePtr profile = m_dir.read(rich());
    QVERIFY2(profile->isValid(), qPrintable(profile->errorText()));
    QByteArray content;
    const ProfilePtr again = m_dir.saved(*profile, &content);
    QVERIFY(again && again->isValid());
    QCOMPARE(xmlEvents(content), expected);
    QCOMPARE(again->id(), profile->id());
    QCOMPARE(again->description(QStringLiteral("en")), QStringLiteral("Band <II> & more"));
    QVERIFY(!again->showInChannelList());
}

void TestAProfileSaving::savingTwiceGivesTheSameBytes()
{
    QByteArray first;
    QByteArray second;
    const ProfilePtr again = m_dir.saved(*m_dir.read(rich()), &first);
    QVERIFY(again);
    m_dir.saved(*again, &second);
    QCOMPARE(second, first);
}

// Indented where that adds nothing to a text, attributes by name, a carriage return as a reference.
void TestAProfileSaving::theBytesAreThose()
{
    QByteArray content;
    QVERIFY(m_dir.saved(*m_dir.read("<profile showInChannelList=\"0\" id=\"a\" z=\"&#9;&#10;\" b=\"&lt;&quot;\">"
                                    "<label>a&#13;b</label><begin>1</begin><end>2</end><!--c--><?x y?>"
                                    "<x><y><z> </z></y>\n</x><m>t<n><o/></n></m></profile>"),
                        &content));
    QCOMPARE(content, QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                 "<profile b=\"&lt;&quot;\" id=\"a\" showInChannelList=\"0\" z=\"&#9;&#10;\">\n"
                                 "  <label>a&#xd;b</label>\n"
                                 "  <begin>1</begin>\n"
                                 "  <end>2</end>\n"
                                 "  <!--c-->\n"
                                 "  <?x y?>\n"
                                 "  <x>\n"
                                 "    <y>\n"
                                 "      <z> </z>\n"
                                 "    </y>\n"
                                 "  </x>\n"
                                 "  <m>t<n><o/></n></m>\n"
                                 "</profile>\n"));
}

void TestAProfileSaving::textsKeepWhatStandsBetweenThem()
{
    const ProfilePtr profile =
        m_dir.read(profileXml("<label>a<!-- c -->b</label><label lang=\"de\">a<?x y?>b</label>"
                              "<label lang=\"fr\">a<![CDATA[ <b> ]]>c</label><label lang=\"it\">a<b/> <b/>c</label>"));
    const ProfilePtr again = m_dir.saved(*m_dir.saved(*profile));
    QVERIFY(again && again->isValid());
    for (const char *language : {"", "fr", "it", "de"})
        QCOMPARE(again->label(QString::fromLatin1(language)), profile->label(QString::fromLatin1(language)));
}

void TestAProfileSaving::settersKeepWhatTheyDoNotTouch()
{
    const ProfilePtr profile = m_dir.read(rich());
    profile->setId(QStringLiteral("new"));
    profile->setLabel(QStringLiteral("Radio"), QStringLiteral("de"));
    profile->setRange(hertz(1000000), hertz(2000000));
    profile->setShowInChannelList(true);
    QByteArray content;
    const ProfilePtr again = m_dir.saved(*profile, &content);
    QVERIFY(again && again->isValid());
    QCOMPARE(again->id(), QStringLiteral("new"));
    QCOMPARE(again->label(QStringLiteral("de")), QStringLiteral("Radio"));
    QCOMPARE(again->begin(), hertz(1000000));
    QCOMPARE(again->end(), hertz(2000000));
    QVERIFY(again->showInChannelList());

    // Only these values are others.
    const QStringList old = xmlEvents(rich());
    const QStringList events = xmlEvents(content);
    for (const QString &event : old) {
        const bool changed = event.startsWith(QLatin1String("attribute id=")) ||
                             event.startsWith(QLatin1String("attribute showInChannelList=")) ||
                             event == QLatin1String("text UKW <Rundfunk>") || event == QLatin1String("text 87.5") ||
                             event == QLatin1String("text 108 MHz");
        QVERIFY2(changed != events.contains(event), qPrintable(event));
    }
    QCOMPARE(events.filter(QRegularExpression(QStringLiteral("^start "))),
             old.filter(QRegularExpression(QStringLiteral("^start "))));
}

void TestAProfileSaving::savingOverItsOwnFileKeepsAll()
{
    const ProfilePtr profile = m_dir.read(rich());
    QVERIFY(profile->saveToFile(profile->source()));
    QCOMPARE(xmlEvents(readFile(profile->source())), xmlEvents(rich()));
    QVERIFY(profile->saveToFile(profile->source()));
    QCOMPARE(xmlEvents(readFile(profile->source())), xmlEvents(rich()));
}

void TestAProfileSaving::savingChangesNothingOfTheProfile()
{
    const ProfilePtr profile = m_dir.read(rich());
    profile->setFlags(AProfile::UserProfile | AProfile::ModifiedProfile);
    QVERIFY(profile->saveToFile(m_dir.path(QStringLiteral("other.profile"))));
    QCOMPARE(profile->flags(), AProfile::UserProfile | AProfile::ModifiedProfile);
    QCOMPARE(profile->source(), m_dir.path(QStringLiteral("read.profile")));
    QCOMPARE(ProfilePtr(AProfile::fromFile(m_dir.path(QStringLiteral("other.profile"))))->flags(), 0u);

    AProfile fresh;
    fresh.setId(QStringLiteral("fresh"));
    QVERIFY(fresh.saveToFile(m_dir.path(QStringLiteral("fresh.profile"))));
    QVERIFY(fresh.source().isEmpty());
}

void TestAProfileSaving::frequenciesSurviveSaving_data()
{
    QTest::addColumn<qint64>("begin");
    QTest::addColumn<qint64>("end");
    QTest::newRow("hertz") << qint64(1) << qint64(999);
    QTest::newRow("kilohertz") << qint64(1001) << qint64(999999);
    QTest::newRow("megahertz") << qint64(87500001) << qint64(6000000000001);
    QTest::newRow("negative") << qint64(-5000001) << qint64(-1);
    QTest::newRow("zero") << qint64(0) << qint64(0);
    QTest::newRow("the whole range") << std::numeric_limits<qint64>::min() << std::numeric_limits<qint64>::max();
}

void TestAProfileSaving::frequenciesSurviveSaving()
{
    QFETCH(qint64, begin);
    QFETCH(qint64, end);
    AProfile profile;
    profile.setId(QStringLiteral("p"));
    profile.setRange(hertz(begin), hertz(end));
    const ProfilePtr again = m_dir.saved(profile);
    QVERIFY(again && again->isValid());
    QCOMPARE(again->begin(), hertz(begin));
    QCOMPARE(again->end(), hertz(end));
}

void TestAProfileSaving::textsSurviveSaving_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("markup") << "<b a=\"1\">&amp;</b> ]]> <!-- --> '";
    QTest::newRow("line ends") << "one\ntwo\r\nthree\rfour\tfive";
    QTest::newRow("blanks around") << "  x  ";
    QTest::newRow("blank only") << "  ";
    QTest::newRow("line feed only") << "\n";
    QTest::newRow("beyond the basic plane") << QString::fromUtf8("µ – 📡 \xef\xbf\xbd");
    QTest::newRow("delete and next line") << QString(QChar(0x7f)) + QChar(0x85) + QChar(0x2028);
    QTest::newRow("placeholder") << "%1 %2 100%";
    QTest::newRow("long") << QString(1000000, QLatin1Char('x'));
}

void TestAProfileSaving::textsSurviveSaving()
{
    QFETCH(QString, text);
    AProfile profile;
    profile.setId(text);
    profile.setLabel(text, QString());
    profile.setDescription(text, QStringLiteral("de"));
    const ProfilePtr again = m_dir.saved(profile);
    QVERIFY(again);
    QVERIFY2(again->isValid(), qPrintable(again->errorText()));
    QCOMPARE(again->id(), text);
    QCOMPARE(again->label(QString()), text);
    QCOMPARE(again->description(QStringLiteral("de")), text);
}

void TestAProfileSaving::charactersThatXmlCannotHoldAreLeftOut_data()
{
    QTest::addColumn<QString>("character");
    for (int code = 0; code < 0x20; ++code) {
        if (code != '\t' && code != '\n' && code != '\r')
            QTest::addRow("U+%04X", code) << QString(QChar(code));
    }
    QTest::newRow("U+FFFE") << QString(QChar(0xfffe));
    QTest::newRow("U+FFFF") << QString(QChar(0xffff));
    QTest::newRow("high half of a pair") << QString(QChar(0xd83d));
    QTest::newRow("low half of a pair") << QString(QChar(0xdce1));
    QTest::newRow("halves in the wrong order") << QString(QChar(0xdce1)) + QChar(0xd83d);
    QTest::newRow("several") << QString(QChar(0)) + QChar(1) + QChar(0xffff) + QChar(0xd83d);
}

void TestAProfileSaving::charactersThatXmlCannotHoldAreLeftOut()
{
    QFETCH(QString, character);
    const QString text = QStringLiteral("a") + character + QStringLiteral("b") + character;
    const QString expected = QStringLiteral("ab");
    AProfile profile;
    profile.setId(text);
    profile.setLabel(text, QStringLiteral("de"));
    profile.setDescription(text, QString());
    profile.setLabel(QStringLiteral("x"), QStringLiteral("e") + character + QStringLiteral("n"));

    const ProfilePtr again = m_dir.saved(profile);
    QVERIFY(again);
    QVERIFY2(again->isValid(), qPrintable(again->errorText()));
    for (const AProfile *one : {static_cast<const AProfile *>(&profile), static_cast<const AProfile *>(again.get())}) {
        QCOMPARE(one->id(), expected);
        QCOMPARE(one->label(QStringLiteral("de")), expected);
        QCOMPARE(one->description(QString()), expected);
    }
    QCOMPARE(again->label(QStringLiteral("en")), QStringLiteral("x"));
}

void TestAProfileSaving::theChannelSectionLeavesThemOutAsWell_data()
{
    charactersThatXmlCannotHoldAreLeftOut_data();
}

void TestAProfileSaving::theChannelSectionLeavesThemOutAsWell()
{
    QFETCH(QString, character);
    const QString text = QStringLiteral("a") + character + QStringLiteral("b") + character;
    const QString expected = QStringLiteral("ab");
    QDomDocument document;
    QDomElement channels = document.createElement(QStringLiteral("channels"));
    document.appendChild(channels);
    channels.setAttribute(QStringLiteral("label"), text);
    channels.appendChild(document.createTextNode(text));
    QDomNode range = channels.appendChild(document.createElement(QStringLiteral("range")));
    range.appendChild(document.createCDATASection(text));
    range.appendChild(document.createComment(text));
    range.appendChild(document.createProcessingInstruction(QStringLiteral("x"), text));
    AProfile profile;
    profile.setId(QStringLiteral("p"));
    profile.setChannelData(channels);

    const ProfilePtr again = m_dir.saved(profile);
    QVERIFY(again);
    QVERIFY2(again->isValid(), qPrintable(again->errorText()));
    QCOMPARE(again->channelData().toElement().attribute(QStringLiteral("label")), expected);
    QCOMPARE(again->channelData().firstChild().toText().data(), expected);
    QCOMPARE(again->channelData().firstChildElement(QStringLiteral("range")).text(), expected);
}

void TestAProfileSaving::whatIsSavedCanBeReadBack_data()
{
    QTest::addColumn<QDomDocument>("document");
    QTest::newRow("comment with two hyphens")
        << sectionWith([](QDomDocument &d) { return d.createComment(QStringLiteral("a -- b")); });
    QTest::newRow("comment that ends in a hyphen")
        << sectionWith([](QDomDocument &d) { return d.createComment(QStringLiteral("a -")); });
    QTest::newRow("cdata with its own end")
        << sectionWith([](QDomDocument &d) { return d.createCDATASection(QStringLiteral("a ]]> b")); });
    QTest::newRow("instruction with its own end") << sectionWith(
        [](QDomDocument &d) { return d.createProcessingInstruction(QStringLiteral("x"), QStringLiteral("a ?> b")); });
    QTest::newRow("instruction that is no name") << sectionWith(
        [](QDomDocument &d) { return d.createProcessingInstruction(QStringLiteral("x y"), QStringLiteral("a")); });
    QTest::newRow("instruction named like the declaration") << sectionWith(
        [](QDomDocument &d) { return d.createProcessingInstruction(QStringLiteral("xml"), QStringLiteral("a")); });
    QTest::newRow("element that is no name")
        << sectionWith([](QDomDocument &d) { return d.createElement(QStringLiteral("a b<")); });
    QTest::newRow("undeclared prefix") << sectionWith(
        [](QDomDocument &d) { return d.createElement(QStringLiteral("q:a")); });
    QTest::newRow("namespace") << sectionWith(
        [](QDomDocument &d) { return d.createElementNS(QStringLiteral("urn:q"), QStringLiteral("q:a")); });
    QTest::newRow("entity reference") << sectionWith(
        [](QDomDocument &d) { return d.createEntityReference(QStringLiteral("unknown")); });
    QTest::newRow("attribute that is no name") << sectionWith([](QDomDocument &d) {
        QDomElement range = d.createElement(QStringLiteral("range"));
        range.setAttribute(QStringLiteral("a b<"), QStringLiteral("x"));
        return range;
    });
    QTest::newRow("999 levels deep") << nestedSection(999); // the profile itself is one
    QTest::newRow("1000 levels deep") << nestedSection(1000);
    QTest::newRow("5000 levels deep") << nestedSection(5000);
}

void TestAProfileSaving::whatIsSavedCanBeReadBack()
{
    QFETCH(QDomDocument, document);
    const QString name = m_dir.path(QStringLiteral("back.profile"));
    QVERIFY(writeFile(name, rich()));
    AProfile profile;
    profile.setId(QStringLiteral("p"));
    profile.setChannelData(document.documentElement());
    const bool ok = profile.saveToFile(name);
    const ProfilePtr again(AProfile::fromFile(name));
    QVERIFY(again);
    QVERIFY2(again->isValid(), qPrintable(again->errorText()));
    if (ok)
        QCOMPARE(again->id(), QStringLiteral("p"));
    else
        QCOMPARE(readFile(name), rich());
}

void TestAProfileSaving::namespacesOfAnApplicationsSectionAreDeclared()
{
    QDomDocument document;
    QDomElement channels = document.createElementNS(QStringLiteral("urn:x"), QStringLiteral("p:channels"));
    channels.setAttributeNS(QStringLiteral("urn:y"), QStringLiteral("q:rank"), 3);
    channels.appendChild(document.createElementNS(QStringLiteral("urn:x"), QStringLiteral("p:note")));
    AProfile profile;
    profile.setId(QStringLiteral("p"));
    profile.setChannelData(channels);

    QByteArray content;
    const ProfilePtr again = m_dir.saved(profile, &content);
    QVERIFY(again && again->isValid());
    QVERIFY(!again->channelData().isNull());
    QVERIFY2(content.contains("<channels q:rank=\"3\" xmlns=\"urn:x\" xmlns:q=\"urn:y\">"), content.constData());
    QVERIFY2(content.contains("<p:note xmlns:p=\"urn:x\"/>"), content.constData());
}

void TestAProfileSaving::aDefaultProfileWithAnIdIsSaved()
{
    AProfile profile;
    profile.setId(QStringLiteral("p"));
    QByteArray content;
    const ProfilePtr again = m_dir.saved(profile, &content);
    QVERIFY(again && again->isValid());
    QCOMPARE(again->id(), QStringLiteral("p"));
    QVERIFY(again->showInChannelList());
    QVERIFY(!again->channelData().isElement());
    QVERIFY(content.startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>"));
}

// A file that a user cut or mistyped must not be lost by saving the object that stands for it.
void TestAProfileSaving::aProfileThatCouldNotBeReadDoesNotWipeItsFile()
{
    const QByteArray cut = rich().left(rich().size() / 2);
    const ProfilePtr profile = m_dir.read(cut);
    QVERIFY(profile && !profile->isValid());
    QVERIFY(!profile->saveToFile(profile->source()));
    QCOMPARE(readFile(profile->source()), cut);
}

// --- one step ---

void TestAProfileSaving::aFullDiskLeavesTheOldFile_data()
{
    QTest::addColumn<int>("limit"); // bytes, negative: below the size of the file
    for (int limit : {0, 1, 100, 512, -100, -1})
        QTest::addRow("%d", limit) << limit;
}

void TestAProfileSaving::aFullDiskLeavesTheOldFile()
{
    QFETCH(int, limit);
    const ProfileDir dir;
    const ProfilePtr profile = m_dir.read(rich());
    QByteArray content;
    QVERIFY(m_dir.saved(*profile, &content));
    const QString name = dir.path(QStringLiteral("a.profile"));
    const auto save = [&](rlim_t bytes) {
        return inChild([&] {
                   std::signal(SIGXFSZ, SIG_IGN);
                   const struct rlimit size = {bytes, bytes};
                   if (setrlimit(RLIMIT_FSIZE, &size) != 0)
                       return 98;
                   return profile->saveToFile(name) ? 1 : 0;
               })
            .status;
    };
    const rlim_t bytes = static_cast<rlim_t>(limit < 0 ? content.size() + limit : limit);

    QCOMPARE(save(bytes), 0);
    QVERIFY(!QFile::exists(name)); // no file appears where there was none
    const QByteArray old = profileXml("<label>the old one</label>");
    QVERIFY(writeFile(name, old));
    QCOMPARE(save(bytes), 0);
    QCOMPARE(readFile(name), old);
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("a.profile")});
    QCOMPARE(save(static_cast<rlim_t>(content.size())), 1);
    QCOMPARE(readFile(name), content);
}

void TestAProfileSaving::aCrashLeavesTheOldFile()
{
    AProfile profile;
    profile.setId(QStringLiteral("p"));
    profile.setLabel(QString(1000000, QLatin1Char('x')), QString());
    const ProfileDir dir;
    const QString name = dir.path(QStringLiteral("a.profile"));
    QVERIFY(writeFile(name, rich()));
    const ChildResult result = inChild([&] {
        std::signal(SIGXFSZ, SIG_DFL); // the child is killed inside of the write
        const struct rlimit size = {5000, 5000};
        setrlimit(RLIMIT_FSIZE, &size);
        return profile.saveToFile(name) ? 1 : 0;
    });
    QCOMPARE(result.status, -1);
    QCOMPARE(readFile(name), rich());
}

void TestAProfileSaving::aReadOnlyDirectoryFails()
{
    const ProfileDir dir;
    const ProfilePtr profile = m_dir.read(rich());
    const QString name = dir.path(QStringLiteral("a.profile"));
    const QByteArray old = profileXml("<label>the old one</label>");
    QVERIFY(writeFile(name, old));
    QCOMPARE(chmod(qPrintable(name), 0644), 0);
    QCOMPARE(chmod(qPrintable(dir.path()), 0555), 0);
    const ChildResult result = inUnprivilegedChild([&] {
        const bool replaced = profile->saveToFile(name);
        const bool added = profile->saveToFile(dir.path(QStringLiteral("b.profile")));
        return (replaced ? 1 : 0) + (added ? 2 : 0);
    });
    QCOMPARE(chmod(qPrintable(dir.path()), 0755), 0);
    QCOMPARE(result.status, 0);
    QCOMPARE(readFile(name), old);
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("a.profile")});
}

void TestAProfileSaving::placesThatCannotHoldAFileFail()
{
    const ProfileDir dir;
    const ProfilePtr profile = m_dir.read(rich());
    const QString sub = dir.path(QStringLiteral("sub.profile"));
    QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("sub.profile")));
    QVERIFY(!profile->saveToFile(sub)); // an empty directory could be replaced by a rename
    QVERIFY(QFileInfo(sub).isDir());
    QVERIFY(writeFile(sub + QStringLiteral("/x"), "x"));
    QVERIFY(!profile->saveToFile(sub));
    QVERIFY(!profile->saveToFile(sub + QLatin1Char('/')));
    QCOMPARE(readFile(sub + QStringLiteral("/x")), QByteArray("x"));
    QVERIFY(!profile->saveToFile(QString()));
    QVERIFY(!profile->saveToFile(dir.path(QStringLiteral("missing/a.profile"))));
    QVERIFY(!QFile::exists(dir.path(QStringLiteral("missing"))));
    QVERIFY(!profile->saveToFile(sub + QStringLiteral("/x/a.profile"))); // below a file
    QVERIFY(!profile->saveToFile(dir.path(QString(300, QLatin1Char('n')))));
    const QString pipe = dir.path(QStringLiteral("pipe.profile"));
    QCOMPARE(mkfifo(qPrintable(pipe), 0600), 0);
    QVERIFY(!profile->saveToFile(pipe)); // it would become a plain file
    QVERIFY(!QFileInfo(pipe).isFile());
    QVERIFY(QFile::remove(pipe));
    QCOMPARE(QDir(dir.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{QStringLiteral("sub.profile")});
}

void TestAProfileSaving::savingLeavesNoOtherFile()
{
    const ProfileDir dir;
    const ProfilePtr profile = m_dir.read(rich());
    const QString name = dir.path(QStringLiteral("a.profile"));
    for (int i = 0; i < 3; ++i)
        QVERIFY(profile->saveToFile(name));
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("a.profile")});
}

void TestAProfileSaving::aNewFileIsWritten()
{
    const ProfileDir dir;
    const ProfilePtr profile = m_dir.read(rich());
    const QString old = QDir::currentPath();
    QVERIFY(QDir::setCurrent(dir.path()));
    const QStringList names = {QStringLiteral("relative.profile"), QString::fromUtf8("ü ö.profile"),
                               dir.path(QStringLiteral("absolute"))};
    for (const QString &name : names) {
        QVERIFY(profile->saveToFile(name));
        QCOMPARE(xmlEvents(readFile(name)), xmlEvents(rich()));
    }
    QVERIFY(QDir::setCurrent(old));
    QVERIFY(QFile::exists(dir.path(QStringLiteral("relative.profile"))));
}

QTEST_GUILESS_MAIN(TestAProfileSaving)
#include "tst_aprofile_saving.moc"
