#include "ui/DlgHelp.h"

#include "app/Application.h"
#include "app/CAppPaths.h"
#include "app/CMessageBox.h"
#include "app/CMyLog.h"
#include "engine/CDSVersion.h"
#include "model/CDataModel.h"
#include "ui/VlColors.h"
#include "ui/VlFonts.h"
#include "ui/VlPushButton.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPixmap>
#include <QSysInfo>
#include <QUrl>

namespace {
const int kDiagnosticLogLines = 200;

QString native(const QString& path)
{
    return QDir::toNativeSeparators(path);
}

QStringList lastLines(const QString& path, int count)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {QStringLiteral("(") + file.errorString() + QLatin1Char(')')};
    // The logs are written as Latin-1 with CR LF.
    QStringList lines = QString::fromLatin1(file.readAll()).remove(QLatin1Char('\r')).split(QLatin1Char('\n'));
    if (lines.size() > count)
        lines = lines.mid(lines.size() - count);
    return lines;
}
} // namespace

DlgHelp::DlgHelp(QWidget* parent) : DlgBase(parent)
{
    resize(460, 360);
}

void DlgHelp::Init(CDataModel* model, QString title)
{
    DlgBase::Init(model, title);
    QGridLayout* content = GetContentLayout();

    auto* logo = new QLabel(this);
    logo->setPixmap(QPixmap(QStringLiteral(":/images/Quillmark.png")));
    m_pName = new QLabel(this);
    m_pName->setFont(VlFonts::Relative(4, QFont::Bold));
    m_pAbout = new QLabel(this);
    m_pAbout->setWordWrap(true);
    m_pAbout->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_pManualLink = new QLabel(this);
    m_pManualLink->setTextFormat(Qt::RichText);
    m_pManualLink->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    connect(m_pManualLink, &QLabel::linkActivated, this, &DlgHelp::OpenManualSlot);
    m_pLogFolder = new VlPushButton(this);
    m_pDiagnostics = new VlPushButton(this);
    connect(m_pLogFolder, &QPushButton::clicked, this, &DlgHelp::ClickedOpenLogFolder);
    connect(m_pDiagnostics, &QPushButton::clicked, this, &DlgHelp::ClickedCopyDiagnostics);
    m_pStatus = new QLabel(this);
    for (QLabel* label : {m_pName, m_pAbout, m_pManualLink, m_pStatus})
        VlColors::SetTextColor(label, VlColors::DialogText());

    auto* support = new QHBoxLayout;
    support->addWidget(m_pLogFolder);
    support->addWidget(m_pDiagnostics);
    support->addStretch(1);

    content->setVerticalSpacing(10);
    content->addWidget(logo, 0, 0, Qt::AlignLeft);
    content->addWidget(m_pName, 1, 0);
    content->addWidget(m_pAbout, 2, 0);
    content->addWidget(m_pManualLink, 3, 0);
    content->addLayout(support, 4, 0);
    content->addWidget(m_pStatus, 5, 0);
    content->setRowStretch(6, 1);

    // Nothing to decide here: one button closes.
    GetCancelButton()->hide();
    retranslate();
}

QString DlgHelp::ManualPath()
{
    // A manual in the user's language ("Manual_de.pdf") wins over the English one when present.
    const QString language = Application::GetTwoLetterLanguage();
    const QString folder = CAppPaths::ShippedFolder();
    const QString localised = folder + QStringLiteral("/Manual_") + language + QStringLiteral(".pdf");
    if (!language.isEmpty() && QFileInfo(localised).isFile())
        return localised;
    return folder + QStringLiteral("/Manual.pdf");
}

