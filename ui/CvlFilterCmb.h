#pragma once

#include "app/VlAtom.h"
#include "ui/VlComboBox.h"

class CDataModel;

// Dataset filter of the header: "All" and one entry per dataset of the catalogue.
class CvlFilterCmb : public VlComboBox, public VlAtom
{
    Q_OBJECT

public:
    CvlFilterCmb(QWidget* parent, CDataModel* dataModel);

    void Init();

signals:
    void ChangeDataset(const QString& dataset);

public slots:
    void currentIndexChangedSlot(int index);
    void retranslate() override;

protected:
    void changeEvent(QEvent* event) override;

private:
    CDataModel* m_pDataModel = nullptr;
};
