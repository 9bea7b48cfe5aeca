#include "engine/CFolderWalk.h"

#include "app/CMyLog.h"
#include "model/CFileTree.h"
#include "model/CProduct.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPair>
#include <QQueue>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {
bool existsOrLink(const QString& path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

// A free name beside `to` for a copy in progress; hidden so that no walk picks it up.
QString partName(const QString& to)
{
    const QFileInfo info(to);
    const QString base = info.absolutePath() + QStringLiteral("/.qmk_") + info.fileName();
    QString candidate = base + QStringLiteral(".part");
    for (int i = 1; existsOrLink(candidate); ++i)
        candidate = base + QLatin1Char('.') + QString::number(i) + QStringLiteral(".part");
    return candidate;
}

bool renameOver(const QString& from, const QString& to, QString* reason)
{
    if (std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0)
        return true;
    if (reason)
        *reason = QString::fromLocal8Bit(std::strerror(errno));
    return false;
}

// Copies `from` to a fresh part file beside `to` and checks it; returns the part file's path or
// an empty string (with nothing left behind).
QString copyToPart(const QString& from, const QString& to, QString* error)
{
    const QString part = partName(to);
    QFile source(from);
    if (!source.copy(part)) {
        QFile::remove(part);
        if (error)
            *error = QStringLiteral("cannot copy ") + from + QStringLiteral(" to ") + part + QStringLiteral(": ") +
                     source.errorString();
        return QString();
    }
    if (!CFolderWalk::SameContent(from, part)) {
        QFile::remove(part);
        if (error)
            *error = QStringLiteral("copy of ") + from + QStringLiteral(" differs from the original");
        return QString();
    }
    return part;
}
} // namespace

CFolderWalk::MoveHook CFolderWalk::st_moveHook = nullptr;

namespace {
std::atomic_int st_movesDone{0};
}

void CFolderWalk::BeforeMove()
{
    if (st_moveHook)
        st_moveHook(st_movesDone);
    ++st_movesDone;
}

void CFolderWalk::RunEnd()
{
    if (st_moveHook)
        st_moveHook(st_movesDone);
}

CFolderWalk::CFolderWalk(CMyLog& log, const std::atomic_bool& stop) : m_log(log), m_stop(stop) {}

QString CFolderWalk::LinkWarning(const QString& path)
{
    return QStringLiteral("!!WARNING symbolic link skipped: ") + path;
}

void CFolderWalk::Warning(const QString& text)
{
    m_log.WriteString(QStringLiteral("!!WARNING ") + text, false);
}

void CFolderWalk::Error(const QString& text)
{
    ++m_errorCount;
    m_log.WriteString(QStringLiteral("!!ERROR ") + text, false);
}

bool CFolderWalk::ForEachTarget(const QList<CInstallPath*>& paths, const TargetVisitor& visit)
{
    bool result = true;
    for (const CInstallPath* entry : paths) {
        if (!entry)
            continue;
        m_log.WriteString(entry->strNewPath, false);
        if (entry->strNewPath.isEmpty()) {
            m_log.WriteString(QStringLiteral("!!ERROR not find install_path -"), false);
            m_log.WriteString(entry->strPath, false);
            result = false;
            continue;
        }
        result = visit(entry->strNewPath, entry->strSecond);
    }
    return result;
}

