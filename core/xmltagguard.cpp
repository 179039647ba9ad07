#include "core/xmltagguard.h"

// In UTF-16 all markup is ASCII with a zero byte beside it, so passing over the zeros reads both byte orders. A
// character above ASCII may then look like markup; to be refused for it a text would need hundreds of such in a row.
XmlTagGuard::Finding XmlTagGuard::accept(const char *data, qint64 size)
{
    for (qint64 i = 0; i < size; ++i) {
        if (data[i] != 0)
            accept(data[i]);
    }
    return m_finding;
}

void XmlTagGuard::accept(char unit)
{
    switch (m_state) {
    case Text:
        if (unit == '<')
            m_state = TagOpened;
        break;
    case TagOpened:
        m_state = unit == '!' ? MarkupOpened : unit == '?' ? Instruction : Tag;
        m_attributes = 0;
        break;
    case MarkupOpened:
        m_state = unit == '-' ? Comment : unit == '[' ? Cdata : DocumentType;
        break;
    case Comment:
        if (unit == '>' && m_last == '-' && m_beforeLast == '-')
            m_state = Text;
        break;
    case Cdata:
        if (unit == '>' && m_last == ']' && m_beforeLast == ']')
            m_state = Text;
        break;
    case Instruction:
        if (unit == '>' && m_last == '?')
            m_state = Text;
        break;
    case DocumentType:
        if (unit == '>') {
            m_state = Text;
        } else if (unit == '[' && m_finding == Harmless) {
            m_finding = Declarations;
        } else if (unit == '"' || unit == '\'') {
            m_state = Literal;
            m_quote = unit;
        }
        break;
    case Literal:
        if (unit == m_quote)
            m_state = DocumentType;
        break;
    case Tag:
        if (unit == '>') {
            m_state = Text;
        } else if (unit == '=') {
            if (++m_attributes > kMaxXmlAttributes && m_finding == Harmless)
                m_finding = TooManyAttributes;
        } else if (unit == '"' || unit == '\'') {
            m_state = Value;
            m_quote = unit;
        }
        break;
    case Value:
        if (unit == m_quote)
            m_state = Tag;
        break;
    }
    m_beforeLast = m_last;
    m_last = unit;
}
