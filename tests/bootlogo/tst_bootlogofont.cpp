#include "bootlogo/logopicture.h"

#include <bootlogo/abootlogodata.h>
#include <bootlogo/bootlogofont.h>

#include <QtTest/QtTest>

#include <cstring>
#include <iterator>

using logopicture::rowsOf;

namespace {

// Glyphs side by side, with two blanks between them.
struct Band
{
    const char *keys;
    const char *rows[5];
};

constexpr Band kBands[] = {
    {"ABCDEFGHI",
     {".#.  ##.  .##  ##.  ###  ###  ###  #.#  ###", //
      "#.#  #.#  #..  #.#  #..  #..  #..  #.#  .#.", //
      "###  ##.  #..  #.#  ##.  ###  #.#  ###  .#.", //
      "#.#  #.#  #..  #.#  #..  #..  #.#  #.#  .#.", //
      "#.#  ##.  .##  ##.  ###  #..  ###  #.#  ###"}},
    {"JKLMNOPQR",
     {"..#  #..#  #..  ##.##  #..#  ###  ##.  .##.  ##.", //
      "..#  #.#.  #..  #.#.#  ##.#  #.#  #.#  #..#  #.#", //
      "..#  ##..  #..  #.#.#  #.##  #.#  ##.  #..#  ##.", //
      "#.#  #.#.  #..  #...#  #..#  #.#  #..  #.##  #.#", //
      "###  #..#  ###  #...#  #..#  ###  #..  .###  #.#"}},
    {"STUVWXYZ0",
     {"###  ###  #.#  #.#  #...#  #.#  #.#  ###  .#.", //
      "#..  .#.  #.#  #.#  #...#  .#.  #.#  ..#  #.#", //
      "###  .#.  #.#  #.#  #.#.#  .#.  .#.  .#.  #.#", //
      "..#  .#.  #.#  #.#  #.#.#  .#.  .#.  #..  #.#", //
      "###  .#.  ###  .#.  .#.#.  #.#  .#.  ###  .#."}},
    {"123456789",
     {".#  .#.  ##.  #.#  ###  .##  ###  ###  ###", //
      "##  #.#  ..#  #.#  #..  #..  ..#  #.#  #.#", //
      ".#  ..#  .#.  ###  ##.  ###  .#.  ###  ###", //
      ".#  .#.  ..#  ..#  ..#  #.#  .#.  #.#  ..#", //
      ".#  ###  ##.  ..#  ##.  ###  #..  ###  .#."}},
    {".:-!+ _",
     {".  .  ..  #  ...  .  ...", //
      ".  .  ..  #  .#.  .  ...", //
      ".  #  ##  #  ###  .  ...", //
      ".  .  ..  .  .#.  .  ...", //
      "#  #  ..  #  ...  .  ###"}},
};

const FontLetter *const kRecords[] = {
    &letter_A,         &letter_B,   &letter_C,     &letter_D,    &letter_E,           &letter_F,    &letter_G,
    &letter_H,         &letter_I,   &letter_J,     &letter_K,    &letter_L,           &letter_M,    &letter_N,
    &letter_O,         &letter_P,   &letter_Q,     &letter_R,    &letter_S,           &letter_T,    &letter_U,
    &letter_V,         &letter_W,   &letter_X,     &letter_Y,    &letter_Z,           &letter_0,    &letter_1,
    &letter_2,         &letter_3,   &letter_4,     &letter_5,    &letter_6,           &letter_7,    &letter_8,
    &letter_9,         &letter_dot, &letter_colon, &letter_dash, &letter_exclamation, &letter_plus, &letter_space,
    &letter_underscore};

constexpr int kGlyphs = 43;

struct Drawn
{
    char key = 0;
    QStringList rows;
};

QList<Drawn> drawnGlyphs()
{
    QList<Drawn> glyphs;
    for (const Band &band : kBands) {
        const int first = glyphs.size();
        for (const char *key = band.keys; *key; ++key)
            glyphs.append({*key, {}});
        for (const char *row : band.rows) {
            const QStringList parts = QString(row).split(QStringLiteral("  "));
            for (int i = 0; i < parts.size(); ++i)
                glyphs[first + i].rows.append(parts.at(i));
        }
    }
    return glyphs;
}

} // namespace

class TestBootlogoFont : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyGlyphLooksAsDrawn_data();
    void everyGlyphLooksAsDrawn();
    void theAlphabetHoldsTheRecordsInOrder();
    void onlyTheWidthOfAGlyphIsLit();
    void findsTheGlyphOfEveryLatin1Character();
    void findsCapitalsForSmallLetters();
    void goesByTheCapitalThatUnicodeGivesACharacter_data();
    void goesByTheCapitalThatUnicodeGivesACharacter();
    void rendersAGlyphRowByRowFromTheTop();
    void rendersNoGlyphAsNoColumn();
    void keepsWithinARecordWhoseWidthIsNone_data();
    void keepsWithinARecordWhoseWidthIsNone();
    void rendersTexts_data();
    void rendersTexts();
    void givesThePointsOfATextCharacterByCharacter();
    void rendersNoMoreThanAListCanHold();
};

