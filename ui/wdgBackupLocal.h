#pragma once

#include "app/VlAtom.h"

#include <QString>
#include <QWidget>

#include <functional>

class CDataModel;
class CDSVersion;
class QGroupBox;
class QLabel;
class QProgressBar;
class QPushButton;

// The "Backup" panel of the settings dialog: saves the local cycle data as one ZIP archive and
// loads such an archive back.
class wdgBackupLocal : public QWidget, public VlAtom
{
    Q_OBJECT

public:
    // Asks the user for an archive path; empty when cancelled. Tests replace it so that no
    // dialog ever blocks.
    struct FileRequest
    {
        QString title;
        QString startDir;
        QString proposedName; // empty when opening an existing file
        bool save = false;
    };
    using FileDialogHook = std::function<QString(QWidget* parent, const FileRequest& request)>;
    static FileDialogHook setFileDialogHook(FileDialogHook hook);

    explicit wdgBackupLocal(QWidget* parent = nullptr);

    void Init(CDataModel* model);
    void retranslate() override;
    static QString GetVelmoraDir(QString path);
    // Where both file dialogs start: GetVelmoraDir of the program folder when it is portable, else
    // the user's documents.
    static QString StartFolder();

    QString GetStatusText() const;
    bool IsBusy() const;
    QPushButton* GetCreateButton() const { return m_pCreateButton; }

public slots:
    void ClickedCreateBackup();
    void ClickedLoadBackup();
    void ZipBackProcessFinishedSlot(bool ok);
    void UnZipBackProcessFinishedSlot(bool ok);

protected:
    void changeEvent(QEvent* event) override;

private:
    void Run(QString status);
    void Stop(QString status);
    QString AskFile(const FileRequest& request);

    static FileDialogHook st_fileDialogHook;

    CDSVersion* m_pEngine = nullptr;
    QGroupBox* m_pBox = nullptr;
    QLabel* m_pInfo = nullptr;
    QLabel* m_pStatus = nullptr;
    QProgressBar* m_pProgress = nullptr;
    QPushButton* m_pCreateButton = nullptr;
    QPushButton* m_pLoadButton = nullptr;
};
