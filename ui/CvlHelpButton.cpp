#include "ui/CvlHelpButton.h"

#include "model/CDialogRoute.h"

CvlHelpButton::CvlHelpButton(QWidget* parent, CDataModel* dataModel) : CvlActionBtn(parent, dataModel)
{
    Init(QStringLiteral(":/images/Help.png"), QStringLiteral(":/images/HelpMove.png"), tr("Help"));
}

void CvlHelpButton::clickedSlot()
{
    CDialogRoute::Run(EDlgPurpose::Help, m_pDataModel, QStringLiteral(QT_TRANSLATE_NOOP("DlgBase", "About Quillmark")));
}

void CvlHelpButton::retranslate()
{
    SetCaption(tr("Help"));
}
