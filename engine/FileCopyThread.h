#pragma once

#include "engine/CFileWorkerThread.h"

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

class CProduct;

// Moves one product's unpacked dataset into its install targets. Every file it replaces first goes
// into the backup folder "QMK_" + dataset + "_back" of the file's own folder; a file whose backup
// cannot be made stays where it is and the new one is left out, so an install never loses data.
class FileCopyThread : public CFileWorkerThread
{
    Q_OBJECT

public:
    FileCopyThread();

    // Prepares a run; call only while the thread is not running. `runId` marks the backup folders
    // this run makes; `cycleFile` is moved last of all, so that the product reads the new cycle
    // only once everything else is in place.
    void Init(CProduct* product, const QString& sourceRoot, bool makeBackups, const QString& runId = QString(),
              const QString& cycleFile = QString());
    // Backup folders of earlier runs that this run moved aside; they go once the run is complete.
    QStringList GetKeptBackups() const { return m_keptBackups; }
    // The marks this run left in the backup folders it made; they mean nothing once its record is gone.
    QStringList GetRunMarks() const;

    bool MoveProductFiles();
    bool MoveProductFilesSub(QString target, QString sub);
    void copyFolder(const QString& source, const QString& target);
    QString GetBackupDirPath(QString target);

signals:
    // The size of the unpacked tree, sent before the first file moves.
    void SignalTotalBytes(quint64 total);
    void SignalFileWritten(quint64 bytes);

protected:
    // Success: at least one file was moved and nothing failed.
    void DoRun() override;

private:
    // Puts one file of the unpacked tree in place; false when it had to be left out.
    bool moveOneFile(const QString& sourceFile, const QString& targetFile, const QString& backupFolder);
    void copySkyforgeNavData(const QString& target);

    bool m_bMakeBackups = true;
    QString m_strSourceRoot;
    QString m_strVersionMarker;
    quint64 m_nBytesWritten = 0;
    bool m_bCycleUnknown = false;
    bool m_bBackupWritten = false;
    // Backup folders made in this run: a folder visited twice keeps its backup.
    QSet<QString> m_createdBackupDirs;
    QString m_strRunId;
    QString m_strCycleFile;
    // The cycle file's move, held back until every other file is in place.
    struct Deferred
    {
        QString source;
        QString target;
        QString backupFolder;
        qint64 size = 0;
    };
    QList<Deferred> m_deferred;
    bool m_bBackupPromised = false;
    QStringList m_keptBackups;
};
