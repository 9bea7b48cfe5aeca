#include "ui/VlFocusFrame.h"

#include <QKeyEvent>
#include <QPainter>
#include <QPen>
#include <QWidget>

bool VlFocusFrame::FromKeyboard(Qt::FocusReason reason)
{
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason || reason == Qt::ShortcutFocusReason;
}

void VlFocusFrame::Paint(QWidget* widget, Qt::FocusReason reason)
{
    if (!widget->hasFocus() || !FromKeyboard(reason))
        return;
    QPainter painter(widget);
    painter.setRenderHint(QPainter::Antialiasing);
    QPen pen(QColor(60, 110, 190));
    pen.setWidth(2);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(widget->rect()).adjusted(1, 1, -1, -1), 4, 4);
}

bool VlFocusFrame::HandlePressKey(QKeyEvent* event, const std::function<void()>& press)
{
    if (event->key() != Qt::Key_Space && event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter)
        return false;
    if (!event->isAutoRepeat())
        press();
    event->accept();
    return true;
}
