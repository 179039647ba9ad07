#include "editorkeys.h"
#include "variabletable.h"

#include <QtWidgets/QCheckBox>
#include <QtWidgets/QTableView>

class TestAVeldoranVariableDelegateEditing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

    void theNameEditorOffersTheDevicesVariables_data();
    void theNameEditorOffersTheDevicesVariables();
    void blacklistedVariablesAreNotOfferedButWork();
    void theNameEditorSelectsWhatTheCellHolds_data();
    void theNameEditorSelectsWhatTheCellHolds();
    void aChosenNameIsStored_data();
    void aChosenNameIsStored();
    void withoutNamesTheOldNumberStays_data();
    void withoutNamesTheOldNumberStays();
    void aNameThatIsNotOfferedSurvivesItsEditor_data();
    void aNameThatIsNotOfferedSurvivesItsEditor();

    void theVariableDecidesTheEditor_data();
    void theVariableDecidesTheEditor();
    void theFiltersAreThoseOfTheDevice();
    void theLabelsOfAnEnumerationAreInKeyOrder();
    void aListSelectsTheCellsValue_data();
    void aListSelectsTheCellsValue();
    void aListCommitsTheDataOfItsEntry();
    void aSwitchTakesAndGivesNumbers();
    void aSpinBoxTakesAndGivesNumbers();
    void cellsWithoutAVariableHaveALineEdit_data();
    void cellsWithoutAVariableHaveALineEdit();
    void editorsOfAnotherKindAreServedByTheBaseClass();
    void indexesOfNoModelAndOfOthersDoNoHarm();
    void theVariableMayChangeBelowAnOpenEditor_data();
    void theVariableMayChangeBelowAnOpenEditor();
    void anEditIsOneChange();
};

namespace {

template<typename Editor>
Editor *makeEditor(const AVeldoranVariableDelegate &delegate, QWidget *parent, const QModelIndex &index)
{
    QWidget *editor = delegate.createEditor(parent, {}, index);
    return editor->parentWidget() == parent && editor->focusPolicy() == Qt::StrongFocus ? qobject_cast<Editor *>(editor)
                                                                                        : nullptr;
}

QStringList entries(const QComboBox *box)
{
    QStringList texts;
    for (int i = 0; i < box->count(); ++i)
        texts << box->itemText(i);
    return texts;
}

// What the table of the core library says of a device, by the words of its header.
QStringList offeredNames(quint32 type)
{
    QStringList names;
    for (int i = 0; const device_variable_desc *desc = get_vardesc(i); ++i) {
        const bool isOpen = (desc->flags & device_variable_desc::Readable) &&
                            (desc->flags & device_variable_desc::Writable) &&
                            !(desc->flags & device_variable_desc::Internal);
        if (isOpen && (desc->deviceMask & type))
            names << desc->name;
    }
    return names;
}

// Chooses a name in the editor of a cell: that which the row of data tells must be stored.
void chooseTheName(const AVeldoranVariableDelegate &delegate)
{
    QFETCH(QVariant, name);
    QFETCH(QString, chosen);
    QFETCH(QVariant, stored);
    QWidget parent;
    VariableTable table(name, 7);
    auto *box = makeEditor<QComboBox>(delegate, &parent, table.nameCell());
    box->setCurrentIndex(box->findText(chosen));
    delegate.setModelData(box, &table, table.nameCell());
    QCOMPARE(table.name(), stored);
    QCOMPARE(table.name().type(), stored.type());
    QCOMPARE(table.value(), QVariant(7));
}

} // namespace

void TestAVeldoranVariableDelegateEditing::theNameEditorOffersTheDevicesVariables_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("emptyEntry");
    for (const int type : {NoDeviceType, SignalGenerator, LowFrequencyAnalyser, PowerMeter, SpectrumAnalyser}) {
        QTest::addRow("type %d with an empty entry", type) << type << true;
        QTest::addRow("type %d without", type) << type << false;
    }
}

