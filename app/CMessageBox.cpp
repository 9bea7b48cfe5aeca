#include "app/CMessageBox.h"

#include "app/Application.h"

#include <QMainWindow>

namespace {
CMessageBox::Handler& handler()
{
    static CMessageBox::Handler st_handler;
    return st_handler;
}

bool& answer()
{
    static bool st_answer = true;
    return st_answer;
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

bool CMessageBox::ask(const QString& text, const QString& title, QWidget* parent)
{
    if (handler()) {
        handler()(QMessageBox::Question, title, text);
        return answer();
    }
    QMessageBox box(QMessageBox::Question, title, text, QMessageBox::Yes | QMessageBox::No,
                    parent ? parent : Application::mainWnd);
    box.setDefaultButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}

void CMessageBox::setAnswer(bool yes)
{
    answer() = yes;
}

CMessageBox::Handler CMessageBox::setHandler(Handler h)
{
    Handler previous = handler();
    handler() = std::move(h);
    return previous;
}
