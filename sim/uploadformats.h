#pragma once

#include <QByteArray>

#include <optional>

// What the emulator reads from and writes into the files the device takes:
// BMP headers, EDID blocks, and the checksums the verbose log shows.
namespace UploadFormats {

// What the verbose log says of an uploaded picture.
struct BmpHeader
{
    quint32 pixelOffset = 0;
    qint32 width = 0;
    qint32 height = 0;  // positive: rows stored bottom-up
    int bitCount = 0;
};

// Decodes the file and info headers of a BMP; nullopt when the bytes are not one.
std::optional<BmpHeader> bmpHeader(const QByteArray &file);
// The length a file announces in its first bytes: a BMP's bfSize, an EDID's
// blocks; nullopt when the head is too short to tell or names no length.
std::optional<qint64> declaredLength(const QByteArray &head);

// A plain EDID 1.3 base block for a sink told apart by product and name.
QByteArray edidBlock(int product, const QByteArray &name);
// "edid <input>: <n> bytes, crc32 <hex>", the verbose log's line for a stored EDID.
QByteArray edidNote(int input, const QByteArray &edid);

quint32 crc32(const QByteArray &bytes);

} // namespace UploadFormats
