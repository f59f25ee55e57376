#include "device/replyparser.h"

#include "device/logexcerpt.h"

#include <QDebug>
#include <QJsonDocument>
#include <QJsonParseError>

const char *replySignalName(ReplySignal signal)
{
    switch (signal) {
    case ReplySignal::NetWork: return "receiveNetWorkImforamtionSig";
    case ReplySignal::Volume: return "receiveVolumnImformationSig";
    case ReplySignal::Version: return "receiveVersionSig";
    case ReplySignal::VideoMap: return "receiveVideoMapSig";
    case ReplySignal::InputState: return "receiveInputChannelStateSig";
    case ReplySignal::AudioMap: return "receiveAudioMapSig";
    case ReplySignal::IrMap: return "receiveIrMapSig";
    case ReplySignal::InResolution: return "receiveInChannelResolutionMapSig";
    case ReplySignal::OutResolution: return "receiveOutChannelResolutionMapSig";
    case ReplySignal::Title: return "receiveTitleImfSig";
    }
    return "";
}

void ReplyParser::append(const QByteArray &bytes)
{
    const char *p = bytes.constData();
    const char *const end = p + bytes.size();
    while (p < end) {
        if (!m_inFrame) {
            // Anything in front of a "{" would be thrown away with the next frame.
            const char *open = static_cast<const char *>(memchr(p, '{', size_t(end - p)));
            if (!open)
                break;
            if (m_head == m_buffer.size()) {
                m_buffer.clear();
                m_head = 0;
            }
            m_inFrame = true;
            m_frameStart = m_buffer.size();
            m_buffer.append('{');
            p = open + 1;
            continue;
        }
        const char c = *p++;
        if (c == ' ' || c == '\n')
            continue;
        m_buffer.append(c);
        if (c == '}') {
            m_inFrame = false;
            ++m_completeFrames;
        } else if (m_buffer.size() - m_frameStart > MaxPartialFrame) {
            qDebug() << "receive buffer: dropped" << (m_buffer.size() - m_frameStart)
                     << "bytes of a reply without its closing brace";
            m_buffer.truncate(m_frameStart);
            m_inFrame = false;
        }
    }
}

bool ReplyParser::next(ParsedReply *reply)
{
    if (m_completeFrames == 0)
        return false;
    const int close = m_buffer.indexOf('}', m_head);
    Q_ASSERT(close >= 0);
    const QByteArray raw = m_buffer.mid(m_head, close - m_head + 1);
    m_head = close + 1;
    --m_completeFrames;
    // Keep the front compact without moving bytes on every frame.
    if (m_head == m_buffer.size()) {
        m_buffer.clear();
        m_head = 0;
        m_frameStart = 0;
    } else if (m_head > 4096 && m_head > m_buffer.size() / 2) {
        m_buffer.remove(0, m_head);
        m_frameStart -= m_head;
        m_head = 0;
    }
    *reply = decodeQuietly(raw);
    m_badFramesInARow = reply->ok ? 0 : m_badFramesInARow + 1;
    if (m_badFramesInARow == 1 || (m_badFramesInARow > 0 && m_badFramesInARow % BadFrameLogInterval == 0))
        logBadFrame(*reply, m_badFramesInARow);
    return true;
}

void ReplyParser::clear()
{
    m_buffer.clear();
    m_head = 0;
    m_completeFrames = 0;
    m_inFrame = false;
    m_frameStart = 0;
    m_badFramesInARow = 0;
}

namespace {

// The caption and OSD replies leave five values bare. The quote positions are
// fixed offsets from each key name, as the firmware lays the frame out.
void quoteBareValue(QString &text, const QString &key, int openAt, int searchFrom)
{
    const int start = text.indexOf(key);
    text.insert(start + openAt, QLatin1Char('"'));
    const int next = text.indexOf(QLatin1Char('"'), start + searchFrom);
    text.insert(next - 1, QLatin1Char('"'));
}

} // namespace

QByteArray ReplyParser::repair(const QByteArray &frame)
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
        qDebug() << "add char osdortitle imf:" << text;
        repaired = true;
    }
    if (text.contains(QLatin1String("in"))) {
        // Resolution and signal-state replies carry bare words: quote every value.
        text.replace(QLatin1String(":"), QLatin1String(":\""));
        text.replace(QLatin1String(","), QLatin1String("\","));
        text.replace(QLatin1String("}"), QLatin1String("\"}"));
        repaired = true;
    }
    return repaired ? text.toLatin1() : frame;
}

QVector<ReplySignal> ReplyParser::route(const QByteArray &frame)
{
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
    QVector<ReplySignal> result;
    for (const auto &t : triggers) {
        if (frame.contains(t.trigger))
            result.append(t.signal);
    }
    return result;
}

ParsedReply ReplyParser::decode(const QByteArray &rawFrame)
{
    const ParsedReply reply = decodeQuietly(rawFrame);
    if (!reply.ok)
        logBadFrame(reply, 1);
    return reply;
}

void ReplyParser::logBadFrame(const ParsedReply &reply, int inARow)
{
    QDebug line = qDebug();
    line << "json format parse error!raw data:" << logExcerpt(reply.frame) << "error:" << reply.error;
    if (inARow > 1)
        line << "(" << inARow << "bad frames in a row, logged 1 in" << BadFrameLogInterval << ")";
}

ParsedReply ReplyParser::decodeQuietly(const QByteArray &rawFrame)
{
    ParsedReply reply;
    reply.frame = repair(rawFrame);
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(reply.frame, &error);
    if (error.error != QJsonParseError::NoError) {
        reply.error = error.errorString();
        return reply;
    }
    reply.ok = true;
    reply.object = document.object();
    reply.signals_ = route(reply.frame);
    return reply;
}
