#include "engine/CRunJournal.h"

#include "model/CProduct.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QSaveFile>

#include <fcntl.h>
#include <unistd.h>

namespace {
const char* runName(CRunJournal::ERun run)
{
    return run == CRunJournal::ERun::Install ? "install" : "reset";
}

// A rename is only as durable as the folder that holds the new name.
void syncFolder(const QString& folder)
{
    const int fd = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY);
    if (fd < 0)
        return;
    ::fsync(fd);
    ::close(fd);
}
} // namespace

QStringList CRunJournal::Candidates(CProduct* product)
{
    QStringList paths;
    if (!product)
        return paths;
    // Named only when there is a folder for it: most products of a catalogue have none.
    QString name;
    const auto add = [&](const QString& folder) {
        if (folder.isEmpty())
            return;
        if (name.isEmpty())
            name = QStringLiteral("/QMK_") + product->GetDataset() + QStringLiteral("_journal.txt");
        const QString path = folder + name;
        if (!paths.contains(path))
            paths << path;
    };
    add(product->InitRealCycleInfoPath());
    for (const CInstallPath* entry : product->GetInstallPaths())
        if (entry)
            add(entry->strNewPath);
    return paths;
}

QString CRunJournal::PathFor(CProduct* product)
{
    // The first of the places whose folder exists.
    for (const QString& path : Candidates(product))
        if (QFileInfo(QFileInfo(path).absolutePath()).isDir())
            return path;
    return QString();
}

bool CRunJournal::Write(const QString& path, const Entry& entry, QString* error)
{
    QByteArray text;
    text += QByteArray("run: ") + runName(entry.run) + '\n';
    text += "id: " + entry.id.toUtf8() + '\n';
    text += "product: " + entry.product.toUtf8() + '\n';
    text += "dataset: " + entry.dataset.toUtf8() + '\n';
    text += "from: " + entry.fromCycle.toUtf8() + '\n';
    text += "to: " + entry.toCycle.toUtf8() + '\n';
    text += QByteArray("backups: ") + (entry.backups ? "1" : "0") + '\n';

    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.flush() ||
        ::fsync(file.handle()) != 0 || !file.commit()) {
        if (error)
            *error = QStringLiteral("cannot write ") + path + QStringLiteral(": ") + file.errorString();
        file.cancelWriting();
        return false;
    }
    syncFolder(QFileInfo(path).absolutePath());
    return true;
}

bool CRunJournal::Read(const QString& path, Entry& entry)
{
    QFile file(path);
    if (QFileInfo(path).isSymLink() || !file.open(QIODevice::ReadOnly))
        return false;
    // A record is a few lines; anything larger is not one of ours.
    const QByteArray bytes = file.read(64 * 1024);
    bool hasRun = false;
    for (const QByteArray& line : bytes.split('\n')) {
        const int colon = line.indexOf(':');
        if (colon < 0)
            continue;
        const QByteArray key = line.left(colon).trimmed();
        const QString value = QString::fromUtf8(line.mid(colon + 1).trimmed());
        if (key == "run") {
            hasRun = value == QLatin1String("install") || value == QLatin1String("reset");
            entry.run = value == QLatin1String("reset") ? ERun::Reset : ERun::Install;
        } else if (key == "id") {
            entry.id = value;
        } else if (key == "product") {
            entry.product = value;
        } else if (key == "dataset") {
            entry.dataset = value;
        } else if (key == "from") {
            entry.fromCycle = value;
        } else if (key == "to") {
            entry.toCycle = value;
        } else if (key == "backups") {
            entry.backups = value != QLatin1String("0");
        }
    }
    return hasRun && !entry.id.isEmpty();
}

bool CRunJournal::Remove(const QString& path)
{
    if (!QFileInfo::exists(path) && !QFileInfo(path).isSymLink())
        return true;
    const bool removed = QFile::remove(path);
    syncFolder(QFileInfo(path).absolutePath());
    return removed;
}

QString CRunJournal::NewId()
{
    return QString::number(QDateTime::currentMSecsSinceEpoch(), 36) + QLatin1Char('-') +
           QString::number(QRandomGenerator::global()->generate(), 36);
}

QString CRunJournal::InstalledCycle(CProduct* product)
{
    // Reading the cycle sets the revision, so the two reads stay in this order.
    QString text = product->GetCycleVersion();
    text += QLatin1Char(' ');
    return text + product->GetRevision();
}

QString CRunJournal::BackedUpCycle(CProduct* product)
{
    QString text = product->GetBackCycleVersion();
    text += QLatin1Char(' ');
    return text + product->GetBackRevision();
}

QString CRunJournal::RunFileName(const QString& id)
{
    // Hidden, so that a reset never puts it back as a file of the product.
    return QStringLiteral(".qmk_run_") + id;
}

QString CRunJournal::KeptBackupName(const QString& backupDirName)
{
    return backupDirName + QStringLiteral("_prev");
}
