#include "engine/CDSVersion.h"
#include "model/CInstallGroupList.h"
#include "model/CProduct.h"
#include "model/CProductList.h"
#include "support/DatasetFiles.h"
#include "support/TempAppDir.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <unistd.h>

using namespace DatasetFiles;

namespace {
const QByteArray kOldCycle = "AIRAC cycle    : 1801\r\nRevision       : 1\r\n";
const QByteArray kNewCycle = "AIRAC cycle    : 1802\r\nRevision       : 1\r\n";

// One product "Prod A" with dataset DS1 whose NavData folder holds cycle 1801, and an archive of
// cycle 1802 that replaces every third file and adds a few.
struct Install
{
    TempAppDir app;
    QTemporaryDir work;
    QString productRoot;
    QString navData;
    QStringList replaced;
    QStringList added;
    QString newTree;
    CProductList products;
    CInstallGroupList groups;
    CDSVersion engine;
    CProduct* product = nullptr;

    explicit Install(const QString& folderName = "Prod A")
    {
        productRoot = work.path() + "/" + folderName;
        navData = productRoot + "/NavData";
        const QStringList existing = writeRandomTree(navData, 30, 7);
        writeFile(navData + "/cycle_info.txt", kOldCycle);
        writeFile(work.path() + "/outside.txt", "not the product's");

        newTree = work.path() + "/new";
        for (int i = 0; i < existing.size(); i += 3) {
            replaced << existing[i];
            writeFile(newTree + "/NavData/" + existing[i], "new content of " + existing[i].toUtf8());
        }
        for (int i = 0; i < 4; ++i) {
            added << QString("Added/added_%1.dat").arg(i);
            writeFile(newTree + "/NavData/" + added.last(), QByteArray(100 + i, char('a' + i)));
        }
        writeFile(newTree + "/NavData/cycle_info.txt", kNewCycle);

        engine.Init("1.0");
        writeFile(engine.GetCycleDirectory() + "/versionList.txt", "Revision: 1\n1802\n");
        product = addNavDataProduct(products, "Prod A", "DS1", productRoot);
        groups.AssignProduct(product);
        engine.SetProductList(&products);
    }
    QString archive() const { return engine.GetCycleDirectory() + "/DS1.zip"; }
    QString makeArchive(const QString& password = "pralvek", bool links = false)
    {
        return zipFolder(newTree, archive(), password, links);
    }
    // Runs the install; false when it did not end with SignalInstallReady.
    bool run()
    {
        QSignalSpy ready(&engine, &CDSVersion::SignalInstallReady);
        if (!engine.InstallProducts())
            return false;
        if (ready.isEmpty())
            (void)QTest::qWaitFor([&] { return !ready.isEmpty(); }, 60000);
        return !ready.isEmpty();
    }
    QByteArray log() const { return app.readFile("log/log_dsupdate.txt"); }
};

// Every file that existed before is still there unchanged, or its exact bytes sit in the backup
// folder of its own folder.
void verifyNothingLost(const QMap<QString, QByteArray>& before, const QMap<QString, QByteArray>& after,
                       const QStringList& removedOnPurpose = {})
{
    for (auto it = before.cbegin(); it != before.cend(); ++it) {
        if (removedOnPurpose.contains(it.key()))
            continue;
        const QFileInfo info(it.key());
        const QString dir = info.path() == "." ? QString() : info.path() + "/";
        const QString backup = dir + "QMK_DS1_back/" + info.fileName();
        if (after.value(it.key()) == it.value() || after.value(backup) == it.value())
            continue;
        QFAIL(qPrintable("lost: " + it.key()));
    }
}
} // namespace

