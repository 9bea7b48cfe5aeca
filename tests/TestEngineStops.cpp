#include "model/CCategory.h"
#include "model/CProduct.h"
#include "support/DatasetFiles.h"
#include "support/InstallProducts.h"
#include "support/SampleCatalogue.h"
#include "support/TestServer.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>
#include <QTimer>

#include <csignal>
#include <sys/resource.h>

using namespace DatasetFiles;

// Stopping a run at any moment, and the ends of runs: after a stop nothing more happens and no
// file of the user's is lost.
namespace {
int backupFolders(const InstallProducts& t, int i)
{
    int n = 0;
    QDirIterator it(t.root(i), QDir::Dirs | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (it.hasNext())
        n += it.next().endsWith(QString("/QMK_DS_%1_back").arg(i)) ? 1 : 0;
    return n;
}

int filesInBackups(const InstallProducts& t, int i)
{
    int n = 0;
    QDirIterator it(t.root(i), QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        n += it.next().contains("/QMK_") ? 1 : 0;
    return n;
}

// Lets the event loop run for a while: what a stopped run could still send would arrive now.
void settle()
{
    QTest::qWait(300);
}

// Writes past this many bytes fail while the object lives (and SIGXFSZ is ignored), as on a full
// disk. Child processes inherit the limit, so nothing else should be started meanwhile.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        getrlimit(RLIMIT_FSIZE, &m_previous);
        m_handler = std::signal(SIGXFSZ, SIG_IGN);
        rlimit limit = m_previous;
        limit.rlim_cur = bytes;
        m_ok = setrlimit(RLIMIT_FSIZE, &limit) == 0;
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_previous);
        std::signal(SIGXFSZ, m_handler);
    }
    bool ok() const { return m_ok; }

private:
    rlimit m_previous{};
    void (*m_handler)(int) = nullptr;
    bool m_ok = false;
};
} // namespace

class TestEngineStops : public QObject
{
    Q_OBJECT

private slots:
    void stopWalk_data()
    {
        QTest::addColumn<bool>("reset");
        QTest::addColumn<QString>("when");
        for (const bool reset : {true, false}) {
            const QString walk = reset ? "reset, " : "removal, ";
            QTest::newRow(qPrintable(walk + "at once")) << reset << "at once";
            QTest::newRow(qPrintable(walk + "mid-product")) << reset << "mid-product";
            QTest::newRow(qPrintable(walk + "between products")) << reset << "between products";
        }
    }

