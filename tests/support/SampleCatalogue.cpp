#include "support/SampleCatalogue.h"

#include <QDir>
#include <QFile>
#include <QXmlStreamWriter>

namespace {
bool writeFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(content) == content.size();
}
} // namespace

SampleCatalogue SampleCatalogue::Small()
{
    SampleCatalogue c;
    c.datasets = QStringList{QStringLiteral("gns430"), QStringLiteral("xp10nav"), QStringLiteral("xp11nav")};
    c.products = {
        {QStringLiteral("Alpha GNS"), QStringLiteral("gns430"), QStringLiteral("$SimPath\\Custom Data\\GNS430"),
         QStringLiteral("X-Plane 11"), false},
        {QStringLiteral("Bravo FMS"), QStringLiteral("xp11nav"), QStringLiteral("$SimPath\\Custom Data"),
         QStringLiteral("X-Plane 11"), true},
        {QStringLiteral("Charlie Nav"), QStringLiteral("xp10nav"), QStringLiteral("$SimPath\\Custom Data"),
         QStringLiteral("X-Plane 10"), false},
        {QStringLiteral("Delta GNS"), QStringLiteral("gns430"), QStringLiteral("$SimPath\\Custom Data\\GNS430"),
         QStringLiteral("X-Plane 10"), false},
        {QStringLiteral("Echo FMS"), QStringLiteral("xp11nav"), QStringLiteral("$SimPath\\Aircraft\\Echo"),
         QStringLiteral("X-Plane 11"), false},
    };
    return c;
}

SampleCatalogue SampleCatalogue::Generated(int count)
{
    SampleCatalogue c;
    for (int d = 0; d < 8; ++d)
        c.datasets << QStringLiteral("dataset%1").arg(d);
    for (int i = 0; i < count; ++i) {
        Product p;
        p.name = QStringLiteral("Product %1").arg(i, 4, 10, QLatin1Char('0'));
        p.dataset = c.datasets.at(i % c.datasets.size());
        p.category = (i % 2) ? QStringLiteral("X-Plane 11") : QStringLiteral("X-Plane 10");
        p.path = QStringLiteral("$SimPath\\Aircraft\\P%1").arg(i);
        p.update = (i % 5) == 0;
        c.products << p;
    }
    return c;
}

QByteArray SampleCatalogue::CatalogueXml() const
{
    QByteArray out;
    QXmlStreamWriter xml(&out);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("data"));
    xml.writeStartElement(QStringLiteral("App"));
    if (quietDefaults) {
        xml.writeTextElement(QStringLiteral("DSAutoUpdate"), QStringLiteral("0"));
        xml.writeTextElement(QStringLiteral("QuillmarkAutoUpdate"), QStringLiteral("0"));
    }
    if (!server.isEmpty())
        xml.writeTextElement(QStringLiteral("Server"), server);
    if (!publicKey.isEmpty())
        xml.writeTextElement(QStringLiteral("PublicKey"), publicKey);
    if (!version.isEmpty())
        xml.writeTextElement(QStringLiteral("Version"), version);
    xml.writeEndElement();
    xml.writeStartElement(QStringLiteral("categories"));
    for (const QString& category : categories) {
        xml.writeTextElement(QStringLiteral("name"), category);
        if (categoryPaths.contains(category))
            xml.writeTextElement(QStringLiteral("path"), categoryPaths.value(category));
    }
    xml.writeEndElement();
    xml.writeStartElement(QStringLiteral("datasets"));
    for (const QString& dataset : datasets)
        xml.writeTextElement(QStringLiteral("name"), dataset);
    xml.writeEndElement();
    xml.writeStartElement(QStringLiteral("products"));
    for (const Product& p : products) {
        xml.writeTextElement(QStringLiteral("name"), p.name);
        xml.writeTextElement(QStringLiteral("dataset"), p.dataset);
        xml.writeTextElement(QStringLiteral("product_path"), p.path);
        xml.writeTextElement(QStringLiteral("install_path"), p.installPath);
        xml.writeTextElement(QStringLiteral("cycle_info_path"), p.cyclePath.isEmpty() ? p.path : p.cyclePath);
        xml.writeTextElement(QStringLiteral("category"), p.category);
        xml.writeTextElement(QStringLiteral("update"), p.update ? QStringLiteral("true") : QStringLiteral("false"));
    }
    xml.writeEndElement();
    xml.writeEndElement();
    xml.writeEndDocument();
    return out;
}

QByteArray SampleCatalogue::QuietSettingsXml()
{
    return QByteArrayLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<data>\n<App><DSAutoUpdate>0</DSAutoUpdate>"
                             "<QuillmarkAutoUpdate>0</QuillmarkAutoUpdate></App>\n</data>\n");
}

SampleCatalogue::Product SampleCatalogue::NavDataProduct(const QString& name, const QString& dataset,
                                                         const QString& folder, bool update, const QString& category)
{
    Product p{name, dataset, folder, category, update};
    p.installPath = QStringLiteral("$ProductPath/NavData:/NavData");
    p.cyclePath = QStringLiteral("$ProductPath/NavData");
    return p;
}

QByteArray SampleCatalogue::SettingsXml(bool datasetsAuto, bool appAuto, bool overwriteAccept, bool createBackups)
{
    return QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<data><App><DSAutoUpdate>%1</DSAutoUpdate>"
                          "<QuillmarkAutoUpdate>%2</QuillmarkAutoUpdate><NavDataOverwriteAccept>%3"
                          "</NavDataOverwriteAccept><CreateBackupFiles>%4</CreateBackupFiles></App></data>\n")
        .arg(int(datasetsAuto))
        .arg(int(appAuto))
        .arg(int(overwriteAccept))
        .arg(int(createBackups))
        .toUtf8();
}

bool SampleCatalogue::WriteTo(const QString& appPath) const
{
    QDir(appPath).mkpath(QStringLiteral("bin"));
    return writeFile(appPath + QStringLiteral("/bin/base_ini.xml"), CatalogueXml()) &&
           writeFile(appPath + QStringLiteral("/bin/prop_ini.xml"), QuietSettingsXml());
}

bool SampleCatalogue::MakeSimFolder(const QString& path)
{
    return QDir().mkpath(path + QStringLiteral("/X-Plane.app"));
}
