#include "support/TempAppDir.h"

#include "app/Application.h"
#include "app/CAppPaths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

TempAppDir::TempAppDir() : m_previousAppPath(Application::st_strAppPath)
{
    if (m_dir.isValid()) {
        // A portable program folder: its own logs, so everything a test makes stays inside it.
        QDir(m_dir.path()).mkpath(QStringLiteral("bin"));
        QDir(m_dir.path()).mkpath(QStringLiteral("log"));
        Application::st_strAppPath = m_dir.path();
        CAppPaths::IsPortable(); // decided now, whatever the test does to "log" later
    }
}

TempAppDir::~TempAppDir()
{
    Application::st_strAppPath = m_previousAppPath;
}

QString TempAppDir::filePath(const QString& relative) const
{
    return m_dir.path() + QLatin1Char('/') + relative;
}

bool TempAppDir::writeFile(const QString& relative, const QByteArray& content) const
{
    const QString target = filePath(relative);
    QDir().mkpath(QFileInfo(target).absolutePath());
    QFile file(target);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    return file.write(content) == content.size();
}

QByteArray TempAppDir::readFile(const QString& relative) const
{
    QFile file(filePath(relative));
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    return file.readAll();
}
