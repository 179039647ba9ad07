#include "core/aprofile.h"

#include "core/profilefiles.h"

#include <QtCore/QDir>
#include <QtCore/QPointer>
#include <QtCore/QTextCodec>
#include <QtTest/QtTest>

#include <limits>

using namespace profilefiles;

namespace {

QStringList ids(const QList<AProfile *> &profiles)
{
    QStringList result;
    for (const AProfile *profile : profiles)
        result.append(profile ? profile->isValid() ? profile->id() : QStringLiteral("(invalid)")
                              : QStringLiteral("(null)"));
    return result;
}

} // namespace

class TestAProfile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDefaultProfileIsEmptyAndNotValid();
    void aProfileIsAnObjectOfItsParent();
    void everyPartOfAFileIsRead();
    void textsAreChosenByLanguage_data();
    void textsAreChosenByLanguage();
    void textsAreReadWhole_data();
    void textsAreReadWhole();
    void aNumberWithoutAUnitIsMegahertz_data();
    void aNumberWithoutAUnitIsMegahertz();
    void validNeedsAnIdAndAnOrderedRange_data();
    void validNeedsAnIdAndAnOrderedRange();
    void otherXmlIsNoProfile_data();
    void otherXmlIsNoProfile();
    void showInChannelListIsTrueUnlessTheFileSaysNo();
    void elementsBelowTheChannelSectionAreNotTheProfiles();
    void withoutAChannelSectionTheNodeIsNoElement();
    void derivedFollowsTheColonOfTheId_data();
    void derivedFollowsTheColonOfTheId();
    void sourceIsTheNameAsGiven();
    void encodingsOtherThanUtf8AreRead_data();
    void encodingsOtherThanUtf8AreRead();

    void aPathToAFileGivesThatFile();
    void aDirectoryGivesItsProfilesByName();
    void filesOfADirectoryHaveAbsoluteSources();
    void entriesThatCannotBeReadDisturbNoOthers();
    void aPathThatDoesNotExistGivesNoProfile();

private:
    ProfileDir m_dir;
};

void TestAProfile::aDefaultProfileIsEmptyAndNotValid()
{
    const AProfile profile;
    QVERIFY(!profile.isValid());
    QVERIFY(!profile.errorText().isEmpty());
    QCOMPARE(profile.flags(), 0u);
    QVERIFY(profile.source().isEmpty());
    QVERIFY(profile.id().isEmpty());
    QVERIFY(profile.label(QString()).isEmpty());
    QVERIFY(profile.description(QStringLiteral("de")).isEmpty());
    QVERIFY(profile.begin().isNull());
    QVERIFY(profile.end().isNull());
    QVERIFY(!profile.channelData().isElement());
    QVERIFY(profile.showInChannelList());
}

void TestAProfile::aProfileIsAnObjectOfItsParent()
{
    auto parent = std::make_unique<QObject>();
    QPointer<QObject> profile = new AProfile(parent.get());
    QCOMPARE(profile->parent(), parent.get());
    parent.reset();
    QVERIFY(profile.isNull());
}

void TestAProfile::everyPartOfAFileIsRead()
{
    const ProfilePtr profile = m_dir.read(kFmProfile);
    QVERIFY(profile);
    QVERIFY2(profile->isValid(), qPrintable(profile->errorText()));
    QVERIFY(profile->errorText().isEmpty());
    QVERIFY(!profile->parent());
    QCOMPARE(profile->flags(), 0u);
    QCOMPARE(profile->id(), QStringLiteral("fm-de"));
    QCOMPARE(profile->label(QString()), QStringLiteral("FM broadcast"));
    QCOMPARE(profile->label(QStringLiteral("de")), QStringLiteral("UKW-Rundfunk"));
    QCOMPARE(profile->description(QStringLiteral("en")), QStringLiteral("Band II"));
    QCOMPARE(profile->begin(), hertz(87500000));
    QCOMPARE(profile->end(), hertz(108000000));
    QVERIFY(profile->showInChannelList());

    const QDomElement section = profile->channelData().toElement();
    QCOMPARE(section.tagName(), QStringLiteral("channels"));
    QCOMPARE(section.firstChildElement(QStringLiteral("color")).text(), QStringLiteral("#3366cc"));
    const QDomElement run = section.firstChildElement(QStringLiteral("channels"));
    QCOMPARE(run.attribute(QStringLiteral("start")), QStringLiteral("87.6 MHz"));
    QCOMPARE(run.attribute(QStringLiteral("width")), QStringLiteral("200 kHz"));
    QCOMPARE(run.attribute(QStringLiteral("count")), QStringLiteral("102"));
    const QDomElement range = section.firstChildElement(QStringLiteral("range"));
    QCOMPARE(range.attribute(QStringLiteral("label")), QStringLiteral("Lower half"));
    QCOMPARE(range.firstChildElement(QStringLiteral("end")).text(), QStringLiteral("98 MHz"));
}

