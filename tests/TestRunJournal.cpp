#include "support/DatasetFiles.h"
#include "support/TempAppDir.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

#include <csignal>

using namespace DatasetFiles;

// An install or a reset cut off at any file move, in a child process that ends itself there (or
// is killed), and the program started again on the same folders: no original is ever lost, and
// the product ends up either as before the run or as after it.
namespace {
const QByteArray kCycle1801 = "AIRAC cycle    : 1801\r\nRevision       : 1\r\n";

QByteArray cycleFile(const QString& cycle)
{
    return "AIRAC cycle    : " + cycle.toLatin1() + "\r\nRevision       : 1\r\n";
}

// `count` files over a few folders; the names depend on the count only, the bytes on the seed.
void writeTree(const QString& root, int count, quint32 seed, int extra = 0)
{
    static const char* const folders[] = {"", "Airports", "Airports/Deep", "Navaids", "Proc edures"};
    QRandomGenerator random(seed);
    for (int i = 0; i < count + extra; ++i) {
        QByteArray content(8 + int(random.bounded(40)), Qt::Uninitialized);
        for (char& c : content)
            c = char(random.bounded(256));
        const QString folder = QLatin1String(folders[i % 5]);
        const QString name = i < count ? QString("file_%1.dat").arg(i) : QString("added_%1.dat").arg(i);
        writeFile(root + (folder.isEmpty() ? QString() : "/" + folder) + "/" + name, content);
    }
}

// A program folder and a work folder with products Prod_0 .. Prod_n-1 at cycle 1801, and the
// archives of `cycle` on hand.
struct Setup
{
    QTemporaryDir app;
    QTemporaryDir work;
    int products;

    explicit Setup(int count, int files) : products(count)
    {
        QDir(app.path()).mkpath("log"); // a portable program folder for the probe
        for (int i = 0; i < count; ++i) {
            const QString root = work.path() + QString("/Prod_%1/NavData").arg(i);
            writeTree(root, files, 10 + i);
            writeFile(root + "/cycle_info.txt", kCycle1801);
        }
    }
    void offer(const QString& cycle, int files)
    {
        const QString cycleDir = app.path() + "/downloads/QuillmarkCycle";
        QDir(cycleDir).removeRecursively();
        writeFile(cycleDir + "/versionList.txt", "Revision: 1\n" + cycle.toLatin1() + "\n");
        for (int i = 0; i < products; ++i) {
            QTemporaryDir tree;
            // Every existing name gets other bytes, and a few files are new.
            writeTree(tree.path() + "/NavData", files, 100 * cycle.toUInt() + i, 3);
            writeFile(tree.path() + "/NavData/cycle_info.txt", cycleFile(cycle));
            QVERIFY(zipFolder(tree.path(), cycleDir + QString("/DS_%1.zip").arg(i)).isEmpty());
        }
    }
    // Runs the probe and returns its output; `code` takes its exit code.
    QString probe(const QString& op, int exitAt, int* code = nullptr) const
    {
        QProcess child;
        child.setProgram(QCoreApplication::applicationDirPath() + "/probe_journal");
        child.setArguments({app.path(), work.path(), op, QString::number(exitAt)});
        child.start();
        child.waitForFinished(120000);
        if (code)
            *code = child.exitCode();
        return QString::fromLocal8Bit(child.readAllStandardOutput());
    }
    int moves(const QString& output) const
    {
        const QRegularExpressionMatch m = QRegularExpression("moves: (\\d+)").match(output);
        return m.hasMatch() ? m.captured(1).toInt() : -1;
    }
    // Every file below the work folder, hidden ones too: a finished or recovered run leaves no mark.
    QMap<QString, QByteArray> sums() const { return checksums(work.path()); }
    QStringList records() const
    {
        QStringList found;
        QDirIterator it(work.path(), {"QMK_*_journal.txt"}, QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext())
            found << it.next();
        return found;
    }
    QStringList backupFolders() const
    {
        QStringList found;
        QDirIterator it(work.path(), QDir::Dirs | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
        while (it.hasNext())
            if (QFileInfo(it.next()).fileName().startsWith("QMK_"))
                found << it.filePath();
        return found;
    }
};

QMap<QString, QByteArray> withoutBackups(const QMap<QString, QByteArray>& sums)
{
    QMap<QString, QByteArray> plain;
    for (auto it = sums.cbegin(); it != sums.cend(); ++it)
        if (!it.key().contains("/QMK_"))
            plain.insert(it.key(), it.value());
    return plain;
}

// Every file of `before` is where it was with its bytes, or its bytes wait in the backup folder
// beside it.
void verifyNothingLost(const QMap<QString, QByteArray>& before, const QMap<QString, QByteArray>& now)
{
    for (auto it = before.cbegin(); it != before.cend(); ++it) {
        if (it.key().contains("/QMK_"))
            continue;
        const QString product = it.key().section('/', 0, 0);
        const QFileInfo info(it.key());
        const QString backup = info.path() + "/QMK_DS_" + product.section('_', 1) + "_back/" + info.fileName();
        QVERIFY2(now.value(it.key()) == it.value() || now.value(backup) == it.value(), qPrintable("lost: " + it.key()));
    }
}
} // namespace

class TestRunJournal : public QObject
{
    Q_OBJECT

private slots:
    void cutOff_data()
    {
        QTest::addColumn<QString>("run");   // "install", "install over a backup", "reset"
        QTest::addColumn<QString>("point"); // where the child ends itself
        for (const char* run : {"install", "install over a backup", "reset"})
            for (const char* point : {"first move", "after one move", "half", "before the cycle file",
                                      "at the cycle file", "after the last move"})
                QTest::addRow("%s, %s", run, point) << QString(run) << QString(point);
    }

