#pragma once

#include "app/CMyLog.h"
#include "app/VlAtom.h"
#include "engine/CVerifiedDownload.h"
#include "engine/FileCopyThread.h"
#include "engine/FileRemoveBackupThread.h"
#include "engine/FileResetThread.h"
#include "model/EQMKProductInstallState.h"

#include <QByteArray>
#include <QObject>
#include <QProcess>
#include <QString>
#include <QStringList>

class CProduct;
class CProductList;

// The dataset engine: learns the newest cycle from the version server, downloads the dataset
// archives the selected products need, unpacks and installs them with backups, and restores or
// deletes those backups. Everything runs on the GUI thread except the three file workers; each
// step is advanced by the end signal of the previous one.
class CDSVersion : public QObject, public VlAtom
{
    Q_OBJECT

public:
    explicit CDSVersion(QObject* parent = nullptr);
    ~CDSVersion() override;
    // Ends every tool and worker of the engine and waits for them; nothing is reported.
    void Shutdown();

    // A parsed "versionList.txt": the last non-empty line and the "Revision" value ("1" when none).
    struct VersionList
    {
        QString version;
        QString revision;
    };
    static VersionList ParseVersionList(const QByteArray& bytes);

    // --- configuration ---
    // Host or host:port of the version server, or several mirrors separated by blanks.
    void SetServer(const QString& server);
    QString GetServer() const { return m_strServer; }
    // "http://" + the first mirror + "/quillmark/"
    QString GetServerBaseUrl() const;
    // Files are taken only with a good signature by one of these keys; without `verify`, unchecked.
    void SetTrustedKeys(const QList<CMinisign::PublicKey>& keys, bool verify);
    // Signing time (Unix seconds) of the newest version list accepted; an older one is refused.
    qint64 GetAcceptedListTime() const { return m_acceptedListTime; }
    void SetAcceptedListTime(qint64 seconds) { m_acceptedListTime = seconds; }

    void Init(const QString& version);
    void InitDownloadDirectory();
    QString GetDownloadDirectory() const { return m_strDownloadDir; }
    QString GetCycleDirectory() const { return m_strCycleDir; }

    void SetProductList(CProductList* list) { m_pProductList = list; }
    CProductList* GetProductList() const { return m_pProductList; }
    // A run for one product only (null: all selected products of the list).
    void SetSingleProduct(CProduct* product) { m_pSingleProduct = product; }
    CProduct* GetSingleProduct() const { return m_pSingleProduct; }

    // The three switches the settings file keeps.
    bool GetNavDataOverwriteAccept() const { return m_bNavDataOverwriteAccept; }
    void SetNavDataOverwriteAccept(bool accept) { m_bNavDataOverwriteAccept = accept; }
    // Whether the update dialog offers the locally held cycle rather than the server's; the dialog
    // falls back to the server when there is no local copy.
    bool GetLocalVersion() const { return m_bLocalVersion; }
    void SetLocalVersion(bool local) { m_bLocalVersion = local; }
    bool GetCreateBackupFiles() const { return m_bCreateBackupFiles; }
    void SetCreateBackupFiles(bool create) { m_bCreateBackupFiles = create; }

    // --- version discovery ---
    void SearchForNewVersion(bool byHand);
    bool GetSearchByHand() const { return m_bSearchByHand; }
    // Changes whenever a search begins or ends.
    quint64 GetSearchTag() const { return m_searchTag; }
    void DownloadVersionListTxt();
    void QuillmarkCheckHighVersion(const QByteArray& bytes);
    void InitNewDSVersion(const QString& version);
    QString InitLocalVersion();
    static QString cutDig(const QString& text);
    // The text with the dataset archives' password replaced by ****, for what users send on.
    static QString MaskArchivePassword(QString text);
    bool CheckNewVersionRevision();
    // A version with digits was offered and it differs from the local one.
    bool NewDSVersionAvailable();
    // True when the last server list gave no version at all.
    bool IsVersionListEmpty() const { return m_strNewVersion.isEmpty(); }

    QString GetNewVersion() const { return m_strNewVersion; }
    QString GetNewVersionDig() const { return m_strNewVersionDig; }
    QString GetNewRevision() const { return m_strNewRevision; }
    QString GetLocalVersionText() const { return m_strLocalVersion; }
    QString GetLocalRevision() const { return m_strLocalRevision; }
    // The cycle digits and revision the products are measured against: the server's offer, or
    // the local copy when no offer is known.
    QString GetTargetVersion() const;
    QString GetTargetRevision() const;

    // --- download queue ---
    void DownloadNewDSVersion();
    void DownloadNextDataset();
    bool DownloadDataset(const QString& dataset);
    bool CheckDownloadError();
    void SetProdDownloadError();
    void StopDownload();
    void ClearDownloadDirectory();
    void DropListWithoutArchives();
    QStringList GetLocalDatasetList() const;
    static bool CheckZipExtension(QString& fileName);
    const QStringList& GetDatasetQueue() const { return m_datasetQueue; }
    // Why the last request of a search or download failed; unset when none did.
    const CFailureReason& GetLastFailure() const { return m_lastFailure; }

