#include "engine/CDSVersion.h"

#include "app/CAppPaths.h"
#include "app/CMessageBox.h"
#include "engine/CRunJournal.h"
#include "engine/CToolCommand.h"
#include "model/CFileTree.h"
#include "model/CInstallGroup.h"
#include "model/CProduct.h"
#include "model/CProductList.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QTimer>

namespace {
const char* const kArchivePassword = "pralvek";
// Archives unpacked at a time, and waiting ahead of their turn at most: two keep two processors
// busy, while a third folder holds the product being copied.
const int kUnpacksAtOnce = 2;

} // namespace

QString CDSVersion::MaskArchivePassword(QString text)
{
    return text.replace(QLatin1String(kArchivePassword), QStringLiteral("****"));
}

CProduct* CDSVersion::CurrentInstallProduct() const
{
    if (m_pSingleProduct)
        return m_pSingleProduct;
    if (!m_pProductList || m_iCurrentIndex < 0)
        return nullptr;
    return m_pProductList->GetByIndex(m_iCurrentIndex);
}

bool CDSVersion::InstallProducts()
{
    InitLocalVersion();
    m_log.WriteString(QStringLiteral("#InstallProducts"), false);
    if (!m_pProductList)
        return false;
    RecoverInterruptedRuns(m_pProductList);
    BeginRun(ERun::Install);
    DiscardUnpacks();
    // Scratch folders a cut-off run may have left; "temp" goes at the first product's turn.
    for (int i = 2; i <= kUnpacksAtOnce + 1; ++i)
        removeDir(CAppPaths::DownloadFolder() + QStringLiteral("/temp") + QString::number(i));
    m_iCurrentIndex = -1;
    if (!m_pSingleProduct) {
        UnzipNextProduct();
        return true;
    }

    m_iCurrentIndex = m_pProductList->GetSize();
    CProduct* product = m_pSingleProduct;
    if (product->GetInstallGroup())
        product->GetInstallGroup()->SetInstallState(QMK_STATE_INSTALL_RUN);
    emit SignalUnzippProduct(product->GetName());
    if (!IsActiveRun(ERun::Install))
        return true;
    m_log.WriteString(QStringLiteral("#Product-Update <") + product->GetName() + QLatin1Char('>'), false);
    QString error;
    if (!UnzippDataset(product, error)) {
        FailInstall(product);
        UnzipNextProduct();
    }
    return true;
}

void CDSVersion::UnzipNextProduct()
{
    // A loop rather than recursion: a long list of skipped products must not deepen the stack.
    for (;;) {
        if (!IsActiveRun(ERun::Install))
            return;
        ++m_iCurrentIndex;
        if (!m_pProductList)
            return;
        if (m_iCurrentIndex >= m_pProductList->GetSize()) {
            EndRun(ERun::Install);
            DiscardUnpacks();
            emit SignalInstallReady();
            return;
        }
        CProduct* product = m_pProductList->GetByIndex(m_iCurrentIndex);
        if (!product)
            continue;
        // A member of an install group that this run has already served keeps the state it got then.
        if (product->GetResetOrUpdateDone())
            continue;
        if (product->GetUpdate())
            product->SetInstallState(QMK_STATE_INSTALL_RUN);
        if (!product->GetUpdate()) {
            product->SetInstallState(QMK_STATE_NOT_INSTALLED);
            continue;
        }
        // Announced only when installed: the dialog counts the announcements as its progress.
        emit SignalUnzippProduct(product->GetName());
        // A receiver of the announcement may have stopped the run.
        if (!IsActiveRun(ERun::Install))
            return;

        m_log.WriteString(QStringLiteral("#Product-Update <") + product->GetName() + QLatin1Char('>'), false);
        QString error;
        if (UnzippDataset(product, error))
            return;
        FailInstall(product);
    }
}

// The product's line in the result says it failed; what it unpacked goes.
void CDSVersion::FailInstall(CProduct* product)
{
    product->SetInstallState(QMK_STATE_INSTALL_ERROR);
    WriteResult(tr("Install failed") + QLatin1Char(' ') + product->GetName(), true);
    removeDir(m_strTempInstallDir);
}

