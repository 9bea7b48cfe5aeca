// Install benchmark: one dataset archive of 20,000 files (about 300 MB of random content) is
// installed into a product that already holds the previous cycle of the same files, timed from
// InstallProducts() to SignalInstallReady(). The reference is the same work done in a shell in
// the same run: unzip into a scratch folder, then mv every file into place keeping the old one
// (mv --backup=simple). Each timing starts after a sync and the order alternates between runs,
// so neither side pays for the other's write-back; both print their unpack and move phases.
// Archive and previous tree are made once and cached in /tmp.
//   bench_install [--files N] [--runs N]

#include "BenchInstallCache.h"
#include "engine/CDSVersion.h"
#include "model/CInstallGroupList.h"
#include "model/CProduct.h"
#include "model/CProductList.h"
#include "support/DatasetFiles.h"
#include "support/TempAppDir.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QVector>

#include <algorithm>
#include <cstdio>

namespace {
using namespace BenchInstall;

double engineRun(int files)
{
    TempAppDir app;
    QTemporaryDir work(QStringLiteral("/tmp/bench_install_XXXXXX"));
    const QString productRoot = work.path() + QStringLiteral("/Product");
    EngineInstall bench;
    if (!bench.prepare(productRoot))
        return -1;
    CDSVersion& engine = bench.engine;

    QEventLoop loop;
    QObject::connect(&engine, &CDSVersion::SignalInstallReady, &loop, &QEventLoop::quit);
    run(QStringLiteral("sync")); // start with no write-back pending from earlier work
    QElapsedTimer timer;
    double unpacked = 0;
    QObject::connect(&engine, &CDSVersion::SignalBeginCopyThead, &loop, [&] { unpacked = timer.nsecsElapsed() / 1e9; });
    timer.start();
    engine.InstallProducts();
    loop.exec();
    const double seconds = timer.nsecsElapsed() / 1e9;
    std::printf("  engine: unpacked after %.2f s, moved in %.2f s\n", unpacked, seconds - unpacked);
    if (bench.product->GetInstallState() != QMK_STATE_INSTALL_OK || engine.GetErrorCount() != 0) {
        std::fprintf(stderr, "install failed: %s\n", qPrintable(engine.GetResult()));
        return -1;
    }
    int moved = 0;
    for (QDirIterator it(productRoot, QStringList{QStringLiteral("f*.dat")}, QDir::Files, QDirIterator::Subdirectories);
         it.hasNext(); it.next())
        ++moved;
    if (moved != 2 * files) { // every new file in place and every old one in its backup
        std::fprintf(stderr, "expected %d files after the install, found %d\n", 2 * files, moved);
        return -1;
    }
    return seconds;
}

double shellRun()
{
    QTemporaryDir work(QStringLiteral("/tmp/bench_install_XXXXXX"));
    const QString productRoot = work.path() + QStringLiteral("/Product");
    if (!previousCycleInto(productRoot))
        return -1;
    const QString temp = work.path() + QStringLiteral("/temp");
    const QString unzip =
        QStringLiteral("unzip -o -P pralvek %1 -d %2 >/dev/null").arg(quote(kCache + "/DS.zip"), quote(temp));
    const QString move =
        QStringLiteral("set -e; cd %1; find . -type d | while read -r d; do mkdir -p %2/\"$d\"; "
                       "find \"$d\" -maxdepth 1 -type f -exec mv -f --backup=simple -t %2/\"$d\" {} +; done")
            .arg(quote(temp), quote(productRoot));
    run(QStringLiteral("sync"));
    QElapsedTimer timer;
    timer.start();
    if (!run(unzip))
        return -1;
    const double unpacked = timer.nsecsElapsed() / 1e9;
    if (!run(move))
        return -1;
    const double seconds = timer.nsecsElapsed() / 1e9;
    std::printf("  shell:  unpacked after %.2f s, moved in %.2f s\n", unpacked, seconds - unpacked);
    return seconds;
}
} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const Options options =
        parseOptions(app, QStringLiteral("files"), QStringLiteral("Files in the archive."), 20000, 100);
    const int files = options.size;
    const int runs = options.runs;

    if (!prepareCache(files))
        return 1;
    // The disk's speed drifts by a factor of two between minutes here, so each run compares the two
    // sides measured back to back, and the median of those ratios is the figure.
    QVector<double> ratios;
    double bestEngine = 1e99, bestShell = 1e99;
    for (int i = 0; i < runs; ++i) {
        // The order alternates so that neither side always runs second.
        double shell = -1, engine = -1;
        if (i % 2 == 0) {
            shell = shellRun();
            engine = engineRun(files);
        } else {
            engine = engineRun(files);
            shell = shellRun();
        }
        if (shell < 0 || engine < 0)
            return 1;
        std::printf("run %d: engine %.2f s, shell unzip + mv %.2f s, ratio %.2fx\n", i + 1, engine, shell,
                    engine / shell);
        std::fflush(stdout);
        ratios.append(engine / shell);
        bestEngine = qMin(bestEngine, engine);
        bestShell = qMin(bestShell, shell);
    }
    std::sort(ratios.begin(), ratios.end());
    std::printf("install of %d files, %d runs: median ratio %.2fx (target at most 1.15x); best times engine %.2f s, "
                "shell %.2f s\n",
                files, runs, ratios.at(ratios.size() / 2), bestEngine, bestShell);
    return 0;
}
