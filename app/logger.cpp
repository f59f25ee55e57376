#include "app/logger.h"

#include <QDateTime>
#include <QFile>
#include <QMutex>
#include <QTextCodec>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <limits>
#include <unistd.h>

namespace {
QMutex &logMutex()
{
    static QMutex mutex;
    return mutex;
}

// Everything below is guarded by the log mutex.
QString &folderName()
{
    static QString folder = QStringLiteral("log");
    return folder;
}

// The clock's current second as the lines and the file names spell it, formatted
// once a second: formatting a date and time for every line cost as much as the
// file's three system calls.
struct LocalSecond
{
    qint64 second = std::numeric_limits<qint64>::min();
    QString dateTime;          // "yyyy-MM-dd hh:mm:ss", in the system locale's digits
    QByteArray encodedDateTime;  // the same in the local code page
    QString date;              // "yyyy-MM-dd"
};

const LocalSecond &readClock()
{
    static LocalSecond cached;
    const qint64 second = QDateTime::currentSecsSinceEpoch();
    if (second != cached.second) {
        const QDateTime local = QDateTime::fromSecsSinceEpoch(second);
        const QString dateTime = local.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
        cached = {second, dateTime, dateTime.toLocal8Bit(), local.date().toString(QStringLiteral("yyyy-MM-dd"))};
    }
    return cached;
}

// The day's file name, encoded, kept while the date and the folder stay.
struct DayFile
{
    QString date;
    QString folder;
    QByteArray path;
};

const QByteArray &dayFilePath(const QString &date)
{
    static DayFile cached;
    if (date != cached.date || folderName() != cached.folder) {
        cached = {date, folderName(),
                  QFile::encodeName(QStringLiteral("%1/%2.log").arg(folderName(), date))};
    }
    return cached.path;
}

// Text that comes out of the general path unchanged: ASCII, which every locale
// code page on this platform holds, without the "%" that substitution would
// act on, and without NUL, where the trip back from the code page stops.
bool isPlain(const QString &text)
{
    for (const QChar c : text) {
        if (c.unicode() == 0 || c.unicode() >= 0x80 || c == QLatin1Char('%'))
            return false;
    }
    return true;
}

bool isPlain(const char *text)
{
    for (; text && *text; ++text) {
        if (static_cast<unsigned char>(*text) >= 0x80 || *text == '%')
            return false;
    }
    return true;
}

bool localeKeepsAscii()
{
    const QTextCodec *codec = QTextCodec::codecForLocale();
    const int mib = codec ? codec->mibEnum() : 0;
    return mib == 106 || mib == 4 || mib == 3;  // UTF-8, Latin-1, US-ASCII
}

// The encoded line with its CR LF.
QByteArray encodedLine(const QString &message, const QMessageLogContext &context, const LocalSecond &stamp)
{
    if (isPlain(message) && isPlain(context.file) && localeKeepsAscii()) {
        // What the substitution and the code page give for such text, built directly.
        // The stamp fills the last placeholder, so nothing in it is substituted.
        QByteArray bytes;
        bytes.reserve(message.size() + stamp.encodedDateTime.size() + (context.file ? int(strlen(context.file)) : 0) + 40);
        bytes += '[';
        bytes += stamp.encodedDateTime;
        bytes += "][File:";
        bytes += context.file ? context.file : "";
        bytes += "  Line:";
        bytes += QByteArray::number(context.line);
        bytes += "]:";
        bytes += message.toLatin1();
        bytes += "\r\n";
        return bytes;
    }
    // Round trip through the local code page: characters it cannot hold are lost,
    // which keeps the files readable by tools that assume that code page.
    const QString text = QString::fromLocal8Bit(message.toLocal8Bit());
    return (formatLogLine(text, context.file, context.line, stamp.dateTime) + QStringLiteral("\r\n")).toLocal8Bit();
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

    const QByteArray bytes = encodedLine(message, context, readClock());

    // A second clock reading: a line written across midnight may go to the next day's file.
    // Opened, appended to and closed for every line, each line on disk before the next
    // message: straight through the system calls, which QFile would double with stat
    // and seek calls. Encoded as a QTextStream on the file would encode it (the locale's).
    const int fd = ::open(dayFilePath(readClock().date).constData(), O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
    if (fd < 0)
        return;  // lost, as the stream into a closed file would lose it
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
