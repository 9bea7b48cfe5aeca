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
#include <QTimer>

namespace {
const char* const kArchivePassword = "pralvek";

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
        product->SetInstallState(QMK_STATE_INSTALL_ERROR);
        WriteResult(tr("Install failed") + QLatin1Char(' ') + product->GetName(), true);
        removeDir(m_strTempInstallDir);
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
        if (!product->GetUpdate())
            product->SetInstallState(QMK_STATE_NOT_INSTALLED);
        emit SignalUnzippProduct(product->GetName());
        if (!product->GetUpdate())
            continue;
        // A receiver of the announcement may have stopped the run.
        if (!IsActiveRun(ERun::Install))
            return;

        m_log.WriteString(QStringLiteral("#Product-Update <") + product->GetName() + QLatin1Char('>'), false);
        QString error;
        if (UnzippDataset(product, error))
            return;
        product->SetInstallState(QMK_STATE_INSTALL_ERROR);
        WriteResult(tr("Install failed") + QLatin1Char(' ') + product->GetName(), true);
        removeDir(m_strTempInstallDir);
    }
}

bool CDSVersion::UnzippDataset(CProduct* product, QString& error)
{
    m_log.WriteString(QStringLiteral("---UnzippDataset"), false);
    CreateTempInstallDirectory();
    if (!QDir(m_strTempInstallDir).exists()) {
        error = QStringLiteral("!! Error: directory ") + m_strTempInstallDir + QStringLiteral(" not exist!");
        m_log.WriteString(error, false);
        return false;
    }
    const QString archive = m_strCycleDir + QLatin1Char('/') + product->GetDataset() + QStringLiteral(".zip");
    if (!QFile::exists(archive)) {
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
    if (!product->InitNewInstallPaths(false)) {
        product->SetInstallState(QMK_STATE_INSTALL_ERROR);
        WriteResult(tr("Path") + QLatin1Char(' ') + tr("not found") + QLatin1Char(' ') + product->GetName(), true);
        return false;
    }
    if (!QFile::exists(archive)) {
        CMessageBox::critical(QStringLiteral("Missing file ") + archive);
        return false;
    }

    DiscardProcess(m_pUnzipProcess);
    m_pUnzipProcess = new QProcess();
    connect(m_pUnzipProcess, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            &CDSVersion::unzipProdRrocessFinishedSlot);
    connect(m_pUnzipProcess, &QProcess::started, this, &CDSVersion::processStartedSlot);
    const quint64 tag = m_runTag;
    connect(m_pUnzipProcess, &QProcess::errorOccurred, this, [this, tag](QProcess::ProcessError e) {
        // A tool that never starts sends no "finished"; the product fails and the run goes on.
        if (e != QProcess::FailedToStart)
            return;
        m_log.WriteString(QStringLiteral("!!ERROR unzip could not be started: ") + m_pUnzipProcess->errorString(),
                          false);
        if (CProduct* p = CurrentInstallProduct()) {
            p->SetInstallState(QMK_STATE_INSTALL_ERROR);
            WriteResult(tr("Install failed") + QLatin1Char(' ') + p->GetName(), true);
        }
        removeDir(m_strTempInstallDir);
        QTimer::singleShot(0, this, [this, tag] {
            if (tag == m_runTag)
                UnzipNextProduct();
        });
    });

    // Nobody reads unzip's listing of every file, so it goes nowhere instead of into a buffer.
    m_pUnzipProcess->setStandardOutputFile(QProcess::nullDevice());
    CToolCommand command(QStringLiteral("unzip"));
    command.arg(QStringLiteral("-o")).arg(QStringLiteral("-P")).secret(QLatin1String(kArchivePassword));
    command.quoted(archive).arg(QStringLiteral("-d")).quoted(target);
    m_log.WriteString(command.commandLine(), false);
    if (!command.start(m_pUnzipProcess)) {
        m_log.WriteString(QStringLiteral("!!ERROR unzip not found on the search path"), false);
        DiscardProcess(m_pUnzipProcess);
        return false;
    }
    return true;
}

void CDSVersion::CreateTempInstallDirectory()
{
    m_strTempInstallDir = CAppPaths::DownloadFolder();
    if (!QDir(m_strTempInstallDir).exists())
        QDir().mkpath(m_strTempInstallDir);
    m_strTempInstallDir += QStringLiteral("/temp");
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
        product->SetInstallState(QMK_STATE_INSTALL_ERROR);
        WriteResult(tr("Install failed") + QLatin1Char(' ') + product->GetName(), true);
        m_log.WriteString(QStringLiteral("!!Error UPDATE-RESULT == UNZIP FAILED ") + product->GetName(), false);
        removeDir(m_strTempInstallDir);
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
        product->SetInstallState(QMK_STATE_INSTALL_ERROR);
        WriteResult(tr("Install failed") + QLatin1Char(' ') + product->GetName(), true);
        removeDir(m_strTempInstallDir);
        const quint64 tag = m_runTag;
        QTimer::singleShot(0, this, [this, tag] {
            if (tag == m_runTag)
                UnzipNextProduct();
        });
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
    if (m_pUnzipProcess && m_pUnzipProcess->state() != QProcess::NotRunning)
        m_log.WriteString(QStringLiteral("StopInstall: unzip stopped"), false);
    DiscardProcess(m_pUnzipProcess);
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
