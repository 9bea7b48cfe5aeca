#include "ui/VlCategoryTitleLabel.h"

#include "ui/VlColors.h"
#include "ui/VlFonts.h"

#include <QFont>

VlCategoryTitleLabel::VlCategoryTitleLabel(QWidget* parent) : QLabel(parent)
{
    Style();
}

VlCategoryTitleLabel::VlCategoryTitleLabel(const QString& text, QWidget* parent) : QLabel(text, parent)
{
    Style();
}

void VlCategoryTitleLabel::Style()
{
    setFont(VlFonts::Relative(2, QFont::Bold));
    VlColors::SetTextColor(this, QColor(45, 45, 55));
}
