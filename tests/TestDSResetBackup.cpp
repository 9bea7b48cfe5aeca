#include "engine/CDSVersion.h"
#include "model/CDataModel.h"
#include "model/CInstallGroupList.h"
#include "model/CProduct.h"
#include "model/CProductList.h"
#include "support/DatasetFiles.h"
#include "support/MessageBoxSpy.h"
#include "support/TempAppDir.h"
#include "ui/wdgBackupLocal.h"

#include <QDir>
#include <QDirIterator>
#include <QSignalSpy>
#include <QTest>

using namespace DatasetFiles;

namespace {
// Product Prod_0 of dataset DS_0 with a random NavData tree of cycle 1801, and an archive of
// cycle 1802 with another random tree (names partly shared).
struct Product
{
    TempAppDir app;
    QTemporaryDir work;
    CProductList products;
    CInstallGroupList groups;
    CDSVersion engine;
    CProduct* p = nullptr;
    QString nav;
    QMap<QString, QByteArray> original; // relative to the product folder, before the install

    Product()
    {
        engine.Init("1.0");
        writeFile(engine.GetCycleDirectory() + "/versionList.txt", "Revision: 1\n1802\n");
        nav = work.path() + "/Prod_0/NavData";
        writeRandomTree(nav, 25, 77);
        writeFile(nav + "/cycle_info.txt", "AIRAC cycle    : 1801\r\nRevision       : 1\r\n");
        const QString tree = work.path() + "/new";
        writeRandomTree(tree + "/NavData", 20, 177);
        writeFile(tree + "/NavData/cycle_info.txt", "AIRAC cycle    : 1802\r\nRevision       : 1\r\n");
        zipFolder(tree, engine.GetCycleDirectory() + "/DS_0.zip");
        p = addNavDataProduct(products, "Prod_0", "DS_0", work.path() + "/Prod_0");
        groups.AssignProduct(p);
        engine.SetProductList(&products);
        original = sums();
    }
    QMap<QString, QByteArray> sums() const { return checksums(work.path() + "/Prod_0"); }
    bool install()
    {
        QSignalSpy ready(&engine, &CDSVersion::SignalInstallReady);
        engine.InstallProducts();
        return ready.wait(30000);
    }
    bool reset()
    {
        engine.ResetResult();
        engine.SetSingleProduct(p);
        QSignalSpy ready(&engine, &CDSVersion::SignalResetReady);
        engine.Reset(&products);
        return !ready.isEmpty() || ready.wait(30000);
    }
};

void verifyOriginals(const QMap<QString, QByteArray>& original, const QMap<QString, QByteArray>& now,
                     const QStringList& except = {})
{
    for (auto it = original.cbegin(); it != original.cend(); ++it)
        if (!except.contains(it.key()))
            QVERIFY2(now.value(it.key()) == it.value(), qPrintable("not restored: " + it.key()));
}
} // namespace

class TestDSResetBackup : public QObject
{
    Q_OBJECT

private slots:
    void resetBadInput_data()
    {
        QTest::addColumn<QString>("damage");
        QTest::addColumn<int>("state");
        QTest::addColumn<QString>("result");

        const QString ok = " + Reset success Prod_0 ( V. 1801 R. 1 )\r\n";
        QTest::newRow("no backup present") << "noinstall" << 6 << "Error: not found backup for Prod_0\r\n";
        QTest::newRow("reset twice") << "twice" << 6 << "Error: not found backup for Prod_0\r\n";
        QTest::newRow("partial backup") << "partial" << 5 << ok;
        QTest::newRow("marker names another cycle") << "marker" << 5 << ok;
        QTest::newRow("read-only files") << "readonly" << 5 << ok;
        QTest::newRow("sub-folder removed before the run") << "removed" << 5 << ok;
        QTest::newRow("install paths unresolved") << "nopath" << 6 << "Error: Path not found Prod_0\r\n";
    }

    void resetBadInput()
    {
        QFETCH(QString, damage);
        QFETCH(int, state);
        QFETCH(QString, result);

        Product t;
        CProduct* p = t.p;
        const QString& nav = t.nav;
        QStringList gone; // originals the damage itself took away
        if (damage != "noinstall")
            QVERIFY(t.install());
        if (damage == "twice") {
            QVERIFY(t.reset());
        } else if (damage == "partial") {
            const QFileInfoList saved = QDir(nav + "/QMK_DS_0_back").entryInfoList(QDir::Files, QDir::Name);
            QVERIFY(saved.size() > 1);
            const QString victim =
                saved.first().fileName() == "cycle_info.txt" ? saved.at(1).fileName() : saved.first().fileName();
            QVERIFY(QFile::remove(nav + "/QMK_DS_0_back/" + victim));
            gone << "NavData/" + victim;
        } else if (damage == "marker") {
            QVERIFY(QDir().rename(nav + "/QMK_DS_0_back/_V_1801_R_1", nav + "/QMK_DS_0_back/_V_1705_R_3"));
        } else if (damage == "readonly") {
            QDirIterator it(nav, QDir::Files, QDirIterator::Subdirectories);
            while (it.hasNext())
                QFile::setPermissions(it.next(), QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther);
        } else if (damage == "removed") {
            QVERIFY(QDir(nav + "/Airports").removeRecursively());
            for (const QString& key : t.original.keys())
                if (key.startsWith("NavData/Airports/"))
                    gone << key;
        } else if (damage == "nopath") {
            p->InitNewProdPath(t.work.path() + "/nowhere");
        }
        const QMap<QString, QByteArray> before = t.sums();

        QVERIFY(t.reset());
        QCOMPARE(int(p->GetInstallState()), state);
        QCOMPARE(t.engine.GetResult(), result);
        if (state == 5)
            verifyOriginals(t.original, t.sums(), gone);
        else if (damage != "twice")
            QCOMPARE(t.sums(), before);
    }

