#include "views/afrequencydelegate.h"

#include "delegatecell.h"
#include "editorkeys.h"
#include "recordingstyle.h"

#include <QtGui/QRegExpValidator>

#include <limits>

class TestAFrequencyDelegate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

    void theEditorIsALineEditWithAValidator();
    void theEditorShowsThreeDecimals_data();
    void theEditorShowsThreeDecimals();
    void thePatternDecidesWhatIsAccepted_data();
    void thePatternDecidesWhatIsAccepted();
    void whatTheEditorShowsIsAccepted_data();
    void whatTheEditorShowsIsAccepted();
    void theTextIsStoredAsTyped_data();
    void theTextIsStoredAsTyped();
    void theCellIsPaintedAsASpinBoxWithSixDecimals_data();
    void theCellIsPaintedAsASpinBoxWithSixDecimals();
    void thePaintedNumberIsInTheFormOfTheLocale();
    void thePaintedTextIsInThePensColour();
    void everyColumnIsPaintedSo();
    void anInvalidIndexIsZero();
    void otherEditorsAreServedByTheBaseClass();
};

namespace {

QLineEdit *makeEditor(const AFrequencyDelegate &delegate, QWidget *parent, const QModelIndex &index)
{
    return qobject_cast<QLineEdit *>(delegate.createEditor(parent, {}, index));
}

} // namespace

void TestAFrequencyDelegate::theEditorIsALineEditWithAValidator()
{
    QWidget parent;
    AFrequencyDelegate delegate(&parent);
    QCOMPARE(delegate.parent(), &parent);
    const Cell cell("2.4 GHz");
    for (const bool allowNegative : {false, true}) {
        delegate.setOptions(AFrequency::GHz, allowNegative);
        const QLineEdit *edit = makeEditor(delegate, &parent, cell.index());
        QVERIFY(edit);
        QCOMPARE(edit->parentWidget(), &parent);
        QCOMPARE(edit->focusPolicy(), Qt::StrongFocus);
        QCOMPARE(edit->text(), QString("2400.000 MHz")); // already now
        const auto *validator = qobject_cast<const QRegExpValidator *>(edit->validator());
        QVERIFY(validator);
        QCOMPARE(validator->parent(), edit);
        QCOMPARE(validator->regExp().pattern(),
                 QString(allowNegative ? "-?" : "") + "[0-9]+([.,][0-9]+)?( (Hz|kHz|MHz|GHz))?");
        QCOMPARE(validator->regExp().caseSensitivity(), Qt::CaseSensitive);
        QCOMPARE(validator->regExp().patternSyntax(), QRegExp::RegExp);
    }
}

void TestAFrequencyDelegate::theEditorShowsThreeDecimals_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("gigahertz") << QVariant("2.4 GHz") << "2400.000 MHz";
    QTest::newRow("kilohertz") << QVariant("9 kHz") << "9.000 kHz";
    QTest::newRow("hertz") << QVariant("50") << "50.000 Hz";
    QTest::newRow("comma") << QVariant("1,5 MHz") << "1.500 MHz";
    QTest::newRow("more decimals") << QVariant("1.23456 MHz") << "1.235 MHz";
    QTest::newRow("bytes") << QVariant(QByteArray("100 MHz")) << "100.000 MHz";
    QTest::newRow("whole number") << QVariant(1000000) << "1.000 MHz";
    QTest::newRow("number") << QVariant(1e6) << "1.000 MHz";
    QTest::newRow("negative") << QVariant("-1 MHz") << "-1.000 MHz";
    QTest::newRow("no frequency") << QVariant("x") << "0.000 Hz";
    QTest::newRow("zero byte") << QVariant(QString("5 MHz").append(QChar(0)).append("x")) << "5.000 MHz";
    QTest::newRow("no Latin letters") << QVariant(QString::fromUtf8("5 \xce\xbcHz")) << "0.000 Hz";
    QTest::newRow("nothing") << QVariant() << "0.000 Hz";
}

void TestAFrequencyDelegate::theEditorShowsThreeDecimals()
{
    QFETCH(QVariant, value);
    QWidget parent;
    const AFrequencyDelegate delegate;
    const Cell cell(value);
    QLineEdit *edit = makeEditor(delegate, &parent, cell.index());
    QTEST(edit->text(), "text");
    edit->clear();
    delegate.setEditorData(edit, cell.index());
    QTEST(edit->text(), "text");
}

