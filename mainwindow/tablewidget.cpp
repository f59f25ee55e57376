#include "mainwindow/tablewidget.h"

#include "mainwindow/sigmanager.h"
#include "mainwindow/tableitemwidget.h"
#include "store/portnames.h"

#include <QDropEvent>
#include <QHeaderView>
#include <QMimeData>
#include <QPainter>

namespace {
const char SelectedCellColor[] = "#2b7648";

QString inputLabel(int port, const QString &name)
{
    return QString("[%1] %2").arg(port).arg(name);
}
} // namespace

TableWidget::TableWidget(QWidget *parent)
    : QTableWidget(parent)
    , m_cellColor(QColor(150, 150, 150).name())
{
    setAcceptDrops(true);
    viewport()->setAcceptDrops(true);
    setDragDropMode(QAbstractItemView::DropOnly);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionMode(QAbstractItemView::SingleSelection);
    horizontalHeader()->hide();
    verticalHeader()->hide();

    connect(this, &QTableWidget::itemSelectionChanged, this, &TableWidget::selectionChangedSlot);
    SigManager *hub = SigManager::instance();
    connect(hub, &SigManager::Sig_RenameInputAudioSignals, this, &TableWidget::renameFromFirstLookupSlot);
    connect(hub, &SigManager::Sig_RenameInputSignals, this, &TableWidget::renameFromSecondLookupSlot);
    connect(hub, &SigManager::Sig_RenameInputHDMIAudioSignals, this, &TableWidget::renameFromSecondLookupSlot);
}

void TableWidget::buildGrid(int columns, int rows)
{
    clear();
    setColumnCount(columns);
    setRowCount(rows);
    for (int r = 0; r < rows; ++r) {
        for (int c = 0; c < columns; ++c) {
            if (columns * r + c == 8 && m_eightOutputs)
                continue;
            auto *item = new QTableWidgetItem(QString());
            item->setTextAlignment(Qt::AlignCenter);
            item->setData(OutputKeyRole, c + 1 + columns * r + m_indexOffset);
            setItem(r, c, item);
            auto *cell = new TableItemWidget;
            if (!m_cellColor.isEmpty())
                cell->setColor(m_cellColor, m_outputFontSize);
            cell->setInputFontSize(m_inputFontSize);
            setCellWidget(r, c, cell);
        }
    }
    horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    verticalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    emit layoutChangedSig();
    refreshOutputLines();
}

void TableWidget::setOutputName(int key, const QString &name)
{
    m_outputNames.insert(key, name);
    refreshOutputLines();
}

QString TableWidget::outputName(int key)
{
    return m_outputNames[key];
}

QTableWidgetItem *TableWidget::itemForKey(int key) const
{
    for (int r = 0; r < rowCount(); ++r) {
        for (int c = 0; c < columnCount(); ++c) {
            QTableWidgetItem *cellItem = item(r, c);
            if (cellItem && cellItem->data(OutputKeyRole).toInt() == key)
                return cellItem;
        }
    }
    return nullptr;
}

TableItemWidget *TableWidget::widgetForKey(int key) const
{
    return widgetFor(itemForKey(key));
}

TableItemWidget *TableWidget::widgetFor(const QTableWidgetItem *cellItem) const
{
    return cellItem ? qobject_cast<TableItemWidget *>(cellWidget(cellItem->row(), cellItem->column())) : nullptr;
}

void TableWidget::refreshOutputLines()
{
    for (int r = 0; r < rowCount(); ++r) {
        for (int c = 0; c < columnCount(); ++c) {
            auto *cell = qobject_cast<TableItemWidget *>(cellWidget(r, c));
            if (!cell)
                continue;
            const int key = c + 1 + columnCount() * r + m_indexOffset;
            cell->setOutputText(QString("[%1] %2").arg(key - m_indexOffset).arg(m_outputNames.value(key)));
        }
    }
}

void TableWidget::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->mimeData()->hasText())
        event->acceptProposedAction();
    else
        event->ignore();
}

