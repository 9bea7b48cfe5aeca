#include "engine/CDSVersion.h"
#include "model/CDataModel.h"
#include "model/CProduct.h"
#include "support/DatasetFiles.h"
#include "support/MessageBoxSpy.h"
#include "support/SampleCatalogue.h"
#include "support/TempAppDir.h"
#include "support/TestServer.h"

#include <QDir>
#include <QSignalSpy>
#include <QTest>

using namespace DatasetFiles;

namespace {
// One product P1 of dataset DS1 in the program folder, whose data go into P1/p1.
QByteArray catalogue(const TempAppDir& app, const QString& server = QString())
{
    SampleCatalogue c;
    c.quietDefaults = false;
    c.server = server;
    c.categories = QStringList{"X-Plane 11"};
    c.datasets = QStringList{"DS1"};
    c.products << SampleCatalogue::Product("P1", "DS1", app.path() + "/P1", "X-Plane 11", true);
    c.products.last().installPath = "$ProductPath:\\p1";
    return c.CatalogueXml();
}
} // namespace

// Start-up of the two engines from the data model, against a real loopback server.
class TestDataModelEngines : public QObject
{
    Q_OBJECT

private slots:
    void startUp_data()
    {
        QTest::addColumn<bool>("appAuto");
        QTest::addColumn<bool>("dsAuto");
        QTest::addColumn<QStringList>("requests");
        QTest::addColumn<int>("state");    // of the product once everything is over
        QTest::addColumn<bool>("blocked"); // a folder stands where the application's version file goes

        const QString app = "/downloads/quillmark/mac_version.txt", ds = "/quillmark/versionList.txt";
        QTest::newRow("both off: no request") << false << false << QStringList() << 4 << false;
        QTest::newRow("datasets only") << false << true << QStringList{ds} << 7 << false;
        QTest::newRow("application only, datasets set up after it") << true << false << QStringList{app} << 4 << false;
        QTest::newRow("application first, then datasets") << true << true << QStringList{app, ds} << 7 << false;
        QTest::newRow("application check cannot save its file, datasets follow")
            << true << true << QStringList{ds} << 7 << true;
    }

    void startUp()
    {
        QFETCH(bool, appAuto);
        QFETCH(bool, dsAuto);
        QFETCH(QStringList, requests);
        QFETCH(int, state);
        QFETCH(bool, blocked);

        TempAppDir app;
        if (blocked)
            QVERIFY(QDir().mkpath(app.path() + "/downloads/mac_version.txt"));
        QTemporaryDir serverRoot;
        writeFile(serverRoot.path() + "/quillmark/versionList.txt", "Revision: 1\n1801\n");
        TestServer http(serverRoot.path());
        QVERIFY(http.start());
        QVERIFY(app.writeFile("bin/base_ini.xml", catalogue(app, http.hostAndPort())));
        QVERIFY(app.writeFile("bin/prop_ini.xml", SampleCatalogue::SettingsXml(dsAuto, appAuto, false, false)));

        CDataModel model;
        QSignalSpy appCheckOver(&model, &CDataModel::SignalDownloadVersionFinished);
        model.Init("1.2.3");
        CDSVersion* engine = model.GetDSVersion();
        // The dataset engine is set up in every case, after the application check if there is one.
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(app.path() + "/downloads/QuillmarkCycle").isDir(), 10000);
        QTRY_COMPARE_WITH_TIMEOUT(
            QSet<QString>(requests.begin(), requests.end()).size(),
            [&] {
                QSet<QString> seen;
                for (const TestServer::Request& r : http.requests())
                    seen << r.path;
                return seen.size();
            }(),
            10000);
        QTest::qWait(200);
        QStringList seen;
        for (const TestServer::Request& r : http.requests())
            if (!seen.contains(r.path))
                seen << r.path;
        QCOMPARE(seen, requests);
        QCOMPARE(appCheckOver.count(), appAuto ? 1 : 0);
        if (blocked)
            QVERIFY(app.readFile("log/log_qmkupdate.txt").contains("is in the way"));
        QCOMPARE(engine->GetServer(), http.hostAndPort());
        QCOMPARE(int(model.GetProductByName("P1")->GetInstallState()), state);

