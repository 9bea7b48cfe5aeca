#include "ui/VlDatasetTitleLabel.h"

#include "ui/VlColors.h"
#include "ui/VlFonts.h"

#include <QFont>

VlDatasetTitleLabel::VlDatasetTitleLabel(QWidget* parent) : QLabel(parent)
{
    Style();
}

VlDatasetTitleLabel::VlDatasetTitleLabel(const QString& text, QWidget* parent) : QLabel(text, parent)
{
    Style();
}

void VlDatasetTitleLabel::Style()
{
    setFont(VlFonts::Relative(0, QFont::DemiBold));
    VlColors::SetTextColor(this, QColor(40, 70, 120));
}
