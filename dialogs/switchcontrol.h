#pragma once

#include <QColor>
#include <QWidget>

class QTimer;

// An on/off switch: a rounded track with a round thumb that slides to the
// other end when clicked. It reports the change at once (`toggled`) and again
// when the slide has ended (`toggledAfter`).
class SwitchControl : public QWidget
{
    Q_OBJECT

public:
    explicit SwitchControl(QWidget *parent = nullptr);

    bool isChecked() const;
    // Slides to the given end without emitting `toggled`; `toggledAfter`
    // still follows, even when the state does not change.
    void setChecked(bool checked);

    void setBackgroundColor(const QColor &color);
    void setCheckedColor(const QColor &color);
    void setDisabledColor(const QColor &color);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    // Current horizontal centre of the thumb, in pixels.
    qreal thumbX() const { return m_x; }

signals:
    void toggled(bool checked);
    void toggledAfter(bool checked);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private slots:
    void onTimeout();

private:
    bool m_checked = false;
    QColor m_background = Qt::black;
    QColor m_checkedColor = QColor(15, 115, 168);
    QColor m_disabledColor = QColor(190, 190, 190);
    QColor m_thumbColor = Qt::white;
    qreal m_radius = 8.0;
    qreal m_x = 0.0; // set on resize
    qreal m_y = 0.0; // set on resize
    qint16 m_height = 16;
    qint16 m_margin = 3;
    QTimer *m_timer;
};
