#include "ui/VlDefaultEdit.h"

#include <QApplication>
#include <QFont>

VlDefaultEdit::VlDefaultEdit(QWidget* parent) : QLineEdit(parent)
{
    QFont f(QApplication::font().family());
    f.setPointSize(QApplication::font().pointSize());
    setFont(f);
    setMinimumHeight(22);
}

QString VlDefaultEdit::StyleRules()
{
    // The edit is mostly shown disabled; it must still read like a field, not like greyed text.
    return QStringLiteral("VlDefaultEdit { background-color: rgb(252, 252, 255); "
                          "border: 1px solid rgb(170, 170, 185); border-radius: 2px; padding: 1px 4px; }");
}
