#include "engine/CDSVersion.h"

#include "engine/CFolderWalk.h"
#include "engine/CRunJournal.h"
#include "model/CFileTree.h"
#include "model/CFolderCache.h"
#include "model/CProduct.h"
#include "model/CProductList.h"

#include <QFile>
#include <QFileInfo>
#include <QQueue>
#include <QSet>

namespace {
QString backupDirName(CProduct* product)
{
    return QStringLiteral("QMK_") + product->GetDataset() + QStringLiteral("_back");
}

// Every folder below the product's install targets, links not followed and the backup folders
// themselves left out: a cut-off run may have touched any of them.
QStringList productFolders(CProduct* product)
{
    QStringList folders;
    QSet<QString> seen;
    QQueue<QString> pending;
    for (const CInstallPath* entry : product->GetInstallPaths())
        if (entry && !entry->strNewPath.isEmpty() && QFileInfo(entry->strNewPath).isDir())
            pending.enqueue(entry->strNewPath);
    while (!pending.isEmpty()) {
        const QString folder = pending.dequeue();
        if (seen.contains(folder))
            continue;
        seen.insert(folder);
        folders << folder;
        for (const QFileInfo& sub : CFileTree::subFolders(folder))
            if (!sub.fileName().startsWith(QLatin1String("QMK_")))
                pending.enqueue(folder + QLatin1Char('/') + sub.fileName());
    }
    return folders;
}

bool exists(const QString& path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}
} // namespace

QStringList CDSVersion::RecoverInterruptedRuns(CProductList* list)
{
    QStringList report;
    if (!list)
        return report;
    // Members of an install group share their folders and so their record.
    QSet<QString> done;
    QList<QPair<CProduct*, QString>> found;
    {
        // Only looking: the folders stay as they are until every product has been asked.
        CFolderCache::Scope folders;
        for (int i = 0; i < list->GetSize(); ++i) {
            CProduct* product = list->GetByIndex(i);
            if (!product)
                continue;
            product->InitNewInstallPaths(false);
            // Where the record went depends on which folders existed when the run began.
            QString journal;
            for (const QString& candidate : CRunJournal::Candidates(product)) {
                // Most products of a catalogue are not installed: their folders are known missing.
                if (!CFolderCache::KnownMissing(candidate) && exists(candidate)) {
                    journal = candidate;
                    break;
                }
            }
            if (journal.isEmpty() || done.contains(journal))
                continue;
            done.insert(journal);
            found.append(qMakePair(product, journal));
        }
    }
    for (const auto& entry : qAsConst(found))
        report << RecoverProduct(entry.first, entry.second);
    return report;
}

QString CDSVersion::RecoverProduct(CProduct* product, const QString& journal)
{
    CRunJournal::Entry entry;
    QString text;
    bool ok = false;
    bool completed = false;
    if (!CRunJournal::Read(journal, entry)) {
        text = tr("A run record that cannot be read was left alone:") + QLatin1Char(' ') + journal;
    } else if (entry.run == CRunJournal::ERun::Install) {
        const QString installed = CRunJournal::InstalledCycle(product);
        if (installed == entry.toCycle) {
            // The cycle file is the last step: everything else is in place already.
            DropKeptBackups(product);
            ok = completed = true;
            text = tr("The interrupted install of %1 was completed.").arg(product->GetName());
        } else if (entry.backups) {
            ok = UndoInstall(product, entry.id);
            text = ok ? tr("The interrupted install of %1 was undone; its files are as they were before.")
                            .arg(product->GetName())
                      : tr("The interrupted install of %1 could not be undone completely; see the log.")
                            .arg(product->GetName());
        } else {
            // Nothing was kept, so nothing can be put back; the record has done its work.
            ok = true;
            text = tr("The interrupted install of %1 made no backups and cannot be undone; install it again.")
                       .arg(product->GetName());
        }
    } else if (m_fileResetThread.isRunning()) {
        text = tr("The interrupted reset of %1 waits for the reset in progress.").arg(product->GetName());
    } else {
        m_fileResetThread.Init(product, product->GetCycleInfoFile(), true);
        m_fileResetThread.RunHere();
        ok = m_fileResetThread.GetSuccess();
        text = ok ? tr("The interrupted reset of %1 was completed.").arg(product->GetName())
                  : tr("The interrupted reset of %1 could not be completed; see the log.").arg(product->GetName());
    }
    // A record whose run could not be finished or undone stays, so the next run tries again.
    // A completed install's marks go once its record is gone, as at the end of an uncut run.
    if (ok && CRunJournal::Remove(journal) && completed)
        DropRunMarks(product, entry.id);
    m_log.WriteString((ok ? QStringLiteral("#Recovery: ") : QStringLiteral("!!ERROR Recovery: ")) + text, false);
    WriteResult(text, !ok);
    return text;
}

// Puts back every file that the cut-off install moved into its backup folders, then the backup
// that waited aside.
bool CDSVersion::UndoInstall(CProduct* product, const QString& runId)
{
    const QString backupName = backupDirName(product);
    const QString keptName = CRunJournal::KeptBackupName(backupName);
    bool ok = true;
    for (const QString& folder : productFolders(product)) {
        const QString backup = folder + QLatin1Char('/') + backupName;
        const QFileInfo info(backup);
        if (info.isDir() && !info.isSymLink() && exists(backup + QLatin1Char('/') + CRunJournal::RunFileName(runId))) {
            QFileInfoList entries = CFileTree::plainFiles(backup);
            entries += CFileTree::links(backup);
            bool emptied = true;
            for (const QFileInfo& file : entries) {
                QString error;
                const QString target = folder + QLatin1Char('/') + file.fileName();
                const QFileInfo current(target);
                if ((current.isDir() && !current.isSymLink()) ||
                    !CFolderWalk::MoveFile(file.absoluteFilePath(), target, true, &error)) {
                    m_log.WriteString(QStringLiteral("!!ERROR cannot put back ") + target + QStringLiteral(": ") +
                                          (error.isEmpty() ? QStringLiteral("a folder is in the way") : error),
                                      false);
                    emptied = false;
                }
            }
            if (emptied)
                removeDir(backup);
            ok = ok && emptied;
        }
        const QString kept = folder + QLatin1Char('/') + keptName;
        if (exists(kept) && !exists(backup)) {
            QString error;
            if (!CFolderWalk::MoveFile(kept, backup, false, &error)) {
                m_log.WriteString(QStringLiteral("!!ERROR cannot put the earlier backup back: ") + error, false);
                ok = false;
            }
        }
    }
    return ok;
}

void CDSVersion::DropRunMarks(CProduct* product, const QString& runId)
{
    const QString mark = QLatin1Char('/') + backupDirName(product) + QLatin1Char('/') + CRunJournal::RunFileName(runId);
    for (const QString& folder : productFolders(product))
        QFile::remove(folder + mark);
}

void CDSVersion::DropKeptBackups(CProduct* product)
{
    const QString keptName = CRunJournal::KeptBackupName(backupDirName(product));
    for (const QString& folder : productFolders(product)) {
        const QString kept = folder + QLatin1Char('/') + keptName;
        if (exists(kept) && !removeDir(kept))
            m_log.WriteString(QStringLiteral("!!WARNING earlier backup not completely removed: ") + kept, false);
    }
}
