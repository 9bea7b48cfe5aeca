#pragma once

#include "model/CDialogRoute.h"

#include <QList>
#include <QStringList>

#include <functional>

class QDialog;

// Takes every dialog run through the dialog route while it lives. Each dialog is handed, while it
// is open and modal, to the next queued step, which clicks through it as a user would; a dialog
// left open afterwards (or with no step queued) is rejected, so no test blocks on one.
class DialogDriver
{
public:
    using Step = std::function<void(QDialog* dialog)>;

    DialogDriver();
    ~DialogDriver();

    void then(Step step) { m_steps.append(std::move(step)); }
    // Window titles of the dialogs opened so far.
    const QStringList& titles() const { return m_titles; }
    int count() const { return m_titles.size(); }

private:
    QList<Step> m_steps;
    QStringList m_titles;
    CDialogRoute::Handler m_previous;
};
