#include "engine/CFailureReason.h"

#include <QCoreApplication>
#include <QNetworkReply>
#include <QUrl>

namespace {
QString tr(const char* text)
{
    return QCoreApplication::translate("CFailureReason", text);
}
} // namespace

CFailureReason::CFailureReason(EKind kind, const QString& address, int httpStatus, int networkError,
                               const QString& detail)
    : m_kind(kind), m_address(address), m_httpStatus(httpStatus), m_networkError(networkError), m_detail(detail)
{
}

CFailureReason CFailureReason::Signature(EKind kind, const QString& address, const QString& file, const QString& note,
                                         const QString& note2)
{
    CFailureReason reason(kind, address, 0, 0, file);
    reason.m_note = note;
    reason.m_note2 = note2;
    return reason;
}

CFailureReason CFailureReason::FromReply(const QNetworkReply* reply, const QUrl& url, bool truncated,
                                         const QString& writeError)
{
    const QString address = url.host() + (url.port() > 0 ? QStringLiteral(":") + QString::number(url.port()) : QString());
    if (!writeError.isEmpty())
        return CFailureReason(EKind::NotWritable, address, 0, 0, writeError);
    if (!reply)
        return CFailureReason(EKind::NoAnswer, address);
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const int code = int(reply->error());
    if (status >= 400) {
        EKind kind = EKind::HttpError;
        if (status == 401 || status == 403)
            kind = EKind::CredentialsRefused;
        else if (status == 404)
            kind = EKind::FileMissing;
        else if (status >= 500)
            kind = EKind::ServerError;
        return CFailureReason(kind, address, status, code, url.path());
    }
    // An answer that had begun and stopped short is no connection failure.
    if (truncated || (status > 0 && code != QNetworkReply::NoError))
        return CFailureReason(EKind::ConnectionLost, address, status, code);
    switch (reply->error()) {
    case QNetworkReply::NoError:
        return CFailureReason();
    case QNetworkReply::HostNotFoundError:
        return CFailureReason(EKind::HostNotFound, address, 0, code);
    case QNetworkReply::ConnectionRefusedError:
        return CFailureReason(EKind::Refused, address, 0, code);
    case QNetworkReply::TimeoutError:
        return CFailureReason(EKind::TimedOut, address, 0, code);
    case QNetworkReply::SslHandshakeFailedError:
        return CFailureReason(EKind::TlsFailed, address, 0, code);
    case QNetworkReply::RemoteHostClosedError:
        // Closed before any answer: nobody served the request.
        return CFailureReason(EKind::NoAnswer, address, 0, code);
    default:
        return CFailureReason(EKind::NoAnswer, address, 0, code);
    }
}

bool CFailureReason::IsSignatureFailure() const
{
    switch (m_kind) {
    case EKind::SignatureMissing:
    case EKind::SignatureMismatch:
    case EKind::SignatureUnknownKey:
    case EKind::SignedForOther:
    case EKind::OlderList:
        return true;
    default:
        return false;
    }
}

bool CFailureReason::CouldNotConnect() const
{
    switch (m_kind) {
    case EKind::HostNotFound:
    case EKind::Refused:
    case EKind::TimedOut:
    case EKind::TlsFailed:
    case EKind::NoAnswer:
        return true;
    default:
        return false;
    }
}

