#include "channel/efisimport.h"

#include <QtTest/QtTest>

// One line of an EFIS export and one frequency range in it.

class TestEfisImportLines : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anEntryBeginsEmpty();
    void linesAreSplitAtSemicolons_data();
    void linesAreSplitAtSemicolons();
    void linesOfManyFieldsAreSplit();
    void rangesAreParsed_data();
    void rangesAreParsed();
    void anEdgeThatIsThereStaysIfThePieceHasNoBlank();
    void textsThatDoNotEndInAZeroByteAreReadToTheirEnd();
    void hugeTextsAreParsedInTimeByTheirLength();
    void aNullEntryIsReported();
};

void TestEfisImportLines::anEntryBeginsEmpty()
{
    const EfisEntry entry;
    QVERIFY(entry.begin.isNull() && entry.end.isNull() && entry.name.isEmpty());
    QCOMPARE(entry.direction, 0);
    QCOMPARE(entry.reserved, 0);
}

void TestEfisImportLines::linesAreSplitAtSemicolons_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QByteArrayList>("fields");
    using List = QByteArrayList;
    const auto row = [](const char *name, const QByteArray &line, const List &fields) {
        QTest::newRow(name) << line << fields;
    };
    row("plain", "a;b;c", {"a", "b", "c"});
    row("nothing", "", {""});
    row("one field", "a", {"a"});
    row("empty fields", ";;", {"", "", ""});
    row("line end", "a;b\n", {"a", "b\n"});
    row("line end of two bytes", "a;b\r\n", {"a", "b\r\n"});
    row("quotes", "\"a\";\"b\"", {"a", "b"});
    row("quote at the begin", "\"a;b", {"a", "b"});
    row("quote at the end", "a\";b", {"a", "b"});
    row("one quote alone", "\";\"", {"", ""});
    row("two quotes", "\"\";\"\"", {"", ""});
    row("three quotes", "\"\"\"", {"\""});
    row("doubled quotes lose one a side", "\"\"a\"\"", {"\"a\""});
    row("quote inside", "a\"b;c", {"a\"b", "c"});
    row("semicolon in quotes", "\"a;b\";c", {"a", "b", "c"});
    row("quote before the line end", "a;\"b\"\n", {"a", "b\"\n"});
    row("no trimming", " a ; \"b\" ", {" a ", " \"b\" "});
    row("other quotes and separators", "'a',b\t;c", {"'a',b\t", "c"});
    row("zero bytes", QByteArray("a\0b;\0;", 6), {QByteArray("a\0b", 3), QByteArray("\0", 1), ""});
}

void TestEfisImportLines::linesAreSplitAtSemicolons()
{
    QFETCH(QByteArray, line);
    QFETCH(QByteArrayList, fields);
    QCOMPARE(parseEfisLine(line), fields);
    const QByteArray unterminated = line + "\"";
    QCOMPARE(parseEfisLine(QByteArray::fromRawData(unterminated.constData(), line.size())), fields);
}

void TestEfisImportLines::linesOfManyFieldsAreSplit()
{
    constexpr int kSemicolons = 1000000;
    const QByteArrayList fields = parseEfisLine("no" + QByteArray(kSemicolons, ';') + "end");
    QCOMPARE(fields.size(), kSemicolons + 1);
    QCOMPARE(fields.first(), QByteArray("no"));
    QCOMPARE(fields.at(kSemicolons / 2), QByteArray());
    QCOMPARE(fields.last(), QByteArray("end"));
}

