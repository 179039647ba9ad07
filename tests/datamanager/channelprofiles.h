#pragma once

#include "channel/achannelinfo.h"
#include "channel/channeltree.h"
#include "registryfixture.h"

// What the tests of the registry's channel tree share: profiles with channels, and how a node names its profile.
namespace registrytest {

using channeltree::megahertz;

inline QString profileId(const AChannelInfo *node)
{
    return node ? node->data(AChannelInfo::ColumnProfileId).toString() : QStringLiteral("none");
}

inline QString channels(const QString &ranges)
{
    return QStringLiteral("<channels>") + ranges + QStringLiteral("</channels>");
}

inline QString range(const QString &label, const QString &inner = {})
{
    return QStringLiteral("<range label=\"") + label + QStringLiteral("\"><begin>110</begin><end>120</end>") + inner +
           QStringLiteral("</range>");
}

} // namespace registrytest
