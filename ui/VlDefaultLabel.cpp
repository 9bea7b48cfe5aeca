#include "ui/VlDefaultLabel.h"

#include "ui/VlColors.h"

#include <QApplication>
#include <QFont>

VlDefaultLabel::VlDefaultLabel(QWidget* parent) : QLabel(parent)
{
    Style();
}

VlDefaultLabel::VlDefaultLabel(const QString& text, QWidget* parent) : QLabel(text, parent)
{
    Style();
}

void VlDefaultLabel::Style()
{
    QFont f(QApplication::font().family());
    f.setPointSize(QApplication::font().pointSize());
    setFont(f);
    VlColors::SetTextColor(this, QColor(60, 60, 70));
}
