#include "ui/VlProductTitleLabel.h"

#include "ui/VlColors.h"
#include "ui/VlFonts.h"

#include <QFont>

VlProductTitleLabel::VlProductTitleLabel(QWidget* parent) : QLabel(parent)
{
    Style();
}

VlProductTitleLabel::VlProductTitleLabel(const QString& text, QWidget* parent) : QLabel(text, parent)
{
    Style();
}

void VlProductTitleLabel::Style()
{
    setFont(VlFonts::Relative(3, QFont::Bold));
    VlColors::SetTextColor(this, QColor(30, 35, 60));
}
