#include "app/Application.h"
#include "model/CCategory.h"
#include "model/CProduct.h"
#include "model/CSimulatorSearch.h"
#include "support/DatasetFiles.h"
#include "support/MessageBoxSpy.h"
#include "support/SampleCatalogue.h"
#include "support/TempAppDir.h"
#include "support/UserInput.h"
#include "ui/QuillmarkMainWindow.h"
#include "ui/VlAppPushButton.h"
#include "ui/VlCatLabel.h"
#include "ui/VlCatPropsLabel.h"
#include "ui/VlProdLabel.h"
#include "ui/VlProdListLabel.h"

#include <QRegularExpression>
#include <QScopedPointer>
#include <QTemporaryDir>
#include <QTest>

// Simulator folders found in fake home folders, and their offer in the real main window.
class TestSimulatorSearch : public QObject
{
    Q_OBJECT

    QTemporaryDir m_root; // "home" is the home folder, "Applications" a usual place beside it

    QString at(const QString& relative) const { return m_root.path() + QLatin1Char('/') + relative; }

private slots:
    void initTestCase()
    {
        QVERIFY(m_root.isValid());
        Application::registerResources();
        Application::loadTranslations(QStringLiteral(":/lang"));
        // The window searches the home folder; never the real one of whoever runs the tests.
        qputenv("HOME", at(QStringLiteral("home")).toUtf8());
    }

    void cleanup()
    {
        Application::setLanguage(QStringLiteral("en_US"));
        QDir(m_root.path()).removeRecursively();
        QDir().mkpath(m_root.path());
    }

    // clang-format off
    void findsFirstWorkingFolder_data()
    {
        QTest::addColumn<QString>("category");
        QTest::addColumn<QString>("installFile"); // below the root; empty: none
        QTest::addColumn<QByteArray>("lines");    // "@" stands for the root
        QTest::addColumn<QStringList>("folders"); // below the root; "!" first: a folder without the simulator
        QTest::addColumn<QString>("found");       // below the root; empty: nothing

        const QString linux11 = "home/.x-plane/x-plane_install_11.txt";
        const QString linux10 = "home/.x-plane/x-plane_install_10.txt";
        const QString odd = QString::fromUtf8("Flugsimulator \xc3\x84rger/X-Plane 11");
        QTest::newRow("several lines, first missing, second without simulator")
            << "X-Plane 11" << linux11 << QByteArray("@/gone/X-Plane 11/\n@/sims/empty/\n@/sims/a/\n@/sims/b/\n")
            << QStringList{"!sims/empty", "sims/a", "sims/b"} << "sims/a";
        QTest::newRow("macOS, CR LF, spaces and letters beyond ASCII")
            << "X-Plane 11" << "home/Library/Preferences/x-plane_install_11.txt"
            << QByteArray("\r\n  @/Flugsimulator \xc3\x84rger/X-Plane 11/ \r\n") << QStringList{odd} << odd;
        QTest::newRow("relative line skipped") << "X-Plane 11" << linux11 << QByteArray("sims/a\n")
                                               << QStringList{"sims/a"} << "";
        QTest::newRow("install file before usual places") << "X-Plane 11" << linux11 << QByteArray("@/sims/a")
                                                          << QStringList{"sims/a", "home/X-Plane 11"} << "sims/a";
        QTest::newRow("the other version's file") << "X-Plane 11" << linux10 << QByteArray("@/sims/a\n")
                                                  << QStringList{"sims/a"} << "";
        QTest::newRow("its own version's file") << "X-Plane 10" << linux10 << QByteArray("@/sims/a\n")
                                                << QStringList{"sims/a"} << "sims/a";
        QTest::newRow("usual places in order")
            << "X-Plane 10" << "" << QByteArray() << QStringList{"home/X-Plane 10", "Applications/X-Plane 10"}
            << "Applications/X-Plane 10";
        QTest::newRow("usual place without simulator") << "X-Plane 11" << "" << QByteArray()
                                                       << QStringList{"!Applications/X-Plane 11"} << "";
        QTest::newRow("nothing there") << "X-Plane 11" << "" << QByteArray() << QStringList() << "";
        QTest::newRow("no search for other simulators") << "FSX" << "" << QByteArray()
                                                        << QStringList{"Applications/FSX"} << "";
    }
    // clang-format on

    void findsFirstWorkingFolder()
    {
        QFETCH(QString, category);
        QFETCH(QString, installFile);
        QFETCH(QByteArray, lines);
        QFETCH(QStringList, folders);
        QFETCH(QString, found);

        if (!installFile.isEmpty())
            QVERIFY(DatasetFiles::writeFile(at(installFile), lines.replace('@', m_root.path().toUtf8())));
        for (const QString& folder : folders) {
            // A simulator folder holds what X-Plane and FSX are each recognised by.
            const bool simulator = !folder.startsWith(QLatin1Char('!'));
            QVERIFY(QDir().mkpath(simulator ? at(folder) + "/X-Plane.app" : at(folder.mid(1))));
            QVERIFY(!simulator || QDir().mkpath(at(folder) + "/fsx.exe"));
        }
        const CSimulatorSearch search(at(QStringLiteral("home")),
                                      {at(QStringLiteral("Applications")), at(QStringLiteral("home"))});
        QCOMPARE(search.Find(category), found.isEmpty() ? QString() : at(found));
    }

