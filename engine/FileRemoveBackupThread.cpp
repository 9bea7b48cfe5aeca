#include "engine/FileRemoveBackupThread.h"

#include "model/CFileTree.h"
#include "model/CProduct.h"

#include <QFileInfo>

FileRemoveBackupThread::FileRemoveBackupThread() : CFileWorkerThread(QStringLiteral("log_fremovebackup.txt")) {}

void FileRemoveBackupThread::Init(CProduct* product)
{
    SetProduct(product);
}

void FileRemoveBackupThread::DoRun()
{
    m_log.WriteString(QStringLiteral("Run"), false);
    if (m_pProduct)
        RemoveBackupProductFiles();
    else
        m_walk.Error(QStringLiteral("no product to remove backups of"));
}

bool FileRemoveBackupThread::RemoveBackupProductFiles()
{
    m_walk.ResetErrors();
    const bool last =
        m_walk.ForEachTarget(m_pProduct->GetInstallPaths(), [this](const QString& target, const QString&) {
            return RemoveBackupProductFilesSub(target);
        });
    m_bSuccess = last && m_walk.GetErrorCount() == 0 && !m_bStopRequested;
    return m_bSuccess;
}

bool FileRemoveBackupThread::RemoveBackupProductFilesSub(QString target)
{
    const int errorsBefore = m_walk.GetErrorCount();
    RemoveBackupFolder(target + QLatin1Char('/') + m_strBackupDirName, target);
    return m_walk.GetErrorCount() == errorsBefore;
}

void FileRemoveBackupThread::RemoveBackupFolder(const QString& backupFolder, const QString& targetFolder)
{
    m_walk.Walk(CFolderWalk::ChildrenOfSecond, m_strBackupDirName, backupFolder, targetFolder,
                [this](const QString& backup, const QString& target) {
                    // Without a backup here the folders below are not searched either (kept so).
                    if (!QFileInfo(backup).isDir() || !QFileInfo(target).isDir())
                        return false;
                    if (!removeDir(backup))
                        m_walk.Error(QStringLiteral("cannot delete backup folder ") + backup);
                    return true;
                });
}
