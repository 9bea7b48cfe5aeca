#include "engine/DownloadManager.h"
#include "engine/TextProgressBar.h"
#include "support/TempAppDir.h"
#include "support/TestServer.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>

Q_DECLARE_METATYPE(CFailureReason::EKind)

#include <cmath>
#include <limits>

Q_DECLARE_METATYPE(TestServer::Fault)

namespace {
const QByteArray Credentials("webclient:Q7x2Lm9p");

QByteArray sample(int size)
{
    QByteArray bytes(size, '\0');
    for (int i = 0; i < size; ++i)
        bytes[i] = char('a' + (i * 7) % 26);
    return bytes;
}

QByteArray readAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<none>");
}

bool writeUserFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write("mine") == 4;
}

// A loopback port nobody listens on.
quint16 closedPort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost, 0);
    const quint16 port = probe.serverPort();
    probe.close();
    return port;
}

struct Finished
{
    QString urlPath;
    QString file;
    QStringList errors;
    QByteArray data;
};

Finished takeFinished(QSignalSpy& spy)
{
    const QList<QVariant> args = spy.takeFirst();
    return {args.at(0).toString(), args.at(1).toString(), args.at(2).toStringList(), args.at(3).toByteArray()};
}
} // namespace

class TestDownloadManager : public QObject
{
    Q_OBJECT

private slots:
    void transfer_data()
    {
        QTest::addColumn<QString>("scheme"); // "http", "https" or "refused"
        QTest::addColumn<QByteArray>("credentials");
        QTest::addColumn<QString>("path");
        QTest::addColumn<TestServer::Fault>("fault");
        QTest::addColumn<bool>("faultOnce"); // next request only, else every request
        QTest::addColumn<int>("requests");   // HTTP requests the downloader sent
        // Connections the server ends early. After such a close Qt's HTTP layer sometimes sends
        // the request once more on its own (and drops the answer), so the server may see that many more.
        QTest::addColumn<int>("earlyCloses");
        QTest::addColumn<int>("tlsConnections");
        QTest::addColumn<int>("lastError");       // stLastError afterwards
        QTest::addColumn<bool>("failed");         // "Failed download file" reported
        QTest::addColumn<QByteArray>("fileLeft"); // content of the target file afterwards
        QTest::addColumn<QStringList>("logLines");
        QTest::addColumn<CFailureReason::EKind>("reason"); // what the user is told after a failure

        using K = CFailureReason::EKind;
        const QByteArray body = sample(300000);
        using F = TestServer::Fault;
        QTest::newRow("plain success") << "http" << Credentials << "/quillmark/a.zip" << F::None << false << 1 << 0 << 0
                                       << 0 << false << body << QStringList{"Start Download", "downloadFinished"} << K::None;
        QTest::newRow("server error, repeat succeeds")
            << "http" << Credentials << "/quillmark/a.zip" << F::ServerError << true << 2 << 0 << 0
            << int(QNetworkReply::InternalServerError) << false << body
            << QStringList{"!!!Error: Download-Error-ID=401", "Run Download2"} << K::None;
        QTest::newRow("server error twice")
            << "http" << Credentials << "/quillmark/a.zip" << F::ServerError << false << 2 << 0 << 0
            << int(QNetworkReply::InternalServerError) << true << QByteArray("Internal Server Error")
            << QStringList{"Run Download2", "Failed download file"} << K::ServerError;
        QTest::newRow("wrong credentials")
            << "http" << QByteArray("webclient:wrong") << "/quillmark/a.zip" << F::None << false << 2 << 0 << 0
            << int(QNetworkReply::AuthenticationRequiredError) << true << QByteArray("Unauthorized")
            << QStringList{"!!!Error: Download-Error-ID=204 (credentials refused (HTTP 401))"} << K::CredentialsRefused;
        QTest::newRow("missing file") << "http" << Credentials << "/quillmark/missing.zip" << F::None << false << 2 << 0
                                      << 0 << int(QNetworkReply::ContentNotFoundError) << true
                                      << QByteArray("Not Found") << QStringList{"!!!Error: Download-Error-ID=203 (file missing on the server (HTTP 404))"} << K::FileMissing;
        QTest::newRow("closed mid-body, repeat succeeds")
            << "http" << Credentials << "/quillmark/a.zip" << F::CloseMidBody << true << 2 << 1 << 0
            << int(QNetworkReply::RemoteHostClosedError) << false << body << QStringList{"Run Download2"} << K::None;
        QTest::newRow("closed mid-body twice leaves the half")
            << "http" << Credentials << "/quillmark/a.zip" << F::CloseMidBody << false << 2 << 2 << 0
            << int(QNetworkReply::RemoteHostClosedError) << true << body.left(body.size() / 2)
            << QStringList{"Failed download file"} << K::ConnectionLost;
        QTest::newRow("tls refused, plain repeat succeeds")
            << "https" << Credentials << "/quillmark/a.zip" << F::None << false << 1 << 0 << 1
            << int(QNetworkReply::SslHandshakeFailedError) << false << body
            << QStringList{"!!!Error: SSL-Error", "Run Download2"} << K::None;
        QTest::newRow("connection refused") << "refused" << Credentials << "/quillmark/a.zip" << F::None << false << 0
                                            << 0 << 0 << int(QNetworkReply::ConnectionRefusedError) << true
                                            << QByteArray() << QStringList{"!!!Error: Download-Error-ID=1 (connection refused)"} << K::Refused;
    }

