#include "ui/dlgUpdateDatasetVersion.h"

#include "app/CMessageBox.h"
#include "engine/CDSVersion.h"
#include "engine/DownloadManager.h"
#include "model/CDataModel.h"
#include "model/CInstallGroup.h"
#include "model/CProduct.h"
#include "ui/VlBigComboBox.h"
#include "ui/VlCheckBox.h"
#include "ui/VlColors.h"
#include "ui/VlCycleDates.h"
#include "ui/VlFoldPane.h"
#include "ui/VlLineCtrl.h"
#include "ui/VlMessageLabel.h"
#include "ui/VlPushButton.h"

#include <QGridLayout>
#include <QLabel>
#include <QNetworkReply>
#include <QProgressBar>
#include <QSet>

namespace {
// Sizes in the unit of the larger one, so that a small archive does not read "0.0 of 0.0 MB".
bool inMegabytes(qint64 bytes)
{
    return bytes >= 1024 * 1024;
}

QString inUnit(qint64 bytes, bool megabytes)
{
    return QString::number(double(bytes) / (megabytes ? 1024.0 * 1024.0 : 1024.0), 'f', 1);
}
} // namespace

dlgUpdateDatasetVersion::dlgUpdateDatasetVersion(QWidget* parent) : DlgDatasetRun(parent) {}

void dlgUpdateDatasetVersion::Init(CDataModel* model, QString title)
{
    resize(450, 445);
    m_iState = 0;
    DlgBase::Init(model, title);
    InitRun();
    // The first choice follows the server: its cycle whenever it offers one that differs from the
    // local copy, the local copy only when the server has nothing new or could not be reached. A
    // choice in the combo holds for this dialog only.
    if (m_pDSVersion) {
        const bool local = !m_pDSVersion->InitLocalVersion().isEmpty();
        m_pDSVersion->SetLocalVersion(local && !m_pDSVersion->NewDSVersionAvailable());
    }
    InitCtrls();
    InitSlots();
    retranslate();
    FitHeight(445);
}

void dlgUpdateDatasetVersion::InitCtrls()
{
    AddProductRow();
    AddSeparator();
    AddVersionRow();

    m_pOverwriteAccept = new VlCheckBox(this);
    m_pOverwriteAccept->setChecked(m_pDSVersion && m_pDSVersion->GetNavDataOverwriteAccept());
    AddWarningBox(m_pOverwriteAccept);
    AddSeparator();
    AddMessageRow();

    m_pCreateBackup = new VlCheckBox(this);
    m_pCreateBackup->setChecked(m_pDSVersion && m_pDSVersion->GetCreateBackupFiles());
    auto* backupRow = new QGridLayout;
    backupRow->setContentsMargins(5, 5, 5, 0);
    backupRow->addWidget(m_pCreateBackup, 0, 0);
    GetContentLayout()->addLayout(backupRow, NextRow(), 0);

    AddProgressRow();

    m_pDownload = new VlPushButton(this);
    m_pInstall = new VlPushButton(this);
    m_pRetry = new VlPushButton(this);
    for (VlPushButton* button : {m_pDownload, m_pInstall, m_pRetry}) {
        button->setMinimumWidth(180);
        button->setEnabled(false);
    }
    m_pInstall->hide();
    m_pRetry->hide();
    AddButtonCell(m_pDownload, m_pInstall, m_pRetry);

    m_iState = StartState();
    InitVersionCmb();
    UpdateCtrls();
}

int dlgUpdateDatasetVersion::StartState()
{
    m_bNewVersion = m_pDSVersion && m_pDSVersion->NewDSVersionAvailable();
    if (m_bNewVersion)
        return StateNewVersion;
    if (LocalCycleWaiting())
        return StateReadyToInstall;
    if (!m_pDSVersion || m_pDSVersion->IsVersionListEmpty())
        return StateNoList;
    return StateUpToDate;
}

