#pragma once

#include <QFileInfoList>
#include <QString>

// File-tree mechanics shared by the product record and the engines. Symbolic links are never
// followed: a link is listed, moved or removed as the link itself, never as what it points to.
class CFileTree
{
public:
    // Deletes a folder tree, or a single file given as the path. True when nothing of that name
    // existed; otherwise whether the last step (removing the folder itself) succeeded, so a single
    // file reports false after it was deleted. Stops at the first entry it cannot delete.
    static bool removeDir(const QString& path);
    // Summed size of the plain files of a tree (hidden files and links not counted).
    static quint64 byteSize(const QString& folder);

    // Entries of a folder without "." and "..": files, folders, hidden and system entries,
    // folders first. Links are included and reported by QFileInfo::isSymLink().
    static QFileInfoList allEntries(const QString& folder);

    // Plain files (hidden ones excluded, as QDir::Files lists them), without links.
    static QFileInfoList plainFiles(const QString& folder);
    // Sub-folders (not "." and ".."), without links to folders.
    static QFileInfoList subFolders(const QString& folder);
    // Links directly inside the folder (to files, folders or nowhere).
    static QFileInfoList links(const QString& folder);

    // True when the path itself is a symbolic link (whether or not its target exists).
    static bool isLink(const QString& path);
};
