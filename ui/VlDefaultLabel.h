#pragma once

#include <QLabel>

// Plain caption of the cards and panels.
class VlDefaultLabel : public QLabel
{
    Q_OBJECT

public:
    explicit VlDefaultLabel(QWidget* parent = nullptr);
    explicit VlDefaultLabel(const QString& text, QWidget* parent = nullptr);

private:
    void Style();
};
