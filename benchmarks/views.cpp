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
                draw(&painter, option, row, column);
            }
        }
    }
    state.SetItemsProcessed(state.iterations() * kRows * kColumns);
}

using Value = std::function<QVariant(int row, int column)>;

void paintCells(benchmark::State &state, const QAbstractItemDelegate &delegate, const Value &value)
{
    QStandardItemModel model(kRows, kColumns);
    for (int row = 0; row < kRows; ++row) {
        for (int column = 0; column < kColumns; ++column)
            model.setData(model.index(row, column), value(row, column));
    }
    paintViewport(state, [&](QPainter *painter, const QStyleOptionViewItem &option, int row, int column) {
        delegate.paint(painter, option, model.index(row, column));
    });
}

int number(int row, int column)
{
    return row * kColumns + column;
}

QVariant plainText(int row, int column)
{
    return QStringLiteral("text %1").arg(number(row, column));
}

QVariant yesNo(int row, int column)
{
    return number(row, column) % 3 == 0 ? QStringLiteral("Yes") : QStringLiteral("No");
}

QVariant truth(int row, int column)
{
    return number(row, column) % 3 == 0;
}

QString frequencyText(int row, int column)
{
    return QStringLiteral("%1.920000 MHz").arg(400 + number(row, column));
}

// --- the generic delegates ---

void plainTexts(benchmark::State &state)
{
    paintCells(state, QStyledItemDelegate(), plainText);
}

void megahertzCells(benchmark::State &state)
{
    paintCells(state, ADoubleSpinBoxDelegate(), plainText);
}

void choiceCells(benchmark::State &state)
{
    paintCells(state, AComboBoxDelegate(nullptr, 0, nullptr), plainText);
}

void unselectedCells(benchmark::State &state)
{
    paintCells(state, ARemoveSelectionDelegate(true), plainText);
}

void yesNoTexts(benchmark::State &state)
{
    paintCells(state, QStyledItemDelegate(), yesNo);
}

void booleanCells(benchmark::State &state)
{
    paintCells(state, ABooleanItemDelegate(QStringLiteral("Yes"), QStringLiteral("No")), truth);
}

void checkBoxCells(benchmark::State &state)
{
    paintCells(state, ACheckBoxItemDelegate(), truth);
}

// The bare style, as little as an application can do to have a check box drawn.
void bareCheckBoxes(benchmark::State &state)
{
    paintViewport(state, [](QPainter *painter, const QStyleOptionViewItem &option, int row, int column) {
        QStyleOptionButton box;
        box.rect = option.rect;
        box.state = QStyle::State_Enabled | (truth(row, column).toBool() ? QStyle::State_On : QStyle::State_Off);
        box.text = yesNo(row, column).toString();
        QApplication::style()->drawControl(QStyle::CE_CheckBox, &box, painter);
    });
}

// --- frequencies ---

void frequencyTexts(benchmark::State &state)
{
    paintCells(state, QStyledItemDelegate(), frequencyText);
}

void frequencyCells(benchmark::State &state)
{
    paintCells(state, AFrequencyDelegate(), frequencyText);
}

void drawBareSpinBox(QPainter *painter, const QStyleOptionViewItem &option, const QString &text)
{
    QStyleOptionSpinBox box;
    box.rect = option.rect;
    box.state = option.state | QStyle::State_ReadOnly;
    box.frame = true;
    QApplication::style()->drawComplexControl(QStyle::CC_SpinBox, &box, painter);
    QApplication::style()->drawItemText(painter, option.rect, Qt::AlignCenter, QPalette(), true, text);
}

void bareSpinBoxes(benchmark::State &state)
{
    QStringList texts;
    for (int i = 0; i < kRows * kColumns; ++i)
        texts << frequencyText(0, i);
    paintViewport(state, [&texts](QPainter *painter, const QStyleOptionViewItem &option, int row, int column) {
        drawBareSpinBox(painter, option, texts.at(number(row, column)));
    });
}

// --- variables: as many value cells, all of one variable ---

