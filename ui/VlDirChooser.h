#pragma once

#include <QString>

#include <functional>

class QWidget;

// Every directory chooser of the program goes through here, so that tests can answer it instead of
// blocking on a modal file dialog.
class VlDirChooser
{
public:
    // Answers the chosen folder, or an empty string when the user cancelled.
    using Handler = std::function<QString(const QString& title, const QString& startDir)>;

    // Existing directories only, symbolic links not resolved.
    static QString GetExistingDirectory(QWidget* parent, const QString& title, const QString& startDir);

    // With a handler installed the dialog is never shown. Returns the previous handler.
    static Handler SetHandler(Handler handler);
};
