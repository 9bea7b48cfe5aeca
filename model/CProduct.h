#pragma once

#include "app/CMyLog.h"
#include "model/EQMKProductInstallState.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

class CCategory;
class CInstallGroup;

// One install target of a product: the template ("$SimPath/Custom Data"), the sub-path inside
// the unpacked archive that goes there (text after the first ':'), and the resolved folder.
struct CInstallPath
{
    QString strPath;
    QString strSecond;
    QString strNewPath;
};

// One add-on that receives navigation data. Paths are kept as templates with placeholders and
// resolved afresh at every call, so a changed simulator folder takes effect at once.
class CProduct : public QObject
{
    Q_OBJECT

public:
    explicit CProduct(QObject* parent = nullptr);
    ~CProduct() override;

    QString GetName() const { return m_strName; }
    void SetName(const QString& name) { m_strName = name; }
    bool GetUpdate() const { return m_bUpdate; }
    void SetUpdate(bool update);

    QString GetProductPath() const { return m_strProductPath; }
    void SetProductPath(QString path);
    QString GetNewProductPath() const { return m_strNewProductPath; }
    void SetNewProductPath(const QString& path) { m_strNewProductPath = path; }
    QString GetCategoryName() const { return m_strCategoryName; }
    void SetCategoryName(const QString& name) { m_strCategoryName = name; }
    QString GetDataset() const { return m_strDataset; }
    void SetDataset(const QString& dataset) { m_strDataset = dataset; }
    QString GetCycleInfoPath() const { return m_strCycleInfoPath; }
    void SetCycleInfoPath(QString path);
    QString GetRegistryKey() const { return m_strRegistryKey; }
    void SetRegistryKey(const QString& key) { m_strRegistryKey = key; }
    QString GetRealCycleInfoPath() const { return m_strRealCycleInfoPath; }

    // Values of the last read of the installed and the backed-up cycle file.
    QString GetRevision() const { return m_strRevision; }
    QString GetBackRevision() const { return m_strBackRevision; }
    QString GetNewCycle() const { return m_strNewCycle; }
    void SetNewCycle(const QString& cycle) { m_strNewCycle = cycle; }
    QString GetNewRevision() const { return m_strNewRevision; }
    void SetNewRevision(const QString& revision) { m_strNewRevision = revision; }

    // Filled by the dataset engine at the end of a run.
    QString GetInstalledVersion() const { return m_strInstalledVersion; }
    void SetInstalledVersion(const QString& version) { m_strInstalledVersion = version; }
    QString GetErrorText() const { return m_strErrorText; }
    void SetErrorText(const QString& text) { m_strErrorText = text; }
    bool GetResetOrUpdateDone() const { return m_bResetOrUpdateDone; }
    void SetResetOrUpdateDone(bool done) { m_bResetOrUpdateDone = done; }

    EQMKProductInstallState GetInstallState() const { return m_eInstallState; }
    void SetInstallState(EQMKProductInstallState state);

    const QList<CInstallPath*>& GetInstallPaths() const { return m_installPaths; }
    QStringList GetRemoveFiles() const { return m_removeFiles; }

    CCategory* GetCategory() const { return m_pCategory; }
    void SetCategory(CCategory* category) { m_pCategory = category; }
    CInstallGroup* GetInstallGroup() const { return m_pInstallGroup; }
    void SetInstallGroup(CInstallGroup* group) { m_pInstallGroup = group; }

    // The product's own log; path warnings go there.
    CMyLog& GetLog();

    // Separator normalisation: "//", "\\\\" and "\\" become "/", one pass each.
    static void ReplacePathCL(QString& path);

    QString TranslateNewProdPath();
    void InitNewProdPath(QString text);
    bool InitNewInstallPaths(bool log);
    QString InitRealPath(QString path);
    QString InitRealCycleInfoPath();

    void AddInstallPath(QString text);
    void AddRemoveFilePath(QString text);
    static bool removeDir(const QString& path);
    // Deletes the files of the remove-file list that lie inside the product's folders or its
    // simulator folder; returns the resolved paths it refused.
    QStringList RemoveFileList();

    // The cycle file.
    QString GetCycleInfoFile() const;
    QString GetBackCycleInfoFile() const;
    QString ReadCycleInfoVersion();
    QString ReadBackCycleInfoVersion();
    QString GetCycleVersion();
    QString GetBackCycleVersion();
    bool CheckExistCycleInfoFile() const;
    bool WriteUnknownBackupCycleInfoFile(QString* problem = nullptr);
    bool UpdateCheckCycleVersion();
    bool CheckCycleVersion(QString cycle, QString revision);

signals:
    void SignalChangeInstallState(EQMKProductInstallState state);
    void SignalUpdateChange();

private:
    // The folders a remove-file entry may lie in: the product folder and the install targets.
    bool IsInsideProductFolders(const QString& written) const;
    bool CycleFolderExists() const;
    void ReadCycleFile(const QString& file, QString& cycle, QString& revision);

    // Made at the first line: most of thousands of products never write one.
    CMyLog* m_pLog = nullptr;
    bool m_bUpdate = false;
    QString m_strName;
    QString m_strNewProductPath;
    QString m_strProductPath;
    QString m_strCategoryName;
    QString m_strDataset;
    QString m_strCycleInfoPath;
    QString m_strRegistryKey;
    QString m_strRealCycleInfoPath;
    QString m_strCycleVersion;
    QString m_strBackCycleVersion;
    QString m_strRevision;
    QString m_strBackRevision;
    QString m_strNewCycle;
    QString m_strNewRevision;
    EQMKProductInstallState m_eInstallState = QMK_STATE_NOT_INSTALLED;
    QList<CInstallPath*> m_installPaths;
    QStringList m_removeFiles;
    CCategory* m_pCategory = nullptr;
    CInstallGroup* m_pInstallGroup = nullptr;
    QString m_strInstalledVersion;
    QString m_strErrorText;
    bool m_bResetOrUpdateDone = false;
};
