// Builds the main window offscreen on a program folder and saves it as mainwindow_en.png and
// mainwindow_de.png.
// Usage: screenshot_mainwindow [PROGRAM_FOLDER] [OUTPUT_FOLDER] [WIDTHxHEIGHT...]
// Without a program folder (or with "-") a sample catalogue in a temporary folder is used. With
// sizes, one pair of pictures per size is saved as mainwindow_<language>_<size>.png instead.
#include "app/Application.h"
#include "app/CMessageBox.h"
#include "model/CProduct.h"
#include "support/SampleCatalogue.h"
#include "ui/QuillmarkMainWindow.h"
#include "ui/VlProdLabel.h"
#include "ui/VlProdListLabel.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QPixmap>
#include <QSize>
#include <QStyleFactory>
#include <QTemporaryDir>

#include <cstdio>

namespace {
bool save(QuillmarkMainWindow& window, const QString& path)
{
    // A changed text re-lays out one level of widgets per pass of posted events.
    for (int i = 0; i < 20; ++i)
        QApplication::processEvents();
    const QPixmap shot = window.grab();
    if (shot.isNull() || !shot.save(path)) {
        std::fprintf(stderr, "could not save %s\n", qPrintable(path));
        return false;
    }
    std::printf("%s\n", qPrintable(path));
    return true;
}
} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    Application::registerResources();
    // Offscreen nobody could close a box: print it instead.
    CMessageBox::setHandler([](QMessageBox::Icon, const QString& title, const QString& text) {
        std::fprintf(stderr, "message box \"%s\": %s\n", qPrintable(title), qPrintable(text));
    });
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));

    const QString programArg = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("-");
    const QString output = argc > 2 ? QString::fromLocal8Bit(argv[2]) : QStringLiteral("screenshots");
    QDir().mkpath(output);

    QTemporaryDir sample;
    if (programArg == QLatin1String("-")) {
        SampleCatalogue catalogue = SampleCatalogue::Small();
        const QString sim = sample.path() + QStringLiteral("/X-Plane 11");
        SampleCatalogue::MakeSimFolder(sim);
        QDir().mkpath(sim + QStringLiteral("/Custom Data/GNS430"));
        QFile cycle(sim + QStringLiteral("/Custom Data/cycle_info.txt"));
        if (cycle.open(QIODevice::WriteOnly))
            cycle.write("AIRAC cycle    : 1802\r\nRevision       : 1\r\n");
        cycle.close();
        catalogue.categoryPaths.insert(QStringLiteral("X-Plane 11"), sim);
        catalogue.WriteTo(sample.path());
        Application::st_strAppPath = sample.path();
    } else {
        Application::st_strAppPath = QDir(programArg).absolutePath();
    }
    if (!QFile::exists(Application::st_strAppPath + QStringLiteral("/bin/base_ini.xml"))) {
        std::fprintf(stderr, "no catalogue in %s/bin\n", qPrintable(Application::st_strAppPath));
        return 2;
    }
    Application::st_strVersion = QStringLiteral("1.2.3");
    Application::loadTranslations(QStringLiteral(":/lang"));
    Application::setLanguage(QStringLiteral("en_US"));

    QList<QSize> sizes;
    for (int i = 3; i < argc; ++i) {
        const QStringList wh = QString::fromLocal8Bit(argv[i]).split(QLatin1Char('x'));
        if (wh.size() == 2)
            sizes << QSize(wh.at(0).toInt(), wh.at(1).toInt());
    }
    const bool named = !sizes.isEmpty();
    if (!named)
        sizes << QSize(1000, 840);

    QuillmarkMainWindow window;
    Application::mainWnd = &window;
    // The offscreen screen is small; show the window at the sizes asked for.
    window.setMinimumSize(0, 0);
    window.resize(sizes.first());
    window.show();
    // One card with its commands open, so that the picture shows them too.
    if (!window.GetProdList()->GetCards().isEmpty())
        window.GetProdList()->GetCards().first()->ClickedShowCommandsButtonSlot();

    bool ok = true;
    for (const QSize& size : qAsConst(sizes)) {
        window.resize(size);
        const QString suffix =
            named ? QStringLiteral("_%1x%2.png").arg(size.width()).arg(size.height()) : QStringLiteral(".png");
        Application::setLanguage(QStringLiteral("en_US"));
        ok = save(window, output + QStringLiteral("/mainwindow_en") + suffix) && ok;
        Application::setLanguage(QStringLiteral("de_DE"));
        ok = save(window, output + QStringLiteral("/mainwindow_de") + suffix) && ok;
    }
    Application::setLanguage(QStringLiteral("en_US"));
    Application::mainWnd = nullptr;
    return ok ? 0 : 1;
}
