#include "calibrationmodel.h"

#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QTreeView>

#include <random>

using namespace calibrationtest;

namespace {

// A calibration editor as an application has it: the types are its top rows, and what was open stays open.
class Editor : public QTreeView
{
public:
    explicit Editor(ACalibrationObjectModel *model)
    {
        setModel(model);
        QObject::connect(model, &QAbstractItemModel::modelReset, this, &Editor::restore);
        restore();
        resize(400, 400);
        show();
    }

    // All texts that the view has laid out, from top to bottom.
    QStringList shown()
    {
        QStringList rows;
        for (QModelIndex index = model()->index(0, 0, rootIndex()); index.isValid(); index = indexBelow(index)) {
            const QModelIndex second = index.siblingAtColumn(1);
            rows << index.data().toString() + (second.isValid() ? '|' + second.data().toString() : QString());
        }
        return rows;
    }

    // Types into a cell as a user does.
    void type(const QModelIndex &cell, const QString &text)
    {
        setCurrentIndex(cell);
        edit(cell);
        auto *line = viewport()->findChild<QLineEdit *>();
        QVERIFY(line);
        line->selectAll();
        QTest::keyClicks(line, text);
        QTest::keyClick(line, Qt::Key_Return);
        QTRY_VERIFY(!viewport()->findChild<QLineEdit *>());
    }

private:
    void restore()
    {
        setRootIndex(model()->index(0, 0));
        expandAll();
    }
};

} // namespace

class TestACalibrationObjectModelView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anEditorShowsTheStore();
    void aTypedFrequencyMovesItsRow_data();
    void aTypedFrequencyMovesItsRow();
    void aTypedGain();
    void anEditorClosedAsItWasOpenedChangesNothing();
    void objectsCannotBeTypedInto();
    void selectedRowsAreRemoved();
    void aViewWithPersistentIndexesSurvivesEveryEdit();
    void aViewSurvivesASecondProcess();
};

void TestACalibrationObjectModelView::anEditorShowsTheStore()
{
    Calibrations c({ramp(), ramp("horn", kAntenna)});
    Editor view(c.model.get());
    QCOMPARE(view.shown(), (QStringList{"Preamplifier", "Antenna", "horn", "10.000 MHz|1 dBi", "20.000 MHz|2 dBi",
                                        "30.000 MHz|4 dBi", kAddRow, "Cable", "ramp", "10.000 MHz|1 dB",
                                        "20.000 MHz|2 dB", "30.000 MHz|4 dB", kAddRow, "Attenuator"}));
}

void TestACalibrationObjectModelView::aTypedFrequencyMovesItsRow_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("down") << 0 << "35 MHz"
                          << QStringList{"20.000 MHz|2 dB", "30.000 MHz|4 dB", "35.000 MHz|4 dB", kAddRow};
    QTest::newRow("up") << 2 << "5 MHz" << QStringList{"5.000 MHz|1 dB", "10.000 MHz|1 dB", "20.000 MHz|2 dB", kAddRow};
    QTest::newRow("added") << 3 << "15000000"
                           << QStringList{"10.000 MHz|1 dB", "15.000 MHz|1.5 dB", "20.000 MHz|2 dB", "30.000 MHz|4 dB",
                                          kAddRow};
    QTest::newRow("deleted") << 1 << "-1" << QStringList{"10.000 MHz|1 dB", "30.000 MHz|4 dB", kAddRow};
    QTest::newRow("refused") << 1 << "10 MHz"
                             << QStringList{"10.000 MHz|1 dB", "20.000 MHz|2 dB", "30.000 MHz|4 dB", kAddRow};
}

void TestACalibrationObjectModelView::aTypedFrequencyMovesItsRow()
{
    QFETCH(int, row);
    QFETCH(QString, text);
    QFETCH(QStringList, expected);
    Calibrations c({ramp()});
    Editor view(c.model.get());
    view.type(c.cell(kCable, "ramp", row, 0), text);
    QCOMPARE(view.shown().mid(4, expected.size()), expected);
    QCOMPARE(view.shown().size(), expected.size() + 5);
    QCOMPARE(c.table(kCable, "ramp"), expected);
    // And again on what the first edit left.
    view.type(c.cell(kCable, "ramp", 0, 0), "100 MHz");
    QCOMPARE(view.shown().mid(4, expected.size()), c.table(kCable, "ramp"));
    QCOMPARE(c.table(kCable, "ramp").at(expected.size() - 2).section('|', 0, 0), QString("100.000 MHz"));
}

void TestACalibrationObjectModelView::aTypedGain()
{
    Calibrations c({ramp()});
    Editor view(c.model.get());
    view.type(c.cell(kCable, "ramp", 1, 1), "-7.25");
    view.type(c.cell(kCable, "ramp", 2, 1), "8 dB");
    QCOMPARE(view.shown().mid(4, 4),
             (QStringList{"10.000 MHz|1 dB", "20.000 MHz|-7.25 dB", "30.000 MHz|8 dB", kAddRow}));
    QCOMPARE(c.saved("ramp"), (QStringList{"10000000|1", "20000000|-7.25", "30000000|8"}));
}

