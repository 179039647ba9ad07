#include "channel/achannelinfo.h"
#include "channel/knownchannels.h"
#include "core/aprofile.h"

#include <QtTest/QtTest>
#include <QtXml/QDomDocument>

#include <algorithm>
#include <cmath>
#include <memory>

// The band plans in examples/data/profiles, held against the channels of knownchannels.h.

namespace {

struct KnownProfile
{
    const char *file;
    int channels; // nodes without children, both directions of a duplex channel counted
    const char *source;
};

const KnownProfile kProfiles[] = {
    {"airband", 760 + 2280 + 1, "ICAO Annex 10 Volume V"},
    {"am-broadcast", 15 + 120, "GE75"},
    {"amateur-2m", 29 + 2 * 16, "IARU Region 1 VHF Handbook"},
    {"bluetooth-le", 40, "Bluetooth Core Specification"},
    {"cb-radio", 40 + 5, "ECC/DEC/(11)03"},
    {"dab-band-iii", 38 + 3, "GE06"},
    {"dect", 10, "ETSI EN 300 175-2"},
    {"fm-broadcast", 204, "BS.450"},
    {"fm-broadcast-us", 100, "47 CFR 73.201"},
    {"gsm-1800", 2 * 374, "3GPP TS 45.005"},
    {"gsm-900", 2 * (124 + 50 + 19), "3GPP TS 45.005"},
    {"ism-bands", 12, "ITU Radio Regulations"},
    {"lpd433", 69, "ERC Recommendation 70-03"},
    {"lte-band-20", 2 * 6, "3GPP TS 36.101"},
    {"lte-nr-fdd-bands", 2 * (12 + 15 + 14 + 7 + 9), "3GPP TS 38.101-1"},
    {"marine-vhf", 2 * 33 + 24 + 2, "ITU Radio Regulations Appendix 18"},
    {"pmr446", 16 + 32, "ECC/DEC/(15)05"},
    {"srd-868", 6 + 5, "ERC Recommendation 70-03"},
    {"uhf-television", 28, "GE06"},
    {"wlan-2g4", 14, "IEEE 802.11"},
    {"wlan-5g", 28, "IEEE 802.11"},
    {"wlan-6g", 24 + 12 + 6 + 3, "IEEE 802.11"},
};

QString directory()
{
    return QStringLiteral(AVELDORAN_EXAMPLES_DIR "/data/profiles/");
}

QString pathOf(const QString &file)
{
    return directory() + file + QLatin1String(".profile");
}

double hertz(const AFrequency &frequency)
{
    return frequency.floatValue(AFrequency::Hz);
}

double mirrorEntry(AChannelInfo *node)
{
    return node->data(AChannelInfo::ColumnMirrorEntryFreq).toDouble();
}

// A profile, and its plan below a root of its own.
struct Plan
{
    explicit Plan(const QString &file, bool expandMirrors = true)
        : profile(AProfile::fromFile(pathOf(file)))
        , root(nullptr, AChannelInfo::Generic, {}, {}, {}, false)
    {
        read = AChannelInfo::fromProfile(profile.get(), &root, expandMirrors, true);
    }

    AChannelInfo *top() { return root.child(0); }

    QList<AChannelInfo *> channels()
    {
        QList<AChannelInfo *> result;
        const AChannelInfo::FlatList nodes = root.channels(0);
        for (const auto &entry : nodes) {
            if (entry.first->childCount() == 0)
                result.append(entry.first);
        }
        return result;
    }

    // In rising frequency. Both directions of a duplex channel bear the same name.
    QList<AChannelInfo *> channelsNamed(const QString &group, const QString &label)
    {
        QList<AChannelInfo *> result;
        const QList<AChannelInfo *> all = channels();
        for (AChannelInfo *channel : all) {
            const QString groupLabel = channel->parent() == top() ? QString() : channel->parent()->label();
            if (groupLabel == group && channel->label() == label)
                result.append(channel);
        }
        std::sort(result.begin(), result.end(), [](const AChannelInfo *a, const AChannelInfo *b) {
            return a->beginFrequency() < b->beginFrequency();
        });
        return result;
    }

    std::unique_ptr<AProfile> profile;
    AChannelInfo root;
    bool read;
};

QString describe(const AChannelInfo *node)
{
    return node->name(true);
}

} // namespace

class TestExampleProfiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFileOfTheDirectoryIsKnownHere();
    void idsAreUnique();
    void profilesAreReadWithTheirTexts_data() { profileColumns(); }
    void profilesAreReadWithTheirTexts();
    void bothLanguagesAreWrittenOut_data() { profileColumns(); }
    void bothLanguagesAreWrittenOut();
    void thePlanIsComplete_data() { profileColumns(); }
    void thePlanIsComplete();
    void everyChannelLiesInItsRange_data() { profileColumns(); }
    void everyChannelLiesInItsRange();
    void everyRangeHasAColour_data() { profileColumns(); }
    void everyRangeHasAColour();
    void channelsHaveTheEdgesOfThePublicPlan_data();
    void channelsHaveTheEdgesOfThePublicPlan();
    void rangesHaveTheEdgesOfThePublicPlan_data() { KnownChannels::addRanges(); }
    void rangesHaveTheEdgesOfThePublicPlan();
    void mirrorsLieAtTheDuplexDistance_data();
    void mirrorsLieAtTheDuplexDistance();
    void airbandChannelsDoNotOverlap();

private:
    void profileColumns();
};

void TestExampleProfiles::profileColumns()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("channels");
    QTest::addColumn<QString>("source");
    for (const KnownProfile &known : kProfiles)
        QTest::newRow(known.file) << QString::fromLatin1(known.file) << known.channels
                                  << QString::fromLatin1(known.source);
}

void TestExampleProfiles::everyFileOfTheDirectoryIsKnownHere()
{
    QStringList known;
    for (const KnownProfile &profile : kProfiles)
        known.append(QLatin1String(profile.file) + QLatin1String(".profile"));
    known.sort();
    QStringList found = QDir(directory()).entryList({QStringLiteral("*.profile")}, QDir::Files);
    found.sort();
    QCOMPARE(found, known);
}

void TestExampleProfiles::idsAreUnique()
{
    const QList<AProfile *> profiles = AProfile::fromPath(directory());
    QSet<QString> ids;
    for (AProfile *profile : profiles)
        ids.insert(profile->id());
    const int count = profiles.size();
    qDeleteAll(profiles);
    QCOMPARE(count, int(std::size(kProfiles)));
    QCOMPARE(ids.size(), count);
}

void TestExampleProfiles::profilesAreReadWithTheirTexts()
{
    QFETCH(QString, file);
    QFETCH(QString, source);
    const std::unique_ptr<AProfile> profile(AProfile::fromFile(pathOf(file)));
    QVERIFY(profile);
    QVERIFY(profile->isValid());
    QCOMPARE(profile->id(), file);
    QCOMPARE(profile->flags(), 0U);
    QVERIFY(profile->showInChannelList());
    QVERIFY(profile->begin() < profile->end());
    for (const char *language : {"en", "de", "de_AT", "fr", ""})
        QVERIFY2(!profile->label(QLatin1String(language)).isEmpty(), language);
    const QString english = profile->description(QStringLiteral("en"));
    const QString german = profile->description(QStringLiteral("de"));
    QVERIFY(english != german);
    QVERIFY2(english.contains(QLatin1String("Source")), qPrintable(english));
    QVERIFY2(german.contains(QLatin1String("Quelle")), qPrintable(german));
    QVERIFY2(english.contains(source), qPrintable(english));
    QVERIFY2(german.contains(source), qPrintable(german));
}

void TestExampleProfiles::bothLanguagesAreWrittenOut()
{
    QFETCH(QString, file);
    QFile device(pathOf(file));
    QVERIFY(device.open(QIODevice::ReadOnly));
    QDomDocument document;
    QVERIFY(document.setContent(&device));
    for (const QString &tag : {QStringLiteral("label"), QStringLiteral("description")}) {
        QStringList languages;
        for (QDomElement text = document.documentElement().firstChildElement(tag); !text.isNull();
             text = text.nextSiblingElement(tag)) {
            QVERIFY(!text.text().trimmed().isEmpty());
            languages.append(text.attribute(QStringLiteral("lang")));
        }
        QCOMPARE(languages, QStringList({QStringLiteral("en"), QStringLiteral("de")}));
    }
}

