#include "model/CProduct.h"

#include "model/CCategory.h"
#include "model/CDataModel.h"
#include "model/CFileTree.h"
#include "model/CFolderCache.h"
#include "model/CInstallGroup.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {
const QString kSimPath = QStringLiteral("$SimPath");
const QString kProductPath = QStringLiteral("$ProductPath");
const QString kUserAppData = QStringLiteral("$UserAppData");
const QString kUserDocuments = QStringLiteral("$UserDocuments");
const QString kCurrentUserDocuments = QStringLiteral("$CurrentUserDocuments");
const QString kProgramFiles = QStringLiteral("$ProgramFiles");
const QString kRegistryKey = QStringLiteral("$RegistryKey");
const QString kCycleInfoName = QStringLiteral("cycle_info.txt");

QString normalised(QString path)
{
    CProduct::ReplacePathCL(path);
    return path;
}

// A path as its first component and the rest from the first '/' on (empty without one), both
// pointing into the path, which must outlive them. Joining a base with that rest joins it with
// every later component, without taking the path apart.
struct PathHead
{
    QStringRef first;
    QStringRef rest;
};

PathHead splitHead(const QString& path)
{
    const int slash = path.indexOf(QLatin1Char('/'));
    if (slash < 0)
        return {QStringRef(&path), QStringRef()};
    return {path.leftRef(slash), path.midRef(slash)};
}

// base + "/" + every component after the first, normalised.
QString joinRest(const QString& base, const PathHead& head)
{
    QString joined;
    joined.reserve(base.size() + head.rest.size());
    joined += base;
    joined += head.rest;
    CProduct::ReplacePathCL(joined);
    return joined;
}

// The four user-folder placeholders share one base table.
bool staticBase(const QStringRef& placeholder, QString& base)
{
    if (placeholder == kUserAppData)
        base = CDataModel::GetUserAppDataPath();
    else if (placeholder == kUserDocuments)
        base = CDataModel::GetUserDocumentsPath();
    else if (placeholder == kCurrentUserDocuments)
        base = CDataModel::GetCurrentUserDocumentsPath();
    else if (placeholder == kProgramFiles)
        base = CDataModel::GetProgramFilesPath();
    else
        return false;
    return true;
}

bool isUnderOrEqual(const QString& path, const QString& root)
{
    if (root.isEmpty())
        return false;
    const QString r = root.endsWith(QLatin1Char('/')) ? root : root + QLatin1Char('/');
    return path == root || path.startsWith(r);
}

// The real location of a path whose last part may not exist: the parent folder resolved through
// links, then the name.
QString canonicalLocation(const QString& path)
{
    const QFileInfo info(path);
    const QString parent = QFileInfo(info.absolutePath()).canonicalFilePath();
    if (parent.isEmpty())
        return QString();
    return parent + QLatin1Char('/') + info.fileName();
}
} // namespace

CProduct::CProduct(QObject* parent) : QObject(parent), m_strCategoryName(QStringLiteral("All"))
{
    RegisterInstallStateMetaType();
}

CProduct::~CProduct()
{
    qDeleteAll(m_installPaths);
    delete m_pLog;
}

CMyLog& CProduct::GetLog()
{
    if (!m_pLog)
        m_pLog = new CMyLog;
    return *m_pLog;
}

void CProduct::SetUpdate(bool update)
{
    m_bUpdate = update;
    emit SignalUpdateChange();
    if (m_pInstallGroup)
        m_pInstallGroup->SetUpdate(this);
}

void CProduct::SetProductPath(QString path)
{
    path = path.trimmed();
    ReplacePathCL(path);
    m_strProductPath = path;
}

void CProduct::SetCycleInfoPath(QString path)
{
    path = path.trimmed();
    ReplacePathCL(path);
    m_strCycleInfoPath = path;
}

void CProduct::SetInstallState(EQMKProductInstallState state)
{
    m_eInstallState = state;
    emit SignalChangeInstallState(state);
}