void TestACalibrationObjectModelView::anEditorClosedAsItWasOpenedChangesNothing()
{
    const ACalibrationData before = object("o", kCable, {{"8333", 12.3456789}, {"9000", 0}});
    Calibrations c({before});
    Editor view(c.model.get());
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 2; ++column) {
            const QModelIndex cell = c.cell(kCable, "o", row, column);
            view.setCurrentIndex(cell);
            view.edit(cell);
            auto *line = view.viewport()->findChild<QLineEdit *>();
            QVERIFY(line);
            QTest::keyClick(line, Qt::Key_Return);
            QTRY_VERIFY(!view.viewport()->findChild<QLineEdit *>());
            QCOMPARE(c.model->getCalObject(c.object(kCable, "o")), before);
        }
    }
}

void TestACalibrationObjectModelView::objectsCannotBeTypedInto()
{
    Calibrations c({ramp()});
    Editor view(c.model.get());
    view.setCurrentIndex(c.object(kCable, "ramp"));
    QTest::keyClick(&view, Qt::Key_F2);
    QVERIFY(!view.viewport()->findChild<QLineEdit *>());
}

void TestACalibrationObjectModelView::selectedRowsAreRemoved()
{
    Calibrations c({ramp("a"), ramp("b"), ramp("c")});
    Editor view(c.model.get());
    view.selectionModel()->select(c.object(kCable, "b"), QItemSelectionModel::Select);
    view.setCurrentIndex(c.cell(kCable, "b", 2, 1));
    QVERIFY(c.model->removeRows(1, 1, c.type(kCable)));
    QVERIFY(!view.currentIndex().isValid());
    QVERIFY(c.model->removeRows(0, 2, c.object(kCable, "c")));
    QCOMPARE(view.shown(), (QStringList{"Preamplifier", "Antenna", "Cable", "a", "10.000 MHz|1 dB", "20.000 MHz|2 dB",
                                        "30.000 MHz|4 dB", kAddRow, "c", "30.000 MHz|4 dB", kAddRow, "Attenuator"}));
}

// Persistent indexes, a selection and open editors are what an open move could leave dangling.
void TestACalibrationObjectModelView::aViewWithPersistentIndexesSurvivesEveryEdit()
{
    std::mt19937 random(1);
    Calibrations c({ramp("a"), ramp("b"), ramp("c")});
    Editor view(c.model.get());
    for (int step = 0; step < 80; ++step) {
        const QString label(QChar('a' + int(random() % 3)));
        const QModelIndex parent = c.object(kCable, label);
        if (!parent.isValid()) {
            c.manager->addCalibrationData(ramp(label), c.file);
            continue;
        }
        const int row = int(random() % unsigned(c.model->rowCount(parent)));
        QVector<QPersistentModelIndex> persistent;
        for (int i = 0; i < c.model->rowCount(parent); ++i)
            persistent << c.model->index(i, i % 2, parent);
        view.selectionModel()->select(c.model->index(row, 0, parent),
                                      QItemSelectionModel::Select | QItemSelectionModel::Rows);
        view.setCurrentIndex(c.model->index(c.model->rowCount(parent) - 1, 1, parent));
        if (step % 10 == 0)
            view.edit(view.currentIndex());
        const QModelIndex cell = c.model->index(row, 0, parent);
        switch (random() % 5) {
        case 0:
            c.model->removeRows(row, 1, parent);
            break;
        case 1:
            c.model->setData(cell, "-1");
            break;
        case 2:
            c.model->setData(c.model->index(row, 1, parent), double(step + 1));
            break;
        case 3:
            if (step % 20 == 3)
                c.model->removeRows(parent.row(), 1, parent.parent());
            else // by a reference that the model itself might change
                c.model->setData(persistent.first(), int(random() % 40 + 1));
            break;
        default:
            c.model->setData(cell, QStringLiteral("%1 MHz").arg(random() % 40));
        }
        QCoreApplication::processEvents();
        QStringList expected{"Preamplifier", "Antenna", "Cable"};
        for (const QString &name : c.manager->getCalibrationNames(kCable))
            expected += name + c.table(kCable, name).join('\n').prepend('\n');
        expected << "Attenuator";
        QCOMPARE(view.shown().join('\n'), expected.join('\n'));
    }
}

void TestACalibrationObjectModelView::aViewSurvivesASecondProcess()
{
    Calibrations c({ramp("a")});
    Editor view(c.model.get());
    QVERIFY(ACalibrationData::saveAll(c.file + ".new", {ramp("a"), ramp("b")}));
    view.edit(c.cell(kCable, "a", 0, 0)); // and the editor open
    QCOMPARE(QProcess::execute("mv", {c.file + ".new", c.file}), 0);
    QTRY_COMPARE(view.shown().size(), 14);
    QCOMPARE(QProcess::execute("rm", {c.file}), 0);
    QTRY_COMPARE(view.shown().size(), 9); // the one that is known by its label
}

QTEST_MAIN(TestACalibrationObjectModelView)
#include "tst_acalibrationobjectmodel_view.moc"
