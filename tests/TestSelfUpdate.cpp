#include "app/Application.h"
#include "engine/CQMKVersion.h"
#include "model/CDataModel.h"
#include "support/DatasetFiles.h"
#include "support/DialogDriver.h"
#include "support/MessageBoxSpy.h"
#include "support/SampleCatalogue.h"
#include "support/TempAppDir.h"
#include "support/TestServer.h"
#include "support/UserInput.h"
#include "ui/DlgVLSettings.h"
#include "ui/QuillmarkMainWindow.h"
#include "ui/VlMessageLabel.h"
#include "ui/VlPushButton.h"
#include "ui/dlgUpdateQMKVersion.h"

#include <QProgressBar>
#include <QScopedPointer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <memory>

using namespace DatasetFiles;
using namespace UserInput;

namespace {
const QString Release = QStringLiteral("VL_QUILLMARK_V124_MAC");
const QString VersionPath = QStringLiteral("/downloads/quillmark/mac_version.txt");
const QString ArchivePath = QStringLiteral("/downloads/quillmark/VL_QUILLMARK_V124_MAC.zip");
const QString DatasetListPath = QStringLiteral("/quillmark/versionList.txt");

// The release as the download server holds it: the new program and its updater in one folder.
bool makeRelease(const QString& serverRoot)
{
    QTemporaryDir work;
    writeFile(work.filePath(Release + "/VL_QUILLMARK_V124.app/Quillmark"), "new program");
    writeFile(work.filePath(Release + "/qmk_au.app/qmk_au"), "updater");
    QDir().mkpath(serverRoot + "/downloads/quillmark");
    return zipFolder(work.path(), serverRoot + ArchivePath, QString()).isEmpty();
}
} // namespace

// The self-update dialog driven by clicks, and where it comes in the program's start.
class TestSelfUpdate : public QObject
{
    Q_OBJECT

    // A program folder with the sample catalogue, a loopback server, a fake desktop opener and
    // the window; the opener writes what it is asked to open into a file.
    struct Run
    {
        MessageBoxSpy boxes;
        TempAppDir app;
        QTemporaryDir serverRoot;
        std::unique_ptr<TestServer> server{new TestServer(serverRoot.path())};
        ToolPath tools;
        DialogDriver driver;
        QScopedPointer<QuillmarkMainWindow> window;

        // `ownVersion`: the catalogue's Version; empty names none, so the build's own holds.
        bool prepare(bool appAuto, bool dsAuto, const QByteArray& version, const QString& ownVersion = "1.2.3")
        {
            SampleCatalogue catalogue = SampleCatalogue::Small();
            catalogue.version = ownVersion;
            if (!server->start() || !catalogue.WriteTo(app.path()))
                return false;
            if (!version.isNull())
                writeFile(serverRoot.path() + VersionPath, version);
            const QString opened = tools.path() + "/opened.txt";
            return tools.addScript("xdg-open", "echo \"$@\" >> '" + opened.toUtf8() + "'") &&
                   app.writeFile("bin/prop_ini.xml",
                                 QString("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<data><App><DSAutoUpdate>%1"
                                         "</DSAutoUpdate><QuillmarkAutoUpdate>%2</QuillmarkAutoUpdate><Server>%3"
                                         "</Server></App></data>\n")
                                     .arg(int(dsAuto))
                                     .arg(int(appAuto))
                                     .arg(server->hostAndPort())
                                     .toUtf8());
        }
        void open()
        {
            window.reset(new QuillmarkMainWindow);
            Application::mainWnd = window.data();
            window->show();
        }
        QStringList opened() const
        {
            return QString::fromUtf8(readFile(tools.path() + "/opened.txt")).split('\n', Qt::SkipEmptyParts);
        }
        QStringList paths() const
        {
            QStringList seen;
            for (const TestServer::Request& r : server->requests())
                if (!seen.contains(r.path))
                    seen << r.path;
            return seen;
        }
        ~Run() { Application::mainWnd = nullptr; }
    };

private slots:
    void initTestCase()
    {
        Application::registerResources();
        // No translator: the dialogs show their built-in texts, which these tests check word for word.
        Application::setLanguage(QStringLiteral("en_US"));
    }

