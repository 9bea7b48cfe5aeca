#pragma once

#include "app/CMyLog.h"
#include "engine/CVerifiedDownload.h"

#include <QByteArray>
#include <QObject>
#include <QProcess>
#include <QString>
#include <QStringList>

// Self-update: learns the newest release from "mac_version.txt" on the download server,
// downloads its archive into "downloads", unpacks it with unzip and hands over to the updater
// "qmk_au.app" (with the desktop's opener, `open` on macOS and `xdg-open` elsewhere), then ends the program. The
// self-update dialog decides each step.
class CQMKVersion : public QObject
{
    Q_OBJECT

public:
    explicit CQMKVersion(QObject* parent = nullptr);
    ~CQMKVersion() override;

    // host or host:port of the download server, or several mirrors separated by blanks.
    void SetServer(const QString& server);
    QString GetServer() const { return m_strServer; }
    // Files are taken only with a good signature by one of these keys; without `verify`, unchecked.
    void SetTrustedKeys(const QList<CMinisign::PublicKey>& keys, bool verify);

    void Init(QString currentVersion);
    void InitDownloadDirectory();
    static bool removeDir(const QString& path);

    void SearchForNewVersion(bool search);
    bool NewQMKVersionAvailable();
    // Whether the self-update dialog opens once the version file has been asked for: always after a
    // check started by hand (it then reports being up to date or failing too), after an automatic
    // one only when there is a newer version.
    bool ShowQMKDownloadDlg();
    // Why the last transfer failed; unset after a success.
    const CFailureReason& GetLastFailure() const { return m_lastFailure; }
    void DownloadNewQMKVersion();
    bool InstallQuillmark();
    void moveDirCentents(const QString& source, const QString& target);

    QString GetNewQMKVersionZipFilePath();
    QString GetNewQMKVersionInstFilePath();
    void InitNewQMKVersion(QString filePath);

    void StopInstall();
    // Abandons a running download of the version file or the archive (SignalDownloadError follows).
    void StopDownload();

    QString GetCurrentVersion() const { return m_strCurrentVersion; }
    // Dotted, e.g. "1.2.4"; empty when unknown.
    QString GetNewVersion() const { return m_strNewVersion; }
    QString GetErrorText() const { return m_strErrorText; }
    QString GetZipName() const { return m_strZipName; }
    QString GetAppName() const { return m_strAppName; }
    QString GetUnzipFolderName() const { return m_strUnzipFolderName; }
    QString GetDownloadDirectory() const { return m_strDownloadDir; }
    bool GetSearch() const { return m_bSearch; }
    bool IsSearching() const { return m_bSearching; }
    bool IsDownloading() const { return m_bDownloading; }

    static constexpr int MaxVersionLength = 32;

public slots:
    // Connected to DownloadManager::SignalFinished: url path, saved file, errors, data.
    void downloadFinishedSlot(QString urlPath, QString filePath, QStringList errors, QByteArray data);
    void ChangePercentSlot(int percent);
    void unzipProdRrocessFinishedSlot(int exitCode, QProcess::ExitStatus exitStatus);
    void unzipProdProcessStartedSlot();
    void StartInstallFileSlot();

signals:
    void SignalDownloadVersionTXTFinish();
    void SignalNewQMKVersionStarted();
    void SignalNewQMKVersionDownloaded();
    void SignalDownloadError();
    void SignalUnzipNewVersionFinished();
    void SignalChangePercent(int percent);
    // The updater has been started; the program ends next.
    void SignalInstallerStarted();

private:
    void requestFile(const QString& fileName);

    QString m_strCurrentVersion;
    QString m_strNewVersion;
    QString m_strErrorText;
    CVerifiedDownload m_downloadManager;
    QProcess* m_pUnzipProcess = nullptr;
    QString m_strVersionFileName;
    QString m_strZipName;
    QString m_strAppName;
    QString m_strUnzipFolderName;
    QString m_strDownloadDir;
    bool m_bSearch = false;
    CMyLog m_log;
    bool m_bSearching = false;
    bool m_bDownloading = false;

    QString m_strServer;
    bool m_bTransferRunning = false;
    CFailureReason m_lastFailure;
};