void TestAVeldoranVariableDelegateEditing::theNameEditorOffersTheDevicesVariables()
{
    QFETCH(int, type);
    QFETCH(bool, emptyEntry);
    QWidget parent;
    AVeldoranVariableDelegate delegate;
    delegate.setOptions(VeldoranDeviceType(type), true, emptyEntry);
    const VariableTable table({});
    const auto *box = makeEditor<QComboBox>(delegate, &parent, table.nameCell());
    QVERIFY(box);
    QVERIFY(!box->isEditable());
    const QStringList names = offeredNames(quint32(type));
    QCOMPARE(entries(box), emptyEntry ? QStringList(QString()) + names : names);
    QVERIFY(!names.contains("PreamplifierGain")); // can't be written
    QVERIFY(!names.contains("RestoreDefaults"));  // can't be read
    QVERIFY(!names.contains("ServiceMode"));      // internal
    QCOMPARE(names.contains("SensorAxis"), type == LowFrequencyAnalyser);
    QCOMPARE(names.contains("OutputLevel"), type == SignalGenerator);
}

void TestAVeldoranVariableDelegateEditing::blacklistedVariablesAreNotOfferedButWork()
{
    QWidget parent;
    AVeldoranVariableDelegate delegate;
    delegate.setBlacklist({"Squelch", "span", "Nonsense"});
    VariableTable table("Squelch", 1.0);
    const auto *names = makeEditor<QComboBox>(delegate, &parent, table.nameCell());
    QVERIFY(!entries(names).contains("Squelch"));
    QVERIFY(entries(names).contains("Span")); // the case counts
    QCOMPARE(names->currentIndex(), -1);
    QCOMPARE(nameOf(delegate.variableInfo(table.valueCell())), QByteArray("Squelch"));
    auto *box = makeEditor<QCheckBox>(delegate, &parent, table.valueCell());
    QVERIFY(box && box->isChecked());
    delegate.setBlacklist({});
    QVERIFY(entries(makeEditor<QComboBox>(delegate, &parent, table.nameCell())).contains("Squelch"));
}

void TestAVeldoranVariableDelegateEditing::theNameEditorSelectsWhatTheCellHolds_data()
{
    QTest::addColumn<QVariant>("name");
    QTest::addColumn<bool>("emptyEntry");
    QTest::addColumn<int>("index");
    QTest::newRow("name") << QVariant("StopFrequency") << true << 2;
    QTest::newRow("number") << QVariant(2) << true << 2;
    QTest::newRow("name, no empty entry") << QVariant("StopFrequency") << false << 1;
    QTest::newRow("another case") << QVariant("stopfrequency") << true << -1;
    QTest::newRow("of another device") << QVariant("SensorAxis") << true << -1;
    QTest::newRow("number of another device") << QVariant(42) << true << -1;
    QTest::newRow("unknown number") << QVariant(999) << true << -1;
    QTest::newRow("empty") << QVariant("") << true << 0;
    QTest::newRow("nothing") << QVariant() << true << 0;
    QTest::newRow("nothing, no empty entry") << QVariant() << false << -1;
}

void TestAVeldoranVariableDelegateEditing::theNameEditorSelectsWhatTheCellHolds()
{
    QFETCH(QVariant, name);
    QFETCH(bool, emptyEntry);
    QFETCH(int, index);
    QWidget parent;
    AVeldoranVariableDelegate delegate;
    delegate.setOptions(SpectrumAnalyser, true, emptyEntry);
    VariableTable table(name);
    auto *box = makeEditor<QComboBox>(delegate, &parent, table.nameCell());
    QCOMPARE(box->currentIndex(), index);
    box->setCurrentIndex(5);
    delegate.setEditorData(box, table.nameCell());
    QCOMPARE(box->currentIndex(), name.toString().isEmpty() ? 5 : index); // an empty cell changes no selection
}

