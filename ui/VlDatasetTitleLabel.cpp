#include "ui/VlDatasetTitleLabel.h"

#include "ui/VlColors.h"

#include <QApplication>
#include <QFont>

VlDatasetTitleLabel::VlDatasetTitleLabel(QWidget* parent) : QLabel(parent)
{
    Style();
}

VlDatasetTitleLabel::VlDatasetTitleLabel(const QString& text, QWidget* parent) : QLabel(text, parent)
{
    Style();
}

void VlDatasetTitleLabel::Style()
{
    QFont f(QApplication::font().family());
    f.setPointSize(QApplication::font().pointSize());
    f.setWeight(QFont::DemiBold);
    setFont(f);
    VlColors::SetTextColor(this, QColor(40, 70, 120));
}
