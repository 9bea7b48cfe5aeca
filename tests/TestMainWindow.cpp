#include "app/Application.h"
#include "model/CCategory.h"
#include "model/CDataModel.h"
#include "model/CProduct.h"
#include "model/CSimulatorSearch.h"
#include "support/DatasetFiles.h"
#include "support/MessageBoxSpy.h"
#include "support/SampleCatalogue.h"
#include "support/TempAppDir.h"
#include "support/UserInput.h"
#include "ui/CvlActionBtn.h"
#include "ui/CvlFilterCmb.h"
#include "ui/DlgBase.h"
#include "ui/QuillmarkMainWindow.h"
#include "ui/SystemButton.h"
#include "ui/VlActionLabel.h"
#include "ui/VlAppPushButton.h"
#include "ui/VlCatLabel.h"
#include "ui/VlCatPropsLabel.h"
#include "ui/VlCategoryTitleLabel.h"
#include "ui/VlCycleDates.h"
#include "ui/VlDirChooser.h"
#include "ui/VlProdLabel.h"
#include "ui/VlProdListLabel.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QScopedPointer>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSet>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>
#include <algorithm>

// Answers every text with a marked version, so that a caption left untranslated stands out.
using UserInput::caption;

class MarkingTranslator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char*, const char* source, const char* = nullptr, int = -1) const override
    {
        return QStringLiteral("~") + QString::fromUtf8(source);
    }
};

// The frameless main window: its chrome, category column, filter, languages, product cards and the
// simulator folders it finds, on a small catalogue in a temporary program folder.
class TestMainWindow : public QObject
{
    Q_OBJECT

    QScopedPointer<TempAppDir> m_app;
    QScopedPointer<QuillmarkMainWindow> m_window;
    QScopedPointer<MessageBoxSpy> m_boxes;
    QTemporaryDir m_root; // "home" is the home folder, "Applications" a usual place beside it

    QString at(const QString& relative) const { return m_root.path() + QLatin1Char('/') + relative; }

    // Delivered to the widget under the point, as the platform would; labels pass it on to the window.
    static void sendMouse(QWidget* window, QEvent::Type type, const QPoint& local, Qt::MouseButtons buttons)
    {
        QWidget* target = window->childAt(local);
        if (!target)
            target = window;
        const QPoint global = window->mapToGlobal(local);
        QMouseEvent event(type, target->mapFromGlobal(global), global,
                          type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, buttons, Qt::NoModifier);
        QApplication::sendEvent(target, &event);
    }

    QString sim10() const { return m_app->filePath(QStringLiteral("sims/xp10")); }
    QString sim11() const { return m_app->filePath(QStringLiteral("sims/xp11")); }