void TestAProfile::textsAreChosenByLanguage_data()
{
    QTest::addColumn<QByteArray>("elements"); // of the name @
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("text");
    const QByteArray all = "<@ lang=\"fr\">f</@><@ lang=\"de\">d</@><@>n</@><@ lang=\"de_AT\">a</@>";
    QTest::newRow("exact") << all << "de"
                           << "d";
    QTest::newRow("exact with country") << all << "de_AT"
                                        << "a";
    QTest::newRow("part before the underscore") << all << "de_CH"
                                                << "d";
    QTest::newRow("two underscores") << all << "de_CH_x"
                                     << "d";
    QTest::newRow("unknown") << all << "it"
                             << "n";
    QTest::newRow("unknown with country") << all << "it_IT"
                                          << "n";
    QTest::newRow("empty") << all << ""
                           << "n";
    const QByteArray named = "<@ lang=\"fr\">f</@><@ lang=\"de_AT\">a</@>";
    QTest::newRow("the first, nothing else fits") << named << "it"
                                                  << "f";
    QTest::newRow("the first, for no language") << named << ""
                                                << "f";
    QTest::newRow("a country is no substitute") << named << "de"
                                                << "f";
    QTest::newRow("another country neither") << named << "de_DE"
                                             << "f";
    QTest::newRow("a language that begins alike") << QByteArray("<@>n</@><@ lang=\"d\">x</@>") << "de"
                                                  << "n";
    QTest::newRow("alone, without language") << QByteArray("<@>n</@>") << "de_AT"
                                             << "n";
    QTest::newRow("none") << QByteArray() << "de"
                          << "";
}

void TestAProfile::textsAreChosenByLanguage()
{
    QFETCH(QByteArray, elements);
    QFETCH(QString, language);
    const ProfilePtr labels = m_dir.read(profileXml(QByteArray(elements).replace('@', "label")));
    QVERIFY(labels && labels->isValid());
    QTEST(labels->label(language), "text");
    QVERIFY(labels->description(language).isEmpty());
    const ProfilePtr descriptions = m_dir.read(profileXml(QByteArray(elements).replace('@', "description")));
    QVERIFY(descriptions && descriptions->isValid());
    QTEST(descriptions->description(language), "text");
    QVERIFY(descriptions->label(language).isEmpty());
}

void TestAProfile::textsAreReadWhole_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QString>("text");
    QTest::newRow("plain") << QByteArray("FM") << "FM";
    QTest::newRow("empty") << QByteArray() << "";
    QTest::newRow("predefined entities") << QByteArray("&lt;A &amp; B&gt;&quot;&apos;") << "<A & B>\"'";
    QTest::newRow("character references") << QByteArray("&#181;V &#x1F4E1;") << QString::fromUtf8("µV 📡");
    QTest::newRow("cdata") << QByteArray("<![CDATA[<b>&amp;]]>") << "<b>&amp;";
    QTest::newRow("text and cdata") << QByteArray("a<![CDATA[b]]>c") << "abc";
    QTest::newRow("comment inside") << QByteArray("FM<!-- or AM --> band") << "FM band";
    QTest::newRow("instruction inside") << QByteArray("FM<?x y?> band") << "FM band";
    QTest::newRow("utf-8") << QByteArray("Kanäle – ß") << QString::fromUtf8("Kanäle – ß");
}

void TestAProfile::textsAreReadWhole()
{
    QFETCH(QByteArray, xml);
    const ProfilePtr profile =
        m_dir.read(profileXml("<label>" + xml + "</label><description>" + xml + "</description>"));
    QVERIFY(profile && profile->isValid());
    QTEST(profile->label(QString()), "text");
    QTEST(profile->description(QString()), "text");
}

