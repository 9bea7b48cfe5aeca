#include "engine/CDSVersion.h"
#include "model/CCategory.h"
#include "model/CInstallGroup.h"
#include "model/CInstallGroupList.h"
#include "model/CProduct.h"
#include "model/CProductList.h"
#include "support/DatasetFiles.h"
#include "support/SampleCatalogue.h"
#include "support/TempAppDir.h"
#include "support/TestServer.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QRandomGenerator>
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
const QByteArray kOldCycle = "AIRAC cycle    : 1801\r\nRevision       : 1\r\n";
const QByteArray kNewCycle = "AIRAC cycle    : 1802\r\nRevision       : 1\r\n";

// A tree of `count` files whose names depend on the count only; the seed decides their bytes.
void writeTree(const QString& root, int count, quint32 seed)
{
    static const char* const folders[] = {"", "Airports", "Airports/Deep", "Navaids", "Proc edures"};
    QRandomGenerator random(seed);
    for (int i = 0; i < count; ++i) {
        QByteArray content(16 + int(random.bounded(48)), Qt::Uninitialized);
        for (char& c : content)
            c = char(random.bounded(256));
        const QString folder = QLatin1String(folders[i % 5]);
        writeFile(root + (folder.isEmpty() ? QString() : "/" + folder) + QString("/file_%1.dat").arg(i), content);
    }
}

// Products Prod_0 .. Prod_n-1 with dataset DS_i and a NavData tree of cycle 1801 spread over
// several folders; Prod_0 is the largest, so that a stop can land inside it. The archives of
// cycle 1802 replace most files.
struct Products
{
    TempAppDir app;
    QTemporaryDir work;
    CProductList products;
    CInstallGroupList groups;
    CDSVersion engine;
    QMap<QString, QByteArray> original;

    explicit Products(int count, int firstSize = 600)
    {
        engine.Init("1.0");
        writeFile(engine.GetCycleDirectory() + "/versionList.txt", "Revision: 1\n1802\n");
        for (int i = 0; i < count; ++i) {
            const QString name = QString("Prod_%1").arg(i);
            const int files = i == 0 ? firstSize : 40;
            const QString root = work.path() + "/" + name;
            writeTree(root + "/NavData", files, 100 + i);
            writeFile(root + "/NavData/cycle_info.txt", kOldCycle);
            // The same names with other bytes, so every file gets a backup.
            const QString tree = work.path() + "/new/" + name;
            writeTree(tree + "/NavData", files, 200 + i);
            writeFile(tree + "/NavData/cycle_info.txt", kNewCycle);
            zipFolder(tree, engine.GetCycleDirectory() + QString("/DS_%1.zip").arg(i));
            CProduct* p = addNavDataProduct(products, name, QString("DS_%1").arg(i), root);
            groups.AssignProduct(p);
        }
        engine.SetProductList(&products);
        original = sums();
    }
    QString root(int i) const { return work.path() + QString("/Prod_%1").arg(i); }
    QMap<QString, QByteArray> sums(int i) const { return checksums(root(i)); }
    QMap<QString, QByteArray> sums() const
    {
        QMap<QString, QByteArray> all;
        for (int i = 0; i < products.GetSize(); ++i) {
            const QMap<QString, QByteArray> one = sums(i);
            for (auto it = one.cbegin(); it != one.cend(); ++it)
                all.insert(QString("Prod_%1/").arg(i) + it.key(), it.value());
        }
        return all;
    }
    bool install()
    {
        QSignalSpy ready(&engine, &CDSVersion::SignalInstallReady);
        engine.InstallProducts();
        return ready.wait(60000);
    }
    QList<int> states() const
    {
        QList<int> list;
        for (int i = 0; i < products.GetSize(); ++i)
            list << int(products.GetByIndex(i)->GetInstallState());
        return list;
    }
    int backupFolders(int i) const
    {
        int n = 0;
        QDirIterator it(root(i), QDir::Dirs | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
        while (it.hasNext())
            n += it.next().endsWith(QString("/QMK_DS_%1_back").arg(i)) ? 1 : 0;
        return n;
    }
    int filesInBackups(int i) const
    {
        int n = 0;
        QDirIterator it(root(i), QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext())
            n += it.next().contains("/QMK_") ? 1 : 0;
        return n;
    }
};

// Every original file is in place, or its exact bytes wait in the backup folder beside it.
void verifyNothingLost(const QMap<QString, QByteArray>& original, const QMap<QString, QByteArray>& now)
{
    for (auto it = original.cbegin(); it != original.cend(); ++it) {
        const QString product = it.key().section('/', 0, 0);
        const QString dataset = "DS_" + product.section('_', 1);
        const QFileInfo info(it.key());
        const QString backup = info.path() + "/QMK_" + dataset + "_back/" + info.fileName();
        QVERIFY2(now.value(it.key()) == it.value() || now.value(backup) == it.value(), qPrintable("lost: " + it.key()));
    }
}

QMap<QString, QByteArray> only(const QMap<QString, QByteArray>& all, const QString& prefix)
{
    QMap<QString, QByteArray> part;
    for (auto it = all.cbegin(); it != all.cend(); ++it)
        if (it.key().startsWith(prefix))
            part.insert(it.key(), it.value());
    return part;
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
        Products t(3, 800);
        QVERIFY(t.install());
        const QMap<QString, QByteArray> installed = t.sums();
        const int backupFiles0 = t.filesInBackups(0);
        const int backupFolders0 = t.backupFolders(0);
        QVERIFY(backupFiles0 >= 800);

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
                [&] { return reset ? t.filesInBackups(0) < backupFiles0 : t.backupFolders(0) < backupFolders0; },
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
            const bool finished = reset ? t.filesInBackups(i) == 0 && only(now, prefix) == only(t.original, prefix)
                                        : t.backupFolders(i) == 0;
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
        QTest::newRow("one product, right after the copy starts") << "copy start" << true;
        QTest::newRow("one product, mid-copy") << "mid-copy" << true;
    }

