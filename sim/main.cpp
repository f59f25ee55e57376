#include "simserver.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>
#include <functional>
#include <limits>

namespace {

int fail(const QString &message)
{
    std::fprintf(stderr, "orvex-sim: %s\n", qPrintable(message));
    return 1;
}

// Stores one option's value in the options; returns what is wrong with it, or nothing.
using Reader = std::function<QString(const QString &value, bool isSet)>;

struct Row
{
    QCommandLineOption option;
    Reader read;
};

// A switch: the field is whenSet when the option is given, the opposite when not.
Reader flag(SimOptions *options, bool SimOptions::*field, bool whenSet = true)
{
    return [=](const QString &, bool isSet) {
        options->*field = isSet == whenSet;
        return QString();
    };
}

// A count for a fault switch: 0 (off) up to what its field holds; unit names it in the error.
template <typename Count>
Reader count(SimOptions *options, Count SimOptions::*field, const char *unit)
{
    return [=](const QString &value, bool) {
        bool ok = false;
        const qint64 n = value.toLongLong(&ok);
        if (!ok || n < 0 || n > std::numeric_limits<Count>::max())
            return QStringLiteral("not a %1 count: %2").arg(QLatin1String(unit), value);
        options->*field = Count(n);
        return QString();
    };
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
    SimOptions options;
    // The rest in the order --help lists them; values are checked in the same
    // order, so the first wrong one is the one named.
    const QList<Row> rows = {
        {{QStringLiteral("no-file-port"), QStringLiteral("Do not listen on the file port.")},
         flag(&options, &SimOptions::filePort, false)},
        {{QStringLiteral("no-ack"),
          QStringLiteral("Withhold the acknowledgement of {param=Done}; pieces are still acknowledged.")},
         flag(&options, &SimOptions::finalAck, false)},
        {{QStringLiteral("junk"), QStringLiteral("Put random non-JSON bytes between reply frames.")},
         flag(&options, &SimOptions::junk)},
        {{QStringLiteral("drop-after"),
          QStringLiteral("Close a command connection after it has sent n commands (default 0: never)."),
          QStringLiteral("n"), QStringLiteral("0")},
         count(&options, &SimOptions::dropAfter, "command")},
        {{QStringLiteral("broadcast"),
          QStringLiteral("Send every reply to all connected clients, like a matrix with several control panels.")},
         flag(&options, &SimOptions::broadcast)},
        {{QStringLiteral("verbose"),
          QStringLiteral("Log every received command to stderr, and after it, on a line of its own, "
                         "any state it changed that no reply reports (patterns, mute, audio mode, EDID, "
                         "uploaded pictures with their BMP size and bit depth).")},
         flag(&options, &SimOptions::verbose)},
        {{QStringLiteral("save-uploads"),
          QStringLiteral("Write every finished upload to dir (created if missing), one file each, named "
                         "kind-port-sequence: osd-3-0001.bmp, caption-2-0002.bmp, edid-4-0003.bin "
                         "(.bin for bytes that are not a BMP). Numbering goes on after files already there."),
          QStringLiteral("dir")},
         [&options](const QString &value, bool isSet) {
             options.saveUploadsDir = value;
             return isSet && options.saveUploadsDir.isEmpty()
                 ? QStringLiteral("--save-uploads needs a folder")
                 : QString();
         }},
        {{QStringLiteral("flood-bytes"),
          QStringLiteral("Send n random bytes (any value, braces included) on every command connection as soon "
                         "as it is accepted, as fast as the client reads them; replies are still sent, in between. "
                         "--verbose logs \"flood: n random bytes sent\" at the end."),
          QStringLiteral("n"), QStringLiteral("0")},
         count(&options, &SimOptions::floodBytes, "byte")},
        {{QStringLiteral("flood-frames"),
          QStringLiteral("Like --flood-bytes, with n copies of the volume frame back to back "
                         "(\"flood: n frames sent, b bytes\")."),
          QStringLiteral("n"), QStringLiteral("0")},
         [&options, frames = count(&options, &SimOptions::floodFrames, "frame")](const QString &value, bool isSet) {
             const QString error = frames(value, isSet);
             if (error.isEmpty() && options.floodBytes > 0 && options.floodFrames > 0)
                 return QStringLiteral("--flood-bytes and --flood-frames exclude each other");
             return error;
         }},
        {{QStringLiteral("bad-ack"),
          QStringLiteral("The file port answers every piece, and {param=Done}, with garbage instead of <ACK_1>.")},
         flag(&options, &SimOptions::badAck)},
        {{QStringLiteral("silent-file-port"),
          QStringLiteral("The file port accepts connections and takes bytes but never answers.")},
         flag(&options, &SimOptions::silentFilePort)},
        {{QStringLiteral("drop-file-after"),
          QStringLiteral("Close a file connection, unanswered, once it has received n bytes (default 0: never); "
                         "bytes beyond n are discarded."),
          QStringLiteral("n"), QStringLiteral("0")},
         count(&options, &SimOptions::dropFileAfter, "byte")},
        {{QStringLiteral("lose-every"),
          QStringLiteral("Silently ignore every n-th switch command ({param=<i>VIDEO<o>}, AUDIO, IR): neither "
                         "applied nor answered; --verbose logs it as \"cmd: ... (lost)\" (default 0: never)."),
          QStringLiteral("n"), QStringLiteral("0")},
         count(&options, &SimOptions::loseEvery, "command")},
    };
    parser.addOptions({hostOption, portOption, modelOption});
    for (const Row &row : rows)
        parser.addOption(row.option);
    parser.process(app);

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

    for (const Row &row : rows) {
        const QString error = row.read(parser.value(row.option), parser.isSet(row.option));
        if (!error.isEmpty())
            return fail(error);
    }
    if (options.badAck && options.silentFilePort)
        return fail(QStringLiteral("--bad-ack and --silent-file-port exclude each other"));

    SimServer server(options);
    if (!server.listen())
        return fail(server.errorString());
    return app.exec();
}
