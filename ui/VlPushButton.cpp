#include "ui/VlPushButton.h"

namespace {
const char* const kStyle = R"(
QPushButton {
    color: rgb(35, 35, 45);
    background: qlineargradient(x1: 0, y1: 0, x2: 0, y2: 1, stop: 0 rgb(252, 252, 255), stop: 1 rgb(208, 208, 220));
    border: 1px solid rgb(140, 140, 150);
    border-radius: 4px;
    padding: 4px 14px;
    min-height: 18px;
}
QPushButton:hover, QPushButton:focus { border-color: rgb(70, 110, 165); }
QPushButton:hover {
    background: qlineargradient(x1: 0, y1: 0, x2: 0, y2: 1, stop: 0 rgb(240, 246, 255), stop: 1 rgb(195, 210, 232));
}
QPushButton:pressed { background: rgb(185, 198, 222); }
QPushButton:disabled { color: rgb(150, 150, 158); background: rgb(226, 226, 232); border-color: rgb(188, 188, 195); }
)";
} // namespace

VlPushButton::VlPushButton(QWidget* parent) : QPushButton(parent)
{
    Style();
}

VlPushButton::VlPushButton(const QString& text, QWidget* parent) : QPushButton(text, parent)
{
    Style();
}

QString VlPushButton::Plain(QString caption)
{
    // "&&" stands for an ampersand that is shown.
    caption.replace(QStringLiteral("&&"), QStringLiteral("\x01"));
    caption.remove(QLatin1Char('&'));
    return caption.replace(QLatin1Char('\x01'), QLatin1Char('&'));
}

QString VlPushButton::StyleSheet()
{
    return QLatin1String(kStyle);
}

void VlPushButton::Style()
{
    setStyleSheet(StyleSheet());
    setCursor(Qt::PointingHandCursor);
}
