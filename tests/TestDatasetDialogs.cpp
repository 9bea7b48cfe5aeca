#include "app/Application.h"
#include "engine/CDSVersion.h"
#include "model/CDataModel.h"
#include "model/CProduct.h"
#include "support/DatasetFiles.h"
#include "support/DialogDriver.h"
#include "support/MessageBoxSpy.h"
#include "support/SampleCatalogue.h"
#include "support/TempAppDir.h"
#include "support/TestServer.h"
#include "support/UserInput.h"
#include "ui/DlgBackupRun.h"
#include "ui/DlgResetDataset.h"
#include "ui/QuillmarkMainWindow.h"
#include "ui/SystemButton.h"
#include "ui/VlBigComboBox.h"
#include "ui/VlCheckBox.h"
#include "ui/VlCycleDates.h"
#include "ui/VlFoldPane.h"
#include "ui/VlMessageLabel.h"
#include "ui/VlProdLabel.h"
#include "ui/VlProdListLabel.h"
#include "ui/VlPushButton.h"
#include "ui/dlgUpdateDatasetVersion.h"

#include <QLabel>
#include <QScopedPointer>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

#include <memory>

using namespace DatasetFiles;
using namespace UserInput;

namespace {
const QByteArray kOldCycle = "AIRAC cycle    : 1801\r\nRevision       : 1\r\n";
const QByteArray kNewCycle = "AIRAC cycle    : 1802\r\nRevision       : 1\r\n";

// A program folder with products holding cycle 1801, a loopback server offering 1802, and the
// main window, whose dialogs the test receives through the driver.
struct UpdateEnv
{
    struct Product
    {
        QString name;
        QString dataset;
        bool selected;
    };

    MessageBoxSpy boxes;
    TempAppDir app;
    QTemporaryDir work;
    QTemporaryDir serverRoot;
    std::unique_ptr<TestServer> http{new TestServer(serverRoot.path())};
    DialogDriver driver;
    QScopedPointer<QuillmarkMainWindow> window;
    QList<Product> products;
    QMap<QString, QByteArray> before;
    bool autoCheck = false;
    bool appCheck = false;
    bool overwriteAccepted = true;
    bool createBackups = true;

    UpdateEnv() { http->start(); }

    QString productRoot(const QString& name) const { return work.path() + "/" + name; }

    void addProduct(const QString& name, const QString& dataset, bool selected)
    {
        products << Product{name, dataset, selected};
        const QString nav = productRoot(name) + "/NavData";
        writeRandomTree(nav, 12, quint32(qHash(name)));
        writeFile(nav + "/a.dat", "old a of " + name.toUtf8());
        writeFile(nav + "/cycle_info.txt", kOldCycle);
    }
    // The archive of a dataset: a.dat replaced, one file added, cycle 1802.
    static QByteArray archiveOf(const QString& dataset, const QString& folder)
    {
        writeFile(folder + "/NavData/a.dat", "new a of " + dataset.toUtf8());
        writeFile(folder + "/NavData/Added/b.dat", "new b");
        writeFile(folder + "/NavData/cycle_info.txt", kNewCycle);
        const QString zip = folder + ".zip";
        if (!zipFolder(folder, zip).isEmpty())
            return QByteArray();
        return readFile(zip);
    }
    void serveCycle(const QStringList& datasets, const QByteArray& list = "Revision: 1\n1802\n")
    {
        writeFile(serverRoot.path() + "/quillmark/versionList.txt", list);
        for (const QString& dataset : datasets)
            writeFile(serverRoot.path() + "/quillmark/1802/" + dataset + ".zip",
                      archiveOf(dataset, work.path() + "/archive_" + dataset));
    }
    // A cycle already downloaded earlier: the local copy the dialog offers.
    void holdLocally(const QStringList& datasets, const QByteArray& list = "Revision: 1\n1802\n")
    {
        const QString cycleDir = app.path() + "/downloads/QuillmarkCycle";
        writeFile(cycleDir + "/versionList.txt", list);
        for (const QString& dataset : datasets)
            writeFile(cycleDir + "/" + dataset + ".zip", archiveOf(dataset, work.path() + "/local_" + dataset));
    }