    void backupArchiveRoundTrip()
    {
        TempAppDir app;
        QTemporaryDir work;
        CDataModel model;
        CDSVersion* engine = model.GetDSVersion();
        engine->Init("1.0");
        const QString cycle = engine->GetCycleDirectory();
        writeRandomTree(cycle, 30, 5);
        writeFile(cycle + "/versionList.txt", "Revision: 2\nAIRAC 1802\n");
        const QMap<QString, QByteArray> saved = checksums(cycle);
        const QString archive = work.path() + "/my backups/old.zip";
        writeFile(archive, "an older file in the way");

        QList<wdgBackupLocal::FileRequest> asked;
        const auto previous = wdgBackupLocal::setFileDialogHook([&](QWidget*, const wdgBackupLocal::FileRequest& r) {
            asked << r;
            return archive;
        });
        wdgBackupLocal panel;
        panel.Init(&model);

        QSignalSpy zipped(engine, &CDSVersion::SignalZipBackProcessFinished);
        panel.ClickedCreateBackup();
        QVERIFY(panel.IsBusy());
        QVERIFY(zipped.wait(30000));
        QCOMPARE(zipped.at(0).at(0).toBool(), true);
        QCOMPARE(panel.GetStatusText(), QString("Create backup successful"));
        QVERIFY(!panel.IsBusy());
        QCOMPARE(asked.size(), 1);
        QCOMPARE(asked[0].proposedName, QString("Quillmark_1802_2.zip"));
        QVERIFY(asked[0].save);
        QVERIFY(
            app.readFile("log/log_dsupdate.txt").contains("zip -r \"" + archive.toUtf8() + "\" \"QuillmarkCycle\""));

        // Change the cycle data, then load the archive back over it.
        QDir(cycle + "/Airports").removeRecursively();
        for (const QString& key : saved.keys())
            if (!key.startsWith("Airports"))
                writeFile(cycle + "/" + key, "changed");
        writeFile(cycle + "/extra.txt", "stays");
        QSignalSpy unzipped(engine, &CDSVersion::SignalUnZipBackProcessFinished);
        panel.ClickedLoadBackup();
        QVERIFY(unzipped.wait(30000));
        QCOMPARE(unzipped.at(0).at(0).toBool(), true);
        QCOMPARE(panel.GetStatusText(), QString("Load backup successful"));
        QMap<QString, QByteArray> expected = saved;
        expected.insert("extra.txt", checksums(cycle).value("extra.txt"));
        QCOMPARE(checksums(cycle), expected);
        QVERIFY(!asked[1].save);
        wdgBackupLocal::setFileDialogHook(previous);
    }

    void backupArchiveBadInput_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<bool>("load");
        QTest::addColumn<QString>("status");
        QTest::addColumn<int>("boxes");

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

    void backupArchiveBadInput()
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
            writeRandomTree(cycle, 5, 9);
            writeFile(cycle + "/versionList.txt", "1802\n");
        }
        QString archive = work.path() + "/backup.zip";
        if (fault == "nofolder")
            archive = work.path() + "/missing/backup.zip";
        else if (fault == "corrupt")
            writeFile(archive, QByteArray(3000, '\x07'));
        else if (fault == "foreign") {
            writeFile(work.path() + "/other/QuillmarkCycle.txt", "not a cycle backup");
            QCOMPARE(zipFolder(work.path() + "/other", archive, QString()), QString());
        } else if (fault == "notools")
            zipFolder(app.path() + "/downloads", archive, QString());
        const QMap<QString, QByteArray> before = checksums(app.path() + "/downloads");

        const auto previous = wdgBackupLocal::setFileDialogHook([&](QWidget*, const wdgBackupLocal::FileRequest&) {
            return fault == "cancel" ? QString() : fault == "vanished" ? work.path() + "/gone.zip" : archive;
        });
        ToolPath tools(fault == "notools");
        wdgBackupLocal panel;
        panel.Init(&model);
        QSignalSpy zipped(engine, &CDSVersion::SignalZipBackProcessFinished);
        QSignalSpy unzipped(engine, &CDSVersion::SignalUnZipBackProcessFinished);
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
        QCOMPARE(spy.count(), boxes);
        if (boxes) {
            QCOMPARE(spy.boxes().at(0).title, QString("Error"));
            QCOMPARE(spy.boxes().at(0).text, QString("backup empty"));
        }
        QCOMPARE(checksums(app.path() + "/downloads"), before);
        wdgBackupLocal::setFileDialogHook(previous);
    }
};

QTEST_MAIN(TestDSResetBackup)
#include "TestDSResetBackup.moc"