QString CFailureReason::UserText() const
{
    const QString a = m_address;
    switch (m_kind) {
    case EKind::None:
        return QString();
    case EKind::HostNotFound:
        return tr("No answer from %1: the server name was not found. Check your internet connection and the "
                  "server address.")
            .arg(a);
    case EKind::Refused:
        return tr("%1 refused the connection: the server is down. Try again later.").arg(a);
    case EKind::TimedOut:
        return tr("%1 did not answer in time. Check your internet connection, or try again later.").arg(a);
    case EKind::TlsFailed:
        return tr("No secure connection to %1 could be made. Check the computer's date and time, or try "
                  "another network.")
            .arg(a);
    case EKind::NoAnswer:
        return tr("No answer from %1: the server is down or you are offline. Check your internet connection, "
                  "or try again later.")
            .arg(a);
    case EKind::ConnectionLost:
        return tr("The connection to %1 broke off during the download. Try again.").arg(a);
    case EKind::CredentialsRefused:
        return tr("%1 refused the credentials (HTTP %2). Check that your subscription is active, or contact "
                  "support.")
            .arg(a)
            .arg(m_httpStatus);
    case EKind::FileMissing:
        return tr("%1 does not have the file %2 (HTTP 404). It may not be published yet: try again later.")
            .arg(a, m_detail);
    case EKind::ServerError:
        return tr("%1 had a server error (HTTP %2). Try again later.").arg(a).arg(m_httpStatus);
    case EKind::HttpError:
        return tr("%1 answered with an error (HTTP %2). Try again later.").arg(a).arg(m_httpStatus);
    case EKind::NotWritable:
        return tr("The download could not be saved (%1). Free some disk space, or make the folder writable.")
            .arg(m_detail);
    case EKind::SignatureMissing:
        return tr("%1 has no signature for %2, so the file cannot be trusted and was not used. Try again later, "
                  "or tell the publisher.")
            .arg(a, m_detail);
    case EKind::SignatureMismatch:
        return tr("The signature of %2 from %1 did not match: the file was damaged or altered on its way and was "
                  "not used. Try again later, or tell the publisher.")
            .arg(a, m_detail);
    case EKind::SignatureUnknownKey:
        return tr("The signature of %2 from %1 did not match: it was made with a key this program does not trust, "
                  "so the file was not used. Update Quillmark, or tell the publisher.")
            .arg(a, m_detail);
    case EKind::SignedForOther:
        return tr("The signature of %2 from %1 did not match: it was made for %3, so the file was not used. Try "
                  "again later, or tell the publisher.")
            .arg(a, m_detail, m_note);
    case EKind::OlderList:
        return tr("The version list from %1 was signed on %2, before the one already accepted (%3): an old list is "
                  "being replayed, or the server is out of date. It was not used. Try again later.")
            .arg(a, m_note, m_note2);
    }
    return QString();
}

QString CFailureReason::LogText() const
{
    switch (m_kind) {
    case EKind::None:
        return QStringLiteral("no error");
    case EKind::HostNotFound:
        return QStringLiteral("host not found");
    case EKind::Refused:
        return QStringLiteral("connection refused");
    case EKind::TimedOut:
        return QStringLiteral("timed out");
    case EKind::TlsFailed:
        return QStringLiteral("TLS handshake failed");
    case EKind::NoAnswer:
        return QStringLiteral("no answer");
    case EKind::ConnectionLost:
        return QStringLiteral("connection broke off during the transfer");
    case EKind::CredentialsRefused:
        return QStringLiteral("credentials refused (HTTP %1)").arg(m_httpStatus);
    case EKind::FileMissing:
        return QStringLiteral("file missing on the server (HTTP 404)");
    case EKind::ServerError:
        return QStringLiteral("server error (HTTP %1)").arg(m_httpStatus);
    case EKind::HttpError:
        return QStringLiteral("HTTP error %1").arg(m_httpStatus);
    case EKind::NotWritable:
        return QStringLiteral("disk full or folder not writable: ") + m_detail;
    case EKind::SignatureMissing:
        return QStringLiteral("no signature for ") + m_detail;
    case EKind::SignatureMismatch:
    case EKind::SignatureUnknownKey:
        return QStringLiteral("signature of ") + m_detail + QStringLiteral(" did not match: ") + m_note;
    case EKind::SignedForOther:
        return QStringLiteral("signature of ") + m_detail + QStringLiteral(" made for ") + m_note;
    case EKind::OlderList:
        return QStringLiteral("version list signed ") + m_note + QStringLiteral(", before the accepted ") + m_note2;
    }
    return QString();
}
