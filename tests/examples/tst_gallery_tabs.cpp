#include "colourcount.h"
#include "core/modeltexts.h"
#include "core/usbtestbed.h"
#include "examples/gallery/gallery.h"
#include "paintedtexts.h"

#include <core/atranslator.h>
#include <core/atriggeraction.h>
#include <datamanager/adatamanager.h>
#include <views/adevicelistmodel.h>
#include <views/afrequencydelegate.h>

#include <QtTest/QtTest>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QStyledItemDelegate>
#include <QtWidgets/QTableView>
#include <QtWidgets/QTreeView>

#include <algorithm>
#include <memory>

using modeltexts::rowTexts;

namespace {

const QString kData = QStringLiteral(AVELDORAN_EXAMPLES_DIR "/data");

QWidget *makeChannelPlan()
{
    return gallery::makeChannelPlanTab(kData);
}

QWidget *makeLimits()
{
    return gallery::makeLimitsTab(kData);
}

QWidget *makeCalibrations()
{
    return gallery::makeCalibrationsTab(kData);
}

using MakeTab = QWidget *(*)();

std::unique_ptr<QWidget> shown(MakeTab make)
{
    std::unique_ptr<QWidget> tab(make());
    tab->resize(1000, 420);
    tab->show();
    return tab;
}

// All cells of the view that can be seen without expanding, scrolling apart.
QModelIndexList cellsOf(const QAbstractItemView &view)
{
    QModelIndexList cells;
    QVector<QModelIndex> parents = {view.rootIndex()};
    const auto *tree = qobject_cast<const QTreeView *>(&view);
    while (!parents.isEmpty()) {
        const QModelIndex parent = parents.takeLast();
        for (int row = 0; row < view.model()->rowCount(parent); ++row) {
            for (int column = 0; column < view.model()->columnCount(parent); ++column)
                cells << view.model()->index(row, column, parent);
            const QModelIndex first = view.model()->index(row, 0, parent);
            if (tree && tree->isExpanded(first))
                parents << first;
        }
    }
    return cells;
}

// What stands left of a cell in its column.
int indentationOf(const QAbstractItemView &view, const QModelIndex &cell)
{
    const auto *tree = qobject_cast<const QTreeView *>(&view);
    if (!tree || cell.column() != 0)
        return 0;
    int depth = tree->rootIsDecorated() ? 1 : 0;
    for (QModelIndex parent = cell.parent(); parent != view.rootIndex(); parent = parent.parent())
        ++depth;
    return depth * tree->indentation();
}

// The width that a cell asks for: that of its text, and in tables that of the editor that it turns into. The cells of
// trees are texts, to which an editor is cut, and line edits scroll.
int widthWanted(const QAbstractItemView &view, const QModelIndex &cell)
{
    const int text = indentationOf(view, cell) + view.sizeHintForIndex(cell).width();
    if (!qobject_cast<const QTableView *>(&view))
        return text;
    const std::unique_ptr<QWidget> editor(
        view.itemDelegate(cell)->createEditor(view.viewport(), QStyleOptionViewItem(), cell));
    const bool scrolls = !editor || qobject_cast<QLineEdit *>(editor.get());
    return scrolls ? text : qMax(text, editor->sizeHint().width());
}

// Where the number of a spin box that fills the cell stands.
QRect spinBoxField(const QStyleOptionViewItem &cell)
{
    QStyleOptionSpinBox box;
    box.rect = cell.rect;
    box.fontMetrics = cell.fontMetrics;
    box.frame = true;
    return QApplication::style()->subControlRect(QStyle::CC_SpinBox, &box, QStyle::SC_SpinBoxEditField);
}

QPushButton *buttonOf(const QWidget &tab, const QString &text)
{
    const QList<QPushButton *> buttons = tab.findChildren<QPushButton *>();
    for (QPushButton *button : buttons) {
        if (button->text() == text)
            return button;
    }
    return nullptr;
}

} // namespace

Q_DECLARE_METATYPE(MakeTab)

class TestGalleryTabs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void noTextIsClipped_data();
    void noTextIsClipped();
    void frequenciesStayOffTheButtonsOfTheirSpinBox_data();
    void frequenciesStayOffTheButtonsOfTheirSpinBox();
    void whatIsAttachedIsListedWhenTheTabIsShown();
    void theButtonFindsWhatWasPluggedInSince();
    void aNoteTellsThatNothingIsAttached();
    void theNoteIsWrappedWhereTheWindowIsNarrow_data();
    void theNoteIsWrappedWhereTheWindowIsNarrow();
    void actionsAreAddedAndChosen();
    void selectedActionsAreRemoved();
    void theLiveDisplayMovesWhileItIsSeen();
    void theLiveDisplayFitsAnySize_data();
    void theLiveDisplayFitsAnySize();
    void numbersOfTheLiveDisplayHaveOneDecimalSign_data();
    void numbersOfTheLiveDisplayHaveOneDecimalSign();
    void labelsOfTheLiveDisplayStandApart_data();
    void labelsOfTheLiveDisplayStandApart();

