#pragma once

#include "core/xmldocument.h"

#include <QtXml/QDomDocument>

// Makes the elements of a document. Private to geo/.
class ElementMaker
{
public:
    explicit ElementMaker(QDomDocument *document)
        : m_document(document)
    {}
    QDomElement create(const QString &name) { return m_document->createElement(name); }
    QDomElement append(QDomElement *parent, const QString &name)
    {
        QDomElement element = create(name);
        parent->appendChild(element);
        return element;
    }
    // An element with a text.
    void appendText(QDomElement *parent, const QString &name, const QString &text)
    {
        append(parent, name).appendChild(m_document->createTextNode(withoutNonXmlCharacters(text)));
    }

private:
    QDomDocument *m_document;
};
