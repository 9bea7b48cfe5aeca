#include "ui/VlAppTitleLabel.h"

#include "ui/VlColors.h"
#include "ui/VlFonts.h"

#include <QFont>

VlAppTitleLabel::VlAppTitleLabel(QWidget* parent) : QLabel(parent)
{
    Style();
}

VlAppTitleLabel::VlAppTitleLabel(const QString& text, QWidget* parent) : QLabel(text, parent)
{
    Style();
}

void VlAppTitleLabel::Style()
{
    setFont(VlFonts::Font(font().pointSize() + 15, QFont::Normal, true));
    VlColors::SetTextColor(this, QColor(255, 255, 255));
}
