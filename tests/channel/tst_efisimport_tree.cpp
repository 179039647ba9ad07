#include "channel/achannelinfo.h"
#include "channel/efisimport.h"

#include "channel/efisfiles.h"

#include <QtCore/QLoggingCategory>
#include <QtCore/QScopeGuard>
#include <QtTest/QtTest>

#include <algorithm>
#include <ctime>
#include <random>
#include <utility>

using namespace efisfiles;

// Which lines of an EFIS export are taken, how they are sorted, and the tree that they give.

namespace {

const char kEmptyList[] = "entries list is empty";

// Entries and the tree from them, as plainly as the rules say it.
namespace reference {

bool isBefore(const EfisEntry &a, const EfisEntry &b)
{
    return a.begin < b.begin && a.end < b.end;
}

QList<EfisEntry> entries(const QByteArray &content, const QDate &today)
{
    QList<EfisEntry> result;
    for (const QByteArray &text : content.split('\n')) {
        const QList<QByteArray> fields = parseEfisLine(text);
        if (fields.size() < 10)
            continue;
        const QByteArray kind = fields.at(0).toLower();
        if (kind != "yes" && kind != "no")
            continue;
        const QString form = QStringLiteral("yyyy-MM-dd");
        if (QDate::fromString(fields.at(5), form) > today || QDate::fromString(fields.at(6), form) < today)
            continue;
        EfisEntry entry;
        entry.name = QString::fromUtf8(fields.at(4));
        if (kind == "yes") {
            EfisEntry uplink = entry;
            uplink.direction = 1;
            parseEfisFrequencyRange(&uplink, fields.at(2));
            result.append(uplink);
            entry.direction = 2;
        }
        parseEfisFrequencyRange(&entry, fields.at(1));
        result.append(entry);
    }
    return result;
}

QString outline(const EfisEntry &entry)
{
    AChannelInfo node(nullptr, AChannelInfo::Provider, entry.begin, entry.end, entry.name, true);
    return efisfiles::outline(&node);
}

struct Group
{
    int place = -1; // in the list of children; -1: none yet
    AFrequency begin;
    AFrequency end;
    QStringList below;
};

QString tree(const QList<EfisEntry> &sorted)
{
    const AFrequency gap("10 MHz");
    QStringList children;
    Group groups[3];
    const auto close = [&children](const Group &group, int direction) {
        if (group.place < 0)
            return;
        AChannelInfo node(nullptr, AChannelInfo::Generic, group.begin, group.end,
                          direction == 2 ? QStringLiteral("Downlink") : QStringLiteral("Uplink"), true);
        children[group.place] = efisfiles::outline(&node) + QStringLiteral(" { ") +
                                group.below.join(QStringLiteral(", ")) + QStringLiteral(" }");
    };
    for (const EfisEntry &entry : sorted) {
        if (entry.direction == 0) {
            children.append(outline(entry));
            continue;
        }
        Group &group = groups[entry.direction];
        if (group.place >= 0 && entry.begin - group.end <= gap) {
            group.end = entry.end;
        } else {
            close(group, entry.direction);
            group = {children.size(), entry.begin, entry.end, {}};
            children.append(QString());
        }
        group.below.append(outline(entry));
    }
    close(groups[1], 1);
    close(groups[2], 2);
    AChannelInfo root(nullptr, AChannelInfo::Generic, sorted.first().begin, sorted.last().end, QString(), false);
    return efisfiles::outline(&root) + QStringLiteral(" { ") + children.join(QStringLiteral(", ")) +
           QStringLiteral(" }");
}

} // namespace reference

QList<EfisEntry> sortedByQt(QList<EfisEntry> entries)
{
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    qStableSort(entries.begin(), entries.end(), reference::isBefore);
    QT_WARNING_POP
    return entries;
}

QByteArray randomExport(quint32 seed)
{
    std::mt19937 random(seed);
    const auto below = [&random](int bound) { return int(random() % quint32(bound)); };
    const auto range = [&below]() {
        const int begin = below(60) * 5;
        return QByteArray::number(begin) + '-' + QByteArray::number(begin + below(12) * 5) + " MHz";
    };
    QByteArray content = "duplex;down;up;;name;from;to;;;\n";
    const int lines = 2 + below(60);
    for (int i = 0; i < lines; ++i) {
        content +=
            line(QByteArrayList{"yes", "no", "YES", "\"No\"", "maybe"}.at(below(below(8) ? 4 : 5)), range(), range(),
                 QByteArray::number(i), below(12) ? day(-below(3)) : day(1), below(12) ? day(below(3)) : day(-1));
    }
    return content;
}

} // namespace

