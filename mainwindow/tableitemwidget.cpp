#include "mainwindow/tableitemwidget.h"
#include "ui_tableitemwidget.h"

namespace {
QString fontStyle(int pointSize)
{
    return QString("font-size:%1pt; font-family:\"Arial\",\"Microsoft YaHei\"; font-weight:bold;").arg(pointSize);
}
} // namespace

TableItemWidget::TableItemWidget(QWidget *parent)
    : QWidget(parent)
    , ui(new Ui::TableItemWidget)
{
    ui->setupUi(this);
    // Presses, double clicks and drops belong to the grid underneath.
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

TableItemWidget::~TableItemWidget()
{
    delete ui;
}

void TableItemWidget::setInputText(const QString &text)
{
    ui->labelInput->setText(text);
}

void TableItemWidget::setOutputText(const QString &text)
{
    ui->labelOutput->setText(text);
}

QString TableItemWidget::inputText() const
{
    return ui->labelInput->text();
}

QString TableItemWidget::outputText() const
{
    return ui->labelOutput->text();
}

void TableItemWidget::setColor(const QString &color, int pointSize)
{
    setStyleSheet(QString("QWidget#outportWidget{ background:%1; font-size:%2pt;}QWidget{color:white;}")
                          .arg(color)
                          .arg(pointSize));
    ui->labelOutput->setStyleSheet(fontStyle(pointSize));
}

void TableItemWidget::setInputFontSize(int pointSize)
{
    m_inputFontSize = pointSize;
    applyInputStyle();
}

void TableItemWidget::setSignalPresent(bool present)
{
    if (present == m_signalPresent)
        return;
    m_signalPresent = present;
    applyInputStyle();
}

void TableItemWidget::setPending(bool pending)
{
    if (pending == m_pending)
        return;
    m_pending = pending;
    applyInputStyle();
}

void TableItemWidget::applyInputStyle()
{
    ui->labelInput->setStyleSheet(fontStyle(m_inputFontSize) + (m_signalPresent ? "" : " color:#c9d3cd;")
                                  + (m_pending ? " font-style:italic; color:#f6e7b0;" : ""));
}
