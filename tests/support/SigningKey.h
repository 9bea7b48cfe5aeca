#pragma once

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

// A real minisign key pair (no password) in a temporary folder of its own, for signing test files
// the way a publisher does: with the stock `minisign` tool, or with tools/publish.sh.
class SigningKey
{
public:
    SigningKey();
    bool isValid() const { return !m_publicKey.isEmpty(); }
    // The key line of the .pub file, as a catalogue's PublicKey names it.
    QString publicKey() const { return m_publicKey; }

    // Writes file + ".minisig" with these trusted comment fields (joined by tabs); legacy signs
    // the file itself instead of its hash.
    bool sign(const QString& file, const QStringList& fields, bool legacy = false) const;
    // tools/publish.sh with this key: the arguments before SOURCE OUT, e.g. {"-c", "2104"}.
    // Returns the script's error output on failure, empty on success.
    QString publish(const QStringList& options, const QString& source, const QString& out) const;

private:
    QTemporaryDir m_dir;
    QString m_publicKey;
};