class TestEfisImportTree : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aLineIsTakenByItsFields_data();
    void aLineIsTakenByItsFields();
    void aLineIsTakenOnTheDaysOfItsValidity_data();
    void aLineIsTakenOnTheDaysOfItsValidity();
    void daysAreThoseOfTheLocalCalendar();
    void datesAreReadAsQtReadsThem();
    void aHeaderAloneGivesNothing();
    void namesArriveIntact();
    void aLineWithTwoDirectionsGivesTwoGroups();
    void aLineWithOneDirectionStandsBelowTheParent();
    void nodesHaveTheirFields();
    void aGapBeginsANewGroup_data();
    void aGapBeginsANewGroup();
    void aPartOfAHertzMoreBeginsANewGroup();
    void theEndOfAGroupFollowsTheLatestEntry();
    void groupsAreInterleavedWithTheRest();
    void theParentGetsTheRangeOfTheFirstAndTheLastEntry();
    void wholeHertzAloneReachTheParent();
    void whatStandsBelowTheParentStays();
    void entriesWithinEntriesAreSortedAsQtSortsThem_data();
    void entriesWithinEntriesAreSortedAsQtSortsThem();
    void randomExportsGiveTheTreesOfTheRules();
    void theLastBytesAreLeftUnread_data();
    void theLastBytesAreLeftUnread();
};

void TestEfisImportTree::aLineIsTakenByItsFields_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("expected");
    const QByteArray rest = ";5-6;;x;n;" + day(-1) + ';' + day(1);
    const QString taken = QStringLiteral("5-6 { n 5-6 }");
    QTest::newRow("ten fields") << "no" + rest + ";;;\n" << taken;
    QTest::newRow("nine fields") << "no" + rest + ";;\n" << QString();
    QTest::newRow("eleven fields") << "no" + rest + ";;;;\n" << taken;
    QTest::newRow("the tenth filled") << "no" + rest + ";a;b;c\n" << taken;
    QTest::newRow("seven fields") << "no" + rest + "\n" << QString();
    QTest::newRow("upper case") << "NO" + rest + ";;;\n" << taken;
    QTest::newRow("mixed case") << "nO" + rest + ";;;\n" << taken;
    QTest::newRow("in quotes") << "\"no\"" + rest + ";;;\n" << taken;
    QTest::newRow("with a blank") << " no" + rest + ";;;\n" << QString();
    QTest::newRow("another word") << "not" + rest + ";;;\n" << QString();
    QTest::newRow("a shorter word") << "n" + rest + ";;;\n" << QString();
    QTest::newRow("empty") << rest + ";;;\n" << QString();
    QTest::newRow("with a zero byte") << QByteArray("no\0", 3) + rest + ";;;\n" << QString();
    QTest::newRow("behind a byte order mark") << "\xef\xbb\xbfno" + rest + ";;;\n" << QString();
    QTest::newRow("line end of two bytes") << "no" + rest + ";;;\r\n" << taken;
    QTest::newRow("no line end") << "no" + rest + ";;;" << taken;
    QTest::newRow("everything in quotes")
        << "\"no\";\"5-6 MHz\";\"\";\"\";\"n\";\"" + day(-1) + "\";\"" + day(1) + "\";\"\";\"\";\"\"\r\n"
        << taken;
    QTest::newRow("upper YES") << "YES;5-6;7-8;x;n;" + day(-1) + ';' + day(1) + ";;;\n"
                               << QStringLiteral("5-8 { Downlink 5-6 { n 5-6 }, Uplink 7-8 { n 7-8 } }");
    QTest::newRow("the uplink of a one-way line") << "no;5-6;1-2;x;n;" + day(-1) + ';' + day(1) + ";;;\n" << taken;
    QTest::newRow("a range that can't be read") << "no;a-b;;x;n;" + day(-1) + ';' + day(1) + ";;;\n"
                                                << QStringLiteral("0-0 { n 0-0 }");
}