private:
    void speak(const QString &language);

    ATranslator m_translator;
};

// As the program does by its settings.
void TestGalleryTabs::speak(const QString &language)
{
    QLocale::setDefault(QLocale(language));
    if (m_translator.setLanguage(language))
        QCoreApplication::installTranslator(&m_translator);
}

void TestGalleryTabs::init()
{
    QLocale::setDefault(QLocale(QStringLiteral("en")));
}

void TestGalleryTabs::cleanup()
{
    QCoreApplication::removeTranslator(&m_translator);
    ADataManager::instance()->clearProfiles();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    delete ADataManager::instance();
}

void TestGalleryTabs::noTextIsClipped_data()
{
    QTest::addColumn<MakeTab>("make");
    QTest::addColumn<QString>("language");
    for (const char *language : {"en", "de"}) {
        const auto addRow = [=](const char *tab, MakeTab make) {
            QTest::addRow("%s, %s", tab, language) << make << QString::fromLatin1(language);
        };
        addRow("channels", &makeChannelPlan);
        addRow("limits", &makeLimits);
        addRow("calibrations", &makeCalibrations);
        addRow("markers", &gallery::makeMarkersTab);
        addRow("variables", &gallery::makeVariablesTab);
        addRow("bookmarks", &gallery::makeBookmarksTab);
        addRow("triggers", &gallery::makeTriggersTab);
        addRow("devices", &gallery::makeDevicesTab);
    }
}

void TestGalleryTabs::noTextIsClipped()
{
    QFETCH(MakeTab, make);
    QFETCH(QString, language);
    speak(language);
    UsbTestbed bed;
    bed.plug("1-1", "0403", "6010", 7);
    const auto tab = shown(make);
    QTest::qWait(100); // what the event loop brings
    QList<QAbstractItemView *> views = tab->findChildren<QAbstractItemView *>();
    views << qobject_cast<QAbstractItemView *>(tab.get());
    int sections = 0;
    for (const QAbstractItemView *view : qAsConst(views)) {
        if (!view || !view->model() || qobject_cast<const QHeaderView *>(view))
            continue;
        const auto headers = view->findChildren<QHeaderView *>();
        const auto header = std::find_if(headers.cbegin(), headers.cend(),
                                         [](const QHeaderView *each) { return each->orientation() == Qt::Horizontal; });
        QVERIFY(header != headers.cend());
        for (int column = 0; column < (*header)->count(); ++column) {
            if ((*header)->isSectionHidden(column) || (*header)->isHidden())
                continue;
            ++sections;
            const QByteArray title = view->model()->headerData(column, Qt::Horizontal).toString().toUtf8();
            QVERIFY2((*header)->sectionSize(column) >= (*header)->sectionSizeHint(column), title);
        }
        const QModelIndexList cells = cellsOf(*view);
        for (const QModelIndex &cell : cells) {
            if (!(*header)->isSectionHidden(cell.column()))
                QVERIFY2((*header)->sectionSize(cell.column()) >= widthWanted(*view, cell),
                         cell.data().toString().toUtf8());
        }
    }
    QVERIFY(sections >= 2);
    const QList<QPushButton *> buttons = tab->findChildren<QPushButton *>();
    for (const QPushButton *button : buttons)
        QVERIFY2(button->width() >= button->sizeHint().width(), button->text().toUtf8());
}

void TestGalleryTabs::frequenciesStayOffTheButtonsOfTheirSpinBox_data()
{
    QTest::addColumn<QString>("language");
    QTest::newRow("English") << "en";
    QTest::newRow("German") << "de";
}

void TestGalleryTabs::frequenciesStayOffTheButtonsOfTheirSpinBox()
{
    QFETCH(QString, language);
    speak(language);
    const auto tab = shown(&gallery::makeBookmarksTab);
    const auto &view = *qobject_cast<QTableView *>(tab.get());
    constexpr int kColumn = 1;
    QVERIFY(qobject_cast<AFrequencyDelegate *>(view.itemDelegateForColumn(kColumn)));
    for (int row = 0; row < view.model()->rowCount(); ++row) {
        QStyleOptionViewItem option;
        option.initFrom(&view);
        option.rect = QRect(0, 0, view.columnWidth(kColumn), view.rowHeight(row));
        const QRect field = spinBoxField(option);
        const QVector<PaintedText> texts = textsPaintedBy(option.rect.size(), [&](QPainter *painter) {
            painter->setFont(view.font());
            view.itemDelegateForColumn(kColumn)->paint(painter, option, view.model()->index(row, kColumn));
        });
        QCOMPARE(texts.size(), 1);
        QVERIFY2(field.contains(texts.first().rect.toAlignedRect()), qPrintable(texts.first().text));
    }
}

