#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

// Replaces the content of a file in one step: after a crash, a full disk or any other failure the old file is whole.
// False on failure, with the reason, which doesn't name the file, in *errorText where that is not null. Private to
// core/.
bool writeFileAtomically(const QString &fileName, const QByteArray &content, QString *errorText = nullptr);

// Whether an atomic write may take the place of what stands at `fileName`: it would turn a device or a pipe into a
// plain file.
bool isReplaceable(const QString &fileName);
