#include "channel/achannelinfo.h"
#include "core/aprofile.h"

#include "channel/channeltree.h"
#include "channel/randomtree.h"

#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>
#include <QtXml/QDomDocument>

#include <memory>

// Random trees without mirrors, definitions and generated channels are the same after being written and read back.

using channeltree::node;
using Tree = std::unique_ptr<AChannelInfo>;

namespace {

constexpr quint32 kTrees = 400;

enum class Road
{
    Element,
    Text,
    ProfileFile,
};

QString fileName(const QTemporaryDir &directory)
{
    return directory.filePath(QStringLiteral("tree.profile"));
}

// The channel section of a saved and loaded profile.
QDomElement throughAFile(const QDomElement &element, const QTemporaryDir &directory)
{
    AProfile profile;
    profile.setId(QStringLiteral("tree"));
    profile.setChannelData(element);
    if (!profile.saveToFile(fileName(directory)))
        return {};
    const std::unique_ptr<AProfile> loaded(AProfile::fromFile(fileName(directory)));
    QDomElement section = loaded ? loaded->channelData().cloneNode().toElement() : QDomElement();
    section.setTagName(QStringLiteral("range"));
    return section;
}

// As a text, of an indented document.
QDomElement throughAText(const QDomElement &element, QDomDocument *holder)
{
    QDomDocument document;
    document.appendChild(document.importNode(element, true));
    holder->setContent(document.toByteArray(2));
    return holder->documentElement();
}

Tree readBack(const AChannelInfo &tree, Road road)
{
    const QTemporaryDir directory;
    QDomDocument document;
    QDomDocument holder;
    QDomElement element = tree.toDomNode(&document);
    if (road == Road::Text)
        element = throughAText(element, &holder);
    if (road == Road::ProfileFile)
        element = throughAFile(element, directory);
    auto root =
        std::make_unique<AChannelInfo>(nullptr, AChannelInfo::Generic, AFrequency(), AFrequency(), QString(), false);
    AChannelInfo::processXmlElement(&element, root.get(), tree.selectable(), true, false);
    return root;
}

} // namespace

Q_DECLARE_METATYPE(Road)

class TestAChannelInfoRoundtrip : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void randomTreesComeBackEqual_data();
    void randomTreesComeBackEqual();
    void theTreesAreWorthComparing();
    void rangesAtOrOutsideTheEdgesAroundThemAreLost_data();
    void rangesAtOrOutsideTheEdgesAroundThemAreLost();
    void aRangeThatStoodBeforeTheEdgesAroundItIsLost();
};

void TestAChannelInfoRoundtrip::randomTreesComeBackEqual_data()
{
    QTest::addColumn<Road>("road");
    QTest::newRow("as an element") << Road::Element;
    QTest::newRow("as a text") << Road::Text;
    QTest::newRow("in a profile file") << Road::ProfileFile;
}

void TestAChannelInfoRoundtrip::randomTreesComeBackEqual()
{
    QFETCH(Road, road);
    for (quint32 seed = 1; seed <= kTrees; ++seed) {
        const Tree tree(RandomTree(seed).make());
        const Tree root = readBack(*tree, road);
        QVERIFY2(root->childCount() == 1, qPrintable(QString::number(seed)));
        const AChannelInfo *back = root->child(0);
        QVERIFY2(*back == *tree && *tree == *back, qPrintable(QString::number(seed)));
        const auto selectable = [](AChannelInfo *top) {
            QList<bool> flags;
            for (const auto &entry : top->channels(0))
                flags.append(entry.first->selectable());
            return flags;
        };
        QVERIFY2(selectable(root->child(0)) == selectable(tree.get()), qPrintable(QString::number(seed)));
    }
}

// Equality would hold of empty trees too.
void TestAChannelInfoRoundtrip::theTreesAreWorthComparing()
{
    int nodes = 0;
    QSet<int> types;
    int colors = 0;
    int depth = 0;
    for (quint32 seed = 1; seed <= kTrees; ++seed) {
        const Tree tree(RandomTree(seed).make());
        for (const auto &[range, level] : tree->channels(0)) {
            ++nodes;
            types.insert(range->type());
            colors += range->color().isValid() ? 1 : 0;
            depth = std::max(depth, level);
        }
    }
    QVERIFY2(nodes > 10 * int(kTrees), qPrintable(QString::number(nodes)));
    QCOMPARE(types.size(), 4);
    QVERIFY(colors > nodes / 4);
    QVERIFY(depth >= 4);
}

