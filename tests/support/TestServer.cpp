#include "support/TestServer.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QMutex>
#include <QMutexLocker>
#include <QPointer>
#include <QProcess>
#include <QSemaphore>
#include <QSocketNotifier>
#include <QSslCertificate>
#include <QSslKey>
#include <QSslSocket>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>
#include <QUrl>

#include <sys/socket.h>
#include <unistd.h>

struct TestServer::State
{
    mutable QMutex mutex;
    QString root;
    QByteArray credentials = QByteArrayLiteral("webclient:Q7x2Lm9p");
    QHash<QString, QByteArray> contents;
    QHash<QString, qint64> generated;
    QHash<QString, Fault> pathFaults;
    int nextCount = 0;
    Fault nextFault = Fault::None;
    int slowChunk = 1024;
    int slowInterval = 40;
    QList<Request> requests;
    int tlsConnections = 0;
    quint16 port = 0;
    QSslCertificate certificate;
    QSslKey key;
};

namespace {

constexpr qint64 BlockSize = 65536;
constexpr qint64 WriteChunk = 256 * 1024;
constexpr qint64 HeaderLimit = 64 * 1024;
constexpr int CloseDelayMs = 300;

const QByteArray& patternBlock()
{
    static const QByteArray block = [] {
        QByteArray b(int(BlockSize), '\0');
        for (qint64 i = 0; i < BlockSize; ++i)
            b[int(i)] = TestServer::generatedByte(i);
        return b;
    }();
    return block;
}

// One self-signed certificate per process, made by the openssl tool into a temporary folder.
struct Certificate
{
    QByteArray certPem;
    QByteArray keyPem;
};

const Certificate& testCertificate()
{
    static QMutex mutex;
    static bool done = false;
    static Certificate result;
    QMutexLocker lock(&mutex);
    if (done)
        return result;
    done = true;
    const QString openssl = QStandardPaths::findExecutable(QStringLiteral("openssl"));
    QTemporaryDir dir;
    if (openssl.isEmpty() || !dir.isValid())
        return result;
    QProcess process;
    process.start(openssl, {QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"),
                            QStringLiteral("rsa:2048"), QStringLiteral("-nodes"), QStringLiteral("-keyout"),
                            dir.filePath(QStringLiteral("key.pem")), QStringLiteral("-out"),
                            dir.filePath(QStringLiteral("cert.pem")), QStringLiteral("-days"), QStringLiteral("30"),
                            QStringLiteral("-subj"), QStringLiteral("/CN=127.0.0.1"), QStringLiteral("-addext"),
                            QStringLiteral("subjectAltName=IP:127.0.0.1")});
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return result;
    QFile cert(dir.filePath(QStringLiteral("cert.pem")));
    QFile key(dir.filePath(QStringLiteral("key.pem")));
    if (cert.open(QIODevice::ReadOnly) && key.open(QIODevice::ReadOnly)) {
        result.certPem = cert.readAll();
        result.keyPem = key.readAll();
    }
    return result;
}

QByteArray reasonPhrase(int status)
{
    switch (status) {
    case 200:
        return "OK";
    case 400:
        return "Bad Request";
    case 401:
        return "Unauthorized";
    case 404:
        return "Not Found";
    case 405:
        return "Method Not Allowed";
    case 500:
        return "Internal Server Error";
    default:
        return "Status";
    }
}

// One HTTP exchange on one connection (plain or already encrypted).
class Connection : public QObject
{
public:
    Connection(QTcpSocket* socket, std::shared_ptr<TestServer::State> state, QObject* parent)
        : QObject(parent), m_socket(socket), m_state(std::move(state))
    {
        m_socket->setParent(this);
        connect(m_socket, &QTcpSocket::readyRead, this, &Connection::onReadyRead);
        connect(m_socket, &QTcpSocket::bytesWritten, this, &Connection::pump);
        connect(m_socket, &QTcpSocket::disconnected, this, &QObject::deleteLater);
        connect(m_socket, &QAbstractSocket::errorOccurred, this, [this](QAbstractSocket::SocketError) {
            if (m_socket->state() != QAbstractSocket::ConnectedState)
                deleteLater();
        });
    }

    void begin()
    {
        if (m_socket->bytesAvailable() > 0)
            onReadyRead();
    }

private:
    void onReadyRead()
    {
        if (m_answered) {
            m_socket->readAll();
            return;
        }
        m_buffer += m_socket->readAll();
        if (m_headerEnd < 0) {
            const int end = m_buffer.indexOf("\r\n\r\n");
            if (end < 0) {
                if (m_buffer.size() > HeaderLimit)
                    answerPlain(400, QByteArrayLiteral("Header too long"));
                return;
            }
            m_headerEnd = end + 4;
            parseHeader(m_buffer.left(end));
        }
        if (m_buffer.size() - m_headerEnd < m_contentLength)
            return;
        m_request.body = m_buffer.mid(m_headerEnd, int(m_contentLength));
        handle();
    }