void TestGalleryTabs::whatIsAttachedIsListedWhenTheTabIsShown()
{
    UsbTestbed bed;
    bed.plug("1-1", "0403", "6014", 7, "A77", "Analyser");
    const auto tab = shown(&gallery::makeDevicesTab);
    const auto *model = tab->findChild<QTableView *>()->model();
    QTRY_COMPARE(model->rowCount(), 1);
    const QStringList texts = rowTexts(*model, 0);
    QVERIFY2(texts.contains("A77") && texts.contains("Analyser"), qPrintable(texts.join('|')));
    QCOMPARE(tab->findChild<QLabel *>()->text(), QString("Attached: 1"));
    const auto *view = tab->findChild<QTableView *>();
    const auto *delegate =
        qobject_cast<QStyledItemDelegate *>(view->itemDelegateForColumn(ADeviceListModel::ColumnVendorId));
    QCOMPARE(delegate->displayText(model->index(0, ADeviceListModel::ColumnVendorId).data(), QLocale()),
             QString("0403"));
}

void TestGalleryTabs::theButtonFindsWhatWasPluggedInSince()
{
    UsbTestbed bed;
    const auto tab = shown(&gallery::makeDevicesTab);
    const auto *model = tab->findChild<QTableView *>()->model();
    QTRY_VERIFY(tab->findChild<QLabel *>()->text().startsWith("Nothing"));
    bed.plug("1-1", "0403", "6010", 7);
    QTest::qWait(50);
    QCOMPARE(model->rowCount(), 0);
    QTest::mouseClick(buttonOf(*tab, "Refresh"), Qt::LeftButton);
    QTRY_COMPARE(model->rowCount(), 2); // the channels of one chip
    QCOMPARE(tab->findChild<QLabel *>()->text(), QString("Attached: 2"));
}

void TestGalleryTabs::aNoteTellsThatNothingIsAttached()
{
    UsbTestbed bed;
    bed.plug("1-1", "1d6b", "0002", 1); // a hub
    const auto tab = shown(&gallery::makeDevicesTab);
    QTRY_VERIFY(tab->findChild<QLabel *>()->text().startsWith("Nothing is attached."));
    QCOMPARE(tab->findChild<QTableView *>()->model()->rowCount(), 0);
}

void TestGalleryTabs::theNoteIsWrappedWhereTheWindowIsNarrow_data()
{
    QTest::addColumn<QString>("language");
    QTest::newRow("English") << "en";
    QTest::newRow("German") << "de";
}

void TestGalleryTabs::theNoteIsWrappedWhereTheWindowIsNarrow()
{
    QFETCH(QString, language);
    speak(language);
    UsbTestbed bed;
    const auto tab = shown(&gallery::makeDevicesTab);
    const auto *note = tab->findChild<QLabel *>();
    QTRY_VERIFY(note->text().count(QLatin1Char('.')) == 2);
    tab->resize(500, 420);
    QTRY_COMPARE(tab->width(), 500);
    QVERIFY(note->fontMetrics().horizontalAdvance(note->text()) > note->width());
    QVERIFY(note->height() >= note->heightForWidth(note->width()));
}

void TestGalleryTabs::actionsAreAddedAndChosen()
{
    const auto tab = shown(&gallery::makeTriggersTab);
    auto *view = tab->findChild<QTableView *>();
    const int before = view->model()->rowCount();
    QTest::mouseClick(buttonOf(*tab, "Add"), Qt::LeftButton);
    QCOMPARE(view->model()->rowCount(), before + 1);
    QCOMPARE(view->currentIndex().row(), before);
    auto *box = view->viewport()->findChild<QComboBox *>(); // the new row is being edited
    QVERIFY(box);
    QCOMPARE(box->count(), ATriggerAction::actionNames().size());
    box->setCurrentIndex(RunCommandAction);
    QTest::keyClick(box, Qt::Key_Tab);
    QCOMPARE(rowTexts(*view->model(), before).constFirst(), ATriggerAction::actionNames().at(RunCommandAction));
}

