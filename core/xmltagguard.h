#pragma once

#include <QtCore/QtGlobal>

// Looks at the bytes of an XML file before a parser does, for what costs Qt's parser more than its length: it compares
// each attribute of a tag with all before it, each declaration of a document type with all others, and what is declared
// (entities, attributes with defaults) can multiply the file. It reads UTF-16 and every encoding in which markup is
// ASCII; isWideText() tells which of the two it takes the file for. Private to the two libraries.
constexpr int kMaxXmlAttributes = 256;

class XmlTagGuard
{
public:
    enum Finding
    {
        Harmless,
        TooManyAttributes, // more than kMaxXmlAttributes in one tag
        InternalSubset,    // "[" in a document type
    };

    // Takes the next bytes, cut anywhere. A finding stays.
    Finding accept(const char *data, qint64 size);

    bool isWideText() const { return m_encoding == Utf16Le || m_encoding == Utf16Be; }

private:
    enum Encoding
    {
        Unknown,
        AsciiBytes,
        Utf16Le,
        Utf16Be,
    };
    enum State
    {
        Text,
        TagOpened,     // behind "<"
        MarkupOpened,  // behind "<!"
        CommentOpened, // behind "<!-"
        Comment,
        Cdata,
        Instruction,
        DocumentType,
        DocumentTypeLiteral,
        Tag,
        Value, // in the quotes of an attribute's value
    };

    void acceptByte(char byte);
    void acceptUnit(char unit);
    void enter(State state);

    Encoding m_encoding = Unknown;
    qint64 m_bytes = 0;
    char m_evenByte = 0;

    State m_state = Text;
    Finding m_finding = Harmless;
    char m_quote = 0;
    char m_last = 0; // the two before the current one, in the same state
    char m_beforeLast = 0;
    int m_attributes = 0;
};
