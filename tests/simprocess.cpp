#include "simprocess.h"

#include <QDeadlineTimer>
#include <QRegularExpression>
#include <QTest>

bool SimProcess::start(const QString &host, const QStringList &extraArgs)
{
    m_host = host;
    m_process.setProgram(ORVEX_SIM_PATH);
    m_process.setArguments(QStringList{"--host", host, "--port", QString::number(m_port)} + extraArgs);
    m_process.start();
    if (!m_process.waitForStarted(5000))
        return false;
    QByteArray line;
    while (!line.contains('\n')) {
        if (!m_process.waitForReadyRead(5000))
            return false;
        line += m_process.readAllStandardOutput();
    }
    const QRegularExpression ready(R"(^listening on (\S+):(\d+), (files on \S+:6666|no file port))");
    const QRegularExpressionMatch match = ready.match(QString::fromUtf8(line));
    if (!match.hasMatch())
        return false;
    m_port = quint16(match.captured(2).toUInt());
    return true;
}

void SimProcess::stop()
{
    m_log.clear();
    if (m_process.state() != QProcess::NotRunning) {
        m_process.kill();
        m_process.waitForFinished(3000);
    }
}

QByteArray SimProcess::commandLog()
{
    m_log += m_process.readAllStandardError();
    return m_log;
}

bool SimProcess::waitForCommand(const QByteArray &command, int timeoutMs)
{
    // A command the emulator does not know is logged with " (not understood)".
    const QByteArray line = "cmd: " + command + "\n";
    const QByteArray unknown = "cmd: " + command + " (";
    auto seen = [&] { return commandLog().contains(line) || m_log.contains(unknown); };
    return QTest::qWaitFor(seen, timeoutMs);
}
