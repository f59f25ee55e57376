#pragma once

#include "device/replyparser.h"

#include <QByteArray>

// The reply loop written the plain way: every pass strips blanks and line feeds
// from the whole buffer and rescans it from the front. Quadratic on a burst;
// kept as the yardstick that ReplyParser must match frame for frame.
class ReferenceParser
{
public:
    void append(const QByteArray &bytes) { m_buffer.append(bytes); }
    // One pass of the loop: cuts at most one frame.
    bool next(ParsedReply *reply);
    int bufferedBytes() const { return m_buffer.size(); }

    // The repairs as first written, on a Latin-1 QString copy; the benchmark
    // checks that ReplyParser::repair gives the same bytes.
    static QByteArray repairOnText(const QByteArray &frame);

private:
    QByteArray m_buffer;
};
