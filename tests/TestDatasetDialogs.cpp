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
#include "ui/DlgRemoveBackup.h"
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

#include <QApplication>
#include <QLabel>
#include <QProgressBar>
#include <QRegularExpression>
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
        QString folderOf;
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
    bool overwriteAccepted = true;

    UpdateEnv() { http->start(); }

    QString productRoot(const QString& name) const { return work.path() + "/" + name; }

    // With `folderOf`, the product shares that product's folder: the two form an install group.
    void addProduct(const QString& name, const QString& dataset, bool selected, const QString& folderOf = QString())
    {
        products << Product{name, dataset, selected, folderOf};
        if (!folderOf.isEmpty())
            return;
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
            catalogue.products << SampleCatalogue::NavDataProduct(
                p.name, p.dataset, productRoot(p.folderOf.isEmpty() ? p.name : p.folderOf), p.selected);
        }
        if (!app.writeFile("bin/base_ini.xml", catalogue.CatalogueXml()) ||
            !app.writeFile("bin/prop_ini.xml", SampleCatalogue::SettingsXml(autoCheck, false, overwriteAccepted)))
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

    // The whole update, by mouse and by keyboard alone: the keyboard starts on the consent, Return
    // always takes the step on offer, Escape before the install asks whether to leave it for later.
    // The progress bar says where the run is, and the window's status line what it did.
    void wholeUpdate_data()
    {
        QTest::addColumn<bool>("keyboard");
        QTest::newRow("mouse") << false;
        QTest::newRow("keyboard") << true;
    }

    void wholeUpdate()
    {
        QFETCH(bool, keyboard);
        UpdateEnv env;
        env.addProduct("Alpha", "DS1", true);
        env.addProduct("Bravo", "DS2", true);
        env.serveCycle({"DS1", "DS2"});
        env.autoCheck = true;
        env.overwriteAccepted = false;

        QList<int> states;
        QStringList cardCycles, progress;
        env.driver.then([&](QDialog* d) {
            dlgUpdateDatasetVersion* dialog = asUpdate(d);
            QVERIFY(dialog);
            auto press = [&](Qt::Key key) {
                QWidget* focus = QApplication::focusWidget();
                QTest::keyClick(focus && dialog->isAncestorOf(focus) ? focus : dialog, key);
            };
            QCOMPARE(dialog->GetVersionCombo()->itemText(0), QString("Cycle V. 1802 R. 1 ( Velmora-Server )"));
            QVERIFY(!dialog->GetProgressBar()->isTextVisible());
            QObject::connect(env.engine(), &CDSVersion::SignalDownloadProgress, dialog,
                             [&] { progress << dialog->GetProgressBar()->format(); });
            QObject::connect(env.engine(), &CDSVersion::SignalUnzippProduct, dialog,
                             [&] { progress << dialog->GetProgressBar()->format(); });
            // The gate: nothing to press until the overwrite is accepted.
            QVERIFY(dialog->GetDownloadButton()->isVisible());
            QVERIFY(!dialog->GetDownloadButton()->isEnabled());
            if (keyboard) {
                // What the window manager does for a new dialog.
                QApplication::setActiveWindow(dialog);
                QCOMPARE(QApplication::focusWidget(), static_cast<QWidget*>(dialog->GetOverwriteAccept()));
                press(Qt::Key_Space);
                QVERIFY(dialog->GetDownloadButton()->isDefault());
                press(Qt::Key_Return);
            } else {
                tick(dialog->GetOverwriteAccept());
                click(dialog->GetDownloadButton());
            }
            states << dialog->GetState();
            QTRY_COMPARE_WITH_TIMEOUT(dialog->GetState(), 5, 20000);
            QVERIFY(!dialog->GetMessageLabel()->IsError());
            QVERIFY(dialog->GetDownloadButton()->isHidden());
            QVERIFY(dialog->GetInstallButton()->isDefault());
            // The downloaded cycle is now also held locally.
            QCOMPARE(dialog->GetVersionCombo()->count(), 2);

            // Leaving now asks once; "no" keeps the dialog and its step.
            CMessageBox::setAnswer(false);
            if (keyboard)
                press(Qt::Key_Escape);
            else
                click(dialog->GetOkButton());
            QCOMPARE(env.boxes.count(), 1);
            QCOMPARE(env.boxes.boxes().first().text, QString("Cycle 1802 is downloaded but not installed yet.\n"
                                                             "Leave it for later? You can install it from the "
                                                             "Update button at any time."));
            QVERIFY(dialog->isVisible());
            if (keyboard)
                press(Qt::Key_Return);
            else
                click(dialog->GetInstallButton());
            QTRY_COMPARE_WITH_TIMEOUT(dialog->GetState(), 8, 30000);
            QVERIFY(!dialog->GetMessageLabel()->IsError());
            QCOMPARE(dialog->GetProgressBar()->value(), 100);
            QVERIFY(dialog->GetInstallButton()->isHidden());
            QVERIFY(!dialog->GetCancelButton()->isEnabled());
            QVERIFY(dialog->GetOkButton()->isDefault());

            const int height = dialog->height();
            click(dialog->GetResultPane()->GetShowButton());
            QCOMPARE(dialog->height(), height + VlFoldPane::kPaneHeight + 2);
            for (const QString name : {"Alpha", "Bravo"})
                cardCycles << env.card(name)->GetCycleText();
            if (keyboard)
                press(Qt::Key_Return);
            else
                click(dialog->GetOkButton());
            QVERIFY(!dialog->isVisible());
        });
        QVERIFY(env.open());
        QTRY_COMPARE_WITH_TIMEOUT(env.driver.count(), 1, 10000);
        QCOMPARE(states, QList<int>{4});
        QCOMPARE(env.boxes.count(), 1); // an installed cycle is left without a question
        // The cards show the new cycle while the dialog is still open.
        for (const QString& cycle : cardCycles)
            QVERIFY2(cycle.startsWith("- installed ( V. 1802 R. 1 )"), qPrintable(cycle));
        const QRegularExpression bytes("^DS([12]) \\(\\1 of 2\\) — \\d+\\.\\d of \\d+\\.\\d [kM]B");
        QVERIFY2(!progress.filter(bytes).isEmpty(), qPrintable(progress.join(" | ")));
        QVERIFY2(progress.contains("Installing Alpha (1 of 2)") && progress.contains("Installing Bravo (2 of 2)"),
                 qPrintable(progress.join(" | ")));
        QCOMPARE(env.window->GetStatusLabel()->text(), QString("Updated 2 product(s) to cycle 1802"));
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
        QTest::newRow("new cycle") << "up" << offer1802 << "" << "1801" << 1 << "1802 ready for download." << false
                                   << "" << "Download";
        QTest::newRow("newer than the local copy") << "up" << QByteArray("Revision: 1\n1803\n") << "1802" << "1802"
                                                   << 1 << "1803 ready for download." << false << "" << "Download";
        QTest::newRow("downloaded, not installed") << "up" << offer1802 << "1802" << "1801" << 9
                                                   << "Cycle 1802 is downloaded and ready to install." << false << ""
                                                   << "Install";
        QTest::newRow("up to date") << "up" << offer1802 << "1802" << "1802" << 3
                                    << "There are no new updates available." << false << "" << "Ok";
        QTest::newRow("server unreachable") << "down" << offer1802 << "" << "1801" << 2
                                            << "Failed to connect to Velmora-Server." << true
                                            << "127.0.0.1:1 refused the connection" << "Retry";
        QTest::newRow("credentials refused") << "401" << offer1802 << "" << "1801" << 2
                                             << "versionList.txt Download failed." << true << "(HTTP 401)" << "Retry";
        QTest::newRow("unreachable, a local copy waiting")
            << "down" << offer1802 << "1802" << "1801" << 9 << "Cycle 1802 is downloaded and ready to install."
            << false << "refused the connection" << "Install";
        QTest::newRow("empty list") << "empty list" << QByteArray() << "" << "1801" << 2
                                    << "There are no new updates available." << false << "" << "Ok";
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
        if (server == "401")
            env.http->setCredentials("someone:else");
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

    void errorsCountInReadyMessage()
    {
        UpdateEnv env;
        for (const QString ds : {"DS1", "DS2", "DS3"}) {
            env.addProduct("P" + ds, ds, true);
            writeFile(env.app.path() + "/downloads/QuillmarkCycle/" + ds + ".zip", "this is no archive");
        }
        writeFile(env.app.path() + "/downloads/QuillmarkCycle/versionList.txt", "Revision: 1\n1802\n");
        env.driver.then([&](QDialog* d) {
            dlgUpdateDatasetVersion* dialog = asUpdate(d);
            click(dialog->GetInstallButton());
            QTRY_COMPARE_WITH_TIMEOUT(dialog->GetState(), 8, 20000);
            QCOMPARE(dialog->GetMessageLabel()->text(), QString("Install ready. Error (3) "));
            QVERIFY(dialog->GetMessageLabel()->IsError());
            QVERIFY(dialog->isVisible());
        });
        QVERIFY(env.open("127.0.0.1:1"));
        QVERIFY(env.clickUpdate());
        QCOMPARE(checksums(env.work.path()), env.before);
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
        QTest::newRow("closed mid-archive") << "close" << 5 << "Update 1802 downloaded. Error (1) " << true
                                            << "broke off during the download";
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
        // The window says what became of the run after the dialog has gone.
        const QString status = env.window->GetStatusLabel()->text();
        if (fault == "gone" || fault == "500")
            QVERIFY2(status.startsWith("Update failed: ") && status.contains(reason), qPrintable(status));
        else
            QCOMPARE(status, QString("Cycle 1802 downloaded, not installed yet"));
    }

    void installFaults_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::newRow("corrupt archive") << "corrupt";
        QTest::newRow("unzip crashes") << "crash";
    }

    void installFaults()
    {
        QFETCH(QString, fault);
        UpdateEnv env;
        env.addProduct("Alpha", "DS1", true);
        env.serveCycle({"DS1"});
        ToolPath tools;
        if (fault == "corrupt")
            writeFile(env.serverRoot.path() + "/quillmark/1802/DS1.zip", "PK\x03\x04 broken");
        else
            QVERIFY(tools.addScript("unzip", "#!/bin/sh\nkill -SEGV $$\n"));
        env.driver.then([&](QDialog* d) {
            dlgUpdateDatasetVersion* dialog = asUpdate(d);
            click(dialog->GetDownloadButton());
            QTRY_COMPARE_WITH_TIMEOUT(dialog->GetState(), 5, 20000);
            click(dialog->GetInstallButton());
            QTRY_COMPARE_WITH_TIMEOUT(dialog->GetState(), 8, 20000);
            QVERIFY(dialog->GetMessageLabel()->text().startsWith("Install ready. Error ("));
            QVERIFY(dialog->GetMessageLabel()->IsError());
            QVERIFY(dialog->isVisible());
            click(dialog->GetResultPane()->GetShowButton());
            QVERIFY(dialog->GetResultPane()->GetPane()->text().contains("Error: "));
        });
        QVERIFY(env.open());
        env.before = checksums(env.work.path());
        QVERIFY(env.clickUpdate());
        verifyNothingLost(env.before, checksums(env.work.path()));
        QCOMPARE(readFile(env.productRoot("Alpha") + "/NavData/a.dat"), QByteArray("old a of Alpha"));
    }

    // Closing at any point stops the run: afterwards the add-on folders hold the old files, or the
    // new ones with the old ones in the backup.
    void closeMidRun_data()
    {
        QTest::addColumn<QString>("when");
        QTest::newRow("during download") << "download";
        QTest::newRow("during unzip") << "unzip";
        QTest::newRow("during copy") << "copy";
    }

    void closeMidRun()
    {
        QFETCH(QString, when);
        UpdateEnv env;
        env.addProduct("Alpha", "DS1", true);
        env.addProduct("Bravo", "DS2", true);
        env.serveCycle({"DS1", "DS2"});
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
        int stateAtClose = 0;
        env.driver.then([&](QDialog* d) {
            dlgUpdateDatasetVersion* dialog = asUpdate(d);
            CDSVersion* engine = dialog->GetDSVersion();
            if (when != "download") {
                click(dialog->GetDownloadButton());
                QTRY_COMPARE_WITH_TIMEOUT(dialog->GetState(), 5, 20000);
                QSignalSpy unzipping(engine, &CDSVersion::SignalUnzippProduct);
                QSignalSpy copying(engine, &CDSVersion::SignalFileWritten);
                click(dialog->GetInstallButton());
                if (when == "unzip")
                    QTRY_VERIFY(!unzipping.isEmpty());
                else
                    QTRY_VERIFY_WITH_TIMEOUT(!copying.isEmpty(), 20000);
            } else {
                QSignalSpy percent(engine, &CDSVersion::SignalChangePercent);
                click(dialog->GetDownloadButton());
                QTRY_VERIFY_WITH_TIMEOUT(!percent.isEmpty(), 10000);
            }
            stateAtClose = dialog->GetState();
            QSignalSpy ready(engine, &CDSVersion::SignalInstallReady);
            QTest::mouseClick(dialog->GetCloseButton(), Qt::LeftButton);
            QVERIFY(!dialog->isVisible());
            QTest::qWait(300);
            QCOMPARE(ready.count(), 0);
            QCOMPARE(dialog->GetState(), stateAtClose);
        });
        QVERIFY(env.open());
        env.before = checksums(env.work.path());
        QVERIFY(env.clickUpdate());
        QCOMPARE(stateAtClose, when == "download" ? 4 : 10);
        const QMap<QString, QByteArray> after = checksums(env.work.path());
        verifyNothingLost(env.before, after);
    }

    void startUpCheck_data()
    {
        QTest::addColumn<bool>("autoCheck");
        QTest::addColumn<QByteArray>("offer");
        QTest::addColumn<bool>("reachable");
        QTest::addColumn<int>("dialogs");
        QTest::newRow("on, newer cycle") << true << QByteArray("Revision: 1\n1802\n") << true << 1;
        QTest::newRow("off, newer cycle") << false << QByteArray("Revision: 1\n1802\n") << true << 0;
        QTest::newRow("on, up to date") << true << QByteArray("Revision: 1\n1801\n") << true << 0;
        QTest::newRow("on, server unreachable") << true << QByteArray("Revision: 1\n1802\n") << false << 0;
    }

    void startUpCheck()
    {
        QFETCH(bool, autoCheck);
        QFETCH(QByteArray, offer);
        QFETCH(bool, reachable);
        QFETCH(int, dialogs);
        UpdateEnv env;
        env.addProduct("Alpha", "DS1", true);
        env.serveCycle({"DS1"}, offer);
        env.holdLocally({}, "Revision: 1\n1801\n");
        env.autoCheck = autoCheck;
        QVERIFY(env.open(reachable ? QString() : QString("127.0.0.1:1")));
        // The window builds the install groups once when it shows; the end of the check, whatever it
        // found, builds them again.
        QTRY_COMPARE_WITH_TIMEOUT(env.app.readFile("log/log_datamodel.txt").count("InitProdUpdateListForUpdateOrReset"),
                                  autoCheck ? 2 : 1, 10000);
        QCOMPARE(env.driver.count(), dialogs);
        QCOMPARE(env.http->requestCount(), autoCheck && reachable ? 1 : 0);
    }

    // Reset and backup removal after an install through the update dialog; the dialogs come from the
    // action buttons or from a card.
    void backupDialogsAfterInstall_data()
    {
        QTest::addColumn<bool>("reset");
        QTest::addColumn<bool>("fromCard");
        QTest::newRow("reset, selection") << true << false;
        QTest::newRow("removal, one card") << false << true;
    }

    void backupDialogsAfterInstall()
    {
        QFETCH(bool, reset);
        QFETCH(bool, fromCard);
        UpdateEnv env;
        env.addProduct("Alpha", "DS1", true);
        env.addProduct("Bravo", "DS2", true);
        env.addProduct("Charlie", "DS1", false, "Alpha");
        env.holdLocally({"DS1", "DS2"});
        QVERIFY(env.open("127.0.0.1:1"));
        // With no server the local copy installs, with a backup.
        QVERIFY(env.installLocalCopy());
        QCOMPARE(readFile(env.productRoot("Alpha") + "/NavData/a.dat"), QByteArray("new a of DS1"));
        QCOMPARE(readFile(env.productRoot("Alpha") + "/NavData/QMK_DS1_back/a.dat"), QByteArray("old a of Alpha"));
        const QMap<QString, QByteArray> installed = checksums(env.work.path());

        QStringList messages;
        env.driver.then([&](QDialog* d) {
            auto* dialog = qobject_cast<DlgBackupRun*>(d);
            QVERIFY(dialog);
            QCOMPARE(bool(qobject_cast<DlgResetDataset*>(d)), reset);
            // Before anything is pressed: what the run touches, install-group siblings included.
            QCOMPARE(dialog->GetTouchedLabel()->text(),
                     QString(fromCard ? "Bravo: the backup of cycle 1801 is deleted"
                                      : "Alpha, Charlie: back to cycle 1801\n"
                                        "    (they share one folder and are reset together)\n"
                                        "Bravo: back to cycle 1801"));
            click(dialog->GetProductsPane()->GetShowButton());
            QCOMPARE(dialog->GetProductsPane()->GetPane()->text(),
                     QString(fromCard ? "  Bravo\r\n" : "  Alpha\r\n  Bravo\r\n  Charlie\r\n"));
            click(dialog->GetActionButton());
            messages << dialog->GetMessageLabel()->text();
            QTRY_COMPARE_WITH_TIMEOUT(dialog->GetState(), reset ? 13 : 17, 20000);
            QCOMPARE(dialog->GetMessageLabel()->text(), QString(reset ? "Reset ready." : "RemoveBackup ready."));
            QVERIFY(!dialog->GetMessageLabel()->IsError());
            // Once per opening: only closing is left.
            QVERIFY(dialog->GetActionButton()->isHidden());
            QVERIFY(dialog->GetOkButton()->isEnabled());
            QVERIFY(!dialog->GetCancelButton()->isEnabled());
            click(dialog->GetOkButton());
        });
        if (fromCard) {
            VlProdLabel* card = env.card("Bravo");
            card->ClickedShowCommandsButtonSlot();
            if (reset)
                card->ClickedResetSlot();
            else
                card->ClickedRemoveBackupSlot();
        } else {
            env.clickAction(reset ? 1 : 2);
        }
        QCOMPARE(env.driver.count(), 2);
        QCOMPARE(env.window->GetStatusLabel()->text(),
                 QString(reset ? "Reset 3 product(s) to their backed-up cycle" : "Deleted the backups of 1 product(s)"));
        // "Run reset." gives way at once to the product being worked on.
        QCOMPARE(messages, QStringList{(reset ? "Reset " : "RemoveBackup ") + QString(fromCard ? "Bravo" : "Alpha")});

        const QMap<QString, QByteArray> after = checksums(env.work.path());
        for (const QString name : {"Alpha", "Bravo"}) {
            const bool reached = !fromCard || name == "Bravo";
            const QString prefix = name + "/";
            for (auto it = env.before.cbegin(); it != env.before.cend(); ++it) {
                if (!it.key().startsWith(prefix))
                    continue;
                // A reset gives back every file as it was before the install; a removal leaves the
                // installed files.
                const QByteArray expected = reached && reset ? it.value() : installed.value(it.key());
                QVERIFY2(after.value(it.key()) == expected, qPrintable(it.key()));
            }
            bool backups = false;
            for (const QString& key : after.keys())
                backups = backups || (key.startsWith(prefix) && key.contains("/QMK_"));
            if (!reset)
                QCOMPARE(backups, !reached);
            const QString cycleText = env.card(name)->GetCycleText();
            QVERIFY2(cycleText.startsWith(reached && reset ? "- installed ( V. 1801 R. 1 )"
                                                           : "- installed ( V. 1802 R. 1 )"),
                     qPrintable(cycleText));
        }
    }

    void resetErrorsCounted()
    {
        UpdateEnv env;
        // Never installed: there is no backup to give back.
        env.addProduct("Alpha", "DS1", true);
        env.addProduct("Bravo", "DS2", true);
        env.addProduct("Charlie", "DS3", false);
        QVERIFY(env.open("127.0.0.1:1"));
        env.driver.then([&](QDialog* d) {
            auto* dialog = qobject_cast<DlgResetDataset*>(d);
            click(dialog->GetActionButton());
            QTRY_COMPARE_WITH_TIMEOUT(dialog->GetState(), 13, 20000);
            QCOMPARE(dialog->GetMessageLabel()->text(), QString("Reset ready. Error (2) "));
            QVERIFY(dialog->GetMessageLabel()->IsError());
            const int height = dialog->height();
            click(dialog->GetResultPane()->GetShowButton());
            QCOMPARE(dialog->height(), height + VlFoldPane::kPaneHeight + 2);
            QVERIFY(dialog->GetResultPane()->GetPane()->text().contains("Alpha"));
            QVERIFY(dialog->GetResultPane()->GetPane()->text().contains("Bravo"));
        });
        env.clickAction(1);
        QCOMPARE(env.driver.count(), 1);
        QCOMPARE(checksums(env.work.path()), env.before);
    }

    // Closing mid-run stops it: the products not yet reached keep every byte.
    void closingStopsBackupRun_data()
    {
        QTest::addColumn<bool>("reset");
        QTest::newRow("reset") << true;
        QTest::newRow("removal") << false;
    }

    void closingStopsBackupRun()
    {
        QFETCH(bool, reset);
        UpdateEnv env;
        const QStringList names{"P1", "P2", "P3", "P4"};
        for (const QString& name : names)
            env.addProduct(name, "DS" + name, true);
        // Large installs, so that the run is still going when the dialog closes.
        const QString cycleDir = env.app.path() + "/downloads/QuillmarkCycle";
        writeFile(cycleDir + "/versionList.txt", "Revision: 1\n1802\n");
        for (const QString& name : names) {
            const QString folder = env.work.path() + "/big_" + name;
            writeRandomTree(folder + "/NavData", 1500, qHash(name) + 1, 3000);
            writeFile(folder + "/NavData/a.dat", "new a");
            writeFile(folder + "/NavData/cycle_info.txt", kNewCycle);
            QCOMPARE(zipFolder(folder, cycleDir + "/DS" + name + ".zip"), QString());
        }
        QVERIFY(env.open("127.0.0.1:1"));
        QVERIFY(env.installLocalCopy());
        const QMap<QString, QByteArray> installed = checksums(env.work.path());

        QStringList reached;
        env.driver.then([&](QDialog* d) {
            auto* dialog = qobject_cast<DlgBackupRun*>(d);
            CDSVersion* engine = dialog->GetDSVersion();
            QSignalSpy products(engine,
                                reset ? &CDSVersion::SignalResetProduct : &CDSVersion::SignalRemoveBackupProduct);
            click(dialog->GetActionButton());
            QVERIFY(!products.isEmpty() || products.wait(20000));
            QTest::mouseClick(dialog->GetCloseButton(), Qt::LeftButton);
            QVERIFY(!dialog->isVisible());
            QTest::qWait(300);
            for (const QList<QVariant>& args : products)
                reached << args.at(0).toString();
        });
        env.clickAction(reset ? 1 : 2);
        QVERIFY(!reached.isEmpty());
        QVERIFY2(reached.size() < names.size(), "the run ended before the close");
        const QMap<QString, QByteArray> after = checksums(env.work.path());
        for (const QString& name : names) {
            if (reached.contains(name))
                continue;
            for (auto it = installed.cbegin(); it != installed.cend(); ++it)
                if (it.key().startsWith(name + "/"))
                    QVERIFY2(after.value(it.key()) == it.value(), qPrintable(it.key()));
        }
    }

    // A reset over a backup that was damaged after the install: it gives back what the backup
    // holds, reports the cycle it finds, and removes nothing the backup does not replace.
    void resetOfDamagedBackups_data()
    {
        QTest::addColumn<QString>("damage");
        QTest::addColumn<QString>("cycle"); // on the card afterwards
        QTest::newRow("half of the backup gone") << "partial"
                                                 << "1801";
        QTest::newRow("backup names another cycle") << "other cycle"
                                                    << "1700";
    }

    void resetOfDamagedBackups()
    {
        QFETCH(QString, damage);
        QFETCH(QString, cycle);
        UpdateEnv env;
        env.addProduct("Alpha", "DS1", true);
        env.holdLocally({"DS1"});
        QVERIFY(env.open("127.0.0.1:1"));
        QVERIFY(env.installLocalCopy());
        const QString backup = env.productRoot("Alpha") + "/NavData/QMK_DS1_back";
        if (damage == "partial")
            QVERIFY(QFile::remove(backup + "/a.dat"));
        else
            QVERIFY(writeFile(backup + "/cycle_info.txt", "AIRAC cycle    : 1700\r\nRevision       : 1\r\n"));
        const QMap<QString, QByteArray> installed = checksums(env.work.path());

        QString result;
        env.driver.then([&](QDialog* d) {
            auto* dialog = qobject_cast<DlgResetDataset*>(d);
            click(dialog->GetActionButton());
            QTRY_COMPARE_WITH_TIMEOUT(dialog->GetState(), 13, 20000);
            click(dialog->GetResultPane()->GetShowButton());
            result = dialog->GetResultPane()->GetPane()->text();
        });
        env.clickAction(1);
        QVERIFY2(result.contains("Reset success Alpha ( V. " + cycle + " R. 1 )"), qPrintable(result));
        QVERIFY(env.card("Alpha")->GetCycleText().startsWith("- installed ( V. " + cycle + " R. 1 )"));

        const QMap<QString, QByteArray> after = checksums(env.work.path());
        for (auto it = env.before.cbegin(); it != env.before.cend(); ++it) {
            if (it.key().endsWith("/cycle_info.txt"))
                continue;
            // A file whose backup is gone keeps the installed bytes; every other one is as before.
            const bool backedUp = !(damage == "partial" && it.key().endsWith("/a.dat"));
            QCOMPARE(after.value(it.key()), backedUp ? it.value() : installed.value(it.key()));
        }
    }
};

QTEST_MAIN(TestDatasetDialogs)
#include "TestDatasetDialogs.moc"