// From inside a failing process's or thread's slot: the next product starts once that slot has
// returned, and not at all if the run has been stopped meanwhile.
void CDSVersion::UnzipNextProductSoon()
{
    const quint64 tag = m_runTag;
    QTimer::singleShot(0, this, [this, tag] {
        if (tag == m_runTag)
            UnzipNextProduct();
    });
}

bool CDSVersion::UnzippDataset(CProduct* product, QString& error)
{
    m_log.WriteString(QStringLiteral("---UnzippDataset"), false);
    const QString archive = m_strCycleDir + QLatin1Char('/') + product->GetDataset() + QStringLiteral(".zip");
    // Unpacks for products whose turn has passed (skipped, or served by their group) are of no use.
    for (Unpack* unpack : QList<Unpack*>(m_unpacks))
        if (unpack->index < m_iCurrentIndex || (unpack->product == product && unpack->archive != archive))
            DiscardUnpack(unpack);
    Unpack* ahead = nullptr;
    for (Unpack* unpack : qAsConst(m_unpacks))
        if (unpack->product == product)
            ahead = unpack;
    if (ahead)
        m_strTempInstallDir = ahead->folder;
    else
        CreateTempInstallDirectory();
    if (!QDir(m_strTempInstallDir).exists()) {
        if (ahead)
            DiscardUnpack(ahead);
        error = QStringLiteral("!! Error: directory ") + m_strTempInstallDir + QStringLiteral(" not exist!");
        m_log.WriteString(error, false);
        return false;
    }
    if (!QFile::exists(archive)) {
        if (ahead)
            DiscardUnpack(ahead);
        error = QStringLiteral("!! Error: file ") + archive + QStringLiteral(" not exist!");
        m_log.WriteString(error, false);
        WriteResult(tr("File") + QLatin1Char(' ') + product->GetDataset() + QStringLiteral(".zip") + QLatin1Char(' ') +
                        tr("not found"),
                    true);
        return false;
    }
    return StartUnzip(archive, m_strTempInstallDir);
}

bool CDSVersion::StartUnzip(const QString& archive, const QString& target, bool)
{
    CProduct* product = CurrentInstallProduct();
    if (!product) {
        m_log.WriteString(QString::asprintf("!!ERROR Zum Index %d gibt es kein Objekt!!", m_iCurrentIndex), false);
        return false;
    }
    Unpack* unpack = nullptr;
    for (Unpack* ahead : qAsConst(m_unpacks))
        if (ahead->product == product && ahead->archive == archive && ahead->folder == target)
            unpack = ahead;
    const auto dropAhead = [&] {
        if (unpack)
            DiscardUnpack(unpack);
    };
    if (!product->InitNewInstallPaths(false)) {
        dropAhead();
        product->SetInstallState(QMK_STATE_INSTALL_ERROR);
        WriteResult(tr("Path") + QLatin1Char(' ') + tr("not found") + QLatin1Char(' ') + product->GetName(), true);
        return false;
    }
    if (!QFile::exists(archive)) {
        dropAhead();
        CMessageBox::critical(QStringLiteral("Missing file ") + archive);
        return false;
    }

    if (unpack) {
        m_log.WriteString(QStringLiteral("unpacked ahead into ") + target, false);
    } else {
        unpack = StartUnpack(product, m_pSingleProduct ? -1 : m_iCurrentIndex, archive, target);
        if (!unpack) {
            m_log.WriteString(QStringLiteral("!!ERROR unzip not found on the search path"), false);
            return false;
        }
    }
    m_pTurnUnpack = unpack;
    if (unpack->ended) {
        // Its end was noted before its turn came; it is taken up from the event loop, as a
        // running unzip's end would be.
        const quint64 tag = m_runTag;
        QTimer::singleShot(0, this, [this, tag, unpack] {
            if (tag == m_runTag && m_pTurnUnpack == unpack)
                TakeUnpack(unpack);
        });
    }
    StartUnpacksAhead();
    return true;
}

