#include "ui/VlDefaultLabel.h"

#include "ui/VlColors.h"
#include "ui/VlFonts.h"

VlDefaultLabel::VlDefaultLabel(QWidget* parent) : QLabel(parent)
{
    Style();
}

VlDefaultLabel::VlDefaultLabel(const QString& text, QWidget* parent) : QLabel(text, parent)
{
    Style();
}

void VlDefaultLabel::Style()
{
    setFont(VlFonts::Relative(0));
    VlColors::SetTextColor(this, QColor(60, 60, 70));
}
