#include "support/DatasetFiles.h"
#include "support/InstallProducts.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

using namespace DatasetFiles;

// An install or a reset cut off at any file move of its second product, in a child process that
// ends itself there, and the program started again on the same folders: no original is ever lost,
// and the product ends up either as before the run or as after it.
namespace {
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
            writeNamedTree(root, files, 10 + i);
            writeFile(root + "/cycle_info.txt", cycleInfo("1801"));
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
            writeNamedTree(tree.path() + "/NavData", files, 100 * cycle.toUInt() + i, 3);
            writeFile(tree.path() + "/NavData/cycle_info.txt", cycleInfo(cycle));
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
        // The same set-up twice: a run to the end counts the moves (once per kind of run, as the
        // trees are the same each time), the other is cut off.
        auto prepare = [&](Setup& s) {
            s.offer("1802", files);
            if (run != "install")
                QVERIFY(s.moves(s.probe("install", -1)) > 0);
            if (run == "install over a backup")
                s.offer("1803", files);
        };
        const QString op = run == "reset" ? "reset" : "install";
        static QMap<QString, int> counted;
        if (!counted.contains(run)) {
            Setup dry(2, files);
            prepare(dry);
            counted[run] = dry.moves(dry.probe(op, -1));
        }
        Setup cut(2, files);
        prepare(cut);
        // The products move their files one after the other, as many each.
        const int moves = counted.value(run);
        QCOMPARE(moves % 2, 0);
        const int total = moves / 2;
        QVERIFY(total > 20);
        // The cycle file is the last file moved: in an install its backup and then the new one.
        const int cycleMoves = op == "install" ? 2 : 1;
        const QMap<QString, int> points{{"after one move", 1},
                                        {"half", total / 2},
                                        {"before the cycle file", total - cycleMoves},
                                        {"at the cycle file", total - 1},
                                        {"after the last move", total}};
        // The end of Prod_0 and the first move of Prod_1 share a count, so the first move is Prod_0's.
        const int exitAt = point == "first move" ? 0 : total + points.value(point);
        const QString inRun = exitAt < total ? "Prod_0" : "Prod_1", other = exitAt < total ? "Prod_1" : "Prod_0";

        const QMap<QString, QByteArray> before = cut.sums();
        Setup original(2, files); // the folders as they were before any install
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
        QVERIFY2(report.contains("The interrupted " + QString(op == "install" ? "install" : "reset") + " of " + inRun),
                 qPrintable(report));
        QVERIFY2(!report.contains(other), qPrintable(report));
        QCOMPARE(cut.records(), QStringList());
        const QMap<QString, QByteArray> after = cut.sums();
        verifyNothingLost(precious, after);

        if (op == "reset") {
            // A reset is always completed: the product holds the files of before the install.
            const QMap<QString, QByteArray> given = only(untouched, inRun + "/");
            for (auto it = given.cbegin(); it != given.cend(); ++it)
                QVERIFY2(after.value(it.key()) == it.value(), qPrintable("not given back: " + it.key()));
            QCOMPARE(cut.backupFolders().filter("/" + inRun + "/"), QStringList());
            QVERIFY(report.contains("completed"));
            return;
        }
        // Only a run whose cycle file is in place counts as done; any earlier cut is undone.
        QVERIFY2(report.contains("completed") == (point == "after the last move"), qPrintable(report));
        if (report.contains("undone")) {
            // Every file as before the run, earlier backups included; only the files the install
            // added stay, as after a reset.
            const QMap<QString, QByteArray> was = only(before, inRun + "/"), now = only(after, inRun + "/");
            for (auto it = was.cbegin(); it != was.cend(); ++it)
                QVERIFY2(now.value(it.key()) == it.value(), qPrintable("not as before: " + it.key()));
            for (auto it = now.cbegin(); it != now.cend(); ++it)
                QVERIFY2(was.contains(it.key()) || it.key().contains("/added_"), qPrintable("left over: " + it.key()));
            return;
        }
        QVERIFY2(report.contains("completed"), qPrintable(report));
        QVERIFY(after.value("Prod_1/NavData/cycle_info.txt") != before.value("Prod_1/NavData/cycle_info.txt"));
        QVERIFY(cut.backupFolders().join(' ').contains("QMK_DS_1_back") &&
                !cut.backupFolders().join(' ').contains("_back_prev"));
        QVERIFY2(!after.keys().join(' ').contains("/.qmk_run_"), "a completed run left its marks");
        // A following reset gives back every file of before the run, byte for byte.
        QVERIFY(cut.moves(cut.probe("reset", -1)) > 0);
        const QMap<QString, QByteArray> reset = cut.sums();
        for (auto it = before.cbegin(); it != before.cend(); ++it)
            QVERIFY2(it.key().contains("/QMK_") || reset.value(it.key()) == it.value(),
                     qPrintable("not given back: " + it.key()));
    }
};

QTEST_MAIN(TestRunJournal)
#include "TestRunJournal.moc"
