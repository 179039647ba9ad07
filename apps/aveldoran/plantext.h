#pragma once

#include <channel/achannelinfo.h>

#include <QtCore/QJsonObject>
#include <QtCore/QString>

// One range of a channel plan as a reader or another program takes it.

// One line, and one more for each channel definition, indented by `depth`.
QString rangeAsText(const AChannelInfo &range, int depth);

// Frequencies in hertz; what a range doesn't have is left out.
QJsonObject rangeAsJson(const AChannelInfo &range, int depth);
