// Runs the program's start-up loop in a child process and presses "Restore Quillmark default
// settings" in the settings dialog of the first pass, as a user would.
// Argument: the program folder. Prints what each pass starts with and what the dialog shows.
#include "app/Application.h"
#include "app/CMessageBox.h"
#include "model/CDialogRoute.h"
#include "model/CProduct.h"
#include "ui/DlgVLSettings.h"
#include "ui/QuillmarkMainWindow.h"
#include "ui/VlPushButton.h"

#include <QFileInfo>
#include <QTest>
#include <QTimer>

#include <cstdio>

int main(int argc, char** argv)
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: probe_restore_defaults FOLDER\n");
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]);
    CMessageBox::setHandler([](QMessageBox::Icon, const QString& title, const QString& text) {
        std::printf("box %s: %s\n", qPrintable(title), qPrintable(text));
    });

    static int pass = 0;
    CDialogRoute::SetHandler([folder](QDialog* dialog) {
        auto* settings = qobject_cast<DlgVLSettings*>(dialog);
        if (!settings)
            return;
        std::printf("restore enabled %d\n", int(settings->GetRestoreButton()->isEnabled()));
        if (pass == 0) {
            QTest::mouseClick(settings->GetRestoreButton(), Qt::LeftButton);
            std::printf("restore enabled %d settings file %d\n", int(settings->GetRestoreButton()->isEnabled()),
                        int(QFileInfo::exists(folder + QStringLiteral("/bin/prop_ini.xml"))));
        }
        std::fflush(stdout);
    });

    Application::RunHooks hooks;
    hooks.afterApplication = [folder](int) { Application::st_strAppPath = folder; };
    hooks.makeWindow = [] { return new QuillmarkMainWindow(); };
    hooks.afterShow = [](int n) {
        pass = n;
        auto* window = static_cast<QuillmarkMainWindow*>(Application::mainWnd);
        CDataModel* model = window->GetDataModel();
        const CProduct* alpha = model->GetProductByName(QStringLiteral("Alpha GNS"));
        std::printf("pass %d pid %lld language %s Alpha GNS selected %d\n", n, QCoreApplication::applicationPid(),
                    qPrintable(Application::GetLanguage()), int(alpha && alpha->GetUpdate()));
        std::fflush(stdout);
        QTimer::singleShot(0, [window, n] {
            QWidget* settingsButton = window->GetActionButtons().at(3);
            QTest::mouseClick(settingsButton, Qt::LeftButton, Qt::NoModifier, settingsButton->rect().center());
            if (n > 0)
                QCoreApplication::exit(0);
        });
    };
    const int result = Application::run(argc, argv, hooks);
    std::printf("loop returned %d\n", result);
    return result;
}
