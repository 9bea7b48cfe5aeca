#include "support/MessageBoxSpy.h"

MessageBoxSpy::MessageBoxSpy()
{
    m_previous = CMessageBox::setHandler([this](QMessageBox::Icon icon, const QString& title, const QString& text) {
        m_boxes.append(Box{icon, title, text});
    });
}

MessageBoxSpy::~MessageBoxSpy()
{
    CMessageBox::setAnswer(true);
    CMessageBox::setHandler(m_previous);
}
