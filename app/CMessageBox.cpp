#include "app/CMessageBox.h"

#include "app/Application.h"

#include <QMainWindow>

namespace {
CMessageBox::Handler& handler()
{
    static CMessageBox::Handler st_handler;
    return st_handler;
}
} // namespace

void CMessageBox::critical(const QString& text, const QString& title, QWidget* parent)
{
    show(QMessageBox::Critical, title, text, parent);
}

void CMessageBox::show(QMessageBox::Icon icon, const QString& title, const QString& text, QWidget* parent)
{
    if (handler()) {
        handler()(icon, title, text);
        return;
    }
    QMessageBox box(icon, title, text, QMessageBox::Ok, parent ? parent : Application::mainWnd);
    box.exec();
}

CMessageBox::Handler CMessageBox::setHandler(Handler h)
{
    Handler previous = handler();
    handler() = std::move(h);
    return previous;
}
