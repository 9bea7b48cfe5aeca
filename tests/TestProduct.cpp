#include "model/CCategory.h"
#include "model/CFileTree.h"
#include "model/CProduct.h"
#include "support/TempAppDir.h"

#include <QtTest>

namespace {
// Simulator folders in a temporary program folder; the tokens in test rows stand for them.
struct Sims
{
    TempAppDir dir;
    QMap<QString, QString> folders;

    Sims()
    {
        folders[QStringLiteral("@SIM@")] = make(QStringLiteral("sims/X-Plane 11"), true);
        folders[QStringLiteral("@SIM2@")] = make(QStringLiteral("sims/Second X-Plane"), true);
        folders[QStringLiteral("@UNI@")] = make(QStringLiteral("sims/Sim \"Über\" 'Ñ' 11"), true);
        folders[QStringLiteral("@NOSIM@")] = make(QStringLiteral("sims/Empty"), false);
        folders[QStringLiteral("@MISSING@")] = dir.filePath(QStringLiteral("sims/Missing"));
    }

    QString make(const QString& relative, bool withApp)
    {
        const QString path = dir.filePath(relative);
        QDir().mkpath(withApp ? path + QStringLiteral("/x-plane.APP") : path);
        return path;
    }

    QString expand(QString text) const
    {
        for (auto it = folders.constBegin(); it != folders.constEnd(); ++it)
            text.replace(it.key(), it.value());
        return text;
    }

    // "none": no category; "FSX:@SIM@": another category; otherwise an X-Plane 11 folder token,
    // or "" for an empty folder.
    CCategory* category(const QString& spec)
    {
        if (spec == QLatin1String("none"))
            return nullptr;
        QString name = QStringLiteral("X-Plane 11");
        QString folder = spec;
        if (spec.contains(QLatin1Char(':'))) {
            name = spec.section(QLatin1Char(':'), 0, 0);
            folder = spec.section(QLatin1Char(':'), 1);
        }
        m_category.reset(new CCategory(name));
        m_category->SetPath(expand(folder));
        return m_category.get();
    }

    std::unique_ptr<CCategory> m_category;
};

void addResolverColumns()
{
    QTest::addColumn<QString>("tmpl");
    QTest::addColumn<QString>("category");
    QTest::addColumn<QString>("newProductPath");
    QTest::addColumn<QString>("expected");
}
} // namespace

class TestProduct : public QObject
{
    Q_OBJECT

private slots:
    void replacePathCL_data();
    void replacePathCL();
    void translateNewProdPath_data();
    void translateNewProdPath();
    void initNewProdPath_data();
    void initNewProdPath();
    void initNewInstallPaths_data();
    void initNewInstallPaths();
    void initRealPath_data();
    void initRealPath();
    void categoryFolderChangeTakesEffect();
    void checkPath_data();
    void checkPath();
    void removeFileList_data();
    void removeFileList();
};

void TestProduct::replacePathCL_data()
{
    QTest::addColumn<QString>("in");
    QTest::addColumn<QString>("out");
    QTest::newRow("mixed separators") << "D:\\Sim\\\\Addon//Data" << "D:/Sim/Addon/Data";
    QTest::newRow("backslash then slash stays double") << "a\\/b" << "a//b";
    QTest::newRow("three slashes leave two") << "a///b" << "a//b";
    QTest::newRow("three backslashes") << "a\\\\\\b" << "a//b";
    QTest::newRow("trailing backslash") << "$SimPath\\Custom Data\\" << "$SimPath/Custom Data/";
    QTest::newRow("nothing to do") << "/Users/a b/c" << "/Users/a b/c";
}

void TestProduct::replacePathCL()
{
    QFETCH(QString, in);
    QFETCH(QString, out);
    CProduct::ReplacePathCL(in);
    QCOMPARE(in, out);
}

