#include "ui/DlgVLSettings.h"

#include "app/Application.h"
#include "app/CMessageBox.h"
#include "engine/CDSVersion.h"
#include "model/CDataModel.h"
#include "ui/VlBigComboBox.h"
#include "ui/VlCheckBox.h"
#include "ui/VlColors.h"
#include "ui/VlPushButton.h"
#include "ui/wdgBackupLocal.h"

#include <QAction>
#include <QDir>
#include <QFontMetrics>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLocale>

namespace {
const char* const kGroupStyle = R"(
QGroupBox {
    color: rgb(50, 50, 62);
    font-weight: bold;
    border: 1px solid rgb(165, 165, 175);
    border-radius: 5px;
    margin-top: 1.1em;
    background: rgba(255, 255, 255, 90);
}
QGroupBox::title { subcontrol-origin: margin; left: 10px; padding: 0 4px; }
)";

// Each language is named in itself, so that a user who cannot read the current one finds his own.
QString languageItemText(const QString& key)
{
    const QLocale locale(key);
    // Qt's own name of American English is "American English"; the language is English.
    QString language = locale.language() == QLocale::English ? QLocale::languageToString(QLocale::English)
                                                              : locale.nativeLanguageName();
    if (!language.isEmpty())
        language[0] = language.at(0).toUpper();
    QString country = locale.nativeCountryName();
    if (country.isEmpty() || country == QLatin1String("UnitedStates"))
        country = QLocale::countryToString(locale.country());
    if (country == QLatin1String("UnitedStates"))
        country = QStringLiteral("United States");
    return language + QStringLiteral(" (") + country + QLatin1Char(')');
}
} // namespace

DlgVLSettings::DlgVLSettings(QWidget* parent) : DlgBase(parent)
{
    // The backup panel's plain buttons take the dialogs' look too.
    setStyleSheet(QLatin1String(kGroupStyle) + VlPushButton::StyleSheet());
}

void DlgVLSettings::Init(CDataModel* model, QString title)
{
    DlgBase::Init(model, title);
    InitCtrls();
    InitSlots();
    retranslate();
}

QGroupBox* DlgVLSettings::CreateManagerBox(VlCheckBox*& autoBox, VlPushButton*& runButton)
{
    auto* box = new QGroupBox(this);
    box->setMinimumHeight(110);
    autoBox = new VlCheckBox(box);
    runButton = new VlPushButton(box);
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(30, 0, 0, 5);
    grid->setColumnStretch(1, 1);
    grid->addWidget(autoBox, 0, 0, 1, 2);
    grid->addWidget(runButton, 1, 0);
    return box;
}

void DlgVLSettings::InitCtrls()
{
    QGridLayout* content = GetContentLayout();

    m_pLanguageCaption = new QLabel(this);
    VlColors::SetTextColor(m_pLanguageCaption, VlColors::DialogText());
    m_pLanguage = new VlBigComboBox(this);
    m_pLanguage->setMinimumWidth(200);
    auto* languageRow = new QGridLayout;
    languageRow->setContentsMargins(8, 0, 10, 0);
    languageRow->setColumnStretch(2, 1);
    languageRow->addWidget(m_pLanguageCaption, 0, 0);
    languageRow->addWidget(m_pLanguage, 0, 1);
    content->addLayout(languageRow, 0, 0);

    m_pQuillmarkBox = CreateManagerBox(m_pQuillmarkAuto, m_pQuillmarkRun);
    m_pDatasetsBox = CreateManagerBox(m_pDatasetsAuto, m_pDatasetsRun);
    auto* boxes = new QGridLayout;
    boxes->setContentsMargins(0, 5, 0, 0);
    boxes->addWidget(m_pQuillmarkBox, 0, 0);
    boxes->addWidget(m_pDatasetsBox, 0, 1);
    content->addLayout(boxes, 1, 0);

    m_pRestore = new VlPushButton(this);
    auto* restoreRow = new QGridLayout;
    restoreRow->setContentsMargins(10, 15, 10, 10);
    restoreRow->setColumnStretch(1, 1);
    restoreRow->addWidget(m_pRestore, 0, 0);
    content->addLayout(restoreRow, 2, 0);

    m_pBackup = new wdgBackupLocal(this);
    m_pBackup->Init(GetDataModel());
    content->addWidget(m_pBackup, 3, 0);

    if (CDataModel* model = GetDataModel()) {
        m_pQuillmarkAuto->setChecked(model->GetQuillmarkAutoUpdate());
        m_pDatasetsAuto->setChecked(model->GetDSAutoUpdate());
    }
    InitLangCmb();

    // Every choice applies at once, so there is nothing to cancel.
    GetCancelButton()->hide();
}

