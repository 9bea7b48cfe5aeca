#include "ui/VlMessageLabel.h"

#include "ui/VlColors.h"
#include "ui/VlFonts.h"

VlMessageLabel::VlMessageLabel(QWidget* parent) : QLabel(parent)
{
    setWordWrap(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse);
    setFont(VlFonts::Relative(0, QFont::DemiBold));
    SetError(false);
}

void VlMessageLabel::SetError(bool error)
{
    m_bError = error;
    VlColors::SetTextColor(this, error ? VlColors::ErrorText() : VlColors::DialogText());
}