        // The settings' switches reach the engine; the engine's values go back into the file.
        QCOMPARE(engine->GetNavDataOverwriteAccept(), false);
        QCOMPARE(engine->GetCreateBackupFiles(), false);
        QCOMPARE(engine->GetLocalVersion(), true); // not in the file: the default
        engine->SetCreateBackupFiles(true);
        QVERIFY(model.Save());
        const QByteArray saved = app.readFile("bin/prop_ini.xml");
        QVERIFY(saved.contains("<CreateBackupFiles>1</CreateBackupFiles>"));
        QVERIFY(saved.contains("<NavDataOverwriteAccept>0</NavDataOverwriteAccept>"));
    }

    // A run cut off the last time is dealt with at start-up, and the user is told what was done.
    void startUpRecovers_data()
    {
        QTest::addColumn<QString>("run");
        QTest::addColumn<QByteArray>("cycleNow");
        QTest::addColumn<QString>("told");
        QTest::addColumn<QByteArray>("fileAfter");
        const QByteArray c1801 = "AIRAC cycle    : 1801\r\nRevision       : 1\r\n";
        const QByteArray c1802 = "AIRAC cycle    : 1802\r\nRevision       : 1\r\n";
        QTest::newRow("install cut off before its cycle file: undone")
            << "install" << c1801 << "The interrupted install of P1 was undone" << QByteArray("old");
        QTest::newRow("install cut off after its cycle file: completed")
            << "install" << c1802 << "The interrupted install of P1 was completed" << QByteArray("new");
        QTest::newRow("reset cut off: completed")
            << "reset" << c1802 << "The interrupted reset of P1 was completed" << QByteArray("old");
    }

    void startUpRecovers()
    {
        QFETCH(QString, run);
        QFETCH(QByteArray, cycleNow);
        QFETCH(QString, told);
        QFETCH(QByteArray, fileAfter);
        TempAppDir app;
        QVERIFY(app.writeFile("bin/base_ini.xml", catalogue(app)));
        QVERIFY(app.writeFile("bin/prop_ini.xml", SampleCatalogue::QuietSettingsXml()));
        // The product as a cut-off run left it: a file moved aside, the new one in its place.
        QVERIFY(app.writeFile("P1/a.dat", "new"));
        QVERIFY(app.writeFile("P1/cycle_info.txt", cycleNow));
        QVERIFY(app.writeFile("P1/QMK_DS1_back/a.dat", "old"));
        QVERIFY(app.writeFile("P1/QMK_DS1_back/cycle_info.txt", "AIRAC cycle    : 1801\r\nRevision       : 1\r\n"));
        QVERIFY(app.writeFile("P1/QMK_DS1_back/.qmk_run_r1", ""));
        QVERIFY(QDir().mkpath(app.filePath("P1/QMK_DS1_back/_V_1801_R_1")));
        QVERIFY(app.writeFile("P1/QMK_DS1_journal.txt",
                              "run: " + run.toUtf8() + "\nid: r1\nproduct: P1\ndataset: DS1\nfrom: 1801 1\nto: " +
                                  (run == "install" ? "1802 1" : "1801 1") + "\nbackups: 1\n"));

        MessageBoxSpy boxes;
        CDataModel model;
        model.Init("1.2.3");
        QCOMPARE(boxes.count(), 1);
        QCOMPARE(boxes.boxes().first().icon, QMessageBox::Information);
        QVERIFY2(boxes.boxes().first().text.contains(told), qPrintable(boxes.boxes().first().text));
        QCOMPARE(app.readFile("P1/a.dat"), fileAfter);
        QVERIFY(!QFileInfo::exists(app.filePath("P1/QMK_DS1_journal.txt")));
        QVERIFY(app.readFile("log/log_datamodel.txt").contains(told.toUtf8()));
        // Undone or reset, the backup is gone; completed, it stays for a later reset.
        QCOMPARE(QFileInfo::exists(app.filePath("P1/QMK_DS1_back/a.dat")), fileAfter == "new");
    }
};

QTEST_MAIN(TestDataModelEngines)
#include "TestDataModelEngines.moc"
