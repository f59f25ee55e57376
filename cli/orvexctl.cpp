// orvexctl: the integrator's command-line view of the device link.
//   orvexctl parse < capture.bin   one JSON line per reply frame, as the application reads it
//   orvexctl --host ADDR --port N status
//                                  refresh everything and print the device record as one JSON line
//   orvexctl --host ADDR --port N route INPUT OUTPUT [--audio|--ir|--wall]
//                                  switch, then print the map the device answers with
#include "device/devicemodel.h"
#include "device/devicestate.h"
#include "device/messagedistance.h"
#include "device/replyparser.h"

#include <QCommandLineParser>
#include <QCoreApplication>
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
    // Feed in chunks as a socket would; the parser keeps partial frames.
    while (!in.atEnd()) {
        parser.append(in.read(64 * 1024));
        while (parser.next(&reply))
            out << QJsonDocument(describe(reply)).toJson(QJsonDocument::Compact) << '\n';
    }
    out.flush();
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

// One round with the device: connect, send once the command connection is up,
// feed replies into the device model (the same reading as the main window) and
// wait until each awaited reply has come at least once, or until the deadline, which also covers connecting (the link
// retries a refused connection every 2 s on its own).
class Exchange
{
public:
    explicit Exchange(const Target &target)
        : m_target(target)
    {
        m_model.attach(&m_link);
    }

    const DeviceRecord &record() const { return m_model.record(); }

    void await(const Reply &reply);
    // True once every awaited reply is in; otherwise reports on stderr and returns false.
    bool run(const std::function<void(MessageDistance &)> &send);

private:
    Target m_target;
    DeviceModel m_model;
    QSet<int> m_missing;
    int m_awaited = 0;
    bool m_sent = false;
    QEventLoop m_loop;
    // Last, so that its worker is joined before the loop its replies are queued to goes away.
    MessageDistance m_link;
};

void Exchange::await(const Reply &reply)
{
    const int id = m_awaited++;
    m_missing.insert(id);
    // Connected after the model's own connection, so the model has read the reply.
    QObject::connect(&m_link, reply, &m_loop, [this, id] {
        m_missing.remove(id);
        if (m_missing.isEmpty())
            m_loop.exit(0);
    });
}

bool Exchange::run(const std::function<void(MessageDistance &)> &send)
{
    QObject::connect(&m_link, &MessageDistance::connectSuccessFulSig, &m_loop, [this, send] {
        // Only once: a reconnect after a dropped line must not switch twice.
        if (!m_sent) {
            m_sent = true;
            send(m_link);
        }
    });
    // Precise: a coarse timer may fire up to 5 % early.
    QTimer::singleShot(m_target.deadlineSeconds * 1000, Qt::PreciseTimer, &m_loop, [this] { m_loop.exit(1); });
    m_link.connectToDevice(m_target.host, m_target.port);
    if (m_loop.exec() == 0)
        return true;
    std::fprintf(stderr, "orvexctl: %s %s:%u within %d s\n", m_sent ? "no answer from" : "no connection to",
                 qPrintable(m_target.host), unsigned(m_target.port), m_target.deadlineSeconds);
    return false;
}

int runStatus(const Target &target)
{
    Exchange exchange(target);
    for (Reply reply : {&MessageDistance::receiveVersionSig, VideoMapReply, AudioMapReply, IrMapReply,
                        &MessageDistance::receiveInputChannelStateSig, &MessageDistance::receiveInChannelResolutionMapSig,
                        &MessageDistance::receiveNetWorkImforamtionSig, &MessageDistance::receiveOutChannelResolutionMapSig,
                        &MessageDistance::receiveVolumnImformationSig})
        exchange.await(reply);
    const bool answered = exchange.run([](MessageDistance &link) {
        // The main window's refresh, plus the volumes it asks for separately.
        DeviceModel::requestState(&link);
        link.sendVolumeQuery();
    });
    if (!answered)
        return ExitFailure;
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

int runRoute(const Target &target, const RouteKind &route, int input, int output)
{
    Exchange exchange(target);
    exchange.await(route.reply);
    if (!exchange.run([&](MessageDistance &link) { link.sendSwitch(input, output, route.kind); }))
        return ExitFailure;
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
                 "  parse   read raw device bytes from standard input and print one JSON line per\n"
                 "          reply frame: frame after repairs, ok, error, signals, object\n"
                 "  status  query everything and print the device record as one JSON line\n"
                 "  route   switch INPUT to OUTPUT (video unless --audio or --ir; --wall switches the\n"
                 "          whole joined wall and ignores OUTPUT) and print the map the device answers\n"
                 "  Without an answer within S seconds (default %d): one line on standard error, exit status 2.\n",
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

// Empty for bad arguments.
std::optional<Invocation> parseArguments(const QStringList &arguments)
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
    if (!parser.parse(arguments))
        return std::nullopt;

    Invocation invocation;
    const QStringList positional = parser.positionalArguments();
    const QString command = positional.value(0);
    if (parser.isSet(help))
        return invocation;
    if (command == "parse") {
        invocation.command = Invocation::Parse;
        return invocation;
    }

    const std::optional<int> portNumber = positiveNumber(parser.value(port), 65535);
    if (parser.value(host).isEmpty() || !portNumber)
        return std::nullopt;
    invocation.target = {parser.value(host), quint16(*portNumber)};
    if (parser.isSet(timeout)) {
        const std::optional<int> seconds = positiveNumber(parser.value(timeout), 3600);
        if (!seconds)
            return std::nullopt;
        invocation.target.deadlineSeconds = *seconds;
    }
    const int kindFlags = int(parser.isSet(audio)) + int(parser.isSet(ir)) + int(parser.isSet(wall));

    if (command == "status" && positional.size() == 1 && kindFlags == 0) {
        invocation.command = Invocation::Status;
        return invocation;
    }
    if (command != "route" || positional.size() != 3 || kindFlags > 1)
        return std::nullopt;
    const std::optional<int> input = positiveNumber(positional.at(1));
    const std::optional<int> output = positiveNumber(positional.at(2));
    if (!input || !output)
        return std::nullopt;
    invocation.command = Invocation::Route;
    invocation.input = *input;
    invocation.output = *output;
    if (parser.isSet(audio))
        invocation.route = &AudioRoute;
    else if (parser.isSet(ir))
        invocation.route = &IrRoute;
    else if (parser.isSet(wall))
        invocation.route = &WallRoute;
    return invocation;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    qInstallMessageHandler(quietHandler);
    const std::optional<Invocation> invocation = parseArguments(app.arguments());
    if (!invocation) {
        usage();
        return ExitFailure;
    }
    switch (invocation->command) {
    case Invocation::Parse:
        return runParse();
    case Invocation::Status:
        return runStatus(invocation->target);
    case Invocation::Route:
        return runRoute(invocation->target, *invocation->route, invocation->input, invocation->output);
    case Invocation::Help:
        break;
    }
    usage();
    return 0;
}
