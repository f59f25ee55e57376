#include "referenceparser.h"

bool ReferenceParser::next(ParsedReply *reply)
{
    m_buffer.replace(" ", "");
    m_buffer.replace("\n", "");
    if (m_buffer.isEmpty())
        return false;
    int pos = 0;
    for (;;) {
        const QByteArray rest = m_buffer.mid(pos);
        if (!rest.contains('}'))
            return false;
        if (!rest.startsWith('{')) {
            if (++pos >= m_buffer.size())
                return false;
            continue;
        }
        const QByteArray frame = rest.left(rest.indexOf('}') + 1);
        m_buffer.remove(0, pos + frame.size());
        *reply = ReplyParser::decode(frame);
        return true;
    }
}
