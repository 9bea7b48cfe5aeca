#include "ui/CvlRemoveBackupButton.h"

#include "model/CDataModel.h"

CvlRemoveBackupButton::CvlRemoveBackupButton(QWidget* parent, CDataModel* dataModel) : CvlActionBtn(parent, dataModel)
{
    Init(QStringLiteral(":/images/RemoveBackup.png"), QStringLiteral(":/images/RemoveBackupMove.png"),
         tr("RemoveBackup"));
}

void CvlRemoveBackupButton::clickedSlot()
{
    if (m_pDataModel)
        m_pDataModel->CallRemoveBackupDlg();
}

void CvlRemoveBackupButton::retranslate()
{
    SetCaption(tr("RemoveBackup"));
}
