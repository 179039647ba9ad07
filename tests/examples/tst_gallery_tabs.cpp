#include "colourcount.h"
#include "core/modeltexts.h"
#include "core/usbtestbed.h"
#include "examples/gallery/gallery.h"

#include <core/atriggeraction.h>
#include <datamanager/adatamanager.h>
#include <views/adevicelistmodel.h>

#include <QtTest/QtTest>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QStyledItemDelegate>
#include <QtWidgets/QTableView>

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
    void cleanup();

    void noTextOfAColumnIsClipped_data();
    void noTextOfAColumnIsClipped();
    void whatIsAttachedIsListedWhenTheTabIsShown();
    void theButtonFindsWhatWasPluggedInSince();
    void aNoteTellsThatNothingIsAttached();
    void actionsAreAddedAndChosen();
    void selectedActionsAreRemoved();
    void theLiveDisplayMovesWhileItIsSeen();
    void theLiveDisplayFitsAnySize_data();
    void theLiveDisplayFitsAnySize();
};

void TestGalleryTabs::cleanup()
{
    ADataManager::instance()->clearProfiles();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    delete ADataManager::instance();
}

void TestGalleryTabs::noTextOfAColumnIsClipped_data()
{
    QTest::addColumn<MakeTab>("make");
    QTest::newRow("channels") << &makeChannelPlan;
    QTest::newRow("limits") << &makeLimits;
    QTest::newRow("calibrations") << &makeCalibrations;
    QTest::newRow("markers") << &gallery::makeMarkersTab;
    QTest::newRow("variables") << &gallery::makeVariablesTab;
    QTest::newRow("bookmarks") << &gallery::makeBookmarksTab;
    QTest::newRow("triggers") << &gallery::makeTriggersTab;
    QTest::newRow("devices") << &gallery::makeDevicesTab;
}

void TestGalleryTabs::noTextOfAColumnIsClipped()
{
    QFETCH(MakeTab, make);
    UsbTestbed bed;
    bed.plug("1-1", "0403", "6010", 7);
    const auto tab = shown(make);
    QTest::qWait(100); // what the event loop brings
    QList<QAbstractItemView *> views = tab->findChildren<QAbstractItemView *>();
    views << qobject_cast<QAbstractItemView *>(tab.get());
    int sections = 0;
    for (const QAbstractItemView *view : qAsConst(views)) {
        if (!view || !view->model())
            continue;
        const QList<QHeaderView *> headers = view->findChildren<QHeaderView *>();
        for (const QHeaderView *header : headers) {
            if (header->orientation() != Qt::Horizontal || header->isHidden())
                continue;
            for (int column = 0; column < header->count(); ++column) {
                if (header->isSectionHidden(column))
                    continue;
                ++sections;
                const QByteArray title = view->model()->headerData(column, Qt::Horizontal).toString().toUtf8();
                QVERIFY2(header->sectionSize(column) >= header->sectionSizeHint(column), title);
                for (int row = 0; row < view->model()->rowCount(view->rootIndex()); ++row) {
                    const QModelIndex index = view->model()->index(row, column, view->rootIndex());
                    QVERIFY2(header->sectionSize(column) >= view->sizeHintForIndex(index).width(),
                             title + ": " + index.data().toByteArray());
                }
            }
        }
    }
    QVERIFY(sections >= 2);
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

QTEST_MAIN(TestGalleryTabs)
#include "tst_gallery_tabs.moc"
