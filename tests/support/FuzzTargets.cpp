#include "support/FuzzTargets.h"

#include "app/Application.h"
#include "app/CMessageBox.h"
#include "engine/CDSVersion.h"
#include "engine/CMinisign.h"
#include "engine/CQMKVersion.h"
#include "model/CDataModel.h"
#include "model/CProduct.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace {
// A fresh program folder for one input, below one temporary folder for the whole process. Boxes
// are collected instead of shown, and the global language and version start from the same
// values every time, so that one input's outcome never depends on the one before.
class Workspace
{
public:
    Workspace() : m_previousAppPath(Application::st_strAppPath)
    {
        static QTemporaryDir st_root;
        m_path = st_root.path() + QStringLiteral("/run");
        // The logs are emptied rather than deleted: a missing log is reported on standard error
        // at its next entry, which would drown the fuzzer's own output.
        const QDir run(m_path);
        for (const QFileInfo& entry : run.entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden)) {
            if (entry.fileName() != QLatin1String("log"))
                entry.isDir() && !entry.isSymLink() ? QDir(entry.filePath()).removeRecursively()
                                                    : QFile::remove(entry.filePath());
        }
        for (const QFileInfo& log : QDir(m_path + QStringLiteral("/log")).entryInfoList(QDir::Files))
            QFile(log.filePath()).resize(0);
        QDir().mkpath(m_path + QStringLiteral("/bin"));
        QDir().mkpath(m_path + QStringLiteral("/log")); // a portable folder: the logs stay here
        Application::st_strAppPath = m_path;
        Application::setLanguage(QString());
        Application::setApplicationVersionEx(QStringLiteral("MPLET"));
        m_previousHandler = CMessageBox::setHandler(
            [this](QMessageBox::Icon, const QString& title, const QString& text) { boxes << title + ": " + text; });
    }
    ~Workspace()
    {
        CMessageBox::setHandler(m_previousHandler);
        Application::st_strAppPath = m_previousAppPath;
    }

    QString path(const QString& relative) const { return m_path + QLatin1Char('/') + relative; }

    bool write(const QString& relative, const QByteArray& bytes) const
    {
        QDir().mkpath(QFileInfo(path(relative)).absolutePath());
        QFile file(path(relative));
        return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
    }

    QByteArray read(const QString& relative) const
    {
        QFile file(path(relative));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QStringList boxes;

private:
    QString m_path;
    QString m_previousAppPath;
    CMessageBox::Handler m_previousHandler;
};

const QString kCatalogue = QStringLiteral("bin/base_ini.xml");
const QString kSettings = QStringLiteral("bin/prop_ini.xml");

// What start-up and the product cards do with a freshly read catalogue and settings: link the
// categories, resolve every folder, read the cycle files and build the install groups. Returns
// the boxes the settings file caused.
QStringList startUp(CDataModel& model, Workspace& ws)
{
    model.InitBase();
    ws.boxes.clear();
    model.InitProp();
    const QStringList settingsBoxes = ws.boxes;
    model.InitProductParentCategory();
    for (int i = 0; i < model.GetProductListSize(); ++i) {
        CProduct* product = model.GetProductByIndex(i);
        product->TranslateNewProdPath();
        product->GetCycleVersion();
        product->GetBackCycleVersion();
    }
    model.InitProdUpdateListForUpdateOrReset(true);
    return settingsBoxes;
}

// The lines in which two saved files differ, for a readable report.
QString lineDiff(const QByteArray& first, const QByteArray& second)
{
    const QStringList a = QString::fromUtf8(first).split(QLatin1Char('\n'));
    const QStringList b = QString::fromUtf8(second).split(QLatin1Char('\n'));
    QString diff;
    for (int i = 0; i < qMax(a.size(), b.size()); ++i) {
        const QString left = a.value(i, QStringLiteral("(none)"));
        const QString right = b.value(i, QStringLiteral("(none)"));
        if (left != right)
            diff += QStringLiteral("\nline %1: [%2] then [%3]").arg(i + 1).arg(left, right);
    }
    return diff;
}

// Starts the program on the workspace's catalogue and settings and ends it, which saves the
// settings; returns the saved file, or a null array with the problem.
QByteArray run(Workspace& ws, bool userFile, QString& problem)
{
    CDataModel model;
    const QStringList boxes = startUp(model, ws);
    // The user's file may be broken; a file the program wrote must not be.
    if (!userFile && !boxes.isEmpty()) {
        problem = QStringLiteral("the saved settings do not read back: ") + boxes.join(QLatin1Char('\n')) +
                  QStringLiteral("\n--- saved ---\n") + QString::fromUtf8(ws.read(kSettings));
        return QByteArray();
    }
    if (!model.Save()) {
        problem = QStringLiteral("the settings could not be saved");
        return QByteArray();
    }
    return ws.read(kSettings);
}