    void parseHeader(const QByteArray& head)
    {
        const QList<QByteArray> lines = head.split('\n');
        const QList<QByteArray> first = lines.value(0).trimmed().split(' ');
        m_request.method = first.value(0);
        const QUrl target = QUrl::fromEncoded(first.value(1));
        m_request.path = target.path(QUrl::FullyDecoded);
        for (int i = 1; i < lines.size(); ++i) {
            const int colon = lines[i].indexOf(':');
            if (colon <= 0)
                continue;
            m_request.headers.insert(lines[i].left(colon).trimmed().toLower(), lines[i].mid(colon + 1).trimmed());
        }
        m_contentLength = m_request.headers.value("content-length", "0").toLongLong();
        if (m_contentLength < 0 || m_contentLength > 64 * 1024 * 1024)
            m_contentLength = 0;
    }

    void handle()
    {
        m_answered = true;
        TestServer::Fault fault = TestServer::Fault::None;
        int status = 200;
        QByteArray memory;
        qint64 generatedSize = -1;
        QString filePath;
        {
            QMutexLocker lock(&m_state->mutex);
            const QByteArray expected = QByteArrayLiteral("Basic ") + m_state->credentials.toBase64();
            if (m_request.method != "POST") {
                status = 405;
            } else if (m_request.headers.value("authorization") != expected) {
                status = 401;
            } else {
                if (m_state->nextCount > 0) {
                    --m_state->nextCount;
                    fault = m_state->nextFault;
                } else {
                    fault = m_state->pathFaults.value(m_request.path, TestServer::Fault::None);
                }
                if (fault == TestServer::Fault::ServerError) {
                    status = 500;
                } else if (m_state->contents.contains(m_request.path)) {
                    memory = m_state->contents.value(m_request.path);
                } else if (m_state->generated.contains(m_request.path)) {
                    generatedSize = m_state->generated.value(m_request.path);
                } else {
                    const bool climbs = m_request.path.split(QLatin1Char('/')).contains(QStringLiteral(".."));
                    const QString candidate = m_state->root + m_request.path;
                    if (m_state->root.isEmpty() || climbs || !QFileInfo(candidate).isFile())
                        status = 404;
                    else
                        filePath = candidate;
                }
            }
            m_slowChunk = m_state->slowChunk;
            m_slowInterval = m_state->slowInterval;
            m_state->requests << m_request;
        }

        if (status != 200) {
            answerPlain(status, reasonPhrase(status));
            return;
        }
        if (!filePath.isEmpty()) {
            m_file.setFileName(filePath);
            if (!m_file.open(QIODevice::ReadOnly)) {
                answerPlain(404, reasonPhrase(404));
                return;
            }
            m_size = m_file.size();
        } else if (generatedSize >= 0) {
            m_generated = true;
            m_size = generatedSize;
        } else {
            m_memory = memory;
            m_size = memory.size();
        }
        m_limit = fault == TestServer::Fault::CloseMidBody ? m_size / 2 : m_size;
        m_socket->write("HTTP/1.1 200 OK\r\nContent-Type: application/octet-stream\r\nContent-Length: " +
                        QByteArray::number(m_size) + "\r\nConnection: close\r\n\r\n");
        if (fault == TestServer::Fault::Slow) {
            m_timer = new QTimer(this);
            connect(m_timer, &QTimer::timeout, this, &Connection::slowTick);
            m_timer->start(m_slowInterval);
        } else {
            m_streaming = true;
            pump();
        }
    }

    void answerPlain(int status, const QByteArray& body)
    {
        m_answered = true;
        QByteArray head = "HTTP/1.1 " + QByteArray::number(status) + ' ' + reasonPhrase(status) + "\r\n";
        if (status == 401)
            head += "WWW-Authenticate: Basic realm=\"quillmark\"\r\n";
        if (status == 405)
            head += "Allow: POST\r\n";
        head += "Content-Type: text/plain\r\nContent-Length: " + QByteArray::number(body.size()) +
                "\r\nConnection: close\r\n\r\n";
        m_socket->write(head + body);
        m_size = m_limit = 0;
        m_streaming = true;
        pump();
    }

    QByteArray nextChunk(qint64 wanted)
    {
        wanted = qMin(wanted, m_limit - m_sent);
        if (wanted <= 0)
            return QByteArray();
        if (m_generated) {
            QByteArray out;
            out.reserve(int(wanted));
            const QByteArray& block = patternBlock();
            qint64 offset = m_sent;
            while (out.size() < wanted) {
                const qint64 inBlock = offset % BlockSize;
                const qint64 take = qMin(BlockSize - inBlock, wanted - out.size());
                out.append(block.constData() + inBlock, int(take));
                offset += take;
            }
            return out;
        }
        if (m_file.isOpen())
            return m_file.read(wanted);
        return m_memory.mid(int(m_sent), int(wanted));
    }

