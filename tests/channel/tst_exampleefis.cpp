#include "channel/achannelinfo.h"
#include "channel/efisimport.h"

#include "channel/efisfiles.h"

#include <QtCore/QFile>
#include <QtTest/QtTest>

// The EFIS export in examples/data/efis, held against facts of its sources.

using namespace efisfiles;

namespace {

QString fileName()
{
    return QStringLiteral(AVELDORAN_EXAMPLES_DIR "/data/efis/allocations.csv");
}

QList<QByteArray> lines()
{
    QFile file(fileName());
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll().split('\n');
}

Import importExample()
{
    QFile file(fileName());
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return importFrom(&file);
}

// "890-915 Uplink", in megahertz, of every allocation of that name.
QStringList placesOf(const QString &name, AChannelInfo *root)
{
    QStringList places;
    const AChannelInfo::FlatList ranges = root->channels(0);
    for (const auto &entry : ranges) {
        const AChannelInfo *range = entry.first;
        if (range->label() == name && range->type() == AChannelInfo::Provider)
            places.append(QStringLiteral("%1-%2 %3")
                              .arg(range->beginFrequency().floatValue(AFrequency::MHz), 0, 'g', 12)
                              .arg(range->endFrequency().floatValue(AFrequency::MHz), 0, 'g', 12)
                              .arg(range->parent()->label())
                              .trimmed());
    }
    return places;
}

} // namespace

class TestExampleEfis : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasTheFormOfAnExport();
    void givesTheAllocationsThatAreValid();
    void allocationsAreWhereTheirSourcesSay_data();
    void allocationsAreWhereTheirSourcesSay();
};

void TestExampleEfis::hasTheFormOfAnExport()
{
    QList<QByteArray> all = lines();
    QVERIFY(all.size() > 300);
    QCOMPARE(all.takeLast(), QByteArray());
    QVERIFY(all.takeFirst().startsWith("\"Two directions\";"));
    int twoDirections = 0;
    int notAscii = 0;
    int quoted = 0;
    for (const QByteArray &text : qAsConst(all)) {
        const QList<QByteArray> fields = parseEfisLine(text);
        QVERIFY2(fields.size() == 10, text.constData());
        const QByteArray kind = fields.first().toLower();
        QVERIFY2(kind == "yes" || kind == "no", text.constData());
        QCOMPARE(fields.at(2).isEmpty(), kind == "no");
        for (const int range : {1, 2}) {
            EfisEntry entry;
            parseEfisFrequencyRange(&entry, fields.at(range));
            QVERIFY2(fields.at(range).isEmpty() || (!entry.begin.isNull() && entry.begin <= entry.end),
                     text.constData());
        }
        for (const int date : {5, 6})
            QVERIFY2(QDate::fromString(fields.at(date), Qt::ISODate).isValid(), text.constData());
        QVERIFY2(!fields.at(4).isEmpty() && !fields.at(8).isEmpty(), text.constData());
        const QString name = QString::fromUtf8(fields.at(4));
        QVERIFY2(!name.contains(QChar::ReplacementCharacter), text.constData());
        twoDirections += kind == "yes" ? 1 : 0;
        notAscii += name.toUtf8().size() != name.size() ? 1 : 0;
        quoted += text.startsWith('"') ? 1 : 0;
    }
    QCOMPARE(all.size(), 406);
    QCOMPARE(twoDirections, 102);
    QVERIFY(notAscii > 40);
    QVERIFY(quoted > 50 && quoted < all.size());
}

void TestExampleEfis::givesTheAllocationsThatAreValid()
{
    int expected = 0;
    int expired = 0;
    int future = 0;
    const QString today = QDate::currentDate().toString(Qt::ISODate);
    const QList<QByteArray> all = lines();
    for (const QByteArray &text : all.mid(1)) {
        const QList<QByteArray> fields = parseEfisLine(text);
        if (fields.size() < 10)
            continue;
        if (QString::fromLatin1(fields.at(6)) < today)
            ++expired;
        else if (QString::fromLatin1(fields.at(5)) > today)
            ++future;
        else
            expected += fields.first().toLower() == "yes" ? 2 : 1;
    }
    QVERIFY(expired >= 36);
    QVERIFY(future > 0 || today > QStringLiteral("2090"));

    const Import import = importExample();
    QVERIFY(import.result);
    int providers = 0;
    int groups = 0;
    const AChannelInfo::FlatList ranges = import.root->channels(0);
    for (const auto &entry : ranges) {
        providers += entry.first->type() == AChannelInfo::Provider ? 1 : 0;
        groups += entry.first->type() == AChannelInfo::Generic && entry.second == 1 ? 1 : 0;
    }
    QCOMPARE(providers, expected);
    QVERIFY(groups > 10);
    QCOMPARE(import.root->beginFrequency(), AFrequency("59997")); // 59.9975 kHz, in whole hertz
    QVERIFY(import.root->endFrequency() > AFrequency("200 GHz"));
}

void TestExampleEfis::allocationsAreWhereTheirSourcesSay_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("places");
    const auto row = [](const char *name, const QStringList &places) {
        QTest::newRow(name) << QString::fromUtf8(name) << places;
    };
    row("P-GSM 900", {"890-915 Uplink", "935-960 Downlink"});
    row("LTE Band 20", {"791-821 Downlink", "832-862 Uplink"});
    row("LTE Band 3", {"1710-1785 Uplink", "1805-1880 Downlink"});
    row("5G NR n78", {"3300-3800"});
    row("UKW-Hörfunk · radiodiffusion FM · ΡΑΔΙΟΦΩΝΟ FM", {"87.5-108"});
    row("DAB+ Block 5C", {"177.584-179.12"});
    row("DAB+ Block 13F", {"238.432-239.968"});
    row("TV-Kanal 48", {"686-694"});
    row("TV-Kanal 60", {});
    row("Télévision analogique, canal 5", {});
    row("NMT-900", {});
    row("Seefunk Kanal 16, Not-, Dringlichkeits- und Anrufkanal · détresse", {"156.7875-156.8125"});
    row("Seefunk Kanal 28", {"157.3875-157.4125 Uplink", "161.9875-162.0125 Downlink"});
    row("Flugfunk · communications aéronautiques VHF", {"117.975-137"});
    row("Détresse aéronautique · Notfrequenz Luftfahrt", {"121.5-121.5"});
    row("MSS L-Band · Inmarsat", {"1525-1559 Downlink", "1626.5-1660.5 Uplink"});
    row("Satellite fixe bandes Q/V", {});
    row("Amateurfunk 2 m", {"144-146"});
    row("Amateurfunk 40 m", {"7-7.2"});
}

void TestExampleEfis::allocationsAreWhereTheirSourcesSay()
{
    QFETCH(QString, name);
    QFETCH(QStringList, places);
    const Import import = importExample();
    QCOMPARE(placesOf(name, import.root.get()), places);
}

QTEST_GUILESS_MAIN(TestExampleEfis)
#include "tst_exampleefis.moc"
