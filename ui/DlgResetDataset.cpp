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

QString DlgResetDataset::TouchLine(const QString& names, const QString& cycle) const
{
    return tr("%1: back to cycle %2").arg(names, cycle);
}

QString DlgResetDataset::NoBackupLine(const QString& names) const
{
    return tr("%1: no backup, nothing to reset").arg(names);
}

QString DlgResetDataset::SharedFolderLine() const
{
    return tr("(they share one folder and are reset together)");
}
