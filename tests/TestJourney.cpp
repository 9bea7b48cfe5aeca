#include "app/Application.h"
#include "app/CMessageBox.h"
#include "engine/CDSVersion.h"
#include "model/CDataModel.h"
#include "model/CProduct.h"
#include "support/DatasetFiles.h"
#include "support/DialogDriver.h"
#include "support/MessageBoxSpy.h"
#include "support/NginxServer.h"
#include "support/SampleCatalogue.h"
#include "support/SigningKey.h"
#include "support/TempAppDir.h"
#include "support/UserInput.h"
#include "ui/DlgBackupRun.h"
#include "ui/DlgVLSettings.h"
#include "ui/QuillmarkMainWindow.h"
#include "ui/SystemButton.h"
#include "ui/VlBigComboBox.h"
#include "ui/VlCheckBox.h"
#include "ui/VlFoldPane.h"
#include "ui/VlMessageLabel.h"
#include "ui/VlProdLabel.h"
#include "ui/VlProdListLabel.h"
#include "ui/VlPushButton.h"
#include "ui/dlgUpdateDatasetVersion.h"
#include "ui/dlgUpdateQMKVersion.h"
#include "ui/wdgBackupLocal.h"

#include <QApplication>
#include <QCryptographicHash>
#include <QLabel>
#include <QProcess>
#include <QProgressBar>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QScopedPointer>
#include <QTest>
#include <QTimer>

#include <memory>

using namespace DatasetFiles;
using namespace UserInput;

namespace {
const QByteArray kVersionList = "Revision: 1\n1802\n";

const QByteArray kCycle1801 = "AIRAC cycle    : 1801\r\nRevision       : 1\r\n";
const QByteArray kCycle1802 = "AIRAC cycle    : 1802\r\nRevision       : 1\r\n";
const QString kReleaseArchive = QStringLiteral("/downloads/quillmark/VL_QUILLMARK_V124_MAC.zip");
const QStringList kDatasets{"XP11NAV", "XP10NAV"};

QByteArray sha1(const QByteArray& bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex();
}

// Compares two trees of checksums and names every difference, so a failure says what was lost.
QString treeDifference(const QMap<QString, QByteArray>& expected, const QMap<QString, QByteArray>& actual)
{
    QStringList lines;
    for (auto it = expected.cbegin(); it != expected.cend(); ++it) {
        if (!actual.contains(it.key()))
            lines << "missing " + it.key();
        else if (actual.value(it.key()) != it.value())
            lines << "changed " + it.key();
    }
    for (auto it = actual.cbegin(); it != actual.cend(); ++it)
        if (!expected.contains(it.key()))
            lines << "extra " + it.key();
    return lines.join('\n');
}

// One add-on of the journey's catalogue; products sharing a folder and dataset form an install group.
struct Addon
{
    QString name;
    QString dataset;
    QString folder;
    bool selected;
};
const QList<Addon> kAddons{{"Alpha FMS", "XP11NAV", "Alpha", true},
                           {"Bravo FMS", "XP11NAV", "Bravo", true},
                           {"Charlie GNS", "XP10NAV", "Shared", true},
                           {"Delta GNS", "XP10NAV", "Shared", false},
                           {"Echo FMS", "XP11NAV", "Echo", false}};

// What a dataset archive brings into NavData: a.dat replaced, new files, the new cycle.
QMap<QString, QByteArray> archiveFiles(const QString& dataset)
{
    QMap<QString, QByteArray> files{{"a.dat", "new a of " + dataset.toUtf8()},
                                    {"Added/b.dat", "new b of " + dataset.toUtf8()},
                                    {"cycle_info.txt", kCycle1802}};
    if (dataset == "XP10NAV") {
        // Large enough to be cut off half-way by a server that is stopped.
        QByteArray big(2 * 1024 * 1024, Qt::Uninitialized);
        QRandomGenerator random(7);
        random.fillRange(reinterpret_cast<quint32*>(big.data()), big.size() / 4);
        files.insert("Big/nav.bin", big);
    }
    return files;
}

// A program folder with the journey's add-ons on cycle 1801, and the main window over it.
struct Program
{
    MessageBoxSpy boxes;
    TempAppDir app;
    QTemporaryDir work;
    ToolPath tools;
    QScopedPointer<QuillmarkMainWindow> window;
    QMap<QString, QByteArray> before;

    QString addons() const { return work.path() + "/Addons"; }
    // Every file of the add-on folders, hidden ones too: a completed run leaves nothing of its own.
    QMap<QString, QByteArray> tree() const { return checksums(addons()); }
    QByteArray log(const QString& name) const { return app.readFile("log/" + name); }
    QString cycleFolder() const { return app.filePath("downloads/QuillmarkCycle"); }

