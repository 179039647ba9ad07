#include "limitfiles.h"

#include "core/profilefiles.h"

using namespace limitfiles;

namespace {

// Items for the cells from a column on; a null string is no item.
QList<QStandardItem *> items(const QStringList &texts)
{
    QList<QStandardItem *> row;
    for (const QString &text : texts)
        row << (text.isNull() ? nullptr : new QStandardItem(text));
    return row;
}

QList<QStandardItem *> piece(const QStringList &texts)
{
    return items({QString(), QString(), QString(), QString(), QString(), QString()}) + items(texts);
}

constexpr char kBigName[] = "A name that makes a limit so long that a few of them don't fit into a kilobyte";

void addManyLimits(ALimitModel *model)
{
    for (int i = 0; i < 100; ++i)
        model->appendRow(items({QLatin1String(kBigName), QStringLiteral("1"), QStringLiteral("2")}));
}

} // namespace

class TestALimitModelSaving : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anEmptyModelIsAnEmptyDataElement();
    void attributesComeInTheirOrder();
    void cellsWithoutItemsAreWritten();
    void frequenciesAreWholeHertz_data();
    void frequenciesAreWholeHertz();
    void valuesHaveSixDigits();
    void numbersInCellsAreWrittenLikeTexts();
    void theBeginFrequencyMakesASection_data();
    void theBeginFrequencyMakesASection();
    void textIsEscaped();
    void charactersThatXmlCanNotHoldAreLeftOut();
    void missingDirectoriesAreMade();
    void anOldFileIsReplaced();
    void aFileThatCanNotBeOpenedIsReported_data();
    void aFileThatCanNotBeOpenedIsReported();
    void aFileWithoutPermissionIsReported();
    void aFileNameWithPercentSignsStaysWhole();
    void aFullDiskGoesUnnoticed();
    void aFullFileSystemGoesUnnoticed();
    void savingChangesNoCell();
};

