// The emulator's device in-process, one table row per command family
// (commands -> reply frames, log notes, state); over loopback only the EDID
// uploads, which need the real file port and its acknowledgements.
#include "simserver.h"

#include <QTcpSocket>
#include <QTest>
#include <QtEndian>

#include <functional>

using Probe = std::function<QByteArray(const SimDevice &)>; // state no frame shows, as text
Q_DECLARE_METATYPE(Probe)

namespace {

// Port values 1..9 with one port changed; port 0 changes nothing.
QVector<int> ports(int port = 0, int value = 0)
{
    QVector<int> values{1, 2, 3, 4, 5, 6, 7, 8, 9};
    return port ? (values[port - 1] = value, values) : values;
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

// 120x45, 1 bit, bottom-up: the shape of the application's overlay pictures.
QByteArray overlayBmp()
{
    return QByteArray::fromHex("424d0e030000000000003e00000028000000780000002d0000000100010000000000d0020000000000000000"
                               "0000020000000200000000000000ffffff00") + QByteArray(720, 'Z');
}

} // namespace

class tst_Sim : public QObject
{
    Q_OBJECT

private slots:
    void command_changesStateAndAnswersExactFrames_data()
    {
        QTest::addColumn<QByteArrayList>("steps"); // command stream pieces, or bytes on the file port if brace-free
        QTest::addColumn<QByteArray>("expected");  // all reply frames
        QTest::addColumn<QByteArray>("notes");     // verbose-log notes, and "?" per command not understood
        QTest::addColumn<Probe>("probe");
        QTest::addColumn<QByteArray>("probed");

        auto row = [](const char *name, const QByteArrayList &steps, const QByteArray &expected,
                      const QByteArray &notes = QByteArray(), const Probe &probe = Probe(), const QByteArray &probed = QByteArray()) {
            QTest::newRow(name) << steps << expected << notes << probe << probed;
        };
        const QVector<int> hdmi1is4 = ports(1, 4), wall = ports(1, 2), joined = {5, 5, 5, 5, 5, 6, 7, 8, 9};
        // The stream pieces also carry the framing: stray bytes skipped, a command split across reads.
        row("switch: input 0 clears video, audio and IR", {"xx}{param=0VIDEO2}{garbage{param=0AU", "DIO3}\r\n{param=0IR4}"},
            vid(ports(2, 0)) + aud(ports(3, 0), ports()) + frame("IR", ports(4, 0)));
        row("switch: the wall 101 fills the joined outputs, input 0 clears them", {"{param=mode3}{param=5VIDEO101}{param=mode1}{param=0VIDEO101}"},
            vid(ports(), 3) + vid(joined, 3) + vid(joined, 1) + vid({0, 0, 5, 5, 5, 6, 7, 8, 9}, 1));
        row("switch: HDMI audio from 101, apart from audio", {"{param=2AUDIO105}{param=0AUDIO109}"},
            aud(ports(), ports(5, 2)) + aud(ports(), {1, 2, 3, 4, 2, 6, 7, 8, 0}));
        row("preset: recall restores video, HDMI audio and mode", {"{param=2VIDEO1}{param=4AUDIO101}{param=mode2}{param=Save1}"
            "{param=0AUDIO101}{param=mode6}{param=Recall1}"}, vid(wall) + aud(ports(), hdmi1is4) + vid(wall, 2)
            + aud(ports(), ports(1, 0)) + vid(wall) + vid(wall, 2) + aud(ports(), hdmi1is4) + frame("IR", ports()));
        row("mute: toggles, reads 0 while muted, a new level or Default ends it",
            {"{param=3AUDIO102}{param=Mute3}{param=Mute3}{param=Mute3}{param=Volume3/80}{param=Mute3}{param=Default}"},
            aud(ports(), ports(2, 3)) + vol(3, 0) + vol() + vol(3, 0) + vol(3, 80) + vol(3, 0) + status() + vol() + out(),
            "mute 3: on\nmute 3: off\nmute 3: on\nmute 3: on\n", [](const SimDevice &d) { return QByteArray::number(d.isMuted(3)); }, "0");
        row("resolution: the first, the last and an odd timing; refusals are below",
            {"{param=Port2/800x600x60Hz!}{param=Port2/1920x540x50Hz!}{param=Port2/4096x2160x60Hz!}"},
            out(2, "800x600x60Hz") + out(2, "1920x540x50Hz") + out(2, "4096x2160x60Hz"));
        row("pattern and audio mode: kept per port, HDMI audio outputs included",
            {"{param=In_Pattern2/11}{param=Out_Pattern3/5}{param=Analog_sel4/1}{param=Analog_sel104/1}{param=Analog_sel104/0}"},
            "", "pattern input 2: 11\npattern output 3: 5\naudio mode 4: analog\naudio mode 104: analog\naudio mode 104: digital\n",
            [](const SimDevice &d) { return QString("%1 %2 %3 %4").arg(d.inputPattern(2)).arg(d.outputPattern(3))
                                         .arg(d.audioMode(4)).arg(d.audioMode(104)).toLatin1(); }, "11 5 1 0");
        row("edid: copy of an output's", {"{param=Copy_EDID2/5}"}, "",
            "edid 2: 128 bytes, crc32 2709a2b8, copy of output 5\n",
            [](const SimDevice &d) { return QByteArray::number(d.inputEdid(2) == d.outputEdid(5) && d.outputEdid(5) != d.outputEdid(4)); }, "1");
        // The application sends the announcement and the first piece together: either may arrive first.
        row("edid: upload is the transfer up to Done, an empty one keeps the old", {"123", "{param=Update_EDID3}", "456789",
            "{param=Done}{param=Update_EDID4}{param=Done}"}, "", "edid 3: 9 bytes, crc32 cbf43926\nedid 4: nothing received, kept\n",
            [](const SimDevice &d) { return d.inputEdid(3) + (d.inputEdid(4) == SimDevice().inputEdid(4) ? " kept" : " lost"); }, "123456789 kept");
        // The saved file is tst_dialogs' to compare; here the log line that reads its header back.
        row("upload: a picture is noted with its BMP header", {"{param=Upload_OSD3}", overlayBmp(), "{param=Done}"}, "",
            "upload osd 3: 782 bytes, bmp 120x45, 1 bit\n");
        row("bad commands are silent and change nothing",
            {"{param=STATUS}{param=10VIDEO1}{param=1AUDIO110}{param=1IR101}{param=Volume1/101}{param=mode7}"
             "{param=Port1/1920x1080x59Hz!}{param=In_Pattern1/12}{param=Analog_sel1/2}{param=Copy_EDID1/10}{param=Mute10}"
             "{param=reboot}{}{param=status}"},
            status(), QByteArray("?\n").repeated(13), [](const SimDevice &d) { return QByteArray::number(d.inputPattern(1)); }, "0");
    }

