#include "app/CAppPaths.h"

#include "app/Application.h"

#include <QDir>
#include <QFileInfo>
#include <QMutex>
#include <QStandardPaths>

namespace {
struct Decision
{
    QString programFolder;
    bool portable = false;
    QString dataFolder;
};

// Logs are written from the worker threads too.
QMutex& decisionMutex()
{
    static QMutex st_mutex;
    return st_mutex;
}

Decision decide()
{
    static Decision st_decision;
    static bool st_decided = false;
    QMutexLocker lock(&decisionMutex());
    const QString program = Application::st_strAppPath;
    if (st_decided && st_decision.programFolder == program)
        return st_decision;

    const QFileInfo folder(program);
    const bool portable = !program.isEmpty() && folder.isDir() && folder.isWritable() &&
                          (QFileInfo(program + QStringLiteral("/bin/prop_ini.xml")).isFile() ||
                           QFileInfo(program + QStringLiteral("/log")).isDir());
    st_decision.programFolder = program;
    st_decision.portable = portable;
    st_decision.dataFolder = portable ? program : QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    st_decided = true;
    return st_decision;
}
} // namespace

QString CAppPaths::ShippedFolder()
{
    const QString program = Application::st_strAppPath;
    // A signed bundle keeps everything that is not code out of Contents/MacOS.
    if (program.endsWith(QLatin1String("/Contents/MacOS"))) {
        const QString resources = QDir::cleanPath(program + QStringLiteral("/../Resources"));
        if (QFileInfo(resources + QStringLiteral("/bin/base_ini.xml")).isFile())
            return resources;
    }
    return program;
}

QString CAppPaths::CatalogueFile()
{
    return ShippedFolder() + QStringLiteral("/bin/base_ini.xml");
}

bool CAppPaths::IsPortable()
{
    return decide().portable;
}

QString CAppPaths::DataFolder()
{
    return decide().dataFolder;
}

QString CAppPaths::SettingsFile()
{
    const Decision d = decide();
    // A portable install keeps its settings beside the catalogue, where they have always been.
    return d.dataFolder + (d.portable ? QStringLiteral("/bin/prop_ini.xml") : QStringLiteral("/prop_ini.xml"));
}

QString CAppPaths::LogFolder()
{
    return DataFolder() + QStringLiteral("/log");
}

QString CAppPaths::DownloadFolder()
{
    return DataFolder() + QStringLiteral("/downloads");
}
