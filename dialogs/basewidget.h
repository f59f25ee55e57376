#pragma once

#include <QPoint>
#include <QWidget>

// The shared look of the application's frameless windows: translucent outer
// margin, a drop shadow around the visible frame, and dragging by mouse.
class BaseWidget : public QWidget
{
    Q_OBJECT

public:
    explicit BaseWidget(QWidget *parent = nullptr);

    // Gives `frame` the common drop shadow (offset 0,0, "#136a67", blur 35).
    static void applyShadow(QWidget *frame);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

    // Only presses inside this widget start a drag (the title bar); nullptr: anywhere.
    void setDragArea(QWidget *area) { m_dragArea = area; }

private:
    QWidget *m_dragArea = nullptr;
    bool m_pressed = false;
    QPoint m_pressGlobal;
    QPoint m_pressWindowPos;
};