    void transfer()
    {
        QFETCH(QString, scheme);
        QFETCH(QByteArray, credentials);
        QFETCH(QString, path);
        QFETCH(TestServer::Fault, fault);
        QFETCH(bool, faultOnce);
        QFETCH(int, requests);
        QFETCH(int, earlyCloses);
        QFETCH(int, tlsConnections);
        QFETCH(int, lastError);
        QFETCH(bool, failed);
        QFETCH(QByteArray, fileLeft);
        QFETCH(QStringList, logLines);
        QFETCH(CFailureReason::EKind, reason);

        TempAppDir app;
        const QString downloads = app.filePath(QStringLiteral("downloads"));
        QVERIFY(QDir().mkpath(downloads));
        TestServer server;
        QVERIFY(server.start());
        server.addContent(QStringLiteral("/quillmark/a.zip"), sample(300000));
        if (faultOnce)
            server.failNext(1, fault);
        else
            server.setFault(path, fault);
        if (scheme == QLatin1String("https") && !server.tlsAvailable())
            QSKIP("no openssl tool to make a test certificate");

        QUrl url(server.url(path, scheme == QLatin1String("https")));
        if (scheme == QLatin1String("refused"))
            url.setPort(closedPort());

        DownloadManager manager;
        QSignalSpy spy(&manager, &DownloadManager::SignalFinished);
        manager.credentials = credentials;
        manager.DownloadFile(url, true, downloads);
        QVERIFY(spy.wait(20000));
        QCoreApplication::processEvents();
        QCOMPARE(spy.count(), 1);

        const Finished result = takeFinished(spy);
        const QString target = downloads + path.mid(path.lastIndexOf(QLatin1Char('/')));
        QCOMPARE(result.urlPath, path);
        QCOMPARE(result.file, target);
        QVERIFY2(server.requestCount() >= requests && server.requestCount() <= requests + earlyCloses,
                 qPrintable(QString::number(server.requestCount())));
        QCOMPARE(server.tlsConnectionCount(), tlsConnections);
        for (const TestServer::Request& r : server.requests())
            QCOMPARE(r.path, path);
        QCOMPARE(DownloadManager::stLastError, lastError);
        if (failed)
            QCOMPARE(result.errors, QStringList{QStringLiteral("Failed download file ") + target + "\n"});
        else
            QVERIFY2(result.errors.isEmpty(), qPrintable(result.errors.join('|')));
        QCOMPARE(readAll(target), fileLeft);
        QVERIFY(manager.credentials.isEmpty());
        QCOMPARE(manager.LastFailure().Kind(), reason);
        QCOMPARE(manager.LastFailure().CouldNotConnect(), reason == CFailureReason::EKind::Refused);

        const QByteArray log = app.readFile(QStringLiteral("log/Download_log.txt"));
        for (const QString& line : logLines)
            QVERIFY2(log.contains(line.toLatin1()), qPrintable(line));
        QCOMPARE(log.contains("Run Download2"), requests + tlsConnections == 2 || scheme == "refused");
        QVERIFY(log.endsWith("downloadListFinished"));
    }

