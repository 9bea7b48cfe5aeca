#pragma once

#include "ui/DlgDatasetRun.h"

#include <QString>

class QLabel;
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
        // The local copy is the cycle the server offers, but products of the run do not carry it yet.
        StateReadyToInstall = 9,
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
    VlPushButton* GetRetryButton() const { return m_pRetry; }
    VlBigComboBox* GetVersionCombo() const { return m_pVersion; }
    VlCheckBox* GetOverwriteAccept() const { return m_pOverwriteAccept; }
    VlCheckBox* GetCreateBackup() const { return m_pCreateBackup; }
    VlFoldPane* GetDetailsPane() const { return m_pDetailsPane; }
    // The dates of the cycle chosen in the version combo.
    QString GetCycleDatesText() const;

    void retranslate() override;
    // Closing while a downloaded cycle waits to be installed asks once whether to leave it for later.
    void done(int result) override;

protected:
    void showEvent(QShowEvent* event) override;

public:

public slots:
    void CloseDlg(bool ok) override;
    void ClickedRetrySlot();
    void SearchFinishedSlot();
    void DownloadProgressSlot(qint64 received, qint64 total, double bytesPerSecond);

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
    // The start state from what the search found and what is held locally.
    int StartState();
    // The local copy is the cycle on offer and a product of the run does not carry it yet.
    bool LocalCycleWaiting() const;
    // The button that does what the dialog offers now: Download, Install, Retry, or null for Ok.
    VlPushButton* StepButton() const;
    // "Failed to connect" when the server was never heard from, else the file's own text.
    void ShowFailure(const QString& fileText);
    // The empty-selection box; true when there is something to run.
    bool CheckProductsSelected();
    void AddVersionRow();
    QString ServerItemText() const;
    QString LocalItemText() const;
    void ShowCycleDates();

    enum class EStep
    {
        Search,
        Download
    };

    QString m_strDataset;
    bool m_bNewVersion = false;
    bool m_bLeaveAsked = false;
    EStep m_eLastStep = EStep::Search;
    int m_iInstallCount = 0; // products the install unpacks, one per install group
    int m_iInstallIndex = 0;
    VlPushButton* m_pRetry = nullptr;
    quint64 m_copyTotal = 0;
    VlPushButton* m_pDownload = nullptr;
    VlPushButton* m_pInstall = nullptr;
    VlBigComboBox* m_pVersion = nullptr;
    VlFoldPane* m_pDetailsPane = nullptr;
    VlCheckBox* m_pOverwriteAccept = nullptr;
    VlCheckBox* m_pCreateBackup = nullptr;
    QLabel* m_pCycleDates = nullptr;
};
