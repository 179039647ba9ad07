#include "core/atriggeraction.h"

#include <QtTest/QtTest>

#include <utility>

namespace {

// Translates every text of the context to itself in brackets.
class BracketTranslator : public QTranslator
{
    Q_OBJECT

public:
    QString translate(const char *context, const char *sourceText, const char *, int) const override
    {
        return qstrcmp(context, "ATriggerAction") == 0 ? QLatin1Char('[') + QLatin1String(sourceText) + QLatin1Char(']')
                                                       : QString();
    }
    bool isEmpty() const override { return false; }
};

} // namespace

class TestATriggerAction : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theTypesAreNumbered();
    void aDefaultActionDoesNothing();
    void theSettersSet();
    void copiesAreIndependent();
    void equalityComparesTypeAndText();
    void valuesOutsideTheTypesAreHeld();
    void everyTypeHasANameAtItsPosition();
    void theNamesAreTranslated();
    void travelsInAVariant();
};

void TestATriggerAction::theTypesAreNumbered()
{
    QCOMPARE(int(NoTriggerAction), 0);
    QCOMPARE(int(ShowMessageAction), 1);
    QCOMPARE(int(RunCommandAction), 2);
    QCOMPARE(int(PlayAudioAction), 3);
    QCOMPARE(int(TakeScreenshotAction), 4);
}

void TestATriggerAction::aDefaultActionDoesNothing()
{
    const ATriggerAction action;
    QCOMPARE(action.type(), NoTriggerAction);
    QVERIFY(action.data().isEmpty());
}

void TestATriggerAction::theSettersSet()
{
    ATriggerAction action;
    action.setType(RunCommandAction);
    action.setData(QStringLiteral("beep \"%1\""));
    QCOMPARE(action.type(), RunCommandAction);
    QCOMPARE(action.data(), QStringLiteral("beep \"%1\""));
    action.setType(NoTriggerAction);
    QCOMPARE(action.data(), QStringLiteral("beep \"%1\""));
    action.setData(QString());
    QCOMPARE(action, ATriggerAction());
}

void TestATriggerAction::copiesAreIndependent()
{
    ATriggerAction action;
    action.setType(ShowMessageAction);
    action.setData(QStringLiteral("first"));
    ATriggerAction copy = action;
    QCOMPARE(copy, action);
    copy.setData(QStringLiteral("second"));
    copy.setType(PlayAudioAction);
    QCOMPARE(action.data(), QStringLiteral("first"));
    QCOMPARE(action.type(), ShowMessageAction);

    ATriggerAction assigned;
    assigned = copy;
    action = std::move(copy);
    QCOMPARE(assigned, action);
    const ATriggerAction &itself = assigned;
    assigned = itself;
    QCOMPARE(assigned, action);

    ATriggerAction other;
    other.swap(assigned);
    QCOMPARE(assigned, ATriggerAction());
    QCOMPARE(other, action);
}

void TestATriggerAction::equalityComparesTypeAndText()
{
    const auto make = [](TriggerActionType type, const char *text) {
        ATriggerAction action;
        action.setType(type);
        action.setData(QString::fromLatin1(text));
        return action;
    };
    QVERIFY(make(ShowMessageAction, "a") == make(ShowMessageAction, "a"));
    QVERIFY(!(make(ShowMessageAction, "a") != make(ShowMessageAction, "a")));
    QVERIFY(make(ShowMessageAction, "a") != make(ShowMessageAction, "b"));
    QVERIFY(make(ShowMessageAction, "a") != make(RunCommandAction, "a"));
    QVERIFY(!(make(ShowMessageAction, "a") == make(RunCommandAction, "a")));
    const QList<ATriggerAction> actions = {make(ShowMessageAction, "a"), make(RunCommandAction, "b")};
    QCOMPARE(actions.indexOf(make(RunCommandAction, "b")), 1);
}

void TestATriggerAction::valuesOutsideTheTypesAreHeld()
{
    ATriggerAction action;
    for (int type : {5, 1000, -1}) {
        action.setType(static_cast<TriggerActionType>(type));
        QCOMPARE(int(action.type()), type);
    }
}

void TestATriggerAction::everyTypeHasANameAtItsPosition()
{
    QStringList names = ATriggerAction::actionNames();
    QCOMPARE(names, QStringList({QStringLiteral("None"), QStringLiteral("Show Message"), QStringLiteral("Run Command"),
                                 QStringLiteral("Play Audio File"), QStringLiteral("Take Screenshot")}));
    QCOMPARE(names.at(PlayAudioAction), QStringLiteral("Play Audio File"));
    QCOMPARE(names.at(TakeScreenshotAction), QStringLiteral("Take Screenshot"));
}

void TestATriggerAction::theNamesAreTranslated()
{
    BracketTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    const QStringList names = ATriggerAction::actionNames();
    QVERIFY(QCoreApplication::removeTranslator(&translator));
    QCOMPARE(names.size(), 5);
    for (const QString &name : names)
        QVERIFY2(name.startsWith(QLatin1Char('[')), qPrintable(name));
    QCOMPARE(ATriggerAction::actionNames().first(), QStringLiteral("None"));
}

void TestATriggerAction::travelsInAVariant()
{
    ATriggerAction action;
    action.setType(TakeScreenshotAction);
    action.setData(QStringLiteral("/tmp/shot.png"));
    QCOMPARE(QVariant::fromValue(action).value<ATriggerAction>(), action);
    QCOMPARE(QVariant::fromValue(ShowMessageAction).value<TriggerActionType>(), ShowMessageAction);
}

QTEST_GUILESS_MAIN(TestATriggerAction)
#include "tst_atriggeraction.moc"
