#pragma once

#include <QString>

// One dataset name of the catalogue; each names one archive per cycle on the server.
class CDataset
{
public:
    explicit CDataset(QString name) : m_strName(std::move(name)) {}

    QString GetName() const { return m_strName; }

private:
    QString m_strName;
};
