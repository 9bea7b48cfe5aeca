#pragma once

#include <QMessageBox>
#include <QString>

#include <functional>

class QWidget;

// Every message box of the program goes through here, so that tests can take the box instead of
// blocking on it, and so that hard errors look the same everywhere.
class CMessageBox
{
public:
    using Handler = std::function<void(QMessageBox::Icon icon, const QString& title, const QString& text)>;

    // Modal box with the critical icon; title "Error" unless another is given.
    static void critical(const QString& text, const QString& title = QStringLiteral("Error"),
                         QWidget* parent = nullptr);
    // Modal box with any icon (NoIcon for the reader's "parseXML" box).
    static void show(QMessageBox::Icon icon, const QString& title, const QString& text, QWidget* parent = nullptr);

    // A question with Yes and No, No the default; true for Yes. With a handler installed the box
    // goes to it (icon Question) and the answer set with setAnswer is taken.
    static bool ask(const QString& text, const QString& title, QWidget* parent = nullptr);

    // With a handler installed, boxes are handed to it and never shown. Returns the previous one.
    static Handler setHandler(Handler handler);
    // The answer a handler gives to questions; Yes unless set.
    static void setAnswer(bool yes);
};
