#include "mainwindow/statusline.h"

#include "app/appsettings.h"

#include <QBoxLayout>
#include <QCoreApplication>
#include <QLabel>

namespace {
// Status texts are translation keys of the main window: their uneven blanks are kept byte for byte.
const char StatusConnecting[] = QT_TRANSLATE_NOOP("Widget", "OrvexMatrixControl  User:%3  Ip:%1  Port:%2 connecting");
const char StatusConnected[] = QT_TRANSLATE_NOOP("Widget", "OrvexMatrixControl  User:%3   Ip:%1  Port:%2  connected");
const char StatusDisconnected[] = QT_TRANSLATE_NOOP("Widget", "OrvexMatrixControl  User:%3  Ip:%1  Port:%2 disconnected");
// After a language change the evenly spaced variant is shown; both are kept.
const char StatusConnectedEven[] = QT_TRANSLATE_NOOP("Widget", "OrvexMatrixControl  User:%3  Ip:%1  Port:%2 connected");
constexpr int NoticeMs = 8000;
} // namespace

StatusLine::StatusLine(QLabel *text, QLabel *lamp, AppSettings *settings, QObject *parent)
    : QObject(parent)
    , m_text(text)
    , m_lamp(lamp)
    , m_notice(new QLabel(text->parentWidget()))
    , m_settings(settings)
{
    m_notice->setObjectName("noticeLabel");
    auto *bar = qobject_cast<QBoxLayout *>(text->parentWidget()->layout());
    bar->insertWidget(bar->indexOf(text) + 1, m_notice);
    m_noticeTimer.setSingleShot(true);
    m_noticeTimer.setInterval(NoticeMs);
    connect(&m_noticeTimer, &QTimer::timeout, m_notice, &QLabel::clear);
}

QString StatusLine::format(const char *source) const
{
    return QCoreApplication::translate("Widget", source)
        .arg(m_settings->ip())
        .arg(m_settings->port())
        .arg(m_settings->currentUser());
}

void StatusLine::show(int state)
{
    const char *source = state == AppSettings::Connected      ? StatusConnected
                         : state == AppSettings::Disconnected ? StatusDisconnected
                                                              : StatusConnecting;
    m_text->setText(format(source));
    static const char *const colours[] = {"#d9534f", "#e0a526", "#338c56"};
    m_lamp->setStyleSheet(QString("background:%1; border-radius:5px;").arg(colours[state]));
}

void StatusLine::retranslate()
{
    switch (m_settings->connectionState()) {
    case AppSettings::Disconnected: m_text->setText(format(StatusDisconnected)); break;
    case AppSettings::Connected: m_text->setText(format(StatusConnectedEven)); break;
    default: m_text->setText(format(StatusConnecting)); break;
    }
}

QString StatusLine::text() const
{
    return m_text->text();
}

void StatusLine::showNotice(const QString &text)
{
    m_notice->setText(text);
    m_noticeTimer.start();
}

QString StatusLine::notice() const
{
    return m_notice->text();
}
