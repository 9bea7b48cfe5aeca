#pragma once

#include <QFont>

// Fonts of the styled widgets, in the application's family. One font object per kind is shared by
// every widget that uses it, so hundreds of product cards do not each look the same font up.
class VlFonts
{
public:
    static QFont Font(int pointSize, int weight = QFont::Normal, bool italic = false);
    // The application's point size plus `delta`.
    static QFont Relative(int delta, int weight = QFont::Normal, bool italic = false);
};
