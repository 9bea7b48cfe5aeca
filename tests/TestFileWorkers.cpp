#include "engine/FileCopyThread.h"
#include "engine/FileRemoveBackupThread.h"
#include "engine/FileResetThread.h"
#include "model/CFileTree.h"
#include "model/CProduct.h"
#include "support/TempAppDir.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QSignalSpy>
#include <QStorageInfo>
#include <QTemporaryDir>
#include <QTest>

#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace {
// Tree lines relative to a work folder: "path=content", "path->link target", "empty/dir/".
// "@" in a link target or a log text stands for the work folder.
QString cyc(const QString& path, const QString& cycle, const QString& revision)
{
    return path + "=AIRAC cycle    : " + cycle + "\r\nRevision       : " + revision + "\r\n";
}

void writeTree(const QString& root, const QStringList& lines)
{
    for (const QString& line : lines) {
        const int eq = line.indexOf('='), arrow = line.indexOf("->");
        const bool link = arrow > 0 && (eq < 0 || arrow < eq);
        const QString path = root + '/' + line.left(link ? arrow : eq < 0 ? line.size() : eq);
        QDir().mkpath(link || eq >= 0 ? QFileInfo(path).absolutePath() : path);
        if (link) {
            QString target = line.mid(arrow + 2);
            target.replace('@', root);
            std::filesystem::create_symlink(target.toStdString(), path.toStdString());
        } else if (eq >= 0) {
            QFile f(path);
            QVERIFY(f.open(QIODevice::WriteOnly));
            f.write(line.mid(eq + 1).toUtf8());
        }
    }
}

// Files, links and empty folders below root, never following a link.
QStringList snapshot(const QString& root, const QString& rel = QString())
{
    QStringList lines;
    const QFileInfoList entries = CFileTree::allEntries(rel.isEmpty() ? root : root + '/' + rel);
    for (const QFileInfo& e : entries) {
        // The mark of the run that made a backup folder says nothing about its content.
        if (e.fileName().startsWith(".qmk_run_"))
            continue;
        const QString path = rel.isEmpty() ? e.fileName() : rel + '/' + e.fileName();
        if (e.isSymLink()) {
            QString target = QString::fromStdString(std::filesystem::read_symlink(e.filePath().toStdString()));
            lines << path + "->" + target.replace(root, "@");
        } else if (e.isDir()) {
            const QStringList sub = snapshot(root, path);
            lines << (sub.isEmpty() ? QStringList{path + '/'} : sub);
        } else {
            QFile f(e.filePath());
            f.open(QIODevice::ReadOnly);
            lines << path + '=' + QString::fromUtf8(f.readAll());
        }
    }
    lines.sort();
    return lines;
}

bool finishes(CFileWorkerThread& thread)
{
    QSignalSpy spy(&thread, &CFileWorkerThread::SignalFinished);
    thread.Start(0);
    const bool ok = QTest::qWaitFor([&] { return spy.count() == 1; }, 30000);
    thread.wait();
    return ok;
}

QString logs(const TempAppDir& app)
{
    QString all;
    for (const char* name : {"log_fcopy.txt", "log_freset.txt", "log_fremovebackup.txt"})
        all += QString::fromLatin1(app.readFile("log/" + QString(name)));
    return all;
}

void setUp(CProduct& product, const QString& work, const QString& name, const QStringList& entries)
{
    product.SetName(name);
    product.SetDataset("nav");
    product.SetNewProductPath(work + "/t");
    product.SetCycleInfoPath("$ProductPath");
    for (const QString& entry : entries)
        product.AddInstallPath(entry);
    product.InitNewInstallPaths(false);
}

const QString B = "t/QMK_nav_back/";
using L = QStringList;

// One row of operations(): the operations run in turn on one product, their results, the work
// folder before and after, and log lines expected.
void row(const char* name, const QString& ops, const QString& results, const L& before, const L& after,
         const L& logged = {}, const L& entries = {"$ProductPath"}, const QString& product = "Addon")
{
    QTest::newRow(name) << ops.split(", ") << results << before << after << logged << entries << product;
}
} // namespace