void TestProduct::translateNewProdPath_data()
{
    addResolverColumns();
    const QString bad = QStringLiteral("<X-Plane 11 - Path>");
    QTest::newRow("sim folder") << "$SimPath/SimObjects/Airplanes" << "@SIM@" << "" << "@SIM@/SimObjects/Airplanes";
    QTest::newRow("non-ASCII folder with quotes") << "$SimPath\\Custom Data" << "@UNI@" << ""
                                                  << "@UNI@/Custom Data";
    QTest::newRow("missing folder") << "$SimPath/SimObjects/Airplanes" << "@MISSING@" << ""
                                    << bad + "/SimObjects/Airplanes";
    QTest::newRow("folder without simulator") << "$SimPath/A" << "@NOSIM@" << "" << bad + "/A";
    QTest::newRow("empty category folder") << "$SimPath/A" << "" << "" << bad + "/A";
    QTest::newRow("other category") << "$SimPath/A" << "FSX:@SIM@" << "" << "<FSX - Path>/A";
    QTest::newRow("no category") << "$SimPath\\A" << "none" << "" << "$SimPath/A";
    QTest::newRow("user documents") << "$UserDocuments/Foo/Bar" << "@SIM@" << "" << "/Foo/Bar";
    QTest::newRow("program files alone") << "$ProgramFiles" << "@SIM@" << "" << "";
    QTest::newRow("product path shown as written") << "$ProductPath/x" << "@SIM@" << "/p" << "$ProductPath/x";
    QTest::newRow("registry shown as written") << "$RegistryKey/x" << "@SIM@" << "" << "$RegistryKey/x";
    QTest::newRow("placeholder is case-sensitive") << "$simpath/x" << "@SIM@" << "" << "$simpath/x";
    QTest::newRow("unknown placeholder") << "$Unknown/x" << "@SIM@" << "" << "$Unknown/x";
    QTest::newRow("only the first component") << "$SimPath/$SimPath/x" << "@SIM@" << "" << "@SIM@/$SimPath/x";
    QTest::newRow("placeholder inside a word") << "$SimPathX/x" << "@SIM@" << "" << "$SimPathX/x";
    QTest::newRow("trailing separator") << "$SimPath\\\\Custom Data\\" << "@SIM@" << "" << "@SIM@/Custom Data/";
    QTest::newRow("one character") << "\\" << "@SIM@" << "" << "/";
}

void TestProduct::translateNewProdPath()
{
    QFETCH(QString, tmpl);
    QFETCH(QString, category);
    QFETCH(QString, newProductPath);
    QFETCH(QString, expected);
    Sims sims;
    CProduct product;
    product.SetCategory(sims.category(category));
    product.SetNewProductPath(sims.expand(newProductPath));
    product.SetProductPath(tmpl);
    QCOMPARE(product.TranslateNewProdPath(), sims.expand(expected));
}

void TestProduct::initNewProdPath_data()
{
    addResolverColumns();
    QTest::addColumn<QString>("registryKey");
    QTest::addColumn<QString>("productPath");

    QTest::newRow("sim folder") << "$SimPath\\Aircraft\\A" << "@SIM@" << "old" << "@SIM@/Aircraft/A" << ""
                                << "$SimPath/Aircraft/A";
    QTest::newRow("no category keeps the template") << "$SimPath/A" << "none" << "old" << "$SimPath/A" << ""
                                                    << "$SimPath/A";
    QTest::newRow("folder without simulator assigns nothing") << "$SimPath/A" << "@NOSIM@" << "old" << "old" << ""
                                                              << "$SimPath/A";
    QTest::newRow("empty category folder assigns nothing") << "$SimPath/A" << "" << "old" << "old" << ""
                                                           << "$SimPath/A";
    QTest::newRow("user documents under the root") << "$UserDocuments/Foo" << "@SIM@" << "old" << "/Foo" << ""
                                                   << "$UserDocuments/Foo";
    QTest::newRow("two characters change only the template") << "ab" << "@SIM@" << "old" << "old" << "" << "ab";
    QTest::newRow("plain folder") << " /Users/a b\\Addon " << "@SIM@" << "old" << " /Users/a b/Addon " << ""
                                  << "/Users/a b/Addon";
    QTest::newRow("product path placeholder is kept") << "$ProductPath/x" << "@SIM@" << "old" << "$ProductPath/x"
                                                      << "" << "$ProductPath/x";
    QTest::newRow("registry without backing store") << "$RegistryKey/InstallDir" << "@SIM@" << "old" << ""
                                                    << "HKLM/Software/Vendor" << "";
    QTest::newRow("registry key with one segment") << "$RegistryKey/InstallDir" << "@SIM@" << "old" << "old"
                                                   << "HKLM" << "$RegistryKey/InstallDir";
    QTest::newRow("repeated placeholder") << "$SimPath/$SimPath" << "@UNI@" << "old" << "@UNI@/$SimPath" << ""
                                          << "$SimPath/$SimPath";
}

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
    if (tmpl.startsWith(QLatin1String("$RegistryKey")) && registryKey.contains(QLatin1Char('/'))) {
        const QByteArray log = sims.dir.readFile(QStringLiteral("log/log.txt"));
        QVERIFY(log.contains("**********************************"));
        QVERIFY(log.contains("  --  HKLM\r\n") && log.contains("  --  Software/Vendor/\r\n")
                && log.endsWith("  --  InstallDir"));
    }
}

