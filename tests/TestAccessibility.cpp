#include "app/Application.h"
#include "model/CProduct.h"
#include "support/DialogDriver.h"
#include "support/LayoutCheck.h"
#include "support/MessageBoxSpy.h"
#include "support/SampleCatalogue.h"
#include "support/TempAppDir.h"
#include "support/TestServer.h"
#include "support/UserInput.h"
#include "ui/CvlFilterCmb.h"
#include "ui/DlgVLSettings.h"
#include "ui/QuillmarkMainWindow.h"
#include "ui/SystemButton.h"
#include "ui/VlActionLabel.h"
#include "ui/VlBigComboBox.h"
#include "ui/VlColors.h"
#include "ui/VlProdLabel.h"
#include "ui/VlProdListLabel.h"
#include "ui/VlProgressBar.h"
#include "ui/dlgUpdateDatasetVersion.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QHash>
#include <QScopedPointer>
#include <QStandardItemModel>
#include <QTest>

#include <cmath>

using UserInput::click;

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

// A program folder with the sample catalogue, a loopback server offering a cycle and a newer
// program, and the main window; dialogs reach the test through the driver.
struct Program
{
    MessageBoxSpy boxes;
    TempAppDir app;
    TestServer server;
    DialogDriver driver;
    QScopedPointer<QuillmarkMainWindow> window;

    bool open(bool selfUpdateAtStart)
    {
        server.addContent(QStringLiteral("/quillmark/versionList.txt"), "Revision: 1\n1802\n");
        server.addContent(QStringLiteral("/downloads/quillmark/mac_version.txt"), "124");
        SampleCatalogue catalogue = SampleCatalogue::Small();
        const QString sim = app.filePath(QStringLiteral("xp11"));
        catalogue.categoryPaths.insert(QStringLiteral("X-Plane 11"), sim);
        if (!server.start() || !SampleCatalogue::MakeSimFolder(sim))
            return false;
        catalogue.server = server.hostAndPort();
        if (!catalogue.WriteTo(app.path()) ||
            !app.writeFile(QStringLiteral("bin/prop_ini.xml"), SampleCatalogue::SettingsXml(false, selfUpdateAtStart)))
            return false;
        window.reset(new QuillmarkMainWindow);
        Application::mainWnd = window.data();
        window->show();
        return QTest::qWaitForWindowExposed(window.data());
    }
    // Opens a dialog with one of the window's action buttons; the driver's step runs while it is open.
    bool openWith(int action)
    {
        const int before = driver.count();
        click(window->GetActionButtons().at(action));
        return QTest::qWaitFor([&] { return driver.count() > before; }, 20000);
    }
    ~Program()
    {
        window.reset();
        Application::mainWnd = nullptr;
    }
};

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
        QAccessible::PushButton, QAccessible::Button,   QAccessible::CheckBox,     QAccessible::RadioButton,
        QAccessible::ComboBox,   QAccessible::Link,     QAccessible::EditableText, QAccessible::ButtonMenu,
        QAccessible::PageTab,    QAccessible::SpinBox,  QAccessible::Slider};
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

// What assistive technology, the keyboard and the eye get from the window and every dialog.
class TestAccessibility : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        Application::registerResources();
        Application::loadTranslations(QStringLiteral(":/lang"));
    }

    void cleanup() { Application::setLanguage(QStringLiteral("en_US")); }

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
        Program program;
        QStringList problems;
        const auto inspect = [&](QWidget* root) {
            settle();
            walk(QAccessible::queryAccessibleInterface(root), problems);
            checkPictures(root, problems);
        };
        program.driver.then(inspect);
        // The self-update dialog opens on its own at start when the server has a newer program.
        QVERIFY(program.open(action == 5));
        if (action == 5)
            QTRY_COMPARE_WITH_TIMEOUT(program.driver.count(), 1, 20000);
        else if (action >= 0)
            QVERIFY(program.openWith(action));
        else {
            program.window->GetProdList()->GetCards().first()->ClickedShowCommandsButtonSlot();
            inspect(program.window.data());
        }
        QCOMPARE(program.boxes.count(), 0);
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
        Program program;
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
        QVERIFY(program.open(false));
        if (action < 0) {
            measure(program.window->GetFilter());
        } else {
            program.driver.then([&](QDialog* d) {
                if (auto* update = qobject_cast<dlgUpdateDatasetVersion*>(d))
                    measure(update->GetVersionCombo());
                else if (auto* settings = qobject_cast<DlgVLSettings*>(d))
                    measure(settings->GetLanguageCombo());
            });
            QVERIFY(program.openWith(action));
        }
        QVERIFY2(problems.isEmpty(), qPrintable(problems.join(QLatin1Char('\n'))));
    }

    // A language chosen in the open settings dialog re-lays the dialog and the window: no text is
    // cut and the filter keeps clear of its caption.
    void liveLanguageSwitchKeepsTextsWhole()
    {
        Application::setLanguage(QStringLiteral("en_US"));
        Program program;
        QVERIFY(program.open(false));
        QStringList problems;
        program.driver.then([&](QDialog* d) {
            auto* settings = qobject_cast<DlgVLSettings*>(d);
            QVERIFY(settings);
            for (const char* language : {"de_DE", "en_US"}) {
                VlBigComboBox* combo = settings->GetLanguageCombo();
                combo->setCurrentIndex(combo->findData(QString::fromLatin1(language)));
                settle();
                QCOMPARE(Application::GetLanguage(), QString::fromLatin1(language));
                for (const QString& cut : LayoutCheck::CutTexts(settings) + LayoutCheck::CutTexts(program.window.data()))
                    problems << QString::fromLatin1(language) + QStringLiteral(": ") + cut;
                QWidget* filter = program.window->GetFilter();
                QWidget* caption = program.window->GetFilterCaption();
                const QRect filterRect(filter->mapTo(program.window.data(), QPoint()), filter->size());
                const QRect captionRect(caption->mapTo(program.window.data(), QPoint()), caption->size());
                if (filterRect.intersects(captionRect) || filter->width() < filter->minimumSizeHint().width())
                    problems << QString::fromLatin1(language) + QStringLiteral(": the filter is squeezed");
            }
        });
        QVERIFY(program.openWith(3));
        QVERIFY2(problems.isEmpty(), qPrintable(problems.join(QLatin1Char('\n'))));
    }
};

QTEST_MAIN(TestAccessibility)
#include "TestAccessibility.moc"
