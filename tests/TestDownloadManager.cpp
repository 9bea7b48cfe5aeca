#include "engine/CDSVersion.h"
#include "engine/DownloadManager.h"
#include "engine/TextProgressBar.h"
#include "model/CInstallGroupList.h"
#include "model/CProduct.h"
#include "model/CProductList.h"
#include "support/DatasetFiles.h"
#include "support/TempAppDir.h"
#include "support/TestServer.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <limits>

Q_DECLARE_METATYPE(CFailureReason::EKind)
Q_DECLARE_METATYPE(TestServer::Fault)

using namespace DatasetFiles;

namespace {
const QByteArray Credentials("webclient:Q7x2Lm9p");

QByteArray sample(int size)
{
    QByteArray bytes(size, '\0');
    for (int i = 0; i < size; ++i)
        bytes[i] = char('a' + (i * 7) % 26);
    return bytes;
}

struct Finished
{
    QString urlPath;
    QString file;
    QStringList errors;
};

Finished takeFinished(QSignalSpy& spy)
{
    const QList<QVariant> args = spy.takeFirst();
    return {args.at(0).toString(), args.at(1).toString(), args.at(2).toStringList()};
}

// Products A and B share dataset DS1, C has DS2; all three selected.
struct Queue
{
    TempAppDir app;
    QTemporaryDir serverRoot;
    TestServer http{serverRoot.path()};
    CProductList products;
    CDSVersion engine;

    explicit Queue(const QByteArray& versionList = "1801\n")
    {
        writeFile(serverRoot.path() + "/quillmark/versionList.txt", versionList);
        const QString cycle = QString::fromLatin1(versionList.trimmed());
        writeFile(serverRoot.path() + "/quillmark/" + cycle + "/DS1.zip", "archive one");
        writeFile(serverRoot.path() + "/quillmark/" + cycle + "/DS2.zip", "archive two");
        for (const char* entry : {"A:DS1", "B:DS1", "C:DS2"}) {
            const QStringList parts = QString::fromLatin1(entry).split(':');
            CProduct* p = products.Add(parts[0]);
            p->SetDataset(parts[1]);
            p->SetUpdate(true);
        }
        engine.SetProductList(&products);
    }
    bool start()
    {
        if (!http.start())
            return false;
        engine.SetServer(http.hostAndPort());
        engine.Init("1.0");
        return search();
    }
    bool search()
    {
        QSignalSpy finished(&engine, &CDSVersion::SignalCheckHighVersionFinished);
        engine.SearchForNewVersion(false);
        return finished.wait(10000);
    }
    // Runs the queue; returns "ready" or "error".
    QString run()
    {
        QSignalSpy ready(&engine, &CDSVersion::SignalDownloadDataSetReady);
        QSignalSpy error(&engine, &CDSVersion::SignalDownloadDataSetError);
        http.clearRequests();
        engine.DownloadNewDSVersion();
        if (ready.isEmpty() && error.isEmpty())
            (void)QTest::qWaitFor([&] { return !ready.isEmpty() || !error.isEmpty(); }, 20000);
        return ready.count() + error.count() != 1 ? "none or both" : ready.count() ? "ready" : "error";
    }
    QStringList requested() const
    {
        QStringList paths;
        for (const TestServer::Request& r : http.requests())
            paths << r.path;
        return paths;
    }
    QStringList states() const
    {
        QStringList out;
        for (int i = 0; i < products.GetSize(); ++i)
            out << QString::number(products.GetByIndex(i)->GetInstallState());
        return out;
    }
    QStringList cycleFiles() const
    {
        return QDir(engine.GetCycleDirectory()).entryList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    }
};
} // namespace

