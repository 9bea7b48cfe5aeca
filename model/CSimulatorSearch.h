#pragma once

#include <QString>
#include <QStringList>

// Finds simulator folders the user has not given yet: X-Plane writes the folders it was installed
// to into "x-plane_install_<version>.txt" (one per line) in the home folder's preferences, and
// otherwise it lies in one of the usual places. Only folders that pass the category's own check
// are offered.
class CSimulatorSearch
{
public:
    // `usualParents` are the folders that usually hold a simulator folder named like its category
    // ("/Applications" holds "X-Plane 11").
    CSimulatorSearch(QString home, QStringList usualParents);
    // The search of this machine: the user's home folder, "/Applications" and the home folder.
    static CSimulatorSearch ForThisUser();

    // The folders to try for a category, in order: the install files' lines, then the usual
    // places. Empty for a category no search knows.
    QStringList Candidates(const QString& categoryName) const;
    // The first candidate that holds the simulator; empty when none does.
    QString Find(const QString& categoryName) const;

private:
    QString m_strHome;
    QStringList m_usualParents;
};