void TestALimitModelSaving::anEmptyModelIsAnEmptyDataElement()
{
    LimitDir dir;
    QCOMPARE(dir.saved(), QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<data/>\n"));
    QVERIFY(dir.model.loadFromFile(dir.path("out.xml")));
    QCOMPARE(dir.model.rowCount(), 0);
    QCOMPARE(dir.saveErrors, QStringList());
}

void TestALimitModelSaving::attributesComeInTheirOrder()
{
    LimitDir dir;
    const QList<QStandardItem *> limit = items({"Mask", "87.5", "108", "8", "dropped", "#ff0000", "", ""});
    limit.first()->appendRow(piece({"88", "89", "1.5", "2", "2"}));
    limit.first()->appendRow(piece({QString(), "90", QString(), "3", "0"}));
    dir.model.appendRow(limit);
    QCOMPARE(dir.saved(),
             document("    <limit name=\"Mask\" begin=\"87500000\" end=\"108000000\" measureunit=\"8\""
                      " color=\"#ff0000\">\n"
                      "        <section beginFrequency=\"88000000\" endFrequency=\"89000000\" beginValue=\"1.5\""
                      " endValue=\"2\" interpolation=\"2\"/>\n"
                      "        <level frequency=\"90000000\" interpolation=\"0\">3</level>\n"
                      "    </limit>\n"));
}

void TestALimitModelSaving::cellsWithoutItemsAreWritten()
{
    LimitDir dir;
    QVERIFY(dir.model.insertRow(0));
    auto *limit = new QStandardItem;
    limit->appendRow(new QStandardItem(QStringLiteral("a piece with nothing but this")));
    dir.model.appendRow(limit);
    const QByteArray empty = "<limit name=\"\" begin=\"0\" end=\"0\" measureunit=\"\" color=\"\"";
    QCOMPARE(dir.saved(), document("    " + empty + "/>\n    " + empty +
                                   ">\n        <level frequency=\"0\" interpolation=\"0\">0</level>\n    </limit>\n"));
}

void TestALimitModelSaving::frequenciesAreWholeHertz_data()
{
    QTest::addColumn<QString>("cell");
    QTest::addColumn<QByteArray>("hertz");
    QTest::newRow("whole") << "100" << QByteArray("100000000");
    QTest::newRow("own form") << "     87.5000000" << QByteArray("87500000");
    QTest::newRow("1 Hz") << "0.000001" << QByteArray("1");
    QTest::newRow("seven decimals") << "0.0083335" << QByteArray("8333"); // the fraction of a hertz goes
    QTest::newRow("exponent") << "1e+06" << QByteArray("1000000000000");
    QTest::newRow("no number") << "x" << QByteArray("0");
    QTest::newRow("negative") << "-5" << QByteArray("-5000000");
    QTest::newRow("empty") << "" << QByteArray("0");
}

void TestALimitModelSaving::frequenciesAreWholeHertz()
{
    QFETCH(QString, cell);
    QFETCH(QByteArray, hertz);
    LimitDir dir;
    const QList<QStandardItem *> limit = items({"", cell, cell});
    limit.first()->appendRow(piece({"1", cell, "0", "0", "0"}));
    limit.first()->appendRow(piece({QString(), cell}));
    dir.model.appendRow(limit);
    const QByteArray content = dir.saved();
    for (const char *name : {" begin=\"", " end=\"", " endFrequency=\"", " frequency=\""})
        QVERIFY2(content.contains(name + hertz + "\""), content.constData());
}

void TestALimitModelSaving::valuesHaveSixDigits()
{
    LimitDir dir;
    const QList<QStandardItem *> limit = items({""});
    limit.first()->appendRow(piece({"1", "2", "-123.456789", "1234567.89", "-1"}));
    limit.first()->appendRow(piece({QString(), "2", QString(), "nonsense", "1.5"}));
    dir.model.appendRow(limit);
    const QByteArray content = dir.saved();
    QVERIFY2(content.contains("beginValue=\"-123.457\" endValue=\"1.23457e+06\" interpolation=\"0\"/>"), content);
    QVERIFY2(content.contains("<level frequency=\"2000000\" interpolation=\"0\">0</level>"), content);
}

// As delegates leave them: a spin box a double, a combo box an unsigned number.
void TestALimitModelSaving::numbersInCellsAreWrittenLikeTexts()
{
    LimitDir dir;
    const QList<QStandardItem *> limit = items({"a", "1", "2", "8"});
    limit.first()->appendRow(piece({"1", "2", "3", "4", "1"}));
    dir.model.appendRow(limit);
    const QModelIndex parent = dir.model.index(0, 0);
    QVERIFY(dir.model.setData(dir.model.index(0, 3), 4u, Qt::EditRole));
    QVERIFY(dir.model.setData(dir.model.index(0, 6, parent), 1.5, Qt::EditRole));
    QVERIFY(dir.model.setData(dir.model.index(0, 8, parent), -7.25, Qt::EditRole));
    QVERIFY(dir.model.setData(dir.model.index(0, 10, parent), 2u, Qt::EditRole));
    QCOMPARE(dir.saved(), document("    <limit name=\"a\" begin=\"1000000\" end=\"2000000\" measureunit=\"4\""
                                   " color=\"\">\n"
                                   "        <section beginFrequency=\"1500000\" endFrequency=\"2000000\""
                                   " beginValue=\"-7.25\" endValue=\"4\" interpolation=\"2\"/>\n    </limit>\n"));
}

void TestALimitModelSaving::theBeginFrequencyMakesASection_data()
{
    QTest::addColumn<QString>("begin");
    QTest::addColumn<bool>("isSection");
    QTest::newRow("above 0") << "0.000001" << true;
    QTest::newRow("below a hertz") << "0.0000001" << true;
    QTest::newRow("0") << "      0.0000000" << false;
    QTest::newRow("negative") << "-1" << false;
    QTest::newRow("blank") << "   " << false;
    QTest::newRow("empty") << "" << false;
    QTest::newRow("no item") << QString() << false;
    QTest::newRow("no number") << "one" << false;
    QTest::newRow("nan") << "nan" << false;
}

void TestALimitModelSaving::theBeginFrequencyMakesASection()
{
    QFETCH(QString, begin);
    QFETCH(bool, isSection);
    LimitDir dir;
    const QList<QStandardItem *> limit = items({""});
    limit.first()->appendRow(piece({begin, "2", "3", "4", "5"}));
    dir.model.appendRow(limit);
    const QByteArray content = dir.saved();
    QCOMPARE(content.contains("<section "), isSection);
    QCOMPARE(content.contains("<level frequency=\"2000000\" interpolation=\"5\">4</level>"), !isSection);
}

void TestALimitModelSaving::textIsEscaped()
{
    LimitDir dir;
    const QString text = QStringLiteral("<a> & \"b\" 'c'\t\u20ac\U0001f4e1\n%1");
    dir.model.appendRow(items({text, "1", "2", text, "", text}));
    QVERIFY(!dir.saved().isEmpty());
    QVERIFY(dir.model.loadFromFile(dir.path("out.xml")));
    for (int column : {0, 3, 5})
        QCOMPARE(rowTexts(dir.model, 0).at(column), text);
}

// Else one pasted control character would make a file that can't be read again.
void TestALimitModelSaving::charactersThatXmlCanNotHoldAreLeftOut()
{
    LimitDir dir;
    QString text = QStringLiteral("a");
    for (ushort c : {0x0, 0x1, 0xb, 0x1f, 0xd800, 0xffff})
        text += QChar(c);
    text += QStringLiteral("z");
    dir.model.appendRow(items({text, "1", "2", text, "", text}));
    QVERIFY(!dir.saved().isEmpty());
    QVERIFY2(dir.model.loadFromFile(dir.path("out.xml")), qPrintable(dir.loadErrors.join(QLatin1Char('\n'))));
    for (int column : {0, 3, 5})
        QCOMPARE(rowTexts(dir.model, 0).at(column), QStringLiteral("az"));
}

void TestALimitModelSaving::missingDirectoriesAreMade()
{
    LimitDir dir;
    const QString name = dir.path("a/b/c/limits.xml");
    QVERIFY(dir.model.saveToFile(name));
    QVERIFY(QFile::exists(name));
    QVERIFY(dir.model.loadFromFile(name));

    const QString old = QDir::currentPath();
    QVERIFY(QDir::setCurrent(dir.path()));
    const bool saved = dir.model.saveToFile(QStringLiteral("relative/x/limits.xml"));
    QVERIFY(QDir::setCurrent(old));
    QVERIFY(saved);
    QVERIFY(QFile::exists(dir.path("relative/x/limits.xml")));
}

void TestALimitModelSaving::anOldFileIsReplaced()
{
    LimitDir dir;
    const QString name = dir.write(QByteArray(5000, 'x'), "out.xml");
    const QString link = dir.path("link.xml");
    QVERIFY(QFile::link(name, link));
    QVERIFY(dir.model.saveToFile(link));
    QCOMPARE(readFile(name), QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<data/>\n"));
    QVERIFY(QFileInfo(link).isSymLink());
}

void TestALimitModelSaving::aFileThatCanNotBeOpenedIsReported_data()
{
    QTest::addColumn<QString>("name"); // in the directory
    QTest::newRow("a directory") << "sub";
    QTest::newRow("below a file") << "file/a.xml";
    QTest::newRow("too long") << QString(300, QLatin1Char('n'));
    QTest::newRow("the directory itself") << "";
}

void TestALimitModelSaving::aFileThatCanNotBeOpenedIsReported()
{
    QFETCH(QString, name);
    LimitDir dir;
    QVERIFY(QDir(dir.path()).mkdir("sub"));
    dir.write("kept", "file");
    dir.model.appendRow(items({"a"}));
    const QString fileName = dir.path(name);
    QFile file(fileName);
    QVERIFY(!file.open(QIODevice::WriteOnly));
    QVERIFY(!dir.model.saveToFile(fileName));
    QCOMPARE(dir.saveErrors,
             QStringList{QStringLiteral("Could not open file '%1': %2").arg(fileName, file.errorString())});
    QCOMPARE(dir.loadErrors, QStringList());
    QCOMPARE(dir.model.rowCount(), 1);
    QCOMPARE(readFile(dir.path("file")), QByteArray("kept"));
}

void TestALimitModelSaving::aFileWithoutPermissionIsReported()
{
    LimitDir dir;
    const QString name = dir.write("kept", "old.xml");
    QCOMPARE(chmod(qPrintable(name), 0444), 0);
    QCOMPARE(chmod(qPrintable(dir.path()), 0555), 0);
    const profilefiles::ChildResult result = profilefiles::inUnprivilegedChild([&] {
        const bool replaced = dir.model.saveToFile(name);
        const bool added = dir.model.saveToFile(dir.path("new.xml"));
        const bool made = dir.model.saveToFile(dir.path("sub/new.xml"));
        const bool saysWhy = dir.saveErrors.value(0).contains(QLatin1String("Permission denied"));
        return replaced || added || made || !saysWhy ? 50 : dir.saveErrors.size();
    });
    QCOMPARE(chmod(qPrintable(dir.path()), 0755), 0);
    QCOMPARE(result.status, 3);
    QCOMPARE(readFile(name), QByteArray("kept"));
}

void TestALimitModelSaving::aFileNameWithPercentSignsStaysWhole()
{
    LimitDir dir;
    const QString name = dir.path("%2 %1 %L2");
    QVERIFY(QDir().mkdir(name));
    QVERIFY(!dir.model.saveToFile(name));
    QVERIFY(dir.saveErrors.value(0).startsWith("Could not open file '" + name + "': "));
}

// Deliberately: write errors are not looked at. Reading the file back tells.
void TestALimitModelSaving::aFullDiskGoesUnnoticed()
{
    LimitDir dir;
    addManyLimits(&dir.model);
    const QByteArray whole = dir.saved();
    QVERIFY(whole.size() > 2000);
    const QString name = dir.path("cut.xml");
    for (int bytes : {0, 1, 1000, whole.size() - 1}) {
        const profilefiles::ChildResult result = profilefiles::inChild([&] {
            std::signal(SIGXFSZ, SIG_IGN);
            const struct rlimit size = {rlim_t(bytes), rlim_t(bytes)};
            if (setrlimit(RLIMIT_FSIZE, &size) != 0)
                return 98;
            return dir.model.saveToFile(name) && dir.saveErrors.isEmpty() ? 1 : 0;
        });
        QCOMPARE(result.status, 1);
        QCOMPARE(readFile(name), whole.left(bytes));
        ALimitModel again;
        QVERIFY(!again.loadFromFile(name) || bytes == whole.size() - 1); // which is but the last line end
    }
}

// The same on a file system that is full, where one can be mounted.
void TestALimitModelSaving::aFullFileSystemGoesUnnoticed()
{
    LimitDir dir;
    addManyLimits(&dir.model);
    const QString mountPoint = dir.path("full");
    QVERIFY(QDir().mkdir(mountPoint));
    if (QProcess::execute("mount", {"-t", "tmpfs", "-o", "size=4096", "tmpfs", mountPoint}) != 0)
        QSKIP("no file system can be mounted here");
    const QString name = mountPoint + QStringLiteral("/limits.xml");
    const bool saved = dir.model.saveToFile(name);
    ALimitModel again;
    const bool loaded = again.loadFromFile(name);
    const qint64 size = QFileInfo(name).size();
    QCOMPARE(QProcess::execute("umount", {mountPoint}), 0);
    QVERIFY(saved);
    QVERIFY(dir.saveErrors.isEmpty());
    QCOMPARE(size, qint64(4096));
    QVERIFY(!loaded);
}

void TestALimitModelSaving::savingChangesNoCell()
{
    LimitDir dir;
    QVERIFY(dir.load("<data><limit begin='1234567890' description='d'><section/><level>1</level></limit></data>"));
    const QStringList before = tableTexts(dir.model);
    QSignalSpy changes(&dir.model, &QAbstractItemModel::dataChanged);
    QVERIFY(!dir.saved().isEmpty());
    QCOMPARE(tableTexts(dir.model), before);
    QCOMPARE(changes.count(), 0);
}

QTEST_MAIN(TestALimitModelSaving)
#include "tst_alimitmodel_saving.moc"
