#pragma once

#include <QListWidget>
#include <QMap>
#include <QPoint>

// The signal list: the inputs an operator drags onto the routing grids.
class ListWidget : public QListWidget
{
    Q_OBJECT

public:
    static constexpr int PortRole = Qt::UserRole;          // 256, port number as text
    static constexpr int TypeRole = Qt::UserRole + 2;      // 258, 1: payload shifted by 100

    explicit ListWidget(QWidget *parent = nullptr);

    // Marks every listed input with a coloured dot by its signal state; mode 0 lists
    // the type-1 (audio) entries and hides type-0 ones, mode 1 the other way round.
    void updateStateMarks(int mode, const QMap<int, bool> &signalMap);
    int markMode() const { return m_markMode; }
    QPoint pressPosition() const { return m_pressPosition; }

    // The drag data: the current input's port, shifted by 100 for type-1 inputs.
    QMimeData *mimeData(const QList<QListWidgetItem *> items) const override;

protected:
    void mousePressEvent(QMouseEvent *event) override;

private:
    static QPixmap circle(const QColor &colour);

    int m_markMode = 0;
    QPoint m_pressPosition;
};
