#include "dialogs/basewidget.h"

#include <QFile>
#include <QGraphicsBlurEffect>
#include <QGraphicsDropShadowEffect>
#include <QGraphicsPixmapItem>
#include <QGraphicsScene>
#include <QPainter>
#include <QMouseEvent>
#include <QScreen>
#include <QWindow>

WindowDragger::WindowDragger(QWidget *handle)
    : QObject(handle)
    , m_handle(handle)
{
    handle->installEventFilter(this);
}

bool WindowDragger::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_handle)
        return false;
    QWidget *window = m_handle->window();
    switch (event->type()) {
    case QEvent::MouseButtonPress: {
        auto *mouse = static_cast<QMouseEvent *>(event);
        if (mouse->button() == Qt::LeftButton && !window->isMaximized()) {
            m_pressed = true;
            m_pressGlobal = mouse->screenPos().toPoint();
            m_pressWindowPos = window->frameGeometry().topLeft();
        }
        break;
    }
    case QEvent::MouseMove:
        if (m_pressed) {
            auto *mouse = static_cast<QMouseEvent *>(event);
            window->move(m_pressWindowPos + (mouse->screenPos().toPoint() - m_pressGlobal));
        }
        break;
    case QEvent::MouseButtonRelease:
        m_pressed = false;
        break;
    default:
        break;
    }
    return false;
}

BaseWidget::BaseWidget(QWidget *parent)
    : QWidget(parent)
{
    makeFrameless(this, Qt::Window | Qt::WindowSystemMenuHint | Qt::WindowMinMaxButtonsHint);
}

void BaseWidget::applyShadow(QWidget *frame)
{
    auto *shadow = new QGraphicsDropShadowEffect(frame);
    shadow->setOffset(0, 0);
    shadow->setColor(QColor("#136a67"));
    shadow->setBlurRadius(ShadowBlurRadius);
    frame->setGraphicsEffect(shadow);
}

void BaseWidget::makeFrameless(QWidget *window, Qt::WindowFlags extra)
{
    window->setWindowFlags(window->windowFlags() | Qt::FramelessWindowHint | extra);
    window->setAttribute(Qt::WA_TranslucentBackground);
}

void BaseWidget::setDragArea(QWidget *area)
{
    new WindowDragger(area);
}

void BaseWidget::loadStyleSheet(QWidget *widget, const QString &resource)
{
    QFile file(resource);
    if (file.open(QIODevice::ReadOnly))
        widget->setStyleSheet(QString::fromUtf8(file.readAll()));
}

void BaseWidget::setUpDialog(QWidget *dialog, QWidget *frame, QWidget *dragHandle, Qt::WindowFlags extra)
{
    makeFrameless(dialog, extra);
    applyShadow(frame);
    loadStyleSheet(dialog, ":/styles/dialogs.qss");
    new WindowDragger(dragHandle);
}

bool BaseWidget::toggleMaximized()
{
    m_maximized = !m_maximized;
    // A frameless window is also sized by hand: not every window manager (or none
    // at all, on a kiosk display) maximises it.
    if (m_maximized) {
        m_normalGeometry = geometry();
        showMaximized();
        if (QScreen *current = screen())
            setGeometry(current->availableGeometry());
    } else {
        showNormal();
        if (m_normalGeometry.isValid())
            setGeometry(m_normalGeometry);
    }
    return m_maximized;
}

void BaseWidget::setResizableFromEdges(int margin)
{
    m_resizeMargin = margin;
    setMouseTracking(true);
}

Qt::Edges BaseWidget::edgesAt(const QPoint &pos) const
{
    Qt::Edges edges;
    if (m_resizeMargin <= 0 || m_maximized)
        return edges;
    if (pos.x() < m_resizeMargin)
        edges |= Qt::LeftEdge;
    if (pos.x() >= width() - m_resizeMargin)
        edges |= Qt::RightEdge;
    if (pos.y() < m_resizeMargin)
        edges |= Qt::TopEdge;
    if (pos.y() >= height() - m_resizeMargin)
        edges |= Qt::BottomEdge;
    return edges;
}

