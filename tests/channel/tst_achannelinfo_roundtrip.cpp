#include "channel/achannelinfo.h"
#include "core/aprofile.h"

#include "channel/channeltree.h"
#include "channel/randomtree.h"

#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>
#include <QtXml/QDomDocument>

#include <memory>

// Random trees without mirrors, definitions and generated channels are the same after being written and read back.

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

QTEST_GUILESS_MAIN(TestAChannelInfoRoundtrip)
#include "tst_achannelinfo_roundtrip.moc"
