#include "views/acomboboxdelegate.h"

#include "delegatecell.h"
#include "editorkeys.h"

#include <QtCore/QStringListModel>

namespace {

// A list with several columns, "A0", "B0", ... in the first row.
class Columns : public QAbstractListModel
{
    Q_OBJECT

public:
    int rowCount(const QModelIndex &parent = {}) const override { return parent.isValid() ? 0 : 3; }
    int columnCount(const QModelIndex &parent) const override { return parent.isValid() ? 0 : 2; }
    QVariant data(const QModelIndex &index, int role) const override
    {
        if (role != Qt::DisplayRole && role != Qt::EditRole)
            return {};
        return QString(QChar('A' + index.column())) + QString::number(index.row());
    }
    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override
    {
        return hasIndex(row, column, parent) ? createIndex(row, column) : QModelIndex();
    }
};

QComboBox *makeEditor(const AComboBoxDelegate &delegate, QWidget *parent, const QModelIndex &index)
{
    auto *box = qobject_cast<QComboBox *>(delegate.createEditor(parent, {}, index));
    delegate.setEditorData(box, index);
    return box;
}

// The editor of a cell that holds a text, with these choices.
struct OpenBox
{
    OpenBox(const QStringList &choices, const QString &text)
        : model(choices)
        , delegate(&model, 0, nullptr)
        , cell(text)
        , box(makeEditor(delegate, &parent, cell.index()))
    {}
    void commit() { delegate.setModelData(box, &cell.model, cell.index()); }

    QWidget parent;
    QStringListModel model;
    AComboBoxDelegate delegate;
    Cell cell;
    QComboBox *box;
};

} // namespace

class TestAComboBoxDelegate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theEditorOffersTheModel();
    void theColumnDecidesWhatIsOffered_data();
    void theColumnDecidesWhatIsOffered();
    void theEditorShowsTheCellsText();
    void theCurrentTextIsCommitted();
    void aTextThatIsNoChoiceBecomesTheFirst();
    void withoutAModelTheBoxIsEmptyAndCommitsAnEmptyText();
    void aDeletedModelLeavesNothingToChoose();
    void theModelSurvivesEditorAndDelegate();
    void aChoiceIsTold();
    void openingTellsAChoiceThatIsNotTheFirst_data();
    void openingTellsAChoiceThatIsNotTheFirst();
    void eachChoiceIsToldOnceThoughItsTextIsTheSame();
    void aShrinkingModelTakesTheChoiceAlong();
    void paintingAndSizeAreThoseOfAPlainItem();
    void theEditorFillsTheCell();
    void otherEditorsAreServedByTheBaseClass();
};

void TestAComboBoxDelegate::theEditorOffersTheModel()
{
    QWidget parent;
    QStringListModel model({"one", "two"});
    const AComboBoxDelegate delegate(&model, 0, &parent);
    QCOMPARE(delegate.parent(), &parent);
    const Cell cell("two");
    const auto *box = qobject_cast<QComboBox *>(delegate.createEditor(&parent, {}, cell.index()));
    QVERIFY(box);
    QCOMPARE(box->parentWidget(), &parent);
    QCOMPARE(box->model(), &model);
    QCOMPARE(box->sizeAdjustPolicy(), QComboBox::AdjustToContents);
    QVERIFY(!box->isEditable());
    QCOMPARE(box->count(), 2);
    model.setStringList({"one", "two", "three"});
    QCOMPARE(box->count(), 3);
}

void TestAComboBoxDelegate::theColumnDecidesWhatIsOffered_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("committed");
    QTest::newRow("first") << 0 << "A2";
    QTest::newRow("second") << 1 << "B2";
    QTest::newRow("beyond") << 2 << "";
    QTest::newRow("negative") << -1 << "";
}

void TestAComboBoxDelegate::theColumnDecidesWhatIsOffered()
{
    QFETCH(int, column);
    QWidget parent;
    Columns model;
    const AComboBoxDelegate delegate(&model, column, nullptr);
    Cell cell("x");
    auto *box = makeEditor(delegate, &parent, cell.index());
    box->setCurrentIndex(2);
    delegate.setModelData(box, &cell.model, cell.index());
    QTEST(cell.value().toString(), "committed");
}

void TestAComboBoxDelegate::theEditorShowsTheCellsText()
{
    QCOMPARE(OpenBox({"one", "two"}, "two").box->currentIndex(), 1);
}

void TestAComboBoxDelegate::theCurrentTextIsCommitted()
{
    OpenBox open({"one", "two"}, "two");
    QTest::keyClick(open.box, Qt::Key_Up);
    QCOMPARE(open.cell.value(), QVariant("two"));
    open.commit();
    QCOMPARE(open.cell.value(), QVariant("one"));
    QCOMPARE(open.cell.value().type(), QVariant::String);
}

// Deliberate, other than in the delegates whose combo boxes may be without a selection.
void TestAComboBoxDelegate::aTextThatIsNoChoiceBecomesTheFirst()
{
    OpenBox open({"one", "two"}, "other");
    open.commit();
    QCOMPARE(open.cell.value(), QVariant("one"));
    open.box->setCurrentIndex(-1);
    open.commit();
    QCOMPARE(open.cell.value(), QVariant(""));
}

