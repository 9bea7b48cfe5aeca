#pragma once

#include <QIODevice>
#include <QString>
#include <QStringList>

class QProcess;

// One external tool call (unzip, zip, open). The log shows the familiar one-line command, but the
// process is started with a real argument list, so folders with blanks, quotes or non-ASCII
// characters reach the tool unchanged.
class CToolCommand
{
public:
    explicit CToolCommand(const QString& program);

    // Appends an argument shown bare in the command line: unzip -o
    CToolCommand& arg(const QString& argument);
    // Appends an argument shown in double quotes in the command line: "archive.zip"
    CToolCommand& quoted(const QString& argument);
    // Appends an argument shown as **** in the command line: users send their logs to support.
    CToolCommand& secret(const QString& argument);

    QString program() const { return m_program; }
    QStringList arguments() const { return m_arguments; }
    // The command as one string, as the log has always shown it.
    QString commandLine() const { return m_commandLine; }

    // Starts the tool, found on the search path. False when it is not found there.
    bool start(QProcess* process, QIODevice::OpenMode mode = QIODevice::ReadWrite) const;
    // Starts the tool on its own, to outlive this program. False when it is not found or does not
    // start.
    bool startDetached() const;
    // Whether the program is found on the search path.
    bool isAvailable() const;

private:
    QString m_program;
    QStringList m_arguments;
    QString m_commandLine;
};
