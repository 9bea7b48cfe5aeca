#include "support/NginxServer.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTcpSocket>

#include <cstdio>

namespace {
QByteArray readAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeAll(const QString& path, const QByteArray& content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(content) == content.size();
}

// Two distinct free ports. They are released again before nginx binds them, so a start may still
// lose one to another program; start() then tries new ones.
bool freePorts(quint16* a, quint16* b)
{
    QTcpServer first, second;
    if (!first.listen(QHostAddress::LocalHost) || !second.listen(QHostAddress::LocalHost))
        return false;
    *a = first.serverPort();
    *b = second.serverPort();
    return true;
}

bool accepts(quint16 port)
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, port);
    return socket.waitForConnected(200);
}

QString sourceDir()
{
    const QString fromEnvironment = qEnvironmentVariable("QMK_TEST_SOURCE_DIR");
    return fromEnvironment.isEmpty() ? QStringLiteral(QMK_SOURCE_DIR) : fromEnvironment;
}

// The README's literals and what each stands for here.
const char* const kListenPlain = "listen 80;";
const char* const kListenTls = "listen 443 ssl;";
const char* const kRoot = "/srv/quillmark";
const char* const kFilesPrefix = "/etc/nginx/quillmark.";
} // namespace

NginxServer::NginxServer()
{
    // Workers run as another user when nginx starts as root; they must reach the served files.
    QFile::setPermissions(m_dir.path(), QFile::permissions(m_dir.path()) | QFile::ReadOther | QFile::ExeOther |
                                            QFile::ReadGroup | QFile::ExeGroup);
    QDir(m_dir.path()).mkpath(QStringLiteral("www"));
    QDir(m_dir.path()).mkpath(QStringLiteral("temp"));
    m_process.setProcessChannelMode(QProcess::MergedChannels);
}

NginxServer::~NginxServer()
{
    stop();
}

QString NginxServer::binary()
{
    const QString onPath = QStandardPaths::findExecutable(QStringLiteral("nginx"));
    if (!onPath.isEmpty())
        return onPath;
    return QStandardPaths::findExecutable(QStringLiteral("nginx"),
                                          {QStringLiteral("/usr/sbin"), QStringLiteral("/usr/local/sbin")});
}