    bool prepare(const QString& server, bool autoChecks, const QString& publicKey)
    {
        for (const Addon& addon : kAddons) {
            const QString nav = addons() + "/" + addon.folder + "/NavData";
            if (QFileInfo::exists(nav))
                continue;
            writeRandomTree(nav, 15, quint32(qHash(addon.folder)));
            writeFile(nav + "/a.dat", "old a of " + addon.folder.toUtf8());
            writeFile(nav + "/cycle_info.txt", kCycle1801);
        }
        before = tree();
        SampleCatalogue catalogue;
        catalogue.server = server;
        catalogue.publicKey = publicKey;
        catalogue.quietDefaults = false;
        catalogue.datasets = kDatasets;
        for (const Addon& addon : kAddons)
            catalogue.products << SampleCatalogue::NavDataProduct(addon.name, addon.dataset,
                                                                  addons() + "/" + addon.folder, addon.selected);
        const QString opened = tools.path() + "/opened.txt";
        return app.writeFile("bin/base_ini.xml", catalogue.CatalogueXml()) &&
               app.writeFile("bin/prop_ini.xml", SampleCatalogue::SettingsXml(autoChecks, autoChecks)) &&
               tools.addScript("xdg-open", "echo \"$@\" >> '" + opened.toUtf8() + "'");
    }
    void open()
    {
        window.reset(new QuillmarkMainWindow);
        Application::mainWnd = window.data();
        window->show();
    }
    VlProdLabel* card(const QString& name) const
    {
        for (VlProdLabel* c : window->GetProdList()->GetCards())
            if (c->GetProduct()->GetName() == name)
                return c;
        return nullptr;
    }
    QStringList opened() const
    {
        return QString::fromUtf8(readFile(tools.path() + "/opened.txt")).split('\n', Qt::SkipEmptyParts);
    }
    // The add-on tree once `folders` hold the new cycle, with or without their backups.
    QMap<QString, QByteArray> installed(const QStringList& folders, bool backups) const
    {
        QMap<QString, QByteArray> expected = before;
        for (const Addon& addon : kAddons) {
            if (!folders.contains(addon.folder))
                continue;
            const QString nav = addon.folder + "/NavData/";
            const QMap<QString, QByteArray> files = archiveFiles(addon.dataset);
            for (auto it = files.cbegin(); it != files.cend(); ++it)
                expected.insert(nav + it.key(), sha1(it.value()));
            if (backups) {
                expected.insert(nav + "QMK_" + addon.dataset + "_back/a.dat",
                                sha1("old a of " + addon.folder.toUtf8()));
                expected.insert(nav + "QMK_" + addon.dataset + "_back/cycle_info.txt", sha1(kCycle1801));
            }
        }
        return expected;
    }
    ~Program()
    {
        window.reset();
        Application::mainWnd = nullptr;
    }
};

// The lines a log gained since the mark was taken.
class LogMark
{
public:
    explicit LogMark(const Program& program) : m_program(program)
    {
        for (const QString& name : QDir(program.app.filePath("log")).entryList(QDir::Files))
            m_sizes.insert(name, program.log(name).size());
    }
    QByteArray since(const QString& name) const { return m_program.log(name).mid(m_sizes.value(name)); }

private:
    const Program& m_program;
    QMap<QString, int> m_sizes;
};
} // namespace

// The whole program the way a user meets it, against the production web server of the README.
class TestJourney : public QObject
{
    Q_OBJECT

    NginxServer m_server;
    SigningKey m_key;
    std::unique_ptr<Program> m_run;

    // The cycle and the release as the publisher puts them on the server, signed: the new
    // program and its updater, and one archive per dataset.
    bool publish()
    {
        QTemporaryDir work;
        writeFile(work.filePath("release/VL_QUILLMARK_V124.app/Quillmark"), "new program");
        writeFile(work.filePath("release/qmk_au.app/qmk_au"), "updater");
        for (const QString& dataset : kDatasets) {
            const QMap<QString, QByteArray> files = archiveFiles(dataset);
            for (auto it = files.cbegin(); it != files.cend(); ++it)
                writeFile(work.filePath("source/" + dataset + "/NavData/" + it.key()), it.value());
        }
        const QString problem = m_key.publish({"-c", "1802", "-R", work.filePath("release"), "-v", "124"},
                                              work.filePath("source"), m_server.root());
        if (!problem.isEmpty())
            qWarning("%s", qPrintable(problem));
        return problem.isEmpty();
    }
    // A pass of the program's start-up loop; one that does not end by itself within a minute is
    // ended with 99, so a failing step cannot hang the run.
    static int runPass(const Application::RunHooks& hooks, int pass)
    {
        QTimer guard;
        guard.setSingleShot(true);
        connect(&guard, &QTimer::timeout, [] { QCoreApplication::exit(99); });
        guard.start(60000);
        return Application::runPass(hooks, pass);
    }
    QByteArray served(const QString& path) const { return readFile(m_server.root() + path); }
    void verifyTree(const QMap<QString, QByteArray>& expected)
    {
        const QString difference = treeDifference(expected, m_run->tree());
        QVERIFY2(difference.isEmpty(), qPrintable(difference));
    }
    void verifyCards(const QStringList& on1802)
    {
        for (const Addon& addon : kAddons) {
            VlProdLabel* card = m_run->card(addon.name);
            QVERIFY(card);
            const QString expected =
                on1802.contains(addon.name) ? "Installed: cycle 1802, revision 1" : "Installed: cycle 1801, revision 1";
            QVERIFY2(card->GetCycleText().startsWith(expected), qPrintable(addon.name + ": " + card->GetCycleText()));
        }
    }

private slots:
    void initTestCase()
    {
        Application::registerResources();
        Application::loadTranslations(QStringLiteral(":/lang"));
        Application::setLanguage(QStringLiteral("en_US"));
        QVERIFY2(!NginxServer::binary().isEmpty(), "nginx is not installed; tools/test.sh installs nginx-light");
        QVERIFY2(m_key.isValid(), "minisign is not installed");
        QVERIFY(publish());
        QVERIFY2(m_server.start(), qPrintable(m_server.errorString()));
        m_run.reset(new Program);
    }

    void cleanupTestCase()
    {
        m_run.reset();
        m_server.stop();
    }

