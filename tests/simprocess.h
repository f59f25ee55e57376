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
    quint16 port() const { return m_port; }
    QString host() const { return m_host; }
    QByteArray stderrText() { return m_process.readAllStandardError(); }

private:
    QProcess m_process;
    QString m_host;
    quint16 m_port = 0;
};
