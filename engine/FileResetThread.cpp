#include "engine/FileResetThread.h"

#include "model/CFileTree.h"
#include "model/CProduct.h"

#include <QDir>
#include <QFileInfo>

FileResetThread::FileResetThread() : CFileWorkerThread(QStringLiteral("log_freset.txt")) {}

void FileResetThread::Init(CProduct* product, const QString& cycleFile, bool finishing)
{
    SetProduct(product);
    m_strCycleFile = cycleFile.isEmpty() ? QString() : QDir::cleanPath(cycleFile);
    m_bFinishing = finishing;
}

void FileResetThread::RunHere()
{
    m_bStopRequested = false;
    DoRun();
}

void FileResetThread::DoRun()
{
    m_log.WriteString(QStringLiteral("Run"), false);
    if (m_pProduct)
        ResetProductFiles();
    else
        m_walk.Error(QStringLiteral("no product to reset"));
    CFolderWalk::RunEnd();
}

bool FileResetThread::ResetProductFiles()
{
    m_walk.ResetErrors();
    const bool last =
        m_walk.ForEachTarget(m_pProduct->GetInstallPaths(),
                             [this](const QString& target, const QString&) { return ResetProductFilesSub(target); });
    // The cycle file last: until it is back the product still reads as installed, with a backup.
    if (!m_bStopRequested && RestoreCycleFile()) {
        for (const CInstallPath* entry : m_pProduct->GetInstallPaths())
            if (entry && !entry->strNewPath.isEmpty() && !m_bStopRequested)
                RemoveEmptiedBackups(entry->strNewPath);
    }
    m_bSuccess = last && m_walk.GetErrorCount() == 0 && !m_bStopRequested;
    return m_bSuccess;
}

bool FileResetThread::RestoreCycleFile()
{
    if (m_strCycleFile.isEmpty())
        return true;
    const QFileInfo cycle(m_strCycleFile);
    const QString backup =
        cycle.absolutePath() + QLatin1Char('/') + m_strBackupDirName + QLatin1Char('/') + cycle.fileName();
    const QFileInfo kept(backup);
    if (!kept.exists() && !kept.isSymLink())
        return true;
    if (cycle.isSymLink() || (cycle.isDir() && !cycle.isSymLink())) {
        m_walk.Error(m_strCycleFile + QStringLiteral(" is a link or a folder; its backup is kept"));
        return false;
    }
    QString error;
    CFolderWalk::BeforeMove();
    if (!CFolderWalk::MoveFile(backup, m_strCycleFile, true, &error)) {
        m_walk.Error(QStringLiteral("cannot put back ") + m_strCycleFile + QStringLiteral(": ") + error);
        return false;
    }
    return true;
}

// The backup folders that were emptied go; one still holding a file stays. Normally the walk
// follows the backup folders down as the restore did; a finishing run looks below every folder.
void FileResetThread::RemoveEmptiedBackups(const QString& target)
{
    m_walk.Walk(CFolderWalk::ChildrenOfSecond, m_strBackupDirName, target + QLatin1Char('/') + m_strBackupDirName,
                target, [this](const QString& backup, const QString& folder) {
                    const QFileInfo info(backup);
                    if (!info.isDir() || info.isSymLink() || !QFileInfo(folder).isDir())
                        return m_bFinishing && QFileInfo(folder).isDir();
                    if (!CFileTree::plainFiles(backup).isEmpty() || !CFileTree::links(backup).isEmpty()) {
                        m_walk.Error(QStringLiteral("backup folder kept, not everything could be put back: ") + backup);
                        return true;
                    }
                    if (!removeDir(backup))
                        m_walk.Warning(QStringLiteral("backup folder not completely removed: ") + backup);
                    return true;
                });
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
                        if (!m_strCycleFile.isEmpty() && QDir::cleanPath(targetFile) == m_strCycleFile)
                            continue;
                        const QFileInfo current(targetFile);
                        // A link put there after the install is not replaced; the original waits in
                        // the backup.
                        if (current.isSymLink()) {
                            m_log.WriteString(CFolderWalk::LinkWarning(targetFile), false);
                            continue;
                        }
                        if (current.isDir()) {
                            m_walk.Error(targetFile + QStringLiteral(" is a folder; its backup file is kept"));
                            continue;
                        }
                        QString error;
                        // Replaces the installed file in one step, so a failure leaves both as they were.
                        CFolderWalk::BeforeMove();
                        if (!CFolderWalk::MoveFile(file.absoluteFilePath(), targetFile, true, &error)) {
                            m_walk.Error(QStringLiteral("cannot put back ") + targetFile + QStringLiteral(": ") +
                                         error);
                        }
                    }

                    // The folder itself goes only once the cycle file is back, and only when it is
                    // empty (RemoveEmptiedBackups), which also reports one left holding a file.
                    if (stopped)
                        m_walk.Warning(QStringLiteral("reset stopped; backup folder kept: ") + backup);
                    return true;
                });
}
