#include "ui/VlCheckBox.h"

#include "ui/VlColors.h"

VlCheckBox::VlCheckBox(QWidget* parent) : QCheckBox(parent)
{
    Style();
}

VlCheckBox::VlCheckBox(const QString& text, QWidget* parent) : QCheckBox(text, parent)
{
    Style();
}

void VlCheckBox::Style()
{
    VlColors::SetTextColor(this, VlColors::DialogText());
    setCursor(Qt::PointingHandCursor);
}
