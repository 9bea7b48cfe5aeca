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
};