void CProduct::ReplacePathCL(QString& path)
{
    // Three passes, in this order: "//" to "/", then "\\\\" to "/", then '\\' to '/', so a slash
    // that a later pass creates next to another stays. Done as one walk with the same result:
    // the first pass never brings two backslashes together, and each pass takes its pairs from
    // the left without overlap.
    const QChar* text = path.constData();
    const int length = path.size();
    int at = 0;
    while (at < length && text[at] != QLatin1Char('\\') &&
           !(text[at] == QLatin1Char('/') && at + 1 < length && text[at + 1] == QLatin1Char('/')))
        ++at;
    if (at == length)
        return;
    // Never longer than before: written in place, each character read before its place is taken.
    QChar* out = path.data();
    int written = at;
    while (at < length) {
        const QChar c = out[at];
        if (c == QLatin1Char('/') || c == QLatin1Char('\\')) {
            out[written++] = QLatin1Char('/');
            at += at + 1 < length && out[at + 1] == c ? 2 : 1;
        } else {
            out[written++] = c;
            ++at;
        }
    }
    path.truncate(written);
}

QString CProduct::TranslateNewProdPath()
{
    const QString path = normalised(m_strProductPath);
    if (path.length() < 2)
        return path;
    const PathHead parts = splitHead(path);
    const QStringRef& first = parts.first;
    if (first == kSimPath) {
        if (!m_pCategory)
            return path;
        const QString folder = m_pCategory->GetPath();
        QString base;
        if (!folder.isEmpty() && CFolderCache::Exists(folder) && m_pCategory->CheckPath())
            base = folder;
        else
            base = QLatin1Char('<') + m_pCategory->GetName() + QStringLiteral(" - ") +
                   QCoreApplication::translate("QuillmarkMainWindow", "Path") + QLatin1Char('>');
        return joinRest(base, parts);
    }
    // "$ProductPath" and "$RegistryKey" are shown as written.
    QString base;
    if (staticBase(first, base))
        return joinRest(base, parts);
    return path;
}

void CProduct::InitNewProdPath(QString text)
{
    const QString p = normalised(text);
    SetProductPath(p);
    if (p.length() < 3)
        return;

    const PathHead parts = splitHead(p);
    const QStringRef& first = parts.first;
    QString base;
    if (first == kSimPath) {
        if (!m_pCategory)
            m_strNewProductPath = p;
        else if (m_pCategory->CheckPath())
            m_strNewProductPath = joinRest(m_pCategory->GetPath(), parts);
        // A category whose folder does not hold the simulator leaves the old value.
    } else if (staticBase(first, base)) {
        m_strNewProductPath = joinRest(base, parts);
    } else if (first == kRegistryKey) {
        GetLog().WriteString(QStringLiteral("**********************************"), false);
        const QStringList segments = m_strRegistryKey.split(QLatin1Char('/'));
        if (segments.size() < 2)
            return;
        const QString hive = segments.first();
        QString keyPath;
        for (int i = 1; i < segments.size(); ++i)
            keyPath += segments.at(i) + QLatin1Char('/');
        const QStringList components = p.split(QLatin1Char('/'));
        const QString valueName = components.size() > 1 ? components.at(1) : QString();
        GetLog().WriteString(hive, false);
        GetLog().WriteString(keyPath, false);
        GetLog().WriteString(valueName, false);
        const QString answer = normalised(CDataModel::GetRegistryValue(hive, keyPath, valueName));
        m_strProductPath = answer;
        m_strNewProductPath = answer;
    } else {
        m_strNewProductPath = p;
    }
}

bool CProduct::InitNewInstallPaths(bool log)
{
    bool resolvedAny = false;
    for (CInstallPath* entry : qAsConst(m_installPaths)) {
        const PathHead parts = splitHead(entry->strPath);
        const QStringRef first = parts.first.trimmed();
        QString base;
        if (first == kSimPath) {
            // Taken as it stands: the simulator check is the caller's business here.
            if (m_pCategory)
                base = m_pCategory->GetPath();
        } else if (first == kProductPath) {
            base = m_strNewProductPath;
        } else {
            staticBase(first, base);
        }

        if (!base.isEmpty() && !CFolderCache::Exists(base)) {
            if (log)
                GetLog().WriteString(QStringLiteral("!!WARNING not exists directory -> ") + base, false);
            continue;
        }
        if (base.isEmpty()) {
            if (log)
                GetLog().WriteString(QStringLiteral("!!WARNING not find install_path -") + entry->strPath, false);
            continue;
        }
        entry->strNewPath = joinRest(base, parts);
        resolvedAny = true;
    }
    return resolvedAny;
}