void TestAVeldoranVariableDelegateEditing::aChosenNameIsStored_data()
{
    QTest::addColumn<QVariant>("name");
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<QVariant>("stored");
    QTest::newRow("another") << QVariant("Span") << "Volume" << QVariant("Volume");
    QTest::newRow("the same") << QVariant("Span") << "Span" << QVariant("Span");
    QTest::newRow("for a number") << QVariant(4) << "Volume" << QVariant("Volume");
    QTest::newRow("for an unknown") << QVariant("Nonsense") << "Volume" << QVariant("Volume");
    QTest::newRow("for nothing") << QVariant() << "Volume" << QVariant("Volume");
    QTest::newRow("none") << QVariant("Span") << "" << QVariant();
}

void TestAVeldoranVariableDelegateEditing::aChosenNameIsStored()
{
    chooseTheName(AVeldoranVariableDelegate());
}

void TestAVeldoranVariableDelegateEditing::withoutNamesTheOldNumberStays_data()
{
    QTest::addColumn<QVariant>("name");
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<QVariant>("stored");
    QTest::newRow("number") << QVariant(4) << "Volume" << QVariant(4);
    QTest::newRow("text of a number") << QVariant("4") << "Volume" << QVariant(4);
    QTest::newRow("name becomes its number") << QVariant("Span") << "Volume" << QVariant(4);
    QTest::newRow("unknown number becomes the last") << QVariant(999) << "Volume" << QVariant(53);
    QTest::newRow("number of another device, too") << QVariant(42) << "Volume" << QVariant(53);
    QTest::newRow("unknown name") << QVariant("Nonsense") << "Volume" << QVariant("Nonsense");
    QTest::newRow("nothing") << QVariant() << "Volume" << QVariant();
    QTest::newRow("none chosen") << QVariant(4) << "" << QVariant();
    QTest::newRow("none chosen for a name") << QVariant("Span") << "" << QVariant();
}

// Deliberate: tables of numbers are not to be renumbered by their editor.
void TestAVeldoranVariableDelegateEditing::withoutNamesTheOldNumberStays()
{
    AVeldoranVariableDelegate delegate;
    delegate.setOptions(SpectrumAnalyser, false, true);
    chooseTheName(delegate);
}

void TestAVeldoranVariableDelegateEditing::aNameThatIsNotOfferedSurvivesItsEditor_data()
{
    QTest::addColumn<QVariant>("name");
    QTest::newRow("unknown") << QVariant("Nonsense");
    QTest::newRow("unknown number") << QVariant(999);
    QTest::newRow("of another device") << QVariant("SensorAxis");
    QTest::newRow("internal") << QVariant("ServiceMode");
    QTest::newRow("blacklisted") << QVariant("Squelch");
    QTest::newRow("nothing") << QVariant();
}

void TestAVeldoranVariableDelegateEditing::aNameThatIsNotOfferedSurvivesItsEditor()
{
    QFETCH(QVariant, name);
    QWidget parent;
    AVeldoranVariableDelegate delegate;
    delegate.setBlacklist({"Squelch"});
    for (const bool storeNames : {true, false}) {
        delegate.setOptions(SpectrumAnalyser, storeNames, false);
        VariableTable table(name);
        auto *box = makeEditor<QComboBox>(delegate, &parent, table.nameCell());
        delegate.setModelData(box, &table, table.nameCell());
        QCOMPARE(table.name(), name);
    }
}

