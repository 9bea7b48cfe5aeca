#include "model/CDialogRoute.h"

#include "app/Application.h"

#include <QDialog>
#include <QMainWindow>
#include <QPointer>
#include <QTimer>

#include <memory>

namespace {
CDialogRoute::Builder& builder()
{
    static CDialogRoute::Builder st_builder;
    return st_builder;
}

CDialogRoute::Handler& handler()
{
    static CDialogRoute::Handler st_handler;
    return st_handler;
}
} // namespace

int CDialogRoute::Run(EDlgPurpose purpose, CDataModel* model, const QString& title)
{
    if (!builder())
        return -1;
    std::unique_ptr<QDialog> dialog(builder()(purpose, model, title, Application::mainWnd));
    if (!dialog)
        return -1;
    return Exec(dialog.get());
}

int CDialogRoute::Exec(QDialog* dialog)
{
    QPointer<QDialog> guard(dialog);
    if (Handler h = handler()) {
        // Queued, so that it runs inside the dialog's own modal loop.
        QTimer::singleShot(0, dialog, [guard, h] {
            if (guard && guard->isVisible())
                h(guard.data());
            // A dialog may ask once before it closes; the second time it goes.
            for (int i = 0; i < 2 && guard && guard->isVisible(); ++i)
                guard->reject();
        });
    }
    const int result = dialog->exec();
    // QCoreApplication::exit ends the modal loop without closing the dialog; close it, so that its
    // work is stopped before it is destroyed.
    for (int i = 0; i < 2 && guard && guard->isVisible(); ++i)
        guard->reject();
    return result;
}

CDialogRoute::Builder CDialogRoute::SetBuilder(Builder b)
{
    Builder previous = builder();
    builder() = std::move(b);
    return previous;
}

CDialogRoute::Handler CDialogRoute::SetHandler(Handler h)
{
    Handler previous = handler();
    handler() = std::move(h);
    return previous;
}
