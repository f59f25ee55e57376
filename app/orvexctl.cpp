// orvexctl: the integrator's command-line view of the device link.
//   orvexctl parse < capture.bin   one JSON line per reply frame, as the application reads it
#include "device/replyparser.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <QTextStream>

#include <cstdio>

namespace {

void quietHandler(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    // The parser's own log lines belong to the application's log file, not to our output.
    if (type != QtDebugMsg && type != QtInfoMsg)
        std::fprintf(stderr, "%s\n", qPrintable(message));
}

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

void usage()
{
    std::fprintf(stderr,
                 "usage: orvexctl parse < bytes\n"
                 "  parse   read raw device bytes from standard input and print one JSON line per\n"
                 "          reply frame: frame after repairs, ok, error, signals, object\n");
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    qInstallMessageHandler(quietHandler);
    const QStringList args = app.arguments().mid(1);
    if (args.value(0) == "parse")
        return runParse();
    usage();
    return args.value(0) == "--help" || args.value(0) == "-h" ? 0 : 2;
}
