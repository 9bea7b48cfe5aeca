#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

// A throw-away portable program folder: points Application::st_strAppPath at a fresh temporary
// folder (with "bin" and "log" inside) for as long as the object lives, then restores the previous
// value.
class TempAppDir
{
public:
    TempAppDir();
    ~TempAppDir();

    bool isValid() const { return m_dir.isValid(); }
    QString path() const { return m_dir.path(); }
    // path() + "/" + relative
    QString filePath(const QString& relative) const;
    // Writes a file below the folder, creating its parents.
    bool writeFile(const QString& relative, const QByteArray& content) const;
    QByteArray readFile(const QString& relative) const;

private:
    QTemporaryDir m_dir;
    QString m_previousAppPath;
};
