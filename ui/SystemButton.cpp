#include "ui/SystemButton.h"

#include "ui/VlImages.h"

#include <QBitmap>
#include <QMouseEvent>
#include <QPixmap>

SystemButton::SystemButton(const QString& normalImage, const QString& hoverImage, QWidget* parent)
    : QLabel(parent), m_strNormal(normalImage), m_strHover(hoverImage)
{
    setMouseTracking(true);
    SetImage(m_strNormal);
}

void SystemButton::SetImage(const QString& path)
{
    if (path == m_strShown)
        return;
    m_strShown = path;
    const QPixmap pixmap = VlImages::Pixmap(path);
    setPixmap(pixmap);
    if (!pixmap.isNull())
        setMask(pixmap.mask());
}

void SystemButton::showEvent(QShowEvent* event)
{
    SetImage(m_strNormal);
    QLabel::showEvent(event);
}

void SystemButton::leaveEvent(QEvent* event)
{
    SetImage(m_strNormal);
    QLabel::leaveEvent(event);
}

void SystemButton::mouseMoveEvent(QMouseEvent* event)
{
    SetImage(m_strHover);
    event->accept();
}

void SystemButton::mousePressEvent(QMouseEvent* event)
{
    emit clicked();
    event->accept();
}