    void stopWalk()
    {
        QFETCH(bool, reset);
        QFETCH(QString, when);
        // Only a stop inside Prod_0 needs a long walk there.
        const int size = when == "between products" ? 40 : 800;
        InstallProducts t(3, size);
        QVERIFY(t.install());
        const QMap<QString, QByteArray> installed = t.sums();
        const int backupFiles0 = filesInBackups(t, 0);
        const int backupFolders0 = backupFolders(t, 0);
        QVERIFY(backupFiles0 >= size);

        CDSVersion& e = t.engine;
        e.ResetResult();
        auto stop = [&] { reset ? e.StopReset() : e.StopRemoveBackup(); };
        QSignalSpy ready(&e, reset ? &CDSVersion::SignalResetReady : &CDSVersion::SignalRemoveBackupReady);
        QSignalSpy turns(&e, reset ? &CDSVersion::SignalResetProduct : &CDSVersion::SignalRemoveBackupProduct);
        bool armed = when == "between products";
        connect(&e, reset ? &CDSVersion::SignalResetProduct : &CDSVersion::SignalRemoveBackupProduct, &e,
                [&](const QString& name) {
                    if (armed && name == "Prod_1") {
                        armed = false;
                        stop();
                    }
                });

        reset ? e.Reset(&t.products) : e.RemoveBackup(&t.products);
        if (when == "at once") {
            stop();
        } else if (when == "mid-product") {
            // Stop as soon as the worker has visibly started on the first product.
            QVERIFY(QTest::qWaitFor(
                [&] { return reset ? filesInBackups(t, 0) < backupFiles0 : backupFolders(t, 0) < backupFolders0; },
                20000));
            stop();
        } else {
            QTRY_VERIFY_WITH_TIMEOUT(turns.count() >= 2, 20000);
        }

        const QString result = e.GetResult();
        const QList<int> states = t.states();
        const int turnsAtStop = turns.count();
        settle();
        QCOMPARE(ready.count(), 0);
        QCOMPARE(turns.count(), turnsAtStop);
        QCOMPARE(e.GetResult(), result);
        QCOMPARE(t.states(), states);
        QVERIFY2(!result.contains("Error"), qPrintable(result));

        // The products after the first unfinished one are untouched; an unfinished product has no
        // success line.
        const QMap<QString, QByteArray> now = t.sums();
        bool reachedUnfinished = false;
        for (int i = 0; i < 3; ++i) {
            const QString prefix = QString("Prod_%1/").arg(i);
            const bool success = result.contains(QString("success Prod_%1").arg(i));
            const bool finished = reset ? filesInBackups(t, i) == 0 && only(now, prefix) == only(t.original, prefix)
                                        : backupFolders(t, i) == 0;
            if (reachedUnfinished)
                QVERIFY2(only(now, prefix) == only(installed, prefix), qPrintable(prefix + " was touched"));
            if (success)
                QVERIFY2(finished && !reachedUnfinished, qPrintable(prefix + " reported but not done"));
            else
                reachedUnfinished = true;
        }
        QVERIFY(reachedUnfinished);
        if (when == "between products") {
            QVERIFY(result.contains("success Prod_0"));
            QVERIFY(!result.contains("Prod_1"));
        }
        if (reset)
            verifyNothingLost(t.original, now);
        else
            for (auto it = installed.cbegin(); it != installed.cend(); ++it)
                if (!it.key().contains("/QMK_"))
                    QCOMPARE(now.value(it.key()), it.value());
        for (const char* worker : {"log/log_freset.txt", "log/log_fremovebackup.txt"})
            QVERIFY(!t.app.readFile(worker).contains("terminated"));

        // The engine takes the next run as if nothing had happened, and that run comes to its end.
        e.ResetResult();
        reset ? e.Reset(&t.products) : e.RemoveBackup(&t.products);
        QVERIFY(ready.wait(60000));
        if (reset)
            verifyNothingLost(t.original, t.sums());
    }

    void stopInstall_data()
    {
        QTest::addColumn<QString>("when");
        QTest::addColumn<bool>("single");
        QTest::newRow("while unzip runs") << "unzip" << false;
        QTest::newRow("announcing the second product") << "announce" << false;
        QTest::newRow("right after the copy starts") << "copy start" << false;
        QTest::newRow("mid-copy") << "mid-copy" << false;
        QTest::newRow("one product, mid-copy") << "mid-copy" << true;
    }

