#include "model/CDataModel.h"

#include "app/Application.h"
#include "app/CAppPaths.h"
#include "app/CMessageBox.h"
#include "model/CCategory.h"
#include "model/CDialogRoute.h"
#include "model/CFolderCache.h"
#include "model/CInstallGroup.h"
#include "model/CProduct.h"
#include "model/CXmlSection.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>
#include <QTimer>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

QString CDataModel::st_UserAppData;
QString CDataModel::st_UserDocuments;
QString CDataModel::st_CurrentUserDocuments;
QString CDataModel::st_ProgramFilesPath;

namespace {
const QString kApp = QStringLiteral("App");

QString boolText(bool on)
{
    return on ? QStringLiteral("1") : QStringLiteral("0");
}

// Only "1" (as a number) switches on; "true" does not. Users' files rely on that.
bool switchValue(const QString& text)
{
    return text.toInt() == 1;
}

} // namespace

CDataModel::CDataModel(QObject* parent) : QObject(parent)
{
    m_log.SetFileName(QStringLiteral("log_datamodel.txt"));
    m_log.WriteString(QStringLiteral("Init"), true);
    m_log.WriteString(QStringLiteral("Program folder: ") + CAppPaths::ShippedFolder(), false);
    m_log.WriteString(QStringLiteral("User data folder: ") + CAppPaths::DataFolder() +
                          (CAppPaths::IsPortable() ? QStringLiteral(" (portable)") : QString()),
                      false);
    // Settings without the switches leave the engine's own defaults.
    m_dsEngineFlags = GetPendingDSEngineFlags();
}

CDataModel::~CDataModel()
{
    // No worker may still walk a product that is about to go.
    m_dsVersion.Shutdown();
    // Groups first: they point at products.
    m_installGroups.Clear();
    m_products.Clear();
    m_categories.Clear();
    m_log.WriteString(QStringLiteral("Clear"), false);
}

void CDataModel::Init(QString version)
{
    m_strVersion = version;
    InitBase();
    InitProp();
    if (!m_bKeyNamed)
        m_log.WriteString(QStringLiteral("!!WARNING the catalogue names no PublicKey: downloads are not verified"),
                          false);
    else if (m_trustedKeys.isEmpty())
        m_log.WriteString(QStringLiteral("!!ERROR PublicKey of the catalogue holds no usable key: every download "
                                         "will be refused"),
                          false);
    // The version in force is the one the catalogue or the settings name, else the build's own;
    // the placeholder the application starts with is never compared with a release.
    if (Application::st_strVersion.isEmpty() || Application::st_strVersion == QLatin1String("MPLET"))
        Application::setApplicationVersionEx(QStringLiteral(QUILLMARK_BUILD_VERSION));
    m_strVersion = Application::st_strVersion;
    // Every product's folder is known from the start, not only once its card has been built. One
    // pass with the linking to the categories: a product's folder depends on its own category only.
    {
        CFolderCache::Scope folders;
        for (int i = 0; i < m_products.GetSize(); ++i) {
            CProduct* product = m_products.GetByIndex(i);
            product->SetCategory(GetCategoryByName(product->GetCategoryName()));
            product->InitNewProdPath(product->GetProductPath());
        }
    }

    connect(&m_dsVersion, &CDSVersion::SignalCheckHighVersionFinished, this, &CDataModel::CheckHighVersionFinishedSlot);
    connect(&m_dsVersion, &CDSVersion::SignalChangeNewVersion, this, &CDataModel::ChangeNewVersionSlot);
    connect(&m_qmkVersion, &CQMKVersion::SignalDownloadVersionTXTFinish, this,
            &CDataModel::SlotDownloadVersionTXTFinish);
    connect(&m_qmkVersion, &CQMKVersion::SignalDownloadError, this, &CDataModel::QMKVersionCheckFailedSlot);
    connect(&m_qmkVersion, &CQMKVersion::SignalInstallerStarted, this, &CDataModel::QMKInstallerStartedSlot);
    InitQMKVersion();
}