void TestAComboBoxDelegate::withoutAModelTheBoxIsEmptyAndCommitsAnEmptyText()
{
    QWidget parent;
    const AComboBoxDelegate delegate(nullptr, 0, nullptr);
    Cell cell("text");
    auto *box = makeEditor(delegate, &parent, cell.index());
    QCOMPARE(box->count(), 0);
    delegate.setModelData(box, &cell.model, cell.index());
    QCOMPARE(cell.value(), QVariant(QString()));
    QCOMPARE(cell.value().type(), QVariant::String);
}

void TestAComboBoxDelegate::aDeletedModelLeavesNothingToChoose()
{
    QWidget parent;
    auto model = std::make_unique<QStringListModel>(QStringList{"one", "two"});
    const AComboBoxDelegate delegate(model.get(), 0, nullptr);
    Cell cell("two");
    auto *open = makeEditor(delegate, &parent, cell.index());
    model.reset();
    QCOMPARE(open->count(), 0);
    auto *later = makeEditor(delegate, &parent, cell.index());
    QCOMPARE(later->count(), 0);
    delegate.setModelData(open, &cell.model, cell.index());
    QCOMPARE(cell.value(), QVariant(""));
}

void TestAComboBoxDelegate::theModelSurvivesEditorAndDelegate()
{
    QPointer<QStringListModel> model = new QStringListModel({"one"});
    {
        QWidget parent;
        const AComboBoxDelegate delegate(model, 0, nullptr);
        const Cell cell("one");
        makeEditor(delegate, &parent, cell.index());
    }
    QVERIFY(model);
    delete model;
}

void TestAComboBoxDelegate::aChoiceIsTold()
{
    QWidget parent;
    QStringListModel model({"one", "two", "three"});
    const AComboBoxDelegate delegate(&model, 0, nullptr);
    QSignalSpy told(&delegate, &AComboBoxDelegate::currentItemChanged);
    Cell cell("one");
    auto *box = makeEditor(delegate, &parent, cell.index());
    QCOMPARE(told.count(), 0); // nothing changed yet
    QTest::keyClick(box, Qt::Key_Down);
    QCOMPARE(told.count(), 1);
    QCOMPARE(told.takeFirst().first().toString(), QString("two"));
    box->setCurrentIndex(1);
    QCOMPARE(told.count(), 0);
    box->setCurrentIndex(-1);
    QCOMPARE(told.takeFirst().first().toString(), QString());
    delegate.setModelData(box, &cell.model, cell.index());
    QCOMPARE(told.count(), 0);

    AComboBoxDelegate relay(nullptr, 0, nullptr);
    QSignalSpy relayed(&relay, &AComboBoxDelegate::currentItemChanged);
    relay.onCurrentItemChanged("text");
    QCOMPARE(relayed.takeFirst().first().toString(), QString("text"));
}

void TestAComboBoxDelegate::openingTellsAChoiceThatIsNotTheFirst_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("texts");
    QTest::newRow("the first") << "one" << QStringList();
    QTest::newRow("the second") << "two" << QStringList("two");
    QTest::newRow("no choice") << "other" << QStringList();
}

// A box begins with its first entry, so that going to the cell's text is a change.
void TestAComboBoxDelegate::openingTellsAChoiceThatIsNotTheFirst()
{
    QFETCH(QString, text);
    QWidget parent;
    QStringListModel model({"one", "two"});
    const AComboBoxDelegate delegate(&model, 0, nullptr);
    QStringList told;
    connect(&delegate, &AComboBoxDelegate::currentItemChanged, this, [&told](const QString &each) { told << each; });
    const Cell cell(text);
    QVERIFY(makeEditor(delegate, &parent, cell.index()));
    QTEST(told, "texts");
}

void TestAComboBoxDelegate::eachChoiceIsToldOnceThoughItsTextIsTheSame()
{
    QWidget parent;
    QStringListModel model({"same", "same"});
    const AComboBoxDelegate delegate(&model, 0, nullptr);
    QSignalSpy told(&delegate, &AComboBoxDelegate::currentItemChanged);
    const Cell cell("same");
    auto *box = makeEditor(delegate, &parent, cell.index());
    box->setCurrentIndex(1);
    QCOMPARE(told.count(), 1);
    model.setData(model.index(1), "other"); // the choice is the same, though it reads otherwise
    QCOMPARE(told.count(), 1);
    QCOMPARE(box->currentText(), QString("other"));
}

void TestAComboBoxDelegate::aShrinkingModelTakesTheChoiceAlong()
{
    OpenBox open({"one", "two", "three"}, "three");
    open.model.removeRows(1, 2);
    open.commit();
    QCOMPARE(open.cell.value(), QVariant(open.box->currentText()));
    open.model.setStringList({});
    open.commit();
    QCOMPARE(open.cell.value(), QVariant(""));
}

void TestAComboBoxDelegate::paintingAndSizeAreThoseOfAPlainItem()
{
    compareToAPlainItem(AComboBoxDelegate(nullptr, 0, nullptr), Cell("a text").index(), "a text");
}

void TestAComboBoxDelegate::theEditorFillsTheCell()
{
    compareEditorToItsCell(AComboBoxDelegate(nullptr, 0, nullptr), "one");
}

void TestAComboBoxDelegate::otherEditorsAreServedByTheBaseClass()
{
    compareForeignLineEdit(AComboBoxDelegate(nullptr, 0, nullptr));
}

QTEST_MAIN(TestAComboBoxDelegate)
#include "tst_acomboboxdelegate.moc"
