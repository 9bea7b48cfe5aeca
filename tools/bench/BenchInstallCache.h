#pragma once

// The install benchmarks' shared material: one archive of N random files and a previous cycle of
// the same names, made once and cached in /tmp, and the shell helpers around them.

#include "support/DatasetFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>
#include <QString>

#include <cstdio>

namespace BenchInstall {
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

// Writes `files` files of random size (1 to 30,000 bytes) in 100 folders of two levels.
inline qint64 writeTree(const QString& root, int files, quint32 seed)
{
    QRandomGenerator random(seed);
    QByteArray block(30000, Qt::Uninitialized);
    qint64 total = 0;
    for (int i = 0; i < files; ++i) {
        const QString folder =
            root + QStringLiteral("/NavData/d%1/s%2").arg(i % 20, 2, 10, QLatin1Char('0')).arg(i % 5);
        if (i < 100)
            QDir().mkpath(folder);
        const int size = int(random.bounded(1, 30001));
        random.fillRange(reinterpret_cast<quint32*>(block.data()), size / 4 + 1 <= 7500 ? size / 4 + 1 : 7500);
        QFile file(folder + QStringLiteral("/f%1.dat").arg(i));
        if (!file.open(QIODevice::WriteOnly) || file.write(block.constData(), size) != size)
            return -1;
        total += size;
    }
    return total;
}

inline bool prepareCache(int files)
{
    const QString stamp = kCache + QStringLiteral("/ready_%1").arg(files);
    if (QFile::exists(stamp))
        return true;
    std::printf("Preparing %d files in %s (once)...\n", files, qPrintable(kCache));
    std::fflush(stdout);
    QDir(kCache).removeRecursively();
    const qint64 fresh = writeTree(kCache + QStringLiteral("/new"), files, 1);
    const qint64 old = writeTree(kCache + QStringLiteral("/previous"), files, 2);
    if (fresh < 0 || old < 0)
        return false;
    DatasetFiles::writeFile(kCache + QStringLiteral("/new/NavData/cycle_info.txt"),
                            "AIRAC cycle    : 1802\r\nRevision       : 1\r\n");
    DatasetFiles::writeFile(kCache + QStringLiteral("/previous/NavData/cycle_info.txt"),
                            "AIRAC cycle    : 1801\r\nRevision       : 1\r\n");
    const QString error = DatasetFiles::zipFolder(kCache + QStringLiteral("/new"), kCache + QStringLiteral("/DS.zip"));
    if (!error.isEmpty()) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return false;
    }
    std::printf("  %.1f MB of new data, archive %.1f MB\n", fresh / 1e6, QFileInfo(kCache + "/DS.zip").size() / 1e6);
    return DatasetFiles::writeFile(stamp, "ok");
}

// A product folder holding the previous cycle: hard links to the cache, which renames leave alone.
// Puts the cached archive (as a link) and a version list offering cycle 1802 into a cycle folder.
inline bool holdArchive(const QString& cycleDir)
{
    QDir().mkpath(cycleDir);
    return DatasetFiles::writeFile(cycleDir + "/versionList.txt", "Revision: 1\n1802\n") &&
           QFile::link(kCache + "/DS.zip", cycleDir + "/DS.zip");
}

inline bool previousCycleInto(const QString& productRoot)
{
    QDir().mkpath(productRoot);
    return run(QStringLiteral("cp -al ") + quote(kCache + "/previous/NavData") + QLatin1Char(' ') + quote(productRoot));
}

} // namespace BenchInstall
