#pragma once

#include <QPushButton>

// Text button of the cards and of the category panel: a flat rounded button that lights up under
// the mouse and darkens while pressed.
class VlAppPushButton : public QPushButton
{
    Q_OBJECT

public:
    explicit VlAppPushButton(QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;
};
