#include "ui/VlAppPushButton.h"

#include "ui/VlFonts.h"

#include <QFontMetrics>
#include <QPainter>

VlAppPushButton::VlAppPushButton(QWidget* parent) : QPushButton(parent)
{
    setFont(VlFonts::Relative(0));
    setMinimumWidth(80);
    setMinimumHeight(22);
    setCursor(Qt::PointingHandCursor);
}

QSize VlAppPushButton::sizeHint() const
{
    // A one-pixel border and a padding of 2 by 10 pixels around the caption.
    const QFontMetrics metrics(font());
    return QSize(metrics.horizontalAdvance(text()) + 22, metrics.height() + 6).expandedTo(minimumSize());
}

QSize VlAppPushButton::minimumSizeHint() const
{
    return sizeHint();
}

void VlAppPushButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor fill(210, 210, 222);
    if (isDown())
        fill = QColor(170, 185, 210);
    else if (underMouse() && isEnabled())
        fill = QColor(190, 205, 225);
    painter.setPen(hasFocus() ? QColor(90, 110, 150) : QColor(140, 140, 155));
    painter.setBrush(fill);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
    painter.setPen(isEnabled() ? QColor(30, 30, 45) : QColor(140, 140, 150));
    painter.setFont(font());
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextShowMnemonic, text());
}

void VlAppPushButton::enterEvent(QEvent* event)
{
    QPushButton::enterEvent(event);
    update();
}

void VlAppPushButton::leaveEvent(QEvent* event)
{
    QPushButton::leaveEvent(event);
    update();
}