void TestAProfile::aNumberWithoutAUnitIsMegahertz_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<qint64>("hertz");
    QTest::newRow("no unit") << QByteArray("87.5") << qint64(87500000);
    QTest::newRow("no unit, whole") << QByteArray("100") << qint64(100000000);
    QTest::newRow("no unit, blanks") << QByteArray(" \n 88.5 \t") << qint64(88500000);
    QTest::newRow("no unit, negative") << QByteArray("-7.6") << qint64(-7600000);
    QTest::newRow("no unit, exponent") << QByteArray("1e3") << qint64(1000000000);
    QTest::newRow("no unit, every hertz") << QByteArray("2400.000001") << qint64(2400000001);
    QTest::newRow("hertz") << QByteArray("500 Hz") << qint64(500);
    QTest::newRow("kilohertz") << QByteArray("531 kHz") << qint64(531000);
    QTest::newRow("megahertz") << QByteArray("88.5 MHz") << qint64(88500000);
    QTest::newRow("gigahertz, comma") << QByteArray("2,4GHz") << qint64(2400000000);
    QTest::newRow("empty") << QByteArray() << qint64(0);
    QTest::newRow("no number") << QByteArray("low") << qint64(0);
    QTest::newRow("not a number") << QByteArray("nan") << qint64(0);
    QTest::newRow("infinite") << QByteArray("inf") << std::numeric_limits<qint64>::max();
    QTest::newRow("infinite, negative") << QByteArray("-inf") << std::numeric_limits<qint64>::min();
    QTest::newRow("beyond any double") << QByteArray("1e999") << std::numeric_limits<qint64>::max();
    QTest::newRow("unit alone") << QByteArray("MHz") << qint64(0);
    QTest::newRow("unknown unit") << QByteArray("5 THz") << qint64(0);
    QTest::newRow("unit of the wrong case") << QByteArray("5 mhz") << qint64(0);
}

void TestAProfile::aNumberWithoutAUnitIsMegahertz()
{
    QFETCH(QByteArray, text);
    QFETCH(qint64, hertz);
    QCOMPARE(AProfile::frequencyFromText(QString::fromLatin1(text)), profilefiles::hertz(hertz));
    const ProfilePtr profile = m_dir.read(profileXml("<begin>" + text + "</begin><end>" + text + "</end>"));
    QVERIFY(profile && profile->isValid());
    QCOMPARE(profile->begin(), profilefiles::hertz(hertz));
    QCOMPARE(profile->end(), profilefiles::hertz(hertz));
}

void TestAProfile::validNeedsAnIdAndAnOrderedRange_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<bool>("valid");
    QTest::newRow("id alone") << QByteArray("<profile id=\"p\"/>") << true;
    QTest::newRow("no id") << QByteArray("<profile/>") << false;
    QTest::newRow("empty id") << QByteArray("<profile id=\"\"/>") << false;
    QTest::newRow("id of another case") << QByteArray("<profile ID=\"p\"/>") << false;
    QTest::newRow("range") << profileXml("<begin>1 MHz</begin><end>2 MHz</end>") << true;
    QTest::newRow("end before begin in the file") << profileXml("<end>2 MHz</end><begin>1 MHz</begin>") << true;
    QTest::newRow("range of no width") << profileXml("<begin>1 MHz</begin><end>1000 kHz</end>") << true;
    QTest::newRow("end one hertz below") << profileXml("<begin>1 MHz</begin><end>999999 Hz</end>") << false;
    QTest::newRow("begin without end") << profileXml("<begin>1 MHz</begin>") << false;
    QTest::newRow("end without begin") << profileXml("<end>1 MHz</end>") << true;
    QTest::newRow("negative end") << profileXml("<end>-1 MHz</end>") << false;
    QTest::newRow("negative range") << profileXml("<begin>-2 MHz</begin><end>-1 MHz</end>") << true;
}

void TestAProfile::validNeedsAnIdAndAnOrderedRange()
{
    QFETCH(QByteArray, xml);
    QFETCH(bool, valid);
    const ProfilePtr profile = m_dir.read(xml);
    QVERIFY(profile);
    QCOMPARE(profile->isValid(), valid);
    QCOMPARE(profile->errorText().isEmpty(), valid);
}

void TestAProfile::otherXmlIsNoProfile_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::newRow("another root") << QByteArray("<data id=\"p\"/>");
    QTest::newRow("profile below another root") << QByteArray("<data><profile id=\"p\"/></data>");
    QTest::newRow("channel section alone") << QByteArray("<channels id=\"p\"><range/></channels>");
}

