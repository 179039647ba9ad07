#include "channel/achannelinfo.h"

#include "channeltree.h"

#include <QtTest/QtTest>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

using namespace channeltree;
using Definition = AChannelInfo::Definition;

namespace {

class Random
{
public:
    explicit Random(unsigned seed)
        : m_engine(seed)
    {}
    int below(int bound) { return int(m_engine() % unsigned(bound)); }
    bool oneIn(int chances) { return below(chances) == 0; }
    template<typename T>
    const T &of(const QList<T> &list)
    {
        return list.at(below(list.size()));
    }
    template<typename T>
    T &of(std::vector<T> &list)
    {
        return list[size_t(below(int(list.size())))];
    }

private:
    std::mt19937 m_engine;
};

// A node and those below it as plain values, for the comparison as its rules spell it.
struct Plan
{
    AFrequency begin;
    AFrequency end;
    QVariant color;
    QString comment;
    QString label;
    int type = AChannelInfo::Generic;
    AFrequency mirror;
    QList<Definition> definitions;
    bool selectable = false;
    QString profileId;
    std::vector<Plan> children;
};

AChannelInfo *build(const Plan &plan, AChannelInfo *parent = nullptr)
{
    auto *made = new AChannelInfo(parent, AChannelInfo::Generic, plan.begin, plan.end, plan.label, plan.selectable);
    made->setData(AChannelInfo::ColumnType, plan.type);
    made->setData(AChannelInfo::ColumnColor, plan.color);
    made->setData(AChannelInfo::ColumnComment, plan.comment);
    made->setData(AChannelInfo::ColumnMirrorEntryFreq, plan.mirror.intValue(AFrequency::Hz));
    made->setData(AChannelInfo::ColumnProfileId, plan.profileId);
    made->setChannelDefinitions(plan.definitions);
    if (parent)
        parent->appendChild(made);
    for (const Plan &child : plan.children)
        build(child, made);
    return made;
}

bool hasBelow(const Plan &plan, int mask)
{
    return std::any_of(plan.children.begin(), plan.children.end(),
                       [&](const Plan &child) { return (child.type & mask) || hasBelow(child, mask); });
}

void expand(Plan &plan, bool clearExpanded)
{
    if (clearExpanded) {
        plan.children.erase(std::remove_if(plan.children.begin(), plan.children.end(),
                                           [](const Plan &child) { return child.type & AChannelInfo::AutoChannel; }),
                            plan.children.end());
    }
    for (Plan &child : plan.children)
        expand(child, clearExpanded);
    for (const Definition &definition : qAsConst(plan.definitions)) {
        const auto value = [&](const char *key) { return definition.value(QLatin1String(key)); };
        const AFrequency start(value("start").toByteArray().constData());
        const AFrequency width(value("width").toByteArray().constData());
        const AFrequency space(value("space").toByteArray().constData());
        const auto color = value("color").value<QColor>();
        for (int n = 0; n < value("count").toInt(); ++n) {
            Plan channel;
            channel.begin = start + (width + space) * double(n);
            channel.end = channel.begin + width;
            channel.label = QString::number(n * value("step").toInt() + value("first").toInt());
            channel.type = AChannelInfo::AutoChannel;
            channel.color = color.isValid() ? QVariant(color) : plan.color;
            plan.children.push_back(channel);
        }
    }
    plan.definitions.clear();
}

bool fieldsEqual(const Plan &left, const Plan &right)
{
    return left.begin == right.begin && left.end == right.end && left.color == right.color &&
           left.comment == right.comment && left.label == right.label && left.type == right.type;
}

bool plansEqual(const Plan &left, const Plan &right)
{
    const bool fields = fieldsEqual(left, right);
    const int count = left.definitions.size();
    const bool expanding =
        count != right.definitions.size() ||
        (count != 0 && (hasBelow(left, AChannelInfo::AutoChannel) || hasBelow(right, AChannelInfo::AutoChannel)));
    Plan a = left;
    Plan b = right;
    if (expanding && !left.definitions.isEmpty())
        expand(a, true);
    if (expanding && !right.definitions.isEmpty())
        expand(b, true);
    if (a.children.size() != b.children.size() || !fields)
        return false;
    for (const Plan &child : a.children) {
        if (std::none_of(b.children.begin(), b.children.end(),
                         [&](const Plan &other) { return plansEqual(child, other); }))
            return false;
    }
    if (a.definitions.size() != b.definitions.size())
        return false;
    for (const Definition &definition : qAsConst(a.definitions)) {
        if (std::none_of(b.definitions.begin(), b.definitions.end(),
                         [&](const Definition &other) { return definition == other; }))
            return false;
    }
    return left.mirror == right.mirror;
}

const QList<int> kTypes = {2, 2, 2, 4, 8, 16, 32, 32, 48};
const QList<qint64> kEdges = {0, 100, 100, 105, 110, 1000};
const QList<QString> kLabels = {QString(), QStringLiteral("1"), QStringLiteral("1"), QStringLiteral("2")};

QVariant randomColor(Random &random)
{
    switch (random.below(9)) {
    case 0:
        return QColor(Qt::red);
    case 1:
        return QStringLiteral("red");
    case 2:
        return QStringLiteral("#ff0000");
    case 3:
        return QVariant();
    case 4:
        return QStringLiteral("#000000");
    default:
        return QColor();
    }
}

Definition randomDefinition(Random &random)
{
    Definition made;
    const auto text = [&](const char *key, std::initializer_list<const char *> values) {
        if (!random.oneIn(8))
            made.insert(QLatin1String(key), QString::fromLatin1(random.of(QList<const char *>(values))));
    };
    text("start", {"100", "100", "100 Hz", "0.1 kHz", "105"});
    text("width", {"5", "5", "0"});
    text("space", {"0", "0", "5"});
    for (const char *key : {"first", "step", "count"}) {
        const int value = random.below(3) - (random.oneIn(8) ? 1 : 0);
        if (random.oneIn(6))
            made.insert(QLatin1String(key), QStringLiteral("0%1").arg(value));
        else if (!random.oneIn(8))
            made.insert(QLatin1String(key), value);
    }
    if (random.oneIn(2))
        made.insert(QStringLiteral("color"), randomColor(random));
    return made;
}

Plan randomPlan(Random &random, int depth)
{
    Plan made;
    made.begin = hertz(random.of(kEdges));
    made.end = hertz(random.of(kEdges));
    made.color = random.oneIn(3) ? randomColor(random) : QVariant(QColor());
    made.label = random.of(kLabels);
    made.type = random.of(kTypes);
    if (random.oneIn(10))
        made.comment = QStringLiteral("x");
    if (random.oneIn(10))
        made.mirror = hertz(5);
    for (int i = random.below(3); random.oneIn(2) && i > 0; --i)
        made.definitions.append(randomDefinition(random));
    for (int i = depth > 0 ? random.below(4) : 0; i > 0; --i) {
        made.children.push_back(!made.children.empty() && random.oneIn(4) ? random.of(made.children)
                                                                          : randomPlan(random, depth - 1));
    }
    return made;
}

// One change, of which about half leave the plan equal to what it was.
void change(Plan &plan, Random &random)
{
    if (!plan.children.empty() && random.oneIn(2))
        return change(random.of(plan.children), random);
    switch (random.below(19)) {
    case 0:
        plan.selectable = !plan.selectable;
        break;
    case 1:
        plan.profileId += QLatin1Char('x');
        break;
    case 2:
        std::reverse(plan.children.begin(), plan.children.end());
        break;
    case 3:
        std::reverse(plan.definitions.begin(), plan.definitions.end());
        break;
    case 4:
    case 5:
    case 6:
        expand(plan, random.oneIn(2));
        break;
    case 7: {
        // expanded, but the definitions kept
        const QList<Definition> kept = plan.definitions;
        expand(plan, random.oneIn(2));
        plan.definitions = kept;
        break;
    }
    case 8:
        if (!plan.children.empty()) {
            const Plan twice = random.of(plan.children);
            random.of(plan.children) = twice;
        }
        break;
    case 9:
        if (!plan.definitions.isEmpty()) {
            const Definition twice = random.of(plan.definitions);
            plan.definitions[random.below(plan.definitions.size())] = twice;
        }
        break;
    case 10:
        plan.definitions.append(with(randomDefinition(random), "count", random.oneIn(2) ? 0 : 1));
        break;
    case 11:
        if (plan.color == QVariant(QColor(Qt::red)))
            plan.color = QStringLiteral("red");
        else
            plan.color = randomColor(random);
        break;
    case 12:
        plan.mirror = hertz(random.below(2) * 5);
        break;
    case 13:
        plan.label = random.of(kLabels);
        break;
    case 14:
        plan.type = random.of(kTypes);
        break;
    case 15:
        if (!plan.definitions.isEmpty())
            plan.definitions[random.below(plan.definitions.size())] = randomDefinition(random);
        break;
    case 17:
    case 18:
        // the same value as another type: equal to it from one side, or from both, or from none
        if (!plan.definitions.isEmpty()) {
            for (QVariant &value : plan.definitions[random.below(plan.definitions.size())]) {
                if (value.userType() == QMetaType::Int)
                    value = QStringLiteral("%1%2")
                                .arg(random.oneIn(2) ? QStringLiteral("0") : QString())
                                .arg(value.toInt());
                else if (value.toString().startsWith(QLatin1Char('0')))
                    value = value.toInt();
            }
        }
        break;
    case 16:
        plan.end = hertz(random.of(kEdges));
        break;
    }
}

AChannelInfo::FlatList stacked(AChannelInfo *top, int level)
{
    AChannelInfo::FlatList list{qMakePair(top, level)};
    QMultiMap<qint64, AChannelInfo *> children;
    for (int row = 0; row < top->childCount(); ++row)
        children.insert(top->child(row)->beginFrequency().intValue(AFrequency::Hz), top->child(row));
    QList<AChannelInfo *> placed;
    for (int current = level + 1; placed.size() < top->childCount() && current < level + 50; ++current) {
        AFrequency last;
        for (AChannelInfo *child : qAsConst(children)) {
            if (placed.contains(child) || child->beginFrequency() < last)
                continue;
            list.append(stacked(child, current));
            placed.append(child);
            last = child->endFrequency();
        }
    }
    return list;
}

QString qualifiedName(const AChannelInfo *node)
{
    QString name;
    for (; node; node = node->parent()) {
        if (node->data(AChannelInfo::ColumnProfileId).toString().startsWith(QLatin1String("default")))
            break;
        name.prepend(node->label() + QLatin1Char(' '));
    }
    return name.trimmed();
}

const AChannelInfo *findByName(AChannelInfo *top, const QString &name)
{
    if (top->label() == name || qualifiedName(top) == name)
        return top;
    for (int row = 0; row < top->childCount(); ++row) {
        if (const AChannelInfo *found = findByName(top->child(row), name))
            return found;
    }
    return nullptr;
}

const AChannelInfo *findByProfileId(AChannelInfo *top, const QString &id)
{
    if (top->data(AChannelInfo::ColumnProfileId).toString() == id)
        return top;
    for (int row = 0; row < top->childCount(); ++row) {
        if (const AChannelInfo *found = findByProfileId(top->child(row), id))
            return found;
    }
    return nullptr;
}

QByteArray describe(int round, AChannelInfo *left, AChannelInfo *right)
{
    return QStringLiteral("round %1\n%2\n-- and --\n%3")
        .arg(round)
        .arg(outline(left).join(QLatin1Char('\n')), outline(right).join(QLatin1Char('\n')))
        .toUtf8();
}

} // namespace

