// Downloads a generated file from the loopback test server with DownloadManager and with curl
// (same request: POST, Basic authorization, form content type; same sink: a file in a temporary
// folder) in several alternating runs, and prints both throughputs and their ratio, of the median
// and of the best run, and this process's peak memory.
//
//   bench_download [MiB] [runs]   defaults 1024 and 3; progress goes to stdout, figures to stderr

#include "engine/DownloadManager.h"
#include "support/TempAppDir.h"
#include "support/TestServer.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QVector>

#include <algorithm>
#include <cstdio>

namespace {
QString peakMemory()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return QStringLiteral("unknown");
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            return QString::fromLatin1(line.mid(6).simplified());
    return QStringLiteral("unknown");
}

double mibPerSecond(qint64 bytes, qint64 ms)
{
    return ms > 0 ? bytes / 1048576.0 / (ms / 1000.0) : 0.0;
}
// Times one download with DownloadManager into `downloads`; -1 on failure.
qint64 managerRun(const QString& url, const QByteArray& credentials, const QString& downloads, qint64 size)
{
    DownloadManager manager;
    QSignalSpy finished(&manager, &DownloadManager::SignalFinished);
    manager.credentials = credentials;
    QElapsedTimer timer;
    timer.start();
    manager.DownloadFile(QUrl(url), true, downloads);
    if (!finished.wait(600000)) {
        std::fprintf(stderr, "DownloadManager did not finish\n");
        return -1;
    }
    const qint64 ms = timer.elapsed();
    std::fflush(stdout);
    const QStringList errors = finished.first().at(2).toStringList();
    const QString target = downloads + QStringLiteral("/big.bin");
    const qint64 bytes = QFileInfo(target).size();
    QFile::remove(target);
    if (!errors.isEmpty() || bytes != size) {
        std::fprintf(stderr, "DownloadManager failed: %lld bytes, %s\n", bytes, qPrintable(errors.join(' ')));
        return -1;
    }
    return ms;
}

// The same request and the same kind of sink with curl; -1 on failure.
qint64 curlRun(const QString& curl, const QString& url, const QByteArray& credentials, const QString& downloads,
               qint64 size)
{
    const QString target = downloads + QStringLiteral("/curl.bin");
    QProcess process;
    QElapsedTimer timer;
    timer.start();
    process.start(curl, {QStringLiteral("-s"), QStringLiteral("-X"), QStringLiteral("POST"), QStringLiteral("-u"),
                         QString::fromLatin1(credentials), QStringLiteral("-H"),
                         QStringLiteral("Content-Type: application/x-www-form-urlencoded;charset=UTF-8"),
                         QStringLiteral("-o"), target, url});
    if (!process.waitForFinished(600000) || process.exitCode() != 0) {
        std::fprintf(stderr, "curl failed: %s\n", process.readAllStandardError().constData());
        return -1;
    }
    const qint64 ms = timer.elapsed();
    const qint64 bytes = QFileInfo(target).size();
    QFile::remove(target);
    if (bytes != size) {
        std::fprintf(stderr, "curl fetched %lld bytes of %lld\n", bytes, size);
        return -1;
    }
    return ms;
}
} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const qint64 mib = argc > 1 ? QByteArray(argv[1]).toLongLong() : 1024;
    const int runs = argc > 2 ? QByteArray(argv[2]).toInt() : 3;
    if (mib <= 0 || runs <= 0) {
        std::fprintf(stderr, "usage: bench_download [MiB] [runs]\n");
        return 2;
    }
    const qint64 size = mib * 1024 * 1024;

    TempAppDir folder; // the logs and both downloads land here
    const QString downloads = folder.filePath(QStringLiteral("downloads"));
    QDir().mkpath(downloads);
    TestServer server;
    if (!server.start()) {
        std::fprintf(stderr, "cannot start the loopback server\n");
        return 1;
    }
    server.addGenerated(QStringLiteral("/big.bin"), size);
    const QString url = server.url(QStringLiteral("/big.bin"));

    const QString curl = QStandardPaths::findExecutable(QStringLiteral("curl"));
    if (curl.isEmpty()) {
        std::fprintf(stderr, "curl not found on PATH\n");
        return 1;
    }

    // Several runs each, alternating which goes first, so that neither side always gets the
    // quieter moments of the machine; the median and the best are compared.
    QVector<qint64> managerTimes, curlTimes;
    QString managerPeak;
    for (int run = 0; run < runs; ++run) {
        for (int side = 0; side < 2; ++side) {
            const bool ours = (side == 0) == (run % 2 == 0);
            // No write-back of the previous run's gigabyte may fall into this one's time.
            QProcess::execute(QStringLiteral("sync"), {});
            const qint64 ms = ours ? managerRun(url, server.credentials(), downloads, size)
                                   : curlRun(curl, url, server.credentials(), downloads, size);
            if (ms < 0)
                return 1;
            std::fprintf(stderr, "run %d: %-15s %6lld ms\n", run + 1, ours ? "DownloadManager" : "curl", ms);
            (ours ? managerTimes : curlTimes).append(ms);
            if (ours && managerPeak.isEmpty())
                managerPeak = peakMemory();
        }
    }
    std::sort(managerTimes.begin(), managerTimes.end());
    std::sort(curlTimes.begin(), curlTimes.end());

    std::fprintf(stderr, "\nsize:            %lld MiB, %d runs each\n", mib, runs);
    const auto line = [&](const char* what, qint64 oursMs, qint64 curlMs) {
        const double ours = mibPerSecond(size, oursMs);
        const double theirs = mibPerSecond(size, curlMs);
        std::fprintf(stderr, "%-7s DownloadManager %7.1f MiB/s, curl %7.1f MiB/s, ratio %.3f (target >= 0.9)\n", what,
                     ours, theirs, theirs > 0 ? ours / theirs : 0.0);
    };
    line("median:", managerTimes.at(runs / 2), curlTimes.at(runs / 2));
    line("best:", managerTimes.first(), curlTimes.first());
    std::fprintf(stderr, "peak memory:     %s after DownloadManager, %s at the end (VmHWM, target < 64 MB)\n",
                 qPrintable(managerPeak), qPrintable(peakMemory()));
    return 0;
}
