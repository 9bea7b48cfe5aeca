#pragma once

#include <QColor>

class QWidget;

// Colours shared by the styled widgets.
class VlColors
{
public:
    // Text colour for every colour group, so that disabled edits keep it too.
    static void SetTextColor(QWidget* widget, const QColor& color);
    static QColor PathOk() { return QColor(0, 100, 0); }
    static QColor PathBad() { return QColor(255, 0, 0); }
    // Text on the dialogs' light background, and the same for errors.
    static QColor DialogText() { return QColor(35, 35, 45); }
    static QColor ErrorText() { return QColor(200, 0, 0); }
    // Drop-down lists: each pair reads at 4.5:1 or better (WCAG AA).
    static QColor PopupBackground() { return QColor(250, 250, 255); }
    static QColor PopupText() { return QColor(30, 30, 45); }
    static QColor PopupHighlight() { return QColor(50, 90, 145); }
    static QColor PopupDisabledText() { return QColor(100, 100, 112); }
    static QColor ProgressChunk() { return QColor(70, 130, 190); }
    // Something the user should act on soon, such as an expired cycle; dark enough for small text.
    static QColor Warning() { return QColor(176, 80, 0); }
};