void variableCells(benchmark::State &state, const QVariant &name, const Value &value)
{
    const AVeldoranVariableDelegate delegate;
    QStandardItemModel model(kRows * kColumns, 2);
    for (int i = 0; i < model.rowCount(); ++i) {
        model.setData(model.index(i, 0), name);
        model.setData(model.index(i, 1), value(0, i));
    }
    paintViewport(state, [&](QPainter *painter, const QStyleOptionViewItem &option, int row, int column) {
        delegate.paint(painter, option, model.index(number(row, column), 1));
    });
}

void variableFilters(benchmark::State &state)
{
    variableCells(state, "VideoFilter", [](int, int i) { return i % 15; });
}

void variableKeys(benchmark::State &state)
{
    variableCells(state, "Attenuator", [](int, int i) { return i % 6 * 10; });
}

void variableSwitches(benchmark::State &state)
{
    variableCells(state, "NoiseFloorCorrection", [](int, int i) { return i % 2; });
}

void variableNumbers(benchmark::State &state)
{
    variableCells(state, "LevelOffset", [](int, int i) { return i; }); // the last of the table
}

void variableFrequencies(benchmark::State &state)
{
    variableCells(state, "StartFrequency", [](int, int i) { return i; });
}

void variableNumbersById(benchmark::State &state)
{
    variableCells(state, 53, [](int, int i) { return i; });
}

void filterTexts(benchmark::State &state)
{
    paintCells(state, QStyledItemDelegate(),
               [](int row, int column) { return QStringLiteral("%1 kHz").arg(number(row, column) % 15); });
}

void bareComboBoxes(benchmark::State &state)
{
    paintViewport(state, [](QPainter *painter, const QStyleOptionViewItem &option, int row, int column) {
        QStyleOptionComboBox box;
        box.rect = option.rect;
        box.state = option.state | QStyle::State_ReadOnly;
        box.currentText = QStringLiteral("%1 kHz").arg(number(row, column) % 15);
        QApplication::style()->drawComplexControl(QStyle::CC_ComboBox, &box, painter);
        QApplication::style()->drawControl(QStyle::CE_ComboBoxLabel, &box, painter);
    });
}

void numberTexts(benchmark::State &state)
{
    paintCells(state, QStyledItemDelegate(), [](int row, int column) { return QString::number(number(row, column)); });
}

void bareNumberSpinBoxes(benchmark::State &state)
{
    paintViewport(state, [](QPainter *painter, const QStyleOptionViewItem &option, int row, int column) {
        drawBareSpinBox(painter, option, QString::number(number(row, column)));
    });
}

BENCHMARK(plainTexts)->Unit(benchmark::kMicrosecond);
BENCHMARK(megahertzCells)->Unit(benchmark::kMicrosecond);
BENCHMARK(choiceCells)->Unit(benchmark::kMicrosecond);
BENCHMARK(unselectedCells)->Unit(benchmark::kMicrosecond);
BENCHMARK(yesNoTexts)->Unit(benchmark::kMicrosecond);
BENCHMARK(booleanCells)->Unit(benchmark::kMicrosecond);
BENCHMARK(checkBoxCells)->Unit(benchmark::kMicrosecond);
BENCHMARK(bareCheckBoxes)->Unit(benchmark::kMicrosecond);
BENCHMARK(frequencyTexts)->Unit(benchmark::kMicrosecond);
BENCHMARK(frequencyCells)->Unit(benchmark::kMicrosecond);
BENCHMARK(bareSpinBoxes)->Unit(benchmark::kMicrosecond);
BENCHMARK(filterTexts)->Unit(benchmark::kMicrosecond);
BENCHMARK(variableFilters)->Unit(benchmark::kMicrosecond);
BENCHMARK(variableKeys)->Unit(benchmark::kMicrosecond);
BENCHMARK(bareComboBoxes)->Unit(benchmark::kMicrosecond);
BENCHMARK(variableSwitches)->Unit(benchmark::kMicrosecond);
BENCHMARK(numberTexts)->Unit(benchmark::kMicrosecond);
BENCHMARK(variableNumbers)->Unit(benchmark::kMicrosecond);
BENCHMARK(variableNumbersById)->Unit(benchmark::kMicrosecond);
BENCHMARK(variableFrequencies)->Unit(benchmark::kMicrosecond);
BENCHMARK(bareNumberSpinBoxes)->Unit(benchmark::kMicrosecond);

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