void TestAProfile::otherXmlIsNoProfile()
{
    QFETCH(QByteArray, xml);
    const ProfilePtr profile = m_dir.read(xml);
    QVERIFY(profile);
    QVERIFY(!profile->isValid());
    QVERIFY(!profile->errorText().isEmpty());
}

void TestAProfile::showInChannelListIsTrueUnlessTheFileSaysNo()
{
    QVERIFY(m_dir.read(profileXml({}))->showInChannelList());
    QVERIFY(m_dir.read(profileXml({}, "id=\"p\" showInChannelList=\"1\""))->showInChannelList());
    QVERIFY(!m_dir.read(profileXml({}, "id=\"p\" showInChannelList=\"0\""))->showInChannelList());
}

void TestAProfile::elementsBelowTheChannelSectionAreNotTheProfiles()
{
    const QByteArray inner = "<label>inner</label><description>inner</description><begin>1 MHz</begin><end>2 MHz</end>";
    const ProfilePtr profile = m_dir.read(
        profileXml("<other>" + inner + "</other><channels>" + inner + "</channels><label>own</label><end>9 MHz</end>"));
    QVERIFY(profile->isValid());
    QCOMPARE(profile->label(QString()), QStringLiteral("own"));
    QVERIFY(profile->description(QString()).isEmpty());
    QVERIFY(profile->begin().isNull());
    QCOMPARE(profile->end(), hertz(9000000));
    QCOMPARE(profile->channelData().firstChildElement(QStringLiteral("label")).text(), QStringLiteral("inner"));
}

void TestAProfile::withoutAChannelSectionTheNodeIsNoElement()
{
    QVERIFY(!m_dir.read(profileXml("<label>x</label>"))->channelData().isElement());
    QVERIFY(!m_dir.read(profileXml("<other><channels/></other>"))->channelData().isElement());
    QVERIFY(m_dir.read(profileXml("<channels/>"))->channelData().isElement());
}

void TestAProfile::derivedFollowsTheColonOfTheId_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<bool>("derived");
    QTest::newRow("no colon") << "fm-de" << false;
    QTest::newRow("base and suffix") << "fm-de:2" << true;
    QTest::newRow("empty suffix") << "fm-de:" << true;
    QTest::newRow("empty base") << ":2" << true;
    QTest::newRow("two colons") << "a:b:c" << true;
    QTest::newRow("semicolon") << "a;b" << false;
}

void TestAProfile::derivedFollowsTheColonOfTheId()
{
    QFETCH(QString, id);
    QFETCH(bool, derived);
    const unsigned int expected = derived ? 4 : 0;

    const ProfilePtr read = m_dir.read(profileXml({}, "id=\"" + id.toUtf8() + "\""));
    QVERIFY(read->isValid());
    QCOMPARE(read->flags(), expected);
    read->setFlags(0);
    QCOMPARE(read->flags(), expected);
    read->setFlags(AProfile::InstalledProfile | AProfile::DerivedProfile);
    QCOMPARE(read->flags(), AProfile::InstalledProfile | expected);
    read->setFlags(AProfile::UserProfile);
    QCOMPARE(read->flags(), AProfile::UserProfile | expected);

    read->setId(QStringLiteral("other"));
    QCOMPARE(read->flags() & AProfile::DerivedProfile, 0u);
    read->setId(id);
    QCOMPARE(read->flags() & AProfile::DerivedProfile, expected);
    QCOMPARE(read->flags() & AProfile::UserProfile, 2u);
}

void TestAProfile::sourceIsTheNameAsGiven()
{
    QVERIFY(writeFile(m_dir.path(QStringLiteral("source.profile")), kFmProfile));
    const QString old = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_dir.path()));
    const QStringList names = {QStringLiteral("source.profile"), QStringLiteral("./source.profile"),
                               m_dir.path() + QStringLiteral("//source.profile")};
    for (const QString &name : names) {
        const ProfilePtr profile(AProfile::fromFile(name));
        QVERIFY(profile);
        QCOMPARE(profile->source(), name);
        profile->setId(QStringLiteral("other"));
        QVERIFY(profile->saveToFile(m_dir.path(QStringLiteral("elsewhere.profile"))));
        QCOMPARE(profile->source(), name);
    }
    QVERIFY(QDir::setCurrent(old));

    const ProfilePtr broken = m_dir.read("no profile");
    QCOMPARE(broken->source(), m_dir.path(QStringLiteral("read.profile")));
}

