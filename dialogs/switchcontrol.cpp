#include "dialogs/switchcontrol.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QTimer>

namespace {
// One pixel per tick: a default-sized switch slides across in 14 ticks.
constexpr int SlideIntervalMs = 10;
}

SwitchControl::SwitchControl(QWidget *parent)
    : QWidget(parent)
    , m_timer(new QTimer(this))
{
    setCursor(Qt::PointingHandCursor);
    connect(m_timer, SIGNAL(timeout()), this, SLOT(onTimeout()));
}

bool SwitchControl::isChecked() const
{
    return m_checked;
}

void SwitchControl::setChecked(bool checked)
{
    m_checked = checked;
    // Started even when nothing changes: the first tick finds the thumb at its
    // end and reports `toggledAfter`, which callers wait for.
    m_timer->start(SlideIntervalMs);
}

void SwitchControl::setBackgroundColor(const QColor &color)
{
    m_background = color;
}

void SwitchControl::setCheckedColor(const QColor &color)
{
    m_checkedColor = color;
}

void SwitchControl::setDisabledColor(const QColor &color)
{
    m_disabledColor = color;
}

QSize SwitchControl::sizeHint() const
{
    return minimumSizeHint();
}

QSize SwitchControl::minimumSizeHint() const
{
    return QSize(2 * (m_height + m_margin), m_height + 2 * m_margin);
}

void SwitchControl::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);

    QColor track;
    QColor thumb;
    qreal opacity;
    if (!isEnabled()) {
        track = m_background;
        thumb = m_disabledColor;
        opacity = 0.26;
    } else if (m_checked) {
        track = m_checkedColor;
        thumb = m_checkedColor;
        opacity = 0.6;
    } else {
        track = m_background;
        thumb = m_thumbColor;
        opacity = 0.8;
    }

    QPainterPath path;
    path.addRoundedRect(QRectF(m_margin, m_margin, width() - 2 * m_margin, height() - 2 * m_margin),
                        m_radius, m_radius);
    painter.setBrush(track);
    painter.setOpacity(opacity);
    painter.drawPath(path.simplified());

    // Offset from the nominal thumb size but diameter from the widget height:
    // kept on purpose, the thumb overhangs the track as it always has.
    painter.setBrush(thumb);
    painter.setOpacity(1.0);
    painter.drawEllipse(QRectF(m_x - m_height / 2, m_y - m_height / 2, height(), height()));
}

void SwitchControl::mousePressEvent(QMouseEvent *event)
{
    if (!isEnabled())
        return;
    // Other buttons go on to the parent (context menus, window dragging).
    if (event->buttons() & Qt::LeftButton)
        event->accept();
    else
        event->ignore();
}

void SwitchControl::mouseReleaseEvent(QMouseEvent *event)
{
    if (isEnabled() && event->type() == QEvent::MouseButtonRelease && event->button() == Qt::LeftButton) {
        event->accept();
        // A click during a slide just reverses it: the thumb turns where it is.
        m_checked = !m_checked;
        emit toggled(m_checked);
        m_timer->start(SlideIntervalMs);
    } else {
        event->ignore();
    }
}

void SwitchControl::resizeEvent(QResizeEvent *event)
{
    // Back to the left end even when checked; kept as is, switches sit at their
    // fixed size and are resized once, before they are set.
    m_x = m_height / 2;
    m_y = m_height / 2;
    QWidget::resizeEvent(event);
}

void SwitchControl::onTimeout()
{
    if (m_checked) {
        if (m_x < width() - m_height) {
            m_x += 1.0;
            update();
            return;
        }
    } else if (m_x > m_height / 2) {
        m_x -= 1.0;
        update();
        return;
    }
    m_timer->stop();
    emit toggledAfter(m_checked);
    update();
}
