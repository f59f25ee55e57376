#pragma once

#include <QByteArray>

// Cuts "{...}" commands out of the byte stream of one command connection.
// The application writes commands back to back without a terminator, so one
// read may hold several of them or only part of one. Bytes outside braces are
// dropped; of two opening braces before a closing one the later wins, so a
// stray "{" cannot swallow the command behind it.
class CommandCutter
{
public:
    // A partial command longer than this is dropped: a peer streaming
    // garbage must not grow the buffer without bound.
    static constexpr int MaxPartialCommand = 64 * 1024;

    void append(const QByteArray &bytes);
    // Takes the oldest complete command, braces included; false when none.
    bool next(QByteArray *command);

private:
    QByteArray m_buffer;
};
