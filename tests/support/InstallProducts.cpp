#include "support/InstallProducts.h"

#include "model/CProduct.h"
#include "support/DatasetFiles.h"

#include <QFileInfo>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

using namespace DatasetFiles;

QByteArray cycleInfo(const QString& cycle)
{
    return "AIRAC cycle    : " + cycle.toLatin1() + "\r\nRevision       : 1\r\n";
}

void writeNamedTree(const QString& root, int count, quint32 seed, int added)
{
    static const char* const folders[] = {"", "Airports/", "Airports/Deep/", "Navaids/", "Proc edures/"};
    QRandomGenerator random(seed);
    for (int i = 0; i < count + added; ++i) {
        QByteArray content(8 + int(random.bounded(56)), Qt::Uninitialized);
        for (char& c : content)
            c = char(random.bounded(256));
        const QString name = QString(i < count ? "file_%1.dat" : "added_%1.dat").arg(i);
        writeFile(root + '/' + QLatin1String(folders[i % 5]) + name, content);
    }
}

void verifyNothingLost(const QMap<QString, QByteArray>& before, const QMap<QString, QByteArray>& now)
{
    for (auto it = before.cbegin(); it != before.cend(); ++it) {
        if (it.key().contains("/QMK_"))
            continue;
        const QFileInfo info(it.key());
        const QString dataset = "DS_" + it.key().section('/', 0, 0).section('_', -1);
        const QString backup = info.path() + "/QMK_" + dataset + "_back/" + info.fileName();
        QVERIFY2(now.value(it.key()) == it.value() || now.value(backup) == it.value(), qPrintable("lost: " + it.key()));
    }
}

QMap<QString, QByteArray> only(const QMap<QString, QByteArray>& all, const QString& prefix)
{
    QMap<QString, QByteArray> part;
    for (auto it = all.lowerBound(prefix); it != all.cend() && it.key().startsWith(prefix); ++it)
        part.insert(it.key(), it.value());
    return part;
}

InstallProducts::InstallProducts(int count, int firstSize, const QString& folder) : folder(folder)
{
    engine.Init("1.0");
    writeFile(engine.GetCycleDirectory() + "/versionList.txt", "Revision: 1\n1802\n");
    for (int i = 0; i < count; ++i) {
        const int files = i == 0 ? firstSize : 40;
        writeNamedTree(nav(i), files, 100 + i);
        writeFile(nav(i) + "/cycle_info.txt", cycleInfo("1801"));
        writeNamedTree(newTree(i) + "/NavData", files, 200 + i);
        writeFile(newTree(i) + "/NavData/cycle_info.txt", cycleInfo("1802"));
        zipFolder(newTree(i), archive(i));
        groups.AssignProduct(addNavDataProduct(products, QString("Prod_%1").arg(i), QString("DS_%1").arg(i), root(i)));
    }
    engine.SetProductList(&products);
    original = sums();
}

QMap<QString, QByteArray> InstallProducts::sums() const
{
    return checksums(work.path(), {"new"});
}

QList<int> InstallProducts::states() const
{
    QList<int> list;
    for (int i = 0; i < products.GetSize(); ++i)
        list << int(product(i)->GetInstallState());
    return list;
}

bool InstallProducts::install()
{
    QSignalSpy ready(&engine, &CDSVersion::SignalInstallReady);
    return engine.InstallProducts() && (!ready.isEmpty() || ready.wait(60000));
}

bool InstallProducts::reset()
{
    engine.ResetResult();
    QSignalSpy ready(&engine, &CDSVersion::SignalResetReady);
    engine.Reset(&products);
    return !ready.isEmpty() || ready.wait(60000);
}
