#include "channel/achannelinfo.h"

#include "channeltree.h"

#include <QtGui/QBrush>
#include <QtTest/QtTest>

#include <climits>
#include <limits>
#include <memory>

using namespace channeltree;
using Definition = AChannelInfo::Definition;

namespace {

const QList<AChannelInfo::Columns> kFrequencyColumns = {AChannelInfo::ColumnStartFreq, AChannelInfo::ColumnStopFreq,
                                                        AChannelInfo::ColumnMirrorEntryFreq};

} // namespace

class TestAChannelInfo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFreshNodeHoldsWhatItWasGivenAndNothingElse();
    void theConstructorDoesNotEnterTheNodeInItsParent();
    void enumeratorsHaveTheirValues();
    void typesHaveNames_data();
    void typesHaveNames();

    void everyColumnIsRead();
    void columnsThatDoNotExistAreInvalid();
    void textColumnsAreWritten_data();
    void textColumnsAreWritten();
    void theQualifiedNameCannotBeWritten();
    void selectableIsWritten_data();
    void selectableIsWritten();
    void coloursAreStoredUnchanged_data();
    void coloursAreStoredUnchanged();
    void aColourIsNotLookedUpInTheParents();
    void frequenciesAreWritten_data();
    void frequenciesAreWritten();
    void aFrequencyReadAndWrittenBackIsTheSame();
    void typesAreWritten_data();
    void typesAreWritten();
    void definitionsAreWritten_data();
    void definitionsAreWritten();
    void definitionsReadBack();
    void columnsThatDoNotExistAreNotWritten();

    void namesAreTheLabelsFromTheRoot();
    void namesStopBelowADefaultProfile_data();
    void namesStopBelowADefaultProfile();
    void namesAreTrimmedAtTheEndsAlone();
    void namesEndInTheRange_data();
    void namesEndInTheRange();
    void placeholdersInALabelStay();
};

void TestAChannelInfo::aFreshNodeHoldsWhatItWasGivenAndNothingElse()
{
    const AChannelInfo parent(nullptr, AChannelInfo::Generic, AFrequency(), AFrequency(), QString(), false);
    AChannelInfo *const above = const_cast<AChannelInfo *>(&parent);
    const AChannelInfo made(above, AChannelInfo::Provider, AFrequency("100.5"), AFrequency("50 MHz"),
                            QStringLiteral(" a "), true);
    QCOMPARE(made.parent(), above);
    QCOMPARE(made.type(), AChannelInfo::Provider);
    QCOMPARE(made.beginFrequency(), AFrequency("100.5"));
    QCOMPARE(made.endFrequency(), megahertz(50));
    QCOMPARE(made.label(), QStringLiteral(" a "));
    QVERIFY(made.selectable());
    QCOMPARE(made.childCount(), 0);
    QCOMPARE(made.comment(), QString());
    QVERIFY(!made.color().isValid());
    QVERIFY(made.data(AChannelInfo::ColumnColor).isValid());
    QCOMPARE(made.data(AChannelInfo::ColumnColor).userType(), int(QMetaType::QColor));
    QVERIFY(made.channelDefinitions().isEmpty());
    QCOMPARE(made.data(AChannelInfo::ColumnProfileId).toString(), QString());
    QCOMPARE(made.data(AChannelInfo::ColumnMirrorEntryFreq).toLongLong(), 0LL);
    QVERIFY(!AChannelInfo(nullptr, AChannelInfo::Generic, AFrequency(), AFrequency(), QString(), false).selectable());
}

void TestAChannelInfo::theConstructorDoesNotEnterTheNodeInItsParent()
{
    const Tree root(band());
    node(root.get(), QStringLiteral("child"));
    const AChannelInfo loose(root.get(), AChannelInfo::Generic, AFrequency(), AFrequency(), QString(), false);
    QCOMPARE(root->childCount(), 1);
    QCOMPARE(loose.parent(), root.get());
    QCOMPARE(loose.row(), -1);
}

