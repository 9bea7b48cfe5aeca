#pragma once

#include <QComboBox>

// The dialogs' prominent choice (the cycle to install, the language): larger text in a field
// styled like the dialogs' buttons.
class VlBigComboBox : public QComboBox
{
    Q_OBJECT

public:
    explicit VlBigComboBox(QWidget* parent = nullptr);
};