void TestGalleryTabs::selectedActionsAreRemoved()
{
    const auto tab = shown(&gallery::makeTriggersTab);
    auto *view = tab->findChild<QTableView *>();
    const QStringList second = rowTexts(*view->model(), 1);
    QCOMPARE(view->model()->rowCount(), 4);
    view->selectRow(0);
    for (const int row : {2, 3})
        view->selectionModel()->select(view->model()->index(row, 0),
                                       QItemSelectionModel::Select | QItemSelectionModel::Rows);
    QTest::mouseClick(buttonOf(*tab, "Remove"), Qt::LeftButton);
    QCOMPARE(view->model()->rowCount(), 1);
    QCOMPARE(rowTexts(*view->model(), 0), second);
    view->clearSelection();
    QTest::mouseClick(buttonOf(*tab, "Remove"), Qt::LeftButton);
    QCOMPARE(view->model()->rowCount(), 1);
}

void TestGalleryTabs::theLiveDisplayMovesWhileItIsSeen()
{
    const auto tab = shown(&gallery::makeLiveDisplayTab);
    const QImage first = tab->grab().toImage();
    QVERIFY(colourCount(first) > 500); // of the ramp
    QTRY_VERIFY(tab->grab().toImage() != first);
    tab->hide();
    const QImage hidden = tab->grab().toImage();
    QTest::qWait(300);
    QCOMPARE(tab->grab().toImage(), hidden);
    tab->show();
    QTRY_VERIFY(tab->grab().toImage() != hidden);
}

void TestGalleryTabs::theLiveDisplayFitsAnySize_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("least") << QSize(1, 1);
    QTest::newRow("flat") << QSize(1600, 240);
    QTest::newRow("wider than a sweep has points") << QSize(2600, 300);
}

void TestGalleryTabs::theLiveDisplayFitsAnySize()
{
    QFETCH(QSize, size);
    const auto tab = shown(&gallery::makeLiveDisplayTab);
    tab->resize(size);
    const QImage picture = tab->grab().toImage();
    QVERIFY(picture.width() >= size.width());
    QVERIFY(colourCount(picture) > 300);
    QTRY_VERIFY(tab->grab().toImage() != picture);
}

void TestGalleryTabs::numbersOfTheLiveDisplayHaveOneDecimalSign_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("form");
    QTest::newRow("English") << "en"
                             << "-\\d+\\.\\d\\d dBm at \\d+(\\.\\d+)? MHz";
    QTest::newRow("German") << "de"
                            << "-\\d+,\\d\\d dBm bei \\d+(,\\d+)? MHz";
}

void TestGalleryTabs::numbersOfTheLiveDisplayHaveOneDecimalSign()
{
    QFETCH(QString, language);
    QFETCH(QString, form);
    speak(language);
    const auto tab = shown(&gallery::makeLiveDisplayTab);
    const QRegularExpression peak(QRegularExpression::anchoredPattern(form));
    const QRegularExpression label(QStringLiteral("^-?[0-9]+ (dBm|MHz)$"));
    const QVector<PaintedText> texts = textsPaintedBy(*tab);
    QVERIFY(texts.size() > 10);
    QVERIFY2(peak.match(texts.last().text).hasMatch(), qPrintable(texts.last().text));
    for (int i = 0; i < texts.size() - 1; ++i)
        QVERIFY2(label.match(texts.at(i).text).hasMatch(), qPrintable(texts.at(i).text));
}

void TestGalleryTabs::labelsOfTheLiveDisplayStandApart_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("least") << QSize(320, 240);
    QTest::newRow("narrow") << QSize(600, 300);
    QTest::newRow("as the program opens") << QSize(1000, 420);
}

void TestGalleryTabs::labelsOfTheLiveDisplayStandApart()
{
    QFETCH(QSize, size);
    const auto tab = shown(&gallery::makeLiveDisplayTab);
    tab->resize(size);
    QVector<PaintedText> texts = textsPaintedBy(*tab);
    const PaintedText peak = texts.takeLast();
    QVERIFY2(QRectF(tab->rect()).contains(peak.rect), qPrintable(peak.text));
    QVERIFY(texts.size() >= 4);
    for (int i = 0; i < texts.size(); ++i) {
        QVERIFY2(QRectF(tab->rect()).contains(texts.at(i).rect), qPrintable(texts.at(i).text));
        for (int j = 0; j < i; ++j)
            QVERIFY2(!texts.at(i).rect.intersects(texts.at(j).rect),
                     qPrintable(texts.at(i).text + QStringLiteral(", ") + texts.at(j).text));
    }
}

QTEST_MAIN(TestGalleryTabs)
#include "tst_gallery_tabs.moc"
