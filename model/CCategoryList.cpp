#include "model/CCategoryList.h"

#include "model/CCategory.h"
#include "model/CXmlSection.h"

#include <QXmlStreamReader>
#include <QXmlStreamWriter>

CCategoryList::~CCategoryList()
{
    Clear();
}

CCategory* CCategoryList::Add(QString name)
{
    auto* category = new CCategory(std::move(name));
    m_list.append(category);
    return category;
}

CCategory* CCategoryList::GetByIndex(int index) const
{
    return index >= 0 && index < m_list.size() ? m_list.at(index) : nullptr;
}

CCategory* CCategoryList::GetByName(const QString& name) const
{
    for (CCategory* category : m_list) {
        if (category->GetName() == name)
            return category;
    }
    return nullptr;
}

void CCategoryList::Clear()
{
    qDeleteAll(m_list);
    m_list.clear();
    m_pCurrent = nullptr;
}

void CCategoryList::InitBase(QXmlStreamReader& xml)
{
    AddLeadingAll();
    parseCategories(xml, true);
}

void CCategoryList::AddLeadingAll()
{
    // Exactly once, however many categories sections there are.
    if (m_list.isEmpty())
        Add(QStringLiteral("All"));
}

void CCategoryList::InitProp(QXmlStreamReader& xml)
{
    parseCategories(xml, false);
}

void CCategoryList::parseCategories(QXmlStreamReader& xml, bool bBase)
{
    static const QString section = QStringLiteral("categories");
    while (!CXmlSection::AtSectionEnd(xml, section)) {
        if (xml.isStartElement() && xml.name() == QLatin1String("name")) {
            xml.readNext();
            parseCategory(xml, bBase);
        } else if (xml.isStartElement() && xml.name() == QLatin1String("path")) {
            xml.readNext();
            parseCategoryPath(xml);
        } else {
            xml.readNext();
        }
    }
}

void CCategoryList::parseCategory(QXmlStreamReader& xml, bool bBase)
{
    m_pCurrent = nullptr;
    QString text;
    if (!CXmlSection::TakeText(xml, text))
        return;
    m_pCurrent = bBase ? Add(text) : GetByName(text);
}

void CCategoryList::parseCategoryPath(QXmlStreamReader& xml)
{
    QString text;
    if (CXmlSection::TakeText(xml, text) && m_pCurrent)
        m_pCurrent->SetPath(text);
}

void CCategoryList::Save(QXmlStreamWriter& xml) const
{
    xml.writeStartElement(QStringLiteral("categories"));
    for (const CCategory* category : m_list) {
        xml.writeTextElement(QStringLiteral("name"), category->GetName());
        xml.writeTextElement(QStringLiteral("path"), category->GetPath());
    }
    xml.writeEndElement();
}