    // --- unzip and install ---
    bool InstallProducts();
    void UnzipNextProduct();
    void UnzipNextProductSoon();
    void FailInstall(CProduct* product);
    bool UnzippDataset(CProduct* product, QString& error);
    bool StartUnzip(const QString& archive, const QString& target, bool unused = false);
    void CreateTempInstallDirectory();
    QString GetTempInstallDirectory() const { return m_strTempInstallDir; }
    static bool removeDir(const QString& path);
    void WriteResult(const QString& text, bool isError);
    void ResetResult();
    QString GetResult() const { return m_strResult; }
    int GetErrorCount() const { return m_iErrorCount; }
    void SetFinishedStateProducts();
    void StopInstall();
    void StopFileCopyThred();
    // An install run is under way (it may also end without SignalInstallReady, after a crash).
    bool IsInstallRunning() const { return m_eActiveRun == ERun::Install; }
    static quint64 GetDirectoryByteSize(const QString& folder);
    quint64 GetTotalBytes() const { return m_totalBytes; }

    // --- reset and backup removal ---
    void Reset(CProductList* list);
    void ResetNextProduct();
    void ResetSelProduct();
    void StopReset();
    void RemoveBackup(CProductList* list);
    void RemoveBackupNextProduct();
    void RemoveBackupSelProduct();
    void StopRemoveBackup();

    // --- runs cut off ---
    // Finishes or undoes every install or reset of the list that a crash or a kill cut off, as
    // their records say; one line per product for the user. Done at start-up and before each run.
    QStringList RecoverInterruptedRuns(CProductList* list);

    // --- whole-backup archives ---
    bool CreateBackup(QString archive);
    bool LoadBackup(QString archive);
    bool StartZipBackup(QString archive);
    bool LoadZipBackup(QString archive);
    void StopZipBackProcess();
    QString GetCycleBaseDirectory() const { return m_strDownloadDir; }

public slots:
    void downloadFinishedSlot(QString url, QString file, QStringList errors, QByteArray data);
    void ChangePercentSlot(int percent);
    void unzipProdRrocessFinishedSlot(int exitCode, QProcess::ExitStatus status);
    void FileCopyThreadFinishedSlot();
    void FileWrittenSlot(quint64 bytes);
    void processStartedSlot() {}
    void FileResetThreadFinishedSlot();
    void FileRemoveBackupThreadFinishedSlot();
    void zipBackProcessFinishedSlot(int exitCode, QProcess::ExitStatus status);
    void unzipBackProcessFinishedSlot(int exitCode, QProcess::ExitStatus status);

signals:
    void SignalChangeNewVersion(QString version);
    void SignalCheckHighVersionFinished();
    void SignalNewDSVersionStarted();
    void SignalDownloadDataset(QString dataset);
    void SignalDownloadDataSetReady();
    void SignalDownloadDataSetError();
    void SignalDownloadError();
    void SignalStopDownload();
    void SignalChangePercent(int percent);
    // Bytes of the current dataset so far, its size (-1 while unknown) and the speed.
    void SignalDownloadProgress(qint64 received, qint64 total, double bytesPerSecond);

    void SignalUnzippProduct(QString name);
    void SignalBeginCopyThead(quint64 total);
    void SignalFileWritten(quint64 bytes);
    void SignalWriteResult(QString result);
    void SignalInstallReady();

    void SignalResetProduct(QString name);
    void SignalResetReady();
    void SignalRemoveBackupProduct(QString name);
    void SignalRemoveBackupReady();

    void SignalZipBackProcessFinished(bool ok);
    void SignalUnZipBackProcessFinished(bool ok);

private:
    // Every run (download, install, reset, backup removal) begins with BeginRun and ends with
    // EndRun or StopRun. Both change the run tag, so a worker's end that arrives after the run it
    // belonged to was stopped is recognised and dropped.
    enum class ERun
    {
        None,
        Search,
        Download,
        Install,
        Reset,
        RemoveBackup
    };
    void BeginRun(ERun run);
    void EndRun(ERun run);
    // Ends the run if it is the active one; false when it was not.
    bool StopRun(ERun run);
    bool IsActiveRun(ERun run) const;
    void StartWorker(CFileWorkerThread& worker);
    void WorkerEndedSlot(CFileWorkerThread* worker, quint64 tag);
    void StopWorker(CFileWorkerThread& thread, const char* name);
    static void DiscardProcess(QProcess*& process);
    void FinishSearchLater();
    static const char* const st_cycleFolderName;
    // How long a stop waits for a worker to reach the next file before it is cut off.
    static const unsigned long st_stopGraceMs = 5000;

