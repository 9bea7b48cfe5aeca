#include "model/CCategory.h"
#include "model/CDataModel.h"
#include "model/CDataset.h"
#include "model/CInstallGroup.h"
#include "model/CProduct.h"
#include "support/MessageBoxSpy.h"
#include "support/TempAppDir.h"

#include <QDir>
#include <QtTest>

namespace {
// One line per product: name;category;dataset;product_path;update;install paths;remove files
QString describe(CProduct* p)
{
    QStringList installs;
    for (const CInstallPath* entry : p->GetInstallPaths())
        installs << entry->strPath + QLatin1Char('>') + entry->strSecond;
    return QStringList{p->GetName(),
                       p->GetCategoryName(),
                       p->GetDataset(),
                       p->GetProductPath(),
                       p->GetUpdate() ? QStringLiteral("1") : QStringLiteral("0"),
                       installs.join(QLatin1Char(',')),
                       p->GetRemoveFiles().join(QLatin1Char(','))}
        .join(QLatin1Char(';'));
}

QStringList productLines(CDataModel& model)
{
    QStringList lines;
    for (int i = 0; i < model.GetProductListSize(); ++i)
        lines << describe(model.GetProductByIndex(i));
    return lines;
}

QStringList categoryNames(CDataModel& model)
{
    QStringList names;
    for (int i = 0; i < model.GetCategoryListSize(); ++i)
        names << model.GetCategoryByIndex(i)->GetName() + QLatin1Char('=') + model.GetCategoryByIndex(i)->GetPath();
    return names;
}

QStringList datasetNames(CDataModel& model)
{
    QStringList names;
    for (int i = 0; i < model.GetDatasetList()->GetSize(); ++i)
        names << model.GetDatasetList()->GetByIndex(i)->GetName();
    return names;
}

// A small X-Plane 11 product: <p>name|extra elements</p>
QByteArray product(const char* name, const char* extra = "")
{
    return QByteArray("<name>") + name + "</name><category>X-Plane 11</category>" + extra;
}

QByteArray catalogue(const QByteArray& products, const QByteArray& rest = QByteArray())
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<data>" + rest + "<products><data>" + products
           + "</data></products></data>\n";
}
} // namespace

class TestCatalogue : public QObject
{
    Q_OBJECT

private slots:
    void parse_data();
    void parse();
    void installGroups_data();
    void installGroups();
    void badInput_data();
    void badInput();
    void defaultAndDemoCatalogues();
};

