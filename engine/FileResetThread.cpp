#include "engine/FileResetThread.h"

#include "model/CFileTree.h"
#include "model/CProduct.h"

#include <QFileInfo>

FileResetThread::FileResetThread() : CFileWorkerThread(QStringLiteral("log_freset.txt")) {}

void FileResetThread::Init(CProduct* product)
{
    SetProduct(product);
}

void FileResetThread::DoRun()
{
    m_log.WriteString(QStringLiteral("Run"), false);
    if (m_pProduct)
        ResetProductFiles();
    else
        m_walk.Error(QStringLiteral("no product to reset"));
}

bool FileResetThread::ResetProductFiles()
{
    m_walk.ResetErrors();
    const bool last =
        m_walk.ForEachTarget(m_pProduct->GetInstallPaths(),
                             [this](const QString& target, const QString&) { return ResetProductFilesSub(target); });
    m_bSuccess = last && m_walk.GetErrorCount() == 0 && !m_bStopRequested;
    return m_bSuccess;
}

bool FileResetThread::ResetProductFilesSub(QString target)
{
    const int errorsBefore = m_walk.GetErrorCount();
    resetFolder(target + QLatin1Char('/') + m_strBackupDirName, target);
    return m_walk.GetErrorCount() == errorsBefore;
}

void FileResetThread::resetFolder(const QString& backupFolder, const QString& targetFolder)
{
    m_walk.Walk(CFolderWalk::ChildrenOfSecond, m_strBackupDirName, backupFolder, targetFolder,
                [this](const QString& backup, const QString& target) {
                    // Without a backup here the folders below are not searched either (kept so).
                    if (!QFileInfo(backup).isDir() || !QFileInfo(target).isDir())
                        return false;

                    bool keepBackup = false;
                    bool stopped = false;
                    // Links in the backup are entries an install moved aside; they go back as links.
                    QFileInfoList entries = CFileTree::plainFiles(backup);
                    entries += CFileTree::links(backup);
                    for (const QFileInfo& file : entries) {
                        // The backup folder stays whole until every file of it is back.
                        if (m_bStopRequested) {
                            stopped = true;
                            break;
                        }
                        const QString targetFile = target + QLatin1Char('/') + file.fileName();
                        const QFileInfo current(targetFile);
                        // A link put there after the install is not replaced; the original waits in
                        // the backup.
                        if (current.isSymLink()) {
                            m_log.WriteString(CFolderWalk::LinkWarning(targetFile), false);
                            keepBackup = true;
                            continue;
                        }
                        if (current.isDir()) {
                            m_walk.Error(targetFile + QStringLiteral(" is a folder; its backup file is kept"));
                            keepBackup = true;
                            continue;
                        }
                        QString error;
                        // Replaces the installed file in one step, so a failure leaves both as they were.
                        if (!CFolderWalk::MoveFile(file.absoluteFilePath(), targetFile, true, &error)) {
                            m_walk.Error(QStringLiteral("cannot put back ") + targetFile + QStringLiteral(": ") +
                                         error);
                            keepBackup = true;
                        }
                    }

                    if (stopped)
                        m_walk.Warning(QStringLiteral("reset stopped; backup folder kept: ") + backup);
                    else if (keepBackup)
                        m_walk.Error(QStringLiteral("backup folder kept, not everything could be put back: ") + backup);
                    else if (!removeDir(backup))
                        m_walk.Warning(QStringLiteral("backup folder not completely removed: ") + backup);
                    return true;
                });
}
