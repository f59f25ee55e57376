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

namespace {

void quoteBareValue(QString &text, const QString &key, int openAt, int searchFrom)
{
    const int start = text.indexOf(key);
    text.insert(start + openAt, QLatin1Char('"'));
    const int next = text.indexOf(QLatin1Char('"'), start + searchFrom);
    text.insert(next - 1, QLatin1Char('"'));
}

} // namespace

QByteArray ReferenceParser::repairOnText(const QByteArray &frame)
{
    QString text = QString::fromLatin1(frame);
    bool repaired = false;
    if (text.contains(QLatin1String("Color"))) {
        quoteBareValue(text, QStringLiteral("Switch"), 8, 9);
        quoteBareValue(text, QStringLiteral("Bg_switch"), 11, 12);
        quoteBareValue(text, QStringLiteral("Color"), 7, 8);
        quoteBareValue(text, QStringLiteral("Bg_Color"), 10, 11);
        const int start = text.indexOf(QLatin1String("Move_dir"));
        text.insert(start + 10, QLatin1Char('"'));
        int close = text.indexOf(QLatin1Char(','), start + 10);
        if (close < 0)
            close = text.indexOf(QLatin1Char('}'), start + 10);
        text.insert(close, QLatin1Char('"'));
        repaired = true;
    }
    if (text.contains(QLatin1String("in"))) {
        text.replace(QLatin1String(":"), QLatin1String(":\""));
        text.replace(QLatin1String(","), QLatin1String("\","));
        text.replace(QLatin1String("}"), QLatin1String("\"}"));
        repaired = true;
    }
    return repaired ? text.toLatin1() : frame;
}
