#include "channel/achannelinfo.h"

#include "channel/channelxml.h"
#include "core/aprofile.h"
#include "core/asettings.h"

#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

using namespace channelxml;

namespace {

QByteArray profileSection(const QByteArray &body)
{
    return "<channels>" + body + "</channels>";
}

void setSection(AProfile *profile, const QByteArray &xml)
{
    QDomDocument document;
    document.setContent(xml);
    profile->setChannelData(document.documentElement());
}

// A profile of 100 to 200 MHz.
std::unique_ptr<AProfile> makeProfile(const QByteArray &section = QByteArray())
{
    auto profile = std::make_unique<AProfile>();
    profile->setId(QStringLiteral("plan"));
    profile->setRange(megahertz(100), megahertz(200));
    if (!section.isEmpty())
        setSection(profile.get(), section);
    return profile;
}

QVariant definitionValue(AChannelInfo *node, int index, const char *key)
{
    return node->channelDefinitions().value(index).value(QString::fromLatin1(key));
}

bool isInvalidColor(const QVariant &value)
{
    return value.userType() == QMetaType::QColor && !value.value<QColor>().isValid();
}

} // namespace

class TestAChannelInfoXmlProfile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanupTestCase();

    void nullAndInvalidProfilesAreRefused();
    void aProfileWithoutAChannelSectionIsOneNode();
    void theLanguageChoosesLabelAndComment();
    void theProfilesLabelReplacesTheSections();
    void aDescriptionOverridesTheSectionsComment();
    void showInChannelListMakesTheProfileSelectable();
    void theSectionsOwnEdgesOverrideTheProfiles();
    void theSectionsNameDoesNotMatter();
    void theSectionsTypeAndColorAreRead();
    void onlyTheProfilesOwnNodesBearItsId();
    void theProfileStaysAsItWas_data();
    void theProfileStaysAsItWas();
    void readingSucceedsEvenIfNothingIsMade();
    void profilesAreAppendedToTheParent();
    void aTextInFrontOfTheSectionsElementsDoesNotMatter();
    void deepRangesAreRead();

private:
    QTemporaryDir m_dir;
    std::unique_ptr<QSettings> m_settings;
};

void TestAChannelInfoXmlProfile::initTestCase()
{
    m_settings = std::make_unique<QSettings>(m_dir.filePath(QStringLiteral("test.ini")), QSettings::IniFormat);
    ASettings::setApplicationSettings(m_settings.get());
}

void TestAChannelInfoXmlProfile::init()
{
    m_settings->setValue(QStringLiteral("Application/Language"), QStringLiteral("de_AT"));
}

void TestAChannelInfoXmlProfile::cleanupTestCase()
{
    ASettings::setApplicationSettings(nullptr);
}

void TestAChannelInfoXmlProfile::nullAndInvalidProfilesAreRefused()
{
    const NodePtr root = makeRoot();
    QVERIFY(!AChannelInfo::fromProfile(nullptr, root.get(), true, true));
    AProfile invalid;
    invalid.setLabel(QStringLiteral("x"), QString());
    QVERIFY(!AChannelInfo::fromProfile(&invalid, root.get(), true, true));
    const auto backwards = makeProfile();
    backwards->setRange(megahertz(2), megahertz(1));
    QVERIFY(!AChannelInfo::fromProfile(backwards.get(), root.get(), false, false));
    QCOMPARE(root->childCount(), 0);
    QVERIFY(!AChannelInfo::fromProfile(nullptr, nullptr, true, true));
    QVERIFY(!AChannelInfo::fromProfile(&invalid, nullptr, true, true));
}