void CDataModel::InitQMKVersion()
{
    m_qmkVersion.SetServer(GetServer());
    m_qmkVersion.SetTrustedKeys(m_trustedKeys, m_bKeyNamed);
    m_qmkVersion.Init(m_strVersion);
    if (m_bQuillmarkAutoUpdate) {
        m_bQMKCheckPending = true;
        // The check starts once the event loop runs: the window is up before the network is set up.
        QTimer::singleShot(0, this, [this] { m_qmkVersion.SearchForNewVersion(true); });
    } else {
        InitDSVersion();
    }
}

void CDataModel::SlotDownloadVersionTXTFinish()
{
    if (!m_bQMKCheckPending)
        return;
    FinishQMKCheck();
}

void CDataModel::QMKVersionCheckFailedSlot()
{
    // Errors of a release download belong to the self-update dialog; only a failed version check
    // would otherwise leave the dataset engine unstarted and the settings' button disabled.
    if (!m_bQMKCheckPending)
        return;
    m_log.WriteString(QStringLiteral("!!WARNING application version check failed: ") + m_qmkVersion.GetErrorText(),
                      false);
    FinishQMKCheck();
}

void CDataModel::FinishQMKCheck()
{
    m_bQMKCheckPending = false;
    const bool shown = m_qmkVersion.ShowQMKDownloadDlg();
    if (shown) {
        CDialogRoute::Run(EDlgPurpose::UpdateQuillmark, this,
                          QStringLiteral(QT_TRANSLATE_NOOP("DlgBase", "Quillmark Update")));
        m_log.WriteString(QStringLiteral("Show dlgUpdateQMKVersion"), false);
    }
    // The updater has taken over; nothing more starts.
    if (m_bClosing)
        return;
    emit SignalDownloadVersionFinished();
    // A check by hand later in the run leaves the dataset engine as it is.
    if (!m_bDSStarted)
        InitDSVersion();
    // A press during the start-up check has had its answer if that check showed the dialog.
    if (m_bQMKByHandQueued) {
        m_bQMKByHandQueued = false;
        if (!shown)
            RunUpdateQuillmark();
    }
}

void CDataModel::QMKInstallerStartedSlot()
{
    m_bClosing = true;
    m_log.WriteString(QStringLiteral("Updater started, closing"), false);
    emit SignalCloseApplication();
}

void CDataModel::RunUpdateQuillmark()
{
    // The check of the start still runs and the downloader takes one transfer at a time: the
    // press is answered when that check ends.
    if (m_bQMKCheckPending) {
        m_bQMKByHandQueued = true;
        return;
    }
    m_bQMKCheckPending = true;
    m_qmkVersion.SearchForNewVersion(false);
}

void CDataModel::InitDSVersion()
{
    m_log.WriteString(QStringLiteral("InitDSVersion"), false);
    m_bDSStarted = true;
    m_dsVersion.SetServer(GetServer());
    m_dsVersion.SetTrustedKeys(m_trustedKeys, m_bKeyNamed);
    m_dsVersion.Init(m_strVersion);
    // An install or reset that a crash cut off is finished or undone before anything else runs.
    const QStringList recovered = m_dsVersion.RecoverInterruptedRuns(&m_products);
    if (!recovered.isEmpty()) {
        m_log.WriteString(QStringLiteral("Interrupted runs: ") + recovered.join(QStringLiteral(" / ")), false);
        CMessageBox::show(QMessageBox::Information, QStringLiteral("Quillmark"),
                          tr("The last run of Quillmark was cut off during an update or a reset:") +
                              QStringLiteral("\n\n") + recovered.join(QLatin1Char('\n')),
                          GetMainWnd());
    }
    if (m_bDSAutoUpdate) {
        // Started from the event loop, as the application check is; a search asked for meanwhile
        // takes its place.
        const quint64 searches = m_dsVersion.GetSearchTag();
        QTimer::singleShot(0, this, [this, searches] {
            if (m_dsVersion.GetSearchTag() == searches)
                m_dsVersion.SearchForNewVersion(false);
        });
    }
}

