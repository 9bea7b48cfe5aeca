#include "app/Application.h"
#include "model/CProduct.h"
#include "support/MessageBoxSpy.h"
#include "support/SampleCatalogue.h"
#include "support/TempAppDir.h"
#include "support/UserInput.h"
#include "ui/CvlActionBtn.h"
#include "ui/CvlFilterCmb.h"
#include "ui/QuillmarkMainWindow.h"
#include "ui/SystemButton.h"
#include "ui/VlActionLabel.h"
#include "ui/VlCatLabel.h"
#include "ui/VlCatPropsLabel.h"
#include "ui/VlCategoryTitleLabel.h"
#include "ui/VlCycleDates.h"
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

// The frameless main window: its chrome, category column, filter and languages.
class TestMainWindow : public QObject
{
    Q_OBJECT

    QScopedPointer<TempAppDir> m_app;
    QScopedPointer<QuillmarkMainWindow> m_window;
    QScopedPointer<MessageBoxSpy> m_boxes;

    // Delivered to the widget under the point, as the platform would; labels pass it on to the window.
    void sendMouse(QEvent::Type type, const QPoint& local, Qt::MouseButtons buttons)
    {
        QWidget* target = m_window->childAt(local);
        if (!target)
            target = m_window.data();
        const QPoint global = m_window->mapToGlobal(local);
        QMouseEvent event(type, target->mapFromGlobal(global), global,
                          type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, buttons, Qt::NoModifier);
        QApplication::sendEvent(target, &event);
    }

