// Main window with a generated catalogue: time to build and show it, and time of a category or
// dataset filter change, against building as many plain QLabels in the same run.
// Usage: bench_mainwindow [PRODUCTS=500]
#include "app/Application.h"
#include "support/SampleCatalogue.h"
#include "support/TempAppDir.h"
#include "ui/CvlFilterCmb.h"
#include "ui/QuillmarkMainWindow.h"
#include "ui/VlCatLabel.h"
#include "ui/VlProdListLabel.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QVBoxLayout>
#include <QVector>

#include <cstdio>
#include <unistd.h>

namespace {
double ms(qint64 ns)
{
    return ns / 1e6;
}

// Milliseconds since this process started, from the kernel's start time (10 ms ticks); -1 if unknown.
double sinceProcessStart()
{
    QFile stat(QStringLiteral("/proc/self/stat"));
    QFile uptime(QStringLiteral("/proc/uptime"));
    if (!stat.open(QIODevice::ReadOnly) || !uptime.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray line = stat.readAll();
    // Fields after the command name, which sits in parentheses and may hold spaces.
    const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
    const long ticks = sysconf(_SC_CLK_TCK);
    if (fields.size() < 20 || ticks <= 0)
        return -1;
    const double started = fields.at(19).toDouble() / ticks;
    const double now = uptime.readAll().split(' ').value(0).toDouble();
    return (now - started) * 1000.0;
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

    QElapsedTimer clock;
    clock.start();
    auto* window = new QuillmarkMainWindow;
    const qint64 built = clock.nsecsElapsed();
    window->show();
    const qint64 show = clock.nsecsElapsed();
    const double fromStart = sinceProcessStart();
    // The cards in view are built once the list has its size, in the passes right after the show.
    for (int i = 0; i < 10; ++i)
        QApplication::processEvents();
    const qint64 settled = clock.nsecsElapsed();

    auto timeIt = [&](const std::function<void()>& change) {
        clock.restart();
        change();
        QApplication::processEvents();
        return clock.nsecsElapsed();
    };
    // Every single change a user can make from one state to the next, the last one showing every card.
    QuillmarkMainWindow* w = window;
    const auto category = [w](const char* name) {
        return [w, name] { w->GetCategoryButton(QString::fromLatin1(name))->SetSelect(true); };
    };
    const auto dataset = [w](int index) { return [w, index] { w->GetFilter()->setCurrentIndex(index); }; };
    const struct
    {
        const char* what;
        std::function<void()> change;
    } changes[] = {
        {"category All -> X-Plane 11", category("X-Plane 11")},
        {"dataset All -> third", dataset(3)},
        {"dataset third -> All", dataset(0)},
        {"category X-Plane 11 -> All", category("All")},
        {"category All -> Selected (none)", category("Selected")},
        {"category Selected -> All", category("All")},
    };
    QVector<qint64> changeTimes;
    for (const auto& change : changes)
        changeTimes.append(timeIt(change.change));
    // The window runs this once when shown; it logs every product, so it is timed on its own.
    const qint64 groups = timeIt([&] { window->GetDataModel()->InitProdUpdateListForUpdateOrReset(true); });

    // Reference, after the window so that it cannot warm anything up for it: as many plain labels
    // in one shown widget.
    clock.restart();
    {
        QWidget holder;
        auto* layout = new QVBoxLayout(&holder);
        for (int i = 0; i < count; ++i)
            layout->addWidget(new QLabel(QStringLiteral("Product %1").arg(i)));
        holder.show();
        QApplication::processEvents();
    }
    const qint64 reference = clock.nsecsElapsed();

    std::printf("products                     %d\n", count);
    std::printf("plain labels (reference)     %9.1f ms\n", ms(reference));
    std::printf("window built (not shown)     %9.1f ms\n", ms(built));
    std::printf("window built and shown       %9.1f ms   x%.1f of reference   (target < 1000 ms)\n", ms(show),
                double(show) / reference);
    std::printf("shown with the cards in view %9.1f ms   (%d of %d cards built)\n", ms(settled),
                window->GetProdList()->GetBuiltCardCount(), count);
    std::printf("program start to shown       %9.0f ms   (includes writing the catalogue)\n", fromStart);
    qint64 slowest = 0;
    for (int i = 0; i < changeTimes.size(); ++i) {
        std::printf("  %-32s %7.1f ms\n", changes[i].what, ms(changeTimes.at(i)));
        slowest = qMax(slowest, changeTimes.at(i));
    }
    std::printf("slowest filter change        %9.1f ms   x%.2f of reference   (target < 100 ms)\n", ms(slowest),
                double(slowest) / reference);
    std::printf("install groups + log         %9.1f ms (one more run of the show-time step)\n", ms(groups));

    clock.restart();
    delete window;
    std::printf("window closed (saves)        %9.1f ms\n", ms(clock.nsecsElapsed()));
    return 0;
}
