#include "model/CFolderCache.h"

#include <QDir>
#include <QFile>
#include <QHash>

#include <atomic>

#include <sys/stat.h>

namespace {
struct ThreadCache
{
    int depth = 0;
    quint64 id = 0;
    QHash<QString, bool> folders;
};

ThreadCache& cache()
{
    static thread_local ThreadCache st_cache;
    return st_cache;
}

std::atomic<quint64> st_lastScopeId{0};

// What QDir(path).exists() answers, with one system call.
bool isFolder(const QString& path)
{
    // An empty path is the working folder to QDir.
    if (path.isEmpty())
        return QDir(path).exists();
    struct stat info;
    return ::stat(QFile::encodeName(path).constData(), &info) == 0 && S_ISDIR(info.st_mode);
}
} // namespace

CFolderCache::Scope::Scope()
{
    ThreadCache& c = cache();
    if (c.depth++ == 0)
        c.id = ++st_lastScopeId;
}

CFolderCache::Scope::~Scope()
{
    ThreadCache& c = cache();
    if (--c.depth == 0) {
        c.id = 0;
        c.folders.clear();
    }
}

bool CFolderCache::KnownMissing(const QString& path)
{
    const ThreadCache& c = cache();
    if (c.depth == 0)
        return false;
    for (int end = path.size(); end > 0; end = path.lastIndexOf(QLatin1Char('/'), end - 1)) {
        const auto known = c.folders.constFind(path.left(end));
        if (known != c.folders.constEnd())
            return !known.value();
    }
    return false;
}

quint64 CFolderCache::ScopeId()
{
    return cache().id;
}

bool CFolderCache::Exists(const QString& path)
{
    ThreadCache& c = cache();
    if (c.depth == 0)
        return isFolder(path);
    const auto known = c.folders.constFind(path);
    if (known != c.folders.constEnd())
        return known.value();
    // Nothing can lie in a folder that is not there: products of one vendor folder that the
    // simulator does not hold cost one look at that folder, not one each.
    const int slash = path.lastIndexOf(QLatin1Char('/'));
    // The missing folder above is what is remembered; the thousands below it need no entry.
    if (slash > 0 && !Exists(path.left(slash)))
        return false;
    const bool answer = isFolder(path);
    c.folders.insert(path, answer);
    return answer;
}