void TestExampleProfiles::thePlanIsComplete()
{
    QFETCH(QString, file);
    QFETCH(int, channels);
    Plan plan(file);
    QVERIFY(plan.read);
    QCOMPARE(plan.root.childCount(), 1);
    QCOMPARE(plan.top()->label(), plan.profile->label({}));
    QCOMPARE(plan.top()->beginFrequency(), plan.profile->begin());
    QCOMPARE(plan.top()->endFrequency(), plan.profile->end());
    QCOMPARE(plan.channels().size(), channels);
}

void TestExampleProfiles::everyChannelLiesInItsRange()
{
    QFETCH(QString, file);
    Plan plan(file);
    QVERIFY(plan.read);
    const AChannelInfo::FlatList nodes = plan.root.channels(0);
    for (const auto &entry : nodes) {
        const AChannelInfo *node = entry.first;
        if (node == &plan.root)
            continue;
        QVERIFY2(node->beginFrequency() < node->endFrequency(), qPrintable(describe(node)));
        QVERIFY2(node->beginFrequency() >= plan.top()->beginFrequency(), qPrintable(describe(node)));
        QVERIFY2(node->endFrequency() <= plan.top()->endFrequency(), qPrintable(describe(node)));

        // These two cross the edge of their U-NII sub-band by definition.
        const bool crossesEdge = file == QLatin1String("wlan-5g") &&
                                 (node->label() == QLatin1String("144") || node->label() == QLatin1String("169"));
        const AChannelInfo *parent = node->parent();
        if (node == plan.top() || crossesEdge)
            continue;
        QVERIFY2(node->beginFrequency() >= parent->beginFrequency(), qPrintable(describe(node)));
        QVERIFY2(node->endFrequency() <= parent->endFrequency(), qPrintable(describe(node)));
    }
}

void TestExampleProfiles::everyRangeHasAColour()
{
    QFETCH(QString, file);
    Plan plan(file);
    QVERIFY(plan.read);
    const QList<AChannelInfo *> channels = plan.channels();
    for (AChannelInfo *channel : channels) {
        QVERIFY2(channel->color().isValid(), qPrintable(describe(channel)));
        if (channel->parent() != plan.top())
            QVERIFY2(channel->parent()->color().isValid(), qPrintable(describe(channel->parent())));
    }
}

void TestExampleProfiles::channelsHaveTheEdgesOfThePublicPlan_data()
{
    KnownChannels::addColumns();
    KnownChannels::addBroadcasting();
    KnownChannels::addMobile();
    KnownChannels::addVoice();
    KnownChannels::addLicenceFree();
}

void TestExampleProfiles::channelsHaveTheEdgesOfThePublicPlan()
{
    QFETCH(QString, file);
    QFETCH(QString, group);
    QFETCH(QString, label);
    QFETCH(QList<double>, begins);
    QFETCH(QList<double>, ends);
    QFETCH(double, tolerance);
    Plan plan(file);
    QVERIFY(plan.read);
    const QList<AChannelInfo *> channels = plan.channelsNamed(group, label);
    QCOMPARE(channels.size(), begins.size());
    for (int i = 0; i < channels.size(); ++i) {
        const double begin = hertz(channels.at(i)->beginFrequency());
        const double end = hertz(channels.at(i)->endFrequency());
        QVERIFY2(std::abs(begin - begins.at(i)) <= tolerance, qPrintable(QString::number(begin, 'f', 3)));
        QVERIFY2(std::abs(end - ends.at(i)) <= tolerance, qPrintable(QString::number(end, 'f', 3)));
    }
}

void TestExampleProfiles::rangesHaveTheEdgesOfThePublicPlan()
{
    QFETCH(QString, file);
    QFETCH(QString, label);
    QFETCH(double, begin);
    QFETCH(double, end);
    Plan plan(file, false);
    QVERIFY(plan.read);
    const AChannelInfo *range = nullptr;
    if (label.isEmpty())
        range = plan.top();
    for (int i = 0; i < plan.top()->childCount() && !range; ++i) {
        if (plan.top()->child(i)->label() == label)
            range = plan.top()->child(i);
    }
    QVERIFY(range);
    QVERIFY(range->childCount() > 0);
    QCOMPARE(hertz(range->beginFrequency()), begin);
    QCOMPARE(hertz(range->endFrequency()), end);
}

