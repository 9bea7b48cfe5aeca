#include "engine/CDSVersion.h"

#include "app/CAppPaths.h"
#include "model/CFileTree.h"
#include "model/CInstallGroup.h"
#include "model/CProduct.h"
#include "model/CProductList.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTimer>

namespace {
const char* const kCredentials = "webclient:Q7x2Lm9p";

QStringList versionListLines(const QByteArray& bytes)
{
    const int nul = bytes.indexOf('\0');
    const QByteArray text = nul < 0 ? bytes : bytes.left(nul);
    return QString::fromLatin1(text).split(QLatin1Char('\n'));
}

QString lastNonEmptyLine(const QStringList& lines)
{
    for (int i = lines.size() - 1; i >= 0; --i) {
        const QString line = lines.at(i).trimmed();
        if (!line.isEmpty())
            return line;
    }
    return QString();
}

// The value of the first "Revision" line; both the server list and the local copy use the first
// one, so that the two are always compared alike.
QString firstRevision(const QStringList& lines)
{
    for (const QString& line : lines) {
        const QStringList parts = line.split(QLatin1Char(':'));
        if (parts.size() >= 2 && parts.at(0).trimmed() == QLatin1String("Revision"))
            return parts.at(1).trimmed();
    }
    return QString();
}

} // namespace

const char* const CDSVersion::st_cycleFolderName = "QuillmarkCycle";

void CDSVersion::DiscardProcess(QProcess*& process)
{
    if (!process)
        return;
    process->disconnect();
    process->close();
    process->deleteLater();
    process = nullptr;
}

CDSVersion::CDSVersion(QObject* parent) : QObject(parent), m_strVersionListName(QStringLiteral("versionList.txt"))
{
    SetServer(QStringLiteral(QUILLMARK_DEFAULT_SERVER));
    m_log.SetFileName(QStringLiteral("log_dsupdate.txt"));

    connect(&m_downloader, &CVerifiedDownload::SignalFinished, this, &CDSVersion::downloadFinishedSlot);
    connect(&m_downloader, &CVerifiedDownload::SignalMirrorFailed, this, &CDSVersion::MirrorFailedSlot);
    connect(&m_downloader, &CVerifiedDownload::SignalChangePercent, this, &CDSVersion::ChangePercentSlot);
    connect(&m_downloader, &CVerifiedDownload::SignalProgress, this,
            [this](qint64 received, qint64 total, double speed) {
                if (IsActiveRun(ERun::Download))
                    emit SignalDownloadProgress(received, total, speed);
            });
    connect(this, &CDSVersion::SignalStopDownload, &m_downloader, &CVerifiedDownload::stopDownloadSlot);

    // A worker's end comes with the tag of the run that started it, so that the end of a stopped
    // run is told apart from the end of the run that follows it.
    for (CFileWorkerThread* worker :
         {static_cast<CFileWorkerThread*>(&m_fileCopyThread), static_cast<CFileWorkerThread*>(&m_fileResetThread),
          static_cast<CFileWorkerThread*>(&m_fileRemoveBackupThread)})
        connect(worker, &CFileWorkerThread::SignalRunEnded, this,
                [this, worker](quint64 tag) { WorkerEndedSlot(worker, tag); });
    connect(&m_fileCopyThread, &FileCopyThread::SignalFileWritten, this, &CDSVersion::FileWrittenSlot);
    connect(&m_fileCopyThread, &FileCopyThread::SignalTotalBytes, this, [this](quint64 total) {
        if (!IsActiveRun(ERun::Install))
            return;
        m_totalBytes = total;
        emit SignalBeginCopyThead(total);
    });
}

CDSVersion::~CDSVersion()
{
    Shutdown();
}

void CDSVersion::Shutdown()
{
    DiscardUnpacks();
    DiscardProcess(m_pZipBackProcess);
    DiscardProcess(m_pUnzipBackProcess);
    DiscardProcess(m_pListBackProcess);
    m_fileCopyThread.RequestStop();
    m_fileResetThread.RequestStop();
    m_fileRemoveBackupThread.RequestStop();
    for (QThread* thread : {static_cast<QThread*>(&m_fileCopyThread), static_cast<QThread*>(&m_fileResetThread),
                            static_cast<QThread*>(&m_fileRemoveBackupThread)}) {
        thread->disconnect(this);
        thread->wait();
    }
}

