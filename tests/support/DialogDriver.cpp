#include "support/DialogDriver.h"

#include <QDialog>

DialogDriver::DialogDriver()
{
    m_previous = CDialogRoute::SetHandler([this](QDialog* dialog) {
        m_titles.append(dialog->windowTitle());
        if (!m_steps.isEmpty())
            m_steps.takeFirst()(dialog);
    });
}

DialogDriver::~DialogDriver()
{
    CDialogRoute::SetHandler(m_previous);
}
