#include "engine/DownloadManager.h"

#include <QFileInfo>
#include <QNetworkRequest>
#include <QTimer>

#include <cmath>
#include <cstdio>

int DownloadManager::stLastError = 0;

namespace {
constexpr qint64 WriteSlice = 256 * 1024;
constexpr qint64 ReadBufferSize = 1024 * 1024;

void print(const QByteArray& text)
{
    std::fwrite(text.constData(), 1, size_t(text.size()), stdout);
}
} // namespace

DownloadManager::DownloadManager(QObject* parent) : QObject(parent)
{
    m_log.SetFileName(QStringLiteral("Download_log.txt"));
    m_log.WriteString(QStringLiteral("Init"), true);
}

DownloadManager::~DownloadManager()
{
    dropReply();
}

QNetworkAccessManager* DownloadManager::Manager()
{
    if (!m_pManager)
        m_pManager = new QNetworkAccessManager(this);
    return m_pManager;
}

void DownloadManager::DownloadFile(const QUrl& url, bool saveToFile, QString directory)
{
    stLastError = 0;
    m_lastFailure = CFailureReason();
    m_saveToFile = saveToFile;
    m_url = url;
    m_urlPath = url.path(QUrl::FullyDecoded);
    m_downloadDirectory = directory;
    m_log.WriteString(QStringLiteral("Download File"), false);
    m_retried = false;
    startDownload();
}

QString DownloadManager::saveFileName(const QUrl& url)
{
    QString name = QFileInfo(url.path(QUrl::FullyDecoded)).fileName();
    if (name.isEmpty())
        name = QStringLiteral("download");
    const QString path = m_downloadDirectory + QLatin1Char('/') + name;
    // A partial file from a failed attempt of the same name goes now. A link goes as a link, so
    // the transfer never writes through it into someone else's file.
    const QFileInfo info(path);
    if (info.exists() || info.isSymLink())
        QFile::remove(path);
    return path;
}

bool DownloadManager::CanSaveInto(const QString& folder, const QString& name, QString& reason)
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

QString DownloadManager::speedText(double speed)
{
    QString unit;
    if (speed < 1024.0) {
        unit = QStringLiteral("bytes/sec");
    } else if (speed < 1024.0 * 1024.0) {
        speed /= 1024.0;
        unit = QStringLiteral("kB/s");
    } else {
        speed /= 1024.0 * 1024.0;
        unit = QStringLiteral("MB/s");
    }
    return QStringLiteral("%1 %2").arg(speed, 3, 'f', 1).arg(unit);
}

void DownloadManager::dropReply()
{
    if (!m_reply)
        return;
    // Closing aborts a running reply, which would otherwise report back as a failed transfer.
    disconnect(m_reply, nullptr, this, nullptr);
    if (m_reply->isOpen())
        m_reply->close();
    m_reply->deleteLater();
    m_reply = nullptr;
}

bool DownloadManager::sendRequest(const QUrl& url, const QString& openProblemUrlText, bool watchSsl)
{
    dropReply();
    if (m_output.isOpen())
        m_output.close();
    m_output.setFileName(saveFileName(url));

    if (m_saveToFile && !m_output.open(QIODevice::WriteOnly)) {
        const QString message = QStringLiteral("Problem opening save file ") + m_output.fileName() +
                                QStringLiteral(" for download ") + openProblemUrlText + QLatin1Char('\n') +
                                m_output.errorString();
        m_errors << message;
        m_log.WriteString(QStringLiteral("!!!Error: ") + message, false);
        m_lastFailure = CFailureReason(CFailureReason::EKind::NotWritable, url.host(), 0, 0,
                                       m_output.fileName() + QStringLiteral(": ") + m_output.errorString());
        return false;
    }

    QNetworkRequest request(url);
    request.setHeader(QNetworkRequest::ContentTypeHeader,
                      QByteArrayLiteral("application/x-www-form-urlencoded;charset=UTF-8"));
    request.setRawHeader(QByteArrayLiteral("Authorization"), QByteArrayLiteral("Basic ") + credentials.toBase64());
    if (postBody.isEmpty()) {
        // Without an upload device the reply honours its read-buffer limit, so a large file
        // streams through a small window instead of piling up in memory ahead of the disk.
        request.setRawHeader(QByteArrayLiteral("Content-Length"), QByteArrayLiteral("0"));
        m_reply = Manager()->post(request, static_cast<QIODevice*>(nullptr));
    } else {
        m_reply = Manager()->post(request, postBody);
    }
    m_reply->setReadBufferSize(ReadBufferSize);

    connect(m_reply, &QNetworkReply::downloadProgress, this, &DownloadManager::downloadProgress);
    connect(m_reply, &QNetworkReply::finished, this, &DownloadManager::downloadFinished);
    connect(m_reply, &QNetworkReply::readyRead, this, &DownloadManager::downloadReadyRead);
    connect(m_reply, &QNetworkReply::errorOccurred, this, &DownloadManager::downloadError);
    if (watchSsl)
        connect(m_reply, &QNetworkReply::sslErrors, this, &DownloadManager::slotSslErrors);

    m_received = 0;
    m_writeError.clear();
    m_attemptUrl = url;
    print(QByteArrayLiteral("Downloading ") + url.toEncoded() + QByteArrayLiteral("...\n"));
    m_downloadTime.start();
    m_log.WriteString(QStringLiteral("Start Download"), false);
    return true;
}

