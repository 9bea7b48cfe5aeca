#include "app/Application.h"
#include "model/CCategory.h"
#include "model/CDataModel.h"
#include "model/CProduct.h"
#include "support/MessageBoxSpy.h"
#include "support/TempAppDir.h"

#include <QtTest>

#include <unistd.h>

namespace {
const QString kCatalogue = QStringLiteral("bin/base_ini.xml");
const QString kSettings = QStringLiteral("bin/prop_ini.xml");

// Two products in each X-Plane category and one orbital planner; App names version and server.
const QByteArray kBase = R"(<?xml version="1.0" encoding="UTF-8"?>
<data>
  <App><Version>1.0</Version><Server>catalogue.example:81</Server></App>
  <categories>
    <name>X-Plane 10</name><path>/sims/xp10</path>
    <name>X-Plane 11</name><path>/sims/xp11</path>
  </categories>
  <datasets><name>d1</name><name>d2</name></datasets>
  <products>
    <name>Beta</name><dataset>d2</dataset><product_path>$SimPath\Custom Data</product_path>
    <category>X-Plane 11</category><update>true</update>
    <name>Alpha</name><dataset>d1</dataset><product_path>/opt/alpha</product_path>
    <category>X-Plane 10</category>
    <name>Orbital Route Planner</name><dataset>d1</dataset><product_path>$SimPath\ORP\ORPX Data\NavData</product_path>
    <category>X-Plane 11</category>
  </products>
</data>
)";

QByteArray settings(const QByteArray& app, const QByteArray& products = QByteArray(),
                    const QByteArray& categories = QByteArray())
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<data>\n<App>" + app + "</App>\n<products>" + products +
           "</products>\n<categories>" + categories + "</categories>\n<datasets><name>d1</name></datasets>\n</data>\n";
}

// Everything the settings can change, one line each.
QStringList summary(CDataModel& model)
{
    const CDataModel::DSEngineFlags flags = model.GetPendingDSEngineFlags();
    QStringList lines;
    lines << QStringLiteral("ds=%1 qmk=%2 nav=%3 local=%4 backup=%5")
                 .arg(model.GetDSAutoUpdate())
                 .arg(model.GetQuillmarkAutoUpdate())
                 .arg(flags.navDataOverwriteAccept)
                 .arg(flags.localVersion)
                 .arg(flags.createBackupFiles);
    lines << QStringLiteral("lang=") + Application::GetLanguage() + QStringLiteral(" ver=") +
                 Application::st_strVersion + QStringLiteral(" server=") + model.GetServer();
    // Signing: the keys in force and the newest version list accepted, when there are any.
    if (!model.GetTrustedKeys().isEmpty() || model.GetDSVersion()->GetAcceptedListTime() > 0)
        lines << QStringLiteral("keys=%1 listtime=%2")
                     .arg(model.GetTrustedKeys().size())
                     .arg(model.GetDSVersion()->GetAcceptedListTime());
    for (int i = 0; i < model.GetProductListSize(); ++i) {
        CProduct* p = model.GetProductByIndex(i);
        lines << p->GetName() + QLatin1Char(';') + (p->GetUpdate() ? "1" : "0") + QLatin1Char(';') + p->GetDataset() +
                     QLatin1Char(';') + p->GetProductPath() + QLatin1Char(';') + p->GetCategoryName();
    }
    for (int i = 0; i < model.GetCategoryListSize(); ++i)
        lines << model.GetCategoryByIndex(i)->GetName() + QLatin1Char('=') + model.GetCategoryByIndex(i)->GetPath();
    return lines;
}

const QStringList kDefaultProducts{"Alpha;0;d1;/opt/alpha;X-Plane 10", "Beta;1;d2;$SimPath/Custom Data;X-Plane 11",
                                   "Orbital Route Planner;0;d1;$SimPath/ORP/ORPX Data/NavData;X-Plane 11"};
const QStringList kDefaultCategories{"All=", "X-Plane 10=/sims/xp10", "X-Plane 11=/sims/xp11"};
} // namespace

class TestSettings : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void savedTextIsExact();
    void roundTrip_data();
    void roundTrip();
    void saveFailureKeepsOldFile_data();
    void saveFailureKeepsOldFile();
    void badInput_data();
    void badInput();
};

void TestSettings::init()
{
    Application::setLanguage(QString());
    Application::setApplicationVersionEx(QStringLiteral("MPLET"));
}

