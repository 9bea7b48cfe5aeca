#include "ui/VlDefaultEdit.h"

#include "ui/VlFonts.h"

#include <QPainter>
#include <QPalette>

VlDefaultEdit::VlDefaultEdit(QWidget* parent) : QLineEdit(parent)
{
    setFont(VlFonts::Relative(0));
    setMinimumHeight(22);
    // The border is drawn here, so the style's frame goes; the margins keep the text off it.
    setFrame(false);
    setTextMargins(5, 2, 5, 2);
    QPalette pal = palette();
    for (QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
        pal.setColor(group, QPalette::Base, QColor(252, 252, 255));
    setPalette(pal);
}

void VlDefaultEdit::paintEvent(QPaintEvent* event)
{
    QLineEdit::paintEvent(event);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(hasFocus() ? QColor(90, 110, 150) : QColor(170, 170, 185));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 2, 2);
}
