#include "channel/achannelinfomodel.h"

#include "channel/achannelinfo.h"

#include "channelmodel.h"

#include <QtTest/QtTest>
#include <QtWidgets/QDoubleSpinBox>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QStyledItemDelegate>
#include <QtWidgets/QTreeView>

using namespace channelmodel;
using namespace channeltree;

// The model in a real view, worked with mouse and keys.

namespace {

// An editor of megahertz, which commits a double.
class MegahertzDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &) const override
    {
        auto *box = new QDoubleSpinBox(parent);
        box->setRange(0.0, 20000.0);
        box->setDecimals(3);
        box->setSuffix(QStringLiteral(" MHz"));
        box->setLocale(QLocale::c());
        return box;
    }
    void setEditorData(QWidget *editor, const QModelIndex &index) const override
    {
        static_cast<QDoubleSpinBox *>(editor)->setValue(
            AFrequency(index.data(Qt::EditRole).toByteArray().constData()).floatValue(AFrequency::MHz));
    }
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override
    {
        auto *box = static_cast<QDoubleSpinBox *>(editor);
        box->interpretText();
        model->setData(index, box->value(), Qt::EditRole);
    }
};

AChannelInfo *bandPlan()
{
    auto *root = node(nullptr, QString(), "0", "3 GHz");
    const auto band = [root](const char *label, const char *begin, const char *end, const char *color) {
        AChannelInfo *made = node(root, QString::fromLatin1(label), begin, end);
        made->setData(AChannelInfo::ColumnColor, QString::fromLatin1(color));
        return made;
    };
    AChannelInfo *ism = band("ISM 433", "433.05 MHz", "434.79 MHz", "#cc3333");
    node(ism, QStringLiteral("Channel 2"), "433.1 MHz", "433.125 MHz", AChannelInfo::Channel);
    node(ism, QStringLiteral("Channel 1"), "433.075 MHz", "433.1 MHz", AChannelInfo::Channel);
    AChannelInfo *fm = band("FM broadcast", "87.5 MHz", "108 MHz", "#3366cc");
    fm->setData(AChannelInfo::ColumnComment, QStringLiteral("Band II"));
    node(fm, QStringLiteral("Upper half"), "98 MHz", "108 MHz", AChannelInfo::Provider);
    node(fm, QStringLiteral("Lower half"), "87.5 MHz", "98 MHz", AChannelInfo::Provider)
        ->setData(AChannelInfo::ColumnColor, QColor(Qt::darkGreen));
    node(root, QStringLiteral("Airband"), "118 MHz", "137 MHz");
    return root;
}

} // namespace

class TestAChannelInfoModelView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void theViewShowsThePlan();
    void aTypedTextIsStored_data();
    void aTypedTextIsStored();
    void typedMegahertzAreStored();
    void whatIsReadOnlyOpensNoEditor();
    void aClickOnAHeaderSortsThePlan();
    void expandedNodesBelowTheTopLevelStayExpanded();
    void nodesComeAndGoInTheView();
    void theViewOutlivesTheModel();
    void manySiblingsAreScrolled();

private:
    QModelIndex at(const char *path, int column = 0) const
    {
        return indexAt(*m_model, QString::fromLatin1(path).split(QLatin1Char('/')), column);
    }
    template<class Editor>
    Editor *openEditor(const QModelIndex &index)
    {
        const QRect cell = m_view->visualRect(index);
        QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, cell.center());
        QTest::mouseDClick(m_view->viewport(), Qt::LeftButton, {}, cell.center());
        return m_view->viewport()->findChild<Editor *>();
    }
    QImage picture(const char *name) const;

    std::unique_ptr<AChannelInfoModel> m_model;
    std::unique_ptr<QTreeView> m_view;
};

void TestAChannelInfoModelView::init()
{
    m_model = std::make_unique<AChannelInfoModel>(nullptr, bandPlan());
    m_view = std::make_unique<QTreeView>();
    m_view->setModel(m_model.get());
    auto *delegate = new MegahertzDelegate(m_view.get());
    m_view->setItemDelegateForColumn(AChannelInfo::ColumnStopFreq, delegate);
    m_view->setEditTriggers(QAbstractItemView::DoubleClicked);
    m_view->expandAll();
    m_view->resize(1500, 300);
    for (int column = 0; column < m_model->columnCount(); ++column)
        m_view->resizeColumnToContents(column);
    m_view->show();
    m_view->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_view.get()));
}

void TestAChannelInfoModelView::cleanup()
{
    m_view.reset();
    m_model.reset();
}

