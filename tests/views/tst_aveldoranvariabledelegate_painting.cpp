#include "recordingstyle.h"
#include "translatedtexts.h"
#include "variabletable.h"

#include <QtTest/QtTest>

// What the delegate asks the style to draw. How it looks is the subject of tst_delegatelooks.

struct VariableCell
{
    int type; // of the device
    QVariant name;
    QVariant value;
    QString text; // that is drawn
};

Q_DECLARE_METATYPE(VariableCell)

class TestAVeldoranVariableDelegatePainting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_style = RecordingStyle::install(); }

    void aFilterOrAKeyIsPaintedAsAComboBox_data();
    void aFilterOrAKeyIsPaintedAsAComboBox();
    void aSwitchIsPaintedAsACheckBox_data();
    void aSwitchIsPaintedAsACheckBox();
    void aSwitchSpeaksTheLanguageOfTheApplication();
    void aNumberIsPaintedAsASpinBox_data();
    void aNumberIsPaintedAsASpinBox();
    void otherCellsArePaintedAsPlainItems();
    void theShownRoleDecides();
    void theDirectionOfTheViewIsTaken();
    void thePaletteOfTheViewIsTaken();
    void aChangedOptionCountsAtOnce();

private:
    // The calls that painting the cell makes. The painter must come back as it went, and no other cell be touched.
    QVector<RecordingStyle::Call> paint(const AVeldoranVariableDelegate &delegate, const QModelIndex &index,
                                        QStyle::State state = QStyle::State_Active);

    RecordingStyle *m_style = nullptr;
    QRect m_cell = PaintedCell().option.rect;
};

QVector<RecordingStyle::Call> TestAVeldoranVariableDelegatePainting::paint(const AVeldoranVariableDelegate &delegate,
                                                                           const QModelIndex &index,
                                                                           QStyle::State state)
{
    m_style->calls.clear();
    PaintedCell painted;
    painted.option.state = state;
    const bool isClean = painted.paint(delegate, index) && painted.isUntouchedOutside();
    return isClean ? m_style->calls : QVector<RecordingStyle::Call>(9);
}

void TestAVeldoranVariableDelegatePainting::aFilterOrAKeyIsPaintedAsAComboBox_data()
{
    QTest::addColumn<VariableCell>("cell");
    const int type = SpectrumAnalyser;
    QTest::newRow("filter") << VariableCell{type, "VideoFilter", 9, "120 kHz"};
    QTest::newRow("filter of a low-frequency device") << VariableCell{2, "VideoFilter", 9, "300 Hz"};
    QTest::newRow("the last filter") << VariableCell{type, "VideoFilter", 14, "1500 kHz"};
    QTest::newRow("the last of a low-frequency device") << VariableCell{2, "VideoFilter", 15, "0.3 Hz"};
    QTest::newRow("beyond") << VariableCell{type, "VideoFilter", 15, ""};
    QTest::newRow("beyond of a low-frequency device") << VariableCell{2, "VideoFilter", 16, ""};
    QTest::newRow("unspecified") << VariableCell{type, "VideoFilter", -1, "(unspecified)"};
    QTest::newRow("unspecified of a low-frequency device") << VariableCell{2, "VideoFilter", -1, ""};
    QTest::newRow("below") << VariableCell{type, "VideoFilter", -2, ""};
    QTest::newRow("far beyond") << VariableCell{type, "VideoFilter", std::numeric_limits<int>::max(), ""};
    QTest::newRow("far below") << VariableCell{type, "VideoFilter", std::numeric_limits<int>::min(), ""};
    QTest::newRow("text") << VariableCell{type, "VideoFilter", "3", "300 kHz"};
    QTest::newRow("no number") << VariableCell{type, "VideoFilter", "x", "Full"};
    QTest::newRow("rounded") << VariableCell{type, "VideoFilter", 1.6, "1 MHz"};
    QTest::newRow("key") << VariableCell{type, "Attenuator", 10, "10 dB"};
    QTest::newRow("negative key") << VariableCell{type, "Attenuator", -1.0, "Auto"};
    QTest::newRow("key by number of the variable") << VariableCell{type, "13", 10, "10 dB"};
    QTest::newRow("key as a text") << VariableCell{type, "Attenuator", "10", "10 dB"};
    QTest::newRow("key as a decimal text") << VariableCell{type, "Attenuator", "10.0", "0 dB"}; // not what opens
    QTest::newRow("unknown key") << VariableCell{type, "Attenuator", 11, ""};
    QTest::newRow("large key") << VariableCell{2, "InputImpedance", 200000, "200 kOhm"};
    QTest::newRow("no key") << VariableCell{type, "Attenuator", "x", "0 dB"};
    QTest::newRow("of another device") << VariableCell{type, "SensorAxis", 2, "Z"};
}