void TestAChannelInfo::enumeratorsHaveTheirValues()
{
    QCOMPARE(int(AChannelInfo::Generic), 2);
    QCOMPARE(int(AChannelInfo::Direction), 4);
    QCOMPARE(int(AChannelInfo::Provider), 8);
    QCOMPARE(int(AChannelInfo::Channel), 16);
    QCOMPARE(int(AChannelInfo::AutoChannel), 32);
    const QList<int> columns = {AChannelInfo::ColumnName,           AChannelInfo::ColumnQualifiedName,
                                AChannelInfo::ColumnStartFreq,      AChannelInfo::ColumnStopFreq,
                                AChannelInfo::ColumnType,           AChannelInfo::ColumnSelectable,
                                AChannelInfo::ColumnColor,          AChannelInfo::ColumnProfileId,
                                AChannelInfo::ColumnComment,        AChannelInfo::ColumnAutoChannelDefinition,
                                AChannelInfo::ColumnMirrorEntryFreq};
    for (int i = 0; i < columns.size(); ++i)
        QCOMPARE(columns.at(i), i);
    QCOMPARE(columns.size(), 11);
    QCOMPARE(Tree(band())->columnCount(), 11);
    QCOMPARE(Tree(fullTree())->columnCount(), 11);
}

void TestAChannelInfo::typesHaveNames_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("name");
    QTest::newRow("2") << 2 << "Generic";
    QTest::newRow("4") << 4 << "Direction";
    QTest::newRow("8") << 8 << "Provider";
    QTest::newRow("16") << 16 << "Channel";
    QTest::newRow("32") << 32 << "AutoChannel";
    QTest::newRow("48") << 48 << "Channel";
    for (const int type : {INT_MIN, -2, -1, 0, 1, 3, 5, 6, 10, 15, 17, 31, 33, 47, 49, 56, 62, 63, 64, INT_MAX})
        QTest::addRow("%d", type) << type << "unknown";
}

void TestAChannelInfo::typesHaveNames()
{
    QFETCH(int, type);
    QTEST(AChannelInfo::mapTypeToString(type), "name");
}

void TestAChannelInfo::everyColumnIsRead()
{
    const Tree root(fullTree());
    const AChannelInfo *made = root->child(1);
    root->child(1)->setData(AChannelInfo::ColumnStartFreq, QStringLiteral("-5000000000.75"));
    root->child(1)->setData(AChannelInfo::ColumnStopFreq, QVariant(6000000000LL));

    const QList<QVariant> expected = {QStringLiteral("a"),
                                      QStringLiteral("root a"),
                                      -5000000000LL,
                                      6000000000LL,
                                      16,
                                      true,
                                      QVariant(),
                                      QString(),
                                      QString(),
                                      QVariantList(),
                                      0LL};
    for (int column = 0; column < expected.size(); ++column)
        QCOMPARE(inspect(made->data(column)), inspect(expected.at(column)));

    QCOMPARE(inspect(root->data(2)), inspect(10LL));
    QCOMPARE(inspect(root->data(3)), inspect(20LL));
    QCOMPARE(inspect(root->data(6)), inspect(QStringLiteral("red")));
    QCOMPARE(inspect(root->data(7)), inspect(QStringLiteral("profile")));
    QCOMPARE(inspect(root->data(8)), inspect(QStringLiteral("comment")));
    QCOMPARE(inspect(root->data(9)), inspect(QVariantList{QVariantMap(definition("1 MHz", "2 MHz", "3 kHz", 4, 5, 6)),
                                                          QVariantMap(definition("1", "2", "3", 0))}));
    QCOMPARE(inspect(root->data(10)), inspect(7000LL));
    QCOMPARE(inspect(root->child(0)->data(6)), inspect(QColor(Qt::blue)));
    QCOMPARE(inspect(root->child(0)->data(5)), inspect(false));
    QCOMPARE(inspect(root->child(1)->child(0)->data(4)), inspect(48));
}

void TestAChannelInfo::columnsThatDoNotExistAreInvalid()
{
    const Tree root(fullTree());
    for (const int column : {INT_MIN, -1, 11, 12, 255, INT_MAX})
        QVERIFY(!root->data(column).isValid());
}

