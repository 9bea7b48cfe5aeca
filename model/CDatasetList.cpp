#include "model/CDatasetList.h"

#include "model/CDataset.h"
#include "model/CXmlSection.h"

#include <QXmlStreamReader>
#include <QXmlStreamWriter>

CDatasetList::~CDatasetList()
{
    Clear();
}

CDataset* CDatasetList::Add(QString name)
{
    auto* dataset = new CDataset(std::move(name));
    m_list.append(dataset);
    return dataset;
}

CDataset* CDatasetList::GetByIndex(int index) const
{
    return index >= 0 && index < m_list.size() ? m_list.at(index) : nullptr;
}

CDataset* CDatasetList::GetByName(const QString& name) const
{
    for (CDataset* dataset : m_list) {
        if (dataset->GetName() == name)
            return dataset;
    }
    return nullptr;
}

void CDatasetList::Clear()
{
    qDeleteAll(m_list);
    m_list.clear();
    m_pCurrent = nullptr;
}

void CDatasetList::InitBase(QXmlStreamReader& xml)
{
    parseDatasets(xml, true);
}

void CDatasetList::InitProp(QXmlStreamReader& xml)
{
    parseDatasets(xml, false);
}

void CDatasetList::parseDatasets(QXmlStreamReader& xml, bool bBase)
{
    static const QString section = QStringLiteral("datasets");
    // The current token is looked at before moving on, so that an element right after the
    // section's start tag is not skipped.
    while (!CXmlSection::AtSectionEnd(xml, section)) {
        if (xml.isStartElement() && xml.name() == QLatin1String("name")) {
            xml.readNext();
            parseDataset(xml, bBase);
        } else {
            xml.readNext();
        }
    }
}

void CDatasetList::parseDataset(QXmlStreamReader& xml, bool bBase)
{
    m_pCurrent = nullptr;
    QString text;
    if (!CXmlSection::TakeText(xml, text))
        return;
    // The settings only confirm names the catalogue knows; they never add datasets.
    m_pCurrent = bBase ? Add(text) : GetByName(text);
}

void CDatasetList::Save(QXmlStreamWriter& xml) const
{
    xml.writeStartElement(QStringLiteral("datasets"));
    for (const CDataset* dataset : m_list)
        xml.writeTextElement(QStringLiteral("name"), dataset->GetName());
    xml.writeEndElement();
}
