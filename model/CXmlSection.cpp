#include "model/CXmlSection.h"

#include <QXmlStreamReader>

bool CXmlSection::AtSectionEnd(QXmlStreamReader& xml, const QString& section)
{
    if (xml.tokenType() == QXmlStreamReader::EndDocument)
        return true;
    if (xml.isEndElement() && (xml.name() == section || xml.name() == QLatin1String("data")))
        return true;
    return xml.atEnd() || xml.hasError();
}

bool CXmlSection::TakeText(QXmlStreamReader& xml, QString& text)
{
    if (xml.tokenType() == QXmlStreamReader::EndDocument || xml.isEndElement() || xml.atEnd() || xml.hasError())
        return false;
    text = xml.text().toString().trimmed();
    const bool taken = xml.isCharacters() && !text.isEmpty();
    xml.readNext();
    return taken;
}
