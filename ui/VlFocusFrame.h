#pragma once

#include <Qt>

#include <functional>

class QKeyEvent;
class QWidget;

// The keyboard-focus mark of the window's own image buttons, which the style does not draw.
namespace VlFocusFrame {
// Marks only focus that came from the keyboard; a click or the window's first focus shows nothing.
void Paint(QWidget* widget, Qt::FocusReason reason);
bool FromKeyboard(Qt::FocusReason reason);
// Space, Return and Enter press an image button as they press a push button: `press` runs once
// per key press (not for its repeats). False for any other key, which the widget passes on.
bool HandlePressKey(QKeyEvent* event, const std::function<void()>& press);
} // namespace VlFocusFrame
