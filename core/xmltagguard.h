#pragma once

#include <QtCore/QtGlobal>

// Looks at the bytes of an XML file before a parser does, for what costs Qt's parser more than its length: it compares
// each attribute of a tag with all before it, each declaration of a document type with all others, and what is declared
// (entities, attributes with defaults) can multiply the file. Private to libaveldoran.
constexpr int kMaxXmlAttributes = 256;

class XmlTagGuard
{
public:
    enum Finding
    {
        Harmless,
        TooManyAttributes, // more than kMaxXmlAttributes in one tag
        Declarations,      // "[" in a document type
    };

    // Takes the next bytes, cut anywhere. A finding stays.
    Finding accept(const char *data, qint64 size);

private:
    enum State
    {
        Text,
        TagOpened,    // behind "<"
        MarkupOpened, // behind "<!"
        Comment,
        Cdata,
        Instruction,
        DocumentType,
        Literal, // in quotes in a document type
        Tag,
        Value, // in the quotes of an attribute's value
    };

    void accept(char unit);

    State m_state = Text;
    Finding m_finding = Harmless;
    char m_quote = 0;
    char m_last = 0; // the two before the current one
    char m_beforeLast = 0;
    int m_attributes = 0;
};
