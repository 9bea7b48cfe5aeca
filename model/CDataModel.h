#pragma once

#include "app/CMyLog.h"
#include "app/VlAtom.h"
#include "engine/CDSVersion.h"
#include "engine/CQMKVersion.h"
#include "model/CCategoryList.h"
#include "model/CDatasetList.h"
#include "model/CDialogRoute.h"
#include "model/CInstallGroupList.h"
#include "model/CProductList.h"

#include <QObject>
#include <QString>

class CCategory;
class CProduct;
class QMainWindow;
class QXmlStreamReader;
class QXmlStreamWriter;

// Everything the program knows during a run: the catalogue lists, the install groups and the
// user's settings. The main window holds exactly one.
class CDataModel : public QObject, public VlAtom
{
    Q_OBJECT

public:
    explicit CDataModel(QObject* parent = nullptr);
    ~CDataModel() override;

    // Start-up: catalogue, settings, product categories.
    void Init(QString version);

    bool InitBase();
    void InitProp();
    void parseApp(QXmlStreamReader& xml);
    void parseAppValues(QXmlStreamReader& xml, QString key);
    void parseServer(const QString& text);
    bool Save();
    void SaveApp(QXmlStreamWriter& xml);
    void RestoreQMKDefaultSettings();

    CProduct* GetProductByIndex(int index) const { return m_products.GetByIndex(index); }
    CProduct* GetProductByName(const QString& name) const { return m_products.GetByName(name); }
    int GetProductListSize() const { return m_products.GetSize(); }
    CCategory* GetCategoryByIndex(int index) const { return m_categories.GetByIndex(index); }
    CCategory* GetCategoryByName(const QString& name) const { return m_categories.GetByName(name); }
    int GetCategoryListSize() const { return m_categories.GetSize(); }

    CProductList* GetProductList() { return &m_products; }
    CCategoryList* GetCategoryList() { return &m_categories; }
    CDatasetList* GetDatasetList() { return &m_datasets; }
    CInstallGroupList* GetInstallGroupList() { return &m_installGroups; }

    void InitProductParentCategory();
    void InitProdUpdateListForUpdateOrReset(bool forUpdate);

    void Clear();
    void CloseApplication();
    QMainWindow* GetMainWnd() const;

    QString GetVersion() const { return m_strVersion; }
    bool GetDSAutoUpdate() const { return m_bDSAutoUpdate; }
    void SetDSAutoUpdate(bool on) { m_bDSAutoUpdate = on; }
    bool GetQuillmarkAutoUpdate() const { return m_bQuillmarkAutoUpdate; }
    void SetQuillmarkAutoUpdate(bool on) { m_bQuillmarkAutoUpdate = on; }
    bool IsSaveEnabled() const { return m_bSaveEnabled; }

    // Host or host:port of the version and download server, or several mirrors separated by
    // blanks: the App key "Server" of the settings, else of the catalogue, else the build's default.
    QString GetServer() const;
    // The catalogue's public keys ("PublicKey"); downloads are checked against them. Never taken
    // from the settings, which are the user's to change.
    const QList<CMinisign::PublicKey>& GetTrustedKeys() const { return m_trustedKeys; }
    // Whether the catalogue names a key at all; without one downloads are taken unchecked.
    bool VerifiesDownloads() const { return m_bKeyNamed; }

    // The dataset engine's three switches as the settings file holds them. The engine keeps the
    // live values (the update dialog changes them there); reading the settings hands them over,
    // and Save writes the engine's values back.
    struct DSEngineFlags
    {
        bool navDataOverwriteAccept = true;
        bool localVersion = true;
        bool createBackupFiles = true;
    };
    DSEngineFlags GetPendingDSEngineFlags() const;
    void SetPendingDSEngineFlags(const DSEngineFlags& flags);

    CQMKVersion* GetQMKVersion() { return &m_qmkVersion; }
    CDSVersion* GetDSVersion() { return &m_dsVersion; }

    // Start-up of the engines: the application check first, then the dataset check.
    void InitQMKVersion();
    void InitDSVersion();
    void RunUpdateQuillmark();
    // Searches the server by hand for one product, or for all selected ones with null.
    void RunUpdateAddOnDatasets(CProduct* product);
    // Open the reset or backup-removal dialog for one product, or for all selected ones with null.
    void RunReset(CProduct* product);
    void RunRemoveBackup(CProduct* product);
    // The action buttons: the dialogs for the selection, or a box saying that nothing is selected.
    void CallResetDataSetDlg();
    void CallRemoveBackupDlg();

    // Folders behind the catalogue's path placeholders. This platform has none of them, so they
    // stay empty; the product resolvers rely on that.
    static QString st_UserAppData;
    static QString st_UserDocuments;
    static QString st_CurrentUserDocuments;
    static QString st_ProgramFilesPath;
    static void InitUserAppData() {}
    static void InitUserDocuments() {}
    static void InitCurrentUserDocuments() {}
    static void InitProgramFilesPath() {}
    static QString GetUserAppDataPath() { return st_UserAppData; }
    static QString GetUserDocumentsPath() { return st_UserDocuments; }
    static QString GetCurrentUserDocumentsPath() { return st_CurrentUserDocuments; }
    static QString GetProgramFilesPath() { return st_ProgramFilesPath; }
    // Registry lookup behind "$RegistryKey"; no registry here, so always empty.
    static QString GetRegistryValue(QString hive, QString keyPath, QString valueName);

signals:
    void SignalDownloadVersionFinished();
    void SignalCloseApplication();

public slots:
    void SlotDownloadVersionTXTFinish();
    // A version check of the application that could not fetch its file still has to end.
    void QMKVersionCheckFailedSlot();
    // The updater runs: the dialog and the window close and the program ends.
    void QMKInstallerStartedSlot();
    void CheckHighVersionFinishedSlot();
    void ChangeNewVersionSlot(QString newVersion);

private:
    // The end of an application check: the self-update dialog when the engine asks for it, then
    // the dataset check, once per run.
    void FinishQMKCheck();
    void ApplyDSEngineFlags();
    // Runs the dialog for one product or the selection; the engine serves the selection again after.
    void RunBackupDialog(EDlgPurpose purpose, CProduct* product, const char* title);
    bool HasSelectedProduct() const;
    void ShowEmptySelection(const QString& secondLine);
    // Reads one file's sections; false when the file cannot be opened.
    bool ReadFile(const QString& path, bool bBase);
    // Copies a settings file that could not be read whole to "prop_ini.xml.damaged" (or a
    // numbered name), since the next save replaces it.
    void KeepDamagedCopy(const QString& path);

    QString m_strVersion;
    CProductList m_products;
    CCategoryList m_categories;
    CDatasetList m_datasets;
    CQMKVersion m_qmkVersion;
    CDSVersion m_dsVersion;
    bool m_bQMKCheckPending = false;
    // "run updater manually" was pressed while the start-up check still ran.
    bool m_bQMKByHandQueued = false;
    // The update dialog is open; a search it starts itself is answered there.
    bool m_bUpdateDialogOpen = false;
    bool m_bDSStarted = false;
    bool m_bClosing = false;
    CInstallGroupList m_installGroups;
    bool m_bQuillmarkAutoUpdate = true;
    bool m_bDSAutoUpdate = true;
    CMyLog m_log;
    bool m_bSaveEnabled = true;
    DSEngineFlags m_dsEngineFlags;
    QString m_strServer;
    bool m_bReadingCatalogue = false;
    bool m_bKeyNamed = false;
    QList<CMinisign::PublicKey> m_trustedKeys;
};
