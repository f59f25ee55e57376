#include "simprocess.h"

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTcpServer>
#include <QTest>

#include <csignal>

namespace {
struct Outcome
{
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
};

// Runs the real binary to its end. Blocking is fine: the emulator is a process
// of its own, and the kernel accepts for an in-test server.
Outcome runCtl(const QStringList &arguments)
{
    QProcess process;
    process.start(ORVEXCTL_PATH, arguments);
    if (!process.waitForFinished(15000))
        return {};
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

// The options that aim a run at an emulator.
QStringList aimedAt(const SimProcess &sim)
{
    return {"--host", sim.host(), "--port", QString::number(sim.port())};
}

// A value of the printed line by path, e.g. "video/9"; invalid when absent.
QVariant at(const QJsonObject &line, const QString &path)
{
    const QStringList keys = path.split('/');
    const QJsonValue value = line.value(keys[0]);
    return (keys.size() == 1 ? value : value.toObject().value(keys[1])).toVariant();
}
} // namespace

class tst_Orvexctl : public QObject
{
    Q_OBJECT

private slots:
    void command_printsTheAnsweredRecordAsOneLine_data()
    {
        QTest::addColumn<QString>("host");
        QTest::addColumn<QStringList>("arguments"); // of the emulator, "--" then of orvexctl
        QTest::addColumn<QByteArray>("log");        // of the emulator: a run of its lines ("{...}": commands only)
        QTest::addColumn<QStringList>("keys");      // of the printed line; empty: not checked
        QTest::addColumn<QVariantMap>("expected");  // path in the printed line: value
        QTest::addColumn<int>("exitCode");
        auto cmds = [](QByteArray sent) { return sent.replace("{", "cmd: {").replace("}", "}\n"); };

        const QByteArray queries = "{param=version}{param=status}{param=inputinfo}{param=netInfo}{param=resolution}{param=Get_Volume}";
        for (int outputs : {9, 8}) {
            const QString model = outputs == 9 ? "ORXM200" : "ORXM100", last = QString::number(outputs);
            QVariantMap expected{
                {"model", model}, {"modelFlag", outputs == 9 ? 1 : 0}, {"fpga", "FPGA: V1.0.5"}, {"mcu", "MCU : V2.0.3"},
                {"joinMode", 6}, {"video/1", 1}, {"video/" + last, outputs}, {"audio/" + last, outputs}, {"ir/2", 2},
                {"volume/" + last, 50}, {"outputResolution/" + last, "1920x1080x60Hz"}, {"inputSignal/3", true},
                {"inputSignal/4", false}, {"inputResolution/3", "1280x720x60Hz"}, {"inputResolution/4", "noinput"},
                {"network/ip", "192.168.1.188"}, {"network/mac", "00:1a:2b:3c:4d:5e"}};
            // No map has an entry beyond the model's ports.
            for (const char *map : {"video", "audio", "ir", "outputResolution", "volume", "inputSignal", "inputResolution"})
                expected.insert(QString("%1/%2").arg(map).arg(outputs + 1), QVariant());
            QTest::newRow(qPrintable("status " + model)) << (outputs == 9 ? "127.0.0.71" : "127.0.0.72")
                << QStringList{"--model", model, "--", "status"} << cmds(queries) << QStringList{} << expected << 0;
        }
        QTest::newRow("route video") << "127.0.0.73" << QStringList{"--", "route", "4", "7"} << cmds("{param=version}{param=4VIDEO7}")
                                     << QStringList{"mode", "video"} << QVariantMap{{"video/7", 4}, {"video/1", 1}, {"mode", 6}} << 0;
        QTest::newRow("route audio") << "127.0.0.74" << QStringList{"--", "route", "2", "3", "--audio"}
                                     << cmds("{param=version}{param=2AUDIO3}") << QStringList{"audio"}
                                     << QVariantMap{{"audio/3", 2}, {"audio/4", 4}} << 0;
        QTest::newRow("route ir") << "127.0.0.75" << QStringList{"--", "route", "5", "9", "--ir"} << cmds("{param=version}{param=5IR9}")
                                  << QStringList{"ir"} << QVariantMap{{"ir/9", 5}, {"ir/8", 8}} << 0;
        QVariantMap wall{{"mode", 6}};
        for (int output = 1; output <= 9; ++output)
            wall.insert(QString("video/%1").arg(output), 6);
        QTest::newRow("route wall in mode 6") << "127.0.0.76" << QStringList{"--", "route", "6", "1", "--wall"}
                                              << cmds("{param=version}{param=6VIDEO101}") << QStringList{"mode", "video"} << wall << 0;
        const QByteArray version = "cmd: {param=version}\n";
        const QString edid = ORVEX_SOURCE_DIR "/fuzz/corpus/85e53271e14006f0265921d02d4d736cdc580b0b"; // 1 byte
        const QString picture = ORVEX_SOURCE_DIR "/resources/Images/window/close.png";
        QTest::newRow("preset save") << "127.0.0.93" << QStringList{"--", "preset", "save", "4"} << cmds("{param=version}{param=Save4}{param=version}")
                                     << QStringList{"preset", "saved"} << QVariantMap{{"preset", 4}, {"saved", true}} << 0;
        QTest::newRow("preset recall of an empty slot") << "127.0.0.94" << QStringList{"--", "preset", "recall", "5"}
                                                        << QByteArray("cmd: {param=Recall5} (not understood)\n") << QStringList{} << QVariantMap{} << 3;
        QTest::newRow("volume") << "127.0.0.95" << QStringList{"--", "volume", "2", "30"} << cmds("{param=version}{param=Volume2/30}")
                                << QStringList{"volume"} << QVariantMap{{"volume/2", 30}, {"volume/1", 50}} << 0;
        QTest::newRow("mute") << "127.0.0.96" << QStringList{"--", "mute", "3"} << cmds("{param=version}{param=Mute3}") + "mute 3: on\n"
                              << QStringList{"muted", "volume"} << QVariantMap{{"muted", true}, {"volume/3", 0}} << 0;
        QTest::newRow("pattern") << "127.0.0.97" << QStringList{"--", "pattern", "out", "2", "7"}
                                 << cmds("{param=version}{param=Out_Pattern2/7}") + "pattern output 2: 7\n" + version
                                 << QStringList{"output", "pattern"} << QVariantMap{{"output", 2}, {"pattern", 7}} << 0;
        QTest::newRow("resolution") << "127.0.0.98" << QStringList{"--", "resolution", "4", "1280x720x60Hz"}
                                    << cmds("{param=version}{param=Port4/1280x720x60Hz!}") << QStringList{"outputResolution"}
                                    << QVariantMap{{"outputResolution/4", "1280x720x60Hz"}, {"outputResolution/3", "1920x1080x60Hz"}} << 0;
        QTest::newRow("edid copy") << "127.0.0.99" << QStringList{"--", "edid", "copy", "2", "5"}
                                   << cmds("{param=version}{param=Copy_EDID2/5}") + "edid 2: 128 bytes, crc32 2709a2b8, copy of output 5\n" + version
                                   << QStringList{"copyOf", "edid"} << QVariantMap{{"edid", 2}, {"copyOf", 5}} << 0;
        QTest::newRow("edid upload") << "127.0.0.100" << QStringList{"--", "edid", "upload", "3", edid}
                                     << cmds("{param=Update_EDID3}{param=Done}") + "edid 3: 1 bytes, crc32 "
                                     << QStringList{"bytes", "edid"} << QVariantMap{{"edid", 3}, {"bytes", 1}} << 0;
        QTest::newRow("caption") << "127.0.0.101" << QStringList{"--", "caption", "Hi", "--output", "3"}
                                 << cmds("{param=Upload_Subtitle3}{param=Done}") + "upload caption 3: " << QStringList{} << QVariantMap{{"caption", 3}} << 0;
        QTest::newRow("logo") << "127.0.0.102" << QStringList{"--", "logo", "2", picture} << cmds("{param=Upload_OSD2}{param=Done}") + "upload osd 2: "
                              << QStringList{} << QVariantMap{{"logo", 2}} << 0;
    }

