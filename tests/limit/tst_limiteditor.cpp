#include "limiteditor.h"
#include "limitfiles.h"
#include "views/editorkeys.h"

#include <QtWidgets/QComboBox>
#include <QtWidgets/QDoubleSpinBox>
#include <QtWidgets/QLineEdit>

using namespace editorkeys;
using namespace limitfiles;

namespace {

void addPiece(LimitEditor *view, Qt::KeyboardModifier modifier, const QStringList &texts)
{
    QTest::keyClick(view, Qt::Key_Insert, modifier);
    const QModelIndex piece = view->currentIndex();
    QVERIFY(piece.parent().isValid());
    for (int i = 0; i < texts.size(); ++i) {
        const QModelIndex cell = piece.siblingAtColumn(ALimitModel::ColumnBeginFrequency + i);
        if (cell.column() == ALimitModel::ColumnInterpolation)
            typeIntoCell<QComboBox>(view, cell, texts.at(i));
        else if (!texts.at(i).isEmpty())
            typeIntoCell<QDoubleSpinBox>(view, cell, texts.at(i));
    }
}

// The cells as numbers where they are numbers: after a load, edges are in a shorter form.
QStringList plainTable(const QAbstractItemModel &model)
{
    QStringList plain;
    for (const QString &line : tableTexts(model)) {
        QStringList cells = line.trimmed().split(QLatin1Char('|'));
        for (QString &cell : cells) {
            bool isNumber = false;
            const double number = cell.toDouble(&isNumber);
            cell = isNumber ? QString::number(number, 'g', 12) : cell;
        }
        plain << cells.join(QLatin1Char('|'));
    }
    return plain;
}

} // namespace

class TestLimitEditor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void aLimitThatIsTypedComesBackFromItsFile();
    void aLoadedLimitIsEditedAndSaved();
    void piecesAndLimitsAreDeleted();
    void escapeLeavesACell();
    void aCellWithAnUnknownUnitSurvivesItsEditor();
    void theViewShowsLabelsAndUnits();

private:
    QModelIndex limit(int row, int column) { return m_editor->limits()->index(row, column); }
    QModelIndex piece(int row, int column) { return m_editor->limits()->index(row, column, limit(0, 0)); }

    std::unique_ptr<QTemporaryDir> m_directory;
    QString m_fileName;
    std::unique_ptr<LimitEditor> m_editor;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

void TestLimitEditor::initTestCase()
{
    QLocale::setDefault(QLocale::c());
}

