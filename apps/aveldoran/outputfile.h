#pragma once

#include <QtCore/QString>

#include <functional>

class QIODevice;

// Files that the program writes, whole or not at all: until the new one is complete, an old one of the name stays, and
// it stays if the new one can't be written. What is no regular file is not replaced. False if it can't be written,
// with "FILE: can't be written: REASON".

bool writeOutputFile(const QString &fileName, const QByteArray &content, QString *errorText);

// `write` gives the content to an unbuffered device, and false if that took less.
bool writeOutputFile(const QString &fileName, const std::function<bool(QIODevice *)> &write, QString *errorText);
