#include "simprocess.h"

#include <QRegularExpression>

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
    const QRegularExpression ready(R"(^listening on (\S+):(\d+), files on (\S+):6666)");
    const QRegularExpressionMatch match = ready.match(QString::fromUtf8(line));
    if (!match.hasMatch())
        return false;
    m_port = quint16(match.captured(2).toUInt());
    return true;
}

void SimProcess::stop()
{
    if (m_process.state() != QProcess::NotRunning) {
        m_process.kill();
        m_process.waitForFinished(3000);
    }
}
