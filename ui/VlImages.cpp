#include "ui/VlImages.h"

#include <QHash>

namespace {
// GUI thread only, like every pixmap.
template <class Picture> Picture cached(const QString& path)
{
    static QHash<QString, Picture> st_pictures;
    auto found = st_pictures.constFind(path);
    if (found != st_pictures.constEnd())
        return *found;
    const Picture picture(path);
    st_pictures.insert(path, picture);
    return picture;
}
} // namespace

QPixmap VlImages::Pixmap(const QString& path)
{
    return cached<QPixmap>(path);
}

QIcon VlImages::Icon(const QString& path)
{
    return cached<QIcon>(path);
}