// What the view shows; kept as a file in the directory AVELDORAN_TEST_PICTURES, if there is one to look at it in.
QImage TestAChannelInfoModelView::picture(const char *name) const
{
    const QImage image = m_view->grab().toImage();
    const QString directory = qEnvironmentVariable("AVELDORAN_TEST_PICTURES");
    if (!directory.isEmpty())
        image.save(directory + QLatin1Char('/') + QLatin1String(name) + QLatin1String(".png"));
    return image;
}

void TestAChannelInfoModelView::theViewShowsThePlan()
{
    m_view->clearSelection();
    m_view->setCurrentIndex({});
    picture("channelmodel-plan");
    const QImage cells = m_view->viewport()->grab().toImage();
    const auto colorAt = [&](const QModelIndex &index) {
        const QPoint corner = m_view->visualRect(index).topRight() - QPoint(2, -2); // beside the text
        return cells.pixelColor(corner);
    };
    const QColor base = m_view->palette().color(QPalette::Base);
    const auto half = [&](const QColor &color) {
        return QColor((color.red() + base.red()) / 2, (color.green() + base.green()) / 2,
                      (color.blue() + base.blue()) / 2);
    };
    const auto isNear = [](const QColor &a, const QColor &b) {
        return qAbs(a.red() - b.red()) < 4 && qAbs(a.green() - b.green()) < 4 && qAbs(a.blue() - b.blue()) < 4;
    };
    const QList<QPair<const char *, QColor>> coloured{{"ISM 433", QColor(0xcc, 0x33, 0x33)},
                                                      {"FM broadcast", QColor(0x33, 0x66, 0xcc)},
                                                      {"FM broadcast/Lower half", Qt::darkGreen},
                                                      {"FM broadcast/Upper half", base},
                                                      {"Airband", base}};
    for (const auto &entry : coloured) {
        for (const int column : {0, 1, 6}) {
            const QColor seen = colorAt(at(entry.first, column));
            QVERIFY2(isNear(seen, half(entry.second)), qPrintable(QLatin1String(entry.first) + seen.name()));
        }
        for (const int column : {2, 5, 8})
            QVERIFY(isNear(colorAt(at(entry.first, column)), base));
    }
}

void TestAChannelInfoModelView::aTypedTextIsStored_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    QTest::newRow("name") << 0 << QStringLiteral("UKW") << QStringLiteral("UKW");
    QTest::newRow("MHz") << 2 << QStringLiteral("88.1 MHz") << QStringLiteral("88.100000 MHz");
    QTest::newRow("kHz") << 2 << QStringLiteral("87600kHz") << QStringLiteral("87.600000 MHz");
    QTest::newRow("hertz") << 2 << QStringLiteral("87700000") << QStringLiteral("87.700000 MHz");
    QTest::newRow("no frequency") << 2 << QStringLiteral("low") << QStringLiteral("0.000000 Hz");
    QTest::newRow("comment") << 8 << QStringLiteral("CCIR") << QStringLiteral("CCIR");
    QTest::newRow("mirror") << 10 << QStringLiteral("2.1 GHz") << QStringLiteral("2100.000000 MHz");
}

void TestAChannelInfoModelView::aTypedTextIsStored()
{
    QFETCH(int, column);
    QFETCH(QString, typed);
    QFETCH(QString, shown);
    const QPersistentModelIndex cell = at("FM broadcast", column);
    auto *editor = openEditor<QLineEdit>(cell);
    QVERIFY(editor);
    QCOMPARE(editor->text(), cell.data(Qt::EditRole).toString());
    editor->selectAll();
    QTest::keyClicks(editor, typed);
    if (column == 2)
        picture("channelmodel-typing");
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE(cell.data().toString(), shown); // an editor commits by way of the event loop
}

void TestAChannelInfoModelView::typedMegahertzAreStored()
{
    const QPersistentModelIndex cell = at("FM broadcast", AChannelInfo::ColumnStopFreq);
    auto *box = openEditor<QDoubleSpinBox>(cell);
    QVERIFY(box);
    QCOMPARE(box->value(), 108.0);
    box->selectAll();
    QTest::keyClicks(box, QStringLiteral("107.875"));
    picture("channelmodel-spinbox");
    QTest::keyClick(box, Qt::Key_Return);
    QTRY_COMPARE(cell.data().toString(), QStringLiteral("107.875000 MHz"));
    QCOMPARE(m_model->getItem(cell)->endFrequency(), AFrequency("107875000"));
}

void TestAChannelInfoModelView::whatIsReadOnlyOpensNoEditor()
{
    for (const int column : {AChannelInfo::ColumnQualifiedName, AChannelInfo::ColumnAutoChannelDefinition})
        QVERIFY(!openEditor<QWidget>(at("FM broadcast", column)));
}

