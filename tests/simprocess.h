#pragma once

#include <QProcess>
#include <QStringList>

// Runs the bundled device emulator on a loopback address of the test's own.
class SimProcess
{
public:
    ~SimProcess() { stop(); }

    bool start(const QString &host, const QStringList &extraArgs = {});
    void stop();
    // The command port for the next start (0: any free port).
    void setPort(quint16 port) { m_port = port; }
    quint16 port() const { return m_port; }
    QString host() const { return m_host; }
    // With --verbose the emulator logs every command it receives ("cmd: ...").
    bool waitForCommand(const QByteArray &command, int timeoutMs = 3000);
    QByteArray commandLog();

private:
    QProcess m_process;
    QString m_host;
    quint16 m_port = 0;
    QByteArray m_log;
};
