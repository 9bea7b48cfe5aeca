#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>

#include <memory>

// A small HTTP server on 127.0.0.1 for tests, benchmarks and the demo. It runs in a thread of its
// own, so a test may block (QSignalSpy::wait, QProcess::waitForFinished) while it answers.
//
//   TestServer server(folder);                  // serves files below folder
//   QVERIFY(server.start());                    // free port on 127.0.0.1 (or start(8470))
//   QUrl url(server.url("/quillmark/versionList.txt"));        // "http://127.0.0.1:PORT/..."
//   engine.SetServer(server.hostAndPort());                    // "127.0.0.1:PORT"
//
// Rules of the house, as the real download server has them:
// - only POST is answered (405 for anything else, with Allow: POST);
// - the request must carry "Authorization: Basic " + base64 of credentials() (default
//   "webclient:Q7x2Lm9p"), else 401 with WWW-Authenticate;
// - a path is looked up first among addContent()/addGenerated() entries (exact path, so "/dir/"
//   works too), then as a file below the root folder; otherwise 404. ".." in a path gives 404.
// - every answer carries Content-Length and "Connection: close"; the connection then closes.
//
// TLS: the same port speaks TLS and plain HTTP alike. A connection whose first byte is 0x16 (a TLS
// ClientHello) gets a TLS handshake with a self-signed certificate for 127.0.0.1, made at run time
// with the `openssl` tool. Clients that check certificates therefore fail the handshake; that is
// the point. Without `openssl` such a connection is simply closed, which fails the client as well.
//
// Faults: a fault applies either to every request for a path (setFault) or to the next N requests
// that pass the method and credential checks, whatever their path (failNext; these are used first).
//   ServerError   answer 500
//   CloseMidBody  send the headers with the full Content-Length and half the body, wait 300 ms,
//                 then close. After such a close Qt's HTTP layer sometimes sends the request once
//                 more by itself (and drops the answer); count on it when asserting requestCount().
//   Slow          send the body in chunks of slowChunkBytes every slowIntervalMs (setSlowPace)
//
// Every request that reaches the HTTP stage (TLS handshakes do not) is recorded, in order.
// All members may be called from any thread.
class TestServer
{
public:
    enum class Fault
    {
        None,
        ServerError,
        CloseMidBody,
        Slow
    };

    struct Request
    {
        QByteArray method;
        QString path;                         // decoded URL path, without query
        QMap<QByteArray, QByteArray> headers; // names in lower case
        QByteArray body;
    };

    explicit TestServer(const QString& rootDir = QString());
    ~TestServer();
    TestServer(const TestServer&) = delete;
    TestServer& operator=(const TestServer&) = delete;

    // Listens on 127.0.0.1; port 0 picks a free one. False when the port cannot be had.
    bool start(quint16 port = 0);
    quint16 port() const;
    // "127.0.0.1:PORT", the form the engines' SetServer() takes.
    QString hostAndPort() const;
    // "http://127.0.0.1:PORT" + path, or https with tls true.
    QString url(const QString& path, bool tls = false) const;

    QString root() const;
    void setCredentials(const QByteArray& userColonPassword);
    QByteArray credentials() const;

    // Answers path with these bytes.
    void addContent(const QString& path, const QByteArray& content);
    // Answers path with size bytes made on the fly (generatedByte), never held in memory.
    void addGenerated(const QString& path, qint64 size);
    static char generatedByte(qint64 offset);

    void setFault(const QString& path, Fault fault); // Fault::None removes it
    void failNext(int count, Fault fault);
    void setSlowPace(int chunkBytes, int intervalMs); // default 1024 bytes every 40 ms

    // Whether a TLS handshake can be offered (the openssl tool made a certificate).
    bool tlsAvailable() const;
    // Connections that began with a TLS ClientHello.
    int tlsConnectionCount() const;

    int requestCount() const;
    QList<Request> requests() const;
    Request lastRequest() const;
    void clearRequests();

    struct State;

private:
    std::shared_ptr<State> m_state;
    class Runner;
    Runner* m_runner;
};
