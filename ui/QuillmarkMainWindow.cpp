#include "ui/QuillmarkMainWindow.h"

QuillmarkMainWindow::QuillmarkMainWindow(QWidget* parent)
    : QMainWindow(parent, Qt::FramelessWindowHint | Qt::WindowSystemMenuHint)
{
    setWindowTitle(tr("Quillmark"));
}

QuillmarkMainWindow::~QuillmarkMainWindow() = default;
