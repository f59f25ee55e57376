#include "app/logger.h"

#include <QDateTime>
#include <QFile>
#include <QMutex>
#include <QTextStream>

namespace {
QMutex &logMutex()
{
    static QMutex mutex;
    return mutex;
}

QString &folderName()
{
    static QString folder = QStringLiteral("log");
    return folder;
}
} // namespace

void setLogFolder(const QString &folder)
{
    QMutexLocker locker(&logMutex());
    folderName() = folder;
}

QString formatLogLine(const QString &message, const char *file, int line, const QString &dateTime)
{
    // Successive arg() on purpose: a "%n" inside the message takes part in the
    // substitution, exactly as in the log files operators already have.
    return QString("[%4][File:%2  Line:%3]:%1")
            .arg(message)
            .arg(QString(file ? file : ""))
            .arg(line)
            .arg(dateTime);
}

void logMessageHandler(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    QMutexLocker locker(&logMutex());

    // Round trip through the local code page: characters it cannot hold are lost,
    // which keeps the files readable by tools that assume that code page.
    const QString text = QString::fromLocal8Bit(message.toLocal8Bit());

    // Log lines carry no level; the word is chosen and dropped to keep old line format.
    QString level;
    switch (type) {
    case QtDebugMsg: level = QStringLiteral("Debug:"); break;
    case QtWarningMsg: level = QStringLiteral("Warning:"); break;
    case QtCriticalMsg: level = QStringLiteral("Critical:"); break;
    case QtFatalMsg: level = QStringLiteral("Fatal:"); break;
    default: break;
    }
    Q_UNUSED(level)

    const QString stamp = QDateTime::currentDateTime().toString("yyyy-MM-dd hh:mm:ss");
    const QString line = formatLogLine(text, context.file, context.line, stamp);

    // A second clock reading: a line written across midnight may go to the next day's file.
    QFile file(QString("%1/%2.log").arg(folderName(), QDate::currentDate().toString("yyyy-MM-dd")));
    file.open(QIODevice::ReadWrite | QIODevice::Append);
    QTextStream stream(&file);
    stream << line << "\r\n";
    stream.flush();
    file.close();
}
