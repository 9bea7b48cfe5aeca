#pragma once

#include <QMetaType>
#include <QString>

class QNetworkReply;
class QUrl;

// Why a transfer failed, told apart the way a user can act on it: whether the server answered at
// all, and if it did, what it said. Both update dialogs and the logs describe a failure from this.
class CFailureReason
{
public:
    enum class EKind
    {
        None,
        HostNotFound,        // no answer: the name did not resolve
        Refused,             // no answer: nothing listens there
        TimedOut,            // no answer in time
        TlsFailed,           // no answer: the secure handshake failed
        NoAnswer,            // no answer for another network reason
        ConnectionLost,      // an answer began and broke off
        CredentialsRefused,  // HTTP 401 or 403
        FileMissing,         // HTTP 404
        ServerError,         // HTTP 5xx
        HttpError,           // another HTTP error status
        NotWritable,         // the file could not be written here (disk full, folder not writable)
        SignatureMissing,    // the server has the file but no signature beside it
        SignatureMismatch,   // the file or its signature was altered or damaged on its way
        SignatureUnknownKey, // signed, but with a key the catalogue does not name
        SignedForOther,      // a good signature, made for another file, cycle or dataset
        OlderList,           // a version list signed before the newest one already accepted
    };

    CFailureReason() = default;
    CFailureReason(EKind kind, const QString& address, int httpStatus = 0, int networkError = 0,
                   const QString& detail = QString());

    // A file refused for its signature; `note` says what the signature held (see UserText).
    static CFailureReason Signature(EKind kind, const QString& address, const QString& file,
                                    const QString& note = QString(), const QString& note2 = QString());

    // From a finished reply for `url`; `writeError` names a failed write of the received bytes.
    static CFailureReason FromReply(const QNetworkReply* reply, const QUrl& url, bool truncated,
                                    const QString& writeError);

    EKind Kind() const { return m_kind; }
    bool IsSet() const { return m_kind != EKind::None; }
    // The file came but its signature refused it.
    bool IsSignatureFailure() const;
    // The server was never heard from: the one rule behind "Failed to connect to Velmora-Server.".
    bool CouldNotConnect() const;
    int HttpStatus() const { return m_httpStatus; }
    // host or host:port of the server asked
    QString Address() const { return m_address; }

    // What happened and what to do, for the user, in the current language.
    QString UserText() const;
    // The same in plain English words for the logs, beside the error number.
    QString LogText() const;

private:
    EKind m_kind = EKind::None;
    QString m_address;
    int m_httpStatus = 0;
    int m_networkError = 0;
    QString m_detail;
    QString m_note;
    QString m_note2;
};

Q_DECLARE_METATYPE(CFailureReason)
