#pragma once

// The install benchmarks' shared material: one archive of N random files and a previous cycle of
// the same names, made once and cached in /tmp, and the shell helpers around them.

#include "engine/CDSVersion.h"
#include "model/CInstallGroupList.h"
#include "model/CProduct.h"
#include "model/CProductList.h"
#include "support/DatasetFiles.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>
#include <QString>

#include <cstdio>

namespace BenchInstall {
// The command line every install benchmark takes: its size (`--name N`, at least `minimum`) and
// `--runs N` (3 by default).
struct Options
{
    int size = 0;
    int runs = 3;
};
inline Options parseOptions(const QCoreApplication& app, const QString& name, const QString& help, int fallback,
                            int minimum)
{
    QCommandLineParser parser;
    parser.addHelpOption();
    const QCommandLineOption sizeOption(name, help, QStringLiteral("N"), QString::number(fallback));
    const QCommandLineOption runsOption(QStringLiteral("runs"), QStringLiteral("Measured runs of each."),
                                        QStringLiteral("N"), QStringLiteral("3"));
    parser.addOption(sizeOption);
    parser.addOption(runsOption);
    parser.process(app);
    return Options{qMax(minimum, parser.value(sizeOption).toInt()), qMax(1, parser.value(runsOption).toInt())};
}

inline const QString kCache = QStringLiteral("/tmp/quillmark_bench_install");

inline bool run(const QString& script)
{
    return QProcess::execute(QStringLiteral("sh"), {QStringLiteral("-c"), script}) == 0;
}

inline QString quote(const QString& path)
{
    QString q = path;
    q.replace(QLatin1Char('\''), QStringLiteral("'\\''"));
    return QLatin1Char('\'') + q + QLatin1Char('\'');
}

// Writes `files` files of random size (1 to maxBytes) in 100 folders of two levels.
inline qint64 writeTree(const QString& root, int files, quint32 seed, int maxBytes = 30000)
{
    QRandomGenerator random(seed);
    QByteArray block((maxBytes / 4 + 1) * 4, Qt::Uninitialized);
    qint64 total = 0;
    for (int i = 0; i < files; ++i) {
        const QString folder =
            root + QStringLiteral("/NavData/d%1/s%2").arg(i % 20, 2, 10, QLatin1Char('0')).arg(i % 5);
        if (i < 100)
            QDir().mkpath(folder);
        const int size = int(random.bounded(1, maxBytes + 1));
        random.fillRange(reinterpret_cast<quint32*>(block.data()), size / 4 + 1);
        QFile file(folder + QStringLiteral("/f%1.dat").arg(i));
        if (!file.open(QIODevice::WriteOnly) || file.write(block.constData(), size) != size)
            return -1;
        total += size;
    }
    return total;
}

// Makes dir/new (cycle 1802), dir/previous (cycle 1801, the same file names) and dir/DS.zip of
// dir/new, once: a stamp naming the shape keeps them for later runs.
inline bool prepareArchive(const QString& dir, int files, int maxBytes, quint32 seed)
{
    const QString stamp = dir + QStringLiteral("/ready_%1_%2").arg(files).arg(maxBytes);
    if (QFile::exists(stamp))
        return true;
    std::printf("Preparing %d files in %s (once)...\n", files, qPrintable(dir));
    std::fflush(stdout);
    QDir(dir).removeRecursively();
    const qint64 fresh = writeTree(dir + QStringLiteral("/new"), files, seed, maxBytes);
    const qint64 old = writeTree(dir + QStringLiteral("/previous"), files, seed + 1, maxBytes);
    if (fresh < 0 || old < 0)
        return false;
    DatasetFiles::writeFile(dir + QStringLiteral("/new/NavData/cycle_info.txt"),
                            "AIRAC cycle    : 1802\r\nRevision       : 1\r\n");
    DatasetFiles::writeFile(dir + QStringLiteral("/previous/NavData/cycle_info.txt"),
                            "AIRAC cycle    : 1801\r\nRevision       : 1\r\n");
    const QString error = DatasetFiles::zipFolder(dir + QStringLiteral("/new"), dir + QStringLiteral("/DS.zip"));
    if (!error.isEmpty()) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return false;
    }
    std::printf("  %.1f MB of new data, archive %.1f MB\n", fresh / 1e6, QFileInfo(dir + "/DS.zip").size() / 1e6);
    return DatasetFiles::writeFile(stamp, "ok");
}

inline bool prepareCache(int files)
{
    return prepareArchive(kCache, files, 30000, 1);
}

// Puts the cached archive (as a link) and a version list offering cycle 1802 into a cycle folder.
inline bool holdArchive(const QString& cycleDir)
{
    QDir().mkpath(cycleDir);
    return DatasetFiles::writeFile(cycleDir + "/versionList.txt", "Revision: 1\n1802\n") &&
           QFile::link(kCache + "/DS.zip", cycleDir + "/DS.zip");
}

// A product folder holding the previous cycle: hard links to the cache, which renames leave alone.
inline bool previousCycleInto(const QString& productRoot, const QString& cache = kCache)
{
    QDir().mkpath(productRoot);
    return run(QStringLiteral("cp -al ") + quote(cache + "/previous/NavData") + QLatin1Char(' ') + quote(productRoot));
}

// The engine with one product whose previous cycle is in place and whose archive it holds, ready
// for InstallProducts().
struct EngineInstall
{
    CDSVersion engine;
    CProductList products;
    CInstallGroupList groups;
    CProduct* product = nullptr;

    bool prepare(const QString& productRoot)
    {
        if (!previousCycleInto(productRoot))
            return false;
        engine.Init(QStringLiteral("1.0"));
        if (!holdArchive(engine.GetCycleDirectory()))
            return false;
        product = DatasetFiles::addNavDataProduct(products, QStringLiteral("Bench product"), QStringLiteral("DS"),
                                                  productRoot);
        groups.AssignProduct(product);
        engine.SetProductList(&products);
        return true;
    }
};

} // namespace BenchInstall
