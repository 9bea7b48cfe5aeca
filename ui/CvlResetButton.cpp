#include "ui/CvlResetButton.h"

#include "model/CDataModel.h"

CvlResetButton::CvlResetButton(QWidget* parent, CDataModel* dataModel) : CvlActionBtn(parent, dataModel)
{
    Init(QStringLiteral(":/images/Reset.png"), QStringLiteral(":/images/ResetMove.png"), tr("Reset"));
}

void CvlResetButton::clickedSlot()
{
    if (m_pDataModel)
        m_pDataModel->CallResetDataSetDlg();
}

void CvlResetButton::retranslate()
{
    SetCaption(tr("Reset"));
}
