#include "engine/CDSVersion.h"

#include "engine/CRunJournal.h"
#include "model/CInstallGroup.h"
#include "model/CProduct.h"
#include "model/CProductList.h"

// Reset and backup removal: one walk, two flavours.

// A reset or backup-removal run over the list starts with every product unprocessed and the
// selected ones in the run's state.
void CDSVersion::PrepareBackupRun(CProductList* list, EQMKProductInstallState runState)
{
    for (int i = 0; i < list->GetSize(); ++i) {
        CProduct* product = list->GetByIndex(i);
        if (!product)
            continue;
        product->SetResetOrUpdateDone(false);
        if (product->GetUpdate()) {
            product->SetErrorText(QString());
            product->SetInstallState(runState);
        }
    }
}

void CDSVersion::Reset(CProductList* list)
{
    StartWalk(Walk::Reset, list);
}

void CDSVersion::RemoveBackup(CProductList* list)
{
    StartWalk(Walk::RemoveBackup, list);
}

void CDSVersion::StartWalk(Walk walk, CProductList* list)
{
    const bool reset = walk == Walk::Reset;
    m_log.WriteString(reset ? QStringLiteral("--Reset Datasets") : QStringLiteral("--RemoveBackup Datasets"), false);
    m_pProductList = list;
    (reset ? m_iResetIndex : m_iRemoveBackupIndex) = -1;
    if (!list)
        return;
    // A run cut off earlier is dealt with first: a backup it still needs is never deleted.
    RecoverInterruptedRuns(list);
    BeginRun(reset ? ERun::Reset : ERun::RemoveBackup);
    if (!m_pSingleProduct)
        PrepareBackupRun(list, reset ? QMK_STATE_RESET_RUN : QMK_STATE_REMOVE_BACKUP_RUN);
    WalkNextProduct(walk);
}

void CDSVersion::ResetNextProduct()
{
    WalkNextProduct(Walk::Reset);
}

void CDSVersion::RemoveBackupNextProduct()
{
    WalkNextProduct(Walk::RemoveBackup);
}

void CDSVersion::ResetSelProduct()
{
    WalkSelProduct(Walk::Reset);
}

void CDSVersion::RemoveBackupSelProduct()
{
    WalkSelProduct(Walk::RemoveBackup);
}

void CDSVersion::WalkNextProduct(Walk walk)
{
    int& index = walk == Walk::Reset ? m_iResetIndex : m_iRemoveBackupIndex;
    const ERun run = walk == Walk::Reset ? ERun::Reset : ERun::RemoveBackup;
    for (;;) {
        // After a stop no further product is touched.
        if (!IsActiveRun(run))
            return;
        ++index;
        if (!m_pProductList)
            return;
        if (index >= m_pProductList->GetSize()) {
            EndRun(run);
            if (walk == Walk::Reset)
                emit SignalResetReady();
            else
                emit SignalRemoveBackupReady();
            return;
        }
        if (m_pSingleProduct) {
            WalkSelProduct(walk);
            return;
        }
        CProduct* product = m_pProductList->GetByIndex(index);
        if (!product || product->GetResetOrUpdateDone())
            continue;
        if (!product->GetUpdate()) {
            product->SetInstallState(QMK_STATE_NOT_INSTALLED);
            if (walk == Walk::Reset)
                emit SignalResetProduct(product->GetName());
            else
                emit SignalRemoveBackupProduct(product->GetName());
            continue;
        }
        if (WalkProduct(walk, product, false))
            return;
    }
}

void CDSVersion::WalkSelProduct(Walk walk)
{
    if (!IsActiveRun(walk == Walk::Reset ? ERun::Reset : ERun::RemoveBackup))
        return;
    int& index = walk == Walk::Reset ? m_iResetIndex : m_iRemoveBackupIndex;
    index = m_pProductList ? m_pProductList->GetSize() : 0;
    CProduct* product = m_pSingleProduct;
    if (!product)
        return;
    const EQMKProductInstallState running = walk == Walk::Reset ? QMK_STATE_RESET_RUN : QMK_STATE_REMOVE_BACKUP_RUN;
    if (product->GetInstallGroup())
        product->GetInstallGroup()->SetInstallState(running);
    else
        product->SetInstallState(running);
    if (!WalkProduct(walk, product, true))
        WalkNextProduct(walk);
}

