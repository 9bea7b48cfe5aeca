#include "ui/VlActionLabel.h"

#include "ui/VlColors.h"
#include "ui/VlFonts.h"

VlActionLabel::VlActionLabel(QWidget* parent) : QLabel(parent)
{
    Style();
}

VlActionLabel::VlActionLabel(const QString& text, QWidget* parent) : QLabel(text, parent)
{
    Style();
}

void VlActionLabel::Style()
{
    setFont(VlFonts::Font(font().pointSize()));
    VlColors::SetTextColor(this, QColor(255, 255, 255));
}
