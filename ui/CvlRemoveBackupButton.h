#pragma once

#include "ui/CvlActionBtn.h"

// Header button that deletes the backups of the selected products.
class CvlRemoveBackupButton : public CvlActionBtn
{
    Q_OBJECT

public:
    CvlRemoveBackupButton(QWidget* parent, CDataModel* dataModel);

public slots:
    void clickedSlot() override;
    void retranslate() override;
};