void TestCatalogue::parse_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QStringList>("products");
    QTest::addColumn<QStringList>("categories");
    QTest::addColumn<QStringList>("datasets");

    const QStringList justAll{QStringLiteral("All=")};

    QTest::newRow("no categories section still gives All")
        << catalogue(product("P")) << QStringList{"P;X-Plane 11;;;0;;"} << justAll << QStringList();

    QTest::newRow("upper case sorts before lower case")
        << catalogue(product("b") + product("A") + product("a") + product("B"))
        << QStringList{"A;X-Plane 11;;;0;;", "B;X-Plane 11;;;0;;", "a;X-Plane 11;;;0;;", "b;X-Plane 11;;;0;;"}
        << justAll << QStringList();

    QTest::newRow("equal names keep catalogue order")
        << catalogue(product("Same", "<dataset>one</dataset>") + product("Alpha")
                     + product("Same", "<dataset>two</dataset>") + product("Same", "<dataset>three</dataset>"))
        << QStringList{"Alpha;X-Plane 11;;;0;;", "Same;X-Plane 11;one;;0;;", "Same;X-Plane 11;two;;0;;",
                       "Same;X-Plane 11;three;;0;;"}
        << justAll << QStringList();

    QTest::newRow("only the two X-Plane categories are kept")
        << catalogue("<name>F</name><category>FSX</category><name>T</name><category>X-Plane 10</category>"
                     "<name>N</name><name>P</name><category>Prepar3D v4</category>"
                     "<name>E</name><category>x-plane 11</category>")
        << QStringList{"T;X-Plane 10;;;0;;"} << justAll << QStringList();

    QTest::newRow("repeated install_path adds, repeated product_path replaces")
        << catalogue(product("P", "<product_path>$SimPath\\first</product_path>"
                                  "<install_path>$SimPath\\A:\\x</install_path>"
                                  "<product_path>$SimPath\\\\second</product_path>"
                                  "<install_path>$ProductPath/B</install_path>"
                                  "<remove_file> $ProductPath\\old.bin </remove_file>"))
        << QStringList{"P;X-Plane 11;;$SimPath/second;0;$SimPath/A>/x,$ProductPath/B>;$ProductPath\\old.bin"}
        << justAll << QStringList();

    QTest::newRow("update is case-sensitive and the last one wins")
        << catalogue(product("A", "<update>true</update>") + product("B", "<update>TRUE</update>")
                     + product("C", "<update>true</update><update>no</update>")
                     + product("D", "<update>false</update><update> true </update>"))
        << QStringList{"A;X-Plane 11;;;1;;", "B;X-Plane 11;;;0;;", "C;X-Plane 11;;;0;;", "D;X-Plane 11;;;1;;"}
        << justAll << QStringList();

    QTest::newRow("route planner path gets its NavData folder")
        << catalogue(product("Orbital Route Planner X", "<product_path>$SimPath</product_path>")
                     + product("Orbital Route Planner Y", "<product_path>$SimPath\\ORPX Data\\NavData</product_path>")
                     + product("Orbital Route Planner Z", "<product_path>D:\\NavData\\ORP</product_path>")
                     + product("orbital route planner", "<product_path>$SimPath</product_path>"))
        << QStringList{"Orbital Route Planner X;X-Plane 11;;$SimPath/ORPX Data/NavData;0;;",
                       "Orbital Route Planner Y;X-Plane 11;;$SimPath/ORPX Data/NavData;0;;",
                       "Orbital Route Planner Z;X-Plane 11;;D:/NavData/ORP/ORPX Data/NavData;0;;",
                       "orbital route planner;X-Plane 11;;$SimPath;0;;"}
        << justAll << QStringList();

    QTest::newRow("end of data ends the categories")
        << catalogue("", "<categories><data><name>X-Plane 10</name><path> /sims/xp10 </path>"
                         "<name>X-Plane 11</name></data><name>Late</name><path>/late</path></categories>"
                         "<datasets><name>d1</name><name> </name><name>d2</name></datasets>")
        << QStringList() << QStringList{"All=", "X-Plane 10=/sims/xp10", "X-Plane 11="}
        << QStringList{"d1", "d2"};

    QTest::newRow("path before any category name is ignored")
        << catalogue("", "<categories><path>/nowhere</path><name>FSX</name><path>C:\\FSX</path></categories>")
        << QStringList() << QStringList{"All=", "FSX=C:\\FSX"} << QStringList();

    QTest::newRow("fields before a name or after an empty name are ignored")
        << catalogue("<dataset>orphan</dataset><category>X-Plane 11</category>" + product("A")
                     + "<name>  </name><dataset>lost</dataset>" + product("B", "<dataset>kept</dataset>"))
        << QStringList{"A;X-Plane 11;;;0;;", "B;X-Plane 11;kept;;0;;"} << justAll << QStringList();

    QTest::newRow("empty elements leave fields unchanged")
        << catalogue(product("A", "<dataset>ds</dataset><dataset></dataset><dataset/>"
                                  "<product_path>$SimPath</product_path><product_path>   </product_path>"))
        << QStringList{"A;X-Plane 11;ds;$SimPath;0;;"} << justAll << QStringList();

    QTest::newRow("a datasets token ends the products")
        << QByteArray("<data><products>" + product("A") + "<datasets><name>d</name></datasets>" + product("B")
                      + "</products></data>")
        << QStringList{"A;X-Plane 11;;;0;;"} << justAll << QStringList{"d"};

    QTest::newRow("unknown elements and nesting are skipped")
        << catalogue("<product><name>A</name><extra><category>X-Plane 11</category></extra>"
                     "<dataset><b>bold</b></dataset><unknown>1</unknown></product>",
                     "<comment>text</comment>")
        << QStringList{"A;X-Plane 11;;;0;;"} << justAll << QStringList();
}

