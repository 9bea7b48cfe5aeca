#pragma once

#include "ui/DlgDatasetRun.h"

#include <QString>

class VlBigComboBox;
class VlCheckBox;
class VlFoldPane;
class VlPushButton;

// Downloads the newest cycle from the version server and installs it into the selected products,
// or installs a cycle already held locally. Nothing can be downloaded or installed until the user
// accepts that navigation files get overwritten.
class dlgUpdateDatasetVersion : public DlgDatasetRun
{
    Q_OBJECT

public:
    // States of the dialog; UpdateCtrls turns each into what the controls show.
    enum
    {
        StateNewVersion = 1,
        StateNoList = 2,
        StateUpToDate = 3,
        StateDownloading = 4,
        StateDownloaded = 5,
        StateDownloadFailed = 6,
        StateInstallPressed = 7,
        StateInstalled = 8,
        StateInstalling = 10,
        StateBarReset = 14,
        StateBarZero = 15,
    };

    explicit dlgUpdateDatasetVersion(QWidget* parent = nullptr);

    void Init(CDataModel* model, QString title);
    void InitCtrls();
    void InitSlots();
    void InitVersionCmb();
    void UpdateVersionCmb();
    void UpdateCtrls();
    void SetState(int state);
    void RunDatasetInstall();

    VlPushButton* GetDownloadButton() const { return m_pDownload; }
    VlPushButton* GetInstallButton() const { return m_pInstall; }
    VlBigComboBox* GetVersionCombo() const { return m_pVersion; }
    VlCheckBox* GetOverwriteAccept() const { return m_pOverwriteAccept; }
    VlCheckBox* GetCreateBackup() const { return m_pCreateBackup; }
    VlFoldPane* GetDetailsPane() const { return m_pDetailsPane; }

    void retranslate() override;

public slots:
    void CloseDlg(bool ok) override;

    void ClickedDownloadSlot();
    void ClickedInstallSlot();
    void ClickedOverwriteAcceptSlot();
    void ClickedCreateBackupSlot();
    void ClickedShowDetailsSlot();
    void ClickedHideDetailsSlot();
    void VersionKindChangedSlot(int index);

    void DownloadDataSetReadySlot();
    void NewVersionStartedSlot() {}
    void DownloadErrorSlot();
    void ChangePercentSlot(int percent);
    void UnzippProductSlot(QString name);
    void InstallReadySlot();
    void DownloadDatasetSlot(QString dataset);
    void BeginCopyTheadSlot(quint64 total);
    void FileWrittenSlot(quint64 written);
    void InstallResultSlot(QString text);

protected:
    QString WarningText() const override;

private:
    bool HasNewVersion() const;
    bool IsLocalKind() const;
    // The empty-selection box; true when there is something to run.
    bool CheckProductsSelected();
    void AddVersionRow();
    QString ServerItemText() const;
    QString LocalItemText() const;

    QString m_strDataset;
    bool m_bNewVersion = false;
    quint64 m_copyTotal = 0;
    VlPushButton* m_pDownload = nullptr;
    VlPushButton* m_pInstall = nullptr;
    VlBigComboBox* m_pVersion = nullptr;
    VlFoldPane* m_pDetailsPane = nullptr;
    VlCheckBox* m_pOverwriteAccept = nullptr;
    VlCheckBox* m_pCreateBackup = nullptr;
};
