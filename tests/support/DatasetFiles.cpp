#include "support/DatasetFiles.h"

#include "model/CProduct.h"
#include "model/CProductList.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>

namespace DatasetFiles {

QStringList writeRandomTree(const QString& root, int count, quint32 seed, int maxBytes)
{
    QRandomGenerator random(seed);
    static const char* const folders[] = {"", "Airports", "Airports/Deep", "Navaids", "Proc edures"};
    QStringList written;
    for (int i = 0; i < count; ++i) {
        const QString folder = QLatin1String(folders[random.bounded(5)]);
        const QString rel =
            (folder.isEmpty() ? QString() : folder + QLatin1Char('/')) + QStringLiteral("file_%1.dat").arg(i);
        QByteArray content(int(random.bounded(1, maxBytes + 1)), Qt::Uninitialized);
        for (char& c : content)
            c = char(random.bounded(256));
        if (!writeFile(root + QLatin1Char('/') + rel, content))
            return {};
        written << rel;
    }
    return written;
}

QMap<QString, QByteArray> checksums(const QString& root, const QStringList& skipFolders)
{
    QMap<QString, QByteArray> sums;
    QDirIterator it(root, QDir::Files | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    const QDir base(root);
    while (it.hasNext()) {
        const QString path = it.next();
        const QString rel = base.relativeFilePath(path);
        bool skip = false;
        for (const QString& part : rel.split(QLatin1Char('/')))
            if (skipFolders.contains(part))
                skip = true;
        if (skip)
            continue;
        const QFileInfo info(path);
        if (info.isSymLink()) {
            sums.insert(rel, "link:" + info.symLinkTarget().toUtf8());
            continue;
        }
        sums.insert(rel, QCryptographicHash::hash(readFile(path), QCryptographicHash::Sha1).toHex());
    }
    // Links to folders are not files to the iterator; list them too.
    QDirIterator dirs(root, QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (dirs.hasNext()) {
        const QString path = dirs.next();
        const QFileInfo info(path);
        if (info.isSymLink())
            sums.insert(base.relativeFilePath(path), "link:" + info.symLinkTarget().toUtf8());
    }
    return sums;
}

QString zipFolder(const QString& folder, const QString& archive, const QString& password, bool storeLinks)
{
    QProcess zip;
    zip.setWorkingDirectory(folder);
    zip.setProcessChannelMode(QProcess::MergedChannels);
    QStringList args{QStringLiteral("-r"), QStringLiteral("-q")};
    if (storeLinks)
        args << QStringLiteral("-y");
    if (!password.isEmpty())
        args << QStringLiteral("-P") << password;
    args << QFileInfo(archive).absoluteFilePath() << QStringLiteral(".");
    zip.start(QStringLiteral("zip"), args);
    if (!zip.waitForFinished(600000) || zip.exitStatus() != QProcess::NormalExit || zip.exitCode() != 0)
        return QStringLiteral("zip failed: ") + QString::fromLocal8Bit(zip.readAll()) + zip.errorString();
    return QString();
}

bool writeFile(const QString& path, const QByteArray& content)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    return file.write(content) == content.size();
}

QByteArray readFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    return file.readAll();
}

ToolPath::ToolPath(bool replacePath) : m_previous(qgetenv("PATH"))
{
    const QByteArray mine = QFile::encodeName(m_dir.path());
    qputenv("PATH", replacePath || m_previous.isEmpty() ? mine : mine + ':' + m_previous);
}

ToolPath::~ToolPath()
{
    qputenv("PATH", m_previous);
}

bool ToolPath::addScript(const QString& name, const QByteArray& body)
{
    const QString path = m_dir.path() + QLatin1Char('/') + name;
    if (!writeFile(path, "#!/bin/sh\n" + body + '\n'))
        return false;
    return QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadGroup |
                                           QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther);
}

CProduct* addNavDataProduct(CProductList& list, const QString& name, const QString& dataset, const QString& root)
{
    CProduct* product = list.Add(name);
    product->SetDataset(dataset);
    product->InitNewProdPath(root);
    product->AddInstallPath(QStringLiteral("$ProductPath/NavData:/NavData"));
    product->SetCycleInfoPath(QStringLiteral("$ProductPath/NavData"));
    product->SetUpdate(true);
    return product;
}

} // namespace DatasetFiles
