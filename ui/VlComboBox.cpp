#include "ui/VlComboBox.h"

#include "ui/VlColors.h"
#include "ui/VlFonts.h"

#include <QAbstractItemView>
#include <QStyledItemDelegate>

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
                       "border: 1px solid rgb(120, 120, 135); border-radius: 3px; padding: 1px 6px; }"));
    StylePopup(this);
}

void VlComboBox::StylePopup(QComboBox* combo)
{
    // The style's own menu-like rows ignore the colours below and draw the highlight from the
    // desktop's palette, which can be dark on dark; plain item rows take them.
    combo->setItemDelegate(new QStyledItemDelegate(combo));
    QAbstractItemView* view = combo->view();
    QPalette palette = view->palette();
    for (QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        palette.setColor(group, QPalette::Base, VlColors::PopupBackground());
        palette.setColor(group, QPalette::Text, VlColors::PopupText());
        palette.setColor(group, QPalette::Highlight, VlColors::PopupHighlight());
        palette.setColor(group, QPalette::HighlightedText, Qt::white);
    }
    palette.setColor(QPalette::Disabled, QPalette::Text, VlColors::PopupDisabledText());
    view->setPalette(palette);
    view->setStyleSheet(QStringLiteral("QAbstractItemView { background: %1; color: %2; outline: 0; }"
                                       "QAbstractItemView::item { padding: 3px 6px; min-height: 20px; }"
                                       "QAbstractItemView::item:selected { background: %3; color: white; }"
                                       "QAbstractItemView::item:disabled { color: %4; }")
                            .arg(VlColors::PopupBackground().name(), VlColors::PopupText().name(),
                                 VlColors::PopupHighlight().name(), VlColors::PopupDisabledText().name()));
}
