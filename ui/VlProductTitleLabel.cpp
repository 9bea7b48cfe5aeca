#include "ui/VlProductTitleLabel.h"

#include "ui/VlColors.h"

#include <QApplication>
#include <QFont>

VlProductTitleLabel::VlProductTitleLabel(QWidget* parent) : QLabel(parent)
{
    Style();
}

VlProductTitleLabel::VlProductTitleLabel(const QString& text, QWidget* parent) : QLabel(text, parent)
{
    Style();
}

void VlProductTitleLabel::Style()
{
    QFont f(QApplication::font().family());
    f.setPointSize(QApplication::font().pointSize() + 3);
    f.setBold(true);
    setFont(f);
    VlColors::SetTextColor(this, QColor(30, 35, 60));
}
