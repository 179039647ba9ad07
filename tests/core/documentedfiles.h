#pragma once

#include <QtCore/QFile>
#include <QtCore/QList>

// The example files below a heading of a page in docs/, up to the next heading.
inline QList<QByteArray> documentedFiles(const QByteArray &heading, const char *page = "formats.md")
{
    QFile document(QStringLiteral(AVELDORAN_EXAMPLES_DIR "/../docs/") + QLatin1String(page));
    if (!document.open(QIODevice::ReadOnly))
        return {};
    QList<QByteArray> files;
    bool isBelowHeading = false;
    bool isInFile = false;
    for (QByteArray line = document.readLine(); !line.isEmpty(); line = document.readLine()) {
        if (line.startsWith("```")) {
            isInFile = !isInFile;
            if (isInFile && isBelowHeading)
                files.append(QByteArray());
        } else if (isInFile && isBelowHeading) {
            files.last() += line;
        } else if (!isInFile && line.startsWith('#')) {
            isBelowHeading = line.trimmed().endsWith(heading);
        }
    }
    return files;
}
