#include "ui/VlCategoryTitleLabel.h"

#include "ui/VlColors.h"

#include <QApplication>
#include <QFont>

VlCategoryTitleLabel::VlCategoryTitleLabel(QWidget* parent) : QLabel(parent)
{
    Style();
}

VlCategoryTitleLabel::VlCategoryTitleLabel(const QString& text, QWidget* parent) : QLabel(text, parent)
{
    Style();
}

void VlCategoryTitleLabel::Style()
{
    QFont f(QApplication::font().family());
    f.setPointSize(QApplication::font().pointSize() + 2);
    f.setBold(true);
    setFont(f);
    VlColors::SetTextColor(this, QColor(45, 45, 55));
}