void TestAChannelInfoXmlProfile::aProfileWithoutAChannelSectionIsOneNode()
{
    const auto profile = makeProfile();
    profile->setShowInChannelList(false);
    profile->setLabel(QStringLiteral("Plan"), QString());
    for (bool expandMirrors : {false, true}) {
        for (bool expandAutoChannels : {false, true}) {
            const NodePtr root = makeRoot();
            QVERIFY(AChannelInfo::fromProfile(profile.get(), root.get(), expandMirrors, expandAutoChannels));
            QCOMPARE(root->childCount(), 1);
            AChannelInfo *node = root->child(0);
            QCOMPARE(node->parent(), root.get());
            QCOMPARE(node->type(), AChannelInfo::Generic);
            QCOMPARE(node->selectable(), false);
            QCOMPARE(node->beginFrequency(), megahertz(100));
            QCOMPARE(node->endFrequency(), megahertz(200));
            QCOMPARE(node->label(), QStringLiteral("Plan"));
            QCOMPARE(node->data(AChannelInfo::ColumnProfileId).toString(), QStringLiteral("plan"));
            QVERIFY(node->comment().isEmpty());
            QVERIFY(isInvalidColor(node->data(AChannelInfo::ColumnColor)));
            QVERIFY(node->channelDefinitions().isEmpty());
            QCOMPARE(node->data(AChannelInfo::ColumnMirrorEntryFreq).toLongLong(), 0LL);
            QCOMPARE(node->childCount(), 0);
        }
    }
}

void TestAChannelInfoXmlProfile::theLanguageChoosesLabelAndComment()
{
    const auto profile = makeProfile();
    profile->setLabel(QStringLiteral("Radio"), QString());
    profile->setLabel(QStringLiteral("Hörfunk"), QStringLiteral("de"));
    profile->setLabel(QStringLiteral("La radio"), QStringLiteral("fr"));
    profile->setDescription(QStringLiteral("Band 2"), QString());
    profile->setDescription(QStringLiteral("Bande 2"), QStringLiteral("fr"));
    const QList<QStringList> rows = {
        {QStringLiteral("de_AT"), QStringLiteral("Hörfunk"), QStringLiteral("Band 2")},
        {QStringLiteral("fr"), QStringLiteral("La radio"), QStringLiteral("Bande 2")},
        {QStringLiteral("it"), QStringLiteral("Radio"), QStringLiteral("Band 2")},
    };
    for (const QStringList &row : rows) {
        m_settings->setValue(QStringLiteral("Application/Language"), row.at(0));
        const NodePtr root = makeRoot();
        QVERIFY(AChannelInfo::fromProfile(profile.get(), root.get(), true, false));
        QCOMPARE(root->child(0)->label(), row.at(1));
        QCOMPARE(root->child(0)->comment(), row.at(2));
    }
}

void TestAChannelInfoXmlProfile::theProfilesLabelReplacesTheSections()
{
    const auto profile = makeProfile("<channels label=\"section\"><range label=\"below\"/></channels>");
    const NodePtr unnamed = makeRoot();
    QVERIFY(AChannelInfo::fromProfile(profile.get(), unnamed.get(), true, false));
    QCOMPARE(unnamed->child(0)->label(), QString()); // also where the profile has none
    QCOMPARE(unnamed->child(0)->child(0)->label(), QStringLiteral("below"));
    profile->setLabel(QStringLiteral("profile"), QString());
    const NodePtr named = makeRoot();
    QVERIFY(AChannelInfo::fromProfile(profile.get(), named.get(), true, false));
    QCOMPARE(named->child(0)->label(), QStringLiteral("profile"));
}

void TestAChannelInfoXmlProfile::aDescriptionOverridesTheSectionsComment()
{
    const auto profile = makeProfile("<channels><comment>section</comment><range><comment>below</comment></range>"
                                     "<comment>later</comment></channels>");
    const NodePtr without = makeRoot();
    QVERIFY(AChannelInfo::fromProfile(profile.get(), without.get(), true, false));
    QCOMPARE(without->child(0)->comment(), QStringLiteral("later"));
    profile->setDescription(QStringLiteral("profile"), QString());
    const NodePtr with = makeRoot();
    QVERIFY(AChannelInfo::fromProfile(profile.get(), with.get(), true, false));
    QCOMPARE(with->child(0)->comment(), QStringLiteral("profile"));
    QCOMPARE(with->child(0)->child(0)->comment(), QStringLiteral("below"));
}

void TestAChannelInfoXmlProfile::showInChannelListMakesTheProfileSelectable()
{
    for (const char *attribute : {"", " selectable=\"0\"", " selectable=\"1\"", " selectable=\"\""}) {
        const auto profile = makeProfile("<channels" + QByteArray(attribute) + "><range/></channels>");
        for (bool show : {false, true}) {
            profile->setShowInChannelList(show);
            const NodePtr root = makeRoot();
            QVERIFY(AChannelInfo::fromProfile(profile.get(), root.get(), true, false));
            QCOMPARE(root->child(0)->selectable(), show);
            QCOMPARE(root->child(0)->child(0)->selectable(), false);
        }
    }
}

