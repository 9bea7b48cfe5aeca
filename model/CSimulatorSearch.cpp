#include "model/CSimulatorSearch.h"

#include "model/CCategory.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

namespace {
// Where X-Plane keeps its install files: macOS, then Linux. Both are looked at everywhere; a
// folder that does not exist costs nothing.
const char* const st_installFileFolders[] = {"Library/Preferences", ".x-plane"};

// The folders listed in an install file; lines that name no absolute folder are skipped.
QStringList readInstallFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QStringList folders;
    // Written by X-Plane in UTF-8, with CR LF on some systems and a trailing separator.
    for (QString line : QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'))) {
        line = line.trimmed();
        if (line.isEmpty() || !QDir::isAbsolutePath(line))
            continue;
        folders << QDir::cleanPath(line);
    }
    return folders;
}
} // namespace

CSimulatorSearch::CSimulatorSearch(QString home, QStringList usualParents)
    : m_strHome(std::move(home)), m_usualParents(std::move(usualParents))
{
}

CSimulatorSearch CSimulatorSearch::ForThisUser()
{
    const QString home = QDir::homePath();
    return CSimulatorSearch(home, {QStringLiteral("/Applications"), home});
}

QStringList CSimulatorSearch::Candidates(const QString& categoryName) const
{
    static const QRegularExpression xplane(QStringLiteral("^X-Plane (\\d+)$"));
    const QRegularExpressionMatch match = xplane.match(categoryName);
    if (!match.hasMatch())
        return {};
    QStringList folders;
    if (!m_strHome.isEmpty()) {
        const QString fileName = QStringLiteral("x-plane_install_") + match.captured(1) + QStringLiteral(".txt");
        for (const char* folder : st_installFileFolders)
            folders << readInstallFile(m_strHome + QLatin1Char('/') + QLatin1String(folder) + QLatin1Char('/') +
                                       fileName);
    }
    for (const QString& parent : m_usualParents)
        if (!parent.isEmpty())
            folders << QDir::cleanPath(parent + QLatin1Char('/') + categoryName);
    folders.removeDuplicates();
    return folders;
}

QString CSimulatorSearch::Find(const QString& categoryName) const
{
    CCategory probe(categoryName);
    for (const QString& folder : Candidates(categoryName)) {
        probe.SetPath(folder);
        if (probe.CheckPath())
            return folder;
    }
    return QString();
}