bool dlgUpdateDatasetVersion::LocalCycleWaiting() const
{
    if (!m_pDSVersion || m_pDSVersion->GetLocalVersionText().isEmpty() ||
        m_pDSVersion->GetLocalDatasetList().isEmpty())
        return false;
    const QString local = CDSVersion::cutDig(m_pDSVersion->GetLocalVersionText()) + m_pDSVersion->GetLocalRevision();
    for (CProduct* product : ProductsToRun()) {
        // Two statements: reading the cycle sets the revision.
        QString installed = product->GetCycleVersion();
        installed += product->GetRevision();
        if (installed != local)
            return true;
    }
    return false;
}

void dlgUpdateDatasetVersion::AddVersionRow()
{
    m_pVersion = new VlBigComboBox(this);
    m_pDetailsPane = new VlFoldPane(this);
    m_pDetailsPane->SetMinimumButtonWidth(90);
    connect(m_pDetailsPane, &VlFoldPane::SignalOpening, this, [this] {
        QString text = tr("Datasets was found:") + QStringLiteral("\r\n");
        if (m_pDSVersion)
            for (const QString& name : m_pDSVersion->GetLocalDatasetList())
                text += QStringLiteral("  ") + name + QStringLiteral("\r\n");
        m_pDetailsPane->SetText(text);
    });

    auto* row = new QGridLayout;
    row->setContentsMargins(0, 5, 4, 5);
    row->setColumnStretch(0, 1);
    row->addWidget(m_pVersion, 0, 0);
    row->addWidget(m_pDetailsPane->GetShowButton(), 0, 1);
    row->addWidget(m_pDetailsPane->GetHideButton(), 0, 1);
    m_pCycleDates = new QLabel(this);
    m_pCycleDates->setContentsMargins(6, 2, 0, 0);
    row->addWidget(m_pCycleDates, 1, 0, 1, 2);
    GetContentLayout()->addLayout(row, NextRow(), 0);

    auto* pane = new QGridLayout;
    pane->setContentsMargins(5, 5, 6, 5);
    pane->addWidget(m_pDetailsPane->GetPane(), 0, 0);
    GetContentLayout()->addLayout(pane, NextRow(), 0);
}

void dlgUpdateDatasetVersion::InitSlots()
{
    connect(m_pDownload, &VlPushButton::clicked, this, &dlgUpdateDatasetVersion::ClickedDownloadSlot);
    connect(m_pInstall, &VlPushButton::clicked, this, &dlgUpdateDatasetVersion::ClickedInstallSlot);
    connect(m_pRetry, &VlPushButton::clicked, this, &dlgUpdateDatasetVersion::ClickedRetrySlot);
    connect(m_pOverwriteAccept, &VlCheckBox::clicked, this, &dlgUpdateDatasetVersion::ClickedOverwriteAcceptSlot);
    connect(m_pCreateBackup, &VlCheckBox::clicked, this, &dlgUpdateDatasetVersion::ClickedCreateBackupSlot);
    connect(m_pVersion, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &dlgUpdateDatasetVersion::VersionKindChangedSlot);
    if (!m_pDSVersion)
        return;
    CDSVersion* engine = m_pDSVersion;
    connect(engine, &CDSVersion::SignalDownloadDataSetReady, this, &dlgUpdateDatasetVersion::DownloadDataSetReadySlot);
    connect(engine, &CDSVersion::SignalNewDSVersionStarted, this, &dlgUpdateDatasetVersion::NewVersionStartedSlot);
    connect(engine, &CDSVersion::SignalDownloadError, this, &dlgUpdateDatasetVersion::DownloadErrorSlot);
    // The queue goes on after one failed dataset; its end must not hide that failure.
    connect(engine, &CDSVersion::SignalDownloadDataSetError, this, &dlgUpdateDatasetVersion::DownloadErrorSlot);
    connect(engine, &CDSVersion::SignalChangePercent, this, &dlgUpdateDatasetVersion::ChangePercentSlot);
    connect(engine, &CDSVersion::SignalUnzippProduct, this, &dlgUpdateDatasetVersion::UnzippProductSlot);
    connect(engine, &CDSVersion::SignalInstallReady, this, &dlgUpdateDatasetVersion::InstallReadySlot);
    connect(engine, &CDSVersion::SignalDownloadDataset, this, &dlgUpdateDatasetVersion::DownloadDatasetSlot);
    connect(engine, &CDSVersion::SignalWriteResult, this, &dlgUpdateDatasetVersion::WriteResultSlot);
    connect(engine, &CDSVersion::SignalWriteResult, this, &dlgUpdateDatasetVersion::InstallResultSlot);
    connect(engine, &CDSVersion::SignalBeginCopyThead, this, &dlgUpdateDatasetVersion::BeginCopyTheadSlot);
    connect(engine, &CDSVersion::SignalFileWritten, this, &dlgUpdateDatasetVersion::FileWrittenSlot);
    connect(engine, &CDSVersion::SignalDownloadProgress, this, &dlgUpdateDatasetVersion::DownloadProgressSlot);
    connect(engine, &CDSVersion::SignalCheckHighVersionFinished, this, &dlgUpdateDatasetVersion::SearchFinishedSlot);
}

