#pragma once

#include "ui/CvlActionBtn.h"

// Header button that opens the help and about text.
class CvlHelpButton : public CvlActionBtn
{
    Q_OBJECT

public:
    CvlHelpButton(QWidget* parent, CDataModel* dataModel);

public slots:
    void clickedSlot() override;
    void retranslate() override;
};
