// orvexctl: the integrator's command-line view of the device link.
//   orvexctl parse < capture.bin   one JSON line per reply frame, as the application reads it
//   orvexctl --host ADDR --port N status
//                                  refresh everything and print the device record as one JSON line
//   orvexctl --host ADDR --port N route INPUT OUTPUT [--audio|--ir|--wall]
//                                  check the ports against the device's model, switch, then
//                                  print the map the device answers with
#include "app/quitonsignal.h"
#include "device/devicemodel.h"
#include "device/devicestate.h"
#include "device/messagedistance.h"
#include "device/replyparser.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QStringList>
#include <QTextStream>
#include <QTimer>

#include <cstdio>
#include <functional>
#include <limits>
#include <optional>

namespace {

constexpr int ExitFailure = 2;
constexpr int DefaultDeadlineSeconds = 5;

void quietHandler(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    // The parser's own log lines belong to the application's log file, not to our output.
    if (type != QtDebugMsg && type != QtInfoMsg)
        std::fprintf(stderr, "%s\n", qPrintable(message));
}

// parse's view of the parser's log: a reply it drops for growing too long is news.
void parseHandler(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (message.startsWith(QLatin1String("receive buffer: dropped")))
        std::fprintf(stderr, "orvexctl: %s\n", qPrintable(message));
    else
        quietHandler(type, context, message);
}

void printLine(const QJsonObject &object)
{
    QTextStream out(stdout);
    out << QJsonDocument(object).toJson(QJsonDocument::Compact) << '\n';
}

// ---- parse ----------------------------------------------------------------

QJsonObject describe(const ParsedReply &reply)
{
    QJsonObject line;
    line.insert("frame", QString::fromUtf8(reply.frame));
    line.insert("ok", reply.ok);
    if (!reply.ok)
        line.insert("error", reply.error);
    QJsonArray names;
    for (ReplySignal signal : reply.signals_)
        names.append(QString::fromLatin1(replySignalName(signal)));
    line.insert("signals", names);
    if (reply.ok)
        line.insert("object", reply.object);
    return line;
}

int runParse()
{
    QFile in;
    if (!in.open(stdin, QIODevice::ReadOnly)) {
        std::fprintf(stderr, "orvexctl: cannot read standard input\n");
        return 1;
    }
    ReplyParser parser;
    QTextStream out(stdout);
    ParsedReply reply;
    qInstallMessageHandler(parseHandler);
    // Feed in chunks as a socket would; the parser keeps partial frames.
    while (!in.atEnd()) {
        parser.append(in.read(64 * 1024));
        while (parser.next(&reply))
            out << QJsonDocument(describe(reply)).toJson(QJsonDocument::Compact) << '\n';
    }
    out.flush();
    // Whatever the parser still holds is a frame the capture cut off: the application would wait for its "}".
    if (parser.bufferedBytes() > 0)
        std::fprintf(stderr, "orvexctl: dropped an unfinished frame at the end of the input (%d bytes)\n",
                     parser.bufferedBytes());
    return 0;
}

// ---- talking to the device -------------------------------------------------

// A reply the exchange waits for; the device model reads every reply itself.
using Reply = void (MessageDistance::*)(QJsonObject);

constexpr Reply VideoMapReply = &MessageDistance::receiveVideoMapSig;
constexpr Reply AudioMapReply = &MessageDistance::receiveAudioMapSig;
constexpr Reply IrMapReply = &MessageDistance::receiveIrMapSig;

struct Target
{
    QString host;
    quint16 port = 0;
    int deadlineSeconds = DefaultDeadlineSeconds;
};

// Rounds with the device under one deadline, which also covers connecting (the
// link retries a refused connection every 2 s on its own): each round sends once
// the command connection is up, feeds replies into the device model (the same
// reading as the main window) and waits until each awaited reply has come at
// least once.
class Exchange
{
public:
    enum Outcome { Answered, TimedOut, Interrupted };
    // What the loops return when SIGINT or SIGTERM ends the program.
    static constexpr int InterruptedCode = 130;

    explicit Exchange(const Target &target);

    const DeviceRecord &record() const { return m_model.record(); }

