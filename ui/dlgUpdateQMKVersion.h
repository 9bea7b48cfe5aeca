#pragma once

#include "ui/DlgBase.h"

class CQMKVersion;
class QProgressBar;
class VlMessageLabel;
class VlPushButton;

// Offers a newer release of the program, downloads it, unpacks it and hands over to its updater.
// A thin view of the self-update engine: the slots set the state, UpdateCtrls shows it.
class dlgUpdateQMKVersion : public DlgBase
{
    Q_OBJECT

public:
    enum EState
    {
        StateNone = 0,
        StateReady = 1,     // a newer version can be downloaded
        StateUpToDate = 2,  // the server has nothing newer
        StateNoVersion = 3, // the server's version could not be learned
        StateDownloading = 4,
        StateDownloaded = 5,
        StateDownloadFailed = 6,
        StateUnpacking = 7,
        StateUnpacked = 8,
    };

    explicit dlgUpdateQMKVersion(QWidget* parent = nullptr);

    void Init(CDataModel* model, QString title);
    void InitState();
    void UpdateCtrls();
    void RunQuillmarkInstall();
    void retranslate() override;

    int GetState() const { return m_nState; }
    VlMessageLabel* GetMessageLabel() const { return m_pMessage; }
    QProgressBar* GetProgressBar() const { return m_pProgress; }
    VlPushButton* GetDownloadButton() const { return m_pDownload; }
    VlPushButton* GetInstallButton() const { return m_pInstall; }
    VlPushButton* GetRetryButton() const { return m_pRetry; }
    VlMessageLabel* GetReasonLabel() const { return m_pReason; }

public slots:
    void ClickedDownloadSlot();
    void ClickedInstallSlot();
    // Asks the server for its version again after a check that failed.
    void ClickedRetrySlot();
    void VersionFileFinishedSlot();
    void NewVersionDownloadedSlot();
    void NewVersionStartedSlot();
    void DownloadErrorSlot();
    void ChangePercentSlot(int percent);
    void UnzipNewVersionFinishedSlot();
    void CloseApplicationSlot();
    void CloseDlg(bool ok) override;

signals:
    void SignalStartInstallFile();

private:
    void InitCtrls();
    void InitSlots();
    void SetState(int state);
    void ReportMissingFile(const QString& path);

    CQMKVersion* m_pQMKVersion = nullptr;
    int m_nState = StateNone;
    VlMessageLabel* m_pMessage = nullptr;
    QProgressBar* m_pProgress = nullptr;
    VlPushButton* m_pDownload = nullptr;
    VlPushButton* m_pInstall = nullptr;
    VlPushButton* m_pRetry = nullptr;
    VlMessageLabel* m_pReason = nullptr;
    bool m_bRetryingCheck = false;
};