void TestAChannelInfoXmlProfile::theSectionsOwnEdgesOverrideTheProfiles()
{
    const QList<QPair<QByteArray, QString>> rows = {
        {"<begin>120</begin>", QStringLiteral("120-200")},
        {"<end>180 MHz</end>", QStringLiteral("100-180")},
        {"<begin>120 MHz</begin><end>300</end>", QStringLiteral("120-300")},
        {"<!-- c -->text<begin>300</begin>", QStringLiteral("300-200")},
        {"<range label=\"a\"><begin>150</begin><end>160</end></range><begin>155</begin>",
         QStringLiteral("155-200 { a 150-160 }")},
    };
    for (const auto &row : rows) {
        const auto profile = makeProfile(profileSection(row.first));
        const NodePtr root = makeRoot();
        QVERIFY(AChannelInfo::fromProfile(profile.get(), root.get(), true, false));
        QCOMPARE(outline(root->child(0)), row.second);
    }
}

void TestAChannelInfoXmlProfile::theSectionsNameDoesNotMatter()
{
    QTemporaryDir dir;
    const QString name = dir.filePath(QStringLiteral("a.profile"));
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<profile id=\"p\"><begin>1</begin><end>9</end>"
               "<channels><range label=\"a\"><begin>2</begin><end>3</end></range></channels></profile>");
    file.close();
    const std::unique_ptr<AProfile> fromFile(AProfile::fromFile(name));
    const auto other = makeProfile("<plan><range label=\"a\"><begin>2</begin><end>3</end></range></plan>");
    other->setRange(megahertz(1), megahertz(9));
    for (AProfile *profile : {fromFile.get(), other.get()}) {
        const NodePtr root = makeRoot();
        QVERIFY(AChannelInfo::fromProfile(profile, root.get(), true, false));
        QCOMPARE(outline(root->child(0)), QStringLiteral("1-9 { a 2-3 }"));
    }
}

void TestAChannelInfoXmlProfile::theSectionsTypeAndColorAreRead()
{
    const auto profile = makeProfile("<channels type=\"Provider\"><color>red</color><channels/></channels>");
    const NodePtr root = makeRoot();
    QVERIFY(AChannelInfo::fromProfile(profile.get(), root.get(), true, false));
    AChannelInfo *node = root->child(0);
    QCOMPARE(node->type(), AChannelInfo::Provider);
    QCOMPARE(node->data(AChannelInfo::ColumnColor), QVariant(QStringLiteral("red")));
    QCOMPARE(definitionValue(node, 0, "start"), QVariant(QStringLiteral("100.000000 MHz")));
}

void TestAChannelInfoXmlProfile::onlyTheProfilesOwnNodesBearItsId()
{
    const auto profile = makeProfile("<channels><range label=\"a\"><range label=\"b\"/><mirror>10 MHz</mirror></range>"
                                     "<channels count=\"2\"/><mirror>200 MHz</mirror></channels>");
    const NodePtr root = makeRoot();
    QVERIFY(AChannelInfo::fromProfile(profile.get(), root.get(), true, true));
    QCOMPARE(root->childCount(), 2);
    const AChannelInfo::FlatList all = root->channels(0);
    QVERIFY(all.size() > 8);
    for (const auto &entry : all) {
        QCOMPARE(entry.first->data(AChannelInfo::ColumnProfileId).toString(),
                 entry.second == 1 ? QStringLiteral("plan") : QString());
    }
}

void TestAChannelInfoXmlProfile::theProfileStaysAsItWas_data()
{
    QTest::addColumn<bool>("expandMirrors");
    QTest::addColumn<bool>("expandAutoChannels");
    for (int flags = 0; flags < 4; ++flags)
        QTest::addRow("%d", flags) << bool(flags & 1) << bool(flags & 2);
}

