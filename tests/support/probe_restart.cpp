// Runs the program's start-up loop in a child process for the restart tests.
// Arguments: program folder, then the exit codes that the passes end with, one per pass.
// Prints one line per pass and a last line with the code the loop returned.
#include "app/Application.h"
#include "app/CMessageBox.h"
#include "ui/QuillmarkMainWindow.h"

#include <QCoreApplication>
#include <QTimer>

#include <cstdio>

int main(int argc, char** argv)
{
    if (argc < 3) {
        std::fprintf(stderr, "usage: probe_restart FOLDER CODE...\n");
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]);
    QList<int> codes;
    for (int i = 2; i < argc; ++i)
        codes << QByteArray(argv[i]).toInt();

    CMessageBox::setHandler([](QMessageBox::Icon, const QString& title, const QString& text) {
        std::printf("box %s: %s\n", qPrintable(title), qPrintable(text));
    });

    static int windowsBuilt = 0;
    Application::RunHooks hooks;
    hooks.afterApplication = [folder](int) { Application::st_strAppPath = folder; };
    hooks.makeWindow = [] {
        ++windowsBuilt;
        return new QuillmarkMainWindow();
    };
    hooks.afterShow = [codes](int pass) {
        QStringList languages = Application::availableLanguages();
        languages.sort();
        std::printf("pass %d pid %lld windows %d visible %d languages %s\n", pass, QCoreApplication::applicationPid(),
                    windowsBuilt, int(Application::mainWnd->isVisible()), qPrintable(languages.join(QLatin1Char(','))));
        std::fflush(stdout);
        const int code = pass < codes.size() ? codes.at(pass) : 0;
        QTimer::singleShot(0, [code] { QCoreApplication::exit(code); });
    };
    const int result = Application::run(argc, argv, hooks);
    std::printf("loop returned %d\n", result);
    return result;
}
