#pragma once

#include <channel/achannelinfo.h>

#include <QtCore/QString>

// A channel plan as a document that AChannelInfo::processXmlElement reads: a "Range" that only holds the others.

QString xmlBegin();
// With all below it, indented as a child of the document element. Adds to `readable` how many ranges a reader gets of
// it.
QString rangeAsXml(const AChannelInfo &range, int *readable);
QString xmlEnd();
