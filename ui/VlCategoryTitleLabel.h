#pragma once

#include <QLabel>

// Category name on a category button.
class VlCategoryTitleLabel : public QLabel
{
    Q_OBJECT

public:
    explicit VlCategoryTitleLabel(QWidget* parent = nullptr);
    explicit VlCategoryTitleLabel(const QString& text, QWidget* parent = nullptr);

private:
    void Style();
};