// Three runs of the program in a row on the same files. A product that the user's settings move
// to a category of another platform is left out of the first save and is back from the catalogue
// in the second, so the saved file settles only from the second run on; from there it must stay
// the same.
QString settingsRoundTrip(Workspace& ws)
{
    QString problem;
    QByteArray saved[3];
    for (int i = 0; i < 3; ++i) {
        saved[i] = run(ws, i == 0, problem);
        if (!problem.isEmpty())
            return problem;
    }
    if (saved[1] != saved[2])
        return QStringLiteral("settings change when saved again:") + lineDiff(saved[1], saved[2]);
    return QString();
}

// A catalogue whose products use every kind of path the settings can change.
const QByteArray kFixedCatalogue = R"(<?xml version="1.0" encoding="UTF-8"?>
<data>
  <App><Version>1.2.3</Version></App>
  <categories><name>X-Plane 10</name><path>/sims/xp10</path><name>X-Plane 11</name><path>/sims/xp11</path>
    <name>FSX</name><path>/sims/fsx</path></categories>
  <datasets><name>native</name><name>fmc</name></datasets>
  <products>
    <name>Default Navigation</name><dataset>native</dataset><product_path>$SimPath\Custom Data</product_path>
    <install_path>$SimPath\Custom Data:\xp</install_path><cycle_info_path>$SimPath\Custom Data</cycle_info_path>
    <category>X-Plane 11</category><update>true</update>
    <name>Jet FMS</name><dataset>fmc</dataset><product_path>/addons/jet</product_path>
    <install_path>$ProductPath\navdata:\jet</install_path><cycle_info_path>$ProductPath\navdata</cycle_info_path>
    <remove_file>$ProductPath\navdata\cache.bin</remove_file><category>X-Plane 10</category>
    <name>Orbital Route Planner X</name><dataset>fmc</dataset><product_path>/addons/orbital</product_path>
    <install_path>$ProductPath:\orpx</install_path><cycle_info_path>$ProductPath</cycle_info_path>
    <category>X-Plane 11</category>
  </products>
</data>
)";

// A value read from a line-based file: one line, trimmed, no NUL.
bool isCleanValue(const QString& value)
{
    return value == value.trimmed() && !value.contains(QLatin1Char('\n')) && !value.contains(QChar(0));
}

// "1.2.4" -> "124": the dots InitNewQMKVersion puts after every character.
QString undotted(const QString& dotted)
{
    QString text;
    for (int i = 0; i < dotted.size(); i += 2)
        text += dotted.at(i);
    return text;
}

QString catalogue(const QByteArray& bytes)
{
    Workspace ws;
    if (!ws.write(kCatalogue, bytes))
        return QStringLiteral("cannot write the catalogue");
    return settingsRoundTrip(ws);
}

QString settings(const QByteArray& bytes)
{
    Workspace ws;
    if (!ws.write(kCatalogue, kFixedCatalogue) || !ws.write(kSettings, bytes))
        return QStringLiteral("cannot write the catalogue or the settings");
    return settingsRoundTrip(ws);
}

QString cycleInfo(const QByteArray& bytes)
{
    Workspace ws;
    const QString folder = QStringLiteral("addon/navdata");
    const QString backup = folder + QStringLiteral("/QMK_fmc_back/cycle_info.txt");
    if (!ws.write(folder + QStringLiteral("/cycle_info.txt"), bytes) || !ws.write(backup, bytes))
        return QStringLiteral("cannot write the cycle files");

    CProduct product;
    product.SetDataset(QStringLiteral("fmc"));
    product.SetCycleInfoPath(ws.path(folder));
    const QString cycle = product.GetCycleVersion();
    const QString revision = product.GetRevision();
    const QString backCycle = product.GetBackCycleVersion();
    if (!isCleanValue(cycle) || !isCleanValue(revision))
        return QStringLiteral("cycle or revision not a clean value: [%1] [%2]").arg(cycle, revision);
    if (backCycle != cycle || product.GetBackRevision() != revision)
        return QStringLiteral("the backup copy reads differently: [%1/%2] against [%3/%4]")
            .arg(backCycle, product.GetBackRevision(), cycle, revision);

    // Offered exactly what the file names, the product holds it; with no cycle, nothing is offered.
    const bool holds = product.CheckCycleVersion(cycle, revision);
    const EQMKProductInstallState expected = cycle.isEmpty() ? QMK_STATE_NOT_INSTALLED : QMK_STATE_INSTALL_OK;
    if (holds == cycle.isEmpty() || product.GetInstallState() != expected)
        return QStringLiteral("offered its own cycle [%1/%2], the product reads as state %3")
            .arg(cycle, revision)
            .arg(int(product.GetInstallState()));

    // A first backup of a product without a backup cycle file writes the placeholder, once.
    QFile::remove(ws.path(backup));
    if (!product.WriteUnknownBackupCycleInfoFile())
        return QStringLiteral("no placeholder written");
    const QByteArray placeholder = ws.read(backup);
    if (product.WriteUnknownBackupCycleInfoFile() || ws.read(backup) != placeholder)
        return QStringLiteral("the placeholder was written twice");
    if (product.GetBackCycleVersion() != QLatin1String("unknown") || !product.GetBackRevision().isEmpty())
        return QStringLiteral("the placeholder reads back as [%1/%2]")
            .arg(product.GetBackCycleVersion(), product.GetBackRevision());
    if (product.GetCycleVersion() != cycle || ws.read(folder + QStringLiteral("/cycle_info.txt")) != bytes)
        return QStringLiteral("the installed cycle file changed");
    return QString();
}

