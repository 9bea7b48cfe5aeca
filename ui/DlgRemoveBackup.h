#pragma once

#include "ui/DlgBackupRun.h"

// Deletes the backups of the navigation files of the selected products, or of one product.
class DlgRemoveBackup : public DlgBackupRun
{
    Q_OBJECT

public:
    enum
    {
        StateRunning = 16,
        StateReady = 17,
    };

    explicit DlgRemoveBackup(QWidget* parent = nullptr);

public slots:
    void ClickedRemoveBackupSlot();
    void RemoveBackupProductSlot(QString name);
    void RemoveBackupReadySlot();
    void CloseDlg(bool ok) override;

protected:
    int InitialHeight() const override { return 275; }
    int RunningState() const override { return StateRunning; }
    int ReadyState() const override { return StateReady; }
    QString WarningText() const override;
    QString ActionText() const override;
    QString RunningText() const override;
    QString ReadyText() const override;
    void ConnectEngine() override;
    void RunEngine(CProductList* products) override;
    QString TouchLine(const QString& names, const QString& cycle) const override;
    QString NoBackupLine(const QString& names) const override;
    QString SharedFolderLine() const override;
};
