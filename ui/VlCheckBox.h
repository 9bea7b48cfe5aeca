#pragma once

#include <QCheckBox>

// Check box of the dialogs, in the dialogs' text colour.
class VlCheckBox : public QCheckBox
{
    Q_OBJECT

public:
    explicit VlCheckBox(QWidget* parent = nullptr);
    VlCheckBox(const QString& text, QWidget* parent = nullptr);

private:
    void Style();
};