class TestFileWorkers : public QObject
{
    Q_OBJECT

private slots:
    // The whole work folder is compared afterwards, so any change outside the product's own
    // targets ("out") shows up.
    void operations_data()
    {
        // "copy SRC" with backups, "copynb SRC" without, "reset", "remove", "rm PATH" between runs
        QTest::addColumn<L>("ops");
        QTest::addColumn<QString>("results");
        QTest::addColumn<L>("before");
        QTest::addColumn<L>("after");
        QTest::addColumn<L>("logged");
        QTest::addColumn<L>("entries");
        QTest::addColumn<QString>("product");
        const L old{"t/a=old", "t/sub/b=oldb", cyc("t/cycle_info.txt", "1801", "2")};
        const L src{"s/a=new", "s/sub/b=newb", "s/sub/c=newc", "s/.hid=h", cyc("s/cycle_info.txt", "1802", "1")};
        const L installed{"t/a=new",  "t/sub/b=newb", "t/sub/c=newc", cyc("t/cycle_info.txt", "1802", "1"),
                          "s/.hid=h", "s/sub/"};
        const L backups{B + "_V_1801_R_2/", B + "a=old", cyc(B + "cycle_info.txt", "1801", "2"),
                        "t/sub/QMK_nav_back/_V_1801_R_2/", "t/sub/QMK_nav_back/b=oldb"};
        row("install with backups", "copy s", "1", old + src, installed + backups);
        row("install without backups", "copynb s", "1", old + src, installed);
        row("install then reset", "copy s, reset", "11", old + src, old + L{"t/sub/c=newc", "s/.hid=h", "s/sub/"});
        row("install then remove backups twice", "copy s, remove, remove", "111", old + src, installed);
        row("nothing replaced: no backup folder", "copy s", "1", {"t/", "s/a=new", "s/sub/c=x"},
            {"t/a=new", "t/sub/c=x", "s/sub/"});
        row("no cycle installed", "copy s", "1", {"t/a=old", "s/a=new"},
            {"t/a=new", B + "a=old", B + "_V_unknown_R_/", cyc(B + "cycle_info.txt", "unknown", ""), "s/"});
        row("backup of another cycle is replaced", "copy s", "1",
            {"t/a=old", cyc("t/cycle_info.txt", "1801", "2"), B + "_V_1701_R_1/", B + "a=ancient", B + "z=x",
             "s/a=new"},
            {"t/a=new", cyc("t/cycle_info.txt", "1801", "2"), B + "_V_1801_R_2/", B + "a=old", "s/"});
        row("second install replaces the first backup", "copy s, copy s2", "11",
            {"t/a=v1", cyc("t/cycle_info.txt", "1801", "1"), "s/a=v2", cyc("s/cycle_info.txt", "1802", "1"), "s2/a=v3",
             cyc("s2/cycle_info.txt", "1803", "1")},
            {"t/a=v3", cyc("t/cycle_info.txt", "1803", "1"), B + "_V_1802_R_1/", B + "a=v2",
             cyc(B + "cycle_info.txt", "1802", "1"), "s/", "s2/"});
        row("reset of a partial backup", "reset", "1", {"t/a=new", "t/b=new", B + "_V_1801_R_1/", B + "a=old"},
            {"t/a=old", "t/b=new"});
        row("no backup above: nested backup stays", "reset, remove", "11", {"t/sub/a=new", "t/sub/QMK_nav_back/a=old"},
            {"t/sub/a=new", "t/sub/QMK_nav_back/a=old"});
        row("source sub-path missing", "copy s", "0", {"t/a=old", "s/a=new"}, {"t/a=old", "s/a=new"},
            {"!!WARNING source folder not found: @/s/nothere"}, {"$ProductPath:/nothere"});
        row("two targets from their own source folders", "copy s, reset", "11",
            {"t/A/x=ox", "t/A/d/y=oy", "t/B/z=oz", "s/a/x=nx", "s/a/d/n=nn", "s/b/z=nz", "s/b/e/w=nw", "s/c/v=x"},
            {"t/A/x=ox", "t/A/d/y=oy", "t/A/d/n=nn", "t/B/z=oz", "t/B/e/w=nw", "s/a/d/", "s/b/e/", "s/c/v=x"}, {},
            {"$ProductPath/A:/a", "$ProductPath/B:/b"});
        row("empty target entry", "copy s, reset, remove", "000", {"t/a=old", "s/a=new"}, {"t/a=old", "s/a=new"},
            {"!!ERROR not find install_path -", "  --  /nowhere/x"}, {"/nowhere/x:/"});
        row("empty target entry before a good one", "copy s, reset, remove", "111", {"t/", "s/a=new"},
            {"t/a=new", "s/"}, {}, {"/nowhere/x", "$ProductPath"});
        row("target folder missing", "copy s", "1", {"t/", "s/a=new"}, {"t/new/deep/a=new", "s/"}, {},
            {"$ProductPath/new/deep"});
        row("unpacked folder of the backup's name", "copy s", "1", {"t/a=old", "s/a=new", "s/QMK_nav_back/a=bad"},
            {"t/a=new", B + "a=old", B + "_V_unknown_R_/", cyc(B + "cycle_info.txt", "unknown", ""),
             "s/QMK_nav_back/a=bad"},
            {"!!WARNING folder of the backup's name skipped: @/s/QMK_nav_back"});
        row("target name is a folder", "copy s", "0", {"t/a/in=keep", "s/a=new"}, {"t/a/in=keep", "s/a=new"},
            {"!!ERROR @/t/a is a folder"});
        row("Skyforge A320 in any case: nav1.db copied to nav2.db", "copy s", "1",
            {"t\\nav1.db=n1", "t\\nav2.db=old", "t/", "s/a=x"}, {"t\\nav1.db=n1", "t\\nav2.db=n1", "t/a=x", "s/"}, {},
            {"$ProductPath"}, "sKyForge a320");
        row("Skyforge A320 without nav1.db keeps nav2.db", "copy s", "1", {"t\\nav2.db=keep", "t/", "s/a=x"},
            {"t\\nav2.db=keep", "t/a=x", "s/"}, {}, {"$ProductPath"}, "Skyforge A320");
        // The tree changes under a running install, or between install and reset.
        const L later{cyc("t/cycle_info.txt", "1801", "1"),
                      "t/a=old",
                      "t/later/x=old",
                      "t/later/y=old",
                      "s/a=new",
                      "s/later/x=new",
                      "s/later/deeper/z=new"};
        row("stop requested", "copy s ~stop, reset", "01", later, later.mid(0, 4) + later.mid(5));
        row("target folder deleted during the install", "copy s ~t/later, reset", "11", later,
            {later[0], "t/a=old", "t/later/x=new", "t/later/deeper/z=new", "s/later/deeper/"});
        row("target folder deleted before the reset", "copy s, rm t/sub, reset", "111", old + src,
            {"t/a=old", old[2], "s/.hid=h", "s/sub/"});
        // Symbolic links are neither followed nor replaced.
        row("source links to ../../ and to an absolute folder", "copy s, reset, rm s", "111",
            {"t/", "out/a=keep", "s/up->../", "s/abs->@/out", "s/f->@/out/a", "s/a=new"}, {"out/a=keep", "t/a=new"},
            {"!!WARNING symbolic link skipped: @/s/up", "!!WARNING symbolic link skipped: @/s/abs",
             "!!WARNING symbolic link skipped: @/s/f"});
        row("target sub-folder links outside", "copynb s", "1",
            {"out/a=keep", "t/sub->@/out", "s/sub/a=new", "s/b=new"},
            {"out/a=keep", "t/sub->@/out", "s/sub/a=new", "t/b=new"}, {"!!WARNING symbolic link skipped: @/t/sub"});
        row("source sub-path through a link", "copy s", "0", {"t/", "out/a=keep", "s/lnk->@/out"},
            {"t/", "out/a=keep", "s/lnk->@/out"}, {"!!ERROR source folder outside"}, {"$ProductPath:/lnk"});
        const L linked{"out/a=cur", "out/QMK_nav_back/a=keep", "t/sub->@/out", "t/a=new", B + "a=old", B + "_V_1_R_1/"};
        const L outside{"out/a=cur", "out/QMK_nav_back/a=keep", "t/sub->@/out"};
        row("reset does not enter a linked folder", "reset", "1", linked, outside + L{"t/a=old"},
            {"!!WARNING symbolic link skipped: @/t/sub"});
        row("backup removal does not enter a linked folder", "remove", "1", linked, outside + L{"t/a=new"},
            {"!!WARNING symbolic link skipped: @/t/sub"});
        row("backup folder is a link", "reset, remove", "11", {"out/a=keep", "t/QMK_nav_back->@/out", "t/a=new"},
            {"out/a=keep", "t/QMK_nav_back->@/out", "t/a=new"}, {"!!WARNING symbolic link skipped: @/t/QMK_nav_back"});
        // A target file that is a link is replaced by the new file; the link itself is what is kept.
        const L link{"out/r=keep", "t/a->@/out/r", cyc("t/cycle_info.txt", "1801", "1")};
        row("target file is a link", "copy s, reset", "11", link + L{"s/a=new"}, link + L{"s/"});
        row("target file is a link, no backups", "copynb s", "1", link + L{"s/a=new"},
            {link[0], "t/a=new", link[2], "s/"});
        row("restore onto a link keeps the backup", "reset", "0",
            {"out/a=keep", "t/a->@/out/a", B + "a=old", B + "_V_1_R_1/"},
            {"out/a=keep", "t/a->@/out/a", B + "a=old", B + "_V_1_R_1/"}, {"!!WARNING symbolic link skipped: @/t/a"});
    }