void TestEfisImportTree::aLineIsTakenByItsFields()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, expected);
    if (expected.isEmpty())
        QTest::ignoreMessage(QtDebugMsg, kEmptyList);
    const Import import = importFrom(line);
    QCOMPARE(import.result, !expected.isEmpty());
    QCOMPARE(outline(import), expected);
}

void TestEfisImportTree::aLineIsTakenOnTheDaysOfItsValidity_data()
{
    QTest::addColumn<QByteArray>("first"); // @0 is today
    QTest::addColumn<QByteArray>("last");
    QTest::addColumn<bool>("taken");
    const auto row = [](const char *name, const QByteArray &first, const QByteArray &last, bool taken) {
        QTest::newRow(name) << first << last << taken;
    };
    row("today alone", "@0", "@0", true);
    row("around today", "@-400", "@400", true);
    row("until yesterday", "@-2", "@-1", false);
    row("until today", "@-2", "@0", true);
    row("from today on", "@0", "@2", true);
    row("from tomorrow on", "@1", "@2", false);
    row("until before it begins", "@1", "@-1", false);
    row("no first day", "", "@1", true);
    row("a first day that is none", "soon", "@1", true);
    row("a first day of another form", "1.1.2999", "@1", true);
    row("a first day that no month has", "2999-02-30", "@1", true);
    row("no last day", "@-1", "", false);
    row("a last day that is none", "@-1", "never", false);
    row("a last day of another form", "@-1", "31.12.2999", false);
    row("a last day with blanks", "@-1", " @1", false);
    row("a last day with a time", "@-1", "@1T00:00:00", false);
    row("neither", "", "", false);
    row("the first and the last year", "0001-01-01", "9999-12-31", true);
    row("the year zero", "0000-01-01", "@1", true);
    row("in quotes", "\"@0\"", "\"@0\"", true);
}

void TestEfisImportTree::aLineIsTakenOnTheDaysOfItsValidity()
{
    QFETCH(QByteArray, first);
    QFETCH(QByteArray, last);
    QFETCH(bool, taken);
    if (!taken)
        QTest::ignoreMessage(QtDebugMsg, kEmptyList);
    const auto isTaken = [&] { return importFrom(line("no", "5-6", "", "n", dated(first), dated(last))).result; };
    QCOMPARE(withinOneDay(isTaken), taken);
}

// In a zone that is on another day than UTC: one is at each time of the day.
void TestEfisImportTree::daysAreThoseOfTheLocalCalendar()
{
    const QByteArray before = qgetenv("TZ");
    const bool wasSet = qEnvironmentVariableIsSet("TZ");
    const auto restore = qScopeGuard([&] {
        if (wasSet)
            qputenv("TZ", before);
        else
            qunsetenv("TZ");
        tzset();
    });
    const QDateTime utc = QDateTime::currentDateTimeUtc();
    qputenv("TZ", utc.time().hour() < 11 ? "<-12>12" : "<+14>-14");
    tzset();
    const QByteArray today = QDate::currentDate().toString(Qt::ISODate).toLatin1();
    QVERIFY(today != utc.date().toString(Qt::ISODate).toLatin1());
    QVERIFY(importFrom(line("no", "5-6", "", "n", today, today)).result);
}

// The import reads the common form by itself. A last day that is not null and a thousand years ahead is taken, so what
// is taken tells what was read.
void TestEfisImportTree::datesAreReadAsQtReadsThem()
{
    std::mt19937 random(7);
    const QByteArray alphabet = "0123456789-+ T/.:x";
    int valid = 0;
    for (int i = 0; i < 3000; ++i) {
        QByteArray text = "3" + QByteArray::number(100 + int(random() % 900)) + '-' +
                          QByteArray::number(100 + int(random() % 15)).mid(1) + '-' +
                          QByteArray::number(100 + int(random() % 34)).mid(1);
        for (int changes = int(random() % 4) - 1; changes > 0; --changes) {
            const char c = alphabet.at(int(random() % quint32(alphabet.size())));
            const int at = int(random() % quint32(text.size()));
            if (random() % 3 == 0)
                text.insert(at, c);
            else
                text[at] = c;
        }
        const bool expected = QDate::fromString(text, QStringLiteral("yyyy-MM-dd")) >= QDate::currentDate();
        valid += expected ? 1 : 0;
        if (!expected)
            QTest::ignoreMessage(QtDebugMsg, kEmptyList);
        QVERIFY2(importFrom(line("no", "5-6", "", "n", day(0), text)).result == expected, text.constData());
    }
    QVERIFY2(valid > 500 && valid < 2500, qPrintable(QString::number(valid)));
}