void TestAVeldoranVariableDelegateEditing::theVariableDecidesTheEditor_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("editor");
    QTest::addColumn<double>("minimum");
    QTest::addColumn<double>("maximum");
    QTest::addColumn<int>("decimals");
    QTest::addColumn<QString>("suffix");
    const auto spinBox = [](const char *name, double minimum, double maximum, int decimals, const char *suffix,
                            int type = SpectrumAnalyser) {
        QTest::addRow("%s of %d", name, type)
            << type << name << QByteArray("QDoubleSpinBox") << minimum << maximum << decimals << suffix;
    };
    const auto other = [](const char *name, const char *editor) {
        QTest::addRow("%s", name) << int(SpectrumAnalyser) << name << QByteArray(editor) << 0.0 << 0.0 << 0 << "";
    };
    other("VideoFilter", "QComboBox");
    other("Attenuator", "QComboBox");
    other("Squelch", "QCheckBox");
    spinBox("CenterFrequency", 0, 30000, 3, " MHz");
    spinBox("CenterFrequency", 0, 30000, 3, " kHz", LowFrequencyAnalyser);
    spinBox("OutputFrequency", 0, 30000, 3, " MHz", SignalGenerator);
    spinBox("SweepTime", 0, 50000, 0, " ms");
    spinBox("HoldTime", 0, 1000, 0, " s");
    spinBox("TriggerLevel", -100000, 100000, 1, "");
    spinBox("PreamplifierGain", -100000, 100000, 1, ""); // of what can't be written too
}

void TestAVeldoranVariableDelegateEditing::theVariableDecidesTheEditor()
{
    QFETCH(int, type);
    QFETCH(QString, name);
    QFETCH(QByteArray, editor);
    QWidget parent;
    AVeldoranVariableDelegate delegate;
    delegate.setOptions(VeldoranDeviceType(type), true, true);
    const VariableTable table(name, 1);
    auto *made = makeEditor<QWidget>(delegate, &parent, table.valueCell());
    QVERIFY(made);
    QCOMPARE(QByteArray(made->metaObject()->className()), editor);
    if (const auto *list = qobject_cast<QComboBox *>(made))
        QVERIFY(!list->isEditable());
    if (const auto *box = qobject_cast<QDoubleSpinBox *>(made)) {
        QTEST(box->minimum(), "minimum");
        QTEST(box->maximum(), "maximum");
        QTEST(box->decimals(), "decimals");
        QTEST(box->suffix(), "suffix");
        QCOMPARE(box->value(), 1.0);
    }
}

void TestAVeldoranVariableDelegateEditing::theFiltersAreThoseOfTheDevice()
{
    QWidget parent;
    AVeldoranVariableDelegate delegate;
    const VariableTable table("VideoFilter", 9);
    const auto *list = makeEditor<QComboBox>(delegate, &parent, table.valueCell());
    QCOMPARE(entries(list), (QStringList{"Full", "3 MHz", "1 MHz", "300 kHz", "100 kHz", "30 kHz", "10 kHz", "3 kHz",
                                         "1 kHz", "120 kHz", "9 kHz", "200 Hz", "5 MHz", "200 kHz", "1500 kHz"}));
    QCOMPARE(list->currentText(), QString("120 kHz"));
    for (int row = 0; row < list->count(); ++row) {
        QCOMPARE(list->itemData(row), QVariant(row));
        QCOMPARE(list->itemData(row).type(), QVariant::Int);
    }
    delegate.setOptions(LowFrequencyAnalyser, true, true);
    list = makeEditor<QComboBox>(delegate, &parent, table.valueCell());
    QCOMPARE(entries(list), (QStringList{"10 MHz", "3 MHz", "1 MHz", "300 kHz", "100 kHz", "30 kHz", "10 kHz", "3 kHz",
                                         "1 kHz", "300 Hz", "100 Hz", "30 Hz", "10 Hz", "3 Hz", "1 Hz", "0.3 Hz"}));
    QCOMPARE(list->currentText(), QString("300 Hz"));
}

void TestAVeldoranVariableDelegateEditing::theLabelsOfAnEnumerationAreInKeyOrder()
{
    QWidget parent;
    const AVeldoranVariableDelegate delegate;
    const VariableTable table("Attenuator", 10);
    const auto *list = makeEditor<QComboBox>(delegate, &parent, table.valueCell());
    QCOMPARE(entries(list), (QStringList{"Auto", "0 dB", "10 dB", "20 dB", "30 dB", "40 dB", "50 dB"}));
    for (int row = 0; row < list->count(); ++row) {
        QCOMPARE(list->itemData(row), QVariant(10.0F * float(row - 1) + (row == 0 ? 9.0F : 0.0F)));
        QCOMPARE(QMetaType::Type(list->itemData(row).type()), QMetaType::Float);
    }
}

