#pragma once

#include "ui/CvlActionBtn.h"

// Header button that opens the settings.
class CvlSettingsButton : public CvlActionBtn
{
    Q_OBJECT

public:
    CvlSettingsButton(QWidget* parent, CDataModel* dataModel);

public slots:
    void clickedSlot() override;
    void retranslate() override;
};