    void command_changesStateAndAnswersExactFrames()
    {
        QFETCH(QByteArrayList, steps);
        QFETCH(QByteArray, expected);
        QFETCH(QByteArray, notes);
        QFETCH(Probe, probe);

        SimDevice device;
        CommandCutter cutter; // one per connection, as in the server
        QByteArray frames, logged, command;
        for (const QByteArray &step : steps) {
            if (!step.contains('{') && !step.contains('}')) {
                device.receiveFile(step);
                continue;
            }
            cutter.append(step);
            while (cutter.next(&command)) {
                const SimDevice::Outcome outcome = device.handle(command);
                frames += outcome.frames.join();
                logged += (outcome.note.isEmpty() ? "" : outcome.note + '\n') + (outcome.understood ? "" : "?\n");
            }
        }
        QCOMPARE(frames, expected);
        QCOMPARE(logged, notes);
        QTEST(probe ? probe(device) : QByteArray(), "probed");
    }

    void fileUpload_isPacedPieceByPieceAndKeptExactly_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<int>("quietMs"); // the file port's wait for more of a file of unknown length
        QTest::addColumn<int>("acks");    // before "{param=Done}"
        // Binary, with NULs, line ends and a command's text inside: none of it is interpreted.
        QByteArray binary = "{param=Done}\r\n";
        for (int i = 0; i < 700; ++i)
            binary += char(i * 7);
        QByteArray overstated = overlayBmp();
        qToLittleEndian<quint32>(1000, overstated.data() + 2);
        const int never = 3600 * 1000; // only the file's own length can release its short rest in time
        QTest::newRow("no length given: the short rest once the sender is quiet") << QByteArray("{param=Update_EDID6}") << binary << 1 << 2;
        QTest::newRow("BMP: the short rest once bfSize bytes are in") << QByteArray("{param=Upload_OSD6}") << overlayBmp() << never << 2;
        QTest::newRow("EDID: one block, no extension") << QByteArray("{param=Update_EDID6}") << SimDevice().outputEdid(5) << never << 1;
        QTest::newRow("BMP shorter than its bfSize: once quiet") << QByteArray("{param=Upload_OSD6}") << overstated << 1 << 2;
    }

    void fileUpload_isPacedPieceByPieceAndKeptExactly()
    {
        QFETCH(QByteArray, command);
        QFETCH(QByteArray, file);
        QFETCH(int, quietMs);
        QFETCH(int, acks);
        const QString host = QStringLiteral("127.0.0.42");
        SimOptions options;
        options.host = QHostAddress(host);
        options.port = 0;
        options.fileQuietMs = quietMs;
        QTcpSocket commands, fileSocket; // declared first: the server goes while both are still connected
        SimServer server(options);
        QVERIFY2(server.listen(), qPrintable(server.errorString()));
        commands.connectToHost(host, server.commandPort());
        fileSocket.connectToHost(host, FileChannel::Port);
        QTRY_VERIFY(commands.state() == QAbstractSocket::ConnectedState && fileSocket.state() == QAbstractSocket::ConnectedState);

        // One acknowledgement per full piece, one for the short rest, one after Done.
        QByteArray answers;
        commands.write(command);
        fileSocket.write(file);
        QTRY_COMPARE((answers += fileSocket.readAll()), FileChannel::Ack.repeated(acks));
        commands.write("{param=Done}");
        QTRY_COMPARE((answers += fileSocket.readAll()), FileChannel::Ack.repeated(acks + 1));
        const auto kind = command.contains("EDID") ? SimDevice::UploadKind::Edid : SimDevice::UploadKind::Osd;
        QCOMPARE(server.device().lastUpload(kind, 6), file);
    }
};

QTEST_GUILESS_MAIN(tst_Sim)
#include "tst_sim.moc"