    void command_printsTheAnsweredRecordAsOneLine()
    {
        QFETCH(QString, host);
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, log);
        QFETCH(QStringList, keys);
        QFETCH(QVariantMap, expected);
        QFETCH(int, exitCode);

        const int split = arguments.indexOf("--");
        SimProcess sim; // "--verbose": one "cmd: ..." line per command received
        QVERIFY(sim.start(host, arguments.mid(0, split) + QStringList{"--verbose"}));
        const Outcome run = runCtl(QStringList{"--host", host, "--port", QString::number(sim.port())} + arguments.mid(split + 1));
        QCOMPARE(run.exitCode, exitCode);
        QTRY_VERIFY2(sim.commandLog().contains(log), sim.commandLog().constData());
        QCOMPARE(run.err.isEmpty(), exitCode == 0); // the link's debug lines stay out of sight
        if (exitCode != 0)
            return;
        QCOMPARE(run.out.count('\n'), 1);
        QVERIFY(run.out.endsWith('\n'));
        const QJsonObject line = QJsonDocument::fromJson(run.out).object();
        QVERIFY(keys.isEmpty() || line.keys() == keys);
        for (auto it = expected.cbegin(); it != expected.cend(); ++it)
            QVERIFY2(at(line, it.key()) == it.value(), qPrintable(it.key() + ": " + at(line, it.key()).toString()));
    }