QString dlgUpdateDatasetVersion::ServerItemText() const
{
    // Without a version the item would read "Cycle V.  R. 1".
    if (CDSVersion::cutDig(m_pDSVersion->GetNewVersion()).isEmpty())
        return tr("No cycle from the Velmora-Server");
    return tr("Cycle V. %1 R. %2 ( Velmora-Server )")
        .arg(CDSVersion::cutDig(m_pDSVersion->GetNewVersion()), m_pDSVersion->GetNewRevision());
}

QString dlgUpdateDatasetVersion::LocalItemText() const
{
    return tr("Cycle V. %1 R. %2 ( Local )")
        .arg(CDSVersion::cutDig(m_pDSVersion->GetLocalVersionText()), m_pDSVersion->GetLocalRevision());
}

void dlgUpdateDatasetVersion::InitVersionCmb()
{
    if (!m_pDSVersion)
        return;
    // Refilling is no choice of the user's: the version kind stays as it is.
    const QSignalBlocker blocker(m_pVersion);
    m_pVersion->clear();
    m_pVersion->addItem(ServerItemText(), QStringLiteral("Server"));
    if (!m_pDSVersion->GetLocalVersionText().isEmpty())
        m_pVersion->addItem(LocalItemText(), QStringLiteral("Local"));
    else
        m_pDSVersion->SetLocalVersion(false);
    m_pVersion->setCurrentIndex(IsLocalKind() ? 1 : 0);
    UpdateVersionCmb();
}

bool dlgUpdateDatasetVersion::IsLocalKind() const
{
    return m_pDSVersion && m_pDSVersion->GetLocalVersion();
}

bool dlgUpdateDatasetVersion::HasNewVersion() const
{
    return m_bNewVersion;
}

void dlgUpdateDatasetVersion::UpdateVersionCmb()
{
    const bool accepted = m_pOverwriteAccept->isChecked();
    if (IsLocalKind()) {
        m_pDetailsPane->GetShowButton()->setEnabled(true);
        m_pDetailsPane->GetHideButton()->setEnabled(true);
        m_pDownload->hide();
        m_pInstall->show();
        m_pInstall->setEnabled(accepted);
    } else {
        m_pDetailsPane->GetShowButton()->setEnabled(false);
        m_pDetailsPane->GetHideButton()->setEnabled(false);
        m_pDownload->show();
        m_pDownload->setEnabled(accepted && HasNewVersion());
        m_pInstall->hide();
    }
    if (m_pRetry && !m_pRetry->isHidden()) {
        m_pDownload->hide();
        m_pInstall->hide();
    }
    SetStepButton(StepButton(), false);
    ShowCycleDates();
}

void dlgUpdateDatasetVersion::ShowCycleDates()
{
    if (!m_pDSVersion || !m_pCycleDates)
        return;
    const QString cycle =
        CDSVersion::cutDig(IsLocalKind() ? m_pDSVersion->GetLocalVersionText() : m_pDSVersion->GetNewVersion());
    QString text = VlCycleDates::Validity(cycle);
    const QString expiry = VlCycleDates::Expiry(cycle, VlCycleDates::Today());
    if (!expiry.isEmpty())
        text += QStringLiteral(", ") + expiry;
    m_pCycleDates->setText(text);
    m_pCycleDates->setVisible(!text.isEmpty());
    VlColors::SetTextColor(m_pCycleDates, expiry.isEmpty() ? VlColors::DialogText() : VlColors::Warning());
}

