#include "app/Application.h"
#include "model/CAiracCycle.h"
#include "model/CCategory.h"
#include "model/CDataModel.h"
#include "model/CDataset.h"
#include "model/CFileTree.h"
#include "model/CInstallGroup.h"
#include "model/CProduct.h"
#include "support/MessageBoxSpy.h"
#include "support/TempAppDir.h"

#include <QtTest>

#include <memory>
#include <unistd.h>

namespace {
// name;category;dataset;product_path;update;install paths;remove files
QString describe(CProduct* p)
{
    QStringList installs;
    for (const CInstallPath* entry : p->GetInstallPaths())
        installs << entry->strPath + QLatin1Char('>') + entry->strSecond;
    return QStringList{p->GetName(),
                       p->GetCategoryName(),
                       p->GetDataset(),
                       p->GetProductPath(),
                       p->GetUpdate() ? "1" : "0",
                       installs.join(QLatin1Char(',')),
                       p->GetRemoveFiles().join(',')}
        .join(QLatin1Char(';'));
}

QStringList lists(CDataModel& model)
{
    QStringList lines;
    for (int i = 0; i < model.GetProductListSize(); ++i)
        lines << describe(model.GetProductByIndex(i));
    for (int i = 0; i < model.GetCategoryListSize(); ++i)
        lines << "cat " + model.GetCategoryByIndex(i)->GetName() + '=' + model.GetCategoryByIndex(i)->GetPath();
    for (int i = 0; i < model.GetDatasetList()->GetSize(); ++i)
        lines << "ds " + model.GetDatasetList()->GetByIndex(i)->GetName();
    return lines;
}

QByteArray product(const char* name, const char* extra = "")
{
    return QByteArray("<name>") + name + "</name><category>X-Plane 11</category>" + extra;
}

QByteArray catalogue(const QByteArray& products, const QByteArray& rest = QByteArray())
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<data>" + rest + "<products><data>" + products +
           "</data></products></data>\n";
}

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

// Simulator folders in a temporary program folder; @SIM@, @SIM2@, @UNI@ (quotes, non-ASCII),
// @NOSIM@ (no X-Plane.app) and @MISSING@ stand for them in the rows.
struct Sims
{
    TempAppDir dir;
    QMap<QString, QString> folders;
    std::unique_ptr<CCategory> cat;

    Sims()
    {
        const QStringList names{"@SIM@=X-Plane 11", "@SIM2@=Second", "@UNI@=Sim \"Über\" 'Ñ' 11", "@NOSIM@=Empty"};
        for (const QString& n : names) {
            const QString path = dir.filePath(QStringLiteral("sims/") + n.section(QLatin1Char('='), 1));
            QDir().mkpath(n.startsWith(QLatin1String("@NOSIM")) ? path : path + QStringLiteral("/x-plane.APP"));
            folders[n.section(QLatin1Char('='), 0, 0)] = path;
        }
        folders[QStringLiteral("@MISSING@")] = dir.filePath(QStringLiteral("sims/Missing"));
    }
    QString expand(QString text) const
    {
        for (auto it = folders.constBegin(); it != folders.constEnd(); ++it)
            text.replace(it.key(), it.value());
        return text;
    }
    // "none": no category; "FSX:@SIM@": another category; else the X-Plane 11 folder ("" = empty).
    CCategory* category(const QString& which)
    {
        if (which == QLatin1String("none"))
            return nullptr;
        const bool named = which.contains(QLatin1Char(':'));
        cat.reset(new CCategory(named ? which.section(QLatin1Char(':'), 0, 0) : QStringLiteral("X-Plane 11")));
        cat->SetPath(expand(named ? which.section(QLatin1Char(':'), 1) : which));
        return cat.get();
    }
    QByteArray log() const { return dir.readFile(QStringLiteral("log/log.txt")); }
};

void resolverColumns()
{
    QTest::addColumn<QString>("tmpl");
    QTest::addColumn<QString>("category");
    QTest::addColumn<QString>("newProductPath");
    QTest::addColumn<QString>("expected");
}

class StateSink : public QObject
{
    Q_OBJECT
public:
    QList<int> states;
public slots:
    void take(EQMKProductInstallState state) { states << int(state); }
};
} // namespace