void TestProduct::initNewInstallPaths_data()
{
    QTest::addColumn<QStringList>("entries");
    QTest::addColumn<QString>("category");
    QTest::addColumn<QString>("newProductPath");
    QTest::addColumn<QStringList>("resolved");
    QTest::addColumn<bool>("result");
    QTest::addColumn<QString>("logLine");

    QTest::newRow("sim folder") << QStringList{"$SimPath\\Custom Data:\\xp11"} << "@SIM@" << ""
                                << QStringList{"@SIM@/Custom Data"} << true << "";
    QTest::newRow("no simulator check here") << QStringList{"$SimPath/Custom Data"} << "@NOSIM@" << ""
                                             << QStringList{"@NOSIM@/Custom Data"} << true << "";
    QTest::newRow("missing folder") << QStringList{"$SimPath/x"} << "@MISSING@" << "" << QStringList{""} << false
                                    << "!!WARNING not exists directory -> @MISSING@";
    QTest::newRow("no category") << QStringList{"$SimPath/x"} << "none" << "" << QStringList{""} << false
                                 << "!!WARNING not find install_path -$SimPath/x";
    QTest::newRow("product path") << QStringList{"$ProductPath/Data:extra"} << "@SIM@" << "@UNI@"
                                  << QStringList{"@UNI@/Data"} << true << "";
    QTest::newRow("product path not yet resolved") << QStringList{"$ProductPath/Data"} << "@SIM@" << ""
                                                   << QStringList{""} << false
                                                   << "!!WARNING not find install_path -$ProductPath/Data";
    QTest::newRow("empty user folder") << QStringList{"$UserDocuments/Foo"} << "@SIM@" << "" << QStringList{""}
                                       << false << "!!WARNING not find install_path -$UserDocuments/Foo";
    QTest::newRow("real folder never resolves") << QStringList{"/Users/a/Addon"} << "@SIM@" << ""
                                                << QStringList{""} << false
                                                << "!!WARNING not find install_path -/Users/a/Addon";
    QTest::newRow("spaces around the placeholder") << QStringList{" $SimPath /x"} << "@SIM@" << ""
                                                   << QStringList{"@SIM@/x"} << true << "";
    QTest::newRow("separators and trailing slash") << QStringList{"$SimPath\\a\\\\b//c\\"} << "@SIM@" << ""
                                                   << QStringList{"@SIM@/a/b/c/"} << true << "";
    QTest::newRow("empty list") << QStringList() << "@SIM@" << "" << QStringList() << false << "";
    QTest::newRow("only the second resolves") << QStringList{"$UserAppData/x", "$SimPath/y"} << "@SIM@" << ""
                                              << QStringList{"", "@SIM@/y"} << true
                                              << "!!WARNING not find install_path -$UserAppData/x";
}

void TestProduct::initNewInstallPaths()
{
    QFETCH(QStringList, entries);
    QFETCH(QString, category);
    QFETCH(QString, newProductPath);
    QFETCH(QStringList, resolved);
    QFETCH(bool, result);
    QFETCH(QString, logLine);
    Sims sims;
    CProduct product;
    product.SetCategory(sims.category(category));
    product.SetNewProductPath(sims.expand(newProductPath));
    for (const QString& entry : entries)
        product.AddInstallPath(entry);

    QCOMPARE(product.InitNewInstallPaths(true), result);
    QStringList found;
    for (const CInstallPath* entry : product.GetInstallPaths())
        found << entry->strNewPath;
    QCOMPARE(found, sims.expand(resolved.join(QLatin1Char('|'))).split(QLatin1Char('|'), Qt::KeepEmptyParts)
                        .mid(0, resolved.size()));
    const QByteArray log = sims.dir.readFile(QStringLiteral("log/log.txt"));
    if (logLine.isEmpty())
        QVERIFY(log.isEmpty());
    else
        QVERIFY2(log.contains(sims.expand(logLine).toUtf8()), log.constData());

    // Without logging nothing is written.
    QFile::remove(sims.dir.filePath(QStringLiteral("log/log.txt")));
    product.InitNewInstallPaths(false);
    QVERIFY(!QFile::exists(sims.dir.filePath(QStringLiteral("log/log.txt"))));
}

