// The emulator's device in-process, one table row per command family
// (commands -> reply frames, log notes, state); over loopback only what needs
// sockets: the framing, one fault switch and an EDID upload on the file port.
#include "simserver.h"

#include <QDebug>
#include <QTcpSocket>
#include <QTest>

#include <functional>
#include <memory>

using Probe = std::function<QVariant(const SimDevice &)>;
Q_DECLARE_METATYPE(Probe)

namespace {

const QString Host = QStringLiteral("127.0.0.41");
const QString UploadHost = QStringLiteral("127.0.0.42");
const QByteArray Version = "{\"type\":\"ORXM200\",\"FPGA\":\"V1.0.5\",\"MCU\":\"V2.0.3\"}";
const QByteArray Net = R"({"ip":"192.168.1.188","gateway":"192.168.1.1","subnet":"255.255.255.0","mac":"00:1a:2b:3c:4d:5e"})";

// Port values 1..9 with one port changed; port 0 changes nothing.
QVector<int> ports(int port = 0, int value = 0)
{
    QVector<int> values;
    for (int i = 1; i <= 9; ++i)
        values << (i == port ? value : i);
    return values;
}

QByteArray members(const char *key, const QVector<int> &values, int first = 1)
{
    QByteArrayList list;
    for (int i = 0; i < values.size(); ++i)
        list << '"' + QByteArray(key) + QByteArray::number(first + i) + "\":" + QByteArray::number(values[i]);
    return list.join(',');
}

QByteArray frame(const char *key, const QVector<int> &values) { return '{' + members(key, values) + '}'; }
QByteArray vid(const QVector<int> &v, int mode = 6) { return '{' + members("video", v) + ",\"mode\":" + QByteArray::number(mode) + '}'; }
QByteArray aud(const QVector<int> &plain, const QVector<int> &hdmi) { return '{' + members("audio", plain) + ',' + members("audio", hdmi, 101) + '}'; }
QByteArray status() { return vid(ports()) + aud(ports(), ports()) + frame("IR", ports()); }
QByteArray vol(int port = 1, int level = 50) { return frame("Volume", QVector<int>(port - 1, 50) << level << QVector<int>(9 - port, 50)); }

QByteArray out(int port = 1, const QByteArray &resolution = "1920x1080x60Hz")
{
    QByteArrayList list;
    for (int i = 1; i <= 9; ++i)
        list << "\"out" + QByteArray::number(i) + "\":\"" + (i == port ? resolution : "1920x1080x60Hz") + '"';
    return '{' + list.join(',') + '}';
}

} // namespace

class tst_Sim : public QObject
{
    Q_OBJECT

private slots:
    void command_changesStateAndAnswersExactFrames_data();
    void command_changesStateAndAnswersExactFrames();
    void server_cutsTheStreamAndHonoursDropAfter_data();
    void server_cutsTheStreamAndHonoursDropAfter();
    void edidUpload_keepsTheFilePortBytesExactly();
};