// The catalogue the program ships and the user's settings, read from and written to the program folder;
// the products they describe, their folders and cycles.
class TestCatalogue : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void parse_data();
    void parse();
    void installGroups_data();
    void installGroups();
    void shippedCatalogues_data();
    void shippedCatalogues();
    void savedTextIsExact();
    void roundTrip_data();
    void roundTrip();
    void saveFailureKeepsOldFile_data();
    void saveFailureKeepsOldFile();
    void badSettings_data();
    void badSettings();
    void resolve_data();
    void resolve();
    void initNewProdPath_data();
    void initNewProdPath();
    void initNewInstallPaths_data();
    void initNewInstallPaths();
    void categoryFolderChangeTakesEffect();
    void removeFileList_data();
    void removeFileList();
    void cycleCheck_data();
    void cycleCheck();
    void backupCycleFile();

    // Cycle dates against published effective dates, and the walk through every cycle from 1901.
    void effectiveDate_data()
    {
        QTest::addColumn<QString>("cycle");
        QTest::addColumn<QDate>("effective"); // null: names no cycle

        QTest::newRow("first known") << "0001" << QDate(2000, 1, 27);
        QTest::newRow("1401") << "1401" << QDate(2014, 1, 9);
        QTest::newRow("last of 2014") << "1413" << QDate(2014, 12, 11);
        QTest::newRow("1801") << "1801" << QDate(2018, 1, 4);
        QTest::newRow("2020 has a 14th") << "2014" << QDate(2020, 12, 31);
        // The walk below proves the cycles between 1901 and 2613 from this one.
        QTest::newRow("2601") << "2601" << QDate(2026, 1, 22);
        QTest::newRow("2043 has a 14th") << "4314" << QDate(2043, 12, 31);
        QTest::newRow("last known") << "9913" << QDate(2099, 12, 17);

        QTest::newRow("14th of a 13-cycle year") << "1414" << QDate();
        QTest::newRow("15th") << "2015" << QDate();
        QTest::newRow("cycle 00") << "2000" << QDate();
        QTest::newRow("three digits") << "201" << QDate();
        QTest::newRow("five digits") << "20011" << QDate();
        QTest::newRow("letter") << "20a1" << QDate();
        QTest::newRow("space") << " 201" << QDate();
        QTest::newRow("sign") << "+201" << QDate();
        QTest::newRow("other digits") << QString::fromUtf8("\xd9\xa2\xd9\xa0\xd9\xa0\xd9\xa1") << QDate();
    }

    void effectiveDate()
    {
        QFETCH(QString, cycle);
        QFETCH(QDate, effective);

        QCOMPARE(CAiracCycle::EffectiveDate(cycle), effective);
        QCOMPARE(CAiracCycle::LastDay(cycle), effective.isValid() ? effective.addDays(27) : QDate());
        QCOMPARE(CAiracCycle::DaysExpired(cycle, QDate(2100, 6, 1)) >= 0, effective.isValid());
        if (effective.isValid()) {
            QCOMPARE(CAiracCycle::CycleOn(effective), cycle);
            // Before the first cycle and after the last one no cycle is known.
            QCOMPARE(CAiracCycle::CycleOn(effective.addDays(-1)).isEmpty(), cycle == QLatin1String("0001"));
            QCOMPARE(CAiracCycle::CycleOn(effective.addDays(28)).isEmpty(), cycle == QLatin1String("9913"));
        }
    }

    void daysExpired_data()
    {
        QTest::addColumn<QString>("cycle");
        QTest::addColumn<QDate>("today");
        QTest::addColumn<int>("days"); // -1: in force, not yet, or no cycle

        QTest::newRow("first day") << "2601" << QDate(2026, 1, 22) << -1;
        QTest::newRow("last day") << "2601" << QDate(2026, 2, 18) << -1;
        QTest::newRow("next one took effect") << "2601" << QDate(2026, 2, 19) << 0;
        QTest::newRow("over a year's end") << "2513" << QDate(2026, 2, 1) << 10;
        QTest::newRow("not yet in force") << "2605" << QDate(2026, 1, 1) << -1;
        QTest::newRow("no cycle") << "unknown" << QDate(2026, 1, 1) << -1;
        QTest::newRow("no day") << "2601" << QDate() << -1;
    }

    void daysExpired()
    {
        QFETCH(QString, cycle);
        QFETCH(QDate, today);
        QFETCH(int, days);
        QCOMPARE(CAiracCycle::DaysExpired(cycle, today), days);
    }

    // Each cycle starts on a Thursday the day after the one before ends, and the numbers run on
    // without a gap: 13 a year, 14 in 2020.
    void everyCycleFrom1901To2613()
    {
        QString cycle = QStringLiteral("1901");
        QMap<int, int> perYear;
        while (cycle <= QLatin1String("2613") && perYear.size() < 10) {
            const QDate effective = CAiracCycle::EffectiveDate(cycle);
            const QDate last = CAiracCycle::LastDay(cycle);
            QVERIFY2(effective.isValid(), qPrintable(cycle));
            QCOMPARE(effective.dayOfWeek(), int(Qt::Thursday));
            QCOMPARE(effective.year(), 2000 + cycle.leftRef(2).toInt());
            QCOMPARE(effective.daysTo(last), qint64(27));
            QCOMPARE(CAiracCycle::CycleOn(effective), cycle);
            QCOMPARE(CAiracCycle::CycleOn(last), cycle);
            const QString next = CAiracCycle::CycleOn(last.addDays(1));
            QCOMPARE(CAiracCycle::EffectiveDate(next), last.addDays(1));
            const bool newYear = next.leftRef(2) != cycle.leftRef(2);
            QCOMPARE(next.midRef(2).toInt(), newYear ? 1 : cycle.midRef(2).toInt() + 1);
            ++perYear[effective.year()];
            cycle = next;
        }
        QCOMPARE(cycle, QStringLiteral("2701"));
        QCOMPARE(perYear.keys(), (QList<int>{2019, 2020, 2021, 2022, 2023, 2024, 2025, 2026}));
        for (auto it = perYear.cbegin(); it != perYear.cend(); ++it)
            QCOMPARE(it.value(), it.key() == 2020 ? 14 : 13);
    }
};

