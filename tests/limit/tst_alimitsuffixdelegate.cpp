#include "limit/alimitsuffixdelegate.h"

#include "views/delegatecell.h"

#include <QtTest/QtTest>
#include <QtWidgets/QDoubleSpinBox>

#include <limits>

class TestALimitSuffixDelegate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void zerosAtTheEndAreTrimmed_data();
    void zerosAtTheEndAreTrimmed();
    void theNumberIsInTheFormOfTheLocale();
    void thePointIsThatOfTheDefaultLocale();
    void theEditorIsASpinBox();
    void theEditorHoldsTheCellsNumber_data();
    void theEditorHoldsTheCellsNumber();
    void theEditorCommitsANumber();
    void aNewSuffixCountsFromThenOn();
};

void TestALimitSuffixDelegate::zerosAtTheEndAreTrimmed_data()
{
    QTest::addColumn<int>("decimals");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, int decimals, const QVariant &value, const char *text) {
        QTest::newRow(name) << decimals << value << QString::fromLatin1(text);
    };
    row("one decimal counts", 3, 1.5, "1.5 dB");
    row("one zero stays", 3, 2, "2.0 dB");
    row("all decimals count", 3, 1.125, "1.125 dB");
    row("rounded", 3, 1.99999, "2.0 dB");
    row("zero", 3, 0, "0.0 dB");
    row("negative", 3, -12.25, "-12.25 dB");
    row("one decimal", 1, 10, "10.0 dB");
    row("text", 3, "     87.5000000", "87.5 dB");
    row("no number", 3, "x", "0.0 dB");
    row("nothing", 3, QVariant(), "0.0 dB");
    row("empty suffix stays apart", 2, 1.25, "1.25 dB");
    row("seven decimals", 7, 100.0000001, "100.0000001 dB");
    // Without decimals zeros that count go too: deliberate.
    row("hundred without decimals", 0, 100, "10 dB");
    row("ten without decimals", 0, 10, "10 dB");
    row("thousand without decimals", 0, 2000, "20 dB");
    row("three digits that end otherwise", 0, 105, "105 dB");
    row("infinity", 3, std::numeric_limits<double>::infinity(), "inf dB");
}

void TestALimitSuffixDelegate::zerosAtTheEndAreTrimmed()
{
    QFETCH(int, decimals);
    QFETCH(QVariant, value);
    const DefaultLocale locale(QLocale::c());
    const ALimitSuffixDelegate delegate("dB", decimals);
    QTEST(delegate.displayText(value, QLocale::c()), "text");
}

void TestALimitSuffixDelegate::theNumberIsInTheFormOfTheLocale()
{
    const QLocale german(QLocale::German, QLocale::Germany);
    const DefaultLocale locale(german);
    const ALimitSuffixDelegate delegate("MHz", 3);
    QCOMPARE(delegate.displayText(1234.5, german), QString("1.234,5 MHz"));
    QCOMPARE(delegate.displayText(2, german), QString("2,0 MHz"));
}

// Deliberate: with another point in the given locale, the zero behind it goes, and then the point holds nothing up.
void TestALimitSuffixDelegate::thePointIsThatOfTheDefaultLocale()
{
    const DefaultLocale locale(QLocale::c());
    const QLocale german(QLocale::German, QLocale::Germany);
    const ALimitSuffixDelegate delegate("dB", 3);
    QCOMPARE(delegate.displayText(1.5, german), QString("1,5 dB"));
    QCOMPARE(delegate.displayText(2, german), QString("2, dB"));
    QCOMPARE(delegate.displayText(100, german), QString("100, dB"));
    const DefaultLocale other(german);
    QCOMPARE(delegate.displayText(2, QLocale::c()), QString("2. dB"));
}

void TestALimitSuffixDelegate::theEditorIsASpinBox()
{
    QWidget parent;
    const ALimitSuffixDelegate delegate("dB\u00b5V", 2, &parent);
    QCOMPARE(delegate.parent(), &parent);
    Cell cell("1.25");
    const auto *box = qobject_cast<QDoubleSpinBox *>(delegate.createEditor(&parent, {}, cell.index()));
    QVERIFY(box);
    QCOMPARE(box->parentWidget(), &parent);
    QCOMPARE(box->suffix(), QString(" dB\u00b5V"));
    QCOMPARE(box->maximum(), 1e9);
    QCOMPARE(box->minimum(), -1e9);
    QCOMPARE(box->decimals(), 2);
    QCOMPARE(box->value(), 1.25);
}

void TestALimitSuffixDelegate::theEditorHoldsTheCellsNumber_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<double>("number");
    QTest::newRow("number") << QVariant(87.5) << 87.5;
    QTest::newRow("text") << QVariant("87.5") << 87.5;
    QTest::newRow("wide text") << QVariant("     87.5000000") << 87.5;
    QTest::newRow("beyond") << QVariant(1e12) << 1e9;
    QTest::newRow("below") << QVariant(-1e12) << -1e9;
    QTest::newRow("decimals") << QVariant("0.0083335") << 0.0083335;
    QTest::newRow("no number") << QVariant("x") << 0.0;
    QTest::newRow("nothing") << QVariant() << 0.0;
}

void TestALimitSuffixDelegate::theEditorHoldsTheCellsNumber()
{
    QFETCH(QVariant, value);
    const ALimitSuffixDelegate delegate("MHz", 7);
    Cell cell(value);
    const std::unique_ptr<QWidget> editor(delegate.createEditor(nullptr, {}, cell.index()));
    auto *box = qobject_cast<QDoubleSpinBox *>(editor.get());
    QTEST(box->value(), "number");
    delegate.setEditorData(box, cell.index());
    QTEST(box->value(), "number");
}

void TestALimitSuffixDelegate::theEditorCommitsANumber()
{
    const ALimitSuffixDelegate delegate("MHz", 3);
    Cell cell("1");
    const std::unique_ptr<QWidget> editor(delegate.createEditor(nullptr, {}, cell.index()));
    qobject_cast<QDoubleSpinBox *>(editor.get())->setValue(2.125);
    delegate.setModelData(editor.get(), &cell.model, cell.index());
    QCOMPARE(cell.index().data(Qt::EditRole).toDouble(), 2.125);
}

void TestALimitSuffixDelegate::aNewSuffixCountsFromThenOn()
{
    const DefaultLocale locale(QLocale::c());
    ALimitSuffixDelegate delegate("dB", 3);
    Cell cell(1.5);
    const std::unique_ptr<QWidget> before(delegate.createEditor(nullptr, {}, cell.index()));
    delegate.setSuffix("dBm");
    const std::unique_ptr<QWidget> after(delegate.createEditor(nullptr, {}, cell.index()));
    QCOMPARE(delegate.displayText(1.5, QLocale::c()), QString("1.5 dBm"));
    QCOMPARE(qobject_cast<QDoubleSpinBox *>(before.get())->suffix(), QString(" dB"));
    QCOMPARE(qobject_cast<QDoubleSpinBox *>(after.get())->suffix(), QString(" dBm"));
    delegate.setSuffix(QString());
    QCOMPARE(delegate.displayText(1.5, QLocale::c()), QString("1.5 "));
}

QTEST_MAIN(TestALimitSuffixDelegate)
#include "tst_alimitsuffixdelegate.moc"