    void failure_printsOnStderrOnlyAndExits2_data()
    {
        QTest::addColumn<QStringList>("arguments"); // "%1": the port of a server on the host that never answers
        QTest::addColumn<QString>("err");           // all of standard error when it ends a line, else its start

        QTest::newRow("nothing listening") << QStringList{"--host", "127.0.0.79", "--port", "8000", "--timeout", "1", "status"}
                                           << "orvexctl: no connection to 127.0.0.79:8000 within 1 s\n";
        QTest::newRow("accepts but never answers") << QStringList{"--host", "127.0.0.78", "--port", "%1", "--timeout", "1", "status"}
                                                   << "orvexctl: no answer from 127.0.0.78:%1 within 1 s\n";
        const QStringList to{"--host", "127.0.0.71", "--port", "8000"};
        const QString usage = "\nusage: orvexctl";
        QTest::newRow("no command") << QStringList{} << "orvexctl: no command" + usage;
        QTest::newRow("unknown command") << to + QStringList{"reboot"} << "orvexctl: unknown command reboot" + usage;
        QTest::newRow("unknown option") << to + QStringList{"--fast", "status"} << "orvexctl: unknown option --fast" + usage;
        QTest::newRow("status without host") << QStringList{"--port", "8000", "status"} << "orvexctl: status needs --host" + usage;
        QTest::newRow("port not a number") << QStringList{"--host", "127.0.0.71", "--port", "x", "status"}
                                           << "orvexctl: --port x is not a port number (1..65535)" + usage;
        QTest::newRow("route input not a number") << to + QStringList{"route", "a", "3"} << "orvexctl: INPUT a is not a port number" + usage;
        QTest::newRow("route output missing") << to + QStringList{"route", "3"} << "orvexctl: route needs INPUT and OUTPUT" + usage;
        QTest::newRow("route with two kinds") << to + QStringList{"route", "3", "4", "--audio", "--ir"}
                                              << "orvexctl: --audio and --ir exclude each other" + usage;
        // Refused before connecting: the server sees no connection.
        QTest::newRow("route input 99") << QStringList{"--host", "127.0.0.69", "--port", "%1", "route", "99", "1"}
                                        << "orvexctl: INPUT 99 is not an input (1..9)\n";
    }

