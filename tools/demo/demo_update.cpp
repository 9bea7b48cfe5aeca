// Runs one full dataset update without any dialog, for the demo:
//   demo_update PROGRAM_DIR [--server HOST:PORT]
// Builds the data model on PROGRAM_DIR (catalogue and settings from its "bin"), switches the
// automatic checks off, selects every product, then searches the server, downloads and installs
// the offered cycle through the dataset engine, prints the result text and each product's state.
// Exit code 0 when every step succeeded, 1 on errors, 2 on bad arguments or a run that hung.

#include "app/Application.h"
#include "app/CMessageBox.h"
#include "engine/CDSVersion.h"
#include "model/CDataModel.h"
#include "model/CProduct.h"
#include "model/CProductList.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QTimer>

#include <cstdio>

namespace {
void say(const QString& text)
{
    std::fputs(qPrintable(text + QLatin1Char('\n')), stdout);
    std::fflush(stdout);
}

// Waits until one of the given signals of the engine fires; false on timeout.
template <typename... Signals> bool waitFor(CDSVersion* engine, int timeoutMs, Signals... signalList)
{
    QEventLoop loop;
    bool fired = false;
    (QObject::connect(engine, signalList, &loop,
                      [&] {
                          fired = true;
                          loop.quit();
                      }),
     ...);
    QTimer::singleShot(timeoutMs, &loop, &QEventLoop::quit);
    if (!fired)
        loop.exec();
    return fired;
}

const char* stateName(EQMKProductInstallState state)
{
    switch (state) {
    case QMK_STATE_INSTALL_OK:
        return "installed";
    case QMK_STATE_INSTALL_ERROR:
        return "failed";
    case QMK_STATE_INSTALL_WARNING:
        return "stopped or due";
    case QMK_STATE_NOT_INSTALLED:
        return "not installed";
    default:
        return "running";
    }
}
} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Quillmark demo: one dataset update without dialogs"));
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("PROGRAM_DIR"), QStringLiteral("Program folder (holds bin/)."));
    const QCommandLineOption serverOption(QStringLiteral("server"),
                                          QStringLiteral("Version server, host:port (default: the configured one)."),
                                          QStringLiteral("HOST:PORT"));
    parser.addOption(serverOption);
    parser.process(app);
    if (parser.positionalArguments().size() != 1) {
        std::fprintf(stderr, "usage: demo_update PROGRAM_DIR [--server HOST:PORT]\n");
        return 2;
    }
    const QString dir = QFileInfo(parser.positionalArguments().constFirst()).absoluteFilePath();
    if (!QFileInfo(dir + QStringLiteral("/bin/base_ini.xml")).isFile()) {
        std::fprintf(stderr, "demo_update: %s/bin/base_ini.xml not found\n", qPrintable(dir));
        return 2;
    }
    Application::st_strAppPath = dir;
    CMessageBox::setHandler([](QMessageBox::Icon, const QString& title, const QString& text) {
        std::fprintf(stderr, "[%s] %s\n", qPrintable(title), qPrintable(text));
    });

    CDataModel model;
    if (!model.InitBase())
        return 1;
    model.InitProp();
    model.InitProductParentCategory();
    model.SetDSAutoUpdate(false);
    model.SetQuillmarkAutoUpdate(false);
    CDSVersion* engine = model.GetDSVersion();
    QObject::connect(engine, &CDSVersion::SignalChangeNewVersion, &model, &CDataModel::ChangeNewVersionSlot);
    model.InitDSVersion();
    if (parser.isSet(serverOption))
        engine->SetServer(parser.value(serverOption));

    CProductList* products = model.GetProductList();
    for (int i = 0; i < products->GetSize(); ++i) {
        CProduct* p = products->GetByIndex(i);
        // What each product card does when it is built: resolve the stored folder.
        p->InitNewProdPath(p->GetProductPath());
        p->SetUpdate(true);
    }

    say(QStringLiteral("Searching ") + engine->GetServerBaseUrl() + QStringLiteral("versionList.txt"));
    engine->SearchForNewVersion(true);
    if (!waitFor(engine, 60000, &CDSVersion::SignalCheckHighVersionFinished)) {
        say(QStringLiteral("No answer from the server."));
        return 2;
    }
    if (engine->GetNewVersionDig().isEmpty()) {
        say(QStringLiteral("The server offers no cycle."));
        return 1;
    }
    say(QStringLiteral("Offered cycle ") + engine->GetNewVersionDig() + QStringLiteral(" revision ") +
        engine->GetNewRevision());
    model.InitProdUpdateListForUpdateOrReset(true);

    engine->SetSingleProduct(nullptr);
    engine->SetProductList(products);
    engine->ResetResult();
    QObject::connect(engine, &CDSVersion::SignalDownloadDataset,
                     [](const QString& dataset) { say(QStringLiteral("Downloading ") + dataset); });
    QEventLoop downloads;
    bool downloaded = false, finished = false;
    QObject::connect(engine, &CDSVersion::SignalDownloadDataSetReady, &downloads, [&] {
        downloaded = finished = true;
        downloads.quit();
    });
    QObject::connect(engine, &CDSVersion::SignalDownloadDataSetError, &downloads, [&] {
        finished = true;
        downloads.quit();
    });
    QTimer::singleShot(30 * 60000, &downloads, &QEventLoop::quit);
    engine->DownloadNewDSVersion();
    // The queue may end inside the call already, when nothing could be asked for.
    if (!finished)
        downloads.exec();
    if (!finished) {
        say(QStringLiteral("The downloads did not finish."));
        return 2;
    }
    if (!downloaded) {
        std::fputs(qPrintable(engine->GetResult()), stdout);
        say(QStringLiteral("Nothing could be downloaded."));
        return 1;
    }

    QObject::connect(engine, &CDSVersion::SignalUnzippProduct,
                     [](const QString& name) { say(QStringLiteral("Installing ") + name); });
    engine->InstallProducts();
    const bool ready = waitFor(engine, 30 * 60000, &CDSVersion::SignalInstallReady);

    say(QString());
    std::fputs(qPrintable(engine->GetResult()), stdout);
    say(QString());
    for (int i = 0; i < products->GetSize(); ++i) {
        CProduct* p = products->GetByIndex(i);
        // A member whose group was installed by another product keeps the running state.
        const bool byGroup = p->GetResetOrUpdateDone() && p->GetInstallState() == QMK_STATE_INSTALL_RUN;
        say(QStringLiteral("%1: %2, cycle %3")
                .arg(p->GetName(),
                     byGroup ? QStringLiteral("installed with its install group")
                             : QString::fromLatin1(stateName(p->GetInstallState())),
                     p->GetCycleVersion().isEmpty() ? QStringLiteral("none") : p->GetCycleVersion()));
    }
    // Settles the states and records the installed version, as closing the update dialog does.
    engine->StopInstall();
    if (!ready) {
        say(QStringLiteral("The install did not finish."));
        return 2;
    }
    return engine->GetErrorCount() == 0 ? 0 : 1;
}
