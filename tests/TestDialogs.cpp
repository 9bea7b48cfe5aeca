#include "app/Application.h"
#include "engine/CDSVersion.h"
#include "model/CDataModel.h"
#include "model/CDialogRoute.h"
#include "model/CProduct.h"
#include "support/DatasetFiles.h"
#include "support/DialogDriver.h"
#include "support/LayoutCheck.h"
#include "support/MessageBoxSpy.h"
#include "support/SampleCatalogue.h"
#include "support/TempAppDir.h"
#include "support/TestServer.h"
#include "support/UserInput.h"
#include "ui/CDialogFactory.h"
#include "ui/CvlFilterCmb.h"
#include "ui/DlgBase.h"
#include "ui/DlgHelp.h"
#include "ui/DlgVLSettings.h"
#include "ui/QuillmarkMainWindow.h"
#include "ui/SystemButton.h"
#include "ui/VlActionLabel.h"
#include "ui/VlBigComboBox.h"
#include "ui/VlCheckBox.h"
#include "ui/VlColors.h"
#include "ui/VlFoldPane.h"
#include "ui/VlProdLabel.h"
#include "ui/VlProdListLabel.h"
#include "ui/VlProgressBar.h"
#include "ui/VlPushButton.h"
#include "ui/dlgUpdateDatasetVersion.h"
#include "ui/wdgBackupLocal.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDesktopServices>
#include <QDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QHash>
#include <QLabel>
#include <QMouseEvent>
#include <QProcess>
#include <QScopedPointer>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTest>

#include <cmath>

using namespace DatasetFiles;
using UserInput::caption;