QString dlgUpdateDatasetVersion::GetCycleDatesText() const
{
    return m_pCycleDates ? m_pCycleDates->text() : QString();
}

VlPushButton* dlgUpdateDatasetVersion::StepButton() const
{
    // Nothing new on offer: reinstalling the local copy stays possible, but Return only closes.
    if (m_iState == StateUpToDate || (m_iState == StateNoList && m_pRetry->isHidden()))
        return nullptr;
    for (VlPushButton* button : {m_pDownload, m_pInstall, m_pRetry})
        if (!button->isHidden() && button->isEnabled())
            return button;
    return nullptr;
}

void dlgUpdateDatasetVersion::VersionKindChangedSlot(int index)
{
    if (index != 1 && m_pDetailsPane->IsOpen())
        m_pDetailsPane->Close();
    if (m_pDSVersion)
        m_pDSVersion->SetLocalVersion(index == 1);
    UpdateVersionCmb();
}

void dlgUpdateDatasetVersion::SetState(int state)
{
    m_iState = state;
    UpdateCtrls();
}

void dlgUpdateDatasetVersion::UpdateCtrls()
{
    const QString version = m_pDSVersion ? m_pDSVersion->GetNewVersion() : QString();
    // Once a run has begun the gate and the choices stay as they were when it started.
    const bool running = m_iState == StateDownloading || m_iState == StateInstallPressed ||
                         m_iState == StateInstalling || m_iState == StateInstalled;
    m_pOverwriteAccept->setEnabled(!running);
    const bool failed =
        (m_iState == StateNoList || m_iState == StateDownloadFailed) && m_pDSVersion && m_pDSVersion->GetLastFailure().IsSet();
    m_pRetry->setVisible(failed);
    m_pRetry->setEnabled(failed);
    // One button at a time in the cell: after a failure the step on offer is the repeat.
    if (failed) {
        m_pDownload->hide();
        m_pInstall->hide();
    }
    if (m_iState != StateDownloaded && m_iState != StateBarReset && m_iState != StateBarZero)
        ShowReason(QString());

    switch (m_iState) {
    case StateNewVersion:
        ShowMessage(version + QLatin1Char(' ') + tr("ready for download."));
        if (!IsLocalKind()) {
            m_pDownload->show();
            m_pDownload->setEnabled(m_pOverwriteAccept->isChecked());
        }
        break;
    case StateNoList:
        if (failed)
            ShowFailure(QStringLiteral("versionList.txt") + QLatin1Char(' ') + tr("Download failed."));
        else
            ShowMessage(tr("There are no new updates available."));
        break;
    case StateReadyToInstall:
        ShowMessage(tr("Cycle %1 is downloaded and ready to install.")
                        .arg(CDSVersion::cutDig(m_pDSVersion->GetLocalVersionText())));
        // The server may be out of reach; what is on disk can still be installed.
        ShowReason(m_pDSVersion->GetLastFailure().UserText());
        break;
    case StateUpToDate:
        // The list was read and offers nothing newer: the user is up to date.
        ShowMessage(tr("There are no new updates available."));
        break;
    case StateDownloading:
        ShowMessage(tr("Run download."));
        m_pDownload->setEnabled(false);
        GetProgressBar()->setRange(0, 100);
        GetProgressBar()->setValue(0);
        GetProgressBar()->setEnabled(true);
        m_pVersion->setEnabled(false);
        m_pCreateBackup->setEnabled(false);
        break;
    case StateDownloaded: {
        QString text = tr("Update") + QLatin1Char(' ') + version + QLatin1Char(' ') + tr("downloaded.");
        const int errors = m_pDSVersion ? m_pDSVersion->GetErrorCount() : 0;
        if (errors > 0)
            text += QLatin1Char(' ') + tr("Error") + QString::asprintf(" (%d) ", errors);
        ShowMessage(text, errors > 0);
        // What went wrong with the datasets that did not arrive.
        ShowReason(errors > 0 && m_pDSVersion->GetLastFailure().IsSet() ? m_pDSVersion->GetLastFailure().UserText()
                                                                       : QString());
        SetProgressText(QString());
        m_pDownload->hide();
        m_pInstall->show();
        m_pInstall->setEnabled(true);
        break;
    }
    case StateDownloadFailed:
        SetProgressText(QString());
        ShowFailure(m_strDataset + QLatin1Char(' ') + tr("Download failed."));
        break;
    case StateInstallPressed:
        ShowMessage(tr("Run install."));
        // Enabled, so that the product it names can be read.
        GetProgressBar()->setEnabled(true);
        ShowBusyBar();
        m_pInstall->setEnabled(false);
        m_pCreateBackup->setEnabled(false);
        break;
    case StateInstalled:
        m_pInstall->hide();
        m_pDownload->hide();
        SetProgressText(QString());
        ShowReady(tr("Install ready."));
        break;
    case StateInstalling:
        ShowMessage(QString());
        m_pInstall->setEnabled(false);
        m_pDownload->hide();
        m_pDownload->setEnabled(false);
        m_pVersion->setEnabled(false);
        m_pCreateBackup->setEnabled(false);
        break;
    case StateBarReset:
        GetProgressBar()->setRange(0, 100);
        GetProgressBar()->setValue(0);
        m_pCreateBackup->setEnabled(false);
        break;
    case StateBarZero:
        GetProgressBar()->setValue(0);
        break;
    default:
        ShowMessage(QString());
        break;
    }
    const bool stateChanged = m_iState != StateBarReset && m_iState != StateBarZero;
    SetStepButton(StepButton(), stateChanged && isVisible());
}

