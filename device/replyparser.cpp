#include "device/replyparser.h"

#include "device/logexcerpt.h"

#include <QDebug>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QLoggingCategory>

#include <array>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

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
        // Copy the run up to the next blank, line feed or "}" in one go: appending
        // byte by byte cost more than decoding the frames.
        const char *run = static_cast<const char *>(memchr(p, '}', size_t(end - p)));
        if (!run)
            run = end;
        if (const char *blank = static_cast<const char *>(memchr(p, ' ', size_t(run - p))))
            run = blank;
        if (const char *feed = static_cast<const char *>(memchr(p, '\n', size_t(run - p))))
            run = feed;
        const int room = MaxPartialFrame - (m_buffer.size() - m_frameStart);
        if (run - p > room) {
            // The byte that takes the partial frame past the limit drops it.
            const int dropped = m_buffer.size() - m_frameStart + room + 1;
            qDebug() << "receive buffer: dropped" << dropped << "bytes of a reply without its closing brace";
            m_buffer.truncate(m_frameStart);
            m_inFrame = false;
            p += room + 1;
            continue;
        }
        m_buffer.append(p, int(run - p));
        p = run;
        if (p == end)
            break;
        const char c = *p++;
        if (c == '}') {
            m_buffer.append(c);
            m_inFrame = false;
            ++m_completeFrames;
        }
    }
}