// Starts the worker for one product; false when the product failed at once and the walk goes on.
bool CDSVersion::WalkProduct(Walk walk, CProduct* product, bool single)
{
    const bool reset = walk == Walk::Reset;
    auto announce = [&] {
        if (reset)
            emit SignalResetProduct(product->GetName());
        else
            emit SignalRemoveBackupProduct(product->GetName());
    };
    CInstallGroup* group = product->GetInstallGroup();

    if (!product->InitNewInstallPaths(false)) {
        if (group)
            group->SetInstallState(QMK_STATE_INSTALL_ERROR);
        else
            product->SetInstallState(QMK_STATE_INSTALL_ERROR);
        WriteResult(tr("Path") + QLatin1Char(' ') + tr("not found") + QLatin1Char(' ') + product->GetName(), true);
        announce();
        return false;
    }

    QString backupVersion = product->GetBackCycleVersion();
    backupVersion += product->GetBackRevision();
    if (backupVersion.isEmpty()) {
        // Nothing recorded as backed up: nothing to restore or delete.
        const QStringList names = group ? group->GetProdNames() : QStringList{product->GetName()};
        if (group) {
            if (!single)
                group->SetResetOrUpdateTrue(product);
            group->SetInstallState(QMK_STATE_INSTALL_ERROR);
        } else {
            product->SetInstallState(QMK_STATE_INSTALL_ERROR);
        }
        for (const QString& name : names)
            WriteResult(tr("not found") + QStringLiteral(" backup ") + tr("for") + QLatin1Char(' ') + name, true);
        announce();
        return false;
    }

    announce();
    // A receiver of the announcement may have stopped the run.
    if (!IsActiveRun(reset ? ERun::Reset : ERun::RemoveBackup))
        return true;
    if (reset) {
        m_log.WriteString(QStringLiteral("#Product-Reset <") + product->GetName() + QLatin1Char('>'), false);
        CRunJournal::Entry entry;
        entry.run = CRunJournal::ERun::Reset;
        entry.id = CRunJournal::NewId();
        entry.product = product->GetName();
        entry.dataset = product->GetDataset();
        entry.fromCycle = CRunJournal::InstalledCycle(product);
        entry.toCycle = CRunJournal::BackedUpCycle(product);
        const QString journal = CRunJournal::PathFor(product);
        QString error;
        if (!journal.isEmpty() && !CRunJournal::Write(journal, entry, &error)) {
            // Without the record a cut-off reset could strand originals: nothing is moved.
            m_log.WriteString(QStringLiteral("!!ERROR ") + error, false);
            product->SetInstallState(QMK_STATE_INSTALL_ERROR);
            WriteResult(tr("Reset failed") + QLatin1Char(' ') + product->GetName(), true);
            return false;
        }
        m_strJournal = journal;
        m_fileResetThread.Init(product, product->GetCycleInfoFile());
        m_pWorkerProduct = product;
        StartWorker(m_fileResetThread);
    } else {
        m_log.WriteString(
            (single ? QStringLiteral("#Product-RemoveBackup <") : QStringLiteral("#Product-Remove-Backup <")) +
                product->GetName() + QLatin1Char('>'),
            false);
        m_fileRemoveBackupThread.Init(product);
        m_pWorkerProduct = product;
        StartWorker(m_fileRemoveBackupThread);
    }
    return true;
}

// The end is reported for the product whose worker has just ended, so that each product gets its
// own result line and its install group is marked done.
void CDSVersion::FileResetThreadFinishedSlot()
{
    if (!m_strJournal.isEmpty())
        CRunJournal::Remove(m_strJournal);
    m_strJournal.clear();
    CProduct* product = m_pSingleProduct ? m_pSingleProduct : m_pWorkerProduct;
    WalkThreadFinished(Walk::Reset, product, m_fileResetThread.GetSuccess());
}

void CDSVersion::FileRemoveBackupThreadFinishedSlot()
{
    CProduct* product = m_pSingleProduct ? m_pSingleProduct : m_pWorkerProduct;
    WalkThreadFinished(Walk::RemoveBackup, product, m_fileRemoveBackupThread.GetSuccess());
}

void CDSVersion::WalkThreadFinished(Walk walk, CProduct* product, bool success)
{
    const bool reset = walk == Walk::Reset;
    if (product) {
        if (!success) {
            product->SetInstallState(QMK_STATE_INSTALL_ERROR);
            WriteResult((reset ? tr("Reset failed") : tr("Remove backup failed")) + QLatin1Char(' ') +
                            product->GetName(),
                        true);
        } else {
            QString cycle, revision;
            if (reset) {
                cycle = product->GetCycleVersion();
                revision = product->GetRevision();
            }
            product->SetInstallState(QMK_STATE_INSTALL_OK);
            if (CInstallGroup* group = product->GetInstallGroup()) {
                // The group shares the folders, so every member is done with this one.
                group->SetResetOrUpdateTrue(product);
                group->SetInstallState(QMK_STATE_INSTALL_OK);
                for (const QString& name : group->GetProdNames()) {
                    if (reset)
                        WriteResult(tr("Reset success") + QLatin1Char(' ') + name + QStringLiteral(" ( V. ") + cycle +
                                        QStringLiteral(" R. ") + revision + QStringLiteral(" )"),
                                    false);
                    else
                        WriteResult(tr("Remove backup success") + QLatin1Char(' ') + name, false);
                }
            }
        }
    }
    m_log.WriteString(reset ? QStringLiteral("FileResetThreadFinishedSlot")
                            : QStringLiteral("FileRemoveBackupThreadFinishedSlot"),
                      false);
    WalkNextProduct(walk);
}

// One stop for both walks: the run ends first, so that the worker's end and anything queued
// behind it is dropped; then the worker is stopped before its next file.
void CDSVersion::StopWalk(Walk walk)
{
    const bool reset = walk == Walk::Reset;
    if (StopRun(reset ? ERun::Reset : ERun::RemoveBackup))
        m_log.WriteString(reset ? QStringLiteral("StopReset") : QStringLiteral("StopRemoveBackup"), false);
    if (reset)
        StopWorker(m_fileResetThread, "FileResetThread");
    else
        StopWorker(m_fileRemoveBackupThread, "FileRemoveBackupThread");
    // A reset cut off here keeps its record on disk; the next run or start-up completes it.
    m_strJournal.clear();
    SetFinishedStateProducts();
}

void CDSVersion::StopReset()
{
    StopWalk(Walk::Reset);
}

void CDSVersion::StopRemoveBackup()
{
    StopWalk(Walk::RemoveBackup);
}