void tst_Sim::command_changesStateAndAnswersExactFrames_data()
{
    QTest::addColumn<QByteArrayList>("steps"); // "{..." commands, anything else bytes on the file port
    QTest::addColumn<QByteArray>("expected");  // all reply frames
    QTest::addColumn<QByteArray>("notes");     // verbose-log notes, and "?" per command not understood
    QTest::addColumn<Probe>("probe");
    QTest::addColumn<QVariant>("probed");

    auto row = [](const char *name, const QByteArrayList &steps, const QByteArray &expected,
                  const QByteArray &notes = QByteArray(), const Probe &probe = Probe(), const QVariant &probed = QVariant()) {
        QTest::newRow(name) << steps << expected << notes << probe << probed;
    };
    const QVector<int> hdmi1is4 = ports(1, 4), wall = ports(1, 2);
    row("switch: video to one output", {"{param=3VIDEO5}"}, vid(ports(5, 3)));
    row("switch: input 0 clears video, audio and IR", {"{param=0VIDEO2}{param=0AUDIO3}{param=0IR4}"},
        vid(ports(2, 0)) + aud(ports(3, 0), ports()) + frame("IR", ports(4, 0)));
    row("switch: joint in mode 3 fills four outputs", {"{param=mode3}{param=5VIDEO101}"},
        vid(ports(), 3) + vid({5, 5, 5, 5, 5, 6, 7, 8, 9}, 3));
    row("switch: input 0 on the wall clears the outputs joined in mode 1", {"{param=mode1}{param=0VIDEO101}"},
        vid(ports(), 1) + vid({0, 0, 3, 4, 5, 6, 7, 8, 9}, 1));
    row("switch: HDMI audio from 101, apart from audio", {"{param=2AUDIO105}{param=0AUDIO109}"},
        aud(ports(), ports(5, 2)) + aud(ports(), {1, 2, 3, 4, 2, 6, 7, 8, 0}));
    row("preset: recall restores video, HDMI audio and mode", {"{param=2VIDEO1}{param=4AUDIO101}{param=mode2}{param=Save1}"
        "{param=0AUDIO101}{param=mode6}{param=Recall1}"}, vid(wall) + aud(ports(), hdmi1is4) + vid(wall, 2)
        + aud(ports(), ports(1, 0)) + vid(wall) + vid(wall, 2) + aud(ports(), hdmi1is4) + frame("IR", ports()));
    row("reset: Default restores HDMI audio and mute", {"{param=3AUDIO102}{param=Mute2}{param=Default}"},
        aud(ports(), ports(2, 3)) + vol(2, 0) + status() + vol() + out(), "mute 2: on\n",
        [](const SimDevice &d) { return d.isMuted(2); }, false);
    row("mute: toggles, reads 0 while muted, a new level ends it",
        {"{param=Mute3}{param=Mute3}{param=Mute3}{param=Volume3/80}"}, vol(3, 0) + vol() + vol(3, 0) + vol(3, 80),
        "mute 3: on\nmute 3: off\nmute 3: on\n", [](const SimDevice &d) { return d.isMuted(3); }, false);
    QByteArray sent, replies;
    for (const QByteArray &mode : QByteArray("800x600x60Hz 1024x768x60Hz 1280x720x50Hz 1280x720x60Hz 1280x768x60Hz "
             "1280x800x60Hz 1280x960x60Hz 1280x1024x60Hz 1360x768x60Hz 1366x768x60Hz 1440x900x60Hz 1600x900x60Hz "
             "1600x1200x60Hz 1920x540x50Hz 1920x540x60Hz 1920x1080x30Hz 1920x1080x50Hz 1920x1080x60Hz 1920x1200x60Hz "
             "3840x2160x30Hz 4096x2160x30Hz 3840x2160x60Hz 4096x2160x60Hz").split(' ')) {
        sent += "{param=Port2/" + mode + "!}";
        replies += out(2, mode);
    }
    row("resolution: each of the 23 timings", {sent}, replies);
    row("pattern: input and output kept per port", {"{param=In_Pattern2/11}{param=Out_Pattern3/5}{param=Out_Pattern9/0}"}, "",
        "pattern input 2: 11\npattern output 3: 5\npattern output 9: 0\n",
        [](const SimDevice &d) { return QVariantList{d.inputPattern(2), d.outputPattern(3), d.outputPattern(9)}; },
        QVariantList{11, 5, 0});
    row("audio mode: plain and HDMI audio outputs", {"{param=Analog_sel4/1}{param=Analog_sel104/1}{param=Analog_sel104/0}"},
        "", "audio mode 4: analog\naudio mode 104: analog\naudio mode 104: digital\n",
        [](const SimDevice &d) { return QVariantList{d.audioMode(4), d.audioMode(104)}; }, QVariantList{1, 0});
    row("edid: copy of an output's", {"{param=Copy_EDID2/5}"}, "",
        "edid 2: 128 bytes, crc32 " + QByteArray::number(SimDevice::crc32(SimDevice().outputEdid(5)), 16).rightJustified(8, '0') + ", copy of output 5\n",
        [](const SimDevice &d) { return d.inputEdid(2) == d.outputEdid(5) && d.outputEdid(5) != d.outputEdid(4); }, true);
    // The application sends the announcement and the first piece together: either may arrive first.
    row("edid: upload is the transfer up to Done", {"123", "{param=Update_EDID3}", "456789", "{param=Done}"}, "",
        "edid 3: 9 bytes, crc32 cbf43926\n", [](const SimDevice &d) { return d.inputEdid(3); }, QByteArray("123456789"));
    row("edid: an OSD upload or an empty one keeps it", {"{param=Upload_OSD1}", "osd", "{param=Done}{param=Update_EDID4}{param=Done}"},
        "", "edid 4: nothing received, kept\n",
        [](const SimDevice &d) { return d.inputEdid(4) == SimDevice().inputEdid(4) && d.inputEdid(4).size() == 128; }, true);
    row("network: setting is read back", {"{param=&ip,ip=10.0.0.5,gateway=10.0.0.1,subnet=255.0.0.0,mac=AA:BB:CC:DD:EE:0F}"
        "{param=netInfo}"}, QByteArray(R"({"ip":"10.0.0.5","gateway":"10.0.0.1","subnet":"255.0.0.0","mac":"AA:BB:CC:DD:EE:0F"})").repeated(2));
    const QByteArray caption = R"({"Switch":false,"Speed":5,"Color":255,255,255,"Position_x":0,"Position_y":0,)"
                               R"("Bg_switch":false,"Bg_Color":0,0,0,"Move_dir":left})";
    row("overlay: caption settings are read back", {"{param=Get_Subtitle}{param=Open}{param=Speed7}{param=Get_Subtitle}"},
        caption + QByteArray(caption).replace("false,\"Speed\":5", "true,\"Speed\":7"));
    row("bad commands are silent and change nothing",
        {"{param=STATUS}{param=10VIDEO1}{param=1AUDIO110}{param=1IR101}{param=Volume1/101}{param=mode7}"
         "{param=Port1/1920x1080x59Hz!}{param=In_Pattern1/12}{param=Analog_sel1/2}{param=Copy_EDID1/10}{param=Mute10}"
         "{param=reboot}{}{param=status}"},
        status(), QByteArray("?\n").repeated(13), [](const SimDevice &d) { return d.inputPattern(1); }, 0);
}