void TestSettings::savedTextIsExact()
{
    TempAppDir dir;
    MessageBoxSpy spy;
    QVERIFY(dir.writeFile(kCatalogue, R"(<data><categories><name>X-Plane 10</name><path>/sims/xp10</path>
        <name>X-Plane 11</name></categories><datasets><name>d1</name><name>d2</name></datasets>
        <products><name>Beta</name><dataset>d2</dataset><product_path>$SimPath\Custom Data</product_path>
        <category>X-Plane 11</category><update>true</update><install_path>$SimPath/x</install_path>
        <name>Alpha</name><dataset>d1</dataset><product_path>/opt/Alpha &amp; Co &lt;x&gt;\Zürich</product_path>
        <category>X-Plane 10</category><registry_key>HKLM/x</registry_key></products>
        <App><Version>4.5.6</Version></App></data>)"));
    CDataModel model;
    model.Init(QStringLiteral("4.5.6"));
    // No server named anywhere: the build's default.
    QCOMPARE(model.GetServer(), QStringLiteral(QUILLMARK_DEFAULT_SERVER));
    model.SetDSAutoUpdate(false);
    CDataModel::DSEngineFlags flags;
    flags.createBackupFiles = false;
    model.SetPendingDSEngineFlags(flags);
    Application::setLanguage(QStringLiteral("de_DE"));

    QVERIFY(model.Save());
    QCOMPARE(spy.count(), 0);

    QFile expected(QFINDTESTDATA("data/settings_expected.xml"));
    QVERIFY(expected.open(QIODevice::ReadOnly));
    QCOMPARE(QString::fromUtf8(dir.readFile(kSettings)), QString::fromUtf8(expected.readAll()));
    // Written aside and renamed: no temporary file is left behind.
    QCOMPARE(QDir(dir.filePath(QStringLiteral("bin"))).entryList(QDir::Files),
             (QStringList{"base_ini.xml", "prop_ini.xml"}));
}

void TestSettings::roundTrip_data()
{
    QTest::addColumn<QByteArray>("content"); // null: no settings file
    QTest::addColumn<QStringList>("afterRead");
    QTest::addColumn<QStringList>("afterReload"); // empty: the same as afterRead

    const QString defaults = QStringLiteral("ds=1 qmk=1 nav=1 local=1 backup=1");
    const QString plain = QStringLiteral("lang= ver=1.0 server=catalogue.example:81");

    QTest::newRow("no settings file") << QByteArray()
                                      << QStringList{defaults, plain} + kDefaultProducts + kDefaultCategories
                                      << QStringList();

    QTest::newRow("only 1 switches on")
        << settings("<DSAutoUpdate>true</DSAutoUpdate><QuillmarkAutoUpdate>0</QuillmarkAutoUpdate>"
                    "<NavDataOverwriteAccept> 1 </NavDataOverwriteAccept><LocalVersion>yes</LocalVersion>"
                    "<CreateBackupFiles>2</CreateBackupFiles><Language>de_DE</Language>")
        << QStringList{"ds=0 qmk=0 nav=1 local=0 backup=0", "lang=de_DE ver=1.0 server=catalogue.example:81"} +
               kDefaultProducts + kDefaultCategories
        << QStringList();

    QTest::newRow("version and server last one run")
        << settings("<Version>7.7</Version><Server>10.0.0.5:8080  https://m2.example x/y</Server>"
                    "<Server>http://x/y</Server><Server>host:99999</Server>")
        << QStringList{defaults, "lang= ver=7.7 server=10.0.0.5:8080 https://m2.example"} + kDefaultProducts +
               kDefaultCategories
        << QStringList{defaults, plain} + kDefaultProducts + kDefaultCategories;

    // The user's settings cannot name a key to trust; the time of the newest list stays with them.
    QTest::newRow("key ignored, list time kept")
        << settings("<PublicKey>RWSCuvfUbdvSk4PSiemTCAKAf9tfX0B66FUQ6Sea8ks9xLzcAIlxmwrs</PublicKey>"
                    "<VersionListTime>1767225600</VersionListTime>")
        << QStringList{defaults, plain, "keys=0 listtime=1767225600"} + kDefaultProducts + kDefaultCategories
        << QStringList();

    QTest::newRow("product fields and category paths")
        << settings("",
                    "<name>Alpha</name><update>true</update><dataset>d2</dataset>"
                    "<product_path>$SimPath\\\\Alpha</product_path><category>X-Plane 11</category>"
                    "<name>Nobody</name><update>true</update><dataset>zz</dataset><category>FSX</category>"
                    "<name>Orbital Route Planner</name><product_path>$SimPath\\ORP</product_path>",
                    "<name>All</name><path></path><name>Nowhere</name><path>/x</path><name>X-Plane 11</name>"
                    "<path>/new/xp11</path>")
        << QStringList{defaults,
                       plain,
                       "Alpha;1;d2;$SimPath/Alpha;X-Plane 11",
                       kDefaultProducts.at(1),
                       "Orbital Route Planner;0;d1;$SimPath/ORP/ORPX Data/NavData;X-Plane 11",
                       "All=",
                       "X-Plane 10=/sims/xp10",
                       "X-Plane 11=/new/xp11"}
        << QStringList();

    QTest::newRow("products moved to a dropped category disappear")
        << settings("", "<name>Alpha</name><category>FS2004</category><name>Beta</name><category>Prepar3D</category>"
                        "<name>Orbital Route Planner</name><category>Prepar3D v4</category>")
        << QStringList{defaults, plain, "Orbital Route Planner;0;d1;$SimPath/ORP/ORPX Data/NavData;Prepar3D v4"} +
               kDefaultCategories
        << QStringList{defaults, plain, kDefaultProducts.at(0), kDefaultProducts.at(1),
                       "Orbital Route Planner;0;d1;$SimPath/ORP/ORPX Data/NavData;Prepar3D v4"} +
               kDefaultCategories;

    QTest::newRow("deselected and repeated")
        << settings("<DSAutoUpdate>1</DSAutoUpdate><DSAutoUpdate>0</DSAutoUpdate>",
                    "<name>Beta</name><update>TRUE</update><name>Beta</name><dataset>d1</dataset>")
        << QStringList{"ds=0 qmk=1 nav=1 local=1 backup=1", plain, kDefaultProducts.at(0),
                       "Beta;0;d1;$SimPath/Custom Data;X-Plane 11", kDefaultProducts.at(2)} +
               kDefaultCategories
        << QStringList();
}

void TestSettings::roundTrip()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, afterRead);
    QFETCH(QStringList, afterReload);
    if (afterReload.isEmpty())
        afterReload = afterRead;

    TempAppDir dir;
    MessageBoxSpy spy;
    QVERIFY(dir.writeFile(kCatalogue, kBase));
    if (!content.isNull())
        QVERIFY(dir.writeFile(kSettings, content));

    {
        CDataModel model;
        model.Init(QString());
        QCOMPARE(summary(model), afterRead);
        QVERIFY(model.Save());
    }
    const QByteArray saved = dir.readFile(kSettings);
    QVERIFY(!saved.contains("<Version>"));
    QVERIFY(!saved.contains("<Server>"));
    QVERIFY(!saved.contains("<PublicKey>"));

    init();
    {
        CDataModel model;
        model.Init(QString());
        QCOMPARE(summary(model), afterReload);
        QVERIFY(model.Save());
    }
    // A product the settings dropped is missing from the file saved in that run.
    if (afterRead.size() < afterReload.size())
        QVERIFY(!saved.contains("<name>Alpha</name>"));
    // Once stable, a second round changes nothing.
    if (afterReload == afterRead)
        QCOMPARE(dir.readFile(kSettings), saved);
    QCOMPARE(spy.count(), 0);
}

