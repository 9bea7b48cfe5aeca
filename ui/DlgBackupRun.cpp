#include "ui/DlgBackupRun.h"

#include "engine/CDSVersion.h"
#include "model/CDataModel.h"
#include "ui/VlFoldPane.h"
#include "ui/VlPushButton.h"

DlgBackupRun::DlgBackupRun(QWidget* parent) : DlgDatasetRun(parent) {}

void DlgBackupRun::Init(CDataModel* model, QString title)
{
    resize(420, InitialHeight());
    m_iState = 0;
    DlgBase::Init(model, title);
    InitRun();
    InitCtrls();
    connect(m_pAction, &VlPushButton::clicked, this, &DlgBackupRun::StartRun);
    ConnectEngine();
    if (m_pDSVersion)
        connect(m_pDSVersion, &CDSVersion::SignalWriteResult, this, &DlgBackupRun::WriteResultSlot);
    retranslate();
    FitHeight(InitialHeight());
}

void DlgBackupRun::InitCtrls()
{
    AddProductRow();
    AddSeparator();
    AddWarningBox();
    AddSeparator();
    AddMessageRow();
    AddProgressRow();
    m_pAction = new VlPushButton(this);
    m_pAction->setMinimumWidth(180);
    m_pSecond = new VlPushButton(this);
    m_pSecond->setMinimumWidth(180);
    m_pSecond->setEnabled(false);
    m_pSecond->hide();
    AddButtonCell(m_pAction, m_pSecond);
    UpdateCtrls();
}

void DlgBackupRun::UpdateCtrls()
{
    if (m_iState == RunningState()) {
        ShowMessage(RunningText());
        ShowBusyBar();
        m_pAction->setEnabled(false);
    } else if (m_iState == ReadyState()) {
        // Once per opening: after the run only closing is left.
        m_pAction->hide();
        ShowReady(ReadyText());
    } else {
        ShowMessage(QString());
    }
}

void DlgBackupRun::StartRun()
{
    if (!m_pDSVersion || m_iState != 0)
        return;
    m_pDSVersion->ResetResult();
    m_iState = RunningState();
    UpdateCtrls();
    RunEngine(GetDataModel()->GetProductList());
}

void DlgBackupRun::ShowProduct(const QString& name)
{
    ShowMessage(ActionText() + QLatin1Char(' ') + name);
}

void DlgBackupRun::ShowReadyState()
{
    // The end of a run that this opening did not start belongs to nobody here.
    if (m_iState != RunningState())
        return;
    m_iState = ReadyState();
    UpdateCtrls();
}

void DlgBackupRun::retranslate()
{
    DlgDatasetRun::retranslate();
    if (!m_pAction)
        return; // before Init
    m_pAction->setText(ActionText());
    if (m_iState == RunningState())
        ShowMessage(RunningText());
}
