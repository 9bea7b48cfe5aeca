#pragma once

#include <QList>
#include <QString>

class CCategory;
class QXmlStreamReader;
class QXmlStreamWriter;

// The simulator categories, "All" first, then catalogue order.
class CCategoryList
{
public:
    CCategoryList() = default;
    ~CCategoryList();
    CCategoryList(const CCategoryList&) = delete;
    CCategoryList& operator=(const CCategoryList&) = delete;

    CCategory* Add(QString name);
    CCategory* GetByIndex(int index) const;
    CCategory* GetByName(const QString& name) const;
    int GetSize() const { return m_list.size(); }
    void Clear();

    // The category "All", first, unless the list already has entries.
    void AddLeadingAll();
    void InitBase(QXmlStreamReader& xml);
    void InitProp(QXmlStreamReader& xml);
    void parseCategories(QXmlStreamReader& xml, bool bBase);
    void Save(QXmlStreamWriter& xml) const;

private:
    void parseCategory(QXmlStreamReader& xml, bool bBase);
    void parseCategoryPath(QXmlStreamReader& xml);

    QList<CCategory*> m_list;
    CCategory* m_pCurrent = nullptr;
};
