#pragma once

#include <QList>
#include <QString>

class CDataset;
class QXmlStreamReader;
class QXmlStreamWriter;

// The dataset names of the catalogue, in catalogue order.
class CDatasetList
{
public:
    CDatasetList() = default;
    ~CDatasetList();
    CDatasetList(const CDatasetList&) = delete;
    CDatasetList& operator=(const CDatasetList&) = delete;

    CDataset* Add(QString name);
    CDataset* GetByIndex(int index) const;
    CDataset* GetByName(const QString& name) const;
    int GetSize() const { return m_list.size(); }
    void Clear();

    void InitBase(QXmlStreamReader& xml);
    void InitProp(QXmlStreamReader& xml);
    void parseDatasets(QXmlStreamReader& xml, bool bBase);
    void Save(QXmlStreamWriter& xml) const;

private:
    void parseDataset(QXmlStreamReader& xml, bool bBase);

    QList<CDataset*> m_list;
    CDataset* m_pCurrent = nullptr;
};
