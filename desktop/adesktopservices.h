#pragma once

#include "core/aveldoranexport.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

class QWidget;

// Desktop chores that every application of the suite has: standard directories, file dialogs that remember where the
// user was for each type of file, and starting other programs. What is remembered lies in ASettings. To be called on
// the thread of the user interface.
class AVELDORAN_DATA_EXPORT ADesktopServices
{
public:
    // The same values as in QStandardPaths::StandardLocation.
    enum StandardLocation
    {
        DesktopLocation = 0,
        DocumentsLocation = 1,
        FontsLocation = 2,
        ApplicationsLocation = 3,
        MusicLocation = 4,
        MoviesLocation = 5,
        PicturesLocation = 6,
        TempLocation = 7,
        HomeLocation = 8,
        DataLocation = 9,
        AppLocalDataLocation = DataLocation,
        CacheLocation = 10,
        GenericDataLocation = 11,
        RuntimeLocation = 12,
        ConfigLocation = 13,
        DownloadLocation = 14,
        GenericCacheLocation = 15,
        GenericConfigLocation = 16,
        AppDataLocation = 17,
        AppConfigLocation = 18
    };

    // The first directory of that kind that exists, else the first one; empty for a kind that has none.
    static QString storageLocation(ADesktopServices::StandardLocation location);

    // The directory in which a dialog for files of that filter (in Qt's form, "XML (*.xml *.lim);;All (*)") begins: the
    // remembered one of the first extension of its first part. If none is remembered, `defaultPath`, or the directory
    // of documents if that is empty. A first extension of more than 4096 characters, its "*." counted, has none.
    static QString getFilterLocation(const QString &filter, const QString &defaultPath);

    // Asks for the name of a file to open (one that exists) or to save to. `path` proposes one, a name or a directory
    // or both; without a "/" in it, the dialog begins where the user last was with files of the filter's type. The
    // directory of what is chosen is remembered for the extension of what is chosen. `selectedFilter` may be null.
    // Empty if the user cancels. No extension is added.
    static QString getFilename(bool open, QWidget *parent, const QString &caption, const QString &path,
                               const QString &filter, QString *selectedFilter);

    // Starts a program of the suite by way of the program "ToolWrapper" in the directory of the running one, which gets
    // `name` as its first argument. Not waited for, and a failure is not told.
    static void executeAApplication(const QString &name, const QStringList &arguments);

    // Opens a file as the desktop does; with arguments by "xdg-open FILE --args ARGUMENTS". A failure is not told.
    static void shellExecute(const QString &file, const QStringList &arguments);
};