    // Found at start, downloaded, unpacked and handed to the updater, all by clicks; the program
    // then ends with 0 and nothing else starts.
    void wholeUpdateAtStart()
    {
        Run run;
        QVERIFY(run.prepare(true, true, "124\n"));
        QVERIFY(makeRelease(run.serverRoot.path()));
        run.driver.then([&](QDialog* d) {
            auto* dialog = qobject_cast<dlgUpdateQMKVersion*>(d);
            QVERIFY(dialog);
            click(dialog->GetDownloadButton());
            QVERIFY(!dialog->GetDownloadButton()->isEnabled());
            QTRY_COMPARE_WITH_TIMEOUT(dialog->GetState(), int(dlgUpdateQMKVersion::StateDownloaded), 20000);
            QVERIFY(!dialog->GetDownloadButton()->isVisible());
            click(dialog->GetInstallButton());
            QCOMPARE(dialog->GetProgressBar()->maximum(), 0); // busy while unzip runs
            QTRY_VERIFY_WITH_TIMEOUT(!dialog->isVisible(), 20000);
        });
        QTimer::singleShot(0, [&] { run.open(); });
        QTimer guard;
        guard.setSingleShot(true);
        connect(&guard, &QTimer::timeout, [] { QCoreApplication::exit(99); });
        guard.start(60000);
        QCOMPARE(QCoreApplication::exec(), 0);
        guard.stop();

        QCOMPARE(run.driver.titles(), QStringList{"Quillmark Update"});
        QCOMPARE(run.boxes.count(), 0);
        QVERIFY(!run.window->isVisible());
        const QString downloads = run.app.filePath("downloads");
        QTRY_COMPARE(run.opened(), QStringList{downloads + "/qmk_au.app"});
        // The program hands over and ends: no dataset check after the dialog.
        QTest::qWait(300);
        QCOMPARE(run.paths(), (QStringList{VersionPath, ArchivePath}));
    }

    void startOrder_data()
    {
        QTest::addColumn<bool>("appAuto");
        QTest::addColumn<bool>("dsAuto");
        QTest::addColumn<QByteArray>("version"); // on the server
        QTest::addColumn<bool>("dialog");
        QTest::addColumn<QStringList>("requests");
        QTest::addColumn<QString>("ownVersion"); // the catalogue's

        // The build's own version, one step newer on the server.
        QByteArray newerThanBuild = QByteArray(QUILLMARK_BUILD_VERSION).replace('.', "");
        newerThanBuild.data()[newerThanBuild.size() - 1]++;

        QTest::newRow("newer version: dialog, then datasets")
            << true << true << QByteArray("124") << true << QStringList{VersionPath, DatasetListPath} << "1.2.3";
        QTest::newRow("no version in the catalogue: the build's own")
            << true << true << newerThanBuild << true << QStringList{VersionPath, DatasetListPath} << "";
        QTest::newRow("up to date: datasets only")
            << true << true << QByteArray("123") << false << QStringList{VersionPath, DatasetListPath} << "1.2.3";
        QTest::newRow("application check off")
            << false << true << QByteArray("124") << false << QStringList{DatasetListPath} << "1.2.3";
        QTest::newRow("both off: nothing") << false << false << QByteArray("124") << false << QStringList() << "1.2.3";
    }

