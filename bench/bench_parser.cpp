// Reply parser throughput on a burst of mixed device replies, against the
// straightforward strip-and-rescan loop and against bare JSON decoding, and the
// CPU the idle link's worker thread uses.
//   bench_parser [frames]   (default 10000)
#include "device/messagedistance.h"
#include "device/replyparser.h"
#include "referenceparser.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QThread>

#include <cstdio>
#include <ctime>

namespace {

QList<QByteArray> catalogue()
{
    return {
        R"({"type":"ORXM200","FPGA":"V1.0.5","MCU":"V2.0.3"})",
        R"({"video1":1,"video2":2,"video3":3,"video4":4,"video5":5,"video6":6,"video7":7,"video8":8,"video9":9,"mode":6})",
        R"({"audio1":1,"audio2":2,"audio3":3,"audio4":4,"audio5":5,"audio6":6,"audio7":7,"audio8":8,"audio9":9})",
        R"({"IR1":1,"IR2":2,"IR3":3,"IR4":4,"IR5":5,"IR6":6,"IR7":7,"IR8":8,"IR9":9})",
        R"({"input-1":true,"input-2":true,"input-3":false,"input-4":false,"in1":1920x1080x60Hz,"in2":1280x720x60Hz,"in3":noinput,"in4":noinput})",
        R"({"out1":"1920x1080x60Hz","out2":"1920x1080x60Hz","out3":"1280x720x60Hz","out4":"3840x2160x30Hz"})",
        R"({"ip":"192.168.1.188","gateway":"192.168.1.1","subnet":"255.255.255.0","mac":"00:1a:2b:3c:4d:5e"})",
        R"({"Volume1":50,"Volume2":50,"Volume3":50,"Volume4":50,"Volume5":50,"Volume6":50,"Volume7":50,"Volume8":50,"Volume9":50})",
        R"({"Switch":true,"Speed":5,"Color":255,255,255,"Position_x":0,"Position_y":0,"Bg_switch":false,"Bg_Color":0,0,0,"Move_dir":left})",
    };
}

void quiet(QtMsgType, const QMessageLogContext &, const QString &) {}

template<typename Parser>
double parseBurst(const QByteArray &burst, int expected)
{
    QElapsedTimer clock;
    clock.start();
    Parser parser;
    parser.append(burst);
    ParsedReply reply;
    int frames = 0;
    while (parser.next(&reply))
        ++frames;
    const double ms = clock.nsecsElapsed() / 1e6;
    if (frames != expected)
        std::fprintf(stderr, "warning: %d frames instead of %d\n", frames, expected);
    return ms;
}

double cpuSeconds()
{
    timespec ts{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ts);
    return ts.tv_sec + ts.tv_nsec / 1e9;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    qInstallMessageHandler(quiet);
    const int count = argc > 1 ? QByteArray(argv[1]).toInt() : 10000;

    const QList<QByteArray> shapes = catalogue();
    QList<QByteArray> frames;
    QByteArray burst;
    for (int i = 0; i < count; ++i) {
        frames << shapes[i % shapes.size()];
        burst += frames.last();
    }
    std::printf("burst: %d frames, %d bytes\n", count, int(burst.size()));

    double ours = 1e9;
    for (int round = 0; round < 5; ++round)
        ours = qMin(ours, parseBurst<ReplyParser>(burst, count));

    double bare = 1e9;
    for (int round = 0; round < 5; ++round) {
        QElapsedTimer clock;
        clock.start();
        for (const QByteArray &frame : frames)
            (void)QJsonDocument::fromJson(frame);
        bare = qMin(bare, clock.nsecsElapsed() / 1e6);
    }

    const double reference = parseBurst<ReferenceParser>(burst, count);

    std::printf("ReplyParser              %10.2f ms  (%.0f frames/s)\n", ours, count / ours * 1000);
    std::printf("strip-and-rescan loop    %10.2f ms  -> ours is %.1fx faster\n", reference, reference / ours);
    std::printf("bare QJsonDocument       %10.2f ms  -> ours costs %.2fx bare decoding\n", bare, ours / bare);

    // Idle link: the worker must sleep, not poll.
    MessageDistance link;
    QThread::msleep(100);
    const double before = cpuSeconds();
    QElapsedTimer wall;
    wall.start();
    QThread::sleep(5);
    const double used = cpuSeconds() - before;
    std::printf("idle worker CPU over %.1f s: %.3f s (%.2f%% of a core)\n", wall.elapsed() / 1000.0, used,
                used / (wall.elapsed() / 1000.0) * 100);
    return 0;
}
