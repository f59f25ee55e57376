#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QtAlgorithms>

// The reply signals of the device link, in the order a frame raises them.
enum class ReplySignal {
    NetWork,        // "ip"
    Volume,         // "Volume"
    Version,        // "type"
    VideoMap,       // "video"
    InputState,     // "input"
    AudioMap,       // "audio"
    IrMap,          // "IR"
    InResolution,   // "in"
    OutResolution,  // "out"
    Title,          // "switch"
};

const char *replySignalName(ReplySignal signal);

// The signals one frame raises, in the order it raises them, which is the
// enum's: a set of bits keeps that order, and naming a frame's signals
// allocates nothing (a QVector per frame cost a malloc and a free).
class ReplySignals
{
public:
    class const_iterator
    {
    public:
        explicit const_iterator(unsigned bits) : m_bits(bits) {}
        ReplySignal operator*() const { return ReplySignal(qCountTrailingZeroBits(m_bits)); }
        const_iterator &operator++() { m_bits &= m_bits - 1; return *this; }
        bool operator==(const_iterator other) const { return m_bits == other.m_bits; }
        bool operator!=(const_iterator other) const { return m_bits != other.m_bits; }

    private:
        unsigned m_bits;
    };

    void append(ReplySignal signal) { m_bits |= 1u << unsigned(signal); }
    bool contains(ReplySignal signal) const { return m_bits & (1u << unsigned(signal)); }
    bool isEmpty() const { return m_bits == 0; }
    int size() const { return int(qPopulationCount(m_bits)); }
    const_iterator begin() const { return const_iterator(m_bits); }
    const_iterator end() const { return const_iterator(0); }
    bool operator==(const ReplySignals &other) const { return m_bits == other.m_bits; }
    bool operator!=(const ReplySignals &other) const { return m_bits != other.m_bits; }

private:
    unsigned m_bits = 0;
};

struct ParsedReply
{
    QByteArray frame;           // after the repairs
    bool ok = false;
    QString error;              // decoder's text when !ok
    QJsonObject object;         // when ok
    ReplySignals signals_;
};

// Cuts the device's back-to-back JSON objects out of the received byte stream,
// repairs the firmware's bare values, decodes them and names the signals each
// one raises. Blanks and line feeds are removed from the whole stream (the
// firmware pads its replies); a frame runs from a "{" to the first "}" after it.
//
// Work is linear in the bytes received: blanks are removed and junk in front of
// a "{" is dropped as the bytes arrive, and every byte is looked at a bounded
// number of times. A partial frame that grows past MaxPartialFrame without its
// "}" is dropped, so a peer streaming garbage cannot grow the buffer. Of a run
// of frames that do not decode, only the first and every BadFrameLogInterval-th
// are logged, so such a peer cannot grow the log file either.
class ReplyParser
{
public:
    static constexpr int MaxPartialFrame = 1024 * 1024;
    static constexpr int BadFrameLogInterval = 1000;

    void append(const QByteArray &bytes);
    // Takes the oldest complete frame; false when none is complete yet.
    bool next(ParsedReply *reply);
    void clear();

    bool hasCompleteFrame() const { return m_completeFrames > 0; }
    int bufferedBytes() const { return m_buffer.size() - m_head; }

    // Building blocks, shared with tools that replay captured replies.
    static QByteArray repair(const QByteArray &frame);
    static ReplySignals route(const QByteArray &frame);

private:
    static ParsedReply decodeQuietly(const QByteArray &rawFrame);
    static QByteArray repairFindingWords(const QByteArray &frame, unsigned *words);
    static ReplySignals routeWords(unsigned words);
    static void logBadFrame(const ParsedReply &reply, int inARow);

    QByteArray m_buffer;
    int m_head = 0;             // start of the oldest unconsumed frame
    int m_completeFrames = 0;
    bool m_inFrame = false;     // a "{" has been seen and its "}" has not
    int m_frameStart = 0;       // where the partial frame starts
    int m_badFramesInARow = 0;
};
