#include "ui/CvlUpdateButton.h"

#include "model/CDataModel.h"

CvlUpdateButton::CvlUpdateButton(QWidget* parent, CDataModel* dataModel) : CvlActionBtn(parent, dataModel)
{
    Init(QStringLiteral(":/images/Update.png"), QStringLiteral(":/images/UpdateMove.png"), tr("Update"));
}

void CvlUpdateButton::clickedSlot()
{
    if (m_pDataModel)
        m_pDataModel->RunUpdateAddOnDatasets(nullptr);
}

void CvlUpdateButton::retranslate()
{
    SetCaption(tr("Update"));
}