void TestBootlogoFont::everyGlyphLooksAsDrawn_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<char>("key");
    QTest::addColumn<QStringList>("rows");
    const QList<Drawn> glyphs = drawnGlyphs();
    QCOMPARE(glyphs.size(), kGlyphs);
    for (int i = 0; i < kGlyphs; ++i)
        QTest::addRow("'%c'", glyphs.at(i).key) << i << glyphs.at(i).key << glyphs.at(i).rows;
}

void TestBootlogoFont::everyGlyphLooksAsDrawn()
{
    QFETCH(int, index);
    QFETCH(char, key);
    QFETCH(QStringList, rows);
    const FontLetter &letter = font_alphabet[index];
    QCOMPARE(static_cast<char>(letter.key), key);
    QCOMPARE(static_cast<int>(letter.width), rows.constFirst().size());
    QCOMPARE(ABootlogoData::findLetter(key), &letter);
    const LetterBits bits = ABootlogoData::letterToBits(&letter);
    QCOMPARE(bits.bounds, QRect(0, 0, letter.width, 5));
    QCOMPARE(rowsOf(bits), rows);
}

void TestBootlogoFont::theAlphabetHoldsTheRecordsInOrder()
{
    static_assert(sizeof(FontLetter) == 27 && sizeof(font_alphabet) == kGlyphs * sizeof(FontLetter));
    static_assert(std::size(kRecords) == kGlyphs);
    for (int i = 0; i < kGlyphs; ++i)
        QVERIFY2(std::memcmp(&font_alphabet[i], kRecords[i], sizeof(FontLetter)) == 0, qPrintable(QString::number(i)));
}

void TestBootlogoFont::onlyTheWidthOfAGlyphIsLit()
{
    for (const FontLetter &letter : font_alphabet) {
        for (int i = 0; i < 25; ++i)
            QVERIFY(letter.pixels[i] == 0 || (letter.pixels[i] == 1 && i % 5 < letter.width));
    }
}

void TestBootlogoFont::findsTheGlyphOfEveryLatin1Character()
{
    const QByteArray known = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789.:-!+ _";
    for (int code = 0; code < 256; ++code) {
        const FontLetter *letter = ABootlogoData::findLetter(QChar(code));
        QCOMPARE(letter != nullptr, known.contains(static_cast<char>(code)));
    }
}

void TestBootlogoFont::findsCapitalsForSmallLetters()
{
    QCOMPARE(ABootlogoData::findLetter('a')->key, letter_A.key);
    for (char c = 'a'; c <= 'z'; ++c)
        QCOMPARE(ABootlogoData::findLetter(c), ABootlogoData::findLetter(QChar(c).toUpper()));
}

void TestBootlogoFont::goesByTheCapitalThatUnicodeGivesACharacter_data()
{
    QTest::addColumn<QChar>("character");
    QTest::addColumn<int>("key");
    QTest::newRow("dotless i") << QChar(0x131) << static_cast<int>('I');
    QTest::newRow("long s") << QChar(0x17f) << static_cast<int>('S');
    QTest::newRow("micro sign, whose capital is Greek") << QChar(0xb5) << 0;
    QTest::newRow("y with diaeresis, whose capital is not Latin-1") << QChar(0xff) << 0;
    QTest::newRow("full-width A") << QChar(0xff21) << 0;
    QTest::newRow("code 0x141, whose low byte is A") << QChar(0x141) << 0;
    QTest::newRow("NUL") << QChar(0) << 0;
    QTest::newRow("half a pair") << QChar(0xd800) << 0;
}

void TestBootlogoFont::goesByTheCapitalThatUnicodeGivesACharacter()
{
    QFETCH(QChar, character);
    QFETCH(int, key);
    const FontLetter *letter = ABootlogoData::findLetter(character);
    QCOMPARE(letter ? static_cast<int>(letter->key) : 0, key);
}

void TestBootlogoFont::rendersAGlyphRowByRowFromTheTop()
{
    const QList<QPoint> expected = {{0, 4}, {1, 4}, {2, 4}, {1, 3}, {1, 2}, {1, 1}, {1, 0}};
    QCOMPARE(ABootlogoData::letterToBits(&letter_T).points, expected);
}