void TestAFrequencyDelegate::thePatternDecidesWhatIsAccepted_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<bool>("acceptedNegative");
    const auto row = [](const char *text, bool accepted, bool acceptedNegative) {
        QTest::newRow(text) << QString::fromUtf8(text) << accepted << acceptedNegative;
    };
    for (const char *text : {"100", "0", "007", "1.5", "1,5", "1,5 MHz", "1.5 MHz", "1 Hz", "1 kHz", "1 GHz"})
        row(text, true, true);
    for (const char *text : {"-1 MHz", "-1", "-0,5 kHz"})
        row(text, false, true);
    for (const char *text : {"1.5MHz", "1 mhz", "1 MHZ", "1 khz", "1  MHz", "1 MHz ", " 1",  "1 ", "+1",  "--1",
                             "- 1",    ".5",    "5.",    "1.5.5", "1e6",    "1 THz",  "MHz", "",   "1 M", "1 MHzz"})
        row(text, false, false);
}

void TestAFrequencyDelegate::thePatternDecidesWhatIsAccepted()
{
    QFETCH(QString, text);
    QWidget parent;
    AFrequencyDelegate delegate;
    const Cell cell("1 MHz");
    QLineEdit *edit = makeEditor(delegate, &parent, cell.index());
    edit->setText(text);
    QTEST(edit->hasAcceptableInput(), "accepted");
    delegate.setOptions(AFrequency::MHz, true);
    edit = makeEditor(delegate, &parent, cell.index());
    edit->setText(text);
    QTEST(edit->hasAcceptableInput(), "acceptedNegative");
    delegate.setOptions(AFrequency::MHz, false);
    edit = makeEditor(delegate, &parent, cell.index());
    edit->setText(text);
    QTEST(edit->hasAcceptableInput(), "accepted");
}

void TestAFrequencyDelegate::whatTheEditorShowsIsAccepted_data()
{
    QTest::addColumn<QString>("value");
    for (const char *value : {"0", "1", "999", "1000", "1 MHz", "18 GHz", "9223372036854775807", "4503599627370497"})
        QTest::newRow(value) << value;
}

void TestAFrequencyDelegate::whatTheEditorShowsIsAccepted()
{
    QFETCH(QString, value);
    QWidget parent;
    const AFrequencyDelegate delegate;
    const Cell cell(value);
    const QLineEdit *edit = makeEditor(delegate, &parent, cell.index());
    QVERIFY2(edit->hasAcceptableInput(), qPrintable(edit->text()));
}

void TestAFrequencyDelegate::theTextIsStoredAsTyped_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text : {"100", "1,5 MHz", "1.5 MHz", "  7 kHz ", "0001", "", "no frequency", "-3"})
        QTest::newRow(text) << text;
}

// A bare number, too: deliberately, neither the default unit nor that of the cell is added.
void TestAFrequencyDelegate::theTextIsStoredAsTyped()
{
    QFETCH(QString, text);
    QWidget parent;
    AFrequencyDelegate delegate;
    for (const auto unit : {AFrequency::NoUnit, AFrequency::Hz, AFrequency::MHz, AFrequency::GHz}) {
        delegate.setOptions(unit, false);
        for (const char *present : {"2.4 GHz", "5", "x"}) {
            Cell cell(present);
            QLineEdit *edit = makeEditor(delegate, &parent, cell.index());
            edit->setText(text);
            delegate.setModelData(edit, &cell.model, cell.index());
            QCOMPARE(cell.value(), QVariant(text));
            QCOMPARE(cell.value().type(), QVariant::String);
        }
    }
}

void TestAFrequencyDelegate::theCellIsPaintedAsASpinBoxWithSixDecimals_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("gigahertz") << QVariant("2.4 GHz") << "2,400.000000 MHz";
    QTest::newRow("kilohertz") << QVariant("9 kHz") << "9.000000 kHz";
    QTest::newRow("hertz") << QVariant("50") << "50.000000 Hz";
    QTest::newRow("hertz exactly") << QVariant("433.920001 MHz") << "433.920001 MHz";
    QTest::newRow("negative") << QVariant("-1 MHz") << "-1.000000 MHz";
    QTest::newRow("no frequency") << QVariant("x") << "0.000000 Hz";
    QTest::newRow("nothing") << QVariant() << "0.000000 Hz";
}

