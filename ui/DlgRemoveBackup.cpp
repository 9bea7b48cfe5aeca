#include "ui/DlgRemoveBackup.h"

#include "engine/CDSVersion.h"

DlgRemoveBackup::DlgRemoveBackup(QWidget* parent) : DlgBackupRun(parent) {}

void DlgRemoveBackup::ConnectEngine()
{
    if (!m_pDSVersion)
        return;
    connect(m_pDSVersion, &CDSVersion::SignalRemoveBackupProduct, this, &DlgRemoveBackup::RemoveBackupProductSlot);
    connect(m_pDSVersion, &CDSVersion::SignalRemoveBackupReady, this, &DlgRemoveBackup::RemoveBackupReadySlot);
}

void DlgRemoveBackup::RunEngine(CProductList* products)
{
    m_pDSVersion->RemoveBackup(products);
}

void DlgRemoveBackup::ClickedRemoveBackupSlot()
{
    StartRun();
}

void DlgRemoveBackup::RemoveBackupProductSlot(QString name)
{
    ShowProduct(name);
}

void DlgRemoveBackup::RemoveBackupReadySlot()
{
    ShowReadyState();
}

void DlgRemoveBackup::CloseDlg(bool ok)
{
    Q_UNUSED(ok)
    if (m_pDSVersion)
        m_pDSVersion->StopRemoveBackup();
}

QString DlgRemoveBackup::WarningText() const
{
    return tr("RemoveBackup Navdata-Files.");
}

QString DlgRemoveBackup::ActionText() const
{
    return tr("RemoveBackup");
}

QString DlgRemoveBackup::RunningText() const
{
    return tr("Run RemoveBackup.");
}

QString DlgRemoveBackup::ReadyText() const
{
    return tr("RemoveBackup ready.");
}

QString DlgRemoveBackup::TouchLine(const QString& names, const QString& cycle) const
{
    return tr("%1: the backup of cycle %2 is deleted").arg(names, cycle);
}

QString DlgRemoveBackup::NoBackupLine(const QString& names) const
{
    return tr("%1: no backup to delete").arg(names);
}

QString DlgRemoveBackup::SharedFolderLine() const
{
    return tr("(they share one folder and one backup)");
}