void CDataModel::CheckHighVersionFinishedSlot()
{
    // A search the open dialog started is answered in that dialog.
    if (m_bUpdateDialogOpen)
        return;
    InitProdUpdateListForUpdateOrReset(false);
    // The engine's own comparison: a list that could not be read offers no cycle at all, so an
    // automatic check that failed stays silent.
    if (!m_dsVersion.NewDSVersionAvailable() && !m_dsVersion.GetSearchByHand())
        return;
    m_bUpdateDialogOpen = true;
    CDialogRoute::Run(EDlgPurpose::UpdateDatasets, this,
                      QStringLiteral(QT_TRANSLATE_NOOP("DlgBase", "Product-Dataset Update")));
    m_bUpdateDialogOpen = false;
    m_log.WriteString(QStringLiteral("Show dlgUpdateDatasetVersion"), false);
    // A run from one card ends with its dialog; the next one is for the selection again.
    m_dsVersion.SetSingleProduct(nullptr);
}

void CDataModel::ChangeNewVersionSlot(QString newVersion)
{
    CFolderCache::Scope folders;
    const QString revision = m_dsVersion.GetTargetRevision();
    for (int i = 0; i < m_products.GetSize(); ++i)
        if (CProduct* product = m_products.GetByIndex(i))
            product->CheckCycleVersion(newVersion, revision);
}

void CDataModel::RunUpdateAddOnDatasets(CProduct* product)
{
    m_dsVersion.SetSingleProduct(product);
    m_dsVersion.SearchForNewVersion(true);
}

void CDataModel::RunBackupDialog(EDlgPurpose purpose, CProduct* product, const char* title)
{
    m_dsVersion.SetSingleProduct(product);
    CDialogRoute::Run(purpose, this, QString::fromLatin1(title));
    m_dsVersion.SetSingleProduct(nullptr);
}

void CDataModel::RunReset(CProduct* product)
{
    RunBackupDialog(EDlgPurpose::ResetDatasets, product, QT_TRANSLATE_NOOP("DlgBase", "Product-Dataset Reset"));
}

void CDataModel::RunRemoveBackup(CProduct* product)
{
    RunBackupDialog(EDlgPurpose::RemoveBackups, product, QT_TRANSLATE_NOOP("DlgBase", "Product-Dataset RemoveBackup"));
}

bool CDataModel::HasSelectedProduct() const
{
    for (int i = 0; i < m_products.GetSize(); ++i)
        if (const CProduct* product = m_products.GetByIndex(i); product && product->GetUpdate())
            return true;
    return false;
}

void CDataModel::ShowEmptySelection(const QString& secondLine)
{
    // "ist" is how the message has always read.
    CMessageBox::critical(tr("The Product-Select-List ist empty.") + QLatin1Char('\n') + secondLine);
}

void CDataModel::CallResetDataSetDlg()
{
    InitProdUpdateListForUpdateOrReset(false);
    if (HasSelectedProduct())
        RunReset(nullptr);
    else
        ShowEmptySelection(tr("Please select products for reset."));
}

void CDataModel::CallRemoveBackupDlg()
{
    InitProdUpdateListForUpdateOrReset(false);
    if (HasSelectedProduct())
        RunRemoveBackup(nullptr);
    else
        ShowEmptySelection(tr("Please select products for remove backup."));
}

CDataModel::DSEngineFlags CDataModel::GetPendingDSEngineFlags() const
{
    DSEngineFlags flags;
    flags.navDataOverwriteAccept = m_dsVersion.GetNavDataOverwriteAccept();
    flags.localVersion = m_dsVersion.GetLocalVersion();
    flags.createBackupFiles = m_dsVersion.GetCreateBackupFiles();
    return flags;
}

void CDataModel::SetPendingDSEngineFlags(const DSEngineFlags& flags)
{
    m_dsEngineFlags = flags;
    ApplyDSEngineFlags();
}

