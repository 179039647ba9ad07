#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

// Replaces the content of a file in one step: after a crash, a full disk or any other failure the old file is whole.
// False on failure, with the reason in *errorText where that is not null. Private to libaveldoran.
bool writeFileAtomically(const QString &fileName, const QByteArray &content, QString *errorText = nullptr);