    void failure_printsOnStderrOnlyAndExits2()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, err);

        QTcpServer silent;
        if (arguments.contains("%1")) {
            QVERIFY(silent.listen(QHostAddress(arguments[1]), 0));
            arguments.replaceInStrings("%1", QString::number(silent.serverPort()));
            err = err.arg(silent.serverPort());
        }
        QElapsedTimer clock;
        clock.start();
        const Outcome run = runCtl(arguments);
        QCOMPARE(run.exitCode, 2);
        QCOMPARE(run.out, QByteArray());
        QVERIFY2(err.endsWith('\n') ? run.err == err.toUtf8() : run.err.startsWith(err.toUtf8()), run.err.constData());
        if (arguments.contains("--timeout")) // not before the deadline
            QVERIFY2(clock.elapsed() >= 1000, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(silent.waitForNewConnection(0), arguments.contains("127.0.0.78")); // the server that must be reached
    }

    void route_outOfTheReportedModel_isRefusedUnsent()
    {
        SimProcess sim;
        QVERIFY(sim.start("127.0.0.77", {"--model", "ORXM100", "--verbose"}));
        const Outcome run = runCtl(aimedAt(sim) + QStringList{"route", "3", "9"});
        QCOMPARE(run.exitCode, 2);
        QCOMPARE(run.err, QByteArray("orvexctl: OUTPUT 9 is not an output (1..8) on this ORXM100, nothing sent\n"));
        QTRY_COMPARE(sim.commandLog(), QByteArray("cmd: {param=version}\n"));
    }

    void signal_endsAWaitingRunAtOnceWithStatus0()
    {
        QTcpServer silent;
        QVERIFY(silent.listen(QHostAddress("127.0.0.70"), 0));
        for (int signal : {SIGTERM, SIGINT}) {
            QProcess ctl;
            ctl.start(ORVEXCTL_PATH, {"--host", "127.0.0.70", "--port", QString::number(silent.serverPort()), "--timeout", "60", "status"});
            QVERIFY(silent.waitForNewConnection(5000)); // connected: the handler is in place
            silent.nextPendingConnection(); // kept open: a device that says nothing
            QElapsedTimer clock;
            clock.start();
            ::kill(pid_t(ctl.processId()), signal);
            QVERIFY(ctl.waitForFinished(5000));
            QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
            QCOMPARE(ctl.exitStatus(), QProcess::NormalExit);
            QCOMPARE(ctl.exitCode(), 0);
            QCOMPARE(ctl.readAll() + ctl.readAllStandardError(), QByteArray());
        }
    }

    void route_lostByTheDevice_exits3WithTheDevicesMap()
    {
        SimProcess sim;
        QVERIFY(sim.start("127.0.0.103", {"--lose-every", "2", "--verbose"}));
        const QStringList route = aimedAt(sim) + QStringList{"route"};
        QCOMPARE(runCtl(route + QStringList{"3", "5"}).exitCode, 0);
        const Outcome lost = runCtl(route + QStringList{"4", "6"});
        QCOMPARE(lost.exitCode, 3);
        QCOMPARE(lost.err, QByteArray("orvexctl: the device did not switch input 4 to video output 6\n"));
        const QJsonObject map = QJsonDocument::fromJson(lost.out).object();
        QCOMPARE(at(map, "video/6"), QVariant(6)); // as it was
        QCOMPARE(at(map, "video/5"), QVariant(3)); // the first route
        QTRY_VERIFY(sim.commandLog().contains("cmd: {param=4VIDEO6} (lost)\ncmd: {param=status}\n"));
    }

    void watch_printsAChangeMadeByAnotherClient_untilSigterm()
    {
        SimProcess sim; // --broadcast: the watching client hears the replies to another
        QVERIFY(sim.start("127.0.0.104", {"--broadcast"}));
        QProcess watch;
        watch.start(ORVEXCTL_PATH, aimedAt(sim) + QStringList{"watch"});
        QByteArray out;
        auto printed = [&](const QByteArray &text) {
            return QTest::qWaitFor([&] {
                watch.waitForReadyRead(50);
                out += watch.readAllStandardOutput();
                return out.contains(text);
            }, 5000);
        };
        QVERIFY(printed("{\"volume\":")); // the last answer of the first refresh
        QCOMPARE(runCtl(aimedAt(sim) + QStringList{"route", "3", "5"}).exitCode, 0);
        QVERIFY2(printed("\"5\":3"), out.constData());
        const QJsonObject change = QJsonDocument::fromJson(out.trimmed().split('\n').last()).object();
        QCOMPARE(change.keys(), QStringList{"video"});
        QCOMPARE(at(change, "video/5"), QVariant(3));
        ::kill(pid_t(watch.processId()), SIGTERM);
        QVERIFY(watch.waitForFinished(5000));
        QCOMPARE(watch.exitStatus(), QProcess::NormalExit);
        QCOMPARE(watch.exitCode(), 0);
    }
};

QTEST_GUILESS_MAIN(tst_Orvexctl)
#include "tst_orvexctl.moc"
