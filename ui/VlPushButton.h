#pragma once

#include <QPushButton>

// Push button of the dialogs: a light grey-blue gradient with a rounded border, matching the
// window's header; the border turns blue under the mouse and with the keyboard focus.
class VlPushButton : public QPushButton
{
    Q_OBJECT

public:
    explicit VlPushButton(QWidget* parent = nullptr);
    VlPushButton(const QString& text, QWidget* parent = nullptr);

    // The style sheet, for panels that keep plain push buttons but sit in a dialog.
    static QString StyleSheet();
    // A caption without its mnemonic mark, for the same words used in a message or a title.
    static QString Plain(QString caption);

private:
    void Style();
};
