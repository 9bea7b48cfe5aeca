#pragma once

#include <QString>

// Mix-in of every custom widget, dialog and engine: the translated text for the object's own
// class context. Widgets re-set their captions in retranslate() on QEvent::LanguageChange.
class VlAtom
{
public:
    virtual ~VlAtom() = default;

    QString translate(const char* text) const;
    virtual void retranslate() {}
};
