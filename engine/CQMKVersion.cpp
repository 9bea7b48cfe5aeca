#include "engine/CQMKVersion.h"

#include "app/Application.h"
#include "app/CAppPaths.h"
#include "app/CMessageBox.h"
#include "engine/CFolderWalk.h"
#include "engine/CToolCommand.h"
#include "model/CFileTree.h"
#include "model/CProduct.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QList>
#include <QPair>
#include <QQueue>
#include <QThread>
#include <QTimer>

#include <cstdio>

namespace {
const QString Prefix = QStringLiteral("VL_QUILLMARK_V");
const QString Platform = QStringLiteral("MAC");

// The version names files and a URL path, so it must stay a plain token.
bool isPlainVersion(const QString& text)
{
    for (const QChar c : text) {
        const ushort u = c.unicode();
        if (!((u >= '0' && u <= '9') || (u >= 'a' && u <= 'z') || (u >= 'A' && u <= 'Z')))
            return false;
    }
    return true;
}
} // namespace

CQMKVersion::CQMKVersion(QObject* parent) : QObject(parent), m_strVersionFileName(QStringLiteral("mac_version.txt"))
{
    SetServer(QStringLiteral(QUILLMARK_DEFAULT_SERVER));
    m_log.SetFileName(QStringLiteral("log_qmkupdate.txt"));
    m_log.WriteString(QStringLiteral("Init"), false);
    connect(&m_downloadManager, &CVerifiedDownload::SignalMirrorFailed, this,
            [this](const QString& name, const QString& mirror, const CFailureReason& reason) {
                m_log.WriteString(QStringLiteral("!!ERROR ") + name + QStringLiteral(" not taken from mirror ") +
                                      mirror + QStringLiteral(": ") + reason.LogText(),
                                  false);
            });
}

CQMKVersion::~CQMKVersion()
{
    if (m_pUnzipProcess) {
        disconnect(m_pUnzipProcess, nullptr, this, nullptr);
        m_pUnzipProcess->close();
        delete m_pUnzipProcess;
    }
}

void CQMKVersion::Init(QString currentVersion)
{
    m_strCurrentVersion = currentVersion;
    InitDownloadDirectory();
    connect(&m_downloadManager, &CVerifiedDownload::SignalFinished, this, &CQMKVersion::downloadFinishedSlot,
            Qt::UniqueConnection);
    connect(&m_downloadManager, &CVerifiedDownload::SignalChangePercent, this, &CQMKVersion::ChangePercentSlot,
            Qt::UniqueConnection);
}

void CQMKVersion::SetServer(const QString& server)
{
    m_strServer = server;
    m_downloadManager.SetMirrors(server);
}

void CQMKVersion::SetTrustedKeys(const QList<CMinisign::PublicKey>& keys, bool verify)
{
    m_downloadManager.SetTrustedKeys(keys, verify);
}

void CQMKVersion::InitDownloadDirectory()
{
    const QString dir = CAppPaths::DownloadFolder();
    if (!QDir(dir).exists()) {
        QDir().mkpath(dir);
    } else {
        // Left overs of an earlier update.
        removeDir(dir + QStringLiteral("/update"));
        removeDir(dir + QStringLiteral("/qmk_au.app"));
        for (const QFileInfo& file : CFileTree::plainFiles(dir))
            QFile::remove(file.filePath());
    }
    m_strDownloadDir = dir;
    m_log.WriteString(m_strDownloadDir, false);
}

bool CQMKVersion::removeDir(const QString& path)
{
    return CFileTree::removeDir(path);
}

