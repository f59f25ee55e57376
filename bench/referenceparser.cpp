#include "referenceparser.h"

#include <QDebug>
#include <QJsonDocument>
#include <QJsonParseError>

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
        *reply = decodeOnText(frame);
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
    // Every byte must survive: QString::fromLatin1(QByteArray) stops at the first NUL.
    QString text = QString::fromLatin1(frame.constData(), frame.size());
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
        qDebug() << "add char osdortitle imf:" << text;
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

ParsedReply ReferenceParser::decodeOnText(const QByteArray &frame)
{
    ParsedReply reply;
    reply.frame = repairOnText(frame);
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(reply.frame, &error);
    if (error.error != QJsonParseError::NoError) {
        reply.error = error.errorString();
        qDebug() << "json format parse error!raw data:" << reply.frame << "error:" << reply.error;
        return reply;
    }
    reply.ok = true;
    reply.object = document.object();
    static const struct { const char *trigger; ReplySignal signal; } triggers[] = {
        {"ip", ReplySignal::NetWork},
        {"Volume", ReplySignal::Volume},
        {"type", ReplySignal::Version},
        {"video", ReplySignal::VideoMap},
        {"input", ReplySignal::InputState},
        {"audio", ReplySignal::AudioMap},
        {"IR", ReplySignal::IrMap},
        {"in", ReplySignal::InResolution},
        {"out", ReplySignal::OutResolution},
        {"switch", ReplySignal::Title},
    };
    for (const auto &t : triggers) {
        if (reply.frame.contains(t.trigger))
            reply.signals_.append(t.signal);
    }
    return reply;
}