    bool open(const QString& server = QString())
    {
        SampleCatalogue catalogue;
        catalogue.server = server.isEmpty() ? http->hostAndPort() : server;
        for (const Product& p : products) {
            if (!catalogue.datasets.contains(p.dataset))
                catalogue.datasets << p.dataset;
            catalogue.products << SampleCatalogue::NavDataProduct(p.name, p.dataset, productRoot(p.name), p.selected);
        }
        if (!app.writeFile("bin/base_ini.xml", catalogue.CatalogueXml()) ||
            !app.writeFile("bin/prop_ini.xml",
                           SampleCatalogue::SettingsXml(autoCheck, appCheck, overwriteAccepted, createBackups)))
            return false;
        before = checksums(work.path());
        window.reset(new QuillmarkMainWindow);
        Application::mainWnd = window.data();
        window->show();
        return QTest::qWaitForWindowExposed(window.data());
    }
    CDSVersion* engine() const { return window->GetDataModel()->GetDSVersion(); }
    // Opens the dialog by hand with the Update action button and waits until it has come and gone.
    bool clickUpdate()
    {
        const int opened = driver.count();
        clickAction(0);
        return QTest::qWaitFor([&] { return driver.count() > opened; }, 10000);
    }
    // Presses an action button; its dialog (if any) has come and gone when this returns.
    void clickAction(int index)
    {
        QWidget* button = window->GetActionButtons().at(index);
        QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, button->rect().center());
    }
    // Installs the locally held cycle through the update dialog.
    bool installLocalCopy()
    {
        bool installed = false;
        driver.then([&](QDialog* d) {
            auto* dialog = qobject_cast<dlgUpdateDatasetVersion*>(d);
            dialog->GetInstallButton()->click();
            installed = QTest::qWaitFor([&] { return dialog->GetState() == 8; }, 20000);
            dialog->GetOkButton()->click();
        });
        return clickUpdate() && installed;
    }
    VlProdLabel* card(const QString& name) const
    {
        for (VlProdLabel* c : window->GetProdList()->GetCards())
            if (c->GetProduct()->GetName() == name)
                return c;
        return nullptr;
    }
    ~UpdateEnv()
    {
        window.reset();
        Application::mainWnd = nullptr;
    }
};

dlgUpdateDatasetVersion* asUpdate(QDialog* dialog)
{
    return qobject_cast<dlgUpdateDatasetVersion*>(dialog);
}

// Every file that was there before is still there unchanged, or its bytes lie in the backup
// folder beside it: nothing of the user's is lost and nothing is mixed without a backup.
void verifyNothingLost(const QMap<QString, QByteArray>& before, const QMap<QString, QByteArray>& after)
{
    for (auto it = before.cbegin(); it != before.cend(); ++it) {
        const QFileInfo info(it.key());
        if (after.value(it.key()) == it.value())
            continue;
        bool backedUp = false;
        for (const QString dataset : {"DS1", "DS2"})
            backedUp =
                backedUp || after.value(info.path() + "/QMK_" + dataset + "_back/" + info.fileName()) == it.value();
        if (backedUp)
            continue;
        QFAIL(qPrintable("lost: " + it.key()));
    }
}
} // namespace

