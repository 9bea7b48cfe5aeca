#pragma once

#include <QComboBox>

// Combo box of the header.
class VlComboBox : public QComboBox
{
    Q_OBJECT

public:
    explicit VlComboBox(QWidget* parent = nullptr);

    // The drop-down list every combo of the program shares: dark text on light rows, white on the
    // highlighted row and a grey that can still be read on a disabled row.
    static void StylePopup(QComboBox* combo);
};