    void stopInstall()
    {
        QFETCH(QString, when);
        QFETCH(bool, single);
        Products t(3, 800);
        CDSVersion& e = t.engine;
        if (single)
            e.SetSingleProduct(t.products.GetByIndex(0));
        // The order of the update dialog's close.
        auto stop = [&] {
            e.StopInstall();
            e.StopFileCopyThred();
        };
        QSignalSpy ready(&e, &CDSVersion::SignalInstallReady);
        QSignalSpy turns(&e, &CDSVersion::SignalUnzippProduct);
        QSignalSpy written(&e, &CDSVersion::SignalFileWritten);
        QSignalSpy copies(&e, &CDSVersion::SignalBeginCopyThead);
        bool stopped = false;
        auto once = [&] {
            if (!stopped) {
                stopped = true;
                stop();
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
        Products t(3, 40);
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

    void idleStopDownload_data()
    {
        QTest::addColumn<QString>("before");
        QTest::newRow("after a search") << "search";
        QTest::newRow("after a download run") << "download";
    }

    void idleStopDownload()
    {
        QFETCH(QString, before);
        TempAppDir app;
        TestServer server;
        QVERIFY(server.start());
        server.addContent("/quillmark/versionList.txt", "Revision: 2\n1802\n");
        server.addContent("/quillmark/1802/DS1.zip", "archive bytes");
        CProductList products;
        CProduct* p = products.Add("P1");
        p->SetDataset("DS1");
        p->SetUpdate(true);
        CDSVersion e;
        e.SetServer(server.hostAndPort());
        e.Init("1.0");
        e.SetProductList(&products);

        QSignalSpy checked(&e, &CDSVersion::SignalCheckHighVersionFinished);
        QSignalSpy ready(&e, &CDSVersion::SignalDownloadDataSetReady);
        e.SearchForNewVersion(false);
        QVERIFY(checked.wait(20000));
        if (before == "download") {
            e.DownloadNewDSVersion();
            QVERIFY(ready.wait(20000));
        }
        const QStringList filesBefore =
            QDir(app.path() + "/downloads").entryList(QDir::Files) + QDir(e.GetCycleDirectory()).entryList(QDir::Files);
        const int requests = server.requestCount();
        QSignalSpy failed(&e, &CDSVersion::SignalDownloadError);
        QSignalSpy setError(&e, &CDSVersion::SignalDownloadDataSetError);
        const int checks = checked.count();
        const int state = int(p->GetInstallState());

        e.StopDownload();
        settle();
        QCOMPARE(failed.count(), 0);
        QCOMPARE(setError.count(), 0);
        QCOMPARE(checked.count(), checks);
        QCOMPARE(server.requestCount(), requests);
        QCOMPARE(QDir(app.path() + "/downloads").entryList(QDir::Files) +
                     QDir(e.GetCycleDirectory()).entryList(QDir::Files),
                 filesBefore);
        QCOMPARE(int(p->GetInstallState()), state);
    }

    void stopDuringSearch()
    {
        TempAppDir app;
        TestServer server;
        QVERIFY(server.start());
        server.addContent("/quillmark/versionList.txt", QByteArray(4000, '\n') + "1802\n");
        server.setFault("/quillmark/versionList.txt", TestServer::Fault::Slow);
        server.setSlowPace(64, 40);
        CDSVersion e;
        e.SetServer(server.hostAndPort());
        e.Init("1.0");
        QSignalSpy checked(&e, &CDSVersion::SignalCheckHighVersionFinished);
        QSignalSpy percent(&e, &CDSVersion::SignalChangePercent);
        e.SearchForNewVersion(true);
        QVERIFY(percent.wait(20000));
        e.StopDownload();
        settle();
        // Whoever stopped the search no longer waits for its answer.
        QCOMPARE(checked.count(), 0);
        QVERIFY(!QFileInfo::exists(app.path() + "/downloads/versionList.txt"));
    }

    void fullDisk()
    {
        Products t(1, 40);
        const QString archive = t.engine.GetCycleDirectory() + "/DS_0.zip";
        QVERIFY(QFile::rename(archive, t.work.path() + "/DS_0.zip"));
        TestServer server;
        QVERIFY(server.start());
        server.addContent("/quillmark/1802/DS_0.zip",
                          readFile(t.work.path() + "/DS_0.zip") + QByteArray(512 * 1024, 'x'));
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

    void installOntoLink_data()
    {
        QTest::addColumn<bool>("backups");
        QTest::newRow("with backups") << true;
        QTest::newRow("without backups") << false;
    }

    void installOntoLink()
    {
        QFETCH(bool, backups);
        Products t(1, 10);
        const QString nav = t.root(0) + "/NavData";
        QVERIFY(writeFile(t.work.path() + "/elsewhere/real.dat", "the user's file"));
        QVERIFY(QFile::link(t.work.path() + "/elsewhere/real.dat", nav + "/linked.dat"));
        writeFile(t.work.path() + "/new/Prod_0/NavData/linked.dat", "new data");
        QFile::remove(t.engine.GetCycleDirectory() + "/DS_0.zip");
        QVERIFY(zipFolder(t.work.path() + "/new/Prod_0", t.engine.GetCycleDirectory() + "/DS_0.zip").isEmpty());
        t.engine.SetCreateBackupFiles(backups);

        QVERIFY(t.install());
        QCOMPARE(t.engine.GetResult(), QString(" + Install success Prod_0\r\n"));
        QVERIFY(!QFileInfo(nav + "/linked.dat").isSymLink());
        QCOMPARE(readFile(nav + "/linked.dat"), QByteArray("new data"));
        QCOMPARE(readFile(t.work.path() + "/elsewhere/real.dat"), QByteArray("the user's file"));
        const QFileInfo kept(nav + "/QMK_DS_0_back/linked.dat");
        QCOMPARE(kept.isSymLink(), backups);
        if (!backups)
            return;
        QCOMPARE(kept.symLinkTarget(), t.work.path() + "/elsewhere/real.dat");

        QSignalSpy ready(&t.engine, &CDSVersion::SignalResetReady);
        t.engine.Reset(&t.products);
        QVERIFY(!ready.isEmpty() || ready.wait(20000));
        QCOMPARE(QFileInfo(nav + "/linked.dat").symLinkTarget(), t.work.path() + "/elsewhere/real.dat");
        QCOMPARE(readFile(t.work.path() + "/elsewhere/real.dat"), QByteArray("the user's file"));
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
    }

    void removeFileList()
    {
        QFETCH(QString, entry);
        QFETCH(QString, target);
        QFETCH(bool, removed);
        Products t(1, 10);
        const QString sim = t.work.path() + "/sim";
        QVERIFY(SampleCatalogue::MakeSimFolder(sim));
        CCategory category("X-Plane 11");
        category.SetPath(sim);
        CProduct* p = t.products.GetByIndex(0);
        p->SetCategory(&category);
        QVERIFY(writeFile(sim + "/Custom Data/old.dat", "old"));
        QVERIFY(writeFile(t.work.path() + "/outside.dat", "not the product's"));
        QVERIFY(QFile::link(t.work.path(), t.root(0) + "/NavData/out"));
        p->AddRemoveFilePath(entry);

        QVERIFY(t.install());
        const QString path = t.work.path() + "/" + target;
        QCOMPARE(QFileInfo::exists(path), !removed);
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
        // Two products in one install group (one folder, one dataset) and one on its own.
        Products t(1, 30);
        addNavDataProduct(t.products, "Prod_0 Twin", "DS_0", t.root(0));
        const QString otherRoot = t.work.path() + "/Prod_1";
        writeTree(otherRoot + "/NavData", 20, 9);
        writeFile(otherRoot + "/NavData/cycle_info.txt", kOldCycle);
        writeTree(t.work.path() + "/new/Prod_1/NavData", 20, 10);
        writeFile(t.work.path() + "/new/Prod_1/NavData/cycle_info.txt", kNewCycle);
        zipFolder(t.work.path() + "/new/Prod_1", t.engine.GetCycleDirectory() + "/DS_1.zip");
        addNavDataProduct(t.products, "Prod_1", "DS_1", otherRoot);
        // Grouped as the data model does it: by dataset and resolved install paths.
        CInstallGroupList groups;
        for (int i = 0; i < t.products.GetSize(); ++i) {
            QVERIFY(t.products.GetByIndex(i)->InitNewInstallPaths(false));
            QCOMPARE(groups.AssignProduct(t.products.GetByIndex(i)), i == 2 ? 1 : 0);
        }
        const QMap<QString, QByteArray> before = checksums(t.work.path(), {"new"});

        QVERIFY(t.install());
        QVERIFY(checksums(t.work.path(), {"new"}) != before);
        t.engine.ResetResult();
        QSignalSpy ready(&t.engine, &CDSVersion::SignalResetReady);
        t.engine.Reset(&t.products);
        QVERIFY(!ready.isEmpty() || ready.wait(20000));
        QCOMPARE(t.engine.GetResult(), QString(" + Reset success Prod_0 ( V. 1801 R. 1 )\r\n"
                                               " + Reset success Prod_0 Twin ( V. 1801 R. 1 )\r\n"
                                               " + Reset success Prod_1 ( V. 1801 R. 1 )\r\n"));
        QCOMPARE(t.states(), (QList<int>{5, 5, 5}));
        QCOMPARE(checksums(t.work.path(), {"new"}), before);
        QCOMPARE(t.backupFolders(0) + t.backupFolders(1), 0);
    }
};

QTEST_MAIN(TestEngineStops)
#include "TestEngineStops.moc"
