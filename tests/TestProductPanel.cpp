#include "app/Application.h"
#include "model/CCategory.h"
#include "model/CDataModel.h"
#include "model/CProduct.h"
#include "support/MessageBoxSpy.h"
#include "support/SampleCatalogue.h"
#include "support/TempAppDir.h"
#include "ui/CvlFilterCmb.h"
#include "ui/QuillmarkMainWindow.h"
#include "ui/VlCatLabel.h"
#include "ui/VlCatPropsLabel.h"
#include "ui/VlCycleDates.h"
#include "ui/VlDirChooser.h"
#include "ui/VlProdLabel.h"
#include "ui/VlProdListLabel.h"

#include <QCheckBox>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QScopedPointer>
#include <QTest>

// The product panel inside the real main window, on a small catalogue in a temporary program folder.
class TestProductPanel : public QObject
{
    Q_OBJECT

    QScopedPointer<TempAppDir> m_app;
    QScopedPointer<QuillmarkMainWindow> m_window;
    QScopedPointer<MessageBoxSpy> m_boxes;

    QString sim10() const { return m_app->filePath(QStringLiteral("sims/xp10")); }
    QString sim11() const { return m_app->filePath(QStringLiteral("sims/xp11")); }

    void build(bool listsSelected = true)
    {
        m_window.reset();
        m_app.reset(); // before the next one, which must not be handed back the old folder
        m_app.reset(new TempAppDir);
        SampleCatalogue catalogue = SampleCatalogue::Small();
        if (!listsSelected)
            catalogue.categories.removeAll(QStringLiteral("Selected"));
        QVERIFY(SampleCatalogue::MakeSimFolder(sim10()));
        QVERIFY(SampleCatalogue::MakeSimFolder(sim11()));
        catalogue.categoryPaths.insert(QStringLiteral("X-Plane 10"), sim10());
        catalogue.categoryPaths.insert(QStringLiteral("X-Plane 11"), sim11());
        QVERIFY(catalogue.WriteTo(m_app->path()));
        m_window.reset(new QuillmarkMainWindow);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.data()));
    }

    VlProdLabel* card(const QString& name) const
    {
        for (VlProdLabel* c : m_window->GetProdList()->GetCards())
            if (c->GetProduct()->GetName() == name)
                return c;
        return nullptr;
    }

    QStringList visibleNames() const
    {
        QStringList names;
        for (VlProdLabel* c : m_window->GetProdList()->GetCards())
            if (c->GetVisible() && !c->isHidden())
                names << c->GetProduct()->GetName();
        return names;
    }

    void chooseDataset(const QString& dataset)
    {
        CvlFilterCmb* filter = m_window->GetFilter();
        filter->setFocus();
        while (filter->currentIndex() > 0)
            QTest::keyClick(filter, Qt::Key_Up);
        while (filter->currentIndex() < filter->count() - 1 &&
               (dataset == QLatin1String("All") ? false : filter->currentText() != dataset))
            QTest::keyClick(filter, Qt::Key_Down);
    }

    void clickCategory(const QString& name)
    {
        VlCatLabel* button = m_window->GetCategoryButton(name);
        QVERIFY(button);
        QTest::mouseClick(button, Qt::LeftButton);
    }

