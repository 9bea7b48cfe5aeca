#include "model/CAiracCycle.h"
#include "model/CCategory.h"
#include "model/CFileTree.h"
#include "model/CProduct.h"
#include "support/TempAppDir.h"

#include <QtTest>

#include <memory>
#include <unistd.h>

namespace {
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

class TestProduct : public QObject
{
    Q_OBJECT

private slots:
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
// "translate:" rows resolve the product folder; "real:" rows a folder the product names, and its
// cycle file folder the same way.
void TestProduct::resolve_data()
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

void TestProduct::resolve()
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
void TestProduct::initNewProdPath_data()
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

void TestProduct::initNewProdPath()
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
void TestProduct::initNewInstallPaths_data()
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

void TestProduct::initNewInstallPaths()
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

void TestProduct::categoryFolderChangeTakesEffect()
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

void TestProduct::removeFileList_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("gone");
    QTest::addColumn<bool>("refused");
    QTest::newRow("file in the product folder") << "$ProductPath\\a.bin"
                                                << "prod/a.bin" << false;
    QTest::newRow("folder in the product folder") << "$ProductPath/sub"
                                                  << "prod/sub/b.txt" << false;
    QTest::newRow("file in an install target") << "@ROOT@/target/c.txt"
                                               << "target/c.txt" << false;
    QTest::newRow("the link, not its target") << "$ProductPath/link"
                                              << "prod/link" << false;
    QTest::newRow("unresolved template") << "$UserDocuments/a.bin"
                                         << "" << false;
    QTest::newRow("dot-dot") << "$ProductPath/../outside/o.txt"
                             << "" << true;
    QTest::newRow("the product folder itself") << "$ProductPath\\"
                                               << "" << true;
    QTest::newRow("absolute path outside") << "@ROOT@/outside/o.txt"
                                           << "" << true;
    QTest::newRow("through a link to outside") << "$ProductPath/link/o.txt"
                                               << "" << true;
    QTest::newRow("relative path") << "prod/a.bin"
                                   << "" << true;
    QTest::newRow("folder name prefix") << "@ROOT@/product-other/x"
                                        << "" << true;
}

void TestProduct::removeFileList()
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
void TestProduct::cycleCheck_data()
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

void TestProduct::cycleCheck()
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

void TestProduct::backupCycleFile()
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

QTEST_MAIN(TestProduct)
#include "TestProduct.moc"