void TestExampleProfiles::mirrorsLieAtTheDuplexDistance_data()
{
    using namespace KnownChannels;
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("label");
    QTest::addColumn<double>("begin");
    QTest::addColumn<double>("distance");
    QTest::addColumn<int>("channels");
    const auto row = [](const char *file, const char *label, double begin, double distance, int channels) {
        QTest::addRow("%s, %s", file, label)
            << QString::fromLatin1(file) << QString::fromLatin1(label) << begin << distance << channels;
    };
    row("gsm-900", "P-GSM", 890 * MHz, 45 * MHz, 124);
    row("gsm-900", "E-GSM extension", 880 * MHz, 45 * MHz, 50);
    row("gsm-900", "GSM-R", 876 * MHz, 45 * MHz, 19);
    row("gsm-1800", "DCS 1800", 1710 * MHz, 95 * MHz, 374);
    row("lte-band-20", "Band 20", 832 * MHz, -41 * MHz, 6);
    row("lte-nr-fdd-bands", "Band 1", 1920 * MHz, 190 * MHz, 12);
    row("lte-nr-fdd-bands", "Band 3", 1710 * MHz, 95 * MHz, 15);
    row("lte-nr-fdd-bands", "Band 7", 2500 * MHz, 120 * MHz, 14);
    row("lte-nr-fdd-bands", "Band 8", 880 * MHz, 45 * MHz, 7);
    row("lte-nr-fdd-bands", "Band 28", 703 * MHz, 55 * MHz, 9);
    row("marine-vhf", "Duplex 1-7, 60-66", 156'012'500, 4'600 * kHz, 13);
    row("marine-vhf", "Duplex 18-28, 78-86", 156'887'500, 4'600 * kHz, 20);
    row("amateur-2m", "FM repeaters (RV)", 145'593'750, -600 * kHz, 16);
}

void TestExampleProfiles::mirrorsLieAtTheDuplexDistance()
{
    QFETCH(QString, file);
    QFETCH(QString, label);
    QFETCH(double, begin);
    QFETCH(double, distance);
    QFETCH(int, channels);
    const auto rangesNamed = [&label](AChannelInfo *top) {
        QList<AChannelInfo *> result;
        for (int i = 0; i < top->childCount(); ++i) {
            if (top->child(i)->label() == label)
                result.append(top->child(i));
        }
        return result;
    };

    Plan compact(file, false);
    QVERIFY(compact.read);
    const QList<AChannelInfo *> single = rangesNamed(compact.top());
    QCOMPARE(single.size(), 1);
    QCOMPARE(hertz(single.first()->beginFrequency()), begin);
    QCOMPARE(mirrorEntry(single.first()), begin + distance);

    Plan plan(file);
    QVERIFY(plan.read);
    const QList<AChannelInfo *> pair = rangesNamed(plan.top());
    QCOMPARE(pair.size(), 2);
    AChannelInfo *copy = pair.first();
    AChannelInfo *original = pair.last();
    QCOMPARE(hertz(original->beginFrequency()), begin);
    QCOMPARE(hertz(copy->beginFrequency()), begin + distance);
    QCOMPARE(hertz(copy->endFrequency()), hertz(original->endFrequency()) + distance);
    QCOMPARE(original->childCount(), channels);
    QCOMPARE(copy->childCount(), channels);
    for (int i = 0; i < channels; ++i) {
        QCOMPARE(copy->child(i)->label(), original->child(i)->label());
        QCOMPARE(hertz(copy->child(i)->beginFrequency()), hertz(original->child(i)->beginFrequency()) + distance);
        QCOMPARE(hertz(copy->child(i)->endFrequency()), hertz(original->child(i)->endFrequency()) + distance);
    }
}

void TestExampleProfiles::airbandChannelsDoNotOverlap()
{
    Plan plan(QStringLiteral("airband"));
    QVERIFY(plan.read);
    const AChannelInfo *group = plan.root.findByName(QStringLiteral("8.33 kHz"));
    QVERIFY(group);
    QCOMPARE(group->childCount(), 2280);
    const AChannelInfo::FlatList stacked = group->stackedChannels(0);
    QCOMPARE(stacked.size(), 1 + group->childCount());
    for (int i = 1; i < stacked.size(); ++i)
        QCOMPARE(stacked.at(i).second, 1);
}

QTEST_APPLESS_MAIN(TestExampleProfiles)
#include "tst_exampleprofiles.moc"
