#include "app/VlAtom.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QObject>

QString VlAtom::translate(const char* text) const
{
    // Every user of the mix-in is a QObject; its class name is the translation context.
    if (const auto* object = dynamic_cast<const QObject*>(this))
        return QCoreApplication::translate(object->metaObject()->className(), text);
    return QString::fromUtf8(text);
}