// The downloader against a real loopback server, and the dataset engine over it: the offered version
// list compared with the local copy in the cycle folder, and the archives it names fetched there.
class TestDownloadManager : public QObject
{
    Q_OBJECT

private slots:
    // A failed transfer is repeated once. How the refusals of a server (401, 404, no connection)
    // reach the user is the update dialog's and the journey's to show.
    void transfer_data()
    {
        QTest::addColumn<bool>("tls");
        QTest::addColumn<TestServer::Fault>("fault");
        QTest::addColumn<bool>("faultOnce"); // next request only, else every request
        QTest::addColumn<int>("requests");   // HTTP requests the downloader sent
        // Connections the server ends early. After such a close Qt's HTTP layer sometimes sends
        // the request once more on its own (and drops the answer), so the server may see that many more.
        QTest::addColumn<int>("earlyCloses");
        QTest::addColumn<int>("tlsConnections");
        QTest::addColumn<bool>("failed");         // "Failed download file" reported
        QTest::addColumn<QByteArray>("fileLeft"); // content of the target file afterwards
        QTest::addColumn<QStringList>("logLines");
        QTest::addColumn<CFailureReason::EKind>("reason"); // what the user is told after a failure

        using K = CFailureReason::EKind;
        using F = TestServer::Fault;
        const QByteArray body = sample(300000);
        QTest::newRow("plain success") << false << F::None << false << 1 << 0 << 0 << false << body
                                       << QStringList{"Start Download", "downloadFinished"} << K::None;
        QTest::newRow("server error, repeat succeeds")
            << false << F::ServerError << true << 2 << 0 << 0 << false << body
            << QStringList{"!!!Error: Download-Error-ID=401", "Run Download2"} << K::None;
        QTest::newRow("server error twice")
            << false << F::ServerError << false << 2 << 0 << 0 << true << QByteArray("Internal Server Error")
            << QStringList{"Run Download2", "Failed download file"} << K::ServerError;
        QTest::newRow("closed mid-body, repeat succeeds") << false << F::CloseMidBody << true << 2 << 1 << 0 << false
                                                          << body << QStringList{"Run Download2"} << K::None;
        QTest::newRow("closed mid-body twice leaves the half")
            << false << F::CloseMidBody << false << 2 << 2 << 0 << true << body.left(body.size() / 2)
            << QStringList{"Failed download file"} << K::ConnectionLost;
        QTest::newRow("tls refused, plain repeat succeeds")
            << true << F::None << false << 1 << 0 << 1 << false << body
            << QStringList{"!!!Error: SSL-Error", "Run Download2"} << K::None;
    }