bool ReplyParser::next(ParsedReply *reply)
{
    if (m_completeFrames == 0)
        return false;
    // memchr: QByteArray::indexOf(char) looks at one byte per step.
    const char *const head = m_buffer.constData() + m_head;
    const auto *brace = static_cast<const char *>(memchr(head, '}', size_t(m_buffer.size() - m_head)));
    Q_ASSERT(brace);
    const int close = m_head + int(brace - head);
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

// Inserts as QString::insert(int, QChar) does, which the repairs were first
// written with and whose results the log and the decoder have seen since: a
// negative position counts from the end, a position past the end pads with blanks.
void insertChar(QByteArray &text, int at, char c)
{
    if (at < 0)
        at += text.size();
    if (at < 0)
        return;
    if (at > text.size())
        text.append(QByteArray(at - text.size(), ' '));
    text.insert(at, c);
}

// QByteArray::indexOf through memchr: Qt's own searches (and memmem, for keys
// this short and this near) cost more than the rest of the caption repair.
int indexOf(const QByteArray &text, const char *key)
{
    const auto length = ptrdiff_t(strlen(key));
    const char *const begin = text.constData();
    const char *const end = begin + text.size();
    for (const char *p = begin; end - p >= length; ++p) {
        p = static_cast<const char *>(memchr(p, key[0], size_t(end - p - length + 1)));
        if (!p)
            break;
        if (memcmp(p, key, size_t(length)) == 0)
            return int(p - begin);
    }
    return -1;
}

int indexOf(const QByteArray &text, char c, int from)
{
    if (from < 0)
        from = qMax(from + text.size(), 0);
    if (from >= text.size())
        return -1;
    const void *found = memchr(text.constData() + from, c, size_t(text.size() - from));
    return found ? int(static_cast<const char *>(found) - text.constData()) : -1;
}

// The caption and OSD replies leave five values bare. The quote positions are
// fixed offsets from each key name, as the firmware lays the frame out.
void quoteBareValue(QByteArray &text, const char *key, int openAt, int searchFrom)
{
    const int start = indexOf(text, key);
    insertChar(text, start + openAt, '"');
    const int next = indexOf(text, '"', start + searchFrom);
    insertChar(text, next - 1, '"');
}

// Logs the caption text as `qDebug() << "add char osdortitle imf:" << text` does
// (log readers match the debug stream's quotes and escapes), built in one
// allocation and only when debug output is kept: through the debug stream, the
// line cost half of all the repairs of a burst.
void logCaptionRepair(const QByteArray &text)
{
    const QLoggingCategory *category = QLoggingCategory::defaultCategory();
    if (!category || !category->isDebugEnabled())
        return;
    // Per byte, what the debug stream writes for it: the byte itself (width 1),
    // a backslash and a letter (2), or \u00XX (6).
    struct Escape { char letter; unsigned char width; };
    static const auto escapes = [] {
        std::array<Escape, 256> table{};
        for (int c = 0; c < 256; ++c) {
            switch (c) {
            case '"': case '\\': table[c] = {char(c), 2}; break;
            case '\b': table[c] = {'b', 2}; break;
            case '\f': table[c] = {'f', 2}; break;
            case '\n': table[c] = {'n', 2}; break;
            case '\r': table[c] = {'r', 2}; break;
            case '\t': table[c] = {'t', 2}; break;
            default: table[c] = QChar::isPrint(uint(c)) ? Escape{char(c), 1} : Escape{'u', 6}; break;
            }
        }
        return table;
    }();
    static const QLatin1String prefix("add char osdortitle imf: \"");
    const auto *const begin = reinterpret_cast<const unsigned char *>(text.constData());
    const auto *const end = begin + text.size();
    int length = prefix.size() + 1;
    for (const unsigned char *p = begin; p < end; ++p)
        length += escapes[*p].width;
    QString line(length, Qt::Uninitialized);
    QChar *out = line.data();
    for (const char c : prefix)
        *out++ = QLatin1Char(c);
    static const char hex[] = "0123456789ABCDEF";
    for (const unsigned char *p = begin; p < end; ++p) {
        const Escape e = escapes[*p];
        if (e.width == 1) {
            *out++ = QLatin1Char(e.letter);
            continue;
        }
        *out++ = QLatin1Char('\\');
        *out++ = QLatin1Char(e.letter);
        if (e.width == 6) {
            *out++ = QLatin1Char('0');
            *out++ = QLatin1Char('0');
            *out++ = QLatin1Char(hex[*p >> 4]);
            *out++ = QLatin1Char(hex[*p & 15]);
        }
    }
    *out = QLatin1Char('"');
    const QMessageLogContext context(QT_MESSAGELOG_FILE, QT_MESSAGELOG_LINE, QT_MESSAGELOG_FUNC, "default");
    qt_message_output(QtDebugMsg, context, line);
}

// Which of the words a frame is routed by it contains, found in one pass over
// it rather than one search per word: the searches cost two thirds of decoding.
constexpr unsigned IpWord = 1u << 0, VolumeWord = 1u << 1, TypeWord = 1u << 2, VideoWord = 1u << 3,
                   InputWord = 1u << 4, AudioWord = 1u << 5, IrWord = 1u << 6, InWord = 1u << 7, OutWord = 1u << 8,
                   SwitchWord = 1u << 9;

// The words that start at position i.
unsigned wordsAt(const char *text, int size, int i)
{
    const auto at = [&](const char *word, int length) {
        return size - i >= length && memcmp(text + i, word, size_t(length)) == 0;
    };
    switch (text[i]) {
    case 'i':
        if (at("in", 2))
            return at("input", 5) ? InWord | InputWord : InWord;
        return at("ip", 2) ? IpWord : 0;
    case 'V': return at("Volume", 6) ? VolumeWord : 0;
    case 't': return at("type", 4) ? TypeWord : 0;
    case 'v': return at("video", 5) ? VideoWord : 0;
    case 'a': return at("audio", 5) ? AudioWord : 0;
    case 'I': return at("IR", 2) ? IrWord : 0;
    case 'o': return at("out", 3) ? OutWord : 0;
    case 's': return at("switch", 6) ? SwitchWord : 0;
    default: return 0;
    }
}

unsigned wordsIn(const QByteArray &frame)
{
    const char *const text = frame.constData();
    const int size = frame.size();
    unsigned words = 0;
    int i = 0;
#ifdef __SSE2__
    // Sixteen positions at a time: where the first two letters of a word stand
    // (a map reply names "video" nine times, but its "i"s and "o"s start nothing),
    // and only those are compared with the words. Half the time of a byte loop.
    const auto pair = [](__m128i first, __m128i second, char a, char b) {
        return _mm_and_si128(_mm_cmpeq_epi8(first, _mm_set1_epi8(a)), _mm_cmpeq_epi8(second, _mm_set1_epi8(b)));
    };
    for (; size - i >= 17; i += 16) {
        const __m128i first = _mm_loadu_si128(reinterpret_cast<const __m128i *>(text + i));
        const __m128i second = _mm_loadu_si128(reinterpret_cast<const __m128i *>(text + i + 1));
        const __m128i starts = _mm_or_si128(
                _mm_or_si128(_mm_or_si128(pair(first, second, 'i', 'n'), pair(first, second, 'i', 'p')),
                             _mm_or_si128(pair(first, second, 'V', 'o'), pair(first, second, 't', 'y'))),
                _mm_or_si128(_mm_or_si128(_mm_or_si128(pair(first, second, 'v', 'i'), pair(first, second, 'a', 'u')),
                                          _mm_or_si128(pair(first, second, 'I', 'R'), pair(first, second, 'o', 'u'))),
                             pair(first, second, 's', 'w')));
        for (unsigned found = unsigned(_mm_movemask_epi8(starts)); found; found &= found - 1)
            words |= wordsAt(text, size, i + qCountTrailingZeroBits(found));
    }
#endif
    for (; i < size; ++i)
        words |= wordsAt(text, size, i);
    return words;
}

} // namespace

