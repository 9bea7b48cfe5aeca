#include "engine/CDSVersion.h"
#include "support/DatasetFiles.h"
#include "support/TempAppDir.h"
#include "support/TestServer.h"

#include <QDir>
#include <QSignalSpy>
#include <QTest>

using namespace DatasetFiles;

// The offered version list is fetched from a real loopback server and compared with the local
// copy in the cycle folder.
class TestDSVersionDiscovery : public QObject
{
    Q_OBJECT

private slots:
    // clang-format off
    void parsesAndCompares_data()
    {
        QTest::addColumn<QByteArray>("server"); // "<404>": the server has no list
        QTest::addColumn<QByteArray>("local");  // "<none>": no local copy, "<dir>": one that cannot be read
        QTest::addColumn<QString>("version");
        QTest::addColumn<QString>("revision");
        QTest::addColumn<QString>("emitted"); // digits sent with SignalChangeNewVersion, empty for none
        QTest::addColumn<bool>("newer");

        QTest::newRow("plain cycle, no local copy")
            << QByteArray("1801\n") << QByteArray("<none>") << "1801" << "1" << "1801" << true;
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
        QTest::newRow("empty file") << QByteArray("") << QByteArray("<none>") << "" << "1" << "" << false;
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
};

QTEST_MAIN(TestDSVersionDiscovery)
#include "TestDSVersionDiscovery.moc"
