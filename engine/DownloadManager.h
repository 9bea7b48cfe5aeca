#pragma once

#include "app/CMyLog.h"
#include "engine/CFailureReason.h"
#include "engine/TextProgressBar.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QFile>
#include <QList>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>
#include <QSslError>
#include <QString>
#include <QStringList>
#include <QUrl>

// Fetches one file at a time with an authorised POST, into a file in a folder or into memory.
// A failed transfer is repeated once over plain HTTP. The owner assigns `credentials` (and, if
// needed, `postBody`) before every DownloadFile() and waits for SignalFinished before the next one;
// both are cleared when a transfer ends.
class DownloadManager : public QObject
{
    Q_OBJECT

public:
    explicit DownloadManager(QObject* parent = nullptr);
    ~DownloadManager() override;

    void DownloadFile(const QUrl& url, bool saveToFile, QString directory);
    // Target path for a URL in the download folder. Deletes a file of that path left by an
    // earlier attempt.
    QString saveFileName(const QUrl& url);

    // Speed text shown after the progress bar: "%1 %2" with one decimal, field width 3, and the
    // unit bytes/sec, kB/s or MB/s.
    static QString speedText(double bytesPerSecond);

    // Whether a file `name` could be created in `folder`; without that a transfer sends nothing and
    // reports nothing, so callers check first. `reason` says what is in the way.
    static bool CanSaveInto(const QString& folder, const QString& name, QString& reason);
    // A transfer has been sent and has not ended yet.
    bool IsBusy() const { return m_reply != nullptr; }

    // Error code of the last failed network operation of any DownloadManager; 0 when none.
    static int stLastError;
    // Why the last transfer of this downloader failed; unset after a success or a stop.
    const CFailureReason& LastFailure() const { return m_lastFailure; }

private:
    void failWrite();

    // Made at the first request: the first one in a process loads the network plugins, which the
    // window need not wait for when no check runs at start.
    QNetworkAccessManager* Manager();
    QNetworkAccessManager* m_pManager = nullptr;
    QUrl m_url;
    QNetworkReply* m_reply = nullptr;
    QFile m_output;
    QElapsedTimer m_downloadTime;

public:
    QByteArray postBody;
    // "user:password" for the Basic authorization header.
    QByteArray credentials;

private:
    QByteArray m_lastData;
    bool m_saveToFile = false;
    CMyLog m_log;
    bool m_retried = false;
    TextProgressBar m_progressBar;
    QString m_urlPath;
    QString m_lastFile;
    QStringList m_errors;
    QString m_downloadDirectory;
    qint64 m_received = 0;    // body bytes of the current attempt
    bool m_truncated = false; // the current attempt ended short of its Content-Length
    QString m_writeError;     // why the received bytes could not all be written; empty when they were
    QUrl m_attemptUrl;        // the address of the current attempt
    CFailureReason m_lastFailure;

public slots:
    void stopDownloadSlot();

signals:
    // Exactly once per transfer that was sent. Success is an empty error list. With saving off,
    // data holds the last chunk that arrived.
    void SignalFinished(QString urlPath, QString file, QStringList errors, QByteArray data);
    void SignalChangePercent(int percent);
    // Bytes so far, the total (-1 while unknown) and the speed since the transfer began.
    void SignalProgress(qint64 received, qint64 total, double bytesPerSecond);

private slots:
    void downloadProgress(qint64 bytesReceived, qint64 bytesTotal);
    void downloadFinished();
    void downloadReadyRead();
    void downloadError(QNetworkReply::NetworkError code);
    void slotSslErrors(const QList<QSslError>& errors);

private:
    void startDownload();
    void startDownloadNoSSL();
    // Sends the request for url; false (with the message in the errors) when the target file
    // cannot be opened.
    bool sendRequest(const QUrl& url, const QString& openProblemUrlText, bool watchSsl);
    void downloadListFinished();
    // Detaches the current reply so that closing it cannot call back into this object.
    void dropReply();
};
