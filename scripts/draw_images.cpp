// Draws the application's images in one flat style (accent #338c56).
// Usage: orvex-draw-images OUTDIR   (writes OUTDIR/Images/...)
#include <QDir>
#include <QFont>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QtMath>
#include <cstdio>

namespace {

const QColor Accent("#338c56");
const QColor AccentDark("#136a67");
const QColor Glyph(Qt::white);
const QColor Grey("#6b7b73");

QImage canvas(int w, int h)
{
    QImage image(w, h, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

bool save(const QImage &image, const QString &root, const QString &name)
{
    const QString path = root + "/Images/" + name;
    QDir().mkpath(QFileInfo(path).path());
    if (!image.save(path, "PNG")) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
        return false;
    }
    return true;
}

QPen glyphPen(const QColor &colour, qreal width)
{
    return QPen(colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
}

// A 3x3 routing grid with one highlighted path: the product's mark.
void drawMark(QPainter &p, const QRectF &r)
{
    QPainterPath tile;
    tile.addRoundedRect(r, r.width() * 0.22, r.height() * 0.22);
    QLinearGradient g(r.topLeft(), r.bottomRight());
    g.setColorAt(0, Accent.lighter(112));
    g.setColorAt(1, AccentDark);
    p.fillPath(tile, g);
    const qreal cell = r.width() / 5.0;
    p.setPen(Qt::NoPen);
    for (int row = 0; row < 3; ++row) {
        for (int col = 0; col < 3; ++col) {
            QRectF dot(r.left() + cell * (1 + col) + cell * 0.18, r.top() + cell * (1 + row) + cell * 0.18,
                       cell * 0.64, cell * 0.64);
            p.setBrush(row == col ? Glyph : QColor(255, 255, 255, 110));
            p.drawEllipse(dot);
        }
    }
    p.setPen(glyphPen(Glyph, qMax<qreal>(1.5, r.width() / 32)));
    p.drawLine(QPointF(r.left() + cell * 1.5, r.top() + cell * 1.5),
               QPointF(r.left() + cell * 3.5, r.top() + cell * 3.5));
}

// 64 px for the window, 256 px for the installed desktop icon.
QImage appLogo(int size)
{
    QImage image = canvas(size, size);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    const qreal margin = size / 32.0;
    drawMark(p, QRectF(margin, margin, size - 2 * margin, size - 2 * margin));
    return image;
}

QImage wordLogo()
{
    QImage image = canvas(300, 84);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    drawMark(p, QRectF(6, 6, 72, 72));
    QFont font("DejaVu Sans", 30, QFont::Bold);
    font.setLetterSpacing(QFont::AbsoluteSpacing, 2);
    p.setFont(font);
    p.setPen(Accent);
    p.drawText(QRectF(92, 4, 208, 50), Qt::AlignLeft | Qt::AlignVCenter, "ORVEX");
    QFont small("DejaVu Sans", 10);
    small.setLetterSpacing(QFont::AbsoluteSpacing, 3);
    p.setFont(small);
    p.setPen(Grey);
    p.drawText(QRectF(94, 50, 206, 24), Qt::AlignLeft | Qt::AlignVCenter, "MATRIX CONTROL");
    return image;
}

QImage windowGlyph(const QString &kind)
{
    QImage image = canvas(16, 16);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(glyphPen(Glyph, 1.6));
    p.setBrush(Qt::NoBrush);
    if (kind == "minimize") {
        p.drawLine(QPointF(3, 8.5), QPointF(13, 8.5));
    } else if (kind == "close") {
        p.drawLine(QPointF(3.5, 3.5), QPointF(12.5, 12.5));
        p.drawLine(QPointF(12.5, 3.5), QPointF(3.5, 12.5));
    } else if (kind == "fullscreen") {
        p.drawRoundedRect(QRectF(3, 3, 10, 10), 1.5, 1.5);
    } else if (kind == "restore") {
        p.drawRoundedRect(QRectF(2.5, 5.5, 8, 8), 1.5, 1.5);
        p.drawPolyline(QPolygonF({QPointF(5.5, 3.5), QPointF(5.5, 2.5), QPointF(13.5, 2.5),
                                  QPointF(13.5, 10.5), QPointF(12.5, 10.5)}));
    } else if (kind == "login_setting") {
        const QPointF c(8, 8);
        for (int i = 0; i < 8; ++i) {
            const qreal a = i * M_PI / 4;
            p.drawLine(c + QPointF(qCos(a) * 4.5, qSin(a) * 4.5), c + QPointF(qCos(a) * 6.5, qSin(a) * 6.5));
        }
        p.drawEllipse(c, 4.2, 4.2);
        p.drawEllipse(c, 1.6, 1.6);
    }
    return image;
}

QImage eye(bool open)
{
    QImage image = canvas(20, 20);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(glyphPen(open ? Accent : Grey, 1.6));
    QPainterPath lid;
    lid.moveTo(2, 10);
    lid.quadTo(10, 2, 18, 10);
    lid.quadTo(10, 18, 2, 10);
    p.drawPath(lid);
    p.setBrush(open ? Accent : Grey);
    p.drawEllipse(QPointF(10, 10), 2.6, 2.6);
    if (!open)
        p.drawLine(QPointF(4, 16), QPointF(16, 4));
    return image;
}

// The tick of a checked box, white on the accent the style sheet paints behind it.
QImage tick()
{
    QImage image = canvas(12, 12);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(glyphPen(Glyph, 2));
    p.drawPolyline(QPolygonF({QPointF(2.5, 6.5), QPointF(5, 9), QPointF(9.5, 3.5)}));
    return image;
}

// The combo box's drop-down arrow: a chevron in the text grey.
QImage chevronDown()
{
    QImage image = canvas(12, 12);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(glyphPen(Grey, 1.6));
    p.drawPolyline(QPolygonF({QPointF(2.5, 4.5), QPointF(6, 8), QPointF(9.5, 4.5)}));
    return image;
}

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s OUTDIR\n", argv[0]);
        return 2;
    }
    const QString root = QString::fromLocal8Bit(argv[1]);
    bool ok = save(appLogo(64), root, "applogo.png");
    ok &= save(appLogo(256), root, "icon/orvexcontrol-256.png");
    ok &= save(wordLogo(), root, "logo.png");
    for (const char *kind : {"minimize", "close", "fullscreen", "restore", "login_setting"})
        ok &= save(windowGlyph(kind), root, QString("window/%1.png").arg(kind));
    ok &= save(eye(true), root, "login/Show_Pass.png");
    ok &= save(eye(false), root, "login/Hide_pass.png");
    ok &= save(tick(), root, "controls/tick.png");
    ok &= save(chevronDown(), root, "controls/chevron_down.png");
    return ok ? 0 : 1;
}
