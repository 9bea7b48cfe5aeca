#pragma once

#include <QLineEdit>

// Path edit of the cards and of the category panel.
class VlDefaultEdit : public QLineEdit
{
    Q_OBJECT

public:
    explicit VlDefaultEdit(QWidget* parent = nullptr);
};