    // On a timeout, also reports on stderr.
    Outcome round(const QList<Reply> &awaited, const std::function<void(MessageDistance &)> &send);

private:
    Target m_target;
    QDeadlineTimer m_deadline;
    DeviceModel m_model;
    bool m_started = false;
    bool m_connected = false;
    bool m_sent = false;
    // Last, so that its worker is joined before anything its replies are queued to goes away.
    MessageDistance m_link;
};

Exchange::Exchange(const Target &target)
    : m_target(target)
    , m_deadline(target.deadlineSeconds * 1000, Qt::PreciseTimer)
{
    m_model.attach(&m_link);
    QObject::connect(&m_link, &MessageDistance::connectSuccessFulSig, [this] { m_connected = true; });
    QObject::connect(&m_link, &MessageDistance::connectFailureSig, [this] { m_connected = false; });
}

Exchange::Outcome Exchange::round(const QList<Reply> &awaited, const std::function<void(MessageDistance &)> &send)
{
    QEventLoop loop;  // also the context of this round's connections
    QSet<int> missing;
    for (int i = 0; i < awaited.size(); ++i) {
        missing.insert(i);
        // Connected after the model's own connection, so the model has read the reply.
        QObject::connect(&m_link, awaited[i], &loop, [&missing, &loop, i] {
            missing.remove(i);
            if (missing.isEmpty())
                loop.exit(Answered);
        });
    }
    bool sent = false;
    auto sendOnce = [&] {
        // Only once: a reconnect after a dropped line must not switch twice.
        if (!sent) {
            sent = m_sent = true;
            send(m_link);
        }
    };
    QObject::connect(&m_link, &MessageDistance::connectSuccessFulSig, &loop, sendOnce);
    QTimer::singleShot(int(m_deadline.remainingTime()), Qt::PreciseTimer, &loop, [&loop] { loop.exit(TimedOut); });
    if (!m_started) {
        m_started = true;
        m_link.connectToDevice(m_target.host, m_target.port);
    } else if (m_connected) {
        sendOnce();
    }
    const int result = loop.exec();
    if (result == Answered)
        return Answered;
    if (result != TimedOut)
        return Interrupted;  // the signal handler's code, or -1 once the application is quitting
    std::fprintf(stderr, "orvexctl: %s %s:%u within %d s\n", m_sent ? "no answer from" : "no connection to",
                 qPrintable(m_target.host), unsigned(m_target.port), m_target.deadlineSeconds);
    return TimedOut;
}

// What the program returns for a round that did not end with the answers.
int exitStatus(Exchange::Outcome outcome)
{
    return outcome == Exchange::Interrupted ? 0 : ExitFailure;
}

int runStatus(const Target &target)
{
    Exchange exchange(target);
    const Exchange::Outcome outcome = exchange.round(
        {&MessageDistance::receiveVersionSig, VideoMapReply, AudioMapReply, IrMapReply,
         &MessageDistance::receiveInputChannelStateSig, &MessageDistance::receiveInChannelResolutionMapSig,
         &MessageDistance::receiveNetWorkImforamtionSig, &MessageDistance::receiveOutChannelResolutionMapSig,
         &MessageDistance::receiveVolumnImformationSig},
        [](MessageDistance &link) {
            // The main window's refresh, plus the volumes it asks for separately.
            DeviceModel::requestState(&link);
            link.sendVolumeQuery();
        });
    if (outcome != Exchange::Answered)
        return exitStatus(outcome);
    printLine(DeviceState::toJson(exchange.record()));
    return 0;
}

// What a switch kind answers with, and under which name of the record's JSON that map is.
struct RouteKind
{
    int kind;
    Reply reply;
    const char *mapName;
};

const RouteKind VideoRoute{DeviceModel::Video, VideoMapReply, "video"};
const RouteKind AudioRoute{DeviceModel::Audio, AudioMapReply, "audio"};
const RouteKind IrRoute{DeviceModel::Ir, IrMapReply, "ir"};
const RouteKind WallRoute{DeviceModel::Wall, VideoMapReply, "video"};

// Inputs and outputs of each kind; the ORXM100 (model flag 0) has 8, the ORXM200 9.
constexpr int MaxPorts = 9;
int modelPorts(const DeviceRecord &record)
{
    return record.modelFlag() == 0 ? 8 : 9;
}

// Why INPUT or OUTPUT cannot be switched on a device with `ports` ports; empty when they can.
QString routeError(const RouteKind &route, int input, int output, int ports)
{
    const QString range = QStringLiteral("(1..%1)").arg(ports);
    if (input > ports)
        return QStringLiteral("INPUT %1 is not an input %2").arg(input).arg(range);
    if (&route == &WallRoute)
        return QString();  // the wall is one output, whatever OUTPUT says
    // Audio outputs also address the HDMI audio of output k as 100 + k.
    if (&route == &AudioRoute && output > 100 && output - 100 <= ports)
        return QString();
    if (output > ports)
        return QStringLiteral("OUTPUT %1 is not an output %2%3")
            .arg(output)
            .arg(range, &route == &AudioRoute ? QStringLiteral(" or HDMI audio (101..%1)").arg(100 + ports) : QString());
    return QString();
}

int runRoute(const Target &target, const RouteKind &route, int input, int output)
{
    Exchange exchange(target);
    // The model first: an ORXM100 has one port less than the check before connecting allowed.
    Exchange::Outcome outcome =
        exchange.round({&MessageDistance::receiveVersionSig}, [](MessageDistance &link) { link.sendVersionQuery(); });
    if (outcome != Exchange::Answered)
        return exitStatus(outcome);
    const QString error = routeError(route, input, output, modelPorts(exchange.record()));
    if (!error.isEmpty()) {
        std::fprintf(stderr, "orvexctl: %s on this %s, nothing sent\n", qPrintable(error),
                     qPrintable(exchange.record().modelType()));
        return ExitFailure;
    }
    outcome = exchange.round({route.reply}, [&](MessageDistance &link) { link.sendSwitch(input, output, route.kind); });
    if (outcome != Exchange::Answered)
        return exitStatus(outcome);
    const QJsonObject state = DeviceState::toJson(exchange.record());
    QJsonObject line{{route.mapName, state.value(route.mapName)}};
    // The join mode travels with the video map.
    if (route.reply == VideoMapReply)
        line.insert("mode", state.value("joinMode"));
    printLine(line);
    return 0;
}

// ---- command line ----------------------------------------------------------

struct Invocation
{
    enum Command { Help, Parse, Status, Route } command = Help;
    Target target;
    const RouteKind *route = &VideoRoute;
    int input = 0;
    int output = 0;
};

void usage()
{
    std::fprintf(stderr,
                 "usage: orvexctl parse < bytes\n"
                 "       orvexctl --host ADDR --port N [--timeout S] status\n"
                 "       orvexctl --host ADDR --port N [--timeout S] route INPUT OUTPUT [--audio|--ir|--wall]\n"
                 "       orvexctl --version\n"
                 "  parse   read raw device bytes from standard input and print one JSON line per\n"
                 "          reply frame: frame after repairs, ok, error, signals, object; an unfinished\n"
                 "          frame left at the end, or dropped for growing past 1 MiB, is noted on standard error\n"
                 "  status  query everything and print the device record as one JSON line\n"
                 "  route   switch INPUT to OUTPUT (video unless --audio or --ir; --wall switches the\n"
                 "          whole joined wall and ignores OUTPUT) and print the map the device answers.\n"
                 "          Ports are 1..9, 1..8 on an ORXM100 (asked for its model first); audio outputs\n"
                 "          101.. are the HDMI audio of outputs 1..; a port out of range is refused unsent\n"
                 "  Without an answer within S seconds (default %d): one line on standard error, exit status 2.\n"
                 "  SIGINT or SIGTERM: stops at once, prints nothing more, exit status 0.\n",
                 DefaultDeadlineSeconds);
}

std::optional<int> positiveNumber(const QString &text, int max = std::numeric_limits<int>::max())
{
    bool ok = false;
    const int value = text.toInt(&ok);
    if (!ok || value < 1 || value > max)
        return std::nullopt;
    return value;
}

// Empty for bad arguments, with the reason in *error (and *showUsage when the
// command line's shape is wrong rather than one of its values).
std::optional<Invocation> parseArguments(const QStringList &arguments, QString *error, bool *showUsage)
{
    QCommandLineParser parser;
    const QCommandLineOption help({"h", "help"}, "");
    const QCommandLineOption host("host", "", "addr");
    const QCommandLineOption port("port", "", "n");
    const QCommandLineOption audio("audio", "");
    const QCommandLineOption ir("ir", "");
    const QCommandLineOption wall("wall", "");
    const QCommandLineOption timeout("timeout", "", "s");
    parser.addOptions({help, host, port, audio, ir, wall, timeout});
    *showUsage = true;
    if (!parser.parse(arguments)) {
        const QStringList unknown = parser.unknownOptionNames();
        *error = unknown.isEmpty() ? parser.errorText()
                                   : QStringLiteral("unknown option %1%2").arg(unknown[0].size() == 1 ? "-" : "--", unknown[0]);
        return std::nullopt;
    }

    Invocation invocation;
    const QStringList positional = parser.positionalArguments();
    const QString command = positional.value(0);
    if (parser.isSet(help))
        return invocation;
    if (command == "parse") {
        invocation.command = Invocation::Parse;
        return invocation;
    }
    if (command.isEmpty()) {
        *error = QStringLiteral("no command");
        return std::nullopt;
    }
    if (command != "status" && command != "route") {
        *error = QStringLiteral("unknown command %1").arg(command);
        return std::nullopt;
    }
    if (parser.value(host).isEmpty()) {
        *error = QStringLiteral("%1 needs --host").arg(command);
        return std::nullopt;
    }
    const std::optional<int> portNumber = positiveNumber(parser.value(port), 65535);
    if (!portNumber) {
        *error = parser.isSet(port) ? QStringLiteral("--port %1 is not a port number (1..65535)").arg(parser.value(port))
                                    : QStringLiteral("%1 needs --port").arg(command);
        return std::nullopt;
    }
    invocation.target = {parser.value(host), quint16(*portNumber)};
    if (parser.isSet(timeout)) {
        const std::optional<int> seconds = positiveNumber(parser.value(timeout), 3600);
        if (!seconds) {
            *error = QStringLiteral("--timeout %1 is not a number of seconds (1..3600)").arg(parser.value(timeout));
            return std::nullopt;
        }
        invocation.target.deadlineSeconds = *seconds;
    }
    QStringList kinds;
    for (const QCommandLineOption *kind : {&audio, &ir, &wall}) {
        if (parser.isSet(*kind))
            kinds << "--" + kind->names().first();
    }

    if (command == "status") {
        if (positional.size() > 1)
            *error = QStringLiteral("status takes no argument, got %1").arg(positional[1]);
        else if (!kinds.isEmpty())
            *error = QStringLiteral("%1 goes with route, not status").arg(kinds[0]);
        invocation.command = Invocation::Status;
        return error->isEmpty() ? std::optional<Invocation>(invocation) : std::nullopt;
    }
    if (positional.size() != 3) {
        *error = positional.size() < 3 ? QStringLiteral("route needs INPUT and OUTPUT")
                                       : QStringLiteral("route takes INPUT and OUTPUT only, got %1 too").arg(positional[3]);
        return std::nullopt;
    }
    if (kinds.size() > 1) {
        *error = QStringLiteral("%1 exclude each other").arg(kinds.join(" and "));
        return std::nullopt;
    }
    const std::optional<int> input = positiveNumber(positional.at(1));
    const std::optional<int> output = positiveNumber(positional.at(2));
    if (!input || !output) {
        *error = QStringLiteral("%1 %2 is not a port number").arg(input ? "OUTPUT" : "INPUT", positional.at(input ? 2 : 1));
        return std::nullopt;
    }
    invocation.command = Invocation::Route;
    invocation.input = *input;
    invocation.output = *output;
    if (parser.isSet(audio))
        invocation.route = &AudioRoute;
    else if (parser.isSet(ir))
        invocation.route = &IrRoute;
    else if (parser.isSet(wall))
        invocation.route = &WallRoute;
    // The largest model's ports now; the device's own model once connected.
    *error = routeError(*invocation.route, invocation.input, invocation.output, MaxPorts);
    *showUsage = false;
    return error->isEmpty() ? std::optional<Invocation>(invocation) : std::nullopt;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    qInstallMessageHandler(quietHandler);
    // The version the application and the emulator of the same build print too.
    if (app.arguments().mid(1) == QStringList{"--version"}) {
        std::printf("orvexctl %s\n", ORVEX_VERSION);
        return 0;
    }
    QString error;
    bool showUsage = false;
    const std::optional<Invocation> invocation = parseArguments(app.arguments(), &error, &showUsage);
    if (!invocation) {
        std::fprintf(stderr, "orvexctl: %s\n", qPrintable(error));
        if (showUsage)
            usage();
        return ExitFailure;
    }
    switch (invocation->command) {
    case Invocation::Parse:
        // Blocking reads and no thread: the default action of the signals is clean enough.
        return runParse();
    case Invocation::Status:
    case Invocation::Route: {
        // The loops return, the link's worker is joined, and nothing is printed.
        QuitOnSignal quitOnSignal(Exchange::InterruptedCode);
        return invocation->command == Invocation::Status
            ? runStatus(invocation->target)
            : runRoute(invocation->target, *invocation->route, invocation->input, invocation->output);
    }
    case Invocation::Help:
        break;
    }
    usage();
    return 0;
}