void TestEfisImportLines::rangesAreParsed_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("begin");
    QTest::addColumn<QString>("end");
    const auto row = [](const QByteArray &text, const char *begin, const char *end) {
        QTest::addRow("'%s'", text.left(40).constData()) << text << QString(begin) << QString(end);
    };
    for (const char *same :
         {"87.5 - 108 MHz", "87.5 MHz - 108 MHz", "87.5-108", "87.5-108 MHz", "87.5 MHz-108 MHz", "87.5 MHz - 108",
          "  87.5\t-\r\n108  ", "\f 87.5 \v-\v 108 \f", "87500 kHz - 0.108 GHz", "87,5 MHz - 108,0 MHz",
          "87.5  MHz - 108  MHz", "8.75e1 - 1.08e2", "87.5 - 99 - 108 MHz", "87.5 - - - 108"})
        row(same, "87.500000 MHz", "108.000000 MHz");
    row("100", "100.000000 MHz", "100.000000 MHz");
    row("100 kHz", "100.000000 kHz", "100.000000 kHz");
    row("24.25-27.5 GHz", "24250.000000 MHz", "27500.000000 MHz");
    row("24.25 GHz - 27.5", "24250.000000 MHz", "27500.000000 MHz");
    row("9 kHz - 0.1 MHz", "9.000000 kHz", "100.000000 kHz");
    row("148.5 - 283.5 kHz", "148.500000 kHz", "283.500000 kHz");
    // Without a blank a piece is a number alone, and only a decimal point is a decimal sign in it.
    row("87,5-108", "0.000000 Hz", "108.000000 MHz");
    row("100MHz-200MHz", "0.000000 Hz", "0.000000 Hz");
    row("100MHz - 200 MHz", "0.000000 Hz", "200.000000 MHz");
    row("100\tkHz", "0.000000 Hz", "0.000000 Hz");
    // What comes after the last blank is the unit of the other edge, also if it is none: that is hertz then.
    row("100 mhz - 200", "0.000000 Hz", "200.000000 Hz");
    row("1 234 - 5", "0.000000 Hz", "5.000000 Hz");
    row("100 - 200 THz", "100.000000 Hz", "0.000000 Hz");
    row("5 kHz - 6 x MHz", "5.000000 kHz", "0.000000 Hz");
    row("0 kHz - 100", "0.000000 Hz", "100.000000 kHz");
    row("0 - 9 kHz", "0.000000 Hz", "9.000000 kHz");
    row("", "0.000000 Hz", "0.000000 Hz");
    row(" ", "0.000000 Hz", "0.000000 Hz");
    row("-", "0.000000 Hz", "0.000000 Hz");
    row("100-", "100.000000 MHz", "0.000000 Hz");
    row("-100", "0.000000 Hz", "100.000000 MHz");
    row("from - to", "0.000000 Hz", "0.000000 Hz");
    row("nan-nan", "0.000000 Hz", "0.000000 Hz");
    row("1e400-1", "9223372036854.775807 MHz", "1.000000 MHz");
    row("1e400 Hz-1", "9223372036854.775807 MHz", "1.000000 Hz");
    row(QByteArray("1\0 - 2\0x MHz", 13), "0.000000 Hz", "2.000000 Hz");
    row("100 \xc2\xb5Hz", "0.000000 Hz", "0.000000 Hz");
    row("100\xe2\x80\x93"
        "200 MHz",
        "0.000000 Hz", "0.000000 Hz"); // an en dash is no "-"
}

void TestEfisImportLines::rangesAreParsed()
{
    QFETCH(QByteArray, text);
    EfisEntry entry;
    entry.name = QStringLiteral("kept");
    entry.direction = 2;
    parseEfisFrequencyRange(&entry, text);
    QTEST(entry.begin.canonicalText(), "begin");
    QTEST(entry.end.canonicalText(), "end");
    QCOMPARE(entry.name, QStringLiteral("kept"));
    QCOMPARE(entry.direction, 2);
    QCOMPARE(entry.reserved, 0);
}

void TestEfisImportLines::anEdgeThatIsThereStaysIfThePieceHasNoBlank()
{
    EfisEntry entry;
    entry.begin = AFrequency("7 MHz");
    entry.end = AFrequency("8 MHz");
    parseEfisFrequencyRange(&entry, "100-200");
    QCOMPARE(entry.begin, AFrequency("7 MHz"));
    QCOMPARE(entry.end, AFrequency("8 MHz"));
    parseEfisFrequencyRange(&entry, "100 kHz-200");
    QCOMPARE(entry.begin, AFrequency("100 kHz"));
    QCOMPARE(entry.end, AFrequency("8 MHz"));
}

void TestEfisImportLines::textsThatDoNotEndInAZeroByteAreReadToTheirEnd()
{
    const QByteArray whole = "100 kHz - 200 kHz99";
    EfisEntry entry;
    parseEfisFrequencyRange(&entry, QByteArray::fromRawData(whole.constData(), whole.size() - 2));
    QCOMPARE(entry.begin, AFrequency("100 kHz"));
    QCOMPARE(entry.end, AFrequency("200 kHz"));

    const QByteArray digits = "12345678";
    EfisEntry single;
    parseEfisFrequencyRange(&single, QByteArray::fromRawData(digits.constData(), 3));
    QCOMPARE(single.begin, AFrequency("123 MHz"));
}

void TestEfisImportLines::hugeTextsAreParsedInTimeByTheirLength()
{
    constexpr int kSize = 20000000;
    for (const QByteArray &text :
         {QByteArray(kSize, '-'), QByteArray(kSize, ' '), QByteArray(kSize, '9'), QByteArray(kSize, '9') + " MHz",
          "1" + QByteArray(kSize, ' ') + "MHz", QByteArray(kSize, '\0')}) {
        QElapsedTimer timer;
        timer.start();
        EfisEntry entry;
        parseEfisFrequencyRange(&entry, text);
        QVERIFY2(timer.elapsed() < 20000, text.left(5).constData());
    }
}

void TestEfisImportLines::aNullEntryIsReported()
{
    QTest::ignoreMessage(QtWarningMsg, "parseEfisFrequencyRange: the entry is null");
    parseEfisFrequencyRange(nullptr, "1-2");
}

QTEST_GUILESS_MAIN(TestEfisImportLines)
#include "tst_efisimport_lines.moc"
