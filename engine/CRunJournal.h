#pragma once

#include <QString>
#include <QStringList>

class CProduct;

// The record of one product's install or reset while it runs. It is written, and flushed to disk,
// before the first file moves, and removed only once the run is complete; a record found later
// means the run was cut off, and says enough to finish or undo it.
class CRunJournal
{
public:
    enum class ERun
    {
        Install,
        Reset
    };

    struct Entry
    {
        ERun run = ERun::Install;
        QString id;      // names the backup folders this run made (".qmk_run_" + id inside them)
        QString product; // for the reader of the report
        QString dataset;
        QString fromCycle; // installed before the run ("cycle revision")
        QString toCycle;   // installed once the run is complete
        bool backups = true;
    };

    // The record's file: "QMK_" + dataset + "_journal.txt" in the product's cycle folder, or in its
    // first install target when it has none. Empty when neither is known. Resolves the product's
    // cycle folder.
    static QString PathFor(CProduct* product);
    // Every place a record of the product may have been written to (its cycle folder and each
    // install target), whether or not the folder exists now.
    static QStringList Candidates(CProduct* product);
    // Written to a temporary name, flushed to disk and renamed over the record in one step.
    static bool Write(const QString& path, const Entry& entry, QString* error);
    static bool Read(const QString& path, Entry& entry);
    static bool Remove(const QString& path);
    static QString NewId();
    // "cycle revision" as the product's cycle file, or its backup, reads now.
    static QString InstalledCycle(CProduct* product);
    static QString BackedUpCycle(CProduct* product);
    // The file that marks a backup folder as made by the run with this id.
    static QString RunFileName(const QString& id);
    // Where a backup of an earlier run waits while a new one is made beside it.
    static QString KeptBackupName(const QString& backupDirName);
};
