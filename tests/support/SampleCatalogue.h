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
        QString name;
        QString dataset;
        QString path; // product_path and cycle_info_path
        QString category;
        bool update = false;
    };

    QList<Product> products;
    QStringList datasets;
    QStringList categories{QStringLiteral("X-Plane 10"), QStringLiteral("X-Plane 11"), QStringLiteral("Selected")};
    QMap<QString, QString> categoryPaths; // category name -> simulator folder

    // Five products over two categories and three datasets.
    static SampleCatalogue Small();
    // count products spread over both X-Plane categories and eight datasets.
    static SampleCatalogue Generated(int count);

    QByteArray CatalogueXml() const;
    // Both automatic update checks off, so that no network request is made.
    static QByteArray QuietSettingsXml();

    // Writes bin/base_ini.xml and bin/prop_ini.xml below appPath.
    bool WriteTo(const QString& appPath) const;
    // Creates a folder that passes the X-Plane check (it holds "X-Plane.app").
    static bool MakeSimFolder(const QString& path);
};
