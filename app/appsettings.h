#pragma once

#include <QMap>
#include <QSettings>
#include <QString>
#include <QStringList>

// The process-wide settings store: config.ini in the data folder (beside the
// executable, or the per-user folder of an installed copy) plus the little
// state that only lives in memory (who is logged in, link state).
class AppSettings
{
public:
    enum ConnectionState { Disconnected = 0, Connecting = 1, Connected = 2 };

    static AppSettings *instance();

    // For tests and tools: a store over an explicit file.
    explicit AppSettings(const QString &iniPath);

    void setNetwork(const QString &ip, int port);
    void setUsername(const QString &name);
    void setLanguage(int language);

    QString ip() const;
    int port() const;
    QString username() const;
    int language() const;
    // The main window's place and size, as QWidget::saveGeometry gives it; empty at first start.
    QByteArray windowGeometry() const;
    void setWindowGeometry(const QByteArray &geometry);

    QString currentUser() const { return m_currentUser; }
    void setCurrentUser(const QString &name) { m_currentUser = name; }
    int connectionState() const { return m_connectionState; }
    void setConnectionState(int state) { m_connectionState = state; }
    int adminFlag() const { return m_adminFlag; }

    QString fileName() const { return m_settings.fileName(); }

private:
    // Logs an unusable stored value once, not at every read.
    void reportUnusable(const char *key, const QString &text, const QString &fallback) const;

    mutable QSettings m_settings;
    mutable QStringList m_reported;
    QString m_currentUser;
    int m_connectionState = Connecting;
    int m_reserved = 0;
    const int m_adminFlag = 1;
};
