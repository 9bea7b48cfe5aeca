#pragma once

#include "app/CMyLog.h"

#include <QList>
#include <QObject>

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
    QList<CInstallGroup*> m_groups;
    CMyLog m_log;
};