class TestAChannelInfoProperties : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void equalityFollowsItsRules_data();
    void equalityFollowsItsRules();
    void expansionFollowsItsRules();
    void stackingFollowsItsRules_data();
    void stackingFollowsItsRules();
    void searchFollowsItsRules();
};

void TestAChannelInfoProperties::equalityFollowsItsRules_data()
{
    QTest::addColumn<int>("changes");
    QTest::addColumn<int>("rounds");
    for (const int changes : {0, 1, 2, 3, 5})
        QTest::addRow("%d changes", changes) << changes << 1000;
    QTest::addRow("unrelated") << -1 << 500;
}

void TestAChannelInfoProperties::equalityFollowsItsRules()
{
    QFETCH(int, changes);
    QFETCH(int, rounds);
    Random random(unsigned(changes) + 10);
    int equal = 0;
    for (int round = 0; round < rounds; ++round) {
        const Plan left = randomPlan(random, round % 4);
        Plan right = changes < 0 ? randomPlan(random, round % 2) : left;
        for (int i = 0; i < changes; ++i)
            change(right, random);
        const Tree a(build(left));
        const Tree b(build(right));
        const QStringList before = outline(a.get()) + outline(b.get());
        const bool forth = plansEqual(left, right);
        const bool back = plansEqual(right, left);
        if ((*a == *b) != forth)
            QFAIL(describe(round, a.get(), b.get()) + "\nshould be " + (forth ? "equal" : "different"));
        if ((*b == *a) != back || (*b != *a) == back)
            QFAIL(describe(round, b.get(), a.get()) + "\nshould be " + (back ? "equal" : "different"));
        QCOMPARE(outline(a.get()) + outline(b.get()), before);
        equal += forth;
    }
    // the pairs are worth comparing
    if (changes == 0)
        QCOMPARE(equal, rounds);
    else if (changes > 0)
        QVERIFY2(equal > rounds / 10 && equal < rounds * 9 / 10, QByteArray::number(equal));
    else
        QVERIFY2(equal < rounds / 10, QByteArray::number(equal));
}

