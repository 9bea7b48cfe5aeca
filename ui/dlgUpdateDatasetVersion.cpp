#include "ui/dlgUpdateDatasetVersion.h"

#include "app/CMessageBox.h"
#include "engine/CDSVersion.h"
#include "engine/DownloadManager.h"
#include "model/CDataModel.h"
#include "ui/VlBigComboBox.h"
#include "ui/VlCheckBox.h"
#include "ui/VlFoldPane.h"
#include "ui/VlLineCtrl.h"
#include "ui/VlMessageLabel.h"
#include "ui/VlPushButton.h"

#include <QGridLayout>
#include <QLabel>
#include <QNetworkReply>
#include <QProgressBar>

namespace {
// The server could not be reached or dropped the connection, as opposed to an HTTP answer
// refusing one file. A failed TLS attempt is retried over plain HTTP and so says nothing here.
bool isConnectionFailure(int code)
{
    switch (code) {
    case QNetworkReply::ConnectionRefusedError:
    case QNetworkReply::RemoteHostClosedError:
    case QNetworkReply::HostNotFoundError:
    case QNetworkReply::TimeoutError:
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::NetworkSessionFailedError:
    case QNetworkReply::UnknownNetworkError:
    case QNetworkReply::ProxyConnectionRefusedError:
    case QNetworkReply::ProxyNotFoundError:
        return true;
    default:
        return false;
    }
}
} // namespace

dlgUpdateDatasetVersion::dlgUpdateDatasetVersion(QWidget* parent) : DlgDatasetRun(parent) {}

void dlgUpdateDatasetVersion::Init(CDataModel* model, QString title)
{
    resize(450, 445);
    m_iState = 0;
    DlgBase::Init(model, title);
    InitRun();
    if (m_pDSVersion && m_pDSVersion->InitLocalVersion().isEmpty())
        m_pDSVersion->SetLocalVersion(false);
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
    m_pDownload->setMinimumWidth(180);
    m_pInstall->setMinimumWidth(180);
    m_pDownload->setEnabled(false);
    m_pInstall->setEnabled(false);
    m_pInstall->hide();
    AddButtonCell(m_pDownload, m_pInstall);

    m_bNewVersion = m_pDSVersion && m_pDSVersion->NewDSVersionAvailable();
    if (m_bNewVersion)
        m_iState = StateNewVersion;
    else if (!m_pDSVersion || m_pDSVersion->IsVersionListEmpty())
        m_iState = StateNoList;
    else
        m_iState = StateUpToDate;
    InitVersionCmb();
    UpdateCtrls();
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
}

QString dlgUpdateDatasetVersion::ServerItemText() const
{
    return QStringLiteral("Cycle V. ") + CDSVersion::cutDig(m_pDSVersion->GetNewVersion()) + QStringLiteral(" R. ") +
           m_pDSVersion->GetNewRevision() + QStringLiteral(" ( Velmora-Server )");
}

QString dlgUpdateDatasetVersion::LocalItemText() const
{
    return QStringLiteral("Cycle V. ") + CDSVersion::cutDig(m_pDSVersion->GetLocalVersionText()) +
           QStringLiteral(" R. ") + m_pDSVersion->GetLocalRevision() + QStringLiteral(" ( Local )");
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
    const int lastError = DownloadManager::stLastError;
    // Once a run has begun the gate and the choices stay as they were when it started.
    const bool running = m_iState == StateDownloading || m_iState == StateInstallPressed ||
                         m_iState == StateInstalling || m_iState == StateInstalled;
    m_pOverwriteAccept->setEnabled(!running);

    switch (m_iState) {
    case StateNewVersion:
        ShowMessage(version + QLatin1Char(' ') + tr("ready for download."));
        if (!IsLocalKind()) {
            m_pDownload->show();
            m_pDownload->setEnabled(m_pOverwriteAccept->isChecked());
        }
        break;
    case StateNoList:
        if (lastError != 0)
            ShowMessage(tr("Failed to connect to Velmora-Server."), true);
        else
            ShowMessage(tr("There are no new updates available."));
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
        m_pDownload->hide();
        m_pInstall->show();
        m_pInstall->setEnabled(true);
        break;
    }
    case StateDownloadFailed:
        if (isConnectionFailure(lastError))
            ShowMessage(tr("Failed to connect to Velmora-Server."), true);
        else
            ShowMessage(m_strDataset + QLatin1Char(' ') + tr("Download failed."));
        break;
    case StateInstallPressed:
        ShowMessage(tr("Run install."));
        ShowBusyBar();
        m_pInstall->setEnabled(false);
        m_pCreateBackup->setEnabled(false);
        break;
    case StateInstalled:
        m_pInstall->hide();
        m_pDownload->hide();
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
    m_pDSVersion->SetProductList(GetDataModel()->GetProductList());
    m_pDSVersion->InstallProducts();
}

void dlgUpdateDatasetVersion::RunDatasetInstall()
{
    if (!m_pDSVersion)
        return;
    SetState(StateInstalling);
    m_pDSVersion->SetProductList(GetDataModel()->GetProductList());
    m_pDSVersion->InstallProducts();
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
    ShowMessage(tr("Install") + QLatin1Char(' ') + name);
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
    ShowMessage(tr("Download") + QLatin1Char(' ') + dataset);
    m_strDataset = dataset;
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
    m_pDetailsPane->SetCaptions(tr("Details"), tr("Details"));
    m_pOverwriteAccept->setText(tr("OverwriteAccept"));
    m_pCreateBackup->setText(tr("create cycle backup data"));
    UpdateCtrls();
}
