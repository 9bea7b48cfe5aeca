#pragma once

#include <QString>

#include <functional>

class CDataModel;
class QDialog;
class QWidget;

// What a dialog is for. The data model asks for dialogs by purpose; the user interface decides
// which class shows it, so nothing below the user interface knows a dialog class.
enum class EDlgPurpose
{
    Settings,
    Help,
    UpdateDatasets,
    ResetDatasets,
    RemoveBackups,
    UpdateQuillmark,
};

// Every dialog of the program is run modally through here, as message boxes go through
// CMessageBox. Tests and tools install a handler that receives the real dialog while it is open
// and modal, so they can click through it instead of blocking on it.
class CDialogRoute
{
public:
    // Builds the dialog for a purpose, initialised with the data model and the title; null when
    // the user interface has none for it. Titles are passed untranslated (marked with
    // QT_TRANSLATE_NOOP("DlgBase", ...)), so that the dialog can show them in any language.
    using Builder =
        std::function<QDialog*(EDlgPurpose purpose, CDataModel* model, const QString& title, QWidget* parent)>;
    // Receives each dialog once its modal loop runs. A dialog still open when the handler returns
    // is rejected, so a test can never hang on it.
    using Handler = std::function<void(QDialog* dialog)>;

    // Builds the dialog through the installed builder with the main window as parent, runs it and
    // deletes it. Returns the dialog's result, or -1 when no dialog could be built.
    static int Run(EDlgPurpose purpose, CDataModel* model, const QString& title);
    // Runs a dialog the caller built. Whatever ends the modal loop (a button, Escape, the window
    // manager, the end of the application), the dialog is closed through done() afterwards.
    static int Exec(QDialog* dialog);

    static Builder SetBuilder(Builder builder);
    static Handler SetHandler(Handler handler);
};
