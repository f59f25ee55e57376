#include "dialogs/bitmapconversion.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>

namespace {
// The folders are written with "/": Qt maps it to the platform's separator.
const char WorkFolder[] = "ConversionProcessing";
const char TextOutput[] = "ConversionProcessing/CharacterLogo/CharImage.bmp";
const char PictureOutput[] = "ConversionProcessing/Subtitle/SendlocalImage.bmp";

// Grey levels above 0x7F become white, the rest black: the device has no grey.
void thresholdColourTable(QImage &image)
{
    QVector<QRgb> table = image.colorTable();
    for (QRgb &entry : table)
        entry = quint32(entry) > 0xFF7F7F7Fu ? qRgba(255, 255, 255, 255) : qRgba(0, 0, 0, 255);
    image.setColorTable(table);
}

// Greyscale (already saved at `path`), threshold, mono, upside down: the
// device draws its rows bottom-up.
void finishAsMono(const QString &path)
{
    QImage grey(path);
    thresholdColourTable(grey);
    grey.save(path, "bmp");
    grey.convertToFormat(QImage::Format_Mono).mirrored(false, true).save(path, "bmp");
}
} // namespace

namespace BitmapConversion {

QString textToBitmap(const QString &text, const QFont &font)
{
    const QString padded = " " + text + " ";
    QDir().mkpath(QString(WorkFolder) + "/CharacterLogo");

    const QRect box = QFontMetrics(font).boundingRect(padded);
    QImage image(box.width() + 8, box.height() + 5, QImage::Format_RGB32);
    image.fill(0);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_Plus);
    painter.setPen(QColor(255, 255, 255, 255));
    painter.setFont(font);
    painter.drawText(image.rect(), Qt::AlignCenter, padded);
    painter.end();
    image.save(TextOutput, "bmp");

    QImage(TextOutput).convertToFormat(QImage::Format_Grayscale8).save(TextOutput, "bmp");
    finishAsMono(TextOutput);
    return TextOutput;
}

QString pictureToBitmap(const QString &picturePath)
{
    const QImage picture(picturePath);
    QDir().mkpath(QString(WorkFolder) + "/Subtitle");
    if (picture.isNull()) {
        // Nothing to save: the empty file left behind ends the upload with its message,
        // instead of sending the previous picture again.
        QFile(PictureOutput).open(QIODevice::WriteOnly | QIODevice::Truncate);
        return PictureOutput;
    }
    picture.convertToFormat(QImage::Format_Grayscale8).save(PictureOutput, "bmp", 100);
    finishAsMono(PictureOutput);
    return PictureOutput;
}

QByteArray encodedBmp(const QString &path)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImage(path).save(&buffer, "bmp");
    return bytes;
}

} // namespace BitmapConversion