void CDataModel::ApplyDSEngineFlags()
{
    m_dsVersion.SetNavDataOverwriteAccept(m_dsEngineFlags.navDataOverwriteAccept);
    m_dsVersion.SetLocalVersion(m_dsEngineFlags.localVersion);
    m_dsVersion.SetCreateBackupFiles(m_dsEngineFlags.createBackupFiles);
}

bool CDataModel::InitBase()
{
    if (!ReadFile(CAppPaths::CatalogueFile(), true)) {
        CMessageBox::critical(tr("Couldn't open bin/base_ini.xml"), tr("Error! Init base"));
        return false;
    }
    return true;
}

void CDataModel::InitProp()
{
    // On the first run there is no settings file: everything keeps its default.
    ReadFile(CAppPaths::SettingsFile(), false);
    ApplyDSEngineFlags();
}

bool CDataModel::ReadFile(const QString& path, bool bBase)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        if (bBase || file.exists())
            m_log.WriteString(QStringLiteral("!!ERROR cannot open ") + path + QStringLiteral(": ") + file.errorString(),
                              false);
        return false;
    }

    m_bReadingCatalogue = bBase;
    // "All" leads the categories even when the catalogue has no categories section.
    if (bBase)
        m_categories.AddLeadingAll();

    QXmlStreamReader xml(&file);
    // A section returns on its closing token, or (products) on a datasets start tag, which is
    // looked at again here so that the datasets that follow are not lost.
    xml.readNext();
    while (!xml.atEnd() && !xml.hasError()) {
        if (!xml.isStartElement()) {
            xml.readNext();
            continue;
        }
        const auto name = xml.name();
        if (name == kApp) {
            xml.readNext();
            parseApp(xml);
        } else if (name == QLatin1String("products")) {
            xml.readNext();
            bBase ? m_products.InitBase(xml) : m_products.InitProp(xml);
        } else if (name == QLatin1String("categories")) {
            xml.readNext();
            bBase ? m_categories.InitBase(xml) : m_categories.InitProp(xml);
        } else if (name == QLatin1String("datasets")) {
            xml.readNext();
            bBase ? m_datasets.InitBase(xml) : m_datasets.InitProp(xml);
        } else {
            xml.readNext();
        }
    }
    if (xml.hasError()) {
        m_log.WriteString(QStringLiteral("!!ERROR %1: line %2, column %3: %4")
                              .arg(path)
                              .arg(xml.lineNumber())
                              .arg(xml.columnNumber())
                              .arg(xml.errorString()),
                          false);
        CMessageBox::show(QMessageBox::NoIcon, QStringLiteral("parseXML"), xml.errorString());
        // The end of the run rewrites the settings from what could be read; keep the user's
        // damaged file beside it.
        if (!bBase)
            KeepDamagedCopy(path);
    }
    xml.clear();
    return true;
}

void CDataModel::KeepDamagedCopy(const QString& path)
{
    QString copy = path + QStringLiteral(".damaged");
    for (int i = 2; QFileInfo::exists(copy) && i < 1000; ++i)
        copy = path + QStringLiteral(".damaged-") + QString::number(i);
    if (QFile::copy(path, copy))
        m_log.WriteString(QStringLiteral("!!WARNING damaged settings kept as ") + copy, false);
    else
        m_log.WriteString(QStringLiteral("!!ERROR cannot keep a copy of the damaged settings ") + path, false);
}

void CDataModel::parseApp(QXmlStreamReader& xml)
{
    while (!xml.atEnd() && !xml.hasError()) {
        if (xml.isEndElement() && (xml.name() == kApp || xml.name() == QLatin1String("data")))
            return;
        if (xml.isStartElement()) {
            const QString key = xml.name().toString();
            xml.readNext();
            parseAppValues(xml, key);
        } else {
            xml.readNext();
        }
    }
}

