#pragma once

#include "app/VlAtom.h"

#include <QDialog>
#include <QPoint>
#include <QString>

class CDataModel;
class QGridLayout;
class QLabel;
class SystemButton;
class VlPushButton;

// Base of every dialog: frameless and self-painted, with its own title row, close button and
// "Ok" / "Cancel" row; it drags by its title band and opens centred on its parent. A dialog puts
// its controls into GetContentLayout() and overrides CloseDlg to stop its work.
//
// Every way out (Ok, Cancel, the close button, Escape, the window manager, a caller's done())
// passes through done(), which calls CloseDlg exactly once per opening.
class DlgBase : public QDialog, public VlAtom
{
    Q_OBJECT

public:
    static constexpr int kDragBand = 40;

    explicit DlgBase(QWidget* parent = nullptr);

    // The title is the untranslated text (mark it with QT_TRANSLATE_NOOP("DlgBase", ...)), so the
    // dialog can show it again in another language.
    void Init(CDataModel* model, QString title);

    CDataModel* GetDataModel() const { return m_pDataModel; }
    QGridLayout* GetContentLayout() const { return m_pContentLayout; }
    QLabel* GetTitleLabel() const { return m_pTitleLabel; }
    SystemButton* GetCloseButton() const { return m_pCloseButton; }
    VlPushButton* GetOkButton() const { return m_pOkButton; }
    VlPushButton* GetCancelButton() const { return m_pCancelButton; }

    void done(int result) override;
    void retranslate() override;

signals:
    void SignalClose(bool ok);

public slots:
    void okClicked();
    void cancelClicked();
    void CloseWindowSlot();
    void CloseSlot(bool ok);
    // Stops whatever the dialog runs. Called once for each time the dialog closes.
    virtual void CloseDlg(bool ok);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void Paint();

private:
    CDataModel* m_pDataModel = nullptr;
    QString m_strTitle;
    QPoint m_dragPosition;
    bool m_bDragging = false;
    bool m_bClosed = false;
    QLabel* m_pBackground = nullptr;
    QLabel* m_pTitleIcon = nullptr;
    QLabel* m_pTitleLabel = nullptr;
    SystemButton* m_pCloseButton = nullptr;
    QGridLayout* m_pContentLayout = nullptr;
    VlPushButton* m_pOkButton = nullptr;
    VlPushButton* m_pCancelButton = nullptr;
};
