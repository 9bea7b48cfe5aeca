#include "model/CCategory.h"

#include "model/CFolderCache.h"

#include <QDir>

CCategory::CCategory(QString name) : m_strName(std::move(name))
{
    if (m_strName == QLatin1String("FSX"))
        InitFSXPath();
    else if (m_strName == QLatin1String("FS2004"))
        InitFS2004Path();
    else if (m_strName == QLatin1String("Prepar3D v2"))
        InitP3DV2Path();
    else if (m_strName == QLatin1String("Prepar3D v3"))
        InitP3DV3Path();
    else if (m_strName == QLatin1String("Prepar3D v4"))
        InitP3DV4Path();
}

bool CCategory::CheckExe(QString dir, QString exeName)
{
    // An empty folder name would list the working directory.
    if (dir.isEmpty())
        return false;
    QDir folder(dir);
    if (!folder.exists())
        return false;
    // Folders too: the X-Plane application is a bundle folder.
    const QStringList entries = folder.entryList(QDir::Dirs | QDir::Files | QDir::NoDotAndDotDot, QDir::Unsorted);
    for (const QString& entry : entries) {
        if (entry.toUpper() == exeName)
            return true;
    }
    return false;
}

bool CCategory::CheckPath() const
{
    QString exe;
    if (m_strName == QLatin1String("FSX"))
        exe = QStringLiteral("fsx.exe");
    else if (m_strName == QLatin1String("FS2004"))
        exe = QStringLiteral("fs9.exe");
    else if (m_strName == QLatin1String("Prepar3D v2") || m_strName == QLatin1String("Prepar3D v3") ||
             m_strName == QLatin1String("Prepar3D v4"))
        exe = QStringLiteral("Prepar3D.exe");
    else if (m_strName == QLatin1String("X-Plane 10") || m_strName == QLatin1String("X-Plane 11"))
        exe = QStringLiteral("X-Plane.app");
    else
        return false;
    // A pass over every product asks for every product; the folder is listed once per pass.
    const quint64 scope = CFolderCache::ScopeId();
    if (scope != 0 && scope == m_checkScope && m_strPath == m_strCheckedPath)
        return m_bCheckAnswer;
    const bool answer = CheckExe(m_strPath, exe.toUpper());
    if (scope != 0) {
        m_checkScope = scope;
        m_strCheckedPath = m_strPath;
        m_bCheckAnswer = answer;
    }
    return answer;
}
