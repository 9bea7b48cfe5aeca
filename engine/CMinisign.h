#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

// Ed25519 signatures in the format of the stock `minisign` tool, so that a publisher signs with
// nothing of ours. Keys come from the catalogue; libsodium does the arithmetic.
class CMinisign
{
public:
    struct PublicKey
    {
        QByteArray keyId; // 8 bytes
        QByteArray key;   // 32 bytes
    };

    struct Signature
    {
        bool prehashed = true; // the BLAKE2b-512 hash of the file is signed, not the file itself
        QByteArray keyId;
        QByteArray signature;       // 64 bytes
        QByteArray trustedComment;  // without its prefix and line end
        QByteArray globalSignature; // 64 bytes, over signature + trusted comment
    };

    enum class EResult
    {
        Ok,
        Malformed,  // not a signature file
        UnknownKey, // made with a key the catalogue does not name
        Mismatch,   // the file or the trusted comment is not what was signed
        Unreadable, // the file could not be read
    };

    // A .pub file's key line.
    static bool ParsePublicKey(const QByteArray& base64, PublicKey& key);
    // Keys separated by white space; entries that are no key are named in *problems.
    static QList<PublicKey> ParsePublicKeys(const QString& text, QStringList* problems);

    // A signature file, strictly: four lines, known prefixes and lengths, a known algorithm.
    static bool ParseSignature(const QByteArray& bytes, Signature& signature, QString* problem);
    // Largest signature file taken; minisign's own limits keep real ones far below it.
    static constexpr int MaxSignatureFileSize = 16 * 1024;

    // Checks the file at path, read in pieces, and the trusted comment with the key whose id the
    // signature names. Only after Ok may the comment's fields be believed.
    static EResult Verify(const QString& path, const Signature& signature, const QList<PublicKey>& keys,
                          QString* problem);

    // The tab-separated key:value fields of a trusted comment; the first of a repeated key counts,
    // and a field without a colon is left out.
    static QMap<QString, QString> CommentFields(const QByteArray& trustedComment);
    // An id the way minisign prints it: 16 hex digits, last byte first.
    static QString KeyIdText(const QByteArray& keyId);
};
