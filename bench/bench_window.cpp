// Per-reply cost through the device model and the real main window, reply
// latency through the link against the loopback round trip, and a 4 KB logo
// upload against the pacing limit, all measured side by side in one run.
//   bench_window [--replies N]   (default 1000; needs orvex-sim beside it)
// The window runs offscreen against orvex-sim on 127.0.0.91; the latency's
// stand-in device, the echo and the upload's pacing peer listen on 127.0.0.92,
// the second emulator the upload's limit is taken against on 127.0.0.110.
#include "app/appsettings.h"
#include "app/logger.h"
#include "device/commandtext.h"
#include "device/devicemodel.h"
#include "device/messagedistance.h"
#include "mainwindow/widget.h"
#include "resources/guiresources.h"
#include "simprocess.h"
#include "store/accountstore.h"
#include "store/database.h"
#include "store/portnames.h"

#include <QApplication>
#include <QBuffer>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonObject>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <memory>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

const QHostAddress SimHost(QStringLiteral("127.0.0.91"));
const QHostAddress EchoHost(QStringLiteral("127.0.0.92"));
// A second emulator, whose file port a bare socket paces against while the link
// holds the first one's (the device serves one upload connection at a time).
const QHostAddress PacingSimHost(QStringLiteral("127.0.0.110"));

void quiet(QtMsgType, const QMessageLogContext &, const QString &) {}

double cpuMs()
{
    timespec ts{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ts);
    return ts.tv_sec * 1e3 + ts.tv_nsec / 1e6;
}

// Runs the event loop until `done` holds or `ms` pass; false on time-out.
template<typename Done>
bool waitFor(Done done, int ms)
{
    QElapsedTimer clock;
    clock.start();
    while (!done()) {
        if (clock.elapsed() > ms)
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
    }
    return true;
}

double percentile(QVector<double> values, double p)
{
    std::sort(values.begin(), values.end());
    return values.isEmpty() ? 0 : values[qMin(values.size() - 1, int(p * values.size()))];
}

QJsonObject videoMap(int output5Input)
{
    QJsonObject map{{"mode", 6}};
    for (int output = 1; output <= 9; ++output)
        map.insert(QStringLiteral("video%1").arg(output), output == 5 ? output5Input : output);
    return map;
}

QByteArray videoFrame(int output5Input)
{
    QByteArray frame = "{";
    for (int output = 1; output <= 9; ++output)
        frame += "\"video" + QByteArray::number(output) + "\":" + QByteArray::number(output == 5 ? output5Input : output) + ",";
    return frame + "\"mode\":6}";
}

// The largest logo the dialog lets through, encoded as the application encodes
// it: a 1-bit BMP, 62 header bytes and rows padded to 4 bytes, so 128 x 252
// pixels make 4,094 bytes (no 1-bit BMP from Qt is 4,096).
QByteArray logoBitmap()
{
    QImage image(128, 252, QImage::Format_Mono);
    image.fill(0);
    for (int y = 0; y < image.height(); ++y)
        image.setPixel((y * 7) % image.width(), y, 1);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "bmp");
    return bytes;
}

// A loopback echo: the yardstick for the link's latency and the upload's pacing.
struct Echo
{
    QTcpServer server;
    QTcpSocket client;
    QTcpSocket *peer = nullptr;

    bool open()
    {
        if (!server.listen(EchoHost, 0))
            return false;
        client.connectToHost(EchoHost, server.serverPort());
        if (!waitFor([&] { return server.hasPendingConnections() || peer; }, 3000))
            return false;
        peer = server.nextPendingConnection();
        QObject::connect(peer, &QTcpSocket::readyRead, peer, [p = peer] { p->write(p->readAll()); });
        return waitFor([&] { return client.state() == QAbstractSocket::ConnectedState; }, 3000);
    }
    // One round trip of a reply-sized message, in ms; -1 when the echo does not come.
    double roundTrip(const QByteArray &message)
    {
        QElapsedTimer clock;
        clock.start();
        client.write(message);
        client.flush();
        qint64 got = 0;
        const bool echoed = waitFor([&] {
            got += client.readAll().size();
            return got >= message.size();
        }, 3000);
        return echoed ? clock.nsecsElapsed() / 1e6 : -1.0;
    }
};