QString versionList(const QByteArray& bytes)
{
    Workspace ws;
    CDSVersion engine;
    engine.Init(QStringLiteral("1.2.3"));

    engine.QuillmarkCheckHighVersion(bytes);
    const QString version = engine.GetNewVersion();
    const QString revision = engine.GetNewRevision();
    if (!isCleanValue(version) || !isCleanValue(revision) || revision.isEmpty())
        return QStringLiteral("version or revision not a clean value: [%1] [%2]").arg(version, revision);
    if (engine.GetNewVersionDig() != CDSVersion::cutDig(version))
        return QStringLiteral("version digits [%1] of [%2]").arg(engine.GetNewVersionDig(), version);

    // A download run keeps the server's list as the local copy; after that nothing is new.
    if (!ws.write(QStringLiteral("downloads/QuillmarkCycle/versionList.txt"), bytes))
        return QStringLiteral("cannot write the local copy");
    if (engine.CheckNewVersionRevision())
        return QStringLiteral("the local copy of the same list reads as another version: [%1/%2] against [%3/%4]")
            .arg(engine.GetLocalVersionText(), engine.GetLocalRevision(), version, revision);
    return QString();
}

QString macVersion(const QByteArray& bytes)
{
    Workspace ws;
    CQMKVersion engine;
    engine.Init(QStringLiteral("1.2.3"));
    const QString file = engine.GetDownloadDirectory() + QStringLiteral("/mac_version.txt");
    const auto readVersion = [&](const QByteArray& content) {
        QFile out(file);
        if (!out.open(QIODevice::WriteOnly) || out.write(content) != content.size())
            return false;
        out.close();
        engine.InitNewQMKVersion(file);
        return true;
    };
    if (!readVersion(bytes))
        return QStringLiteral("cannot write the version file");
    if (QFileInfo::exists(file))
        return QStringLiteral("the version file was left behind");

    const QString version = engine.GetNewVersion();
    if (version.isEmpty()) {
        if (!engine.GetZipName().isEmpty() || engine.NewQMKVersionAvailable())
            return QStringLiteral("no version, yet an archive [%1] is offered").arg(engine.GetZipName());
        return QString();
    }
    // Every name built from the server's text stays a plain file directly in "downloads".
    const QString downloads = QDir(engine.GetDownloadDirectory()).absolutePath();
    for (const QString& path : {engine.GetNewQMKVersionZipFilePath(), engine.GetNewQMKVersionInstFilePath(),
                                engine.GetDownloadDirectory() + QLatin1Char('/') + engine.GetUnzipFolderName()}) {
        const QFileInfo info(path);
        if (info.absolutePath() != downloads || info.fileName().contains(QLatin1Char('\\')) ||
            info.fileName().startsWith(QLatin1Char('.')))
            return QStringLiteral("version [%1] names a file outside the download folder: %2").arg(version, path);
    }

    // The version the program shows, written back without its dots, is read as the same version.
    const QString zip = engine.GetZipName();
    if (!readVersion(undotted(version).toUtf8()))
        return QStringLiteral("cannot write the version file again");
    if (engine.GetNewVersion() != version || engine.GetZipName() != zip)
        return QStringLiteral("version [%1] reads back as [%2]").arg(version, engine.GetNewVersion());
    return QString();
}

