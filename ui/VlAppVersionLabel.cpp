#include "ui/VlAppVersionLabel.h"

#include "ui/VlColors.h"
#include "ui/VlFonts.h"

#include <QFont>

VlAppVersionLabel::VlAppVersionLabel(QWidget* parent) : QLabel(parent)
{
    Style();
}

VlAppVersionLabel::VlAppVersionLabel(const QString& text, QWidget* parent) : QLabel(text, parent)
{
    Style();
}

void VlAppVersionLabel::Style()
{
    setFont(VlFonts::Font(font().pointSize(), QFont::Normal, true));
    VlColors::SetTextColor(this, QColor(255, 255, 255));
}
