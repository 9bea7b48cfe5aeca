#pragma once

#include <QLabel>

// Dataset and cycle values on a card.
class VlDatasetTitleLabel : public QLabel
{
    Q_OBJECT

public:
    explicit VlDatasetTitleLabel(QWidget* parent = nullptr);
    explicit VlDatasetTitleLabel(const QString& text, QWidget* parent = nullptr);

private:
    void Style();
};