// ---------------------------------------------------------------------------------------------
// Runs and stops

// A search for the newest cycle may run beside the other runs (it starts by itself at start-up),
// so it keeps a tag of its own.
void CDSVersion::BeginRun(ERun run)
{
    if (run == ERun::Search) {
        m_bSearchActive = true;
        ++m_searchTag;
        return;
    }
    m_eActiveRun = run;
    ++m_runTag;
}

void CDSVersion::EndRun(ERun run)
{
    if (!IsActiveRun(run))
        return;
    if (run == ERun::Search) {
        m_bSearchActive = false;
        ++m_searchTag;
        return;
    }
    m_eActiveRun = ERun::None;
    ++m_runTag;
}

bool CDSVersion::StopRun(ERun run)
{
    if (!IsActiveRun(run))
        return false;
    EndRun(run);
    return true;
}

bool CDSVersion::IsActiveRun(ERun run) const
{
    return run == ERun::Search ? m_bSearchActive : m_eActiveRun == run;
}

void CDSVersion::StartWorker(CFileWorkerThread& worker)
{
    worker.Start(m_runTag);
}

void CDSVersion::WorkerEndedSlot(CFileWorkerThread* worker, quint64 tag)
{
    if (tag != m_runTag) {
        // The run was stopped while the worker finished its last step; nothing more is reported.
        m_log.WriteString(QStringLiteral("late end of a stopped run ignored"), false);
        return;
    }
    if (worker == &m_fileCopyThread)
        FileCopyThreadFinishedSlot();
    else if (worker == &m_fileResetThread)
        FileResetThreadFinishedSlot();
    else
        FileRemoveBackupThreadFinishedSlot();
}

// The workers look at the stop request before every file, so waiting is short; only a worker
// stuck in one file (a slow copy across file systems) is cut off.
void CDSVersion::StopWorker(CFileWorkerThread& thread, const char* name)
{
    if (!thread.isRunning())
        return;
    thread.RequestStop();
    if (thread.wait(st_stopGraceMs))
        return;
    m_log.WriteString(QStringLiteral("!!WARNING ") + QLatin1String(name) + QStringLiteral(" terminated"), false);
    thread.terminate();
    thread.wait();
}

// ---------------------------------------------------------------------------------------------
// Version discovery

CDSVersion::VersionList CDSVersion::ParseVersionList(const QByteArray& bytes)
{
    const QStringList lines = versionListLines(bytes);
    VersionList list;
    list.version = lastNonEmptyLine(lines);
    list.revision = firstRevision(lines);
    if (list.revision.isEmpty())
        list.revision = QStringLiteral("1");
    return list;
}

void CDSVersion::SetServer(const QString& server)
{
    m_strServer = server;
    m_downloader.SetMirrors(server);
}

QString CDSVersion::GetServerBaseUrl() const
{
    return CVerifiedDownload::BaseUrl(m_downloader.GetMirrors().value(0)) + QStringLiteral("/quillmark/");
}

void CDSVersion::SetTrustedKeys(const QList<CMinisign::PublicKey>& keys, bool verify)
{
    m_downloader.SetTrustedKeys(keys, verify);
}

void CDSVersion::Init(const QString& version)
{
    m_strVersion = version;
    InitDownloadDirectory();
}

void CDSVersion::InitDownloadDirectory()
{
    m_strDownloadDir = CAppPaths::DownloadFolder();
    if (!QDir(m_strDownloadDir).exists())
        QDir().mkpath(m_strDownloadDir);
    m_strCycleDir = m_strDownloadDir + QLatin1Char('/') + QLatin1String(st_cycleFolderName);
    if (!QDir(m_strCycleDir).exists())
        QDir().mkpath(m_strCycleDir);
}

void CDSVersion::SearchForNewVersion(bool byHand)
{
    BeginRun(ERun::Search);
    m_bSearchByHand = byHand;
    m_lastFailure = CFailureReason();
    m_strNewVersion.clear();
    m_strNewVersionDig.clear();
    DownloadVersionListTxt();
}