void TestAVeldoranVariableDelegatePainting::aFilterOrAKeyIsPaintedAsAComboBox()
{
    QFETCH(VariableCell, cell);
    AVeldoranVariableDelegate delegate;
    delegate.setOptions(VeldoranDeviceType(cell.type), true, true);
    const VariableTable table(cell.name, cell.value);
    for (const QStyle::State state : {QStyle::State(QStyle::State_None), QStyle::State_Selected | QStyle::State_Active,
                                      QStyle::State_HasFocus | QStyle::State_MouseOver}) {
        const auto calls = paint(delegate, table.valueCell(), state);
        QCOMPARE(calls.size(), 2);
        QCOMPARE(m_style->elements(), (QStringList{"CC_ComboBox", "CE_ComboBoxLabel"}));
        for (const auto &call : calls) {
            QCOMPARE(call.rect, m_cell);
            QCOMPARE(call.state, state | QStyle::State_Enabled | QStyle::State_ReadOnly);
            QCOMPARE(call.text, cell.text);
        }
    }
}

void TestAVeldoranVariableDelegatePainting::aSwitchIsPaintedAsACheckBox_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("isOn");
    QTest::newRow("one") << QVariant(1) << true;
    QTest::newRow("a part") << QVariant(0.25) << true;
    QTest::newRow("text") << QVariant("1.0") << true;
    QTest::newRow("zero") << QVariant(0) << false;
    QTest::newRow("negative") << QVariant(-1.0) << false;
    QTest::newRow("no number") << QVariant("on") << false;
    QTest::newRow("nothing") << QVariant() << false;
}

void TestAVeldoranVariableDelegatePainting::aSwitchIsPaintedAsACheckBox()
{
    QFETCH(QVariant, value);
    QFETCH(bool, isOn);
    const AVeldoranVariableDelegate delegate;
    const VariableTable table("Squelch", value);
    for (const QStyle::State state :
         {QStyle::State(QStyle::State_None), QStyle::State_Selected | QStyle::State_Active}) {
        const auto calls = paint(delegate, table.valueCell(), state);
        QCOMPARE(m_style->elements(), QStringList("CE_CheckBox"));
        QCOMPARE(calls.first().rect, m_cell);
        QCOMPARE(calls.first().state, state | QStyle::State_Enabled | (isOn ? QStyle::State_On : QStyle::State_Off));
        QCOMPARE(calls.first().text, QString(isOn ? "On" : "Off"));
    }
}

void TestAVeldoranVariableDelegatePainting::aSwitchSpeaksTheLanguageOfTheApplication()
{
    const TranslatedTexts german("AVeldoranVariableDelegate", {{"On", "Ein"}, {"Off", "Aus"}});
    const AVeldoranVariableDelegate delegate;
    QCOMPARE(paint(delegate, VariableTable("Squelch", 1).valueCell()).first().text, QString("Ein"));
    QCOMPARE(paint(delegate, VariableTable("Squelch", 0).valueCell()).first().text, QString("Aus"));
}

void TestAVeldoranVariableDelegatePainting::aNumberIsPaintedAsASpinBox_data()
{
    QTest::addColumn<VariableCell>("cell");
    const int type = SpectrumAnalyser;
    QTest::newRow("frequency") << VariableCell{type, "Span", 433.92, "433.92 MHz"};
    QTest::newRow("whole frequency") << VariableCell{type, "Span", 100, "100 MHz"};
    QTest::newRow("low frequency") << VariableCell{2, "Span", 100, "100 kHz"};
    QTest::newRow("milliseconds") << VariableCell{type, "SweepTime", 20, "20 ms"};
    QTest::newRow("seconds") << VariableCell{type, "HoldTime", 3, "3 s"};
    QTest::newRow("number") << VariableCell{type, "TriggerLevel", -60.5, "-60.5"};
    QTest::newRow("number as it is written") << VariableCell{type, "TriggerLevel", "-060.50", "-060.50"};
    QTest::newRow("text") << VariableCell{type, "Span", "%2 & %1", "%2 & %1 MHz"};
    QTest::newRow("nothing") << VariableCell{type, "Span", {}, " MHz"};
    QTest::newRow("nothing without a unit") << VariableCell{type, "TriggerLevel", {}, ""};
    QTest::newRow("unknown number") << VariableCell{type, 999, 7, "7"}; // as the last variable
}

