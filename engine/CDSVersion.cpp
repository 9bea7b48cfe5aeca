#include "engine/CDSVersion.h"

#include "app/Application.h"
#include "app/CMessageBox.h"
#include "engine/CToolCommand.h"
#include "model/CFileTree.h"
#include "model/CInstallGroup.h"
#include "model/CProduct.h"
#include "model/CProductList.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTimer>
#include <QUrl>

namespace {
const char* const kCredentials = "webclient:Q7x2Lm9p";
const char* const kArchivePassword = "pralvek";
const char* const kCycleFolderName = "QuillmarkCycle";
// How long a stop waits for a worker to reach a folder boundary before it is cut off.
const unsigned long kStopGraceMs = 5000;

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

// Whether the downloader could create the file: it sends nothing and reports nothing otherwise.
bool canWriteDownload(const QString& folder, const QString& name, QString& reason)
{
    const QFileInfo dir(folder);
    if (!dir.isDir()) {
        reason = QStringLiteral("folder ") + folder + QStringLiteral(" does not exist");
        return false;
    }
    if (!dir.isWritable()) {
        reason = QStringLiteral("folder ") + folder + QStringLiteral(" is not writable");
        return false;
    }
    const QFileInfo file(folder + QLatin1Char('/') + name);
    if (file.isDir() && !file.isSymLink()) {
        reason = QStringLiteral("a folder ") + file.filePath() + QStringLiteral(" is in the way");
        return false;
    }
    return true;
}

bool isInside(const QString& path, const QString& root)
{
    if (root.isEmpty())
        return false;
    const QString r = QDir::cleanPath(root);
    return path == r || path.startsWith(r + QLatin1Char('/'));
}

// Resolves the real folder of a path whose last component may not exist (yet), so that links
// and ".." cannot lead a removal out of the product.
QString realLocation(const QString& path)
{
    const QFileInfo info(QDir::cleanPath(path));
    const QString parent = QFileInfo(info.path()).canonicalFilePath();
    if (parent.isEmpty())
        return QString();
    return QDir::cleanPath(parent + QLatin1Char('/') + info.fileName());
}

QString realFolder(const QString& path)
{
    const QString canonical = QFileInfo(path).canonicalFilePath();
    return canonical.isEmpty() ? QDir::cleanPath(path) : canonical;
}

void discardProcess(QProcess*& process)
{
    if (!process)
        return;
    process->disconnect();
    process->close();
    process->deleteLater();
    process = nullptr;
}
} // namespace

CDSVersion::CDSVersion(QObject* parent) : QObject(parent), m_strVersionListName(QStringLiteral("versionList.txt"))
{
    m_strServer = QStringLiteral(QUILLMARK_DEFAULT_SERVER);
    m_log.SetFileName(QStringLiteral("log_dsupdate.txt"));

    connect(&m_downloader, &DownloadManager::SignalFinished, this, &CDSVersion::downloadFinishedSlot);
    connect(&m_downloader, &DownloadManager::SignalChangePercent, this, &CDSVersion::ChangePercentSlot);
    connect(this, &CDSVersion::SignalStopDownload, &m_downloader, &DownloadManager::stopDownloadSlot);

    connect(&m_fileCopyThread, &FileCopyThread::SignalFinished, this, &CDSVersion::FileCopyThreadFinishedSlot);
    connect(&m_fileCopyThread, &FileCopyThread::SignalFileWritten, this, &CDSVersion::FileWrittenSlot);
    connect(&m_fileResetThread, &FileResetThread::SignalFinished, this, &CDSVersion::FileResetThreadFinishedSlot);
    connect(&m_fileRemoveBackupThread, &FileRemoveBackupThread::SignalFinished, this,
            &CDSVersion::FileRemoveBackupThreadFinishedSlot);
}

CDSVersion::~CDSVersion()
{
    Shutdown();
}

