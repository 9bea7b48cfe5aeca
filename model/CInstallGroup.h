#pragma once

#include "model/EQMKProductInstallState.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

class CProduct;

// Products that share one dataset and the same install folders: one download and one install
// serve them all.
class CInstallGroup : public QObject
{
    Q_OBJECT

public:
    explicit CInstallGroup(QObject* parent = nullptr);

    void AddProduct(CProduct* product);
    bool FindInstAndDataset(CProduct* product) const;
    void SetUpdate(CProduct* product);
    void SetResetOrUpdateTrue(CProduct* product);
    void SetInstallState(EQMKProductInstallState state);
    QStringList GetProdNames() const;
    const QList<CProduct*>& GetProducts() const { return m_products; }
    QString GetDataset() const { return m_strDataset; }
    // The resolved install folders the group was formed on, in entry order.
    QStringList GetInstallPaths() const { return m_installPaths; }

private:
    QList<CProduct*> m_products;
    QString m_strDataset;
    QStringList m_installPaths;
};
