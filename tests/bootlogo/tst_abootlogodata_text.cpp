#include "bootlogo/logopicture.h"

#include <bootlogo/abootlogodata.h>

#include <QtTest/QtTest>

#include <limits>
#include <random>

using logopicture::rowsOf;

namespace {

constexpr int kMax = std::numeric_limits<int>::max();
constexpr int kMin = std::numeric_limits<int>::min();

void fill(ABootlogoData *logo)
{
    logo->loadBitstream(QByteArray(logo->toBitstream().size(), '\xff'));
}

// The pixels that the text has to paint, in order, from the points of the rendered text.
QList<QVariantList> paintedPixels(const ABootlogoData &logo, int col, int row, const QString &text)
{
    QList<QVariantList> pixels;
    const int right = ABootlogoData::textToBits(text).bounds.right();
    for (int x = 0; x <= right; ++x) {
        for (int y = 0; y <= 4; ++y) {
            const int atCol = col + x;
            const int atRow = row + y;
            if (atCol >= 0 && atCol < logo.cols() && atRow >= 0 && atRow < logo.rows())
                pixels.append({atCol, atRow});
        }
    }
    return pixels;
}

} // namespace

class TestABootlogoDataText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theTopOfAGlyphIsFourRowsAboveItsPosition();
    void textErasesWhatWasUnderIt();
    void theFontReachesAllCharacters();
    void paintsWhatFits_data();
    void paintsWhatFits();
    void paintsNothingFarOutside_data();
    void paintsNothingFarOutside();
    void tellsEachPixelColumnByColumnFromTheBottom();
    void aTextThatShowsNothingPaintsNothing();
    void paintsWhatIsRendered();
    void aVeryLongTextIsCutAtTheEdge();
};

void TestABootlogoDataText::theTopOfAGlyphIsFourRowsAboveItsPosition()
{
    ABootlogoData logo(nullptr);
    logo.resize(5, 6);
    logo.writeText(0, 0, QStringLiteral("A"));
    QCOMPARE(rowsOf(logo), QStringList({".....", //
                                        ".#...", //
                                        "#.#..", //
                                        "###..", //
                                        "#.#..", //
                                        "#.#.."}));
}

void TestABootlogoDataText::textErasesWhatWasUnderIt()
{
    ABootlogoData logo(nullptr);
    logo.resize(10, 7);
    fill(&logo);
    logo.writeText(1, 1, QStringLiteral("t1"));
    QCOMPARE(rowsOf(logo), QStringList({"##########", //
                                        "####..####", //
                                        "#.#..#####", //
                                        "#.#...####", //
                                        "#.#...####", //
                                        "#.#...####", //
                                        "##########"}));
}

void TestABootlogoDataText::theFontReachesAllCharacters()
{
    ABootlogoData logo(nullptr);
    logo.resize(34, 5);
    logo.writeText(0, 0, QStringLiteral("v2.4-rc: +!"));
    QCOMPARE(rowsOf(logo), QStringList({"#.#..#....#.#....##...##.........#", //
                                        "#.#.#.#...#.#....#.#.#........#..#", //
                                        "#.#...#...###.##.##..#...#...###.#", //
                                        "#.#..#......#....#.#.#........#...", //
                                        ".#..###.#...#....#.#..##.#.......#"}));
}

void TestABootlogoDataText::paintsWhatFits_data()
{
    QTest::addColumn<int>("col");
    QTest::addColumn<int>("row");
    QTest::addColumn<QStringList>("rows");
    QTest::newRow("left") << -2 << 0 << QStringList{"####", ".###", "####", ".###", ".###"};
    QTest::newRow("right") << 2 << 0 << QStringList{"####", "###.", "####", "###.", "###."};
    QTest::newRow("below") << 0 << -3 << QStringList{"####", "####", "####", "####", "#..#"};
    QTest::newRow("above") << 0 << 4 << QStringList{"#..#", "####", "####", "####", "####"};
    QTest::newRow("a corner") << -1 << 3 << QStringList{"..##", "..##", "####", "####", "####"};
}

void TestABootlogoDataText::paintsWhatFits()
{
    QFETCH(int, col);
    QFETCH(int, row);
    QFETCH(QStringList, rows);
    ABootlogoData logo(nullptr);
    logo.resize(4, 5);
    fill(&logo);
    logo.writeText(col, row, QStringLiteral("F"));
    QCOMPARE(rowsOf(logo), rows);
}

