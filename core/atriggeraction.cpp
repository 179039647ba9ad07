#include "core/atriggeraction.h"

#include <QtCore/QSharedData>

class ATriggerActionData : public QSharedData
{
public:
    TriggerActionType type = NoTriggerAction;
    QString text;
};

ATriggerAction::ATriggerAction()
    : d(new ATriggerActionData)
{}

ATriggerAction::ATriggerAction(const ATriggerAction &other) = default;
ATriggerAction &ATriggerAction::operator=(const ATriggerAction &other) = default;
ATriggerAction::~ATriggerAction() = default;

TriggerActionType ATriggerAction::type() const
{
    return d->type;
}

void ATriggerAction::setType(TriggerActionType type)
{
    d->type = type;
}

QString ATriggerAction::data() const
{
    return d->text;
}

void ATriggerAction::setData(const QString &data)
{
    d->text = data;
}

QStringList ATriggerAction::actionNames()
{
    return {tr("None"), tr("Show Message"), tr("Run Command"), tr("Play Audio File"), tr("Take Screenshot")};
}

bool ATriggerAction::operator==(const ATriggerAction &other) const
{
    return d == other.d || (d->type == other.d->type && d->text == other.d->text);
}
