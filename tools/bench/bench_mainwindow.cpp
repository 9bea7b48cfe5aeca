// Main window on generated catalogues of several sizes, each in a fresh process: reading the
// catalogue and settings, building and showing the window, building the install groups (with
// their log) and every filter change a user can make, next to building as many plain QLabels in
// the same process. A row per size and, per step, the time per product of the largest size over
// that of the smallest: 1.0 is linear.
// Then the start-up of the program to its window shown (500 products, automatic checks on, no
// server listening) next to a bare Qt window with one label, both as new processes of this
// executable, alternating, median of several.
//   bench_mainwindow [PRODUCTS...]   (default 500 2000 20000)
#include "app/Application.h"
#include "model/CDataModel.h"
#include "support/SampleCatalogue.h"
#include "support/TempAppDir.h"
#include "ui/CvlFilterCmb.h"
#include "ui/QuillmarkMainWindow.h"
#include "ui/VlCatLabel.h"
#include "ui/VlProdListLabel.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QMap>
#include <QProcess>
#include <QTcpServer>
#include <QTimer>
#include <QVBoxLayout>
#include <QVector>

#include <algorithm>
#include <cstdio>
#include <functional>

namespace {
const int kStartupProducts = 500;
const int kStartupRuns = 7;

double ms(qint64 ns)
{
    return ns / 1e6;
}

// The steps a row reports, in the order they are printed; the child prints "name value" lines.
const char* const kSteps[] = {"catalogue read", "window built",          "window shown", "cards in view",
                              "install groups", "slowest filter change", "plain labels"};

void report(const char* step, qint64 ns)
{
    std::printf("%s=%.3f\n", step, ms(ns));
}

// A program folder with `count` generated products over two simulator folders that pass the check.
void writeCatalogue(const TempAppDir& dir, int count, const QString& server)
{
    SampleCatalogue catalogue = SampleCatalogue::Generated(count);
    for (const char* name : {"xp10", "xp11"})
        SampleCatalogue::MakeSimFolder(dir.filePath(QLatin1String(name)));
    catalogue.categoryPaths.insert(QStringLiteral("X-Plane 10"), dir.filePath(QStringLiteral("xp10")));
    catalogue.categoryPaths.insert(QStringLiteral("X-Plane 11"), dir.filePath(QStringLiteral("xp11")));
    if (!server.isEmpty()) {
        catalogue.server = server;
        catalogue.quietDefaults = false;
    }
    catalogue.WriteTo(dir.path());
    if (!server.isEmpty())
        dir.writeFile(QStringLiteral("bin/prop_ini.xml"), SampleCatalogue::SettingsXml(true, true));
}

// One size, in this process: the numbers go to standard output for the parent.
int windowChild(int argc, char** argv, int count)
{
    QApplication app(argc, argv);
    Application::registerResources();
    TempAppDir dir;
    writeCatalogue(dir, count, QString());

    QElapsedTimer clock;
    clock.start();
    auto* window = new QuillmarkMainWindow;
    const qint64 built = clock.nsecsElapsed();
    window->show();
    const qint64 shown = clock.nsecsElapsed();
    // The cards in view are built once the list has its size, in the passes right after the show.
    for (int i = 0; i < 10; ++i)
        QApplication::processEvents();
    const qint64 settled = clock.nsecsElapsed();

    const auto timeIt = [&](const std::function<void()>& change) {
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
    const std::function<void()> changes[] = {category("X-Plane 11"), dataset(3),           dataset(0),
                                             category("All"),        category("Selected"), category("All")};
    qint64 slowest = 0;
    for (const auto& change : changes)
        slowest = qMax(slowest, timeIt(change));
    // The window runs this once when shown; it logs every product, so it is timed on its own.
    const qint64 groups = timeIt([&] { window->GetDataModel()->InitProdUpdateListForUpdateOrReset(true); });
    delete window;

    // Reading alone, on a model of its own once the window has gone.
    clock.restart();
    {
        CDataModel model;
        clock.restart();
        model.Init(QStringLiteral("bench"));
        report("catalogue read", clock.nsecsElapsed());
    }

    // Reference, last so that it cannot warm anything up for the window: as many plain labels in
    // one shown widget.
    clock.restart();
    {
        QWidget holder;
        auto* layout = new QVBoxLayout(&holder);
        for (int i = 0; i < count; ++i)
            layout->addWidget(new QLabel(QStringLiteral("Product %1").arg(i)));
        holder.show();
        QApplication::processEvents();
    }
    report("plain labels", clock.nsecsElapsed());
    report("window built", built);
    report("window shown", shown);
    report("cards in view", settled);
    report("install groups", groups);
    report("slowest filter change", slowest);
    return 0;
}

// The program's own start-up, as app/main.cpp runs it; prints "shown" once the window is up.
int programChild(int argc, char** argv, const QString& folder)
{
    Application::RunHooks hooks;
    hooks.afterApplication = [folder](int) { Application::st_strAppPath = folder; };
    hooks.makeWindow = [] { return new QuillmarkMainWindow(); };
    hooks.afterShow = [](int) {
        std::printf("shown\n");
        std::fflush(stdout);
        QTimer::singleShot(0, [] { QCoreApplication::exit(0); });
    };
    return Application::run(argc, argv, hooks);
}

int bareChild(int argc, char** argv)
{
    QApplication app(argc, argv);
    QLabel label(QStringLiteral("Quillmark"));
    label.show();
    std::printf("shown\n");
    std::fflush(stdout);
    QTimer::singleShot(0, [] { QCoreApplication::exit(0); });
    return QApplication::exec();
}

// Runs this executable with the arguments; the milliseconds until it printed "shown", or -1.
double timeToShown(const QStringList& arguments)
{
    QProcess child;
    QElapsedTimer clock;
    clock.start();
    child.start(QCoreApplication::applicationFilePath(), arguments);
    while (child.waitForReadyRead(30000)) {
        if (child.readAll().contains("shown")) {
            const double elapsed = ms(clock.nsecsElapsed());
            child.waitForFinished(30000);
            return elapsed;
        }
    }
    std::fprintf(stderr, "%s: no window shown\n", qPrintable(arguments.join(QLatin1Char(' '))));
    return -1;
}

double median(QVector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

// Runs one size in a child process and reads its numbers.
QMap<QString, double> measureSize(int count)
{
    QProcess child;
    child.setProcessChannelMode(QProcess::SeparateChannels);
    child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--window"), QString::number(count)});
    QMap<QString, double> values;
    if (!child.waitForFinished(600000) || child.exitCode() != 0) {
        std::fprintf(stderr, "size %d: the child failed\n", count);
        return values;
    }
    for (const QByteArray& line : child.readAllStandardOutput().split('\n')) {
        const int equals = line.indexOf('=');
        if (equals > 0)
            values.insert(QString::fromLatin1(line.left(equals)), line.mid(equals + 1).toDouble());
    }
    return values;
}
} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QByteArray mode = argc > 1 ? QByteArray(argv[1]) : QByteArray();
    if (mode == "--window" && argc > 2)
        return windowChild(argc, argv, QByteArray(argv[2]).toInt());
    if (mode == "--program" && argc > 2)
        return programChild(argc, argv, QString::fromLocal8Bit(argv[2]));
    if (mode == "--bare")
        return bareChild(argc, argv);

    QCoreApplication app(argc, argv);
    QVector<int> sizes;
    for (int i = 1; i < argc; ++i)
        sizes << QByteArray(argv[i]).toInt();
    if (sizes.isEmpty())
        sizes = {500, 2000, 20000};

    QVector<QMap<QString, double>> rows;
    for (int count : sizes)
        rows << measureSize(count);
    // Fixed costs (fonts, pictures, the window itself) weigh on the smallest size; the time each
    // product adds between the two larger sizes over that between the two smaller ones says whether
    // a step grows faster than the catalogue.
    const int n = sizes.size();
    std::printf("%-24s", "products");
    for (int count : sizes)
        std::printf("%12d", count);
    std::printf("   per product  added per product\n%-24s%*s   %5d/%-5d  ", "", 12 * n, "", sizes.last(),
                sizes.first());
    if (n >= 3)
        std::printf("%d-%d/%d-%d", sizes.at(n - 2), sizes.last(), sizes.first(), sizes.at(n - 2));
    std::printf("\n");
    for (const char* step : kSteps) {
        const QString key = QLatin1String(step);
        std::printf("%-24s", step);
        for (const auto& row : rows)
            std::printf("%9.1f ms", row.value(key, -1));
        // A filter change does not touch every product; its ratios say nothing.
        if (key != QLatin1String("slowest filter change")) {
            const auto perProduct = [&](int from, int to) {
                const double before = from < 0 ? 0 : rows.at(from).value(key);
                return (rows.at(to).value(key) - before) / (sizes.at(to) - (from < 0 ? 0 : sizes.at(from)));
            };
            std::printf("   %9.2fx", perProduct(-1, n - 1) / perProduct(-1, 0));
            if (n >= 3)
                std::printf("  %9.2fx", perProduct(n - 2, n - 1) / perProduct(0, n - 2));
        }
        std::printf("\n");
    }
    const auto& largest = rows.last();
    std::printf("\n%d products: window shown %.0f ms (target < 1000 ms), slowest filter change %.1f ms (target < "
                "100 ms), install groups %.1f ms (target < 50 ms)\n",
                sizes.last(), largest.value(QStringLiteral("window shown")),
                largest.value(QStringLiteral("slowest filter change")),
                largest.value(QStringLiteral("install groups")));

    // Start-up: no server answers at the address the catalogue names.
    QString server;
    {
        QTcpServer probe;
        if (probe.listen(QHostAddress::LocalHost))
            server = QStringLiteral("127.0.0.1:%1").arg(probe.serverPort());
    }
    TempAppDir dir;
    writeCatalogue(dir, kStartupProducts, server);
    QVector<double> program, bare;
    for (int i = 0; i < kStartupRuns; ++i) {
        const QStringList programArgs{QStringLiteral("--program"), dir.path()};
        const QStringList bareArgs{QStringLiteral("--bare")};
        if (i % 2 == 0) {
            program << timeToShown(programArgs);
            bare << timeToShown(bareArgs);
        } else {
            bare << timeToShown(bareArgs);
            program << timeToShown(programArgs);
        }
    }
    const double p = median(program), b = median(bare);
    std::printf("\nstart-up to the window shown, %d products, no server, median of %d: program %.0f ms, bare Qt "
                "window with one label %.0f ms, ratio %.2fx (target at most 3x)\n",
                kStartupProducts, kStartupRuns, p, b, p / b);
    return 0;
}
