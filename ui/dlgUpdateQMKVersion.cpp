#include "ui/dlgUpdateQMKVersion.h"

#include "app/CMessageBox.h"
#include "engine/CQMKVersion.h"
#include "model/CDataModel.h"
#include "ui/VlMessageLabel.h"
#include "ui/VlProgressBar.h"
#include "ui/VlPushButton.h"

#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QProgressBar>

dlgUpdateQMKVersion::dlgUpdateQMKVersion(QWidget* parent) : DlgBase(parent) {}

void dlgUpdateQMKVersion::Init(CDataModel* model, QString title)
{
    resize(420, 180);
    m_nState = StateNone;
    DlgBase::Init(model, title);
    m_pQMKVersion = model ? model->GetQMKVersion() : nullptr;
    InitCtrls();
    InitSlots();
    InitState();
}

void dlgUpdateQMKVersion::InitCtrls()
{
    m_pMessage = new VlMessageLabel(this);
    // Four lines are kept free, so the dialog does not jump when a longer message arrives.
    m_pMessage->setText(QStringLiteral("\n\n\n\n"));
    m_pMessage->setMinimumHeight(m_pMessage->sizeHint().height());
    m_pReason = new VlMessageLabel(this);
    m_pReason->setWordWrap(true);
    m_pReason->SetError(true);
    m_pReason->hide();
    m_pProgress = new VlProgressBar(this);
    // Its place stays when it is hidden, so the dialog keeps its size from the first state to the last.
    QSizePolicy policy = m_pProgress->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_pProgress->setSizePolicy(policy);
    m_pDownload = new VlPushButton(this);
    m_pInstall = new VlPushButton(this);
    m_pRetry = new VlPushButton(this);
    m_pRetry->hide();
    for (VlPushButton* button : {m_pDownload, m_pInstall, m_pRetry}) {
        button->setMinimumWidth(180);
        button->setEnabled(false);
    }
    m_pInstall->hide();

    QGridLayout* content = GetContentLayout();
    content->setVerticalSpacing(10);
    content->addWidget(m_pMessage, 0, 0);
    content->addWidget(m_pReason, 1, 0);
    content->addWidget(m_pProgress, 2, 0);
    // One place for all three: only one is offered at a time.
    content->addWidget(m_pDownload, 3, 0, Qt::AlignLeft);
    content->addWidget(m_pInstall, 3, 0, Qt::AlignLeft);
    content->addWidget(m_pRetry, 3, 0, Qt::AlignLeft);
    content->setRowStretch(4, 1);
    retranslate();
}

void dlgUpdateQMKVersion::InitSlots()
{
    connect(m_pDownload, &VlPushButton::clicked, this, &dlgUpdateQMKVersion::ClickedDownloadSlot);
    connect(m_pInstall, &VlPushButton::clicked, this, &dlgUpdateQMKVersion::ClickedInstallSlot);
    connect(m_pRetry, &VlPushButton::clicked, this, &dlgUpdateQMKVersion::ClickedRetrySlot);
    if (m_pQMKVersion) {
        connect(m_pQMKVersion, &CQMKVersion::SignalDownloadVersionTXTFinish, this,
                &dlgUpdateQMKVersion::VersionFileFinishedSlot);
        connect(m_pQMKVersion, &CQMKVersion::SignalNewQMKVersionDownloaded, this,
                &dlgUpdateQMKVersion::NewVersionDownloadedSlot);
        connect(m_pQMKVersion, &CQMKVersion::SignalNewQMKVersionStarted, this,
                &dlgUpdateQMKVersion::NewVersionStartedSlot);
        connect(m_pQMKVersion, &CQMKVersion::SignalDownloadError, this, &dlgUpdateQMKVersion::DownloadErrorSlot);
        connect(m_pQMKVersion, &CQMKVersion::SignalChangePercent, this, &dlgUpdateQMKVersion::ChangePercentSlot);
        connect(m_pQMKVersion, &CQMKVersion::SignalUnzipNewVersionFinished, this,
                &dlgUpdateQMKVersion::UnzipNewVersionFinishedSlot);
        connect(this, &dlgUpdateQMKVersion::SignalStartInstallFile, m_pQMKVersion, &CQMKVersion::StartInstallFileSlot);
    }
    if (CDataModel* model = GetDataModel())
        connect(model, &CDataModel::SignalCloseApplication, this, &dlgUpdateQMKVersion::CloseApplicationSlot);
}

