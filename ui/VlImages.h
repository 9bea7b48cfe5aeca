#pragma once

#include <QIcon>
#include <QPixmap>

// Pictures from the resources, decoded once and then shared. A window with hundreds of product
// cards shows the same few pictures thousands of times.
class VlImages
{
public:
    static QPixmap Pixmap(const QString& path);
    static QIcon Icon(const QString& path);
};
