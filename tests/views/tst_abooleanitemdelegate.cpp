#include "views/abooleanitemdelegate.h"

#include "delegatecell.h"
#include "editorkeys.h"
#include "translatedtexts.h"

class TestABooleanItemDelegate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theTextsAreTrueAndFalse();
    void theTextsAreThoseOfTheConstructor();
    void theTextsAreInTheLanguageOfTheApplication();
    void aValueIsShownAsItsText_data();
    void aValueIsShownAsItsText();
    void theEditorHoldsTheTrueTextFirst();
    void theEditorShowsWhatTheCellShows();
    void aBoolIsCommitted();
    void equalTextsAreStillTwoChoices();
    void paintingAndSizeAreThoseOfThatText();
    void theEditorFillsTheCell();
    void otherEditorsAreServedByTheBaseClass();
};

void TestABooleanItemDelegate::theTextsAreTrueAndFalse()
{
    QObject parent;
    const ABooleanItemDelegate delegate(&parent);
    QCOMPARE(delegate.parent(), &parent);
    QCOMPARE(delegate.displayText(true, QLocale::c()), QString("True"));
    QCOMPARE(delegate.displayText(false, QLocale::c()), QString("False"));
}

void TestABooleanItemDelegate::theTextsAreThoseOfTheConstructor()
{
    QObject parent;
    const ABooleanItemDelegate delegate("On", "Off", &parent);
    QCOMPARE(delegate.parent(), &parent);
    for (const QLocale &locale : {QLocale::c(), QLocale(QLocale::German), QLocale(QLocale::Arabic)}) {
        QCOMPARE(delegate.displayText(true, locale), QString("On"));
        QCOMPARE(delegate.displayText(false, locale), QString("Off"));
    }
}

void TestABooleanItemDelegate::theTextsAreInTheLanguageOfTheApplication()
{
    const TranslatedTexts german("ABooleanItemDelegate", {{"True", "Wahr"}, {"False", "Falsch"}});
    const ABooleanItemDelegate delegate;
    QCOMPARE(delegate.displayText(true, QLocale::c()), QString("Wahr"));
    QCOMPARE(delegate.displayText(false, QLocale::c()), QString("Falsch"));
}

void TestABooleanItemDelegate::aValueIsShownAsItsText_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("true") << QVariant(true) << "On";
    QTest::newRow("false") << QVariant(false) << "Off";
    QTest::newRow("number") << QVariant(-1) << "On";
    QTest::newRow("zero") << QVariant(0.0) << "Off";
    QTest::newRow("text") << QVariant("yes") << "On";
    QTest::newRow("text for false") << QVariant("FALSE") << "Off";
    QTest::newRow("text zero") << QVariant("0") << "Off";
    QTest::newRow("empty") << QVariant("") << "Off";
    QTest::newRow("nothing") << QVariant() << "Off";
}

void TestABooleanItemDelegate::aValueIsShownAsItsText()
{
    QFETCH(QVariant, value);
    const ABooleanItemDelegate delegate("On", "Off");
    QTEST(delegate.displayText(value, QLocale::c()), "text");
}

void TestABooleanItemDelegate::theEditorHoldsTheTrueTextFirst()
{
    QWidget parent;
    const ABooleanItemDelegate delegate("On", "Off");
    const Cell cell(false);
    QStyleOptionViewItem option;
    option.rect = QRect(3, 4, 120, 30);
    const auto *box = qobject_cast<QComboBox *>(delegate.createEditor(&parent, option, cell.index()));
    QVERIFY(box);
    QCOMPARE(box->parentWidget(), &parent);
    QCOMPARE(box->geometry(), option.rect);
    QCOMPARE(box->sizeAdjustPolicy(), QComboBox::AdjustToContentsOnFirstShow);
    QCOMPARE(box->count(), 2);
    QCOMPARE(box->itemText(0), QString("On"));
    QCOMPARE(box->itemText(1), QString("Off"));
}

void TestABooleanItemDelegate::theEditorShowsWhatTheCellShows()
{
    QWidget parent;
    const ABooleanItemDelegate delegate("On", "Off");
    Cell cell(true);
    auto *box = qobject_cast<QComboBox *>(delegate.createEditor(&parent, {}, cell.index()));
    delegate.setEditorData(box, cell.index());
    QCOMPARE(box->currentIndex(), 0);
    cell.model.setData(cell.index(), "0");
    delegate.setEditorData(box, cell.index());
    QCOMPARE(box->currentIndex(), 1);
    delegate.setEditorData(box, QModelIndex());
    QCOMPARE(box->currentIndex(), 1);
}

void TestABooleanItemDelegate::aBoolIsCommitted()
{
    QWidget parent;
    const ABooleanItemDelegate delegate("On", "Off");
    Cell cell("x");
    auto *box = qobject_cast<QComboBox *>(delegate.createEditor(&parent, {}, cell.index()));
    for (const int row : {1, 0, -1}) {
        box->setCurrentIndex(row);
        delegate.setModelData(box, &cell.model, cell.index());
        QCOMPARE(cell.value(), QVariant(row == 0));
        QCOMPARE(cell.value().type(), QVariant::Bool);
    }
}

void TestABooleanItemDelegate::equalTextsAreStillTwoChoices()
{
    QWidget parent;
    const ABooleanItemDelegate delegate("same", "same");
    Cell cell(false);
    auto *box = qobject_cast<QComboBox *>(delegate.createEditor(&parent, {}, cell.index()));
    delegate.setEditorData(box, cell.index());
    delegate.setModelData(box, &cell.model, cell.index());
    QCOMPARE(cell.value(), QVariant(false));
}

void TestABooleanItemDelegate::paintingAndSizeAreThoseOfThatText()
{
    const ABooleanItemDelegate delegate("a longer text", "-");
    compareToAPlainItem(delegate, Cell(true).index(), "a longer text");
}

void TestABooleanItemDelegate::theEditorFillsTheCell()
{
    compareEditorToItsCell(ABooleanItemDelegate(), true);
}

void TestABooleanItemDelegate::otherEditorsAreServedByTheBaseClass()
{
    compareForeignLineEdit(ABooleanItemDelegate());
}

QTEST_MAIN(TestABooleanItemDelegate)
#include "tst_abooleanitemdelegate.moc"