void TestEfisImportTree::aHeaderAloneGivesNothing()
{
    const QByteArray header = "\"Two directions\";Range;Uplink;Region;Name;From;To;Use;Source;Remark\n";
    for (const QByteArray &content : {header, QByteArray(), QByteArray("\n\n\n\n\n\n\n"), QByteArray("no;1;;")}) {
        QTest::ignoreMessage(QtDebugMsg, kEmptyList);
        const Import import = importFrom(content);
        QVERIFY(!import.result);
        QCOMPARE(import.root->childCount(), 0);
        QVERIFY(import.root->beginFrequency().isNull() && import.root->endFrequency().isNull());
    }
}

void TestEfisImportTree::namesArriveIntact()
{
    const QString name = QStringLiteral("Télévision – Ελλάδα µ ") + QString::fromUcs4(U"\U0001F4E1", 1);
    const Import import = importFrom(oneWay("5-6", name.toUtf8()) + twoWay("7-8", "1-2", '"' + name.toUtf8() + '"'));
    QVERIFY(import.result);
    QCOMPARE(import.root->child(0)->child(0)->label(), name);
    QCOMPARE(import.root->child(1)->label(), name);
    QCOMPARE(import.root->child(2)->child(0)->label(), name);

    const Import odd = importFrom(oneWay("5-6", " \"a\"\"b ") + oneWay("7-8", "") + oneWay("9-10", "\xff"));
    QCOMPARE(odd.root->child(0)->label(), QStringLiteral(" \"a\"\"b "));
    QCOMPARE(odd.root->child(1)->label(), QString());
    QCOMPARE(odd.root->child(2)->label(), QString(QChar(QChar::ReplacementCharacter)));
}

void TestEfisImportTree::aLineWithTwoDirectionsGivesTwoGroups()
{
    QCOMPARE(outline(importFrom(twoWay("925-960 MHz", "880-915 MHz", "GSM"))),
             QStringLiteral("880-960 { Uplink 880-915 { GSM 880-915 }, Downlink 925-960 { GSM 925-960 } }"));
}

void TestEfisImportTree::aLineWithOneDirectionStandsBelowTheParent()
{
    QCOMPARE(outline(importFrom(oneWay("87.5 - 108 MHz", "FM") + oneWay("90-100", "inside"))),
             QStringLiteral("87.5-100 { FM 87.5-108, inside 90-100 }"));
}

void TestEfisImportTree::nodesHaveTheirFields()
{
    const Import import = importFrom(twoWay("20-30", "5-6", "a") + oneWay("50-60", "b"));
    QCOMPARE(import.root->childCount(), 3);
    for (int row = 0; row < 2; ++row) {
        AChannelInfo *group = import.root->child(row);
        QCOMPARE(group->type(), AChannelInfo::Generic);
        QVERIFY(group->selectable());
        QCOMPARE(group->parent(), import.root.get());
        QCOMPARE(group->childCount(), 1);
        QCOMPARE(group->child(0)->type(), AChannelInfo::Provider);
        QVERIFY(group->child(0)->selectable());
        QCOMPARE(group->child(0)->parent(), group);
    }
    const AChannelInfo *single = import.root->child(2);
    QCOMPARE(single->type(), AChannelInfo::Provider);
    QVERIFY(single->selectable());
    QCOMPARE(single->parent(), import.root.get());
    QVERIFY(single->comment().isEmpty() && !single->color().isValid());
    QVERIFY(!import.root->selectable());
    QCOMPARE(import.root->label(), QString());
}

void TestEfisImportTree::aGapBeginsANewGroup_data()
{
    QTest::addColumn<QByteArray>("second");
    QTest::addColumn<QString>("groups");
    const QString one = QStringLiteral("Downlink 100-130 { a 100-110, b %1-130 }");
    const QString two = QStringLiteral("Downlink 100-110 { a 100-110 }, Downlink %1-130 { b %1-130 }");
    QTest::newRow("exactly ten megahertz") << QByteArray("120") << one;
    QTest::newRow("a hertz more") << QByteArray("120.000001") << two;
    QTest::newRow("half a megahertz more") << QByteArray("120.5") << two;
    QTest::newRow("no gap") << QByteArray("110") << one;
    QTest::newRow("overlapping") << QByteArray("105") << one;
}