void TestCatalogue::parse()
{
    QFETCH(QByteArray, xml);
    QFETCH(QStringList, products);
    QFETCH(QStringList, categories);
    QFETCH(QStringList, datasets);

    TempAppDir dir;
    MessageBoxSpy spy;
    QVERIFY(dir.writeFile(QStringLiteral("bin/base_ini.xml"), xml));
    CDataModel model;
    model.Init(QStringLiteral("test"));

    QCOMPARE(spy.count(), 0);
    QCOMPARE(productLines(model), products);
    QCOMPARE(categoryNames(model), categories);
    QCOMPARE(datasetNames(model), datasets);
}

void TestCatalogue::installGroups_data()
{
    QTest::addColumn<QByteArray>("products");
    QTest::addColumn<QStringList>("selected");
    QTest::addColumn<QStringList>("groups");
    QTest::addColumn<QStringList>("selectedAfter");

    QTest::newRow("same dataset and paths share a group")
        << (product("A", "<dataset>d</dataset><install_path>$SimPath\\Custom Data:\\x</install_path>")
            + product("B", "<dataset>d</dataset><install_path>$SimPath/Custom Data:/y</install_path>")
            + product("C", "<dataset>d</dataset><install_path>$SimPath/Other</install_path>"))
        << QStringList{"B"} << QStringList{"A,B", "C"} << QStringList{"A", "B"};

    QTest::newRow("another dataset opens its own group")
        << (product("A", "<dataset>d</dataset><install_path>$SimPath/Custom Data</install_path>")
            + product("B", "<dataset>e</dataset><install_path>$SimPath/Custom Data</install_path>"))
        << QStringList{"A"} << QStringList{"A", "B"} << QStringList{"A"};

    QTest::newRow("different numbers of paths: the dataset decides")
        << (product("A", "<dataset>d</dataset><install_path>$SimPath/One</install_path>")
            + product("B", "<dataset>d</dataset><install_path>$SimPath/Two</install_path>"
                           "<install_path>$SimPath/Three</install_path>")
            + product("C", "<dataset>d</dataset>"))
        << QStringList{"C"} << QStringList{"A,B,C"} << QStringList{"A", "B", "C"};

    QTest::newRow("unresolved paths never match")
        << (product("A", "<dataset>d</dataset><install_path>$UserDocuments/X</install_path>")
            + product("B", "<dataset>d</dataset><install_path>$UserDocuments/X</install_path>"))
        << QStringList() << QStringList{"A", "B"} << QStringList();

    QTest::newRow("order of paths matters")
        << (product("A", "<dataset>d</dataset><install_path>$SimPath/One</install_path>"
                         "<install_path>$SimPath/Two</install_path>")
            + product("B", "<dataset>d</dataset><install_path>$SimPath/Two</install_path>"
                           "<install_path>$SimPath/One</install_path>")
            + product("C", "<dataset>d</dataset><install_path>$SimPath/One</install_path>"
                           "<install_path>$SimPath//Two</install_path>"))
        << QStringList{"A", "B"} << QStringList{"A,C", "B"} << QStringList{"A", "B", "C"};
}

void TestCatalogue::installGroups()
{
    QFETCH(QByteArray, products);
    QFETCH(QStringList, selected);
    QFETCH(QStringList, groups);
    QFETCH(QStringList, selectedAfter);

    TempAppDir dir;
    const QByteArray sim = dir.filePath(QStringLiteral("sim")).toUtf8();
    QVERIFY(QDir().mkpath(dir.filePath(QStringLiteral("sim/X-Plane.app"))));
    QVERIFY(dir.writeFile(QStringLiteral("bin/base_ini.xml"),
                          catalogue(products, "<categories><name>X-Plane 11</name><path>" + sim
                                                  + "</path></categories>")));
    CDataModel model;
    model.Init(QString());
    for (const QString& name : selected)
        model.GetProductByName(name)->SetUpdate(true);

    model.InitProdUpdateListForUpdateOrReset(true);

    QStringList found;
    CInstallGroupList* list = model.GetInstallGroupList();
    for (int i = 0; i < list->GetSize(); ++i)
        found << list->GetByIndex(i)->GetProdNames().join(QLatin1Char(','));
    QCOMPARE(found, groups);
    QVERIFY(!list->GetByIndex(list->GetSize()));

    QStringList nowSelected;
    for (int i = 0; i < model.GetProductListSize(); ++i) {
        CProduct* p = model.GetProductByIndex(i);
        QVERIFY(p->GetInstallGroup());
        if (p->GetUpdate())
            nowSelected << p->GetName();
    }
    QCOMPARE(nowSelected, selectedAfter);

    // Deselecting one member deselects its whole group.
    if (!selectedAfter.isEmpty()) {
        model.GetProductByName(selectedAfter.first())->SetUpdate(false);
        for (CProduct* p : model.GetProductByName(selectedAfter.first())->GetInstallGroup()->GetProducts())
            QVERIFY2(!p->GetUpdate(), qPrintable(p->GetName()));
    }

    // Rebuilding twice must not leave stale groups or links behind.
    model.InitProdUpdateListForUpdateOrReset(false);
    QCOMPARE(list->GetSize(), groups.size());
}

