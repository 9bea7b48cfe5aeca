#pragma once

#include "ui/DlgBase.h"

#include <QString>

class CDSVersion;
class CProduct;
class QGridLayout;
class QLabel;
class QProgressBar;
class VlFoldPane;
class VlMessageLabel;
class VlPushButton;

// What the update, reset and backup-removal dialogs share: each is a thin view of one run of the
// dataset engine with a state number, a message line, a progress bar, the fold-out product list
// and result panes and an "Attention:" warning. The subclasses build their rows from these parts
// and turn their states into what the controls show.
class DlgDatasetRun : public DlgBase
{
    Q_OBJECT

public:
    explicit DlgDatasetRun(QWidget* parent = nullptr);

    int GetState() const { return m_iState; }
    CDSVersion* GetDSVersion() const { return m_pDSVersion; }
    VlMessageLabel* GetMessageLabel() const { return m_pMessage; }
    QProgressBar* GetProgressBar() const { return m_pProgress; }
    VlFoldPane* GetProductsPane() const { return m_pProductsPane; }
    VlFoldPane* GetResultPane() const { return m_pResultPane; }

    VlMessageLabel* GetReasonLabel() const { return m_pReason; }
    // The products the run serves: the one of a card's run, else every selected one.
    QList<CProduct*> ProductsToRun() const;
    // Text of the product-select pane: the products the run serves, one a line.
    QString ProductSelectText() const;
    // Whether the run has any product to work on (a single product, or at least one selected).
    bool HasProductsToRun() const;

    void retranslate() override;

public slots:
    void ClickedShowProductsSlot();
    void ClickedHideProductsSlot();
    void ClickedShowResultSlot();
    void ClickedHideResultSlot();
    void WriteResultSlot(QString text);

protected:
    // Takes the engine and clears its last result; call from Init after DlgBase::Init.
    void InitRun();
    // The rows, each added below the previous one of the content layout.
    void AddProductRow();
    void AddSeparator();
    // "Attention:" and the warning line; `extra` (a check box) goes below them when given.
    void AddWarningBox(QWidget* extra = nullptr);
    void AddMessageRow();
    void AddProgressRow();
    // The action buttons, right-aligned in one cell; only one of them shows at a time.
    void AddButtonCell(VlPushButton* first, VlPushButton* second, VlPushButton* third = nullptr);
    // Return presses `step` (Ok when null), and with `focus` the keyboard goes there too.
    void SetStepButton(VlPushButton* step, bool focus);
    int NextRow() const;
    // The preferred height, or more when the rows need it, with room for a pane's margins so
    // that a fold-out pane grows the dialog by exactly its own height.
    void FitHeight(int preferred);

    // Message := text, coloured as an error when `error`.
    void ShowMessage(const QString& text, bool error = false);
    // The line under the message that says what went wrong and what to do; empty hides it.
    void ShowReason(const QString& text);
    // Text inside the progress bar; empty shows none, so an idle bar does not read "0%".
    void SetProgressText(const QString& text);
    // The end of a run: its message with the engine's error count (in error colour) when it
    // counted any, a full bar, and only "Ok" left to press.
    void ShowReady(const QString& readyText);
    // A run in progress without a measure: the bar moves without a value.
    void ShowBusyBar();

    // The warning under "Attention:", in the current language.
    virtual QString WarningText() const = 0;

    CDSVersion* m_pDSVersion = nullptr;
    int m_iState = 0;

private:
    VlMessageLabel* m_pMessage = nullptr;
    VlMessageLabel* m_pReason = nullptr;
    QProgressBar* m_pProgress = nullptr;
    VlFoldPane* m_pProductsPane = nullptr;
    VlFoldPane* m_pResultPane = nullptr;
    QLabel* m_pProductsTitle = nullptr;
    QLabel* m_pAttention = nullptr;
    QLabel* m_pWarning = nullptr;
    QString m_strResult;
};