// clang-format off
// What the model holds after reading a catalogue, and the box a file that cannot be read shows.
void TestCatalogue::parse_data()
{
    QTest::addColumn<QByteArray>("xml"); // null: no file
    QTest::addColumn<QString>("box");    // title, or title|text; empty: no box
    QTest::addColumn<QStringList>("expected");
    const QString all = QStringLiteral("cat All=");

    QTest::newRow("code-unit order, All without a categories section")
        << catalogue(product("b") + product("A") + product("a") + product("B"))
        << "" << QStringList{"A;X-Plane 11;;;0;;", "B;X-Plane 11;;;0;;", "a;X-Plane 11;;;0;;", "b;X-Plane 11;;;0;;",
                             all};
    QTest::newRow("equal names keep catalogue order")
        << catalogue(product("Same", "<dataset>1</dataset>") + product("Alpha") +
                     product("Same", "<dataset>2</dataset>") + product("Same", "<dataset>3</dataset>"))
        << "" << QStringList{"Alpha;X-Plane 11;;;0;;", "Same;X-Plane 11;1;;0;;", "Same;X-Plane 11;2;;0;;",
                       "Same;X-Plane 11;3;;0;;", all};
    QTest::newRow("only the X-Plane categories")
        << catalogue("<name>F</name><category>FSX</category><name>T</name><category>X-Plane 10</category>"
                     "<name>N</name><name>E</name><category>x-plane 11</category>")
        << "" << QStringList{"T;X-Plane 10;;;0;;", all};
    QTest::newRow("repeated fields, empty elements")
        << catalogue(product("P", "<product_path>$SimPath\\first</product_path><install_path>$SimPath\\A:\\x"
                                  "</install_path><product_path>$SimPath\\\\second</product_path><product_path>"
                                  "  </product_path><dataset>d</dataset><dataset/><install_path>$ProductPath/B"
                                  "</install_path><remove_file> $ProductPath\\old.bin </remove_file>"))
        << ""
        << QStringList{"P;X-Plane 11;d;$SimPath/second;0;$SimPath/A>/x,$ProductPath/B>;$ProductPath\\old.bin", all};
    QTest::newRow("update is case-sensitive")
        << catalogue(product("A", "<update>true</update>") + product("B", "<update>TRUE</update>") +
                     product("C", "<update>true</update><update>no</update>"))
        << "" << QStringList{"A;X-Plane 11;;;1;;", "B;X-Plane 11;;;0;;", "C;X-Plane 11;;;0;;", all};
    QTest::newRow("route planner NavData")
        << catalogue(product("Orbital Route Planner X", "<product_path>$SimPath</product_path>") +
                     product("Orbital Route Planner Y", "<product_path>$SimPath\\ORPX Data\\NavData</product_path>") +
                     product("Orbital Route Planner Z", "<product_path>D:\\NavData\\ORP</product_path>") +
                     product("orbital route planner", "<product_path>$SimPath</product_path>"))
        << "" << QStringList{"Orbital Route Planner X;X-Plane 11;;$SimPath/ORPX Data/NavData;0;;",
                       "Orbital Route Planner Y;X-Plane 11;;$SimPath/ORPX Data/NavData;0;;",
                       "Orbital Route Planner Z;X-Plane 11;;D:/NavData/ORP/ORPX Data/NavData;0;;",
                       "orbital route planner;X-Plane 11;;$SimPath;0;;", all};
    QTest::newRow("end of data ends the categories")
        << catalogue("", "<categories><path>/nowhere</path><data><name>X-Plane 10</name><path> /sims/xp10 </path>"
                         "<name>X-Plane 11</name></data><name>Late</name></categories>"
                         "<datasets><name>d1</name><name> </name><name>d2</name></datasets>")
        << "" << QStringList{all, "cat X-Plane 10=/sims/xp10", "cat X-Plane 11=", "ds d1", "ds d2"};
    QTest::newRow("fields before a name or after an empty one are ignored")
        << catalogue("<dataset>orphan</dataset>" + product("A", "<x><dataset><b>bold</b></dataset></x>") +
                     "<name>  </name><dataset>lost</dataset>" + product("B", "<dataset>kept</dataset>"))
        << "" << QStringList{"A;X-Plane 11;;;0;;", "B;X-Plane 11;kept;;0;;", all};
    QTest::newRow("a datasets token ends the products")
        << QByteArray("<data><products>" + product("A") + "<datasets><name>d</name></datasets>" + product("B") +
                      "</products></data>")
        << "" << QStringList{"A;X-Plane 11;;;0;;", all, "ds d"};

    const QByteArray good = catalogue(product("Kept", "<dataset>d</dataset>"));
    const QStringList kept{"Kept;X-Plane 11;d;;0;;", all};
    QByteArray binary;
    for (int i = 0; i < 4096; ++i)
        binary.append(char((i * 131 + 7) % 256));
    QByteArray nested = "<data><products>" + product("Deep") + QByteArray("<n>").repeated(20000) +
                        "<name>Inner</name><category>X-Plane 10</category>" + QByteArray("</n>").repeated(20000) +
                        "</products></data>";
    QByteArray large = "<data><products>" + product("First") +
                       QByteArray("<unknown attribute=\"value\">text nobody reads</unknown>\n").repeated(600000) +
                       product("Last") + "</products></data>";
    QTest::newRow("missing") << QByteArray() << "Error! Init base|Couldn't open bin/base_ini.xml" << QStringList();
    QTest::newRow("empty") << QByteArray("") << "parseXML" << QStringList{all};
    QTest::newRow("truncated") << good.left(good.indexOf("</data></products>")) << "parseXML" << kept;
    QTest::newRow("not well formed") << "<data><products>" + product("Kept") + "</category></products></data>"
                                     << "parseXML" << QStringList{"Kept;X-Plane 11;;;0;;", all};
    QTest::newRow("not UTF-8") << "<data><products>" + product("Caf\xe9") + "</products></data>" << "parseXML"
                               << QStringList{all};
    QTest::newRow("binary") << binary << "parseXML" << QStringList{all};
    QTest::newRow("two documents") << good + good << "parseXML" << kept;
    QTest::newRow("deeply nested") << nested << ""
                                   << QStringList{"Deep;X-Plane 11;;;0;;", "Inner;X-Plane 10;;;0;;", all};
    QTest::newRow("very large") << large << "" << QStringList{"First;X-Plane 11;;;0;;", "Last;X-Plane 11;;;0;;", all};
    QTest::newRow("repeated sections add up") << catalogue(product("B"), "<products>" + product("A") + "</products>")
                                              << "" << QStringList{"A;X-Plane 11;;;0;;", "B;X-Plane 11;;;0;;", all};
}
// clang-format on

void TestCatalogue::parse()
{
    QFETCH(QByteArray, xml);
    QFETCH(QString, box);
    QFETCH(QStringList, expected);
    TempAppDir dir;
    MessageBoxSpy spy;
    if (!xml.isNull())
        QVERIFY(dir.writeFile(QStringLiteral("bin/base_ini.xml"), xml));
    CDataModel model;
    model.Init(QStringLiteral("test"));
    QCOMPARE(spy.count(), box.isEmpty() ? 0 : 1);
    if (!box.isEmpty()) {
        const MessageBoxSpy::Box& shown = spy.boxes().first();
        QCOMPARE(shown.title, box.section(QLatin1Char('|'), 0, 0));
        QCOMPARE(shown.icon, box.contains(QLatin1Char('|')) ? QMessageBox::Critical : QMessageBox::NoIcon);
        QVERIFY(!shown.text.isEmpty());
        if (box.contains(QLatin1Char('|')))
            QCOMPARE(shown.text, box.section(QLatin1Char('|'), 1));
        QVERIFY(dir.readFile(QStringLiteral("log/log_datamodel.txt")).contains("base_ini.xml")); // names the file
    }
    QCOMPARE(lists(model), expected);
    QCOMPARE(dir.readFile(QStringLiteral("bin/base_ini.xml")), xml.isNull() ? QByteArray() : xml);
}

