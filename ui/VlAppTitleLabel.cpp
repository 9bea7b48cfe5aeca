#include "ui/VlAppTitleLabel.h"

#include "ui/VlColors.h"

#include <QApplication>
#include <QFont>

VlAppTitleLabel::VlAppTitleLabel(QWidget* parent) : QLabel(parent)
{
    Style();
}

VlAppTitleLabel::VlAppTitleLabel(const QString& text, QWidget* parent) : QLabel(text, parent)
{
    Style();
}

void VlAppTitleLabel::Style()
{
    QFont f(QApplication::font().family());
    f.setPointSize(font().pointSize() + 15);
    f.setItalic(true);
    setFont(f);
    VlColors::SetTextColor(this, QColor(255, 255, 255));
}
