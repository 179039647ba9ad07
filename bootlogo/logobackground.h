#pragma once

class QBitmap;
class QString;

// Private to the library.

// The picture in a file of any kind that Qt reads. Null if there is none, and if it has more than 16,777,216 pixels,
// which is found out before they are decoded.
QBitmap readLogoBackground(const QString &fileName);