void TestAProfile::encodingsOtherThanUtf8AreRead_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<QByteArray>("declared");
    QTest::addColumn<QString>("label");
    QTest::newRow("latin 1") << QByteArray("ISO-8859-1") << QByteArray("ISO-8859-1") << QString::fromUtf8("Kanäle µ");
    QTest::newRow("latin 9") << QByteArray("ISO-8859-15") << QByteArray("iso-8859-15") << QString::fromUtf8("5 €");
    QTest::newRow("cyrillic") << QByteArray("windows-1251") << QByteArray("windows-1251")
                              << QString::fromUtf8("Каналы");
    QTest::newRow("utf-16") << QByteArray("UTF-16") << QByteArray("UTF-16") << QString::fromUtf8("Kanäle 📡");
    QTest::newRow("utf-16, big end first")
        << QByteArray("UTF-16BE") << QByteArray("UTF-16") << QString::fromUtf8("Kanäle 📡");
    QTest::newRow("utf-8 with a mark") << QByteArray("UTF-8") << QByteArray("UTF-8") << QString::fromUtf8("Kanäle 📡");
}

void TestAProfile::encodingsOtherThanUtf8AreRead()
{
    QFETCH(QByteArray, codec);
    QFETCH(QByteArray, declared);
    QFETCH(QString, label);
    const QString xml = QStringLiteral("<?xml version=\"1.0\" encoding=\"%1\"?>\n"
                                       "<profile id=\"%2\"><label>%2</label><other name=\"%2\"/></profile>")
                            .arg(QString::fromLatin1(declared), label);
    const bool unicode = codec.startsWith("UTF");
    QTextCodec *const text = QTextCodec::codecForName(codec);
    QVERIFY(text);
    QTextEncoder encoder(text, unicode ? QTextCodec::DefaultConversion : QTextCodec::IgnoreHeader);
    QByteArray content = encoder.fromUnicode(xml);
    if (codec == "UTF-8" && !content.startsWith("\xef\xbb\xbf"))
        content.prepend("\xef\xbb\xbf");
    if (codec == "UTF-16BE" && !content.startsWith("\xfe\xff"))
        content.prepend("\xfe\xff");
    const ProfilePtr profile = m_dir.read(content);
    QVERIFY(profile);
    QVERIFY2(profile->isValid(), qPrintable(profile->errorText()));
    QCOMPARE(profile->id(), label);
    QCOMPARE(profile->label(QString()), label);

    const ProfilePtr again = m_dir.saved(*profile);
    QVERIFY(again && again->isValid());
    QCOMPARE(again->label(QString()), label);
}

// --- fromPath ---

void TestAProfile::aPathToAFileGivesThatFile()
{
    const QString name = m_dir.path(QStringLiteral("plan.xml")); // a file needs no ending
    QVERIFY(writeFile(name, kFmProfile));
    const QList<AProfile *> profiles = AProfile::fromPath(name);
    QCOMPARE(ids(profiles), QStringList{QStringLiteral("fm-de")});
    QCOMPARE(profiles.first()->source(), name);
    qDeleteAll(profiles);
}

void TestAProfile::aDirectoryGivesItsProfilesByName()
{
    const ProfileDir dir;
    const QStringList names = {
        QStringLiteral("b.profile"), QStringLiteral("a.profile"),    QStringLiteral("10.profile"),
        QStringLiteral("9.profile"), QStringLiteral("a b.profile"),  QStringLiteral("x.profile.bak"),
        QStringLiteral("x.xml"),     QStringLiteral("profile"),      QStringLiteral("y.profiles"),
        QStringLiteral("yprofile"),  QString::fromUtf8("ü.profile"), QStringLiteral("a.b.profile")};
    for (const QString &name : names)
        QVERIFY(writeFile(dir.path(name), profileXml({}, "id=\"" + name.toUtf8() + "\"")));
    QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("sub")));
    QVERIFY(writeFile(dir.path(QStringLiteral("sub/s.profile")), kFmProfile));
    QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("c.profile")));
    QVERIFY(writeFile(dir.path(QStringLiteral("c.profile/d.profile")), kFmProfile));

    QStringList expected;
    for (const QString &name : names) {
        if (name.endsWith(QLatin1String(".profile")))
            expected.append(name);
    }
    expected.sort();
    const QStringList paths = {dir.path(), dir.path() + QLatin1Char('/')};
    for (const QString &path : paths) {
        const QList<AProfile *> profiles = AProfile::fromPath(path);
        QCOMPARE(ids(profiles), expected);
        qDeleteAll(profiles);
    }

    const ProfileDir empty;
    QVERIFY(AProfile::fromPath(empty.path()).isEmpty());
}