    // The recipe's TLS port, which the program itself does not use: the same files behind the same
    // credentials (the same server block), for clients that trust its certificate.
    void tlsPort()
    {
        QProcess curl;
        curl.start("curl", {"-sf", "-X", "POST", "--cacert", m_server.certificatePath(), "-u", "webclient:Q7x2Lm9p",
                            QString("https://127.0.0.1:%1/quillmark/versionList.txt").arg(m_server.tlsPort())});
        QVERIFY(curl.waitForFinished(20000));
        QCOMPARE(curl.readAllStandardOutput(), kVersionList);
    }

    // 1. The program starts with both checks on: the self-update dialog offers 1.2.4 and is closed,
    // then the update dialog opens by itself with the new cycle. Nothing is touched yet.
    void startUpChecks()
    {
        QVERIFY(m_run->prepare(m_server.hostAndPort(), true, m_key.publicKey()));
        const int accessBefore = m_server.accessLog().size();
        DialogDriver driver;
        QString offered, cycleText;
        int cycleState = -1;
        driver.then([&](QDialog* d) {
            auto* dialog = qobject_cast<dlgUpdateQMKVersion*>(d);
            QVERIFY(dialog);
            offered = dialog->GetMessageLabel()->text();
            click(dialog->GetOkButton());
        });
        driver.then([&](QDialog* d) {
            auto* dialog = qobject_cast<dlgUpdateDatasetVersion*>(d);
            QVERIFY(dialog);
            cycleState = dialog->GetState();
            cycleText = dialog->GetMessageLabel()->text();
            click(dialog->GetCancelButton());
        });
        m_run->open();
        QTRY_COMPARE_WITH_TIMEOUT(driver.count(), 2, 30000);
        QCOMPARE(driver.titles(), (QStringList{"Quillmark Update", "Update navigation data"}));
        QCOMPARE(offered, QString("Version 1.2.4 ready for download."));
        QCOMPARE(cycleState, int(dlgUpdateDatasetVersion::StateNewVersion));
        QCOMPARE(cycleText, QString("1802 ready for download."));
        verifyTree(m_run->before);
        verifyCards({});
        QCOMPARE(m_run->boxes.count(), 0);
        // Both checks asked nginx, in this order, and were answered.
        const QByteArray access = m_server.accessLog().mid(accessBefore);
        const int app = access.indexOf("\"POST /downloads/quillmark/mac_version.txt HTTP/1.1\" 200");
        const int cycle = access.indexOf("\"POST /quillmark/versionList.txt HTTP/1.1\" 200");
        QVERIFY2(app >= 0 && cycle > app, access.constData());
        QVERIFY(m_run->log("log_qmkupdate.txt").contains("New version 1.2.4"));
        QVERIFY(m_run->log("log_dsupdate.txt").contains("# New   Cycle-Version: 1802 Revision: 1"));
    }

