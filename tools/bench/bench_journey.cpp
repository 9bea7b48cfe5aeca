// Journey benchmark: the update step as a user takes it, through real nginx. Three datasets of
// N MB each (random content, about 30 files per MB) go into six products, two per dataset, each
// holding the previous cycle of the same file names, so every file is replaced and backed up. The
// program is driven by clicks: the main window's Update button, then in the update dialog the
// overwrite box, Download, and Install once downloaded; timed from the Download click to the
// installed state. The reference, in the same run and alternating order, is a shell doing the same
// work: curl POSTs for the three archives, then per product unzip into a scratch folder, the
// replaced files moved into a backup folder and the new ones moved into place, one after the
// other. The program unpacks the next archives while it copies, so its unzip phase (from a
// product's turn to its copy) is what it still waits for, and its move phase is the rest. Both
// sides print their phases and the processor time of their tools; unzip's system time swings
// widely here between runs (creating files costs more while many were deleted shortly before), and
// with it the ratio, so the download and move phases are also compared on their own. Archives and
// previous trees are cached in /tmp.
// Every file is signed, as a publisher serves it, and the program checks each signature. What that
// costs is measured on its own as well, after each program run: the three archives verified again
// as the downloader does (the files still in the page cache, as they are right after a download),
// as a share of the program's update time in the same run.
//   bench_journey [--mb N] [--runs N]

#include "BenchInstallCache.h"
#include "app/Application.h"
#include "app/CMessageBox.h"
#include "engine/CDSVersion.h"
#include "engine/CMinisign.h"
#include "model/CDataModel.h"
#include "model/CDialogRoute.h"
#include "model/CProduct.h"
#include "support/NginxServer.h"
#include "support/SampleCatalogue.h"
#include "support/SigningKey.h"
#include "support/TempAppDir.h"
#include "ui/QuillmarkMainWindow.h"
#include "ui/VlCheckBox.h"
#include "ui/VlPushButton.h"
#include "ui/dlgUpdateDatasetVersion.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDateTime>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>
#include <QVector>

#include <algorithm>

#include <sys/resource.h>

using namespace BenchInstall;

