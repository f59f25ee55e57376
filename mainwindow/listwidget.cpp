#include "mainwindow/listwidget.h"


#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>

namespace {
const char SignalColour[] = "#338c56";
const char NoSignalColour[] = "#2c3e50";
} // namespace

ListWidget::ListWidget(QWidget *parent)
    : QListWidget(parent)
{
    setDragEnabled(true);
    setDragDropMode(QAbstractItemView::DragOnly);
}

void ListWidget::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        m_pressPosition = event->localPos().toPoint();
    QListWidget::mousePressEvent(event);
}

QMimeData *ListWidget::mimeData(const QList<QListWidgetItem *> items) const
{
    QMimeData *data = QListWidget::mimeData(items);
    const QListWidgetItem *item = currentItem();
    if (!item || !data)
        return data;
    QString text = item->data(PortRole).toString();
    if (item->data(TypeRole).toInt() == 1) {
        data->setData("application/type", "1");
        text = QString::number(text.toInt() + 100);
    }
    data->setText(text);
    return data;
}

QPixmap ListWidget::circle(const QColor &colour)
{
    QPixmap pixmap(40, 40);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawEllipse(QRect(0, 0, 39, 39));
    return pixmap;
}

void ListWidget::updateStateMarks(int mode, const QMap<int, bool> &signalMap)
{
    m_markMode = mode;
    const QIcon withSignal(circle(SignalColour));
    const QIcon withoutSignal(circle(NoSignalColour));
    setIconSize(QSize(8, 8));
    // Mode 0 lists the shifted (type 1) entries, mode 1 the plain ones.
    const int hiddenType = mode == 0 ? 0 : 1;
    for (int i = 0; i < count(); ++i) {
        QListWidgetItem *entry = item(i);
        // An item that never had a size hint takes the row's width (an invalid hint would be dropped).
        const int width = entry->sizeHint().width() > 0 ? entry->sizeHint().width() : viewport()->width();
        entry->setSizeHint(QSize(width, 50));
        const bool hidden = entry->data(TypeRole).toInt() == hiddenType;
        entry->setHidden(hidden);
        if (hidden)
            continue;
        const bool hasSignal = signalMap.value(entry->data(PortRole).toString().toInt(), false);
        entry->setIcon(hasSignal ? withSignal : withoutSignal);
        entry->setForeground(QColor(hasSignal ? SignalColour : NoSignalColour));
    }
}