void TestCatalogue::installGroups_data()
{
    QTest::addColumn<QByteArray>("products");
    QTest::addColumn<QString>("selected");
    QTest::addColumn<QStringList>("groups");
    QTest::addColumn<QString>("selectedAfter");

    QTest::newRow("same dataset and paths")
        << (product("A", "<dataset>d</dataset><install_path>$SimPath\\Custom Data:\\x</install_path>") +
            product("B", "<dataset>d</dataset><install_path>$SimPath/Custom Data:/y</install_path>") +
            product("C", "<dataset>d</dataset><install_path>$SimPath/Other</install_path>") +
            product("D", "<dataset>e</dataset><install_path>$SimPath/Custom Data</install_path>"))
        << "B" << QStringList{"A,B", "C", "D"} << "A,B";
    QTest::newRow("path count differs: dataset decides")
        << (product("A", "<dataset>d</dataset><install_path>$SimPath/One</install_path>") +
            product("B", "<dataset>d</dataset><install_path>$SimPath/Two</install_path>"
                         "<install_path>$SimPath/Three</install_path>") +
            product("C", "<dataset>d</dataset>"))
        << "C" << QStringList{"A,B,C"} << "A,B,C";
    QTest::newRow("a first group without paths takes the next member's")
        << (product("A", "<dataset>d</dataset>") +
            product("B", "<dataset>d</dataset><install_path>$SimPath/X</install_path>") +
            product("C", "<dataset>d</dataset><install_path>$SimPath/Y</install_path>") +
            product("D", "<dataset>d</dataset><install_path>$SimPath/X</install_path>"))
        << "" << QStringList{"A,B,D", "C"} << "";
    QTest::newRow("unresolved paths never match")
        << (product("A", "<dataset>d</dataset><install_path>$UserDocuments/X</install_path>") +
            product("B", "<dataset>d</dataset><install_path>$UserDocuments/X</install_path>"))
        << "" << QStringList{"A", "B"} << "";
    QTest::newRow("order of paths matters")
        << (product("A", "<dataset>d</dataset><install_path>$SimPath/1</install_path><install_path>$SimPath/2"
                         "</install_path>") +
            product("B", "<dataset>d</dataset><install_path>$SimPath/2</install_path><install_path>$SimPath/1"
                         "</install_path>") +
            product("C", "<dataset>d</dataset><install_path>$SimPath/1</install_path><install_path>$SimPath//2"
                         "</install_path>"))
        << "B" << QStringList{"A,C", "B"} << "B";
}

void TestCatalogue::installGroups()
{
    QFETCH(QByteArray, products);
    QFETCH(QString, selected);
    QFETCH(QStringList, groups);
    QFETCH(QString, selectedAfter);
    TempAppDir dir;
    QVERIFY(QDir().mkpath(dir.filePath(QStringLiteral("sim/X-Plane.app"))));
    QVERIFY(
        dir.writeFile(QStringLiteral("bin/base_ini.xml"),
                      catalogue(products, "<categories><name>X-Plane 11</name><path>" +
                                              dir.filePath(QStringLiteral("sim")).toUtf8() + "</path></categories>")));
    CDataModel model;
    model.Init(QString());
    if (!selected.isEmpty())
        model.GetProductByName(selected)->SetUpdate(true);

    for (int round = 0; round < 2; ++round) { // rebuilding leaves no stale groups
        model.InitProdUpdateListForUpdateOrReset(round == 0);
        QStringList found;
        for (int i = 0; i < model.GetInstallGroupList()->GetSize(); ++i)
            found << model.GetInstallGroupList()->GetByIndex(i)->GetProdNames().join(QLatin1Char(','));
        QCOMPARE(found, groups);
    }
    QStringList now;
    for (int i = 0; i < model.GetProductListSize(); ++i) {
        if (model.GetProductByIndex(i)->GetUpdate())
            now << model.GetProductByIndex(i)->GetName();
    }
    QCOMPARE(now.join(QLatin1Char(',')), selectedAfter);
    if (!selected.isEmpty()) { // deselecting one member deselects its group
        model.GetProductByName(selected)->SetUpdate(false);
        for (CProduct* p : model.GetProductByName(selected)->GetInstallGroup()->GetProducts())
            QVERIFY2(!p->GetUpdate(), qPrintable(p->GetName()));
    }
}

void TestCatalogue::shippedCatalogues_data()
{
    QTest::addColumn<QString>("simsFolder");
    QTest::newRow("plain folder") << "sims";
    QTest::newRow("folder with XML characters") << "R&D <sims> & \"co\"";
}