void TestAChannelInfoProperties::expansionFollowsItsRules()
{
    Random random(3);
    for (int round = 0; round < 2000; ++round) {
        Plan plan = randomPlan(random, 3);
        const Tree tree(build(plan));
        const bool clearExpanded = random.oneIn(2);
        const qint64 defined = tree->definedChannelCount();
        const int before = tree->channels(0).size();
        tree->processChannelDefinitions(true, clearExpanded);
        expand(plan, clearExpanded);
        QCOMPARE(outline(tree.get()), outline(Tree(build(plan)).get()));
        if (!clearExpanded)
            QCOMPARE(tree->channels(0).size() - before, int(defined));
    }
}

void TestAChannelInfoProperties::stackingFollowsItsRules_data()
{
    QTest::addColumn<int>("children");
    QTest::addColumn<int>("span");
    QTest::addColumn<int>("longest");
    QTest::addColumn<int>("rounds");
    QTest::newRow("few") << 8 << 12 << 8 << 2000;
    QTest::newRow("crowded at zero") << 12 << 3 << 3 << 1500;
    QTest::newRow("wide") << 60 << 1000 << 60 << 400;
    QTest::newRow("beyond 49 levels") << 120 << 100 << 400 << 200;
}

void TestAChannelInfoProperties::stackingFollowsItsRules()
{
    QFETCH(int, children);
    QFETCH(int, span);
    QFETCH(int, longest);
    QFETCH(int, rounds);
    Random random(4);
    const auto quarters = [](int value) { return AFrequency(QByteArray::number(value / 4.0, 'f', 2).constData()); };
    for (int round = 0; round < rounds; ++round) {
        const Tree root(node(nullptr, QStringLiteral("root")));
        QList<AChannelInfo *> nodes{root.get()};
        for (int i = random.below(children); i >= 0; --i) {
            AChannelInfo *parent = random.oneIn(4) ? random.of(nodes) : root.get();
            // in quarters of a hertz, now and then below zero, now and then ending before the begin
            const int begin = random.below(span * 4) - (random.oneIn(6) ? span * 2 : 0);
            const int end = begin + random.below(longest * 4) - (random.oneIn(6) ? longest * 3 : 0);
            auto *made = new AChannelInfo(parent, AChannelInfo::Channel, quarters(begin), quarters(end),
                                          QString::number(nodes.size()), false);
            parent->appendChild(made);
            nodes.append(made);
        }
        const int level = random.below(200) - 100;
        if (root->stackedChannels(level) != stacked(root.get(), level)) {
            QCOMPARE(listing(root->stackedChannels(level)), listing(stacked(root.get(), level)));
            QFAIL(outline(root.get()).join(QLatin1Char('\n')).toUtf8());
        }
    }
}

