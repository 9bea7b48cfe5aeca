#pragma once

#include "engine/CDSVersion.h"
#include "model/CInstallGroupList.h"
#include "model/CProductList.h"
#include "support/TempAppDir.h"

#include <QList>
#include <QMap>
#include <QTemporaryDir>

// The cycle file of an add-on at `cycle`, revision 1.
QByteArray cycleInfo(const QString& cycle);

// `count` files of random bytes over a few nested folders, then `added` more named added_N; the
// names depend on the counts only, so trees of other seeds replace each other file by file.
void writeNamedTree(const QString& root, int count, quint32 seed, int added = 0);

// Every file of `before` ("<product folder>_<n>/...") is in place with its bytes, or they wait in
// the backup folder of dataset DS_<n> beside it.
void verifyNothingLost(const QMap<QString, QByteArray>& before, const QMap<QString, QByteArray>& now);

// The entries of `all` whose keys start with `prefix`.
QMap<QString, QByteArray> only(const QMap<QString, QByteArray>& all, const QString& prefix);

// Products Prod_0 .. Prod_n-1 of datasets DS_0 .. DS_n-1 in folders <folder>_<n>, whose NavData
// trees hold cycle 1801, and the archives of cycle 1802 on hand, which give every file other
// bytes. Prod_0 holds `firstSize` files, the others 40.
struct InstallProducts
{
    TempAppDir app;
    QTemporaryDir work;
    CProductList products;
    CInstallGroupList groups;
    CDSVersion engine;
    QString folder;
    QMap<QString, QByteArray> original; // sums() before any run

    explicit InstallProducts(int count, int firstSize = 40, const QString& folder = QStringLiteral("Prod"));
    CProduct* product(int i) const { return products.GetByIndex(i); }
    QString root(int i) const { return work.path() + QString("/%1_%2").arg(folder).arg(i); }
    QString nav(int i) const { return root(i) + QStringLiteral("/NavData"); }
    // The archive of Prod_i and the tree it is made of, below work/new.
    QString archive(int i) const { return engine.GetCycleDirectory() + QString("/DS_%1.zip").arg(i); }
    QString newTree(int i) const { return work.path() + QString("/new/%1").arg(i); }
    // Checksums below the work folder, backups included and the new trees left out.
    QMap<QString, QByteArray> sums() const;
    QList<int> states() const;
    // Run to their ready signal.
    bool install();
    bool reset();
};