void TestAChannelInfo::textColumnsAreWritten_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("text") << QVariant(QStringLiteral(" a b ")) << " a b ";
    QTest::newRow("bytes") << QVariant(QByteArray("\xc3\xa4")) << QString(QChar(0xe4));
    QTest::newRow("int") << QVariant(5) << "5";
    QTest::newRow("double") << QVariant(0.5) << "0.5";
    QTest::newRow("bool") << QVariant(true) << "true";
    QTest::newRow("invalid") << QVariant() << QString();
    QTest::newRow("list") << QVariant(QVariantList{1, 2}) << QString();
}

void TestAChannelInfo::textColumnsAreWritten()
{
    QFETCH(QVariant, value);
    QFETCH(QString, text);
    const Tree root(fullTree());
    for (const auto column : {AChannelInfo::ColumnName, AChannelInfo::ColumnProfileId, AChannelInfo::ColumnComment}) {
        const QVariant others[] = {root->data(AChannelInfo::ColumnStartFreq), root->data(AChannelInfo::ColumnType)};
        root->setData(column, value);
        QCOMPARE(inspect(root->data(column)), inspect(text));
        QCOMPARE(root->data(AChannelInfo::ColumnStartFreq), others[0]);
        QCOMPARE(root->data(AChannelInfo::ColumnType), others[1]);
    }
    QCOMPARE(root->label(), text);
    QCOMPARE(root->comment(), text);
}

void TestAChannelInfo::theQualifiedNameCannotBeWritten()
{
    const Tree root(fullTree());
    const QStringList before = outline(root.get());
    root->setData(AChannelInfo::ColumnQualifiedName, QStringLiteral("other"));
    root->child(0)->setData(AChannelInfo::ColumnQualifiedName, QVariant());
    QCOMPARE(outline(root.get()), before);
}

void TestAChannelInfo::selectableIsWritten_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("selectable");
    QTest::newRow("true") << QVariant(true) << true;
    QTest::newRow("false") << QVariant(false) << false;
    QTest::newRow("1") << QVariant(1) << true;
    QTest::newRow("0") << QVariant(0) << false;
    QTest::newRow("check state") << QVariant(2) << true;
    QTest::newRow("0.0") << QVariant(0.0) << false;
    QTest::newRow("text") << QVariant(QStringLiteral("no")) << true;
    QTest::newRow("text false") << QVariant(QStringLiteral("False")) << false;
    QTest::newRow("text 0") << QVariant(QStringLiteral("0")) << false;
    QTest::newRow("empty text") << QVariant(QString()) << false;
    QTest::newRow("invalid") << QVariant() << false;
    QTest::newRow("list") << QVariant(QVariantList{true}) << false;
}

void TestAChannelInfo::selectableIsWritten()
{
    QFETCH(QVariant, value);
    QFETCH(bool, selectable);
    for (const bool before : {false, true}) {
        AChannelInfo made(nullptr, AChannelInfo::Generic, AFrequency(), AFrequency(), QString(), before);
        made.setData(AChannelInfo::ColumnSelectable, value);
        QCOMPARE(made.selectable(), selectable);
        QCOMPARE(inspect(made.data(AChannelInfo::ColumnSelectable)), inspect(selectable));
    }
}

void TestAChannelInfo::coloursAreStoredUnchanged_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QColor>("color");
    QTest::newRow("colour") << QVariant(QColor(1, 2, 3, 4)) << QColor(1, 2, 3, 4);
    QTest::newRow("invalid colour") << QVariant(QColor()) << QColor();
    QTest::newRow("name") << QVariant(QStringLiteral("red")) << QColor(Qt::red);
    QTest::newRow("number sign") << QVariant(QStringLiteral("#8000ff00")) << QColor(0, 255, 0, 128);
    QTest::newRow("bytes") << QVariant(QByteArray("red")) << QColor(Qt::red);
    QTest::newRow("brush") << QVariant(QBrush(Qt::red)) << QColor(Qt::red);
    QTest::newRow("no colour") << QVariant(QStringLiteral("no colour")) << QColor();
    QTest::newRow("empty text") << QVariant(QString()) << QColor();
    QTest::newRow("number") << QVariant(5) << QColor();
    QTest::newRow("list") << QVariant(QVariantList{QColor(Qt::red)}) << QColor();
    QTest::newRow("invalid") << QVariant() << QColor();
}

