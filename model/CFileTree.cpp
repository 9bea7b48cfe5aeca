#include "model/CFileTree.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

bool CFileTree::isLink(const QString& path)
{
    return QFileInfo(path).isSymLink();
}

QFileInfoList CFileTree::allEntries(const QString& folder)
{
    return QDir(folder).entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                                      QDir::DirsFirst);
}

// Walks go by name, byte for byte, so that a run cut off and run again meets the files in the
// same order; where it matters (the cycle file) the walks take it out of that order on purpose.
QFileInfoList CFileTree::plainFiles(const QString& folder)
{
    QFileInfoList result;
    const QFileInfoList files = QDir(folder).entryInfoList(QDir::Files, QDir::Name);
    for (const QFileInfo& info : files)
        if (!info.isSymLink())
            result << info;
    return result;
}

QFileInfoList CFileTree::subFolders(const QString& folder)
{
    QFileInfoList result;
    const QFileInfoList dirs = QDir(folder).entryInfoList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    for (const QFileInfo& info : dirs)
        if (!info.isSymLink())
            result << info;
    return result;
}

QFileInfoList CFileTree::links(const QString& folder)
{
    QFileInfoList result;
    const QFileInfoList entries =
        QDir(folder).entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    for (const QFileInfo& info : entries)
        if (info.isSymLink())
            result << info;
    return result;
}

bool CFileTree::removeDir(const QString& path)
{
    const QFileInfo root(path);
    if (!root.exists() && !root.isSymLink())
        return true;
    // A link is removed as a link; what it points to is never touched.
    if (root.isSymLink()) {
        QFile::remove(path);
        return false;
    }

    if (root.isDir()) {
        const QFileInfoList entries = allEntries(path);
        for (const QFileInfo& entry : entries) {
            bool ok;
            if (entry.isDir() && !entry.isSymLink())
                ok = removeDir(entry.absoluteFilePath());
            else
                ok = QFile::remove(entry.absoluteFilePath());
            if (!ok)
                return false;
        }
    }
    if (QFileInfo(path).isFile())
        QFile::remove(path);
    return QDir().rmdir(path);
}

quint64 CFileTree::byteSize(const QString& folder)
{
    quint64 total = 0;
    QStringList work{folder};
    while (!work.isEmpty()) {
        const QString dir = work.takeFirst();
        if (!QFileInfo(dir).isDir())
            continue;
        for (const QFileInfo& file : plainFiles(dir))
            total += quint64(file.size());
        for (const QFileInfo& sub : subFolders(dir))
            work << sub.absoluteFilePath();
    }
    return total;
}