    void requestAsServerSeesIt_data()
    {
        QTest::addColumn<bool>("repeat");
        QTest::newRow("first attempt") << false;
        QTest::newRow("plain repeat") << true;
    }

    void requestAsServerSeesIt()
    {
        QFETCH(bool, repeat);
        TempAppDir app;
        TestServer server;
        QVERIFY(server.start());
        server.addContent(QStringLiteral("/quillmark/versionList.txt"), "1801\r\n");
        if (repeat)
            server.failNext(1, TestServer::Fault::ServerError);

        DownloadManager manager;
        QSignalSpy spy(&manager, &DownloadManager::SignalFinished);
        manager.credentials = Credentials;
        manager.postBody = "user=demo&cycle=1801";
        manager.DownloadFile(QUrl(server.url(QStringLiteral("/quillmark/versionList.txt"))), false, app.path());
        QVERIFY(spy.wait(20000));
        QCOMPARE(takeFinished(spy).data, QByteArray("1801\r\n"));
        QVERIFY(manager.postBody.isEmpty());
        QVERIFY(manager.credentials.isEmpty());

        const QList<TestServer::Request> seen = server.requests();
        QCOMPARE(seen.size(), repeat ? 2 : 1);
        for (const TestServer::Request& r : seen) {
            QCOMPARE(r.method, QByteArray("POST"));
            QCOMPARE(r.headers.value("content-type"), QByteArray("application/x-www-form-urlencoded;charset=UTF-8"));
            QCOMPARE(r.headers.value("authorization"), QByteArray("Basic d2ViY2xpZW50OlE3eDJMbTlw"));
            QCOMPARE(r.body, QByteArray("user=demo&cycle=1801"));
        }
        // Not saving to a file leaves the folder alone.
        QVERIFY(!QFile::exists(app.filePath(QStringLiteral("versionList.txt"))));
    }

    void stopDuringSlowTransfer()
    {
        TempAppDir app;
        TestServer server;
        QVERIFY(server.start());
        server.addContent(QStringLiteral("/slow.zip"), sample(200000));
        server.addContent(QStringLiteral("/next.txt"), "next");
        server.setFault(QStringLiteral("/slow.zip"), TestServer::Fault::Slow);
        server.setSlowPace(2000, 20);

        DownloadManager manager;
        QSignalSpy finished(&manager, &DownloadManager::SignalFinished);
        QSignalSpy percent(&manager, &DownloadManager::SignalChangePercent);
        manager.credentials = Credentials;
        manager.DownloadFile(QUrl(server.url(QStringLiteral("/slow.zip"))), true, app.path());
        QVERIFY(percent.wait(20000));
        QCOMPARE(finished.count(), 0);

        manager.stopDownloadSlot();
        QCOMPARE(finished.count(), 1);
        const Finished stopped = takeFinished(finished);
        QVERIFY(stopped.errors.contains(QStringLiteral("User abort")));
        QVERIFY(app.readFile(QStringLiteral("log/Download_log.txt")).contains("stopDownloadSlot"));
        const qint64 partial = QFileInfo(app.filePath(QStringLiteral("slow.zip"))).size();
        QVERIFY(partial < 200000);

        // A stray repeat of the stopped transfer would show up before the next one ends.
        manager.credentials = Credentials;
        manager.DownloadFile(QUrl(server.url(QStringLiteral("/next.txt"))), true, app.path());
        QVERIFY(finished.wait(20000));
        QCOMPARE(takeFinished(finished).errors, QStringList());
        QCOMPARE(finished.count(), 0);
        QCOMPARE(server.requestCount(), 2);
    }

