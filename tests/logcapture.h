#pragma once

#include <QString>
#include <QStringList>
#include <QtGlobal>

// Diagnostics of the code under test, collected instead of written to the log
// file: install captureLog with qInstallMessageHandler, read capturedLog().
inline QStringList &capturedLog()
{
    static QStringList lines;
    return lines;
}

inline void captureLog(QtMsgType, const QMessageLogContext &, const QString &message)
{
    capturedLog().append(message);
}
