#include "core/xmltagguard.h"

namespace {

constexpr char kNotAscii = '\x80'; // stands for any character that is no markup

} // namespace

XmlTagGuard::Finding XmlTagGuard::accept(const char *data, qint64 size)
{
    for (qint64 i = 0; i < size; ++i)
        acceptByte(data[i]);
    return m_finding;
}

// The first two bytes tell the encoding, as they do to the parser: a byte order mark, or a zero beside the first "<".
void XmlTagGuard::acceptByte(char byte)
{
    const bool isSecond = m_bytes % 2 == 1;
    if (m_encoding == Unknown && isSecond) {
        if ((m_evenByte == '\xff' && byte == '\xfe') || byte == 0) {
            m_encoding = Utf16Le;
        } else if ((m_evenByte == '\xfe' && byte == '\xff') || m_evenByte == 0) {
            m_encoding = Utf16Be;
        } else {
            m_encoding = AsciiBytes;
            acceptUnit(m_evenByte);
        }
    }
    ++m_bytes;
    if (m_encoding == AsciiBytes)
        acceptUnit(byte);
    else if (!isSecond)
        m_evenByte = byte;
    else if (m_encoding == Utf16Le)
        acceptUnit(byte == 0 ? m_evenByte : kNotAscii);
    else
        acceptUnit(m_evenByte == 0 ? byte : kNotAscii);
}

void XmlTagGuard::enter(State state)
{
    m_state = state;
    m_last = 0;
    m_beforeLast = 0;
}

void XmlTagGuard::acceptUnit(char unit)
{
    const bool isQuote = unit == '"' || unit == '\'';
    const State before = m_state;
    switch (m_state) {
    case Text:
        if (unit == '<')
            enter(TagOpened);
        break;
    case TagOpened:
        enter(unit == '!' ? MarkupOpened : unit == '?' ? Instruction : Tag);
        m_attributes = 0;
        break;
    case MarkupOpened:
        enter(unit == '-' ? CommentOpened : unit == '[' ? Cdata : DocumentType);
        break;
    case CommentOpened:
        enter(Comment);
        break;
    case Comment:
        if (unit == '>' && m_last == '-' && m_beforeLast == '-')
            enter(Text);
        break;
    case Cdata:
        if (unit == '>' && m_last == ']' && m_beforeLast == ']')
            enter(Text);
        break;
    case Instruction:
        if (unit == '>' && m_last == '?')
            enter(Text);
        break;
    case DocumentType:
        if (unit == '>') {
            enter(Text);
        } else if (unit == '[' && m_finding == Harmless) {
            m_finding = InternalSubset;
        } else if (isQuote) {
            m_quote = unit;
            enter(DocumentTypeLiteral);
        }
        break;
    case DocumentTypeLiteral:
        if (unit == m_quote)
            enter(DocumentType);
        break;
    case Tag:
        if (unit == '>') {
            enter(Text);
        } else if (unit == '=') {
            if (++m_attributes > kMaxXmlAttributes && m_finding == Harmless)
                m_finding = TooManyAttributes;
        } else if (isQuote) {
            m_quote = unit;
            enter(Value);
        }
        break;
    case Value:
        if (unit == m_quote)
            enter(Tag);
        break;
    }
    if (m_state == before) {
        m_beforeLast = m_last;
        m_last = unit;
    }
}
