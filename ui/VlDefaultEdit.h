#pragma once

#include <QLineEdit>

// Path edit of the cards and of the category panel.
class VlDefaultEdit : public QLineEdit
{
    Q_OBJECT

public:
    explicit VlDefaultEdit(QWidget* parent = nullptr);

    // Style-sheet rules for the panels that hold edits; one sheet per panel instead of one per
    // edit keeps hundreds of product cards quick to build.
    static QString StyleRules();
};