void CDSVersion::DownloadVersionListTxt()
{
    if (m_strDownloadDir.isEmpty())
        InitDownloadDirectory();
    QString reason;
    if (!CVerifiedDownload::CanSaveInto(m_strDownloadDir, m_strVersionListName, reason)) {
        // The downloader would neither ask nor answer; end the search here so nobody waits forever.
        m_log.WriteString(
            QStringLiteral("!!ERROR ") + m_strVersionListName + QStringLiteral(" not requested: ") + reason, false);
        emit SignalDownloadError();
        FinishSearchLater();
        return;
    }
    CVerifiedDownload::Expect expect;
    // A list signed before the newest one already taken is an old one played back.
    expect.notBefore = m_acceptedListTime;
    m_downloader.Fetch(QStringLiteral("/quillmark/") + m_strVersionListName, m_strDownloadDir, kCredentials, expect);
}

void CDSVersion::QuillmarkCheckHighVersion(const QByteArray& bytes)
{
    const VersionList list = ParseVersionList(bytes);
    m_log.WriteString(QStringLiteral("#Version: ") + list.version, false);
    m_strNewRevision = list.revision;
    InitNewDSVersion(list.version);
}

void CDSVersion::InitNewDSVersion(const QString& version)
{
    m_strNewVersion = version;
    m_strNewVersionDig = cutDig(version);
    if (!m_strNewVersionDig.isEmpty())
        emit SignalChangeNewVersion(m_strNewVersionDig);
}

QString CDSVersion::InitLocalVersion()
{
    m_strLocalVersion.clear();
    m_strLocalRevision.clear();
    QFile file(m_strCycleDir + QLatin1Char('/') + m_strVersionListName);
    if (!m_strCycleDir.isEmpty() && file.exists()) {
        if (file.open(QIODevice::ReadOnly)) {
            const QStringList lines = versionListLines(file.readAll());
            file.close();
            m_strLocalVersion = lastNonEmptyLine(lines);
            m_strLocalRevision = firstRevision(lines);
        } else {
            m_log.WriteString(QStringLiteral("!!WARNING cannot read ") + file.fileName() + QStringLiteral(": ") +
                                  file.errorString(),
                              false);
        }
    }
    if (m_strLocalRevision.isEmpty())
        m_strLocalRevision = QStringLiteral("1");
    return m_strLocalVersion;
}

QString CDSVersion::cutDig(const QString& text)
{
    QString digits;
    for (const QChar c : text)
        if (c >= QLatin1Char('0') && c <= QLatin1Char('9'))
            digits += c;
    return digits;
}

bool CDSVersion::CheckNewVersionRevision()
{
    InitLocalVersion();
    m_log.WriteString(QStringLiteral("# New   Cycle-Version: ") + m_strNewVersion + QStringLiteral(" Revision: ") +
                          m_strNewRevision,
                      false);
    m_log.WriteString(QStringLiteral("# Local Cycle-Version: ") + m_strLocalVersion + QStringLiteral(" Revision: ") +
                          m_strLocalRevision,
                      false);
    // Any difference counts, not only a higher number.
    if (cutDig(m_strNewVersion) != cutDig(m_strLocalVersion))
        return true;
    return m_strNewRevision != m_strLocalRevision;
}

bool CDSVersion::NewDSVersionAvailable()
{
    return !m_strNewVersionDig.isEmpty() && CheckNewVersionRevision();
}

QString CDSVersion::GetTargetVersion() const
{
    return m_strNewVersionDig.isEmpty() ? cutDig(m_strLocalVersion) : m_strNewVersionDig;
}

QString CDSVersion::GetTargetRevision() const
{
    return m_strNewVersionDig.isEmpty() ? m_strLocalRevision : m_strNewRevision;
}

// ---------------------------------------------------------------------------------------------
// Download queue

