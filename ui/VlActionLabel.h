#pragma once

#include <QLabel>

// White caption of the header (action buttons, filter caption).
class VlActionLabel : public QLabel
{
    Q_OBJECT

public:
    explicit VlActionLabel(QWidget* parent = nullptr);
    explicit VlActionLabel(const QString& text, QWidget* parent = nullptr);

private:
    void Style();
};
