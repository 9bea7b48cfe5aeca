#pragma once

#include <QFrame>

// Separator line of the dialogs, drawn like the category separator of the main window: a dark
// line over a light one, so it reads as a groove in the light background.
class VlLineCtrl : public QFrame
{
    Q_OBJECT

public:
    explicit VlLineCtrl(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};