void CDataModel::parseAppValues(QXmlStreamReader& xml, QString key)
{
    QString text;
    if (!CXmlSection::TakeText(xml, text))
        return;
    if (key == QLatin1String("DSAutoUpdate"))
        m_bDSAutoUpdate = switchValue(text);
    else if (key == QLatin1String("QuillmarkAutoUpdate"))
        m_bQuillmarkAutoUpdate = switchValue(text);
    else if (key == QLatin1String("NavDataOverwriteAccept"))
        m_dsEngineFlags.navDataOverwriteAccept = switchValue(text);
    else if (key == QLatin1String("LocalVersion"))
        m_dsEngineFlags.localVersion = switchValue(text);
    else if (key == QLatin1String("CreateBackupFiles"))
        m_dsEngineFlags.createBackupFiles = switchValue(text);
    else if (key == QLatin1String("Language"))
        Application::setLanguage(text);
    else if (key == QLatin1String("Version"))
        Application::setApplicationVersionEx(text);
    else if (key == QLatin1String("Server"))
        parseServer(text);
    else if (key == QLatin1String("PublicKey") && m_bReadingCatalogue) {
        // A key named but unusable refuses every download rather than letting them through.
        m_bKeyNamed = true;
        QStringList problems;
        m_trustedKeys = CMinisign::ParsePublicKeys(text, &problems);
        for (const QString& entry : problems)
            m_log.WriteString(QStringLiteral("!!ERROR App value PublicKey holds no minisign public key: ") + entry,
                              false);
    } else if (key == QLatin1String("VersionListTime") && !m_bReadingCatalogue)
        m_dsVersion.SetAcceptedListTime(qMax<qint64>(0, text.toLongLong()));
}

void CDataModel::parseServer(const QString& text)
{
    QStringList mirrors;
    for (const QString& entry : text.split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts)) {
        if (CVerifiedDownload::IsMirrorAddress(entry))
            mirrors << entry;
        else
            m_log.WriteString(QStringLiteral("!!WARNING App value Server is not host or host:port, ignored: ") + entry,
                              false);
    }
    if (!mirrors.isEmpty())
        m_strServer = mirrors.join(QLatin1Char(' '));
}

QString CDataModel::GetServer() const
{
    return m_strServer.isEmpty() ? QStringLiteral(QUILLMARK_DEFAULT_SERVER) : m_strServer;
}

bool CDataModel::Save()
{
    if (!m_bSaveEnabled)
        return false;

    // Written aside and renamed over the old file only when complete, so a failed or interrupted
    // save leaves the previous settings whole.
    const QString path = CAppPaths::SettingsFile();
    // The user's data folder does not exist before the first run that saves. A portable folder's
    // "bin" holds the catalogue; if it has gone, saving fails rather than make a new one.
    if (!CAppPaths::IsPortable())
        QDir().mkpath(CAppPaths::DataFolder());
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        m_log.WriteString(QStringLiteral("!!ERROR cannot write ") + path + QStringLiteral(": ") + file.errorString(),
                          false);
        CMessageBox::critical(tr("Couldn't open prop_ini.xml"), QStringLiteral("CDataModel::Save()"));
        return false;
    }

    QXmlStreamWriter xml(&file);
    xml.setAutoFormatting(true);
    xml.setCodec("UTF-8");
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("data"));
    SaveApp(xml);
    m_products.Save(xml);
    m_categories.Save(xml);
    m_datasets.Save(xml);
    xml.writeEndElement();
    xml.writeEndDocument();

    if (xml.hasError()) {
        const QString error = file.errorString();
        file.cancelWriting();
        m_log.WriteString(QStringLiteral("!!ERROR writing ") + path + QStringLiteral(": ") + error, false);
        CMessageBox::critical(tr("corrupted file: prop_ini.xml ") + error, QStringLiteral("CDataModel::Save()"));
        return false;
    }
    if (!file.commit()) {
        m_log.WriteString(QStringLiteral("!!ERROR cannot replace ") + path + QStringLiteral(": ") + file.errorString(),
                          false);
        CMessageBox::critical(tr("Couldn't open prop_ini.xml"), QStringLiteral("CDataModel::Save()"));
        return false;
    }
    return true;
}

