#include "app/appsettings.h"

#include <QCoreApplication>
#include <QMutex>

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
        settings = new AppSettings(QCoreApplication::applicationDirPath() + "/config.ini");
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

QString AppSettings::ip() const
{
    const QString ip = m_settings.value(KeyIp).toString();
    return ip.isEmpty() ? QString(DefaultIp) : ip;
}

int AppSettings::port() const
{
    // Missing, non-numeric and 0 all fall back to the default port.
    const int port = m_settings.value(KeyPort).toString().toInt(nullptr, 10);
    return port == 0 ? DefaultPort : port;
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