    void pump()
    {
        if (!m_streaming)
            return;
        while (m_sent < m_limit && m_socket->bytesToWrite() == 0) {
            qint64 written = 0;
            if (m_generated) {
                // Straight from the pattern block: nothing is made or copied per request.
                const qint64 inBlock = m_sent % BlockSize;
                const qint64 take = qMin(BlockSize - inBlock, m_limit - m_sent);
                written = m_socket->write(patternBlock().constData() + inBlock, take);
            } else {
                const QByteArray chunk = nextChunk(WriteChunk);
                if (chunk.isEmpty())
                    break;
                written = m_socket->write(chunk);
            }
            if (written <= 0)
                break;
            m_sent += written;
        }
        finishIfDone();
    }

    void slowTick()
    {
        const QByteArray chunk = nextChunk(m_slowChunk);
        if (!chunk.isEmpty()) {
            m_socket->write(chunk);
            m_sent += chunk.size();
        }
        if (m_sent >= m_limit) {
            m_timer->stop();
            m_streaming = true;
            finishIfDone();
        }
    }

    void finishIfDone()
    {
        if (m_sent >= m_limit && m_socket->bytesToWrite() == 0 && !m_closing) {
            m_closing = true;
            if (m_limit >= m_size) {
                m_socket->disconnectFromHost();
                return;
            }
            // In the middle of the announced body. The pause lets the client take in what was
            // sent first; a close that races the headers makes Qt's HTTP layer resend the
            // request by itself, which would blur the request count.
            QTimer::singleShot(CloseDelayMs, m_socket, &QTcpSocket::disconnectFromHost);
        }
    }

    QTcpSocket* m_socket;
    std::shared_ptr<TestServer::State> m_state;
    QByteArray m_buffer;
    int m_headerEnd = -1;
    qint64 m_contentLength = 0;
    TestServer::Request m_request;
    bool m_answered = false;
    bool m_streaming = false;
    bool m_closing = false;
    bool m_generated = false;
    QByteArray m_memory;
    QFile m_file;
    qint64 m_size = 0;
    qint64 m_limit = 0;
    qint64 m_sent = 0;
    int m_slowChunk = 1024;
    int m_slowInterval = 40;
    QTimer* m_timer = nullptr;
};

class Listener : public QTcpServer
{
public:
    explicit Listener(std::shared_ptr<TestServer::State> state) : m_state(std::move(state)) {}

protected:
    void incomingConnection(qintptr descriptor) override
    {
        // Wait for the first byte before choosing between TLS and plain HTTP; peeking leaves it
        // in the kernel for whichever socket takes over the descriptor.
        auto* notifier = new QSocketNotifier(descriptor, QSocketNotifier::Read, this);
        connect(notifier, &QSocketNotifier::activated, this, [this, notifier, descriptor] {
            notifier->setEnabled(false);
            notifier->deleteLater();
            unsigned char first = 0;
            const ssize_t n = ::recv(int(descriptor), &first, 1, MSG_PEEK);
            if (n <= 0) {
                ::close(int(descriptor));
                return;
            }
            if (first == 0x16)
                startTls(descriptor);
            else
                startPlain(descriptor);
        });
    }

private:
    void startPlain(qintptr descriptor)
    {
        auto* socket = new QTcpSocket;
        if (!socket->setSocketDescriptor(descriptor, QAbstractSocket::ConnectedState,
                                         QIODevice::ReadWrite | QIODevice::Unbuffered)) {
            delete socket;
            ::close(int(descriptor));
            return;
        }
        (new Connection(socket, m_state, this))->begin();
    }

    void startTls(qintptr descriptor)
    {
        QSslCertificate certificate;
        QSslKey key;
        {
            QMutexLocker lock(&m_state->mutex);
            ++m_state->tlsConnections;
            certificate = m_state->certificate;
            key = m_state->key;
        }
        if (certificate.isNull() || key.isNull() || !QSslSocket::supportsSsl()) {
            ::close(int(descriptor));
            return;
        }
        auto* socket = new QSslSocket;
        if (!socket->setSocketDescriptor(descriptor)) {
            delete socket;
            ::close(int(descriptor));
            return;
        }
        socket->setLocalCertificate(certificate);
        socket->setPrivateKey(key);
        auto* connection = new Connection(socket, m_state, this);
        connect(socket, &QSslSocket::encrypted, connection, &Connection::begin);
        socket->startServerEncryption();
    }

    std::shared_ptr<TestServer::State> m_state;
};

} // namespace

class TestServer::Runner : public QThread
{
public:
    explicit Runner(std::shared_ptr<State> state) : m_state(std::move(state)) {}