void TestCatalogue::badInput_data()
{
    QTest::addColumn<QByteArray>("content"); // null: no file at all
    QTest::addColumn<QString>("boxTitle");   // empty: no box
    QTest::addColumn<QString>("boxText");    // empty: any non-empty text
    QTest::addColumn<QStringList>("products");

    const QByteArray good = catalogue(product("Kept", "<dataset>d</dataset>"));

    QTest::newRow("missing file") << QByteArray() << "Error! Init base" << "Couldn't open bin/base_ini.xml"
                                  << QStringList();
    QTest::newRow("empty file") << QByteArray("") << "parseXML" << "" << QStringList();
    QTest::newRow("truncated") << good.left(good.indexOf("</data></products>")) << "parseXML" << ""
                               << QStringList{"Kept"};
    QTest::newRow("not well formed")
        << QByteArray("<data><products>" + product("Kept") + "</category></products></data>") << "parseXML" << ""
        << QStringList{"Kept"};
    QTest::newRow("not UTF-8")
        << QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?><data><products>" + product("Kept")
                      + product("Caf\xe9") + "</products></data>")
        << "parseXML" << "" << QStringList();
    QByteArray binary;
    for (int i = 0; i < 4096; ++i)
        binary.append(char((i * 131 + 7) % 256));
    QTest::newRow("binary") << binary << "parseXML" << "" << QStringList();
    QTest::newRow("two roots") << good + good << "parseXML" << "" << QStringList{"Kept"};

    QByteArray nested = "<data><products>" + product("Deep");
    for (int i = 0; i < 20000; ++i)
        nested += "<n>";
    nested += "<name>Inner</name><category>X-Plane 10</category>";
    for (int i = 0; i < 20000; ++i)
        nested += "</n>";
    nested += "</products></data>";
    QTest::newRow("deeply nested") << nested << "" << "" << QStringList{"Deep", "Inner"};

    // Tens of megabytes of unknown elements around two products.
    QByteArray large = "<data><products>" + product("First");
    const QByteArray filler = "<unknown attribute=\"value\">some text that nobody reads</unknown>\n";
    while (large.size() < 30 * 1024 * 1024)
        large += filler;
    large += product("Last") + "</products></data>";
    QTest::newRow("very large") << large << "" << "" << QStringList{"First", "Last"};

    QTest::newRow("repeated sections add up")
        << catalogue(product("B"), "<products>" + product("A") + "</products>") << "" << "" << QStringList{"A", "B"};
    QTest::newRow("unknown and repeated elements")
        << catalogue(product("A", "<category>X-Plane 11</category><category>X-Plane 11</category><x/><y>1</y>"))
        << "" << "" << QStringList{"A"};
    QTest::newRow("everything filtered away")
        << catalogue("<name>A</name><category>FSX</category><name>B</name>") << "" << "" << QStringList();
    QTest::newRow("products without dataset or path")
        << catalogue(product("NoDataset", "<product_path>$SimPath</product_path>") + product("NoPath"))
        << "" << "" << QStringList{"NoDataset", "NoPath"};
}

