#include "recordingstyle.h"
#include "variabletable.h"

#include <core/devicevariables.h>

#include <QtTest/QtTest>

#include <cstring>

namespace {

device_variable_desc range{54, 1, "Range", device_variable_desc::Enumeration, "0:Low;1:High", "Range of the input"};

} // namespace

// In a program that knows variables of its own: its definition stands before that of the library.
const device_variable_desc *find_vardesc(const char *name)
{
    return name && std::strcmp(name, range.name) == 0 ? &range : nullptr;
}

class TestAVeldoranVariableDelegateDescriptions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_style = RecordingStyle::install(); }

    void aVariableOfTheProgramIsPainted();
    void aDescriptionMayChange();
    void aDescriptionMayLackItsKeys();

private:
    QString paintedLabel(const QVariant &value)
    {
        AVeldoranVariableDelegate delegate;
        const VariableTable table("Range", value);
        m_style->calls.clear();
        PaintedCell().paint(delegate, table.valueCell());
        return m_style->calls.value(0).element == "CC_ComboBox" ? m_style->calls.at(0).text : QString("no combo box");
    }

    RecordingStyle *m_style = nullptr;
};

void TestAVeldoranVariableDelegateDescriptions::aVariableOfTheProgramIsPainted()
{
    QCOMPARE(paintedLabel(0), QString("Low"));
    QCOMPARE(paintedLabel(1), QString("High"));
    QCOMPARE(paintedLabel(2), QString());
}

void TestAVeldoranVariableDelegateDescriptions::aDescriptionMayChange()
{
    QCOMPARE(paintedLabel(1), QString("High"));
    range.enumeration = "1:Wide;2:Narrow";
    QCOMPARE(paintedLabel(1), QString("Wide"));
    QCOMPARE(paintedLabel(2), QString("Narrow"));
}

void TestAVeldoranVariableDelegateDescriptions::aDescriptionMayLackItsKeys()
{
    range.enumeration = nullptr;
    QCOMPARE(paintedLabel(1), QString());
}

QTEST_MAIN(TestAVeldoranVariableDelegateDescriptions)
#include "tst_aveldoranvariabledelegate_descriptions.moc"
