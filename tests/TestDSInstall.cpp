#include "model/CDataModel.h"
#include "model/CProduct.h"
#include "support/DatasetFiles.h"
#include "support/InstallProducts.h"
#include "support/MessageBoxSpy.h"
#include "ui/wdgBackupLocal.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTest>

#include <unistd.h>

using namespace DatasetFiles;

// The dataset engine's install and reset of a product, with the faults a user's machine has; and
// the archive of the whole cycle folder, made and loaded back from the settings.
class TestDSInstall : public QObject
{
    Q_OBJECT

private slots:
    void installsWithBackups()
    {
        InstallProducts t(1, 30);
        CProduct* p = t.product(0);
        QSignalSpy begin(&t.engine, &CDSVersion::SignalBeginCopyThead);
        QSignalSpy written(&t.engine, &CDSVersion::SignalFileWritten);
        QVERIFY(t.install());

        // Every file was replaced, so this also finds each original in the backup.
        const QMap<QString, QByteArray> installed = t.sums();
        verifyNothingLost(t.original, installed);
        const QMap<QString, QByteArray> expected = checksums(t.newTree(0));
        for (auto it = expected.cbegin(); it != expected.cend(); ++it)
            QCOMPARE(installed.value("Prod_0/" + it.key()), it.value());
        QVERIFY(QFileInfo(t.nav(0) + "/QMK_DS_0_back/_V_1801_R_1").isDir());
        QCOMPARE(p->GetCycleVersion(), QString("1802"));
        QCOMPARE(p->GetBackCycleVersion(), QString("1801"));
        QCOMPARE(int(p->GetInstallState()), int(QMK_STATE_INSTALL_OK));
        QCOMPARE(t.engine.GetResult(), QString(" + Install success Prod_0\r\n"));
        // The progress ends at the total announced at the start.
        QCOMPARE(begin.count(), 1);
        QVERIFY(begin.at(0).at(0).toULongLong() > 0);
        QCOMPARE(written.last().at(0), begin.at(0).at(0));
        QVERIFY(!QFileInfo::exists(t.app.path() + "/downloads/temp"));
        // The password stays out of the log, which users send to support.
        const QByteArray log = t.app.readFile("log/log_dsupdate.txt");
        QVERIFY(log.contains("unzip -o -P **** \"" + t.archive(0).toUtf8() + "\" -d \"" + t.app.path().toUtf8() +
                             "/downloads/temp\""));
        QVERIFY(!log.contains("pralvek"));

        // A second install of the same cycle keeps the first backup as it is.
        QCOMPARE(zipFolder(t.newTree(0), t.archive(0)), QString());
        const QMap<QString, QByteArray> backups = checksums(t.nav(0) + "/QMK_DS_0_back");
        t.engine.ResetResult();
        p->SetResetOrUpdateDone(false);
        QVERIFY(t.install());
        QCOMPARE(checksums(t.nav(0) + "/QMK_DS_0_back"), backups);
        QCOMPARE(t.engine.GetResult(), QString(" + Install success Prod_0\r\n"));

        // Ending the run settles the states and records the version.
        t.engine.StopInstall();
        QCOMPARE(p->GetInstalledVersion(), QString("1802"));
    }

    // clang-format off
    void failures_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QString>("folder");
        QTest::addColumn<int>("state");
        QTest::addColumn<QString>("result");
        QTest::addColumn<QString>("logLine");
        QTest::addColumn<bool>("ready"); // SignalInstallReady expected

        const QString failed = "Error: Install failed Prod_0\r\n";
        const QString success = " + Install success Prod_0\r\n";
        QTest::newRow("corrupt archive")
            << "corrupt" << "Prod" << 6 << failed << "!!WARNING unzip ended with code" << true;
        QTest::newRow("archive missing")
            << "missing" << "Prod" << 6 << "Error: File DS_0.zip not found\r\n" + failed << "!! Error: file " << true;
        QTest::newRow("unzip crashes")
            << "crash" << "Prod" << 6 << failed << "!!Error UPDATE-RESULT == UNZIP FAILED Prod_0" << false;
        QTest::newRow("unzip not on the search path")
            << "nounzip" << "Prod" << 6 << failed << "!!ERROR unzip not found on the search path" << true;
        QTest::newRow("target folder missing")
            << "nofolder" << "Prod" << 6 << "Error: Path not found Prod_0\r\n" + failed << "---UnzippDataset" << true;
        QTest::newRow("read-only target files")
            << "rofiles" << "Prod" << 5 << success << "FileCopyThreadFinishedSlot" << true;
        QTest::newRow("blanks, quotes and non-ASCII in the folder")
            << "" << QString::fromUtf8("Prod \"A\" '\xc3\x9c' \xe6\x97\xa5 x") << 5 << success
            << "FileCopyThreadFinishedSlot" << true;
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

