// Main window with a generated catalogue: time to build and show it, and time of a category or
// dataset filter change, against building as many plain QLabels in the same run.
// Usage: bench_mainwindow [PRODUCTS=500]
#include "app/Application.h"
#include "support/SampleCatalogue.h"
#include "support/TempAppDir.h"
#include "ui/CvlFilterCmb.h"
#include "ui/QuillmarkMainWindow.h"
#include "ui/VlCatLabel.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QVBoxLayout>

#include <cstdio>

namespace {
double ms(qint64 ns)
{
    return ns / 1e6;
}
} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    Application::registerResources();
    const int count = argc > 1 ? QByteArray(argv[1]).toInt() : 500;

    TempAppDir dir;
    SampleCatalogue catalogue = SampleCatalogue::Generated(count);
    SampleCatalogue::MakeSimFolder(dir.filePath(QStringLiteral("xp10")));
    SampleCatalogue::MakeSimFolder(dir.filePath(QStringLiteral("xp11")));
    catalogue.categoryPaths.insert(QStringLiteral("X-Plane 10"), dir.filePath(QStringLiteral("xp10")));
    catalogue.categoryPaths.insert(QStringLiteral("X-Plane 11"), dir.filePath(QStringLiteral("xp11")));
    if (!catalogue.WriteTo(dir.path()))
        return 1;

    // Reference: as many plain labels in one shown widget.
    QElapsedTimer clock;
    clock.start();
    {
        QWidget holder;
        auto* layout = new QVBoxLayout(&holder);
        for (int i = 0; i < count; ++i)
            layout->addWidget(new QLabel(QStringLiteral("Product %1").arg(i)));
        holder.show();
        QApplication::processEvents();
    }
    const qint64 reference = clock.nsecsElapsed();

    clock.restart();
    auto* window = new QuillmarkMainWindow;
    const qint64 built = clock.nsecsElapsed();
    window->show();
    const qint64 show = clock.nsecsElapsed();
    QApplication::processEvents(); // the install groups, built right after the show

    auto timeIt = [&](const std::function<void()>& change) {
        clock.restart();
        change();
        QApplication::processEvents();
        return clock.nsecsElapsed();
    };
    const qint64 category = timeIt([&] { window->GetCategoryButton(QStringLiteral("X-Plane 11"))->SetSelect(true); });
    const qint64 dataset = timeIt([&] { window->GetFilter()->setCurrentIndex(3); });
    // The window runs this once when shown; it logs every product, so it is timed on its own.
    const qint64 groups = timeIt([&] { window->GetDataModel()->InitProdUpdateListForUpdateOrReset(true); });
    const qint64 back = timeIt([&] {
        window->GetFilter()->setCurrentIndex(0);
        window->GetCategoryButton(QStringLiteral("All"))->SetSelect(true);
    });

    std::printf("products                     %d\n", count);
    std::printf("plain labels (reference)     %9.1f ms\n", ms(reference));
    std::printf("window built (not shown)     %9.1f ms\n", ms(built));
    std::printf("window built and shown       %9.1f ms   x%.1f of reference   (target < 1000 ms)\n", ms(show),
                double(show) / reference);
    std::printf("category filter change       %9.1f ms   x%.2f of reference   (target < 100 ms)\n", ms(category),
                double(category) / reference);
    std::printf("dataset filter change        %9.1f ms   x%.2f of reference   (target < 100 ms)\n", ms(dataset),
                double(dataset) / reference);
    std::printf("  of it install groups + log %9.1f ms (one more run of the show-time step)\n", ms(groups));
    std::printf("back to all / all            %9.1f ms   x%.2f of reference\n", ms(back), double(back) / reference);

    clock.restart();
    delete window;
    std::printf("window closed (saves)        %9.1f ms\n", ms(clock.nsecsElapsed()));
    return 0;
}