void TestAChannelInfoModelView::aClickOnAHeaderSortsThePlan()
{
    m_view->header()->setSortIndicator(AChannelInfo::ColumnName, Qt::DescendingOrder);
    m_view->setSortingEnabled(true);
    QCOMPARE(treeText(*m_model), QStringLiteral("ISM 433(Channel 2 Channel 1) FM broadcast(Upper half Lower half) "
                                                "Airband"));
    const int middle = m_view->header()->sectionViewportPosition(AChannelInfo::ColumnStartFreq) +
                       m_view->header()->sectionSize(AChannelInfo::ColumnStartFreq) / 2;
    const QPoint header(middle, m_view->header()->height() / 2);
    QTest::mouseClick(m_view->header()->viewport(), Qt::LeftButton, {}, header);
    const QString ascending = QStringLiteral("FM broadcast(Lower half Upper half) Airband "
                                             "ISM 433(Channel 1 Channel 2)");
    const QString descending = QStringLiteral("ISM 433(Channel 2 Channel 1) Airband "
                                              "FM broadcast(Upper half Lower half)");
    const bool isAscending = m_view->header()->sortIndicatorOrder() == Qt::AscendingOrder;
    QCOMPARE(treeText(*m_model), isAscending ? ascending : descending);
    QTest::mouseClick(m_view->header()->viewport(), Qt::LeftButton, {}, header);
    QCOMPARE(treeText(*m_model), isAscending ? descending : ascending);
    m_view->expandAll();
    picture("channelmodel-sorted");
    QVERIFY(m_view->visualRect(at("Airband")).isValid());
}

void TestAChannelInfoModelView::expandedNodesBelowTheTopLevelStayExpanded()
{
    const QModelIndex lower = at("FM broadcast/Lower half");
    m_model->addItem(lower, QStringLiteral("x"));
    m_view->expand(lower);
    const QPersistentModelIndex upper = at("FM broadcast/Upper half");
    m_view->setCurrentIndex(upper);
    m_model->sort(0, Qt::AscendingOrder);
    QVERIFY(m_view->isExpanded(at("FM broadcast/Lower half")));
    QCOMPARE(m_view->currentIndex(), at("FM broadcast/Upper half"));
}

void TestAChannelInfoModelView::nodesComeAndGoInTheView()
{
    m_view->setCurrentIndex(at("ISM 433"));
    m_model->sort(0, Qt::AscendingOrder); // the view's indexes at the top level stay as they are
    m_view->grab();
    QVERIFY(m_model->removeItem(at("ISM 433"), true));
    m_view->grab();
    const QModelIndex added = m_model->addItem({}, QStringLiteral("ISM 868"));
    m_view->scrollTo(added);
    m_view->setCurrentIndex(added);
    QVERIFY(m_model->removeItem(m_model->index(0, 0), true));
    m_view->expandAll();
    m_view->grab();
    QCOMPARE(treeText(*m_model), QStringLiteral("FM broadcast(Lower half Upper half) ISM 868"));
    QCOMPARE(m_view->currentIndex(), at("ISM 868"));
    QVERIFY(m_view->visualRect(at("ISM 868")).isValid());

    const std::unique_ptr<AChannelInfo> previous(m_model->setModelRoot(unsortedPlan()));
    m_view->grab();
    QVERIFY(m_view->visualRect(at("a")).isValid());
}

void TestAChannelInfoModelView::theViewOutlivesTheModel()
{
    m_view->setCurrentIndex(at("FM broadcast/Lower half"));
    m_model.reset();
    QVERIFY(m_view->model() == nullptr || m_view->model()->rowCount() == 0);
    m_view->grab();
}

void TestAChannelInfoModelView::manySiblingsAreScrolled()
{
    constexpr int kCount = 100000;
    AChannelInfo *root = node(nullptr, QString());
    for (int i = 0; i < kCount; ++i)
        root->appendChild(
            new AChannelInfo(root, AChannelInfo::Channel, hertz(i), hertz(i + 1), QString::number(i), false));
    const std::unique_ptr<AChannelInfo> previous(m_model->setModelRoot(root));
    m_view->setUniformRowHeights(true);
    QScrollBar *bar = m_view->verticalScrollBar();
    m_view->grab();
    for (int step = 0; step <= 50; ++step) {
        bar->setValue(int(qint64(bar->maximum()) * step / 50));
        m_view->grab();
    }
    QCOMPARE(m_view->indexAt(m_view->visualRect(m_model->index(kCount - 1, 0)).center()).row(), kCount - 1);
    QVERIFY(m_model->removeItem(m_model->index(0, 0), false));
    m_view->grab();
    QCOMPARE(m_view->indexAt(m_view->visualRect(m_model->index(kCount - 2, 0)).center()).data().toString(),
             QStringLiteral("99999"));
}

QTEST_MAIN(TestAChannelInfoModelView)
#include "tst_achannelinfomodel_view.moc"