void dlgUpdateDatasetVersion::ShowFailure(const QString& fileText)
{
    const CFailureReason& failure = m_pDSVersion->GetLastFailure();
    if (failure.CouldNotConnect())
        ShowMessage(tr("Failed to connect to Velmora-Server."), true);
    else
        ShowMessage(fileText, true);
    ShowReason(failure.UserText());
}

bool dlgUpdateDatasetVersion::CheckProductsSelected()
{
    if (HasProductsToRun())
        return true;
    // "ist" is how the message has always read.
    CMessageBox::critical(tr("The Product-Select-List ist empty.") + QLatin1Char('\n') +
                          tr("Please select products for update."));
    return false;
}

void dlgUpdateDatasetVersion::ClickedOverwriteAcceptSlot()
{
    const bool accepted = m_pOverwriteAccept->isChecked();
    if (m_pDSVersion)
        m_pDSVersion->SetNavDataOverwriteAccept(accepted);
    m_pDownload->setEnabled(accepted && HasNewVersion());
    m_pInstall->setEnabled(accepted);
    SetStepButton(StepButton(), false);
}

void dlgUpdateDatasetVersion::ClickedCreateBackupSlot()
{
    if (m_pDSVersion)
        m_pDSVersion->SetCreateBackupFiles(m_pCreateBackup->isChecked());
}

void dlgUpdateDatasetVersion::ClickedDownloadSlot()
{
    if (!m_pDSVersion || !m_pOverwriteAccept->isChecked())
        return;
    // Nothing changes when there is nothing to download for.
    if (!CheckProductsSelected())
        return;
    m_pDSVersion->ResetResult();
    m_strDataset.clear();
    m_eLastStep = EStep::Download;
    m_pRetry->hide();
    SetState(StateDownloading);
    m_pDSVersion->SetProductList(GetDataModel()->GetProductList());
    m_pDSVersion->DownloadNewDSVersion();
}

void dlgUpdateDatasetVersion::ClickedInstallSlot()
{
    if (!m_pDSVersion || !m_pOverwriteAccept->isChecked())
        return;
    if (!CheckProductsSelected())
        return;
    m_pDSVersion->ResetResult();
    SetState(StateInstallPressed);
    SetState(StateInstalling);
    RunDatasetInstall();
}

