#pragma once

#include "ui/DlgDatasetRun.h"

#include <QString>

class CProductList;
class QLabel;
class VlPushButton;

// The reset and backup-removal dialogs: a warning, one action button that runs the engine once
// per opening, and the busy bar until the engine reports the end. The two differ only in texts,
// state numbers and the engine's calls.
class DlgBackupRun : public DlgDatasetRun
{
    Q_OBJECT

public:
    explicit DlgBackupRun(QWidget* parent = nullptr);

    void Init(CDataModel* model, QString title);
    void InitCtrls();
    void UpdateCtrls();
    VlPushButton* GetActionButton() const { return m_pAction; }
    QLabel* GetTouchedLabel() const { return m_pTouched; }
    // One line per product or install group the run touches, with the cycle its backup holds.
    QString TouchedText() const;

    void retranslate() override;

protected:
    // What each dialog says and does.
    virtual int InitialHeight() const = 0;
    virtual int RunningState() const = 0;
    virtual int ReadyState() const = 0;
    virtual QString ActionText() const = 0;
    virtual QString RunningText() const = 0;
    virtual QString ReadyText() const = 0;
    virtual void ConnectEngine() = 0;
    virtual void RunEngine(CProductList* products) = 0;
    // A line of the touched list: `names` and the cycle of their backup, or no backup.
    virtual QString TouchLine(const QString& names, const QString& cycle) const = 0;
    virtual QString NoBackupLine(const QString& names) const = 0;
    virtual QString SharedFolderLine() const = 0;

    // The action button pressed, a product reached, the run over.
    void StartRun();
    void ShowProduct(const QString& name);
    void ShowReadyState();

private:
    VlPushButton* m_pAction = nullptr;
    VlPushButton* m_pSecond = nullptr;
    QLabel* m_pTouched = nullptr;
};
