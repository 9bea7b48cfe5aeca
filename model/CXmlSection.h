#pragma once

#include <QString>

class QXmlStreamReader;

// Token mechanics shared by the catalogue and settings readers of every list.
class CXmlSection
{
public:
    // True when the section loop must stop: the section's own end element, the end element
    // "data", the end of the reader, or an error.
    static bool AtSectionEnd(QXmlStreamReader& xml, const QString& section);

    // Reads the text of one field element whose start was just passed. Returns true with the
    // trimmed text when the element held non-empty text; an empty element, the end of the
    // document or an error return false and leave the reader where it is.
    static bool TakeText(QXmlStreamReader& xml, QString& text);
};
