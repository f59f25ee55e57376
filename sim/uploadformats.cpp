#include "uploadformats.h"

#include <QSet>
#include <QtEndian>

#include <limits>

namespace UploadFormats {

std::optional<BmpHeader> bmpHeader(const QByteArray &file)
{
    // Little-endian fields at fixed offsets; every read is bounds-checked first.
    auto field = [&file](int offset, int size) {
        quint32 value = 0;
        for (int i = size - 1; i >= 0; --i)
            value = (value << 8) | static_cast<uchar>(file.at(offset + i));
        return value;
    };
    constexpr int FileHeader = 14;
    if (file.size() < FileHeader + 12 || !file.startsWith("BM"))
        return std::nullopt;
    BmpHeader header;
    header.pixelOffset = field(10, 4);
    const quint32 infoSize = field(14, 4);
    if (infoSize == 12) {
        // The old core header: 16-bit sizes, always bottom-up.
        header.width = qint32(field(18, 2));
        header.height = qint32(field(20, 2));
        header.bitCount = int(field(24, 2));
    } else if (infoSize >= 40 && file.size() >= FileHeader + qint64(infoSize)) {
        header.width = qint32(field(18, 4));
        header.height = qint32(field(22, 4));
        header.bitCount = int(field(28, 2));
    } else {
        return std::nullopt;
    }
    static const QSet<int> bitCounts = {1, 2, 4, 8, 16, 24, 32};
    // INT_MIN has no magnitude to show.
    if (header.width <= 0 || header.height == 0 || header.height == std::numeric_limits<qint32>::min()
        || !bitCounts.contains(header.bitCount) || header.pixelOffset < FileHeader + infoSize
        || header.pixelOffset > quint32(file.size()))
        return std::nullopt;
    return header;
}

std::optional<qint64> declaredLength(const QByteArray &head)
{
    static const QByteArray edidMagic = QByteArray::fromHex("00ffffffffffff00");
    if (head.startsWith(edidMagic)) {
        // Whole 128-byte blocks: the base block counts its extensions in byte 126.
        if (head.size() <= 126)
            return std::nullopt;
        return 128 * (1 + qint64(static_cast<uchar>(head.at(126))));
    }
    // The file header is enough: bfSize, and the pixels' offset past the info header.
    if (head.size() < 18 || !head.startsWith("BM"))
        return std::nullopt;
    const auto field = [&head](int offset) { return qFromLittleEndian<quint32>(head.constData() + offset); };
    const quint32 size = field(2), pixels = field(10), info = field(14);
    // Some writers leave bfSize 0: such a file names no length.
    if ((info != 12 && info < 40) || pixels < 14 + info || size < pixels)
        return std::nullopt;
    return qint64(size);
}

// 1080p60 preferred, a name, the checksum: the switcher only stores and copies
// EDIDs, so product, serial and name are what tell one sink from another.
QByteArray edidBlock(int product, const QByteArray &name)
{
    QByteArray block(128, '\0');
    block.replace(0, 8, QByteArray("\x00\xff\xff\xff\xff\xff\xff\x00", 8));
    const int maker = (('O' - '@') << 10) | (('R' - '@') << 5) | ('X' - '@');
    block[8] = char(maker >> 8);
    block[9] = char(maker);
    block[10] = char(product);
    block[11] = char(product >> 8);
    block[12] = char(product);      // serial
    block[16] = 1;                  // week 1 of 2024
    block[17] = 34;
    block[18] = 1;                  // version 1.3
    block[19] = 3;
    block[20] = char(0x80);         // digital input
    block.replace(38, 16, QByteArray(16, '\x01'));  // no standard timings
    block.replace(54, 18, QByteArray("\x02\x3a\x80\x18\x71\x38\x2d\x40\x58\x2c\x45\x00\xc4\x8e\x21\x00\x00\x1e", 18));
    block.replace(72, 18, QByteArray("\0\0\0\xfc\0", 5) + (name.left(12) + '\n').leftJustified(13, ' '));
    block[93] = block[111] = 0x10;  // two empty descriptors
    char sum = 0;
    for (int i = 0; i < 127; ++i)
        sum = char(sum + block[i]);
    block[127] = char(-sum);
    return block;
}

QByteArray edidNote(int input, const QByteArray &edid)
{
    return "edid " + QByteArray::number(input) + ": " + QByteArray::number(edid.size()) + " bytes, crc32 "
        + QByteArray::number(crc32(edid), 16).rightJustified(8, '0');
}

quint32 crc32(const QByteArray &bytes)
{
    // The zlib / PNG CRC, so a log line can be checked against any crc32 tool.
    quint32 crc = 0xffffffffu;
    for (char c : bytes) {
        crc ^= static_cast<uchar>(c);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (0xedb88320u & (0u - (crc & 1u)));
    }
    return ~crc;
}

} // namespace UploadFormats
