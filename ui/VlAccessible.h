#pragma once

// The window's own image buttons (window buttons, the header's action buttons, the category
// buttons, the cards' commands) are plain widgets to Qt; assistive technology learns from here
// that they are buttons that can be pressed, and which category is the chosen one.
namespace VlAccessible {
// Safe to call more than once.
void Install();
} // namespace VlAccessible
