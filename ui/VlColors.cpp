#include "ui/VlColors.h"

#include <QPalette>
#include <QWidget>

void VlColors::SetTextColor(QWidget* widget, const QColor& color)
{
    QPalette pal = widget->palette();
    for (QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        pal.setColor(group, QPalette::WindowText, color);
        pal.setColor(group, QPalette::Text, color);
        pal.setColor(group, QPalette::ButtonText, color);
    }
    widget->setPalette(pal);
}