    void stopInstall()
    {
        QFETCH(QString, when);
        QFETCH(bool, single);
        InstallProducts t(3, when == "announce" ? 40 : 800);
        CDSVersion& e = t.engine;
        if (single)
            e.SetSingleProduct(t.products.GetByIndex(0));
        QSignalSpy ready(&e, &CDSVersion::SignalInstallReady);
        QSignalSpy turns(&e, &CDSVersion::SignalUnzippProduct);
        QSignalSpy written(&e, &CDSVersion::SignalFileWritten);
        QSignalSpy copies(&e, &CDSVersion::SignalBeginCopyThead);
        bool stopped = false;
        auto once = [&] {
            if (!stopped) {
                stopped = true;
                // The order of the update dialog's close.
                e.StopInstall();
                e.StopFileCopyThred();
            }
        };
        if (when == "unzip")
            connect(&e, &CDSVersion::SignalUnzippProduct, &e, [&] { QTimer::singleShot(0, &e, once); });
        if (when == "announce")
            connect(&e, &CDSVersion::SignalUnzippProduct, &e, [&](const QString& name) {
                if (name == "Prod_1")
                    once();
            });
        if (when == "copy start")
            connect(&e, &CDSVersion::SignalBeginCopyThead, &e, once);
        if (when == "mid-copy")
            connect(&e, &CDSVersion::SignalFileWritten, &e, [&] {
                if (written.count() >= 20)
                    once();
            });

        QVERIFY(e.InstallProducts());
        QTRY_VERIFY_WITH_TIMEOUT(stopped, 60000);
        const QString result = e.GetResult();
        const QList<int> states = t.states();
        const int writtenAtStop = written.count();
        settle();
        QCOMPARE(ready.count(), 0);
        QCOMPARE(e.GetResult(), result);
        QCOMPARE(t.states(), states);
        QCOMPARE(written.count(), writtenAtStop);
        // The product in progress is marked as stopped, not as failed or done; only the products
        // before it have their success line.
        const int inProgress = when == "announce" ? 1 : 0;
        QVERIFY2(!result.contains("Install failed"), qPrintable(result));
        // A product cut off in its copy is put back as it was, and the user is told.
        const bool copying = when == "copy start" || when == "mid-copy";
        QString expected = inProgress == 1 ? QString(" + Install success Prod_0\r\n") : QString();
        if (copying)
            expected += " + The interrupted install of Prod_0 was undone; its files are as they were before.\r\n";
        QCOMPARE(result, expected);
        QCOMPARE(states.at(inProgress), int(QMK_STATE_INSTALL_WARNING));
        QVERIFY(!t.app.readFile("log/log_dsupdate.txt").contains("terminated"));
        QVERIFY(!QFileInfo::exists(t.app.path() + "/downloads/temp"));

        const QMap<QString, QByteArray> now = t.sums();
        verifyNothingLost(t.original, now);
        if (copying) {
            QCOMPARE(only(now, "Prod_0/"), only(t.original, "Prod_0/"));
            QVERIFY(!QFileInfo::exists(t.root(0) + "/NavData/QMK_DS_0_journal.txt"));
        }
        for (int i = inProgress + 1; i < 3; ++i) {
            const QString prefix = QString("Prod_%1/").arg(i);
            QVERIFY2(only(now, prefix) == only(t.original, prefix), qPrintable(prefix + " was touched"));
        }
        if (when == "unzip" || when == "announce")
            QCOMPARE(copies.count(), when == "announce" ? 1 : 0);
    }

    // The next archives are unpacked while a product is copied; a crash of one of those unzips
    // is told at its product's turn, after the lines before it, and ends the run there.
    void unzipCrashAhead()
    {
        InstallProducts t(3, 40);
        const QByteArray unzip = QStandardPaths::findExecutable("unzip").toUtf8();
        ToolPath tools;
        QVERIFY(tools.addScript("unzip", "#!/bin/sh\ncase \"$4\" in *DS_1.zip) kill -SEGV $$;; esac\nexec " + unzip +
                                             " \"$@\"\n"));
        QSignalSpy ready(&t.engine, &CDSVersion::SignalInstallReady);
        QVERIFY(t.engine.InstallProducts());
        QTRY_VERIFY_WITH_TIMEOUT(t.engine.GetResult().contains("Prod_1"), 30000);
        settle();
        QCOMPARE(t.engine.GetResult(), QString(" + Install success Prod_0\r\nError: Install failed Prod_1\r\n"));
        QCOMPARE(ready.count(), 0);
        for (const char* prefix : {"Prod_1/", "Prod_2/"})
            QCOMPARE(only(t.sums(), prefix), only(t.original, prefix));
        QCOMPARE(QDir(t.app.path() + "/downloads").entryList({"temp*"}, QDir::Dirs), QStringList());
    }

