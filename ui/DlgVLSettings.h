#pragma once

#include "ui/DlgBase.h"

class QAction;
class QGroupBox;
class QLabel;
class VlBigComboBox;
class VlCheckBox;
class VlPushButton;
class wdgBackupLocal;

// The settings dialog: interface language, automatic or manual runs of the two update managers,
// restoring the default settings and the backup panel. Every choice applies at once.
class DlgVLSettings : public DlgBase
{
    Q_OBJECT

public:
    explicit DlgVLSettings(QWidget* parent = nullptr);

    void Init(CDataModel* model, QString title);
    void retranslate() override;

    VlBigComboBox* GetLanguageCombo() const { return m_pLanguage; }
    VlCheckBox* GetQuillmarkAutoUpdate() const { return m_pQuillmarkAuto; }
    VlCheckBox* GetDatasetsAutoUpdate() const { return m_pDatasetsAuto; }
    VlPushButton* GetQuillmarkRunButton() const { return m_pQuillmarkRun; }
    VlPushButton* GetDatasetsRunButton() const { return m_pDatasetsRun; }
    VlPushButton* GetRestoreButton() const { return m_pRestore; }
    wdgBackupLocal* GetBackupPanel() const { return m_pBackup; }

public slots:
    void ClickedQuillmarkRunUpdate();
    void DownlodVersionTxtFinishedSlot();
    void ClickedAddOnDatasetsRunUpdate();
    void ClickedRestoreQMKDefaultSettings();
    void UpdateProps();
    void handleSelectionChanged(int index);
    void setLanguage(QAction* action);
    void CloseDlg(bool ok) override;

private:
    void InitCtrls();
    void InitLangCmb();
    void InitSlots();
    QGroupBox* CreateManagerBox(VlCheckBox*& autoBox, VlPushButton*& runButton);

    QLabel* m_pLanguageCaption = nullptr;
    VlBigComboBox* m_pLanguage = nullptr;
    QGroupBox* m_pQuillmarkBox = nullptr;
    QGroupBox* m_pDatasetsBox = nullptr;
    VlCheckBox* m_pQuillmarkAuto = nullptr;
    VlCheckBox* m_pDatasetsAuto = nullptr;
    VlPushButton* m_pQuillmarkRun = nullptr;
    VlPushButton* m_pDatasetsRun = nullptr;
    VlPushButton* m_pRestore = nullptr;
    wdgBackupLocal* m_pBackup = nullptr;
};