    // A new window over the catalogue, both X-Plane categories in their simulator folders unless
    // `simulators` is off; on a first start there are no settings yet.
    void openWindow(SampleCatalogue catalogue, bool simulators = true, bool firstStart = false)
    {
        m_window.reset();
        if (simulators) {
            catalogue.categoryPaths.insert(QStringLiteral("X-Plane 10"), sim10());
            catalogue.categoryPaths.insert(QStringLiteral("X-Plane 11"), sim11());
        }
        QVERIFY(catalogue.WriteTo(m_app->path()));
        if (firstStart)
            QVERIFY(QFile::remove(m_app->filePath(QStringLiteral("bin/prop_ini.xml"))));
        m_window.reset(new QuillmarkMainWindow);
        m_window->move(30, 20);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.data()));
    }

    // A catalogue as shipped: no "All" or "Selected" category, long product and dataset names.
    void rebuildWithLongNames()
    {
        SampleCatalogue catalogue = SampleCatalogue::Small();
        catalogue.categories = QStringList{QStringLiteral("X-Plane 10"), QStringLiteral("X-Plane 11")};
        catalogue.datasets << QStringLiteral("orbital_route_planner");
        catalogue.products.prepend(
            {QStringLiteral("Kestrel Avionics KX-900 Flight Management System"),
             QStringLiteral("orbital_route_planner"),
             QStringLiteral("$SimPath\\Aircraft\\Kestrel Avionics KX-900\\plugins\\navigation data"),
             QStringLiteral("X-Plane 11"), true});
        // Its cycle expired, over a year's end: the longest dates a card shows.
        VlCycleDates::SetToday(QDate(2026, 3, 3));
        QVERIFY(m_app->writeFile(
            QStringLiteral("sims/xp11/Aircraft/Kestrel Avionics KX-900/plugins/navigation data/cycle_info.txt"),
            "AIRAC cycle    : 2513\r\nRevision       : 1\r\n"));
        openWindow(catalogue);
    }

    // Each changed text re-lays out one level of widgets per pass of posted events.
    static void settle()
    {
        for (int i = 0; i < 30; ++i)
            QApplication::processEvents();
    }

    QRect inWindow(const QWidget* w) const { return QRect(w->mapTo(m_window.data(), QPoint(0, 0)), w->size()); }

    // Every part shows all it has to show: not squeezed below its preferred size, inside the area
    // (null: one that scrolls), and clear of the other parts.
    void checkParts(const QList<QWidget*>& parts, const QRect& area, const QString& what, QStringList& problems) const
    {
        for (int i = 0; i < parts.size(); ++i) {
            const QWidget* w = parts.at(i);
            const QString part = what + QStringLiteral(": ") + w->metaObject()->className() + QLatin1Char(' ') +
                                 w->property("text").toString();
            if (w->width() < w->sizeHint().width() || w->height() < w->sizeHint().height())
                problems << part + QStringLiteral(" squeezed");
            if (!area.isNull() && !area.contains(inWindow(w)))
                problems << part + QStringLiteral(" beyond its area");
            for (int j = 0; j < i; ++j)
                if (inWindow(parts.at(j)).intersects(inWindow(w)))
                    problems << part + QStringLiteral(" over another part");
        }
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

    // The cards fill the list's width and nothing of the window lies outside it.
    void checkLayoutFits()
    {
        settle();
        QScrollArea* scroll = m_window->GetProdList()->GetScrollArea();
        for (VlProdLabel* c : m_window->GetProdList()->GetCards())
            QCOMPARE(c->width(), scroll->viewport()->width());
        QVERIFY(m_window->GetProdList()->geometry().right() < m_window->width());
        QVERIFY(inWindow(m_window->GetCatProps()).bottom() < m_window->height());
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_root.isValid());
        // The window searches the home folder; never the real one of whoever runs the tests.
        qputenv("HOME", at(QStringLiteral("home")).toUtf8());
        Application::registerResources();
        Application::loadTranslations(QStringLiteral(":/lang"));
        Application::setLanguage(QStringLiteral("en_US"));
    }

    void init()
    {
        m_boxes.reset(new MessageBoxSpy);
        m_app.reset(new TempAppDir);
        QVERIFY(SampleCatalogue::MakeSimFolder(sim10()));
        QVERIFY(SampleCatalogue::MakeSimFolder(sim11()));
        openWindow(SampleCatalogue::Small());
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
        QDir(m_root.path()).removeRecursively();
        QDir().mkpath(m_root.path());
    }

    // The window drags by its header band (where the mouse is), a dialog by its title band (where
    // the press was); nothing moves without the left button held.
    void dragsByTheBandOnly_data()
    {
        QTest::addColumn<bool>("dialog");
        QTest::addColumn<int>("y");
        QTest::addColumn<bool>("moves");
        QTest::newRow("window: top") << false << 5 << true;
        QTest::newRow("window: inside header") << false << 60 << true;
        QTest::newRow("window: last header row") << false << 109 << true;
        QTest::newRow("window: first row below") << false << 110 << false;
        QTest::newRow("window: product area") << false << 300 << false;
        QTest::newRow("dialog: top edge") << true << 0 << true;
        QTest::newRow("dialog: last row of the band") << true << 39 << true;
        QTest::newRow("dialog: first row below the band") << true << 40 << false;
        QTest::newRow("dialog: among the controls") << true << 120 << false;
    }

    void dragsByTheBandOnly()
    {
        QFETCH(bool, dialog);
        QFETCH(int, y);
        QFETCH(bool, moves);

        QCOMPARE(m_window->pos(), QPoint(30, 20)); // the offscreen platform keeps positions
        DlgBase box(m_window.data());
        QWidget* target = m_window.data();
        if (dialog) {
            box.Init(nullptr, QStringLiteral("Drag"));
            box.show();
            QVERIFY(QTest::qWaitForWindowExposed(&box));
            QCOMPARE(box.pos(),
                     m_window->mapToGlobal(m_window->rect().center()) - QPoint(box.width() / 2, box.height() / 2));
            target = &box;
        }
        // Left of the filter, right of the category column: only labels lie there.
        const QPoint press(150, y), by = dialog ? QPoint(35, 25) : QPoint(25, 0);
        const QPoint before = target->pos();
        sendMouse(target, QEvent::MouseButtonPress, press, Qt::LeftButton);
        // The move goes to the window itself, wherever the mouse now is.
        const QPoint global = target->mapToGlobal(press) + by;
        QMouseEvent move(QEvent::MouseMove, target->mapFromGlobal(global), global, Qt::NoButton, Qt::LeftButton,
                         Qt::NoModifier);
        QApplication::sendEvent(target, &move);
        sendMouse(target, QEvent::MouseButtonRelease, target->mapFromGlobal(global), Qt::NoButton);
        QCOMPARE(target->pos(), moves ? before + by : before);

        const QPoint now = target->pos();
        sendMouse(target, QEvent::MouseMove, QPoint(150, 20), Qt::NoButton);
        QCOMPARE(target->pos(), now);
    }

    void windowButtons()
    {
        const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
        QCOMPARE(m_window->minimumSize(), QSize(qMin(area.width(), 930), qMin(area.height(), 840)));
        QVERIFY(m_window->width() >= qMin(area.width(), 930) && m_window->height() >= qMin(area.height(), 766));
        const QRect normal = m_window->geometry();
        SystemButton* maxi = m_window->GetMaxiButton();
        SystemButton* norm = m_window->GetNormButton();
        QVERIFY(maxi->isVisible() && !norm->isVisible());

        QTest::mouseClick(maxi, Qt::LeftButton);
        QCOMPARE(m_window->geometry(), area);
        QVERIFY(!maxi->isVisible() && norm->isVisible());
        checkLayoutFits();

        QTest::mouseClick(norm, Qt::LeftButton);
        QCOMPARE(m_window->geometry(), normal);
        QVERIFY(maxi->isVisible() && !norm->isVisible());
        checkLayoutFits();

        QTest::mouseClick(m_window->GetMiniButton(), Qt::LeftButton);
        QTRY_VERIFY(m_window->isMinimized());
        m_window->showNormal();

        QTest::mouseClick(m_window->GetCloseButton(), Qt::LeftButton);
        QTRY_VERIFY(!m_window->isVisible());
    }

    void everyCaptionFollowsLanguage()
    {
        MarkingTranslator marking;
        QCoreApplication::installTranslator(&marking);
        QApplication::processEvents();

        QStringList plain; // visible texts that did not change
        auto check = [&](const QString& what, const QString& text) {
            if (!text.startsWith(QLatin1Char('~')))
                plain << what + QStringLiteral(": ") + text;
        };
        check(QStringLiteral("filter caption"), m_window->GetFilterCaption()->text());
        check(QStringLiteral("filter entry"), m_window->GetFilter()->itemText(0));
        check(QStringLiteral("status"), m_window->GetStatusLabel()->text());
        for (QWidget* button : m_window->GetActionButtons())
            check(QStringLiteral("action"), caption(button));
        for (VlCatLabel* button : m_window->GetCategoryButtons())
            check(QStringLiteral("category"), button->GetTitle());
        VlProdLabel* card = m_window->GetProdList()->GetCards().first();
        check(QStringLiteral("select"), card->findChild<QCheckBox*>()->text());
        for (QPushButton* b : card->findChildren<QPushButton*>())
            check(QStringLiteral("card button"), b->text());
        for (QLabel* label : m_window->GetCatProps()->findChildren<QLabel*>())
            if (!label->text().isEmpty())
                check(QStringLiteral("category panel"), label->text());
        QVERIFY(card->GetCycleText().startsWith(QStringLiteral("~- installed")));

        // The filter passes on the dataset, "All" whatever the language shows, and leaves the window's
        // size alone.
        const QSize before = m_window->size();
        chooseDataset(QStringLiteral("gns430"));
        QCOMPARE(m_window->GetProdList()->GetDatasetFilter(), QStringLiteral("gns430"));
        chooseDataset(QStringLiteral("All"));
        QCOMPARE(m_window->GetProdList()->GetDatasetFilter(), QStringLiteral("All"));
        QCOMPARE(m_window->size(), before);

        QCoreApplication::removeTranslator(&marking);
        QApplication::processEvents();
        QCOMPARE(m_window->GetFilterCaption()->text(), QStringLiteral("Dataset filter"));
        QVERIFY2(plain.isEmpty(), qPrintable(plain.join(QStringLiteral("; "))));
    }

    // clang-format off
    void nothingCutAtScreenSizes_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QString>("language");
        for (const QSize& size : {QSize(800, 600), QSize(900, 700), QSize(1000, 840), QSize(1920, 1080)})
            for (const char* language : {"en_US", "de_DE"})
                QTest::newRow(qPrintable(QStringLiteral("%1x%2 %3").arg(size.width()).arg(size.height()).arg(language)))
                    << size << QString::fromLatin1(language);
    }
    // clang-format on

    void nothingCutAtScreenSizes()
    {
        QFETCH(QSize, size);
        QFETCH(QString, language);
        rebuildWithLongNames();
        // Every card with its commands open: the widest a card's right column gets.
        for (VlProdLabel* card : m_window->GetProdList()->GetCards())
            card->ClickedShowCommandsButtonSlot();
        Application::setLanguage(language);
        m_window->setMinimumSize(0, 0); // the test screen may be smaller than the sizes checked
        m_window->resize(size);
        settle();
        QCOMPARE(m_window->size(), size);

        QStringList problems;
        // Header: the action buttons, the filter and its caption, a margin kept right of them.
        CvlFilterCmb* filter = m_window->GetFilter();
        checkParts(m_window->GetActionButtons() + QList<QWidget*>{filter, m_window->GetFilterCaption()},
                   m_window->rect().adjusted(0, 0, -15, 0), QStringLiteral("header"), problems);
        int longest = 0;
        for (int i = 0; i < filter->count(); ++i)
            longest = qMax(longest, filter->fontMetrics().horizontalAdvance(filter->itemText(i)));
        if (filter->width() < longest + 20)
            problems << QStringLiteral("filter narrower than its longest dataset name");

        // Category column: every button and its title and picture.
        QList<QWidget*> categories;
        for (VlCatLabel* button : m_window->GetCategoryButtons()) {
            categories << button;
            QList<QWidget*> parts;
            for (QLabel* label : button->findChildren<QLabel*>())
                if (label->isVisibleTo(button) &&
                    (!label->text().isEmpty() || !label->pixmap(Qt::ReturnByValue).isNull()))
                    parts << label;
            checkParts(parts, QRect(), button->GetName(), problems);
        }
        checkParts(categories, QRect(), QStringLiteral("categories"), problems);

        // Cards: name, category, dataset, cycle and buttons inside the card; the path shows its start.
        for (VlProdLabel* card : m_window->GetProdList()->GetCards()) {
            if (!card->GetVisible())
                continue;
            const QString name = card->GetProduct()->GetName();
            QList<QWidget*> texts;
            for (QLabel* label : card->findChildren<QLabel*>())
                if (label->isVisibleTo(card) && !label->text().isEmpty())
                    texts << label;
            for (QAbstractButton* b : card->findChildren<QAbstractButton*>())
                if (b->isVisibleTo(card))
                    texts << b;
            checkParts(texts, inWindow(card), name, problems);
            if (card->findChild<QLineEdit*>()->cursorPosition() != 0)
                problems << name + QStringLiteral(": path scrolled away from its start");
        }
        problems.removeDuplicates();
        QVERIFY2(problems.isEmpty(), qPrintable(problems.join(QStringLiteral("\n"))));
    }

    // Every control can be reached with Tab and pressed with Space, and the main commands have keys
    // of their own that the tooltips name.
    void keyboardReachesAndPresses_data()
    {
        QTest::addColumn<QString>("target");    // action N, category NAME, card command, close
        QTest::addColumn<QKeySequence>("keys"); // the command's own keys; empty: none
        QTest::newRow("update") << "action 0" << QKeySequence(Qt::CTRL | Qt::Key_U);
        QTest::newRow("reset") << "action 1" << QKeySequence(Qt::CTRL | Qt::Key_R);
        QTest::newRow("remove backup") << "action 2" << QKeySequence();
        QTest::newRow("settings") << "action 3" << QKeySequence(Qt::CTRL | Qt::Key_Comma);
        QTest::newRow("help") << "action 4" << QKeySequence(Qt::Key_F1);
        QTest::newRow("category x-plane 10") << "category X-Plane 10" << QKeySequence();
        QTest::newRow("category selected, not a catalogue category") << "category Selected" << QKeySequence();
        QTest::newRow("a card's own reset") << "card command" << QKeySequence();
        QTest::newRow("close") << "close" << QKeySequence(Qt::CTRL | Qt::Key_Q);
    }

    void keyboardReachesAndPresses()
    {
        QFETCH(QString, target);
        QFETCH(QKeySequence, keys);
        rebuildWithLongNames();
        m_window->resize(800, 600);
        QApplication::setActiveWindow(m_window.data());
        QVERIFY(QTest::qWaitForWindowActive(m_window.data()));
        VlProdLabel* card = m_window->GetProdList()->GetCards().first();
        card->ClickedShowCommandsButtonSlot();
        QWidget* widget = nullptr;
        if (target.startsWith("action "))
            widget = m_window->GetActionButtons().at(target.mid(7).toInt());
        else if (target.startsWith("category "))
            widget = m_window->GetCategoryButton(target.mid(9));
        else if (target == "card command")
            widget = card->GetResetButton();
        else
            widget = m_window->GetCloseButton();
        // The buttons open modal dialogs or close the window; here it is enough that they are pressed.
        QVERIFY(disconnect(widget, SIGNAL(clicked()), nullptr, nullptr));

        QSet<QWidget*> reached;
        for (int i = 0; i < 300 && QApplication::focusWidget() != widget; ++i) {
            QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : m_window.data(), Qt::Key_Tab);
            reached << QApplication::focusWidget();
        }
        QCOMPARE(QApplication::focusWidget(), widget);
        for (VlCatLabel* disabled : m_window->GetCategoryButtons())
            if (!disabled->isEnabled())
                QVERIFY2(!reached.contains(disabled), qPrintable(disabled->GetName()));

        QSignalSpy pressed(widget, SIGNAL(clicked()));
        QTest::keyClick(widget, Qt::Key_Space);
        QCOMPARE(pressed.size(), 1);
        if (keys.isEmpty())
            return;
        // The keys press it from wherever the keyboard is; its tooltip says which keys.
        m_window->GetFilter()->setFocus();
        if (target == "close") {
            QTest::keySequence(m_window.data(), keys);
            QTRY_VERIFY(!m_window->isVisible());
            return;
        }
        QTest::keySequence(m_window.data(), keys);
        QCOMPARE(pressed.size(), 2);
        QVERIFY2(widget->toolTip().contains(keys.toString(QKeySequence::NativeText)), qPrintable(widget->toolTip()));
    }

    // clang-format off
    void longListBuildsCardsWhereSeen_data()
    {
        QTest::addColumn<QString>("category");
        QTest::addColumn<int>("dataset"); // filter entry
        QTest::newRow("all") << "All" << 0;
        QTest::newRow("one category") << "X-Plane 11" << 0;
        QTest::newRow("one dataset") << "All" << 3;
        QTest::newRow("selected only") << "Selected" << 0;
    }
    // clang-format on

    void longListBuildsCardsWhereSeen()
    {
        QFETCH(QString, category);
        QFETCH(int, dataset);
        const int count = 400;
        const SampleCatalogue catalogue = SampleCatalogue::Generated(count);
        openWindow(catalogue);
        QTest::mouseClick(m_window->GetCategoryButton(category), Qt::LeftButton);
        m_window->GetFilter()->setCurrentIndex(dataset);
        settle();

        VlProdListLabel* list = m_window->GetProdList();
        QVERIFY2(list->GetBuiltCardCount() < 40, qPrintable(QString::number(list->GetBuiltCardCount())));
        QStringList expected; // the products that pass, in catalogue order
        const QString datasetName = dataset == 0 ? QString() : m_window->GetFilter()->itemText(dataset);
        for (int i = 0; i < count; ++i) {
            const SampleCatalogue::Product& p = catalogue.products.at(i);
            if ((category == QLatin1String("All") ||
                 (category == QLatin1String("Selected") ? p.update : p.category == category)) &&
                (datasetName.isEmpty() || p.dataset == datasetName))
                expected << p.name;
        }

        // Wherever the list is scrolled to, the cards there are built and lie edge to edge in order,
        // and the last one ends the list.
        QScrollBar* bar = list->GetScrollArea()->verticalScrollBar();
        QWidget* viewport = list->GetScrollArea()->viewport();
        for (int position : {0, bar->maximum() / 2, bar->maximum()}) {
            bar->setValue(position);
            settle();
            QList<VlProdLabel*> seen;
            for (VlProdLabel* card : list->GetScrollArea()->widget()->findChildren<VlProdLabel*>())
                if (!card->isHidden() && card->geometry().translated(0, -bar->value()).intersects(viewport->rect()))
                    seen << card;
            std::sort(seen.begin(), seen.end(), [](VlProdLabel* a, VlProdLabel* b) { return a->y() < b->y(); });
            QVERIFY(!seen.isEmpty());
            // The viewport is covered from its top to its bottom, or to the end of the list.
            QVERIFY(seen.first()->y() <= bar->value());
            const int first = expected.indexOf(seen.first()->GetProduct()->GetName());
            for (int i = 0; i < seen.size(); ++i) {
                QCOMPARE(seen.at(i)->GetProduct()->GetName(), expected.value(first + i));
                QCOMPARE(seen.at(i)->width(), viewport->width());
                if (i > 0)
                    QCOMPARE(seen.at(i)->y(), seen.at(i - 1)->geometry().bottom() + 1);
            }
            if (position == bar->maximum())
                QCOMPARE(seen.last()->GetProduct()->GetName(), expected.last());
            if (seen.last()->GetProduct()->GetName() == expected.last())
                QCOMPARE(seen.last()->geometry().bottom() + 1, list->GetScrollArea()->widget()->minimumHeight());
        }
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
        const QStringList x10{"Charlie Nav", "Delta GNS"};
        // A catalogue without its own "Selected" category still gets one.
        QTest::newRow("no Selected in the catalogue") << "Selected" << "All" << QStringList{"Delta GNS"}
                                                      << QStringList{"Bravo FMS", "Delta GNS"};
        QTest::newRow("disabled fsx keeps the choice") << "FSX" << "All" << QStringList() << x10;
        QTest::newRow("disabled prepar3d keeps the choice") << "Prepar3D v4" << "All" << QStringList() << x10;
    }
    // clang-format on

    void filterShowsExactCards()
    {
        QFETCH(QString, category);
        QFETCH(QString, dataset);
        QFETCH(QStringList, ticked);
        QFETCH(QStringList, expected);

        if (QByteArray(QTest::currentDataTag()).startsWith("no Selected")) {
            SampleCatalogue catalogue = SampleCatalogue::Small();
            catalogue.categories.removeAll(QStringLiteral("Selected"));
            openWindow(catalogue);
        }
        for (const QString& name : ticked) {
            QVERIFY(card(name));
            QTest::mouseClick(card(name)->findChild<QCheckBox*>(), Qt::LeftButton);
        }
        clickCategory(QStringLiteral("X-Plane 10"));
        clickCategory(category);
        chooseDataset(dataset);
        QCOMPARE(m_window->GetProdList()->GetDatasetFilter(), dataset);
        QCOMPARE(visibleNames(), expected);

        // One category is marked, its panel shows it, and the path row belongs to simulators only.
        VlCatLabel* pressed = m_window->GetCategoryButton(category);
        const QString marked = pressed->isEnabled() ? category : QStringLiteral("X-Plane 10");
        for (VlCatLabel* button : m_window->GetCategoryButtons())
            QCOMPARE(button->IsSelected(), button->GetName() == marked);
        QCOMPARE(m_window->GetProdList()->GetCategoryName(), marked);
        QCOMPARE(m_window->GetCatProps()->GetCategory(), m_window->GetSelectedCategory());
        QCOMPARE(m_window->GetCatProps()->findChild<QLineEdit*>()->isVisible(), marked.startsWith("X-Plane"));
        // A category that cannot be chosen does not look as if it could: a faded title, no hand.
        auto titleColour = [](VlCatLabel* button) {
            return button->findChild<VlCategoryTitleLabel*>()->palette().color(QPalette::WindowText);
        };
        const bool faded = titleColour(pressed).lightness() >
                           titleColour(m_window->GetCategoryButton(QStringLiteral("All"))).lightness() + 60;
        QCOMPARE(faded, !pressed->isEnabled());
        QCOMPARE(pressed->cursor().shape() == Qt::PointingHandCursor, pressed->isEnabled());
    }

    void tickAndSelectionFollowEachOther_data()
    {
        QTest::addColumn<QString>("product");
        QTest::addColumn<int>("clicks");
        QTest::addColumn<bool>("selected");

        QTest::newRow("tick") << "Alpha GNS" << 1 << true;
        QTest::newRow("tick and untick") << "Alpha GNS" << 2 << false;
        QTest::newRow("untick catalogue choice") << "Bravo FMS" << 1 << false;
    }

    void tickAndSelectionFollowEachOther()
    {
        QFETCH(QString, product);
        QFETCH(int, clicks);
        QFETCH(bool, selected);

        QCheckBox* box = card(product)->findChild<QCheckBox*>();
        for (int i = 0; i < clicks; ++i)
            QTest::mouseClick(box, Qt::LeftButton);
        QCOMPARE(card(product)->GetProduct()->GetUpdate(), selected);
        // A selection made elsewhere (settings, install group) ticks the card.
        card(product)->GetProduct()->SetUpdate(!selected);
        QCOMPARE(box->isChecked(), !selected);
        card(product)->GetProduct()->SetUpdate(selected);
        QCOMPARE(box->isChecked(), selected);
    }

    // The installed and backed-up cycles on the card, and when the installed one is in force, on the
    // card and in the counts of "All" and "Selected", with the clock set and in both languages.
    // clang-format off
    void cycleDates_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("cycle"); // installed on Charlie Nav; empty: none
        QTest::addColumn<QString>("backup"); // the backup's cycle; empty: none
        QTest::addColumn<QDate>("today");
        QTest::addColumn<QString>("dates");
        QTest::addColumn<QString>("expired");
        QTest::addColumn<QString>("text"); // empty: not compared

        const QString in2601 = "Installed: cycle 2601, revision 1 · Backup: ";
        QTest::newRow("in force") << "en_US" << "2601" << "" << QDate(2026, 2, 1) << "valid 22 Jan – 18 Feb 2026" << ""
                                  << in2601 + "none";
        QTest::newRow("expired today") << "en_US" << "2601" << "2513" << QDate(2026, 2, 19)
                                       << "valid 22 Jan – 18 Feb 2026" << "expired today"
                                       << in2601 + "cycle 2513, revision 1";
        QTest::newRow("a day ago") << "en_US" << "2601" << "unknown" << QDate(2026, 2, 20)
                                   << "valid 22 Jan – 18 Feb 2026" << "expired 1 day ago" << in2601 + "unknown";
        QTest::newRow("12 days ago") << "en_US" << "2601" << "" << QDate(2026, 3, 3) << "valid 22 Jan – 18 Feb 2026"
                                     << "expired 12 days ago" << "";
        QTest::newRow("over the year's end") << "en_US" << "2513" << "" << QDate(2026, 1, 1)
                                             << "valid 25 Dec 2025 – 21 Jan 2026" << "" << "";
        QTest::newRow("German, in force") << "de_DE" << "2601" << "" << QDate(2026, 2, 1)
                                          << "gültig 22. Jan. – 18. Feb. 2026" << "" << "";
        QTest::newRow("German, expired") << "de_DE" << "2601" << "" << QDate(2026, 3, 3)
                                         << "gültig 22. Jan. – 18. Feb. 2026" << "vor 12 Tagen abgelaufen" << "";
        QTest::newRow("no cycle") << "en_US" << "" << "" << QDate(2026, 3, 3) << "" << ""
                                  << "Installed: none · Backup: none";
    }
    // clang-format on

    void cycleDates()
    {
        QFETCH(QString, language);
        QFETCH(QString, cycle);
        QFETCH(QString, backup);
        QFETCH(QDate, today);
        QFETCH(QString, dates);
        QFETCH(QString, expired);
        QFETCH(QString, text);

        VlCycleDates::SetToday(today);
        Application::setLanguage(language);
        // Charlie Nav: $SimPath\Custom Data of X-Plane 10, dataset xp10nav.
        const auto cycleFile = [](const QString& cycle) {
            return "AIRAC cycle    : " + cycle.toLatin1() +
                   "\r\nRevision       : " + (cycle == QLatin1String("unknown") ? "" : "1") + "\r\n";
        };
        QVERIFY(QDir().mkpath(sim10() + QStringLiteral("/Custom Data/QMK_xp10nav_back")));
        if (!cycle.isEmpty())
            QVERIFY(m_app->writeFile(QStringLiteral("sims/xp10/Custom Data/cycle_info.txt"), cycleFile(cycle)));
        if (!backup.isEmpty())
            QVERIFY(m_app->writeFile(QStringLiteral("sims/xp10/Custom Data/QMK_xp10nav_back/cycle_info.txt"),
                                     cycleFile(backup)));
        VlProdLabel* c = card(QStringLiteral("Charlie Nav"));
        c->GetProduct()->SetInstallState(QMK_STATE_INSTALL_OK);
        if (!text.isEmpty())
            QCOMPARE(c->GetCycleText(), text);
        QCOMPARE(c->GetCycleDatesText(), dates);
        QCOMPARE(c->GetCycleExpiredText(), expired);
        for (QLabel* label : c->findChildren<QLabel*>())
            if (!expired.isEmpty() && label->text() == expired)
                QCOMPARE(label->palette().color(QPalette::WindowText), QColor(176, 80, 0));

        // Charlie Nav is not selected until its card is ticked.
        const bool german = language == QLatin1String("de_DE");
        const QString none =
            german ? "Kein Produkt läuft mit einem abgelaufenen Zyklus." : "No product runs an expired cycle.";
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

    // "Change" on the category panel or on a card asks for a folder, on the category's current one;
    // the answer is taken (a cancel keeps the old one) and its field turns green for a folder that is
    // there and holds what it should, red otherwise. The cards of the category follow at once.
    // clang-format off
    void folderChooser_data()
    {
        QTest::addColumn<QString>("target"); // the category, or a product whose folder does not exist yet
        QTest::addColumn<QString>("answer"); // relative to the program folder; empty = cancelled
        QTest::addColumn<bool>("simulator"); // the answer holds X-Plane.app
        QTest::addColumn<bool>("green");

        QTest::newRow("new simulator folder") << "X-Plane 11" << "sims/xp11b" << true << true;
        QTest::newRow("simulator folder kept") << "X-Plane 11" << "" << false << true;
        QTest::newRow("folder without simulator") << "X-Plane 11" << "sims/empty" << false << false;
        QTest::newRow("card: existing folder") << "Echo FMS" << "addons/echo" << false << true;
        QTest::newRow("card: cancelled") << "Echo FMS" << "" << false << false;
    }
    // clang-format on

    void folderChooser()
    {
        QFETCH(QString, target);
        QFETCH(QString, answer);
        QFETCH(bool, simulator);
        QFETCH(bool, green);

        const bool category = !card(target);
        const QString folder = answer.isEmpty() ? QString() : m_app->filePath(answer);
        if (simulator)
            QVERIFY(SampleCatalogue::MakeSimFolder(folder));
        else if (!folder.isEmpty())
            QVERIFY(QDir().mkpath(folder));
        int asked = 0;
        VlDirChooser::SetHandler([&](const QString&, const QString& start) {
            ++asked;
            return !category || start == sim11() ? folder : QStringLiteral("wrong start ") + start;
        });

        clickCategory(QStringLiteral("X-Plane 11"));
        const QStringList x11{"Alpha GNS", "Bravo FMS", "Echo FMS"};
        const QString before10 = card(QStringLiteral("Charlie Nav"))->GetPathText();
        QCOMPARE(card(QStringLiteral("Alpha GNS"))->GetPathText(), sim11() + QStringLiteral("/Custom Data/GNS430"));
        CCategory* cat = m_window->GetDataModel()->GetCategoryByName(QStringLiteral("X-Plane 11"));
        const auto chosen = [&] { return category ? cat->GetPath() : card(target)->GetProduct()->GetProductPath(); };
        const QString before = chosen();
        QWidget* owner = category ? static_cast<QWidget*>(m_window->GetCatProps()) : card(target);
        QPushButton* change = nullptr;
        for (QPushButton* b : owner->findChildren<QPushButton*>())
            if (b->isVisible() && b->text() == QLatin1String("Change"))
                change = b;
        QVERIFY(change);
        QTest::mouseClick(change, Qt::LeftButton);
        QCOMPARE(asked, 1);

        QCOMPARE(chosen(), folder.isEmpty() ? before : folder);
        QCOMPARE(owner->findChild<QLineEdit*>()->palette().color(QPalette::Disabled, QPalette::Text),
                 green ? QColor(0, 100, 0) : QColor(255, 0, 0));
        for (const QString& name : x11) {
            const QString shown = card(name)->GetPathText();
            if (!category || folder.isEmpty())
                QVERIFY2(shown.startsWith(sim11() + QLatin1Char('/')) || name == target, qPrintable(shown));
            else if (simulator)
                QVERIFY2(shown.startsWith(folder + QLatin1Char('/')), qPrintable(shown));
            else
                QVERIFY2(shown.startsWith(QStringLiteral("<")), qPrintable(shown));
            // The category's template is kept whatever the card shows.
            QVERIFY(card(name)->GetProduct()->GetProductPath().startsWith(QStringLiteral("$SimPath/")) ||
                    name == target);
        }
        QCOMPARE(card(QStringLiteral("Charlie Nav"))->GetPathText(), before10);
    }

    // The panels paint their own flat colours; each row names a widget and a spot on it that no
    // child covers.
    void panelColours_data()
    {
        QTest::addColumn<QString>("where");
        QTest::addColumn<QPointF>("spot"); // from the far edge when negative, a share of the size below 1
        QTest::addColumn<QColor>("colour");
        QTest::newRow("middle band") << "middle" << QPointF(5, 5) << QColor(0x7D, 0x7D, 0x7D);
        QTest::newRow("card edge") << "card" << QPointF(1, 1) << QColor(40, 40, 50);
        QTest::newRow("card outline") << "card" << QPointF(2, 2) << QColor(110, 110, 117);
        QTest::newRow("upper frame") << "card" << QPointF(5, 5) << QColor(230, 230, 240);
        QTest::newRow("lower frame") << "card" << QPointF(5, -5) << QColor(235, 235, 245);
        QTest::newRow("list below the cards") << "list" << QPointF(0.5, -5) << QColor(240, 240, 250);
        QTest::newRow("button") << "button" << QPointF(3, 0.5) << QColor(210, 210, 222);
        QTest::newRow("button under the mouse") << "hover" << QPointF(3, 0.5) << QColor(190, 205, 225);
        QTest::newRow("path field") << "edit" << QPointF(-3, 0.5) << QColor(252, 252, 255);
    }

    void panelColours()
    {
        QFETCH(QString, where);
        QFETCH(QPointF, spot);
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
        QWidget* list = m_window->GetProdList();
        const QMap<QString, QWidget*> widgets{
            {"middle", list->parentWidget()},    {"card", c}, {"list", list}, {"button", change}, {"hover", change},
            {"edit", c->findChild<QLineEdit*>()}};
        QWidget* widget = widgets.value(where);
        QVERIFY(widget);
        if (widget == change) {
            // The cursor may already stand there from an earlier step; Qt moves it only when it moves.
            if (where == QLatin1String("hover")) {
                QTest::mouseMove(m_window.data(), QPoint(1, 1));
                QTest::mouseMove(change, QPoint(change->width() / 2, change->height() / 2));
            }
            QTRY_COMPARE(change->underMouse(), where == QLatin1String("hover"));
        }
        const auto pos = [](qreal v, int size) { return int(v < 0 ? size + v : v < 1 ? size * v : v); };
        QCOMPARE(widget->grab().toImage().pixelColor(pos(spot.x(), widget->width()), pos(spot.y(), widget->height())),
                 colour);
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
        // The taller card keeps the last one reachable.
        QApplication::processEvents();
        int sum = 0;
        for (VlProdLabel* other : m_window->GetProdList()->GetCards())
            sum += other->height();
        QWidget* content = m_window->GetProdList()->GetScrollArea()->widget();
        QVERIFY(content->height() >= sum);
        QVERIFY(m_window->GetProdList()->GetCards().last()->geometry().bottom() < content->height());
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

        const QString found = at(QStringLiteral("home/X-Plane 11"));
        QVERIFY(SampleCatalogue::MakeSimFolder(found));
        QVERIFY(SampleCatalogue::MakeSimFolder(at(QStringLiteral("sims/mine"))));
        QVERIFY(QDir().mkpath(at(QStringLiteral("sims/empty"))));
        SampleCatalogue catalogue = SampleCatalogue::Small();
        if (!given.isEmpty())
            catalogue.categoryPaths.insert(QStringLiteral("X-Plane 11"), at(given));
        Application::setLanguage(language);
        openWindow(catalogue, false, firstStart);
        const QStringList statusLines = status.replace(QLatin1Char('@'), found).split(QLatin1Char('|'));
        QCOMPARE(m_window->GetStatusLabel()->text(), statusLines.at(0));
        QTest::mouseClick(m_window->GetCategoryButton(QStringLiteral("X-Plane 11")), Qt::LeftButton);
        VlAppPushButton* offer = m_window->GetCatProps()->GetOfferButton();
        const bool offered = given != QLatin1String("sims/mine");
        QCOMPARE(offer->isVisible(), offered);
        if (offered) {
            QCOMPARE(offer->toolTip(), found);
            QVERIFY(offer->text().contains(language == QLatin1String("de_DE") ? "verwenden" : "Use"));
        }
        if (click)
            UserInput::click(offer);
        QCOMPARE(offer->isVisible(), offered && !click);
        QCOMPARE(m_window->GetStatusLabel()->text(), statusLines.at(1));
        // The cards of the category follow at once.
        for (VlProdLabel* card : m_window->GetProdList()->GetCards())
            if (click && card->GetProduct()->GetCategoryName() == QLatin1String("X-Plane 11"))
                QVERIFY2(card->GetPathText().startsWith(found + QLatin1Char('/')), qPrintable(card->GetPathText()));

        // Taken the way a chosen folder is, so that the settings keep it; never without the click.
        QCOMPARE(m_window->GetDataModel()->GetCategoryByName(QStringLiteral("X-Plane 11"))->GetPath(), click ? found
                                                                                                       : given.isEmpty()
                                                                                                           ? QString()
                                                                                                           : at(given));
    }
};

QTEST_MAIN(TestMainWindow)
#include "TestMainWindow.moc"