void TestSettings::saveFailureKeepsOldFile_data()
{
    QTest::addColumn<QString>("how");
    QTest::newRow("read-only folder") << "folder";
    QTest::newRow("read-only file") << "file";
    QTest::newRow("settings path is a folder") << "dir";
    QTest::newRow("no bin folder") << "nobin";
}

void TestSettings::saveFailureKeepsOldFile()
{
    QFETCH(QString, how);
    if ((how == QLatin1String("folder") || how == QLatin1String("file")) && geteuid() == 0)
        QSKIP("permissions do not stop root");

    TempAppDir dir;
    MessageBoxSpy spy;
    const QByteArray old = settings("<DSAutoUpdate>0</DSAutoUpdate>");
    QVERIFY(dir.writeFile(kCatalogue, kBase));
    const QString bin = dir.filePath(QStringLiteral("bin"));
    const QString path = dir.filePath(kSettings);
    if (how == QLatin1String("dir"))
        QVERIFY(dir.writeFile(kSettings + QStringLiteral("/keep.txt"), "keep"));
    else
        QVERIFY(dir.writeFile(kSettings, old));

    CDataModel model;
    model.Init(QString());
    model.SetDSAutoUpdate(true);
    if (how == QLatin1String("folder"))
        QVERIFY(QFile::setPermissions(bin, QFileDevice::ReadOwner | QFileDevice::ExeOwner));
    else if (how == QLatin1String("file"))
        QVERIFY(QFile::setPermissions(path, QFileDevice::ReadOwner));
    else if (how == QLatin1String("nobin")) {
        QVERIFY(QFile::rename(bin, dir.filePath(QStringLiteral("moved"))));
    }

    const bool saved = model.Save();
    QFile::setPermissions(bin, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);

    QVERIFY(!saved);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.boxes().first().title, QStringLiteral("CDataModel::Save()"));
    QCOMPARE(spy.boxes().first().text, QStringLiteral("Couldn't open prop_ini.xml"));
    QCOMPARE(spy.boxes().first().icon, QMessageBox::Critical);
    if (how == QLatin1String("dir")) {
        QCOMPARE(dir.readFile(kSettings + QStringLiteral("/keep.txt")), QByteArray("keep"));
    } else if (how == QLatin1String("nobin")) {
        QVERIFY(!QFile::exists(bin));
        QCOMPARE(dir.readFile(QStringLiteral("moved/prop_ini.xml")), old);
    } else {
        QCOMPARE(dir.readFile(kSettings), old);
        QCOMPARE(QDir(bin).entryList(QDir::Files), (QStringList{"base_ini.xml", "prop_ini.xml"}));
    }
}

