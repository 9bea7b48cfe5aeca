#include "ui/VlColors.h"

#include <QHash>
#include <QPair>
#include <QPalette>
#include <QWidget>

void VlColors::SetTextColor(QWidget* widget, const QColor& color)
{
    // Hundreds of cards colour their labels alike from the same starting palette; sharing the
    // result saves building a palette for each. GUI thread only.
    static QHash<QPair<qint64, QRgb>, QPalette> st_palettes;
    const QPalette base = widget->palette();
    const QPair<qint64, QRgb> key(base.cacheKey(), color.rgba());
    auto found = st_palettes.constFind(key);
    if (found != st_palettes.constEnd()) {
        widget->setPalette(*found);
        return;
    }
    QPalette pal = base;
    for (QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        pal.setColor(group, QPalette::WindowText, color);
        pal.setColor(group, QPalette::Text, color);
        pal.setColor(group, QPalette::ButtonText, color);
    }
    if (st_palettes.size() > 256) // palettes that come and go must not pile up
        st_palettes.clear();
    st_palettes.insert(key, pal);
    widget->setPalette(pal);
}