    // Runs fn on the server's thread and waits for it.
    template <typename Fn> void call(Fn fn) { QMetaObject::invokeMethod(m_listener, fn, Qt::BlockingQueuedConnection); }

    Listener* listener() const { return m_listener; }

    void startAndWait()
    {
        start();
        m_ready.acquire();
    }

protected:
    void run() override
    {
        Listener listener(m_state);
        m_listener = &listener;
        m_ready.release();
        exec();
        listener.close();
        m_listener = nullptr;
    }

private:
    std::shared_ptr<State> m_state;
    Listener* m_listener = nullptr;
    QSemaphore m_ready;
};

TestServer::TestServer(const QString& rootDir) : m_state(std::make_shared<State>())
{
    m_state->root = QDir::cleanPath(rootDir);
    if (rootDir.isEmpty())
        m_state->root.clear();
    m_runner = new Runner(m_state);
    m_runner->startAndWait();
}

TestServer::~TestServer()
{
    m_runner->quit();
    m_runner->wait();
    delete m_runner;
}

bool TestServer::start(quint16 port)
{
    const Certificate& pem = testCertificate();
    {
        QMutexLocker lock(&m_state->mutex);
        if (!pem.certPem.isEmpty()) {
            m_state->certificate = QSslCertificate(pem.certPem, QSsl::Pem);
            m_state->key = QSslKey(pem.keyPem, QSsl::Rsa, QSsl::Pem);
        }
    }
    bool ok = false;
    quint16 bound = 0;
    Listener* listener = m_runner->listener();
    m_runner->call([&] {
        ok = listener->listen(QHostAddress::LocalHost, port);
        bound = listener->serverPort();
    });
    QMutexLocker lock(&m_state->mutex);
    m_state->port = ok ? bound : 0;
    return ok;
}

quint16 TestServer::port() const
{
    QMutexLocker lock(&m_state->mutex);
    return m_state->port;
}

QString TestServer::hostAndPort() const
{
    return QStringLiteral("127.0.0.1:%1").arg(port());
}

QString TestServer::url(const QString& path, bool tls) const
{
    return (tls ? QStringLiteral("https://") : QStringLiteral("http://")) + hostAndPort() + path;
}

QString TestServer::root() const
{
    QMutexLocker lock(&m_state->mutex);
    return m_state->root;
}

void TestServer::setCredentials(const QByteArray& userColonPassword)
{
    QMutexLocker lock(&m_state->mutex);
    m_state->credentials = userColonPassword;
}

QByteArray TestServer::credentials() const
{
    QMutexLocker lock(&m_state->mutex);
    return m_state->credentials;
}

void TestServer::addContent(const QString& path, const QByteArray& content)
{
    QMutexLocker lock(&m_state->mutex);
    m_state->contents.insert(path, content);
}

void TestServer::addGenerated(const QString& path, qint64 size)
{
    QMutexLocker lock(&m_state->mutex);
    m_state->generated.insert(path, size);
}

char TestServer::generatedByte(qint64 offset)
{
    // Repeats every 64 KiB, so whole blocks can be copied, yet a shifted or dropped chunk shows.
    return char((offset ^ (offset >> 8)) & 0xff);
}

void TestServer::setFault(const QString& path, Fault fault)
{
    QMutexLocker lock(&m_state->mutex);
    if (fault == Fault::None)
        m_state->pathFaults.remove(path);
    else
        m_state->pathFaults.insert(path, fault);
}

void TestServer::failNext(int count, Fault fault)
{
    QMutexLocker lock(&m_state->mutex);
    m_state->nextCount = count;
    m_state->nextFault = fault;
}

void TestServer::setSlowPace(int chunkBytes, int intervalMs)
{
    QMutexLocker lock(&m_state->mutex);
    m_state->slowChunk = qMax(1, chunkBytes);
    m_state->slowInterval = qMax(0, intervalMs);
}

bool TestServer::tlsAvailable() const
{
    QMutexLocker lock(&m_state->mutex);
    return !m_state->certificate.isNull() && !m_state->key.isNull() && QSslSocket::supportsSsl();
}

int TestServer::tlsConnectionCount() const
{
    QMutexLocker lock(&m_state->mutex);
    return m_state->tlsConnections;
}

int TestServer::requestCount() const
{
    QMutexLocker lock(&m_state->mutex);
    return m_state->requests.size();
}

QList<TestServer::Request> TestServer::requests() const
{
    QMutexLocker lock(&m_state->mutex);
    return m_state->requests;
}

TestServer::Request TestServer::lastRequest() const
{
    QMutexLocker lock(&m_state->mutex);
    return m_state->requests.isEmpty() ? Request() : m_state->requests.last();
}

void TestServer::clearRequests()
{
    QMutexLocker lock(&m_state->mutex);
    m_state->requests.clear();
}
