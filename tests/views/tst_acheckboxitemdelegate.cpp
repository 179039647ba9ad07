#include "views/acheckboxitemdelegate.h"

#include "delegatecell.h"
#include "editorkeys.h"
#include "recordingstyle.h"
#include "translatedtexts.h"

#include <QtWidgets/QCheckBox>
#include <QtWidgets/QPushButton>

class TestACheckBoxItemDelegate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theEditorShowsTheCellsState_data() { addStates(); }
    void theEditorShowsTheCellsState();
    void theTextFollowsTheBoxBeforeAnyCommit();
    void theTextFollowsInTheLanguageOfTheApplication();
    void setEditorDataTakesTheTextAlong();
    void aBoolIsCommitted();
    void onlyCheckBoxesTakeTheText();
    void withoutAModelTheStateIsFalse();
    void theCellIsPaintedAsACheckBoxAlone_data() { addStates(); }
    void theCellIsPaintedAsACheckBoxAlone();
    void theSelectionIsNotSeen();
    void theSizeIsThatOfAPlainItem();
    void theEditorFillsTheCell();
    void otherEditorsAreServedByTheBaseClass();

private:
    static void addStates();
};

// A state that the view shows may differ from the one that is edited: the box goes by the one that is shown.
struct TwoRoles : QStandardItemModel
{
    explicit TwoRoles(const QVariant &display)
        : m_display(display)
    {
        appendRow(new QStandardItem);
    }
    QVariant data(const QModelIndex &index, int role) const override
    {
        return role == Qt::DisplayRole ? m_display : QStandardItemModel::data(index, role);
    }

private:
    QVariant m_display;
};

void TestACheckBoxItemDelegate::addStates()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("state");
    QTest::newRow("true") << QVariant(true) << true;
    QTest::newRow("false") << QVariant(false) << false;
    QTest::newRow("number") << QVariant(2) << true;
    QTest::newRow("zero") << QVariant(0) << false;
    QTest::newRow("text") << QVariant("true") << true;
    QTest::newRow("text for false") << QVariant("false") << false;
    QTest::newRow("text zero") << QVariant("0") << false;
    QTest::newRow("empty") << QVariant("") << false;
    QTest::newRow("nothing") << QVariant() << false;
}

void TestACheckBoxItemDelegate::theEditorShowsTheCellsState()
{
    QFETCH(QVariant, value);
    QFETCH(bool, state);
    QWidget parent;
    const ACheckBoxItemDelegate delegate(&parent);
    QCOMPARE(delegate.parent(), &parent);
    TwoRoles model(value);
    model.setData(model.index(0, 0), !state, Qt::EditRole);
    const auto *box = qobject_cast<QCheckBox *>(delegate.createEditor(&parent, {}, model.index(0, 0)));
    QVERIFY(box);
    QCOMPARE(box->parentWidget(), &parent);
    QCOMPARE(box->backgroundRole(), QPalette::Window);
    QVERIFY(box->autoFillBackground());
    QVERIFY(!box->isTristate());
    QCOMPARE(box->isChecked(), state);
    QCOMPARE(box->text(), QString(state ? "Yes" : "No"));
}

void TestACheckBoxItemDelegate::theTextFollowsTheBoxBeforeAnyCommit()
{
    QWidget parent;
    const ACheckBoxItemDelegate delegate;
    Cell cell(false);
    QSignalSpy changes(&cell.model, &QAbstractItemModel::dataChanged);
    auto *box = qobject_cast<QCheckBox *>(delegate.createEditor(&parent, {}, cell.index()));
    QCOMPARE(box->text(), QString("No"));
    QTest::keyClick(box, Qt::Key_Space);
    QCOMPARE(box->text(), QString("Yes"));
    QTest::keyClick(box, Qt::Key_Space);
    QCOMPARE(box->text(), QString("No"));
    QCOMPARE(changes.count(), 0);
    QCOMPARE(cell.value(), QVariant(false));
}

void TestACheckBoxItemDelegate::theTextFollowsInTheLanguageOfTheApplication()
{
    const TranslatedTexts german("ACheckBoxItemDelegate", {{"Yes", "Ja"}, {"No", "Nein"}});
    QWidget parent;
    const ACheckBoxItemDelegate delegate;
    const Cell cell(false);
    auto *box = qobject_cast<QCheckBox *>(delegate.createEditor(&parent, {}, cell.index()));
    QCOMPARE(box->text(), QString("Nein"));
    QTest::keyClick(box, Qt::Key_Space);
    QCOMPARE(box->text(), QString("Ja"));

    RecordingStyle *style = RecordingStyle::install();
    PaintedCell painted;
    painted.paint(delegate, cell.index());
    QCOMPARE(style->calls.first().text, QString("Nein"));
}

