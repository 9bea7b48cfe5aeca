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

// CInstallGroup::FindInstAndDataset decides, and AssignProduct takes the first group for which it
// holds. Asking every group makes a catalogue of distinct products quadratic, so the answer is
// found directly: a product whose number of paths differs from a group's, or that has none, joins
// that group, so within one dataset only a product with as many paths as the first group can open
// another group, and every group of a dataset has the first one's number of paths (the first may
// start with none and take the paths of the product that joins it next, while it is still alone).
// The first match is therefore the first group when the numbers differ, else the first group
// holding exactly the product's paths.
int CInstallGroupList::FindGroup(const CProduct* product, const DatasetGroups& known) const
{
    if (known.first < 0)
        return -1;
    const QList<CInstallPath*>& entries = product->GetInstallPaths();
    if (entries.isEmpty() || entries.size() != m_groups.at(known.first)->GetInstallPaths().size())
        return known.first;
    QStringList paths;
    paths.reserve(entries.size());
    for (const CInstallPath* entry : entries) {
        const QString path = entry->strNewPath.trimmed();
        if (path.isEmpty())
            return -1;
        paths << path;
    }
    return known.byPaths.value(paths, -1);
}

void CInstallGroupList::AddToGroup(int index, CProduct* product, DatasetGroups& known)
{
    CInstallGroup* group = m_groups.at(index);
    const bool hadPaths = !group->GetInstallPaths().isEmpty();
    group->AddProduct(product);
    product->SetInstallGroup(group);
    if (!hadPaths && !group->GetInstallPaths().isEmpty() && !known.byPaths.contains(group->GetInstallPaths()))
        known.byPaths.insert(group->GetInstallPaths(), index);
}

int CInstallGroupList::AssignProduct(CProduct* product)
{
    DatasetGroups& known = m_index[product->GetDataset()];
    int index = FindGroup(product, known);
    if (index < 0) {
        index = m_groups.size();
        m_groups.append(new CInstallGroup);
        if (known.first < 0)
            known.first = index;
    }
    AddToGroup(index, product, known);
    return index;
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
    m_index.clear();
}

CInstallGroup* CInstallGroupList::GetByIndex(int index) const
{
    return index >= 0 && index < m_groups.size() ? m_groups.at(index) : nullptr;
}
