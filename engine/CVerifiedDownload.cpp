#include "engine/CVerifiedDownload.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTimer>
#include <QUrl>

namespace {
const QString kSignatureSuffix = QStringLiteral(".minisig");

QString utcText(qint64 seconds)
{
    return QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss 'UTC'"));
}

// What a signature was made for, in its own words, for the user to compare with what was asked.
QString madeFor(const QMap<QString, QString>& fields)
{
    QStringList parts;
    for (const char* key : {"file", "cycle", "revision", "dataset"}) {
        const QString k = QLatin1String(key);
        if (fields.contains(k))
            parts << k + QLatin1Char(':') + fields.value(k);
    }
    return parts.isEmpty() ? QStringLiteral("no file") : parts.join(QLatin1Char(' '));
}

// Failures after which another mirror may well do better: it was down, broke off, had a server
// error, lacks the file or served one that is not what the publisher signed.
bool worthAnotherMirror(const CFailureReason& reason)
{
    using K = CFailureReason::EKind;
    return reason.CouldNotConnect() || reason.IsSignatureFailure() || reason.Kind() == K::ConnectionLost ||
           reason.Kind() == K::ServerError || reason.Kind() == K::FileMissing;
}

void removeFile(const QString& path)
{
    if (!path.isEmpty() && QFileInfo(path).isFile())
        QFile::remove(path);
}
} // namespace

CVerifiedDownload::CVerifiedDownload(QObject* parent) : QObject(parent)
{
    qRegisterMetaType<CFailureReason>();
    m_log.SetFileName(QStringLiteral("Download_log.txt"));
    connect(
        &m_downloader, &DownloadManager::SignalFinished, this,
        [this](QString, QString file, QStringList errors, QByteArray data) { transferFinished(file, errors, data); });
    connect(&m_downloader, &DownloadManager::SignalChangePercent, this, [this](int percent) {
        if (m_step == EStep::File)
            emit SignalChangePercent(percent);
    });
    connect(&m_downloader, &DownloadManager::SignalProgress, this, [this](qint64 received, qint64 total, double speed) {
        if (m_step == EStep::File)
            emit SignalProgress(received, total, speed);
    });
}

void CVerifiedDownload::SetMirrors(const QString& list)
{
    m_mirrors = list.split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts);
}

bool CVerifiedDownload::IsMirrorAddress(const QString& text)
{
    // host, or host:port with a port from 1 to 65535; IPv6 hosts in brackets.
    static const QRegularExpression pattern(QStringLiteral(
        "^(?:https?://)?(?:[A-Za-z0-9](?:[A-Za-z0-9.-]*[A-Za-z0-9])?|\\[[0-9A-Fa-f:.]+\\])(?::([0-9]{1,5}))?$"));
    const QRegularExpressionMatch match = pattern.match(text);
    if (!match.hasMatch())
        return false;
    if (match.capturedLength(1) == 0)
        return true;
    const int port = match.captured(1).toInt();
    return port >= 1 && port <= 65535;
}

QString CVerifiedDownload::BaseUrl(const QString& mirror)
{
    return mirror.contains(QStringLiteral("://")) ? mirror : QStringLiteral("http://") + mirror;
}

void CVerifiedDownload::SetTrustedKeys(const QList<CMinisign::PublicKey>& keys, bool verify)
{
    m_keys = keys;
    m_bVerify = verify;
}

bool CVerifiedDownload::CanSaveInto(const QString& folder, const QString& name, QString& reason)
{
    return DownloadManager::CanSaveInto(folder, name, reason) &&
           DownloadManager::CanSaveInto(folder, name + kSignatureSuffix, reason);
}

void CVerifiedDownload::Fetch(const QString& path, const QString& folder, const QByteArray& credentials,
                              const Expect& expect)
{
    m_path = path;
    m_folder = folder;
    m_credentials = credentials;
    m_expect = expect;
    m_mirror = 0;
    m_bStopped = false;
    m_fields.clear();
    m_lastFailure = CFailureReason();
    m_lastMirror.clear();
    if (m_mirrors.isEmpty()) {
        m_step = EStep::File;
        QTimer::singleShot(0, this, [this] {
            m_lastFailure = CFailureReason(CFailureReason::EKind::NoAnswer, QString());
            finish({QStringLiteral("No server to ask for ") + name()}, QByteArray());
        });
        return;
    }
    askMirror();
}

QString CVerifiedDownload::name() const
{
    return QFileInfo(m_path).fileName();
}

QString CVerifiedDownload::address() const
{
    QString mirror = m_mirrors.value(m_mirror);
    mirror.remove(QRegularExpression(QStringLiteral("^https?://")));
    return mirror;
}

bool CVerifiedDownload::request(const QString& path)
{
    m_downloader.credentials = m_credentials;
    m_downloader.DownloadFile(QUrl(BaseUrl(m_mirrors.at(m_mirror)) + path), true, m_folder);
    // Nothing is sent when the target cannot be opened, and then no answer comes.
    return m_downloader.IsBusy();
}

void CVerifiedDownload::askMirror()
{
    // The signature comes first: it is small, and a mirror without one is passed over before the
    // file itself is fetched.
    m_step = m_bVerify ? EStep::Signature : EStep::File;
    if (request(m_step == EStep::Signature ? m_path + kSignatureSuffix : m_path))
        return;
    const EStep step = m_step;
    QTimer::singleShot(0, this, [this, step] {
        if (m_step == step)
            notSent();
    });
}

void CVerifiedDownload::notSent()
{
    QString reason;
    CanSaveInto(m_folder, name(), reason);
    const CFailureReason failure(CFailureReason::EKind::NotWritable, address(), 0, 0,
                                 reason.isEmpty() ? m_folder : reason);
    mirrorFailed(failure, {QStringLiteral("Problem opening save file in ") + m_folder});
}

