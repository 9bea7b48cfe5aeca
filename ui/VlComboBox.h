#pragma once

#include <QComboBox>

// Combo box of the header.
class VlComboBox : public QComboBox
{
    Q_OBJECT

public:
    explicit VlComboBox(QWidget* parent = nullptr);
};
