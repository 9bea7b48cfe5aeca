#pragma once

#include "app/CMyLog.h"
#include "engine/CFolderWalk.h"

#include <QString>
#include <QThread>

#include <atomic>

class CProduct;

// Deletes the backup folders that installs left in a product's targets; nothing outside them.
class FileRemoveBackupThread : public QThread
{
    Q_OBJECT

public:
    FileRemoveBackupThread();

    // Prepares a run; call only while the thread is not running.
    void Init(CProduct* product);
    // The result of the last install target, and false when a backup folder could not be deleted.
    bool GetSuccess() const { return m_bSuccess; }
    void RequestStop() { m_bStopRequested = true; }

    bool RemoveBackupProductFiles();
    bool RemoveBackupProductFilesSub(QString target);
    void RemoveBackupFolder(const QString& backupFolder, const QString& targetFolder);
    static bool removeDir(const QString& path);

signals:
    void SignalFinished();
    void terminated();

protected:
    void run() override;

private:
    bool m_bSuccess = false;
    // Set as the last step of run(); a terminated run never gets there.
    bool m_bRunDone = false;
    std::atomic_bool m_bStopRequested{false};
    CProduct* m_pProduct = nullptr;
    CMyLog m_log;
    QString m_strBackupDirName;
    CFolderWalk m_walk;
};