void TestLimitEditor::init()
{
    m_directory = std::make_unique<QTemporaryDir>();
    m_fileName = m_directory->filePath("limits.xml");
    m_editor = std::make_unique<LimitEditor>(m_fileName);
    m_tester = std::make_unique<QAbstractItemModelTester>(m_editor->limits(),
                                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    m_editor->show();
    QVERIFY(QTest::qWaitForWindowActive(m_editor.get()));
}

void TestLimitEditor::cleanup()
{
    m_tester.reset();
    m_editor.reset();
}

void TestLimitEditor::aLimitThatIsTypedComesBackFromItsFile()
{
    QTest::keyClick(m_editor.get(), Qt::Key_Insert);
    typeIntoCell<QLineEdit>(m_editor.get(), limit(0, ALimitModel::ColumnName), "Radiated & conducted");
    typeIntoCell<QDoubleSpinBox>(m_editor.get(), limit(0, ALimitModel::ColumnBegin), "0.15");
    typeIntoCell<QDoubleSpinBox>(m_editor.get(), limit(0, ALimitModel::ColumnEnd), "1000");
    typeIntoCell<QComboBox>(m_editor.get(), limit(0, ALimitModel::ColumnUnit), "dB\u00b5V/m");
    typeIntoCell<QLineEdit>(m_editor.get(), limit(0, ALimitModel::ColumnDescription), "not saved");
    typeIntoCell<QLineEdit>(m_editor.get(), limit(0, ALimitModel::ColumnColor), "#cc0000");
    QCOMPARE(rowTexts(*m_editor->limits(), 0).mid(0, 6),
             (QStringList{"Radiated & conducted", "      0.1500000", "   1000.0000000", "8", "not saved", "#cc0000"}));

    addPiece(m_editor.get(), Qt::ControlModifier, {"0.15", "30", "66", "56.125", "logarithmic"});
    addPiece(m_editor.get(), Qt::ShiftModifier, {"", "230.000001", "", "-30.5", "linear"});
    addPiece(m_editor.get(), Qt::ControlModifier, {"30", "88", "40", "40", "step"});
    addPiece(m_editor.get(), Qt::ShiftModifier, {"", "1000", "", "37", "step"});
    const QStringList typed = {"Radiated & conducted|0.15|1000|8|not saved|#cc0000|||-|-|-", "0.15|30|66|56.125|2",
                               "-|230.000001|-|-30.5|1", "30|88|40|40|0", "-|1000|-|37|0"};
    QCOMPARE(plainTable(*m_editor->limits()), typed);
    keepPicture(m_editor->grab(), "limiteditor-typed.png");

    QTest::keyClick(m_editor.get(), Qt::Key_S, Qt::ControlModifier);
    const QByteArray saved = readFile(m_fileName);
    QCOMPARE(saved, document("    <limit name=\"Radiated &amp; conducted\" begin=\"150000\" end=\"1000000000\""
                             " measureunit=\"8\" color=\"#cc0000\">\n"
                             "        <section beginFrequency=\"150000\" endFrequency=\"30000000\" beginValue=\"66\""
                             " endValue=\"56.125\" interpolation=\"2\"/>\n"
                             "        <level frequency=\"230000001\" interpolation=\"1\">-30.5</level>\n"
                             "        <section beginFrequency=\"30000000\" endFrequency=\"88000000\" beginValue=\"40\""
                             " endValue=\"40\" interpolation=\"0\"/>\n"
                             "        <level frequency=\"1000000000\" interpolation=\"0\">37</level>\n"
                             "    </limit>\n"));

    QTest::keyClick(m_editor.get(), Qt::Key_F5);
    QCOMPARE(plainTable(*m_editor->limits()), (QStringList{"Radiated & conducted|0.15|1000|8||#cc0000|||-|-|-",
                                                           typed.at(1), typed.at(3), typed.at(2), typed.at(4)}));
    QTest::keyClick(m_editor.get(), Qt::Key_S, Qt::ControlModifier);
    const QByteArray again = readFile(m_fileName);
    QTest::keyClick(m_editor.get(), Qt::Key_F5);
    QTest::keyClick(m_editor.get(), Qt::Key_S, Qt::ControlModifier);
    QCOMPARE(readFile(m_fileName), again);

    QList<const ALimit *> limits;
    QVERIFY(ALimit::readAll(m_fileName, limits, nullptr));
    QCOMPARE(limits.size(), 1);
    QCOMPARE(limits.first()->unitId(), 8);
    QCOMPARE(limits.first()->valueAt(AFrequency("30 MHz"), nullptr), 56.125);
    QCOMPARE(limits.first()->valueAt(AFrequency("50 MHz"), nullptr), 40.0);
    QCOMPARE(limits.first()->valueAt(AFrequency("1 GHz"), nullptr), 37.0);
    qDeleteAll(limits);
}

void TestLimitEditor::aLoadedLimitIsEditedAndSaved()
{
    QVERIFY(QFile::copy(AVELDORAN_EXAMPLES_DIR "/data/limits/en55032-conducted.xml", m_fileName));
    QTest::keyClick(m_editor.get(), Qt::Key_F5);
    const int rows = m_editor->limits()->rowCount();
    QVERIFY(rows >= 4);
    QStringList expected = plainTable(*m_editor->limits());
    keepPicture(m_editor->grab(), "limiteditor-loaded.png");

    typeIntoCell<QLineEdit>(m_editor.get(), limit(0, ALimitModel::ColumnName), "Renamed");
    typeIntoCell<QComboBox>(m_editor.get(), limit(0, ALimitModel::ColumnUnit), "dBmV");
    typeIntoCell<QDoubleSpinBox>(m_editor.get(), piece(0, ALimitModel::ColumnEndFrequency), "29.5");
    typeIntoCell<QDoubleSpinBox>(m_editor.get(), piece(0, ALimitModel::ColumnEndValue), "72.25");
    typeIntoCell<QComboBox>(m_editor.get(), piece(1, ALimitModel::ColumnInterpolation), "step");
    QTest::keyClick(m_editor.get(), Qt::Key_S, Qt::ControlModifier);
    QTest::keyClick(m_editor.get(), Qt::Key_F5);

    QStringList cells = expected.first().split(QLatin1Char('|'));
    cells[ALimitModel::ColumnName] = "Renamed";
    cells[ALimitModel::ColumnUnit] = "3";
    expected[0] = cells.join(QLatin1Char('|'));
    expected[1] = "0.5|29.5|73|72.25|1";
    expected[2] = "0.15|0.5|79|79|0";
    for (QString &line : expected) { // but no description comes back
        QStringList parts = line.split(QLatin1Char('|'));
        if (parts.size() == 11)
            parts[ALimitModel::ColumnDescription].clear();
        line = parts.join(QLatin1Char('|'));
    }
    QCOMPARE(plainTable(*m_editor->limits()), expected);
}

void TestLimitEditor::piecesAndLimitsAreDeleted()
{
    writeBytes(m_fileName, "<data><limit name='a'><level>1</level><level>2</level><level>3</level></limit>"
                           "<limit name='b'/></data>");
    QTest::keyClick(m_editor.get(), Qt::Key_F5);
    m_editor->setCurrentIndex(piece(1, ALimitModel::ColumnEndValue));
    QTest::keyClick(m_editor.get(), Qt::Key_Delete);
    QCOMPARE(m_editor->limits()->rowCount(limit(0, 0)), 2);
    m_editor->setCurrentIndex(limit(1, 0));
    QTest::keyClick(m_editor.get(), Qt::Key_Delete);
    QTest::keyClick(m_editor.get(), Qt::Key_S, Qt::ControlModifier);
    QTest::keyClick(m_editor.get(), Qt::Key_F5);
    QCOMPARE(plainTable(*m_editor->limits()), (QStringList{"a|0|30000|8|||||-|-|-", "-|0|-|1|0", "-|0|-|3|0"}));
    m_editor->setCurrentIndex(limit(0, 0));
    QTest::keyClick(m_editor.get(), Qt::Key_Delete);
    QTest::keyClick(m_editor.get(), Qt::Key_Delete); // nothing is current
    QCOMPARE(m_editor->limits()->rowCount(), 0);
}

void TestLimitEditor::escapeLeavesACell()
{
    writeBytes(m_fileName, "<data><limit begin='1234567890'/></data>");
    QTest::keyClick(m_editor.get(), Qt::Key_F5);
    m_editor->setCurrentIndex(limit(0, ALimitModel::ColumnBegin));
    QTest::keyClick(m_editor.get(), Qt::Key_F2);
    auto *box = m_editor->viewport()->findChild<QDoubleSpinBox *>();
    QVERIFY(box);
    QCOMPARE(box->text(), QStringLiteral("1234.570000 MHz"));
    QTest::keyClicks(box, "5");
    QTest::keyClick(box, Qt::Key_Escape);
    QTRY_VERIFY(!m_editor->viewport()->findChild<QDoubleSpinBox *>());
    QCOMPARE(limit(0, ALimitModel::ColumnBegin).data().toString(), QStringLiteral("1234.57"));
}

void TestLimitEditor::aCellWithAnUnknownUnitSurvivesItsEditor()
{
    writeBytes(m_fileName, "<data><limit measureunit='77'/></data>");
    QTest::keyClick(m_editor.get(), Qt::Key_F5);
    typeIntoCell<QComboBox>(m_editor.get(), limit(0, ALimitModel::ColumnUnit), QString());
    QCOMPARE(limit(0, ALimitModel::ColumnUnit).data().toString(), QStringLiteral("77"));
    typeIntoCell<QComboBox>(m_editor.get(), limit(0, ALimitModel::ColumnUnit), "V");
    QCOMPARE(limit(0, ALimitModel::ColumnUnit).data().toString(), QStringLiteral("5"));
}

void TestLimitEditor::theViewShowsLabelsAndUnits()
{
    writeBytes(m_fileName, "<data><limit begin='9000' measureunit='4'><section beginFrequency='9000'"
                           " endFrequency='150000' beginValue='110.5' interpolation='2'/></limit></data>");
    QTest::keyClick(m_editor.get(), Qt::Key_F5);
    m_editor->setCurrentIndex(piece(0, ALimitModel::ColumnBeginValue));
    const auto shown = [this](const QModelIndex &cell) {
        const auto *delegate = qobject_cast<QStyledItemDelegate *>(m_editor->itemDelegate(cell));
        return delegate->displayText(cell.data(), QLocale::c());
    };
    QCOMPARE(shown(limit(0, ALimitModel::ColumnBegin)), QStringLiteral("0.009 MHz"));
    QCOMPARE(shown(limit(0, ALimitModel::ColumnUnit)), QStringLiteral("dB\u00b5V"));
    QCOMPARE(shown(piece(0, ALimitModel::ColumnEndFrequency)), QStringLiteral("0.15 MHz"));
    QCOMPARE(shown(piece(0, ALimitModel::ColumnBeginValue)), QStringLiteral("110.5 dB\u00b5V"));
    QCOMPARE(shown(piece(0, ALimitModel::ColumnInterpolation)), QStringLiteral("logarithmic"));
}

QTEST_MAIN(TestLimitEditor)
#include "tst_limiteditor.moc"
