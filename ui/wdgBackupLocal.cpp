#include "ui/wdgBackupLocal.h"

#include "app/Application.h"
#include "app/CAppPaths.h"
#include "app/CMessageBox.h"
#include "engine/CDSVersion.h"
#include "model/CDataModel.h"
#include "ui/VlProgressBar.h"
#include "ui/VlPushButton.h"

#include <QDir>
#include <QEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QStandardPaths>
#include <QVBoxLayout>

namespace {
QString runFileDialog(QWidget* parent, const wdgBackupLocal::FileRequest& request)
{
    QFileDialog dialog(parent, request.title, request.startDir);
    dialog.setWindowModality(Qt::WindowModal);
    dialog.setFileMode(request.save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog.setAcceptMode(request.save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    if (!request.proposedName.isEmpty())
        dialog.selectFile(request.proposedName);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return QString();
    return dialog.selectedFiles().constFirst();
}
} // namespace

wdgBackupLocal::FileDialogHook wdgBackupLocal::st_fileDialogHook = runFileDialog;

wdgBackupLocal::FileDialogHook wdgBackupLocal::setFileDialogHook(FileDialogHook hook)
{
    FileDialogHook previous = st_fileDialogHook;
    st_fileDialogHook = hook ? hook : FileDialogHook(runFileDialog);
    return previous;
}

wdgBackupLocal::wdgBackupLocal(QWidget* parent) : QWidget(parent)
{
    m_pBox = new QGroupBox(this);
    m_pInfo = new QLabel(m_pBox);
    m_pInfo->setWordWrap(true);
    m_pStatus = new QLabel(m_pBox);
    m_pProgress = new VlProgressBar(m_pBox);
    m_pCreateButton = new QPushButton(m_pBox);
    m_pLoadButton = new QPushButton(m_pBox);

    auto* grid = new QGridLayout(m_pBox);
    grid->addWidget(m_pInfo, 0, 0, 1, 2);
    grid->addWidget(m_pCreateButton, 1, 0);
    grid->addWidget(m_pLoadButton, 1, 1);
    grid->addWidget(m_pStatus, 2, 0, 1, 2);
    grid->addWidget(m_pProgress, 3, 0, 1, 2);
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(m_pBox);

    connect(m_pCreateButton, &QPushButton::clicked, this, &wdgBackupLocal::ClickedCreateBackup);
    connect(m_pLoadButton, &QPushButton::clicked, this, &wdgBackupLocal::ClickedLoadBackup);
    retranslate();
}

void wdgBackupLocal::Init(CDataModel* model)
{
    if (m_pEngine)
        disconnect(m_pEngine, nullptr, this, nullptr);
    m_pEngine = model ? model->GetDSVersion() : nullptr;
    if (!m_pEngine)
        return;
    connect(m_pEngine, &CDSVersion::SignalZipBackProcessFinished, this, &wdgBackupLocal::ZipBackProcessFinishedSlot);
    connect(m_pEngine, &CDSVersion::SignalUnZipBackProcessFinished, this,
            &wdgBackupLocal::UnZipBackProcessFinishedSlot);
}

void wdgBackupLocal::retranslate()
{
    m_pBox->setTitle(tr("Backup"));
    m_pInfo->setText(tr("Create backup info."));
    m_pCreateButton->setText(tr("Create backup"));
    m_pLoadButton->setText(tr("Load backup"));
}

void wdgBackupLocal::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

QString wdgBackupLocal::GetVelmoraDir(QString path)
{
    QString dir = QFileInfo(path).absoluteFilePath();
    for (int i = 0; i < 4; ++i)
        dir = QFileInfo(dir).absolutePath();
    return dir;
}

QString wdgBackupLocal::StartFolder()
{
    // Above an installed program folder (/usr/lib/quillmark) lies nothing the user may write.
    if (!CAppPaths::IsPortable())
        return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return GetVelmoraDir(Application::st_strAppPath);
}

QString wdgBackupLocal::GetStatusText() const
{
    return m_pStatus->text();
}

bool wdgBackupLocal::IsBusy() const
{
    return !m_pCreateButton->isEnabled();
}

QString wdgBackupLocal::AskFile(const FileRequest& request)
{
    return st_fileDialogHook ? st_fileDialogHook(this, request) : QString();
}

void wdgBackupLocal::ClickedCreateBackup()
{
    if (!m_pEngine)
        return;
    m_pEngine->ResetResult();
    m_pEngine->InitLocalVersion();
    if (m_pEngine->GetLocalVersionText().isEmpty()) {
        CMessageBox::critical(tr("backup empty"), tr("Error"), this);
        return;
    }
    FileRequest request;
    request.title = VlPushButton::Plain(tr("Create backup"));
    request.startDir = StartFolder();
    request.proposedName = QStringLiteral("Quillmark_") + CDSVersion::cutDig(m_pEngine->GetLocalVersionText()) +
                           QLatin1Char('_') + m_pEngine->GetLocalRevision() + QStringLiteral(".zip");
    request.save = true;
    const QString path = AskFile(request);
    if (path.isEmpty())
        return;
    Run(tr("Run create backup."));
    m_pEngine->CreateBackup(path);
}

void wdgBackupLocal::ClickedLoadBackup()
{
    if (!m_pEngine)
        return;
    FileRequest request;
    request.title = VlPushButton::Plain(tr("Load backup"));
    request.startDir = StartFolder();
    const QString path = AskFile(request);
    if (path.isEmpty())
        return;
    if (!QFileInfo(path).isFile()) {
        // The engine ignores a path that is not there; say so rather than stay busy.
        Stop(VlPushButton::Plain(tr("Load backup")) + QStringLiteral(": ") + tr("failed") + QStringLiteral(" (") +
             QDir::toNativeSeparators(path) + QStringLiteral(" ") + tr("not found") + QLatin1Char(')'));
        return;
    }
    Run(tr("Run load backup."));
    m_pEngine->LoadBackup(path);
}

void wdgBackupLocal::Run(QString status)
{
    m_pStatus->setText(status);
    m_pProgress->setValue(0);
    m_pProgress->setRange(0, 0);
    m_pCreateButton->setEnabled(false);
    m_pLoadButton->setEnabled(false);
}

void wdgBackupLocal::Stop(QString status)
{
    m_pStatus->setText(status);
    m_pProgress->setRange(0, 100);
    m_pProgress->setValue(0);
    m_pCreateButton->setEnabled(true);
    m_pLoadButton->setEnabled(true);
}

void wdgBackupLocal::ZipBackProcessFinishedSlot(bool ok)
{
    Stop(VlPushButton::Plain(tr("Create backup")) + QLatin1Char(' ') + (ok ? tr("successful") : tr("failed")));
}

void wdgBackupLocal::UnZipBackProcessFinishedSlot(bool ok)
{
    Stop(VlPushButton::Plain(tr("Load backup")) + QLatin1Char(' ') + (ok ? tr("successful") : tr("failed")));
}