void CQMKVersion::requestFile(const QString& fileName)
{
    QString reason;
    if (!CVerifiedDownload::CanSaveInto(m_strDownloadDir, fileName, reason)) {
        // The downloader would send nothing and never answer; the check fails here instead, after
        // the caller has returned, as a failed transfer would.
        m_strErrorText = QStringLiteral("Problem opening save file ") + m_strDownloadDir + QLatin1Char('/') + fileName +
                         QStringLiteral(": ") + reason + QStringLiteral("\r\n");
        m_log.WriteString(QStringLiteral("!!ERROR ") + m_strErrorText, false);
        m_lastFailure =
            CFailureReason(CFailureReason::EKind::NotWritable, m_downloadManager.GetMirrors().value(0), 0, 0, reason);
        QTimer::singleShot(0, this, &CQMKVersion::SignalDownloadError);
        return;
    }
    m_bTransferRunning = true;
    m_downloadManager.Fetch(QStringLiteral("/downloads/quillmark/") + fileName, m_strDownloadDir,
                            QByteArrayLiteral("webclient:Q7x2Lm9p"), CVerifiedDownload::Expect());
}

void CQMKVersion::SearchForNewVersion(bool search)
{
    m_bSearch = search;
    m_strNewVersion.clear();
    m_strZipName.clear();
    m_strAppName.clear();
    m_strErrorText.clear();
    requestFile(m_strVersionFileName);
    m_bSearching = true;
}

bool CQMKVersion::NewQMKVersionAvailable()
{
    if (m_strNewVersion.isEmpty() || m_strCurrentVersion.isEmpty())
        return false;
    // A plain string comparison, not a numeric one: with one digit per part it orders releases
    // correctly, and the release numbering relies on it. Kept so.
    return m_strNewVersion.toLatin1() > m_strCurrentVersion.toLatin1();
}

bool CQMKVersion::ShowQMKDownloadDlg()
{
    return !m_bSearch || NewQMKVersionAvailable();
}

void CQMKVersion::DownloadNewQMKVersion()
{
    requestFile(m_strZipName);
    m_bDownloading = true;
    emit SignalNewQMKVersionStarted();
}

void CQMKVersion::downloadFinishedSlot(QString urlPath, QString filePath, QStringList errors, QByteArray data)
{
    Q_UNUSED(urlPath)
    Q_UNUSED(data)
    m_bTransferRunning = false;
    m_strErrorText.clear();
    for (const QString& error : errors)
        m_strErrorText += error + QStringLiteral("\r\n");

    m_lastFailure = errors.isEmpty() ? CFailureReason() : m_downloadManager.LastFailure();
    if (!errors.isEmpty()) {
        m_log.WriteString(QStringLiteral("!!ERROR ") + m_strErrorText, false);
        emit SignalDownloadError();
        return;
    }
    const QString name = QFileInfo(filePath).fileName();
    m_log.WriteString(name + QStringLiteral(" from ") + m_downloadManager.LastMirror(), false);
    if (name == m_strVersionFileName) {
        InitNewQMKVersion(filePath);
        emit SignalDownloadVersionTXTFinish();
    } else if (!m_strZipName.isEmpty() && name == m_strZipName) {
        emit SignalNewQMKVersionDownloaded();
    }
}

void CQMKVersion::InitNewQMKVersion(QString filePath)
{
    QFile file(filePath);
    QString text;
    QString problem;
    if (!file.open(QIODevice::ReadOnly)) {
        const QByteArray message =
            (QStringLiteral("Problem opening read file ") + filePath + file.errorString() + QLatin1Char('\n'))
                .toLocal8Bit();
        std::fwrite(message.constData(), 1, size_t(message.size()), stderr);
    } else {
        // The file holds a few digits; anything far longer is not a version file.
        const QByteArray content = file.read(4096 + 1);
        if (content.size() > 4096)
            problem = QStringLiteral("larger than 4096 bytes");
        else
            text = QString::fromUtf8(content);
        file.close();
        file.remove();
    }
    text = text.trimmed();
    if (problem.isEmpty() && !text.isEmpty()) {
        if (text.size() > MaxVersionLength)
            problem = QStringLiteral("version longer than %1 characters").arg(MaxVersionLength);
        else if (!isPlainVersion(text))
            problem = QStringLiteral("version is not made of letters and digits");
    }
    if (!problem.isEmpty()) {
        const QString message =
            QStringLiteral("!!ERROR Unusable version file ") + filePath + QStringLiteral(": ") + problem;
        m_log.WriteString(message, false);
        const QByteArray bytes = (message + QLatin1Char('\n')).toLocal8Bit();
        std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stderr);
        text.clear();
    }

    if (text.isEmpty()) {
        m_strNewVersion.clear();
        m_strZipName.clear();
        m_strAppName.clear();
        m_strUnzipFolderName.clear();
        return;
    }
    const QString base = Prefix + text;
    m_strAppName = base + QStringLiteral(".app");
    m_strUnzipFolderName = base + QLatin1Char('_') + Platform;
    m_strZipName = m_strUnzipFolderName + QStringLiteral(".zip");

    // A dot after every character but the last: 124 becomes 1.2.4.
    QString dotted;
    dotted.reserve(text.size() * 2);
    for (int i = 0; i < text.size(); ++i) {
        if (i > 0)
            dotted += QLatin1Char('.');
        dotted += text.at(i);
    }
    m_strNewVersion = dotted;
    m_log.WriteString(QStringLiteral("New version ") + m_strNewVersion, false);
}

