#include "limit/alimitselectiondelegate.h"

#include "views/delegatecell.h"

#include <QtTest/QtTest>
#include <QtWidgets/QComboBox>

namespace {

const QMap<unsigned int, QString> kLabels = {{2, "logarithmic"}, {0, "step"}, {1, "linear"}};

} // namespace

class TestALimitSelectionDelegate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aKeyIsShownAsItsLabel_data();
    void aKeyIsShownAsItsLabel();
    void theLocaleDoesNotMatter();
    void theEditorHoldsTheLabelsInKeyOrder();
    void theFreshEditorSelectsTheShownText_data();
    void theFreshEditorSelectsTheShownText();
    void theEditorTakesTheCellsKey_data();
    void theEditorTakesTheCellsKey();
    void theKeyIsStoredAsANumber();
    void whatCouldNotBeShownIsNotOverwritten();
    void otherEditorsAreServedByTheBaseClass();
    void withoutLabelsAllIsEmpty();
};

void TestALimitSelectionDelegate::aKeyIsShownAsItsLabel_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("number") << QVariant(2) << "logarithmic";
    QTest::newRow("text") << QVariant("1") << "linear";
    QTest::newRow("unsigned") << QVariant(0u) << "step";
    QTest::newRow("unknown") << QVariant(3) << "";
    QTest::newRow("negative") << QVariant(-1) << "";
    QTest::newRow("negative text") << QVariant("-1") << "step"; // which is no unsigned number, so 0
    QTest::newRow("no number") << QVariant("x") << "step";
    QTest::newRow("empty") << QVariant("") << "step";
    QTest::newRow("nothing") << QVariant() << "step";
}

void TestALimitSelectionDelegate::aKeyIsShownAsItsLabel()
{
    QFETCH(QVariant, value);
    const ALimitSelectionDelegate delegate(kLabels);
    QTEST(delegate.displayText(value, QLocale::c()), "text");
}

void TestALimitSelectionDelegate::theLocaleDoesNotMatter()
{
    const ALimitSelectionDelegate delegate({{1000, "thousand"}});
    for (const QLocale &locale : {QLocale::c(), QLocale(QLocale::German), QLocale(QLocale::Arabic)})
        QCOMPARE(delegate.displayText(1000, locale), QString("thousand"));
}

void TestALimitSelectionDelegate::theEditorHoldsTheLabelsInKeyOrder()
{
    QWidget parent;
    const ALimitSelectionDelegate delegate(kLabels, &parent);
    QCOMPARE(delegate.parent(), &parent);
    Cell cell("1");
    const auto *box = qobject_cast<QComboBox *>(delegate.createEditor(&parent, {}, cell.index()));
    QVERIFY(box);
    QCOMPARE(box->parentWidget(), &parent);
    QCOMPARE(box->count(), 3);
    const QStringList labels = {"step", "linear", "logarithmic"};
    for (int i = 0; i < box->count(); ++i) {
        QCOMPARE(box->itemText(i), labels.at(i));
        QVERIFY(box->itemIcon(i).isNull());
        QCOMPARE(box->itemData(i).type(), QVariant::UInt);
        QCOMPARE(box->itemData(i).toUInt(), unsigned(i));
    }
}

void TestALimitSelectionDelegate::theFreshEditorSelectsTheShownText_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("index");
    QTest::newRow("a label") << QVariant("linear") << 1;
    QTest::newRow("another case") << QVariant("Linear") << -1;
    QTest::newRow("a part") << QVariant("log") << -1;
    QTest::newRow("a key") << QVariant("1") << -1; // which setEditorData selects
    QTest::newRow("nothing") << QVariant() << -1;
}

void TestALimitSelectionDelegate::theFreshEditorSelectsTheShownText()
{
    QFETCH(QVariant, value);
    const ALimitSelectionDelegate delegate(kLabels);
    Cell cell(value);
    const std::unique_ptr<QWidget> editor(delegate.createEditor(nullptr, {}, cell.index()));
    QTEST(qobject_cast<QComboBox *>(editor.get())->currentIndex(), "index");
}

void TestALimitSelectionDelegate::theEditorTakesTheCellsKey_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("index");
    QTest::newRow("text") << QVariant("2") << 2;
    QTest::newRow("number") << QVariant(1) << 1;
    QTest::newRow("unsigned") << QVariant(0u) << 0;
    QTest::newRow("unknown") << QVariant("3") << -1;
    QTest::newRow("a label") << QVariant("linear") << -1;
    QTest::newRow("empty") << QVariant("") << -1;
    QTest::newRow("nothing") << QVariant() << -1;
}

void TestALimitSelectionDelegate::theEditorTakesTheCellsKey()
{
    QFETCH(QVariant, value);
    const ALimitSelectionDelegate delegate(kLabels);
    Cell cell(value);
    const std::unique_ptr<QWidget> editor(delegate.createEditor(nullptr, {}, cell.index()));
    auto *box = qobject_cast<QComboBox *>(editor.get());
    box->setCurrentIndex(1);
    delegate.setEditorData(box, cell.index());
    QTEST(box->currentIndex(), "index");
}

void TestALimitSelectionDelegate::theKeyIsStoredAsANumber()
{
    const ALimitSelectionDelegate delegate(kLabels);
    Cell cell("1");
    const std::unique_ptr<QWidget> editor(delegate.createEditor(nullptr, {}, cell.index()));
    auto *box = qobject_cast<QComboBox *>(editor.get());
    box->setCurrentIndex(2);
    delegate.setModelData(box, &cell.model, cell.index());
    QCOMPARE(cell.value().type(), QVariant::UInt);
    QCOMPARE(cell.value().toUInt(), 2u);
}

// Opening and closing the editor of a cell with an unknown number leaves it.
void TestALimitSelectionDelegate::whatCouldNotBeShownIsNotOverwritten()
{
    const ALimitSelectionDelegate delegate(kLabels);
    for (const QVariant &value : {QVariant("17"), QVariant("linear"), QVariant("")}) {
        Cell cell(value);
        const std::unique_ptr<QWidget> editor(delegate.createEditor(nullptr, {}, cell.index()));
        delegate.setEditorData(editor.get(), cell.index());
        delegate.setModelData(editor.get(), &cell.model, cell.index());
        QCOMPARE(cell.value(), value);
    }
}

void TestALimitSelectionDelegate::otherEditorsAreServedByTheBaseClass()
{
    compareForeignLineEdit(ALimitSelectionDelegate(kLabels));
}

void TestALimitSelectionDelegate::withoutLabelsAllIsEmpty()
{
    const ALimitSelectionDelegate delegate({});
    Cell cell("1");
    QCOMPARE(delegate.displayText("1", QLocale::c()), QString());
    const std::unique_ptr<QWidget> editor(delegate.createEditor(nullptr, {}, cell.index()));
    delegate.setEditorData(editor.get(), cell.index());
    delegate.setModelData(editor.get(), &cell.model, cell.index());
    QCOMPARE(qobject_cast<QComboBox *>(editor.get())->count(), 0);
    QCOMPARE(cell.value(), QVariant("1"));
}

QTEST_MAIN(TestALimitSelectionDelegate)
#include "tst_alimitselectiondelegate.moc"