// The update, reset and backup-removal dialogs driven through the main window: a loopback server,
// real archives and real add-on folders.
class TestDatasetDialogs : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        Application::registerResources();
        // No translator: the dialogs show their built-in texts, which these tests check word for word.
        Application::setLanguage(QStringLiteral("en_US"));
    }

    // What the dialog offers when it opens, and what Return then does: the server's cycle whenever
    // it differs from the local copy, a downloaded cycle that waits to be installed, or why nothing
    // can be had.
    void startStates_data()
    {
        QTest::addColumn<QString>("server");   // "up", "down" (nothing listens) or "empty list"
        QTest::addColumn<QByteArray>("offer"); // the server's list
        QTest::addColumn<QString>("local");    // cycle downloaded earlier; empty: none
        QTest::addColumn<QString>("onCycle");  // cycle the product carries
        QTest::addColumn<int>("state");
        QTest::addColumn<QString>("message");
        QTest::addColumn<bool>("error");
        QTest::addColumn<QString>("reason"); // part of the line under the message
        QTest::addColumn<QString>("step");   // the default button: Download, Install, Retry or Ok
        const QByteArray offer1802 = "Revision: 1\n1802\n";
        QTest::newRow("new cycle") << "up" << offer1802 << ""
                                   << "1801" << 1 << "1802 ready for download." << false << ""
                                   << "Download";
        QTest::newRow("newer than the local copy") << "up" << QByteArray("Revision: 1\n1803\n") << "1802"
                                                   << "1802" << 1 << "1803 ready for download." << false << ""
                                                   << "Download";
        QTest::newRow("up to date") << "up" << offer1802 << "1802"
                                    << "1802" << 3 << "There are no new updates available." << false << ""
                                    << "Ok";
        QTest::newRow("server unreachable")
            << "down" << offer1802 << ""
            << "1801" << 2 << "Failed to connect to Velmora-Server." << true << "127.0.0.1:1 refused the connection"
            << "Retry";
        QTest::newRow("unreachable, a local copy waiting")
            << "down" << offer1802 << "1802"
            << "1801" << 9 << "Cycle 1802 is downloaded and ready to install." << false << "refused the connection"
            << "Install";
        QTest::newRow("empty list") << "empty list" << QByteArray() << ""
                                    << "1801" << 2 << "There are no new updates available." << false << ""
                                    << "Ok";
    }

    void startStates()
    {
        QFETCH(QString, server);
        QFETCH(QByteArray, offer);
        QFETCH(QString, local);
        QFETCH(QString, onCycle);
        QFETCH(int, state);
        QFETCH(QString, message);
        QFETCH(bool, error);
        QFETCH(QString, reason);
        QFETCH(QString, step);

        UpdateEnv env;
        env.addProduct("Alpha", "DS1", true);
        env.serveCycle({"DS1"}, offer);
        if (!local.isEmpty())
            env.holdLocally({"DS1"}, "Revision: 1\n" + local.toUtf8() + "\n");
        if (onCycle == "1802")
            writeFile(env.productRoot("Alpha") + "/NavData/cycle_info.txt", kNewCycle);
        QString offered, defaultButton, reasonShown;
        env.driver.then([&](QDialog* d) {
            dlgUpdateDatasetVersion* dialog = asUpdate(d);
            QCOMPARE(dialog->GetState(), state);
            QCOMPARE(dialog->GetMessageLabel()->text(), message);
            QCOMPARE(dialog->GetMessageLabel()->IsError(), error);
            reasonShown = dialog->GetReasonLabel()->isVisible() ? dialog->GetReasonLabel()->text() : QString();
            offered = dialog->GetVersionCombo()->currentText();
            for (VlPushButton* b : dialog->findChildren<VlPushButton*>())
                if (b->isDefault() && b->isVisible())
                    defaultButton = b->text();
            // The label never reads "Cycle V.  R. 1" without a cycle.
            QVERIFY(!dialog->GetVersionCombo()->itemText(0).contains("V.  R."));
        });
        QVERIFY(env.open(server == "down" ? QString("127.0.0.1:1") : QString()));
        QVERIFY(env.clickUpdate());
        QCOMPARE(defaultButton, step);
        QVERIFY2(reason.isEmpty() ? reasonShown.isEmpty() : reasonShown.contains(reason), qPrintable(reasonShown));
        // The choice the dialog opens with is the step it offers, never last month's cycle.
        if (step == "Install")
            QVERIFY2(offered.endsWith("( Local )"), qPrintable(offered));
        if (step == "Download")
            QVERIFY2(offered.endsWith("( Velmora-Server )"), qPrintable(offered));
        QCOMPARE(checksums(env.work.path()), env.before);
    }

    void versionChoiceAndGate()
    {
        UpdateEnv env;
        env.addProduct("Alpha", "DS1", true);
        env.serveCycle({"DS1"}, "Revision: 1\n1803\n");
        env.holdLocally({"DS1"});
        env.overwriteAccepted = false;
        env.driver.then([&](QDialog* d) {
            dlgUpdateDatasetVersion* dialog = asUpdate(d);
            VlBigComboBox* combo = dialog->GetVersionCombo();
            QCOMPARE(combo->count(), 2);
            QCOMPARE(combo->itemText(1), QString("Cycle V. 1802 R. 1 ( Local )"));
            QCOMPARE(combo->currentIndex(), 0); // the server offers a newer cycle
            // The dates of the cycle chosen, in the language's format.
            QCOMPARE(dialog->GetCycleDatesText(), QString("valid 1 Mar – 28 Mar 2018"));
            combo->setCurrentIndex(1);
            QCOMPARE(dialog->GetCycleDatesText(), QString("valid 1 Feb – 28 Feb 2018, expired 12 day(s) ago"));
            QVERIFY(dialog->GetInstallButton()->isVisible());
            QVERIFY(!dialog->GetInstallButton()->isEnabled());
            QVERIFY(dialog->GetDownloadButton()->isHidden());

            click(dialog->GetDetailsPane()->GetShowButton());
            QVERIFY(dialog->GetDetailsPane()->GetPane()->text().contains("  DS1\r\n"));
            const int open = dialog->height();
            combo->setCurrentIndex(0);
            QVERIFY(!dialog->GetDetailsPane()->IsOpen());
            QCOMPARE(dialog->height(), open - VlFoldPane::kPaneHeight);
            QVERIFY(!dialog->GetDetailsPane()->GetShowButton()->isEnabled());
            QVERIFY(dialog->GetDownloadButton()->isVisible());
            QVERIFY(!dialog->GetDownloadButton()->isEnabled());
            QVERIFY(dialog->GetInstallButton()->isHidden());
            QVERIFY(!dialog->GetDSVersion()->GetLocalVersion());

            tick(dialog->GetOverwriteAccept());
            QVERIFY(dialog->GetDownloadButton()->isEnabled());
            QVERIFY(dialog->GetDSVersion()->GetNavDataOverwriteAccept());
            tick(dialog->GetOverwriteAccept());
            QVERIFY(!dialog->GetDownloadButton()->isEnabled());
        });
        VlCycleDates::SetToday(QDate(2018, 3, 13));
        QVERIFY(env.open());
        QVERIFY(env.clickUpdate());
        VlCycleDates::SetToday(QDate());
        QCOMPARE(env.http->requestCount(), 1); // the list only
    }

    // With nothing selected every run is refused with a message, and nothing starts.
    void emptySelection_data()
    {
        QTest::addColumn<QString>("run");
        QTest::addColumn<QString>("text");
        const QString empty = "The Product-Select-List ist empty.\nPlease select products for ";
        QTest::newRow("Download") << "download" << empty + "update.";
        QTest::newRow("Install") << "install" << empty + "update.";
        QTest::newRow("reset") << "reset" << empty + "reset.";
        QTest::newRow("removal") << "removal" << empty + "remove backup.";
    }

    void emptySelection()
    {
        QFETCH(QString, run);
        QFETCH(QString, text);
        const bool local = run == "install";
        const bool update = local || run == "download";
        UpdateEnv env;
        env.addProduct("Alpha", "DS1", false);
        env.serveCycle({"DS1"});
        if (local)
            env.holdLocally({"DS1"});
        env.driver.then([&](QDialog* d) {
            dlgUpdateDatasetVersion* dialog = asUpdate(d);
            const int state = dialog->GetState();
            QCOMPARE(dialog->GetVersionCombo()->currentIndex(), local ? 1 : 0);
            click(local ? dialog->GetInstallButton() : dialog->GetDownloadButton());
            QCOMPARE(env.boxes.count(), 1);
            QCOMPARE(dialog->GetState(), state);
        });
        QVERIFY(env.open());
        if (update)
            QVERIFY(env.clickUpdate());
        else
            env.clickAction(run == "reset" ? 1 : 2);
        QCOMPARE(env.driver.count(), update ? 1 : 0);
        QCOMPARE(env.boxes.count(), 1);
        QCOMPARE(env.boxes.boxes().first().title, QString("Error"));
        QCOMPARE(env.boxes.boxes().first().text, text);
        QCOMPARE(env.http->requestCount(), update ? 1 : 0);
    }

    // Each fault shows its message, leaves the dialog open and the user's files whole.
    void downloadFaults_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<int>("state");
        QTest::addColumn<QString>("message");
        QTest::addColumn<bool>("error");
        QTest::addColumn<QString>("reason");
        QTest::newRow("server gone") << "gone" << 6 << "Failed to connect to Velmora-Server." << true
                                     << "refused the connection";
        // An answer that refuses the file keeps the file's own text; Return then repeats the step.
        QTest::newRow("401, then Retry") << "401" << 6 << "DS1 Download failed." << true
                                         << "refused the credentials (HTTP 401)";
        QTest::newRow("500") << "500" << 6 << "DS1 Download failed." << true << "server error (HTTP 500)";
        // What did arrive can be installed; the failure is counted in the message.
        QTest::newRow("closed mid-archive")
            << "close" << 5 << "Update 1802 downloaded. Error (1) " << true << "broke off during the download";
    }

    void downloadFaults()
    {
        QFETCH(QString, fault);
        QFETCH(int, state);
        QFETCH(QString, message);
        QFETCH(bool, error);
        QFETCH(QString, reason);

        UpdateEnv env;
        env.addProduct("Alpha", "DS1", true);
        env.addProduct("Bravo", "DS2", true);
        env.serveCycle({"DS1", "DS2"});
        env.driver.then([&](QDialog* d) {
            dlgUpdateDatasetVersion* dialog = asUpdate(d);
            QCOMPARE(dialog->GetState(), 1);
            if (fault == "gone")
                env.http.reset();
            else if (fault == "401")
                env.http->setCredentials("someone:else");
            else if (fault == "500")
                env.http->failNext(100, TestServer::Fault::ServerError);
            else
                env.http->setFault("/quillmark/1802/DS2.zip", TestServer::Fault::CloseMidBody);
            QSignalSpy failed(dialog->GetDSVersion(), &CDSVersion::SignalDownloadDataSetError);
            QSignalSpy ready(dialog->GetDSVersion(), &CDSVersion::SignalDownloadDataSetReady);
            click(dialog->GetDownloadButton());
            QTRY_COMPARE_WITH_TIMEOUT(failed.count() + ready.count(), 1, 20000);
            QCOMPARE(dialog->GetState(), state);
            QCOMPARE(dialog->GetMessageLabel()->text(), message);
            QCOMPARE(dialog->GetMessageLabel()->IsError(), error);
            QVERIFY2(dialog->GetReasonLabel()->text().contains(reason), qPrintable(dialog->GetReasonLabel()->text()));
            QVERIFY(dialog->isVisible());
            QCOMPARE(dialog->GetInstallButton()->isVisible(), state == 5);
            QCOMPARE(dialog->GetRetryButton()->isVisible(), state == 6);
            if (fault == "401") {
                env.http->setCredentials("webclient:Q7x2Lm9p");
                QTest::keyClick(dialog, Qt::Key_Return);
                QTRY_COMPARE_WITH_TIMEOUT(dialog->GetState(), 5, 20000);
                QCOMPARE(dialog->GetMessageLabel()->text(), QString("Update 1802 downloaded."));
                QVERIFY(dialog->GetReasonLabel()->isHidden());
            }
        });
        QVERIFY(env.open());
        QVERIFY(env.clickUpdate());
        QCOMPARE(checksums(env.work.path()), env.before);
        // A run that brought no archive leaves no list that would pass for the cycle held here.
        QCOMPARE(QFileInfo::exists(env.app.path() + "/downloads/QuillmarkCycle/versionList.txt"),
                 state == 5 || fault == "401");
        // The window says what became of the run after the dialog has gone.
        const QString status = env.window->GetStatusLabel()->text();
        if (fault == "gone" || fault == "500")
            QVERIFY2(status.startsWith("Update failed: ") && status.contains(reason), qPrintable(status));
        else
            QCOMPARE(status, QString("Cycle 1802 downloaded, not installed yet"));
    }

    // Closing at any point stops the run: afterwards the add-on folders hold the old files, or the
    // new ones with the old ones in the backup. What a stopped run leaves is the engine tests'; here
    // each dialog's close reaches its run.
    void closeMidRun_data()
    {
        QTest::addColumn<QString>("when");
        QTest::addColumn<int>("state"); // at the close, and still afterwards
        QTest::newRow("during download") << "download" << 4;
        QTest::newRow("during unzip") << "unzip" << 10;
        QTest::newRow("during copy") << "copy" << 10;
        QTest::newRow("during reset") << "reset" << 12;
        QTest::newRow("during backup removal") << "removal" << 16;
    }

    void closeMidRun()
    {
        QFETCH(QString, when);
        QFETCH(int, state);
        UpdateEnv env;
        env.addProduct("Alpha", "DS1", true);
        env.addProduct("Bravo", "DS2", true);
        env.serveCycle({"DS1", "DS2"});
        const bool backupRun = when == "reset" || when == "removal";
        ToolPath tools;
        if (when == "unzip") {
            // unzip that takes its time, so the close meets it running.
            QVERIFY(tools.addScript("unzip", "#!/bin/sh\nsleep 2\nexec " +
                                                 QStandardPaths::findExecutable("unzip").toUtf8() + " \"$@\"\n"));
        }
        if (when == "download") {
            env.http->setSlowPace(16, 50);
            env.http->setFault("/quillmark/1802/DS1.zip", TestServer::Fault::Slow);
        }
        if (when == "copy") {
            // A larger archive, so the copy is still running when the close comes.
            const QString folder = env.work.path() + "/big";
            writeRandomTree(folder + "/NavData", 3000, 3, 2000);
            writeFile(folder + "/NavData/cycle_info.txt", kNewCycle);
            QCOMPARE(zipFolder(folder, env.serverRoot.path() + "/quillmark/1802/DS1.zip"), QString());
        }
        if (backupRun)
            env.holdLocally({"DS1", "DS2"});
        int stateAtClose = 0;
        const auto closeMidway = [&](QDialog* d) {
            auto* dialog = qobject_cast<DlgDatasetRun*>(d);
            CDSVersion* engine = dialog->GetDSVersion();
            QSignalSpy ready(engine, when == "reset"     ? &CDSVersion::SignalResetReady
                                     : when == "removal" ? &CDSVersion::SignalRemoveBackupReady
                                                         : &CDSVersion::SignalInstallReady);
            if (backupRun) {
                // Closed at once: a run of two small products would otherwise end within moments.
                click(qobject_cast<DlgBackupRun*>(d)->GetActionButton());
            } else if (when != "download") {
                click(asUpdate(d)->GetDownloadButton());
                QTRY_COMPARE_WITH_TIMEOUT(dialog->GetState(), 5, 20000);
                QSignalSpy unzipping(engine, &CDSVersion::SignalUnzippProduct);
                QSignalSpy copying(engine, &CDSVersion::SignalFileWritten);
                click(asUpdate(d)->GetInstallButton());
                if (when == "unzip")
                    QTRY_VERIFY(!unzipping.isEmpty());
                else
                    QTRY_VERIFY_WITH_TIMEOUT(!copying.isEmpty(), 20000);
            } else {
                QSignalSpy percent(engine, &CDSVersion::SignalChangePercent);
                click(asUpdate(d)->GetDownloadButton());
                QTRY_VERIFY_WITH_TIMEOUT(!percent.isEmpty(), 10000);
            }
            stateAtClose = dialog->GetState();
            QTest::mouseClick(dialog->GetCloseButton(), Qt::LeftButton);
            QVERIFY(!dialog->isVisible());
            QTest::qWait(300);
            QCOMPARE(ready.count(), 0);
            QCOMPARE(dialog->GetState(), stateAtClose);
        };
        QVERIFY(env.open());
        env.before = checksums(env.work.path());
        if (backupRun)
            QVERIFY(env.installLocalCopy());
        env.driver.then(closeMidway);
        if (backupRun)
            env.clickAction(when == "reset" ? 1 : 2);
        else
            QVERIFY(env.clickUpdate());
        QCOMPARE(stateAtClose, state);
        if (when == "download") {
            // The cut-off archive is not kept, and it is neither repeated nor followed by the next.
            QVERIFY(!QFileInfo::exists(env.app.path() + "/downloads/QuillmarkCycle/DS1.zip"));
            QCOMPARE(env.http->requestCount(), 2);
            QCOMPARE(env.http->lastRequest().path, QString("/quillmark/1802/DS1.zip"));
            // Opened again, the dialog offers the cycle once more, and the downloader fetches its list.
            env.driver.then([&](QDialog* d) { stateAtClose = asUpdate(d)->GetState(); });
            QVERIFY(env.clickUpdate());
            QCOMPARE(stateAtClose, 1);
        }
        // A removal deletes backups by design; everything else keeps every byte somewhere.
        if (when != "removal")
            verifyNothingLost(env.before, checksums(env.work.path()));
    }

    // The checks at start: the program's own first, then the cycle's, whose dialog opens only for a
    // newer cycle. The cycle's engine is set up after the program's check, with the settings' switches.
    void startUpCheck_data()
    {
        QTest::addColumn<bool>("appCheck");
        QTest::addColumn<bool>("autoCheck");
        QTest::addColumn<QByteArray>("offer");
        QTest::addColumn<QString>("server"); // "up", "down", or "blocked": the program's file cannot be saved
        QTest::addColumn<QStringList>("requests");
        QTest::addColumn<int>("dialogs");
        QTest::addColumn<int>("state"); // of the product afterwards
        const QString app = "/downloads/quillmark/mac_version.txt", ds = "/quillmark/versionList.txt";
        const QByteArray newer = "Revision: 1\n1802\n";
        QTest::newRow("on, up to date") << false << true << QByteArray("Revision: 1\n1801\n") << "up" << QStringList{ds}
                                        << 0 << 5;
        QTest::newRow("on, server unreachable") << false << true << newer << "down" << QStringList() << 0 << 4;
        QTest::newRow("program's check only") << true << false << newer << "up" << QStringList{app} << 0 << 4;
        QTest::newRow("program's check cannot save its file, the cycle's follows")
            << true << true << newer << "blocked" << QStringList{ds} << 1 << 7;
    }

    void startUpCheck()
    {
        QFETCH(bool, appCheck);
        QFETCH(bool, autoCheck);
        QFETCH(QByteArray, offer);
        QFETCH(QString, server);
        QFETCH(QStringList, requests);
        QFETCH(int, dialogs);
        QFETCH(int, state);
        UpdateEnv env;
        env.addProduct("Alpha", "DS1", true);
        env.serveCycle({"DS1"}, offer);
        env.holdLocally({}, "Revision: 1\n1801\n");
        if (server == "blocked")
            QVERIFY(QDir().mkpath(env.app.path() + "/downloads/mac_version.txt"));
        env.autoCheck = autoCheck;
        env.appCheck = appCheck;
        env.overwriteAccepted = env.createBackups = false;
        QVERIFY(env.open(server == "down" ? QString("127.0.0.1:1") : QString()));
        // The window builds the install groups once when it shows; the end of the check, whatever it
        // found, builds them again.
        QTRY_COMPARE_WITH_TIMEOUT(env.app.readFile("log/log_datamodel.txt").count("InitProdUpdateListForUpdateOrReset"),
                                  autoCheck ? 2 : 1, 10000);
        QTRY_VERIFY(env.app.readFile("log/log_datamodel.txt").contains("InitDSVersion"));
        QCOMPARE(env.driver.count(), dialogs);
        QStringList paths;
        for (const TestServer::Request& r : env.http->requests())
            if (!paths.contains(r.path))
                paths << r.path;
        QCOMPARE(paths, requests);
        QCOMPARE(int(env.window->GetDataModel()->GetProductByName("Alpha")->GetInstallState()), state);
        // The settings' switches reach the engine; the engine's values go back into the file.
        QVERIFY(!env.engine()->GetNavDataOverwriteAccept() && !env.engine()->GetCreateBackupFiles());
        env.engine()->SetCreateBackupFiles(true);
        QVERIFY(env.window->GetDataModel()->Save());
        const QByteArray saved = env.app.readFile("bin/prop_ini.xml");
        QVERIFY(saved.contains("<CreateBackupFiles>1</CreateBackupFiles>"));
        QVERIFY(saved.contains("<NavDataOverwriteAccept>0</NavDataOverwriteAccept>"));
    }

    // A run cut off the last time is dealt with when the window opens, and the user is told. How
    // each cut is finished or undone is TestRunJournal's.
    void startUpRecovers()
    {
        UpdateEnv env;
        env.addProduct("Alpha", "DS1", true);
        // An install cut off before its cycle file: a file moved aside, the new one in its place.
        const QString nav = env.productRoot("Alpha") + "/NavData";
        QVERIFY(writeFile(nav + "/a.dat", "new"));
        QVERIFY(writeFile(nav + "/QMK_DS1_back/a.dat", "old"));
        QVERIFY(writeFile(nav + "/QMK_DS1_back/cycle_info.txt", kOldCycle));
        QVERIFY(writeFile(nav + "/QMK_DS1_back/.qmk_run_r1", ""));
        QVERIFY(QDir().mkpath(nav + "/QMK_DS1_back/_V_1801_R_1"));
        QVERIFY(writeFile(nav + "/QMK_DS1_journal.txt", "run: install\nid: r1\nproduct: Alpha\ndataset: DS1\n"
                                                        "from: 1801 1\nto: 1802 1\nbackups: 1\n"));
        QVERIFY(env.open("127.0.0.1:1"));
        QCOMPARE(env.boxes.count(), 1);
        QCOMPARE(env.boxes.boxes().first().icon, QMessageBox::Information);
        const QString told = "The interrupted install of Alpha was undone";
        QVERIFY2(env.boxes.boxes().first().text.contains(told), qPrintable(env.boxes.boxes().first().text));
        QVERIFY(env.app.readFile("log/log_datamodel.txt").contains(told.toUtf8()));
        QCOMPARE(readFile(nav + "/a.dat"), QByteArray("old"));
        QVERIFY(!QFileInfo::exists(nav + "/QMK_DS1_journal.txt"));
    }

    // A reset over a backup whose cycle file names another cycle than the one installed over: it
    // gives back what the backup holds and reports the cycle it finds.
    void resetOfChangedBackup()
    {
        UpdateEnv env;
        env.addProduct("Alpha", "DS1", true);
        env.holdLocally({"DS1"});
        QVERIFY(env.open("127.0.0.1:1"));
        QVERIFY(env.installLocalCopy());
        const QString backup = env.productRoot("Alpha") + "/NavData/QMK_DS1_back";
        QVERIFY(writeFile(backup + "/cycle_info.txt", "AIRAC cycle    : 1700\r\nRevision       : 1\r\n"));
        QString result;
        env.driver.then([&](QDialog* d) {
            auto* dialog = qobject_cast<DlgResetDataset*>(d);
            click(dialog->GetActionButton());
            QTRY_COMPARE_WITH_TIMEOUT(dialog->GetState(), 13, 20000);
            click(dialog->GetResultPane()->GetShowButton());
            result = dialog->GetResultPane()->GetPane()->text();
        });
        env.clickAction(1);
        QVERIFY2(result.contains("Reset success Alpha ( V. 1700 R. 1 )"), qPrintable(result));
        QVERIFY(env.card("Alpha")->GetCycleText().startsWith("- installed ( V. 1700 R. 1 )"));
        const QMap<QString, QByteArray> after = checksums(env.work.path());
        for (auto it = env.before.cbegin(); it != env.before.cend(); ++it)
            if (!it.key().endsWith("/cycle_info.txt"))
                QCOMPARE(after.value(it.key()), it.value());
    }
};

QTEST_MAIN(TestDatasetDialogs)
#include "TestDatasetDialogs.moc"
