#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

class CProduct;
class CProductList;

// Real files for the dataset engine's tests: random trees, checksums of trees, archives made
// with the real `zip`, and fake tools put first on the search path.
namespace DatasetFiles {

// Writes `count` files of random content (1 byte to maxBytes) below root, spread over a few
// sub-folders, and returns their paths relative to root.
QStringList writeRandomTree(const QString& root, int count, quint32 seed, int maxBytes = 4096);

// Relative path -> SHA-1 of every file below root; links are listed as "link:" + target and not
// followed. Folders named in skipFolders (any depth) are left out.
QMap<QString, QByteArray> checksums(const QString& root, const QStringList& skipFolders = {});

// Runs `zip -r -q` in folder over its content. An empty password makes a plain archive; links
// are stored as links with storeLinks. Returns zip's output on failure, empty on success.
QString zipFolder(const QString& folder, const QString& archive, const QString& password = QStringLiteral("pralvek"),
                  bool storeLinks = false);

bool writeFile(const QString& path, const QByteArray& content);

// Adds a product selected for update whose data and cycle file go into root + "/NavData".
CProduct* addNavDataProduct(CProductList& list, const QString& name, const QString& dataset, const QString& root);
QByteArray readFile(const QString& path);

// A temporary folder put first on PATH while the object lives; the previous PATH comes back
// afterwards. With replacePath the folder is the whole PATH, so no real tool is found.
class ToolPath
{
public:
    explicit ToolPath(bool replacePath = false);
    ~ToolPath();
    // Writes an executable shell script named `name`.
    bool addScript(const QString& name, const QByteArray& body);
    QString path() const { return m_dir.path(); }

private:
    QTemporaryDir m_dir;
    QByteArray m_previous;
};

} // namespace DatasetFiles
