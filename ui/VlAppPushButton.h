#pragma once

#include <QPushButton>

// Text button of the cards and of the category panel.
class VlAppPushButton : public QPushButton
{
    Q_OBJECT

public:
    explicit VlAppPushButton(QWidget* parent = nullptr);

    // Style-sheet rules for the panels that hold these buttons (see VlDefaultEdit::StyleRules).
    static QString StyleRules();
};
