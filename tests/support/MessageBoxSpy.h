#pragma once

#include "app/CMessageBox.h"

#include <QList>
#include <QString>

// Takes every message box shown while it lives, so that no test blocks on a modal box.
class MessageBoxSpy
{
public:
    struct Box
    {
        QMessageBox::Icon icon;
        QString title;
        QString text;
    };

    MessageBoxSpy();
    ~MessageBoxSpy();

    const QList<Box>& boxes() const { return m_boxes; }
    int count() const { return m_boxes.size(); }
    void clear() { m_boxes.clear(); }

private:
    QList<Box> m_boxes;
    CMessageBox::Handler m_previous;
};