void TestAVeldoranVariableDelegateEditing::aListSelectsTheCellsValue_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("index");
    QTest::newRow("row") << "VideoFilter" << QVariant(10) << 10;
    QTest::newRow("row as a double") << "VideoFilter" << QVariant(10.0) << 10;
    QTest::newRow("row as a text") << "VideoFilter" << QVariant("10") << 10;
    QTest::newRow("unspecified row") << "VideoFilter" << QVariant(-1) << -1;
    QTest::newRow("row beyond") << "VideoFilter" << QVariant(15) << -1;
    QTest::newRow("between rows") << "VideoFilter" << QVariant(1.5) << -1;
    QTest::newRow("no row") << "VideoFilter" << QVariant("x") << 0;
    QTest::newRow("no value") << "VideoFilter" << QVariant() << 0;
    QTest::newRow("key") << "Attenuator" << QVariant(-1) << 0;
    QTest::newRow("key as a text") << "Attenuator" << QVariant("50") << 6;
    QTest::newRow("key as a decimal text") << "Attenuator" << QVariant("10.0") << 2; // painted as "0 dB"
    QTest::newRow("unknown key") << "Attenuator" << QVariant(11) << -1;
    QTest::newRow("not a number") << "Attenuator" << QVariant(std::numeric_limits<double>::quiet_NaN()) << -1;
}

void TestAVeldoranVariableDelegateEditing::aListSelectsTheCellsValue()
{
    QFETCH(QString, name);
    QFETCH(QVariant, value);
    QFETCH(int, index);
    QWidget parent;
    const AVeldoranVariableDelegate delegate;
    VariableTable table(name, value);
    auto *list = makeEditor<QComboBox>(delegate, &parent, table.valueCell());
    QCOMPARE(list->currentIndex(), index);
    QSignalSpy changes(&table, &QAbstractItemModel::dataChanged);
    delegate.setModelData(list, &table, table.valueCell());
    if (index < 0)
        QCOMPARE(changes.count(), 0); // what can't be shown is not overwritten
    else
        QCOMPARE(table.value(), list->itemData(index));
}

void TestAVeldoranVariableDelegateEditing::aListCommitsTheDataOfItsEntry()
{
    QWidget parent;
    const AVeldoranVariableDelegate delegate;
    VariableTable filters("VideoFilter", 3);
    auto *list = makeEditor<QComboBox>(delegate, &parent, filters.valueCell());
    list->setCurrentIndex(14);
    delegate.setModelData(list, &filters, filters.valueCell());
    QCOMPARE(filters.value(), QVariant(14));
    QCOMPARE(filters.value().type(), QVariant::Int);

    VariableTable keys("Attenuator", 77);
    list = makeEditor<QComboBox>(delegate, &parent, keys.valueCell());
    list->setCurrentIndex(1);
    delegate.setModelData(list, &keys, keys.valueCell());
    QCOMPARE(keys.value(), QVariant(0.0F));
    QCOMPARE(QMetaType::Type(keys.value().type()), QMetaType::Float);
}

void TestAVeldoranVariableDelegateEditing::aSwitchTakesAndGivesNumbers()
{
    QWidget parent;
    const AVeldoranVariableDelegate delegate;
    const QVector<QPair<QVariant, bool>> states = {{1.0, true}, {0.25, true}, {"2", true},   {true, true},
                                                   {0, false},  {-1, false},  {"x", false},  {"0.0", false},
                                                   {"", false}, {{}, false},  {false, false}};
    for (const auto &[value, state] : states) {
        VariableTable table("Squelch", value);
        auto *box = makeEditor<QCheckBox>(delegate, &parent, table.valueCell());
        QCOMPARE(box->isChecked(), state);
        QCOMPARE(box->text(), QString());
        delegate.setModelData(box, &table, table.valueCell());
        QCOMPARE(table.value(), QVariant(state ? 1.0 : 0.0));
        QCOMPARE(table.value().type(), QVariant::Double);
    }
}

