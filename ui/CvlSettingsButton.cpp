#include "ui/CvlSettingsButton.h"

CvlSettingsButton::CvlSettingsButton(QWidget* parent, CDataModel* dataModel) : CvlActionBtn(parent, dataModel)
{
    Init(QStringLiteral(":/images/Settings.png"), QStringLiteral(":/images/SettingsMove.png"), tr("Settings"));
}

void CvlSettingsButton::clickedSlot()
{
    // Connected to its dialog once that dialog exists.
}

void CvlSettingsButton::retranslate()
{
    SetCaption(tr("Settings"));
}