void TestSettings::badInput_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("readError");
    QTest::addColumn<QString>("firstLine"); // summary line of the switches after reading

    const QByteArray good = settings("<DSAutoUpdate>0</DSAutoUpdate>", "<name>Beta</name><update>false</update>");
    const QString off = QStringLiteral("ds=0 qmk=1 nav=1 local=1 backup=1");
    const QString on = QStringLiteral("ds=1 qmk=1 nav=1 local=1 backup=1");

    QTest::newRow("empty") << QByteArray("") << true << on;
    QTest::newRow("truncated") << good.left(good.indexOf("<products>") + 20) << true << off;
    QTest::newRow("not well formed") << QByteArray("<data><App><DSAutoUpdate>0</App></data>") << true << off;
    QTest::newRow("not UTF-8") << QByteArray("<data><App><Language>Fran\xe7"
                                             "ais</Language></App></data>")
                               << true << on;
    QByteArray binary(2048, '\0');
    for (int i = 0; i < binary.size(); ++i)
        binary[i] = char((i * 37 + 11) % 256);
    QTest::newRow("binary") << binary << true << on;

    QByteArray nested = "<data><App><DSAutoUpdate>0</DSAutoUpdate>";
    for (int i = 0; i < 20000; ++i)
        nested += "<x>";
    for (int i = 0; i < 20000; ++i)
        nested += "</x>";
    nested += "</App></data>";
    QTest::newRow("deeply nested") << nested << false << off;

    QByteArray large = "<data><products>";
    while (large.size() < 20 * 1024 * 1024)
        large += "<name>Nobody</name><update>true</update><category>FSX</category>\n";
    large += "</products><App><DSAutoUpdate>0</DSAutoUpdate></App></data>";
    QTest::newRow("very large") << large << false << off;

    QTest::newRow("unknown and repeated elements")
        << settings("<Unknown>1</Unknown><DSAutoUpdate>1</DSAutoUpdate><DSAutoUpdate>0</DSAutoUpdate><App/>",
                    "<name>Beta</name><name>Beta</name><update>x</update><update>false</update><zz/>")
        << false << off;
}

void TestSettings::badInput()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, readError);
    QFETCH(QString, firstLine);

    TempAppDir dir;
    MessageBoxSpy spy;
    QVERIFY(dir.writeFile(kCatalogue, kBase));
    QVERIFY(dir.writeFile(kSettings, content));

    CDataModel model;
    model.Init(QString());
    QCOMPARE(summary(model).first(), firstLine);
    // The catalogue's records are never lost to bad settings.
    QCOMPARE(model.GetProductListSize(), 3);
    QCOMPARE(model.GetCategoryListSize(), 3);

    if (readError) {
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.boxes().first().title, QStringLiteral("parseXML"));
        QCOMPARE(spy.boxes().first().icon, QMessageBox::NoIcon);
        QVERIFY(!spy.boxes().first().text.isEmpty());
        QVERIFY(dir.readFile(QStringLiteral("log/log_datamodel.txt")).contains("prop_ini.xml: line "));
        // The damaged file survives the save that replaces it.
        QCOMPARE(dir.readFile(kSettings + QStringLiteral(".damaged")), content);
    } else {
        QCOMPARE(spy.count(), 0);
        QVERIFY(!QFile::exists(dir.filePath(kSettings + QStringLiteral(".damaged"))));
    }
    QCOMPARE(dir.readFile(kSettings), content);

    QVERIFY(model.Save());
    CDataModel reread;
    reread.Init(QString());
    QCOMPARE(spy.count(), readError ? 1 : 0);
    QCOMPARE(summary(reread).first(), firstLine);
}

QTEST_MAIN(TestSettings)
#include "TestSettings.moc"
