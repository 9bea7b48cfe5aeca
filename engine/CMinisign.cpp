#include "engine/CMinisign.h"

#include <QFile>
#include <QRegularExpression>

#include <sodium.h>

#include <memory>

namespace {
const QByteArray kUntrusted = QByteArrayLiteral("untrusted comment: ");
const QByteArray kTrusted = QByteArrayLiteral("trusted comment: ");
constexpr int KeyIdSize = 8;
constexpr qint64 HashPiece = 1024 * 1024;

bool sodiumReady()
{
    static const bool st_ready = sodium_init() >= 0;
    return st_ready;
}

// Base64 as minisign writes it and nothing else: a text that decodes to other bytes than it
// encodes (stray characters, missing padding) is refused, as is the wrong length.
bool strictBase64(const QByteArray& text, int size, QByteArray& bytes)
{
    const QByteArray::FromBase64Result result =
        QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors);
    if (!result || result.decoded.size() != size || result.decoded.toBase64() != text)
        return false;
    bytes = result.decoded;
    return true;
}

bool verifyDetached(const QByteArray& signature, const unsigned char* message, qint64 size, const QByteArray& key)
{
    return crypto_sign_verify_detached(reinterpret_cast<const unsigned char*>(signature.constData()), message,
                                       static_cast<unsigned long long>(size),
                                       reinterpret_cast<const unsigned char*>(key.constData())) == 0;
}

// The BLAKE2b-512 of the file, read in pieces so that a large archive never sits in memory whole.
bool hashFile(QFile& file, QByteArray& hash)
{
    crypto_generichash_state state;
    crypto_generichash_init(&state, nullptr, 0, crypto_generichash_BYTES_MAX);
    std::unique_ptr<char[]> buffer(new char[HashPiece]);
    for (;;) {
        const qint64 got = file.read(buffer.get(), HashPiece);
        if (got < 0)
            return false;
        if (got == 0)
            break;
        crypto_generichash_update(&state, reinterpret_cast<const unsigned char*>(buffer.get()),
                                  static_cast<unsigned long long>(got));
    }
    hash.resize(crypto_generichash_BYTES_MAX);
    crypto_generichash_final(&state, reinterpret_cast<unsigned char*>(hash.data()), crypto_generichash_BYTES_MAX);
    return true;
}
} // namespace

bool CMinisign::ParsePublicKey(const QByteArray& base64, PublicKey& key)
{
    QByteArray bytes;
    if (!strictBase64(base64, 2 + KeyIdSize + crypto_sign_PUBLICKEYBYTES, bytes) || !bytes.startsWith("Ed"))
        return false;
    key.keyId = bytes.mid(2, KeyIdSize);
    key.key = bytes.mid(2 + KeyIdSize);
    return true;
}

QList<CMinisign::PublicKey> CMinisign::ParsePublicKeys(const QString& text, QStringList* problems)
{
    QList<PublicKey> keys;
    for (const QString& entry : text.split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts)) {
        PublicKey key;
        if (ParsePublicKey(entry.toLatin1(), key))
            keys << key;
        else if (problems)
            *problems << entry;
    }
    return keys;
}

bool CMinisign::ParseSignature(const QByteArray& bytes, Signature& signature, QString* problem)
{
    const auto fail = [problem](const char* text) {
        if (problem)
            *problem = QString::fromLatin1(text);
        return false;
    };
    if (bytes.size() > MaxSignatureFileSize)
        return fail("larger than a signature file");
    QList<QByteArray> lines = bytes.split('\n');
    // One line end after the last line is what minisign writes; a file that went through a
    // Windows editor keeps carriage returns, which say nothing about the content.
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    for (QByteArray& line : lines)
        if (line.endsWith('\r'))
            line.chop(1);
    if (lines.size() != 4)
        return fail("not four lines");
    if (!lines.at(0).startsWith(kUntrusted))
        return fail("no untrusted comment line");
    QByteArray first;
    if (!strictBase64(lines.at(1), 2 + KeyIdSize + crypto_sign_BYTES, first))
        return fail("signature line is not 74 bytes of base64");
    if (first.startsWith("ED"))
        signature.prehashed = true;
    else if (first.startsWith("Ed"))
        signature.prehashed = false;
    else
        return fail("unknown signature algorithm");
    if (!lines.at(2).startsWith(kTrusted))
        return fail("no trusted comment line");
    if (!strictBase64(lines.at(3), crypto_sign_BYTES, signature.globalSignature))
        return fail("global signature line is not 64 bytes of base64");
    signature.keyId = first.mid(2, KeyIdSize);
    signature.signature = first.mid(2 + KeyIdSize);
    signature.trustedComment = lines.at(2).mid(kTrusted.size());
    return true;
}

CMinisign::EResult CMinisign::Verify(const QString& path, const Signature& signature, const QList<PublicKey>& keys,
                                     QString* problem)
{
    const auto result = [problem](EResult value, const QString& text) {
        if (problem)
            *problem = text;
        return value;
    };
    const PublicKey* key = nullptr;
    for (const PublicKey& candidate : keys)
        if (candidate.keyId == signature.keyId)
            key = &candidate;
    if (!key)
        return result(EResult::UnknownKey, QStringLiteral("signed with key ") + KeyIdText(signature.keyId) +
                                               QStringLiteral(", not trusted"));
    if (!sodiumReady())
        return result(EResult::Unreadable, QStringLiteral("libsodium cannot start"));

    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return result(EResult::Unreadable, file.errorString());
    bool fileMatches = false;
    if (signature.prehashed) {
        QByteArray hash;
        if (!hashFile(file, hash))
            return result(EResult::Unreadable, file.errorString());
        fileMatches = verifyDetached(signature.signature, reinterpret_cast<const unsigned char*>(hash.constData()),
                                     hash.size(), key->key);
    } else {
        // The old kind signs the file itself, which Ed25519 takes only whole; a mapping spares the copy.
        const qint64 size = file.size();
        const uchar* data = size > 0 ? file.map(0, size) : nullptr;
        if (size > 0 && !data)
            return result(EResult::Unreadable, file.errorString());
        static const unsigned char st_empty = 0;
        fileMatches = verifyDetached(signature.signature, data ? data : &st_empty, size, key->key);
    }
    if (!fileMatches)
        return result(EResult::Mismatch, QStringLiteral("file does not match its signature"));

    const QByteArray global = signature.signature + signature.trustedComment;
    if (!verifyDetached(signature.globalSignature, reinterpret_cast<const unsigned char*>(global.constData()),
                        global.size(), key->key))
        return result(EResult::Mismatch, QStringLiteral("trusted comment does not match its signature"));
    return result(EResult::Ok, QString());
}

QMap<QString, QString> CMinisign::CommentFields(const QByteArray& trustedComment)
{
    QMap<QString, QString> fields;
    for (const QByteArray& field : trustedComment.split('\t')) {
        const int colon = field.indexOf(':');
        if (colon <= 0)
            continue;
        const QString key = QString::fromUtf8(field.left(colon));
        if (!fields.contains(key))
            fields.insert(key, QString::fromUtf8(field.mid(colon + 1)));
    }
    return fields;
}

QString CMinisign::KeyIdText(const QByteArray& keyId)
{
    QByteArray reversed;
    for (int i = keyId.size() - 1; i >= 0; --i)
        reversed += keyId.at(i);
    return QString::fromLatin1(reversed.toHex().toUpper());
}
