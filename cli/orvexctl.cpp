// orvexctl: the integrator's command-line view of the device link.
//   orvexctl parse < capture.bin   one JSON line per reply frame, as the application reads it
//   orvexctl --host ADDR --port N VERB ...
//                                  the device verbs (checks.cpp, verbs.cpp, pictures.cpp,
//                                  watch.cpp): arguments checked first, then one JSON line with
//                                  what the device answered
#include "app/quitonsignal.h"
#include "cli/verbs.h"
#include "device/replyparser.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QStringList>
#include <QTextStream>

#include <cstdio>
#include <memory>
#include <optional>

namespace {

void quietHandler(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    // The parser's own log lines belong to the application's log file, not to our output;
    // so does Qt's note on a missing runtime folder, which drawing text brings up as root.
    if (type != QtDebugMsg && type != QtInfoMsg && !message.startsWith(QLatin1String("QStandardPaths:")))
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

// ---- command line ----------------------------------------------------------

struct Invocation
{
    enum Command { Help, Parse, Device } command = Help;
    QString verb;
    Target target;
    VerbRun run;
};

void usage()
{
    std::fprintf(stderr,
                 "usage: orvexctl parse < bytes\n"
                 "       orvexctl --host ADDR --port N [--timeout S] VERB ...\n"
                 "       orvexctl --version\n"
                 "  parse   read raw device bytes from standard input and print one JSON line per\n"
                 "          reply frame: frame after repairs, ok, error, signals, object; an unfinished\n"
                 "          frame left at the end, or dropped for growing past 1 MiB, is noted on standard error\n"
                 "verbs, each printing one JSON line with what the device answered:\n"
                 "  status                  the device record\n"
                 "  route INPUT OUTPUT [--audio|--ir|--wall]\n"
                 "                          switch (video unless --audio or --ir; --wall switches the whole\n"
                 "                          joined wall and ignores OUTPUT); prints the device's map, exit\n"
                 "                          status 3 when it does not show the switch\n"
                 "  preset save|recall N    preset slot 1..16; recall prints the recalled maps\n"
                 "  volume PORT LEVEL       level 0..100; prints the volumes\n"
                 "  mute PORT               toggles the mute; prints the volumes and whether PORT is muted\n"
                 "  pattern in|out PORT N   test pattern 0..11 (0: the picture) of an input or output\n"
                 "  resolution PORT TEXT    output timing, e.g. 1920x1080x60Hz; prints the output resolutions\n"
                 "  edid copy IN OUT        input IN takes the EDID of the display on output OUT\n"
                 "  edid upload IN FILE     input IN takes FILE as its EDID (file port 6666)\n"
                 "  caption TEXT [--output N]\n"
                 "                          TEXT drawn as the caption picture of output N (default 1)\n"
                 "  logo OUTPUT FILE        the picture FILE as the OSD logo of output OUTPUT\n"
                 "  watch                   one JSON line per change of the device's state, until SIGINT/SIGTERM\n"
                 "  Ports are 1..9, 1..8 on an ORXM100 (asked for its model first); audio outputs\n"
                 "  101.. are the HDMI audio of outputs 1..; a wrong argument is named and nothing is sent.\n"
                 "  Without an answer within S seconds (default %d): one line on standard error, exit status 2.\n"
                 "  SIGINT or SIGTERM: stops at once, prints nothing more, exit status 0.\n",
                 DefaultDeadlineSeconds);
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
    const QCommandLineOption output("output", "", "n");
    parser.addOptions({help, host, port, audio, ir, wall, timeout, output});
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
    if (!isDeviceVerb(command)) {
        *error = QStringLiteral("unknown command %1").arg(command);
        return std::nullopt;
    }
    if (parser.value(host).isEmpty()) {
        *error = QStringLiteral("%1 needs --host").arg(command);
        return std::nullopt;
    }
    const std::optional<int> portNumber = numberIn(parser.value(port), 1, 65535);
    if (!portNumber) {
        *error = parser.isSet(port) ? QStringLiteral("--port %1 is not a port number (1..65535)").arg(parser.value(port))
                                    : QStringLiteral("%1 needs --port").arg(command);
        return std::nullopt;
    }
    invocation.target = {parser.value(host), quint16(*portNumber)};
    if (parser.isSet(timeout)) {
        const std::optional<int> seconds = numberIn(parser.value(timeout), 1, 3600);
        if (!seconds) {
            *error = QStringLiteral("--timeout %1 is not a number of seconds (1..3600)").arg(parser.value(timeout));
            return std::nullopt;
        }
        invocation.target.deadlineSeconds = *seconds;
    }
    VerbOptions options;
    for (const QCommandLineOption *kind : {&audio, &ir, &wall}) {
        if (parser.isSet(*kind))
            options.kinds << "--" + kind->names().first();
    }
    options.outputSet = parser.isSet(output);
    options.output = parser.value(output);
    VerbCheck check = checkVerb(command, positional.mid(1), options);
    if (!check.run) {
        *error = check.error;
        *showUsage = check.showUsage;
        return std::nullopt;
    }
    invocation.command = Invocation::Device;
    invocation.verb = command;
    invocation.run = *check.run;
    return invocation;
}

} // namespace

int main(int argc, char *argv[])
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    // The version the application and the emulator of the same build print too.
    if (arguments.mid(1) == QStringList{"--version"}) {
        std::printf("orvexctl %s\n", ORVEX_VERSION);
        return 0;
    }
    qInstallMessageHandler(quietHandler);
    QString error;
    bool showUsage = false;
    const std::optional<Invocation> invocation = parseArguments(arguments, &error, &showUsage);
    // Drawing text needs fonts, hence a QGuiApplication; offscreen, so no display is needed.
    std::unique_ptr<QCoreApplication> app;
    if (invocation && needsGui(invocation->verb)) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        app = std::make_unique<QGuiApplication>(argc, argv);
    } else {
        app = std::make_unique<QCoreApplication>(argc, argv);
    }
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
    case Invocation::Device: {
        // The loops return, the link's worker is joined, and nothing is printed.
        QuitOnSignal quitOnSignal(Exchange::InterruptedCode);
        return invocation->run(invocation->target);
    }
    case Invocation::Help:
        break;
    }
    usage();
    return 0;
}
