#pragma once

#include <QString>

// Where the program's files are. What ships with the program (the catalogue, the manual) is read
// from the program folder. What the user's runs make (settings, logs, downloads) stays beside the
// program only in a portable install: a writable program folder that already holds its own
// settings or logs. Otherwise it goes to the platform's folder for application data, so the
// program also runs from a folder the user cannot write (a package, a bundle in /Applications).
class CAppPaths
{
public:
    // The folder of what ships: Application::st_strAppPath, or the Resources folder beside it when
    // the program runs from a macOS application bundle.
    static QString ShippedFolder();
    static QString CatalogueFile();

    // Decided once for each program folder, so that a run never moves half-way.
    static bool IsPortable();
    // The program folder when portable, else the platform's application data folder.
    static QString DataFolder();
    static QString SettingsFile();
    static QString LogFolder();
    static QString DownloadFolder();
};