QString CQMKVersion::GetNewQMKVersionZipFilePath()
{
    return m_strDownloadDir + QLatin1Char('/') + m_strZipName;
}

QString CQMKVersion::GetNewQMKVersionInstFilePath()
{
    return m_strDownloadDir + QLatin1Char('/') + m_strAppName;
}

bool CQMKVersion::InstallQuillmark()
{
    const QString archive = GetNewQMKVersionZipFilePath();
    m_log.WriteString(archive, false);

    QString error;
    if (m_strZipName.isEmpty() || !QFileInfo(archive).isFile())
        error = tr("Missing file ") + archive;
#ifdef Q_OS_MACOS
    const QString utility1 =
        QStringLiteral("/System/Library/CoreServices/Archive Utility.app/Contents/MacOS/Archive Utility");
    const QString utility2 =
        QStringLiteral("/System/Library/CoreServices/Applications/Archive Utility.app/Contents/MacOS/Archive Utility");
    if (!QFileInfo::exists(utility1) && !QFileInfo::exists(utility2))
        error = tr("Missing file ") + utility2;
#else
    if (!CToolCommand(QStringLiteral("unzip")).isAvailable())
        error = tr("Missing file ") + QStringLiteral("unzip");
#endif

    if (!m_strAppName.isEmpty() && QFileInfo::exists(GetNewQMKVersionInstFilePath()))
        removeDir(GetNewQMKVersionInstFilePath());

    if (!error.isEmpty()) {
        m_log.WriteString(QStringLiteral("!!ERROR ") + error, false);
        CMessageBox::critical(error, QStringLiteral("Error"), Application::mainWnd);
        return false;
    }

    // unzip runs without -o and would ask before overwriting what an interrupted earlier run
    // unpacked, so that folder goes first.
    if (!m_strUnzipFolderName.isEmpty())
        removeDir(m_strDownloadDir + QLatin1Char('/') + m_strUnzipFolderName);

    StopInstall();
    m_pUnzipProcess = new QProcess();
    connect(m_pUnzipProcess, &QProcess::started, this, &CQMKVersion::unzipProdProcessStartedSlot);
    connect(m_pUnzipProcess, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            &CQMKVersion::unzipProdRrocessFinishedSlot);

    CToolCommand command(QStringLiteral("unzip"));
    command.quoted(archive).arg(QStringLiteral("-d")).quoted(m_strDownloadDir);
    m_log.WriteString(command.commandLine(), false);
    if (!command.start(m_pUnzipProcess, QIODevice::ReadWrite)) {
        m_log.WriteString(QStringLiteral("!!ERROR unzip not found"), false);
        return false;
    }
    // Nothing ever answers a question from unzip; an end of input makes it give up instead of waiting.
    m_pUnzipProcess->closeWriteChannel();
    return true;
}

void CQMKVersion::StopInstall()
{
    if (!m_pUnzipProcess)
        return;
    disconnect(m_pUnzipProcess, nullptr, this, nullptr);
    m_pUnzipProcess->close();
    m_pUnzipProcess->deleteLater();
    m_pUnzipProcess = nullptr;
}

void CQMKVersion::StopDownload()
{
    // Only a transfer in hand; an idle downloader would still report a "User abort".
    if (m_bTransferRunning)
        m_downloadManager.stopDownloadSlot();
}