QString CProduct::InitRealPath(QString path)
{
    if (path.length() < 2)
        return normalised(path);
    path = normalised(path);
    const PathHead parts = splitHead(path);
    const QStringRef& first = parts.first;
    QString base;
    bool placeholder = true;
    if (first == kSimPath) {
        if (m_pCategory && m_pCategory->CheckPath())
            base = m_pCategory->GetPath();
    } else if (first == kProductPath) {
        base = m_strNewProductPath;
    } else if (!staticBase(first, base)) {
        placeholder = false;
    }
    if (placeholder)
        // Unlike InitNewProdPath, an empty base empties the whole result; callers rely on that.
        path = base.isEmpty() ? QString() : joinRest(base, parts);
    return normalised(path);
}

QString CProduct::InitRealCycleInfoPath()
{
    m_strRealCycleInfoPath = normalised(InitRealPath(m_strCycleInfoPath));
    return m_strRealCycleInfoPath;
}

void CProduct::AddInstallPath(QString text)
{
    // The folder before the first ':', the sub-path up to the second. The separators are put
    // right in each part: no pair of them reaches across a ':'.
    auto* entry = new CInstallPath;
    const int colon = text.indexOf(QLatin1Char(':'));
    entry->strPath = text.left(colon);
    ReplacePathCL(entry->strPath);
    entry->strPath = std::move(entry->strPath).trimmed();
    if (colon >= 0) {
        const int next = text.indexOf(QLatin1Char(':'), colon + 1);
        entry->strSecond = text.mid(colon + 1, next < 0 ? -1 : next - colon - 1);
        ReplacePathCL(entry->strSecond);
        entry->strSecond = std::move(entry->strSecond).trimmed();
    }
    m_installPaths.append(entry);
}

void CProduct::AddRemoveFilePath(QString text)
{
    m_removeFiles.append(text.trimmed());
}

bool CProduct::removeDir(const QString& path)
{
    return CFileTree::removeDir(path);
}

bool CProduct::IsInsideProductFolders(const QString& written) const
{
    if (written.isEmpty() || !QDir::isAbsolutePath(written))
        return false;
    const QStringList components = written.split(QLatin1Char('/'));
    if (components.contains(QStringLiteral("..")) || components.contains(QStringLiteral(".")))
        return false;
    // Without trailing or doubled slashes, so that "folder/" cannot pass for something below it.
    const QString path = QDir::cleanPath(written);

    QStringList roots;
    roots << m_strNewProductPath;
    for (const CInstallPath* entry : m_installPaths)
        roots << entry->strNewPath;
    // Some add-ons keep files in the simulator's own folders, so those may be cleaned up too.
    if (m_pCategory && m_pCategory->CheckPath())
        roots << m_pCategory->GetPath();

    const QString real = canonicalLocation(path);
    for (const QString& root : qAsConst(roots)) {
        if (root.isEmpty() || !QDir::isAbsolutePath(root))
            continue;
        const QString cleanRoot = QDir::cleanPath(root);
        // Strictly below the root, both as written and after following links on the way.
        if (path == cleanRoot || !isUnderOrEqual(path, cleanRoot))
            continue;
        const QString realRoot = QFileInfo(cleanRoot).canonicalFilePath();
        if (real.isEmpty() || realRoot.isEmpty() || real == realRoot || !isUnderOrEqual(real, realRoot))
            continue;
        return true;
    }
    return false;
}

QStringList CProduct::RemoveFileList()
{
    QStringList refused;
    for (const QString& entry : qAsConst(m_removeFiles)) {
        const QString target = InitRealPath(entry);
        if (target.isEmpty())
            continue;
        if (!IsInsideProductFolders(target)) {
            GetLog().WriteString(QStringLiteral("!!WARNING remove_file outside the product folders, not deleted -> ") +
                                     entry + QStringLiteral(" -> ") + target,
                                 false);
            refused << target;
            continue;
        }
        // A failed deletion leaves the rest of the list to run.
        removeDir(target);
    }
    m_removeFiles.clear();
    return refused;
}

QString CProduct::GetCycleInfoFile() const
{
    return m_strRealCycleInfoPath + QLatin1Char('/') + kCycleInfoName;
}