void CVerifiedDownload::transferFinished(const QString& file, const QStringList& errors, const QByteArray& data)
{
    if (m_step == EStep::Idle)
        return;
    const QString target =
        m_folder + QLatin1Char('/') + name() + (m_step == EStep::Signature ? kSignatureSuffix : QString());
    if (!errors.isEmpty()) {
        removeFile(file.isEmpty() ? target : file);
        if (m_bStopped) {
            m_lastFailure = CFailureReason();
            finish(errors, QByteArray());
            return;
        }
        CFailureReason reason = m_downloader.LastFailure();
        if (m_step == EStep::Signature && reason.Kind() == CFailureReason::EKind::FileMissing)
            reason = CFailureReason::Signature(CFailureReason::EKind::SignatureMissing, address(), name());
        mirrorFailed(reason, errors);
        return;
    }
    if (m_step == EStep::Signature) {
        signatureArrived(file);
        return;
    }
    if (m_bVerify) {
        const CFailureReason refused = checkFile(file);
        if (refused.IsSet()) {
            removeFile(file);
            mirrorFailed(refused, {QStringLiteral("Refused ") + name() + QStringLiteral(": ") + refused.LogText()});
            return;
        }
    }
    m_lastMirror = address();
    m_log.WriteString(QStringLiteral("Mirror ") + m_lastMirror + QStringLiteral(" served ") + m_path +
                          (m_bVerify ? QStringLiteral(", signed with key ") + CMinisign::KeyIdText(m_signature.keyId)
                                     : QStringLiteral(", not verified")),
                      false);
    finish(QStringList(), data);
}

void CVerifiedDownload::signatureArrived(const QString& file)
{
    QFile signatureFile(file);
    QByteArray bytes;
    if (signatureFile.open(QIODevice::ReadOnly))
        bytes = signatureFile.read(CMinisign::MaxSignatureFileSize + 1);
    signatureFile.close();
    removeFile(file);
    QString problem;
    m_signature = CMinisign::Signature();
    if (!CMinisign::ParseSignature(bytes, m_signature, &problem)) {
        const CFailureReason reason =
            CFailureReason::Signature(CFailureReason::EKind::SignatureMismatch, address(), name(),
                                      QStringLiteral("damaged signature, ") + problem);
        mirrorFailed(reason, {QStringLiteral("Refused ") + name() + QStringLiteral(": ") + reason.LogText()});
        return;
    }
    m_step = EStep::File;
    if (!request(m_path))
        notSent();
}

CFailureReason CVerifiedDownload::checkFile(const QString& file)
{
    using K = CFailureReason::EKind;
    QString problem;
    switch (CMinisign::Verify(file, m_signature, m_keys, &problem)) {
    case CMinisign::EResult::Ok:
        break;
    case CMinisign::EResult::UnknownKey:
        return CFailureReason::Signature(K::SignatureUnknownKey, address(), name(), problem);
    case CMinisign::EResult::Unreadable:
        return CFailureReason(K::NotWritable, address(), 0, 0, file + QStringLiteral(": ") + problem);
    case CMinisign::EResult::Malformed:
    case CMinisign::EResult::Mismatch:
        return CFailureReason::Signature(K::SignatureMismatch, address(), name(), problem);
    }

    // Only now is the trusted comment known to be the publisher's.
    const QMap<QString, QString> fields = CMinisign::CommentFields(m_signature.trustedComment);
    bool known = false;
    const qint64 signedAt = fields.value(QStringLiteral("timestamp")).toLongLong(&known);
    if (!known)
        return CFailureReason::Signature(K::SignatureMismatch, address(), name(),
                                         QStringLiteral("trusted comment names no time"));
    const auto differs = [&fields](const char* key, const QString& expected) {
        return !expected.isEmpty() && fields.value(QLatin1String(key)) != expected;
    };
    if (fields.value(QStringLiteral("file")) != name() || differs("cycle", m_expect.cycle) ||
        differs("revision", m_expect.revision) || differs("dataset", m_expect.dataset))
        return CFailureReason::Signature(K::SignedForOther, address(), name(), madeFor(fields));
    if (signedAt < m_expect.notBefore)
        return CFailureReason::Signature(K::OlderList, address(), name(), utcText(signedAt),
                                         utcText(m_expect.notBefore));
    m_fields = fields;
    return CFailureReason();
}

void CVerifiedDownload::mirrorFailed(const CFailureReason& reason, const QStringList& errors)
{
    m_lastMirror = address();
    if (!m_lastFailure.IsSignatureFailure() || reason.IsSignatureFailure())
        m_lastFailure = reason;
    m_log.WriteString(QStringLiteral("!!ERROR mirror ") + m_lastMirror + QStringLiteral(" did not deliver ") + m_path +
                          QStringLiteral(": ") + reason.LogText(),
                      false);
    emit SignalMirrorFailed(name(), m_lastMirror, reason);
    if (m_step != EStep::Idle && worthAnotherMirror(reason) && m_mirror + 1 < m_mirrors.size()) {
        ++m_mirror;
        askMirror();
        return;
    }
    finish(errors, QByteArray());
}

void CVerifiedDownload::finish(const QStringList& errors, const QByteArray& data)
{
    m_step = EStep::Idle;
    emit SignalFinished(m_path, m_folder + QLatin1Char('/') + name(), errors, data);
}

void CVerifiedDownload::stopDownloadSlot()
{
    if (m_step == EStep::Idle)
        return;
    m_bStopped = true;
    // The downloader answers the stop at once with a "User abort" that ends this fetch.
    m_downloader.stopDownloadSlot();
}
