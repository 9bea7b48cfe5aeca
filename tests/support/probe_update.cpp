// The program as installed, driven through one update. Copied into an installed program folder, it
// starts the way the program does (Application::run, the real main window), so its folder and the
// user's data folder are found as the program finds them. It takes the update dialog that the
// start-up check opens, downloads and installs the cycle on offer, then closes the window, which
// saves the settings. Prints each message box and the dialog's last state and message.
#include "app/Application.h"
#include "app/CMessageBox.h"
#include "support/DialogDriver.h"
#include "ui/QuillmarkMainWindow.h"
#include "ui/VlMessageLabel.h"
#include "ui/VlPushButton.h"
#include "ui/dlgUpdateDatasetVersion.h"

#include <QTest>
#include <QTimer>

#include <cstdio>

namespace {
bool pressAndWait(dlgUpdateDatasetVersion* dialog, QPushButton* button, int state)
{
    if (!button->isVisible() || !button->isEnabled())
        return false;
    QTest::mouseClick(button, Qt::LeftButton);
    return QTest::qWaitFor([&] { return dialog->GetState() == state; }, 60000);
}
} // namespace

int main(int argc, char** argv)
{
    CMessageBox::setHandler([](QMessageBox::Icon, const QString& title, const QString& text) {
        std::printf("box %s: %s\n", qPrintable(title), qPrintable(text));
    });
    DialogDriver driver;
    driver.then([](QDialog* opened) {
        auto* dialog = qobject_cast<dlgUpdateDatasetVersion*>(opened);
        if (dialog && pressAndWait(dialog, dialog->GetDownloadButton(), dlgUpdateDatasetVersion::StateDownloaded) &&
            pressAndWait(dialog, dialog->GetInstallButton(), dlgUpdateDatasetVersion::StateInstalled))
            QTest::mouseClick(dialog->GetOkButton(), Qt::LeftButton);
        if (dialog)
            std::printf("update %d: %s\n", dialog->GetState(), qPrintable(dialog->GetMessageLabel()->text()));
        QTimer::singleShot(0, [] { Application::mainWnd->close(); });
    });

    Application::RunHooks hooks;
    hooks.makeWindow = [] { return new QuillmarkMainWindow(); };
    // A dialog that never opens must not keep the caller waiting.
    hooks.afterShow = [](int) { QTimer::singleShot(90000, [] { QCoreApplication::exit(99); }); };
    return Application::run(argc, argv, hooks);
}
