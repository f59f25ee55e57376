// bench_flood: the device link against an emulator that floods it, once with random
// bytes and once with valid frames. Reports how long the link took to drain each
// flood, its peak resident memory over the idle process, the reply parser's peak
// backlog, and how many bytes the application's log file would have received.
//   bench_flood [--bytes N] [--frames N] [--sim PATH]   (0 skips a flood)
#include "app/logger.h"
#include "device/devicemodel.h"
#include "device/messagedistance.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDateTime>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTimer>

#include <atomic>
#include <cstdio>

namespace {

constexpr char Host[] = "127.0.0.92";
constexpr int DeadlineMs = 10 * 60 * 1000;

std::atomic<qint64> g_logBytes{0};

// What logMessageHandler would append to the day's file, counted instead of written.
void countingHandler(QtMsgType, const QMessageLogContext &context, const QString &message)
{
    static const QString stamp = QDateTime::currentDateTime().toString("yyyy-MM-dd hh:mm:ss");
    const QString text = QString::fromLocal8Bit(message.toLocal8Bit());
    g_logBytes += formatLogLine(text, context.file, context.line, stamp).toLocal8Bit().size() + 2;
}

qint64 statusKiB(const char *field)
{
    QFile status("/proc/self/status");
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    const QRegularExpression line(QString("^%1:\\s*(\\d+) kB").arg(field), QRegularExpression::MultilineOption);
    return line.match(QString::fromLatin1(status.readAll())).captured(1).toLongLong();
}

// Lets VmHWM measure one flood at a time (Linux 4.0 and later).
bool resetPeak()
{
    QFile clearRefs("/proc/self/clear_refs");
    return clearRefs.open(QIODevice::WriteOnly) && clearRefs.write("5") == 1;
}

struct Result
{
    bool ok = false;
    double seconds = 0;
    qint64 idleKiB = 0;
    qint64 peakKiB = 0;
    int peakBuffered = 0;
    qint64 logBytes = 0;
    int frames = 0;
};

Result runFlood(const QString &simPath, const QStringList &flood, int expectedFrames)
{
    Result result;
    QProcess sim;
    sim.start(simPath, QStringList{"--host", Host, "--port", "0", "--verbose"} + flood);
    if (!sim.waitForStarted(5000) || !sim.waitForReadyRead(5000))
        return result;
    const QRegularExpressionMatch ready = QRegularExpression(R"(^listening on \S+:(\d+),)").match(sim.readLine());
    if (!ready.hasMatch())
        return result;

    MessageDistance link;
    DeviceModel model;
    model.attach(&link);
    bool answered = false;
    QObject::connect(&link, &MessageDistance::receiveVolumnImformationSig, &link, [&] { ++result.frames; });
    QObject::connect(&link, &MessageDistance::receiveVersionSig, &link, [&] { answered = true; });
    QTimer sampler;
    QObject::connect(&sampler, &QTimer::timeout, &link, [&] { result.peakBuffered = qMax(result.peakBuffered, link.bufferedBytes()); });
    sampler.start(1);

    resetPeak();
    result.idleKiB = statusKiB("VmRSS");
    g_logBytes = 0;
    QElapsedTimer clock;
    clock.start();
    link.connectToDevice(Host, quint16(ready.captured(1).toUInt()));
    QDeadlineTimer deadline(DeadlineMs);
    QByteArray simLog;
    // Drained once the emulator has sent everything and a reply written after it has come
    // back; the first may be lost to a frame the garbage left open, so ask again now and then.
    QElapsedTimer sinceQuery;
    while (!deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
        simLog += sim.readAllStandardError();
        if (!simLog.contains("flood:") || result.frames < expectedFrames)
            continue;
        if (answered)
            break;
        if (!sinceQuery.isValid() || sinceQuery.elapsed() > 500) {
            link.sendVersionQuery();
            sinceQuery.start();
        }
    }
    result.seconds = clock.elapsed() / 1000.0;
    result.peakKiB = statusKiB("VmHWM");
    result.logBytes = g_logBytes;
    result.ok = answered;
    sim.kill();
    sim.waitForFinished(3000);
    return result;
}

void report(const char *name, const Result &r)
{
    std::printf("%-26s %s in %.1f s: peak RSS %lld kB over idle %lld kB (+%.1f MiB), parser backlog peak %d B, "
                "log %.2f MiB, %d volume replies\n",
                name, r.ok ? "drained" : "NOT drained", r.seconds, r.peakKiB, r.idleKiB,
                (r.peakKiB - r.idleKiB) / 1024.0, r.peakBuffered, r.logBytes / 1048576.0, r.frames);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption bytes("bytes", "Random bytes to flood with (default 200 MiB).", "n", "209715200");
    const QCommandLineOption frames("frames", "Volume frames to flood with (default 3000000).", "n", "3000000");
    const QCommandLineOption simPath("sim", "The emulator (default: orvex-sim beside this program).", "path",
                                     QCoreApplication::applicationDirPath() + "/orvex-sim");
    parser.addHelpOption();
    parser.addOptions({bytes, frames, simPath});
    parser.process(app);
    qInstallMessageHandler(countingHandler);
    if (!resetPeak())
        std::printf("note: /proc/self/clear_refs not writable, peaks are since process start\n");

    bool ok = true;
    if (parser.value(bytes).toLongLong() > 0) {
        const Result r = runFlood(parser.value(simPath), {"--flood-bytes", parser.value(bytes)}, 0);
        report(qPrintable("--flood-bytes " + parser.value(bytes)), r);
        ok = ok && r.ok;
    }
    if (parser.value(frames).toLongLong() > 0) {
        const int expected = parser.value(frames).toInt();
        const Result r = runFlood(parser.value(simPath), {"--flood-frames", parser.value(frames)}, expected);
        report(qPrintable("--flood-frames " + parser.value(frames)), r);
        ok = ok && r.ok && r.frames == expected;
    }
    return ok ? 0 : 1;
}