void TestAChannelInfo::coloursAreStoredUnchanged()
{
    QFETCH(QVariant, value);
    const Tree made(band());
    made->setData(AChannelInfo::ColumnColor, QColor(Qt::green));
    made->setData(AChannelInfo::ColumnColor, value);
    QCOMPARE(inspect(made->data(AChannelInfo::ColumnColor)), inspect(value));
    QTEST(made->color(), "color");
    QCOMPARE(inspect(made->data(AChannelInfo::ColumnColor)), inspect(value));
}

void TestAChannelInfo::aColourIsNotLookedUpInTheParents()
{
    const Tree root(band());
    root->setData(AChannelInfo::ColumnColor, QColor(Qt::red));
    AChannelInfo *child = node(root.get(), QStringLiteral("child"));
    QVERIFY(!child->color().isValid());
    child->setData(AChannelInfo::ColumnColor, QVariant());
    QVERIFY(!child->color().isValid());
    QVERIFY(!child->data(AChannelInfo::ColumnColor).isValid());
}

void TestAChannelInfo::frequenciesAreWritten_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<AFrequency>("frequency");
    // a double is megahertz
    QTest::newRow("double") << QVariant(100.0) << megahertz(100);
    QTest::newRow("negative double") << QVariant(-1.5) << hertz(-1500000);
    QTest::newRow("double, part of a hertz") << QVariant(0.0000015) << AFrequency("1.5");
    QTest::newRow("double 0") << QVariant(0.0) << AFrequency();
    // an integer is hertz
    QTest::newRow("int") << QVariant(100) << hertz(100);
    QTest::newRow("negative int") << QVariant(-100) << hertz(-100);
    QTest::newRow("uint") << QVariant(4000000000U) << hertz(4000000000);
    QTest::newRow("qlonglong") << QVariant(qlonglong(100)) << hertz(100);
    QTest::newRow("largest qlonglong") << QVariant(std::numeric_limits<qlonglong>::max())
                                       << hertz(std::numeric_limits<qint64>::max());
    QTest::newRow("smallest qlonglong") << QVariant(std::numeric_limits<qlonglong>::min())
                                        << hertz(std::numeric_limits<qint64>::min());
    QTest::newRow("qulonglong") << QVariant(qulonglong(5000000000)) << hertz(5000000000);
    QTest::newRow("largest qulonglong") << QVariant(std::numeric_limits<qulonglong>::max()) << hertz(-1);
    // anything else is text
    QTest::newRow("text") << QVariant(QStringLiteral("100 MHz")) << megahertz(100);
    QTest::newRow("text without unit") << QVariant(QStringLiteral("100")) << hertz(100);
    QTest::newRow("text with comma") << QVariant(QStringLiteral("88,5 MHz")) << hertz(88500000);
    QTest::newRow("text, part of a hertz") << QVariant(QStringLiteral("10.25")) << AFrequency("10.25");
    QTest::newRow("no frequency") << QVariant(QStringLiteral("five")) << AFrequency();
    QTest::newRow("not Latin") << QVariant(QString(QChar(0x0665))) << AFrequency();
    QTest::newRow("empty text") << QVariant(QString()) << AFrequency();
    QTest::newRow("bytes") << QVariant(QByteArray("100 kHz")) << hertz(100000);
    QTest::newRow("float") << QVariant(100.0f) << hertz(100);
    QTest::newRow("float with exponent") << QVariant(1e6f) << hertz(1000000);
    QTest::newRow("float, part of a hertz") << QVariant(100.5f) << AFrequency("100.5");
    QTest::newRow("short") << QVariant::fromValue(short(-100)) << hertz(-100);
    QTest::newRow("ushort") << QVariant::fromValue(ushort(100)) << hertz(100);
    QTest::newRow("long") << QVariant::fromValue(100L) << hertz(100);
    QTest::newRow("ulong") << QVariant::fromValue(100UL) << hertz(100);
    // as text the largest ends at the range's edge, as an integer it would be -1
    QTest::newRow("largest ulong") << QVariant::fromValue(std::numeric_limits<ulong>::max())
                                   << hertz(std::numeric_limits<qint64>::max());
    QTest::newRow("char") << QVariant::fromValue('7') << hertz(7);
    QTest::newRow("QChar") << QVariant(QChar(u'7')) << AFrequency();
    QTest::newRow("bool") << QVariant(true) << AFrequency();
    QTest::newRow("invalid") << QVariant() << AFrequency();
    QTest::newRow("list") << QVariant(QVariantList{100}) << AFrequency();
    QTest::newRow("map") << QVariant(QVariantMap{{QStringLiteral("start"), 100}}) << AFrequency();
    QTest::newRow("frequency") << QVariant::fromValue(hertz(100)) << AFrequency();
}

