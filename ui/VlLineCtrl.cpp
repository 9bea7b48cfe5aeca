#include "ui/VlLineCtrl.h"

#include <QPainter>

VlLineCtrl::VlLineCtrl(QWidget* parent) : QFrame(parent)
{
    setFixedHeight(2);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void VlLineCtrl::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(QColor(151, 151, 160));
    painter.drawLine(0, 0, width() - 1, 0);
    painter.setPen(QColor(255, 255, 255));
    painter.drawLine(0, 1, width() - 1, 1);
}
