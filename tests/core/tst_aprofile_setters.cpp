#include "core/aprofile.h"

#include "core/profilefiles.h"

#include <QtCore/QTextStream>
#include <QtTest/QtTest>

using namespace profilefiles;

namespace {

QDomDocument document(const QByteArray &xml)
{
    QDomDocument parsed;
    parsed.setContent(xml, true);
    return parsed;
}

} // namespace

class TestAProfileSetters : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void settersStoreAndSetTheModifiedBit();
    void settingTheSameValueCountsAsAChange();
    void settingATextTouchesThatLanguageAlone();
    void channelDataIsCopiedUnderItsOwnName();
    void channelDataMayComeFromTheProfileItself();
    void aSectionNestedTooDeepIsRefused_data();
    void aSectionNestedTooDeepIsRefused();
    void settersMakeAnInvalidProfileValidAndBack();

private:
    ProfileDir m_dir;
};

void TestAProfileSetters::settersStoreAndSetTheModifiedBit()
{
    using Setter = std::function<void(AProfile &)>;
    const QList<Setter> setters = {
        [](AProfile &p) { p.setId(QStringLiteral("new:1")); },
        [](AProfile &p) { p.setLabel(QStringLiteral("L"), QStringLiteral("de")); },
        [](AProfile &p) { p.setDescription(QStringLiteral("D"), QString()); },
        [](AProfile &p) { p.setRange(hertz(100), hertz(200)); },
        [](AProfile &p) { p.setChannelData(document("<channels><range/></channels>").documentElement()); },
        [](AProfile &p) { p.setShowInChannelList(false); },
    };
    AProfile all;
    for (const Setter &set : setters) {
        AProfile one;
        set(one);
        QVERIFY(one.flags() & AProfile::ModifiedProfile);
        const ProfilePtr read = m_dir.read(kFmProfile);
        read->setFlags(AProfile::UserProfile);
        set(*read);
        QCOMPARE(read->flags() & ~4u, AProfile::UserProfile | AProfile::ModifiedProfile);
        read->setFlags(AProfile::UserProfile);
        QCOMPARE(read->flags() & AProfile::ModifiedProfile, 0u);
        set(all);
    }
    QVERIFY(all.isValid());
    QCOMPARE(all.flags(), 0x1004u);
    QCOMPARE(all.id(), QStringLiteral("new:1"));
    QCOMPARE(all.label(QStringLiteral("de")), QStringLiteral("L"));
    QCOMPARE(all.description(QStringLiteral("de")), QStringLiteral("D"));
    QCOMPARE(all.begin(), hertz(100));
    QCOMPARE(all.end(), hertz(200));
    QCOMPARE(all.channelData().childNodes().size(), 1);
    QVERIFY(!all.showInChannelList());
    all.setShowInChannelList(true);
    QVERIFY(all.showInChannelList());
    QVERIFY(all.source().isEmpty());
}

void TestAProfileSetters::settingTheSameValueCountsAsAChange()
{
    const ProfilePtr profile = m_dir.read(kFmProfile);
    profile->setId(profile->id());
    QCOMPARE(profile->flags(), 0x1000u);
    profile->setFlags(0);
    profile->setShowInChannelList(true);
    QCOMPARE(profile->flags(), 0x1000u);
    profile->setFlags(0);
    profile->setRange(profile->begin(), profile->end());
    QCOMPARE(profile->flags(), 0x1000u);
    profile->setFlags(0);
    profile->setLabel(profile->label(QString()), QString());
    QCOMPARE(profile->flags(), 0x1000u);
}

void TestAProfileSetters::settingATextTouchesThatLanguageAlone()
{
    const ProfilePtr profile = m_dir.read(kFmProfile);
    const QString none;
    const QString german = QStringLiteral("de");
    const QString austrian = QStringLiteral("de_AT");
    profile->setLabel(QStringLiteral("Hörfunk"), german);
    QCOMPARE(profile->label(german), QStringLiteral("Hörfunk"));
    QCOMPARE(profile->label(austrian), QStringLiteral("Hörfunk"));
    QCOMPARE(profile->label(none), QStringLiteral("FM broadcast"));
    profile->setLabel(QStringLiteral("Radio"), austrian);
    QCOMPARE(profile->label(german), QStringLiteral("Hörfunk"));
    QCOMPARE(profile->label(austrian), QStringLiteral("Radio"));
    profile->setLabel(QStringLiteral("Broadcast"), none);
    QCOMPARE(profile->label(none), QStringLiteral("Broadcast"));
    QCOMPARE(profile->label(QStringLiteral("en")), QStringLiteral("Broadcast"));
    QCOMPARE(profile->label(austrian), QStringLiteral("Radio"));
    QCOMPARE(profile->description(none), QStringLiteral("Band II"));
    profile->setDescription(QStringLiteral("Band 2"), none);
    QCOMPARE(profile->description(none), QStringLiteral("Band 2"));
    QCOMPARE(profile->description(QStringLiteral("en")), QStringLiteral("Band II"));

    QByteArray content;
    const ProfilePtr again = m_dir.saved(*profile, &content);
    QVERIFY(again && again->isValid());
    QCOMPARE(content.count("<label"), 3);
    QCOMPARE(content.count("<description"), 2);
    QCOMPARE(again->label(none), QStringLiteral("Broadcast"));
    QCOMPARE(again->label(german), QStringLiteral("Hörfunk"));
    QCOMPARE(again->label(austrian), QStringLiteral("Radio"));
    QCOMPARE(again->description(none), QStringLiteral("Band 2"));
}

