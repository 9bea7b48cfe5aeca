#pragma once

#include "ui/DlgBackupRun.h"

// Restores the backed-up navigation files of the selected products, or of one product.
class DlgResetDataset : public DlgBackupRun
{
    Q_OBJECT

public:
    enum
    {
        StateRunning = 12,
        StateReady = 13,
    };

    explicit DlgResetDataset(QWidget* parent = nullptr);

public slots:
    void ClickedResetSlot();
    void ResetProductSlot(QString name);
    void ResetReadySlot();
    void CloseDlg(bool ok) override;

protected:
    int InitialHeight() const override { return 340; }
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
