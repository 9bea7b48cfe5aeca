#include "ui/VlDirChooser.h"

#include <QFileDialog>

namespace {
VlDirChooser::Handler& handler()
{
    static VlDirChooser::Handler st_handler;
    return st_handler;
}
} // namespace

QString VlDirChooser::GetExistingDirectory(QWidget* parent, const QString& title, const QString& startDir)
{
    if (handler())
        return handler()(title, startDir);
    return QFileDialog::getExistingDirectory(parent, title, startDir,
                                             QFileDialog::ShowDirsOnly | QFileDialog::DontResolveSymlinks);
}

VlDirChooser::Handler VlDirChooser::SetHandler(Handler h)
{
    Handler previous = handler();
    handler() = std::move(h);
    return previous;
}
