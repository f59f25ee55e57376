#pragma once

#include <QObject>
#include <QPoint>
#include <QPixmap>
#include <QWidget>

// Moves a frameless window while the left button is held on its handle (the
// handle itself or any child that lets the press through).
class WindowDragger : public QObject
{
    Q_OBJECT

public:
    explicit WindowDragger(QWidget *handle);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *m_handle;
    bool m_pressed = false;
    QPoint m_pressGlobal;
    QPoint m_pressWindowPos;
};

// The shared look of the application's frameless windows: translucent outer
// margin, a drop shadow around the visible frame, and dragging by mouse.
class BaseWidget : public QWidget
{
    Q_OBJECT

public:
    explicit BaseWidget(QWidget *parent = nullptr);

    // Gives `frame` the common drop shadow (offset 0,0, "#136a67", blur 35).
    static void applyShadow(QWidget *frame);
    // Frameless, translucent window flags for dialogs sharing this look.
    static void makeFrameless(QWidget *window, Qt::WindowFlags extra = {});
    // The common set-up of a frameless dialog: flags, shadow on `frame`, the shared
    // dialog style sheet and dragging by `dragHandle`.
    static void setUpDialog(QWidget *dialog, QWidget *frame, QWidget *dragHandle, Qt::WindowFlags extra);
    // Applies a style sheet compiled in as a resource (":/styles/...").
    static void loadStyleSheet(QWidget *widget, const QString &resource);

protected:
    // Presses on this widget (the title bar) move the window.
    void setDragArea(QWidget *area);
    // Maximises or restores the window; true when it is now maximised.
    bool toggleMaximized();
    // The translucent margin around the frame resizes the window, as a frame would.
    void setResizableFromEdges(int margin);
    // The same shadow as applyShadow, painted by this window around `frame`: a graphics
    // effect would render the whole frame again for every cell that changes.
    void paintShadowAround(QWidget *frame);

    void paintEvent(QPaintEvent *event) override;

    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    Qt::Edges edgesAt(const QPoint &pos) const;
    static QPixmap blurredShadow(const QMargins &margins, int reach);

    static constexpr int ShadowBlurRadius = 35;
    // How far into the frame the blur still tells a corner from an edge.
    static constexpr int ShadowReach = 2 * ShadowBlurRadius;

    int m_resizeMargin = 0;
    QWidget *m_shadowFrame = nullptr;
    QPixmap m_shadow;  // the small blurred copy the nine pieces come from
    QMargins m_shadowMargins;
    int m_shadowReach = 0;
    bool m_maximized = false;
    QRect m_normalGeometry;
};