        InstallProducts t(1, 30, folder);
        DatasetFiles::ToolPath tools(fault == "nounzip");
        if (fault == "corrupt") {
            QVERIFY(writeFile(t.archive(0), QByteArray(5000, '\x07')));
        } else if (fault == "missing") {
            QVERIFY(QFile::remove(t.archive(0)));
        } else if (fault == "crash") {
            QVERIFY(tools.addScript("unzip", "kill -SEGV $$"));
        } else if (fault == "nofolder") {
            t.product(0)->InitNewProdPath(t.work.path() + "/gone");
        } else if (fault == "rofiles") {
            QDirIterator it(t.nav(0), QDir::Files, QDirIterator::Subdirectories);
            while (it.hasNext())
                QFile::setPermissions(it.next(), QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther);
        }

        QSignalSpy readySpy(&t.engine, &CDSVersion::SignalInstallReady);
        QSignalSpy resultSpy(&t.engine, &CDSVersion::SignalWriteResult);
        QVERIFY(t.engine.InstallProducts());
        QTRY_VERIFY_WITH_TIMEOUT(!readySpy.isEmpty() || (!ready && !resultSpy.isEmpty()), 30000);
        QTest::qWait(ready ? 0 : 300);
        QCOMPARE(readySpy.count(), ready ? 1 : 0);
        QCOMPARE(int(t.product(0)->GetInstallState()), state);
        QCOMPARE(t.engine.GetResult(), result);
        const QByteArray log = t.app.readFile("log/log_dsupdate.txt");
        QVERIFY2(log.contains(logLine.toUtf8()), log.right(600).constData());
        verifyNothingLost(t.original, t.sums());
        QVERIFY(!QFileInfo::exists(t.app.path() + "/downloads/temp"));
        if (state == 6)
            QCOMPARE(t.sums(), t.original);
    }

    void resetBadInput_data()
    {
        QTest::addColumn<QString>("damage");
        QTest::addColumn<int>("state");
        QTest::addColumn<QString>("result");

        const QString ok = " + Reset success Prod_0 ( V. 1801 R. 1 )\r\n";
        QTest::newRow("no backup present") << "noinstall" << 6 << "Error: not found backup for Prod_0\r\n";
        QTest::newRow("marker names another cycle") << "marker" << 5 << ok;
        QTest::newRow("read-only files") << "readonly" << 5 << ok;
        QTest::newRow("install paths unresolved") << "nopath" << 6 << "Error: Path not found Prod_0\r\n";
    }

    void resetBadInput()
    {
        QFETCH(QString, damage);
        QFETCH(int, state);
        QFETCH(QString, result);

        InstallProducts t(1, 25);
        CProduct* p = t.product(0);
        if (damage != "noinstall")
            QVERIFY(t.install());
        if (damage == "marker") {
            const QString back = t.nav(0) + "/QMK_DS_0_back";
            QVERIFY(QDir().rename(back + "/_V_1801_R_1", back + "/_V_1705_R_3"));
        } else if (damage == "readonly") {
            QDirIterator it(t.nav(0), QDir::Files, QDirIterator::Subdirectories);
            while (it.hasNext())
                QFile::setPermissions(it.next(), QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther);
        } else if (damage == "nopath") {
            p->InitNewProdPath(t.work.path() + "/nowhere");
        }
        const QMap<QString, QByteArray> before = t.sums();

        QVERIFY(t.reset());
        QCOMPARE(int(p->GetInstallState()), state);
        QCOMPARE(t.engine.GetResult(), result);
        QCOMPARE(t.sums(), state == 5 ? t.original : before);
    }

    // The cycle folder saved to an archive and loaded back over changed data; and the ways that
    // go wrong, which leave the folder as it was.
    void backupArchive_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<bool>("load");
        QTest::addColumn<QString>("status");
        QTest::addColumn<int>("boxes");

        QTest::newRow("saved, then loaded back") << "" << true << "Load backup successful" << 0;
        QTest::newRow("no local cycle data") << "empty" << false << "" << 1;
        QTest::newRow("save dialog cancelled") << "cancel" << false << "" << 0;
        QTest::newRow("open dialog cancelled") << "cancel" << true << "" << 0;
        // zip ends normally with an error code here; only a crash reads as failed.
        QTest::newRow("archive folder missing") << "nofolder" << false << "Create backup successful" << 0;
        QTest::newRow("zip not on the search path") << "notools" << false << "Create backup failed" << 0;
        QTest::newRow("unzip not on the search path") << "notools" << true << "Load backup failed" << 0;
        QTest::newRow("corrupt archive") << "corrupt" << true << "Load backup failed" << 0;
        QTest::newRow("foreign archive") << "foreign" << true << "Load backup failed" << 0;
        QTest::newRow("archive vanished") << "vanished" << true << "Load backup: failed" << 0;
    }

    void backupArchive()
    {
        QFETCH(QString, fault);
        QFETCH(bool, load);
        QFETCH(QString, status);
        QFETCH(int, boxes);

        TempAppDir app;
        QTemporaryDir work;
        MessageBoxSpy spy;
        CDataModel model;
        CDSVersion* engine = model.GetDSVersion();
        engine->Init("1.0");
        const QString cycle = engine->GetCycleDirectory();
        if (fault != "empty") {
            writeRandomTree(cycle, 30, 5);
            writeFile(cycle + "/versionList.txt", "Revision: 2\nAIRAC 1802\n");
        }
        QString archive = work.path() + "/my backups/backup.zip";
        QDir().mkpath(work.path() + "/my backups");
        if (fault.isEmpty())
            writeFile(archive, "an older file in the way");
        else if (fault == "nofolder")
            archive = work.path() + "/missing/backup.zip";
        else if (fault == "corrupt")
            writeFile(archive, QByteArray(3000, '\x07'));
        else if (fault == "foreign") {
            writeFile(work.path() + "/other/QuillmarkCycle.txt", "not a cycle backup");
            QCOMPARE(zipFolder(work.path() + "/other", archive, QString()), QString());
        } else if (fault == "notools")
            zipFolder(app.path() + "/downloads", archive, QString());
        QMap<QString, QByteArray> before = checksums(app.path() + "/downloads");

        QList<wdgBackupLocal::FileRequest> asked;
        const auto previous = wdgBackupLocal::setFileDialogHook([&](QWidget*, const wdgBackupLocal::FileRequest& r) {
            asked << r;
            return fault == "cancel" ? QString() : fault == "vanished" ? work.path() + "/gone.zip" : archive;
        });
        ToolPath tools(fault == "notools");
        wdgBackupLocal panel;
        panel.Init(&model);
        QSignalSpy zipped(engine, &CDSVersion::SignalZipBackProcessFinished);
        QSignalSpy unzipped(engine, &CDSVersion::SignalUnZipBackProcessFinished);
        if (fault.isEmpty()) {
            panel.ClickedCreateBackup();
            QVERIFY(panel.IsBusy());
            QVERIFY(zipped.wait(30000));
            QCOMPARE(zipped.at(0).at(0).toBool(), true);
            QCOMPARE(panel.GetStatusText(), QString("Create backup successful"));
            QCOMPARE(asked.size(), 1);
            QCOMPARE(asked[0].proposedName, QString("Quillmark_1802_2.zip"));
            QVERIFY(app.readFile("log/log_dsupdate.txt")
                        .contains("zip -r \"" + archive.toUtf8() + "\" \"QuillmarkCycle\""));
            // Change the cycle data; the load gives it back, and leaves a file the archive lacks.
            QDir(cycle + "/Airports").removeRecursively();
            for (const QString& key : checksums(cycle).keys())
                writeFile(cycle + "/" + key, "changed");
            writeFile(cycle + "/extra.txt", "stays");
            before.insert("QuillmarkCycle/extra.txt", checksums(cycle).value("extra.txt"));
        }
        if (load)
            panel.ClickedLoadBackup();
        else
            panel.ClickedCreateBackup();
        QSignalSpy& done = load ? unzipped : zipped;
        const bool expectSignal = !status.isEmpty() && fault != "vanished";
        if (expectSignal)
            QVERIFY(!done.isEmpty() || done.wait(30000));
        else
            QTest::qWait(100);
        QCOMPARE(done.count(), expectSignal ? 1 : 0);
        if (expectSignal)
            QCOMPARE(done.at(0).at(0).toBool(), status.endsWith("successful"));
        QVERIFY2(status.isEmpty() ? panel.GetStatusText().isEmpty() : panel.GetStatusText().startsWith(status),
                 qPrintable(panel.GetStatusText()));
        QVERIFY(!panel.IsBusy());
        if (!asked.isEmpty())
            QCOMPARE(asked.last().save, !load);
        QCOMPARE(spy.count(), boxes);
        if (boxes) {
            QCOMPARE(spy.boxes().at(0).title, QString("Error"));
            QCOMPARE(spy.boxes().at(0).text, QString("backup empty"));
        }
        QCOMPARE(checksums(app.path() + "/downloads"), before);
        wdgBackupLocal::setFileDialogHook(previous);
    }
};

QTEST_MAIN(TestDSInstall)
#include "TestDSInstall.moc"
