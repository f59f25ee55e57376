#include "simserver.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>

namespace {

int fail(const QString &message)
{
    std::fprintf(stderr, "orvex-sim: %s\n", qPrintable(message));
    return 1;
}

// A count for a fault switch: 0 (off) or more.
bool readCount(const QCommandLineParser &parser, const QCommandLineOption &option, qint64 *count)
{
    bool ok = false;
    *count = parser.value(option).toLongLong(&ok);
    return ok && *count >= 0;
}

} // namespace

int main(int argc, char *argv[])
{
    // Qt's own event dispatcher rather than glib's: glib wakes its loop through
    // an eventfd whenever a socket notifier changes, and a buffered socket turns
    // its write notifier on and off around every write, each acknowledgement
    // included: three system calls more per piece on the file port.
    qputenv("QT_NO_GLIB", "1");
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("orvex-sim"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ORVEX_VERSION));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Emulates an ORXM matrix switcher: \"{param=...}\" commands on the command port, "
        "uploads on port %1 of the same address.").arg(FileChannel::Port));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption hostOption(QStringLiteral("host"),
        QStringLiteral("Address to listen on (default 127.0.0.1)."), QStringLiteral("addr"),
        QStringLiteral("127.0.0.1"));
    const QCommandLineOption portOption(QStringLiteral("port"),
        QStringLiteral("Command port (default 8000); 0 picks a free one, shown in the ready line."),
        QStringLiteral("n"), QStringLiteral("8000"));
    const QCommandLineOption modelOption(QStringLiteral("model"),
        QStringLiteral("ORXM200 (9 ports, default) or ORXM100 (8 ports)."), QStringLiteral("model"),
        QStringLiteral("ORXM200"));
    const QCommandLineOption noFilePortOption(QStringLiteral("no-file-port"),
        QStringLiteral("Do not listen on the file port."));
    const QCommandLineOption noAckOption(QStringLiteral("no-ack"),
        QStringLiteral("Withhold the acknowledgement of {param=Done}; pieces are still acknowledged."));
    const QCommandLineOption junkOption(QStringLiteral("junk"),
        QStringLiteral("Put random non-JSON bytes between reply frames."));
    const QCommandLineOption dropAfterOption(QStringLiteral("drop-after"),
        QStringLiteral("Close a command connection after it has sent n commands (default 0: never)."),
        QStringLiteral("n"), QStringLiteral("0"));
    const QCommandLineOption broadcastOption(QStringLiteral("broadcast"),
        QStringLiteral("Send every reply to all connected clients, like a matrix with several control panels."));
    const QCommandLineOption verboseOption(QStringLiteral("verbose"),
        QStringLiteral("Log every received command to stderr, and after it, on a line of its own, "
                       "any state it changed that no reply reports (patterns, mute, audio mode, EDID, "
                       "uploaded pictures with their BMP size and bit depth)."));
    const QCommandLineOption saveUploadsOption(QStringLiteral("save-uploads"),
        QStringLiteral("Write every finished upload to dir (created if missing), one file each, named "
                       "kind-port-sequence: osd-3-0001.bmp, caption-2-0002.bmp, edid-4-0003.bin "
                       "(.bin for bytes that are not a BMP). Numbering goes on after files already there."),
        QStringLiteral("dir"));
    const QCommandLineOption floodBytesOption(QStringLiteral("flood-bytes"),
        QStringLiteral("Send n random bytes (any value, braces included) on every command connection as soon "
                       "as it is accepted, as fast as the client reads them; replies are still sent, in between. "
                       "--verbose logs \"flood: n random bytes sent\" at the end."),
        QStringLiteral("n"), QStringLiteral("0"));
    const QCommandLineOption floodFramesOption(QStringLiteral("flood-frames"),
        QStringLiteral("Like --flood-bytes, with n copies of the volume frame back to back "
                       "(\"flood: n frames sent, b bytes\")."),
        QStringLiteral("n"), QStringLiteral("0"));
    const QCommandLineOption badAckOption(QStringLiteral("bad-ack"),
        QStringLiteral("The file port answers every piece, and {param=Done}, with garbage instead of <ACK_1>."));
    const QCommandLineOption silentFilePortOption(QStringLiteral("silent-file-port"),
        QStringLiteral("The file port accepts connections and takes bytes but never answers."));
    const QCommandLineOption dropFileAfterOption(QStringLiteral("drop-file-after"),
        QStringLiteral("Close a file connection, unanswered, once it has received n bytes (default 0: never); "
                       "bytes beyond n are discarded."),
        QStringLiteral("n"), QStringLiteral("0"));
    const QCommandLineOption loseEveryOption(QStringLiteral("lose-every"),
        QStringLiteral("Silently ignore every n-th switch command ({param=<i>VIDEO<o>}, AUDIO, IR): neither "
                       "applied nor answered; --verbose logs it as \"cmd: ... (lost)\" (default 0: never)."),
        QStringLiteral("n"), QStringLiteral("0"));
    parser.addOptions({hostOption, portOption, modelOption, noFilePortOption, noAckOption, junkOption,
                       dropAfterOption, broadcastOption, verboseOption, saveUploadsOption, floodBytesOption,
                       floodFramesOption, badAckOption, silentFilePortOption, dropFileAfterOption, loseEveryOption});
    parser.process(app);

    SimOptions options;
    const QString host = parser.value(hostOption);
    options.host = host == QLatin1String("localhost") ? QHostAddress(QHostAddress::LocalHost) : QHostAddress(host);
    if (options.host.isNull())
        return fail(QStringLiteral("not an IP address: %1").arg(host));
    bool ok = false;
    const uint port = parser.value(portOption).toUInt(&ok);
    if (!ok || port > 65535)
        return fail(QStringLiteral("not a port number: %1").arg(parser.value(portOption)));
    options.port = static_cast<quint16>(port);
    const std::optional<SimModel> model = SimState::modelFromName(parser.value(modelOption));
    if (!model)
        return fail(QStringLiteral("unknown model %1 (ORXM200 or ORXM100)").arg(parser.value(modelOption)));
    options.model = *model;
    options.dropAfter = parser.value(dropAfterOption).toInt(&ok);
    if (!ok || options.dropAfter < 0)
        return fail(QStringLiteral("not a command count: %1").arg(parser.value(dropAfterOption)));
    options.filePort = !parser.isSet(noFilePortOption);
    options.finalAck = !parser.isSet(noAckOption);
    options.junk = parser.isSet(junkOption);
    options.verbose = parser.isSet(verboseOption);
    options.broadcast = parser.isSet(broadcastOption);
    options.saveUploadsDir = parser.value(saveUploadsOption);
    if (parser.isSet(saveUploadsOption) && options.saveUploadsDir.isEmpty())
        return fail(QStringLiteral("--save-uploads needs a folder"));

    if (!readCount(parser, floodBytesOption, &options.floodBytes))
        return fail(QStringLiteral("not a byte count: %1").arg(parser.value(floodBytesOption)));
    if (!readCount(parser, floodFramesOption, &options.floodFrames))
        return fail(QStringLiteral("not a frame count: %1").arg(parser.value(floodFramesOption)));
    if (options.floodBytes > 0 && options.floodFrames > 0)
        return fail(QStringLiteral("--flood-bytes and --flood-frames exclude each other"));
    if (!readCount(parser, dropFileAfterOption, &options.dropFileAfter))
        return fail(QStringLiteral("not a byte count: %1").arg(parser.value(dropFileAfterOption)));
    options.loseEvery = parser.value(loseEveryOption).toInt(&ok);
    if (!ok || options.loseEvery < 0)
        return fail(QStringLiteral("not a command count: %1").arg(parser.value(loseEveryOption)));
    options.badAck = parser.isSet(badAckOption);
    options.silentFilePort = parser.isSet(silentFilePortOption);
    if (options.badAck && options.silentFilePort)
        return fail(QStringLiteral("--bad-ack and --silent-file-port exclude each other"));

    SimServer server(options);
    if (!server.listen())
        return fail(server.errorString());
    return app.exec();
}
