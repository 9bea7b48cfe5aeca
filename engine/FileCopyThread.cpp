#include "engine/FileCopyThread.h"

#include "model/CFileTree.h"
#include "model/CProduct.h"

#include <QDir>
#include <QFileInfo>

FileCopyThread::FileCopyThread() : CFileWorkerThread(QStringLiteral("log_fcopy.txt")) {}

void FileCopyThread::Init(CProduct* product, const QString& sourceRoot, bool makeBackups)
{
    SetProduct(product);
    m_nBytesWritten = 0;
    m_bBackupWritten = false;
    m_createdBackupDirs.clear();
    m_backedUpFiles.clear();
    m_walk.ResetErrors();

    if (product) {
        QString cycle = product->GetCycleVersion();
        // Never cleared once set: it carries over to later runs of this object, kept so.
        if (cycle.isEmpty()) {
            m_bCycleUnknown = true;
            cycle = QStringLiteral("unknown");
        }
        m_strVersionMarker = QStringLiteral("_V_") + cycle + QStringLiteral("_R_") + product->GetRevision();
    }
    m_bMakeBackups = makeBackups;
    m_strSourceRoot = sourceRoot;
}

void FileCopyThread::DoRun()
{
    m_log.WriteString(QStringLiteral("Run"), false);
    if (!m_pProduct) {
        m_walk.Error(QStringLiteral("no product to install"));
        m_bSuccess = false;
        return;
    }
    MoveProductFiles();
    if (m_bBackupWritten && m_bCycleUnknown) {
        QString problem;
        m_pProduct->WriteUnknownBackupCycleInfoFile(&problem);
        if (!problem.isEmpty())
            m_walk.Warning(problem);
    }
}

bool FileCopyThread::MoveProductFiles()
{
    m_walk.ForEachTarget(m_pProduct->GetInstallPaths(), [this](const QString& target, const QString& sub) {
        MoveProductFilesSub(target, sub);
        return true;
    });
    // A file left out or a backup that could not be made fails the product.
    if (m_walk.GetErrorCount() > 0)
        m_bSuccess = false;
    if (m_bStopRequested) {
        m_walk.Warning(QStringLiteral("install stopped before it was complete"));
        m_bSuccess = false;
    }
    return m_bSuccess;
}

bool FileCopyThread::MoveProductFilesSub(QString target, QString sub)
{
    // The sub-path starts with its own separator.
    const QString source = m_strSourceRoot + sub;
    if (!QFileInfo(source).isDir()) {
        m_walk.Warning(QStringLiteral("source folder not found: ") + source);
        return false;
    }
    if (!CFolderWalk::StaysInside(m_strSourceRoot, source)) {
        m_walk.Error(QStringLiteral("source folder outside the unpacked tree or behind a symbolic link: ") + source);
        return false;
    }
    copyFolder(source, target);
    return true;
}

void FileCopyThread::copyFolder(const QString& source, const QString& target)
{
    m_walk.Walk(CFolderWalk::ChildrenOfFirst, QString(), source, target,
                [this, &target](const QString& sourceFolder, const QString& targetFolder) {
                    // An archive folder of the backup's name would be poured into the backup itself.
                    if (targetFolder != target && QFileInfo(targetFolder).fileName() == m_strBackupDirName) {
                        m_walk.Warning(QStringLiteral("folder of the backup's name skipped: ") + sourceFolder);
                        return false;
                    }
                    QString backupFolder;
                    if (m_bMakeBackups) {
                        backupFolder = GetBackupDirPath(targetFolder);
                        copySkyforgeNavData(targetFolder);
                    }
                    if (!QFileInfo(sourceFolder).isDir())
                        return false;
                    if (!QFileInfo(targetFolder).isDir() && !QDir().mkpath(targetFolder)) {
                        m_walk.Error(QStringLiteral("cannot create folder ") + targetFolder +
                                     QStringLiteral("; the files of ") + sourceFolder +
                                     QStringLiteral(" are left out"));
                        return false;
                    }

                    for (const QFileInfo& file : CFileTree::plainFiles(sourceFolder)) {
                        // Between two files every installed file still has its backup.
                        if (m_bStopRequested)
                            break;
                        const QString name = file.fileName();
                        m_nBytesWritten += quint64(file.size());
                        if (moveOneFile(sourceFolder + QLatin1Char('/') + name, targetFolder + QLatin1Char('/') + name,
                                        backupFolder))
                            m_bSuccess = true;
                        emit SignalFileWritten(m_nBytesWritten);
                    }

                    // An unused backup folder goes; once anything was backed up, later ones stay (kept so).
                    if (!m_bBackupWritten && !backupFolder.isEmpty()) {
                        removeDir(backupFolder);
                        m_createdBackupDirs.remove(backupFolder);
                    }
                    return true;
                });
}

