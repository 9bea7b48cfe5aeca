#include "model/CInstallGroup.h"

#include "model/CProduct.h"

namespace {
QStringList resolvedInstallPaths(const CProduct* product)
{
    QStringList paths;
    for (const CInstallPath* entry : product->GetInstallPaths())
        paths << entry->strNewPath;
    return paths;
}
} // namespace

CInstallGroup::CInstallGroup(QObject* parent) : QObject(parent) {}

void CInstallGroup::AddProduct(CProduct* product)
{
    if (m_strDataset.isEmpty())
        m_strDataset = product->GetDataset();
    if (m_installPaths.isEmpty())
        m_installPaths = resolvedInstallPaths(product);
    m_products.append(product);
}

bool CInstallGroup::FindInstAndDataset(CProduct* product) const
{
    if (product->GetDataset() != m_strDataset)
        return false;
    const QStringList paths = resolvedInstallPaths(product);
    // With differing numbers of paths, or none, the dataset alone decides. Deliberate: products
    // that list fewer targets still share the download.
    if (paths.isEmpty() || paths.size() != m_installPaths.size())
        return true;
    for (int i = 0; i < paths.size(); ++i) {
        const QString path = paths.at(i).trimmed();
        if (path.isEmpty() || path != m_installPaths.at(i))
            return false;
    }
    return true;
}

void CInstallGroup::SetUpdate(CProduct* product)
{
    const bool update = product->GetUpdate();
    for (int i = 0; i < m_products.size(); ++i) {
        CProduct* other = m_products.at(i);
        if (other != product && other->GetUpdate() != update)
            other->SetUpdate(update);
    }
}

void CInstallGroup::SetResetOrUpdateTrue(CProduct* product)
{
    for (CProduct* other : qAsConst(m_products)) {
        if (other != product)
            other->SetResetOrUpdateDone(true);
    }
}

void CInstallGroup::SetInstallState(EQMKProductInstallState state)
{
    for (CProduct* product : qAsConst(m_products))
        product->SetInstallState(state);
}

QStringList CInstallGroup::GetProdNames() const
{
    QStringList names;
    for (const CProduct* product : m_products)
        names << product->GetName();
    return names;
}
