#pragma once

#include <QLabel>

// Application title in the header: white, italic, large.
class VlAppTitleLabel : public QLabel
{
    Q_OBJECT

public:
    explicit VlAppTitleLabel(QWidget* parent = nullptr);
    explicit VlAppTitleLabel(const QString& text, QWidget* parent = nullptr);

private:
    void Style();
};
