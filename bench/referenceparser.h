#pragma once

#include "device/replyparser.h"

#include <QByteArray>

// The reply loop written the plain way: every pass strips blanks and line feeds
// from the whole buffer and rescans it from the front, repairs the frame on a
// QString, decodes it and searches it once per trigger. Quadratic on a burst;
// kept as the yardstick that ReplyParser must match frame for frame. It shares
// no code with ReplyParser, so that a change there cannot move both alike.
class ReferenceParser
{
public:
    void append(const QByteArray &bytes) { m_buffer.append(bytes); }
    // One pass of the loop: cuts at most one frame.
    bool next(ParsedReply *reply);
    int bufferedBytes() const { return m_buffer.size(); }

    // The repairs as first written, on a Latin-1 QString copy, logging the
    // caption line through the debug stream; the benchmark checks that
    // ReplyParser::repair gives the same bytes and the same line.
    static QByteArray repairOnText(const QByteArray &frame);
    // Repairs, decodes and routes one frame; logs a frame that does not decode.
    static ParsedReply decodeOnText(const QByteArray &frame);

private:
    QByteArray m_buffer;
};
