#include "ui/QuillmarkMainWindow.h"

#include "app/Application.h"

QuillmarkMainWindow::QuillmarkMainWindow(QWidget* parent)
    : QMainWindow(parent, Qt::FramelessWindowHint | Qt::WindowSystemMenuHint)
{
    setWindowTitle(tr("Quillmark"));
    m_dataModel.Init(Application::st_strVersion);
}

QuillmarkMainWindow::~QuillmarkMainWindow()
{
    m_dataModel.Save();
    m_dataModel.Clear();
}