QString CProduct::GetBackCycleInfoFile() const
{
    return m_strRealCycleInfoPath + QStringLiteral("/QMK_") + m_strDataset + QStringLiteral("_back/") + kCycleInfoName;
}

bool CProduct::CycleFolderExists() const
{
    // An unresolved folder must not fall back to the working directory or "/".
    return !m_strRealCycleInfoPath.isEmpty() && CFolderCache::Exists(m_strRealCycleInfoPath);
}

bool CProduct::CheckExistCycleInfoFile() const
{
    if (!CycleFolderExists())
        return false;
    return QFileInfo::exists(GetCycleInfoFile());
}

void CProduct::ReadCycleFile(const QString& file, QString& cycle, QString& revision)
{
    cycle.clear();
    revision.clear();
    if (!CycleFolderExists())
        return;
    QFile in(file);
    if (!in.exists())
        return;
    if (!in.open(QIODevice::ReadOnly)) {
        GetLog().WriteString(QStringLiteral("!!WARNING cannot read ") + file + QStringLiteral(": ") + in.errorString(),
                             false);
        return;
    }
    QByteArray bytes = in.readAll();
    in.close();
    const int nul = bytes.indexOf('\0');
    if (nul >= 0)
        bytes.truncate(nul);
    const QStringList lines = QString::fromLatin1(bytes).split(QLatin1Char('\n'));
    for (const QString& line : lines) {
        const QStringList parts = line.split(QLatin1Char(':'));
        if (parts.size() < 2)
            continue;
        const QString key = parts.at(0).trimmed();
        if (key == QLatin1String("AIRAC cycle"))
            cycle = parts.at(1).trimmed();
        else if (key == QLatin1String("Revision"))
            revision = parts.at(1).trimmed();
    }
}

QString CProduct::ReadCycleInfoVersion()
{
    ReadCycleFile(GetCycleInfoFile(), m_strCycleVersion, m_strRevision);
    return m_strCycleVersion;
}

QString CProduct::ReadBackCycleInfoVersion()
{
    ReadCycleFile(GetBackCycleInfoFile(), m_strBackCycleVersion, m_strBackRevision);
    return m_strBackCycleVersion;
}

QString CProduct::GetCycleVersion()
{
    InitRealCycleInfoPath();
    ReadCycleInfoVersion();
    return m_strCycleVersion;
}

QString CProduct::GetBackCycleVersion()
{
    InitRealCycleInfoPath();
    ReadBackCycleInfoVersion();
    return m_strBackCycleVersion;
}

bool CProduct::WriteUnknownBackupCycleInfoFile(QString* problem)
{
    if (!CycleFolderExists())
        return false;
    const QString file = GetBackCycleInfoFile();
    if (QFileInfo::exists(file) || CFileTree::isLink(file))
        return false;
    QFile out(file);
    if (out.open(QIODevice::WriteOnly)) {
        out.write(QByteArrayLiteral("AIRAC cycle    : unknown\r\nRevision       : \r\n"));
        out.close();
    } else {
        const QString text = QStringLiteral("cannot write ") + file + QStringLiteral(": ") + out.errorString();
        // A worker thread passes `problem`: the product's log belongs to the GUI thread.
        if (problem)
            *problem = text;
        else
            GetLog().WriteString(QStringLiteral("!!WARNING ") + text, false);
    }
    // The caller only needs to know whether a placeholder was due.
    return true;
}

bool CProduct::UpdateCheckCycleVersion()
{
    if (m_strNewCycle.isEmpty()) {
        SetInstallState(QMK_STATE_NOT_INSTALLED);
        return false;
    }
    // No separator between cycle and revision: kept so, the comparison has always worked this way.
    // Reading the cycle sets the revision: two statements keep that order.
    QString installed = GetCycleVersion();
    installed += m_strRevision;
    const QString target = m_strNewCycle + m_strNewRevision;
    if (installed != target) {
        SetInstallState(QMK_STATE_INSTALL_WARNING);
        return false;
    }
    SetInstallState(QMK_STATE_INSTALL_OK);
    return true;
}

bool CProduct::CheckCycleVersion(QString cycle, QString revision)
{
    m_strNewCycle = cycle;
    m_strNewRevision = revision;
    return UpdateCheckCycleVersion();
}