void TestAChannelInfo::frequenciesAreWritten()
{
    QFETCH(QVariant, value);
    QFETCH(AFrequency, frequency);
    for (const auto column : kFrequencyColumns) {
        const Tree made(band());
        made->setData(AChannelInfo::ColumnMirrorEntryFreq, 300);
        made->setData(column, value);
        QCOMPARE(inspect(made->data(column)), inspect(frequency.intValue(AFrequency::Hz)));
        const bool begin = column == AChannelInfo::ColumnStartFreq;
        const bool end = column == AChannelInfo::ColumnStopFreq;
        const bool mirror = column == AChannelInfo::ColumnMirrorEntryFreq;
        QCOMPARE(made->beginFrequency(), begin ? frequency : megahertz(100));
        QCOMPARE(made->endFrequency(), end ? frequency : megahertz(200));
        if (!mirror)
            QCOMPARE(made->data(AChannelInfo::ColumnMirrorEntryFreq).toLongLong(), 300LL);
    }
}

void TestAChannelInfo::aFrequencyReadAndWrittenBackIsTheSame()
{
    for (const qint64 value : {qint64(0), qint64(1), qint64(-1), qint64(9007199254740993),
                               std::numeric_limits<qint64>::max(), std::numeric_limits<qint64>::min()}) {
        AChannelInfo made(nullptr, AChannelInfo::Generic, hertz(value), hertz(value), QString(), false);
        for (const auto column : {AChannelInfo::ColumnStartFreq, AChannelInfo::ColumnStopFreq}) {
            const QVariant read = made.data(column);
            made.setData(column, 5);
            made.setData(column, read);
        }
        QCOMPARE(made.beginFrequency(), hertz(value));
        QCOMPARE(made.endFrequency(), hertz(value));
    }
}

void TestAChannelInfo::typesAreWritten_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("type");
    for (const int type : {2, 4, 8, 16, 32, 48})
        QTest::addRow("%d", type) << QVariant(type) << type;
    for (const int type : {INT_MIN, -16, -1, 0, 1, 3, 6, 12, 24, 20, 40, 56, 62, 64, 128, INT_MAX})
        QTest::addRow("%d", type) << QVariant(type) << 2;
    QTest::newRow("text") << QVariant(QStringLiteral("16")) << 16;
    QTest::newRow("hexadecimal text") << QVariant(QStringLiteral("0x10")) << 2;
    QTest::newRow("name") << QVariant(QStringLiteral("Channel")) << 2;
    QTest::newRow("double") << QVariant(8.0) << 8;
    QTest::newRow("rounded double") << QVariant(31.6) << 32;
    QTest::newRow("qlonglong") << QVariant(qlonglong(48)) << 48;
    QTest::newRow("true") << QVariant(true) << 2;
    QTest::newRow("invalid") << QVariant() << 2;
}

void TestAChannelInfo::typesAreWritten()
{
    QFETCH(QVariant, value);
    QFETCH(int, type);
    for (const auto before : {AChannelInfo::Generic, AChannelInfo::Channel}) {
        AChannelInfo made(nullptr, before, AFrequency(), AFrequency(), QString(), false);
        made.setData(AChannelInfo::ColumnType, value);
        QCOMPARE(int(made.type()), type);
        QCOMPARE(inspect(made.data(AChannelInfo::ColumnType)), inspect(type));
    }
}