void BaseWidget::mouseMoveEvent(QMouseEvent *event)
{
    const Qt::Edges edges = edgesAt(event->pos());
    if (edges == (Qt::LeftEdge | Qt::TopEdge) || edges == (Qt::RightEdge | Qt::BottomEdge))
        setCursor(Qt::SizeFDiagCursor);
    else if (edges == (Qt::RightEdge | Qt::TopEdge) || edges == (Qt::LeftEdge | Qt::BottomEdge))
        setCursor(Qt::SizeBDiagCursor);
    else if (edges & (Qt::LeftEdge | Qt::RightEdge))
        setCursor(Qt::SizeHorCursor);
    else if (edges)
        setCursor(Qt::SizeVerCursor);
    else
        unsetCursor();
    QWidget::mouseMoveEvent(event);
}

void BaseWidget::mousePressEvent(QMouseEvent *event)
{
    const Qt::Edges edges = edgesAt(event->pos());
    // The window manager does the resizing, as for any framed window.
    if (event->button() == Qt::LeftButton && edges && windowHandle() && windowHandle()->startSystemResize(edges))
        return;
    QWidget::mousePressEvent(event);
}

void BaseWidget::paintShadowAround(QWidget *frame)
{
    m_shadowFrame = frame;
    m_shadow = QPixmap();
    update();
}

void BaseWidget::paintEvent(QPaintEvent *event)
{
    QWidget::paintEvent(event);
    if (!m_shadowFrame || m_maximized)
        return;
    // Nine pieces of a small blurred copy of the frame's rounded rectangle: the corners
    // as they are, the edges stretched from their middle line. Along an edge, further
    // than the blur reaches from a corner, every line of the blur is the same; under
    // the opaque frame nothing shows, so the middle is not painted.
    const QRect frame = m_shadowFrame->geometry();
    const QMargins margins(frame.left(), frame.top(), width() - 1 - frame.right(), height() - 1 - frame.bottom());
    const int reach = qMin(ShadowReach, qMin(frame.width(), frame.height()) / 2 - 1);
    if (reach <= 0)
        return;
    if (m_shadowMargins != margins || m_shadowReach != reach || m_shadow.isNull()) {
        m_shadowMargins = margins;
        m_shadowReach = reach;
        m_shadow = blurredShadow(margins, reach);
    }
    const int l = margins.left() + reach, t = margins.top() + reach;
    const int r = margins.right() + reach, b = margins.bottom() + reach;
    const int middleWidth = width() - l - r, middleHeight = height() - t - b;
    QPainter painter(this);
    painter.drawPixmap(QRect(0, 0, l, t), m_shadow, QRect(0, 0, l, t));
    painter.drawPixmap(QRect(width() - r, 0, r, t), m_shadow, QRect(l + 1, 0, r, t));
    painter.drawPixmap(QRect(0, height() - b, l, b), m_shadow, QRect(0, t + 1, l, b));
    painter.drawPixmap(QRect(width() - r, height() - b, r, b), m_shadow, QRect(l + 1, t + 1, r, b));
    painter.drawPixmap(QRect(l, 0, middleWidth, t), m_shadow, QRect(l, 0, 1, t));
    painter.drawPixmap(QRect(l, height() - b, middleWidth, b), m_shadow, QRect(l, t + 1, 1, b));
    painter.drawPixmap(QRect(0, t, l, middleHeight), m_shadow, QRect(0, t, l, 1));
    painter.drawPixmap(QRect(width() - r, t, r, middleHeight), m_shadow, QRect(l + 1, t, r, 1));
}

QPixmap BaseWidget::blurredShadow(const QMargins &margins, int reach)
{
    // The frame is 2 * reach + 1 wide and high here, with the window's margins around it.
    const QSize size(margins.left() + margins.right() + 2 * reach + 1, margins.top() + margins.bottom() + 2 * reach + 1);
    QImage source(size, QImage::Format_ARGB32_Premultiplied);
    source.fill(Qt::transparent);
    {
        QPainter painter(&source);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor("#136a67"));
        painter.drawRoundedRect(QRectF(margins.left(), margins.top(), 2 * reach + 1, 2 * reach + 1), 8, 8);
    }
    QGraphicsScene scene;
    auto *item = scene.addPixmap(QPixmap::fromImage(source));
    auto *blur = new QGraphicsBlurEffect;
    blur->setBlurRadius(ShadowBlurRadius);
    item->setGraphicsEffect(blur);
    QImage blurred(size, QImage::Format_ARGB32_Premultiplied);
    blurred.fill(Qt::transparent);
    QPainter painter(&blurred);
    scene.render(&painter, QRectF(), QRectF(QPointF(0, 0), QSizeF(size)));
    painter.end();
    return QPixmap::fromImage(blurred);
}
