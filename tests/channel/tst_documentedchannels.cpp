#include "channel/achannelinfo.h"
#include "core/aprofile.h"

#include "channel/channelxml.h"
#include "channel/efisfiles.h"
#include "core/documentedfiles.h"

#include <QtTest/QtTest>

#include <memory>

// The examples of the channel plan's files in docs/formats.md give what their text says.

class TestDocumentedChannels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theProfileIsRead();
    void theChannelSectionIsRead();
    void theExportIsRead();
};

void TestDocumentedChannels::theProfileIsRead()
{
    const QList<QByteArray> files = documentedFiles("Profile files");
    QCOMPARE(files.size(), 1);
    QTemporaryFile file;
    QVERIFY(file.open());
    file.write(files.first());
    QVERIFY(file.flush());
    const std::unique_ptr<AProfile> profile(AProfile::fromFile(file.fileName()));
    QVERIFY(profile && profile->isValid());
    QCOMPARE(profile->id(), QStringLiteral("fm-de"));
    QCOMPARE(profile->label(QStringLiteral("de_AT")), QStringLiteral("UKW-Rundfunk"));
    QCOMPARE(profile->label(QStringLiteral("fr")), QStringLiteral("FM broadcast"));
    QCOMPARE(profile->description(QStringLiteral("fr")), QStringLiteral("Band II"));
    QVERIFY(profile->showInChannelList());

    channelxml::Reading reading;
    reading.root = channelxml::makeRoot();
    QVERIFY(AChannelInfo::fromProfile(profile.get(), reading.root.get(), true, false));
    AChannelInfo *band = reading.only();
    QVERIFY(band);
    QCOMPARE(band->color(), QColor(0x33, 0x66, 0xcc));
    QCOMPARE(band->beginFrequency(), AFrequency("87.5 MHz"));
    QCOMPARE(band->definedChannelCount(), 102);
    QCOMPARE(band->childCount(), 1);
    QCOMPARE(channelxml::outline(band->child(0)), QStringLiteral("Lower half 0-98"));
    QCOMPARE(band->child(0)->type(), AChannelInfo::Provider);
}

void TestDocumentedChannels::theChannelSectionIsRead()
{
    const QList<QByteArray> files = documentedFiles("Channel sections");
    QCOMPARE(files.size(), 1);
    QByteArray section = files.first();
    section.replace(0, 9, "<range>").replace(section.lastIndexOf("</channels>"), 11, "</range>");
    const channelxml::Reading reading = channelxml::read(section);
    QVERIFY(reading.only());
    QCOMPARE(channelxml::outline(reading.only()),
             QStringLiteral("0-0 { Uplink 935-960, Uplink 890-915 { Operator A 890-900 } }"));
    AChannelInfo *uplink = reading.only()->child(1);
    QCOMPARE(uplink->type(), AChannelInfo::Direction);
    QVERIFY(uplink->selectable());
    QCOMPARE(uplink->comment(), QStringLiteral("mobile to base"));
    QCOMPARE(uplink->definedChannelCount(), 124);
    QVERIFY(!uplink->child(0)->selectable());
}

void TestDocumentedChannels::theExportIsRead()
{
    const QList<QByteArray> files = documentedFiles("EFIS exports");
    QCOMPARE(files.size(), 1);
    QCOMPARE(efisfiles::outline(efisfiles::importFrom(files.first())),
             QStringLiteral("87.5-960 { UKW-Hörfunk 87.5-108, Uplink 890-915 { GSM 900 890-915 }, "
                            "Downlink 935-960 { GSM 900 935-960 } }"));
}

QTEST_GUILESS_MAIN(TestDocumentedChannels)
#include "tst_documentedchannels.moc"