void TestCatalogue::shippedCatalogues()
{
    QFETCH(QString, simsFolder);
    const QString source = QString::fromLocal8Bit(qgetenv("QMK_TEST_SOURCE_DIR"));
    if (source.isEmpty())
        QSKIP("source folder not known");
    // The demo script makes simulator folders in which the demo products show different states.
    TempAppDir dir;
    MessageBoxSpy spy;
    QProcess script;
    script.start(source + QStringLiteral("/tools/demo/make-demo-sims.sh"), {dir.filePath(simsFolder), dir.path()});
    QVERIFY(script.waitForFinished(30000) && script.exitCode() == 0);
    CDataModel model;
    model.Init(QString());
    QStringList states;
    for (int i = 0; i < model.GetProductListSize(); ++i) {
        CProduct* p = model.GetProductByIndex(i);
        QVERIFY2(p->GetCategory() && p->GetCategory()->CheckPath(), qPrintable(p->GetName()));
        p->InitNewProdPath(p->GetProductPath());
        p->CheckCycleVersion(QStringLiteral("2101"), QStringLiteral("1"));
        states << p->GetName() + '=' + p->GetCycleVersion() + '/' + QString::number(p->GetInstallState());
    }
    QCOMPARE(spy.count(), 0);
    QCOMPARE(model.GetCategoryByName(QStringLiteral("X-Plane 11"))->GetPath(),
             dir.filePath(simsFolder + "/X-Plane 11"));
    QCOMPARE(states, (QStringList{"Kestrel Avionics KX-900 FMS=/7", "Larkspur Jetliner Family=2013/7",
                                  "Larkspur Regional Jet=2013/7", "Orbital Route Planner X=2012/7",
                                  "Tern Turboprop Series=1913/7", "X-Plane 10 Default Navigation=/7",
                                  "X-Plane 11 Default Navigation=2101/5"}));
    model.InitProdUpdateListForUpdateOrReset(false);
    QCOMPARE(model.GetInstallGroupList()->GetSize(), 6);

    // The catalogue the build ships reads cleanly, every product names a known dataset, and it
    // names the release key, so that no download is taken unsigned.
    QFile shipped(QCoreApplication::applicationDirPath() + QStringLiteral("/../bin/base_ini.xml"));
    QVERIFY(shipped.open(QIODevice::ReadOnly) && dir.writeFile(QStringLiteral("bin/base_ini.xml"), shipped.readAll()));
    CDataModel defaults;
    defaults.Init(QString());
    QVERIFY(defaults.GetProductListSize() >= 6);
    QCOMPARE(defaults.GetTrustedKeys().size(), 1);
    for (int i = 0; i < defaults.GetProductListSize(); ++i)
        QVERIFY(defaults.GetDatasetList()->GetByName(defaults.GetProductByIndex(i)->GetDataset()));
    QCOMPARE(spy.count(), 0);
}

void TestCatalogue::init()
{
    Application::setLanguage(QString());
    Application::setApplicationVersionEx(QStringLiteral("MPLET"));
}

void TestCatalogue::savedTextIsExact()
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

// clang-format off
void TestCatalogue::roundTrip_data()
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
        << QStringList{defaults, plain, "Alpha;1;d2;$SimPath/Alpha;X-Plane 11", kDefaultProducts.at(1),
                       "Orbital Route Planner;0;d1;$SimPath/ORP/ORPX Data/NavData;X-Plane 11", "All=",
                       "X-Plane 10=/sims/xp10", "X-Plane 11=/new/xp11"}
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
// clang-format on

void TestCatalogue::roundTrip()
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

void TestCatalogue::saveFailureKeepsOldFile_data()
{
    QTest::addColumn<QString>("how");
    QTest::newRow("read-only folder") << "folder";
    QTest::newRow("read-only file") << "file";
    QTest::newRow("settings path is a folder") << "dir";
    QTest::newRow("no bin folder") << "nobin";
}

void TestCatalogue::saveFailureKeepsOldFile()
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

void TestCatalogue::badSettings_data()
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
    // Undecodable text and binary files go through the catalogue's reader (badCatalogue); what
    // the settings add is the copy of the damaged file, proved by the rows above.
    QTest::newRow("deeply nested") << "<data><App><DSAutoUpdate>0</DSAutoUpdate>" + QByteArray("<x>").repeated(20000) +
                                          QByteArray("</x>").repeated(20000) + "</App></data>"
                                   << false << off;
    const QByteArray large =
        "<data><products>" +
        QByteArray("<name>Nobody</name><update>true</update><category>FSX</category>\n").repeated(330000) +
        "</products><App><DSAutoUpdate>0</DSAutoUpdate></App></data>";
    QTest::newRow("very large") << large << false << off;

    QTest::newRow("unknown and repeated elements")
        << settings("<Unknown>1</Unknown><DSAutoUpdate>1</DSAutoUpdate><DSAutoUpdate>0</DSAutoUpdate><App/>",
                    "<name>Beta</name><name>Beta</name><update>x</update><update>false</update><zz/>")
        << false << off;
}

void TestCatalogue::badSettings()
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

// clang-format off
// "translate:" rows resolve the product folder; "real:" rows a folder the product names, and its
// cycle file folder the same way.
void TestCatalogue::resolve_data()
{
    resolverColumns();
    const QString bad = QStringLiteral("<X-Plane 11 - Path>");
    QTest::newRow("translate: sim folder, mixed separators")
        << "$SimPath\\\\SimObjects//Airplanes\\" << "@SIM@" << "" << "@SIM@/SimObjects/Airplanes/";
    QTest::newRow("translate: quotes and non-ASCII") << "$SimPath/Custom Data" << "@UNI@" << "" << "@UNI@/Custom Data";
    QTest::newRow("translate: missing folder") << "$SimPath/SimObjects" << "@MISSING@" << "" << bad + "/SimObjects";
    QTest::newRow("translate: no simulator in folder") << "$SimPath/A" << "@NOSIM@" << "" << bad + "/A";
    QTest::newRow("translate: empty folder") << "$SimPath/A" << "" << "" << bad + "/A";
    QTest::newRow("translate: other category") << "$SimPath/A" << "FSX:@SIM@" << "" << "<FSX - Path>/A";
    QTest::newRow("translate: no category") << "$SimPath\\A" << "none" << "" << "$SimPath/A";
    QTest::newRow("translate: user documents") << "$UserDocuments/Foo/Bar" << "@SIM@" << "" << "/Foo/Bar";
    QTest::newRow("translate: product path as written") << "$ProductPath/x" << "@SIM@" << "/p" << "$ProductPath/x";
    QTest::newRow("translate: case-sensitive, whole word")
        << "$simpath/$SimPathX" << "@SIM@" << "" << "$simpath/$SimPathX";
    QTest::newRow("translate: first component only") << "$SimPath/$SimPath" << "@SIM@" << "" << "@SIM@/$SimPath";
    QTest::newRow("real: sim folder") << "$SimPath\\Custom Data\\x.txt" << "@UNI@" << "" << "@UNI@/Custom Data/x.txt";
    QTest::newRow("real: no simulator empties") << "$SimPath/x" << "@NOSIM@" << "" << "";
    QTest::newRow("real: no category empties") << "$SimPath/x" << "none" << "" << "";
    QTest::newRow("real: product path") << "$ProductPath\\navdata\\" << "none" << "/p" << "/p/navdata/";
    QTest::newRow("real: product path not resolved") << "$ProductPath/x" << "@SIM@" << "" << "";
    QTest::newRow("real: empty user folder empties") << "$UserDocuments/Foo" << "@SIM@" << "" << "";
    QTest::newRow("real: real folder") << "/abs\\\\x" << "@SIM@" << "" << "/abs/x";
    QTest::newRow("real: unknown placeholders kept") << "$RegistryKey/x" << "@SIM@" << "" << "$RegistryKey/x";
}
// clang-format on

