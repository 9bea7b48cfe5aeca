#include "app/CMyLog.h"

#include "app/CAppPaths.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QMutex>
#include <QTime>

#include <cstdio>

namespace {
void printProblem(const QString& message)
{
    const QByteArray bytes = message.toLocal8Bit();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

bool isAscii(const QByteArray& bytes)
{
    for (const char c : bytes)
        if (static_cast<unsigned char>(c) >= 0x80)
            return false;
    return true;
}

// What we know of a log file right after our own last write to it. While the file is still
// exactly that (same size and time) and holds only ASCII, reading it as UTF-8 and writing it back
// as Latin-1 would give the same bytes, so the new entry can simply be appended. That keeps long
// runs from rewriting ever larger files.
struct KnownLog
{
    qint64 size = -1;
    QDateTime modified;
    bool ascii = false;
};

QMutex& knownLogsMutex()
{
    static QMutex st_mutex;
    return st_mutex;
}

QHash<QString, KnownLog>& knownLogs()
{
    static QHash<QString, KnownLog> st_logs;
    return st_logs;
}

void remember(const QString& path, bool ascii)
{
    const QFileInfo info(path);
    QMutexLocker lock(&knownLogsMutex());
    knownLogs().insert(path, KnownLog{info.size(), info.lastModified(), ascii});
}

bool canAppend(const QString& path)
{
    const QFileInfo info(path);
    if (!info.isFile())
        return false;
    QMutexLocker lock(&knownLogsMutex());
    const KnownLog known = knownLogs().value(path);
    return known.ascii && known.size == info.size() && known.modified == info.lastModified();
}
} // namespace

CMyLog::CMyLog(QObject* parent) : QObject(parent), m_strFileName(QStringLiteral("log.txt")) {}

QString CMyLog::GetFilePath() const
{
    return CreateLogDirectory() + QLatin1Char('/') + m_strFileName;
}

QString CMyLog::CreateLogDirectory()
{
    const QString dir = CAppPaths::LogFolder();
    if (!QDir(dir).exists())
        QDir().mkpath(dir);
    return dir;
}

void CMyLog::WriteString(QString text, bool bNew)
{
    const QString prefix =
        QStringLiteral("\r\n") + QTime::currentTime().toString(Qt::TextDate) + QStringLiteral("  --  ");
    const QString path = GetFilePath();
    const QByteArray entry = (prefix + text).toLatin1();

    if (!bNew && canAppend(path)) {
        QFile out(path);
        if (out.open(QIODevice::WriteOnly | QIODevice::Append)) {
            out.write(entry);
            out.close();
            remember(path, isAscii(entry));
            return;
        }
    }

    // The file is read as UTF-8 but written as Latin-1. Earlier non-ASCII bytes therefore turn
    // into "?" at the next entry; the log has always behaved so and readers expect it.
    QString previous;
    if (!bNew) {
        QFile in(path);
        if (in.open(QIODevice::ReadOnly)) {
            previous = QString::fromUtf8(in.readAll());
            in.close();
        } else {
            printProblem(QStringLiteral("Problem opening read file ") + path + QLatin1Char('\n') + in.errorString());
        }
    }

    QFile out(path);
    if (!out.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        printProblem(QStringLiteral("Problem opening write file ") + path + QLatin1Char('\n') + out.errorString());
        return;
    }
    const QByteArray content = previous.toLatin1() + entry;
    out.write(content);
    out.close();
    remember(path, isAscii(content));
}