void TestAVeldoranVariableDelegatePainting::aNumberIsPaintedAsASpinBox()
{
    QFETCH(VariableCell, cell);
    AVeldoranVariableDelegate delegate;
    delegate.setOptions(VeldoranDeviceType(cell.type), true, true);
    const VariableTable table(cell.name, cell.value);
    for (const QStyle::State state :
         {QStyle::State(QStyle::State_None), QStyle::State_Selected | QStyle::State_Active}) {
        const auto calls = paint(delegate, table.valueCell(), state);
        QCOMPARE(calls.size(), 2);
        m_style->compareToAReadOnlySpinBox(m_cell, state);
        QCOMPARE(calls.at(1).text, cell.text);
    }
}

void TestAVeldoranVariableDelegatePainting::otherCellsArePaintedAsPlainItems()
{
    AVeldoranVariableDelegate delegate;
    VariableTable table("Span", 7);
    table.setData(table.otherCell(), "other");
    const auto name = paint(delegate, table.nameCell());
    QCOMPARE(m_style->elements(), QStringList("item"));
    QCOMPARE(name.first().text, QString("Span"));
    paint(delegate, table.otherCell());
    QCOMPARE(m_style->elements(), QStringList("item"));
    const VariableTable unknown("Nonsense", 7);
    QCOMPARE(paint(delegate, unknown.valueCell()).first().text, QString("7"));
    QCOMPARE(m_style->elements(), QStringList("item"));
    paint(delegate, QModelIndex());
    QCOMPARE(m_style->elements(), QStringList("item"));
    delegate.setColumns(0, 2);
    paint(delegate, table.valueCell());
    QCOMPARE(m_style->elements(), QStringList("item"));
    paint(delegate, table.otherCell());
    QCOMPARE(m_style->elements(), (QStringList{"CC_SpinBox", "text"}));
}

// Lists are painted by the edited value, switches and numbers by the shown one.
void TestAVeldoranVariableDelegatePainting::theShownRoleDecides()
{
    struct TwoRoles : VariableTable
    {
        using VariableTable::VariableTable;
        QVariant data(const QModelIndex &index, int role) const override
        {
            return role == Qt::DisplayRole ? QVariant(1) : VariableTable::data(index, role);
        }
    };
    const AVeldoranVariableDelegate delegate;
    QCOMPARE(paint(delegate, TwoRoles("VideoFilter", 3).valueCell()).first().text, QString("300 kHz"));
    QCOMPARE(paint(delegate, TwoRoles("Detector", 2).valueCell()).first().text, QString("Peak"));
    QCOMPARE(paint(delegate, TwoRoles("Squelch", 0).valueCell()).first().text, QString("On"));
    QCOMPARE(paint(delegate, TwoRoles("Span", 3).valueCell()).last().text, QString("1 MHz"));
}

void TestAVeldoranVariableDelegatePainting::theDirectionOfTheViewIsTaken()
{
    const AVeldoranVariableDelegate delegate;
    for (const char *name : {"Span", "VideoFilter", "Attenuator", "Squelch"}) {
        m_style->calls.clear();
        PaintedCell painted;
        painted.option.direction = Qt::RightToLeft;
        QVERIFY(painted.paint(delegate, VariableTable(name, 1).valueCell()));
        QCOMPARE(m_style->calls.first().direction, Qt::RightToLeft);
    }
}

// All but the text of a number, whose colour is the painter's pen.
void TestAVeldoranVariableDelegatePainting::thePaletteOfTheViewIsTaken()
{
    const AVeldoranVariableDelegate delegate;
    const QPalette palette = PaintedCell().option.palette;
    QVERIFY(palette != QPalette());
    for (const char *name : {"Span", "VideoFilter", "Attenuator", "Squelch"}) {
        const auto calls = paint(delegate, VariableTable(name, 1).valueCell());
        QVERIFY(!calls.isEmpty());
        for (const auto &call : calls)
            QCOMPARE(call.palette, call.element == QLatin1String("text") ? QPalette() : palette);
    }
}

void TestAVeldoranVariableDelegatePainting::aChangedOptionCountsAtOnce()
{
    AVeldoranVariableDelegate delegate;
    VariableTable table("VideoFilter", 9);
    QCOMPARE(paint(delegate, table.valueCell()).first().text, QString("120 kHz"));
    delegate.setOptions(LowFrequencyAnalyser, true, true);
    QCOMPARE(paint(delegate, table.valueCell()).first().text, QString("300 Hz"));
    table.setData(table.nameCell(), "Detector");
    table.setData(table.valueCell(), 1);
    QCOMPARE(paint(delegate, table.valueCell()).first().text, QString("Average"));
    table.setData(table.nameCell(), "Demodulator");
    QCOMPARE(paint(delegate, table.valueCell()).first().text, QString("AM"));
}

QTEST_MAIN(TestAVeldoranVariableDelegatePainting)
#include "tst_aveldoranvariabledelegate_painting.moc"