CDSVersion::Unpack* CDSVersion::StartUnpack(CProduct* product, int index, const QString& archive, const QString& folder)
{
    auto* unpack = new Unpack;
    unpack->product = product;
    unpack->index = index;
    unpack->archive = archive;
    unpack->folder = folder;
    unpack->process = new QProcess();
    connect(unpack->process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            [this, unpack](int exitCode, QProcess::ExitStatus status) {
                unpack->exitCode = exitCode;
                unpack->exitStatus = status;
                UnpackEndedSlot(unpack);
            });
    connect(unpack->process, &QProcess::started, this, &CDSVersion::processStartedSlot);
    connect(unpack->process, &QProcess::errorOccurred, this, [this, unpack](QProcess::ProcessError e) {
        // A tool that never starts sends no "finished".
        if (e != QProcess::FailedToStart)
            return;
        unpack->failedToStart = true;
        UnpackEndedSlot(unpack);
    });

    // Nobody reads unzip's listing of every file, so it goes nowhere instead of into a buffer.
    unpack->process->setStandardOutputFile(QProcess::nullDevice());
    CToolCommand command(QStringLiteral("unzip"));
    command.arg(QStringLiteral("-o")).arg(QStringLiteral("-P")).secret(QLatin1String(kArchivePassword));
    command.quoted(archive).arg(QStringLiteral("-d")).quoted(folder);
    m_log.WriteString(command.commandLine(), false);
    m_unpacks.append(unpack);
    if (!command.start(unpack->process)) {
        DiscardUnpack(unpack);
        return nullptr;
    }
    return unpack;
}

void CDSVersion::UnpackEndedSlot(Unpack* unpack)
{
    if (unpack->ended)
        return;
    unpack->ended = true;
    if (unpack == m_pTurnUnpack)
        TakeUnpack(unpack);
    else
        StartUnpacksAhead();
}

void CDSVersion::TakeUnpack(Unpack* unpack)
{
    m_pTurnUnpack = nullptr;
    m_unpacks.removeOne(unpack);
    const bool failedToStart = unpack->failedToStart;
    const int exitCode = unpack->exitCode;
    const QProcess::ExitStatus status = unpack->exitStatus;
    const QString problem = unpack->process->errorString();
    DiscardProcess(unpack->process);
    delete unpack;
    if (!failedToStart) {
        unzipProdRrocessFinishedSlot(exitCode, status);
        // The unzip's processor is free while the copy runs.
        StartUnpacksAhead();
        return;
    }
    // A tool that never started: the product fails and the run goes on.
    if (!IsActiveRun(ERun::Install))
        return;
    m_log.WriteString(QStringLiteral("!!ERROR unzip could not be started: ") + problem, false);
    if (CProduct* p = CurrentInstallProduct())
        FailInstall(p);
    else
        removeDir(m_strTempInstallDir);
    UnzipNextProductSoon();
}

void CDSVersion::StartUnpacksAhead()
{
    // A run for one product has nothing ahead of it.
    if (m_pSingleProduct || !m_pProductList || !IsActiveRun(ERun::Install))
        return;
    // Two at a time: the product whose turn it is (or the one after it, while it is copied) and
    // the next one.
    const int atOnce = kUnpacksAtOnce;
    for (;;) {
        int running = 0;
        int waiting = 0;
        int last = m_iCurrentIndex;
        QSet<const CInstallGroup*> groups;
        if (CProduct* current = CurrentInstallProduct())
            groups.insert(current->GetInstallGroup());
        for (const Unpack* unpack : qAsConst(m_unpacks)) {
            running += unpack->ended ? 0 : 1;
            waiting += unpack->product == CurrentInstallProduct() ? 0 : 1;
            last = qMax(last, unpack->index);
            groups.insert(unpack->product->GetInstallGroup());
        }
        if (running >= atOnce || waiting >= atOnce)
            return;
        // The next product whose turn will come if every install succeeds: selected, not served
        // yet, and not in a group that a product on its way serves.
        CProduct* next = nullptr;
        int index = last + 1;
        QString archive;
        for (; index < m_pProductList->GetSize(); ++index) {
            CProduct* product = m_pProductList->GetByIndex(index);
            if (!product || !product->GetUpdate() || product->GetResetOrUpdateDone() ||
                (product->GetInstallGroup() && groups.contains(product->GetInstallGroup())))
                continue;
            archive = m_strCycleDir + QLatin1Char('/') + product->GetDataset() + QStringLiteral(".zip");
            // A missing archive is reported at the product's turn.
            if (!QFile::exists(archive))
                continue;
            next = product;
            break;
        }
        if (!next)
            return;
        // Never the current product's folder: it is in use until its copy has ended.
        const QString folder = FreeScratchFolder(false);
        removeDir(folder);
        if (!QDir().mkpath(folder))
            return;
        m_log.WriteString(QStringLiteral("---Unpacking ahead for <") + next->GetName() + QLatin1Char('>'), false);
        if (!StartUnpack(next, index, archive, folder)) {
            removeDir(folder);
            return;
        }
    }
}