// A version list, the key it was signed with, and the two signatures minisign made of it (of its
// hash, and of the list itself). The secret key is gone: nothing else can verify.
const QByteArray kSignedList = "Revision: 1\n2104\n";
const char* const kListKey = "RWS8dt9dtN27VmHs0ayLw/Ygc9oXoi+YvG9u4euaqpDgK63VzBPFW2h0";
const QByteArray kListComment = "timestamp:1767225600\tfile:versionList.txt\tcycle:2104\trevision:1";
const char* const kListSignatures[][2] = {
    {"RUS8dt9dtN27Vi6qFaIy49nJPBV1kQ21VcDZSdYMDvznWGkvDLHjV5IhsURYK1MXB0sPTesZi0TqU5FQmbidE+LMAY3ey2zlFwQ=",
     "ios/PPXSPWSuInF7E0Sjp8xEy9FOA/xKTkkUq7OXIUpRNfYW1eOp4E5a3bmjZb+Hh7gdP7EhGfbrP+ZJL9+aBg=="},
    {"RWS8dt9dtN27VkuiNRq9q+KpaNgkfViVJvx+cVOeA6ZD2a5GcCRVwhEp1B0iD4cxn5IqaghYF9nO0bRoDz17cJKXZ/kg66JFMAk=",
     "lTaGX36Xrz+EP3SgBeNKHQwNFrWctgJxm86w5IxijhjRxJXDRhLUZ5sklChwv91bktvpaAiYUdL+nTrxrbV9AA=="}};

// A signature file as a server could send it, read and checked as the downloader does, against
// the list above.
QString minisig(const QByteArray& bytes)
{
    Workspace ws;
    if (!ws.write(QStringLiteral("downloads/versionList.txt"), kSignedList))
        return QStringLiteral("cannot write the signed list");
    CMinisign::Signature signature;
    QString problem;
    if (!CMinisign::ParseSignature(bytes.left(CMinisign::MaxSignatureFileSize + 1), signature, &problem))
        return problem.isEmpty() ? QStringLiteral("refused without saying why") : QString();
    if (signature.keyId.size() != 8 || signature.signature.size() != 64 || signature.globalSignature.size() != 64 ||
        signature.trustedComment.contains('\n'))
        return QStringLiteral("taken with parts of the wrong size");

    // What was taken is what was there: the same lines written again read back alike.
    const QByteArray algorithm = signature.prehashed ? "ED" : "Ed";
    const QByteArray again = "untrusted comment: x\n" + (algorithm + signature.keyId + signature.signature).toBase64() +
                             "\ntrusted comment: " + signature.trustedComment + "\n" +
                             signature.globalSignature.toBase64() + "\n";
    CMinisign::Signature reread;
    if (!CMinisign::ParseSignature(again, reread, &problem) || reread.signature != signature.signature ||
        reread.trustedComment != signature.trustedComment || reread.prehashed != signature.prehashed)
        return QStringLiteral("written again, the signature reads differently: ") + problem;

    const QList<CMinisign::PublicKey> keys = CMinisign::ParsePublicKeys(QLatin1String(kListKey), nullptr);
    if (CMinisign::Verify(ws.path(QStringLiteral("downloads/versionList.txt")), signature, keys, &problem) !=
        CMinisign::EResult::Ok)
        return problem.isEmpty() ? QStringLiteral("refused without saying why") : QString();
    // Anything but minisign's own two signatures that verifies is a forgery.
    const QByteArray line = (algorithm + signature.keyId + signature.signature).toBase64();
    for (const auto& known : kListSignatures)
        if (line == known[0] && signature.globalSignature.toBase64() == known[1] &&
            signature.trustedComment == kListComment)
            return CMinisign::CommentFields(signature.trustedComment).value(QStringLiteral("file")) ==
                           QLatin1String("versionList.txt")
                       ? QString()
                       : QStringLiteral("the trusted comment does not name the file");
    return QStringLiteral("a signature minisign did not make verifies: ") + QString::fromLatin1(bytes.toBase64());
}

struct Target
{
    const char* name;
    FuzzTargets::Entry entry;
};
const Target kTargets[] = {{"catalogue", catalogue},      {"settings", settings},      {"cycle_info", cycleInfo},
                           {"version_list", versionList}, {"mac_version", macVersion}, {"minisig", minisig}};
} // namespace

namespace FuzzTargets {

QStringList names()
{
    QStringList list;
    for (const Target& target : kTargets)
        list << QLatin1String(target.name);
    return list;
}

Entry entry(const QString& name)
{
    for (const Target& target : kTargets) {
        if (name == QLatin1String(target.name))
            return target.entry;
    }
    return nullptr;
}

} // namespace FuzzTargets