    // A new window over the catalogue, X-Plane 11 in its simulator folder.
    void openWindow(SampleCatalogue catalogue)
    {
        m_window.reset();
        catalogue.categoryPaths.insert(QStringLiteral("X-Plane 11"), m_app->filePath(QStringLiteral("xp11")));
        QVERIFY(catalogue.WriteTo(m_app->path()));
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
            QStringLiteral("xp11/Aircraft/Kestrel Avionics KX-900/plugins/navigation data/cycle_info.txt"),
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

    // A widget shows all it has to show: not squeezed below its preferred size, and (unless the
    // area it lies in scrolls) inside the window.
    void checkWhole(const QWidget* w, const QString& what, QStringList& problems, bool scrolls = false) const
    {
        auto text = [](const QRect& r) {
            return QStringLiteral("%1,%2 %3x%4").arg(r.x()).arg(r.y()).arg(r.width()).arg(r.height());
        };
        if (w->width() < w->sizeHint().width() || w->height() < w->sizeHint().height())
            problems << what + QStringLiteral(" squeezed to ") + text(w->rect()) + QStringLiteral(" of ") +
                            text(QRect(QPoint(), w->sizeHint()));
        if (!scrolls && !m_window->rect().contains(inWindow(w)))
            problems << what + QStringLiteral(" outside the window at ") + text(inWindow(w));
    }

    static void checkApart(const QRect& a, const QRect& b, const QString& what, QStringList& problems)
    {
        if (a.intersects(b))
            problems << what + QStringLiteral(" overlap");
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
        m_app.reset(new TempAppDir);
        QVERIFY(SampleCatalogue::MakeSimFolder(m_app->filePath(QStringLiteral("xp11"))));
        openWindow(SampleCatalogue::Small());
    }

    void cleanup()
    {
        VlCycleDates::SetToday(QDate());
        Application::setLanguage(QStringLiteral("en_US"));
        m_window.reset();
        m_app.reset();
        QCOMPARE(m_boxes->count(), 0);
        m_boxes.reset();
    }

    void startSize()
    {
        const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
        QCOMPARE(m_window->minimumSize(), QSize(qMin(area.width(), 930), qMin(area.height(), 840)));
        QVERIFY(m_window->width() >= qMin(area.width(), 930));
        QVERIFY(m_window->height() >= qMin(area.height(), 766));
    }

    void dragByHeaderBand_data()
    {
        QTest::addColumn<int>("y");
        QTest::addColumn<bool>("moves");
        QTest::newRow("top") << 5 << true;
        QTest::newRow("inside header") << 60 << true;
        QTest::newRow("last header row") << 109 << true;
        QTest::newRow("first row below") << 110 << false;
        QTest::newRow("product area") << 300 << false;
    }

    void dragByHeaderBand()
    {
        QFETCH(int, y);
        QFETCH(bool, moves);

        const QPoint before = m_window->pos();
        QCOMPARE(before, QPoint(30, 20)); // the offscreen platform keeps positions
        // Left of the filter, right of the category column: only labels lie there.
        const QPoint press(150, y);
        sendMouse(QEvent::MouseButtonPress, press, Qt::LeftButton);
        sendMouse(QEvent::MouseMove, press + QPoint(25, 0), Qt::LeftButton);
        sendMouse(QEvent::MouseButtonRelease, press + QPoint(25, 0), Qt::NoButton);
        QCOMPARE(m_window->pos(), moves ? before + QPoint(25, 0) : before);

        // Without the left button held nothing moves.
        const QPoint now = m_window->pos();
        sendMouse(QEvent::MouseMove, QPoint(150, 20), Qt::NoButton);
        QCOMPARE(m_window->pos(), now);
    }

    void windowButtons()
    {
        const QRect normal = m_window->geometry();
        SystemButton* maxi = m_window->GetMaxiButton();
        SystemButton* norm = m_window->GetNormButton();
        QVERIFY(maxi->isVisible() && !norm->isVisible());

        QTest::mouseClick(maxi, Qt::LeftButton);
        QCOMPARE(m_window->geometry(), QGuiApplication::primaryScreen()->availableGeometry());
        QVERIFY(!maxi->isVisible() && norm->isVisible());

        QTest::mouseClick(norm, Qt::LeftButton);
        QCOMPARE(m_window->geometry(), normal);
        QVERIFY(maxi->isVisible() && !norm->isVisible());

        QTest::mouseClick(m_window->GetMiniButton(), Qt::LeftButton);
        QTRY_VERIFY(m_window->isMinimized());
        m_window->showNormal();

        QTest::mouseClick(m_window->GetCloseButton(), Qt::LeftButton);
        QTRY_VERIFY(!m_window->isVisible());
    }

    // clang-format off
    void categoryButtonsMarkOne_data()
    {
        QTest::addColumn<QString>("click");
        QTest::addColumn<QString>("selected"); // the one marked afterwards
        QTest::newRow("x-plane 11") << "X-Plane 11" << "X-Plane 11";
        QTest::newRow("selected list") << "Selected" << "Selected";
        QTest::newRow("x-plane 10") << "X-Plane 10" << "X-Plane 10";
        QTest::newRow("disabled fsx keeps all") << "FSX" << "All";
        QTest::newRow("disabled prepar3d keeps all") << "Prepar3D v4" << "All";
    }
    // clang-format on

    void categoryButtonsMarkOne()
    {
        QFETCH(QString, click);
        QFETCH(QString, selected);

        QSignalSpy changed(m_window.data(), &QuillmarkMainWindow::ChangeSelectedCategory);
        QTest::mouseClick(m_window->GetCategoryButton(QStringLiteral("X-Plane 10")), Qt::LeftButton);
        QTest::mouseClick(m_window->GetCategoryButton(QStringLiteral("All")), Qt::LeftButton);
        QTest::mouseClick(m_window->GetCategoryButton(click), Qt::LeftButton);

        for (VlCatLabel* button : m_window->GetCategoryButtons())
            QCOMPARE(button->IsSelected(), button->GetName() == selected);
        QCOMPARE(m_window->GetProdList()->GetCategoryName(), selected);
        QCOMPARE(m_window->GetCatProps()->GetCategory(), m_window->GetSelectedCategory());
        // The path row only belongs to simulator categories.
        QLineEdit* path = m_window->GetCatProps()->findChild<QLineEdit*>();
        QCOMPARE(path->isVisible(), selected.startsWith(QLatin1String("X-Plane")));

        // A category that cannot be chosen does not look as if it could: a faded title, no hand.
        VlCatLabel* pressed = m_window->GetCategoryButton(click);
        auto titleColour = [](VlCatLabel* button) {
            return button->findChild<VlCategoryTitleLabel*>()->palette().color(QPalette::WindowText);
        };
        const bool faded = titleColour(pressed).lightness() >
                           titleColour(m_window->GetCategoryButton(QStringLiteral("All"))).lightness() + 60;
        QCOMPARE(faded, !pressed->isEnabled());
        QCOMPARE(pressed->cursor().shape() == Qt::PointingHandCursor, pressed->isEnabled());
    }

    void resizeKeepsLayoutUsable_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("larger") << QSize(1400, 1000);
        QTest::newRow("wide and low") << QSize(1600, 500);
        QTest::newRow("back to the smallest") << QSize(1, 1);
        QTest::newRow("after maximise and restore") << QSize(-1, -1);
    }