    void startOrder()
    {
        QFETCH(bool, appAuto);
        QFETCH(bool, dsAuto);
        QFETCH(QByteArray, version);
        QFETCH(bool, dialog);
        QFETCH(QStringList, requests);
        QFETCH(QString, ownVersion);

        Run run;
        QVERIFY(run.prepare(appAuto, dsAuto, version, ownVersion));
        QStringList requestsWhenOpen;
        run.driver.then([&](QDialog* d) {
            auto* update = qobject_cast<dlgUpdateQMKVersion*>(d);
            QVERIFY(update);
            requestsWhenOpen = run.paths();
            click(update->GetOkButton());
        });
        run.open();
        if (!requests.isEmpty())
            QTRY_COMPARE_WITH_TIMEOUT(run.paths().size(), requests.size(), 20000);
        QTest::qWait(300);
        QCOMPARE(run.paths(), requests);
        QCOMPARE(run.driver.titles().contains("Quillmark Update"), dialog);
        if (dialog)
            QCOMPARE(requestsWhenOpen, QStringList{VersionPath});
        if (!appAuto && !dsAuto)
            QCOMPARE(run.driver.count(), 0);
    }

    // Opened by hand from the settings; what the user reads and can do after each turn.
    void byHand_data()
    {
        QTest::addColumn<QByteArray>("version");
        QTest::addColumn<QString>("course");
        QTest::addColumn<QString>("message");
        QTest::addColumn<bool>("error");
        QTest::addColumn<bool>("offered"); // Download can be pressed at the end
        QTest::addColumn<QString>("box");
        QTest::addColumn<QString>("reason"); // the line under the message

        QTest::newRow("up to date") << QByteArray("123") << "look"
                                    << "There are no new updates available." << false << false << "" << "";
        // The press is answered once the check of the start has ended.
        QTest::newRow("pressed during the start-up check") << QByteArray("123") << "during start"
                                                           << "There are no new updates available." << false << false
                                                           << "" << "";
        QTest::newRow("no server") << QByteArray("124") << "no server"
                                   << "Failed to connect to Velmora-Server." << true << false << ""
                                   << "refused the connection";
        QTest::newRow("unusable version file")
            << QByteArray("1.2.4 beta") << "look"
            << "No version information was found on the Velmora-Server." << true << false << "" << "";
        QTest::newRow("release missing, then there") << QByteArray("124") << "404 then retry"
                                                     << "Version 1.2.4 downloaded." << false << false << "" << "";
        QTest::newRow("server gone before the download")
            << QByteArray("124") << "server gone"
            << "Failed to connect to Velmora-Server." << true << true << "" << "refused the connection";
        QTest::newRow("zip removed before the update")
            << QByteArray("124") << "remove zip"
            << "Version 1.2.4 ready for download." << false << true << "Installation-File not found." << "";
        QTest::newRow("closed while downloading") << QByteArray("124") << "cancel"
                                                  << "Run download." << false << false << "" << "";
    }

