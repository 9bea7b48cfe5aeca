#include "ui/VlActionLabel.h"

#include "ui/VlColors.h"

#include <QApplication>
#include <QFont>

VlActionLabel::VlActionLabel(QWidget* parent) : QLabel(parent)
{
    Style();
}

VlActionLabel::VlActionLabel(const QString& text, QWidget* parent) : QLabel(text, parent)
{
    Style();
}

void VlActionLabel::Style()
{
    QFont f(QApplication::font().family());
    f.setPointSize(font().pointSize());
    setFont(f);
    VlColors::SetTextColor(this, QColor(255, 255, 255));
}
