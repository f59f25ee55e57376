#include "app/appsettings.h"

#include "app/datafolder.h"

#include <QDebug>
#include <QHostAddress>
#include <QMutex>
#include <QRegularExpression>

namespace {
// Section spelled "NetWork" on purpose: existing config.ini files use it.
const char KeyIp[] = "NetWork/Ip";
const char KeyPort[] = "NetWork/Port";
const char KeyUser[] = "User/Username";
const char KeyLanguage[] = "Language/language";
const char DefaultIp[] = "192.168.1.188";
const int DefaultPort = 80;
} // namespace

AppSettings *AppSettings::instance()
{
    static QMutex mutex;
    static AppSettings *settings = nullptr;
    QMutexLocker locker(&mutex);
    if (!settings)
        settings = new AppSettings(dataFolder() + "/config.ini");
    return settings;
}

AppSettings::AppSettings(const QString &iniPath)
    : m_settings(iniPath, QSettings::IniFormat)
{
    Q_UNUSED(m_reserved)
}

void AppSettings::setNetwork(const QString &ip, int port)
{
    m_settings.setValue(KeyIp, ip);
    m_settings.setValue(KeyPort, port);
    m_settings.sync();
}

void AppSettings::setUsername(const QString &name)
{
    m_settings.setValue(KeyUser, name);
    m_settings.sync();
}

void AppSettings::setLanguage(int language)
{
    m_settings.setValue(KeyLanguage, language);
    m_settings.sync();
}

QByteArray AppSettings::windowGeometry() const
{
    return m_settings.value(QStringLiteral("Window/geometry")).toByteArray();
}

void AppSettings::setWindowGeometry(const QByteArray &geometry)
{
    m_settings.setValue(QStringLiteral("Window/geometry"), geometry);
    m_settings.sync();
}

void AppSettings::reportUnusable(const char *key, const QString &text, const QString &fallback) const
{
    const QString entry = QLatin1String(key) + QLatin1Char('=') + text;
    if (m_reported.contains(entry))
        return;
    m_reported << entry;
    qWarning().noquote() << QString("config.ini: %1 \"%2\" is unusable, using %3").arg(key, text, fallback);
}

QString AppSettings::ip() const
{
    const QString ip = m_settings.value(KeyIp).toString();
    if (ip.isEmpty())
        return DefaultIp;
    // An address or a host name; "ip:port" and the like would never connect.
    static const QRegularExpression hostName(
            QStringLiteral("^[A-Za-z0-9]([A-Za-z0-9-]*[A-Za-z0-9])?(\\.[A-Za-z0-9]([A-Za-z0-9-]*[A-Za-z0-9])?)*$"));
    if (QHostAddress(ip).isNull() && !hostName.match(ip).hasMatch()) {
        reportUnusable(KeyIp, ip, DefaultIp);
        return DefaultIp;
    }
    return ip;
}

int AppSettings::port() const
{
    // Missing, non-numeric and 0 all fall back to the default port, and so does
    // a number no TCP port has (70000 would otherwise wrap to 4464).
    const QString text = m_settings.value(KeyPort).toString();
    const int port = text.toInt(nullptr, 10);
    if (port >= 1 && port <= 65535)
        return port;
    if (!text.isEmpty())
        reportUnusable(KeyPort, text, QString::number(DefaultPort));
    return DefaultPort;
}

QString AppSettings::username() const
{
    return m_settings.value(KeyUser, QStringLiteral("ADMIN")).toString();
}

int AppSettings::language() const
{
    if (!m_settings.contains(KeyLanguage))
        return -1;
    return m_settings.value(KeyLanguage).toInt();
}
