#pragma once

#include <QString>
#include <QtGlobal>

// Writes every Qt diagnostic as one CR LF terminated line into
// "log/yyyy-MM-dd.log" below the current working directory.
void logMessageHandler(QtMsgType type, const QMessageLogContext &context, const QString &message);

// The line as the handler writes it, without the line end.
QString formatLogLine(const QString &message, const char *file, int line, const QString &dateTime);