void TableWidget::dragMoveEvent(QDragMoveEvent *event)
{
    if (event->mimeData()->hasText() && itemAt(event->pos()))
        event->acceptProposedAction();
    else
        event->ignore();
}

void TableWidget::dropEvent(QDropEvent *event)
{
    QTableWidgetItem *target = itemAt(event->pos());
    if (!target) {
        // Outside the cells, or the empty ninth cell of the eight-output model.
        event->ignore();
        return;
    }
    const int output = target->data(OutputKeyRole).toInt();
    const int payload = event->mimeData()->text().toInt(nullptr, 10);
    target->setData(PayloadRole, payload);

    // Label and emitted number fold at different thresholds (100 against 101);
    // kept as operators know it: a payload of exactly 100 shows as input 0.
    if (TableItemWidget *cell = widgetFor(target)) {
        cell->setInputText(payload <= 99 ? inputLabel(payload, inputName(payload))
                                         : inputLabel(payload - 100, audioInputName(payload - 100)));
    }
    if (m_foldAudioOffset) {
        emit dropPortToItemSig(payload < 101 ? payload : payload - 100, output);
    } else {
        emit dropPortToItemSig(payload, output);
        event->acceptProposedAction();
    }
}

void TableWidget::mouseDoubleClickEvent(QMouseEvent *event)
{
    QTableWidgetItem *target = itemAt(event->pos());
    if (!target) {
        QTableWidget::mouseDoubleClickEvent(event);
        return;
    }
    // Input 0 routes nothing to the output.
    emit dropPortToItemSig(0, target->data(OutputKeyRole).toInt());
    target->setText(QString());
    if (TableItemWidget *cell = widgetFor(target))
        cell->setInputText(QString());
}

void TableWidget::selectionChangedSlot()
{
    const QString normal = QString("QWidget{color:white} QWidget#outportWidget{ background:%1;color:white;}");
    for (int r = 0; r < rowCount(); ++r) {
        for (int c = 0; c < columnCount(); ++c) {
            if (QWidget *cell = cellWidget(r, c))
                cell->setStyleSheet(normal.arg(m_cellColor));
        }
    }
    if (TableItemWidget *current = widgetFor(currentItem()))
        current->setStyleSheet(normal.arg(SelectedCellColor));
}

// A port without a name has an empty one.
QString TableWidget::inputName(int port) const
{
    return m_names ? m_names->name(PortNames::VideoInput, port) : QString();
}

QString TableWidget::audioInputName(int port) const
{
    return m_names ? m_names->name(PortNames::AudioInput, port) : QString();
}

void TableWidget::relabelInput(int input, const QString &name)
{
    if (m_ignoreInputRenames)
        return;
    for (int r = 0; r < rowCount(); ++r) {
        for (int c = 0; c < columnCount(); ++c) {
            QTableWidgetItem *cellItem = item(r, c);
            if (!cellItem || !cellItem->data(PayloadRole).isValid() || cellItem->data(PayloadRole).toInt() != input)
                continue;
            if (TableItemWidget *cell = widgetFor(cellItem))
                cell->setInputText(inputLabel(input, name));
        }
    }
}

void TableWidget::renameFromFirstLookupSlot(int input)
{
    relabelInput(input, inputName(input));
}

void TableWidget::renameFromSecondLookupSlot(int input)
{
    relabelInput(input, audioInputName(input));
}

QPixmap TableWidget::layoutPreview(int columns, int rows, const QSize &size)
{
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    if (columns <= 0 || rows <= 0)
        return pixmap;
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const qreal gap = 2;
    const qreal w = (size.width() - gap * (columns + 1)) / columns;
    const qreal h = (size.height() - gap * (rows + 1)) / rows;
    painter.setBrush(QColor("#338c56"));
    for (int r = 0; r < rows; ++r) {
        for (int c = 0; c < columns; ++c)
            painter.drawRoundedRect(QRectF(gap + c * (w + gap), gap + r * (h + gap), w, h), 2, 2);
    }
    return pixmap;
}