void DownloadManager::startDownload()
{
    // Without a writable target no request goes out and no SignalFinished follows; the owner
    // learns it from the errors.
    sendRequest(m_url, QString::fromLatin1(m_url.toEncoded()), true);
}

void DownloadManager::startDownloadNoSSL()
{
    m_retried = true;
    // Plain-text replace, so every "https" in the address changes, not only the scheme; kept so.
    QString text = m_url.toString();
    text.replace(QStringLiteral("https"), QStringLiteral("http"));
    const QUrl plainUrl(text);
    if (!sendRequest(plainUrl, QString(), false)) {
        // The first attempt was sent, so the owner still gets its one SignalFinished.
        downloadListFinished();
        return;
    }
    credentials.clear();
    postBody.clear();
}

void DownloadManager::downloadReadyRead()
{
    if (!m_reply)
        return;
    // Everything ready. Asking for exactly what is buffered lets QIODevice hand over a single
    // buffered block without copying it.
    m_lastData = m_reply->read(m_reply->bytesAvailable());
    m_received += m_lastData.size();
    if (m_saveToFile && m_output.isOpen() && m_writeError.isEmpty()) {
        // Slices keep the copy into the page cache inside the processor caches.
        for (qint64 at = 0; at < m_lastData.size(); at += WriteSlice) {
            const qint64 size = qMin<qint64>(WriteSlice, m_lastData.size() - at);
            if (m_output.write(m_lastData.constData() + at, size) != size) {
                failWrite();
                break;
            }
        }
    }
}

// A full disk or a size limit: the rest of the body is of no use, and the file is not whole.
void DownloadManager::failWrite()
{
    m_writeError =
        QStringLiteral("cannot write ") + m_output.fileName() + QStringLiteral(": ") + m_output.errorString();
    m_log.WriteString(QStringLiteral("!!!Error: ") + m_writeError, false);
    m_output.close();
    if (m_reply)
        QTimer::singleShot(0, m_reply, &QNetworkReply::abort);
}

void DownloadManager::downloadProgress(qint64 bytesReceived, qint64 bytesTotal)
{
    m_progressBar.setStatus(bytesReceived, bytesTotal);
    // Before a measurable time has passed there is no speed to tell, only the size.
    const qint64 elapsed = m_downloadTime.elapsed();
    if (elapsed > 0)
        m_progressBar.setMessage(speedText(bytesReceived * 1000.0 / double(elapsed)));
    else
        m_progressBar.setMessage(QString::number(bytesReceived) + QStringLiteral(" bytes"));
    m_progressBar.update();

    emit SignalProgress(bytesReceived, bytesTotal, elapsed > 0 ? bytesReceived * 1000.0 / double(elapsed) : 0.0);
    const int percent = m_progressBar.percent();
    char line[48];
    const int n = std::snprintf(line, sizeof line, "Progress percent %d. \n", percent);
    std::fwrite(line, 1, size_t(n), stdout);
    emit SignalChangePercent(percent);
}