void TestAChannelInfo::definitionsAreWritten_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QVariantList>("definitions");
    const QVariantMap one = definition("1", "2", "3", 4);
    const QVariantMap other{{QStringLiteral("x"), QVariantList{1, 2}}};
    QTest::newRow("one") << QVariant(QVariantList{one}) << QVariantList{one};
    QTest::newRow("in order") << QVariant(QVariantList{other, one, other}) << QVariantList{other, one, other};
    QTest::newRow("none") << QVariant(QVariantList()) << QVariantList();
    QTest::newRow("invalid") << QVariant() << QVariantList();
    QTest::newRow("map") << QVariant(one) << QVariantList();
    QTest::newRow("number") << QVariant(5) << QVariantList();
    QTest::newRow("hash") << QVariant(QVariantList{QVariantHash{{QStringLiteral("x"), 1}}})
                          << QVariantList{QVariantMap{{QStringLiteral("x"), 1}}};
    QTest::newRow("no maps") << QVariant(QVariantList{one, 5, QVariant()})
                             << QVariantList{one, QVariantMap(), QVariantMap()};
    QTest::newRow("texts") << QVariant(QStringList{QStringLiteral("a"), QStringLiteral("b")})
                           << QVariantList{QVariantMap(), QVariantMap()};
}

void TestAChannelInfo::definitionsAreWritten()
{
    QFETCH(QVariant, value);
    QFETCH(QVariantList, definitions);
    const Tree made(bandWith({definition("9", "9", "9", 9)}));
    made->setData(AChannelInfo::ColumnAutoChannelDefinition, value);
    QCOMPARE(inspect(made->data(AChannelInfo::ColumnAutoChannelDefinition)), inspect(definitions));
    QList<Definition> maps;
    for (const QVariant &map : definitions)
        maps.append(map.toMap());
    QCOMPARE(made->channelDefinitions(), maps);
}

void TestAChannelInfo::definitionsReadBack()
{
    const QList<Definition> definitions = {definition("1 MHz", "2", "3", 4), Definition(),
                                           with(definition("1", "2", "3", 4), "color", QColor(Qt::red))};
    const Tree made(bandWith(definitions));
    QCOMPARE(made->channelDefinitions(), definitions);
    const QVariant read = made->data(AChannelInfo::ColumnAutoChannelDefinition);
    made->setChannelDefinitions({});
    QVERIFY(made->channelDefinitions().isEmpty());
    made->setData(AChannelInfo::ColumnAutoChannelDefinition, read);
    QCOMPARE(made->channelDefinitions(), definitions);
}

void TestAChannelInfo::columnsThatDoNotExistAreNotWritten()
{
    const Tree root(fullTree());
    const QStringList before = outline(root.get());
    for (int column = 11; column < 16; ++column)
        root->setData(static_cast<AChannelInfo::Columns>(column), 5);
    QCOMPARE(outline(root.get()), before);
}

void TestAChannelInfo::namesAreTheLabelsFromTheRoot()
{
    const Tree root(node(nullptr, QStringLiteral("plan")));
    AChannelInfo *band = node(root.get(), QStringLiteral("band"));
    AChannelInfo *channel = node(band, QStringLiteral("channel"));
    QCOMPARE(root->name(false), QStringLiteral("plan"));
    QCOMPARE(band->name(false), QStringLiteral("plan band"));
    QCOMPARE(channel->name(false), QStringLiteral("plan band channel"));
    QCOMPARE(channel->data(AChannelInfo::ColumnQualifiedName).toString(), QStringLiteral("plan band channel"));

    root->setData(AChannelInfo::ColumnName, QString());
    QCOMPARE(channel->name(false), QStringLiteral("band channel"));
    QCOMPARE(root->name(false), QString());

    // a profile of another id is no end
    band->setData(AChannelInfo::ColumnProfileId, QStringLiteral("fm"));
    QCOMPARE(channel->name(false), QStringLiteral("band channel"));

    // a node that was never entered has its parent's labels all the same
    const AChannelInfo loose(channel, AChannelInfo::Generic, AFrequency(), AFrequency(), QStringLiteral("loose"),
                             false);
    QCOMPARE(loose.name(false), QStringLiteral("band channel loose"));
}

void TestAChannelInfo::namesStopBelowADefaultProfile_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("name");
    QTest::newRow("default") << "default"
                             << "group channel";
    QTest::newRow("default and more") << "default-de:x"
                                      << "group channel";
    QTest::newRow("defaults") << "defaults"
                              << "group channel";
    QTest::newRow("capital") << "Default"
                             << "plan band group channel";
    QTest::newRow("within") << "my default"
                            << "plan band group channel";
    QTest::newRow("blank before") << " default"
                                  << "plan band group channel";
    QTest::newRow("shorter") << "defaul"
                             << "plan band group channel";
    QTest::newRow("none") << QString() << "plan band group channel";
}

