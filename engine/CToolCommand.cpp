#include "engine/CToolCommand.h"

#include <QProcess>
#include <QStandardPaths>

CToolCommand::CToolCommand(const QString& program) : m_program(program), m_commandLine(program) {}

CToolCommand& CToolCommand::arg(const QString& argument)
{
    m_arguments << argument;
    m_commandLine += QLatin1Char(' ') + argument;
    return *this;
}

CToolCommand& CToolCommand::quoted(const QString& argument)
{
    m_arguments << argument;
    m_commandLine += QStringLiteral(" \"") + argument + QLatin1Char('"');
    return *this;
}

CToolCommand& CToolCommand::secret(const QString& argument)
{
    m_arguments << argument;
    m_commandLine += QStringLiteral(" ****");
    return *this;
}

bool CToolCommand::isAvailable() const
{
    return !QStandardPaths::findExecutable(m_program).isEmpty();
}

bool CToolCommand::start(QProcess* process, QIODevice::OpenMode mode) const
{
    // Resolve on the search path of this process at the moment of the call.
    const QString executable = QStandardPaths::findExecutable(m_program);
    if (executable.isEmpty())
        return false;
    process->start(executable, m_arguments, mode);
    return true;
}

bool CToolCommand::startDetached() const
{
    const QString executable = QStandardPaths::findExecutable(m_program);
    return !executable.isEmpty() && QProcess::startDetached(executable, m_arguments);
}