    void operations()
    {
        QFETCH(L, ops);
        QFETCH(QString, results);
        QFETCH(L, before);
        QFETCH(L, after);
        QFETCH(L, logged);
        QFETCH(L, entries);
        QFETCH(QString, product);
        TempAppDir app;
        QTemporaryDir work;
        writeTree(work.path(), before);
        CProduct prod;
        setUp(prod, work.path(), product, entries);
        FileCopyThread copy;
        FileResetThread reset;
        FileRemoveBackupThread remove;
        QString got;
        for (const QString& op : ops) {
            bool ok = false;
            if (op.startsWith("copy")) {
                // "~stop" or "~path": asks for a stop or deletes the path once the first file is in.
                const QString during = op.section(' ', 2).mid(1);
                std::atomic_bool first{true};
                const auto c = connect(
                    &copy, &FileCopyThread::SignalFileWritten, &copy,
                    [&] {
                        if (!during.isEmpty() && first.exchange(false))
                            during == "stop" ? copy.RequestStop()
                                             : void(CFileTree::removeDir(work.path() + '/' + during));
                    },
                    Qt::DirectConnection);
                copy.Init(&prod, work.path() + '/' + op.section(' ', 1, 1), !op.startsWith("copynb"));
                ok = finishes(copy) && copy.GetSuccess();
                // As the engine does once the run is complete: the earlier backups set aside go.
                for (const QString& kept : copy.GetKeptBackups())
                    CFileTree::removeDir(kept);
                disconnect(c);
            } else if (op.startsWith("rm ")) {
                ok = CFileTree::removeDir(work.path() + '/' + op.mid(3));
            } else if (op == "remove") {
                remove.Init(&prod);
                ok = finishes(remove) && remove.GetSuccess();
            } else {
                reset.Init(&prod);
                ok = finishes(reset) && reset.GetSuccess();
            }
            got += ok ? '1' : '0';
        }
        QCOMPARE(got, results);
        after.sort();
        QCOMPARE(snapshot(work.path()), after);
        for (QString text : logged)
            QVERIFY2(logs(app).contains(text.replace('@', work.path())), qPrintable(text));
    }