namespace {
const QString kJourneyCache = QStringLiteral("/tmp/quillmark_bench_journey");
const QStringList kDatasets{QStringLiteral("DS1"), QStringLiteral("DS2"), QStringLiteral("DS3")};
const QStringList kCopies{QStringLiteral("a"), QStringLiteral("b")};

QString cacheOf(const QString& dataset)
{
    return kJourneyCache + QLatin1Char('/') + dataset;
}

struct Phases
{
    double download = 0;
    // The program's runs to the start of its move, so it also holds the record written before it.
    double unzip = 0;
    double move = 0;
    // Processor time of the side's tools (unzip, curl, mv): unzip's system time swings with the
    // kernel's page handling from run to run, its user time hardly.
    double cpuUser = 0;
    double cpuSystem = 0;
    double total() const { return download + unzip + move; }
};

// User and system processor seconds of the child processes waited for so far.
QPair<double, double> childCpu()
{
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return {usage.ru_utime.tv_sec + usage.ru_utime.tv_usec / 1e6, usage.ru_stime.tv_sec + usage.ru_stime.tv_usec / 1e6};
}

void noteCpu(const QPair<double, double>& before, Phases* phases)
{
    const QPair<double, double> now = childCpu();
    phases->cpuUser = now.first - before.first;
    phases->cpuSystem = now.second - before.second;
}

// Six product folders below root, named <dataset><copy>, each with the previous cycle.
bool previousCycles(const QString& root)
{
    for (const QString& dataset : kDatasets)
        for (const QString& copy : kCopies)
            if (!previousCycleInto(root + QLatin1Char('/') + dataset + copy, cacheOf(dataset)))
                return false;
    return true;
}

// Every new file in place and every old one in the backup, in every product.
bool everyFileTwice(const QString& root, int files)
{
    for (const QString& dataset : kDatasets) {
        for (const QString& copy : kCopies) {
            const QString product = root + QLatin1Char('/') + dataset + copy;
            int found = 0;
            for (QDirIterator it(product, QStringList{QStringLiteral("f*.dat")}, QDir::Files,
                                 QDirIterator::Subdirectories);
                 it.hasNext(); it.next())
                ++found;
            if (found != 2 * files ||
                !DatasetFiles::readFile(product + QStringLiteral("/NavData/cycle_info.txt")).contains("1802")) {
                std::fprintf(stderr, "%s: %d of %d files, or not at cycle 1802\n", qPrintable(product), found,
                             2 * files);
                return false;
            }
        }
    }
    return true;
}

// Seconds to check the served archives' signatures the way the downloader does; negative when one fails.
double verifyArchives(const NginxServer& server, const QString& publicKey)
{
    const QList<CMinisign::PublicKey> keys = CMinisign::ParsePublicKeys(publicKey, nullptr);
    QElapsedTimer timer;
    timer.start();
    for (const QString& dataset : kDatasets) {
        const QString archive = server.root() + QStringLiteral("/quillmark/1802/") + dataset + QStringLiteral(".zip");
        CMinisign::Signature signature;
        if (!CMinisign::ParseSignature(DatasetFiles::readFile(archive + QStringLiteral(".minisig")), signature,
                                       nullptr) ||
            CMinisign::Verify(archive, signature, keys, nullptr) != CMinisign::EResult::Ok)
            return -1;
    }
    return timer.nsecsElapsed() / 1e9;
}

bool programRun(const NginxServer& server, const QString& publicKey, const TempAppDir& app, const QTemporaryDir& work,
                int files, Phases* phases)
{
    if (!previousCycles(work.path()))
        return false;
    SampleCatalogue catalogue;
    catalogue.server = server.hostAndPort();
    catalogue.publicKey = publicKey;
    catalogue.datasets = kDatasets;
    for (const QString& dataset : kDatasets)
        for (const QString& copy : kCopies)
            catalogue.products << SampleCatalogue::NavDataProduct(
                dataset + copy, dataset, work.path() + QLatin1Char('/') + dataset + copy, true);
    if (!app.writeFile(QStringLiteral("bin/base_ini.xml"), catalogue.CatalogueXml()) ||
        !app.writeFile(QStringLiteral("bin/prop_ini.xml"), SampleCatalogue::SettingsXml(false, false)))
        return false;

    QuillmarkMainWindow window;
    Application::mainWnd = &window;
    window.show();
    if (!QTest::qWaitForWindowExposed(&window))
        return false;
    bool installed = false, opened = false;
    CDialogRoute::SetHandler([&](QDialog* d) {
        opened = true;
        auto* dialog = qobject_cast<dlgUpdateDatasetVersion*>(d);
        if (!dialog || dialog->GetState() != dlgUpdateDatasetVersion::StateNewVersion) {
            std::fprintf(stderr, "the update dialog does not offer the new cycle (state %d)\n",
                         dialog ? dialog->GetState() : -1);
            return;
        }
        VlCheckBox* accept = dialog->GetOverwriteAccept();
        QTest::mouseClick(accept, Qt::LeftButton, Qt::NoModifier, QPoint(8, accept->height() / 2));
        CDSVersion* engine = dialog->GetDSVersion();
        QElapsedTimer timer;
        double unzipStart = 0;
        QObject::connect(engine, &CDSVersion::SignalUnzippProduct, dialog,
                         [&] { unzipStart = timer.nsecsElapsed() / 1e9; });
        QObject::connect(engine, &CDSVersion::SignalBeginCopyThead, dialog,
                         [&] { phases->unzip += timer.nsecsElapsed() / 1e9 - unzipStart; });
        const auto waitFor = [&](int state) {
            while (dialog->GetState() != state && dialog->GetState() != dlgUpdateDatasetVersion::StateDownloadFailed &&
                   timer.elapsed() < 1800000)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
            return dialog->GetState() == state;
        };
        run(QStringLiteral("sync")); // no write-back pending from the set-up
        const QPair<double, double> cpuBefore = childCpu();
        timer.start();
        QTest::mouseClick(dialog->GetDownloadButton(), Qt::LeftButton);
        if (!waitFor(dlgUpdateDatasetVersion::StateDownloaded)) {
            std::fprintf(stderr, "download ended in state %d\n", dialog->GetState());
            return;
        }
        phases->download = timer.nsecsElapsed() / 1e9;
        QTest::mouseClick(dialog->GetInstallButton(), Qt::LeftButton);
        installed = waitFor(dlgUpdateDatasetVersion::StateInstalled) && engine->GetErrorCount() == 0;
        phases->move = timer.nsecsElapsed() / 1e9 - phases->download - phases->unzip;
        noteCpu(cpuBefore, phases);
        if (!installed)
            std::fprintf(stderr, "install: %s\n", qPrintable(engine->GetResult()));
        QTest::mouseClick(dialog->GetOkButton(), Qt::LeftButton);
    });
    QWidget* update = window.GetActionButtons().at(0);
    QTest::mouseClick(update, Qt::LeftButton, Qt::NoModifier, update->rect().center());
    // The dialog opens once the server's version list has come in.
    if (!QTest::qWaitFor([&] { return opened; }, 30000))
        std::fprintf(stderr, "no update dialog opened\n");
    CDialogRoute::SetHandler(nullptr);
    Application::mainWnd = nullptr;
    return installed && everyFileTwice(work.path(), files);
}

bool shellRun(const NginxServer& server, const QTemporaryDir& work, int files, Phases* phases)
{
    if (!previousCycles(work.path()))
        return false;
    const QString downloads = work.path() + QStringLiteral("/downloads");
    QDir().mkpath(downloads);
    QString fetch = QStringLiteral("set -e");
    for (const QString& dataset : kDatasets)
        fetch += QStringLiteral("; curl -sSf -u webclient:Q7x2Lm9p -X POST -d '' -o %1 http://%2/quillmark/1802/%3.zip")
                     .arg(quote(downloads + QLatin1Char('/') + dataset + QStringLiteral(".zip")), server.hostAndPort(),
                          dataset);

    run(QStringLiteral("sync"));
    const QPair<double, double> cpuBefore = childCpu();
    QElapsedTimer timer;
    timer.start();
    if (!run(fetch))
        return false;
    phases->download = timer.nsecsElapsed() / 1e9;
    for (const QString& dataset : kDatasets) {
        for (const QString& copy : kCopies) {
            const QString temp = work.path() + QStringLiteral("/temp");
            const QString product = work.path() + QLatin1Char('/') + dataset + copy + QStringLiteral("/NavData");
            const double start = timer.nsecsElapsed() / 1e9;
            if (!run(QStringLiteral("unzip -q -o -P pralvek %1 -d %2")
                         .arg(quote(downloads + QLatin1Char('/') + dataset + QStringLiteral(".zip")), quote(temp))))
                return false;
            const double unpacked = timer.nsecsElapsed() / 1e9;
            // Two mv per folder, the replaced files to the backup and the new ones in; the previous
            // cycle holds every name of the new one. Shell built-ins pick the files, so that forks
            // do not weigh on the reference.
            const QString move =
                QStringLiteral(
                    "set -e; P=%1; B=%1/QMK_%2_back; T=%3/NavData; cd \"$T\"; find . -type d > %3/folders; "
                    "while read -r d; do mkdir -p \"$B/$d\" \"$P/$d\"; cd \"$T/$d\"; set --; "
                    "for f in *; do if [ -f \"$f\" ] && [ ! -L \"$f\" ]; then set -- \"$@\" \"$f\"; fi; done; "
                    "if [ $# -gt 0 ]; then cd \"$P/$d\"; mv -f -t \"$B/$d\" -- \"$@\"; "
                    "cd \"$T/$d\"; mv -f -t \"$P/$d\" -- \"$@\"; fi; done < %3/folders; cd /; rm -rf %3")
                    .arg(quote(product), dataset, quote(temp));
            if (!run(move))
                return false;
            phases->unzip += unpacked - start;
            phases->move += timer.nsecsElapsed() / 1e9 - unpacked;
        }
    }
    noteCpu(cpuBefore, phases);
    return everyFileTwice(work.path(), files);
}

void printPhases(const char* side, const Phases& p)
{
    std::printf("  %-7s download %6.2f s, unzip %6.2f s, move %6.2f s, total %6.2f s; tools' processor time user "
                "%.2f s, system %.2f s\n",
                side, p.download, p.unzip, p.move, p.total(), p.cpuUser, p.cpuSystem);
}
} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", qgetenv("QT_QPA_PLATFORM").isEmpty() ? "offscreen" : qgetenv("QT_QPA_PLATFORM"));
    QApplication app(argc, argv);
    Application::registerResources();
    CMessageBox::setHandler([](QMessageBox::Icon, const QString& title, const QString& text) {
        std::fprintf(stderr, "message box: %s: %s\n", qPrintable(title), qPrintable(text));
    });
    const Options options = parseOptions(app, QStringLiteral("mb"), QStringLiteral("Megabytes per dataset."), 100, 1);
    const int mb = options.size;
    const int runs = options.runs;
    // About 30 files per MB, of 1 byte to twice the mean.
    const int files = qMax(100, mb * 30);
    const int maxBytes = int(2 * qint64(mb) * 1000000 / files);
    for (int i = 0; i < kDatasets.size(); ++i)
        if (!prepareArchive(cacheOf(kDatasets.at(i)), files, maxBytes, quint32(10 * i + 1)))
            return 1;

    NginxServer server;
    SigningKey key;
    const QString served = server.root() + QStringLiteral("/quillmark");
    QDir().mkpath(served + QStringLiteral("/1802"));
    const QString now = QStringLiteral("timestamp:") + QString::number(QDateTime::currentSecsSinceEpoch());
    if (!key.isValid() ||
        !DatasetFiles::writeFile(served + QStringLiteral("/versionList.txt"), "Revision: 1\n1802\n") ||
        !key.sign(served + QStringLiteral("/versionList.txt"), {now, QStringLiteral("file:versionList.txt")}))
        return 1;
    for (const QString& dataset : kDatasets) {
        const QString archive = served + QStringLiteral("/1802/") + dataset + QStringLiteral(".zip");
        if (!run(QStringLiteral("ln ") + quote(cacheOf(dataset) + QStringLiteral("/DS.zip")) + QLatin1Char(' ') +
                 quote(archive)) ||
            !key.sign(archive,
                      {now, QStringLiteral("file:") + dataset + QStringLiteral(".zip"), QStringLiteral("cycle:1802"),
                       QStringLiteral("revision:1"), QStringLiteral("dataset:") + dataset})) {
            std::fprintf(stderr, "cannot serve or sign %s\n", qPrintable(archive));
            return 1;
        }
    }
    if (!server.start()) {
        std::fprintf(stderr, "nginx: %s\n", qPrintable(server.errorString()));
        return 1;
    }
    std::printf("3 datasets of %d files (%d MB each) into 6 products through nginx on %s\n", files, mb,
                qPrintable(server.hostAndPort()));
    std::fflush(stdout);

    QVector<double> ratios, ownRatios, verifyShares;
    double bestProgram = 1e99, bestShell = 1e99;
    for (int i = 0; i < runs; ++i) {
        Phases program, shell;
        // Both sides' folders go only after both have run: removing a gigabyte of files slows the
        // disk for a while, and neither side should start right after the other's removal.
        TempAppDir app;
        QTemporaryDir programWork(QStringLiteral("/tmp/bench_journey_XXXXXX"));
        QTemporaryDir shellWork(QStringLiteral("/tmp/bench_journey_XXXXXX"));
        bool ok = true;
        if (i % 2 == 0) {
            ok = programRun(server, key.publicKey(), app, programWork, files, &program) &&
                 shellRun(server, shellWork, files, &shell);
        } else {
            ok = shellRun(server, shellWork, files, &shell) &&
                 programRun(server, key.publicKey(), app, programWork, files, &program);
        }
        const double verify = ok ? verifyArchives(server, key.publicKey()) : -1;
        if (!ok || verify < 0)
            return 1;
        const double ratio = program.total() / shell.total();
        std::printf("\nrun %d: program %.2f s, shell curl + unzip + mv %.2f s, ratio %.2fx\n", i + 1, program.total(),
                    shell.total(), ratio);
        printPhases("program", program);
        printPhases("shell", shell);
        verifyShares.append(verify / program.total());
        std::printf("  signatures of the 3 archives checked again: %.3f s, %.1f %% of the program's update\n", verify,
                    100 * verifyShares.last());
        std::fflush(stdout);
        ratios.append(ratio);
        ownRatios.append((program.download + program.move) / (shell.download + shell.move));
        bestProgram = qMin(bestProgram, program.total());
        bestShell = qMin(bestShell, shell.total());
    }
    std::sort(ratios.begin(), ratios.end());
    std::sort(ownRatios.begin(), ownRatios.end());
    std::sort(verifyShares.begin(), verifyShares.end());
    std::printf("\nsignature checks: median %.1f %% of the update time (target at most 5 %%)\n",
                100 * verifyShares.at(verifyShares.size() / 2));
    // The same unzip binary takes most of the time on both sides; what is left is the program's own.
    std::printf("\ndownload and move phases alone: median ratio %.2fx\n", ownRatios.at(ownRatios.size() / 2));
    std::printf("update of 3 x %d MB into 6 products, %d runs: median ratio %.2fx, best %.2fx (target at most 1.0x); "
                "best times program %.2f s, shell %.2f s\n",
                mb, runs, ratios.at(ratios.size() / 2), ratios.first(), bestProgram, bestShell);
    return 0;
}