bool FileCopyThread::moveOneFile(const QString& sourceFile, const QString& targetFile, const QString& backupFolder)
{
    const QFileInfo target(targetFile);
    // A link in the way is an entry like a file: it goes to the backup as a link and the new file
    // takes its place. Nothing is ever written through it.
    const bool isLink = target.isSymLink();
    if (target.isDir() && !isLink) {
        m_walk.Error(targetFile + QStringLiteral(" is a folder; ") + sourceFile + QStringLiteral(" is left out"));
        return false;
    }

    QString error;
    QString backupFile;
    if ((target.exists() || isLink) && m_bMakeBackups) {
        backupFile = backupFolder + QLatin1Char('/') + target.fileName();
        if (m_backedUpFiles.contains(backupFile)) {
            // Replaced earlier in this run: the backup already holds the original.
            backupFile.clear();
        } else if (!CFolderWalk::MoveFile(targetFile, backupFile, true, &error)) {
            m_walk.Error(QStringLiteral("no backup of ") + targetFile + QStringLiteral(" (") + error +
                         QStringLiteral("); the file is kept and ") + sourceFile + QStringLiteral(" is left out"));
            return false;
        } else {
            m_backedUpFiles.insert(backupFile);
            m_bBackupWritten = true;
        }
    }

    // Without a backup the old file is replaced in one step, never deleted first.
    if (!CFolderWalk::MoveFile(sourceFile, targetFile, true, &error)) {
        QString restoreError;
        if (!backupFile.isEmpty()) {
            if (CFolderWalk::MoveFile(backupFile, targetFile, false, &restoreError))
                m_backedUpFiles.remove(backupFile);
            else
                m_walk.Error(QStringLiteral("the old file stays in the backup ") + backupFile + QStringLiteral(": ") +
                             restoreError);
        }
        m_walk.Error(QStringLiteral("cannot put ") + sourceFile + QStringLiteral(" in place: ") + error);
        return false;
    }
    return true;
}

void FileCopyThread::copySkyforgeNavData(const QString& target)
{
    if (m_pProduct->GetName().compare(QStringLiteral("Skyforge A320"), Qt::CaseInsensitive) != 0)
        return;
    // Joined with a backslash, not '/': the add-on's tools look for exactly these names, kept so.
    const QString nav1 = target + QStringLiteral("\\nav1.db");
    const QString nav2 = target + QStringLiteral("\\nav2.db");
    if (CFileTree::isLink(nav1) || CFileTree::isLink(nav2)) {
        m_log.WriteString(CFolderWalk::LinkWarning(CFileTree::isLink(nav1) ? nav1 : nav2), false);
        return;
    }
    // Without nav1.db there is nothing to copy, and nav2.db is not given up for nothing.
    if (!QFileInfo(nav1).isFile())
        return;
    QString error;
    if (!CFolderWalk::CopyFile(nav1, nav2, &error))
        m_walk.Warning(error);
}

QString FileCopyThread::GetBackupDirPath(QString target)
{
    const QString path = target + QLatin1Char('/') + m_strBackupDirName;
    // A new backup replaces the previous one of the same dataset, but not one made in this run.
    if (!m_createdBackupDirs.contains(path)) {
        removeDir(path);
        const QFileInfo left(path);
        if (left.exists() || left.isSymLink())
            m_walk.Warning(QStringLiteral("earlier backup not completely removed: ") + path);
    }
    if (!QDir().mkpath(path) || !QDir().mkpath(path + QLatin1Char('/') + m_strVersionMarker))
        m_walk.Warning(QStringLiteral("cannot create backup folder ") + path);
    m_createdBackupDirs.insert(path);
    return path;
}