namespace {
// Relative luminance and contrast ratio as WCAG defines them.
double luminance(const QColor& c)
{
    const auto channel = [](int v) {
        const double s = v / 255.0;
        return s <= 0.03928 ? s / 12.92 : std::pow((s + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * channel(c.red()) + 0.7152 * channel(c.green()) + 0.0722 * channel(c.blue());
}

double contrast(const QColor& a, const QColor& b)
{
    const double la = luminance(a), lb = luminance(b);
    return (qMax(la, lb) + 0.05) / (qMin(la, lb) + 0.05);
}

// The contrast of a row's text against its background, read from the pixels: the background is
// the commonest colour, the text the colour that stands out most from it.
double rowContrast(const QImage& image, const QRect& row)
{
    QHash<QRgb, int> counts;
    for (int y = row.top(); y <= row.bottom(); ++y)
        for (int x = row.left(); x <= row.right(); ++x)
            ++counts[image.pixel(x, y)];
    QRgb background = 0;
    int most = -1;
    for (auto it = counts.cbegin(); it != counts.cend(); ++it)
        if (it.value() > most) {
            most = it.value();
            background = it.key();
        }
    double best = 1.0;
    for (auto it = counts.cbegin(); it != counts.cend(); ++it)
        best = qMax(best, contrast(QColor(it.key()), QColor(background)));
    return best;
}

void settle()
{
    for (int i = 0; i < 30; ++i)
        QApplication::processEvents();
}

QString describe(const QObject* object)
{
    const auto* widget = qobject_cast<const QWidget*>(object);
    QString text = object ? QString::fromLatin1(object->metaObject()->className()) : QStringLiteral("?");
    if (widget && !widget->toolTip().isEmpty())
        text += QStringLiteral(" \"") + widget->toolTip() + QLatin1Char('"');
    if (object && !object->objectName().isEmpty())
        text += QLatin1Char(' ') + object->objectName();
    return text;
}

// Every element a user can press, tick, choose or type into has a name.
void walk(QAccessibleInterface* node, QStringList& problems, int depth = 0)
{
    if (!node || depth > 60)
        return;
    static const QList<QAccessible::Role> interactive{
        QAccessible::PushButton, QAccessible::Button,  QAccessible::CheckBox,     QAccessible::RadioButton,
        QAccessible::ComboBox,   QAccessible::Link,    QAccessible::EditableText, QAccessible::ButtonMenu,
        QAccessible::PageTab,    QAccessible::SpinBox, QAccessible::Slider};
    if (!node->state().invisible && interactive.contains(node->role()) &&
        node->text(QAccessible::Name).trimmed().isEmpty())
        problems << QStringLiteral("no name: ") + describe(node->object());
    for (int i = 0; i < node->childCount(); ++i)
        walk(node->child(i), problems, depth + 1);
}

// What a picture alone says has words too; dialog buttons' mnemonics do not clash; every progress
// bar has the one look, and a full bar shows its colour even where the dialog has it disabled.
void checkPictures(QWidget* root, QStringList& problems)
{
    for (SystemButton* button : root->findChildren<SystemButton*>())
        if (button->isVisibleTo(root) && button->accessibleDescription().isEmpty())
            problems << QStringLiteral("no description: ") + describe(button);
    for (VlProdLabel* card : root->findChildren<VlProdLabel*>())
        for (QLabel* icon : card->findChildren<QLabel*>())
            if (icon->isVisibleTo(card) && icon->text().isEmpty() && !icon->pixmap(Qt::ReturnByValue).isNull() &&
                !qobject_cast<SystemButton*>(icon) &&
                (icon->accessibleDescription().isEmpty() || icon->accessibleDescription() != card->GetStateToolTip()))
                problems << QStringLiteral("state icon without its state in words: ") + card->GetProduct()->GetName();
    QHash<QChar, QString> mnemonics;
    for (QAbstractButton* button : root->findChildren<QAbstractButton*>()) {
        const int at = button->text().indexOf(QRegularExpression(QStringLiteral("&[^&]")));
        if (!button->isVisibleTo(root) || at < 0 || !qobject_cast<QDialog*>(root))
            continue;
        const QChar key = button->text().at(at + 1).toLower();
        if (mnemonics.contains(key))
            problems << QStringLiteral("mnemonic %1 twice: %2, %3").arg(key).arg(mnemonics.value(key), button->text());
        mnemonics.insert(key, button->text());
    }
    for (QProgressBar* bar : root->findChildren<QProgressBar*>()) {
        if (!qobject_cast<VlProgressBar*>(bar)) {
            problems << QStringLiteral("a progress bar of its own look: ") + describe(bar->parent());
            continue;
        }
        if (!bar->isVisibleTo(root))
            continue;
        bar->setRange(0, 100);
        bar->setValue(100);
        const QColor middle = bar->grab().toImage().pixelColor(bar->width() / 2, bar->height() / 2);
        if (contrast(middle, VlColors::ProgressChunk()) > 1.1)
            problems << QStringLiteral("a full bar shows %1, not the bar colour").arg(middle.name());
    }
}
} // namespace

// Counts how often its work is stopped, and how.
class CountingDlg : public DlgBase
{
public:
    using DlgBase::DlgBase;
    QList<bool> stops;
    void CloseDlg(bool ok) override { stops << ok; }
};

// The dialog base, the settings and help dialogs, the route every dialog is run through, and what
// assistive technology, the keyboard and the eye get from the window and every dialog.
class TestDialogs : public QObject
{
    Q_OBJECT

    // A main window on the sample catalogue in its own program folder (quiet settings: no network),
    // with its message boxes and dialogs taken by the test.
    struct SampleRun
    {
        MessageBoxSpy boxes;
        TempAppDir app;
        TestServer server;
        DialogDriver driver;
        QScopedPointer<QuillmarkMainWindow> window;

        // A loopback server with a cycle and a newer program, named by the catalogue; the settings
        // check for datasets by hand only, and for the program at start as asked.
        bool serve(bool selfUpdateAtStart)
        {
            server.addContent(QStringLiteral("/quillmark/versionList.txt"), "Revision: 1\n1802\n");
            server.addContent(QStringLiteral("/downloads/quillmark/mac_version.txt"), "124");
            SampleCatalogue catalogue = SampleCatalogue::Small();
            const QString sim = app.filePath(QStringLiteral("xp11"));
            catalogue.categoryPaths.insert(QStringLiteral("X-Plane 11"), sim);
            if (!server.start() || !SampleCatalogue::MakeSimFolder(sim))
                return false;
            catalogue.server = server.hostAndPort();
            return catalogue.WriteTo(app.path()) &&
                   app.writeFile(QStringLiteral("bin/prop_ini.xml"),
                                 SampleCatalogue::SettingsXml(false, selfUpdateAtStart));
        }

        bool open()
        {
            if (!QFile::exists(app.filePath("bin/base_ini.xml")) && !SampleCatalogue::Small().WriteTo(app.path()))
                return false;
            window.reset(new QuillmarkMainWindow);
            Application::mainWnd = window.data();
            window->move(40, 30);
            window->show();
            return QTest::qWaitForWindowExposed(window.data());
        }
        // A normal end of the run: the window saves the settings.
        void close()
        {
            window.reset();
            Application::mainWnd = nullptr;
        }
        // Settings is button 3, Help button 4.
        void click(int actionButton)
        {
            QWidget* button = window->GetActionButtons().at(actionButton);
            QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, button->rect().center());
        }
        // Opens a dialog with an action button; the driver's step runs while it is open.
        bool openWith(int actionButton)
        {
            const int before = driver.count();
            click(actionButton);
            return QTest::qWaitFor([&] { return driver.count() > before; }, 20000);
        }
    };

    QList<QUrl> m_opened;

public slots:
    // Stands in for the desktop's file opener.
    void openedUrl(const QUrl& url) { m_opened << url; }

private slots:
    void initTestCase()
    {
        Application::registerResources();
        Application::loadTranslations(QStringLiteral(":/lang"));
        Application::setLanguage(QStringLiteral("en_US"));
    }

    void cleanup()
    {
        Application::setLanguage(QStringLiteral("en_US"));
        Application::mainWnd = nullptr;
    }

    void everyControlNamed_data()
    {
        QTest::addColumn<QString>("where");
        QTest::addColumn<int>("action"); // the action button that opens it; -1: the window itself
        for (const char* language : {"en_US", "de_DE"}) {
            const auto row = [&](const char* where, int action) {
                QTest::newRow(qPrintable(QStringLiteral("%1 %2").arg(where, language)))
                    << QString::fromLatin1(language) << action;
            };
            row("main window", -1);
            row("update", 0);
            row("reset", 1);
            row("backup removal", 2);
            row("settings", 3);
            row("help", 4);
            row("self-update", 5);
        }
    }

    void everyControlNamed()
    {
        QFETCH(QString, where);
        QFETCH(int, action);
        Application::setLanguage(where);
        SampleRun run;
        QStringList problems;
        const auto inspect = [&](QWidget* root) {
            settle();
            walk(QAccessible::queryAccessibleInterface(root), problems);
            checkPictures(root, problems);
        };
        run.driver.then(inspect);
        // The self-update dialog opens on its own at start when the server has a newer run.
        QVERIFY(run.serve(action == 5) && run.open());
        if (action == 5)
            QTRY_COMPARE_WITH_TIMEOUT(run.driver.count(), 1, 20000);
        else if (action >= 0)
            QVERIFY(run.openWith(action));
        else {
            run.window->GetProdList()->GetCards().first()->ClickedShowCommandsButtonSlot();
            inspect(run.window.data());
        }
        QCOMPARE(run.boxes.count(), 0);
        QVERIFY2(problems.isEmpty(), qPrintable(problems.join(QLatin1Char('\n'))));
    }

    // Normal, highlighted and disabled rows of every drop-down can be read (WCAG AA, 4.5:1).
    void popupContrast_data()
    {
        QTest::addColumn<int>("action"); // the dialog that holds the combo; -1: the window's filter
        QTest::newRow("dataset filter") << -1;
        QTest::newRow("cycle choice") << 0;
        QTest::newRow("language") << 3;
    }

    void popupContrast()
    {
        QFETCH(int, action);
        Application::setLanguage(QStringLiteral("en_US"));
        SampleRun run;
        QStringList problems;
        const auto measure = [&](QComboBox* combo) {
            // Rows enough for all three kinds: the first highlighted, the second plain, one disabled.
            while (combo->count() < 2)
                combo->addItem(QStringLiteral("Another choice %1").arg(combo->count()));
            combo->addItem(QStringLiteral("A choice not open now"));
            auto* model = qobject_cast<QStandardItemModel*>(combo->model());
            QVERIFY(model);
            model->item(combo->count() - 1)->setEnabled(false);
            combo->showPopup();
            QAbstractItemView* view = combo->view();
            QTRY_VERIFY(view->isVisible());
            view->setCurrentIndex(model->index(0, 0));
            settle();
            const QImage image = view->viewport()->grab().toImage();
            const struct
            {
                const char* kind;
                int row;
            } rows[] = {{"highlighted", 0}, {"normal", 1}, {"disabled", combo->count() - 1}};
            for (const auto& r : rows) {
                const QRect rect = view->visualRect(model->index(r.row, 0)).intersected(image.rect());
                const double ratio = rowContrast(image, rect);
                if (ratio < 4.5)
                    problems << QStringLiteral("%1 row: %2:1").arg(QLatin1String(r.kind)).arg(ratio, 0, 'f', 2);
            }
            combo->hidePopup();
        };
        QVERIFY(run.serve(false) && run.open());
        if (action < 0) {
            measure(run.window->GetFilter());
        } else {
            run.driver.then([&](QDialog* d) {
                if (auto* update = qobject_cast<dlgUpdateDatasetVersion*>(d))
                    measure(update->GetVersionCombo());
                else if (auto* settings = qobject_cast<DlgVLSettings*>(d))
                    measure(settings->GetLanguageCombo());
            });
            QVERIFY(run.openWith(action));
        }
        QVERIFY2(problems.isEmpty(), qPrintable(problems.join(QLatin1Char('\n'))));
    }

    void everyWayOutStopsOnce_data()
    {
        QTest::addColumn<QString>("way");
        QTest::addColumn<bool>("ok");
        QTest::newRow("Ok") << "ok" << true;
        QTest::newRow("Cancel") << "cancel" << false;
        QTest::newRow("close button") << "closebutton" << false;
        QTest::newRow("Escape") << "escape" << false;
        QTest::newRow("window manager") << "wm" << false;
        QTest::newRow("caller's done()") << "done" << true;
    }

    void everyWayOutStopsOnce()
    {
        QFETCH(QString, way);
        QFETCH(bool, ok);
        DialogDriver driver;
        CountingDlg dialog;
        dialog.Init(nullptr, QStringLiteral("Ways"));
        QList<bool> stopsWhileOpen;
        for (int opening = 1; opening <= 2; ++opening) {
            driver.then([&](QDialog*) {
                stopsWhileOpen << !dialog.stops.isEmpty();
                if (way == "ok")
                    QTest::mouseClick(dialog.GetOkButton(), Qt::LeftButton);
                else if (way == "cancel")
                    QTest::mouseClick(dialog.GetCancelButton(), Qt::LeftButton);
                else if (way == "closebutton")
                    QTest::mouseClick(dialog.GetCloseButton(), Qt::LeftButton, Qt::NoModifier,
                                      dialog.GetCloseButton()->rect().center());
                else if (way == "escape")
                    QTest::keyClick(&dialog, Qt::Key_Escape);
                else if (way == "wm")
                    dialog.close();
                else
                    dialog.done(QDialog::Accepted);
                // A second request to close the same opening stops nothing more.
                dialog.close();
            });
            dialog.stops.clear();
            const int result = CDialogRoute::Exec(&dialog);
            QVERIFY(!dialog.isVisible());
            QCOMPARE(dialog.stops, QList<bool>{ok});
            QCOMPARE(result, ok ? int(QDialog::Accepted) : int(QDialog::Rejected));
        }
        QCOMPARE(driver.count(), 2);
        QCOMPARE(stopsWhileOpen, (QList<bool>{false, false}));
    }

    void foldPaneGivesBackItsHeight()
    {
        CountingDlg dialog;
        dialog.Init(nullptr, QStringLiteral("Fold"));
        auto* pane = new VlFoldPane(&dialog);
        pane->SetCaptions(QStringLiteral("Result"), QStringLiteral("Result"));
        dialog.GetContentLayout()->addWidget(pane->GetShowButton(), 0, 0);
        dialog.GetContentLayout()->addWidget(pane->GetHideButton(), 0, 0);
        dialog.GetContentLayout()->addWidget(pane->GetPane(), 1, 0);
        connect(pane, &VlFoldPane::SignalOpening, [pane] { pane->SetText(QStringLiteral(" + Alpha GNS\r\n")); });
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        const int closedHeight = dialog.height();
        const int width = dialog.width();

        for (int round = 0; round < 2; ++round) {
            QTest::mouseClick(pane->GetShowButton(), Qt::LeftButton);
            QVERIFY(pane->IsOpen() && pane->GetPane()->isVisible() && pane->GetHideButton()->isVisible());
            QVERIFY(!pane->GetShowButton()->isVisible());
            QCOMPARE(pane->GetPane()->text(), QString(" + Alpha GNS\r\n"));
            QCOMPARE(dialog.size(), QSize(width, closedHeight + round * 2 + VlFoldPane::kPaneHeight + 2));

            QTest::mouseClick(pane->GetHideButton(), Qt::LeftButton);
            QVERIFY(!pane->IsOpen() && !pane->GetPane()->isVisible() && pane->GetShowButton()->isVisible());
            QVERIFY(pane->GetPane()->text().isEmpty());
            // The two pixels of each opening stay, as the dialogs have always done.
            QCOMPARE(dialog.size(), QSize(width, closedHeight + (round + 1) * 2));
        }
    }

    // A language chosen in the open settings dialog re-lays the dialog and the window at once: no
    // text is cut and the filter keeps clear of its caption. The next run starts in it, and with the
    // automatic checks ticked (on the box itself: a wide check box reacts only to its box and text).
    void settingsSurviveTheRun()
    {
        SampleRun run;
        QVERIFY(run.open());
        QStringList items, problems;
        QString selected;
        run.driver.then([&](QDialog* dialog) {
            auto* settings = qobject_cast<DlgVLSettings*>(dialog);
            QVERIFY(settings && settings->isModal());
            QCOMPARE(settings->parentWidget(), run.window.data());
            VlBigComboBox* combo = settings->GetLanguageCombo();
            for (int i = 0; i < combo->count(); ++i)
                items << combo->itemText(i);
            selected = combo->currentData().toString();
            for (const QString language : {"de_DE", "en_US", "de_DE"}) {
                combo->setCurrentIndex(combo->findData(language));
                settle(); // the language change reaches every window as a posted event
                QCOMPARE(Application::GetLanguage(), language);
                QCOMPARE(settings->GetBackupPanel()->findChildren<QPushButton*>().at(0)->text(),
                         language == "de_DE" ? QString("Archiv &speichern") : QString("&Save archive"));
                for (const QString& cut : LayoutCheck::CutTexts(settings) + LayoutCheck::CutTexts(run.window.data()))
                    problems << language + QStringLiteral(": ") + cut;
                QWidget* filter = run.window->GetFilter();
                QWidget* caption = run.window->GetFilterCaption();
                const QRect filterRect(filter->mapTo(run.window.data(), QPoint()), filter->size());
                const QRect captionRect(caption->mapTo(run.window.data(), QPoint()), caption->size());
                if (filterRect.intersects(captionRect) || filter->width() < filter->minimumSizeHint().width())
                    problems << language + QStringLiteral(": the filter is squeezed");
            }
            QVERIFY(!settings->GetQuillmarkAutoUpdate()->isChecked() &&
                    !settings->GetDatasetsAutoUpdate()->isChecked());
            UserInput::tick(settings->GetQuillmarkAutoUpdate());
            QTest::mouseClick(settings->GetOkButton(), Qt::LeftButton);
        });
        run.click(3);
        QCOMPARE(run.driver.titles(), QStringList{"Settings"});
        QVERIFY2(problems.isEmpty(), qPrintable(problems.join(QLatin1Char('\n'))));
        items.sort();
        // Each language is named in itself.
        QCOMPARE(items, (QStringList{"Deutsch (Deutschland)", "English (United States)"}));
        QCOMPARE(selected, QString("en_US"));

        // The next run reads the choices back from the settings file.
        const auto saved = [&](const QByteArray& app, const QByteArray& datasets) {
            run.close();
            const QByteArray file = run.app.readFile(QStringLiteral("bin/prop_ini.xml"));
            QVERIFY2(file.contains("<QuillmarkAutoUpdate>" + app + "</") &&
                         file.contains("<DSAutoUpdate>" + datasets + "</"),
                     file.constData());
        };
        saved("1", "0");
        Application::setLanguage(QStringLiteral("en_US"));
        QVERIFY(run.open());
        QCOMPARE(Application::GetLanguage(), QString("de_DE"));
        QCOMPARE(caption(run.window->GetActionButtons().at(4)), QString("Hilfe"));
        QString preselected;
        run.driver.then([&](QDialog* dialog) {
            auto* settings = static_cast<DlgVLSettings*>(dialog);
            preselected = settings->GetLanguageCombo()->currentData().toString();
            QVERIFY(settings->GetQuillmarkAutoUpdate()->isChecked() && !settings->GetDatasetsAutoUpdate()->isChecked());
            UserInput::tick(settings->GetQuillmarkAutoUpdate());
            UserInput::tick(settings->GetDatasetsAutoUpdate());
            QTest::mouseClick(settings->GetOkButton(), Qt::LeftButton);
        });
        run.click(3);
        QCOMPARE(preselected, QString("de_DE"));
        saved("0", "1");
        QCOMPARE(run.boxes.count(), 0);
    }

    // The datasets' button asks the server, and its dialog follows even when the server failed (the
    // run it starts is the Update button's, whose dialog TestDatasetDialogs drives).
    void datasetRunAsksTheServer()
    {
        SampleRun run;
        QVERIFY(run.serve(false));
        run.server.failNext(100, TestServer::Fault::ServerError);
        QVERIFY(run.open());
        QCOMPARE(run.server.requestCount(), 0);

        run.driver.then([&](QDialog* dialog) {
            auto* settings = static_cast<DlgVLSettings*>(dialog);
            QSignalSpy searched(run.window->GetDataModel()->GetDSVersion(),
                                &CDSVersion::SignalCheckHighVersionFinished);
            QTest::mouseClick(settings->GetDatasetsRunButton(), Qt::LeftButton);
            QVERIFY(searched.count() > 0 || searched.wait(20000));
            QCOMPARE(run.server.requests().value(0).path, QString("/quillmark/versionList.txt"));
            QVERIFY(settings->isVisible());
        });
        run.click(3);
        QCOMPARE(run.driver.titles(), (QStringList{"Settings", "Update navigation data"}));
    }

    void closingStopsRunningBackupArchive()
    {
        MessageBoxSpy boxes;
        TempAppDir app;
        QTemporaryDir work;
        CDataModel model;
        CDSVersion* engine = model.GetDSVersion();
        engine->Init("1.0");
        QVERIFY(writeFile(engine->GetCycleDirectory() + "/versionList.txt", "Revision: 2\nAIRAC 1802\n"));
        writeRandomTree(engine->GetCycleDirectory(), 5, 3);

        // A zip that writes part of its archive beside the target, as the real one does, then hangs.
        ToolPath tools;
        const QString pidFile = work.path() + "/zip.pid";
        QVERIFY(tools.addScript("zip", "#!/bin/sh\nprintf 'PK partial' > \"$(dirname \"$2\")/zi000001\"\necho $$ > \"" +
                                           pidFile.toUtf8() + "\"\nexec sleep 60\n"));
        const QString archive = work.path() + "/Quillmark_1802_2.zip";
        const auto previousHook =
            wdgBackupLocal::setFileDialogHook([&](QWidget*, const wdgBackupLocal::FileRequest&) { return archive; });

        QSignalSpy finished(engine, &CDSVersion::SignalZipBackProcessFinished);
        QScopedPointer<QDialog> dialog(CDialogFactory::Build(EDlgPurpose::Settings, &model, "Settings", nullptr));
        DialogDriver driver;
        QString pid;
        driver.then([&](QDialog*) {
            auto* settings = static_cast<DlgVLSettings*>(dialog.data());
            QPushButton* create = settings->GetBackupPanel()->GetCreateButton();
            QTest::mouseClick(create, Qt::LeftButton);
            QTRY_VERIFY(QFileInfo(pidFile).size() > 0);
            pid = QString::fromUtf8(readFile(pidFile)).trimmed();
            QVERIFY(QFileInfo::exists("/proc/" + pid));
            QTest::mouseClick(settings->GetCloseButton(), Qt::LeftButton, Qt::NoModifier,
                              settings->GetCloseButton()->rect().center());
        });
        CDialogRoute::Exec(dialog.data());
        wdgBackupLocal::setFileDialogHook(previousHook);

        QVERIFY(!pid.isEmpty());
        QTRY_VERIFY(!QFileInfo::exists("/proc/" + pid));
        QVERIFY(!QFileInfo::exists(archive));
        QVERIFY(!finished.wait(300));
        QCOMPARE(QDir::currentPath(), QDir(Application::st_strAppPath).absolutePath());
        QVERIFY(app.readFile("log/log_dsupdate.txt").contains("StopZipBackProcess"));
        QCOMPARE(boxes.count(), 0);
    }

    void restoreDefaultsRestartsInSameProcess()
    {
        TempAppDir app;
        SampleCatalogue catalogue = SampleCatalogue::Small();
        QVERIFY(catalogue.WriteTo(app.path()));
        // The user's own choices: German, and one more product selected than the catalogue has.
        QVERIFY(app.writeFile("bin/prop_ini.xml", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<data>\n<App>"
                                                  "<Language>de_DE</Language></App>\n<products><name>Alpha GNS</name>"
                                                  "<update>true</update></products>\n</data>\n"));
        QProcess probe;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("LC_ALL", "C");
        env.insert("QT_QPA_PLATFORM", "offscreen");
        probe.setProcessEnvironment(env);
        probe.start(QCoreApplication::applicationDirPath() + "/probe_restore_defaults", {app.path()});
        QVERIFY(probe.waitForFinished(60000));
        const QString out = QString::fromLocal8Bit(probe.readAllStandardOutput());
        QCOMPARE(probe.exitCode(), 0);
        const QStringList lines = out.split('\n', Qt::SkipEmptyParts);
        const QStringList expected{
            "pass 0 pid P language de_DE Alpha GNS selected 1",
            "restore enabled 1",
            // Asked first, in the user's language.
            "box Quillmark-Standardeinstellungen wiederherstellen: Standardeinstellungen wiederherstellen und "
            "Quillmark neu starten?",
            "restore enabled 0 settings file 0",
            "pass 1 pid P language en_US Alpha GNS selected 0",
            "restore enabled 1",
            "loop returned 0",
        };
        QStringList normalised;
        for (QString line : lines)
            if (QRegularExpression("^(pass|restore|loop|box) ").match(line).hasMatch())
                normalised << line.replace(QRegularExpression(" pid \\d+"), " pid P");
        QVERIFY2(normalised == expected, qPrintable(normalised.join(QLatin1Char('|'))));
        const QStringList passes = lines.filter(QRegularExpression("^pass "));
        QCOMPARE(passes.size(), 2);
        QCOMPARE(passes.at(0).section(' ', 3, 3), passes.at(1).section(' ', 3, 3));
    }

    void helpDialogLinksTheBuiltManual()
    {
        SampleRun run;
        // A log of an older version, whose unzip lines still named the password.
        QByteArray old;
        for (int i = 1; i <= 250; ++i)
            old += "\r\n10:00:00  --  line " + QByteArray::number(i) + (i == 240 ? " unzip -o -P pralvek" : "");
        QVERIFY(run.app.writeFile("log/log_dsupdate.txt", old));
        QVERIFY(run.open());
        QString link, about, status;
        QList<QUrl> opened;
        QDesktopServices::setUrlHandler("file", this, "openedUrl");
        run.driver.then([&](QDialog* dialog) {
            auto* help = qobject_cast<DlgHelp*>(dialog);
            QVERIFY(help && help->isModal());
            QCOMPARE(help->parentWidget(), run.window.data());
            link = help->GetManualLink()->text();
            about = help->GetAboutText()->text();
            // This program folder has no manual: the user is told where it was looked for.
            help->OpenManualSlot();
            UserInput::click(help->GetLogFolderButton());
            opened = m_opened;
            UserInput::click(help->GetDiagnosticsButton());
            status = help->GetStatusLabel()->text();
        });
        run.click(4);
        QDesktopServices::unsetUrlHandler("file");
        QCOMPARE(run.driver.titles(), QStringList{"About Quillmark"});
        QVERIFY2(link.contains("href=\"" + QUrl::fromLocalFile(run.app.path() + "/Manual.pdf").toString() + "\""),
                 qPrintable(link));
        QVERIFY(link.contains(">Open manual<"));
        const QString server = run.window->GetDataModel()->GetServer();
        QVERIFY(about.contains(server));
        // The sample catalogue names no key, and the user is told that downloads go unchecked.
        QVERIFY(about.contains("Downloads: not verified, the catalogue names no public key"));
        for (const char* path : {"/bin/prop_ini.xml", "/log", "/downloads"})
            QVERIFY2(about.contains(run.app.path() + path), qPrintable(about));
        QCOMPARE(opened, QList<QUrl>{QUrl::fromLocalFile(run.app.path() + "/log")});
        QCOMPARE(status, QString("Diagnostics copied to the clipboard."));
        const QString copied = QGuiApplication::clipboard()->text();
        for (const QString& part :
             QStringList{"Quillmark 1.2.3\n", "Server: " + server + "\n",
                         "User data folder: " + run.app.path() + " (portable)\n",
                         "== log_datamodel.txt (last 200 lines) ==\n", "line 100\n", "line 240 unzip -o -P ****\n"})
            QVERIFY2(copied.contains(part), qPrintable(part + " not in:\n" + copied));
        QVERIFY(!copied.contains("line 40\n") && !copied.contains("pralvek"));
        QCOMPARE(run.boxes.count(), 1);
        QCOMPARE(run.boxes.boxes().at(0).text, "The manual " + run.app.path() + "/Manual.pdf was not found.");

        // The build puts the manual next to the program, which the help dialog looks beside.
        const QString built = QCoreApplication::applicationDirPath() + "/../Manual.pdf";
        QVERIFY2(readFile(built).startsWith("%PDF-"), qPrintable(built));

        // A purpose the user interface builds nothing for is refused, not crashed on.
        const CDialogRoute::Builder builder =
            CDialogRoute::SetBuilder([](EDlgPurpose, CDataModel*, const QString&, QWidget*) { return nullptr; });
        const int refused = CDialogRoute::Run(EDlgPurpose::Help, run.window->GetDataModel(), QStringLiteral("x"));
        CDialogRoute::SetBuilder(builder);
        QCOMPARE(refused, -1);
    }
};

QTEST_MAIN(TestDialogs)
#include "TestDialogs.moc"