void TestBootlogoFont::rendersNoGlyphAsNoColumn()
{
    const LetterBits bits = ABootlogoData::letterToBits(nullptr);
    QCOMPARE(bits.bounds.left(), 0);
    QCOMPARE(bits.bounds.top(), 0);
    QCOMPARE(bits.bounds.right(), -1);
    QCOMPARE(bits.bounds.bottom(), 4);
    QVERIFY(bits.points.isEmpty());
}

void TestBootlogoFont::keepsWithinARecordWhoseWidthIsNone_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("columns");
    QTest::newRow("negative") << -128 << 0;
    QTest::newRow("none") << 0 << 0;
    QTest::newRow("too wide") << 6 << 5;
    QTest::newRow("as wide as can be said") << 127 << 5;
}

void TestBootlogoFont::keepsWithinARecordWhoseWidthIsNone()
{
    QFETCH(int, width);
    QFETCH(int, columns);
    FontLetter letter = {'A', static_cast<qint8>(width), {}};
    std::fill(std::begin(letter.pixels), std::end(letter.pixels), qint8(1));
    letter.pixels[0] = -1; // lit is above 0 only
    const LetterBits bits = ABootlogoData::letterToBits(&letter);
    QCOMPARE(bits.bounds.right(), columns - 1);
    QCOMPARE(bits.points.size(), columns == 0 ? 0 : 24);
}

void TestBootlogoFont::rendersTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("rows");
    const QString none;
    QTest::newRow("nothing") << QString() << QStringList{none, none, none, none, none};
    QTest::newRow("two characters of width 3") << "EL"
                                               << QStringList{"###.#..", //
                                                              "#...#..", //
                                                              "##..#..", //
                                                              "#...#..", //
                                                              "###.###"};
    QTest::newRow("all widths") << "1.kM"
                                << QStringList{".#...#..#.##.##", //
                                               "##...#.#..#.#.#", //
                                               ".#...##...#.#.#", //
                                               ".#...#.#..#...#", //
                                               ".#.#.#..#.#...#"};
    QTest::newRow("a blank is a column between two") << "I I"
                                                     << QStringList{"###...###", //
                                                                    ".#.....#.", //
                                                                    ".#.....#.", //
                                                                    ".#.....#.", //
                                                                    "###...###"};
    QTest::newRow("an unknown character is the column after it") << "I?I"
                                                                 << QStringList{"###..###", //
                                                                                ".#....#.", //
                                                                                ".#....#.", //
                                                                                ".#....#.", //
                                                                                "###..###"};
    QTest::newRow("at the end it is nothing, the one before keeps its gap") << "I?"
                                                                            << QStringList{"###.", //
                                                                                           ".#..", //
                                                                                           ".#..", //
                                                                                           ".#..", //
                                                                                           "###."};
    QTest::newRow("one unknown character alone") << "?" << QStringList{none, none, none, none, none};
    QTest::newRow("two unknown characters") << "??" << QStringList{".", ".", ".", ".", "."};
    QTest::newRow("NUL is unknown") << QString(QChar(0)) + "I"
                                    << QStringList{".###", //
                                                   "..#.", //
                                                   "..#.", //
                                                   "..#.", //
                                                   ".###"};
    QTest::newRow("a character of two units counts twice")
        << QString::fromUtf8("\xf0\x9f\x98\x80.") << QStringList{"...", "...", "...", "...", "..#"};
}

void TestBootlogoFont::rendersTexts()
{
    QFETCH(QString, text);
    QFETCH(QStringList, rows);
    const LetterBits bits = ABootlogoData::textToBits(text);
    QCOMPARE(bits.bounds.topLeft(), QPoint(0, 0));
    QCOMPARE(bits.bounds.right(), rows.constFirst().size() - 1);
    QCOMPARE(bits.bounds.bottom(), 4);
    QCOMPARE(rowsOf(bits), rows);
}

void TestBootlogoFont::givesThePointsOfATextCharacterByCharacter()
{
    const QList<QPoint> colon = {{0, 2}, {0, 0}};
    const QList<QPoint> one = {{3, 4}, {2, 3}, {3, 3}, {3, 2}, {3, 1}, {3, 0}};
    QCOMPARE(ABootlogoData::textToBits(QStringLiteral(":1")).points, colon + one);
}

void TestBootlogoFont::rendersNoMoreThanAListCanHold()
{
    constexpr int kMost = 16777216;
    QString text(kMost - 1, ' '); // no points, and two columns each but for the last one
    QCOMPARE(ABootlogoData::textToBits(text).bounds.right(), 2 * (kMost - 1) - 2);
    text += "  ";
    QCOMPARE(ABootlogoData::textToBits(text).bounds.right(), 2 * kMost - 2);
}

QTEST_GUILESS_MAIN(TestBootlogoFont)
#include "tst_bootlogofont.moc"
