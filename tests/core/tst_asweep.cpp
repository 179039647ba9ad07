#include "core/peaksearch.h"

#include <QtCore/QVariant>
#include <QtTest/QtTest>

#include <cstddef>

class TestASweep : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theValuesAreItsFirstField();
    void aDefaultSweepHasNothing();
    void holdsWhatItWasBuiltFrom();
    void aCopyIsIndependent();
    void travelsInAVariant();
    void extremes_data();
    void extremes();
    void extremesAreWholePoints();
    void aRecordWithoutCoordinatesIsEmpty();
};

void TestASweep::theValuesAreItsFirstField()
{
    ASweep sweep;
    QCOMPARE(static_cast<void *>(&sweep.values), static_cast<void *>(&sweep));
}

void TestASweep::aDefaultSweepHasNothing()
{
    const ASweep sweep;
    QVERIFY(sweep.values.isEmpty());
    QVERIFY(!sweep.startTime().isValid());
    QVERIFY(!sweep.stopTime().isValid());
    QVERIFY(sweep.geoData().isEmpty());
    QVERIFY(!sweep.geoData().recordTime.isValid());
    QVERIFY(sweep.maximum() == AMeasurementValue());
    QVERIFY(sweep.minimum() == AMeasurementValue());
}

void TestASweep::holdsWhatItWasBuiltFrom()
{
    const QDateTime start(QDate(2024, 5, 17), QTime(12, 30, 0), Qt::UTC);
    const QDateTime stop = start.addMSecs(250);
    const QList<AMeasurementValue> values = points({1, 3, 2});
    const ASweep sweep(values, start, stop);
    QVERIFY(sweep.values == values);
    QCOMPARE(sweep.startTime(), start);
    QCOMPARE(sweep.stopTime(), stop);
}

void TestASweep::aCopyIsIndependent()
{
    ASweep sweep(points({1, 2, 3}));
    AGeoData position;
    position.latitude = 48.5F;
    position.longitude = -9.25F;
    position.recordName = QStringLiteral("tower");
    sweep.setGeoData(position);

    ASweep copy(sweep);
    copy.values[0].level = 77.0;
    copy.setGeoData(AGeoData());
    QCOMPARE(sweep.values[0].level, 1.0);
    QCOMPARE(sweep.geoData().latitude, 48.5F);
    QCOMPARE(sweep.geoData().longitude, -9.25F);
    QCOMPARE(sweep.geoData().recordName, QStringLiteral("tower"));
    QVERIFY(copy.geoData().isEmpty());
}

void TestASweep::travelsInAVariant()
{
    ASweep sweep(points({4, 5}));
    AGeoData position;
    position.altitude = 312.5F;
    sweep.setGeoData(position);
    const auto back = QVariant::fromValue(sweep).value<ASweep>();
    QVERIFY(back.values == sweep.values);
    QCOMPARE(QVariant::fromValue(back.geoData()).value<AGeoData>().altitude, 312.5F);
}

void TestASweep::extremes_data()
{
    QTest::addColumn<QList<AMeasurementValue>>("values");
    QTest::addColumn<QString>("maximum");
    QTest::addColumn<QString>("minimum");

    QTest::newRow("no point") << points({}) << "-"
                              << "-";
    QTest::newRow("one point") << points({-3}) << "-3@10"
                               << "-3@10";
    QTest::newRow("inside") << points({2, 7, -1, 4}) << "7@20"
                            << "-1@30";
    QTest::newRow("at the ends") << points({9, 7, 8, 1}) << "9@10"
                                 << "1@40";
    QTest::newRow("the first of equal levels") << points({1, 2, 1, 2}) << "2@20"
                                               << "1@10";
    QTest::newRow("NaN is passed over") << points({kNaN, 2, kNaN, 1, kNaN}) << "2@20"
                                        << "1@40";
    QTest::newRow("NaN alone") << points({kNaN, kNaN}) << "-"
                               << "-";
    QTest::newRow("infinities") << points({1, kInfinity, -kInfinity}) << "inf@20"
                                << "-inf@30";
    QTest::newRow("minus infinity alone") << points({-kInfinity}) << "-inf@10"
                                          << "-inf@10";
}

void TestASweep::extremes()
{
    QFETCH(QList<AMeasurementValue>, values);
    QFETCH(QString, maximum);
    QFETCH(QString, minimum);
    const ASweep sweep(values);
    QCOMPARE(peaksText({sweep.maximum()}), maximum);
    QCOMPARE(peaksText({sweep.minimum()}), minimum);
}

void TestASweep::extremesAreWholePoints()
{
    QList<AMeasurementValue> values = points({1, 5, 3});
    values[1] = AMeasurementValue(5.0, kV, hertz(20), 42, -7.5);
    values[1].reserved = 9;
    QVERIFY(ASweep(values).maximum() == values[1]);
}

void TestASweep::aRecordWithoutCoordinatesIsEmpty()
{
    AGeoData record;
    record.altitude = 100.0F;
    record.recordTime = QDateTime::currentDateTimeUtc();
    QVERIFY(record.isEmpty());
    record.longitude = 0.5F;
    QVERIFY(!record.isEmpty());
    record.longitude = 0.0F;
    record.latitude = -0.5F;
    QVERIFY(!record.isEmpty());
}

QTEST_APPLESS_MAIN(TestASweep)
#include "tst_asweep.moc"
