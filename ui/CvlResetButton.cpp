#include "ui/CvlResetButton.h"

CvlResetButton::CvlResetButton(QWidget* parent, CDataModel* dataModel) : CvlActionBtn(parent, dataModel)
{
    Init(QStringLiteral(":/images/Reset.png"), QStringLiteral(":/images/ResetMove.png"), tr("Reset"));
}

void CvlResetButton::clickedSlot()
{
    // Connected to its dialog once that dialog exists.
}

void CvlResetButton::retranslate()
{
    SetCaption(tr("Reset"));
}