    // A replaced file whose backup cannot be made stays; the new file is left out and the
    // product fails.
    void backupCannotBeMade_data()
    {
        QTest::addColumn<bool>("readOnly");
        QTest::newRow("read-only target folder") << true;
        QTest::newRow("backup path too long") << false;
    }

    void backupCannotBeMade()
    {
        QFETCH(bool, readOnly);
        if (readOnly && geteuid() == 0)
            QSKIP("running as root: folder permissions do not stop writes");
        TempAppDir app;
        QTemporaryDir work;
        CProduct product;
        setUp(product, work.path(), "Addon", {"$ProductPath"});
        QString folder = work.path() + "/t";
        if (!readOnly) {
            // The file fits the path limit, its backup folder inside the same folder does not.
            product.SetDataset(QString(200, 'x'));
            while (folder.size() < 3890)
                folder += '/' + QString(100, 'd');
        }
        QVERIFY(QDir().mkpath(folder));
        product.SetNewProductPath(folder);
        product.InitNewInstallPaths(false);
        writeTree(folder, {"a=old"});
        writeTree(work.path(), {"s/a=new"});
        if (readOnly)
            QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
        FileCopyThread copy;
        copy.Init(&product, work.path() + "/s", true);
        QVERIFY(finishes(copy));
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QVERIFY(!copy.GetSuccess());
        QCOMPARE(snapshot(folder), QStringList{"a=old"});
        QCOMPARE(snapshot(work.path() + "/s"), QStringList{"a=new"});
        const QString log = logs(app);
        QVERIFY2(log.contains("!!ERROR no backup of " + folder + "/a") ||
                     log.contains("!!ERROR cannot create backup folder " + folder),
                 qPrintable(log.right(400)));
    }

    // Unpacked on another file system: files arrive by copy, and the unpacked ones go only then.
    void movesAcrossFileSystems()
    {
        QTemporaryDir other(QStringLiteral("/dev/shm/qmk-XXXXXX"));
        TempAppDir app;
        QTemporaryDir work;
        struct stat a, b;
        if (!other.isValid() || stat(qPrintable(other.path()), &a) || stat(qPrintable(work.path()), &b) ||
            a.st_dev == b.st_dev)
            QSKIP("no second file system at /dev/shm");
        writeTree(other.path(), {"a=new", "sub/b=newb"});
        writeTree(work.path(), {"t/a=old"});
        CProduct product;
        setUp(product, work.path(), "Addon", {"$ProductPath"});
        FileCopyThread copy;
        copy.Init(&product, other.path(), true);
        QVERIFY(finishes(copy));
        QVERIFY(copy.GetSuccess());
        QStringList after{cyc(B + "cycle_info.txt", "unknown", ""), B + "_V_unknown_R_/", B + "a=old", "t/a=new",
                          "t/sub/QMK_nav_back/_V_unknown_R_/",      "t/sub/b=newb"};
        after.sort();
        QCOMPARE(snapshot(work.path()), after);
        QCOMPARE(snapshot(other.path()), QStringList{"sub/"});
    }
};

QTEST_MAIN(TestFileWorkers)
#include "TestFileWorkers.moc"
