#include "ui/VlImages.h"

#include <QHash>

QPixmap VlImages::Pixmap(const QString& path)
{
    // GUI thread only, like every pixmap.
    static QHash<QString, QPixmap> st_pixmaps;
    auto found = st_pixmaps.constFind(path);
    if (found != st_pixmaps.constEnd())
        return *found;
    const QPixmap pixmap(path);
    st_pixmaps.insert(path, pixmap);
    return pixmap;
}

QIcon VlImages::Icon(const QString& path)
{
    static QHash<QString, QIcon> st_icons;
    auto found = st_icons.constFind(path);
    if (found != st_icons.constEnd())
        return *found;
    const QIcon icon(path);
    st_icons.insert(path, icon);
    return icon;
}