void TestCatalogue::badInput()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, boxTitle);
    QFETCH(QString, boxText);
    QFETCH(QStringList, products);

    TempAppDir dir;
    MessageBoxSpy spy;
    if (!content.isNull())
        QVERIFY(dir.writeFile(QStringLiteral("bin/base_ini.xml"), content));

    CDataModel model;
    model.Init(QString());

    if (boxTitle.isEmpty()) {
        QCOMPARE(spy.count(), 0);
    } else {
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.boxes().first().title, boxTitle);
        if (boxTitle == QLatin1String("parseXML"))
            QCOMPARE(spy.boxes().first().icon, QMessageBox::NoIcon);
        else
            QCOMPARE(spy.boxes().first().icon, QMessageBox::Critical);
        if (boxText.isEmpty())
            QVERIFY(!spy.boxes().first().text.isEmpty());
        else
            QCOMPARE(spy.boxes().first().text, boxText);
        // The log names the file and where it went wrong.
        QVERIFY(dir.readFile(QStringLiteral("log/log_datamodel.txt")).contains("base_ini.xml"));
    }
    QStringList names;
    for (int i = 0; i < model.GetProductListSize(); ++i)
        names << model.GetProductByIndex(i)->GetName();
    QCOMPARE(names, products);

    // Reading never touches the catalogue, and start-up does not write settings.
    QCOMPARE(dir.readFile(QStringLiteral("bin/base_ini.xml")), content.isNull() ? QByteArray() : content);
    QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("bin/prop_ini.xml"))));
}

void TestCatalogue::defaultAndDemoCatalogues()
{
    const QString source = QString::fromLocal8Bit(qgetenv("QMK_TEST_SOURCE_DIR"));
    if (source.isEmpty())
        QSKIP("source folder not known");

    {
        TempAppDir dir;
        MessageBoxSpy spy;
        QFile shipped(source + QStringLiteral("/resources/bin/base_ini.xml"));
        QVERIFY(shipped.open(QIODevice::ReadOnly));
        QVERIFY(dir.writeFile(QStringLiteral("bin/base_ini.xml"), shipped.readAll()));
        CDataModel model;
        model.Init(QString());
        QCOMPARE(spy.count(), 0);
        QVERIFY(model.GetProductListSize() >= 6);
        QVERIFY(model.GetCategoryByName(QStringLiteral("X-Plane 10")));
        QVERIFY(model.GetCategoryByName(QStringLiteral("FSX")));
        for (int i = 0; i < model.GetProductListSize(); ++i) {
            CProduct* p = model.GetProductByIndex(i);
            QVERIFY2(p->GetCategory(), qPrintable(p->GetName()));
            QVERIFY2(model.GetDatasetList()->GetByName(p->GetDataset()), qPrintable(p->GetName()));
            QVERIFY2(!p->GetInstallPaths().isEmpty() && !p->GetCycleInfoPath().isEmpty(), qPrintable(p->GetName()));
        }
    }

    // The demo script builds folders in which the demo products show different states.
    TempAppDir dir;
    MessageBoxSpy spy;
    QProcess script;
    script.start(source + QStringLiteral("/tools/demo/make-demo-sims.sh"),
                 {dir.filePath(QStringLiteral("sims")), dir.path()});
    QVERIFY(script.waitForFinished(30000));
    QCOMPARE(script.exitCode(), 0);
    CDataModel model;
    model.Init(QString());
    QCOMPARE(spy.count(), 0);
    QStringList states;
    for (int i = 0; i < model.GetProductListSize(); ++i) {
        CProduct* p = model.GetProductByIndex(i);
        QVERIFY2(p->GetCategory() && p->GetCategory()->CheckPath(), qPrintable(p->GetName()));
        p->InitNewProdPath(p->GetProductPath());
        p->CheckCycleVersion(QStringLiteral("2101"), QStringLiteral("1"));
        states << p->GetName() + QLatin1Char('=') + p->GetCycleVersion() + QLatin1Char('/')
                      + QString::number(p->GetInstallState());
    }
    QCOMPARE(states, (QStringList{"Kestrel Avionics KX-900 FMS=/7", "Larkspur Jetliner Family=2013/7",
                                  "Larkspur Regional Jet=2013/7", "Orbital Route Planner X=2012/7",
                                  "Tern Turboprop Series=1913/7", "X-Plane 10 Default Navigation=/7",
                                  "X-Plane 11 Default Navigation=2101/5"}));
    model.InitProdUpdateListForUpdateOrReset(false);
    QCOMPARE(model.GetProductByName(QStringLiteral("Larkspur Jetliner Family"))->GetInstallGroup(),
             model.GetProductByName(QStringLiteral("Larkspur Regional Jet"))->GetInstallGroup());
}

QTEST_MAIN(TestCatalogue)
#include "TestCatalogue.moc"