void TestProduct::initRealPath_data()
{
    addResolverColumns();
    QTest::newRow("sim folder") << "$SimPath\\Custom Data\\x.txt" << "@SIM@" << "" << "@SIM@/Custom Data/x.txt";
    QTest::newRow("folder without simulator empties") << "$SimPath/x" << "@NOSIM@" << "" << "";
    QTest::newRow("no category empties") << "$SimPath/x" << "none" << "" << "";
    QTest::newRow("product path") << "$ProductPath" << "none" << "@UNI@" << "@UNI@";
    QTest::newRow("product path not resolved") << "$ProductPath/x" << "@SIM@" << "" << "";
    QTest::newRow("empty user folder empties") << "$UserDocuments/Foo" << "@SIM@" << "" << "";
    QTest::newRow("real folder") << "/abs\\\\x" << "@SIM@" << "" << "/abs/x";
    QTest::newRow("unknown placeholder kept") << "$Other/x" << "@SIM@" << "" << "$Other/x";
    QTest::newRow("registry not known here") << "$RegistryKey/x" << "@SIM@" << "" << "$RegistryKey/x";
    QTest::newRow("one character") << "\\" << "@SIM@" << "" << "/";
    QTest::newRow("trailing separator") << "$ProductPath\\navdata\\" << "none" << "/p" << "/p/navdata/";
}

void TestProduct::initRealPath()
{
    QFETCH(QString, tmpl);
    QFETCH(QString, category);
    QFETCH(QString, newProductPath);
    QFETCH(QString, expected);
    Sims sims;
    CProduct product;
    product.SetCategory(sims.category(category));
    product.SetNewProductPath(sims.expand(newProductPath));
    QCOMPARE(product.InitRealPath(tmpl), sims.expand(expected));
    product.SetCycleInfoPath(tmpl);
    QCOMPARE(product.InitRealCycleInfoPath(), sims.expand(expected));
    QCOMPARE(product.GetRealCycleInfoPath(), sims.expand(expected));
}

void TestProduct::categoryFolderChangeTakesEffect()
{
    Sims sims;
    CCategory category(QStringLiteral("X-Plane 11"));
    category.SetPath(sims.expand(QStringLiteral("@SIM@")));
    CProduct product;
    product.SetCategory(&category);
    product.SetProductPath(QStringLiteral("$SimPath/Custom Data"));
    product.SetCycleInfoPath(QStringLiteral("$SimPath/Custom Data"));
    product.AddInstallPath(QStringLiteral("$SimPath/Custom Data:/xp"));
    QVERIFY(sims.dir.writeFile(QStringLiteral("sims/Second X-Plane/Custom Data/cycle_info.txt"), "AIRAC cycle:2102"));

    QCOMPARE(product.TranslateNewProdPath(), sims.expand(QStringLiteral("@SIM@/Custom Data")));
    QVERIFY(product.InitNewInstallPaths(false));
    QCOMPARE(product.GetCycleVersion(), QString());

    category.SetPath(sims.expand(QStringLiteral("@SIM2@")));
    QCOMPARE(product.TranslateNewProdPath(), sims.expand(QStringLiteral("@SIM2@/Custom Data")));
    QCOMPARE(product.InitRealPath(QStringLiteral("$SimPath/x")), sims.expand(QStringLiteral("@SIM2@/x")));
    QVERIFY(product.InitNewInstallPaths(false));
    QCOMPARE(product.GetInstallPaths().first()->strNewPath, sims.expand(QStringLiteral("@SIM2@/Custom Data")));
    QCOMPARE(product.GetCycleVersion(), QStringLiteral("2102"));
}

void TestProduct::checkPath_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("entry"); // created in the folder; empty: folder missing
    QTest::addColumn<bool>("ok");
    QTest::newRow("bundle folder, any case") << "X-Plane 11" << "dir:x-plane.APP" << true;
    QTest::newRow("bundle as file") << "X-Plane 10" << "file:X-Plane.app" << true;
    QTest::newRow("hidden entry is not listed") << "X-Plane 10" << "dir:.X-Plane.app" << false;
    QTest::newRow("missing folder") << "X-Plane 11" << "" << false;
    QTest::newRow("lower-case category") << "fsx" << "file:fsx.exe" << false;
    QTest::newRow("FSX") << "FSX" << "file:FSX.EXE" << true;
    QTest::newRow("FS2004") << "FS2004" << "file:fs9.exe" << true;
    QTest::newRow("Prepar3D v3") << "Prepar3D v3" << "file:prepar3d.exe" << true;
    QTest::newRow("unknown category") << "Prepar3D" << "file:Prepar3D.exe" << false;
}

