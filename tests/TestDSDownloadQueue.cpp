#include "engine/CDSVersion.h"
#include "model/CInstallGroupList.h"
#include "model/CProduct.h"
#include "model/CProductList.h"
#include "support/DatasetFiles.h"
#include "support/TempAppDir.h"
#include "support/TestServer.h"

#include <QDir>
#include <QSignalSpy>
#include <QTest>

using namespace DatasetFiles;

namespace {
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

class TestDSDownloadQueue : public QObject
{
    Q_OBJECT

private slots:
    void queue_data()
    {
        QTest::addColumn<QString>("fault"); // path that fails, "" for none
        QTest::addColumn<int>("kind");      // TestServer::Fault, or -1 for "file missing"
        QTest::addColumn<QStringList>("requests");
        QTest::addColumn<QStringList>("states"); // A, B, C
        QTest::addColumn<QString>("outcome");
        QTest::addColumn<QStringList>("files"); // in the cycle folder afterwards
        QTest::addColumn<QString>("result");

        const QString ds1 = "/quillmark/1801/DS1.zip", ds2 = "/quillmark/1801/DS2.zip";
        QTest::newRow("all fetched, shared dataset once")
            << "" << 0 << QStringList{ds1, ds2} << QStringList{"1", "1", "1"} << "ready"
            << QStringList{"DS1.zip", "DS2.zip", "versionList.txt"}
            << " + Download success DS1.zip\r\n + Download success DS2.zip\r\n";
        // A failed transfer is repeated once by the downloader.
        QTest::newRow("shared dataset missing marks both")
            << ds1 << -1 << QStringList{ds1, ds1, ds2} << QStringList{"6", "6", "1"} << "ready"
            << QStringList{"DS2.zip", "versionList.txt"}
            << "Error: Download failed DS1.zip\r\n + Download success DS2.zip\r\n";
        QTest::newRow("server error in the middle")
            << ds2 << int(TestServer::Fault::ServerError) << QStringList{ds1, ds2, ds2} << QStringList{"1", "1", "6"}
            << "ready" << QStringList{"DS1.zip", "versionList.txt"}
            << " + Download success DS1.zip\r\nError: Download failed DS2.zip\r\n";
    }

    void queue()
    {
        QFETCH(QString, fault);
        QFETCH(int, kind);
        QFETCH(QStringList, requests);
        QFETCH(QStringList, states);
        QFETCH(QString, outcome);
        QFETCH(QStringList, files);
        QFETCH(QString, result);

        Queue q;
        if (kind == -1)
            QVERIFY(QFile::remove(q.serverRoot.path() + fault));
        else if (kind > 0)
            q.http.setFault(fault, TestServer::Fault(kind));
        QVERIFY(q.start());
        QCOMPARE(q.run(), outcome);
        QCOMPARE(q.requested(), requests);
        QCOMPARE(q.states(), states);
        QCOMPARE(q.cycleFiles(), files);
        QCOMPARE(q.engine.GetResult(), result);
        for (int i = 0; i < 3; ++i) {
            CProduct* p = q.products.GetByIndex(i);
            QCOMPARE(p->GetErrorText().isEmpty(), states[i] != "6");
            if (states[i] == "6")
                QCOMPARE(p->GetErrorText(), "Download failed! Dataset: " + p->GetDataset());
        }
        if (files.contains("DS1.zip"))
            QCOMPARE(readFile(q.engine.GetCycleDirectory() + "/DS1.zip"), QByteArray("archive one"));
    }

    void everythingFailsOrNothingSelected_data()
    {
        QTest::addColumn<bool>("select");
        QTest::addColumn<int>("archiveRequests");
        QTest::newRow("nothing selected: empty queue ends at once") << false << 0;
        QTest::newRow("every archive fails") << true << 4;
    }

    void everythingFailsOrNothingSelected()
    {
        QFETCH(bool, select);
        QFETCH(int, archiveRequests);
        Queue q;
        for (int i = 0; i < 3; ++i)
            q.products.GetByIndex(i)->SetUpdate(select);
        q.http.setFault("/quillmark/1801/DS1.zip", TestServer::Fault::ServerError);
        q.http.setFault("/quillmark/1801/DS2.zip", TestServer::Fault::ServerError);
        QVERIFY(q.start());
        QSignalSpy error(&q.engine, &CDSVersion::SignalDownloadDataSetError);
        q.http.clearRequests();
        q.engine.DownloadNewDSVersion();
        if (!select)
            QCOMPARE(error.count(), 1); // at once, before any event is processed
        else
            QVERIFY(error.wait(20000));
        QCOMPARE(q.http.requestCount(), archiveRequests);
        QCOMPARE(q.states(), select ? QStringList({"6", "6", "6"}) : QStringList({"4", "4", "4"}));
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

    void stopDuringDownload()
    {
        Queue q;
        q.http.addGenerated("/quillmark/1801/DS1.zip", 4 * 1024 * 1024);
        q.http.setFault("/quillmark/1801/DS1.zip", TestServer::Fault::Slow);
        q.http.setSlowPace(4096, 30);
        QVERIFY(q.start());
        QSignalSpy ready(&q.engine, &CDSVersion::SignalDownloadDataSetReady);
        QSignalSpy error(&q.engine, &CDSVersion::SignalDownloadDataSetError);
        QSignalSpy percent(&q.engine, &CDSVersion::SignalChangePercent);
        q.http.clearRequests();
        q.engine.DownloadNewDSVersion();
        QVERIFY(percent.wait(10000));
        q.engine.StopDownload();
        QTRY_COMPARE_WITH_TIMEOUT(ready.count() + error.count(), 1, 10000);
        QTest::qWait(200);
        QCOMPARE(ready.count(), 1); // C was never asked for, so it is still free of errors
        QCOMPARE(q.requested(), QStringList{"/quillmark/1801/DS1.zip"});
        QCOMPARE(q.states(), (QStringList{"6", "6", "1"}));
        QCOMPARE(q.products.GetByIndex(0)->GetErrorText(), QString("Download failed! Dataset: DS1"));
        QVERIFY(!QFile::exists(q.engine.GetCycleDirectory() + "/DS1.zip"));
        QCOMPARE(q.engine.GetResult(), QString("Error: Download failed DS1.zip\r\n"));
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

QTEST_MAIN(TestDSDownloadQueue)
#include "TestDSDownloadQueue.moc"
