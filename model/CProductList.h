#pragma once

#include <QHash>
#include <QList>
#include <QString>

class CProduct;
class QXmlStreamReader;
class QXmlStreamWriter;

// All products, sorted by name. Owns its records.
class CProductList
{
public:
    CProductList() = default;
    ~CProductList();
    CProductList(const CProductList&) = delete;
    CProductList& operator=(const CProductList&) = delete;

    CProduct* Add(QString name);
    CProduct* GetByIndex(int index) const;
    CProduct* GetByName(const QString& name) const;
    int GetSize() const { return m_list.size(); }
    void Clear();

    void InitBase(QXmlStreamReader& xml);
    void InitProp(QXmlStreamReader& xml);
    void parseProducts(QXmlStreamReader& xml, bool bBase);
    void Save(QXmlStreamWriter& xml) const;

    // By name, plain code-unit order; products with equal names keep their order.
    void SortList();

private:
    void parseProductName(QXmlStreamReader& xml, bool bBase);
    void parseProductDataset(QXmlStreamReader& xml);
    void parseProductProductPath(QXmlStreamReader& xml);
    void parseProductRegistryKey(QXmlStreamReader& xml);
    void parseProductInstallPath(QXmlStreamReader& xml);
    void parseProductCycleInfoPath(QXmlStreamReader& xml);
    void parseProductRemoveFilePath(QXmlStreamReader& xml);
    void parseProductCategory(QXmlStreamReader& xml);
    void parseProductUpdate(QXmlStreamReader& xml);
    // Text of a field element when there is a current product to receive it.
    bool TakeField(QXmlStreamReader& xml, QString& text);
    // Deletes, from the last to the first, every product for which drop() is true.
    template <typename Pred> void DropProducts(Pred drop);

    QList<CProduct*> m_list;
    CProduct* m_pCurrent = nullptr;
    // Name -> first product of that name, for GetByName; rebuilt after the list changes order.
    // Names are given before a product joins the list.
    mutable QHash<QString, CProduct*> m_byName;
    mutable bool m_bByNameValid = false;
};
