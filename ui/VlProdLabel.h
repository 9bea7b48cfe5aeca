#pragma once

#include "app/VlAtom.h"
#include "model/EQMKProductInstallState.h"

#include <QString>
#include <QWidget>

class CDataModel;
class CProduct;
class QCheckBox;
class QFrame;
class QBoxLayout;
class QGridLayout;
class QLabel;
class QPushButton;
class SystemButton;
class VlAppPushButton;
class VlDatasetTitleLabel;
class VlDefaultEdit;
class VlDefaultLabel;
class VlProductTitleLabel;

// One product card: name, category, dataset, cycles, folder, state icon, update tick and the
// fold-out per-product commands.
class VlProdLabel : public QWidget, public VlAtom
{
    Q_OBJECT

public:
    // `width` is the width the card is laid out for from the start (see SetAssignedWidth).
    VlProdLabel(QWidget* parent, CDataModel* dataModel, CProduct* product, int width = 200);

    void Init();
    CProduct* GetProduct() const { return m_pProduct; }

    void setVisible(bool visible) override;
    bool GetVisible() const { return m_bVisible; }
    void SetAssignedWidth(int width) { m_iWidth = width; }
    int GetAssignedWidth() const { return m_iWidth; }

    void UpdatePath();
    void UpdateVersionLabel();
    void TranslateSimPath();
    QString GetProdPathLangUndep() const;
    void InitProdProductPaths(const QString& text);
    bool CheckExistDir(const QString& path);
    void SetPathColor(bool exists);

    // What the card shows, for the window's status and for checks.
    QString GetPathText() const;
    QString GetCycleText() const;
    // The installed cycle's dates, and how long ago it expired (empty while it is in force).
    QString GetCycleDatesText() const;
    QString GetCycleExpiredText() const;
    int GetShownStateIcon() const; // install state whose icon is visible, 0 for none
    QString GetStateToolTip() const;
    // The card's own command buttons, shown with the commands toggle.
    QPushButton* GetShowCommandsButton() const { return m_pShowCommands; }
    SystemButton* GetResetButton() const { return m_pResetButton; }

public slots:
    void ChangeInstallStateSlot(EQMKProductInstallState state);
    void ProductSetUpdateSlot();
    void ClickedCbUpdateSlot();
    void ClickedShowCommandsButtonSlot();
    void ClickedHideCommandsButtonSlot();
    void ClickedUpdateSlot();
    void ClickedResetSlot();
    void ClickedRemoveBackupSlot();
    void ClickedChangeButtonSlot();
    void PathTextChangeSlot(const QString& text);
    void retranslate() override;

protected:
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    // Tooltip, name and description of the state icon say the state in words.
    void ShowStateIcon(EQMKProductInstallState state);
    void ShowStateText(int state);
    void InitWidgets();
    void InitSlots();
    void ShowPathText(const QString& text);
    void FitTexts();
    QString StateToolTip(int state) const;
    void ShowCycleDates(const QString& cycle);

    CDataModel* m_pDataModel = nullptr;
    CProduct* m_pProduct = nullptr;
    int m_iWidth = 200;
    // The width the texts were last fitted to, and whether they have changed since.
    int m_iFittedWidth = -1;
    bool m_bWidgetsBuilt = false;
    bool m_bVisible = true;
    bool m_bShowingPath = false;
    QString m_strCycle; // the cycle text on one line; the label may show it wrapped
    QGridLayout* m_pUpperGrid = nullptr;

    QLabel* m_pStateIcon = nullptr;
    int m_iShownState = 0; // install state whose picture the icon shows, 0 for none
    VlProductTitleLabel* m_pTitle = nullptr;
    VlDefaultLabel* m_pCategory = nullptr;
    VlDefaultLabel* m_pDatasetCaption = nullptr;
    VlDatasetTitleLabel* m_pDataset = nullptr;
    VlDefaultLabel* m_pCycleCaption = nullptr;
    VlDatasetTitleLabel* m_pCycle = nullptr;
    VlDefaultLabel* m_pCycleDates = nullptr;
    VlDefaultLabel* m_pCycleExpired = nullptr;
    QBoxLayout* m_pCycleDatesBox = nullptr; // side by side, or one below the other when narrow
    QString m_strCycleDates;                // on one line; the label may show it wrapped
    VlDefaultLabel* m_pPathCaption = nullptr;
    VlDefaultEdit* m_pPathEdit = nullptr;
    VlAppPushButton* m_pChangeButton = nullptr;
    QCheckBox* m_pSelect = nullptr;
    QPushButton* m_pShowCommands = nullptr;
    QPushButton* m_pHideCommands = nullptr;
    QFrame* m_pCommands = nullptr;
    SystemButton* m_pUpdateButton = nullptr;
    SystemButton* m_pResetButton = nullptr;
    SystemButton* m_pRemoveBackupButton = nullptr;
    QFrame* m_pUpperFrame = nullptr;
    QFrame* m_pLowerFrame = nullptr;
    QFrame* m_pOuterFrame = nullptr;
};