void TestACheckBoxItemDelegate::setEditorDataTakesTheTextAlong()
{
    QWidget parent;
    const ACheckBoxItemDelegate delegate;
    Cell cell(false);
    auto *box = qobject_cast<QCheckBox *>(delegate.createEditor(&parent, {}, cell.index()));
    cell.model.setData(cell.index(), true);
    delegate.setEditorData(box, cell.index());
    QVERIFY(box->isChecked());
    QCOMPARE(box->text(), QString("Yes"));
}

void TestACheckBoxItemDelegate::aBoolIsCommitted()
{
    QWidget parent;
    const ACheckBoxItemDelegate delegate;
    Cell cell("0");
    auto *box = qobject_cast<QCheckBox *>(delegate.createEditor(&parent, {}, cell.index()));
    for (const bool state : {true, false}) {
        box->setChecked(state);
        delegate.setModelData(box, &cell.model, cell.index());
        QCOMPARE(cell.value(), QVariant(state));
        QCOMPARE(cell.value().type(), QVariant::Bool);
    }
}

void TestACheckBoxItemDelegate::onlyCheckBoxesTakeTheText()
{
    ACheckBoxItemDelegate delegate;
    QPushButton button("untouched");
    button.setCheckable(true);
    connect(&button, &QPushButton::toggled, &delegate, &ACheckBoxItemDelegate::onCheckBoxToggle);
    button.toggle();
    QCOMPARE(button.text(), QString("untouched"));
    delegate.onCheckBoxToggle(true); // from nobody

    QCheckBox box("own");
    connect(&box, &QCheckBox::toggled, &delegate, &ACheckBoxItemDelegate::onCheckBoxToggle);
    box.toggle();
    QCOMPARE(box.text(), QString("Yes"));
}

void TestACheckBoxItemDelegate::withoutAModelTheStateIsFalse()
{
    QWidget parent;
    const ACheckBoxItemDelegate delegate;
    auto *box = qobject_cast<QCheckBox *>(delegate.createEditor(&parent, {}, QModelIndex()));
    QVERIFY(!box->isChecked());
    QCOMPARE(box->text(), QString("No"));
    box->setChecked(true);
    delegate.setEditorData(box, QModelIndex());
    QVERIFY(!box->isChecked());
    PaintedCell painted;
    QVERIFY(painted.paint(delegate, QModelIndex()));
}

void TestACheckBoxItemDelegate::theCellIsPaintedAsACheckBoxAlone()
{
    QFETCH(QVariant, value);
    QFETCH(bool, state);
    RecordingStyle *style = RecordingStyle::install();
    const ACheckBoxItemDelegate delegate;
    TwoRoles model(value);
    model.setData(model.index(0, 0), !state, Qt::EditRole);
    PaintedCell painted;
    painted.option.state = QStyle::State_Selected | QStyle::State_MouseOver | QStyle::State_HasFocus;
    QVERIFY(painted.paint(delegate, model.index(0, 0)));
    QCOMPARE(style->elements(), QStringList("CE_CheckBox"));
    const auto &call = style->calls.first();
    QCOMPARE(call.rect, painted.option.rect);
    QCOMPARE(call.state, QStyle::State_Enabled | (state ? QStyle::State_On : QStyle::State_Off));
    QCOMPARE(call.text, QString(state ? "Yes" : "No"));
    QCOMPARE(call.palette, painted.option.palette);
    QVERIFY(painted.isUntouchedOutside());
}

void TestACheckBoxItemDelegate::theSelectionIsNotSeen()
{
    const ACheckBoxItemDelegate delegate;
    const Cell cell(true);
    PaintedCell plain;
    plain.option.state = QStyle::State_Enabled | QStyle::State_Active;
    QVERIFY(plain.paint(delegate, cell.index()));
    PaintedCell selected;
    selected.option.state = plain.option.state | QStyle::State_Selected;
    QVERIFY(selected.paint(delegate, cell.index()));
    QCOMPARE(selected.image, plain.image);
}

void TestACheckBoxItemDelegate::theSizeIsThatOfAPlainItem()
{
    const ACheckBoxItemDelegate delegate;
    const QStyledItemDelegate plain;
    const Cell cell("a text of some length");
    QCOMPARE(delegate.sizeHint({}, cell.index()), plain.sizeHint({}, cell.index()));
}

void TestACheckBoxItemDelegate::theEditorFillsTheCell()
{
    compareEditorToItsCell(ACheckBoxItemDelegate(), true);
}

void TestACheckBoxItemDelegate::otherEditorsAreServedByTheBaseClass()
{
    compareForeignLineEdit(ACheckBoxItemDelegate());
}

QTEST_MAIN(TestACheckBoxItemDelegate)
#include "tst_acheckboxitemdelegate.moc"