// Works on the bytes directly: the frame is Latin-1, so every character is one
// byte and the result is the same as repairing a QString copy, without the two
// conversions and the three whole-frame replacements.
QByteArray ReplyParser::repair(const QByteArray &frame)
{
    unsigned words = 0;
    return repairFindingWords(frame, &words);
}

// Also tells which routing words the repaired frame holds, so that it is
// scanned once: quoting the bare words never splits nor forms one.
QByteArray ReplyParser::repairFindingWords(const QByteArray &frame, unsigned *wordsOut)
{
    QByteArray text = frame;
    bool repaired = false;
    if (indexOf(text, "Color") >= 0) {
        text.reserve(text.size() + 10);  // the ten quotes, without a reallocation each
        quoteBareValue(text, "Switch", 8, 9);
        quoteBareValue(text, "Bg_switch", 11, 12);
        quoteBareValue(text, "Color", 7, 8);
        quoteBareValue(text, "Bg_Color", 10, 11);
        const int start = indexOf(text, "Move_dir");
        insertChar(text, start + 10, '"');
        int close = indexOf(text, ',', start + 10);
        if (close < 0)
            close = indexOf(text, '}', start + 10);
        insertChar(text, close, '"');
        logCaptionRepair(text);
        repaired = true;
    }
    // Scanned after the caption repair, whose quotes may split a word.
    const unsigned words = wordsIn(text);
    if (words & InWord) {
        // Resolution and signal-state replies carry bare words: quote every value,
        // in one pass (the inserted quotes never match the next replacement).
        static const auto quoted = [] {
            std::array<unsigned char, 256> table{};
            table[':'] = table[','] = table['}'] = 1;
            return table;
        }();
        const char *const begin = text.constData();
        const char *const end = begin + text.size();
        int extra = 0;
        for (const char *p = begin; p < end; ++p)
            extra += quoted[static_cast<unsigned char>(*p)];
        if (extra > 0) {
            QByteArray result(text.size() + extra, Qt::Uninitialized);
            char *out = result.data();
            for (const char *p = begin; p < end; ++p) {
                const char c = *p;
                if (!quoted[static_cast<unsigned char>(c)]) {
                    *out++ = c;
                } else if (c == ':') {
                    *out++ = ':';
                    *out++ = '"';
                } else {
                    *out++ = '"';
                    *out++ = c;
                }
            }
            text = result;
        }
        repaired = true;
    }
    *wordsOut = words;
    return repaired ? text : frame;
}

ReplySignals ReplyParser::route(const QByteArray &frame)
{
    return routeWords(wordsIn(frame));
}

ReplySignals ReplyParser::routeWords(unsigned words)
{
    static const struct { unsigned word; ReplySignal signal; } triggers[] = {
        {IpWord, ReplySignal::NetWork},
        {VolumeWord, ReplySignal::Volume},
        {TypeWord, ReplySignal::Version},
        {VideoWord, ReplySignal::VideoMap},
        {InputWord, ReplySignal::InputState},
        {AudioWord, ReplySignal::AudioMap},
        {IrWord, ReplySignal::IrMap},
        {InWord, ReplySignal::InResolution},
        {OutWord, ReplySignal::OutResolution},
        {SwitchWord, ReplySignal::Title},
    };
    ReplySignals result;
    for (const auto &t : triggers) {
        if (words & t.word)
            result.append(t.signal);
    }
    return result;
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
    unsigned words = 0;
    reply.frame = repairFindingWords(rawFrame, &words);
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(reply.frame, &error);
    if (error.error != QJsonParseError::NoError) {
        reply.error = error.errorString();
        return reply;
    }
    reply.ok = true;
    reply.object = document.object();
    reply.signals_ = routeWords(words);
    return reply;
}
