// Builds the main window offscreen on a program folder and saves it, and each of its dialogs, in
// English and German: mainwindow_en.png, settings_en.png, help_en.png, the self-update dialog
// (selfupdate_ready_en.png, selfupdate_downloaded_en.png, selfupdate_uptodate_en.png,
// selfupdate_noserver_en.png), then the same with _de. The update dialog is taken in its main
// states from a real update against a loopback server: update_ready, update_downloading,
// update_downloaded (then closed, left for later), update_readytoinstall (opened again),
// update_installing, update_installed, then the main window with the new cycle
// (mainwindow_updated), a second search that finds nothing newer (update_uptodate), the same with
// the cycle held on disk chosen and its details open (update_local), a search whose credentials
// are refused (update_credentials) and one that cannot reach the server (update_failed); the settings dialog while its backup panel writes the
// cycle archive and after writing and loading it (settings_backup_running, settings_backup_created,
// settings_backup_loaded); then the reset and backup-removal dialogs idle and ready: reset_idle,
// reset_ready, removebackup_idle and removebackup_ready. Last, the first start of a program folder
// without settings whose X-Plane 11 was found through the fake home folder's install file, with
// the offer open in the category's band (mainwindow_simfound).
// The clock stands at 13 February 2018: cycle 1802 is in force, 1801 expired 12 days ago.
// The dialogs are opened the way a user opens them (their action buttons), through the dialog
// route, and taken while they are open.
// Usage: screenshot_mainwindow [PROGRAM_FOLDER] [OUTPUT_FOLDER] [WIDTHxHEIGHT...]
// Without a program folder (or with "-") a sample catalogue in a temporary folder is used. With
// sizes, only the main window is taken, once per size and language, as
// mainwindow_<language>_<size>.png.
#include "app/Application.h"
#include "app/CAppPaths.h"
#include "app/CMessageBox.h"
#include "engine/CDSVersion.h"
#include "model/CDataModel.h"
#include "model/CDialogRoute.h"
#include "model/CProduct.h"
#include "support/DatasetFiles.h"
#include "support/SampleCatalogue.h"
#include "support/TestServer.h"
#include "ui/DlgBackupRun.h"
#include "ui/DlgVLSettings.h"
#include "ui/QuillmarkMainWindow.h"
#include "ui/VlBigComboBox.h"
#include "ui/VlCatLabel.h"
#include "ui/VlCheckBox.h"
#include "ui/VlCycleDates.h"
#include "ui/VlFoldPane.h"
#include "ui/VlProdLabel.h"
#include "ui/VlProdListLabel.h"
#include "ui/VlPushButton.h"
#include "ui/dlgUpdateDatasetVersion.h"
#include "ui/dlgUpdateQMKVersion.h"
#include "ui/wdgBackupLocal.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QLayout>
#include <QPixmap>
#include <QProgressBar>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QSize>
#include <QStyleFactory>
#include <QTemporaryDir>
#include <QTimer>

#include <QTest>

#include <cstdio>
#include <functional>

