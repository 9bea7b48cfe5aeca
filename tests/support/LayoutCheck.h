#pragma once

#include <QStringList>

class QWidget;

// What a user would see cut off: texts squeezed below what they need.
namespace LayoutCheck {

// Every shown label, button and check box under `root` whose text does not fit: narrower or
// lower than its text needs (a wrapping label: lower than its text at its width). Labels that
// give way on purpose (size policy Ignored) are left out.
QStringList CutTexts(const QWidget* root);

} // namespace LayoutCheck
