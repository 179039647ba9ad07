#include "limitfiles.h"

#include "core/emu.h"

#include <QtCore/QTranslator>

using namespace limitfiles;

namespace {

// A limit row with all cells, and a section below it.
void addLimitWithSection(ALimitModel *model)
{
    QList<QStandardItem *> limit;
    for (int column = 0; column <= ALimitModel::ColumnInterpolation; ++column)
        limit << new QStandardItem(QStringLiteral("old"));
    QList<QStandardItem *> section;
    for (int column = 0; column <= ALimitModel::ColumnInterpolation; ++column)
        section << new QStandardItem(QStringLiteral("old"));
    limit.first()->appendRow(section);
    model->appendRow(limit);
}

} // namespace

class TestALimitModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFreshModelHasTitlesAndNoRow();
    void titlesAreTranslatable();
    void theUnitsAreAllUnitsInOrder();
    void columnsAndRolesHaveTheirNumbers();
    void theClassHasItsSignals();
    void frequenciesAreNormalised_data();
    void frequenciesAreNormalised();
    void onlyFrequencyColumnsAreNormalised_data();
    void onlyFrequencyColumnsAreNormalised();
    void otherRolesAreStoredAsTheyAre_data();
    void otherRolesAreStoredAsTheyAre();
    void piecesAreEditedLikeLimits();
    void theRoleDefaultsToEditing();
    void anEditSignalsOnce();
    void anInvalidIndexIsRefused();
    void rowsAreAddedAndRemovedAsInAnyModel();
};

void TestALimitModel::aFreshModelHasTitlesAndNoRow()
{
    QObject parent;
    const auto *model = new ALimitModel(&parent);
    QCOMPARE(model->parent(), &parent);
    QCOMPARE(model->rowCount(), 0);
    QCOMPARE(model->columnCount(), 11);
    QCOMPARE(headerTexts(*model),
             (QStringList{"Name", "Begin", "End", "Unit", "Description", "Color", "Begin Frequency", "End Frequency",
                          "Begin Value", "End Value", "Interpolation"}));
    QVERIFY((std::is_base_of<QStandardItemModel, ALimitModel>::value));
}

void TestALimitModel::titlesAreTranslatable()
{
    class Reverse : public QTranslator
    {
    public:
        bool isEmpty() const override { return false; }
        QString translate(const char *context, const char *text, const char *, int) const override
        {
            return qstrcmp(context, "ALimitModel") == 0 ? QStringLiteral("T:") + QLatin1String(text) : QString();
        }
    };
    Reverse translator;
    QCoreApplication::installTranslator(&translator);
    ALimitModel model;
    QStringList errors;
    connect(&model, &ALimitModel::loadError, this, [&](const QString &text) { errors << text; });
    connect(&model, &ALimitModel::saveError, this, [&](const QString &text) { errors << text; });
    const bool loaded = model.loadFromFile(QStringLiteral("/missing/file"));
    const bool saved = model.saveToFile(QStringLiteral("/proc/file"));
    QCoreApplication::removeTranslator(&translator);
    for (const QString &title : headerTexts(model))
        QVERIFY(title.startsWith(QLatin1String("T:")));
    QVERIFY(!loaded && !saved);
    QCOMPARE(errors.size(), 2);
    QCOMPARE(errors.first(), QStringLiteral("T:File '/missing/file' does not exist"));
    QVERIFY(errors.last().startsWith(QLatin1String("T:Could not open file '/proc/file': ")));
}

void TestALimitModel::theUnitsAreAllUnitsInOrder()
{
    const ALimitModel model;
    const QStringList labels = model.unitLabels();
    QCOMPARE(labels.size(), 18);
    for (int id = 0; id < labels.size(); ++id)
        QCOMPARE(labels.at(id), QString::fromUcs4(emu_find(id)->name));
    QCOMPARE(labels.at(0), QStringLiteral("dBm"));
    QCOMPARE(labels.at(8), QStringLiteral("dB\u00b5V/m"));
}

void TestALimitModel::columnsAndRolesHaveTheirNumbers()
{
    QCOMPARE(int(ALimitModel::ColumnName), 0);
    QCOMPARE(int(ALimitModel::ColumnUnit), 3);
    QCOMPARE(int(ALimitModel::ColumnBeginFrequency), 6);
    QCOMPARE(int(ALimitModel::ColumnInterpolation), 10);
    QCOMPARE(int(ALimitModel::HertzRole), 257);
}

void TestALimitModel::theClassHasItsSignals()
{
    const QMetaObject &meta = ALimitModel::staticMetaObject;
    for (const char *signature : {"loadError(QString)", "saveError(QString)"}) {
        const int index = meta.indexOfSignal(signature);
        QVERIFY(index >= 0);
        QCOMPARE(meta.method(index).parameterNames(), QList<QByteArray>{"msg"});
    }
}

void TestALimitModel::frequenciesAreNormalised_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const QVariant &value, const char *text) {
        QTest::newRow(name) << value << QString::fromLatin1(text);
    };
    row("text", QStringLiteral("100"), "    100.0000000");
    row("decimals", QStringLiteral("87.5"), "     87.5000000");
    row("own form", QStringLiteral("     87.5000000"), "     87.5000000");
    row("six digits", QStringLiteral("1234.57"), "   1234.5700000");
    row("exponent", QStringLiteral("1e+06"), "1000000.0000000");
    row("wide", QStringLiteral("12345678.5"), "12345678.5000000");
    row("number", 30.25, "     30.2500000");
    row("integer", 7, "      7.0000000");
    row("whole hertz", QStringLiteral("1.001"), "      1.0010000");
    row("tenth of a hertz", QStringLiteral("0.0083335"), "      0.0083335");
    row("negative", QStringLiteral("-2"), "     -2.0000000");
    row("a decimal comma", QStringLiteral("1,5"), "      0.0000000");
    row("a unit", QStringLiteral("100 MHz"), "      0.0000000");
    row("no number", QStringLiteral("x"), "      0.0000000");
    row("empty", QString(), "      0.0000000");
    row("nothing", QVariant(), "      0.0000000");
    row("not a number", qQNaN(), "      0.0000000");
}

