#include "ui/SystemButton.h"

#include "ui/VlFocusFrame.h"
#include "ui/VlImages.h"

#include <QBitmap>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPixmap>

SystemButton::SystemButton(const QString& normalImage, const QString& hoverImage, QWidget* parent)
    : QLabel(parent), m_strNormal(normalImage), m_strHover(hoverImage)
{
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
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
    SetImage(hasFocus() ? m_strHover : m_strNormal);
    QLabel::showEvent(event);
}

void SystemButton::leaveEvent(QEvent* event)
{
    SetImage(hasFocus() ? m_strHover : m_strNormal);
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

void SystemButton::keyPressEvent(QKeyEvent* event)
{
    if (!VlFocusFrame::HandlePressKey(event, [this] { emit clicked(); }))
        QLabel::keyPressEvent(event);
}

// The image is masked to its opaque parts, so a frame around it would not show: the keyboard's
// place is shown by the hover image.
void SystemButton::focusInEvent(QFocusEvent* event)
{
    SetImage(m_strHover);
    QLabel::focusInEvent(event);
}

void SystemButton::focusOutEvent(QFocusEvent* event)
{
    SetImage(m_strNormal);
    QLabel::focusOutEvent(event);
}