void TestAChannelInfoXmlProfile::theProfileStaysAsItWas()
{
    QFETCH(bool, expandMirrors);
    QFETCH(bool, expandAutoChannels);
    const QByteArray section = "<channels label=\"own\" selectable=\"0\"><!-- c -->x<begin>110</begin><end>120</end>"
                               "<channels start=\"100 MHz\" count=\"3\"/><range><begin>112</begin><end>115</end>"
                               "<mirror>1 MHz</mirror></range><comment>c</comment><mirror>50 MHz</mirror></channels>";
    const auto profile = makeProfile(section);
    profile->setDescription(QStringLiteral("d"), QString());
    const QString before = textOf(profile->channelData());
    const QString documentBefore = textOf(profile->channelData().ownerDocument());
    const unsigned int flags = profile->flags();
    const NodePtr root = makeRoot();
    QVERIFY(AChannelInfo::fromProfile(profile.get(), root.get(), expandMirrors, expandAutoChannels));
    QCOMPARE(root->childCount(), expandMirrors ? 2 : 1);
    QCOMPARE(textOf(profile->channelData()), before);
    QCOMPARE(textOf(profile->channelData().ownerDocument()), documentBefore);
    QCOMPARE(profile->channelData().toElement().tagName(), QStringLiteral("channels"));
    QCOMPARE(profile->flags(), flags);
    QCOMPARE(profile->id(), QStringLiteral("plan"));

    // Reading again gives the same.
    const NodePtr again = makeRoot();
    QVERIFY(AChannelInfo::fromProfile(profile.get(), again.get(), expandMirrors, expandAutoChannels));
    QVERIFY(*again == *root);
}

void TestAChannelInfoXmlProfile::readingSucceedsEvenIfNothingIsMade()
{
    const auto profile = makeProfile("<channels><range/><mirror>10 MHz</mirror></channels>");
    QVERIFY(AChannelInfo::fromProfile(profile.get(), nullptr, true, true));
    const NodePtr below = makeRoot(megahertz(10), megahertz(100));
    QVERIFY(AChannelInfo::fromProfile(profile.get(), below.get(), true, true));
    QCOMPARE(below->childCount(), 0);
    const NodePtr above = makeRoot(megahertz(200), megahertz(300));
    QVERIFY(AChannelInfo::fromProfile(profile.get(), above.get(), false, true));
    QCOMPARE(above->childCount(), 0);
}

void TestAChannelInfoXmlProfile::profilesAreAppendedToTheParent()
{
    const NodePtr root = makeRoot();
    const auto first = makeProfile();
    const auto second = makeProfile("<channels><mirror>1 MHz</mirror></channels>");
    QVERIFY(AChannelInfo::fromProfile(first.get(), root.get(), true, false));
    AChannelInfo *kept = root->child(0);
    QVERIFY(AChannelInfo::fromProfile(second.get(), root.get(), true, false));
    QCOMPARE(root->childCount(), 3);
    QCOMPARE(root->child(0), kept);
    QCOMPARE(root->child(1)->beginFrequency(), megahertz(101));
    QCOMPARE(root->child(2)->beginFrequency(), megahertz(100));
}

void TestAChannelInfoXmlProfile::aTextInFrontOfTheSectionsElementsDoesNotMatter()
{
    for (const char *front : {"", "text", "<!-- c -->", "<![CDATA[x]]>", "<?x y?>"}) {
        const auto profile = makeProfile(profileSection(QByteArray(front) + "<channels/>"));
        const NodePtr root = makeRoot();
        QVERIFY(AChannelInfo::fromProfile(profile.get(), root.get(), true, false));
        QCOMPARE(outline(root->child(0)), QStringLiteral("100-200"));
        QCOMPARE(definitionValue(root->child(0), 0, "start"), QVariant(QStringLiteral("100.000000 MHz")));
    }
}

void TestAChannelInfoXmlProfile::deepRangesAreRead()
{
    QTemporaryDir dir;
    const QString name = dir.filePath(QStringLiteral("deep.profile"));
    constexpr int kLevels = 998; // below "profile" and "channels", to the depth that a file may have
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<profile id=\"p\"><channels>" + QByteArray("<range>").repeated(kLevels) +
               QByteArray("</range>").repeated(kLevels) + "</channels></profile>");
    file.close();
    const std::unique_ptr<AProfile> profile(AProfile::fromFile(name));
    QVERIFY(profile && profile->isValid());
    const NodePtr root = makeRoot();
    QVERIFY(AChannelInfo::fromProfile(profile.get(), root.get(), true, true));
    QCOMPARE(root->channels(0).last().second, kLevels + 1);
}

QTEST_GUILESS_MAIN(TestAChannelInfoXmlProfile)
#include "tst_achannelinfo_xml_profile.moc"