    void PrepareBackupRun(CProductList* list, EQMKProductInstallState runState);
    enum class Walk
    {
        Reset,
        RemoveBackup
    };
    void StartWalk(Walk walk, CProductList* list);
    void WalkNextProduct(Walk walk);
    void WalkSelProduct(Walk walk);
    bool WalkProduct(Walk walk, CProduct* product, bool single);
    void WalkThreadFinished(Walk walk, CProduct* product, bool success);
    void StopWalk(Walk walk);
    // Finishes or undoes the cut-off run that the record at `journal` describes.
    QString RecoverProduct(CProduct* product, const QString& journal);
    bool UndoInstall(CProduct* product, const QString& runId);
    void DropKeptBackups(CProduct* product);
    void DropRunMarks(CProduct* product, const QString& runId);

    CProduct* CurrentInstallProduct() const;

    // An archive being unpacked, or unpacked and waiting for its product's turn. Unpacking is most
    // of an install's time and keeps one processor busy, so the archives of the next products are
    // unpacked into scratch folders of their own while the current product is unpacked and copied.
    // Only the scratch folders are touched before a product's turn; what the user sees and the
    // order of everything else stay as they were.
    struct Unpack
    {
        CProduct* product = nullptr;
        int index = -1; // in the product list
        QString archive;
        QString folder;
        QProcess* process = nullptr;
        bool ended = false;
        bool failedToStart = false;
        int exitCode = 0;
        QProcess::ExitStatus exitStatus = QProcess::NormalExit;
    };
    Unpack* StartUnpack(CProduct* product, int index, const QString& archive, const QString& folder);
    void UnpackEndedSlot(Unpack* unpack);
    // The unpack of the product whose turn it is has ended: on to its copy.
    void TakeUnpack(Unpack* unpack);
    // Starts the unpacks of the next products, as far as processors and scratch folders allow.
    void StartUnpacksAhead();
    // Stops every unpack that is not the current product's copy and removes its folder.
    void DiscardUnpacks();
    void DiscardUnpack(Unpack* unpack);
    // The first scratch folder ("temp", "temp2", ...) that no unpack uses, nor (unless
    // `takeCurrent`) the current product, whose folder stays in use until its copy has ended.
    QString FreeScratchFolder(bool takeCurrent) const;
    bool FailDatasetRequest(const QString& dataset, const QString& reason);
    void MirrorFailedSlot(const QString& name, const QString& mirror, const CFailureReason& reason);
    QByteArray ReadVersionList(const QString& file);
    void RemoveProductFiles(CProduct* product);
    // A line in the result text that the user should read but that does not fail the product.
    void WriteResultWarning(const QString& text);
    void RunBackupListing(const QString& archive);
    void BackupListingFinished(const QString& archive, int exitCode, QProcess::ExitStatus status);
    void FinishBackupProcess(bool zip, bool ok);

    CVerifiedDownload m_downloader;
    FileCopyThread m_fileCopyThread;
    FileResetThread m_fileResetThread;
    FileRemoveBackupThread m_fileRemoveBackupThread;
    CMyLog m_log;

    QString m_strServer;
    qint64 m_acceptedListTime = 0;
    QString m_strVersion;
    QString m_strDownloadDir;
    QString m_strCycleDir;
    QString m_strTempInstallDir;
    const QString m_strVersionListName;

    QString m_strNewVersion;
    QString m_strNewVersionDig;
    QString m_strNewRevision;
    QString m_strLocalVersion;
    QString m_strLocalRevision;
    bool m_bSearchByHand = false;

    bool m_bNavDataOverwriteAccept = true;
    bool m_bLocalVersion = true;
    bool m_bCreateBackupFiles = true;

    CProductList* m_pProductList = nullptr;
    CProduct* m_pSingleProduct = nullptr;

    QStringList m_datasetQueue;
    CFailureReason m_lastFailure;
    int m_iDownloadIndex = -1;
    QString m_strCurrentArchive;
    QString m_strCurrentDataset;

    int m_iCurrentIndex = -1;
    int m_iResetIndex = -1;
    int m_iRemoveBackupIndex = -1;
    QList<Unpack*> m_unpacks;
    // The unpack of the product whose turn it is, while its unzip runs.
    Unpack* m_pTurnUnpack = nullptr;
    quint64 m_totalBytes = 0;
    quint64 m_writtenBytes = 0;

    QString m_strResult;
    int m_iErrorCount = 0;

    ERun m_eActiveRun = ERun::None;
    quint64 m_runTag = 0;
    bool m_bSearchActive = false;
    quint64 m_searchTag = 0;
    // The product whose worker is running; its end is reported for exactly this product.
    CProduct* m_pWorkerProduct = nullptr;
    // The record of the product run in progress; empty when none.
    QString m_strJournal;

    QProcess* m_pZipBackProcess = nullptr;
    QProcess* m_pUnzipBackProcess = nullptr;
    QProcess* m_pListBackProcess = nullptr;
};
