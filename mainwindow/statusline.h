#pragma once

#include <QObject>
#include <QTimer>

class AppSettings;
class QLabel;

// The bottom line of the main window: the connection state with its lamp, and
// beside it a short notice of a refused or failed action that fades after a while.
class StatusLine : public QObject
{
    Q_OBJECT

public:
    StatusLine(QLabel *text, QLabel *lamp, AppSettings *settings, QObject *parent);

    // state: AppSettings::ConnectionState.
    void show(int state);
    // After a language change: the evenly spaced "connected" text, as operators know it.
    void retranslate();
    QString text() const;

    void showNotice(const QString &text);
    QString notice() const;

private:
    QString format(const char *source) const;

    QLabel *m_text;
    QLabel *m_lamp;
    QLabel *m_notice;
    AppSettings *m_settings;
    QTimer m_noticeTimer;
};