void CDSVersion::DiscardUnpack(Unpack* unpack)
{
    if (unpack == m_pTurnUnpack)
        m_pTurnUnpack = nullptr;
    m_unpacks.removeOne(unpack);
    DiscardProcess(unpack->process);
    removeDir(unpack->folder);
    delete unpack;
}

void CDSVersion::DiscardUnpacks()
{
    while (!m_unpacks.isEmpty())
        DiscardUnpack(m_unpacks.first());
    m_pTurnUnpack = nullptr;
}

QString CDSVersion::FreeScratchFolder(bool takeCurrent) const
{
    const QString base = CAppPaths::DownloadFolder() + QStringLiteral("/temp");
    for (int i = 1;; ++i) {
        const QString folder = i == 1 ? base : base + QString::number(i);
        bool used = !takeCurrent && folder == m_strTempInstallDir;
        for (const Unpack* unpack : m_unpacks)
            used = used || unpack->folder == folder;
        if (!used)
            return folder;
    }
}

void CDSVersion::CreateTempInstallDirectory()
{
    const QString downloads = CAppPaths::DownloadFolder();
    if (!QDir(downloads).exists())
        QDir().mkpath(downloads);
    // The previous product's folder has gone with its copy; it is taken again.
    m_strTempInstallDir = FreeScratchFolder(true);
    removeDir(m_strTempInstallDir);
    if (!QDir(m_strTempInstallDir).exists())
        QDir().mkpath(m_strTempInstallDir);
}

quint64 CDSVersion::GetDirectoryByteSize(const QString& folder)
{
    return CFileTree::byteSize(folder);
}

bool CDSVersion::removeDir(const QString& path)
{
    return CFileTree::removeDir(path);
}