    // 2. The selected products are updated by keyboard alone: it starts on the consent, Return takes
    // the step on offer, Escape before the install asks whether to leave it for later. Two datasets;
    // Charlie and Delta share one folder and are served by one install.
    void updateSelected()
    {
        QVERIFY(m_run->window);
        const LogMark mark(*m_run);
        const int accessBefore = m_server.accessLog().size();
        DialogDriver driver;
        QString downloaded, installed, result;
        QStringList progress;
        QSet<QString> cards;
        driver.then([&](QDialog* d) {
            auto* dialog = qobject_cast<dlgUpdateDatasetVersion*>(d);
            QVERIFY(dialog);
            const auto press = [&](Qt::Key key) {
                QWidget* focus = QApplication::focusWidget();
                QTest::keyClick(focus && dialog->isAncestorOf(focus) ? focus : dialog, key);
            };
            const auto progressText = [&] { progress << dialog->GetProgressBar()->format(); };
            connect(dialog->GetDSVersion(), &CDSVersion::SignalDownloadProgress, dialog, progressText);
            connect(dialog->GetDSVersion(), &CDSVersion::SignalUnzippProduct, dialog, progressText);
            QVERIFY(!dialog->GetProgressBar()->isTextVisible());
            // The gate: nothing to press until the overwrite is accepted.
            QVERIFY(dialog->GetDownloadButton()->isVisible() && !dialog->GetDownloadButton()->isEnabled());
            QApplication::setActiveWindow(dialog); // what the window manager does for a new dialog
            QCOMPARE(QApplication::focusWidget(), static_cast<QWidget*>(dialog->GetOverwriteAccept()));
            press(Qt::Key_Space);
            QVERIFY(dialog->GetDownloadButton()->isDefault());
            press(Qt::Key_Return);
            QTRY_COMPARE_WITH_TIMEOUT(dialog->GetState(), int(dlgUpdateDatasetVersion::StateDownloaded), 30000);
            downloaded = dialog->GetMessageLabel()->text();
            QVERIFY(dialog->GetDownloadButton()->isHidden() && dialog->GetInstallButton()->isDefault());
            QCOMPARE(dialog->GetVersionCombo()->count(), 2); // the downloaded cycle is also held locally
            // Leaving now asks once; "no" keeps the dialog and its step.
            CMessageBox::setAnswer(false);
            press(Qt::Key_Escape);
            CMessageBox::setAnswer(true);
            QVERIFY(dialog->isVisible());
            press(Qt::Key_Return);
            QTRY_COMPARE_WITH_TIMEOUT(dialog->GetState(), int(dlgUpdateDatasetVersion::StateInstalled), 30000);
            installed = dialog->GetMessageLabel()->text();
            QCOMPARE(dialog->GetProgressBar()->value(), 100);
            QVERIFY(dialog->GetInstallButton()->isHidden() && !dialog->GetCancelButton()->isEnabled());
            QVERIFY(dialog->GetOkButton()->isDefault());
            // The cards show the new cycle while the dialog is still open.
            for (const QString name : {"Alpha FMS", "Bravo FMS", "Charlie GNS", "Delta GNS"})
                cards << m_run->card(name)->GetCycleText().left(33);
            const int height = dialog->height();
            click(dialog->GetResultPane()->GetShowButton());
            QCOMPARE(dialog->height(), height + VlFoldPane::kPaneHeight + 2);
            result = dialog->GetResultPane()->GetPane()->text();
            press(Qt::Key_Return);
            QVERIFY(!dialog->isVisible());
        });
        // The button looks for the newest cycle first; the dialog follows the answer.
        click(m_run->window->GetActionButtons().at(0));
        QTRY_COMPARE_WITH_TIMEOUT(driver.count(), 1, 30000);
        QCOMPARE(downloaded, QString("Update 1802 downloaded."));
        QCOMPARE(installed, QString("Installation complete."));
        // One question, the one before the install; an installed cycle is left without one.
        QCOMPARE(m_run->boxes.count(), 1);
        QCOMPARE(m_run->boxes.boxes().first().text, QString("Cycle 1802 is downloaded but not installed yet.\n"
                                                            "Leave it for later? You can install it from the "
                                                            "Update button at any time."));
        m_run->boxes.clear();
        QCOMPARE(cards, QSet<QString>{"Installed: cycle 1802, revision 1"});
        QVERIFY2(!progress.filter(QRegularExpression("^XP1[01]NAV \\([12] of 2\\) — \\d+\\.\\d of \\d+\\.\\d [kM]B"))
                      .isEmpty(),
                 qPrintable(progress.join(" | ")));
        // Each product the run installs is counted once; Echo is not selected and not announced.
        QCOMPARE(progress.filter("Install"),
                 (QStringList{"Installing Alpha FMS (1 of 3)", "Installing Bravo FMS (2 of 3)",
                              "Installing Charlie GNS (3 of 3)"}));
        // The window tells what the run did, in the English a pilot reads.
        QCOMPARE(m_run->window->GetStatusLabel()->text(), QString("Updated 4 products to cycle 1802"));
        for (const QString name : {"Charlie GNS", "Delta GNS"})
            QVERIFY2(result.contains("Installed " + name), qPrintable(result));

        verifyTree(m_run->installed({"Alpha", "Bravo", "Shared"}, true));
        verifyCards({"Alpha FMS", "Bravo FMS", "Charlie GNS", "Delta GNS"});
        // The cycle is kept locally as the server had it.
        for (const QString& dataset : kDatasets)
            QCOMPARE(readFile(m_run->cycleFolder() + "/" + dataset + ".zip"),
                     served("/quillmark/1802/" + dataset + ".zip"));
        QCOMPARE(readFile(m_run->cycleFolder() + "/versionList.txt"), kVersionList);
        // Alpha and Bravo share XP11NAV: it is fetched once.
        QCOMPARE(m_server.accessLog().mid(accessBefore).count("POST /quillmark/1802/XP11NAV.zip HTTP"), 1);
        const QByteArray copy = mark.since("log_fcopy.txt");
        QVERIFY2(copy.contains("NavData"), copy.constData());
        QVERIFY(mark.since("Download_log.txt").contains("XP10NAV.zip"));
        QVERIFY(mark.since("log_dsupdate.txt").contains("XP11NAV"));
    }

    // 3. The whole local cycle saved as one archive from the settings, the cycle folder emptied,
    // the archive loaded back: the same bytes.
    void wholeCycleArchive()
    {
        QVERIFY(m_run->window);
        const QMap<QString, QByteArray> tree = m_run->tree();
        const QMap<QString, QByteArray> cycle = checksums(m_run->cycleFolder());
        QVERIFY(cycle.contains("XP10NAV.zip"));
        const QString archive = m_run->work.path() + "/Quillmark_1802_1.zip";
        QStringList proposed;
        const auto previousHook =
            wdgBackupLocal::setFileDialogHook([&](QWidget*, const wdgBackupLocal::FileRequest& request) {
                proposed << request.proposedName;
                return archive;
            });
        DialogDriver driver;
        QStringList statuses;
        QMap<QString, QByteArray> emptied;
        driver.then([&](QDialog* d) {
            auto* settings = qobject_cast<DlgVLSettings*>(d);
            QVERIFY(settings);
            wdgBackupLocal* panel = settings->GetBackupPanel();
            const QList<QPushButton*> buttons = panel->findChildren<QPushButton*>();
            QCOMPARE(buttons.size(), 2);
            click(buttons.at(0));
            QTRY_VERIFY_WITH_TIMEOUT(!panel->IsBusy(), 30000);
            statuses << panel->GetStatusText();
            // The user clears the program's cycle folder, then loads the archive back.
            for (const QFileInfo& entry :
                 QDir(m_run->cycleFolder()).entryInfoList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot))
                entry.isDir() ? QDir(entry.filePath()).removeRecursively() : QFile::remove(entry.filePath());
            emptied = checksums(m_run->cycleFolder());
            click(buttons.at(1));
            QTRY_VERIFY_WITH_TIMEOUT(!panel->IsBusy(), 30000);
            statuses << panel->GetStatusText();
            click(settings->GetOkButton());
        });
        click(m_run->window->GetActionButtons().at(3));
        wdgBackupLocal::setFileDialogHook(previousHook);