void TestAChannelInfoRoundtrip::rangesAtOrOutsideTheEdgesAroundThemAreLost_data()
{
    QTest::addColumn<QByteArray>("parentBegin");
    QTest::addColumn<QByteArray>("parentEnd");
    QTest::addColumn<QByteArray>("begin");
    QTest::addColumn<QByteArray>("end");
    QTest::addColumn<bool>("comesBack");
    const auto row = [](const char *name, const QByteArray &parentBegin, const QByteArray &parentEnd,
                        const QByteArray &begin, const QByteArray &end, bool comesBack) {
        QTest::newRow(name) << parentBegin << parentEnd << begin << end << comesBack;
    };
    row("inside", "100 MHz", "200 MHz", "120 MHz", "130 MHz", true);
    row("the same range", "100 MHz", "200 MHz", "100 MHz", "200 MHz", true);
    row("over the edges", "100 MHz", "200 MHz", "50 MHz", "300 MHz", true);
    row("begins a hertz below the end", "100 MHz", "200 MHz", "199.999999 MHz", "300 MHz", true);
    row("begins at the end", "100 MHz", "200 MHz", "200 MHz", "300 MHz", false);
    row("begins above the end", "100 MHz", "200 MHz", "201 MHz", "300 MHz", false);
    row("ends a hertz above the begin", "100 MHz", "200 MHz", "50 MHz", "100.000001 MHz", true);
    row("ends at the begin", "100 MHz", "200 MHz", "50 MHz", "100 MHz", false);
    row("ends below the begin", "100 MHz", "200 MHz", "50 MHz", "99 MHz", false);
    row("a single frequency", "100 MHz", "100 MHz", "100 MHz", "100 MHz", false);
    row("no edges around it", "0", "0", "50 MHz", "100 MHz", true);
    row("no begin around it", "0", "200 MHz", "50 MHz", "100 MHz", true);
    row("begins at the end, no begin around it", "0", "200 MHz", "200 MHz", "300 MHz", false);
    row("no end around it", "100 MHz", "0", "300 MHz", "400 MHz", true);
    row("ends at the begin, no end around it", "100 MHz", "0", "50 MHz", "100 MHz", false);
    row("no edges of its own", "100 MHz", "200 MHz", "0", "0", true);
    row("no end of its own", "100 MHz", "200 MHz", "150 MHz", "0", true);
    row("below zero and so without edges", "100 MHz", "200 MHz", "-2", "-1", true);
    // whole hertz are written from 1 MHz on
    row("begins half a hertz below the end", "100 MHz", "200 MHz", "199999999.5", "300 MHz", false);
}

void TestAChannelInfoRoundtrip::rangesAtOrOutsideTheEdgesAroundThemAreLost()
{
    QFETCH(QByteArray, parentBegin);
    QFETCH(QByteArray, parentEnd);
    QFETCH(QByteArray, begin);
    QFETCH(QByteArray, end);
    QFETCH(bool, comesBack);
    const Tree tree(node(nullptr, QStringLiteral("parent"), parentBegin.constData(), parentEnd.constData()));
    AChannelInfo *range = node(tree.get(), QStringLiteral("range"), begin.constData(), end.constData());
    node(range, QStringLiteral("in it"));
    for (const Road road : {Road::Element, Road::Text, Road::ProfileFile}) {
        const Tree root = readBack(*tree, road);
        QCOMPARE(root->childCount(), 1);
        QCOMPARE(root->child(0)->channels(0).size(), comesBack ? 3 : 1);
    }
}

// A reader checks a range by what stands before it, and a writer puts the edges first.
void TestAChannelInfoRoundtrip::aRangeThatStoodBeforeTheEdgesAroundItIsLost()
{
    QDomDocument document;
    QVERIFY(document.setContent(QByteArray("<range><range label='a'><begin>300</begin><end>400</end></range>"
                                           "<begin>100</begin><end>200</end></range>")));
    QDomElement element = document.documentElement();
    AChannelInfo root(nullptr, AChannelInfo::Generic, AFrequency(), AFrequency(), QString(), false);
    AChannelInfo::processXmlElement(&element, &root, false, true, false);
    QCOMPARE(root.child(0)->childCount(), 1);
    const Tree back = readBack(*root.child(0), Road::Element);
    QCOMPARE(back->childCount(), 1);
    QCOMPARE(back->child(0)->childCount(), 0);
    QCOMPARE(back->child(0)->endFrequency(), AFrequency("200 MHz"));
}

QTEST_GUILESS_MAIN(TestAChannelInfoRoundtrip)
#include "tst_achannelinfo_roundtrip.moc"
