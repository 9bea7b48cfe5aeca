#include "ui/DlgResetDataset.h"

#include "engine/CDSVersion.h"

DlgResetDataset::DlgResetDataset(QWidget* parent) : DlgBackupRun(parent) {}

void DlgResetDataset::ConnectEngine()
{
    if (!m_pDSVersion)
        return;
    connect(m_pDSVersion, &CDSVersion::SignalResetProduct, this, &DlgResetDataset::ResetProductSlot);
    connect(m_pDSVersion, &CDSVersion::SignalResetReady, this, &DlgResetDataset::ResetReadySlot);
}

void DlgResetDataset::RunEngine(CProductList* products)
{
    m_pDSVersion->Reset(products);
}

void DlgResetDataset::ClickedResetSlot()
{
    StartRun();
}

void DlgResetDataset::ResetProductSlot(QString name)
{
    ShowProduct(name);
}

void DlgResetDataset::ResetReadySlot()
{
    ShowReadyState();
}

void DlgResetDataset::CloseDlg(bool ok)
{
    Q_UNUSED(ok)
    if (m_pDSVersion)
        m_pDSVersion->StopReset();
}

QString DlgResetDataset::WarningText() const
{
    return tr("Reset Navdata-Files.");
}

QString DlgResetDataset::ActionText() const
{
    return tr("Reset");
}

QString DlgResetDataset::RunningText() const
{
    return tr("Run reset.");
}

QString DlgResetDataset::ReadyText() const
{
    return tr("Reset ready.");
}