void CDataModel::SaveApp(QXmlStreamWriter& xml)
{
    // "Version", "Server" and "PublicKey" are read but never written: the catalogue supplies them.
    m_dsEngineFlags = GetPendingDSEngineFlags();
    xml.writeStartElement(kApp);
    xml.writeTextElement(QStringLiteral("DSAutoUpdate"), boolText(m_bDSAutoUpdate));
    xml.writeTextElement(QStringLiteral("QuillmarkAutoUpdate"), boolText(m_bQuillmarkAutoUpdate));
    xml.writeTextElement(QStringLiteral("NavDataOverwriteAccept"), boolText(m_dsEngineFlags.navDataOverwriteAccept));
    xml.writeTextElement(QStringLiteral("LocalVersion"), boolText(m_dsEngineFlags.localVersion));
    xml.writeTextElement(QStringLiteral("CreateBackupFiles"), boolText(m_dsEngineFlags.createBackupFiles));
    xml.writeTextElement(QStringLiteral("Language"), Application::GetLanguage());
    if (m_dsVersion.GetAcceptedListTime() > 0)
        xml.writeTextElement(QStringLiteral("VersionListTime"), QString::number(m_dsVersion.GetAcceptedListTime()));
    xml.writeEndElement();
}

void CDataModel::RestoreQMKDefaultSettings()
{
    const QString path = CAppPaths::SettingsFile();
    QFile file(path);
    if (file.exists() && !file.remove()) {
        m_log.WriteString(QStringLiteral("!!ERROR cannot delete ") + path + QStringLiteral(": ") + file.errorString(),
                          false);
        CMessageBox::critical(tr("Couldn't delete prop_ini.xml"));
    }
    // The end of this run must not write the file again.
    m_bSaveEnabled = false;
    QCoreApplication::exit(Application::RestartExitCode);
}

void CDataModel::InitProductParentCategory()
{
    for (int i = 0; i < m_products.GetSize(); ++i) {
        CProduct* product = m_products.GetByIndex(i);
        product->SetCategory(GetCategoryByName(product->GetCategoryName()));
    }
}

void CDataModel::InitProdUpdateListForUpdateOrReset(bool forUpdate)
{
    CFolderCache::Scope folders;
    CMyLog::Batch batch;
    m_log.WriteString(QStringLiteral("InitProdUpdateListForUpdateOrReset"), false);
    m_installGroups.Clear();
    for (int i = 0; i < m_products.GetSize(); ++i) {
        CProduct* product = m_products.GetByIndex(i);
        // The folder follows the simulator folder as it is now, whether or not a card shows it.
        product->InitNewProdPath(product->GetProductPath());
        product->InitNewInstallPaths(forUpdate);
        m_installGroups.AssignProduct(product);
    }
    if (forUpdate) {
        for (int i = 0; i < m_installGroups.GetSize(); ++i) {
            const CInstallGroup* group = m_installGroups.GetByIndex(i);
            QString text = QStringLiteral("\n#### Group ");
            text += QString::number(i);
            text += QLatin1String(": ");
            text += group->GetDataset();
            for (const QString& path : group->GetInstallPaths()) {
                text += QLatin1String("\n    install_path: ");
                text += path;
            }
            for (const CProduct* product : group->GetProducts()) {
                text += QLatin1String("\n    product: ");
                text += product->GetName();
            }
            m_log.WriteString(text, false);
        }
    }
    for (int i = 0; i < m_products.GetSize(); ++i) {
        CProduct* product = m_products.GetByIndex(i);
        if (product->GetUpdate() && product->GetInstallGroup())
            product->GetInstallGroup()->SetUpdate(product);
    }
}

void CDataModel::Clear()
{
    m_installGroups.Clear();
    m_categories.Clear();
    m_products.Clear();
}

void CDataModel::CloseApplication()
{
    m_installGroups.Clear();
    m_categories.Clear();
    m_products.Clear();
    QCoreApplication::exit(0);
}

QMainWindow* CDataModel::GetMainWnd() const
{
    return Application::mainWnd;
}

QString CDataModel::GetRegistryValue(QString hive, QString keyPath, QString valueName)
{
    Q_UNUSED(hive)
    Q_UNUSED(keyPath)
    Q_UNUSED(valueName)
    return QString();
}