void CQMKVersion::ChangePercentSlot(int percent)
{
    emit SignalChangePercent(percent);
}

void CQMKVersion::unzipProdProcessStartedSlot()
{
    m_log.WriteString(QStringLiteral("unzip started"), false);
}

void CQMKVersion::unzipProdRrocessFinishedSlot(int exitCode, QProcess::ExitStatus exitStatus)
{
    if (exitStatus == QProcess::CrashExit) {
        m_log.WriteString(QStringLiteral("!!Error UPDATE-RESULT == UNZIP FAILED "), false);
    } else if (m_strUnzipFolderName.isEmpty()) {
        // A new search dropped the release while unzip ran; "downloads" itself is never moved.
        m_log.WriteString(QStringLiteral("!!ERROR no release folder to move after unzip"), false);
    } else {
        if (exitCode != 0)
            m_log.WriteString(QStringLiteral("!!WARNING unzip ended with exit code %1").arg(exitCode), false);
        const QString unpacked = m_strDownloadDir + QLatin1Char('/') + m_strUnzipFolderName;
        moveDirCentents(unpacked, m_strDownloadDir);
        removeDir(unpacked);
        m_log.WriteString(m_strDownloadDir, false);
    }
    emit SignalUnzipNewVersionFinished();
}

void CQMKVersion::moveDirCentents(const QString& source, const QString& target)
{
    // Moving a folder onto itself would delete each file before renaming it.
    if (QDir::cleanPath(source) == QDir::cleanPath(target))
        return;
    QQueue<QPair<QString, QString>> pending;
    pending.enqueue(qMakePair(source, target));
    while (!pending.isEmpty()) {
        const QPair<QString, QString> pair = pending.dequeue();
        if (!QFileInfo(pair.first).isDir() || CFileTree::isLink(pair.first))
            continue;
        // A link in the target is replaced, never written through.
        if (CFileTree::isLink(pair.second))
            QFile::remove(pair.second);
        if (!QDir(pair.second).exists())
            QDir().mkpath(pair.second);
        // Links of the release (an app bundle's Versions/Current) arrive as links; they are moved,
        // never followed.
        QFileInfoList entries = CFileTree::plainFiles(pair.first);
        entries += CFileTree::links(pair.first);
        for (const QFileInfo& file : entries) {
            const QString to = pair.second + QLatin1Char('/') + file.fileName();
            const QFileInfo existing(to);
            if (existing.isDir() && !existing.isSymLink())
                removeDir(to);
            QString error;
            if (!CFolderWalk::MoveFile(file.filePath(), to, true, &error))
                m_log.WriteString(QStringLiteral("!!ERROR ") + error, false);
        }
        for (const QFileInfo& folder : CFileTree::subFolders(pair.first))
            pending.enqueue(qMakePair(folder.filePath(), pair.second + QLatin1Char('/') + folder.fileName()));
    }
}

void CQMKVersion::StartInstallFileSlot()
{
    QString updater = m_strDownloadDir + QLatin1Char('/') + QStringLiteral("qmk_au") + QStringLiteral(".app");
    CProduct::ReplacePathCL(updater);

#ifdef Q_OS_MACOS
    const QString opener = QStringLiteral("open");
#else
    const QString opener = QStringLiteral("xdg-open");
#endif
    CToolCommand command(opener);
    command.quoted(updater);
    m_log.WriteString(command.commandLine(), false);

    // Built for the updater but not handed over; it has never taken arguments. Kept so.
    const QStringList arguments{m_strNewVersion, Application::GetLanguage()};
    Q_UNUSED(arguments)

    // The updater replaces this program, so it must not end with it.
    if (!command.startDetached()) {
        const QString error = tr("Missing file ") + opener;
        m_log.WriteString(QStringLiteral("!!ERROR ") + error, false);
        CMessageBox::critical(error, QStringLiteral("Error"), Application::mainWnd);
        return;
    }
    emit SignalInstallerStarted();
    QThread::msleep(100);
    QCoreApplication::exit(0);
}
