#pragma once

#include "app/CMyLog.h"
#include "engine/CFolderWalk.h"

#include <QString>
#include <QThread>

#include <atomic>

class CProduct;

// Puts back the files an install replaced: walks a product's targets and moves the content of
// every backup folder into its own folder, then deletes that backup folder. A backup folder whose
// files could not all be put back is kept.
class FileResetThread : public QThread
{
    Q_OBJECT

public:
    FileResetThread();

    // Prepares a run; call only while the thread is not running.
    void Init(CProduct* product);
    // The result of the last install target, and false when any file could not be put back.
    bool GetSuccess() const { return m_bSuccess; }
    void RequestStop() { m_bStopRequested = true; }

    bool ResetProductFiles();
    bool ResetProductFilesSub(QString target);
    void resetFolder(const QString& backupFolder, const QString& targetFolder);
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
