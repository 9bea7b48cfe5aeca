#pragma once

#include "ui/DlgBase.h"

class QLabel;

// "About Quillmark": what the program is, which server it talks to, where it keeps its files,
// and the link that opens the manual.
class DlgHelp : public DlgBase
{
    Q_OBJECT

public:
    explicit DlgHelp(QWidget* parent = nullptr);

    void Init(CDataModel* model, QString title);
    void retranslate() override;

    // The manual the build puts next to the program, in the current language when there is one.
    static QString ManualPath();
    QLabel* GetManualLink() const { return m_pManualLink; }
    QLabel* GetAboutText() const { return m_pAbout; }

public slots:
    void OpenManualSlot();

private:
    QLabel* m_pName = nullptr;
    QLabel* m_pAbout = nullptr;
    QLabel* m_pManualLink = nullptr;
};
