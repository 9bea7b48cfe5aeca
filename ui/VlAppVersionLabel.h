#pragma once

#include <QLabel>

// Version next to the title: white, italic.
class VlAppVersionLabel : public QLabel
{
    Q_OBJECT

public:
    explicit VlAppVersionLabel(QWidget* parent = nullptr);
    explicit VlAppVersionLabel(const QString& text, QWidget* parent = nullptr);

private:
    void Style();
};
