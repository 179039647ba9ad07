#pragma once

#include "core/aveldoranexport.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QMetaType>
#include <QtCore/QSharedDataPointer>
#include <QtCore/QString>
#include <QtCore/QStringList>

// What a trigger action does, and what its text then is. Other values may be held, but mean nothing.
enum TriggerActionType : int
{
    NoTriggerAction = 0,
    ShowMessageAction = 1,   // the message
    RunCommandAction = 2,    // the command line
    PlayAudioAction = 3,     // the audio file
    TakeScreenshotAction = 4 // the screenshot's target
};

class ATriggerActionData;

// What to do when a measurement condition fires: a type and one text. It describes the action; applications run it.
// A value with shared data.
class AVELDORAN_CORE_EXPORT ATriggerAction
{
    Q_DECLARE_TR_FUNCTIONS(ATriggerAction)

public:
    ATriggerAction(); // NoTriggerAction, without a text
    ATriggerAction(const ATriggerAction &other);
    ATriggerAction &operator=(const ATriggerAction &other);
    ~ATriggerAction();

    // Exchanges two actions at the cost of a pointer.
    void swap(ATriggerAction &other) noexcept { d.swap(other.d); }

    // What to do. Changing it leaves the text.
    TriggerActionType type() const;
    void setType(TriggerActionType type);

    // The text, which the type gives a meaning.
    QString data() const;
    void setData(const QString &data);

    // The translated names of the types, each at the position that is its type; no two are equal.
    static QStringList actionNames();

    // Equal type and text.
    bool operator==(const ATriggerAction &other) const;
    bool operator!=(const ATriggerAction &other) const { return !(*this == other); }

private:
    QSharedDataPointer<ATriggerActionData> d;
};

Q_DECLARE_SHARED(ATriggerAction)
Q_DECLARE_METATYPE(ATriggerAction)
Q_DECLARE_METATYPE(TriggerActionType)