// The upload's yardstick: the fastest device there can be, in a process of its
// own as a device is, answering every 500 bytes at once with the 9 bytes of an
// acknowledgement, from plain blocking calls. Forked before Qt starts any
// thread; it ends with its connection or with this process. Returns its port.
quint16 startPacingPeer()
{
    const int listener = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    inet_pton(AF_INET, EchoHost.toString().toLatin1().constData(), &address.sin_addr);
    socklen_t length = sizeof address;
    if (listener < 0 || bind(listener, reinterpret_cast<sockaddr *>(&address), length) != 0 || listen(listener, 1) != 0
        || getsockname(listener, reinterpret_cast<sockaddr *>(&address), &length) != 0)
        return 0;
    if (fork() == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        const int client = accept(listener, nullptr, nullptr);
        const int one = 1;
        setsockopt(client, IPPROTO_TCP, TCP_NODELAY, &one, sizeof one);
        char bytes[4096];
        qint64 unanswered = 0;
        for (ssize_t got; (got = read(client, bytes, sizeof bytes)) > 0;) {
            for (unanswered += got; unanswered >= MessageDistance::PieceSize; unanswered -= MessageDistance::PieceSize) {
                if (write(client, "<ACK_1>\r\n", 9) != 9)
                    _exit(1);
            }
        }
        _exit(0);
    }
    close(listener);
    return ntohs(address.sin_port);
}

} // namespace