void TestEfisImportTree::aGapBeginsANewGroup()
{
    QFETCH(QByteArray, second);
    QFETCH(QString, groups);
    const QByteArray content = twoWay("100-110", "1-2", "a") + twoWay(second + "-130", "1-2", "b");
    QCOMPARE(outline(importFrom(content)), QStringLiteral("1-130 { Uplink 1-2 { a 1-2, b 1-2 }, %1 }")
                                               .arg(groups.replace("%1", QString::fromLatin1(second))));
}

void TestEfisImportTree::aPartOfAHertzMoreBeginsANewGroup()
{
    const auto groups = [](const QByteArray &second) {
        const Import import = importFrom(twoWay("100-110", "1-2", "a") + twoWay(second, "1-2", "b"));
        return import.root->childCount() - 1; // without that of the uplinks
    };
    QCOMPARE(groups("119999999.5 Hz - 130 MHz"), 1);
    QCOMPARE(groups("120000000 Hz - 130 MHz"), 1);
    QCOMPARE(groups("120000000.001 Hz - 130 MHz"), 2);
    QCOMPARE(groups("120000000.5 Hz - 130 MHz"), 2);
}

void TestEfisImportTree::theEndOfAGroupFollowsTheLatestEntry()
{
    // The second lies within the first, so the group's end goes back, and the third is too far from it.
    const QByteArray content =
        twoWay("100-200", "1-2", "a") + twoWay("110-120", "1-2", "b") + twoWay("190-210", "1-2", "c");
    QVERIFY2(outline(importFrom(content))
                 .endsWith("Downlink 100-120 { a 100-200, b 110-120 }, Downlink 190-210 { c 190-210 } }"),
             qPrintable(outline(importFrom(content))));
}

void TestEfisImportTree::groupsAreInterleavedWithTheRest()
{
    const QByteArray content = oneWay("10-11", "x") + twoWay("20-21", "40-41", "a") + oneWay("22-23", "y") +
                               twoWay("24-25", "60-61", "b") + oneWay("50-51", "z");
    QCOMPARE(outline(importFrom(content)),
             QStringLiteral("10-61 { x 10-11, Downlink 20-25 { a 20-21, b 24-25 }, y 22-23, Uplink 40-41 { a 40-41 }, "
                            "z 50-51, Uplink 60-61 { b 60-61 } }"));
}

void TestEfisImportTree::theParentGetsTheRangeOfTheFirstAndTheLastEntry()
{
    // "inside" comes last although it ends below the other.
    QCOMPARE(outline(importFrom(oneWay("10-100", "around") + oneWay("20-30", "inside"))),
             QStringLiteral("10-30 { around 10-100, inside 20-30 }"));
}

void TestEfisImportTree::wholeHertzAloneReachTheParent()
{
    const Import import =
        importFrom(twoWay("1.75-3.5 Hz", "10.5-20.75 Hz", "a") + twoWay("2.75-4.75 Hz", "100-200", "b"));
    QCOMPARE(import.root->beginFrequency(), AFrequency("1"));
    QCOMPARE(import.root->endFrequency(), AFrequency("200 MHz"));
    AChannelInfo *downlink = import.root->child(0);
    QCOMPARE(downlink->beginFrequency(), AFrequency("1.75"));
    QCOMPARE(downlink->endFrequency(), AFrequency("4"));
    QCOMPARE(downlink->child(1)->endFrequency(), AFrequency("4.75"));
    QCOMPARE(import.root->child(1)->endFrequency(), AFrequency("20.75")); // set when the group was made
}

void TestEfisImportTree::whatStandsBelowTheParentStays()
{
    Import import;
    import.root->appendChild(new AChannelInfo(import.root.get(), AChannelInfo::Generic, AFrequency("1 MHz"),
                                              AFrequency("2 MHz"), QStringLiteral("Downlink"), false));
    QByteArray content = twoWay("3-4", "50-60", "a");
    QBuffer buffer(&content);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QVERIFY(AChannelInfo::fromEfisCSV(&buffer, import.root.get()));
    QCOMPARE(outline(import.root.get()),
             QStringLiteral("3-60 { Downlink 1-2, Downlink 3-4 { a 3-4 }, Uplink 50-60 { a 50-60 } }"));
}

