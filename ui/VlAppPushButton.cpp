#include "ui/VlAppPushButton.h"

#include <QApplication>
#include <QFont>

VlAppPushButton::VlAppPushButton(QWidget* parent) : QPushButton(parent)
{
    QFont f(QApplication::font().family());
    f.setPointSize(QApplication::font().pointSize());
    setFont(f);
    setMinimumWidth(80);
    setMinimumHeight(22);
    setCursor(Qt::PointingHandCursor);
}

QString VlAppPushButton::StyleRules()
{
    return QStringLiteral("VlAppPushButton { background-color: rgb(210, 210, 222); color: rgb(30, 30, 45); "
                          "border: 1px solid rgb(140, 140, 155); border-radius: 3px; padding: 2px 10px; }"
                          "VlAppPushButton:hover { background-color: rgb(190, 205, 225); }"
                          "VlAppPushButton:pressed { background-color: rgb(170, 185, 210); }");
}
