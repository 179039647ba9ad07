#include "apps/aveldoran/spelling.h"

#include <QtTest/QtTest>

class TestSpelling : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void countsMistakes_data();
    void countsMistakes();
    void findsTheNearest();
};

void TestSpelling::countsMistakes_data()
{
    QTest::addColumn<QString>("one");
    QTest::addColumn<QString>("other");
    QTest::addColumn<int>("distance");
    QTest::newRow("nothing") << ""
                             << "" << 0;
    QTest::newRow("the same") << "format"
                              << "format" << 0;
    QTest::newRow("all missing") << ""
                                 << "max" << 3;
    QTest::newRow("one missing") << "formt"
                                 << "format" << 1;
    QTest::newRow("one too much") << "formaat"
                                  << "format" << 1;
    QTest::newRow("one wrong") << "farmat"
                               << "format" << 1;
    QTest::newRow("two swapped") << "fomrat"
                                 << "format" << 1;
    QTest::newRow("two swapped at the begin") << "of"
                                              << "fo" << 1;
    QTest::newRow("swapped twice") << "ofmrat"
                                   << "format" << 2;
    QTest::newRow("apart") << "tamrof"
                           << "format" << 5;
    QTest::newRow("swapped with one between") << "ca"
                                              << "abc" << 3; // a swapped pair is not edited again
    QTest::newRow("unlike") << "kitten"
                            << "sitting" << 3;
}

void TestSpelling::countsMistakes()
{
    QFETCH(QString, one);
    QFETCH(QString, other);
    QFETCH(int, distance);
    QCOMPARE(editDistance(one, other), distance);
    QCOMPARE(editDistance(other, one), distance);
}

void TestSpelling::findsTheNearest()
{
    const QStringList words{"--max", "--min", "--format", "--output"};
    QCOMPARE(nearestWord("--formt", words), QString("--format"));
    QCOMPARE(nearestWord("--mxa", words), QString("--max"));
    QCOMPARE(nearestWord("--outputs", words), QString("--output"));
    QCOMPARE(nearestWord("--colour", words), QString());
    QCOMPARE(nearestWord("", words), QString());
    QCOMPARE(nearestWord("x", {}), QString());
}

QTEST_GUILESS_MAIN(TestSpelling)
#include "tst_spelling.moc"
