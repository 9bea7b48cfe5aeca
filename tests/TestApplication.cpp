#include "app/Application.h"
#include "app/CAppPaths.h"
#include "support/TempAppDir.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>
#include <QTranslator>

class TestApplication : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { Application::registerResources(); }

    // clang-format off
    void startupLanguage_data()
    {
        QTest::addColumn<QString>("systemLocale");
        QTest::addColumn<QString>("stored");              // language from the settings, empty for none
        QTest::addColumn<QString>("expectedLanguage");
        QTest::addColumn<QString>("expectedTranslator");  // language of the installed translator, empty for none
        QTest::addColumn<QString>("twoLetter");           // the manual's language suffix

        QTest::newRow("de_DE starts German") << "de_DE" << "" << "de_DE" << "de_DE" << "de";
        // The country of the system locale is what is matched, so Austria starts in English.
        QTest::newRow("de_AT starts English") << "de_AT" << "" << "en_US" << "en_US" << "en";
        QTest::newRow("fr_FR starts English") << "fr_FR" << "" << "en_US" << "en_US" << "en";
        QTest::newRow("en_GB starts English") << "en_GB" << "" << "en_US" << "en_US" << "en";
        QTest::newRow("en_US starts English") << "en_US" << "" << "en_US" << "en_US" << "en";
        // Country "de" matches the German file's language, but en_DE is no translation of its own.
        QTest::newRow("en_DE takes the full name, no translator") << "en_DE" << "" << "en_DE" << "" << "en";
        QTest::newRow("C is compared whole") << "C" << "" << "en_US" << "en_US" << "en";
        QTest::newRow("bare de is compared whole") << "de" << "" << "de" << "" << "";
        QTest::newRow("stored German wins") << "fr_FR" << "de_DE" << "de_DE" << "de_DE" << "de";
        QTest::newRow("stored English wins") << "de_DE" << "en_US" << "en_US" << "en_US" << "en";
        QTest::newRow("stored unknown key shows built-in texts") << "de_DE" << "xx_YY" << "xx_YY" << "" << "xx";
        QTest::newRow("stored lower-case key is not a key") << "de_DE" << "de_de" << "de_de" << "" << "de";
        QTest::newRow("stored garbage") << "en_US" << "__" << "__" << "" << "";
        QTest::newRow("stored three-part key") << "en_US" << "sr_Latn_RS" << "sr_Latn_RS" << "" << "latn";
    }
    // clang-format on

    void startupLanguage()
    {
        QFETCH(QString, systemLocale);
        QFETCH(QString, stored);
        QFETCH(QString, expectedLanguage);
        QFETCH(QString, expectedTranslator);
        QFETCH(QString, twoLetter);

        Application::loadTranslations(QDir(QStringLiteral(":/lang")), systemLocale);
        if (!stored.isEmpty())
            Application::setLanguage(stored);

        QCOMPARE(Application::GetLanguage(), expectedLanguage);
        QCOMPARE(Application::GetTwoLetterLanguage(), twoLetter);
        QTranslator* current = Application::currentTranslator();
        if (expectedTranslator.isEmpty())
            QVERIFY(!current);
        else {
            QVERIFY(current);
            QCOMPARE(current->language(), expectedTranslator);
        }
        // Qt's own texts (standard buttons) follow, and only for a language the
        // program has.
        QCOMPARE(QCoreApplication::translate("QPlatformTheme", "Cancel"),
                 QString(expectedTranslator == QLatin1String("de_DE") ? "Abbrechen" : "Cancel"));
        QStringList languages = Application::availableLanguages();
        languages.sort();
        QCOMPARE(languages, QStringList({QStringLiteral("de_DE"), QStringLiteral("en_US")}));
    }

    void emptyLanguageFolder()
    {
        TempAppDir app;
        Application::loadTranslations(QDir(app.path()), QStringLiteral("de_DE"));
        QCOMPARE(Application::GetLanguage(), QStringLiteral("en_US"));
    }

    // Where the shipped files are read and whether the user's files stay beside
    // them. An installed folder, which keeps nothing of the user's, is
    // TestPackage's.
    void folders_data()
    {
        QTest::addColumn<QString>("program");   // below a fresh folder
        QTest::addColumn<QString>("catalogue"); // relative to the program folder, made there
        QTest::addColumn<bool>("settings");     // bin/prop_ini.xml there too
        QTest::newRow("settings of their own") << "app"
                                               << "bin/base_ini.xml" << true;
        QTest::newRow("macOS bundle") << "Quillmark.app/Contents/MacOS"
                                      << "../Resources/bin/base_ini.xml" << false;
    }
    void folders()
    {
        QFETCH(QString, program);
        QFETCH(QString, catalogue);
        QFETCH(bool, settings);
        QTemporaryDir work;
        const QString folder = work.path() + "/" + program;
        QVERIFY(QDir().mkpath(folder) && QDir().mkpath(QFileInfo(folder + "/" + catalogue).absolutePath()));
        for (const QString& file : settings ? QStringList{catalogue, "bin/prop_ini.xml"} : QStringList{catalogue}) {
            QFile made(folder + "/" + file);
            QVERIFY(made.open(QIODevice::WriteOnly));
        }
        const QString previous = Application::st_strAppPath;
        Application::st_strAppPath = folder;
        const QStringList paths{CAppPaths::CatalogueFile(), CAppPaths::SettingsFile(), CAppPaths::LogFolder(),
                                CAppPaths::DownloadFolder()};
        const bool portable = CAppPaths::IsPortable();
        Application::st_strAppPath = previous;

        QCOMPARE(paths.at(0), QDir::cleanPath(folder + "/" + catalogue));
        QCOMPARE(portable, settings);
        if (portable)
            QCOMPARE(paths.mid(1), (QStringList{folder + "/bin/prop_ini.xml", folder + "/log", folder + "/downloads"}));
    }

    void restartLoop_data()
    {
        QTest::addColumn<QStringList>("codes");
        QTest::addColumn<int>("passes");
        QTest::addColumn<int>("exitCode");
        QTest::newRow("0 ends at once") << QStringList{"0"} << 1 << 0;
        QTest::newRow("20 builds again, then 0") << QStringList{"20", "0"} << 2 << 0;
        QTest::newRow("two restarts") << QStringList{"20", "20", "0"} << 3 << 0;
        QTest::newRow("other codes end the process") << QStringList{"20", "7"} << 2 << 7;
        QTest::newRow("21 is no restart") << QStringList{"21", "0"} << 1 << 21;
    }

    void restartLoop()
    {
        QFETCH(QStringList, codes);
        QFETCH(int, passes);
        QFETCH(int, exitCode);

        TempAppDir app;
        // A quiet program folder: a tiny catalogue and no automatic network checks.
        QVERIFY(app.writeFile(QStringLiteral("bin/base_ini.xml"), "<data><App><Version>1.0.0</Version></App></data>"));
        QVERIFY(app.writeFile(QStringLiteral("bin/prop_ini.xml"),
                              "<data><App><DSAutoUpdate>0</DSAutoUpdate>"
                              "<QuillmarkAutoUpdate>0</QuillmarkAutoUpdate></App></data>"));

        QProcess probe;
        probe.start(QCoreApplication::applicationDirPath() + QStringLiteral("/probe_restart"),
                    QStringList{app.path()} + codes);
        QVERIFY(probe.waitForFinished(60000));
        const QString out = QString::fromLocal8Bit(probe.readAllStandardOutput());
        QCOMPARE(probe.exitStatus(), QProcess::NormalExit);
        QCOMPARE(probe.exitCode(), exitCode);

        const QStringList lines = out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        QStringList passLines = lines.filter(QRegularExpression(QStringLiteral("^pass ")));
        QCOMPARE(passLines.size(), passes);
        QString pid;
        for (int i = 0; i < passes; ++i) {
            const QStringList words = passLines.at(i).split(QLatin1Char(' '));
            QCOMPARE(words.at(1).toInt(), i);
            if (i == 0)
                pid = words.at(3);
            QCOMPARE(words.at(3), pid);                 // same process
            QCOMPARE(words.at(5).toInt(), i + 1);       // a new window each pass
            QCOMPARE(words.at(7), QStringLiteral("1")); // shown
            QCOMPARE(words.at(9),
                     QStringLiteral("de_DE,en_US")); // translations loaded again
        }
        QVERIFY2(lines.last() == QStringLiteral("loop returned %1").arg(exitCode), qPrintable(out));
    }
};

QTEST_MAIN(TestApplication)
#include "TestApplication.moc"
