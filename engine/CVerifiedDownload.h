#pragma once

#include "app/CMyLog.h"
#include "engine/CFailureReason.h"
#include "engine/CMinisign.h"
#include "engine/DownloadManager.h"

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>

// Fetches a file and its signature (the same path + ".minisig") from the first of a list of
// mirrors that serves both and whose file matches the signature. A mirror that does not answer,
// fails with a 5xx, lacks either file or serves one its signature refuses is passed over for the
// next, so an untrusted mirror costs time but never delivers. A refused file is deleted before
// anyone sees it. Without trusted keys files are handed over unchecked, as before signatures.
class CVerifiedDownload : public QObject
{
    Q_OBJECT

public:
    // What the signature's trusted comment must name besides the file; empty fields are not checked.
    struct Expect
    {
        QString cycle;
        QString revision;
        QString dataset;
        qint64 notBefore = 0; // refuse a file signed earlier (Unix seconds); 0: any time
    };

    explicit CVerifiedDownload(QObject* parent = nullptr);

    // Mirrors separated by blanks, each host or host:port, optionally after http:// or https://.
    void SetMirrors(const QString& list);
    QStringList GetMirrors() const { return m_mirrors; }
    static bool IsMirrorAddress(const QString& text);
    // "http://" + mirror, or the mirror as it is when it names its scheme.
    static QString BaseUrl(const QString& mirror);
    void SetTrustedKeys(const QList<CMinisign::PublicKey>& keys, bool verify);
    bool IsVerifying() const { return m_bVerify; }

    // Whether the file and its signature can both be created in folder; `reason` says what is in the way.
    static bool CanSaveInto(const QString& folder, const QString& name, QString& reason);

    // Fetches path ("/quillmark/versionList.txt") into folder under its own name. SignalFinished
    // follows exactly once, never before this returns.
    void Fetch(const QString& path, const QString& folder, const QByteArray& credentials, const Expect& expect);
    bool IsBusy() const { return m_step != EStep::Idle; }
    // Why the last fetch failed: a refused signature wins over a mirror that was merely down.
    const CFailureReason& LastFailure() const { return m_lastFailure; }
    // host or host:port of the mirror that served the last file, or refused it last.
    QString LastMirror() const { return m_lastMirror; }
    // The trusted comment's fields of the last file handed over.
    const QMap<QString, QString>& LastFields() const { return m_fields; }

public slots:
    void stopDownloadSlot();

signals:
    // Exactly once per Fetch: the path asked for, the file's path, errors (empty: success) and the
    // downloader's last data.
    void SignalFinished(QString urlPath, QString file, QStringList errors, QByteArray data);
    // A mirror failed to deliver the file; the next one, if any, is asked.
    void SignalMirrorFailed(QString name, QString mirror, CFailureReason reason);
    // Progress of the file itself, not of its signature.
    void SignalChangePercent(int percent);
    void SignalProgress(qint64 received, qint64 total, double bytesPerSecond);

private:
    enum class EStep
    {
        Idle,
        Signature,
        File
    };
    void askMirror();
    bool request(const QString& path);
    void notSent();
    void transferFinished(const QString& file, const QStringList& errors, const QByteArray& data);
    void signatureArrived(const QString& file);
    CFailureReason checkFile(const QString& file);
    void mirrorFailed(const CFailureReason& reason, const QStringList& errors);
    void finish(const QStringList& errors, const QByteArray& data);
    QString name() const;
    QString address() const;

    DownloadManager m_downloader;
    CMyLog m_log;
    QStringList m_mirrors;
    QList<CMinisign::PublicKey> m_keys;
    bool m_bVerify = false;

    EStep m_step = EStep::Idle;
    int m_mirror = 0;
    bool m_bStopped = false;
    QString m_path;
    QString m_folder;
    QByteArray m_credentials;
    Expect m_expect;
    CMinisign::Signature m_signature;
    QMap<QString, QString> m_fields;
    CFailureReason m_lastFailure;
    QString m_lastMirror;
};