void TestProduct::checkPath()
{
    QFETCH(QString, name);
    QFETCH(QString, entry);
    QFETCH(bool, ok);
    TempAppDir dir;
    const QString folder = dir.filePath(QStringLiteral("sim"));
    if (entry.startsWith(QLatin1String("dir:")))
        QVERIFY(QDir().mkpath(folder + QLatin1Char('/') + entry.mid(4)));
    else if (entry.startsWith(QLatin1String("file:")))
        QVERIFY(dir.writeFile(QStringLiteral("sim/") + entry.mid(5), "x"));
    CCategory category(name);
    category.SetPath(folder);
    QCOMPARE(category.CheckPath(), ok);
    category.SetPath(QString());
    QVERIFY(!category.CheckPath());
}

void TestProduct::removeFileList_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QStringList>("gone");
    QTest::addColumn<bool>("refused");

    QTest::newRow("file in the product folder") << "$ProductPath\\a.bin" << QStringList{"prod/a.bin"} << false;
    QTest::newRow("folder in the product folder") << "$ProductPath/sub" << QStringList{"prod/sub/b.txt"} << false;
    QTest::newRow("file in an install target") << "@ROOT@/target/c.txt" << QStringList{"target/c.txt"} << false;
    QTest::newRow("the link itself, not its target") << "$ProductPath/link" << QStringList{"prod/link"} << false;
    QTest::newRow("missing file") << "$ProductPath/none.bin" << QStringList() << false;
    QTest::newRow("unresolved template") << "$UserDocuments/a.bin" << QStringList() << false;
    QTest::newRow("dot-dot out of the folder") << "$ProductPath/../outside/o.txt" << QStringList() << true;
    QTest::newRow("the product folder itself") << "$ProductPath" << QStringList() << true;
    QTest::newRow("the product folder with a trailing slash") << "$ProductPath\\" << QStringList() << true;
    QTest::newRow("absolute path outside") << "@ROOT@/outside/o.txt" << QStringList() << true;
    QTest::newRow("through a link to outside") << "$ProductPath/link/o.txt" << QStringList() << true;
    QTest::newRow("relative path") << "prod/a.bin" << QStringList() << true;
    QTest::newRow("prefix of the folder name") << "@ROOT@/product-other/x" << QStringList() << true;
}

void TestProduct::removeFileList()
{
    QFETCH(QString, entry);
    QFETCH(QStringList, gone);
    QFETCH(bool, refused);

    TempAppDir dir;
    const QStringList files{"prod/a.bin", "prod/sub/b.txt", "target/c.txt", "outside/o.txt", "product-other/x"};
    for (const QString& file : files)
        QVERIFY(dir.writeFile(file, "data"));
    QVERIFY(QFile::link(dir.filePath(QStringLiteral("outside")), dir.filePath(QStringLiteral("prod/link"))));

    CProduct product;
    product.SetNewProductPath(dir.filePath(QStringLiteral("prod")));
    // An install target written with ".." still counts as the folder it names.
    product.AddInstallPath(QStringLiteral("$ProductPath/../target"));
    QVERIFY(product.InitNewInstallPaths(false));
    QString text = entry;
    text.replace(QStringLiteral("@ROOT@"), dir.path());
    product.AddRemoveFilePath(text);

    // A relative entry must not be taken relative to the working folder either.
    const QString previousCurrent = QDir::currentPath();
    QDir::setCurrent(dir.path());
    product.RemoveFileList();
    QDir::setCurrent(previousCurrent);
    QVERIFY(product.GetRemoveFiles().isEmpty());

    for (const QString& file : files + QStringList{"prod/link"}) {
        const bool exists = QFileInfo(dir.filePath(file)).exists() || CFileTree::isLink(dir.filePath(file));
        QVERIFY2(exists == !gone.contains(file), qPrintable(file));
    }
    const QByteArray log = dir.readFile(QStringLiteral("log/log.txt"));
    QCOMPARE(log.contains("!!WARNING remove_file outside the product folders"), refused);
}

QTEST_MAIN(TestProduct)
#include "TestProduct.moc"
