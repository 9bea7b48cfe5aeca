#include "ui/CvlSettingsButton.h"

#include "model/CDialogRoute.h"

CvlSettingsButton::CvlSettingsButton(QWidget* parent, CDataModel* dataModel) : CvlActionBtn(parent, dataModel)
{
    Init(QStringLiteral(":/images/Settings.png"), QStringLiteral(":/images/SettingsMove.png"), tr("Settings"));
}

void CvlSettingsButton::clickedSlot()
{
    CDialogRoute::Run(EDlgPurpose::Settings, m_pDataModel, QStringLiteral(QT_TRANSLATE_NOOP("DlgBase", "Settings")));
}

void CvlSettingsButton::retranslate()
{
    SetCaption(tr("Settings"));
}