        QCOMPARE(driver.titles(), QStringList{"Settings"});
        QCOMPARE(proposed, (QStringList{"Quillmark_1802_1.zip", QString()}));
        QCOMPARE(statuses, (QStringList{"Save archive successful", "Load archive successful"}));
        QVERIFY(emptied.isEmpty());
        QCOMPARE(checksums(m_run->cycleFolder()), cycle);
        QProcess unzip;
        unzip.start("unzip", {"-Z1", archive});
        QVERIFY(unzip.waitForFinished(20000));
        QVERIFY(unzip.readAllStandardOutput().contains("QuillmarkCycle/XP10NAV.zip"));
        verifyTree(tree);
        QCOMPARE(QDir::currentPath(), QDir(Application::st_strAppPath).absolutePath());
        const QByteArray log = m_run->log("log_dsupdate.txt");
        QVERIFY(log.contains("zip -r \"" + archive.toUtf8() + "\" \"QuillmarkCycle\""));
        QVERIFY(log.contains("unzip -o \"" + archive.toUtf8() + "\""));
    }

    // 4. One product reset from its card, the backup of another deleted from its card, then the
    // backups of the selection deleted from the action button. Each dialog says first what it
    // touches, and runs once per opening.
    void resetAndRemoval()
    {
        QVERIFY(m_run->window);
        const LogMark mark(*m_run);
        DialogDriver driver;
        QStringList touched, panes, started, messages, results, statuses;
        const auto run = [&](int readyState) {
            return [&, readyState](QDialog* d) {
                auto* dialog = qobject_cast<DlgBackupRun*>(d);
                QVERIFY(dialog);
                touched << dialog->GetTouchedLabel()->text();
                click(dialog->GetProductsPane()->GetShowButton());
                panes << dialog->GetProductsPane()->GetPane()->text();
                click(dialog->GetActionButton());
                started << dialog->GetMessageLabel()->text();
                QTRY_COMPARE_WITH_TIMEOUT(dialog->GetState(), readyState, 30000);
                messages << dialog->GetMessageLabel()->text();
                QVERIFY(dialog->GetActionButton()->isHidden() && !dialog->GetCancelButton()->isEnabled());
                click(dialog->GetResultPane()->GetShowButton());
                results << dialog->GetResultPane()->GetPane()->text();
                click(dialog->GetOkButton());
            };
        };
        const auto status = [&] { statuses << m_run->window->GetStatusLabel()->text(); };
        driver.then(run(13));
        VlProdLabel* alpha = m_run->card("Alpha FMS");
        click(alpha->GetShowCommandsButton());
        click(alpha->GetResetButton());
        status();
        QCOMPARE(driver.count(), 1);
        // A reset gives the files back as they were; what the cycle added and nothing replaced stays.
        QMap<QString, QByteArray> expected = m_run->installed({"Bravo", "Shared"}, true);
        for (const QString added : {"Alpha/NavData/Added/b.dat"})
            expected.insert(added, sha1("new b of XP11NAV"));
        verifyTree(expected);
        verifyCards({"Bravo FMS", "Charlie GNS", "Delta GNS"});

        driver.then(run(17));
        m_run->card("Bravo FMS")->ClickedRemoveBackupSlot();
        status();
        driver.then(run(17));
        click(m_run->window->GetActionButtons().at(2));
        status();
        QCOMPARE(driver.titles(), (QStringList{"Reset navigation data", "Delete backups", "Delete backups"}));
        QCOMPARE(touched,
                 (QStringList{"Alpha FMS: back to cycle 1801", "Bravo FMS: the backup of cycle 1801 is deleted",
                              "Alpha FMS: no backup to delete\nBravo FMS: no backup to delete\n"
                              "Charlie GNS, Delta GNS: the backup of cycle 1801 is deleted\n"
                              "    (they share one folder and one backup)"}));
        // "Run reset." gives way at once to the product being worked on.
        QCOMPARE(started, (QStringList{"Reset Alpha FMS", "Delete backup Bravo FMS", "Delete backup Charlie GNS"}));
        QCOMPARE(statuses, (QStringList{"Reset 1 product to its backed-up cycle", "Deleted the backup of 1 product",
                                        "Backup removal failed for 2 of 4 products"}));
        QCOMPARE(panes.at(0), QString("  Alpha FMS\r\n"));
        QCOMPARE(panes.at(1), QString("  Bravo FMS\r\n"));
        // Delta came into the selection with its install group.
        QCOMPARE(panes.at(2), QString("  Alpha FMS\r\n  Bravo FMS\r\n  Charlie GNS\r\n  Delta GNS\r\n"));
        QCOMPARE(messages.at(0), QString("Reset complete."));
        expected = m_run->installed({"Bravo", "Shared"}, false);
        expected.insert("Alpha/NavData/Added/b.dat", sha1("new b of XP11NAV"));
        verifyTree(expected);
        verifyCards({"Bravo FMS", "Charlie GNS", "Delta GNS"});
        QVERIFY(mark.since("log_freset.txt").contains("Alpha"));
        QVERIFY(!mark.since("log_fremovebackup.txt").isEmpty());
        // Alpha, reset just now, and Bravo have no backup left to remove, and say so.
        QCOMPARE(messages.at(2), QString("Backups deleted. Error (2) "));
        QCOMPARE(results.at(0), QString(" + Reset Alpha FMS ( V. 1801 R. 1 )\r\n"));
        QCOMPARE(results.at(1), QString(" + Backup deleted Bravo FMS\r\n"));
        QCOMPARE(results.at(2), QString("Error: not found backup for Alpha FMS\r\n"
                                        "Error: not found backup for Bravo FMS\r\n"
                                        " + Backup deleted Charlie GNS\r\n"
                                        " + Backup deleted Delta GNS\r\n"));
    }

    // 5. German chosen in the settings: the dialog and the window change at once. Restoring the
    // defaults then ends the event loop with the restart code, and the next pass of the start-up
    // loop, in this process, starts in English with default settings and the add-ons as they were.
    void germanThenDefaults()
    {
        QVERIFY(m_run->window);
        const QMap<QString, QByteArray> tree = m_run->tree();
        const LogMark mark(*m_run);
        QuillmarkMainWindow* window = m_run->window.data();
        DialogDriver driver;
        QStringList german;
        driver.then([&](QDialog* d) {
            auto* settings = qobject_cast<DlgVLSettings*>(d);
            QVERIFY(settings);
            VlBigComboBox* combo = settings->GetLanguageCombo();
            combo->setFocus();
            // The keyboard walks the list as a user would, until German is chosen.
            for (int i = 0; i < combo->count() && combo->currentData().toString() != "de_DE"; ++i)
                QTest::keyClick(combo, combo->findData("de_DE") > combo->currentIndex() ? Qt::Key_Down : Qt::Key_Up);
            QTRY_COMPARE(settings->GetTitleLabel()->text(), QString("Einstellungen"));
            german << settings->GetRestoreButton()->text() << caption(window->GetActionButtons().at(3));
            click(settings->GetOkButton());
        });
        click(window->GetActionButtons().at(3));
        QCOMPARE(german, (QStringList{"Quillmark-Standardeinstellungen wiederherstellen", "Einstellungen"}));
        QCOMPARE(caption(window->GetActionButtons().at(4)), QString("Hilfe"));

        driver.then([&](QDialog* d) {
            auto* settings = qobject_cast<DlgVLSettings*>(d);
            QVERIFY(settings);
            // The user is asked first, and "no" loses nothing.
            CMessageBox::setAnswer(false);
            click(settings->GetRestoreButton());
            QVERIFY(settings->GetRestoreButton()->isEnabled());
            QVERIFY(QFileInfo::exists(m_run->app.filePath("bin/prop_ini.xml")));
            CMessageBox::setAnswer(true);
            click(settings->GetRestoreButton());
        });
        QTimer::singleShot(0, [&] { click(window->GetActionButtons().at(3)); });
        QCOMPARE(QCoreApplication::exec(), Application::RestartExitCode);
        QVERIFY(!QFileInfo::exists(m_run->app.filePath("bin/prop_ini.xml")));
        QCOMPARE(m_run->boxes.count(), 2);
        QCOMPARE(m_run->boxes.boxes().first().title, QString("Quillmark-Standardeinstellungen wiederherstellen"));
        QVERIFY(m_run->boxes.boxes().first().text.contains("Backups bleiben erhalten"));
        m_run->boxes.clear();
        // The pass ends as the loop ends it: the window goes.
        m_run->window.reset();
        Application::mainWnd = nullptr;

        QString language;
        QStringList captions;
        bool autoChecks = false;
        driver.then([&](QDialog* d) {
            // Defaults check for a new program at start again.
            auto* dialog = qobject_cast<dlgUpdateQMKVersion*>(d);
            QVERIFY(dialog);
            click(dialog->GetOkButton());
        });
        Application::RunHooks hooks;
        hooks.makeWindow = [] { return new QuillmarkMainWindow; };
        hooks.afterShow = [&](int) {
            QTimer::singleShot(0, [&] {
                auto* next = static_cast<QuillmarkMainWindow*>(Application::mainWnd);
                language = Application::GetLanguage();
                for (QWidget* button : next->GetActionButtons())
                    captions << caption(button);
                autoChecks = next->GetDataModel()->GetDSAutoUpdate() && next->GetDataModel()->GetQuillmarkAutoUpdate();
                if (!QTest::qWaitFor([&] { return driver.count() == 3; }, 30000))
                    qWarning("the start-up check did not open its dialog");
                next->close();
            });
        };
        QCOMPARE(runPass(hooks, 1), 0);
        QCOMPARE(language, QString("en_US"));
        QCOMPARE(captions.at(3), QString("Settings"));
        QVERIFY(autoChecks);
        QCOMPARE(driver.titles().mid(2), QStringList{"Quillmark Update"});
        verifyTree(tree);
        QVERIFY(mark.since("log_qmkupdate.txt").contains("New version 1.2.4"));
    }

    // 6. The self-update run by hand from the settings of a new pass: downloaded, unpacked, handed
    // to the installer (a fake opener on PATH), and the program ends.
    void selfUpdateByHand()
    {
        const QMap<QString, QByteArray> tree = m_run->tree();
        const LogMark mark(*m_run);
        DialogDriver driver;
        QString downloadedText;
        driver.then([&](QDialog* d) {
            // The start-up check offers it first; the user declines and goes to the settings.
            QVERIFY(qobject_cast<dlgUpdateQMKVersion*>(d));
            click(static_cast<dlgUpdateQMKVersion*>(d)->GetOkButton());
        });
        driver.then([&](QDialog* d) {
            auto* settings = qobject_cast<DlgVLSettings*>(d);
            QVERIFY(settings);
            click(settings->GetQuillmarkRunButton());
            // The settings stay open under the self-update dialog until the program ends.
            QVERIFY(QTest::qWaitFor([&] { return driver.count() == 3 || !settings->isVisible(); }, 30000));
        });
        driver.then([&](QDialog* d) {
            auto* dialog = qobject_cast<dlgUpdateQMKVersion*>(d);
            QVERIFY(dialog);
            click(dialog->GetDownloadButton());
            QTRY_COMPARE_WITH_TIMEOUT(dialog->GetState(), int(dlgUpdateQMKVersion::StateDownloaded), 30000);
            downloadedText = dialog->GetMessageLabel()->text();
            click(dialog->GetInstallButton());
            // Unpacked, handed over, and the program closes its windows.
            QTRY_VERIFY_WITH_TIMEOUT(!dialog->isVisible(), 30000);
        });
        Application::RunHooks hooks;
        hooks.makeWindow = [] { return new QuillmarkMainWindow; };
        hooks.afterShow = [&](int) {
            QTimer::singleShot(0, [&] {
                if (QTest::qWaitFor([&] { return driver.count() == 1; }, 30000))
                    click(static_cast<QuillmarkMainWindow*>(Application::mainWnd)->GetActionButtons().at(3));
            });
        };
        const int exitCode = runPass(hooks, 2);
        QVERIFY2(m_run->boxes.count() == 0, qPrintable(m_run->boxes.boxes().value(0).text));
        QCOMPARE(exitCode, 0);

        QCOMPARE(driver.titles(), (QStringList{"Quillmark Update", "Settings", "Quillmark Update"}));
        QCOMPARE(downloadedText, QString("Version 1.2.4 downloaded."));
        const QString downloads = m_run->app.filePath("downloads");
        QTRY_COMPARE(m_run->opened(), QStringList{downloads + "/qmk_au.app"});
        QCOMPARE(m_run->app.readFile("downloads/VL_QUILLMARK_V124.app/Quillmark"), QByteArray("new program"));
        QCOMPARE(m_run->app.readFile("downloads/qmk_au.app/qmk_au"), QByteArray("updater"));
        verifyTree(tree);
        const QByteArray log = mark.since("log_qmkupdate.txt");
        QVERIFY2(log.contains("VL_QUILLMARK_V124_MAC.zip"), log.constData());
    }

    // The update step again in a fresh program folder, with the server failing it. Each ends with
    // the dialog's message, and the add-ons are as they were.
    void faults_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<int>("state");
        QTest::addColumn<QString>("message");
        QTest::addColumn<bool>("error");
        QTest::addColumn<QString>("reason"); // the line under the message says what to do
        // The first archive is in; the second is cut off and its repeat finds no server.
        QTest::newRow("nginx stopped mid-download")
            << "stop" << int(dlgUpdateDatasetVersion::StateDownloaded) << "Update 1802 downloaded. Error (1) " << true
            << "refused the connection: the server is down. Try again later.";
        QTest::newRow("404 for one archive")
            << "404" << int(dlgUpdateDatasetVersion::StateDownloaded) << "Update 1802 downloaded. Error (1) " << true
            << "does not have the file /quillmark/1802/XP10NAV.zip (HTTP 404)";
        // nginx answered: this is no connection failure, and the user learns what to check.
        QTest::newRow("wrong credentials")
            << "credentials" << int(dlgUpdateDatasetVersion::StateNoList) << "versionList.txt Download failed." << true
            << "refused the credentials (HTTP 401). Check that your subscription";
    }

    void faults()
    {
        QFETCH(QString, fault);
        QFETCH(int, state);
        QFETCH(QString, message);
        QFETCH(bool, error);
        QFETCH(QString, reason);

        Program program;
        QVERIFY(program.prepare(m_server.hostAndPort(), false, m_key.publicKey()));
        const QString hidden = m_server.root() + "/quillmark/1802/XP10NAV.zip";
        // Whatever happens, the next row finds the server as it was.
        struct Restore
        {
            NginxServer& server;
            QString hidden;
            ~Restore()
            {
                QFile::rename(hidden + ".away", hidden);
                server.setCredentials("webclient", "Q7x2Lm9p");
                server.stop();
                server.setRateLimit(0);
                server.start();
            }
        } restore{m_server, hidden};
        if (fault == "stop") {
            // Slow enough to be cut off half-way.
            m_server.stop();
            m_server.setRateLimit(256 * 1024);
            QVERIFY2(m_server.start(), qPrintable(m_server.errorString()));
        } else if (fault == "404") {
            QVERIFY(QFile::rename(hidden, hidden + ".away"));
        } else {
            QVERIFY(m_server.setCredentials("webclient", "changed by the administrator"));
        }
        const int accessBefore = m_server.accessLog().size();
        program.open();

        DialogDriver driver;
        int reached = -1;
        QString text, downloadResult, installText, installResult, reasonText;
        QStringList waiting;
        bool shownError = false;
        driver.then([&](QDialog* d) {
            auto* dialog = qobject_cast<dlgUpdateDatasetVersion*>(d);
            QVERIFY(dialog);
            if (dialog->GetState() == dlgUpdateDatasetVersion::StateNewVersion) {
                if (!dialog->GetOverwriteAccept()->isChecked())
                    tick(dialog->GetOverwriteAccept());
                click(dialog->GetDownloadButton());
                if (fault == "stop") {
                    const QString partial = program.cycleFolder() + "/XP10NAV.zip";
                    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(partial).size() > 0, 30000);
                    m_server.stop();
                }
                QTRY_VERIFY_WITH_TIMEOUT(dialog->GetState() != dlgUpdateDatasetVersion::StateDownloading, 30000);
            }
            reached = dialog->GetState();
            text = dialog->GetMessageLabel()->text();
            reasonText = dialog->GetReasonLabel()->text();
            shownError = dialog->GetMessageLabel()->IsError();
            // What did arrive can still be installed; the products of the missing archive wait.
            if (reached == dlgUpdateDatasetVersion::StateDownloaded) {
                click(dialog->GetResultPane()->GetShowButton());
                downloadResult = dialog->GetResultPane()->GetPane()->text();
                for (const QString name : {"Charlie GNS", "Delta GNS"})
                    waiting << program.card(name)->GetStateToolTip();
                click(dialog->GetInstallButton());
                QTRY_COMPARE_WITH_TIMEOUT(dialog->GetState(), int(dlgUpdateDatasetVersion::StateInstalled), 30000);
                installText = dialog->GetMessageLabel()->text();
                installResult = dialog->GetResultPane()->GetPane()->text();
            }
            click(dialog->GetOkButton());
        });
        click(program.window->GetActionButtons().at(0));
        QTRY_COMPARE_WITH_TIMEOUT(driver.count(), 1, 30000);
        QCOMPARE(reached, state);
        QCOMPARE(text, message);
        QCOMPARE(shownError, error);
        QVERIFY2(reasonText.contains(reason), qPrintable(reasonText));
        QCOMPARE(program.boxes.count(), 0);
        if (fault == "credentials")
            QVERIFY(m_server.accessLog()
                        .mid(accessBefore)
                        .contains("\"POST /quillmark/versionList.txt.minisig HTTP/1.1\" 401"));
        if (fault != "credentials") {
            QCOMPARE(downloadResult, QString(" + Downloaded XP11NAV.zip\r\nError: Download failed XP10NAV.zip\r\n"));
            // Until the install, both products of the missing archive say why on their cards.
            const QString why = "Failed: Download failed. Dataset: XP10NAV";
            QCOMPARE(waiting, (QStringList{why, why}));
            QCOMPARE(installText, QString("Installation complete. Error (4) "));
            QCOMPARE(installResult,
                     QString(" + Installed Alpha FMS\r\n + Installed Bravo FMS\r\n"
                             "Error: File XP10NAV.zip not found\r\nError: Install failed Charlie GNS\r\n"
                             "Error: File XP10NAV.zip not found\r\nError: Install failed Delta GNS\r\n"));
        }
        // Nothing of the user's is lost, and no half archive is kept.
        const QString difference = treeDifference(
            fault == "credentials" ? program.before : program.installed({"Alpha", "Bravo"}, true), program.tree());
        QVERIFY2(difference.isEmpty(), qPrintable(difference));
        if (fault != "credentials") {
            QCOMPARE(readFile(program.cycleFolder() + "/XP11NAV.zip"), served("/quillmark/1802/XP11NAV.zip"));
            QVERIFY(!QFileInfo::exists(program.cycleFolder() + "/XP10NAV.zip"));
            QVERIFY(program.log("Download_log.txt").contains("XP10NAV.zip"));
        }
    }

    // Three mirrors: the first down, the second serving tampered archives with their old
    // signatures, the third the cycle as published. The update comes whole from the third, and
    // the result names what the second offered and was refused.
    void mirrors()
    {
        NginxServer down, tampered;
        QVERIFY2(down.start(), qPrintable(down.errorString()));
        down.stop();
        const QString quillmark = m_server.root() + "/quillmark";
        for (const QString file : {"versionList.txt", "1802/XP11NAV.zip", "1802/XP10NAV.zip"}) {
            QByteArray bytes = readFile(quillmark + "/" + file);
            if (file.endsWith(".zip"))
                bytes.replace(bytes.size() / 2, 4, "evil");
            QVERIFY(writeFile(tampered.root() + "/quillmark/" + file, bytes));
            QVERIFY(
                QFile::copy(quillmark + "/" + file + ".minisig", tampered.root() + "/quillmark/" + file + ".minisig"));
        }
        QVERIFY2(tampered.start(), qPrintable(tampered.errorString()));
        const QString good = m_server.hostAndPort(), bad = tampered.hostAndPort();

        Program program;
        QVERIFY(program.prepare(down.hostAndPort() + " " + bad + " " + good, false, m_key.publicKey()));
        program.open();
        DialogDriver driver;
        QString downloaded, result;
        driver.then([&](QDialog* d) {
            auto* dialog = qobject_cast<dlgUpdateDatasetVersion*>(d);
            QVERIFY(dialog);
            if (!dialog->GetOverwriteAccept()->isChecked())
                tick(dialog->GetOverwriteAccept());
            click(dialog->GetDownloadButton());
            QTRY_COMPARE_WITH_TIMEOUT(dialog->GetState(), int(dlgUpdateDatasetVersion::StateDownloaded), 30000);
            downloaded = dialog->GetMessageLabel()->text();
            click(dialog->GetResultPane()->GetShowButton());
            result = dialog->GetResultPane()->GetPane()->text();
            click(dialog->GetInstallButton());
            QTRY_COMPARE_WITH_TIMEOUT(dialog->GetState(), int(dlgUpdateDatasetVersion::StateInstalled), 30000);
            click(dialog->GetOkButton());
        });
        click(program.window->GetActionButtons().at(0));
        QTRY_COMPARE_WITH_TIMEOUT(driver.count(), 1, 60000);
        QCOMPARE(downloaded, QString("Update 1802 downloaded."));
        for (const QString& dataset : kDatasets) {
            const QString refused = QString("Warning: %1.zip not taken from mirror %2: The signature of %1.zip from %2 "
                                            "did not match")
                                        .arg(dataset, bad);
            QVERIFY2(result.contains(refused), qPrintable(result));
            QVERIFY2(result.contains(" + Downloaded " + dataset + ".zip (mirror " + good + ")"), qPrintable(result));
            QVERIFY(tampered.accessLog().contains("POST /quillmark/1802/" + dataset.toUtf8() + ".zip HTTP/1.1\" 200"));
        }
        const QString difference =
            treeDifference(program.installed({"Alpha", "Bravo", "Shared"}, true), program.tree());
        QVERIFY2(difference.isEmpty(), qPrintable(difference));
        QCOMPARE(program.boxes.count(), 0);
    }
};

QTEST_MAIN(TestJourney)
#include "TestJourney.moc"
