#pragma once

#include <QString>
#include <QtGlobal>

// Folder checks answered from memory while a Scope lives on the calling thread. A pass over every
// product asks about the same few folders again and again (does the simulator folder hold its
// program, does this folder exist); with tens of thousands of products the file system would be
// asked as often. Outside a scope, and on other threads, every check goes to the file system, as
// folders may change between passes.
class CFolderCache
{
public:
    class Scope
    {
    public:
        Scope();
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
    };

    // QDir(path).exists(), remembered within a scope.
    static bool Exists(const QString& path);
    // True when the scope already knows that the path cannot exist, because it or a folder above
    // it was found missing; asks the file system nothing. False outside a scope.
    static bool KnownMissing(const QString& path);
    // A number naming the scope in force on this thread, different for every scope; 0 outside one.
    // Objects that remember an answer themselves keep it while this stays the same.
    static quint64 ScopeId();
};