void CDSVersion::Shutdown()
{
    discardProcess(m_pUnzipProcess);
    discardProcess(m_pZipBackProcess);
    discardProcess(m_pUnzipBackProcess);
    discardProcess(m_pListBackProcess);
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

QString CDSVersion::GetServerBaseUrl() const
{
    return QStringLiteral("http://") + m_strServer + QStringLiteral("/quillmark/");
}

void CDSVersion::Init(const QString& version)
{
    m_strVersion = version;
    InitDownloadDirectory();
}

void CDSVersion::InitDownloadDirectory()
{
    m_strDownloadDir = Application::st_strAppPath + QStringLiteral("/downloads");
    if (!QDir(m_strDownloadDir).exists())
        QDir().mkpath(m_strDownloadDir);
    m_strCycleDir = m_strDownloadDir + QLatin1Char('/') + QLatin1String(kCycleFolderName);
    if (!QDir(m_strCycleDir).exists())
        QDir().mkpath(m_strCycleDir);
}

void CDSVersion::SearchForNewVersion(bool byHand)
{
    m_bSearchByHand = byHand;
    m_strNewVersion.clear();
    m_strNewVersionDig.clear();
    DownloadVersionListTxt();
}

void CDSVersion::DownloadVersionListTxt()
{
    if (m_strDownloadDir.isEmpty())
        InitDownloadDirectory();
    QString reason;
    if (!canWriteDownload(m_strDownloadDir, m_strVersionListName, reason)) {
        // The downloader would neither ask nor answer; end the search here so nobody waits forever.
        m_log.WriteString(
            QStringLiteral("!!ERROR ") + m_strVersionListName + QStringLiteral(" not requested: ") + reason, false);
        emit SignalDownloadError();
        QTimer::singleShot(0, this, &CDSVersion::SignalCheckHighVersionFinished);
        return;
    }
    const QUrl url(GetServerBaseUrl() + m_strVersionListName);
    m_downloader.credentials = QByteArray(kCredentials);
    m_downloader.DownloadFile(url, true, m_strDownloadDir);
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
    m_log.WriteString(QStringLiteral("--Download Datasets"), false);
    if (!m_pProductList)
        return;
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

void CDSVersion::DownloadNextDataset()
{
    ++m_iDownloadIndex;
    m_strCurrentArchive.clear();
    m_strCurrentDataset.clear();
    if (!m_pProductList)
        return;
    if (m_iDownloadIndex >= m_datasetQueue.size()) {
        m_log.WriteString(QStringLiteral("SignalDownloadDataSetReady"), false);
        if (!CheckDownloadError())
            emit SignalDownloadDataSetReady();
        else
            emit SignalDownloadDataSetError();
        return;
    }
    const QString dataset = m_datasetQueue.at(m_iDownloadIndex);
    emit SignalDownloadDataset(dataset);
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
    if (!canWriteDownload(m_strCycleDir, m_strCurrentArchive, reason))
        return FailDatasetRequest(dataset, reason);

    const QUrl url(GetServerBaseUrl() + m_strNewVersion + QLatin1Char('/') + m_strCurrentArchive);
    m_downloader.credentials = QByteArray(kCredentials);
    m_downloader.DownloadFile(url, true, m_strCycleDir);
    return true;
}

// A dataset that could not be asked for counts as a failed download, not as a skipped one.
bool CDSVersion::FailDatasetRequest(const QString& dataset, const QString& reason)
{
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
        emit SignalDownloadError();
    }

    if (name == m_strVersionListName) {
        if (!failed)
            QuillmarkCheckHighVersion(data);
        else
            m_log.WriteString(QStringLiteral("!!ERROR ") + tr("Failed download file:") + QLatin1Char(' ') + name +
                                  QStringLiteral(" (") + errors.join(QStringLiteral("; ")) + QLatin1Char(')'),
                              false);
        QTimer::singleShot(0, this, &CDSVersion::SignalCheckHighVersionFinished);
        return;
    }

    if (!m_strCurrentArchive.isEmpty() && name == m_strCurrentArchive) {
        if (!failed) {
            WriteResult(tr("Download success") + QLatin1Char(' ') + name, false);
            m_log.WriteString(QLatin1Char('#') + tr("Download success file:") + QLatin1Char(' ') + file, false);
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
    if (m_pProductList)
        m_iDownloadIndex = m_datasetQueue.size();
    m_log.WriteString(QStringLiteral("StopDownload"), false);
    emit SignalStopDownload();
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

// ---------------------------------------------------------------------------------------------
// Unzip and install

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
        ++m_iCurrentIndex;
        if (!m_pProductList)
            return;
        if (m_iCurrentIndex >= m_pProductList->GetSize()) {
            emit SignalInstallReady();
            return;
        }
        CProduct* product = m_pProductList->GetByIndex(m_iCurrentIndex);
        if (!product)
            continue;
        if (product->GetUpdate())
            product->SetInstallState(QMK_STATE_INSTALL_RUN);
        if (product->GetResetOrUpdateDone())
            continue;
        if (!product->GetUpdate())
            product->SetInstallState(QMK_STATE_NOT_INSTALLED);
        emit SignalUnzippProduct(product->GetName());
        if (!product->GetUpdate())
            continue;

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

    discardProcess(m_pUnzipProcess);
    m_pUnzipProcess = new QProcess();
    connect(m_pUnzipProcess, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            &CDSVersion::unzipProdRrocessFinishedSlot);
    connect(m_pUnzipProcess, &QProcess::started, this, &CDSVersion::processStartedSlot);
    connect(m_pUnzipProcess, &QProcess::errorOccurred, this, [this](QProcess::ProcessError e) {
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
        QTimer::singleShot(0, this, &CDSVersion::UnzipNextProduct);
    });

    // Nobody reads unzip's listing of every file, so it goes nowhere instead of into a buffer.
    m_pUnzipProcess->setStandardOutputFile(QProcess::nullDevice());
    CToolCommand command(QStringLiteral("unzip"));
    command.arg(QStringLiteral("-o")).arg(QStringLiteral("-P")).arg(QLatin1String(kArchivePassword));
    command.quoted(archive).arg(QStringLiteral("-d")).quoted(target);
    m_log.WriteString(command.commandLine(), false);
    if (!command.start(m_pUnzipProcess)) {
        m_log.WriteString(QStringLiteral("!!ERROR unzip not found on the search path"), false);
        discardProcess(m_pUnzipProcess);
        return false;
    }
    return true;
}

void CDSVersion::CreateTempInstallDirectory()
{
    m_strTempInstallDir = Application::st_strAppPath + QStringLiteral("/downloads");
    if (!QDir(m_strTempInstallDir).exists())
        QDir().mkpath(m_strTempInstallDir);
    m_strTempInstallDir += QStringLiteral("/temp");
    removeDir(m_strTempInstallDir);
    if (!QDir(m_strTempInstallDir).exists())
        QDir().mkpath(m_strTempInstallDir);
}

quint64 CDSVersion::GetDirectoryByteSize(const QString& folder)
{
    quint64 total = 0;
    QStringList work{folder};
    while (!work.isEmpty()) {
        const QString dir = work.takeFirst();
        if (!QFileInfo(dir).isDir())
            continue;
        for (const QFileInfo& file : CFileTree::plainFiles(dir))
            total += quint64(file.size());
        for (const QFileInfo& sub : CFileTree::subFolders(dir))
            work << sub.absoluteFilePath();
    }
    return total;
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
    if (!product)
        return;
    if (status == QProcess::CrashExit) {
        // The run stops here on purpose: no next product and no ready signal.
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
    QString installed = product->GetCycleVersion();
    installed += product->GetRevision();
    QString backup = product->GetBackCycleVersion();
    backup += product->GetBackRevision();

    // A re-install of the installed cycle, or one whose backup already holds it, keeps that backup.
    bool makeBackups = true;
    if (newVersion == installed || installed == backup)
        makeBackups = installed.isEmpty();
    makeBackups = makeBackups && m_bCreateBackupFiles;

    m_fileCopyThread.Init(product, m_strTempInstallDir, makeBackups);
    m_totalBytes = GetDirectoryByteSize(m_strTempInstallDir);
    m_fileCopyThread.start(QThread::InheritPriority);
    emit SignalBeginCopyThead(m_totalBytes);
}

void CDSVersion::FileCopyThreadFinishedSlot()
{
    if (CProduct* product = CurrentInstallProduct()) {
        if (!m_fileCopyThread.GetSuccess()) {
            product->SetInstallState(QMK_STATE_INSTALL_ERROR);
            WriteResult(tr("Install failed") + QLatin1Char(' ') + product->GetName(), true);
        } else {
            product->SetInstallState(QMK_STATE_INSTALL_OK);
            RemoveProductFiles(product);
            if (CInstallGroup* group = product->GetInstallGroup()) {
                group->SetResetOrUpdateTrue(product);
                for (const QString& name : group->GetProdNames())
                    WriteResult(tr("Install success") + QLatin1Char(' ') + name, false);
            }
        }
    }
    removeDir(m_strTempInstallDir);
    m_log.WriteString(QStringLiteral("FileCopyThreadFinishedSlot"), false);
    UnzipNextProduct();
}

// The remove-file list may only reach into the product's own folders; an entry that leads out
// of them (through "..", a link or an absolute path) is refused and left alone.
void CDSVersion::RemoveProductFiles(CProduct* product)
{
    QStringList roots;
    if (!product->GetNewProductPath().isEmpty())
        roots << realFolder(product->GetNewProductPath());
    for (const CInstallPath* entry : product->GetInstallPaths())
        if (entry && !entry->strNewPath.isEmpty())
            roots << realFolder(entry->strNewPath);

    QStringList refused;
    QStringList allowed;
    for (const QString& entry : product->GetRemoveFiles()) {
        const QString target = product->InitRealPath(entry);
        if (target.isEmpty())
            continue;
        const QString real = realLocation(target);
        bool inside = false;
        for (const QString& root : roots)
            if (!real.isEmpty() && real != root && isInside(real, root))
                inside = true;
        (inside ? allowed : refused) << target;
    }
    if (refused.isEmpty()) {
        product->RemoveFileList();
        return;
    }
    for (const QString& target : refused)
        m_log.WriteString(QStringLiteral("!!ERROR remove-file entry outside the product, not removed: ") + target,
                          false);
    for (const QString& target : allowed)
        removeDir(target);
}

void CDSVersion::FileWrittenSlot(quint64 bytes)
{
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
    if (m_pProductList)
        m_iCurrentIndex = m_pProductList->GetSize();
    if (m_pUnzipProcess && m_pUnzipProcess->state() != QProcess::NotRunning)
        m_log.WriteString(QStringLiteral("StopInstall: unzip stopped"), false);
    discardProcess(m_pUnzipProcess);
    SetFinishedStateProducts();
}

void CDSVersion::StopWorker(QThread& thread, const char* name)
{
    if (!thread.isRunning())
        return;
    // The workers look at the stop request at every folder; only a worker stuck inside one huge
    // folder is cut off, which may leave a single move unfinished.
    if (thread.wait(kStopGraceMs))
        return;
    m_log.WriteString(QStringLiteral("!!WARNING ") + QLatin1String(name) + QStringLiteral(" terminated"), false);
    thread.terminate();
    thread.wait();
}

void CDSVersion::StopFileCopyThred()
{
    if (m_fileCopyThread.isRunning()) {
        m_fileCopyThread.RequestStop();
        StopWorker(m_fileCopyThread, "FileCopyThread");
    }
    removeDir(m_strTempInstallDir);
}

// ---------------------------------------------------------------------------------------------
// Reset and backup removal: one walk, two flavours.

// A reset or backup-removal run over the list starts with every product unprocessed and the
// selected ones in the run's state.
void CDSVersion::PrepareBackupRun(CProductList* list, EQMKProductInstallState runState)
{
    for (int i = 0; i < list->GetSize(); ++i) {
        CProduct* product = list->GetByIndex(i);
        if (!product)
            continue;
        product->SetResetOrUpdateDone(false);
        if (product->GetUpdate()) {
            product->SetErrorText(QString());
            product->SetInstallState(runState);
        }
    }
}

void CDSVersion::Reset(CProductList* list)
{
    m_log.WriteString(QStringLiteral("--Reset Datasets"), false);
    m_pProductList = list;
    m_iResetIndex = -1;
    if (!list)
        return;
    if (!m_pSingleProduct)
        PrepareBackupRun(list, QMK_STATE_RESET_RUN);
    ResetNextProduct();
}

void CDSVersion::RemoveBackup(CProductList* list)
{
    m_log.WriteString(QStringLiteral("--RemoveBackup Datasets"), false);
    m_pProductList = list;
    m_iRemoveBackupIndex = -1;
    if (!list)
        return;
    if (!m_pSingleProduct)
        PrepareBackupRun(list, QMK_STATE_REMOVE_BACKUP_RUN);
    RemoveBackupNextProduct();
}

void CDSVersion::ResetNextProduct()
{
    WalkNextProduct(Walk::Reset);
}

void CDSVersion::RemoveBackupNextProduct()
{
    WalkNextProduct(Walk::RemoveBackup);
}

void CDSVersion::ResetSelProduct()
{
    WalkSelProduct(Walk::Reset);
}

void CDSVersion::RemoveBackupSelProduct()
{
    WalkSelProduct(Walk::RemoveBackup);
}

void CDSVersion::WalkNextProduct(Walk walk)
{
    int& index = walk == Walk::Reset ? m_iResetIndex : m_iRemoveBackupIndex;
    for (;;) {
        ++index;
        if (!m_pProductList)
            return;
        if (index >= m_pProductList->GetSize()) {
            if (walk == Walk::Reset)
                emit SignalResetReady();
            else
                emit SignalRemoveBackupReady();
            return;
        }
        if (m_pSingleProduct) {
            WalkSelProduct(walk);
            return;
        }
        CProduct* product = m_pProductList->GetByIndex(index);
        if (!product || product->GetResetOrUpdateDone())
            continue;
        if (!product->GetUpdate()) {
            product->SetInstallState(QMK_STATE_NOT_INSTALLED);
            if (walk == Walk::Reset)
                emit SignalResetProduct(product->GetName());
            else
                emit SignalRemoveBackupProduct(product->GetName());
            continue;
        }
        if (WalkProduct(walk, product, false))
            return;
    }
}

void CDSVersion::WalkSelProduct(Walk walk)
{
    int& index = walk == Walk::Reset ? m_iResetIndex : m_iRemoveBackupIndex;
    index = m_pProductList ? m_pProductList->GetSize() : 0;
    CProduct* product = m_pSingleProduct;
    if (!product)
        return;
    const EQMKProductInstallState running = walk == Walk::Reset ? QMK_STATE_RESET_RUN : QMK_STATE_REMOVE_BACKUP_RUN;
    if (product->GetInstallGroup())
        product->GetInstallGroup()->SetInstallState(running);
    else
        product->SetInstallState(running);
    if (!WalkProduct(walk, product, true))
        WalkNextProduct(walk);
}

// Starts the worker for one product; false when the product failed at once and the walk goes on.
bool CDSVersion::WalkProduct(Walk walk, CProduct* product, bool single)
{
    const bool reset = walk == Walk::Reset;
    auto announce = [&] {
        if (reset)
            emit SignalResetProduct(product->GetName());
        else
            emit SignalRemoveBackupProduct(product->GetName());
    };
    CInstallGroup* group = product->GetInstallGroup();

    if (!product->InitNewInstallPaths(false)) {
        if (group)
            group->SetInstallState(QMK_STATE_INSTALL_ERROR);
        else
            product->SetInstallState(QMK_STATE_INSTALL_ERROR);
        WriteResult(tr("Path") + QLatin1Char(' ') + tr("not found") + QLatin1Char(' ') + product->GetName(), true);
        announce();
        return false;
    }

    QString backupVersion = product->GetBackCycleVersion();
    backupVersion += product->GetBackRevision();
    if (backupVersion.isEmpty()) {
        // Nothing recorded as backed up: nothing to restore or delete.
        const QStringList names = group ? group->GetProdNames() : QStringList{product->GetName()};
        if (group) {
            if (!single)
                group->SetResetOrUpdateTrue(product);
            group->SetInstallState(QMK_STATE_INSTALL_ERROR);
        } else {
            product->SetInstallState(QMK_STATE_INSTALL_ERROR);
        }
        for (const QString& name : names)
            WriteResult(tr("not found") + QStringLiteral(" backup ") + tr("for") + QLatin1Char(' ') + name, true);
        announce();
        return false;
    }

    announce();
    if (reset) {
        m_log.WriteString(QStringLiteral("#Product-Reset <") + product->GetName() + QLatin1Char('>'), false);
        m_fileResetThread.Init(product);
        m_fileResetThread.start(QThread::InheritPriority);
    } else {
        m_log.WriteString(
            (single ? QStringLiteral("#Product-RemoveBackup <") : QStringLiteral("#Product-Remove-Backup <")) +
                product->GetName() + QLatin1Char('>'),
            false);
        m_fileRemoveBackupThread.Init(product);
        m_fileRemoveBackupThread.start(QThread::InheritPriority);
    }
    return true;
}

void CDSVersion::FileResetThreadFinishedSlot()
{
    // A list run looks the product up by the remove-backup index; kept so deliberately.
    CProduct* product = m_pSingleProduct;
    if (!product && m_pProductList && m_iRemoveBackupIndex >= 0)
        product = m_pProductList->GetByIndex(m_iRemoveBackupIndex);
    WalkThreadFinished(Walk::Reset, product, m_fileResetThread.GetSuccess());
}

void CDSVersion::FileRemoveBackupThreadFinishedSlot()
{
    CProduct* product = m_pSingleProduct;
    if (!product && m_pProductList && m_iRemoveBackupIndex >= 0)
        product = m_pProductList->GetByIndex(m_iRemoveBackupIndex);
    WalkThreadFinished(Walk::RemoveBackup, product, m_fileRemoveBackupThread.GetSuccess());
}

void CDSVersion::WalkThreadFinished(Walk walk, CProduct* product, bool success)
{
    const bool reset = walk == Walk::Reset;
    if (product) {
        if (!success) {
            product->SetInstallState(QMK_STATE_INSTALL_ERROR);
            WriteResult((reset ? tr("Reset failed") : tr("Remove backup failed")) + QLatin1Char(' ') +
                            product->GetName(),
                        true);
        } else {
            QString cycle, revision;
            if (reset) {
                cycle = product->GetCycleVersion();
                revision = product->GetRevision();
            }
            product->SetInstallState(QMK_STATE_INSTALL_OK);
            if (CInstallGroup* group = product->GetInstallGroup()) {
                group->SetResetOrUpdateTrue(product);
                for (const QString& name : group->GetProdNames()) {
                    if (reset)
                        WriteResult(tr("Reset success") + QLatin1Char(' ') + name + QStringLiteral(" ( V. ") + cycle +
                                        QStringLiteral(" R. ") + revision + QStringLiteral(" )"),
                                    false);
                    else
                        WriteResult(tr("Remove backup success") + QLatin1Char(' ') + name, false);
                }
            }
        }
    }
    m_log.WriteString(reset ? QStringLiteral("FileResetThreadFinishedSlot")
                            : QStringLiteral("FileRemoveBackupThreadFinishedSlot"),
                      false);
    WalkNextProduct(walk);
}

void CDSVersion::StopReset()
{
    if (m_fileResetThread.isRunning()) {
        m_fileResetThread.RequestStop();
        StopWorker(m_fileResetThread, "FileResetThread");
    }
    SetFinishedStateProducts();
}

void CDSVersion::StopRemoveBackup()
{
    if (m_fileRemoveBackupThread.isRunning()) {
        m_fileRemoveBackupThread.RequestStop();
        StopWorker(m_fileRemoveBackupThread, "FileRemoveBackupThread");
    }
    SetFinishedStateProducts();
}

// ---------------------------------------------------------------------------------------------
// Whole-backup archives

namespace {
QString absoluteIn(const QString& folder, const QString& path)
{
    return QFileInfo(path).isAbsolute() ? path : QDir(folder).absoluteFilePath(path);
}
} // namespace

bool CDSVersion::CreateBackup(QString archive)
{
    if (m_strDownloadDir.isEmpty())
        InitDownloadDirectory();
    archive = absoluteIn(m_strDownloadDir, archive);
    // zip -r would otherwise add to an old archive.
    if (QFileInfo(archive).isFile() || CFileTree::isLink(archive))
        QFile::remove(archive);
    StartZipBackup(archive);
    return true;
}

bool CDSVersion::LoadBackup(QString archive)
{
    if (m_strDownloadDir.isEmpty())
        InitDownloadDirectory();
    archive = absoluteIn(m_strDownloadDir, archive);
    if (QFileInfo(archive).isFile())
        LoadZipBackup(archive);
    return true;
}

void CDSVersion::FinishBackupProcess(bool zip, bool ok)
{
    if (zip)
        emit SignalZipBackProcessFinished(ok);
    else
        emit SignalUnZipBackProcessFinished(ok);
}

bool CDSVersion::StartZipBackup(QString archive)
{
    discardProcess(m_pZipBackProcess);
    m_pZipBackProcess = new QProcess();
    connect(m_pZipBackProcess, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            &CDSVersion::zipBackProcessFinishedSlot);
    connect(m_pZipBackProcess, &QProcess::errorOccurred, this, [this](QProcess::ProcessError e) {
        if (e != QProcess::FailedToStart)
            return;
        m_log.WriteString(QStringLiteral("!!ERROR zip could not be started: ") + m_pZipBackProcess->errorString(),
                          false);
        FinishBackupProcess(true, false);
    });
    // The folder name in the archive is relative, so zip runs inside the cycle base folder. Only
    // the child's working folder is set: the program's own current folder stays as it is.
    m_pZipBackProcess->setWorkingDirectory(m_strDownloadDir);

    CToolCommand command(QStringLiteral("zip"));
    command.arg(QStringLiteral("-r")).quoted(archive).quoted(QLatin1String(kCycleFolderName));
    m_log.WriteString(command.commandLine(), false);
    if (!command.start(m_pZipBackProcess)) {
        m_log.WriteString(QStringLiteral("!!ERROR zip not found on the search path"), false);
        discardProcess(m_pZipBackProcess);
        QTimer::singleShot(0, this, [this] { FinishBackupProcess(true, false); });
    }
    return true;
}

void CDSVersion::zipBackProcessFinishedSlot(int exitCode, QProcess::ExitStatus status)
{
    m_log.WriteString(QString::asprintf("zipBackProcessFinished state = %d", int(status)), false);
    // Only a crash counts as failure, as for loading; an error code is kept in the log.
    if (status == QProcess::NormalExit && exitCode != 0)
        m_log.WriteString(QStringLiteral("!!WARNING zip ended with code ") + QString::number(exitCode), false);
    FinishBackupProcess(true, status == QProcess::NormalExit);
}

// Loading runs in two steps: the archive's table of contents is checked first, so that a damaged
// archive or one that does not hold a cycle backup never writes a file.
bool CDSVersion::LoadZipBackup(QString archive)
{
    discardProcess(m_pListBackProcess);
    m_pListBackProcess = new QProcess();
    m_pListBackProcess->setWorkingDirectory(m_strDownloadDir);
    connect(m_pListBackProcess, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            [this, archive](int code, QProcess::ExitStatus status) { BackupListingFinished(archive, code, status); });
    connect(m_pListBackProcess, &QProcess::errorOccurred, this, [this](QProcess::ProcessError e) {
        if (e != QProcess::FailedToStart)
            return;
        m_log.WriteString(QStringLiteral("!!ERROR unzip could not be started: ") + m_pListBackProcess->errorString(),
                          false);
        FinishBackupProcess(false, false);
    });
    CToolCommand list(QStringLiteral("unzip"));
    list.arg(QStringLiteral("-Z1")).quoted(archive);
    m_log.WriteString(list.commandLine(), false);
    if (!list.start(m_pListBackProcess, QIODevice::ReadOnly)) {
        m_log.WriteString(QStringLiteral("!!ERROR unzip not found on the search path"), false);
        discardProcess(m_pListBackProcess);
        QTimer::singleShot(0, this, [this] { FinishBackupProcess(false, false); });
    }
    return true;
}

void CDSVersion::BackupListingFinished(const QString& archive, int exitCode, QProcess::ExitStatus status)
{
    const QByteArray listing = m_pListBackProcess ? m_pListBackProcess->readAllStandardOutput() : QByteArray();
    if (status != QProcess::NormalExit || exitCode != 0) {
        m_log.WriteString(QStringLiteral("!!ERROR ") + archive + QStringLiteral(" is damaged or not a ZIP archive"),
                          false);
        FinishBackupProcess(false, false);
        return;
    }
    const QString prefix = QLatin1String(kCycleFolderName) + QLatin1Char('/');
    const QStringList entries = QString::fromLocal8Bit(listing).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    bool foreign = entries.isEmpty();
    for (const QString& entry : entries) {
        const QString name = entry.trimmed();
        if (!name.startsWith(prefix) || name.contains(QLatin1String("../")) || name.contains(QLatin1String("/..")))
            foreign = true;
    }
    if (foreign) {
        m_log.WriteString(QStringLiteral("!!ERROR ") + archive + QStringLiteral(" holds no ") +
                              QLatin1String(kCycleFolderName) + QStringLiteral(" backup, nothing loaded"),
                          false);
        FinishBackupProcess(false, false);
        return;
    }

    discardProcess(m_pUnzipBackProcess);
    m_pUnzipBackProcess = new QProcess();
    connect(m_pUnzipBackProcess, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            &CDSVersion::unzipBackProcessFinishedSlot);
    connect(m_pUnzipBackProcess, &QProcess::errorOccurred, this, [this](QProcess::ProcessError e) {
        if (e != QProcess::FailedToStart)
            return;
        m_log.WriteString(QStringLiteral("!!ERROR unzip could not be started: ") + m_pUnzipBackProcess->errorString(),
                          false);
        FinishBackupProcess(false, false);
    });
    CToolCommand command(QStringLiteral("unzip"));
    command.arg(QStringLiteral("-o")).quoted(archive).arg(QStringLiteral("-d")).quoted(m_strDownloadDir);
    m_log.WriteString(command.commandLine(), false);
    if (!command.start(m_pUnzipBackProcess)) {
        m_log.WriteString(QStringLiteral("!!ERROR unzip not found on the search path"), false);
        discardProcess(m_pUnzipBackProcess);
        QTimer::singleShot(0, this, [this] { FinishBackupProcess(false, false); });
    }
}

void CDSVersion::unzipBackProcessFinishedSlot(int exitCode, QProcess::ExitStatus status)
{
    // The same text as for zip, kept so.
    m_log.WriteString(QString::asprintf("zipBackProcessFinished state = %d", int(status)), false);
    if (status == QProcess::NormalExit && exitCode != 0)
        m_log.WriteString(QStringLiteral("!!WARNING unzip ended with code ") + QString::number(exitCode), false);
    FinishBackupProcess(false, status == QProcess::NormalExit);
}

void CDSVersion::StopZipBackProcess()
{
    const bool running = (m_pZipBackProcess && m_pZipBackProcess->state() != QProcess::NotRunning) ||
                         (m_pUnzipBackProcess && m_pUnzipBackProcess->state() != QProcess::NotRunning) ||
                         (m_pListBackProcess && m_pListBackProcess->state() != QProcess::NotRunning);
    if (running)
        m_log.WriteString(QStringLiteral("StopZipBackProcess"), false);
    discardProcess(m_pZipBackProcess);
    discardProcess(m_pUnzipBackProcess);
    discardProcess(m_pListBackProcess);
}