void dlgUpdateQMKVersion::InitState()
{
    if (m_pQMKVersion && m_pQMKVersion->NewQMKVersionAvailable())
        SetState(StateReady);
    else if (!m_pQMKVersion || m_pQMKVersion->GetNewVersion().isEmpty())
        SetState(StateNoVersion);
    else
        SetState(StateUpToDate);
}

void dlgUpdateQMKVersion::SetState(int state)
{
    m_nState = state;
    UpdateCtrls();
}

void dlgUpdateQMKVersion::UpdateCtrls()
{
    m_pMessage->SetError(false);
    const QString version = m_pQMKVersion ? m_pQMKVersion->GetNewVersion() : QString();
    const CFailureReason failure = m_pQMKVersion ? m_pQMKVersion->GetLastFailure() : CFailureReason();
    const bool connectFailed = failure.CouldNotConnect();
    const QString connectText = tr("Failed to connect to Velmora-Server.");
    QString reason;
    bool retryShown = false;

    QString message;
    bool error = false;
    bool downloadShown = false, downloadEnabled = false, installShown = false, installEnabled = false;
    bool progressShown = true, running = false;
    switch (m_nState) {
    case StateReady:
        message = tr("Version") + QLatin1Char(' ') + version + QLatin1Char(' ') + tr("ready for download.");
        downloadShown = downloadEnabled = true;
        progressShown = false;
        break;
    case StateUpToDate:
        message = tr("There are no new updates available.");
        progressShown = false;
        break;
    case StateNoVersion:
        // Never an empty dialog: without a connection failure the server answered with no usable
        // version (no file, an empty or unreadable one).
        if (m_bRetryingCheck) {
            message = tr("Checking for a new version.");
        } else {
            message = connectFailed ? connectText
                      : failure.IsSet() ? QStringLiteral("mac_version.txt") + QLatin1Char(' ') + tr("Download failed.")
                                        : tr("No version information was found on the Velmora-Server.");
            error = true;
            reason = failure.UserText();
            retryShown = failure.IsSet();
        }
        progressShown = false;
        break;
    case StateDownloading:
        message = tr("Run download.");
        downloadShown = true;
        m_pProgress->setRange(0, 100);
        m_pProgress->setValue(0);
        running = true;
        break;
    case StateDownloaded:
        message = tr("Version") + QLatin1Char(' ') + version + QLatin1Char(' ') + tr("downloaded.");
        installShown = installEnabled = true;
        break;
    case StateDownloadFailed:
        // Download is offered again: it is the retry of this step.
        message = connectFailed ? connectText : tr("Download failed.");
        error = true;
        reason = failure.UserText();
        downloadShown = downloadEnabled = true;
        break;
    case StateUnpacking:
        message = tr("Run unzip.");
        installShown = true;
        m_pProgress->setRange(0, 0); // busy: unzip tells nothing about its progress
        m_pProgress->setValue(0);
        running = true;
        break;
    case StateUnpacked:
        m_pProgress->setRange(0, 100);
        m_pProgress->setValue(100);
        installShown = true;
        break;
    default:
        progressShown = false;
        break;
    }
    if (!message.isEmpty() || m_nState == StateUnpacked)
        m_pMessage->setText(message);
    m_pMessage->SetError(error);
    m_pDownload->setVisible(downloadShown);
    m_pDownload->setEnabled(downloadEnabled);
    m_pInstall->setVisible(installShown);
    m_pInstall->setEnabled(installEnabled);
    m_pRetry->setVisible(retryShown);
    m_pRetry->setEnabled(retryShown);
    m_pReason->setText(reason);
    m_pReason->setVisible(!reason.isEmpty());
    m_pProgress->setVisible(progressShown);
    m_pProgress->setTextVisible(running && m_nState == StateDownloading);
    // Return presses the step the dialog offers, else it closes; the keyboard follows the step.
    VlPushButton* step = downloadEnabled ? m_pDownload
                         : installEnabled ? m_pInstall
                         : retryShown     ? m_pRetry
                                          : GetOkButton();
    for (VlPushButton* button : {m_pDownload, m_pInstall, m_pRetry, GetOkButton(), GetCancelButton()}) {
        button->setAutoDefault(false);
        button->setDefault(button == step);
    }
    if (isVisible() && step->isEnabled())
        step->setFocus(Qt::OtherFocusReason);
    // While something runs, leaving the dialog cancels it, and the button says so.
    GetOkButton()->setVisible(!running);
    GetCancelButton()->setVisible(running);
}