    // A stop while the engine is idle, or during the search: nothing more is sent, asked or written.
    void stopDownload_data()
    {
        QTest::addColumn<QString>("when");
        QTest::newRow("after a search") << "search";
        QTest::newRow("after a download run") << "download";
        QTest::newRow("during the search") << "during search";
    }

    void stopDownload()
    {
        QFETCH(QString, when);
        TempAppDir app;
        TestServer server;
        QVERIFY(server.start());
        server.addContent("/quillmark/versionList.txt", QByteArray(4000, '\n') + "1802\n");
        server.addContent("/quillmark/1802/DS1.zip", "archive bytes");
        if (when == "during search") {
            server.setFault("/quillmark/versionList.txt", TestServer::Fault::Slow);
            server.setSlowPace(64, 40);
        }
        CProductList products;
        CProduct* p = products.Add("P1");
        p->SetDataset("DS1");
        p->SetUpdate(true);
        CDSVersion e;
        e.SetServer(server.hostAndPort());
        e.Init("1.0");
        e.SetProductList(&products);

        QSignalSpy checked(&e, &CDSVersion::SignalCheckHighVersionFinished);
        QSignalSpy percent(&e, &CDSVersion::SignalChangePercent);
        QSignalSpy ready(&e, &CDSVersion::SignalDownloadDataSetReady);
        e.SearchForNewVersion(when == "during search");
        QVERIFY(when == "during search" ? percent.wait(20000) : checked.wait(20000));
        if (when == "download") {
            e.DownloadNewDSVersion();
            QVERIFY(ready.wait(20000));
        }
        const auto files = [&] {
            return QDir(app.path() + "/downloads").entryList(QDir::Files) +
                   QDir(e.GetCycleDirectory()).entryList(QDir::Files);
        };
        const QStringList filesBefore = files();
        const int requests = server.requestCount();
        QSignalSpy failed(&e, &CDSVersion::SignalDownloadError);
        QSignalSpy setError(&e, &CDSVersion::SignalDownloadDataSetError);
        const int checks = checked.count();
        const int state = int(p->GetInstallState());

        e.StopDownload();
        settle();
        // Whoever stopped the search no longer waits for its answer.
        QCOMPARE(checked.count(), checks);
        // An idle engine has nothing to abort; a search ends as aborted, once.
        QCOMPARE(failed.count(), when == "during search" ? 1 : 0);
        QCOMPARE(setError.count(), 0);
        QCOMPARE(server.requestCount(), requests);
        // A list half read is not left behind.
        QCOMPARE(files(), when == "during search" ? QStringList() : filesBefore);
        QCOMPARE(int(p->GetInstallState()), state);
    }

    void fullDisk()
    {
        InstallProducts t(1, 40);
        const QString archive = t.engine.GetCycleDirectory() + "/DS_0.zip";
        TestServer server;
        QVERIFY(server.start());
        server.addContent("/quillmark/1802/DS_0.zip", readFile(archive) + QByteArray(512 * 1024, 'x'));
        QVERIFY(QFile::remove(archive));
        t.engine.SetServer(server.hostAndPort());
        t.engine.InitNewDSVersion("1802");

        QSignalSpy error(&t.engine, &CDSVersion::SignalDownloadDataSetError);
        {
            FileSizeLimit limit(128 * 1024);
            QVERIFY(limit.ok());
            t.engine.DownloadNewDSVersion();
            QVERIFY(error.wait(20000));
        }
        QCOMPARE(int(t.products.GetByIndex(0)->GetInstallState()), int(QMK_STATE_INSTALL_ERROR));
        QVERIFY2(t.engine.GetResult().contains("Error: Download failed DS_0.zip"), qPrintable(t.engine.GetResult()));
        QVERIFY(!QFileInfo::exists(archive));
        QVERIFY(t.app.readFile("log/Download_log.txt").contains("cannot write " + archive.toUtf8()));

        // Nothing half-written is installed.
        QSignalSpy ready(&t.engine, &CDSVersion::SignalInstallReady);
        t.engine.InstallProducts();
        QVERIFY(!ready.isEmpty() || ready.wait(20000));
        QCOMPARE(t.sums(), t.original);
    }

