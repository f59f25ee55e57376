#include "mainwindow/tableitemwidget.h"
#include "ui_tableitemwidget.h"

#include <QFontDatabase>
#include <QPainter>
#include <QRegularExpression>
#include <QStyle>

namespace {
// Arial where it is installed. Elsewhere the font stood in for Arial depended
// on the locale (a Chinese one gave a CJK font without bold), so the cells take
// the first installed family of a fixed list; Chinese names still get their
// glyphs from the fallback font.
QString cellFontFamily()
{
    static const QString family = [] {
        const QStringList installed = QFontDatabase().families();
        for (const char *name : {"Arial", "Liberation Sans", "DejaVu Sans", "Noto Sans", "Microsoft YaHei"}) {
            if (installed.contains(QLatin1String(name)))
                return QString(name);
        }
        return QStringLiteral("Arial");
    }();
    return family;
}

QString fontStyle(int pointSize)
{
    return QString("font-size:%1pt; font-family:\"%2\"; font-weight:bold;").arg(pointSize).arg(cellFontFamily());
}
} // namespace

QSize ElidingLabel::minimumSizeHint() const
{
    // As narrow as the cell: the text is cut instead of widening the grid.
    return QSize(0, QLabel::minimumSizeHint().height());
}

void ElidingLabel::paintEvent(QPaintEvent *)
{
    static const QRegularExpression numbered(QStringLiteral("^(\\s*\\[\\d+\\]\\s*)(.*)$"));
    const QRect area = contentsRect();
    const QFontMetrics metrics = fontMetrics();
    QString shown = text();
    if (metrics.horizontalAdvance(shown) > area.width()) {
        const QRegularExpressionMatch match = numbered.match(shown);
        const QString number = match.hasMatch() ? match.captured(1) : QString();
        const QString name = match.hasMatch() ? match.captured(2) : shown;
        shown = number + metrics.elidedText(name, Qt::ElideRight, qMax(0, area.width() - metrics.horizontalAdvance(number)));
    }
    QPainter painter(this);
    style()->drawItemText(&painter, area, int(alignment()), palette(), isEnabled(), shown, foregroundRole());
}

TableItemWidget::TableItemWidget(QWidget *parent)
    : QWidget(parent)
    , ui(new Ui::TableItemWidget)
{
    ui->setupUi(this);
    // Presses, double clicks and drops belong to the grid underneath.
    setAttribute(Qt::WA_TransparentForMouseEvents);
    applyInputStyle();
    ui->labelOutput->setStyleSheet(fontStyle(12));
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