    // A category without a working folder is offered the one found; one click takes it, as a chosen
    // folder would be taken, and nothing is kept without that click. On the first start the status
    // line says what was found and what still needs a folder.
    // clang-format off
    void offerInMainWindow_data()
    {
        QTest::addColumn<bool>("firstStart");
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("given"); // the X-Plane 11 folder the catalogue gives, below the root
        QTest::addColumn<bool>("click");
        QTest::addColumn<QString>("status"); // before the click and after; "@" stands for the folder found

        const QString ready = "Ready|Ready";
        QTest::newRow("taken") << false << "en_US" << "" << true << ready;
        QTest::newRow("left alone") << false << "en_US" << "" << false << ready;
        QTest::newRow("replaces a folder without simulator") << false << "en_US" << "sims/empty" << true << ready;
        QTest::newRow("working folder kept") << false << "en_US" << "sims/mine" << false << ready;
        QTest::newRow("first start, taken")
            << true << "en_US" << "" << true
            << "X-Plane 10 still needs a folder. X-Plane 11 found in @; confirm it under X-Plane 11.|"
               "X-Plane 10 still needs a folder.";
        QTest::newRow("first start, German")
            << true << "de_DE" << "" << true
            << "X-Plane 10 braucht noch einen Ordner. X-Plane 11 gefunden in @; unter X-Plane 11 bestätigen.|"
               "X-Plane 10 braucht noch einen Ordner.";
        QTest::newRow("first start, one set") << true << "en_US" << "sims/mine" << false
                                              << "X-Plane 10 still needs a folder.|X-Plane 10 still needs a folder.";
    }
    // clang-format on

    void offerInMainWindow()
    {
        QFETCH(bool, firstStart);
        QFETCH(QString, language);
        QFETCH(QString, given);
        QFETCH(bool, click);
        QFETCH(QString, status);

        MessageBoxSpy boxes;
        TempAppDir app;
        const QString found = at(QStringLiteral("home/X-Plane 11"));
        QVERIFY(SampleCatalogue::MakeSimFolder(found));
        QVERIFY(SampleCatalogue::MakeSimFolder(at(QStringLiteral("sims/mine"))));
        QVERIFY(QDir().mkpath(at(QStringLiteral("sims/empty"))));
        SampleCatalogue catalogue = SampleCatalogue::Small();
        if (!given.isEmpty())
            catalogue.categoryPaths.insert(QStringLiteral("X-Plane 11"), at(given));
        QVERIFY(catalogue.WriteTo(app.path()));
        if (firstStart)
            QVERIFY(QFile::remove(app.filePath(QStringLiteral("bin/prop_ini.xml"))));
        Application::setLanguage(language);
        const QStringList statusLines = status.replace(QLatin1Char('@'), found).split(QLatin1Char('|'));

        QScopedPointer<QuillmarkMainWindow> window(new QuillmarkMainWindow);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.data()));
        QCOMPARE(window->GetStatusLabel()->text(), statusLines.at(0));
        QTest::mouseClick(window->GetCategoryButton(QStringLiteral("X-Plane 11")), Qt::LeftButton);
        VlAppPushButton* offer = window->GetCatProps()->GetOfferButton();
        const bool offered = given != QLatin1String("sims/mine");
        QCOMPARE(offer->isVisible(), offered);
        if (offered) {
            QCOMPARE(offer->toolTip(), found);
            QVERIFY(offer->text().contains(language == QLatin1String("de_DE") ? "verwenden" : "Use"));
        }
        if (click)
            UserInput::click(offer);
        QCOMPARE(offer->isVisible(), offered && !click);
        QCOMPARE(window->GetStatusLabel()->text(), statusLines.at(1));
        // The cards of the category follow at once.
        for (VlProdLabel* card : window->GetProdList()->GetCards())
            if (click && card->GetProduct()->GetCategoryName() == QLatin1String("X-Plane 11"))
                QVERIFY2(card->GetPathText().startsWith(found + QLatin1Char('/')), qPrintable(card->GetPathText()));

        window.reset(); // saves the settings
        const QString settings = QString::fromUtf8(app.readFile(QStringLiteral("bin/prop_ini.xml")));
        const QRegularExpression saved(QStringLiteral("<name>X-Plane 11</name>\\s*<path>([^<]*)</path>"));
        QCOMPARE(saved.match(settings).captured(1), click ? found : given.isEmpty() ? QString() : at(given));
        QCOMPARE(boxes.count(), 0);
    }
};

QTEST_MAIN(TestSimulatorSearch)
#include "TestSimulatorSearch.moc"