    void lastDataKeepsOnlyTheFinalChunk()
    {
        TempAppDir app;
        TestServer server;
        QVERIFY(server.start());
        const QByteArray body = sample(20000);
        server.addContent(QStringLiteral("/chunks.bin"), body);
        server.setFault(QStringLiteral("/chunks.bin"), TestServer::Fault::Slow);
        server.setSlowPace(4000, 30);

        DownloadManager manager;
        QSignalSpy finished(&manager, &DownloadManager::SignalFinished);
        manager.credentials = Credentials;
        manager.DownloadFile(QUrl(server.url(QStringLiteral("/chunks.bin"))), false, app.path());
        QVERIFY(finished.wait(20000));
        const Finished result = takeFinished(finished);
        QVERIFY(result.errors.isEmpty());
        QVERIFY(!result.data.isEmpty());
        QVERIFY2(result.data.size() < body.size(), "last data should hold only the final chunk");
        QCOMPARE(result.data, body.right(result.data.size()));
        QVERIFY(!QFile::exists(app.filePath(QStringLiteral("chunks.bin"))));
    }

    // clang-format off
    void targetProblems_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("folder"); // below the temporary program folder
        QTest::addColumn<QString>("savedAs");
        QTest::addColumn<bool>("sent");
        QTest::newRow("path ending in a slash") << "/quillmark/" << "downloads" << "download" << true;
        QTest::newRow("missing download folder") << "/quillmark/a.zip" << "no/such/folder" << "a.zip" << false;
    }
    // clang-format on

    void targetProblems()
    {
        QFETCH(QString, path);
        QFETCH(QString, folder);
        QFETCH(QString, savedAs);
        QFETCH(bool, sent);
        TempAppDir app;
        QVERIFY(QDir().mkpath(app.filePath(QStringLiteral("downloads"))));
        TestServer server;
        QVERIFY(server.start());
        server.addContent(path, "content");
        server.addContent(QStringLiteral("/ok.txt"), "ok");
        const QString dir = app.filePath(folder);

        DownloadManager manager;
        QSignalSpy finished(&manager, &DownloadManager::SignalFinished);
        manager.credentials = Credentials;
        manager.DownloadFile(QUrl(server.url(path)), true, dir);
        if (sent) {
            QVERIFY(finished.wait(20000));
            const Finished result = takeFinished(finished);
            QCOMPARE(result.file, dir + "/" + savedAs);
            QCOMPARE(readAll(dir + "/" + savedAs), QByteArray("content"));
            return;
        }
        // No request and no signal; the message rides along with the next transfer's errors.
        QCOMPARE(finished.count(), 0);
        manager.credentials = Credentials;
        manager.DownloadFile(QUrl(server.url(QStringLiteral("/ok.txt"))), true, app.filePath("downloads"));
        QVERIFY(finished.wait(20000));
        QCOMPARE(server.requestCount(), 1);
        QCOMPARE(server.lastRequest().path, QStringLiteral("/ok.txt"));
        const QStringList errors = takeFinished(finished).errors;
        QCOMPARE(errors.size(), 1);
        QVERIFY(errors.first().startsWith(QStringLiteral("Problem opening save file ") + dir + "/" + savedAs +
                                          " for download " + server.url(path) + "\n"));
    }

    void linkInTheWay_data()
    {
        QTest::addColumn<bool>("dangling");
        QTest::newRow("link to a user's file") << false;
        QTest::newRow("dangling link") << true;
    }

    // A link where the download lands is replaced; what it points at stays as it was.
    void linkInTheWay()
    {
        QFETCH(bool, dangling);
        TempAppDir app;
        QTemporaryDir outside;
        const QString userFile = outside.filePath("mine.txt");
        if (!dangling)
            QVERIFY(writeUserFile(userFile));
        const QString downloads = app.filePath("downloads");
        QVERIFY(QDir().mkpath(downloads));
        QVERIFY(QFile::link(userFile, downloads + "/a.zip"));

        TestServer server;
        QVERIFY(server.start());
        server.addContent("/a.zip", "fresh");
        DownloadManager manager;
        QSignalSpy finished(&manager, &DownloadManager::SignalFinished);
        manager.credentials = Credentials;
        manager.DownloadFile(QUrl(server.url("/a.zip")), true, downloads);
        QVERIFY(finished.wait(20000));
        QVERIFY(takeFinished(finished).errors.isEmpty());
        QVERIFY(!QFileInfo(downloads + "/a.zip").isSymLink());
        QCOMPARE(readAll(downloads + "/a.zip"), QByteArray("fresh"));
        QCOMPARE(readAll(userFile), dangling ? QByteArray("<none>") : QByteArray("mine"));
    }

    void progressLine_data()
    {
        QTest::addColumn<qint64>("iteration");
        QTest::addColumn<qint64>("value");
        QTest::addColumn<qint64>("maximum");
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<int>("percent"); // -1: left alone

        const QByteArray msg("1.5 MB/s");
        auto unknown = [&](int before, int after) {
            return "\r[" + QByteArray(before, ' ') + "###" + QByteArray(after, ' ') + "]      " + msg + "      ";
        };
        auto known = [&](const QByteArray& bar, const QByteArray& pct) {
            return "\r[" + bar + QByteArray(50 - bar.size(), ' ') + "] " + pct + "% " + msg + "     ";
        };
        QTest::newRow("unknown, first call") << qint64(1) << qint64(500) << qint64(-1) << unknown(0, 4) << -1;
        QTest::newRow("unknown, second call") << qint64(2) << qint64(500) << qint64(0) << unknown(1, 5) << -1;
        QTest::newRow("unknown, call 47") << qint64(47) << qint64(0) << qint64(-1) << unknown(46, 50) << -1;
        QTest::newRow("unknown, call 48 falls back") << qint64(48) << qint64(0) << qint64(-1) << unknown(0, 3) << -1;
        QTest::newRow("unknown, call 49") << qint64(49) << qint64(0) << qint64(-1) << unknown(0, 4) << -1;
        QTest::newRow("0 percent") << qint64(1) << qint64(0) << qint64(1000) << known("", "  0") << 0;
        QTest::newRow("1 percent") << qint64(1) << qint64(19) << qint64(1000) << known(">", "  1") << 1;
        QTest::newRow("37 percent") << qint64(3) << qint64(370) << qint64(1000)
                                    << known(QByteArray(18, '#') + '>', " 37") << 37;
        QTest::newRow("100 percent") << qint64(9) << qint64(1000) << qint64(1000) << known(QByteArray(50, '#'), "100")
                                     << 100;
        QTest::newRow("beyond 4 GiB") << qint64(1) << qint64(5000000000LL) << qint64(10000000000LL)
                                      << known(QByteArray(25, '#'), " 50") << 50;
    }

    void progressLine()
    {
        QFETCH(qint64, iteration);
        QFETCH(qint64, value);
        QFETCH(qint64, maximum);
        QFETCH(QByteArray, line);
        QFETCH(int, percent);
        int got = -1;
        QCOMPARE(TextProgressBar::formatLine(iteration, value, maximum, "1.5 MB/s", &got), line);
        QCOMPARE(got, percent);
    }

    void speedText_data()
    {
        QTest::addColumn<double>("speed");
        QTest::addColumn<QString>("text");
        QTest::newRow("zero") << 0.0 << "0.0 bytes/sec";
        QTest::newRow("single digit keeps width") << 5.0 << "5.0 bytes/sec";
        QTest::newRow("just below kB") << 1023.9 << "1023.9 bytes/sec";
        QTest::newRow("exactly 1024") << 1024.0 << "1.0 kB/s";
        QTest::newRow("kB rounds") << 1536.0 << "1.5 kB/s";
        QTest::newRow("just below MB") << 1048575.0 << "1024.0 kB/s";
        QTest::newRow("exactly 1 MB") << 1048576.0 << "1.0 MB/s";
        QTest::newRow("large") << 1073741824.0 * 2 << "2048.0 MB/s";
        QTest::newRow("no time elapsed yet") << std::numeric_limits<double>::infinity() << "inf MB/s";
    }

    void speedText()
    {
        QFETCH(double, speed);
        QFETCH(QString, text);
        QCOMPARE(DownloadManager::speedText(speed), text);
    }
};

QTEST_MAIN(TestDownloadManager)
#include "TestDownloadManager.moc"