    void cutOff()
    {
        QFETCH(QString, run);
        QFETCH(QString, point);
        const int files = 24;
        // The same set-up twice: a run to the end counts the moves, the other is cut off.
        auto prepare = [&](Setup& s) {
            s.offer("1802", files);
            if (run != "install")
                QVERIFY(s.moves(s.probe("install", -1)) > 0);
            if (run == "install over a backup")
                s.offer("1803", files);
        };
        Setup dry(1, files), cut(1, files);
        prepare(dry);
        prepare(cut);
        const QString op = run == "reset" ? "reset" : "install";
        const int total = dry.moves(dry.probe(op, -1));
        QVERIFY(total > 20);
        // The cycle file is the last file moved: in an install its backup and then the new one.
        const int cycleMoves = op == "install" ? 2 : 1;
        const QMap<QString, int> points{{"first move", 0},
                                        {"after one move", 1},
                                        {"half", total / 2},
                                        {"before the cycle file", total - cycleMoves},
                                        {"at the cycle file", total - 1},
                                        {"after the last move", total}};
        const int exitAt = points.value(point);

        const QMap<QString, QByteArray> before = cut.sums();
        Setup original(1, files); // the folders as they were before any install
        const QMap<QString, QByteArray> untouched = original.sums();
        // What must never be lost: for an install the files in place, for a reset the originals.
        const QMap<QString, QByteArray> precious = op == "reset" ? untouched : before;

        int code = 0;
        const QString output = cut.probe(op, exitAt, &code);
        QCOMPARE(code, 9);
        QVERIFY2(!cut.records().isEmpty(), qPrintable(output));
        verifyNothingLost(precious, cut.sums());

        // Started again: the run is completed or undone, and says so.
        const QString report = cut.probe("recover", -1);
        QVERIFY2(report.contains("The interrupted " + QString(op == "install" ? "install" : "reset") + " of Prod_0"),
                 qPrintable(report));
        QCOMPARE(cut.records(), QStringList());
        const QMap<QString, QByteArray> after = cut.sums();
        verifyNothingLost(precious, after);

        if (op == "reset") {
            // A reset is always completed: the product holds the files of before the install.
            for (auto it = untouched.cbegin(); it != untouched.cend(); ++it)
                QVERIFY2(after.value(it.key()) == it.value(), qPrintable("not given back: " + it.key()));
            QCOMPARE(cut.backupFolders(), QStringList());
            QVERIFY(report.contains("completed"));
            return;
        }
        // Only a run whose cycle file is in place counts as done; any earlier cut is undone.
        QVERIFY2(report.contains("completed") == (point == "after the last move"), qPrintable(report));
        if (report.contains("undone")) {
            // Every file as before the run, earlier backups included; only the files the install
            // added stay, as after a reset.
            for (auto it = before.cbegin(); it != before.cend(); ++it)
                QVERIFY2(after.value(it.key()) == it.value(), qPrintable("not as before: " + it.key()));
            for (auto it = after.cbegin(); it != after.cend(); ++it)
                QVERIFY2(before.contains(it.key()) || it.key().contains("/added_"),
                         qPrintable("left over: " + it.key()));
            return;
        }
        QVERIFY2(report.contains("completed"), qPrintable(report));
        QVERIFY(after.value("Prod_0/NavData/cycle_info.txt") != before.value("Prod_0/NavData/cycle_info.txt"));
        QVERIFY(cut.backupFolders().join(' ').contains("QMK_DS_0_back") &&
                !cut.backupFolders().join(' ').contains("_back_prev"));
        QVERIFY2(!after.keys().join(' ').contains("/.qmk_run_"), "a completed run left its marks");
        // A following reset gives back every file of before the run, byte for byte.
        QVERIFY(cut.moves(cut.probe("reset", -1)) > 0);
        const QMap<QString, QByteArray> reset = cut.sums();
        const QMap<QString, QByteArray> expected = withoutBackups(before);
        for (auto it = expected.cbegin(); it != expected.cend(); ++it)
            QVERIFY2(reset.value(it.key()) == it.value(), qPrintable("not given back: " + it.key()));
    }

