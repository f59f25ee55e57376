#pragma once

#include <QMap>
#include <QPixmap>
#include <QTableWidget>

class PortNames;
class TableItemWidget;

// A routing grid: one cell per output, each keyed by its output number. Inputs
// dropped on a cell are reported through dropPortToItemSig; the owner sends the
// switch command.
class TableWidget : public QTableWidget
{
    Q_OBJECT

public:
    static constexpr int OutputKeyRole = Qt::UserRole;        // 256
    static constexpr int PayloadRole = Qt::UserRole + 1;      // 257

    explicit TableWidget(QWidget *parent = nullptr);

    void setCellColor(const QString &color) { m_cellColor = color; }
    QString cellColor() const { return m_cellColor; }
    void setInputFontSize(int pointSize) { m_inputFontSize = pointSize; }
    void setIndexOffset(int offset) { m_indexOffset = offset; }
    int indexOffset() const { return m_indexOffset; }
    void setIgnoreInputRenames(bool ignore) { m_ignoreInputRenames = ignore; }
    bool ignoreInputRenames() const { return m_ignoreInputRenames; }
    void setFoldAudioOffset(bool fold) { m_foldAudioOffset = fold; }
    bool foldAudioOffset() const { return m_foldAudioOffset; }

    // Where input labels get their names; without it they show the number only.
    void setPortNames(const PortNames *names) { m_names = names; }

    // The eight-output model has no ninth output: that cell stays empty.
    void setEightOutputs(bool eight) { m_eightOutputs = eight; }
    void buildGrid(int columns, int rows);
    void setOutputName(int key, const QString &name);
    QString outputName(int key);

    // The cell showing output `key`, or nullptr.
    QTableWidgetItem *itemForKey(int key) const;
    TableItemWidget *widgetForKey(int key) const;

    // A small picture of a columns x rows wall, for the join-layout buttons.
    static QPixmap layoutPreview(int columns, int rows, const QSize &size = QSize(48, 36));

signals:
    void dropPortToItemSig(int iInput, int iOutput);
    void layoutChangedSig();

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private slots:
    void selectionChangedSlot();
    void renameFromFirstLookupSlot(int input);
    void renameFromSecondLookupSlot(int input);

private:
    void refreshOutputLines();
    void relabelInput(int input, const QString &name);
    TableItemWidget *widgetFor(const QTableWidgetItem *item) const;
    QString inputName(int port) const;
    QString audioInputName(int port) const;

    const PortNames *m_names = nullptr;
    QString m_cellColor;
    int m_outputFontSize = 12;
    QMap<int, QString> m_outputNames;
    int m_indexOffset = 0;
    int m_inputFontSize = 18;
    bool m_ignoreInputRenames = true;
    bool m_foldAudioOffset = true;
    bool m_eightOutputs = false;
};
