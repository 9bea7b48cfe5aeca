#include "ui/CvlHelpButton.h"

CvlHelpButton::CvlHelpButton(QWidget* parent, CDataModel* dataModel) : CvlActionBtn(parent, dataModel)
{
    Init(QStringLiteral(":/images/Help.png"), QStringLiteral(":/images/HelpMove.png"), tr("Help"));
}

void CvlHelpButton::clickedSlot()
{
    // Connected to its dialog once that dialog exists.
}

void CvlHelpButton::retranslate()
{
    SetCaption(tr("Help"));
}