    void resizeKeepsLayoutUsable()
    {
        QFETCH(QSize, size);
        if (size.width() < 0) {
            m_window->resize(1500, 1100);
            QTest::mouseClick(m_window->GetMaxiButton(), Qt::LeftButton);
            QTest::mouseClick(m_window->GetNormButton(), Qt::LeftButton);
            m_window->resize(1, 1);
        } else {
            m_window->resize(size);
        }
        QTest::qWait(50);
        QApplication::processEvents();

        const QSize expected = size.width() < 0 ? m_window->minimumSize() : size.expandedTo(m_window->minimumSize());
        QCOMPARE(m_window->size(), expected);
        QScrollArea* scroll = m_window->GetProdList()->GetScrollArea();
        QVERIFY(scroll->width() > 0 && scroll->height() > 0);
        const int viewport = scroll->viewport()->width();
        QVERIFY(viewport > 0);
        for (VlProdLabel* card : m_window->GetProdList()->GetCards()) {
            QCOMPARE(card->width(), viewport);
            QVERIFY(card->height() >= 120);
            for (QWidget* child : card->findChildren<QWidget*>())
                QVERIFY2(child->width() >= 0 && child->height() >= 0, qPrintable(child->objectName()));
        }
        // Nothing of the window lies outside it.
        QVERIFY(m_window->GetProdList()->geometry().right() < m_window->width());
        QVERIFY(m_window->GetCatProps()->isVisible());
        QVERIFY(m_window->GetCatProps()->mapTo(m_window.data(), QPoint(0, m_window->GetCatProps()->height())).y() <=
                m_window->height());
    }

    // clang-format off
    void languageSwitchRetranslates_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("filterCaption");
        QTest::addColumn<QString>("filterAll");
        QTest::addColumn<QString>("settings");
        QTest::addColumn<QString>("status");
        QTest::addColumn<QString>("categoryAll");