    void byHand()
    {
        QFETCH(QByteArray, version);
        QFETCH(QString, course);
        QFETCH(QString, message);
        QFETCH(bool, error);
        QFETCH(bool, offered);
        QFETCH(QString, box);
        QFETCH(QString, reason);

        Run run;
        QVERIFY(run.prepare(course == "during start", false, version));
        if (course == "during start") {
            run.server->setFault(VersionPath, TestServer::Fault::Slow);
            run.server->setSlowPace(1, 400);
        }
        if (course != "404 then retry")
            QVERIFY(makeRelease(run.serverRoot.path()));
        if (course == "cancel") {
            run.server->setFault(ArchivePath, TestServer::Fault::Slow);
            run.server->setSlowPace(16, 50);
        }
        if (course == "no server")
            run.server.reset();
        run.open();
        CQMKVersion* engine = run.window->GetDataModel()->GetQMKVersion();
        QSignalSpy downloadErrors(engine, &CQMKVersion::SignalDownloadError);

        bool runButtonBack = false;
        QString text;
        bool shownError = false, downloadOffered = false;
        run.driver.then([&](QDialog* d) {
            auto* settings = qobject_cast<DlgVLSettings*>(d);
            QVERIFY(settings);
            if (course == "during start")
                QVERIFY(run.window->GetDataModel()->GetQMKVersion()->IsSearching());
            click(settings->GetQuillmarkRunButton());
            QVERIFY(!settings->GetQuillmarkRunButton()->isEnabled());
            QTRY_VERIFY_WITH_TIMEOUT(run.driver.count() == 2 && settings->GetQuillmarkRunButton()->isEnabled(), 20000);
            runButtonBack = true;
        });
        run.driver.then([&](QDialog* d) {
            auto* dialog = qobject_cast<dlgUpdateQMKVersion*>(d);
            QVERIFY(dialog);
            if (course == "server gone")
                run.server.reset();
            const auto download = [&] {
                click(dialog->GetDownloadButton());
                if (course != "cancel")
                    QTRY_VERIFY_WITH_TIMEOUT(dialog->GetState() != dlgUpdateQMKVersion::StateDownloading, 20000);
            };
            if (course != "look" && course != "no server" && course != "during start")
                download();
            if (course == "404 then retry") {
                QCOMPARE(dialog->GetMessageLabel()->text(), QStringLiteral("Download failed."));
                QVERIFY(dialog->GetMessageLabel()->IsError() && dialog->GetDownloadButton()->isEnabled());
                QVERIFY(dialog->GetReasonLabel()->text().contains("(HTTP 404)"));
                QVERIFY(dialog->GetDownloadButton()->isDefault());
                QVERIFY(makeRelease(run.serverRoot.path()));
                download();
            }
            if (course == "remove zip") {
                QVERIFY(QFile::remove(engine->GetNewQMKVersionZipFilePath()));
                click(dialog->GetInstallButton());
            }
            if (course == "cancel")
                QTRY_VERIFY_WITH_TIMEOUT(dialog->GetProgressBar()->value() > 0, 20000);
            text = dialog->GetMessageLabel()->text();
            shownError = dialog->GetMessageLabel()->IsError();
            downloadOffered = dialog->GetDownloadButton()->isVisible() && dialog->GetDownloadButton()->isEnabled();
            QCOMPARE(dialog->GetReasonLabel()->isVisible(), !reason.isEmpty());
            QVERIFY2(dialog->GetReasonLabel()->text().contains(reason), qPrintable(dialog->GetReasonLabel()->text()));
            // Only a check that found no server can be asked again; it is what Return does then.
            QCOMPARE(dialog->GetRetryButton()->isVisible(), course == "no server");
            QCOMPARE(dialog->GetRetryButton()->isDefault(), course == "no server");
            click(course == "cancel" ? dialog->GetCancelButton() : dialog->GetOkButton());
        });
        click(run.window->GetActionButtons().at(3));
        QVERIFY(runButtonBack);
        QCOMPARE(run.driver.titles(), (QStringList{"Settings", "Quillmark Update"}));

        QCOMPARE(text, message);
        QCOMPARE(shownError, error);
        QCOMPARE(downloadOffered, offered);
        QCOMPARE(run.boxes.count(), box.isEmpty() ? 0 : 1);
        if (!box.isEmpty())
            QVERIFY(run.boxes.boxes().first().text.startsWith(box + "\n" + engine->GetNewQMKVersionZipFilePath()));
        QVERIFY(run.opened().isEmpty());
        if (course == "404 then retry")
            QCOMPARE(readFile(engine->GetNewQMKVersionZipFilePath()), readFile(run.serverRoot.path() + ArchivePath));
        if (course == "cancel") {
            // The transfer was dropped when the dialog closed, not left to finish.
            QTRY_COMPARE(downloadErrors.count(), 1);
            QVERIFY(engine->GetErrorText().contains("User abort"));
            QVERIFY(readFile(engine->GetNewQMKVersionZipFilePath()).size() <
                    readFile(run.serverRoot.path() + ArchivePath).size());
        }
        // A check by hand never starts the dataset check.
        for (const TestServer::Request& r : run.server ? run.server->requests() : QList<TestServer::Request>())
            QVERIFY(r.path != DatasetListPath);
    }
};

QTEST_MAIN(TestSelfUpdate)
#include "TestSelfUpdate.moc"
