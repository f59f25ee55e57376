#pragma once

#include <QLabel>
#include <QWidget>

namespace Ui {
class TableItemWidget;
}

// A cell's line: a long name is cut with "…" to the width it has, but the
// leading port number ("[4] ") stays whole. text() keeps the full line.
class ElidingLabel : public QLabel
{
public:
    using QLabel::QLabel;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

// One output cell of a routing grid: the routed input above, the output below.
class TableItemWidget : public QWidget
{
    Q_OBJECT

public:
    explicit TableItemWidget(QWidget *parent = nullptr);
    ~TableItemWidget() override;

    void setInputText(const QString &text);
    void setOutputText(const QString &text);
    QString inputText() const;
    QString outputText() const;
    void setColor(const QString &color, int pointSize);
    void setInputFontSize(int pointSize);
    // An input routed here without a signal is drawn dimmed.
    void setSignalPresent(bool present);
    // A switch sent here that the device has not confirmed yet: drawn in italics.
    void setPending(bool pending);
    bool isPending() const { return m_pending; }

private:
    void applyInputStyle();

    Ui::TableItemWidget *ui;
    int m_inputFontSize = 18;
    bool m_signalPresent = true;
    bool m_pending = false;
};
