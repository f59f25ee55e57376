#pragma once

#include <QByteArray>
#include <QDebug>

// Raw bytes as a log line shows them: at most the first KiB, and the total
// length when there is more, so a flood from a device cannot flood the log.
struct LogExcerpt
{
    const QByteArray &bytes;
};

inline LogExcerpt logExcerpt(const QByteArray &bytes)
{
    return {bytes};
}

inline QDebug operator<<(QDebug debug, const LogExcerpt &excerpt)
{
    constexpr int Limit = 1024;
    if (excerpt.bytes.size() <= Limit)
        return debug << excerpt.bytes;
    return debug << QByteArray::fromRawData(excerpt.bytes.constData(), Limit) << "... (" << excerpt.bytes.size()
                 << "bytes)";
}