void DlgVLSettings::InitLangCmb()
{
    const QStringList keys = Application::availableLanguages();
    for (const QString& key : keys)
        m_pLanguage->addItem(languageItemText(key), key);
    connect(m_pLanguage, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &DlgVLSettings::handleSelectionChanged);
    const int current = m_pLanguage->findData(Application::GetLanguage());
    if (current >= 0)
        m_pLanguage->setCurrentIndex(current);
}

void DlgVLSettings::InitSlots()
{
    connect(m_pQuillmarkRun, &VlPushButton::clicked, this, &DlgVLSettings::ClickedQuillmarkRunUpdate);
    connect(m_pDatasetsRun, &VlPushButton::clicked, this, &DlgVLSettings::ClickedAddOnDatasetsRunUpdate);
    if (CDataModel* model = GetDataModel())
        connect(model, &CDataModel::SignalDownloadVersionFinished, this, &DlgVLSettings::DownlodVersionTxtFinishedSlot);
    connect(m_pRestore, &VlPushButton::clicked, this, &DlgVLSettings::ClickedRestoreQMKDefaultSettings);
    connect(m_pQuillmarkAuto, &VlCheckBox::toggled, this, &DlgVLSettings::UpdateProps);
    connect(m_pDatasetsAuto, &VlCheckBox::toggled, this, &DlgVLSettings::UpdateProps);
}

void DlgVLSettings::retranslate()
{
    DlgBase::retranslate();
    if (!m_pLanguage)
        return; // before Init
    m_pLanguageCaption->setText(tr("Language:"));
    m_pLanguageCaption->setBuddy(m_pLanguage);
    m_pQuillmarkBox->setTitle(tr("Quillmark Update-Manager"));
    m_pDatasetsBox->setTitle(tr("AddOn-Dataset Update-Manager"));
    m_pQuillmarkAuto->setText(tr("auto update"));
    m_pDatasetsAuto->setText(tr("auto update"));
    m_pQuillmarkRun->setText(tr("run updater manually"));
    m_pDatasetsRun->setText(tr("run updater manually"));
    // Two buttons with one caption: a screen reader tells them apart by their names.
    m_pQuillmarkRun->setAccessibleName(tr("Check for a new Quillmark now"));
    m_pDatasetsRun->setAccessibleName(tr("Check for new navigation data now"));
    m_pRestore->setText(tr("Restore Quillmark default settings"));
    m_pBackup->retranslate();
    // A group box does not widen for its title; keep each title whole in every language.
    for (QGroupBox* box : {m_pQuillmarkBox, m_pDatasetsBox}) {
        QFont bold = box->font();
        bold.setBold(true);
        box->setMinimumWidth(0);
        box->setMinimumWidth(
            qMax(box->minimumSizeHint().width(), QFontMetrics(bold).horizontalAdvance(box->title()) + 30));
    }
}

void DlgVLSettings::ClickedQuillmarkRunUpdate()
{
    if (CDataModel* model = GetDataModel()) {
        m_pQuillmarkRun->setEnabled(false);
        model->RunUpdateQuillmark();
    }
}

void DlgVLSettings::DownlodVersionTxtFinishedSlot()
{
    m_pQuillmarkRun->setEnabled(true);
}

void DlgVLSettings::ClickedAddOnDatasetsRunUpdate()
{
    if (CDataModel* model = GetDataModel())
        model->RunUpdateAddOnDatasets(nullptr);
}

void DlgVLSettings::ClickedRestoreQMKDefaultSettings()
{
    // The settings file goes for good: the user learns what that costs before it happens.
    if (!CMessageBox::ask(tr("Restore the default settings and start Quillmark again?") + QLatin1Char('\n') +
                              tr("Quillmark forgets the language, the automatic update checks, the simulator "
                                 "folders and each product's folder and selection. Installed navigation data "
                                 "and backups stay as they are."),
                          VlPushButton::Plain(tr("Restore Quillmark default settings")), this))
        return;
    m_pRestore->setEnabled(false);
    if (CDataModel* model = GetDataModel())
        model->RestoreQMKDefaultSettings();
}

void DlgVLSettings::UpdateProps()
{
    if (CDataModel* model = GetDataModel()) {
        model->SetQuillmarkAutoUpdate(m_pQuillmarkAuto->isChecked());
        model->SetDSAutoUpdate(m_pDatasetsAuto->isChecked());
    }
}

void DlgVLSettings::handleSelectionChanged(int index)
{
    const QVariant data = m_pLanguage->itemData(index);
    if (data.type() == QVariant::String)
        Application::setLanguage(data.toString());
}

void DlgVLSettings::setLanguage(QAction* action)
{
    if (action && action->data().type() == QVariant::String)
        Application::setLanguage(action->data().toString());
}

void DlgVLSettings::CloseDlg(bool ok)
{
    DlgBase::CloseDlg(ok);
    if (CDataModel* model = GetDataModel())
        model->GetDSVersion()->StopZipBackProcess();
    QDir::setCurrent(Application::st_strAppPath);
}
