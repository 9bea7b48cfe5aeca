#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

// Writes small catalogues and settings into a program folder's "bin", for the window tests, the
// screenshot tool and the benchmark.
class SampleCatalogue
{
public:
    struct Product
    {
        Product() = default;
        Product(const QString& name, const QString& dataset, const QString& path, const QString& category, bool update)
            : name(name), dataset(dataset), path(path), category(category), update(update)
        {
        }

        QString name;
        QString dataset;
        QString path; // product_path and cycle_info_path
        QString category;
        bool update = false;
        QString installPath = QStringLiteral("$ProductPath");
        QString cyclePath; // empty: path
    };
    // A product whose data and cycle file go into folder + "/NavData", taken from the archive's
    // "NavData" folder.
    static Product NavDataProduct(const QString& name, const QString& dataset, const QString& folder, bool update,
                                  const QString& category = QStringLiteral("X-Plane 11"));

    QList<Product> products;
    QStringList datasets;
    QStringList categories{QStringLiteral("X-Plane 10"), QStringLiteral("X-Plane 11"), QStringLiteral("Selected")};
    QMap<QString, QString> categoryPaths; // category name -> simulator folder
    QString server;                       // host:port of the server; empty: the build's default
    QString publicKey;                    // minisign key line; empty: downloads are not verified
    QString version = QStringLiteral("1.2.3"); // the program's version; empty: the build's own
    // The catalogue's own defaults turn both automatic checks off, so that no network request is
    // made even without settings; off, the program's defaults (both on) hold.
    bool quietDefaults = true;

    // Five products over two categories and three datasets.
    static SampleCatalogue Small();
    // count products spread over both X-Plane categories and eight datasets.
    static SampleCatalogue Generated(int count);

    QByteArray CatalogueXml() const;
    // Both automatic update checks off, so that no network request is made.
    static QByteArray QuietSettingsXml();
    // Settings with the two automatic checks, the overwrite consent and the cycle backup as given.
    static QByteArray SettingsXml(bool datasetsAuto, bool appAuto, bool overwriteAccept = false,
                                  bool createBackups = true);

    // Writes bin/base_ini.xml and bin/prop_ini.xml below appPath.
    bool WriteTo(const QString& appPath) const;
    // Creates a folder that passes the X-Plane check (it holds "X-Plane.app").
    static bool MakeSimFolder(const QString& path);
};
