#pragma once

#include <QString>
#include <QtGlobal>

// One simulator category with the folder the user gave for it.
class CCategory
{
public:
    explicit CCategory(QString name);

    QString GetName() const { return m_strName; }
    QString GetPath() const { return m_strPath; }
    void SetPath(QString path) { m_strPath = path; }

    // True when dir exists and holds an entry (file or folder) whose upper-cased name is exeName.
    static bool CheckExe(QString dir, QString exeName);
    // Whether the category's folder really holds its simulator.
    bool CheckPath() const;

private:
    // Windows-only simulators have no known install location on this platform.
    void InitFSXPath() {}
    void InitFS2004Path() {}
    void InitP3DV2Path() {}
    void InitP3DV3Path() {}
    void InitP3DV4Path() {}

    QString m_strName;
    QString m_strPath;
    // The last answer of CheckPath, good for the folder cache's scope it was given in.
    mutable quint64 m_checkScope = 0;
    mutable QString m_strCheckedPath;
    mutable bool m_bCheckAnswer = false;
};