void dlgUpdateDatasetVersion::RunDatasetInstall()
{
    if (!m_pDSVersion)
        return;
    SetState(StateInstalling);
    // One unpack serves a whole install group.
    QSet<const void*> groups;
    for (CProduct* product : ProductsToRun())
        groups.insert(product->GetInstallGroup() ? static_cast<const void*>(product->GetInstallGroup())
                                                 : static_cast<const void*>(product));
    m_iInstallCount = groups.size();
    m_iInstallIndex = 0;
    m_pDSVersion->SetProductList(GetDataModel()->GetProductList());
    m_pDSVersion->InstallProducts();
}

void dlgUpdateDatasetVersion::ClickedRetrySlot()
{
    if (!m_pDSVersion)
        return;
    m_pRetry->hide();
    if (m_eLastStep == EStep::Download) {
        ClickedDownloadSlot();
        return;
    }
    ShowMessage(tr("Run download."));
    ShowReason(QString());
    m_pDSVersion->SearchForNewVersion(true);
}

void dlgUpdateDatasetVersion::SearchFinishedSlot()
{
    // The answer to a search this dialog repeated: the dialog starts over from it.
    m_pDSVersion->InitLocalVersion();
    m_pDSVersion->SetLocalVersion(!m_pDSVersion->GetLocalVersionText().isEmpty() &&
                                  !m_pDSVersion->NewDSVersionAvailable());
    m_iState = StartState();
    InitVersionCmb();
    UpdateCtrls();
}

void dlgUpdateDatasetVersion::DownloadProgressSlot(qint64 received, qint64 total, double bytesPerSecond)
{
    if (m_iState != StateDownloading)
        return;
    const QStringList& queue = m_pDSVersion->GetDatasetQueue();
    QString text = tr("%1 (%2 of %3)").arg(m_strDataset).arg(queue.indexOf(m_strDataset) + 1).arg(queue.size());
    if (total > 0)
        text += QStringLiteral(" — ") + (inMegabytes(total) ? tr("%1 of %2 MB") : tr("%1 of %2 kB"))
                                            .arg(inUnit(received, inMegabytes(total)), inUnit(total, inMegabytes(total)));
    else if (received > 0)
        text += QStringLiteral(" — ") + (inMegabytes(received) ? tr("%1 MB") : tr("%1 kB"))
                                            .arg(inUnit(received, inMegabytes(received)));
    if (bytesPerSecond > 0)
        text += QStringLiteral(", ") + DownloadManager::speedText(bytesPerSecond).trimmed();
    SetProgressText(text);
}

void dlgUpdateDatasetVersion::showEvent(QShowEvent* event)
{
    DlgDatasetRun::showEvent(event);
    // The keyboard starts where the next step is: the overwrite consent while it is missing,
    // else the button that takes the step.
    if (!m_pOverwriteAccept->isChecked() && (m_iState == StateNewVersion || m_iState == StateReadyToInstall))
        m_pOverwriteAccept->setFocus(Qt::OtherFocusReason);
    else
        SetStepButton(StepButton(), true);
}

void dlgUpdateDatasetVersion::done(int result)
{
    const bool waiting = m_iState == StateDownloaded || m_iState == StateReadyToInstall;
    if (waiting && !m_bLeaveAsked && isVisible()) {
        m_bLeaveAsked = true;
        const QString cycle = CDSVersion::cutDig(m_pDSVersion->GetLocalVersionText());
        if (!CMessageBox::ask(tr("Cycle %1 is downloaded but not installed yet.").arg(cycle) + QLatin1Char('\n') +
                                  tr("Leave it for later? You can install it from the Update button at any time."),
                              tr("Leave for later"), this)) {
            SetStepButton(StepButton(), true);
            return;
        }
    }
    DlgDatasetRun::done(result);
}

void dlgUpdateDatasetVersion::ClickedShowDetailsSlot()
{
    m_pDetailsPane->Open();
}

