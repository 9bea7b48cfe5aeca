#include "ui/VlComboBox.h"

#include "ui/VlFonts.h"

VlComboBox::VlComboBox(QWidget* parent) : QComboBox(parent)
{
    setFont(VlFonts::Relative(0));
    setMinimumHeight(22);
    setMinimumWidth(110);
    // Long dataset names must not push the header's action buttons out of the window; the list
    // that drops down still shows them whole.
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(12);
    setCursor(Qt::PointingHandCursor);
    setStyleSheet(
        QStringLiteral("QComboBox { background-color: rgb(250, 250, 255); color: rgb(30, 30, 45); "
                       "border: 1px solid rgb(120, 120, 135); border-radius: 3px; padding: 1px 6px; }"
                       "QComboBox QAbstractItemView { background-color: rgb(250, 250, 255); color: rgb(30, 30, 45); "
                       "selection-background-color: rgb(150, 175, 205); }"));
}
