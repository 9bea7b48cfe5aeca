#include "ui/CvlUpdateButton.h"

CvlUpdateButton::CvlUpdateButton(QWidget* parent, CDataModel* dataModel) : CvlActionBtn(parent, dataModel)
{
    Init(QStringLiteral(":/images/Update.png"), QStringLiteral(":/images/UpdateMove.png"), tr("Update"));
}

void CvlUpdateButton::clickedSlot()
{
    // Connected to its dialog once that dialog exists.
}

void CvlUpdateButton::retranslate()
{
    SetCaption(tr("Update"));
}