void CDSVersion::unzipProdRrocessFinishedSlot(int exitCode, QProcess::ExitStatus status)
{
    m_totalBytes = ~quint64(0);
    m_writtenBytes = 0;
    CProduct* product = CurrentInstallProduct();
    if (!product || !IsActiveRun(ERun::Install))
        return;
    if (status == QProcess::CrashExit) {
        // The run stops here on purpose: no next product and no ready signal.
        EndRun(ERun::Install);
        FailInstall(product);
        m_log.WriteString(QStringLiteral("!!Error UPDATE-RESULT == UNZIP FAILED ") + product->GetName(), false);
        DiscardUnpacks();
        return;
    }
    // The exit code is deliberately not judged: whatever unzip unpacked is installed, and an empty
    // tree makes the copy report failure. The code is still noted for the reader of the log.
    if (exitCode != 0)
        m_log.WriteString(QStringLiteral("!!WARNING unzip ended with code ") + QString::number(exitCode) +
                              QStringLiteral(" for ") + product->GetName(),
                          false);

    product->SetNewCycle(cutDig(m_strLocalVersion));
    product->SetNewRevision(cutDig(m_strLocalRevision));
    const QString newVersion = product->GetNewCycle() + product->GetNewRevision();
    const QString installed = CRunJournal::InstalledCycle(product);
    QString backup = product->GetBackCycleVersion();
    backup += product->GetBackRevision();

    // A re-install of the installed cycle, or one whose backup already holds it, keeps that backup.
    bool makeBackups = true;
    const QString installedJoined = QString(installed).remove(QLatin1Char(' '));
    if (newVersion == installedJoined || installedJoined == backup)
        makeBackups = installedJoined.isEmpty();
    makeBackups = makeBackups && m_bCreateBackupFiles;

    // The record of the run goes to disk before the first file moves.
    CRunJournal::Entry entry;
    entry.run = CRunJournal::ERun::Install;
    entry.id = CRunJournal::NewId();
    entry.product = product->GetName();
    entry.dataset = product->GetDataset();
    entry.fromCycle = installed;
    entry.toCycle = product->GetNewCycle() + QLatin1Char(' ') + product->GetNewRevision();
    entry.backups = makeBackups;
    const QString journal = CRunJournal::PathFor(product);
    QString error;
    if (journal.isEmpty()) {
        // No folder of the product exists yet, so there is nothing of the user's to lose.
        m_log.WriteString(QStringLiteral("!!WARNING no folder for the run record of ") + product->GetName(), false);
    } else if (!CRunJournal::Write(journal, entry, &error)) {
        // Without the record a cut-off install could not be undone: nothing is moved.
        m_log.WriteString(QStringLiteral("!!ERROR ") + error, false);
        FailInstall(product);
        UnzipNextProductSoon();
        return;
    }
    m_strJournal = journal;

    m_fileCopyThread.Init(product, m_strTempInstallDir, makeBackups, entry.id, product->GetCycleInfoFile());
    // The worker measures the unpacked tree first (SignalTotalBytes): measuring tens of thousands
    // of files here would hold up the window.
    m_pWorkerProduct = product;
    StartWorker(m_fileCopyThread);
}

void CDSVersion::FileCopyThreadFinishedSlot()
{
    // The run is complete: the backups it replaced go, then its record.
    for (const QString& kept : m_fileCopyThread.GetKeptBackups())
        if (!removeDir(kept))
            m_log.WriteString(QStringLiteral("!!WARNING earlier backup not completely removed: ") + kept, false);
    const bool recordGone = m_strJournal.isEmpty() || CRunJournal::Remove(m_strJournal);
    m_strJournal.clear();
    // Only once the record is gone: a record that stays may still need the marks to undo the run.
    if (recordGone)
        for (const QString& mark : m_fileCopyThread.GetRunMarks())
            QFile::remove(mark);

    if (CProduct* product = CurrentInstallProduct()) {
        if (!m_fileCopyThread.GetSuccess()) {
            product->SetInstallState(QMK_STATE_INSTALL_ERROR);
            WriteResult(tr("Install failed") + QLatin1Char(' ') + product->GetName(), true);
        } else {
            product->SetInstallState(QMK_STATE_INSTALL_OK);
            if (CInstallGroup* group = product->GetInstallGroup()) {
                // The shared files are in: every member holds the new cycle now, not only this one.
                group->SetResetOrUpdateTrue(product);
                group->SetInstallState(QMK_STATE_INSTALL_OK);
                for (const QString& name : group->GetProdNames())
                    WriteResult(tr("Install success") + QLatin1Char(' ') + name, false);
            }
            // After the success lines, so that a refused entry reads as a note on the product.
            RemoveProductFiles(product);
        }
    }
    removeDir(m_strTempInstallDir);
    m_log.WriteString(QStringLiteral("FileCopyThreadFinishedSlot"), false);
    UnzipNextProduct();
}

// Entries of the remove-file list that would lead out of the product (through "..", a link or a
// path outside its folders and its simulator folder) are left alone, and the user is told.
void CDSVersion::RemoveProductFiles(CProduct* product)
{
    const QStringList refused = product->RemoveFileList();
    for (const QString& target : refused) {
        m_log.WriteString(QStringLiteral("!!WARNING remove-file entry outside the product, not removed: ") + target,
                          false);
        WriteResultWarning(product->GetName() + QStringLiteral(": ") + tr("not removed, outside the product:") +
                           QLatin1Char(' ') + target);
    }
}

