#include "engine/FileCopyThread.h"

#include "engine/CRunJournal.h"
#include "model/CFileTree.h"
#include "model/CProduct.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

FileCopyThread::FileCopyThread() : CFileWorkerThread(QStringLiteral("log_fcopy.txt")) {}

void FileCopyThread::Init(CProduct* product, const QString& sourceRoot, bool makeBackups, const QString& runId,
                          const QString& cycleFile)
{
    SetProduct(product);
    m_nBytesWritten = 0;
    m_bBackupWritten = false;
    m_createdBackupDirs.clear();
    m_deferred.clear();
    m_bBackupPromised = false;
    m_keptBackups.clear();
    // Every run marks its backup folders as its own, even one that nobody records.
    m_strRunId = runId.isEmpty() ? CRunJournal::NewId() : runId;
    m_strCycleFile = cycleFile.isEmpty() ? QString() : QDir::cleanPath(cycleFile);
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
    emit SignalTotalBytes(CFileTree::byteSize(m_strSourceRoot));
    MoveProductFiles();
    CFolderWalk::RunEnd();
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
    // The cycle file last: until it is in place the product still reads as the old cycle.
    for (const Deferred& file : qAsConst(m_deferred)) {
        if (m_bStopRequested)
            break;
        m_nBytesWritten += quint64(file.size);
        if (moveOneFile(file.source, file.target, file.backupFolder))
            m_bSuccess = true;
        emit SignalFileWritten(m_nBytesWritten);
    }
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
                        if (backupFolder.isEmpty())
                            return true; // no backup can be made here: the folder's files are left out
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
                        const QString targetFile = targetFolder + QLatin1Char('/') + name;
                        if (!m_strCycleFile.isEmpty() && QDir::cleanPath(targetFile) == m_strCycleFile) {
                            m_deferred.append({file.absoluteFilePath(), targetFile, backupFolder, file.size()});
                            const QFileInfo present(targetFile);
                            if (m_bMakeBackups && (present.exists() || present.isSymLink()))
                                m_bBackupPromised = true;
                            continue;
                        }
                        m_nBytesWritten += quint64(file.size());
                        if (moveOneFile(sourceFolder + QLatin1Char('/') + name, targetFile, backupFolder))
                            m_bSuccess = true;
                        emit SignalFileWritten(m_nBytesWritten);
                    }

                    // An unused backup folder goes; once anything was backed up, later ones stay (kept so).
                    // A cycle file held back counts as backed up where the walk met it.
                    if (!m_bBackupWritten && !m_bBackupPromised && !backupFolder.isEmpty()) {
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
        const QFileInfo kept(backupFile);
        if (kept.exists() || kept.isSymLink()) {
            // The backup folder is this run's own: what it holds is the original, and the file in
            // place is already the new one. The original is never replaced.
            backupFile.clear();
        } else {
            CFolderWalk::BeforeMove();
            if (!CFolderWalk::MoveFile(targetFile, backupFile, false, &error)) {
                m_walk.Error(QStringLiteral("no backup of ") + targetFile + QStringLiteral(" (") + error +
                             QStringLiteral("); the file is kept and ") + sourceFile + QStringLiteral(" is left out"));
                return false;
            }
            m_bBackupWritten = true;
        }
    }

    // Without a backup the old file is replaced in one step, never deleted first.
    CFolderWalk::BeforeMove();
    if (!CFolderWalk::MoveFile(sourceFile, targetFile, true, &error)) {
        QString restoreError;
        if (!backupFile.isEmpty()) {
            if (!CFolderWalk::MoveFile(backupFile, targetFile, false, &restoreError))
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

QStringList FileCopyThread::GetRunMarks() const
{
    QStringList marks;
    for (const QString& folder : m_createdBackupDirs)
        marks << folder + QLatin1Char('/') + CRunJournal::RunFileName(m_strRunId);
    return marks;
}

QString FileCopyThread::GetBackupDirPath(QString target)
{
    const QString path = target + QLatin1Char('/') + m_strBackupDirName;
    if (!m_createdBackupDirs.contains(path)) {
        const QString runFile = path + QLatin1Char('/') + CRunJournal::RunFileName(m_strRunId);
        const QFileInfo existing(path);
        if ((existing.exists() || existing.isSymLink()) && !QFileInfo::exists(runFile)) {
            // A new backup replaces the previous one of the same dataset, but only once this run is
            // complete: until then the previous one waits aside, whole.
            const QString kept = target + QLatin1Char('/') + CRunJournal::KeptBackupName(m_strBackupDirName);
            const QFileInfo keptInfo(kept);
            if (keptInfo.exists() || keptInfo.isSymLink()) {
                m_walk.Error(QStringLiteral("an earlier backup is still kept aside as ") + kept +
                             QStringLiteral("; the files of ") + target + QStringLiteral(" are left out"));
                return QString();
            }
            QString error;
            if (!CFolderWalk::MoveFile(path, kept, false, &error)) {
                m_walk.Error(QStringLiteral("cannot set the earlier backup aside (") + error +
                             QStringLiteral("); the files of ") + target + QStringLiteral(" are left out"));
                return QString();
            }
            m_keptBackups << kept;
        }
        QFile mark(runFile);
        if (!QDir().mkpath(path) || !mark.open(QIODevice::WriteOnly)) {
            m_walk.Error(QStringLiteral("cannot create backup folder ") + path + QStringLiteral("; the files of ") +
                         target + QStringLiteral(" are left out"));
            return QString();
        }
        mark.close();
        if (!QDir().mkpath(path + QLatin1Char('/') + m_strVersionMarker))
            m_walk.Warning(QStringLiteral("cannot create version marker in ") + path);
    }
    m_createdBackupDirs.insert(path);
    return path;
}
