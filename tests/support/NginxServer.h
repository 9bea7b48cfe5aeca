#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

// Real nginx on 127.0.0.1, configured with the server block of the README (the production
// recipe), so that a test passing against it proves the recipe as well as the program. The block
// is read from README.md of the source tree and only its addresses and paths are replaced:
//   listen 80           -> 127.0.0.1:port()       (plain HTTP, what the program asks over)
//   listen 443 ssl      -> 127.0.0.1:tlsPort()    (TLS with a self-signed certificate made here)
//   /srv/quillmark      -> root()                 (fill it before or after start())
//   /etc/nginx/quillmark.* -> files in the server's own folder
// The credentials file is made with `openssl passwd -apr1`, as the README says; nginx reads it at
// every request, so setCredentials() takes effect at once.
//
// Everything lives in a temporary folder of its own; stop() or the destructor ends nginx.
class NginxServer
{
public:
    NginxServer();
    ~NginxServer();
    NginxServer(const NginxServer&) = delete;
    NginxServer& operator=(const NginxServer&) = delete;

    // The nginx binary (PATH, then /usr/sbin), or empty.
    static QString binary();
    // The README's server block, or empty with *error set.
    static QString readmeServerBlock(QString* error);

    // Free ports are picked on the first start; a later start listens on the same ones again.
    bool start();
    // Fast shutdown: transfers in flight are cut off.
    void stop();
    bool isRunning() const;
    QString errorString() const { return m_error; }

    // Bytes per second per connection from the next start() on; 0 for no limit.
    void setRateLimit(qint64 bytesPerSecond) { m_rateLimit = bytesPerSecond; }
    bool setCredentials(const QByteArray& user, const QByteArray& password);

    QString root() const;
    quint16 port() const { return m_port; }
    quint16 tlsPort() const { return m_tlsPort; }
    // "127.0.0.1:PORT", the form of the program's server setting.
    QString hostAndPort() const;
    // The self-signed certificate, for clients that should trust it.
    QString certificatePath() const;
    // nginx's access and error logs so far.
    QByteArray accessLog() const;
    QByteArray errorLog() const;

private:
    bool writeConfig(QString* error);
    bool makeCertificate(QString* error);

    QTemporaryDir m_dir;
    QProcess m_process;
    quint16 m_port = 0;
    quint16 m_tlsPort = 0;
    qint64 m_rateLimit = 0;
    QString m_error;
};
