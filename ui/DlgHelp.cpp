#include "ui/DlgHelp.h"

#include "app/Application.h"
#include "app/CMessageBox.h"
#include "model/CDataModel.h"
#include "ui/VlColors.h"
#include "ui/VlFonts.h"
#include "ui/VlPushButton.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QPixmap>
#include <QUrl>

DlgHelp::DlgHelp(QWidget* parent) : DlgBase(parent)
{
    resize(460, 300);
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
    for (QLabel* label : {m_pName, m_pAbout, m_pManualLink})
        VlColors::SetTextColor(label, VlColors::DialogText());

    content->setVerticalSpacing(10);
    content->addWidget(logo, 0, 0, Qt::AlignLeft);
    content->addWidget(m_pName, 1, 0);
    content->addWidget(m_pAbout, 2, 0);
    content->addWidget(m_pManualLink, 3, 0);
    content->setRowStretch(4, 1);

    // Nothing to decide here: one button closes.
    GetCancelButton()->hide();
    retranslate();
}

QString DlgHelp::ManualPath()
{
    // A manual in the user's language ("Manual_de.pdf") wins over the English one when present.
    const QString language = Application::GetTwoLetterLanguage();
    const QString localised =
        Application::st_strAppPath + QStringLiteral("/Manual_") + language + QStringLiteral(".pdf");
    if (!language.isEmpty() && QFileInfo(localised).isFile())
        return localised;
    return Application::st_strAppPath + QStringLiteral("/Manual.pdf");
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
        tr("Settings: %1").arg(QDir::toNativeSeparators(CDataModel::SettingsFilePath())) + QLatin1Char('\n') +
        tr("Logs: %1").arg(QDir::toNativeSeparators(Application::st_strAppPath + QStringLiteral("/log"))));
    m_pManualLink->setText(QStringLiteral("<a href=\"%1\" style=\"color: rgb(40, 80, 150);\">%2</a>")
                               .arg(QUrl::fromLocalFile(ManualPath()).toString(), tr("Open manual").toHtmlEscaped()));
}

void DlgHelp::OpenManualSlot()
{
    const QString path = ManualPath();
    if (!QFileInfo(path).isFile()) {
        CMessageBox::critical(tr("The manual %1 was not found.").arg(QDir::toNativeSeparators(path)), tr("Error"),
                              this);
        return;
    }
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(path)))
        CMessageBox::critical(tr("No program to show %1 was found.").arg(QDir::toNativeSeparators(path)), tr("Error"),
                              this);
}