QString DlgHelp::Diagnostics(const CDataModel* model)
{
    // For support, who read English: the headings are not translated, like the logs.
    QStringList text{
        QStringLiteral("Quillmark ") + Application::st_strVersion,
        QStringLiteral("System: ") + QSysInfo::prettyProductName() + QStringLiteral(", Qt ") +
            QString::fromLatin1(qVersion()),
        QStringLiteral("Language: ") + Application::GetLanguage(),
        QStringLiteral("Server: ") + (model ? model->GetServer() : QString()),
        QStringLiteral("Program folder: ") + native(CAppPaths::ShippedFolder()),
        QStringLiteral("User data folder: ") + native(CAppPaths::DataFolder()) +
            (CAppPaths::IsPortable() ? QStringLiteral(" (portable)") : QString()),
        QStringLiteral("Settings: ") + native(CAppPaths::SettingsFile()),
        QStringLiteral("Logs: ") + native(CAppPaths::LogFolder()),
        QStringLiteral("Downloads: ") + native(CAppPaths::DownloadFolder()),
    };
    const QDir logs(CAppPaths::LogFolder());
    for (const QFileInfo& log : logs.entryInfoList(QDir::Files, QDir::Name)) {
        text << QString() << QStringLiteral("== %1 (last %2 lines) ==").arg(log.fileName()).arg(kDiagnosticLogLines);
        text << lastLines(log.filePath(), kDiagnosticLogLines);
    }
    // Logs written by older versions still hold the password in their unzip lines.
    return CDSVersion::MaskArchivePassword(text.join(QLatin1Char('\n')) + QLatin1Char('\n'));
}

void DlgHelp::retranslate()
{
    DlgBase::retranslate();
    if (!m_pAbout)
        return; // before Init
    m_pName->setText(tr("Quillmark %1").arg(Application::st_strVersion));
    const QString server = GetDataModel() ? GetDataModel()->GetServer() : QString();
    QStringList keys;
    if (GetDataModel())
        for (const CMinisign::PublicKey& key : GetDataModel()->GetTrustedKeys())
            keys << CMinisign::KeyIdText(key.keyId);
    const QString checks = GetDataModel() && !GetDataModel()->VerifiesDownloads()
                               ? tr("Downloads: not verified, the catalogue names no public key")
                               : tr("Downloads: signed, checked with the key %1").arg(keys.join(QStringLiteral(", ")));
    m_pAbout->setText(
        tr("Quillmark keeps the navigation data (AIRAC cycles) of your flight-simulator add-ons up to date: it "
           "downloads the newest cycle, installs it with a backup of every replaced file, and can restore or remove "
           "those backups.") +
        QStringLiteral("\n\n") + tr("Server: %1").arg(server) + QLatin1Char('\n') + checks + QLatin1Char('\n') +
        tr("Settings: %1").arg(native(CAppPaths::SettingsFile())) + QLatin1Char('\n') +
        tr("Logs: %1").arg(native(CAppPaths::LogFolder())) + QLatin1Char('\n') +
        tr("Download folder: %1").arg(native(CAppPaths::DownloadFolder())));
    m_pManualLink->setText(QStringLiteral("<a href=\"%1\" style=\"color: rgb(40, 80, 150);\">%2</a>")
                               .arg(QUrl::fromLocalFile(ManualPath()).toString(), tr("Open manual").toHtmlEscaped()));
    m_pLogFolder->setText(tr("Open log folder"));
    m_pDiagnostics->setText(tr("Copy diagnostics"));
    m_pStatus->setText(m_bCopied ? tr("Diagnostics copied to the clipboard.") : QString());
}

void DlgHelp::OpenManualSlot()
{
    const QString path = ManualPath();
    if (!QFileInfo(path).isFile()) {
        CMessageBox::critical(tr("The manual %1 was not found.").arg(native(path)), tr("Error"), this);
        return;
    }
    OpenLocal(path);
}

void DlgHelp::ClickedOpenLogFolder()
{
    // Made if missing, so the user sees the folder rather than an error.
    OpenLocal(CMyLog::CreateLogDirectory());
}

void DlgHelp::ClickedCopyDiagnostics()
{
    QGuiApplication::clipboard()->setText(Diagnostics(GetDataModel()));
    m_bCopied = true;
    retranslate();
}

void DlgHelp::OpenLocal(const QString& path)
{
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(path)))
        CMessageBox::critical(tr("No program to show %1 was found.").arg(native(path)), tr("Error"), this);
}