void TestABootlogoDataText::paintsNothingFarOutside_data()
{
    QTest::addColumn<int>("col");
    QTest::addColumn<int>("row");
    QTest::newRow("left") << -3 << 0;
    QTest::newRow("right") << 4 << 0;
    QTest::newRow("below") << 0 << -5;
    QTest::newRow("above") << 0 << 5;
    QTest::newRow("far right") << kMax << 0;
    QTest::newRow("far above") << 0 << kMax;
    QTest::newRow("far left") << kMin << 0;
    QTest::newRow("far below") << 0 << kMin;
    QTest::newRow("nearly as far") << kMax - 2 << kMax - 2;
}

void TestABootlogoDataText::paintsNothingFarOutside()
{
    QFETCH(int, col);
    QFETCH(int, row);
    ABootlogoData logo(nullptr);
    logo.resize(4, 5);
    const QSignalSpy pixels(&logo, &ABootlogoData::pixelChanged);
    logo.writeText(col, row, QStringLiteral("L"));
    QVERIFY(pixels.isEmpty());
    QCOMPARE(rowsOf(logo).join(QString()).count('#'), 0);
}

void TestABootlogoDataText::tellsEachPixelColumnByColumnFromTheBottom()
{
    ABootlogoData logo(nullptr);
    logo.resize(12, 6);
    for (const QPoint position : {QPoint(0, 0), QPoint(-2, -1), QPoint(7, 3)}) {
        const QSignalSpy pixels(&logo, &ABootlogoData::pixelChanged);
        logo.writeText(position.x(), position.y(), QStringLiteral("1?M"));
        QCOMPARE(static_cast<const QList<QVariantList> &>(pixels),
                 paintedPixels(logo, position.x(), position.y(), QStringLiteral("1?M")));
    }
}

void TestABootlogoDataText::aTextThatShowsNothingPaintsNothing()
{
    ABootlogoData logo(nullptr);
    logo.resize(10, 5);
    fill(&logo);
    const QSignalSpy pixels(&logo, &ABootlogoData::pixelChanged);
    logo.writeText(0, 0, QString());
    logo.writeText(0, 0, QStringLiteral("?"));
    QVERIFY(pixels.isEmpty());
    logo.writeText(9, 0, QStringLiteral("??"));
    QCOMPARE(pixels.size(), 5);
    QCOMPARE(rowsOf(logo), QStringList({"#########.", "#########.", "#########.", "#########.", "#########."}));
}

void TestABootlogoDataText::paintsWhatIsRendered()
{
    std::mt19937 random(6);
    const QString characters = QStringLiteral("abcDEFghiJKLmno1234567890.:-!+ _?%") + QChar(0) + QChar(0x20ac);
    ABootlogoData logo(nullptr);
    logo.resize(51, 25);
    ABootlogoData expected(nullptr);
    expected.resize(51, 25);
    for (int round = 0; round < 300; ++round) {
        QString text;
        for (unsigned length = random() % 12; length > 0; --length)
            text += characters.at(static_cast<int>(random() % static_cast<unsigned>(characters.size())));
        const int col = static_cast<int>(random() % 70) - 20;
        const int row = static_cast<int>(random() % 35) - 5;
        fill(&logo);
        fill(&expected);
        const QList<QVariantList> painted = paintedPixels(logo, col, row, text);
        for (const QVariantList &pixel : painted)
            expected.setPixel(pixel.at(0).toInt(), pixel.at(1).toInt(), false);
        const LetterBits bits = ABootlogoData::textToBits(text);
        for (const QPoint &point : bits.points)
            expected.setPixel(col + point.x(), row + point.y(), true);
        logo.writeText(col, row, text);
        QCOMPARE(rowsOf(logo), rowsOf(expected));
    }
}

void TestABootlogoDataText::aVeryLongTextIsCutAtTheEdge()
{
    const QString text(200000, QChar('M'));
    QCOMPARE(ABootlogoData::textToBits(text).bounds.right(), 1199998);
    ABootlogoData logo(nullptr);
    logo.resize(51, 5);
    const QSignalSpy pixels(&logo, &ABootlogoData::pixelChanged);
    logo.writeText(0, 0, text);
    QCOMPARE(pixels.size(), 51 * 5);
    logo.writeText(-6 * 199999, 0, text); // its last character
    QCOMPARE(pixels.size(), 51 * 5 + 25);
}

QTEST_GUILESS_MAIN(TestABootlogoDataText)
#include "tst_abootlogodata_text.moc"
