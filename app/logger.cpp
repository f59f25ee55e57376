#include "app/logger.h"

#include <QDateTime>
#include <QFile>
#include <QMutex>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

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

void pinLocalTimeZone()
{
    if (!qEnvironmentVariableIsSet("TZ"))
        qputenv("TZ", ":/etc/localtime");
}

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
    const QString path = QString("%1/%2.log").arg(folderName(), QDate::currentDate().toString("yyyy-MM-dd"));
    // Opened, appended to and closed for every line, each line on disk before the next
    // message: straight through the system calls, which QFile would double with stat
    // and seek calls. Encoded as a QTextStream on the file would encode it (the locale's).
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
    if (fd < 0)
        return;  // lost, as the stream into a closed file would lose it
    const QByteArray bytes = (line + QStringLiteral("\r\n")).toLocal8Bit();
    for (qint64 done = 0; done < bytes.size();) {
        const ssize_t written = ::write(fd, bytes.constData() + done, size_t(bytes.size() - done));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            break;
        done += written;
    }
    ::close(fd);
}