void TestAProfileSetters::channelDataIsCopiedUnderItsOwnName()
{
    const ProfilePtr profile = m_dir.read(kFmProfile);
    const QDomDocument owner = document("<plan a=\"1\"><range label=\"x\"><plan/></range><!-- c --></plan>");
    QDomElement plan = owner.documentElement();
    profile->setChannelData(plan);
    const QString expected =
        QStringLiteral("<channels a=\"1\"><range label=\"x\"><plan/></range><!-- c --></channels>");
    const auto text = [](const AProfile &from) {
        QString xml;
        QTextStream stream(&xml);
        from.channelData().save(stream, -1);
        return xml.remove(QLatin1Char('\n'));
    };
    QCOMPARE(text(*profile), expected);
    QCOMPARE(plan.tagName(), QStringLiteral("plan"));
    plan.setAttribute(QStringLiteral("a"), 2);
    plan.removeChild(plan.firstChild());
    QCOMPARE(text(*profile), expected);

    QByteArray content;
    const ProfilePtr again = m_dir.saved(*profile, &content);
    QVERIFY(again && again->isValid());
    QCOMPARE(content.count("<channels"), 1); // the old section is gone
    QCOMPARE(text(*again).remove(QLatin1Char(' ')), QString(expected).remove(QLatin1Char(' ')));

    profile->setChannelData(QDomElement());
    QVERIFY(!profile->channelData().isElement());
    QVERIFY(!m_dir.saved(*profile)->channelData().isElement());
}

void TestAProfileSetters::channelDataMayComeFromTheProfileItself()
{
    const ProfilePtr profile = m_dir.read(kFmProfile);
    profile->setChannelData(profile->channelData().toElement());
    QCOMPARE(profile->channelData().childNodes().size(), 3);
    profile->setChannelData(profile->channelData().firstChildElement(QStringLiteral("range")));
    const QDomElement section = profile->channelData().toElement();
    QCOMPARE(section.tagName(), QStringLiteral("channels"));
    QCOMPARE(section.attribute(QStringLiteral("label")), QStringLiteral("Lower half"));
    QCOMPARE(section.text(), QStringLiteral("98 MHz"));
    profile->setChannelData(section.ownerDocument().documentElement()); // the whole profile as its own section
    const ProfilePtr again = m_dir.saved(*profile);
    QVERIFY(again && again->isValid());
    QCOMPARE(again->channelData().firstChildElement(QStringLiteral("channels")).text(), QStringLiteral("98 MHz"));
}

void TestAProfileSetters::aSectionNestedTooDeepIsRefused_data()
{
    QTest::addColumn<int>("depth");
    QTest::addColumn<bool>("isTaken");
    QTest::newRow("1") << 1 << true;
    QTest::newRow("999") << 999 << true;
    QTest::newRow("1000") << 1000 << false;
    QTest::newRow("5000") << 5000 << false;
}

void TestAProfileSetters::aSectionNestedTooDeepIsRefused()
{
    QFETCH(int, depth);
    QFETCH(bool, isTaken);
    const QString name = m_dir.path(QStringLiteral("deep.profile"));
    AProfile profile;
    profile.setId(QStringLiteral("p"));
    QDomDocument document = nestedSection(1);
    document.documentElement().setAttribute(QStringLiteral("old"), 1);
    profile.setChannelData(document.documentElement());
    QVERIFY(profile.saveToFile(name));

    QDomDocument deep = nestedSection(depth);
    deep.documentElement().appendChild(deep.createElement(QStringLiteral("flat"))); // the way back up leads to it
    profile.setFlags(0);
    profile.setChannelData(deep.documentElement());
    QCOMPARE(profile.flags(), static_cast<unsigned int>(AProfile::ModifiedProfile));
    QCOMPARE(profile.channelData().toElement().hasAttribute(QStringLiteral("old")), !isTaken);
    QCOMPARE(profile.saveToFile(name), isTaken);
    profile.setChannelData(document.documentElement());
    QVERIFY(profile.saveToFile(name));
}

void TestAProfileSetters::settersMakeAnInvalidProfileValidAndBack()
{
    const ProfilePtr profile = m_dir.read("<profile><begin>5 MHz</begin><other/></profile>");
    QVERIFY(!profile->isValid());
    profile->setId(QStringLiteral("p"));
    QVERIFY(!profile->isValid());
    profile->setRange(hertz(5), hertz(5));
    QVERIFY(profile->isValid());
    QVERIFY(profile->errorText().isEmpty());
    const ProfilePtr again = m_dir.saved(*profile);
    QVERIFY(again && again->isValid());
    QCOMPARE(again->begin(), hertz(5));
    profile->setRange(hertz(6), hertz(5));
    QVERIFY(!profile->isValid());
    QVERIFY(!profile->errorText().isEmpty());
    profile->setRange(hertz(-6), hertz(-5));
    QVERIFY(profile->isValid());
    profile->setId(QString());
    QVERIFY(!profile->isValid());
}

QTEST_GUILESS_MAIN(TestAProfileSetters)
#include "tst_aprofile_setters.moc"
