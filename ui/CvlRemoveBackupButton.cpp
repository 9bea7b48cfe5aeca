#include "ui/CvlRemoveBackupButton.h"

CvlRemoveBackupButton::CvlRemoveBackupButton(QWidget* parent, CDataModel* dataModel) : CvlActionBtn(parent, dataModel)
{
    Init(QStringLiteral(":/images/RemoveBackup.png"), QStringLiteral(":/images/RemoveBackupMove.png"),
         tr("RemoveBackup"));
}

void CvlRemoveBackupButton::clickedSlot()
{
    // Connected to its dialog once that dialog exists.
}

void CvlRemoveBackupButton::retranslate()
{
    SetCaption(tr("RemoveBackup"));
}
