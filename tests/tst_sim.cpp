// Drives the emulator's command server in-process over a loopback socket: one
// table row per command family, plus the framing rules and one fault switch.
#include "simserver.h"

#include <QTcpSocket>
#include <QTest>

#include <memory>

namespace {

const QString Host = QStringLiteral("127.0.0.41");
const QByteArray Version = "{\"type\":\"ORXM200\",\"FPGA\":\"V1.0.5\",\"MCU\":\"V2.0.3\"}";

// Port values 1..9 with one port changed; port 0 changes nothing.
QVector<int> ports(int port = 0, int value = 0, int first = 1)
{
    QVector<int> values;
    for (int i = 1; i <= 9; ++i)
        values << (i == port ? value : i < first ? 0 : i);
    return values;
}

QByteArray frame(const char *key, const QVector<int> &values, const QByteArray &tail = QByteArray())
{
    QByteArrayList list;
    for (int i = 0; i < values.size(); ++i)
        list << '"' + QByteArray(key) + QByteArray::number(i + 1) + "\":" + QByteArray::number(values[i]);
    return '{' + list.join(',') + tail + '}';
}

QByteArray vid(const QVector<int> &v, int mode = 6) { return frame("video", v, ",\"mode\":" + QByteArray::number(mode)); }
QByteArray status(const QVector<int> &v = ports()) { return vid(v) + frame("audio", ports()) + frame("IR", ports()); }

QByteArray out(int changed = 0, const QByteArray &resolution = QByteArray())
{
    QByteArrayList list;
    for (int i = 1; i <= 9; ++i)
        list << "\"out" + QByteArray::number(i) + "\":\"" + (i == changed ? resolution : "1920x1080x60Hz") + '"';
    return '{' + list.join(',') + '}';
}

QByteArray net(const QByteArray &ip = "192.168.1.188", const QByteArray &gateway = "192.168.1.1",
               const QByteArray &subnet = "255.255.255.0", const QByteArray &mac = "00:1a:2b:3c:4d:5e")
{
    return "{\"ip\":\"" + ip + "\",\"gateway\":\"" + gateway + "\",\"subnet\":\"" + subnet + "\",\"mac\":\"" + mac + "\"}";
}

} // namespace

class tst_Sim : public QObject
{
    Q_OBJECT

private slots:
    void command_isAnsweredWithExactFrames_data();
    void command_isAnsweredWithExactFrames();
};

void tst_Sim::command_isAnsweredWithExactFrames_data()
{
    QTest::addColumn<int>("dropAfter");
    QTest::addColumn<QByteArray>("sent");
    QTest::addColumn<QByteArray>("expected"); // everything read until the version frame or the close

    auto row = [](const char *name, const QByteArray &sent, const QByteArray &expected, int dropAfter = 0) {
        QTest::newRow(name) << dropAfter << sent << expected + (dropAfter ? QByteArray() : Version);
    };
    row("query: status", "{param=status}", status());
    row("query: network", "{param=netInfo}", net());
    row("switch: video to one output", "{param=3VIDEO5}", vid(ports(5, 3)));
    row("switch: joint in mode 3 fills four outputs", "{param=mode3}{param=5VIDEO101}",
        vid(ports(), 3) + vid({5, 5, 5, 5, 5, 6, 7, 8, 9}, 3));
    row("volume: one level, all reported", "{param=Volume3/80}",
        frame("Volume", {50, 50, 80, 50, 50, 50, 50, 50, 50}));
    row("resolution: one output", "{param=Port2/1280x720x60Hz!}", out(2, "1280x720x60Hz"));
    row("network: setting is read back",
        "{param=&ip,ip=10.0.0.5,gateway=10.0.0.1,subnet=255.0.0.0,mac=AA:BB:CC:DD:EE:0F}{param=netInfo}",
        net("10.0.0.5", "10.0.0.1", "255.0.0.0", "AA:BB:CC:DD:EE:0F").repeated(2));
    row("overlay: caption settings are read back", "{param=Get_Subtitle}{param=Open}{param=Speed7}{param=Get_Subtitle}",
        "{\"Switch\":false,\"Speed\":5,\"Color\":255,255,255,\"Position_x\":0,\"Position_y\":0,"
        "\"Bg_switch\":false,\"Bg_Color\":0,0,0,\"Move_dir\":left}"
        "{\"Switch\":true,\"Speed\":7,\"Color\":255,255,255,\"Position_x\":0,\"Position_y\":0,"
        "\"Bg_switch\":false,\"Bg_Color\":0,0,0,\"Move_dir\":left}");
    row("preset: recall restores the saved routing", "{param=2VIDEO1}{param=Save1}{param=5VIDEO1}{param=Recall1}",
        vid(ports(1, 2)) + vid(ports(1, 5)) + status(ports(1, 2)));
    row("framing: split, glued and stray bytes", "xx}{garbage{param=net" "Info}yy{param=resolution}\r\n",
        net() + out());
    row("bad commands are silent and change nothing",
        "{param=STATUS}{param=0VIDEO1}{param=10VIDEO1}{param=1AUDIO10}{param=Volume1/101}{param=mode7}"
        "{param=Port1/1080interlaced!}{param=reboot}{}{param=status}",
        status());
    row("fault: drop-after closes after the second command", "{param=netInfo}{param=bogus}{param=status}", net(), 2);
}

void tst_Sim::command_isAnsweredWithExactFrames()
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
    socket.write(sent.mid(sent.size() / 2) + "{param=version}");
    QByteArray received;
    QTRY_VERIFY_WITH_TIMEOUT((received += socket.readAll(), received.endsWith(Version))
                                 || socket.state() == QAbstractSocket::UnconnectedState,
                             5000);
    received += socket.readAll();
    QCOMPARE(received, expected);
    QCOMPARE(socket.state() == QAbstractSocket::UnconnectedState, dropAfter > 0);
}

QTEST_GUILESS_MAIN(tst_Sim)
#include "tst_sim.moc"