void TestCatalogue::resolve()
{
    QFETCH(QString, tmpl);
    QFETCH(QString, category);
    QFETCH(QString, newProductPath);
    QFETCH(QString, expected);
    const bool real = QByteArray(QTest::currentDataTag()).startsWith("real:");
    Sims sims;
    CProduct product;
    product.SetCategory(sims.category(category));
    product.SetNewProductPath(newProductPath);
    if (!real) {
        product.SetProductPath(tmpl);
        QCOMPARE(product.TranslateNewProdPath(), sims.expand(expected));
        return;
    }
    QCOMPARE(product.InitRealPath(tmpl), sims.expand(expected));
    product.SetCycleInfoPath(tmpl);
    QCOMPARE(product.InitRealCycleInfoPath(), sims.expand(expected));
}

// clang-format off
void TestCatalogue::initNewProdPath_data()
{
    resolverColumns();
    QTest::addColumn<QString>("registryKey");
    QTest::addColumn<QString>("productPath");
    QTest::newRow("sim folder")
        << "$SimPath\\Aircraft\\A" << "@SIM@" << "old" << "@SIM@/Aircraft/A" << "" << "$SimPath/Aircraft/A";
    QTest::newRow("no category keeps the template")
        << "$SimPath/A" << "none" << "old" << "$SimPath/A" << "" << "$SimPath/A";
    QTest::newRow("no simulator assigns nothing") << "$SimPath/A" << "@NOSIM@" << "old" << "old" << "" << "$SimPath/A";
    QTest::newRow("user documents under the root")
        << "$UserDocuments/Foo" << "@SIM@" << "old" << "/Foo" << "" << "$UserDocuments/Foo";
    QTest::newRow("two characters") << "ab" << "@SIM@" << "old" << "old" << "" << "ab";
    QTest::newRow("plain folder")
        << "/Users/a b\\Addon" << "@SIM@" << "old" << "/Users/a b/Addon" << "" << "/Users/a b/Addon";
    QTest::newRow("registry without store") << "$RegistryKey/Dir" << "@SIM@" << "old" << "" << "HKLM/Soft/Vendor" << "";
    QTest::newRow("registry key too short")
        << "$RegistryKey/Dir" << "@SIM@" << "old" << "old" << "HKLM" << "$RegistryKey/Dir";
}
// clang-format on

void TestCatalogue::initNewProdPath()
{
    QFETCH(QString, tmpl);
    QFETCH(QString, category);
    QFETCH(QString, newProductPath);
    QFETCH(QString, expected);
    QFETCH(QString, registryKey);
    QFETCH(QString, productPath);
    Sims sims;
    CProduct product;
    product.SetCategory(sims.category(category));
    product.SetNewProductPath(newProductPath);
    product.SetRegistryKey(registryKey);
    product.InitNewProdPath(tmpl);
    QCOMPARE(product.GetNewProductPath(), sims.expand(expected));
    QCOMPARE(product.GetProductPath(), productPath);
    if (registryKey.contains(QLatin1Char('/')))
        QVERIFY(sims.log().contains("**********************************") && sims.log().contains("  --  HKLM\r\n") &&
                sims.log().contains("  --  Soft/Vendor/\r\n") && sims.log().endsWith("  --  Dir"));
}

// clang-format off
void TestCatalogue::initNewInstallPaths_data()
{
    QTest::addColumn<QStringList>("entries");
    QTest::addColumn<QString>("category");
    QTest::addColumn<QString>("newProductPath");
    QTest::addColumn<QString>("resolved"); // '|' between entries
    QTest::addColumn<QString>("logLine");

    QTest::newRow("sim folder")
        << QStringList{"$SimPath\\Custom Data:\\xp11"} << "@SIM@" << "" << "@SIM@/Custom Data" << "";
    QTest::newRow("no simulator check")
        << QStringList{" $SimPath /a\\\\b//c\\"} << "@NOSIM@" << "" << "@NOSIM@/a/b/c/" << "";
    QTest::newRow("missing folder")
        << QStringList{"$SimPath/x"} << "@MISSING@" << "" << "" << "!!WARNING not exists directory -> @MISSING@";
    QTest::newRow("no category")
        << QStringList{"$SimPath/x"} << "none" << "" << "" << "!!WARNING not find install_path -$SimPath/x";
    QTest::newRow("product path") << QStringList{"$ProductPath/Data:extra"} << "@SIM@" << "@UNI@" << "@UNI@/Data" << "";
    QTest::newRow("real folder never resolves")
        << QStringList{"/Users/a/Addon"} << "@SIM@" << "" << "" << "!!WARNING not find install_path -/Users/a/Addon";
    QTest::newRow("empty list") << QStringList() << "@SIM@" << "" << "" << "";
    QTest::newRow("only the second resolves")
        << QStringList{"$UserDocuments/Foo", "$SimPath/y"} << "@SIM@" << "" << "|@SIM@/y"
        << "!!WARNING not find install_path -$UserDocuments/Foo";
}
// clang-format on

