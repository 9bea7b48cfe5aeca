#pragma once

#include <QList>
#include <QString>

#include <atomic>
#include <functional>

class CMyLog;
struct CInstallPath;

// What the three file workers share: the loop over a product's install targets, the breadth-first
// walk over pairs of folders, and file moves that never lose the file being moved.
//
// Symbolic links are never followed. The configured install target itself may be a link (that is
// the user's own setup); every folder below it, and every folder of the unpacked tree, is checked:
// a linked folder is reported with a "!!WARNING" line and neither entered nor touched.
class CFolderWalk
{
public:
    enum EChildren
    {
        // Copy: (first/x, second/x) for every sub-folder x of the first folder.
        ChildrenOfFirst,
        // Reset and backup removal: (second/x/childName, second/x) for every sub-folder x of the second.
        ChildrenOfSecond
    };

    // Called for every pair; returns whether the pair's sub-folders are walked.
    using Visitor = std::function<bool(const QString& first, const QString& second)>;
    // Called for every install target that is not empty; returns the entry's result.
    using TargetVisitor = std::function<bool(const QString& target, const QString& second)>;

    CFolderWalk(CMyLog& log, const std::atomic_bool& stop);

    // Logs every entry's target; an entry without a resolved target is logged as an error and
    // counts as failed. Returns the result of the last entry (true for an empty list).
    bool ForEachTarget(const QList<CInstallPath*>& paths, const TargetVisitor& visit);

    // First-in first-out walk starting with (first, second); checks the stop flag before every pair.
    void Walk(EChildren children, const QString& childName, const QString& first, const QString& second,
              const Visitor& visit);

    void Warning(const QString& text);
    void Error(const QString& text);
    // Number of Error() calls since construction or the last ResetErrors().
    int GetErrorCount() const { return m_errorCount; }
    void ResetErrors() { m_errorCount = 0; }

    static QString LinkWarning(const QString& path);

    // Moves a file. A plain rename first (replacing an existing destination in one step when
    // `replace` is set); when that fails, a copy to a temporary name beside the destination that
    // is compared byte for byte, renamed into place, and only then is the source removed. On
    // failure both files are as they were and `error` says why.
    static bool MoveFile(const QString& from, const QString& to, bool replace, QString* error);
    // Copies a file the same careful way; an existing destination is replaced only once the copy
    // is complete.
    static bool CopyFile(const QString& from, const QString& to, QString* error);
    static bool SameContent(const QString& a, const QString& b);
    // True when `path` is `root` or lies below it without passing through a symbolic link.
    static bool StaysInside(const QString& root, const QString& path);

    // Called before every file move of an install or a reset, and once at the end of each such
    // run, with the number of moves made so far in this process. Null in the program; tests end a
    // child process here to prove that a run cut off at any move can be finished or undone.
    using MoveHook = void (*)(int movesDone);
    static MoveHook st_moveHook;
    static void BeforeMove();
    static void RunEnd();

private:
    CMyLog& m_log;
    const std::atomic_bool& m_stop;
    int m_errorCount = 0;
};
