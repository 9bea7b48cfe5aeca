// Runs an install or a reset of the products in a work folder in a child process, and ends the
// process with _exit right before the Nth file move (N = -1: never), as a power cut would. "recover"
// does what start-up does with runs that were cut off.
// Arguments: program folder, work folder (Prod_0, Prod_1, ... with dataset DS_0, DS_1, ...),
// install | reset | recover, N. Prints "moves: M" at the end of a run that was not cut off, and
// one line per product that recovery finished or undid.
#include "app/Application.h"
#include "app/CMessageBox.h"
#include "engine/CDSVersion.h"
#include "engine/CFolderWalk.h"
#include "model/CInstallGroupList.h"
#include "model/CProduct.h"
#include "model/CProductList.h"
#include "support/DatasetFiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QSignalSpy>
#include <QTimer>

#include <cstdio>
#include <unistd.h>

namespace {
int st_exitAt = -1;
int st_moves = 0;

void moveHook(int movesDone)
{
    st_moves = movesDone;
    if (movesDone == st_exitAt)
        _exit(9);
}
} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc < 5) {
        std::fprintf(stderr, "usage: probe_journal PROGRAM_FOLDER WORK_FOLDER install|reset|recover N\n");
        return 2;
    }
    Application::st_strAppPath = QString::fromLocal8Bit(argv[1]);
    const QString work = QString::fromLocal8Bit(argv[2]);
    const QByteArray op = argv[3];
    st_exitAt = QByteArray(argv[4]).toInt();
    CMessageBox::setHandler([](QMessageBox::Icon, const QString& title, const QString& text) {
        std::printf("box %s: %s\n", qPrintable(title), qPrintable(text));
    });

    CProductList products;
    CInstallGroupList groups;
    const QStringList folders = QDir(work).entryList({QStringLiteral("Prod_*")}, QDir::Dirs, QDir::Name);
    for (const QString& folder : folders) {
        CProduct* p = DatasetFiles::addNavDataProduct(products, folder,
                                                      QStringLiteral("DS_") + folder.section(QLatin1Char('_'), 1),
                                                      work + QLatin1Char('/') + folder);
        p->InitNewInstallPaths(false);
        groups.AssignProduct(p);
    }

    CDSVersion engine;
    engine.Init(QStringLiteral("1.0"));
    engine.SetProductList(&products);
    CFolderWalk::st_moveHook = moveHook;

    if (op == "recover") {
        for (const QString& line : engine.RecoverInterruptedRuns(&products))
            std::printf("%s\n", qPrintable(line));
        return 0;
    }
    QSignalSpy ready(&engine, op == "install" ? &CDSVersion::SignalInstallReady : &CDSVersion::SignalResetReady);
    if (op == "install")
        engine.InstallProducts();
    else
        engine.Reset(&products);
    if (ready.isEmpty() && !ready.wait(120000)) {
        std::fprintf(stderr, "the run did not end\n");
        return 3;
    }
    std::printf("moves: %d\n", st_moves);
    std::printf("%s", qPrintable(engine.GetResult()));
    return 0;
}