void TestEfisImportTree::entriesWithinEntriesAreSortedAsQtSortsThem_data()
{
    QTest::addColumn<QByteArrayList>("ranges"); // named a, b and so on
    QTest::addColumn<QString>("byQt");
    QTest::addColumn<QString>("byStd");
    QTest::newRow("three") << QByteArrayList{"20-80", "20-40", "10-50"} << "bca"
                           << "abc";
    QTest::newRow("four") << QByteArrayList{"40-70", "10-50", "40-50", "0-60"} << "bcda"
                          << "bacd";
    QTest::newRow("five") << QByteArrayList{"20-80", "20-40", "10-50", "10-60", "10-50"} << "abcde"
                          << "cabde";
    QTest::newRow("six") << QByteArrayList{"10-70", "0-30", "10-30", "50-110", "50-60", "20-60"} << "bacefd"
                         << "bacfde";
    QTest::newRow("seven") << QByteArrayList{"20-60", "50-60", "10-50", "10-30", "10-50", "50-80", "0-40"} << "dgceabf"
                           << "cdgeabf";
}

// std::stable_sort with the same comparison gives another order.
void TestEfisImportTree::entriesWithinEntriesAreSortedAsQtSortsThem()
{
    QFETCH(QByteArrayList, ranges);
    QFETCH(QString, byQt);
    QByteArray content;
    for (int i = 0; i < ranges.size(); ++i)
        content += oneWay(ranges.at(i), QByteArray(1, char('a' + i)));
    const Import import = importFrom(content);
    QString order;
    for (int row = 0; row < import.root->childCount(); ++row)
        order += import.root->child(row)->label();
    QCOMPARE(order, byQt);

    QList<EfisEntry> byStd = reference::entries(content, QDate::currentDate());
    std::stable_sort(byStd.begin(), byStd.end(), reference::isBefore);
    QString orderByStd;
    for (const EfisEntry &entry : qAsConst(byStd))
        orderByStd += entry.name;
    QTEST(orderByStd, "byStd");
}

void TestEfisImportTree::randomExportsGiveTheTreesOfTheRules()
{
    QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false); // that a list is empty
    const auto enabledAgain = qScopeGuard([] { QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, true); });
    int groups = 0;
    for (quint32 seed = 1; seed <= 1000; ++seed) {
        const auto [expected, actual] = withinOneDay([seed] {
            const QByteArray content = randomExport(seed);
            const QList<EfisEntry> entries = reference::entries(content, QDate::currentDate());
            return std::make_pair(entries.isEmpty() ? QString() : reference::tree(sortedByQt(entries)),
                                  outline(importFrom(content)));
        });
        if (actual != expected)
            QFAIL("seed " + QByteArray::number(seed) + "\n" + actual.toUtf8() + "\n" + expected.toUtf8());
        groups += actual.count(QStringLiteral("link"));
    }
    QVERIFY2(groups > 5000, qPrintable(QString::number(groups)));
}

void TestEfisImportTree::theLastBytesAreLeftUnread_data()
{
    QTest::addColumn<QByteArray>("tail");
    QTest::addColumn<int>("unread");
    QTest::newRow("none") << QByteArray() << 0;
    QTest::newRow("one") << QByteArray("x") << 1;
    QTest::newRow("five") << QByteArray("no;1;") << 5;
    QTest::newRow("five with line ends") << QByteArray("\na\nb\n") << 5;
    QTest::newRow("six") << QByteArray("no;1;;") << 0;
    QTest::newRow("six with a line end") << QByteArray("a\nbcde") << 4;
}

void TestEfisImportTree::theLastBytesAreLeftUnread()
{
    QFETCH(QByteArray, tail);
    QFETCH(int, unread);
    const QByteArray content = oneWay("5-6", "a") + tail;
    QTemporaryFile file;
    QVERIFY(file.open());
    QCOMPARE(file.write(content), qint64(content.size()));
    QVERIFY(file.seek(0));
    QCOMPARE(outline(importFrom(&file)), QStringLiteral("5-6 { a 5-6 }"));
    QCOMPARE(file.bytesAvailable(), qint64(unread));
    QByteArray bytes = content;
    QBuffer buffer(&bytes);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QVERIFY(importFrom(&buffer).result);
    QCOMPARE(buffer.bytesAvailable(), qint64(unread));
}

QTEST_GUILESS_MAIN(TestEfisImportTree)
#include "tst_efisimport_tree.moc"
