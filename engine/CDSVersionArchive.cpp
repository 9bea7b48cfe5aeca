#include "engine/CDSVersion.h"

#include "engine/CToolCommand.h"
#include "model/CFileTree.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTimer>

// Whole-backup archives

namespace {
QString absoluteIn(const QString& folder, const QString& path)
{
    return QFileInfo(path).isAbsolute() ? path : QDir(folder).absoluteFilePath(path);
}
} // namespace

bool CDSVersion::CreateBackup(QString archive)
{
    if (m_strDownloadDir.isEmpty())
        InitDownloadDirectory();
    archive = absoluteIn(m_strDownloadDir, archive);
    // zip -r would otherwise add to an old archive.
    if (QFileInfo(archive).isFile() || CFileTree::isLink(archive))
        QFile::remove(archive);
    StartZipBackup(archive);
    return true;
}

bool CDSVersion::LoadBackup(QString archive)
{
    if (m_strDownloadDir.isEmpty())
        InitDownloadDirectory();
    archive = absoluteIn(m_strDownloadDir, archive);
    if (QFileInfo(archive).isFile())
        LoadZipBackup(archive);
    return true;
}

void CDSVersion::FinishBackupProcess(bool zip, bool ok)
{
    if (zip)
        emit SignalZipBackProcessFinished(ok);
    else
        emit SignalUnZipBackProcessFinished(ok);
}

bool CDSVersion::StartZipBackup(QString archive)
{
    DiscardProcess(m_pZipBackProcess);
    m_pZipBackProcess = new QProcess();
    connect(m_pZipBackProcess, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            &CDSVersion::zipBackProcessFinishedSlot);
    connect(m_pZipBackProcess, &QProcess::errorOccurred, this, [this](QProcess::ProcessError e) {
        if (e != QProcess::FailedToStart)
            return;
        m_log.WriteString(QStringLiteral("!!ERROR zip could not be started: ") + m_pZipBackProcess->errorString(),
                          false);
        FinishBackupProcess(true, false);
    });
    // The folder name in the archive is relative, so zip runs inside the cycle base folder. Only
    // the child's working folder is set: the program's own current folder stays as it is.
    m_pZipBackProcess->setWorkingDirectory(m_strDownloadDir);

    CToolCommand command(QStringLiteral("zip"));
    command.arg(QStringLiteral("-r")).quoted(archive).quoted(QLatin1String(st_cycleFolderName));
    m_log.WriteString(command.commandLine(), false);
    if (!command.start(m_pZipBackProcess)) {
        m_log.WriteString(QStringLiteral("!!ERROR zip not found on the search path"), false);
        DiscardProcess(m_pZipBackProcess);
        QTimer::singleShot(0, this, [this] { FinishBackupProcess(true, false); });
    }
    return true;
}

void CDSVersion::zipBackProcessFinishedSlot(int exitCode, QProcess::ExitStatus status)
{
    m_log.WriteString(QString::asprintf("zipBackProcessFinished state = %d", int(status)), false);
    // Only a crash counts as failure, as for loading; an error code is kept in the log.
    if (status == QProcess::NormalExit && exitCode != 0)
        m_log.WriteString(QStringLiteral("!!WARNING zip ended with code ") + QString::number(exitCode), false);
    FinishBackupProcess(true, status == QProcess::NormalExit);
}

// Loading runs in two steps: the archive's table of contents is checked first, so that a damaged
// archive or one that does not hold a cycle backup never writes a file.
bool CDSVersion::LoadZipBackup(QString archive)
{
    DiscardProcess(m_pListBackProcess);
    m_pListBackProcess = new QProcess();
    m_pListBackProcess->setWorkingDirectory(m_strDownloadDir);
    connect(m_pListBackProcess, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            [this, archive](int code, QProcess::ExitStatus status) { BackupListingFinished(archive, code, status); });
    connect(m_pListBackProcess, &QProcess::errorOccurred, this, [this](QProcess::ProcessError e) {
        if (e != QProcess::FailedToStart)
            return;
        m_log.WriteString(QStringLiteral("!!ERROR unzip could not be started: ") + m_pListBackProcess->errorString(),
                          false);
        FinishBackupProcess(false, false);
    });
    CToolCommand list(QStringLiteral("unzip"));
    list.arg(QStringLiteral("-Z1")).quoted(archive);
    m_log.WriteString(list.commandLine(), false);
    if (!list.start(m_pListBackProcess, QIODevice::ReadOnly)) {
        m_log.WriteString(QStringLiteral("!!ERROR unzip not found on the search path"), false);
        DiscardProcess(m_pListBackProcess);
        QTimer::singleShot(0, this, [this] { FinishBackupProcess(false, false); });
    }
    return true;
}