void TestAProfile::filesOfADirectoryHaveAbsoluteSources()
{
    const ProfileDir dir;
    QVERIFY(writeFile(dir.path(QStringLiteral("a.profile")), kFmProfile));
    const QString old = QDir::currentPath();
    QVERIFY(QDir::setCurrent(dir.path()));
    const QString expected = QDir::currentPath() + QStringLiteral("/a.profile");
    for (const char *path : {".", "./", "../"}) {
        const QString name = QLatin1String(path) == QLatin1String("../")
                                 ? QStringLiteral("../") + QFileInfo(dir.path()).fileName()
                                 : QString::fromLatin1(path);
        const QList<AProfile *> profiles = AProfile::fromPath(name);
        QCOMPARE(profiles.size(), 1);
        const QString source = profiles.first()->source();
        qDeleteAll(profiles);
        QVERIFY2(QDir::isAbsolutePath(source), qPrintable(source));
        QCOMPARE(QDir::cleanPath(source), expected);
    }
    const QList<AProfile *> file = AProfile::fromPath(QStringLiteral("a.profile"));
    QCOMPARE(file.size(), 1);
    QCOMPARE(file.first()->source(), QStringLiteral("a.profile"));
    qDeleteAll(file);
    QVERIFY(QDir::setCurrent(old));
}

void TestAProfile::entriesThatCannotBeReadDisturbNoOthers()
{
    const ProfileDir dir;
    QVERIFY(QFile::setPermissions(dir.path(), QFile::Permissions(0x7755))); // others may look inside
    QVERIFY(writeFile(dir.path(QStringLiteral("a.profile")), kFmProfile));
    QVERIFY(writeFile(dir.path(QStringLiteral("b.profile")), "<profile id=\"cut"));
    QVERIFY(writeFile(dir.path(QStringLiteral("c.profile")), QByteArray()));
    QVERIFY(QFile::link(dir.path(QStringLiteral("gone")), dir.path(QStringLiteral("d.profile"))));
    QVERIFY(QFile::link(QStringLiteral("e.profile"), dir.path(QStringLiteral("e.profile")))); // a link to itself
    QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("f.profile")));
    QCOMPARE(mkfifo(qPrintable(dir.path(QStringLiteral("g.profile"))), 0644), 0);
    const QString secret = dir.path(QStringLiteral("h.profile"));
    QVERIFY(writeFile(secret, kFmProfile));
    QVERIFY(QFile::setPermissions(secret, QFile::Permissions()));
    QVERIFY(QFile::link(dir.path(QStringLiteral("a.profile")), dir.path(QStringLiteral("i.profile"))));
    QVERIFY(QFile::link(dir.path(QStringLiteral("f.profile")), dir.path(QStringLiteral("j.profile"))));
    QVERIFY(writeFile(dir.path(QStringLiteral("z.profile")), profileXml({}, "id=\"last\"")));

    // Whatever can't be read may be missing or null, but a file that can be opened is listed.
    const auto isAsExpected = [&dir] {
        const QList<AProfile *> profiles = AProfile::fromPath(dir.path());
        QStringList found = ids(profiles);
        qDeleteAll(profiles);
        found.removeAll(QStringLiteral("(null)"));
        return found == QStringList{QStringLiteral("fm-de"), QStringLiteral("(invalid)"), QStringLiteral("(invalid)"),
                                    QStringLiteral("fm-de"), QStringLiteral("last")};
    };
    const ChildResult result = inUnprivilegedChild([&] {
        alarm(60); // a reader that waits for the pipe must not hold up the test
        return isAsExpected() ? 0 : 1;
    });
    QCOMPARE(result.status, 0);
}

void TestAProfile::aPathThatDoesNotExistGivesNoProfile()
{
    for (const char *name : {"missing", "missing.profile", "missing/x.profile"}) {
        const QList<AProfile *> profiles = AProfile::fromPath(m_dir.path(QString::fromLatin1(name)));
        for (const AProfile *profile : profiles)
            QVERIFY(!profile);
    }
    const QList<AProfile *> unnamed = AProfile::fromPath(QString());
    for (const AProfile *profile : unnamed)
        QVERIFY(!profile);
}

QTEST_GUILESS_MAIN(TestAProfile)
#include "tst_aprofile.moc"