void DownloadManager::downloadError(QNetworkReply::NetworkError code)
{
    stLastError = int(code);
    const CFailureReason reason = CFailureReason::FromReply(
        m_reply, m_attemptUrl, code == QNetworkReply::RemoteHostClosedError && m_received > 0, m_writeError);
    m_log.WriteString(QStringLiteral("!!!Error: Download-Error-ID=%1 (%2)").arg(int(code)).arg(reason.LogText()),
                      false);
}

void DownloadManager::slotSslErrors(const QList<QSslError>& errors)
{
    // Not ignored: the transfer fails and goes the plain-HTTP way.
    for (int i = 0; i < errors.size(); ++i)
        m_log.WriteString(QStringLiteral("!!!Error: SSL-Error"), false);
}

void DownloadManager::downloadFinished()
{
    // A connection that closes early is not always reported as an error; a body shorter than
    // announced is one.
    m_truncated = false;
    if (m_reply && m_reply->error() == QNetworkReply::NoError) {
        const QVariant length = m_reply->header(QNetworkRequest::ContentLengthHeader);
        if (length.isValid() && m_received < length.toLongLong()) {
            m_truncated = true;
            downloadError(QNetworkReply::RemoteHostClosedError);
        }
    }

    // A file that cannot be written would fail the same way over plain HTTP.
    if (m_output.isOpen() && m_writeError.isEmpty() && !m_output.flush())
        failWrite();

    if (stLastError != 0 && !m_retried && m_writeError.isEmpty()) {
        startDownloadNoSSL();
        m_log.WriteString(QStringLiteral("Run Download2"), false);
        return;
    }

    m_log.WriteString(QStringLiteral("downloadFinished"), false);
    m_lastFile = m_output.fileName();
    m_log.WriteString(QStringLiteral("Download finished ") + m_lastFile, false);
    print(QByteArrayLiteral("Download finished."));
    m_progressBar.clear();
    if (m_output.isOpen())
        m_output.close();

    if (!m_writeError.isEmpty()) {
        const QString message = QStringLiteral("Failed download file ") + m_lastFile + QLatin1Char('\n');
        m_errors << message << m_writeError;
        m_log.WriteString(message, false);
        m_lastFailure = CFailureReason::FromReply(m_reply, m_attemptUrl, m_truncated, m_writeError);
    } else if (m_reply && m_reply->isOpen()) {
        if (m_reply->error() == QNetworkReply::NoError && !m_truncated) {
            print(QByteArrayLiteral("Succeeded."));
        } else {
            const QString message = QStringLiteral("Failed download file ") + m_lastFile + QLatin1Char('\n');
            m_errors << message;
            m_lastFailure = CFailureReason::FromReply(m_reply, m_attemptUrl, m_truncated, m_writeError);
            m_log.WriteString(message.trimmed() + QStringLiteral(": ") + m_lastFailure.LogText(), false);
        }
    }

    if (m_reply) {
        disconnect(m_reply, nullptr, this, nullptr);
        m_reply->deleteLater();
        m_reply = nullptr;
    }
    downloadListFinished();
}

void DownloadManager::downloadListFinished()
{
    const QString urlPath = m_urlPath;
    const QString lastFile = m_lastFile;
    const QStringList errors = m_errors;
    const QByteArray lastData = m_lastData;

    // The transfer is forgotten: a later stop has nothing to abort.
    m_lastFile.clear();
    m_errors.clear();
    m_url.clear();
    m_urlPath.clear();
    m_writeError.clear();
    m_lastData.clear();
    postBody.clear();
    credentials.clear();
    if (m_output.isOpen())
        m_output.close();
    dropReply();

    emit SignalFinished(urlPath, lastFile, errors, lastData);
    m_log.WriteString(QStringLiteral("downloadListFinished"), false);
}

void DownloadManager::stopDownloadSlot()
{
    m_log.WriteString(QStringLiteral("stopDownloadSlot"), false);
    // Idle: no transfer to abort and nothing to report.
    if (!m_reply)
        return;
    std::fflush(stdout);
    m_errors << QStringLiteral("User abort");
    downloadListFinished();
}