void TestAFrequencyDelegate::theCellIsPaintedAsASpinBoxWithSixDecimals()
{
    QFETCH(QVariant, value);
    const DefaultLocale locale(QLocale(QLocale::English, QLocale::UnitedStates));
    RecordingStyle *style = RecordingStyle::install();
    const AFrequencyDelegate delegate;
    const Cell cell(value);
    PaintedCell painted;
    for (const QStyle::State state : {QStyle::State(QStyle::State_None), QStyle::State_Selected | QStyle::State_Active,
                                      QStyle::State_HasFocus | QStyle::State_MouseOver}) {
        style->calls.clear();
        painted.option.state = state;
        QVERIFY(painted.paint(delegate, cell.index()));
        style->compareToAReadOnlySpinBox(painted.option.rect, state);
        QCOMPARE(style->calls.at(0).palette, painted.option.palette);
        QTEST(style->calls.at(1).text, "text");
        QVERIFY(painted.isUntouchedOutside());
    }
}

void TestAFrequencyDelegate::thePaintedNumberIsInTheFormOfTheLocale()
{
    const DefaultLocale locale(QLocale(QLocale::German, QLocale::Germany));
    RecordingStyle *style = RecordingStyle::install();
    const AFrequencyDelegate delegate;
    const Cell cell("2.4 GHz");
    PaintedCell painted;
    QVERIFY(painted.paint(delegate, cell.index()));
    QCOMPARE(style->calls.at(1).text, QString("2.400,000000 MHz"));
    // The editor is in the form of no locale, so that what it shows is accepted.
    QWidget parent;
    QCOMPARE(makeEditor(delegate, &parent, cell.index())->text(), QString("2400.000 MHz"));
}

void TestAFrequencyDelegate::thePaintedTextIsInThePensColour()
{
    RecordingStyle::install();
    const AFrequencyDelegate delegate;
    const Cell cell("2.4 GHz");
    PaintedCell red;
    red.pen = QPen(Qt::red);
    PaintedCell white;
    white.pen = QPen(Qt::white);
    QVERIFY(red.paint(delegate, cell.index()) && white.paint(delegate, cell.index()));
    bool anyRed = false;
    for (int x = 0; x < red.image.width(); ++x) {
        for (int y = 0; y < red.image.height(); ++y)
            anyRed = anyRed || red.image.pixelColor(x, y) == QColor(Qt::red);
    }
    QVERIFY(anyRed);
    QVERIFY(red.image != white.image);
}

void TestAFrequencyDelegate::everyColumnIsPaintedSo()
{
    RecordingStyle *style = RecordingStyle::install();
    const AFrequencyDelegate delegate;
    QStandardItemModel model(2, 3);
    for (int row = 0; row < 2; ++row) {
        for (int column = 0; column < 3; ++column) {
            style->calls.clear();
            PaintedCell painted;
            QVERIFY(painted.paint(delegate, model.index(row, column)));
            QCOMPARE(style->elements(), (QStringList{"CC_SpinBox", "text"}));
        }
    }
}

void TestAFrequencyDelegate::anInvalidIndexIsZero()
{
    RecordingStyle *style = RecordingStyle::install();
    QWidget parent;
    const AFrequencyDelegate delegate;
    QCOMPARE(makeEditor(delegate, &parent, QModelIndex())->text(), QString("0.000 Hz"));
    PaintedCell painted;
    QVERIFY(painted.paint(delegate, QModelIndex()));
    QCOMPARE(style->calls.at(1).text, QString("0.000000 Hz"));
    QStandardItemModel model(1, 1);
    QLineEdit editor("5 MHz");
    delegate.setModelData(&editor, &model, QModelIndex());
    delegate.setModelData(&editor, &model, model.index(5, 5));
    QCOMPARE(model.index(0, 0).data(), QVariant());
}

void TestAFrequencyDelegate::otherEditorsAreServedByTheBaseClass()
{
    QDoubleSpinBox editor;
    compareForeignEditor(AFrequencyDelegate(), &editor, 7.0, 8.0);
}

QTEST_MAIN(TestAFrequencyDelegate)
#include "tst_afrequencydelegate.moc"
