#include "support/SigningKey.h"

#include <QFile>
#include <QProcess>

namespace {
QString run(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(60000))
        return program + QStringLiteral(" did not finish: ") + process.errorString();
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return program + QStringLiteral(" failed: ") + QString::fromLocal8Bit(process.readAllStandardError());
    return QString();
}
} // namespace

SigningKey::SigningKey()
{
    const QString pub = m_dir.filePath(QStringLiteral("key.pub"));
    if (!run(QStringLiteral("minisign"), {"-G", "-W", "-p", pub, "-s", m_dir.filePath(QStringLiteral("key.key"))})
             .isEmpty())
        return;
    QFile file(pub);
    if (file.open(QIODevice::ReadOnly))
        m_publicKey = QString::fromLatin1(file.readAll()).split(QLatin1Char('\n')).value(1).trimmed();
}

bool SigningKey::sign(const QString& file, const QStringList& fields, bool legacy) const
{
    QStringList arguments{
        "-S", "-s", m_dir.filePath(QStringLiteral("key.key")), "-m", file, "-t", fields.join(QLatin1Char('\t'))};
    if (legacy)
        arguments << QStringLiteral("-l");
    return run(QStringLiteral("minisign"), arguments).isEmpty();
}

QString SigningKey::publish(const QStringList& options, const QString& source, const QString& out) const
{
    QString root = qEnvironmentVariable("QMK_TEST_SOURCE_DIR");
    if (root.isEmpty())
        root = QStringLiteral(QMK_SOURCE_DIR);
    return run(root + QStringLiteral("/tools/publish.sh"),
               QStringList{"-k", m_dir.filePath(QStringLiteral("key.key"))} + options + QStringList{source, out});
}