private slots:
    void initTestCase()
    {
        Application::registerResources();
        Application::loadTranslations(QStringLiteral(":/lang"));
        Application::setLanguage(QStringLiteral("en_US"));
    }

    void init()
    {
        m_boxes.reset(new MessageBoxSpy);
        build();
    }

    void cleanup()
    {
        VlDirChooser::SetHandler(nullptr);
        VlCycleDates::SetToday(QDate());
        Application::setLanguage(QStringLiteral("en_US"));
        m_window.reset();
        m_app.reset();
        QCOMPARE(m_boxes->count(), 0);
        m_boxes.reset();
    }

    // clang-format off
    void filterShowsExactCards_data()
    {
        QTest::addColumn<QString>("category");
        QTest::addColumn<QString>("dataset");
        QTest::addColumn<QStringList>("ticked"); // ticked on their cards before filtering
        QTest::addColumn<QStringList>("expected");

        const QStringList all{"Alpha GNS", "Bravo FMS", "Charlie Nav", "Delta GNS", "Echo FMS"};
        QTest::newRow("all") << "All" << "All" << QStringList() << all;
        QTest::newRow("x-plane 11") << "X-Plane 11" << "All" << QStringList()
                                    << QStringList{"Alpha GNS", "Bravo FMS", "Echo FMS"};
        QTest::newRow("x-plane 10") << "X-Plane 10" << "All" << QStringList()
                                    << QStringList{"Charlie Nav", "Delta GNS"};
        QTest::newRow("dataset over all categories")
            << "All" << "gns430" << QStringList() << QStringList{"Alpha GNS", "Delta GNS"};
        QTest::newRow("category and dataset") << "X-Plane 11" << "xp11nav" << QStringList()
                                              << QStringList{"Bravo FMS", "Echo FMS"};
        QTest::newRow("dataset of the other category") << "X-Plane 10" << "xp11nav" << QStringList()
                                                       << QStringList();
        QTest::newRow("selected from catalogue") << "Selected" << "All" << QStringList()
                                                 << QStringList{"Bravo FMS"};
        QTest::newRow("selected after ticking")
            << "Selected" << "All" << QStringList{"Charlie Nav", "Echo FMS"}
            << QStringList{"Bravo FMS", "Charlie Nav", "Echo FMS"};
        QTest::newRow("unticking removes from selected")
            << "Selected" << "All" << QStringList{"Bravo FMS"} << QStringList();
        QTest::newRow("selected and dataset") << "Selected" << "xp10nav" << QStringList{"Charlie Nav", "Alpha GNS"}
                                              << QStringList{"Charlie Nav"};
    }
    // clang-format on

    void filterShowsExactCards()
    {
        QFETCH(QString, category);
        QFETCH(QString, dataset);
        QFETCH(QStringList, ticked);
        QFETCH(QStringList, expected);

        for (const QString& name : ticked) {
            QVERIFY(card(name));
            QTest::mouseClick(card(name)->findChild<QCheckBox*>(), Qt::LeftButton);
        }
        clickCategory(category);
        chooseDataset(dataset);
        QCOMPARE(m_window->GetProdList()->GetDatasetFilter(), dataset);
        QCOMPARE(visibleNames(), expected);
    }

    void selectedWithoutCatalogueCategory()
    {
        build(false);
        QTest::mouseClick(card(QStringLiteral("Delta GNS"))->findChild<QCheckBox*>(), Qt::LeftButton);
        clickCategory(QStringLiteral("Selected"));
        QCOMPARE(visibleNames(), (QStringList{"Bravo FMS", "Delta GNS"}));
    }

    void tickRecordsSelectionOnSave_data()
    {
        QTest::addColumn<QString>("product");
        QTest::addColumn<int>("clicks");
        QTest::addColumn<bool>("selected");

        QTest::newRow("tick") << "Alpha GNS" << 1 << true;
        QTest::newRow("tick and untick") << "Alpha GNS" << 2 << false;
        QTest::newRow("untick catalogue choice") << "Bravo FMS" << 1 << false;
    }

    void tickRecordsSelectionOnSave()
    {
        QFETCH(QString, product);
        QFETCH(int, clicks);
        QFETCH(bool, selected);

        QCheckBox* box = card(product)->findChild<QCheckBox*>();
        for (int i = 0; i < clicks; ++i)
            QTest::mouseClick(box, Qt::LeftButton);
        QCOMPARE(card(product)->GetProduct()->GetUpdate(), selected);

        m_window.reset(); // saves the settings
        const QString settings = QString::fromUtf8(m_app->readFile(QStringLiteral("bin/prop_ini.xml")));
        const QString record = QStringLiteral("<name>%1</name>").arg(product);
        const int at = settings.indexOf(record);
        QVERIFY2(at >= 0, qPrintable(settings));
        const int update = settings.indexOf(QStringLiteral("<update>"), at);
        const QString expected =
            selected ? QStringLiteral("<update>true</update>") : QStringLiteral("<update>false</update>");
        QCOMPARE(settings.mid(update, expected.size()), expected);
    }

    void productSelectionFollowsModel()
    {
        // A selection made elsewhere (settings, install group) ticks the card.
        CProduct* product = card(QStringLiteral("Delta GNS"))->GetProduct();
        product->SetUpdate(true);
        QVERIFY(card(QStringLiteral("Delta GNS"))->findChild<QCheckBox*>()->isChecked());
        product->SetUpdate(false);
        QVERIFY(!card(QStringLiteral("Delta GNS"))->findChild<QCheckBox*>()->isChecked());
    }

    void cycleText_data()
    {
        QTest::addColumn<QByteArray>("installed"); // cycle_info.txt content, empty for none
        QTest::addColumn<QByteArray>("backup");
        QTest::addColumn<QString>("expected");

        QTest::newRow("nothing") << QByteArray() << QByteArray() << "Installed: none · Backup: none";
        QTest::newRow("installed only") << QByteArray("AIRAC cycle    : 1802\r\nRevision       : 1\r\n") << QByteArray()
                                        << "Installed: cycle 1802, revision 1 · Backup: none";
        QTest::newRow("both") << QByteArray("AIRAC cycle    : 1803\r\nRevision       : 2\r\n")
                              << QByteArray("AIRAC cycle    : 1801\r\nRevision       : 1\r\n")
                              << "Installed: cycle 1803, revision 2 · Backup: cycle 1801, revision 1";
        QTest::newRow("unknown backup") << QByteArray("AIRAC cycle    : 1803\r\nRevision       : 2\r\n")
                                        << QByteArray("AIRAC cycle    : unknown\r\nRevision       : \r\n")
                                        << "Installed: cycle 1803, revision 2 · Backup: unknown";
    }

    void cycleText()
    {
        QFETCH(QByteArray, installed);
        QFETCH(QByteArray, backup);
        QFETCH(QString, expected);

        // Charlie Nav: $SimPath\Custom Data of X-Plane 10, dataset xp10nav.
        const QString folder = sim10() + QStringLiteral("/Custom Data");
        QDir().mkpath(folder + QStringLiteral("/QMK_xp10nav_back"));
        if (!installed.isEmpty())
            QVERIFY(m_app->writeFile(QStringLiteral("sims/xp10/Custom Data/cycle_info.txt"), installed));
        if (!backup.isEmpty())
            QVERIFY(m_app->writeFile(QStringLiteral("sims/xp10/Custom Data/QMK_xp10nav_back/cycle_info.txt"), backup));
        VlProdLabel* c = card(QStringLiteral("Charlie Nav"));
        c->GetProduct()->SetInstallState(QMK_STATE_INSTALL_OK);
        QCOMPARE(c->GetCycleText(), expected);
    }

    // When the installed cycle is in force, on the card and in the counts of "All" and "Selected",
    // with the clock set and in both languages.
    // clang-format off
    void cycleDates_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("cycle"); // installed on Charlie Nav; empty: none
        QTest::addColumn<QDate>("today");
        QTest::addColumn<QString>("dates");
        QTest::addColumn<QString>("expired");

        QTest::newRow("in force") << "en_US" << "2601" << QDate(2026, 2, 1) << "valid 22 Jan – 18 Feb 2026" << "";
        QTest::newRow("expired today") << "en_US" << "2601" << QDate(2026, 2, 19) << "valid 22 Jan – 18 Feb 2026"
                                       << "expired today";
        QTest::newRow("a day ago") << "en_US" << "2601" << QDate(2026, 2, 20) << "valid 22 Jan – 18 Feb 2026"
                                   << "expired 1 day ago";
        QTest::newRow("12 days ago") << "en_US" << "2601" << QDate(2026, 3, 3) << "valid 22 Jan – 18 Feb 2026"
                                     << "expired 12 days ago";
        QTest::newRow("over the year's end") << "en_US" << "2513" << QDate(2026, 1, 1)
                                             << "valid 25 Dec 2025 – 21 Jan 2026" << "";
        QTest::newRow("German, in force") << "de_DE" << "2601" << QDate(2026, 2, 1)
                                          << "gültig 22. Jan. – 18. Feb. 2026" << "";
        QTest::newRow("German, expired") << "de_DE" << "2601" << QDate(2026, 3, 3)
                                         << "gültig 22. Jan. – 18. Feb. 2026" << "vor 12 Tagen abgelaufen";
        QTest::newRow("no cycle") << "en_US" << "" << QDate(2026, 3, 3) << "" << "";
    }
    // clang-format on

    void cycleDates()
    {
        QFETCH(QString, language);
        QFETCH(QString, cycle);
        QFETCH(QDate, today);
        QFETCH(QString, dates);
        QFETCH(QString, expired);

        VlCycleDates::SetToday(today);
        Application::setLanguage(language);
        if (!cycle.isEmpty())
            QVERIFY(m_app->writeFile(QStringLiteral("sims/xp10/Custom Data/cycle_info.txt"),
                                     "AIRAC cycle    : " + cycle.toLatin1() + "\r\nRevision       : 1\r\n"));
        VlProdLabel* c = card(QStringLiteral("Charlie Nav"));
        c->GetProduct()->SetInstallState(QMK_STATE_INSTALL_OK);
        QCOMPARE(c->GetCycleDatesText(), dates);
        QCOMPARE(c->GetCycleExpiredText(), expired);
        for (QLabel* label : c->findChildren<QLabel*>())
            if (!expired.isEmpty() && label->text() == expired)
                QCOMPARE(label->palette().color(QPalette::WindowText), QColor(176, 80, 0));

        // Charlie Nav is not selected until its card is ticked.
        const bool german = language == QLatin1String("de_DE");
        const QString none = german ? "Kein Produkt läuft mit einem abgelaufenen Zyklus."
                                    : "No product runs an expired cycle.";
        const QString count = expired.isEmpty() ? none
                              : german          ? "1 Produkt läuft mit einem abgelaufenen Zyklus."
                                                : "1 product runs an expired cycle.";
        VlCatPropsLabel* band = m_window->GetCatProps();
        QTRY_COMPARE(band->GetExpiredText(), count);
        clickCategory(QStringLiteral("X-Plane 10"));
        QCOMPARE(band->GetExpiredText(), QString());
        clickCategory(QStringLiteral("Selected"));
        QCOMPARE(band->GetExpiredText(), none);
        clickCategory(QStringLiteral("All"));
        QTest::mouseClick(c->findChild<QCheckBox*>(), Qt::LeftButton);
        clickCategory(QStringLiteral("Selected"));
        QCOMPARE(band->GetExpiredText(), count);
    }

    void simFolderChangeUpdatesCategoryCards_data()
    {
        QTest::addColumn<QString>("answer"); // relative to the program folder; empty = cancelled
        QTest::addColumn<bool>("simulator"); // the answer holds X-Plane.app
        QTest::addColumn<bool>("changes");

        QTest::newRow("new simulator folder") << "sims/xp11b" << true << true;
        QTest::newRow("cancelled") << "" << false << false;
        QTest::newRow("folder without simulator") << "sims/empty" << false << true;
    }

    void simFolderChangeUpdatesCategoryCards()
    {
        QFETCH(QString, answer);
        QFETCH(bool, simulator);
        QFETCH(bool, changes);

        const QString folder = answer.isEmpty() ? QString() : m_app->filePath(answer);
        if (simulator)
            QVERIFY(SampleCatalogue::MakeSimFolder(folder));
        else if (!folder.isEmpty())
            QVERIFY(QDir().mkpath(folder));
        int asked = 0;
        VlDirChooser::SetHandler([&](const QString&, const QString& start) {
            ++asked;
            // The chooser opens on the current simulator folder.
            return start == sim11() ? folder : QStringLiteral("wrong start ") + start;
        });

        clickCategory(QStringLiteral("X-Plane 11"));
        const QStringList x11{"Alpha GNS", "Bravo FMS", "Echo FMS"};
        const QString before10 = card(QStringLiteral("Charlie Nav"))->GetPathText();
        QCOMPARE(card(QStringLiteral("Alpha GNS"))->GetPathText(), sim11() + QStringLiteral("/Custom Data/GNS430"));

        QPushButton* change = nullptr;
        for (QPushButton* b : m_window->GetCatProps()->findChildren<QPushButton*>())
            if (b->isVisible())
                change = b;
        QVERIFY(change);
        QTest::mouseClick(change, Qt::LeftButton);
        QCOMPARE(asked, 1);

        CCategory* category = m_window->GetDataModel()->GetCategoryByName(QStringLiteral("X-Plane 11"));
        QCOMPARE(category->GetPath(), changes ? folder : sim11());
        QLineEdit* catEdit = m_window->GetCatProps()->findChild<QLineEdit*>();
        QCOMPARE(catEdit->palette().color(QPalette::Disabled, QPalette::Text),
                 (changes && !simulator) ? QColor(255, 0, 0) : QColor(0, 100, 0));

        for (const QString& name : x11) {
            const QString shown = card(name)->GetPathText();
            if (!changes)
                QVERIFY2(shown.startsWith(sim11() + QLatin1Char('/')), qPrintable(shown));
            else if (simulator)
                QVERIFY2(shown.startsWith(folder + QLatin1Char('/')), qPrintable(shown));
            else
                QVERIFY2(shown.startsWith(QStringLiteral("<")), qPrintable(shown));
            // The template is kept whatever the card shows.
            QVERIFY(card(name)->GetProduct()->GetProductPath().startsWith(QStringLiteral("$SimPath/")));
        }
        QCOMPARE(card(QStringLiteral("Charlie Nav"))->GetPathText(), before10);
    }

    void cardFolderChooser_data()
    {
        QTest::addColumn<QString>("answer"); // relative to the program folder; empty = cancelled
        QTest::addColumn<bool>("green");

        QTest::newRow("existing folder") << "addons/echo" << true;
        QTest::newRow("cancelled") << "" << false;
    }

    void cardFolderChooser()
    {
        QFETCH(QString, answer);
        QFETCH(bool, green);

        VlProdLabel* c = card(QStringLiteral("Echo FMS")); // its folder does not exist yet
        QLineEdit* edit = c->findChild<QLineEdit*>();
        const QString before = c->GetProduct()->GetProductPath();
        QCOMPARE(edit->palette().color(QPalette::Disabled, QPalette::Text), QColor(255, 0, 0));

        const QString folder = answer.isEmpty() ? QString() : m_app->filePath(answer);
        if (!folder.isEmpty())
            QVERIFY(QDir().mkpath(folder));
        VlDirChooser::SetHandler([&](const QString&, const QString&) { return folder; });
        QPushButton* change = nullptr;
        for (QPushButton* b : c->findChildren<QPushButton*>())
            if (b->text() == QLatin1String("Change"))
                change = b;
        QVERIFY(change);
        QTest::mouseClick(change, Qt::LeftButton);

        QCOMPARE(c->GetProduct()->GetProductPath(), folder.isEmpty() ? before : folder);
        QCOMPARE(edit->palette().color(QPalette::Disabled, QPalette::Text),
                 green ? QColor(0, 100, 0) : QColor(255, 0, 0));
    }

    // The panels paint their own flat colours; each row names a widget and a spot on it that no
    // child covers.
    void panelColours_data()
    {
        QTest::addColumn<QString>("where");
        QTest::addColumn<QColor>("colour");
        QTest::newRow("middle band") << "middle" << QColor(0x7D, 0x7D, 0x7D);
        QTest::newRow("card edge") << "card" << QColor(40, 40, 50);
        QTest::newRow("card outline") << "outline" << QColor(110, 110, 117);
        QTest::newRow("upper frame") << "upper" << QColor(230, 230, 240);
        QTest::newRow("lower frame") << "lower" << QColor(235, 235, 245);
        QTest::newRow("list below the cards") << "content" << QColor(240, 240, 250);
        QTest::newRow("button") << "button" << QColor(210, 210, 222);
        QTest::newRow("button under the mouse") << "hover" << QColor(190, 205, 225);
        QTest::newRow("path field") << "edit" << QColor(252, 252, 255);
    }

    void panelColours()
    {
        QFETCH(QString, where);
        QFETCH(QColor, colour);
        // One card, so the list shows its own background below it.
        clickCategory(QStringLiteral("X-Plane 11"));
        chooseDataset(QStringLiteral("gns430"));
        VlProdLabel* c = card(QStringLiteral("Alpha GNS"));
        QVERIFY(c && c->isVisible());
        QPushButton* change = nullptr;
        for (QPushButton* b : c->findChildren<QPushButton*>())
            if (b->text() == QLatin1String("Change"))
                change = b;
        QWidget* widget = c;
        QPoint spot(1, 1);
        if (where == QLatin1String("middle")) {
            widget = m_window->GetProdList()->parentWidget();
            spot = QPoint(5, 5);
        } else if (where == QLatin1String("outline")) {
            spot = QPoint(2, 2);
        } else if (where == QLatin1String("upper")) {
            spot = QPoint(5, 5);
        } else if (where == QLatin1String("lower")) {
            spot = QPoint(5, c->height() - 5);
        } else if (where == QLatin1String("content")) {
            widget = m_window->GetProdList();
            spot = QPoint(widget->width() / 2, widget->height() - 5);
        } else if (where == QLatin1String("button") || where == QLatin1String("hover")) {
            widget = change;
            spot = QPoint(3, change->height() / 2);
            // The cursor may already stand there from an earlier step; Qt moves it only when it moves.
            if (where == QLatin1String("hover")) {
                QTest::mouseMove(m_window.data(), QPoint(1, 1));
                QTest::mouseMove(change, QPoint(change->width() / 2, change->height() / 2));
            }
            QTRY_COMPARE(change->underMouse(), where == QLatin1String("hover"));
        } else if (where == QLatin1String("edit")) {
            widget = c->findChild<QLineEdit*>();
            spot = QPoint(widget->width() - 3, widget->height() / 2);
        }
        QVERIFY(widget);
        QCOMPARE(widget->grab().toImage().pixelColor(spot), colour);
    }

    void commandsPaneToggles()
    {
        VlProdLabel* c = card(QStringLiteral("Alpha GNS"));
        QList<QPushButton*> toggles;
        for (QPushButton* b : c->findChildren<QPushButton*>())
            if (b->text() == QLatin1String("Commands"))
                toggles << b;
        QCOMPARE(toggles.size(), 2);
        QPushButton* shown = toggles.at(0)->isVisible() ? toggles.at(0) : toggles.at(1);
        QPushButton* hidden = shown == toggles.at(0) ? toggles.at(1) : toggles.at(0);
        QVERIFY(!hidden->isVisible());
        QTest::mouseClick(shown, Qt::LeftButton);
        QVERIFY(!shown->isVisible());
        QVERIFY(hidden->isVisible());
        QTest::mouseClick(hidden, Qt::LeftButton);
        QVERIFY(shown->isVisible());
        QVERIFY(!hidden->isVisible());
    }

    // The icon follows the product's state on its own card only, and its tool tip says why.
    // clang-format off
    void stateIcon_data()
    {
        QTest::addColumn<int>("state");
        QTest::addColumn<int>("icon");
        QTest::addColumn<QString>("newCycle");
        QTest::addColumn<QString>("error");
        QTest::addColumn<QString>("tip"); // part of the tool tip

        for (int s = 1; s <= 8; ++s)
            QTest::newRow(qPrintable(QStringLiteral("state %1").arg(s))) << s << s << "" << "" << "";
        QTest::newRow("below range") << 0 << 0 << "" << "" << "";
        QTest::newRow("above range") << 9 << 0 << "" << "" << "";
        QTest::newRow("server not reached beside an installed cycle") << 4 << 4 << "" << "" << "version server was not reached";
        QTest::newRow("target known, not installed") << 4 << 4 << "1802" << "" << "Not installed:";
        QTest::newRow("failed names its reason") << 6 << 6 << "1802" << "unzip ended with an error" << "Failed: unzip ended with an error";
        QTest::newRow("failed without a reason") << 6 << 6 << "1802" << "" << "did not succeed";
    }
    // clang-format on

    void stateIcon()
    {
        QFETCH(int, state);
        QFETCH(int, icon);
        QFETCH(QString, newCycle);
        QFETCH(QString, error);
        QFETCH(QString, tip);

        VlProdLabel* c = card(QStringLiteral("Bravo FMS"));
        VlProdLabel* other = card(QStringLiteral("Alpha GNS"));
        const int otherIcon = other->GetShownStateIcon();
        CProduct* product = c->GetProduct();
        product->SetNewCycle(newCycle);
        product->SetErrorText(error);
        product->SetInstallState(QMK_STATE_INSTALL_OK);
        product->SetInstallState(static_cast<EQMKProductInstallState>(state));
        QCOMPARE(c->GetShownStateIcon(), icon);
        QCOMPARE(other->GetShownStateIcon(), otherIcon);
        QVERIFY(c->GetCycleText().startsWith(QStringLiteral("Installed: ")));
        QVERIFY2(c->GetStateToolTip().contains(tip), qPrintable(c->GetStateToolTip()));
    }
};

QTEST_MAIN(TestProductPanel)
#include "TestProductPanel.moc"