void TestCatalogue::initNewInstallPaths()
{
    QFETCH(QStringList, entries);
    QFETCH(QString, category);
    QFETCH(QString, newProductPath);
    QFETCH(QString, resolved);
    QFETCH(QString, logLine);
    Sims sims;
    CProduct product;
    product.SetCategory(sims.category(category));
    product.SetNewProductPath(sims.expand(newProductPath));
    for (const QString& entry : entries)
        product.AddInstallPath(entry);

    QCOMPARE(product.InitNewInstallPaths(true), !resolved.isEmpty());
    QStringList found;
    for (const CInstallPath* entry : product.GetInstallPaths())
        found << entry->strNewPath;
    QCOMPARE(found.join(QLatin1Char('|')), sims.expand(resolved));
    QVERIFY2(logLine.isEmpty() ? sims.log().isEmpty() : sims.log().contains(sims.expand(logLine).toUtf8()),
             sims.log().constData());
    if (entries.value(0).contains(QLatin1String("Data:extra")))
        QCOMPARE(product.GetInstallPaths().first()->strSecond, QStringLiteral("extra"));
}

void TestCatalogue::categoryFolderChangeTakesEffect()
{
    Sims sims;
    CProduct product;
    product.SetCategory(sims.category(QStringLiteral("@SIM@")));
    product.SetProductPath(QStringLiteral("$SimPath/Custom Data"));
    product.SetCycleInfoPath(QStringLiteral("$SimPath/Custom Data"));
    product.AddInstallPath(QStringLiteral("$SimPath/Custom Data:/xp"));
    QVERIFY(sims.dir.writeFile(QStringLiteral("sims/Second/Custom Data/cycle_info.txt"), "AIRAC cycle:2102"));
    QVERIFY(product.InitNewInstallPaths(false));
    QCOMPARE(product.GetCycleVersion(), QString());

    sims.cat->SetPath(sims.expand(QStringLiteral("@SIM2@")));
    QCOMPARE(product.TranslateNewProdPath(), sims.expand(QStringLiteral("@SIM2@/Custom Data")));
    QVERIFY(product.InitNewInstallPaths(false));
    QCOMPARE(product.GetInstallPaths().first()->strNewPath, sims.expand(QStringLiteral("@SIM2@/Custom Data")));
    QCOMPARE(product.GetCycleVersion(), QStringLiteral("2102"));
}

// clang-format off
void TestCatalogue::removeFileList_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("gone");
    QTest::addColumn<bool>("refused");
    QTest::newRow("file in the product folder") << "$ProductPath\\a.bin" << "prod/a.bin" << false;
    QTest::newRow("folder in the product folder") << "$ProductPath/sub" << "prod/sub/b.txt" << false;
    QTest::newRow("file in an install target") << "@ROOT@/target/c.txt" << "target/c.txt" << false;
    QTest::newRow("the link, not its target") << "$ProductPath/link" << "prod/link" << false;
    QTest::newRow("unresolved template") << "$UserDocuments/a.bin" << "" << false;
    QTest::newRow("dot-dot") << "$ProductPath/../outside/o.txt" << "" << true;
    QTest::newRow("the product folder itself") << "$ProductPath\\" << "" << true;
    QTest::newRow("absolute path outside") << "@ROOT@/outside/o.txt" << "" << true;
    QTest::newRow("through a link to outside") << "$ProductPath/link/o.txt" << "" << true;
    QTest::newRow("relative path") << "prod/a.bin" << "" << true;
    QTest::newRow("folder name prefix") << "@ROOT@/product-other/x" << "" << true;
}
// clang-format on

void TestCatalogue::removeFileList()
{
    QFETCH(QString, entry);
    QFETCH(QString, gone);
    QFETCH(bool, refused);
    TempAppDir dir;
    const QStringList files{"prod/a.bin", "prod/sub/b.txt", "target/c.txt", "outside/o.txt", "product-other/x"};
    for (const QString& file : files)
        QVERIFY(dir.writeFile(file, "data"));
    QVERIFY(QFile::link(dir.filePath(QStringLiteral("outside")), dir.filePath(QStringLiteral("prod/link"))));

    CProduct product;
    product.SetNewProductPath(dir.filePath(QStringLiteral("prod")));
    product.AddInstallPath(QStringLiteral("$ProductPath/../target")); // still counts as the folder it names
    QVERIFY(product.InitNewInstallPaths(false));
    product.AddRemoveFilePath(QString(entry).replace(QStringLiteral("@ROOT@"), dir.path()));

    const QString previous = QDir::currentPath(); // relative entries must not mean the working folder
    QDir::setCurrent(dir.path());
    product.RemoveFileList();
    QDir::setCurrent(previous);

    QVERIFY(product.GetRemoveFiles().isEmpty());
    for (const QString& file : files + QStringList{"prod/link"}) {
        const bool exists = QFileInfo::exists(dir.filePath(file)) || CFileTree::isLink(dir.filePath(file));
        QVERIFY2(exists == (file != gone), qPrintable(file));
    }
    QCOMPARE(dir.readFile(QStringLiteral("log/log.txt")).contains("!!WARNING remove_file outside"), refused);
}