void CDSVersion::DownloadNewDSVersion()
{
    m_datasetQueue.clear();
    m_lastFailure = CFailureReason();
    m_log.WriteString(QStringLiteral("--Download Datasets"), false);
    if (!m_pProductList)
        return;
    BeginRun(ERun::Download);
    emit SignalNewDSVersionStarted();

    auto enqueue = [this](CProduct* product) {
        m_log.WriteString(QStringLiteral("#Product-Update <") + product->GetName() + QLatin1Char('>'), false);
        m_log.WriteString(QStringLiteral("#Dataset <") + product->GetDataset() + QLatin1Char('>'), false);
        if (!m_datasetQueue.contains(product->GetDataset()))
            m_datasetQueue << product->GetDataset();
    };

    for (int i = 0; i < m_pProductList->GetSize(); ++i) {
        CProduct* product = m_pProductList->GetByIndex(i);
        if (!product)
            continue;
        if (!product->GetUpdate() || m_pSingleProduct) {
            product->SetInstallState(QMK_STATE_NOT_INSTALLED);
        } else {
            product->SetErrorText(QString());
            product->SetInstallState(QMK_STATE_INSTALL_RUN);
            enqueue(product);
        }
    }
    if (m_pSingleProduct) {
        m_pSingleProduct->SetErrorText(QString());
        if (m_pSingleProduct->GetInstallGroup())
            m_pSingleProduct->GetInstallGroup()->SetInstallState(QMK_STATE_INSTALL_RUN);
        else
            m_pSingleProduct->SetInstallState(QMK_STATE_INSTALL_RUN);
        enqueue(m_pSingleProduct);
    }

    m_iDownloadIndex = -1;
    ClearDownloadDirectory();

    // Rename does not overwrite, so an existing local copy of the same version is kept.
    const QString fetched = m_strDownloadDir + QLatin1Char('/') + m_strVersionListName;
    if (QFile::exists(fetched))
        QFile::rename(fetched, m_strCycleDir + QLatin1Char('/') + m_strVersionListName);

    DownloadNextDataset();
}

void CDSVersion::ClearDownloadDirectory()
{
    InitLocalVersion();
    const QString local = m_strLocalVersion + m_strLocalRevision;
    const QString offered = m_strNewVersion + m_strNewRevision;
    if (m_strNewVersion.isEmpty()) {
        // Nothing can be fetched without an offer, so the archives at hand stay.
        m_log.WriteString(QStringLiteral("!!WARNING no new version known, cycle folder kept"), false);
        return;
    }
    if (local == offered)
        return;
    if (!removeDir(m_strCycleDir))
        m_log.WriteString(QStringLiteral("!!ERROR cannot empty ") + m_strCycleDir, false);
    QDir().mkpath(m_strCycleDir);
}

// A run that brought no archive leaves no local copy behind: the list alone would read as the cycle
// held here, and the next opening of the dialog would find nothing new to download. It goes back
// where the search left it, for a repeated run to take again.
void CDSVersion::DropListWithoutArchives()
{
    const QString list = m_strCycleDir + QLatin1Char('/') + m_strVersionListName;
    if (GetLocalDatasetList().isEmpty() && QFile::exists(list) &&
        !QFile::rename(list, m_strDownloadDir + QLatin1Char('/') + m_strVersionListName))
        QFile::remove(list);
}

void CDSVersion::DownloadNextDataset()
{
    ++m_iDownloadIndex;
    m_strCurrentArchive.clear();
    m_strCurrentDataset.clear();
    if (!m_pProductList || !IsActiveRun(ERun::Download))
        return;
    if (m_iDownloadIndex >= m_datasetQueue.size()) {
        EndRun(ERun::Download);
        DropListWithoutArchives();
        m_log.WriteString(QStringLiteral("SignalDownloadDataSetReady"), false);
        if (!CheckDownloadError())
            emit SignalDownloadDataSetReady();
        else
            emit SignalDownloadDataSetError();
        return;
    }
    const QString dataset = m_datasetQueue.at(m_iDownloadIndex);
    emit SignalDownloadDataset(dataset);
    // A receiver of the announcement may have stopped the run.
    if (!IsActiveRun(ERun::Download))
        return;
    m_log.WriteString(QStringLiteral("#DownloadDataset: ") + dataset, false);
    if (!DownloadDataset(dataset))
        DownloadNextDataset();
}

bool CDSVersion::DownloadDataset(const QString& dataset)
{
    m_strCurrentArchive.clear();
    m_strCurrentDataset.clear();
    if (m_strNewVersion.isEmpty() || dataset.isEmpty())
        return false;
    m_strCurrentArchive = dataset + QStringLiteral(".zip");
    m_strCurrentDataset = dataset;

    QString reason;
    if (!CVerifiedDownload::CanSaveInto(m_strCycleDir, m_strCurrentArchive, reason))
        return FailDatasetRequest(dataset, reason);

    // An archive signed for another cycle, revision or dataset would mix two cycles.
    CVerifiedDownload::Expect expect;
    expect.cycle = m_strNewVersionDig;
    expect.revision = m_strNewRevision;
    expect.dataset = dataset;
    m_downloader.Fetch(QStringLiteral("/quillmark/") + m_strNewVersion + QLatin1Char('/') + m_strCurrentArchive,
                       m_strCycleDir, kCredentials, expect);
    return true;
}