void CFolderWalk::Walk(EChildren children, const QString& childName, const QString& first, const QString& second,
                       const Visitor& visit)
{
    QQueue<QPair<QString, QString>> pairs;
    pairs.enqueue(qMakePair(first, second));
    bool root = true;
    while (!pairs.isEmpty() && !m_stop) {
        const QPair<QString, QString> pair = pairs.dequeue();
        // The configured target may be a link; nothing found below it may.
        const bool secondIsLink = !root && CFileTree::isLink(pair.second);
        root = false;
        if (CFileTree::isLink(pair.first) || secondIsLink) {
            m_log.WriteString(LinkWarning(secondIsLink ? pair.second : pair.first), false);
            continue;
        }
        // Links in an unpacked tree are left out. In a backup folder they are what an install
        // moved aside, and go back like files.
        if (children == ChildrenOfFirst)
            for (const QFileInfo& link : CFileTree::links(pair.first))
                m_log.WriteString(LinkWarning(link.absoluteFilePath()), false);
        if (!visit(pair.first, pair.second))
            continue;

        if (children == ChildrenOfFirst) {
            for (const QFileInfo& sub : CFileTree::subFolders(pair.first))
                pairs.enqueue(qMakePair(pair.first + QLatin1Char('/') + sub.fileName(),
                                        pair.second + QLatin1Char('/') + sub.fileName()));
        } else {
            for (const QFileInfo& link : CFileTree::links(pair.second))
                if (link.isDir())
                    m_log.WriteString(LinkWarning(link.absoluteFilePath()), false);
            for (const QFileInfo& sub : CFileTree::subFolders(pair.second)) {
                const QString folder = pair.second + QLatin1Char('/') + sub.fileName();
                pairs.enqueue(qMakePair(folder + QLatin1Char('/') + childName, folder));
            }
        }
    }
}

bool CFolderWalk::MoveFile(const QString& from, const QString& to, bool replace, QString* error)
{
    if (!replace && existsOrLink(to)) {
        if (error)
            *error = to + QStringLiteral(" already exists");
        return false;
    }
    QString reason;
    if (renameOver(from, to, &reason))
        return true;
    // A copy would turn a link into a file.
    if (QFileInfo(from).isSymLink()) {
        if (error)
            *error = QStringLiteral("cannot move the link ") + from + QStringLiteral(" to ") + to +
                     QStringLiteral(": ") + reason;
        return false;
    }

    // Typically another file system: copy, check, put in place, and only then let go of the source.
    QString copyError;
    const QString part = copyToPart(from, to, &copyError);
    if (part.isEmpty()) {
        if (error)
            *error = QStringLiteral("cannot rename ") + from + QStringLiteral(" to ") + to + QStringLiteral(" (") +
                     reason + QStringLiteral("), ") + copyError;
        return false;
    }
    if ((!replace && existsOrLink(to)) || !renameOver(part, to, &reason)) {
        QFile::remove(part);
        if (error)
            *error = QStringLiteral("cannot put the copy in place as ") + to + QStringLiteral(": ") + reason;
        return false;
    }
    // The file is safe at its new place; a source that will not go away is only left over.
    QFile::remove(from);
    return true;
}

bool CFolderWalk::CopyFile(const QString& from, const QString& to, QString* error)
{
    const QString part = copyToPart(from, to, error);
    if (part.isEmpty())
        return false;
    QString reason;
    if (!renameOver(part, to, &reason)) {
        QFile::remove(part);
        if (error)
            *error = QStringLiteral("cannot put the copy in place as ") + to + QStringLiteral(": ") + reason;
        return false;
    }
    return true;
}

bool CFolderWalk::SameContent(const QString& a, const QString& b)
{
    QFile fa(a);
    QFile fb(b);
    if (!fa.open(QIODevice::ReadOnly) || !fb.open(QIODevice::ReadOnly) || fa.size() != fb.size())
        return false;
    constexpr qint64 chunk = 1 << 20;
    while (!fa.atEnd()) {
        const QByteArray ca = fa.read(chunk);
        const QByteArray cb = fb.read(chunk);
        if (ca.isEmpty() || ca != cb)
            return false;
    }
    return fb.atEnd();
}

bool CFolderWalk::StaysInside(const QString& root, const QString& path)
{
    const QString cleanRoot = QDir::cleanPath(root);
    const QString cleanPath = QDir::cleanPath(path);
    if (cleanPath == cleanRoot)
        return true;
    if (!cleanPath.startsWith(cleanRoot + QLatin1Char('/')))
        return false;
    const QStringList parts = cleanPath.mid(cleanRoot.size() + 1).split(QLatin1Char('/'), Qt::SkipEmptyParts);
    QString current = cleanRoot;
    for (const QString& part : parts) {
        current += QLatin1Char('/') + part;
        if (CFileTree::isLink(current))
            return false;
    }
    return true;
}