class TestDSInstall : public QObject
{
    Q_OBJECT

private slots:
    void installsWithBackups()
    {
        Install t;
        const QMap<QString, QByteArray> before = checksums(t.productRoot);
        QCOMPARE(t.makeArchive(), QString());
        QSignalSpy begin(&t.engine, &CDSVersion::SignalBeginCopyThead);
        QVERIFY(t.run());

        // A replaced file is no longer in place, so this also finds its original in the backup.
        verifyNothingLost(before, checksums(t.productRoot));
        for (const QString& rel : t.replaced)
            QCOMPARE(readFile(t.navData + "/" + rel), "new content of " + rel.toUtf8());
        for (int i = 0; i < t.added.size(); ++i)
            QCOMPARE(readFile(t.navData + "/" + t.added[i]), QByteArray(100 + i, char('a' + i)));
        QCOMPARE(readFile(t.navData + "/QMK_DS1_back/cycle_info.txt"), kOldCycle);
        QVERIFY(QFileInfo(t.navData + "/QMK_DS1_back/_V_1801_R_1").isDir());
        QCOMPARE(t.product->GetCycleVersion(), QString("1802"));
        QCOMPARE(t.product->GetBackCycleVersion(), QString("1801"));
        QCOMPARE(int(t.product->GetInstallState()), int(QMK_STATE_INSTALL_OK));
        QCOMPARE(t.engine.GetResult(), QString(" + Install success Prod A\r\n"));
        QCOMPARE(begin.count(), 1);
        QVERIFY(begin.at(0).at(0).toULongLong() > 0);
        QVERIFY(!QFileInfo::exists(t.app.path() + "/downloads/temp"));
        // The password stays out of the log, which users send to support.
        QVERIFY(t.log().contains("unzip -o -P **** \"" + t.archive().toUtf8() + "\" -d \"" + t.app.path().toUtf8() +
                                 "/downloads/temp\""));
        QVERIFY(!t.log().contains("pralvek"));

        // A second install of the same cycle keeps the first backup as it is.
        QCOMPARE(t.makeArchive(), QString());
        const QMap<QString, QByteArray> backups = checksums(t.navData + "/QMK_DS1_back");
        t.engine.ResetResult();
        t.product->SetResetOrUpdateDone(false);
        QVERIFY(t.run());
        QCOMPARE(checksums(t.navData + "/QMK_DS1_back"), backups);
        QCOMPARE(t.engine.GetResult(), QString(" + Install success Prod A\r\n"));

        // Ending the run settles the states and records the version.
        t.engine.StopInstall();
        QCOMPARE(t.product->GetInstalledVersion(), QString("1802"));
    }

    static bool everyEntryRefused(const QString& archive)
    {
        QProcess list;
        list.start("unzip", {"-Z1", archive});
        list.waitForFinished(30000);
        int files = 0;
        for (const QString& entry :
             QString::fromLocal8Bit(list.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts))
            files += entry.endsWith('/') ? 0 : 1;
        QProcess test;
        test.start("unzip", {"-t", "-P", "pralvek", archive});
        test.waitForFinished(30000);
        const QString out = QString::fromLocal8Bit(test.readAllStandardOutput() + test.readAllStandardError());
        // One "skipping: NAME  incorrect password" line per refused entry; the summary line does not count.
        return files > 0 && out.count(QRegularExpression("skipping: [^\n]*incorrect password")) == files;
    }

    // clang-format off
    void failures_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QString>("folder");
        QTest::addColumn<int>("state");      // -1: depends on the user's rights
        QTest::addColumn<QString>("result"); // "*": not checked
        QTest::addColumn<QString>("logLine");
        QTest::addColumn<bool>("ready"); // SignalInstallReady expected
        QTest::addColumn<QStringList>("removed");