void dlgUpdateDatasetVersion::ClickedHideDetailsSlot()
{
    m_pDetailsPane->Close();
}

void dlgUpdateDatasetVersion::DownloadDataSetReadySlot()
{
    m_iState = StateDownloaded;
    if (m_pDSVersion)
        m_pDSVersion->InitLocalVersion();
    InitVersionCmb();
    UpdateCtrls();
}

void dlgUpdateDatasetVersion::DownloadErrorSlot()
{
    // The first failed dataset is the one the message names.
    if (m_iState == StateDownloadFailed)
        return;
    SetState(StateDownloadFailed);
}

void dlgUpdateDatasetVersion::ChangePercentSlot(int percent)
{
    GetProgressBar()->setValue(percent);
}

void dlgUpdateDatasetVersion::UnzippProductSlot(QString name)
{
    ShowMessage(VlPushButton::Plain(tr("Install")) + QLatin1Char(' ') + name);
    m_iInstallIndex = qMin(m_iInstallIndex + 1, qMax(1, m_iInstallCount));
    SetProgressText(tr("Installing %1 (%2 of %3)").arg(name).arg(m_iInstallIndex).arg(qMax(1, m_iInstallCount)));
}

void dlgUpdateDatasetVersion::InstallReadySlot()
{
    SetState(StateInstalled);
}

void dlgUpdateDatasetVersion::InstallResultSlot(QString text)
{
    Q_UNUSED(text)
    // A crashed unzip ends the install with its failure line and no ready signal; the dialog
    // ends there too instead of waiting for ever.
    const bool installing = m_iState == StateInstallPressed || m_iState == StateInstalling;
    if (installing && m_pDSVersion && !m_pDSVersion->IsInstallRunning())
        SetState(StateInstalled);
}

void dlgUpdateDatasetVersion::DownloadDatasetSlot(QString dataset)
{
    GetProgressBar()->setValue(0);
    if (m_iState == StateDownloadFailed)
        return;
    ShowMessage(VlPushButton::Plain(tr("Download")) + QLatin1Char(' ') + dataset);
    m_strDataset = dataset;
    DownloadProgressSlot(0, -1, 0.0);
}

void dlgUpdateDatasetVersion::BeginCopyTheadSlot(quint64 total)
{
    m_copyTotal = total;
    GetProgressBar()->setRange(0, 100);
    GetProgressBar()->setValue(0);
    if (total == 0)
        ShowMessage(tr("Error") + QStringLiteral(": ") + tr("not found new files"), true);
}

void dlgUpdateDatasetVersion::FileWrittenSlot(quint64 written)
{
    // Bytes can exceed what a bar holds, so the bar shows the share written.
    if (m_copyTotal > 0)
        GetProgressBar()->setValue(int(qMin<quint64>(100, written * 100 / m_copyTotal)));
}

void dlgUpdateDatasetVersion::CloseDlg(bool ok)
{
    Q_UNUSED(ok)
    if (!m_pDSVersion)
        return;
    // A stopped download still reports its end; the closed dialog no longer follows the run.
    disconnect(m_pDSVersion, nullptr, this, nullptr);
    m_pDSVersion->StopDownload();
    m_pDSVersion->StopInstall();
    m_pDSVersion->StopFileCopyThred();
}

QString dlgUpdateDatasetVersion::WarningText() const
{
    return tr("Overwritten Navdata-Files.");
}

void dlgUpdateDatasetVersion::retranslate()
{
    DlgDatasetRun::retranslate();
    if (!m_pDownload)
        return; // before Init
    m_pDownload->setText(tr("Download"));
    m_pInstall->setText(tr("Install"));
    m_pRetry->setText(tr("Retry"));
    m_pVersion->setAccessibleName(tr("Cycle to install"));
    m_pDetailsPane->SetCaptions(tr("Details"), tr("Details"));
    m_pOverwriteAccept->setText(tr("OverwriteAccept"));
    m_pCreateBackup->setText(tr("create cycle backup data"));
    ShowCycleDates();
    UpdateCtrls();
}
