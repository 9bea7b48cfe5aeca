#pragma once

#include "app/CMyLog.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QStringList>

class CInstallGroup;
class CProduct;

// Owns the install groups; rebuilt from the products before every update, reset or removal.
class CInstallGroupList : public QObject
{
    Q_OBJECT

public:
    explicit CInstallGroupList(QObject* parent = nullptr);
    ~CInstallGroupList() override;

    // Puts the product into the first group that matches it, else into a new one at the end.
    int AssignProduct(CProduct* product);
    // Deletes the groups and unlinks their products. The products must still be alive.
    void Clear();
    int GetSize() const { return m_groups.size(); }
    CInstallGroup* GetByIndex(int index) const;

private:
    // Where each dataset's groups are found without asking every group in turn.
    struct DatasetGroups
    {
        int first = -1;
        // Paths of a group -> the first group with exactly these paths.
        QHash<QStringList, int> byPaths;
    };
    int FindGroup(const CProduct* product, const DatasetGroups& known) const;
    void AddToGroup(int index, CProduct* product, DatasetGroups& known);

    QList<CInstallGroup*> m_groups;
    QHash<QString, DatasetGroups> m_index;
    CMyLog m_log;
};