void tst_Sim::command_changesStateAndAnswersExactFrames()
{
    QFETCH(QByteArrayList, steps);
    QFETCH(QByteArray, expected);
    QFETCH(QByteArray, notes);
    QFETCH(Probe, probe);
    QFETCH(QVariant, probed);

    SimDevice device;
    QByteArray frames, logged, command;
    for (const QByteArray &step : steps) {
        if (!step.startsWith('{')) {
            device.receiveFile(step);
            continue;
        }
        CommandCutter cutter;
        cutter.append(step);
        while (cutter.next(&command)) {
            const SimDevice::Outcome outcome = device.handle(command);
            frames += outcome.frames.join();
            logged += (outcome.note.isEmpty() ? "" : outcome.note + '\n') + (outcome.understood ? "" : "?\n");
        }
    }
    QCOMPARE(frames, expected);
    QCOMPARE(logged, notes);
    const QVariant state = probe ? probe(device) : QVariant();
    QString shown; // QCOMPARE cannot print a list
    QDebug(&shown) << state;
    QVERIFY2(state == probed, qPrintable(shown));
}

void tst_Sim::server_cutsTheStreamAndHonoursDropAfter_data()
{
    QTest::addColumn<int>("dropAfter");
    QTest::addColumn<QByteArray>("sent");
    QTest::addColumn<QByteArray>("expected"); // everything read until the version frame or the close

    QTest::newRow("framing: split, glued and stray bytes")
        << 0 << QByteArray("xx}{garbage{param=net" "Info}yy{param=resolution}\r\n{param=version}") << Net + out() + Version;
    QTest::newRow("fault: drop-after closes after the second command")
        << 2 << QByteArray("{param=netInfo}{param=bogus}{param=status}") << Net;
}

void tst_Sim::server_cutsTheStreamAndHonoursDropAfter()
{
    QFETCH(int, dropAfter);
    QFETCH(QByteArray, sent);
    QFETCH(QByteArray, expected);

    SimOptions options;
    options.host = QHostAddress(Host);
    options.port = 0;
    options.filePort = false;
    options.dropAfter = dropAfter;
    // Destroyed while the client is still connected, as when the emulator is stopped.
    auto server = std::make_unique<SimServer>(options);
    QVERIFY2(server->listen(), qPrintable(server->errorString()));

    QTcpSocket socket;
    socket.connectToHost(Host, server->commandPort());
    QTRY_COMPARE_WITH_TIMEOUT(socket.state(), QAbstractSocket::ConnectedState, 5000);
    // Sent in two writes so that a command may be split across reads.
    socket.write(sent.left(sent.size() / 2));
    socket.flush();
    socket.write(sent.mid(sent.size() / 2));
    QByteArray received;
    QTRY_VERIFY_WITH_TIMEOUT((received += socket.readAll(), received.endsWith(Version))
                                 || socket.state() == QAbstractSocket::UnconnectedState, 5000);
    received += socket.readAll();
    QCOMPARE(received, expected);
    QCOMPARE(socket.state() == QAbstractSocket::UnconnectedState, dropAfter > 0);
}

void tst_Sim::edidUpload_keepsTheFilePortBytesExactly()
{
    SimOptions options;
    options.host = QHostAddress(UploadHost);
    options.port = 0;
    SimServer server(options);
    QVERIFY2(server.listen(), qPrintable(server.errorString()));
    QTcpSocket commands, file;
    commands.connectToHost(UploadHost, server.commandPort());
    file.connectToHost(UploadHost, FileChannel::Port);
    QTRY_VERIFY(commands.state() == QAbstractSocket::ConnectedState && file.state() == QAbstractSocket::ConnectedState);

    // Binary, with NULs, line ends and a command's text inside: none of it is interpreted.
    QByteArray edid = "{param=Done}\r\n";
    for (int i = 0; i < 700; ++i)
        edid += char(i * 7);
    // Paced as the application does: one piece per acknowledgement, Done after the last one.
    QByteArray acks;
    commands.write("{param=Update_EDID6}");
    file.write(edid.left(FileChannel::PieceSize));
    QTRY_COMPARE((acks += file.readAll()), FileChannel::Ack);
    file.write(edid.mid(FileChannel::PieceSize));
    QTRY_COMPARE((acks += file.readAll()), FileChannel::Ack.repeated(2));
    commands.write("{param=Done}");
    QTRY_COMPARE((acks += file.readAll()), FileChannel::Ack.repeated(3));
    QCOMPARE(server.device().inputEdid(6), edid);
}

QTEST_GUILESS_MAIN(tst_Sim)
#include "tst_sim.moc"
