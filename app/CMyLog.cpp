#include "app/CMyLog.h"

#include "app/CAppPaths.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QMutex>
#include <QTime>
#include <QVector>

#include <cstdio>
#include <cstring>

namespace {
void printProblem(const QString& message)
{
    const QByteArray bytes = message.toLocal8Bit();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

// Eight bytes at a time: a log that has grown for years is looked at once at every start.
bool isAscii(const QByteArray& bytes)
{
    const char* data = bytes.constData();
    const size_t size = size_t(bytes.size());
    size_t at = 0;
    quint64 high = 0;
    for (; at + 8 <= size; at += 8) {
        quint64 word;
        std::memcpy(&word, data + at, 8);
        high |= word;
    }
    for (; at < size; ++at)
        high |= quint64(static_cast<unsigned char>(data[at]));
    return (high & Q_UINT64_C(0x8080808080808080)) == 0;
}

// The clock as the log shows it; worked out once a second, as a pass over thousands of products
// logs thousands of lines within one.
QByteArray timeText()
{
    static thread_local qint64 st_second = -1;
    static thread_local QByteArray st_text;
    const qint64 second = QDateTime::currentMSecsSinceEpoch() / 1000;
    if (second != st_second) {
        st_second = second;
        st_text = QTime::currentTime().toString(Qt::TextDate).toLatin1();
    }
    return st_text;
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

namespace {
// Writes entries to the log file: appended, or (bNew) in place of what the file held.
void writeEntries(const QString& path, const QByteArray& entries, bool bNew)
{
    if (!bNew && canAppend(path)) {
        QFile out(path);
        if (out.open(QIODevice::WriteOnly | QIODevice::Append)) {
            out.write(entries);
            out.close();
            remember(path, isAscii(entries));
            return;
        }
    }

    // The file is read as UTF-8 but written as Latin-1. Earlier non-ASCII bytes therefore turn
    // into "?" at the next entry; the log has always behaved so and readers expect it.
    QString previous;
    if (!bNew) {
        QFile in(path);
        if (in.open(QIODevice::ReadOnly)) {
            const QByteArray bytes = in.readAll();
            in.close();
            // Plain ASCII comes back as it was: the entries only need to go after it.
            QFile out(path);
            if (isAscii(bytes) && out.open(QIODevice::WriteOnly | QIODevice::Append)) {
                out.write(entries);
                out.close();
                remember(path, isAscii(entries));
                return;
            }
            previous = QString::fromUtf8(bytes);
        } else {
            printProblem(QStringLiteral("Problem opening read file ") + path + QLatin1Char('\n') + in.errorString());
        }
    }

    QFile out(path);
    if (!out.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        printProblem(QStringLiteral("Problem opening write file ") + path + QLatin1Char('\n') + out.errorString());
        return;
    }
    const QByteArray content = previous.toLatin1() + entries;
    out.write(content);
    out.close();
    remember(path, isAscii(content));
}

// Entries held by a batch, per file in the order the files were first written to.
struct PendingFile
{
    QString name;
    QByteArray entries;
    bool startsNew = false;
};

struct ThreadBatch
{
    int depth = 0;
    QVector<PendingFile> files;
    QHash<QString, int> indexOf;
};

ThreadBatch& threadBatch()
{
    static thread_local ThreadBatch st_batch;
    return st_batch;
}
} // namespace

CMyLog::Batch::Batch()
{
    ++threadBatch().depth;
}

CMyLog::Batch::~Batch()
{
    ThreadBatch& batch = threadBatch();
    if (--batch.depth > 0)
        return;
    const QVector<PendingFile> files = std::move(batch.files);
    batch.files.clear();
    batch.indexOf.clear();
    for (const PendingFile& file : files) {
        CMyLog log;
        log.SetFileName(file.name);
        writeEntries(log.GetFilePath(), file.entries, file.startsNew);
    }
}

void CMyLog::WriteString(QString text, bool bNew)
{
    const QByteArray time = timeText();
    QByteArray entry;
    entry.reserve(time.size() + text.size() + 8);
    entry += "\r\n";
    entry += time;
    entry += "  --  ";
    entry += text.toLatin1();

    ThreadBatch& batch = threadBatch();
    if (batch.depth > 0) {
        int index = batch.indexOf.value(m_strFileName, -1);
        if (index < 0) {
            index = batch.files.size();
            batch.indexOf.insert(m_strFileName, index);
            batch.files.append(PendingFile{m_strFileName, QByteArray(), false});
        }
        PendingFile& file = batch.files[index];
        // A new file drops whatever the batch held for the old one.
        if (bNew) {
            file.entries.clear();
            file.startsNew = true;
        }
        file.entries += entry;
        return;
    }
    writeEntries(GetFilePath(), entry, bNew);
}
