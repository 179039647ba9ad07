#include <views/abooleanitemdelegate.h>
#include <views/acheckboxitemdelegate.h>
#include <views/acomboboxdelegate.h>
#include <views/adoublespinboxdelegate.h>
#include <views/afrequencydelegate.h>
#include <views/aremoveselectiondelegate.h>
#include <views/aveldoranvariabledelegate.h>

#include <QtGui/QPainter>
#include <QtGui/QStandardItemModel>
#include <QtWidgets/QApplication>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleFactory>

#include <benchmark/benchmark.h>

#include <functional>
#include <memory>

// Painting a viewport of 50 rows and 11 columns with each delegate. Each benchmark stands beside the peers that it is
// measured against: QStyledItemDelegate with the same texts, and the bare calls of the style that draw the same
// controls with the same texts. docs/performance.md states the limits.

namespace {

constexpr int kRows = 50;
constexpr int kColumns = 11;
constexpr int kCellWidth = 120;
constexpr int kCellHeight = 24;

// Draws every cell of a table, each in its place of one picture.
template<typename Draw>
void paintViewport(benchmark::State &state, Draw draw)
{
    QImage image(kColumns * kCellWidth, kRows * kCellHeight, QImage::Format_ARGB32_Premultiplied);
    QStyleOptionViewItem option;
    option.state = QStyle::State_Enabled | QStyle::State_Active;
    for (auto _ : state) {
        image.fill(Qt::white);
        QPainter painter(&image);
        for (int row = 0; row < kRows; ++row) {
            for (int column = 0; column < kColumns; ++column) {
                option.rect = QRect(column * kCellWidth, row * kCellHeight, kCellWidth, kCellHeight);
                draw(&painter, option, row * kColumns + column);
            }
        }
    }
    state.SetItemsProcessed(state.iterations() * kRows * kColumns);
}

using Value = std::function<QVariant(int number)>; // of the cell with that number

void paintCells(benchmark::State &state, const QAbstractItemDelegate &delegate, const Value &value)
{
    QStandardItemModel model(kRows, kColumns);
    for (int row = 0; row < kRows; ++row) {
        for (int column = 0; column < kColumns; ++column)
            model.setData(model.index(row, column), value(row * kColumns + column));
    }
    paintViewport(state, [&](QPainter *painter, const QStyleOptionViewItem &option, int i) {
        delegate.paint(painter, option, model.index(i / kColumns, i % kColumns));
    });
}

// --- what the cells say, by their number ---

using Text = QString (*)(int number);

QString plainText(int number)
{
    return QStringLiteral("text %1").arg(number);
}

QString yesNoText(int number)
{
    return number % 3 == 0 ? QStringLiteral("Yes") : QStringLiteral("No");
}

QString onOffText(int number)
{
    return number % 3 == 0 ? QStringLiteral("On") : QStringLiteral("Off");
}

QString frequencyText(int number)
{
    return QStringLiteral("%1.920000 MHz").arg(400 + number);
}

QString filterText(int number)
{
    static const QStringList kLabels = {
        QStringLiteral("Full"),    QStringLiteral("3 MHz"),   QStringLiteral("1 MHz"),   QStringLiteral("300 kHz"),
        QStringLiteral("100 kHz"), QStringLiteral("30 kHz"),  QStringLiteral("10 kHz"),  QStringLiteral("3 kHz"),
        QStringLiteral("1 kHz"),   QStringLiteral("120 kHz"), QStringLiteral("9 kHz"),   QStringLiteral("200 Hz"),
        QStringLiteral("5 MHz"),   QStringLiteral("200 kHz"), QStringLiteral("1500 kHz")};
    return kLabels.at(number % kLabels.size());
}

QString keyText(int number)
{
    return QStringLiteral("%1 dB").arg(number % 6 * 10);
}

QString numberText(int number)
{
    return QString::number(number);
}

QString megahertzText(int number)
{
    return QStringLiteral("%1 MHz").arg(number);
}

QVariant truth(int number)
{
    return number % 3 == 0;
}

QVariant megahertz(int number)
{
    return 400.92 + number;
}

// --- the peers ---

void plainCells(benchmark::State &state, Text text)
{
    paintCells(state, QStyledItemDelegate(), text);
}

// The bare style, as little as an application can do to have a control drawn.
template<typename Draw>
void bareControls(benchmark::State &state, Text text, Draw draw)
{
    QStringList texts;
    for (int i = 0; i < kRows * kColumns; ++i)
        texts << text(i);
    paintViewport(state, [&](QPainter *painter, const QStyleOptionViewItem &option, int i) {
        draw(painter, option, texts.at(i), i);
    });
}

void bareCheckBoxes(benchmark::State &state, Text text)
{
    bareControls(state, text, [](QPainter *painter, const QStyleOptionViewItem &option, const QString &label, int i) {
        QStyleOptionButton box;
        box.rect = option.rect;
        box.state = QStyle::State_Enabled | (truth(i).toBool() ? QStyle::State_On : QStyle::State_Off);
        box.text = label;
        QApplication::style()->drawControl(QStyle::CE_CheckBox, &box, painter);
    });
}

void bareSpinBoxes(benchmark::State &state, Text text)
{
    bareControls(state, text, [](QPainter *painter, const QStyleOptionViewItem &option, const QString &label, int) {
        QStyleOptionSpinBox box;
        box.rect = option.rect;
        box.state = option.state | QStyle::State_ReadOnly;
        box.frame = true;
        QApplication::style()->drawComplexControl(QStyle::CC_SpinBox, &box, painter);
        QApplication::style()->drawItemText(painter, option.rect, Qt::AlignCenter, QPalette(), true, label);
    });
}

void bareComboBoxes(benchmark::State &state, Text text)
{
    bareControls(state, text, [](QPainter *painter, const QStyleOptionViewItem &option, const QString &label, int) {
        QStyleOptionComboBox box;
        box.rect = option.rect;
        box.state = option.state | QStyle::State_ReadOnly;
        box.currentText = label;
        QApplication::style()->drawComplexControl(QStyle::CC_ComboBox, &box, painter);
        QApplication::style()->drawControl(QStyle::CE_ComboBoxLabel, &box, painter);
    });
}

// --- the delegates ---

void megahertzPeer(benchmark::State &state)
{
    paintCells(state, QStyledItemDelegate(), megahertz);
}

void megahertzCells(benchmark::State &state)
{
    paintCells(state, ADoubleSpinBoxDelegate(), megahertz);
}

void choiceCells(benchmark::State &state)
{
    paintCells(state, AComboBoxDelegate(nullptr, 0, nullptr), plainText);
}

void unselectedCells(benchmark::State &state)
{
    paintCells(state, ARemoveSelectionDelegate(true), plainText);
}

void booleanCells(benchmark::State &state)
{
    paintCells(state, ABooleanItemDelegate(QStringLiteral("Yes"), QStringLiteral("No")), truth);
}

void checkBoxCells(benchmark::State &state)
{
    paintCells(state, ACheckBoxItemDelegate(), truth);
}

void frequencyCells(benchmark::State &state)
{
    paintCells(state, AFrequencyDelegate(), frequencyText);
}

// As many value cells, all of one variable.
void variableCells(benchmark::State &state, const QVariant &name, const Value &value)
{
    const AVeldoranVariableDelegate delegate;
    QStandardItemModel model(kRows * kColumns, 2);
    for (int i = 0; i < model.rowCount(); ++i) {
        model.setData(model.index(i, 0), name);
        model.setData(model.index(i, 1), value(i));
    }
    paintViewport(state, [&](QPainter *painter, const QStyleOptionViewItem &option, int i) {
        delegate.paint(painter, option, model.index(i, 1));
    });
}

void variableFilters(benchmark::State &state)
{
    variableCells(state, "VideoFilter", [](int i) { return i % 15; });
}

void variableKeys(benchmark::State &state)
{
    variableCells(state, "Attenuator", [](int i) { return i % 6 * 10; });
}

void variableSwitches(benchmark::State &state)
{
    variableCells(state, "NoiseFloorCorrection", truth);
}

void variableFrequencies(benchmark::State &state)
{
    variableCells(state, "StartFrequency", [](int i) { return i; });
}

void variableNumbers(benchmark::State &state)
{
    variableCells(state, "LevelOffset", [](int i) { return i; }); // the last of the table
}

void variableNumbersById(benchmark::State &state)
{
    variableCells(state, 53, [](int i) { return i; });
}

BENCHMARK(megahertzCells)->Unit(benchmark::kMicrosecond);
BENCHMARK(megahertzPeer)->Unit(benchmark::kMicrosecond);
BENCHMARK(choiceCells)->Unit(benchmark::kMicrosecond);
BENCHMARK(unselectedCells)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(plainCells, text, plainText)->Unit(benchmark::kMicrosecond);
BENCHMARK(booleanCells)->Unit(benchmark::kMicrosecond);
BENCHMARK(checkBoxCells)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(plainCells, yesNo, yesNoText)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(bareCheckBoxes, yesNo, yesNoText)->Unit(benchmark::kMicrosecond);
BENCHMARK(frequencyCells)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(plainCells, frequency, frequencyText)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(bareSpinBoxes, frequency, frequencyText)->Unit(benchmark::kMicrosecond);
BENCHMARK(variableFilters)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(plainCells, filter, filterText)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(bareComboBoxes, filter, filterText)->Unit(benchmark::kMicrosecond);
BENCHMARK(variableKeys)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(plainCells, key, keyText)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(bareComboBoxes, key, keyText)->Unit(benchmark::kMicrosecond);
BENCHMARK(variableSwitches)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(plainCells, onOff, onOffText)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(bareCheckBoxes, onOff, onOffText)->Unit(benchmark::kMicrosecond);
BENCHMARK(variableFrequencies)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(plainCells, megahertz, megahertzText)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(bareSpinBoxes, megahertz, megahertzText)->Unit(benchmark::kMicrosecond);
BENCHMARK(variableNumbers)->Unit(benchmark::kMicrosecond);
BENCHMARK(variableNumbersById)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(plainCells, number, numberText)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(bareSpinBoxes, number, numberText)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    benchmark::Initialize(&argc, argv);
    const QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("fusion")));
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