// clang-format off
void TestCatalogue::cycleCheck_data()
{
    QTest::addColumn<QString>("folder");     // "ok", "missing" or "unresolved"
    QTest::addColumn<QByteArray>("content"); // null: no file; "-": a file nobody may read
    QTest::addColumn<QString>("target");     // new cycle '/' new revision
    QTest::addColumn<QString>("read");       // cycle '/' revision
    QTest::addColumn<int>("state");

    QTest::newRow("padded keys, CR LF")
        << "ok" << QByteArray("AIRAC cycle    : 2101\r\nRevision       : 2\r\n") << "2101/2" << "2101/2" << 5;
    QTest::newRow("no final line feed, second colon")
        << "ok" << QByteArray("AIRAC cycle:2101:valid\nRevision:1") << "2101/1" << "2101/1" << 5;
    QTest::newRow("lower-case key ignored")
        << "ok" << QByteArray("airac cycle: 2101\nRevision: 1\n") << "2101/1" << "/1" << 7;
    QTest::newRow("later line wins, extra keys")
        << "ok" << QByteArray("AIRAC cycle: 1801\nName: x\nno colon\n\nAIRAC cycle: 2101\nRevision: 3\n") << "2101/3"
        << "2101/3" << 5;
    QTest::newRow("older cycle is due")
        << "ok" << QByteArray("AIRAC cycle: 2013\nRevision: 1\n") << "2101/1" << "2013/1" << 7;
    QTest::newRow("run together, no separator")
        << "ok" << QByteArray("AIRAC cycle: 210\nRevision: 11\n") << "2101/1" << "210/11" << 5;
    QTest::newRow("no target cycle") << "ok" << QByteArray("AIRAC cycle: 2101\nRevision: 1\n") << "/1" << "" << 4;
    QTest::newRow("missing file") << "ok" << QByteArray() << "2101/1" << "/" << 7;
    QTest::newRow("empty file") << "ok" << QByteArray("") << "2101/1" << "/" << 7;
    QTest::newRow("stops at NUL")
        << "ok" << QByteArray("AIRAC cycle: 2101\n\0Revision: 9\n", 32) << "2101/" << "2101/" << 5;
    QByteArray binary(4096, '\x01');
    for (int i = 0; i < binary.size(); ++i)
        binary[i] = char(1 + (i * 61) % 255);
    QTest::newRow("binary") << "ok" << binary << "2101/1" << "/" << 7;
    QTest::newRow("very long")
        << "ok" << QByteArray("Comment: padding\r\n").repeated(400000) + "AIRAC cycle: 2101" << "2101/" << "2101/" << 5;
    QTest::newRow("placeholder")
        << "ok" << QByteArray("AIRAC cycle    : unknown\r\nRevision       : \r\n") << "2101/1" << "unknown/" << 7;
    QTest::newRow("folder missing") << "missing" << QByteArray() << "2101/1" << "/" << 7;
    QTest::newRow("folder not resolved") << "unresolved" << QByteArray() << "2101/1" << "/" << 7;
    QTest::newRow("unreadable") << "ok" << QByteArray("-") << "2101/1" << "/" << 7;
}
// clang-format on

void TestCatalogue::cycleCheck()
{
    QFETCH(QString, folder);
    QFETCH(QByteArray, content);
    QFETCH(QString, target);
    QFETCH(QString, read);
    QFETCH(int, state);
    if (content == "-" && geteuid() == 0)
        QSKIP("permissions do not stop root");

    TempAppDir dir;
    const QString file = dir.filePath(QStringLiteral("addon/navdata/cycle_info.txt"));
    if (folder == QLatin1String("ok"))
        QVERIFY(QDir().mkpath(dir.filePath(QStringLiteral("addon/navdata"))));
    if (!content.isNull())
        QVERIFY(dir.writeFile(QStringLiteral("addon/navdata/cycle_info.txt"),
                              content == "-" ? QByteArray("AIRAC cycle: 2101\nRevision: 1\n") : content));
    if (content == "-")
        QVERIFY(QFile::setPermissions(file, QFileDevice::WriteOwner));

    CProduct product;
    product.SetNewProductPath(dir.filePath(QStringLiteral("addon")));
    product.SetCycleInfoPath(folder == QLatin1String("unresolved") ? QStringLiteral("$UserDocuments/navdata")
                                                                   : QStringLiteral("$ProductPath\\navdata"));
    // By name, as the panel connects: a queued connection needs the state registered under it.
    StateSink sink;
    QVERIFY(connect(&product, SIGNAL(SignalChangeInstallState(EQMKProductInstallState)), &sink,
                    SLOT(take(EQMKProductInstallState)), Qt::QueuedConnection));

    QCOMPARE(product.CheckCycleVersion(target.section(QLatin1Char('/'), 0, 0), target.section(QLatin1Char('/'), 1)),
             state == 5);
    QCOMPARE(int(product.GetInstallState()), state);
    if (state != 4) {
        QCOMPARE(product.GetCycleVersion() + QLatin1Char('/') + product.GetRevision(), read);
        QCOMPARE(product.CheckExistCycleInfoFile(), !content.isNull() && folder == QLatin1String("ok"));
    }
    product.UpdateCheckCycleVersion(); // the same state twice is signalled twice
    QTRY_COMPARE(sink.states, (QList<int>{state, state}));
}

void TestCatalogue::backupCycleFile()
{
    TempAppDir dir;
    CProduct product;
    product.SetDataset(QStringLiteral("fmc procedures"));
    product.SetCycleInfoPath(QStringLiteral("$ProductPath"));
    product.SetNewProductPath(dir.filePath(QStringLiteral("addon")));
    product.InitRealCycleInfoPath();
    QVERIFY(!product.WriteUnknownBackupCycleInfoFile()); // no folder: nothing written
    QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("addon"))));

    QVERIFY(QDir().mkpath(dir.filePath(QStringLiteral("addon"))));
    QVERIFY(product.WriteUnknownBackupCycleInfoFile()); // due, but the backup folder is not made here
    QVERIFY(!QFile::exists(product.GetBackCycleInfoFile()));

    QVERIFY(QDir().mkpath(dir.filePath(QStringLiteral("addon/QMK_fmc procedures_back"))));
    QVERIFY(product.WriteUnknownBackupCycleInfoFile());
    QVERIFY(!product.WriteUnknownBackupCycleInfoFile());
    QCOMPARE(dir.readFile(QStringLiteral("addon/QMK_fmc procedures_back/cycle_info.txt")),
             QByteArray("AIRAC cycle    : unknown\r\nRevision       : \r\n"));
    QCOMPARE(product.GetBackCycleVersion() + QLatin1Char('/') + product.GetBackRevision(), QStringLiteral("unknown/"));
    QCOMPARE(product.GetCycleVersion(), QString());

    // The folder moves away: values read before are cleared.
    product.SetNewProductPath(dir.filePath(QStringLiteral("elsewhere")));
    QCOMPARE(product.GetBackCycleVersion() + QLatin1Char('/') + product.GetBackRevision(), QStringLiteral("/"));
}

QTEST_MAIN(TestCatalogue)
#include "TestCatalogue.moc"