void TestAVeldoranVariableDelegateEditing::aSpinBoxTakesAndGivesNumbers()
{
    QWidget parent;
    const AVeldoranVariableDelegate delegate;
    VariableTable table("CenterFrequency", "433.92");
    auto *box = makeEditor<QDoubleSpinBox>(delegate, &parent, table.valueCell());
    QCOMPARE(box->text(), QString("433.920 MHz"));
    delegate.setModelData(box, &table, table.valueCell());
    QCOMPARE(table.value(), QVariant(433.92));
    QCOMPARE(table.value().type(), QVariant::Double);

    table.setData(table.valueCell(), 40000);
    delegate.setEditorData(box, table.valueCell());
    QCOMPARE(box->value(), 30000.0);
    table.setData(table.valueCell(), std::numeric_limits<double>::quiet_NaN());
    delegate.setEditorData(box, table.valueCell());
    QCOMPARE(box->value(), 30000.0);
    table.setData(table.valueCell(), QVariant());
    delegate.setEditorData(box, table.valueCell());
    QCOMPARE(box->value(), 0.0);

    box->setKeyboardTracking(false);
    editorkeys::type(box, "7.5");
    delegate.setModelData(box, &table, table.valueCell());
    QCOMPARE(table.value(), QVariant(7.5)); // though it was still being typed
}

void TestAVeldoranVariableDelegateEditing::cellsWithoutAVariableHaveALineEdit_data()
{
    QTest::addColumn<QVariant>("name");
    QTest::addColumn<int>("column");
    QTest::newRow("unknown variable") << QVariant("Nonsense") << 1;
    QTest::newRow("no variable") << QVariant() << 1;
    QTest::newRow("another column") << QVariant("Span") << 2;
}

void TestAVeldoranVariableDelegateEditing::cellsWithoutAVariableHaveALineEdit()
{
    QFETCH(QVariant, name);
    QFETCH(int, column);
    QWidget parent;
    const AVeldoranVariableDelegate delegate;
    VariableTable table(name);
    const QModelIndex index = table.index(0, column);
    table.setData(index, "before");
    auto *edit = makeEditor<QLineEdit>(delegate, &parent, index);
    QVERIFY(edit);
    QCOMPARE(edit->text(), QString("before"));
    edit->setText("after");
    delegate.setModelData(edit, &table, index);
    QCOMPARE(index.data(), QVariant("after"));
}

void TestAVeldoranVariableDelegateEditing::editorsOfAnotherKindAreServedByTheBaseClass()
{
    const AVeldoranVariableDelegate delegate;
    for (const char *name : {"Span", "VideoFilter", "Attenuator", "Squelch"}) {
        VariableTable table(name, 7);
        QLineEdit editor;
        delegate.setEditorData(&editor, table.valueCell());
        QCOMPARE(editor.text(), QString("7"));
        editor.setText("8");
        delegate.setModelData(&editor, &table, table.valueCell());
        QCOMPARE(table.value(), QVariant("8"));
        delegate.setEditorData(&editor, table.nameCell());
        QCOMPARE(editor.text(), QString(name));
        editor.setText("Volume");
        delegate.setModelData(&editor, &table, table.nameCell());
        QCOMPARE(table.name(), QVariant("Volume"));
    }
}

