#pragma once

#include <Qt>

class QWidget;

// The keyboard-focus mark of the window's own image buttons, which the style does not draw.
namespace VlFocusFrame {
// Marks only focus that came from the keyboard; a click or the window's first focus shows nothing.
void Paint(QWidget* widget, Qt::FocusReason reason);
bool FromKeyboard(Qt::FocusReason reason);
} // namespace VlFocusFrame