        QTest::newRow("english") << "en_US" << "Dataset filter" << "All" << "Settings" << "Ready" << "All";
        QTest::newRow("german") << "de_DE" << "Datensatzfilter" << "Alle" << "Einstellungen" << "Bereit"
                                << "Alle";
    }
    // clang-format on

    void languageSwitchRetranslates()
    {
        QFETCH(QString, language);
        QFETCH(QString, filterCaption);
        QFETCH(QString, filterAll);
        QFETCH(QString, settings);
        QFETCH(QString, status);
        QFETCH(QString, categoryAll);

        Application::setLanguage(language);
        QApplication::processEvents();
        QCOMPARE(m_window->GetFilterCaption()->text(), filterCaption);
        QCOMPARE(m_window->GetFilter()->itemText(0), filterAll);
        QCOMPARE(caption(m_window->GetActionButtons().at(3)), settings);
        QCOMPARE(m_window->GetStatusLabel()->text(), status);
        QCOMPARE(m_window->GetCategoryButton(QStringLiteral("All"))->GetTitle(), categoryAll);

        // The filter passes on the dataset, "All" in any language, and leaves the window's size alone.
        const QSize before = m_window->size();
        CvlFilterCmb* filter = m_window->GetFilter();
        QSignalSpy datasets(m_window.data(), &QuillmarkMainWindow::SignalChangeDataset);
        filter->setFocus();
        QTest::keyClick(filter, Qt::Key_Down);
        QTest::keyClick(filter, Qt::Key_Up);
        QCOMPARE(datasets.size(), 2);
        QCOMPARE(datasets.at(0).at(0).toString(), filter->itemText(1));
        QCOMPARE(datasets.at(1).at(0).toString(), QStringLiteral("All"));
        QCOMPARE(m_window->size(), before);
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
        // Header: every action button whole, in order, clear of the filter, the right margin kept.
        const QList<QWidget*> buttons = m_window->GetActionButtons();
        for (int i = 0; i < buttons.size(); ++i) {
            checkWhole(buttons.at(i), caption(buttons.at(i)), problems);
            if (i > 0)
                checkApart(inWindow(buttons.at(i - 1)), inWindow(buttons.at(i)), caption(buttons.at(i)), problems);
        }
        if (inWindow(buttons.last()).right() > m_window->width() - 15)
            problems << QStringLiteral("no margin right of the last action button");
        CvlFilterCmb* filter = m_window->GetFilter();
        checkWhole(filter, QStringLiteral("filter"), problems);
        checkWhole(m_window->GetFilterCaption(), QStringLiteral("filter caption"), problems);
        for (QWidget* button : buttons)
            checkApart(inWindow(filter).united(inWindow(m_window->GetFilterCaption())), inWindow(button),
                       QStringLiteral("filter and ") + caption(button), problems);
        int longest = 0;
        for (int i = 0; i < filter->count(); ++i)
            longest = qMax(longest, filter->fontMetrics().horizontalAdvance(filter->itemText(i)));
        if (filter->width() < longest + 20)
            problems << QStringLiteral("filter narrower than its longest dataset name");

        // Category column: every button and its title whole, one below the other.
        const QList<VlCatLabel*> categories = m_window->GetCategoryButtons();
        for (int i = 0; i < categories.size(); ++i) {
            VlCatLabel* button = categories.at(i);
            checkWhole(button, button->GetName(), problems, true);
            for (QLabel* label : button->findChildren<QLabel*>())
                if (label->isVisibleTo(button) &&
                    (!label->text().isEmpty() || !label->pixmap(Qt::ReturnByValue).isNull()))
                    checkWhole(label, button->GetName() + QStringLiteral(" part"), problems, true);
            if (i > 0 && inWindow(categories.at(i - 1)).bottom() >= inWindow(button).top())
                problems << button->GetName() + QStringLiteral(" overlaps the button above");
        }

        // Cards: name, category, dataset and cycle whole and apart; the path shows its start.
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
            for (int i = 0; i < texts.size(); ++i) {
                checkWhole(texts.at(i), name + QStringLiteral(": ") + texts.at(i)->metaObject()->className(), problems,
                           true);
                if (inWindow(texts.at(i)).right() > inWindow(card).right())
                    problems << name + QStringLiteral(": text beyond the card's right edge");
                for (int j = 0; j < i; ++j)
                    checkApart(inWindow(texts.at(j)), inWindow(texts.at(i)), name + QStringLiteral(": two texts"),
                               problems);
            }
            QLineEdit* path = card->findChild<QLineEdit*>();
            if (path->cursorPosition() != 0)
                problems << name + QStringLiteral(": path scrolled away from its start");
        }
        problems.removeDuplicates();
        QVERIFY2(problems.isEmpty(), qPrintable(problems.join(QStringLiteral("\n"))));
    }

    // clang-format off
    // Every control can be reached with Tab and pressed with Space, and the main commands have keys
    // of their own that the tooltips name.
    void keyboardReachesAndPresses_data()
    {
        QTest::addColumn<QString>("target"); // action N, category NAME, card command, close
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

    void openCommandsKeepLastCardReachable()
    {
        VlProdListLabel* list = m_window->GetProdList();
        const QList<VlProdLabel*> cards = list->GetCards();
        for (VlProdLabel* card : cards)
            card->ClickedShowCommandsButtonSlot();
        QApplication::processEvents();
        int sum = 0;
        for (VlProdLabel* card : cards)
            sum += card->height();
        QWidget* content = list->GetScrollArea()->widget();
        QVERIFY(content->height() >= sum);
        QVERIFY(cards.last()->geometry().bottom() < content->height());
    }
};

QTEST_MAIN(TestMainWindow)
#include "TestMainWindow.moc"
