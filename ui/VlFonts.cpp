#include "ui/VlFonts.h"

#include <QApplication>
#include <QHash>

QFont VlFonts::Font(int pointSize, int weight, bool italic)
{
    // GUI thread only. The family is part of the key: a restart may bring another application font.
    static QHash<QString, QFont> st_fonts;
    const QString family = QApplication::font().family();
    const QString key = family + QLatin1Char('|') + QString::number(pointSize) + QLatin1Char('|') +
                        QString::number(weight) + (italic ? QLatin1Char('i') : QLatin1Char('n'));
    auto found = st_fonts.constFind(key);
    if (found != st_fonts.constEnd())
        return *found;
    QFont font(family);
    font.setPointSize(pointSize);
    font.setWeight(weight);
    font.setItalic(italic);
    st_fonts.insert(key, font);
    return font;
}

QFont VlFonts::Relative(int delta, int weight, bool italic)
{
    return Font(QApplication::font().pointSize() + delta, weight, italic);
}