// A dataset that could not be asked for counts as a failed download, not as a skipped one.
bool CDSVersion::FailDatasetRequest(const QString& dataset, const QString& reason)
{
    m_lastFailure =
        CFailureReason(CFailureReason::EKind::NotWritable, m_downloader.GetMirrors().value(0), 0, 0, reason);
    SetProdDownloadError();
    WriteResult(tr("Download failed") + QLatin1Char(' ') + m_strCurrentArchive, true);
    m_log.WriteString(QStringLiteral("!!ERROR ") + tr("Failed download file:") + QLatin1Char(' ') + dataset +
                          QStringLiteral(".zip: ") + reason,
                      false);
    emit SignalDownloadError();
    return false;
}

void CDSVersion::downloadFinishedSlot(QString url, QString file, QStringList errors, QByteArray data)
{
    Q_UNUSED(data)
    // An aborted transfer may name no file; its URL still says what it was.
    QString name = QFileInfo(file).fileName();
    if (name.isEmpty())
        name = QFileInfo(url).fileName();
    if (name.isEmpty())
        return;

    const bool failed = !errors.isEmpty();
    if (failed) {
        QString partial = file;
        if (partial.isEmpty())
            partial = (name == m_strVersionListName ? m_strDownloadDir : m_strCycleDir) + QLatin1Char('/') + name;
        if (QFileInfo(partial).isFile())
            QFile::remove(partial);
        m_lastFailure = m_downloader.LastFailure();
        emit SignalDownloadError();
    }

    if (name == m_strVersionListName) {
        if (!IsActiveRun(ERun::Search))
            return;
        if (!failed)
            QuillmarkCheckHighVersion(ReadVersionList(file));
        else
            m_log.WriteString(QStringLiteral("!!ERROR ") + tr("Failed download file:") + QLatin1Char(' ') + name +
                                  QStringLiteral(" (") + errors.join(QStringLiteral("; ")) + QLatin1Char(')'),
                              false);
        FinishSearchLater();
        return;
    }

    if (!IsActiveRun(ERun::Download))
        return;
    if (!m_strCurrentArchive.isEmpty() && name == m_strCurrentArchive) {
        if (!failed) {
            // With one server it goes without saying where a file came from.
            const QString mirror = m_downloader.GetMirrors().size() > 1
                                       ? QLatin1Char(' ') + tr("(mirror %1)").arg(m_downloader.LastMirror())
                                       : QString();
            WriteResult(tr("Download success") + QLatin1Char(' ') + name + mirror, false);
            m_log.WriteString(QLatin1Char('#') + tr("Download success file:") + QLatin1Char(' ') + file +
                                  QStringLiteral(" from ") + m_downloader.LastMirror(),
                              false);
        } else {
            SetProdDownloadError();
            WriteResult(tr("Download failed") + QLatin1Char(' ') + name, true);
            m_log.WriteString(QStringLiteral("!!ERROR ") + tr("Failed download file:") + QLatin1Char(' ') +
                                  (file.isEmpty() ? name : file),
                              false);
        }
        DownloadNextDataset();
    }
}

// Only the signed bytes on disk are read; the downloader's last data may be a part of them.
QByteArray CDSVersion::ReadVersionList(const QString& file)
{
    QFile list(file);
    if (!list.open(QIODevice::ReadOnly)) {
        m_log.WriteString(QStringLiteral("!!ERROR cannot read ") + file + QStringLiteral(": ") + list.errorString(),
                          false);
        return QByteArray();
    }
    if (m_downloader.IsVerifying()) {
        const qint64 signedAt = m_downloader.LastFields().value(QStringLiteral("timestamp")).toLongLong();
        m_acceptedListTime = qMax(m_acceptedListTime, signedAt);
    }
    // A version list is a few lines; a megabyte is far beyond any real one.
    return list.read(1024 * 1024);
}

