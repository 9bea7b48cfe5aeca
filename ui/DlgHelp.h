#pragma once

#include "ui/DlgBase.h"

class QLabel;
class VlPushButton;

// "About Quillmark": what the program is, which server it talks to, where it keeps its files,
// the link that opens the manual, and what support asks for: the log folder and a diagnostics
// text on the clipboard.
class DlgHelp : public DlgBase
{
    Q_OBJECT

public:
    explicit DlgHelp(QWidget* parent = nullptr);

    void Init(CDataModel* model, QString title);
    void retranslate() override;

    // The manual the build puts next to the program, in the current language when there is one.
    static QString ManualPath();
    // Version, folders, server and the last lines of every log, the archive password masked.
    static QString Diagnostics(const CDataModel* model);
    QLabel* GetManualLink() const { return m_pManualLink; }
    QLabel* GetAboutText() const { return m_pAbout; }
    VlPushButton* GetLogFolderButton() const { return m_pLogFolder; }
    VlPushButton* GetDiagnosticsButton() const { return m_pDiagnostics; }
    QLabel* GetStatusLabel() const { return m_pStatus; }

public slots:
    void OpenManualSlot();
    void ClickedOpenLogFolder();
    void ClickedCopyDiagnostics();

private:
    void OpenLocal(const QString& path);

    QLabel* m_pName = nullptr;
    QLabel* m_pAbout = nullptr;
    QLabel* m_pManualLink = nullptr;
    VlPushButton* m_pLogFolder = nullptr;
    VlPushButton* m_pDiagnostics = nullptr;
    QLabel* m_pStatus = nullptr;
    bool m_bCopied = false;
};