int main(int argc, char *argv[])
{
    const quint16 pacingPeerPort = startPacingPeer();
    pinLocalTimeZone();  // as the application does
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    qInstallMessageHandler(quiet);
    const int replyIndex = app.arguments().indexOf(QStringLiteral("--replies"));
    const int replies = replyIndex > 0 ? app.arguments().value(replyIndex + 1).toInt() : 1000;
    initGuiResources();

    QTemporaryDir dir;
    setDatabasePath(dir.filePath("project.db"));
    AccountStore::createTables();
    AccountStore::loginModel();      // a new file gets its row here
    AccountStore::setLoginModel(1);  // no login: the window starts and connects by itself

    // Started on a port of its own choosing, and listening once start() returns.
    SimProcess sim;
    if (!sim.start(SimHost.toString())) {
        std::fprintf(stderr, "orvex-sim does not start\n");
        return 2;
    }
    QFile ini(dir.filePath("config.ini"));
    ini.open(QIODevice::WriteOnly);
    ini.write(QString("[NetWork]\nIp=%1\nPort=%2\n[Language]\nlanguage=1\n").arg(SimHost.toString()).arg(sim.port()).toUtf8());
    ini.close();

    Echo echo;
    if (!echo.open()) {
        std::fprintf(stderr, "no loopback echo on %s\n", qPrintable(EchoHost.toString()));
        return 2;
    }

    // 1. Per-reply cost through the window's reply slot, the model and the grids,
    // repaint included (the events a reply posts are processed after it).
    {
        AppSettings settings(ini.fileName());
        auto link = std::make_unique<MessageDistance>();
        link->setReconnectInterval(200);
        DeviceModel model;
        PortNames names;
        auto window = std::make_unique<Widget>(WindowContext{&settings, &model, link.get(), &names});
        window->show();
        bool mapped = false;
        QObject::connect(&model, &DeviceModel::videoMapChanged, [&] { mapped = true; });
        if (!waitFor([&] { return settings.connectionState() == AppSettings::Connected && mapped; }, 10000)) {
            std::fprintf(stderr, "the window does not get the device's state\n");
            return 2;
        }
        waitFor([] { return false; }, 500);  // the start-up replies settle
        // Every page opened once, as an operator who has been everywhere: all five grids listen.
        auto *tabs = window->findChild<QTabWidget *>(QStringLiteral("tabWidget"));
        for (int page = tabs->count() - 1; page >= 0; --page) {
            tabs->setCurrentIndex(page);
            waitFor([] { return false; }, 50);
        }

        const auto perReply = [&](bool change) {
            const QJsonObject a = videoMap(5), b = videoMap(3);
            const double before = cpuMs();
            for (int i = 0; i < replies; ++i) {
                window->receiveVideoMapSlot(change && i % 2 ? b : a);
                QCoreApplication::processEvents();
            }
            const double ms = (cpuMs() - before) / replies;
            std::fprintf(stderr, "  %s: %.3f ms a reply\n", change ? "one change" : "identical", ms);
            return ms;
        };
        // One round each: a changed reply repaints the window, which keeps a
        // round of 1,000 near a minute.
        const double changed = perReply(true);
        const double identical = perReply(false);
        // Where the time goes: an event loop pass alone, and the model alone.
        double before = cpuMs();
        for (int i = 0; i < replies; ++i)
            QCoreApplication::processEvents();
        const double loopOnly = (cpuMs() - before) / replies;
        before = cpuMs();
        for (int i = 0; i < replies; ++i)
            model.apply(ReplySignal::VideoMap, videoMap(i % 2 ? 3 : 5));
        const double modelOnly = (cpuMs() - before) / replies;
        std::printf("per reply, window + model, %d video maps: one cell changed %.3f ms, identical %.3f ms "
                    "(an event loop pass alone %.3f ms; the model alone, the window listening, no repaint: %.3f ms)\n",
                    replies, changed, identical, loopOnly, modelOnly);
        std::printf("RESULT reply_one_change %.3f ms (target < 0.5)\n", changed);
        std::printf("RESULT reply_identical %.3f ms (target < 0.3)\n", identical);
        window.reset();
        link.reset();
    }

    // 2. Latency: a stand-in device writes a video map with one change; the time
    // until the model has applied it, against the echo's round trip, interleaved.
    {
        QTcpServer device;
        if (!device.listen(EchoHost, 0)) {
            std::fprintf(stderr, "no stand-in device\n");
            return 2;
        }
        MessageDistance link;
        link.setReconnectInterval(200);
        DeviceModel model;
        model.attach(&link);
        int applied = 0;
        QObject::connect(&model, &DeviceModel::videoMapChanged, [&] { ++applied; });
        link.connectToDevice(EchoHost.toString(), device.serverPort());
        QTcpSocket *peer = nullptr;
        if (!waitFor([&] { return (peer = peer ? peer : device.nextPendingConnection()) && link.isConnected(); }, 5000)) {
            std::fprintf(stderr, "the link does not connect\n");
            return 2;
        }
        waitFor([] { return false; }, 300);
        peer->readAll();
        QVector<double> latency, roundTrip;
        for (int i = 0; i < replies; ++i) {
            const QByteArray frame = videoFrame(i % 2 ? 3 : 5);
            roundTrip << echo.roundTrip(frame);
            if (roundTrip.last() < 0) {
                std::fprintf(stderr, "the echo does not answer\n");
                return 2;
            }
            const int before = applied;
            QElapsedTimer clock;
            clock.start();
            peer->write(frame);
            peer->flush();
            if (!waitFor([&] { return applied > before; }, 3000)) {
                std::fprintf(stderr, "reply %d not applied\n", i);
                return 2;
            }
            latency << clock.nsecsElapsed() / 1e6;
        }
        std::printf("device write -> model updated, %d replies: median %.3f ms, p95 %.3f ms; loopback round trip: "
                    "median %.3f ms, p95 %.3f ms\n",
                    replies, percentile(latency, 0.5), percentile(latency, 0.95), percentile(roundTrip, 0.5),
                    percentile(roundTrip, 0.95));
        std::printf("RESULT latency_median_vs_round_trip %.2f x (target < 2)\n",
                    percentile(latency, 0.5) / percentile(roundTrip, 0.5));
        std::printf("RESULT latency_p95_vs_round_trip %.2f x (target < 2)\n",
                    percentile(latency, 0.95) / percentile(roundTrip, 0.95));
    }

    // 3. A 4 KB logo to the emulator: pieces of PieceSize, each released by the
    // device's reply, so the floor is pieces x round trip. The pacing limit takes
    // the device's own round trip: a bare socket pair in this process sends the same
    // logo, piece by piece, to a second emulator inside a real transfer, timed over
    // the pieces, right before each upload. Halfway the two emulators swap roles, so
    // that one of them running slow for a while weighs on both sides alike. A
    // stricter figure, against the fastest device there can be (the pacing peer),
    // is printed beside it.
    {
        SimProcess pacingSim;
        if (!pacingSim.start(PacingSimHost.toString())) {
            std::fprintf(stderr, "the second orvex-sim does not start\n");
            return 2;
        }
        MessageDistance link;
        bool failed = false;  // a failed transfer ends quickly, which must not pass for a fast one
        link.setMessagePresenter([&failed](const QString &text, const QString &) {
            std::fprintf(stderr, "upload message: %s\n", qPrintable(text));
            failed = true;
        });
        QTcpSocket peer, bareCommand, bareFile;
        const auto connected = [](const QTcpSocket &socket) { return socket.state() == QAbstractSocket::ConnectedState; };
        // The link on one emulator, the bare pair on the other. The device keeps one
        // file connection and hangs up on others: the pair retries until the link's
        // old one is gone.
        const auto attach = [&](const SimProcess &forLink, const SimProcess &forBare) {
            bareCommand.abort();
            bareFile.abort();
            link.connectToDevice(forLink.host(), forLink.port());
            if (!waitFor([&] { return link.isConnected() && link.isUploadConnected(); }, 5000))
                return false;
            for (int attempt = 0; attempt < 20; ++attempt) {
                bareCommand.abort();
                bareFile.abort();
                bareCommand.connectToHost(forBare.host(), forBare.port());
                bareFile.connectToHost(forBare.host(), MessageDistance::FilePort);
                if (!waitFor([&] { return connected(bareCommand) && connected(bareFile); }, 3000))
                    continue;
                waitFor([] { return false; }, 100);  // a refused file connection is closed by then
                if (connected(bareFile) && link.isUploadConnected()) {
                    for (QTcpSocket *socket : {&bareCommand, &bareFile}) {
                        socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);  // as the link's
                        socket->readAll();
                    }
                    return true;
                }
            }
            return false;
        };
        peer.connectToHost(EchoHost, pacingPeerPort);
        if (!attach(sim, pacingSim) || !waitFor([&] { return connected(peer); }, 3000)) {
            std::fprintf(stderr, "no file connection to the emulators, or no pacing peer\n");
            return 2;
        }
        peer.setSocketOption(QAbstractSocket::LowDelayOption, 1);
        // One piece after the other, each sent once the previous one has its 9-byte
        // answer; -1 when an answer does not come.
        const QByteArray ack = "<ACK_1>\r\n";
        const auto answered = [&ack](QTcpSocket &socket, QByteArray *unread) {
            if (!waitFor([&] { return (*unread += socket.readAll()).size() >= ack.size(); }, 3000) || !unread->startsWith(ack))
                return false;
            unread->remove(0, ack.size());
            return true;
        };
        const auto chain = [&answered](QTcpSocket &socket, const QByteArray &bytes) {
            QElapsedTimer clock;
            clock.start();
            QByteArray unread;
            for (int offset = 0; offset < bytes.size(); offset += MessageDistance::PieceSize) {
                socket.write(bytes.mid(offset, MessageDistance::PieceSize));
                socket.flush();
                if (!answered(socket, &unread))
                    return -1.0;
            }
            return clock.nsecsElapsed() / 1e6;
        };
        const auto devicePieces = [&](const QByteArray &logo) {
            bareCommand.write(CommandText::uploadOsd(1).toUtf8());
            bareCommand.flush();
            const double ms = chain(bareFile, logo);
            bareCommand.write(CommandText::done().toUtf8());
            bareCommand.flush();
            QByteArray unread;
            return answered(bareFile, &unread) ? ms : -1.0;
        };
        // With the application's log (two lines a piece, each opened, appended to and
        // closed) or with diagnostics dropped: the link alone.
        QDir().mkpath(dir.filePath("log"));
        setLogFolder(dir.filePath("log"));
        const auto upload = [&](const QByteArray &logo, QVector<double> *device, QVector<double> *fastest,
                                QVector<double> *echoed, bool applicationLog) {
            const int pieces = (logo.size() + MessageDistance::PieceSize - 1) / MessageDistance::PieceSize;
            QVector<double> times;
            for (int round = 0; round < 101; ++round) {
                if (round == 50 && !attach(pacingSim, sim)) {
                    std::fprintf(stderr, "the emulators do not swap\n");
                    return -1.0;
                }
                device->append(devicePieces(logo));
                if (fastest) {
                    fastest->append(chain(peer, QByteArray(pieces * MessageDistance::PieceSize, 'L')));
                    echoed->append(echo.roundTrip(QByteArray(MessageDistance::PieceSize, 'L')));
                }
                qInstallMessageHandler(applicationLog ? logMessageHandler : quiet);
                QElapsedTimer clock;
                clock.start();
                link.sendFile(CommandText::uploadOsd(1), logo, CommandText::done());
                const bool finished = waitFor(
                        [&] { return !link.isUploading() && !link.isAwaitingAck() && link.pendingUploads() == 0; }, 15000);
                times << clock.nsecsElapsed() / 1e6;
                qInstallMessageHandler(quiet);
                if (!finished || failed) {
                    std::fprintf(stderr, "upload %d %s\n", round, failed ? "failed" : "does not finish");
                    return -1.0;
                }
            }
            attach(sim, pacingSim);
            return percentile(times, 0.5);
        };
        // Also a payload of whole pieces that is no BMP: its length is unknown to
        // the device, which needs no length for whole pieces.
        const QByteArray bitmap = logoBitmap();
        QVector<double> device, fastest, echoed, wholeDevice, logged;
        const double logo = upload(bitmap, &device, &fastest, &echoed, false);
        const double whole = upload(QByteArray(4000, 'L'), &wholeDevice, nullptr, nullptr, false);
        const double withLog = upload(bitmap, &logged, nullptr, nullptr, true);
        for (const QVector<double> *samples : {&device, &fastest, &echoed, &wholeDevice, &logged}) {
            if (samples->contains(-1.0)) {
                std::fprintf(stderr, "an answer did not come\n");
                return 2;
            }
        }
        if (logo < 0 || whole < 0 || withLog < 0)
            return 2;
        const int pieces = (bitmap.size() + MessageDistance::PieceSize - 1) / MessageDistance::PieceSize;
        const double limit = percentile(device, 0.5);
        // The stricter of two for the fastest device: on this loopback the peer, a
        // process of its own, now and then wakes slowly for a whole run.
        const double echoLimit = percentile(echoed, 0.5);
        const double fastestLimit = qMin(percentile(fastest, 0.5), pieces * echoLimit);
        std::printf("4 KB logo (1-bit BMP, %d bytes), %d pieces and the closing Done/ACK: median %.3f ms; pacing limit "
                    "%.3f ms (%d round trips of a piece to orvex-sim from a bare socket); 4,000 bytes, 8 whole pieces: "
                    "%.3f ms, %.2f x their limit\n",
                    int(bitmap.size()), pieces, logo, limit, pieces, whole, whole / percentile(wholeDevice, 0.5));
        std::printf("against the fastest device there can be: %.3f ms, the lower of %d round trips to the pacing peer "
                    "%.3f ms and %d x the in-process echo's %.3f ms: %.2f x\n",
                    fastestLimit, pieces, percentile(fastest, 0.5), pieces, echoLimit, logo / fastestLimit);
        const double loggedLimit = percentile(logged, 0.5);
        std::printf("with the application's log: median %.3f ms against a limit of %.3f ms\n", withLog, loggedLimit);
        std::printf("RESULT upload_vs_pacing_limit %.2f x (target <= 1.2; with the application's log, two lines a piece)\n",
                    withLog / loggedLimit);
        std::printf("RESULT upload_link_alone_vs_pacing_limit %.2f x (no target; diagnostics dropped; the transfer is %d + 1 "
                    "round trips against the %d counted)\n", logo / limit, pieces, pieces);
        std::printf("RESULT upload_vs_fastest_device %.2f x (no target; link alone)\n", logo / fastestLimit);
        pacingSim.stop();
    }

    sim.stop();
    return 0;
}