    void transfer()
    {
        QFETCH(bool, tls);
        QFETCH(TestServer::Fault, fault);
        QFETCH(bool, faultOnce);
        QFETCH(int, requests);
        QFETCH(int, earlyCloses);
        QFETCH(int, tlsConnections);
        QFETCH(bool, failed);
        QFETCH(QByteArray, fileLeft);
        QFETCH(QStringList, logLines);
        QFETCH(CFailureReason::EKind, reason);

        TempAppDir app;
        const QString downloads = app.filePath(QStringLiteral("downloads"));
        QVERIFY(QDir().mkpath(downloads));
        TestServer server;
        QVERIFY(server.start());
        const QString path = QStringLiteral("/quillmark/a.zip");
        server.addContent(path, sample(300000));
        if (faultOnce)
            server.failNext(1, fault);
        else
            server.setFault(path, fault);
        if (tls && !server.tlsAvailable())
            QSKIP("no openssl tool to make a test certificate");

        DownloadManager manager;
        QSignalSpy spy(&manager, &DownloadManager::SignalFinished);
        manager.credentials = Credentials;
        manager.DownloadFile(QUrl(server.url(path, tls)), true, downloads);
        QVERIFY(spy.wait(20000));
        QCoreApplication::processEvents();
        QCOMPARE(spy.count(), 1);

        const Finished result = takeFinished(spy);
        const QString target = downloads + "/a.zip";
        QCOMPARE(result.urlPath, path);
        QCOMPARE(result.file, target);
        QVERIFY2(server.requestCount() >= requests && server.requestCount() <= requests + earlyCloses,
                 qPrintable(QString::number(server.requestCount())));
        QCOMPARE(server.tlsConnectionCount(), tlsConnections);
        if (failed)
            QCOMPARE(result.errors, QStringList{QStringLiteral("Failed download file ") + target + "\n"});
        else
            QVERIFY2(result.errors.isEmpty(), qPrintable(result.errors.join('|')));
        QCOMPARE(readFile(target), fileLeft);
        QVERIFY(manager.credentials.isEmpty());
        QCOMPARE(manager.LastFailure().Kind(), reason);
        QVERIFY(!manager.LastFailure().CouldNotConnect());

        const QByteArray log = app.readFile(QStringLiteral("log/Download_log.txt"));
        for (const QString& line : logLines)
            QVERIFY2(log.contains(line.toLatin1()), qPrintable(line));
        QCOMPARE(log.contains("Run Download2"), requests + tlsConnections == 2);
        QVERIFY(log.endsWith("downloadListFinished"));
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
            QVERIFY(writeFile(userFile, "mine"));
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
        QCOMPARE(readFile(downloads + "/a.zip"), QByteArray("fresh"));
        QCOMPARE(QFileInfo::exists(userFile), !dangling);
        if (!dangling)
            QCOMPARE(readFile(userFile), QByteArray("mine"));
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

    // clang-format off
    void parsesAndCompares_data()
    {
        QTest::addColumn<QByteArray>("server"); // "<404>": the server has no list
        QTest::addColumn<QByteArray>("local");  // "<none>": no local copy, "<dir>": one that cannot be read
        QTest::addColumn<QString>("version");
        QTest::addColumn<QString>("revision");
        QTest::addColumn<QString>("emitted"); // digits sent with SignalChangeNewVersion, empty for none
        QTest::addColumn<bool>("newer");

        QTest::newRow("words around the number")
            << QByteArray("AIRAC 2101 final") << QByteArray("<none>") << "AIRAC 2101 final" << "1" << "2101" << true;
        QTest::newRow("trailing empty lines")
            << QByteArray("Revision: 2\n1801\n\n  \n\n") << QByteArray("<none>") << "1801" << "2" << "1801" << true;
        QTest::newRow("CR LF lines")
            << QByteArray("Revision : 3\r\n1801\r\n") << QByteArray("Revision: 3\r\n1801\r\n") << "1801" << "3"
            << "1801" << false;
        QTest::newRow("no revision equals local revision 1")
            << QByteArray("1801") << QByteArray("Revision: 1\n1801") << "1801" << "1" << "1801" << false;
        QTest::newRow("same digits, other words")
            << QByteArray("AIRAC 1801") << QByteArray("Cycle 1801\n") << "AIRAC 1801" << "1" << "1801" << false;
        QTest::newRow("lower cycle counts as new")
            << QByteArray("1712") << QByteArray("1801") << "1712" << "1" << "1712" << true;
        QTest::newRow("revision differs")
            << QByteArray("Revision: 3\n1801") << QByteArray("Revision: 2\n1801") << "1801" << "3" << "1801" << true;
        QTest::newRow("repeated revision, first wins")
            << QByteArray("Revision: 2\nRevision: 5\n1801") << QByteArray("Revision: 2\nRevision: 7\n1801") << "1801"
            << "2" << "1801" << false;
        QTest::newRow("text after second colon dropped")
            << QByteArray("Revision: 4:old\n1801") << QByteArray("<none>") << "1801" << "4" << "1801" << true;
        QTest::newRow("only blank lines") << QByteArray("\n \n\t\n") << QByteArray("1801") << "" << "1" << "" << true;
        QTest::newRow("binary, cut at NUL")
            << QByteArray("\x01\x02 1901\n\xff\xfe 1802\0\n2001\n", 20) << QByteArray("<none>")
            << QString::fromLatin1("\xff\xfe 1802") << "1" << "1802" << true;
        QTest::newRow("no digits")
            << QByteArray("NEXT CYCLE\n") << QByteArray("1801") << "NEXT CYCLE" << "1" << "" << true;
        QTest::newRow("local copy unreadable")
            << QByteArray("1801") << QByteArray("<dir>") << "1801" << "1" << "1801" << true;
        QTest::newRow("server has no list") << QByteArray("<404>") << QByteArray("1801") << "" << "" << "" << true;
    }
    // clang-format on

    void parsesAndCompares()
    {
        QFETCH(QByteArray, server);
        QFETCH(QByteArray, local);
        QFETCH(QString, version);
        QFETCH(QString, revision);
        QFETCH(QString, emitted);
        QFETCH(bool, newer);

        TempAppDir app;
        QTemporaryDir root;
        if (server != "<404>")
            QVERIFY(writeFile(root.path() + "/quillmark/versionList.txt", server));
        TestServer http(root.path());
        QVERIFY(http.start());

        CDSVersion engine;
        engine.SetServer(http.hostAndPort());
        engine.Init("1.0");
        const QString localCopy = engine.GetCycleDirectory() + "/versionList.txt";
        if (local == "<dir>")
            QVERIFY(QDir().mkpath(localCopy));
        else if (local != "<none>")
            QVERIFY(writeFile(localCopy, local));

        QSignalSpy changed(&engine, &CDSVersion::SignalChangeNewVersion);
        QSignalSpy finished(&engine, &CDSVersion::SignalCheckHighVersionFinished);
        QSignalSpy failed(&engine, &CDSVersion::SignalDownloadError);
        engine.SearchForNewVersion(true);
        QVERIFY(finished.wait(10000));

        QCOMPARE(engine.GetNewVersion(), version);
        if (server != "<404>")
            QCOMPARE(engine.GetNewRevision(), revision);
        QCOMPARE(failed.count(), server == "<404>" ? 1 : 0);
        QCOMPARE(changed.count(), emitted.isEmpty() ? 0 : 1);
        if (!emitted.isEmpty())
            QCOMPARE(changed.at(0).at(0).toString(), emitted);
        QCOMPARE(engine.CheckNewVersionRevision(), newer);

        // One authorised POST per attempt, for the list only.
        const QList<TestServer::Request> requests = http.requests();
        QVERIFY(!requests.isEmpty());
        for (const TestServer::Request& r : requests) {
            QCOMPARE(r.method, QByteArray("POST"));
            QCOMPARE(r.path, QString("/quillmark/versionList.txt"));
            QCOMPARE(r.headers.value("authorization"), "Basic " + QByteArray("webclient:Q7x2Lm9p").toBase64());
        }
        // The fetched list waits in the download folder; the local copy is not touched by a search.
        if (local != "<none>" && local != "<dir>")
            QCOMPARE(readFile(localCopy), local);
    }

    // Without a download folder the downloader would neither ask nor answer; the search must end.
    void unwritableDownloadFolderEndsSearch()
    {
        TempAppDir app;
        TestServer http;
        QVERIFY(http.start());
        CDSVersion engine;
        engine.SetServer(http.hostAndPort());
        engine.Init("1.0");
        QVERIFY(QDir().mkpath(engine.GetDownloadDirectory() + "/versionList.txt")); // a folder in the way
        QSignalSpy finished(&engine, &CDSVersion::SignalCheckHighVersionFinished);
        QSignalSpy failed(&engine, &CDSVersion::SignalDownloadError);
        engine.SearchForNewVersion(false);
        QVERIFY(finished.wait(5000));
        QCOMPARE(failed.count(), 1);
        QCOMPARE(http.requestCount(), 0);
        QVERIFY(app.readFile("log/log_dsupdate.txt").contains("!!ERROR versionList.txt not requested"));
    }

    void singleProduct()
    {
        Queue q;
        CProduct* single = q.products.GetByIndex(2);
        CInstallGroupList groups;
        for (int i = 0; i < 3; ++i)
            groups.AssignProduct(q.products.GetByIndex(i));
        q.engine.SetSingleProduct(single);
        QVERIFY(q.start());
        QSignalSpy states(q.products.GetByIndex(0), &CProduct::SignalChangeInstallState);
        QCOMPARE(q.run(), QString("ready"));
        QCOMPARE(q.requested(), QStringList{"/quillmark/1801/DS2.zip"});
        QCOMPARE(q.states(), (QStringList{"4", "4", "1"}));
        QCOMPARE(states.count(), 1);
    }

    // A folder where the archive should go: the downloader would stay silent, the queue must not.
    void unwritableTargetCountsAsFailure()
    {
        Queue q;
        QVERIFY(q.start());
        QCOMPARE(q.run(), QString("ready")); // first run fills the cycle folder for 1801
        QVERIFY(QFile::remove(q.engine.GetCycleDirectory() + "/DS1.zip"));
        QVERIFY(QDir().mkpath(q.engine.GetCycleDirectory() + "/DS1.zip"));
        q.engine.ResetResult();
        QCOMPARE(q.run(), QString("ready"));
        QCOMPARE(q.requested(), QStringList{"/quillmark/1801/DS2.zip"});
        QCOMPARE(q.states(), (QStringList{"6", "6", "1"}));
        QCOMPARE(q.engine.GetResult(), QString("Error: Download failed DS1.zip\r\n + Download success DS2.zip\r\n"));
        QVERIFY(q.app.readFile("log/log_dsupdate.txt").contains("is in the way"));
    }

    void cycleFolderKeptForSameCycleOnly()
    {
        Queue q;
        QVERIFY(q.start());
        QCOMPARE(q.run(), QString("ready"));
        const QString cycle = q.engine.GetCycleDirectory();
        QVERIFY(writeFile(cycle + "/OLD.zip", "kept while the cycle stays"));

        QVERIFY(q.search());
        QCOMPARE(q.run(), QString("ready"));
        QCOMPARE(q.cycleFiles(), (QStringList{"DS1.zip", "DS2.zip", "OLD.zip", "versionList.txt"}));

        // The server moves on to 1802: the cycle folder starts empty and takes the new list.
        writeFile(q.serverRoot.path() + "/quillmark/versionList.txt", "Revision: 2\n1802\n");
        writeFile(q.serverRoot.path() + "/quillmark/1802/DS1.zip", "next one");
        writeFile(q.serverRoot.path() + "/quillmark/1802/DS2.zip", "next two");
        QVERIFY(q.search());
        QCOMPARE(q.run(), QString("ready"));
        QCOMPARE(q.cycleFiles(), (QStringList{"DS1.zip", "DS2.zip", "versionList.txt"}));
        QCOMPARE(readFile(cycle + "/versionList.txt"), QByteArray("Revision: 2\n1802\n"));
        QCOMPARE(readFile(cycle + "/DS1.zip"), QByteArray("next one"));
        QCOMPARE(q.requested(), (QStringList{"/quillmark/1802/DS1.zip", "/quillmark/1802/DS2.zip"}));
    }
};

QTEST_MAIN(TestDownloadManager)
#include "TestDownloadManager.moc"
