#include "model/CInstallGroupList.h"

#include "model/CInstallGroup.h"
#include "model/CProduct.h"

CInstallGroupList::CInstallGroupList(QObject* parent) : QObject(parent)
{
    m_log.SetFileName(QStringLiteral("log_datamodel.txt"));
}

CInstallGroupList::~CInstallGroupList()
{
    // Products may already be gone here, so they are not touched.
    qDeleteAll(m_groups);
}

int CInstallGroupList::AssignProduct(CProduct* product)
{
    for (int i = 0; i < m_groups.size(); ++i) {
        CInstallGroup* group = m_groups.at(i);
        if (group->FindInstAndDataset(product)) {
            group->AddProduct(product);
            product->SetInstallGroup(group);
            return i;
        }
    }
    auto* group = new CInstallGroup;
    group->AddProduct(product);
    product->SetInstallGroup(group);
    m_groups.append(group);
    return m_groups.size() - 1;
}

void CInstallGroupList::Clear()
{
    for (CInstallGroup* group : qAsConst(m_groups)) {
        for (CProduct* product : group->GetProducts()) {
            if (product->GetInstallGroup() == group)
                product->SetInstallGroup(nullptr);
        }
    }
    qDeleteAll(m_groups);
    m_groups.clear();
}

CInstallGroup* CInstallGroupList::GetByIndex(int index) const
{
    return index >= 0 && index < m_groups.size() ? m_groups.at(index) : nullptr;
}
