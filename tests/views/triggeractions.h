#pragma once

#include <views/atriggeractionlistmodel.h>

#include <QtCore/QStringList>

// Lists of trigger actions, written as texts such as "1:Overload".
namespace triggeractions {

inline ATriggerAction action(int type, const QString &text)
{
    ATriggerAction result;
    result.setType(static_cast<TriggerActionType>(type));
    result.setData(text);
    return result;
}

inline QList<ATriggerAction> threeActions()
{
    return {action(1, QStringLiteral("Overload")), action(2, QStringLiteral("beep -f 440")),
            action(4, QStringLiteral("/tmp/a.png"))};
}

inline QStringList texts(const QList<ATriggerAction> &actions)
{
    QStringList result;
    for (const ATriggerAction &each : actions)
        result << QString::number(each.type()) + QLatin1Char(':') + each.data();
    return result;
}

inline QStringList shownTexts(const QAbstractItemModel &model)
{
    QStringList result;
    for (int row = 0; row < model.rowCount(); ++row)
        result << model.index(row, 0).data().toString() + QLatin1Char('|') + model.index(row, 1).data().toString();
    return result;
}

// Without the habits of each index that QAbstractItemModelTester objects to, so that it can hold all others. It also
// objects to removals past the end, which the tests under it leave out.
class OrdinaryModel : public ATriggerActionListModel
{
public:
    using ATriggerActionListModel::ATriggerActionListModel;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : ATriggerActionListModel::rowCount(parent);
    }
    Qt::ItemFlags flags(const QModelIndex &index) const override
    {
        return index.isValid() ? ATriggerActionListModel::flags(index) : Qt::NoItemFlags;
    }
};

} // namespace triggeractions