        const QString failed = "Error: Install failed Prod A\r\n";
        const QString success = " + Install success Prod A\r\n";
        QTest::newRow("corrupt archive")
            << "corrupt" << "Prod A" << 6 << failed << "!!WARNING unzip ended with code" << true << QStringList();
        QTest::newRow("truncated archive")
            << "truncated" << "Prod A" << 6 << failed << "!!WARNING unzip ended with code" << true << QStringList();
        QTest::newRow("wrong password")
            << "password" << "Prod A" << 6 << failed << "!!WARNING unzip ended with code" << true << QStringList();
        QTest::newRow("archive missing")
            << "missing" << "Prod A" << 6 << "Error: File DS1.zip not found\r\n" + failed << "!! Error: file " << true
            << QStringList();
        QTest::newRow("unzip crashes")
            << "crash" << "Prod A" << 6 << failed << "!!Error UPDATE-RESULT == UNZIP FAILED Prod A" << false
            << QStringList();
        QTest::newRow("unzip not on the search path")
            << "nounzip" << "Prod A" << 6 << failed << "!!ERROR unzip not found on the search path" << true
            << QStringList();
        QTest::newRow("target folder missing")
            << "nofolder" << "Prod A" << 6 << "Error: Path not found Prod A\r\n" + failed << "---UnzippDataset" << true
            << QStringList();
        QTest::newRow("read-only target files")
            << "rofiles" << "Prod A" << 5 << success << "FileCopyThreadFinishedSlot" << true << QStringList();
        QTest::newRow("read-only target folder")
            << "rofolder" << "Prod A" << -1 << "*" << "FileCopyThreadFinishedSlot" << true << QStringList();
        QTest::newRow("remove-file entry outside the product")
            << "outside" << "Prod A" << 5 << "*" << "!!WARNING remove-file entry outside the product" << true
            << QStringList{"Prod A/NavData/obsolete.dat"};
        QTest::newRow("blanks, quotes and non-ASCII in the folder")
            << "" << QString::fromUtf8("Prod \"A\" 'Ü' \xe6\x97\xa5 x") << 5 << success << "FileCopyThreadFinishedSlot"
            << true << QStringList();
    }
    // clang-format on

    void failures()
    {
        QFETCH(QString, fault);
        QFETCH(QString, folder);
        QFETCH(int, state);
        QFETCH(QString, result);
        QFETCH(QString, logLine);
        QFETCH(bool, ready);
        QFETCH(QStringList, removed);

        Install t(folder);
        QCOMPARE(t.makeArchive(fault == "password" ? "notright" : "pralvek"), QString());
        // The password check lets about one entry in 256 through as garbage; make an archive in
        // which every entry is refused, so that the row is about a wrong password and nothing else.
        for (int attempt = 0; fault == "password" && !everyEntryRefused(t.archive()) && attempt < 20; ++attempt)
            QCOMPARE(t.makeArchive("notright"), QString());
        DatasetFiles::ToolPath tools(fault == "nounzip");
        if (fault == "corrupt") {
            QByteArray junk(5000, 'x');
            for (int i = 0; i < junk.size(); ++i)
                junk[i] = char((i * 131) % 251);
            QVERIFY(writeFile(t.archive(), junk));
        } else if (fault == "truncated") {
            const QByteArray whole = readFile(t.archive());
            QVERIFY(writeFile(t.archive(), whole.left(whole.size() / 2)));
        } else if (fault == "missing") {
            QVERIFY(QFile::remove(t.archive()));
        } else if (fault == "crash") {
            QVERIFY(tools.addScript("unzip", "kill -SEGV $$"));
        } else if (fault == "nofolder") {
            t.product->InitNewProdPath(t.work.path() + "/gone");
        } else if (fault == "rofiles") {
            for (const QString& rel : t.replaced)
                QFile::setPermissions(t.navData + "/" + rel, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther);
        } else if (fault == "rofolder") {
            QFile::setPermissions(t.navData, QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther);
        } else if (fault == "outside") {
            QVERIFY(writeFile(t.navData + "/obsolete.dat", "to be removed"));
            t.product->AddRemoveFilePath("$ProductPath/NavData/obsolete.dat");
            t.product->AddRemoveFilePath("$ProductPath/../outside.txt");
        }
        const QMap<QString, QByteArray> before = checksums(t.work.path(), {"new"});

        QSignalSpy readySpy(&t.engine, &CDSVersion::SignalInstallReady);
        QSignalSpy resultSpy(&t.engine, &CDSVersion::SignalWriteResult);
        QVERIFY(t.engine.InstallProducts());
        QTRY_VERIFY_WITH_TIMEOUT(!readySpy.isEmpty() || (!ready && !resultSpy.isEmpty()), 30000);
        QTest::qWait(ready ? 0 : 300);
        QCOMPARE(readySpy.count(), ready ? 1 : 0);

        if (fault == "rofolder")
            QFile::setPermissions(t.navData, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        if (state == -1)
            state = getuid() == 0 ? 5 : int(t.product->GetInstallState());
        QCOMPARE(int(t.product->GetInstallState()), state);
        if (result != "*")
            QCOMPARE(t.engine.GetResult(), result);
        QVERIFY2(t.log().contains(logLine.toUtf8()), t.log().right(600).constData());
        verifyNothingLost(before, checksums(t.work.path(), {"new"}), removed);
        for (const QString& rel : removed)
            QVERIFY(!QFileInfo::exists(t.work.path() + "/" + rel));
        QVERIFY(!QFileInfo::exists(t.app.path() + "/downloads/temp"));
        if (state == 6)
            QCOMPARE(readFile(t.navData + "/cycle_info.txt"), folder.isEmpty() ? QByteArray() : kOldCycle);
    }

    // zip -y stores links as links; none of them may carry the install out of the product.
    void archiveWithLinks()
    {
        Install t;
        QVERIFY(writeFile(t.work.path() + "/secret/keep.txt", "outside the product"));
        QVERIFY(QFile::link("../../secret", t.newTree + "/NavData/escape"));
        QVERIFY(QFile::link("/", t.newTree + "/NavData/Added/root"));
        QVERIFY(QFile::link("cycle_info.txt", t.newTree + "/NavData/cycle_link.txt"));
        QCOMPARE(t.makeArchive("pralvek", true), QString());
        const QMap<QString, QByteArray> before = checksums(t.work.path(), {"new"});
        QVERIFY(t.run());

        const QMap<QString, QByteArray> after = checksums(t.work.path(), {"new"});
        verifyNothingLost(before, after);
        QCOMPARE(checksums(t.work.path() + "/secret"),
                 (QMap<QString, QByteArray>{{"keep.txt", before["secret/keep.txt"]}}));
        for (const char* name : {"escape", "Added/root", "cycle_link.txt"}) {
            const QFileInfo info(t.navData + "/" + name);
            QVERIFY2(!info.exists() || info.isSymLink(), qPrintable(name)); // never a copy of the target
        }
        QCOMPARE(readFile(t.navData + "/cycle_info.txt"), kNewCycle);
        QCOMPARE(int(t.product->GetInstallState()), int(QMK_STATE_INSTALL_OK));
    }
};

QTEST_MAIN(TestDSInstall)
#include "TestDSInstall.moc"