QString NginxServer::readmeServerBlock(QString* error)
{
    const QString readme = sourceDir() + QStringLiteral("/README.md");
    const QString text = QString::fromUtf8(readAll(readme));
    const QRegularExpression fence(QStringLiteral("```nginx\\n(.*?)```"),
                                   QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = fence.match(text);
    if (!match.hasMatch()) {
        *error = readme + QStringLiteral(": no ```nginx block");
        return QString();
    }
    const QString block = match.captured(1);
    for (const char* literal : {kListenPlain, kListenTls, kRoot, kFilesPrefix}) {
        if (!block.contains(QLatin1String(literal))) {
            *error = readme + QStringLiteral(": the nginx block no longer holds \"") + QLatin1String(literal) +
                     QStringLiteral("\"; change NginxServer with it");
            return QString();
        }
    }
    return block;
}

QString NginxServer::root() const
{
    return m_dir.filePath(QStringLiteral("www"));
}

QString NginxServer::hostAndPort() const
{
    return QStringLiteral("127.0.0.1:%1").arg(m_port);
}

QString NginxServer::certificatePath() const
{
    return m_dir.filePath(QStringLiteral("quillmark.crt"));
}

QByteArray NginxServer::accessLog() const
{
    return readAll(m_dir.filePath(QStringLiteral("access.log")));
}

QByteArray NginxServer::errorLog() const
{
    return readAll(m_dir.filePath(QStringLiteral("error.log")));
}

bool NginxServer::isRunning() const
{
    return m_process.state() != QProcess::NotRunning;
}

bool NginxServer::setCredentials(const QByteArray& user, const QByteArray& password)
{
    // The README's command: openssl passwd -apr1 PASSWORD.
    QProcess openssl;
    openssl.start(QStringLiteral("openssl"),
                  {QStringLiteral("passwd"), QStringLiteral("-apr1"), QString::fromUtf8(password)});
    if (!openssl.waitForFinished(20000) || openssl.exitCode() != 0) {
        m_error = QStringLiteral("openssl passwd failed: ") + QString::fromLocal8Bit(openssl.readAllStandardError());
        return false;
    }
    const QByteArray hash = openssl.readAllStandardOutput().trimmed();
    // Replaced in one step, so a request never reads half a file.
    const QString path = m_dir.filePath(QStringLiteral("quillmark.htpasswd"));
    const QString next = path + QStringLiteral(".new");
    if (!writeAll(next, user + ':' + hash + '\n') ||
        std::rename(QFile::encodeName(next).constData(), QFile::encodeName(path).constData()) != 0) {
        m_error = QStringLiteral("cannot write ") + path;
        return false;
    }
    return true;
}

bool NginxServer::makeCertificate(QString* error)
{
    if (QFileInfo::exists(certificatePath()))
        return true;
    QProcess openssl;
    openssl.setProcessChannelMode(QProcess::MergedChannels);
    openssl.start(QStringLiteral("openssl"),
                  {QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"),
                   QStringLiteral("rsa:2048"), QStringLiteral("-nodes"), QStringLiteral("-days"), QStringLiteral("2"),
                   QStringLiteral("-subj"), QStringLiteral("/CN=127.0.0.1"), QStringLiteral("-addext"),
                   QStringLiteral("subjectAltName=IP:127.0.0.1"), QStringLiteral("-keyout"),
                   m_dir.filePath(QStringLiteral("quillmark.key")), QStringLiteral("-out"), certificatePath()});
    if (!openssl.waitForFinished(60000) || openssl.exitCode() != 0) {
        *error = QStringLiteral("openssl req failed: ") + QString::fromLocal8Bit(openssl.readAll());
        return false;
    }
    return true;
}

bool NginxServer::writeConfig(QString* error)
{
    QString block = readmeServerBlock(error);
    if (block.isEmpty())
        return false;
    block.replace(QLatin1String(kListenPlain), QStringLiteral("listen 127.0.0.1:%1;").arg(m_port));
    block.replace(QLatin1String(kListenTls), QStringLiteral("listen 127.0.0.1:%1 ssl;").arg(m_tlsPort));
    block.replace(QLatin1String(kRoot), root());
    block.replace(QLatin1String(kFilesPrefix), m_dir.filePath(QStringLiteral("quillmark.")));

    const QString dir = m_dir.path();
    QString config = QStringLiteral("daemon off;\n"
                                    "worker_processes 1;\n"
                                    "pid %1/nginx.pid;\n"
                                    "error_log %1/error.log info;\n"
                                    "events { worker_connections 64; }\n"
                                    "http {\n"
                                    "    access_log %1/access.log;\n"
                                    "    default_type application/octet-stream;\n"
                                    "    sendfile on;\n"
                                    "    client_body_temp_path %1/temp/body;\n"
                                    "    proxy_temp_path %1/temp/proxy;\n"
                                    "    fastcgi_temp_path %1/temp/fastcgi;\n"
                                    "    uwsgi_temp_path %1/temp/uwsgi;\n"
                                    "    scgi_temp_path %1/temp/scgi;\n")
                         .arg(dir);
    if (m_rateLimit > 0)
        config += QStringLiteral("    limit_rate %1;\n").arg(m_rateLimit);
    config += block + QStringLiteral("}\n");
    if (!writeAll(m_dir.filePath(QStringLiteral("nginx.conf")), config.toUtf8())) {
        *error = QStringLiteral("cannot write ") + m_dir.filePath(QStringLiteral("nginx.conf"));
        return false;
    }
    return true;
}

bool NginxServer::start()
{
    m_error.clear();
    if (isRunning())
        return true;
    const QString nginx = binary();
    if (nginx.isEmpty()) {
        m_error = QStringLiteral("nginx is not installed (apt-get install nginx-light)");
        return false;
    }
    if (!makeCertificate(&m_error))
        return false;
    if (!QFileInfo::exists(m_dir.filePath(QStringLiteral("quillmark.htpasswd"))) &&
        !setCredentials("webclient", "Q7x2Lm9p"))
        return false;

    const bool portsGiven = m_port != 0;
    for (int attempt = 0; attempt < 5; ++attempt) {
        if (!portsGiven && !freePorts(&m_port, &m_tlsPort)) {
            m_error = QStringLiteral("no free port on 127.0.0.1");
            return false;
        }
        if (!writeConfig(&m_error))
            return false;
        QFile::remove(m_dir.filePath(QStringLiteral("error.log")));
        m_process.start(nginx, {QStringLiteral("-p"), m_dir.path(), QStringLiteral("-c"),
                                m_dir.filePath(QStringLiteral("nginx.conf"))});
        if (!m_process.waitForStarted(10000)) {
            m_error = nginx + QStringLiteral(": ") + m_process.errorString();
            return false;
        }
        // Up once both ports take connections; a port taken meanwhile ends nginx at once.
        const QDeadlineTimer deadline(20000);
        while (isRunning() && !deadline.hasExpired() && !(accepts(m_port) && accepts(m_tlsPort)))
            m_process.waitForFinished(50);
        if (isRunning() && !deadline.hasExpired())
            return true;
        stop();
        m_error = QStringLiteral("nginx did not start: ") + QString::fromLocal8Bit(m_process.readAll()) +
                  QString::fromLocal8Bit(errorLog());
        // A port someone else took: on a restart the same ports were promised, so give up.
        if (portsGiven || !m_error.contains(QLatin1String("Address already in use")))
            return false;
    }
    return false;
}

void NginxServer::stop()
{
    if (!isRunning())
        return;
    // SIGTERM is nginx's fast shutdown: open connections are closed, not finished.
    m_process.terminate();
    if (!m_process.waitForFinished(20000)) {
        m_process.kill();
        m_process.waitForFinished(5000);
    }
}