void CDSVersion::BackupListingFinished(const QString& archive, int exitCode, QProcess::ExitStatus status)
{
    const QByteArray listing = m_pListBackProcess ? m_pListBackProcess->readAllStandardOutput() : QByteArray();
    if (status != QProcess::NormalExit || exitCode != 0) {
        m_log.WriteString(QStringLiteral("!!ERROR ") + archive + QStringLiteral(" is damaged or not a ZIP archive"),
                          false);
        FinishBackupProcess(false, false);
        return;
    }
    const QString prefix = QLatin1String(st_cycleFolderName) + QLatin1Char('/');
    const QStringList entries = QString::fromLocal8Bit(listing).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    bool foreign = entries.isEmpty();
    for (const QString& entry : entries) {
        const QString name = entry.trimmed();
        if (!name.startsWith(prefix) || name.contains(QLatin1String("../")) || name.contains(QLatin1String("/..")))
            foreign = true;
    }
    if (foreign) {
        m_log.WriteString(QStringLiteral("!!ERROR ") + archive + QStringLiteral(" holds no ") +
                              QLatin1String(st_cycleFolderName) + QStringLiteral(" backup, nothing loaded"),
                          false);
        FinishBackupProcess(false, false);
        return;
    }

    DiscardProcess(m_pUnzipBackProcess);
    m_pUnzipBackProcess = new QProcess();
    connect(m_pUnzipBackProcess, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            &CDSVersion::unzipBackProcessFinishedSlot);
    connect(m_pUnzipBackProcess, &QProcess::errorOccurred, this, [this](QProcess::ProcessError e) {
        if (e != QProcess::FailedToStart)
            return;
        m_log.WriteString(QStringLiteral("!!ERROR unzip could not be started: ") + m_pUnzipBackProcess->errorString(),
                          false);
        FinishBackupProcess(false, false);
    });
    CToolCommand command(QStringLiteral("unzip"));
    command.arg(QStringLiteral("-o")).quoted(archive).arg(QStringLiteral("-d")).quoted(m_strDownloadDir);
    m_log.WriteString(command.commandLine(), false);
    if (!command.start(m_pUnzipBackProcess)) {
        m_log.WriteString(QStringLiteral("!!ERROR unzip not found on the search path"), false);
        DiscardProcess(m_pUnzipBackProcess);
        QTimer::singleShot(0, this, [this] { FinishBackupProcess(false, false); });
    }
}

void CDSVersion::unzipBackProcessFinishedSlot(int exitCode, QProcess::ExitStatus status)
{
    // The same text as for zip, kept so.
    m_log.WriteString(QString::asprintf("zipBackProcessFinished state = %d", int(status)), false);
    if (status == QProcess::NormalExit && exitCode != 0)
        m_log.WriteString(QStringLiteral("!!WARNING unzip ended with code ") + QString::number(exitCode), false);
    FinishBackupProcess(false, status == QProcess::NormalExit);
}

void CDSVersion::StopZipBackProcess()
{
    const bool running = (m_pZipBackProcess && m_pZipBackProcess->state() != QProcess::NotRunning) ||
                         (m_pUnzipBackProcess && m_pUnzipBackProcess->state() != QProcess::NotRunning) ||
                         (m_pListBackProcess && m_pListBackProcess->state() != QProcess::NotRunning);
    if (running)
        m_log.WriteString(QStringLiteral("StopZipBackProcess"), false);
    DiscardProcess(m_pZipBackProcess);
    DiscardProcess(m_pUnzipBackProcess);
    DiscardProcess(m_pListBackProcess);
}
