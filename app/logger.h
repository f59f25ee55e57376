#pragma once

#include <QString>
#include <QtGlobal>

// Writes every Qt diagnostic as one CR LF terminated line into
// "log/yyyy-MM-dd.log" below the current working directory, or below the folder
// given to setLogFolder.
void logMessageHandler(QtMsgType type, const QMessageLogContext &context, const QString &message);

// The folder of the daily files; "log" (relative to the working directory) until set.
void setLogFolder(const QString &folder);

// The line as the handler writes it, without the line end.
QString formatLogLine(const QString &message, const char *file, int line, const QString &dateTime);

// Names the system's time zone file in TZ when TZ is not set. Every line is stamped
// with the local time, and without TZ the C library looks at /etc/localtime again
// for each conversion, six times a line. Call before any thread starts. A change
// of the system's zone is then seen at the next start.
void pinLocalTimeZone();
