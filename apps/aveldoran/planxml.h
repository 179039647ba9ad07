#pragma once

#include <channel/achannelinfo.h>

#include <QtCore/QString>

// A channel plan as a document that AChannelInfo::processXmlElement reads: a "Range" that only holds the others.

QString xmlBegin();
QString rangeAsXml(const AChannelInfo &range); // with all below it, indented as a child of the document element
QString xmlEnd();
