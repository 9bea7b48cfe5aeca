#pragma once

#include <QLineEdit>

// Path edit of the cards and of the category panel. It is mostly shown disabled and must still
// read like a field, not like greyed text: a light field with a thin rounded border.
class VlDefaultEdit : public QLineEdit
{
    Q_OBJECT

public:
    explicit VlDefaultEdit(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};
