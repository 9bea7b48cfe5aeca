#pragma once

#include "engine/CFileWorkerThread.h"

#include <QString>

class CProduct;

// Deletes the backup folders that installs left in a product's targets; nothing outside them.
class FileRemoveBackupThread : public CFileWorkerThread
{
    Q_OBJECT

public:
    FileRemoveBackupThread();

    // Prepares a run; call only while the thread is not running.
    void Init(CProduct* product);

    bool RemoveBackupProductFiles();
    bool RemoveBackupProductFilesSub(QString target);
    void RemoveBackupFolder(const QString& backupFolder, const QString& targetFolder);

protected:
    // Success is the result of the last install target, and false when a backup folder could not be deleted.
    void DoRun() override;
};
