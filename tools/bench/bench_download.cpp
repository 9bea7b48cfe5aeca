// Downloads a generated file from the loopback test server with DownloadManager and with curl
// (same request: POST, Basic authorization, form content type; same sink: a file in a temporary
// folder) and prints both throughputs, their ratio and this process's peak memory.
//
//   bench_download [MiB]        default 1024; progress goes to stdout, figures to stderr

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
} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const qint64 mib = argc > 1 ? QByteArray(argv[1]).toLongLong() : 1024;
    if (mib <= 0) {
        std::fprintf(stderr, "usage: bench_download [MiB]\n");
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

    // DownloadManager
    DownloadManager manager;
    QSignalSpy finished(&manager, &DownloadManager::SignalFinished);
    manager.credentials = server.credentials();
    QElapsedTimer timer;
    timer.start();
    manager.DownloadFile(QUrl(url), true, downloads);
    if (!finished.wait(600000)) {
        std::fprintf(stderr, "DownloadManager did not finish\n");
        return 1;
    }
    const qint64 managerMs = timer.elapsed();
    const QString managerPeak = peakMemory();
    std::fflush(stdout);
    const QStringList errors = finished.first().at(2).toStringList();
    const qint64 managerBytes = QFileInfo(downloads + QStringLiteral("/big.bin")).size();
    QFile::remove(downloads + QStringLiteral("/big.bin"));
    if (!errors.isEmpty() || managerBytes != size) {
        std::fprintf(stderr, "DownloadManager failed: %lld bytes, %s\n", managerBytes, qPrintable(errors.join(' ')));
        return 1;
    }

    // curl, same request and the same kind of sink
    const QString curl = QStandardPaths::findExecutable(QStringLiteral("curl"));
    if (curl.isEmpty()) {
        std::fprintf(stderr, "curl not found on PATH\n");
        return 1;
    }
    const QString curlTarget = downloads + QStringLiteral("/curl.bin");
    QProcess process;
    timer.restart();
    process.start(curl, {QStringLiteral("-s"), QStringLiteral("-X"), QStringLiteral("POST"), QStringLiteral("-u"),
                         QString::fromLatin1(server.credentials()), QStringLiteral("-H"),
                         QStringLiteral("Content-Type: application/x-www-form-urlencoded;charset=UTF-8"),
                         QStringLiteral("-o"), curlTarget, url});
    if (!process.waitForFinished(600000) || process.exitCode() != 0) {
        std::fprintf(stderr, "curl failed: %s\n", process.readAllStandardError().constData());
        return 1;
    }
    const qint64 curlMs = timer.elapsed();
    const qint64 curlBytes = QFileInfo(curlTarget).size();
    QFile::remove(curlTarget);
    if (curlBytes != size) {
        std::fprintf(stderr, "curl fetched %lld bytes of %lld\n", curlBytes, size);
        return 1;
    }

    const double ours = mibPerSecond(size, managerMs);
    const double theirs = mibPerSecond(size, curlMs);
    std::fprintf(stderr, "\nsize:            %lld MiB\n", mib);
    std::fprintf(stderr, "DownloadManager: %8.1f MiB/s (%lld ms)\n", ours, managerMs);
    std::fprintf(stderr, "curl:            %8.1f MiB/s (%lld ms)\n", theirs, curlMs);
    std::fprintf(stderr, "ratio:           %8.3f (target >= 0.9)\n", theirs > 0 ? ours / theirs : 0.0);
    std::fprintf(stderr, "peak memory:     %s after DownloadManager, %s at the end (VmHWM, target < 64 MB)\n",
                 qPrintable(managerPeak), qPrintable(peakMemory()));
    return 0;
}
