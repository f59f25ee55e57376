#pragma once

#include <QByteArray>
#include <QString>

class QFont;

// Turns overlay content into the 1-bit, upside-down BMP the device shows.
// Each step goes through a working file under "ConversionProcessing", relative
// to the working directory, which the next conversion of its kind overwrites.
namespace BitmapConversion {

// Renders " text " in `font`, white on black; returns the BMP's path.
QString textToBitmap(const QString &text, const QFont &font);
// Converts the picture at `picturePath` without scaling it; returns the BMP's
// path. A picture that cannot be loaded gives an empty image, kept as it is.
QString pictureToBitmap(const QString &picturePath);
// The image in `path` encoded as BMP in memory: what goes on the wire.
QByteArray encodedBmp(const QString &path);

} // namespace BitmapConversion