void TestAChannelInfo::namesStopBelowADefaultProfile()
{
    QFETCH(QString, id);
    QFETCH(QString, name);
    const Tree root(node(nullptr, QStringLiteral("plan")));
    AChannelInfo *band = node(root.get(), QStringLiteral("band"));
    band->setData(AChannelInfo::ColumnProfileId, id);
    AChannelInfo *group = node(band, QStringLiteral("group"));
    AChannelInfo *channel = node(group, QStringLiteral("channel"), "1 MHz", "2 MHz");
    QCOMPARE(channel->name(false), name);
    QCOMPARE(channel->name(true), name + QStringLiteral("  (1.000000 MHz - 2.000000 MHz)"));

    // the profile's own node
    const bool isDefault = name == QLatin1String("group channel");
    QCOMPARE(band->name(false), isDefault ? QString() : QStringLiteral("plan band"));
    QCOMPARE(root->name(false), QStringLiteral("plan"));

    // the nearest such profile is the end
    root->setData(AChannelInfo::ColumnProfileId, QStringLiteral("default"));
    QCOMPARE(channel->name(false), isDefault ? name : QStringLiteral("band group channel"));
}

void TestAChannelInfo::namesAreTrimmedAtTheEndsAlone()
{
    const Tree root(node(nullptr, QStringLiteral("\t plan ")));
    AChannelInfo *band = node(root.get(), QString());
    AChannelInfo *channel = node(band, QStringLiteral(" channel \n"), "1", "2");
    QCOMPARE(channel->name(false), QStringLiteral("plan    channel"));
    QCOMPARE(channel->name(true), QStringLiteral("plan    channel \n  (1.000000 Hz - 2.000000 Hz)"));
    QCOMPARE(band->name(false), QStringLiteral("plan"));

    const Tree blank(node(nullptr, QString()));
    QCOMPARE(node(node(blank.get(), QStringLiteral(" ")), QString())->name(false), QString());
}

void TestAChannelInfo::namesEndInTheRange_data()
{
    QTest::addColumn<QString>("label");
    QTest::addColumn<AFrequency>("begin");
    QTest::addColumn<AFrequency>("end");
    QTest::addColumn<QString>("name");
    QTest::newRow("megahertz") << "a" << hertz(88500000) << megahertz(108) << "a  (88.500000 MHz - 108.000000 MHz)";
    QTest::newRow("other units") << "a" << hertz(1500) << hertz(999999999999)
                                 << "a  (1.500000 kHz - 999999.999999 MHz)";
    QTest::newRow("zero") << "a" << hertz(0) << hertz(0) << "a  (0.000000 Hz - 0.000000 Hz)";
    QTest::newRow("negative") << "a" << hertz(-5000000) << hertz(-1) << "a  (-5.000000 MHz - -1.000000 Hz)";
    QTest::newRow("no label") << "" << hertz(1) << hertz(2) << "(1.000000 Hz - 2.000000 Hz)";
}

void TestAChannelInfo::namesEndInTheRange()
{
    QFETCH(QString, label);
    QFETCH(AFrequency, begin);
    QFETCH(AFrequency, end);
    QFETCH(QString, name);
    const AChannelInfo made(nullptr, AChannelInfo::Generic, begin, end, label, false);
    QCOMPARE(made.name(true), name);
    // the blank behind every label, and the one before the bracket
    QCOMPARE(made.name(true), QStringLiteral("%1  (%2 - %3)").arg(label, canonical(begin), canonical(end)).trimmed());
    QCOMPARE(made.name(false), label);
}

void TestAChannelInfo::placeholdersInALabelStay()
{
    const Tree root(node(nullptr, QStringLiteral("%1")));
    AChannelInfo *made = node(root.get(), QStringLiteral("%2 %L1 %%"), "1", "2");
    QCOMPARE(made->name(true), QStringLiteral("%1 %2 %L1 %%  (1.000000 Hz - 2.000000 Hz)"));
}

QTEST_APPLESS_MAIN(TestAChannelInfo)
#include "tst_achannelinfo.moc"