void TestAChannelInfoProperties::searchFollowsItsRules()
{
    const QList<QString> labels = {QString(),
                                   QString(),
                                   QStringLiteral(" "),
                                   QStringLiteral("a"),
                                   QStringLiteral("b"),
                                   QStringLiteral("a b"),
                                   QStringLiteral(" a"),
                                   QStringLiteral("b "),
                                   QStringLiteral("a  b"),
                                   QStringLiteral("\t"),
                                   QStringLiteral("\na\n"),
                                   QString(QChar(0xa0)),
                                   QStringLiteral("b") + QChar(0x2003),
                                   QStringLiteral("A")};
    const QList<QString> ids = {QStringLiteral("default"), QStringLiteral("default-b"), QStringLiteral("Default"),
                                QStringLiteral("fm"), QStringLiteral(" default")};
    Random random(5);
    int found = 0;
    for (int round = 0; round < 1500; ++round) {
        const Tree root(node(nullptr, random.of(labels)));
        QList<AChannelInfo *> nodes{root.get()};
        for (int i = random.below(25); i > 0; --i)
            nodes.append(node(random.oneIn(2) ? nodes.last() : random.of(nodes), random.of(labels)));
        for (AChannelInfo *each : qAsConst(nodes)) {
            if (random.oneIn(6))
                each->setData(AChannelInfo::ColumnProfileId, random.of(ids));
        }

        QStringList names{QString(), QStringLiteral(" "), QStringLiteral("none"), QStringLiteral("a b a")};
        for (int i = 0; i < 10; ++i) {
            const QString name = qualifiedName(random.of(nodes));
            // whole, with blanks more or less, and parts
            names << name << name + QLatin1Char(' ') << QLatin1Char(' ') + name << name.simplified()
                  << name.left(random.below(name.size() + 1)) << name.mid(random.below(name.size() + 1))
                  << name.toUpper() << random.of(labels);
            names << random.of(labels) + QLatin1Char(' ') + random.of(labels);
        }
        for (const QString &name : qAsConst(names)) {
            AChannelInfo *top = random.oneIn(2) ? root.get() : random.of(nodes);
            const AChannelInfo *expected = findByName(top, name);
            if (top->findByName(name) != expected)
                QFAIL(inspect(name).toUtf8() + '\n' + describe(round, root.get(), top));
            found += expected != nullptr;
        }
        for (AChannelInfo *each : qAsConst(nodes))
            QCOMPARE(each->name(false), qualifiedName(each));
        for (const QString &id : ids + QList<QString>{QString(), QStringLiteral("def")}) {
            AChannelInfo *top = random.oneIn(2) ? root.get() : random.of(nodes);
            QCOMPARE(top->findByProfileId(id), findByProfileId(top, id));
        }
    }
    QVERIFY(found > 10000);
}

QTEST_APPLESS_MAIN(TestAChannelInfoProperties)
#include "tst_achannelinfo_properties.moc"