void dlgUpdateQMKVersion::retranslate()
{
    DlgBase::retranslate();
    if (!m_pDownload)
        return; // before Init
    m_pDownload->setText(tr("Download"));
    m_pInstall->setText(tr("Run update now"));
    m_pRetry->setText(tr("Retry"));
    if (m_nState != StateNone)
        UpdateCtrls();
}

void dlgUpdateQMKVersion::ClickedDownloadSlot()
{
    SetState(StateDownloading);
    m_pQMKVersion->DownloadNewQMKVersion();
}

void dlgUpdateQMKVersion::ClickedInstallSlot()
{
    SetState(StateUnpacking);
    RunQuillmarkInstall();
}

void dlgUpdateQMKVersion::RunQuillmarkInstall()
{
    const QString archive = m_pQMKVersion->GetNewQMKVersionZipFilePath();
    if (!QFileInfo(archive).isFile()) {
        ReportMissingFile(archive);
        return;
    }
    // The engine has shown why it could not unpack (unzip missing); the archive is still there.
    if (!m_pQMKVersion->InstallQuillmark())
        SetState(StateDownloaded);
}

void dlgUpdateQMKVersion::ReportMissingFile(const QString& path)
{
    CMessageBox::critical(tr("Installation-File not found.") + QLatin1Char('\n') + QDir::toNativeSeparators(path),
                          QStringLiteral("Error"), this);
    // Without the file only a new download helps.
    SetState(StateReady);
}

void dlgUpdateQMKVersion::NewVersionDownloadedSlot()
{
    SetState(StateDownloaded);
}

void dlgUpdateQMKVersion::NewVersionStartedSlot() {}

void dlgUpdateQMKVersion::DownloadErrorSlot()
{
    if (m_bRetryingCheck) {
        VersionFileFinishedSlot();
        return;
    }
    SetState(StateDownloadFailed);
}

void dlgUpdateQMKVersion::ClickedRetrySlot()
{
    m_bRetryingCheck = true;
    SetState(StateNoVersion);
    m_pQMKVersion->SearchForNewVersion(false);
}

void dlgUpdateQMKVersion::VersionFileFinishedSlot()
{
    if (!m_bRetryingCheck)
        return;
    m_bRetryingCheck = false;
    InitState();
}

void dlgUpdateQMKVersion::ChangePercentSlot(int percent)
{
    if (m_nState == StateDownloading)
        m_pProgress->setValue(percent);
}

void dlgUpdateQMKVersion::UnzipNewVersionFinishedSlot()
{
    SetState(StateUnpacked);
    const QString installer = m_pQMKVersion->GetNewQMKVersionInstFilePath();
    if (QFileInfo::exists(installer))
        emit SignalStartInstallFile();
    else
        ReportMissingFile(installer);
}

void dlgUpdateQMKVersion::CloseApplicationSlot()
{
    done(QDialog::Accepted);
}

void dlgUpdateQMKVersion::CloseDlg(bool ok)
{
    DlgBase::CloseDlg(ok);
    if (!m_pQMKVersion)
        return;
    // The engine outlives the dialog; what it reports after the stop is for nobody.
    disconnect(m_pQMKVersion, nullptr, this, nullptr);
    m_pQMKVersion->StopDownload();
    m_pQMKVersion->StopInstall();
}
