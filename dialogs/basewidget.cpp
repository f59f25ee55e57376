#include "dialogs/basewidget.h"

#include <QGraphicsDropShadowEffect>
#include <QMouseEvent>

BaseWidget::BaseWidget(QWidget *parent)
    : QWidget(parent)
{
    setWindowFlags(Qt::FramelessWindowHint | Qt::Window | Qt::WindowSystemMenuHint
                   | Qt::WindowMinMaxButtonsHint);
    setAttribute(Qt::WA_TranslucentBackground);
}

void BaseWidget::applyShadow(QWidget *frame)
{
    auto *shadow = new QGraphicsDropShadowEffect(frame);
    shadow->setOffset(0, 0);
    shadow->setColor(QColor("#136a67"));
    shadow->setBlurRadius(35);
    frame->setGraphicsEffect(shadow);
}

void BaseWidget::mousePressEvent(QMouseEvent *event)
{
    const bool inArea = !m_dragArea
            || m_dragArea->rect().contains(m_dragArea->mapFrom(this, event->pos()));
    if (event->button() == Qt::LeftButton && inArea && !isMaximized()) {
        m_pressed = true;
        m_pressGlobal = event->globalPos();
        m_pressWindowPos = frameGeometry().topLeft();
    }
    QWidget::mousePressEvent(event);
}

void BaseWidget::mouseMoveEvent(QMouseEvent *event)
{
    if (m_pressed)
        move(m_pressWindowPos + (event->globalPos() - m_pressGlobal));
    QWidget::mouseMoveEvent(event);
}

void BaseWidget::mouseReleaseEvent(QMouseEvent *event)
{
    m_pressed = false;
    QWidget::mouseReleaseEvent(event);
}
