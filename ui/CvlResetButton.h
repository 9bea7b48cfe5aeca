#pragma once

#include "ui/CvlActionBtn.h"

// Header button that restores the backed-up files of the selected products.
class CvlResetButton : public CvlActionBtn
{
    Q_OBJECT

public:
    CvlResetButton(QWidget* parent, CDataModel* dataModel);

public slots:
    void clickedSlot() override;
    void retranslate() override;
};
