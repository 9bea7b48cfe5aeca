#include "ui/VlAppVersionLabel.h"

#include "ui/VlColors.h"

#include <QApplication>
#include <QFont>

VlAppVersionLabel::VlAppVersionLabel(QWidget* parent) : QLabel(parent)
{
    Style();
}

VlAppVersionLabel::VlAppVersionLabel(const QString& text, QWidget* parent) : QLabel(text, parent)
{
    Style();
}

void VlAppVersionLabel::Style()
{
    QFont f(QApplication::font().family());
    f.setPointSize(font().pointSize());
    f.setItalic(true);
    setFont(f);
    VlColors::SetTextColor(this, QColor(255, 255, 255));
}