namespace {
// Lets posted layout requests and language changes run until the widgets stop moving.
void settle(QWidget& widget)
{
    for (int i = 0; i < 5; ++i) {
        QApplication::processEvents();
        if (widget.layout())
            widget.layout()->activate();
    }
}

bool save(QWidget& widget, const QString& path)
{
    settle(widget);
    const QPixmap shot = widget.grab();
    if (shot.isNull() || !shot.save(path)) {
        std::fprintf(stderr, "could not save %s\n", qPrintable(path));
        return false;
    }
    std::printf("%s\n", qPrintable(path));
    return true;
}

// The window re-flows its captions only once it is resized, as after a filter change.
bool saveWindow(QWidget& window, const QSize& size, const QString& path)
{
    window.resize(size);
    settle(window);
    window.resize(size.width() + 1, size.height());
    settle(window);
    window.resize(size);
    return save(window, path);
}

const QSize kWindowSize(1000, 840);

// Runs the event loop until the engine sends `signal` (or 20 s have passed).
template <typename Signal> void waitFor(CQMKVersion* engine, Signal signal)
{
    QEventLoop loop;
    QObject::connect(engine, signal, &loop, &QEventLoop::quit);
    QObject::connect(engine, &CQMKVersion::SignalDownloadError, &loop, &QEventLoop::quit);
    QTimer::singleShot(20000, &loop, &QEventLoop::quit);
    loop.exec();
}

// The self-update dialog against a loopback server: a newer version ready for download, the same
// downloaded, and a server that cannot be reached; selfupdate_ready_en.png and so on.
bool saveSelfUpdate(QuillmarkMainWindow& window, const QString& output, const QString& suffix)
{
    CDataModel* model = window.GetDataModel();
    CQMKVersion* engine = model->GetQMKVersion();
    TestServer server;
    if (!server.start())
        return false;
    server.addContent(QStringLiteral("/downloads/quillmark/mac_version.txt"), QByteArrayLiteral("124"));
    server.addContent(QStringLiteral("/downloads/quillmark/VL_QUILLMARK_V124_MAC.zip"), QByteArray(64 * 1024, 'x'));
    bool ok = true;
    const QString title = QStringLiteral("Quillmark Update");
    // A search against `hostAndPort`, then the dialog on its outcome, taken as `name`; `more` may
    // take it on further before it closes.
    const auto take = [&](const QString& hostAndPort, const char* name,
                          const std::function<void(dlgUpdateQMKVersion&)>& more = nullptr) {
        engine->SetServer(hostAndPort);
        engine->SearchForNewVersion(false);
        waitFor(engine, &CQMKVersion::SignalDownloadVersionTXTFinish);
        dlgUpdateQMKVersion dialog(&window);
        dialog.Init(model, title);
        dialog.show();
        ok = save(dialog, output + QLatin1Char('/') + QLatin1String(name) + suffix) && ok;
        if (more)
            more(dialog);
        dialog.done(QDialog::Rejected);
    };
    take(server.hostAndPort(), "selfupdate_ready", [&](dlgUpdateQMKVersion& dialog) {
        dialog.ClickedDownloadSlot();
        waitFor(engine, &CQMKVersion::SignalNewQMKVersionDownloaded);
        ok = save(dialog, output + QStringLiteral("/selfupdate_downloaded") + suffix) && ok;
    });
    // The version that runs (1.2.3) is the newest on the server.
    server.addContent(QStringLiteral("/downloads/quillmark/mac_version.txt"), QByteArrayLiteral("123"));
    take(server.hostAndPort(), "selfupdate_uptodate");
    quint16 closedPort = 0;
    {
        TestServer gone;
        if (gone.start())
            closedPort = gone.port();
    }
    take(QStringLiteral("127.0.0.1:%1").arg(closedPort), "selfupdate_noserver");
    return ok;
}

// A program folder with two selected add-ons on cycle 1801 and a server offering 1802; the update
// dialog is opened with the Update button and taken at each step of a real update.
bool takeUpdateDialog(const QString& output, const QString& suffix)
{
    using namespace DatasetFiles;
    // The folders show on the cards; a plain name reads better there than the tool's own.
    QTemporaryDir root(QDir::tempPath() + QStringLiteral("/quillmark-XXXXXX"));
    const QString appPath = root.path() + QStringLiteral("/app");
    const QString serverRoot = root.path() + QStringLiteral("/server");
    SampleCatalogue catalogue;
    catalogue.categories = QStringList{QStringLiteral("X-Plane 11")};
    catalogue.datasets = QStringList{QStringLiteral("xp11nav")};
    for (const QString& name : {QStringLiteral("Bravo FMS"), QStringLiteral("Echo FMS")}) {
        const QString folder = root.path() + QStringLiteral("/X-Plane 11/Aircraft/") + name;
        writeFile(folder + QStringLiteral("/NavData/a.dat"), "old");
        writeFile(folder + QStringLiteral("/NavData/cycle_info.txt"),
                  "AIRAC cycle    : 1801\r\nRevision       : 1\r\n");
        catalogue.products << SampleCatalogue::NavDataProduct(name, QStringLiteral("xp11nav"), folder, true);
    }
    writeFile(root.path() + QStringLiteral("/new/NavData/a.dat"), "new");
    writeFile(root.path() + QStringLiteral("/new/NavData/cycle_info.txt"),
              "AIRAC cycle    : 1802\r\nRevision       : 1\r\n");
    writeFile(serverRoot + QStringLiteral("/quillmark/versionList.txt"), "Revision: 1\n1802\n");
    QDir().mkpath(serverRoot + QStringLiteral("/quillmark/1802"));
    if (!zipFolder(root.path() + QStringLiteral("/new"), serverRoot + QStringLiteral("/quillmark/1802/xp11nav.zip"))
             .isEmpty())
        return false;
    TestServer server(serverRoot);
    if (!server.start())
        return false;
    catalogue.server = server.hostAndPort();
    catalogue.WriteTo(appPath);

    const QString previousAppPath = Application::st_strAppPath;
    Application::st_strAppPath = appPath;
    bool ok = true;
    {
        QuillmarkMainWindow window;
        Application::mainWnd = &window;
        window.setMinimumSize(0, 0);
        window.resize(kWindowSize);
        window.show();
        const auto file = [&](const char* name) { return output + QLatin1Char('/') + QLatin1String(name) + suffix; };
        bool downloaded = false, updated = false, upToDate = false, failed = false;
        const char* failedName = "update_failed";
        // A step that does not come in time fails the pictures rather than taking a wrong one.
        const auto waitFor = [&](const std::function<bool()>& done, int ms) {
            const bool reached = QTest::qWaitFor(done, ms);
            ok = ok && reached;
            return reached;
        };
        CDSVersion* engine = window.GetDataModel()->GetDSVersion();
        CDialogRoute::SetHandler([&](QDialog* d) {
            auto* dialog = qobject_cast<dlgUpdateDatasetVersion*>(d);
            if (!dialog)
                return;
            switch (dialog->GetState()) {
            case dlgUpdateDatasetVersion::StateUpToDate: {
                ok = save(*dialog, file("update_uptodate")) && ok;
                // The cycle just installed is held locally and can be installed again from disk.
                VlBigComboBox* versions = dialog->GetVersionCombo();
                ok = ok && versions->count() > 1;
                if (versions->count() > 1) {
                    versions->setCurrentIndex(1);
                    dialog->GetDetailsPane()->Open();
                    ok = save(*dialog, file("update_local")) && ok;
                    versions->setCurrentIndex(0);
                }
                upToDate = true;
                return;
            }
            case dlgUpdateDatasetVersion::StateReadyToInstall: {
                // Downloaded earlier and left for later: the dialog offers the install.
                ok = save(*dialog, file("update_readytoinstall")) && ok;
                bool installingTaken = false;
                // Taken as the copy begins, when the bar names the product.
                QObject::connect(engine, &CDSVersion::SignalBeginCopyThead, dialog, [&] {
                    if (!installingTaken)
                        ok = save(*dialog, file("update_installing")) && ok;
                    installingTaken = true;
                });
                dialog->GetInstallButton()->click();
                if (waitFor([&] { return dialog->GetState() == dlgUpdateDatasetVersion::StateInstalled; }, 30000)) {
                    dialog->GetResultPane()->Open();
                    ok = save(*dialog, file("update_installed")) && ok;
                }
                updated = true;
                return;
            }
            case dlgUpdateDatasetVersion::StateNewVersion:
                break;
            default:
                ok = save(*dialog, file(failedName)) && ok;
                failed = true;
                return;
            }
            if (!dialog->GetOverwriteAccept()->isChecked())
                dialog->GetOverwriteAccept()->click();
            ok = save(*dialog, file("update_ready")) && ok;
            // Slowly enough to be seen half-way.
            server.setSlowPace(48, 40);
            server.setFault(QStringLiteral("/quillmark/1802/xp11nav.zip"), TestServer::Fault::Slow);
            dialog->GetDownloadButton()->click();
            if (waitFor([&] { return dialog->GetProgressBar()->value() >= 30; }, 20000))
                ok = save(*dialog, file("update_downloading")) && ok;
            if (waitFor([&] { return dialog->GetState() == dlgUpdateDatasetVersion::StateDownloaded; }, 30000))
                ok = save(*dialog, file("update_downloaded")) && ok;
            // Closed without installing: the user leaves the cycle for later.
            downloaded = true;
        });
        QMetaObject::invokeMethod(window.GetActionButtons().at(0), "clickedSlot");
        waitFor([&] { return downloaded; }, 60000);
        QMetaObject::invokeMethod(window.GetActionButtons().at(0), "clickedSlot");
        waitFor([&] { return updated; }, 60000);
        ok = saveWindow(window, kWindowSize, file("mainwindow_updated")) && ok;
        // The same server asked again has nothing newer than what was just installed.
        window.GetDataModel()->RunUpdateAddOnDatasets(nullptr);
        waitFor([&] { return upToDate; }, 20000);
        // A server that refuses the credentials answers, so the file's own failure shows.
        server.setCredentials(QByteArrayLiteral("someone:else"));
        failedName = "update_credentials";
        window.GetDataModel()->RunUpdateAddOnDatasets(nullptr);
        waitFor([&] { return failed; }, 20000);
        // With the server out of reach a search by hand ends in the connection failure.
        failed = false;
        failedName = "update_failed";
        engine->SetServer(QStringLiteral("127.0.0.1:1"));
        window.GetDataModel()->RunUpdateAddOnDatasets(nullptr);
        waitFor([&] { return failed; }, 20000);

        // The settings' backup panel writes the installed cycle into an archive and loads it back.
        // Incompressible filler keeps zip busy long enough to be seen at work.
        QByteArray filler(24 * 1024 * 1024, Qt::Uninitialized);
        QRandomGenerator(1802).fillRange(reinterpret_cast<quint32*>(filler.data()), filler.size() / 4);
        ok = writeFile(CAppPaths::DownloadFolder() + QStringLiteral("/QuillmarkCycle/filler.bin"), filler) && ok;
        const QString archiveFolder = root.path() + QStringLiteral("/archives");
        QDir().mkpath(archiveFolder);
        QString archive;
        const auto previousHook =
            wdgBackupLocal::setFileDialogHook([&](QWidget*, const wdgBackupLocal::FileRequest& request) {
                if (request.save)
                    archive = archiveFolder + QLatin1Char('/') + request.proposedName;
                return archive;
            });
        bool settingsTaken = false;
        CDialogRoute::SetHandler([&](QDialog* d) {
            auto* dialog = qobject_cast<DlgVLSettings*>(d);
            if (!dialog)
                return;
            wdgBackupLocal* panel = dialog->GetBackupPanel();
            panel->ClickedCreateBackup();
            ok = ok && panel->IsBusy();
            ok = save(*dialog, file("settings_backup_running")) && ok;
            if (waitFor([&] { return !panel->IsBusy(); }, 60000))
                ok = save(*dialog, file("settings_backup_created")) && ok;
            panel->ClickedLoadBackup();
            if (waitFor([&] { return !panel->IsBusy(); }, 60000))
                ok = save(*dialog, file("settings_backup_loaded")) && ok;
            settingsTaken = true;
        });
        QMetaObject::invokeMethod(window.GetActionButtons().at(3), "clickedSlot");
        ok = ok && settingsTaken;
        wdgBackupLocal::setFileDialogHook(previousHook);

        // The reset and the backup removal, each idle and then ready with its result open.
        const auto takeBackupRun = [&](int button, const char* idle, const char* ready) {
            bool taken = false;
            CDialogRoute::SetHandler([&](QDialog* d) {
                auto* dialog = qobject_cast<DlgBackupRun*>(d);
                if (!dialog)
                    return;
                ok = save(*dialog, file(idle)) && ok;
                dialog->GetActionButton()->click();
                if (waitFor([&] { return dialog->GetActionButton()->isHidden(); }, 30000)) {
                    dialog->GetResultPane()->Open();
                    ok = save(*dialog, file(ready)) && ok;
                }
                taken = true;
            });
            QMetaObject::invokeMethod(window.GetActionButtons().at(button), "clickedSlot");
            ok = ok && taken;
        };
        takeBackupRun(1, "reset_idle", "reset_ready");
        // Install once more, so that there are backups to remove.
        QSignalSpy installed(engine, &CDSVersion::SignalInstallReady);
        engine->SetProductList(window.GetDataModel()->GetProductList());
        engine->InstallProducts();
        waitFor([&] { return !installed.isEmpty(); }, 30000);
        takeBackupRun(2, "removebackup_idle", "removebackup_ready");
        CDialogRoute::SetHandler(nullptr);
        Application::mainWnd = nullptr;
    }
    Application::st_strAppPath = previousAppPath;
    return ok;
}
// The first start of a program folder without settings: X-Plane 11 was found through the install
// file in a fake home folder, X-Plane 10 was not; the band of X-Plane 11 offers the folder.
bool takeSimulatorFound(const QString& output, const QString& suffix)
{
    QTemporaryDir root(QDir::tempPath() + QStringLiteral("/quillmark-XXXXXX"));
    const QString home = root.path() + QStringLiteral("/home");
    const QString sim = root.path() + QStringLiteral("/Simulators/X-Plane 11");
    SampleCatalogue::MakeSimFolder(sim);
    DatasetFiles::writeFile(home + QStringLiteral("/.x-plane/x-plane_install_11.txt"),
                            (sim + QStringLiteral("/\n")).toUtf8());
    SampleCatalogue::Small().WriteTo(root.path() + QStringLiteral("/app"));
    QFile::remove(root.path() + QStringLiteral("/app/bin/prop_ini.xml"));

    const QByteArray previousHome = qgetenv("HOME");
    const QString previousAppPath = Application::st_strAppPath;
    qputenv("HOME", home.toUtf8());
    Application::st_strAppPath = root.path() + QStringLiteral("/app");
    bool ok = true;
    {
        QuillmarkMainWindow window;
        window.setMinimumSize(0, 0);
        window.resize(kWindowSize);
        window.show();
        VlCatLabel* category = window.GetCategoryButton(QStringLiteral("X-Plane 11"));
        ok = category != nullptr;
        if (category)
            category->SetSelect(true);
        ok = saveWindow(window, kWindowSize, output + QStringLiteral("/mainwindow_simfound") + suffix) && ok;
    }
    Application::st_strAppPath = previousAppPath;
    qputenv("HOME", previousHome);
    return ok;
}
} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    Application::registerResources();
    // The program's own application object, so the pictures use its 10-point font.
    Application app(argc, argv);
    // Offscreen nobody could close a box: print it instead.
    CMessageBox::setHandler([](QMessageBox::Icon, const QString& title, const QString& text) {
        std::fprintf(stderr, "message box \"%s\": %s\n", qPrintable(title), qPrintable(text));
    });
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));

    const QString programArg = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("-");
    const QString output = argc > 2 ? QString::fromLocal8Bit(argv[2]) : QStringLiteral("screenshots");
    QDir().mkpath(output);

    QTemporaryDir sample(QDir::tempPath() + QStringLiteral("/quillmark-XXXXXX"));
    if (programArg == QLatin1String("-")) {
        SampleCatalogue catalogue = SampleCatalogue::Small();
        const QString sim = sample.path() + QStringLiteral("/X-Plane 11");
        SampleCatalogue::MakeSimFolder(sim);
        QDir().mkpath(sim + QStringLiteral("/Custom Data/GNS430"));
        // One card on the cycle in force, one on the cycle before.
        DatasetFiles::writeFile(sim + QStringLiteral("/Custom Data/cycle_info.txt"),
                                "AIRAC cycle    : 1802\r\nRevision       : 1\r\n");
        DatasetFiles::writeFile(sim + QStringLiteral("/Custom Data/GNS430/cycle_info.txt"),
                                "AIRAC cycle    : 1801\r\nRevision       : 1\r\n");
        catalogue.categoryPaths.insert(QStringLiteral("X-Plane 11"), sim);
        catalogue.WriteTo(sample.path());
        Application::st_strAppPath = sample.path();
    } else {
        Application::st_strAppPath = QDir(programArg).absolutePath();
    }
    if (!QFile::exists(Application::st_strAppPath + QStringLiteral("/bin/base_ini.xml"))) {
        std::fprintf(stderr, "no catalogue in %s/bin\n", qPrintable(Application::st_strAppPath));
        return 2;
    }
    Application::st_strVersion = QStringLiteral("1.2.3");
    VlCycleDates::SetToday(QDate(2018, 2, 13));
    Application::loadTranslations(QStringLiteral(":/lang"));
    Application::setLanguage(QStringLiteral("en_US"));

    QList<QSize> sizes;
    for (int i = 3; i < argc; ++i) {
        const QStringList wh = QString::fromLocal8Bit(argv[i]).split(QLatin1Char('x'));
        if (wh.size() == 2)
            sizes << QSize(wh.at(0).toInt(), wh.at(1).toInt());
    }
    const bool named = !sizes.isEmpty();
    if (!named)
        sizes << kWindowSize;

    QuillmarkMainWindow window;
    Application::mainWnd = &window;
    // The offscreen screen is small; show the window at the sizes asked for.
    window.setMinimumSize(0, 0);
    window.resize(sizes.first());
    window.show();
    // One card with its commands open, so that the picture shows them too.
    if (!window.GetProdList()->GetCards().isEmpty())
        window.GetProdList()->GetCards().first()->ClickedShowCommandsButtonSlot();

    bool ok = true;
    QString currentFile;
    CDialogRoute::SetHandler([&](QDialog* dialog) { ok = save(*dialog, currentFile) && ok; });
    const struct
    {
        const char* suffix;
        const char* key;
    } languages[] = {{"en", "en_US"}, {"de", "de_DE"}};
    for (const QSize& size : qAsConst(sizes)) {
        for (const auto& language : languages) {
            Application::setLanguage(QString::fromLatin1(language.key));
            const QString sizeSuffix =
                named ? QStringLiteral("_%1x%2").arg(size.width()).arg(size.height()) : QString();
            ok = saveWindow(window, size,
                            output + QStringLiteral("/mainwindow_") + QLatin1String(language.suffix) + sizeSuffix +
                                QStringLiteral(".png")) &&
                 ok;
        }
    }
    for (const auto& language : languages) {
        if (named)
            break;
        Application::setLanguage(QString::fromLatin1(language.key));
        settle(window);
        const QString suffix = QLatin1Char('_') + QLatin1String(language.suffix) + QStringLiteral(".png");
        const QList<QWidget*> buttons = window.GetActionButtons();
        const struct
        {
            int button;
            const char* name;
        } dialogs[] = {{3, "settings"}, {4, "help"}};
        for (const auto& dialog : dialogs) {
            currentFile = output + QLatin1Char('/') + QLatin1String(dialog.name) + suffix;
            QMetaObject::invokeMethod(buttons.at(dialog.button), "clickedSlot");
        }
        ok = saveSelfUpdate(window, output, suffix) && ok;
    }
    CDialogRoute::SetHandler(nullptr);
    for (const auto& language : languages) {
        if (named)
            break;
        Application::setLanguage(QString::fromLatin1(language.key));
        ok = takeUpdateDialog(output, QLatin1Char('_') + QLatin1String(language.suffix) + QStringLiteral(".png")) && ok;
        ok = takeSimulatorFound(output, QLatin1Char('_') + QLatin1String(language.suffix) + QStringLiteral(".png")) &&
             ok;
    }
    Application::setLanguage(QStringLiteral("en_US"));
    Application::mainWnd = nullptr;
    return ok ? 0 : 1;
}
