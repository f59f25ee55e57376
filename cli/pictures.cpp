// caption and logo: text or a picture becomes the device's 1-bit BMP (the
// window's own conversion) and goes to the device on the file port.
#include "cli/verbs.h"

#include "device/commandtext.h"
#include "dialogs/bitmapconversion.h"

#include <QFont>
#include <QImage>
#include <QImageReader>

#include <cstdio>

int runPicture(const Target &target, bool caption, int port, const QString &source)
{
    if (!caption && QImageReader(source).format().isEmpty()) {
        std::fprintf(stderr, "orvexctl: FILE %s is not a picture\n", qPrintable(source));
        return ExitFailure;
    }
    // The window's default text font; its working files land in ConversionProcessing/.
    const QString bitmap =
        caption ? BitmapConversion::textToBitmap(source, QFont()) : BitmapConversion::pictureToBitmap(source);
    const QByteArray bytes = BitmapConversion::encodedBmp(bitmap);
    const QImage image = QImage::fromData(bytes, "BMP");
    if (image.isNull()) {
        std::fprintf(stderr, "orvexctl: %s %s gave no picture\n", caption ? "TEXT" : "FILE", qPrintable(source));
        return ExitFailure;
    }
    Exchange exchange(target);
    if (const std::optional<int> refused =
            refuseOutOfModel(exchange, [&](int ports) { return portError(caption ? "--output" : "OUTPUT", port, ports); }))
        return *refused;
    const QString command = caption ? CommandText::uploadSubtitle(port) : CommandText::uploadOsd(port);
    const Exchange::Outcome outcome = exchange.upload(command, bytes);
    if (outcome != Exchange::Answered)
        return exitStatus(outcome);
    printLine({{caption ? "caption" : "logo", port},
               {"bytes", bytes.size()},
               {"width", image.width()},
               {"height", image.height()}});
    return 0;
}