// A mirror that failed is passed over; with several, the result says which file it did not give.
void CDSVersion::MirrorFailedSlot(const QString& name, const QString& mirror, const CFailureReason& reason)
{
    m_log.WriteString(QStringLiteral("!!ERROR ") + name + QStringLiteral(" not taken from mirror ") + mirror +
                          QStringLiteral(": ") + reason.LogText(),
                      false);
    if (IsActiveRun(ERun::Download) && name == m_strCurrentArchive && m_downloader.GetMirrors().size() > 1)
        WriteResultWarning(tr("%1 not taken from mirror %2:").arg(name, mirror) + QLatin1Char(' ') + reason.UserText());
}

// Receivers run after the handler has returned; a stop in between ends the search silently.
void CDSVersion::FinishSearchLater()
{
    const quint64 tag = m_searchTag;
    QTimer::singleShot(0, this, [this, tag] {
        if (tag != m_searchTag || !IsActiveRun(ERun::Search))
            return;
        EndRun(ERun::Search);
        emit SignalCheckHighVersionFinished();
    });
}

void CDSVersion::ChangePercentSlot(int percent)
{
    emit SignalChangePercent(percent);
}

void CDSVersion::SetProdDownloadError()
{
    // The dataset in flight; a stop has already moved the index past the queue.
    QString dataset = m_strCurrentDataset;
    if (dataset.isEmpty()) {
        if (m_iDownloadIndex < 0 || m_iDownloadIndex >= m_datasetQueue.size())
            return;
        dataset = m_datasetQueue.at(m_iDownloadIndex);
    }
    if (!m_pProductList)
        return;
    const QString text = tr("Download failed!") + QLatin1Char(' ') + tr("Dataset: ") + dataset;
    auto mark = [&](CProduct* product) {
        if (product && product->GetDataset() == dataset) {
            product->SetErrorText(text);
            product->SetInstallState(QMK_STATE_INSTALL_ERROR);
        }
    };
    if (m_pSingleProduct) {
        mark(m_pSingleProduct);
        return;
    }
    for (int i = 0; i < m_pProductList->GetSize(); ++i) {
        CProduct* product = m_pProductList->GetByIndex(i);
        if (product && product->GetUpdate())
            mark(product);
    }
}

bool CDSVersion::CheckDownloadError()
{
    if (!m_pProductList)
        return true;
    if (m_pSingleProduct) {
        if (m_pSingleProduct->GetErrorText().isEmpty())
            return false;
        m_log.WriteString(m_pSingleProduct->GetName(), false);
        m_log.WriteString(m_pSingleProduct->GetErrorText(), false);
        return true;
    }
    bool nothingToInstall = true;
    for (int i = 0; i < m_pProductList->GetSize(); ++i) {
        CProduct* product = m_pProductList->GetByIndex(i);
        if (!product || !product->GetUpdate())
            continue;
        if (product->GetErrorText().isEmpty()) {
            nothingToInstall = false;
        } else {
            m_log.WriteString(product->GetName(), false);
            m_log.WriteString(product->GetErrorText(), false);
        }
    }
    return nothingToInstall;
}

void CDSVersion::StopDownload()
{
    m_log.WriteString(QStringLiteral("StopDownload"), false);
    // A search ends without a word; nobody waits for its answer any more.
    StopRun(ERun::Search);
    if (!m_downloader.IsBusy()) {
        // Nothing in flight: nothing to delete, nothing to report.
        StopRun(ERun::Download);
        return;
    }
    if (m_pProductList)
        m_iDownloadIndex = m_datasetQueue.size();
    // The abort is reported at once: the archive in flight counts as failed and the run ends.
    emit SignalStopDownload();
    StopRun(ERun::Download);
    DropListWithoutArchives();
}

QStringList CDSVersion::GetLocalDatasetList() const
{
    QStringList names;
    const QFileInfoList files = CFileTree::plainFiles(m_strCycleDir);
    for (const QFileInfo& info : files) {
        QString fileName = info.fileName();
        if (CheckZipExtension(fileName))
            names << info.completeBaseName();
    }
    names.sort();
    return names;
}

bool CDSVersion::CheckZipExtension(QString& fileName)
{
    return QFileInfo(fileName).suffix().compare(QLatin1String("zip"), Qt::CaseInsensitive) == 0;
}