    // Killed from outside at moments chosen by time, with two products: the second is never
    // touched before the first is done, and nothing is lost.
    void killed_data()
    {
        QTest::addColumn<int>("delayMs");
        for (int delay : {0, 3, 10, 30, 80})
            QTest::addRow("after %d ms", delay) << delay;
    }

    void killed()
    {
        QFETCH(int, delayMs);
        Setup s(2, 300);
        s.offer("1802", 300);
        const QMap<QString, QByteArray> before = s.sums();

        QProcess child;
        child.setProgram(QCoreApplication::applicationDirPath() + "/probe_journal");
        child.setArguments({s.app.path(), s.work.path(), "install", "-1"});
        child.start();
        QVERIFY(child.waitForStarted());
        // The moment the first record is on disk, then the delay.
        QVERIFY(
            QTest::qWaitFor([&] { return !s.records().isEmpty() || child.state() == QProcess::NotRunning; }, 60000));
        QTest::qWait(delayMs);
        // A run that has already ended has no process left; kill(0) would end this test instead.
        if (child.processId() > 0)
            ::kill(pid_t(child.processId()), SIGKILL);
        child.waitForFinished(30000);

        verifyNothingLost(before, s.sums());
        const QString report = s.probe("recover", -1);
        QCOMPARE(s.records(), QStringList());
        const QMap<QString, QByteArray> after = s.sums();
        verifyNothingLost(before, after);
        // Whatever was cut off, a reset now brings back every file of before the install.
        s.probe("reset", -1);
        const QMap<QString, QByteArray> reset = withoutBackups(s.sums());
        for (auto it = before.cbegin(); it != before.cend(); ++it)
            QVERIFY2(reset.value(it.key()) == it.value(), qPrintable("not given back: " + it.key() + "\n" + report));
    }
};

QTEST_MAIN(TestRunJournal)
#include "TestRunJournal.moc"