void CDSVersion::FileWrittenSlot(quint64 bytes)
{
    // Progress of a stopped run is not shown.
    if (!IsActiveRun(ERun::Install))
        return;
    m_writtenBytes = bytes;
    emit SignalFileWritten(bytes);
}

void CDSVersion::WriteResult(const QString& text, bool isError)
{
    if (isError) {
        m_strResult += tr("Error") + QStringLiteral(": ");
        ++m_iErrorCount;
    } else {
        m_strResult += QStringLiteral(" + ");
    }
    m_strResult += text + QStringLiteral("\r\n");
    emit SignalWriteResult(m_strResult);
}

void CDSVersion::WriteResultWarning(const QString& text)
{
    m_strResult += tr("Warning") + QStringLiteral(": ") + text + QStringLiteral("\r\n");
    emit SignalWriteResult(m_strResult);
}

void CDSVersion::ResetResult()
{
    m_strResult.clear();
    m_iErrorCount = 0;
}

void CDSVersion::SetFinishedStateProducts()
{
    if (!m_pProductList)
        return;
    const QString version = GetTargetVersion();
    if (!m_pSingleProduct) {
        for (int i = 0; i < m_pProductList->GetSize(); ++i) {
            CProduct* product = m_pProductList->GetByIndex(i);
            if (!product)
                continue;
            if (product->GetUpdate()) {
                const EQMKProductInstallState state = product->GetInstallState();
                if (state == QMK_STATE_INSTALL_OK)
                    product->SetInstalledVersion(version);
                else if (state != QMK_STATE_INSTALL_ERROR)
                    product->SetInstallState(QMK_STATE_INSTALL_WARNING);
            } else {
                product->SetInstallState(QMK_STATE_NOT_INSTALLED);
            }
            if (!product->GetErrorText().isEmpty()) {
                m_log.WriteString(QStringLiteral("!!!  ERROR "), false);
                m_log.WriteString(product->GetErrorText(), false);
            }
        }
    } else {
        const EQMKProductInstallState state = m_pSingleProduct->GetInstallState();
        CInstallGroup* group = m_pSingleProduct->GetInstallGroup();
        if (group)
            group->SetInstallState(state);
        if (state == QMK_STATE_INSTALL_OK)
            m_pSingleProduct->SetInstalledVersion(version);
        if (state != QMK_STATE_INSTALL_OK && state != QMK_STATE_INSTALL_ERROR && group)
            group->SetInstallState(QMK_STATE_INSTALL_WARNING);
    }
    emit SignalChangeNewVersion(version);
}

void CDSVersion::StopInstall()
{
    const bool running = StopRun(ERun::Install);
    if (m_pProductList)
        m_iCurrentIndex = m_pProductList->GetSize();
    bool unzipRunning = false;
    for (const Unpack* unpack : qAsConst(m_unpacks))
        unzipRunning = unzipRunning || !unpack->ended;
    if (unzipRunning)
        m_log.WriteString(QStringLiteral("StopInstall: unzip stopped"), false);
    DiscardUnpacks();
    if (running)
        m_log.WriteString(QStringLiteral("StopInstall"), false);
    SetFinishedStateProducts();
}

void CDSVersion::StopFileCopyThred()
{
    StopWorker(m_fileCopyThread, "FileCopyThread");
    // A product cut off in its copy goes back to how it was (or, if its last step was done, is
    // completed), so that a stop never leaves a half-installed product behind.
    if (!m_strJournal.isEmpty() && m_pWorkerProduct && QFileInfo::exists(m_strJournal))
        RecoverProduct(m_pWorkerProduct, m_strJournal);
    m_strJournal.clear();
    // Stopping the copy alone still ends the run, so that nobody waits for it.
    if (IsActiveRun(ERun::Install))
        StopInstall();
    removeDir(m_strTempInstallDir);
}
