#pragma once

#include "ui/CvlActionBtn.h"

// Header button that opens the dataset update.
class CvlUpdateButton : public CvlActionBtn
{
    Q_OBJECT

public:
    CvlUpdateButton(QWidget* parent, CDataModel* dataModel);

public slots:
    void clickedSlot() override;
    void retranslate() override;
};
