#include "ui/VlBackground.h"

#include <QEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QWidget>

VlBackground::VlBackground(QWidget* widget, const QColor& color) : QObject(widget), m_color(color)
{
    widget->installEventFilter(this);
}

void VlBackground::Fill(QWidget* widget, const QColor& color)
{
    if (!widget)
        return;
    if (auto* existing = widget->findChild<VlBackground*>(QString(), Qt::FindDirectChildrenOnly)) {
        existing->m_color = color;
        widget->update();
        return;
    }
    new VlBackground(widget, color);
    widget->update();
}

bool VlBackground::eventFilter(QObject* watched, QEvent* event)
{
    // Runs inside the widget's own paint event, before its paintEvent draws on top.
    if (event->type() == QEvent::Paint && watched == parent()) {
        auto* widget = static_cast<QWidget*>(watched);
        QPainter painter(widget);
        painter.fillRect(static_cast<QPaintEvent*>(event)->rect(), m_color);
    }
    return QObject::eventFilter(watched, event);
}