    void removeFileList_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("target"); // relative to the work folder
        QTest::addColumn<bool>("removed");
        QTest::newRow("inside the simulator folder") << "$SimPath/Custom Data/old.dat"
                                                     << "sim/Custom Data/old.dat" << true;
        QTest::newRow("out through a link") << "$ProductPath/NavData/out/outside.dat"
                                            << "outside.dat" << false;
        QTest::newRow("the simulator folder itself") << "$SimPath"
                                                     << "sim" << false;
        QTest::newRow("above the product") << "$ProductPath/../outside.dat"
                                           << "outside.dat" << false;
    }

    void removeFileList()
    {
        QFETCH(QString, entry);
        QFETCH(QString, target);
        QFETCH(bool, removed);
        InstallProducts t(1, 10);
        const QString sim = t.work.path() + "/sim";
        QVERIFY(SampleCatalogue::MakeSimFolder(sim));
        CCategory category("X-Plane 11");
        category.SetPath(sim);
        CProduct* p = t.product(0);
        p->SetCategory(&category);
        QVERIFY(writeFile(sim + "/Custom Data/old.dat", "old"));
        QVERIFY(writeFile(t.work.path() + "/outside.dat", "not the product's"));
        QVERIFY(writeFile(t.nav(0) + "/obsolete.dat", "to be removed"));
        QVERIFY(QFile::link(t.work.path(), t.nav(0) + "/out"));
        // A refused entry does not keep the next one from going.
        p->AddRemoveFilePath(entry);
        p->AddRemoveFilePath("$ProductPath/NavData/obsolete.dat");

        QVERIFY(t.install());
        QCOMPARE(QFileInfo::exists(t.work.path() + "/" + target), !removed);
        QVERIFY(!QFileInfo::exists(t.nav(0) + "/obsolete.dat"));
        const QString result = t.engine.GetResult();
        QVERIFY(result.startsWith(" + Install success Prod_0\r\n"));
        QCOMPARE(int(p->GetInstallState()), int(QMK_STATE_INSTALL_OK));
        if (removed)
            QCOMPARE(result, QString(" + Install success Prod_0\r\n"));
        else
            QVERIFY2(result.contains("Warning: Prod_0: not removed, outside the product: "), qPrintable(result));
    }

    void resetListWithGroup()
    {
        // Prod_0 and its twin in one install group (one folder, one dataset), Prod_1 on its own.
        InstallProducts t(2, 30);
        addNavDataProduct(t.products, "Prod_0 Twin", "DS_0", t.root(0));
        // Grouped as the data model does it: by dataset and resolved install paths.
        CInstallGroupList groups;
        for (int i = 0; i < 3; ++i) {
            QVERIFY(t.product(i)->InitNewInstallPaths(false));
            QCOMPARE(groups.AssignProduct(t.product(i)), i == 1 ? 1 : 0);
        }
        QVERIFY(t.install());
        QVERIFY(t.sums() != t.original);
        QVERIFY(t.reset());
        QCOMPARE(t.engine.GetResult(), QString(" + Reset success Prod_0 ( V. 1801 R. 1 )\r\n"
                                               " + Reset success Prod_0 Twin ( V. 1801 R. 1 )\r\n"
                                               " + Reset success Prod_1 ( V. 1801 R. 1 )\r\n"));
        QCOMPARE(t.states(), (QList<int>{5, 5, 5}));
        QCOMPARE(t.sums(), t.original);
        QCOMPARE(backupFolders(t, 0) + backupFolders(t, 1), 0);
    }
};

QTEST_MAIN(TestEngineStops)
#include "TestEngineStops.moc"