void TestALimitModel::frequenciesAreNormalised()
{
    QFETCH(QVariant, value);
    QFETCH(QString, text);
    for (int column : {1, 2, 6, 7}) {
        for (int role : {int(Qt::DisplayRole), int(Qt::EditRole)}) {
            ALimitModel model;
            addLimitWithSection(&model);
            QVERIFY(model.setData(model.index(0, column), value, role));
            QCOMPARE(model.index(0, column).data(Qt::DisplayRole).toString(), text);
            QCOMPARE(model.index(0, column).data(Qt::EditRole).type(), QVariant::String);
        }
    }
}

void TestALimitModel::onlyFrequencyColumnsAreNormalised_data()
{
    QTest::addColumn<int>("column");
    for (int column : {0, 3, 4, 5, 8, 9, 10})
        QTest::addRow("%d", column) << column;
}

void TestALimitModel::onlyFrequencyColumnsAreNormalised()
{
    QFETCH(int, column);
    ALimitModel model;
    addLimitWithSection(&model);
    for (const QVariant &value : {QVariant(QStringLiteral("87.5")), QVariant(3u), QVariant(-1.5), QVariant()}) {
        for (int role : {int(Qt::DisplayRole), int(Qt::EditRole)}) {
            QVERIFY(model.setData(model.index(0, column), value, role));
            QCOMPARE(model.index(0, column).data(Qt::EditRole), value);
        }
    }
}

void TestALimitModel::otherRolesAreStoredAsTheyAre_data()
{
    QTest::addColumn<int>("role");
    QTest::newRow("tool tip") << int(Qt::ToolTipRole);
    QTest::newRow("user") << int(Qt::UserRole);
    QTest::newRow("hertz") << int(Qt::UserRole) + 1;
    QTest::newRow("decoration") << int(Qt::DecorationRole);
}

void TestALimitModel::otherRolesAreStoredAsTheyAre()
{
    QFETCH(int, role);
    ALimitModel model;
    addLimitWithSection(&model);
    for (int column : {1, 2, 6, 7}) {
        const QModelIndex cell = model.index(0, column);
        QVERIFY(model.setData(cell, QStringLiteral("87.5"), role));
        QCOMPARE(cell.data(role), QVariant(QStringLiteral("87.5")));
        QCOMPARE(cell.data(), QVariant(QStringLiteral("old")));
        QVERIFY(model.setData(cell, 5, Qt::EditRole));
        QCOMPARE(cell.data(role), QVariant(QStringLiteral("87.5"))); // an edit leaves it alone
    }
}

void TestALimitModel::piecesAreEditedLikeLimits()
{
    ALimitModel model;
    addLimitWithSection(&model);
    const QModelIndex limit = model.index(0, 0);
    for (int column = 0; column < model.columnCount(); ++column)
        QVERIFY(model.setData(model.index(0, column, limit), QStringLiteral("2"), Qt::EditRole));
    const QString frequency = QStringLiteral("      2.0000000");
    const QString same = QStringLiteral("2");
    QCOMPARE(rowTexts(model, 0, limit),
             (QStringList{same, frequency, frequency, same, same, same, frequency, frequency, same, same, same}));
}

void TestALimitModel::theRoleDefaultsToEditing()
{
    ALimitModel model;
    addLimitWithSection(&model);
    QVERIFY(model.setData(model.index(0, 1), 5));
    QCOMPARE(model.index(0, 1).data().toString(), QStringLiteral("      5.0000000"));
}

void TestALimitModel::anEditSignalsOnce()
{
    ALimitModel model;
    const QAbstractItemModelTester tester(&model);
    addLimitWithSection(&model);
    QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    QVERIFY(model.setData(model.index(0, 1), QStringLiteral("5"), Qt::EditRole));
    QCOMPARE(changes.count(), 1);
    QVERIFY(model.setData(model.index(0, 1), QStringLiteral("5.0"), Qt::EditRole)); // the same frequency
    QCOMPARE(changes.count(), 1);
}

void TestALimitModel::anInvalidIndexIsRefused()
{
    ALimitModel model;
    QVERIFY(!model.setData(QModelIndex(), 5, Qt::EditRole));
    QVERIFY(!model.setData(model.index(0, 1), 5, Qt::EditRole));
}

void TestALimitModel::rowsAreAddedAndRemovedAsInAnyModel()
{
    ALimitModel model;
    const QAbstractItemModelTester tester(&model);
    QVERIFY(model.insertRow(0));
    QVERIFY(model.setData(model.index(0, 0), QStringLiteral("Mask"), Qt::EditRole));
    QVERIFY(model.setData(model.index(0, 1), 5, Qt::EditRole));
    QCOMPARE(rowTexts(model, 0).mid(0, 3), (QStringList{"Mask", "      5.0000000", "-"}));
    addLimitWithSection(&model);
    QCOMPARE(model.rowCount(model.index(1, 0)), 1);
    model.appendRow(model.takeRow(0));
    QCOMPARE(model.index(1, 0).data().toString(), QStringLiteral("Mask"));
    QVERIFY(model.removeRow(0, model.index(0, 0)));
    QVERIFY(model.removeRows(0, 2));
    QCOMPARE(model.rowCount(), 0);
}

QTEST_MAIN(TestALimitModel)
#include "tst_alimitmodel.moc"
