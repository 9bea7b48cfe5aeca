#pragma once

#include <QLabel>

// Product name on a card: bold and a little larger.
class VlProductTitleLabel : public QLabel
{
    Q_OBJECT

public:
    explicit VlProductTitleLabel(QWidget* parent = nullptr);
    explicit VlProductTitleLabel(const QString& text, QWidget* parent = nullptr);

private:
    void Style();
};