void TestAVeldoranVariableDelegateEditing::indexesOfNoModelAndOfOthersDoNoHarm()
{
    QWidget parent;
    AVeldoranVariableDelegate delegate;
    VariableTable table("Span", 7);
    VariableTable other("VideoFilter", 3);
    for (const QModelIndex &index : {QModelIndex(), table.index(5, 1), table.index(0, 9)}) {
        QVERIFY(makeEditor<QLineEdit>(delegate, &parent, index));
        QComboBox box;
        box.addItem("x", 1);
        delegate.setEditorData(&box, index);
        delegate.setModelData(&box, &table, index);
    }
    auto *list = makeEditor<QComboBox>(delegate, &parent, other.valueCell());
    list->setCurrentIndex(5);
    delegate.setModelData(list, &table, other.valueCell()); // which the model refuses
    QCOMPARE(table.name(), QVariant("Span"));
    QCOMPARE(table.value(), QVariant(7));
    QCOMPARE(other.value(), QVariant(3));
    delegate.setColumns(-1, -1);
    QVERIFY(makeEditor<QWidget>(delegate, &parent, QModelIndex()));
}

void TestAVeldoranVariableDelegateEditing::theVariableMayChangeBelowAnOpenEditor_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QVariant>("committed");
    const QStringList names = {"Span", "VideoFilter", "Attenuator", "Squelch", "Nonsense", "", "SweepTime"};
    const QStringList lists = {"VideoFilter", "Attenuator"};
    // What each editor of a 1 commits as that of a kind of variable that it suits, and of one that it doesn't.
    const QMap<QString, QPair<QVariant, QVariant>> committed = {
        {"Span", {1.0, 1.0}},     {"VideoFilter", {1, "3 MHz"}}, // its text: the editor of a list should not stay open
        {"Attenuator", {1, 1}},                                  // which has no such key, so that nothing is selected
        {"Squelch", {1.0, true}}, {"Nonsense", {"1", "1"}},
    };
    for (const QString &before : names) {
        for (const QString &after : names) {
            const bool suits = before == after || (lists.contains(before) && lists.contains(after));
            const auto values = committed.value(before == "SweepTime" ? "Span"
                                                : before.isEmpty()    ? "Nonsense"
                                                                      : before);
            QTest::addRow("%s, %s", qPrintable(before), qPrintable(after))
                << before << after << (suits ? values.first : values.second);
        }
    }
}

void TestAVeldoranVariableDelegateEditing::theVariableMayChangeBelowAnOpenEditor()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(QVariant, committed);
    QWidget parent;
    const AVeldoranVariableDelegate delegate;
    VariableTable table(before, 1);
    auto *editor = makeEditor<QWidget>(delegate, &parent, table.valueCell());
    table.setData(table.nameCell(), after);
    delegate.setEditorData(editor, table.valueCell());
    delegate.setModelData(editor, &table, table.valueCell());
    QCOMPARE(table.name(), QVariant(after));
    QCOMPARE(table.value(), committed);
    QCOMPARE(table.value().type(), committed.type());
}

void TestAVeldoranVariableDelegateEditing::anEditIsOneChange()
{
    QWidget parent;
    const AVeldoranVariableDelegate delegate;
    for (const char *name : {"Span", "VideoFilter", "Attenuator", "Squelch"}) {
        VariableTable table(name, 0);
        auto *editor = makeEditor<QWidget>(delegate, &parent, table.valueCell());
        QSignalSpy changes(&table, &QAbstractItemModel::dataChanged);
        if (auto *list = qobject_cast<QComboBox *>(editor))
            list->setCurrentIndex(2);
        else if (auto *box = qobject_cast<QCheckBox *>(editor))
            box->setChecked(true);
        else
            qobject_cast<QDoubleSpinBox *>(editor)->setValue(5);
        QCOMPARE(changes.count(), 0);
        delegate.setModelData(editor, &table, table.valueCell());
        QCOMPARE(changes.count(), 1);
        QCOMPARE(changes.first().first().toModelIndex(), table.valueCell());
    }
}

QTEST_MAIN(TestAVeldoranVariableDelegateEditing)
#include "tst_aveldoranvariabledelegate_editing.moc"
