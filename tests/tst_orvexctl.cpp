#include "simprocess.h"

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTest>

namespace {

struct Outcome
{
    int exitCode = -1;
    QByteArray out;
    QByteArray err;

    QJsonObject json() const { return QJsonDocument::fromJson(out).object(); }
};

// Runs the real binary to its end; its deadline plus headroom.
Outcome runCtl(const QStringList &arguments, const QByteArray &input = {})
{
    qRegisterMetaType<QProcess::ExitStatus>(); // for the spy on finished()
    QProcess process;
    QSignalSpy finished(&process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished));
    process.start(ORVEXCTL_PATH, arguments);
    process.write(input);
    process.closeWriteChannel();
    if (!finished.wait(15000))
        return {};
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

QStringList at(const SimProcess &sim, const QStringList &command)
{
    return QStringList{"--host", sim.host(), "--port", QString::number(sim.port())} + command;
}

// The emulator's "--verbose" log: one "cmd: ..." line per command it received.
QByteArray logOf(const QStringList &commands)
{
    QByteArray log;
    for (const QString &command : commands)
        log += "cmd: " + command.toUtf8() + '\n';
    return log;
}

} // namespace

class tst_Orvexctl : public QObject
{
    Q_OBJECT

private slots:
    void status_printsTheWholeRecordAsOneLine_data();
    void status_printsTheWholeRecordAsOneLine();
    void route_printsTheAnsweredMapWithTheNewInput_data();
    void route_printsTheAnsweredMapWithTheNewInput();
    void silentDevice_failsAfterTheDeadlineWithOneLine_data();
    void silentDevice_failsAfterTheDeadlineWithOneLine();
    void badArguments_printUsageAndExit2_data();
    void badArguments_printUsageAndExit2();
    void parse_stillPrintsOneLinePerFrame();
};

void tst_Orvexctl::status_printsTheWholeRecordAsOneLine_data()
{
    QTest::addColumn<QString>("host");
    QTest::addColumn<QString>("model");
    QTest::addColumn<int>("outputs");

    QTest::newRow("ORXM200") << "127.0.0.71" << "ORXM200" << 9;
    QTest::newRow("ORXM100") << "127.0.0.72" << "ORXM100" << 8;
}

void tst_Orvexctl::status_printsTheWholeRecordAsOneLine()
{
    QFETCH(QString, host);
    QFETCH(QString, model);
    QFETCH(int, outputs);

    SimProcess sim;
    QVERIFY(sim.start(host, {"--model", model, "--verbose"}));
    const Outcome run = runCtl(at(sim, {"status"}));
    QCOMPARE(run.exitCode, 0);
    QTRY_COMPARE(sim.commandLog(), logOf({"{param=version}", "{param=status}", "{param=inputinfo}",
                                          "{param=netInfo}", "{param=resolution}", "{param=Get_Volume}"}));
    QCOMPARE(run.err, QByteArray()); // the link's debug lines stay out of sight
    QCOMPARE(run.out.count('\n'), 1);
    QVERIFY(run.out.endsWith('\n'));

    const QJsonObject state = run.json();
    QCOMPARE(state.value("model").toString(), model);
    QCOMPARE(state.value("modelFlag").toInt(), model == "ORXM200" ? 1 : 0);
    QCOMPARE(state.value("fpga").toString(), QString("FPGA: V1.0.5"));
    QCOMPARE(state.value("mcu").toString(), QString("MCU : V2.0.3"));
    QCOMPARE(state.value("joinMode").toInt(), 6);
    const QString last = QString::number(outputs);
    const QString beyond = QString::number(outputs + 1);
    for (const char *name : {"video", "audio", "ir", "outputResolution", "volume", "inputSignal", "inputResolution"}) {
        const QJsonObject map = state.value(name).toObject();
        QVERIFY2(map.contains("1") && map.contains(last) && !map.contains(beyond), name);
    }
    QCOMPARE(state.value("video").toObject().value(last).toInt(), outputs);
    QCOMPARE(state.value("ir").toObject().value("2").toInt(), 2);
    QCOMPARE(state.value("volume").toObject().value(last).toInt(), 50);
    QCOMPARE(state.value("outputResolution").toObject().value(last).toString(), QString("1920x1080x60Hz"));
    QCOMPARE(state.value("inputSignal").toObject().value("3").toBool(), true);
    QCOMPARE(state.value("inputSignal").toObject().value("4").toBool(), false);
    QCOMPARE(state.value("inputResolution").toObject().value("3").toString(), QString("1280x720x60Hz"));
    QCOMPARE(state.value("inputResolution").toObject().value("4").toString(), QString("noinput"));
    const QJsonObject network = state.value("network").toObject();
    QCOMPARE(network.value("ip").toString(), QString("192.168.1.188"));
    QCOMPARE(network.value("mac").toString(), QString("00:1a:2b:3c:4d:5e"));
}

void tst_Orvexctl::route_printsTheAnsweredMapWithTheNewInput_data()
{
    QTest::addColumn<QString>("host");
    QTest::addColumn<QStringList>("command");
    QTest::addColumn<QString>("map");
    QTest::addColumn<int>("input");
    QTest::addColumn<QList<int>>("outputs");
    QTest::addColumn<int>("untouched");
    QTest::addColumn<QString>("sent");

    QTest::newRow("video") << "127.0.0.73" << QStringList{"route", "4", "7"} << "video" << 4 << QList<int>{7} << 1
                           << "{param=4VIDEO7}";
    QTest::newRow("audio") << "127.0.0.74" << QStringList{"route", "2", "3", "--audio"} << "audio" << 2
                           << QList<int>{3} << 4 << "{param=2AUDIO3}";
    QTest::newRow("ir") << "127.0.0.75" << QStringList{"route", "5", "9", "--ir"} << "ir" << 5 << QList<int>{9} << 8
                        << "{param=5IR9}";
    QTest::newRow("wall in mode 6") << "127.0.0.76" << QStringList{"route", "6", "1", "--wall"} << "video" << 6
                                    << QList<int>{1, 2, 3, 4, 5, 6, 7, 8, 9} << 0 << "{param=6VIDEO101}";
}

void tst_Orvexctl::route_printsTheAnsweredMapWithTheNewInput()
{
    QFETCH(QString, host);
    QFETCH(QStringList, command);
    QFETCH(QString, map);
    QFETCH(int, input);
    QFETCH(QList<int>, outputs);
    QFETCH(int, untouched);
    QFETCH(QString, sent);

    SimProcess sim;
    QVERIFY(sim.start(host, {"--verbose"}));
    const Outcome run = runCtl(at(sim, command));
    QCOMPARE(run.exitCode, 0);
    QTRY_COMPARE(sim.commandLog(), logOf({sent}));
    QCOMPARE(run.err, QByteArray());
    QCOMPARE(run.out.count('\n'), 1);

    const QJsonObject line = run.json();
    const QStringList keys = map == "video" ? QStringList{"mode", "video"} : QStringList{map};
    QCOMPARE(line.keys(), keys);
    const QJsonObject routing = line.value(map).toObject();
    for (int output : outputs)
        QCOMPARE(routing.value(QString::number(output)).toInt(), input);
    if (untouched > 0)
        QCOMPARE(routing.value(QString::number(untouched)).toInt(), untouched);
    if (map == "video")
        QCOMPARE(line.value("mode").toInt(), 6);
}

void tst_Orvexctl::silentDevice_failsAfterTheDeadlineWithOneLine_data()
{
    QTest::addColumn<QString>("host");
    QTest::addColumn<bool>("listening");
    QTest::addColumn<QStringList>("command");
    QTest::addColumn<QString>("message");

    QTest::newRow("nothing listening, status") << "127.0.0.79" << false << QStringList{"status"}
                                               << "orvexctl: no connection to 127.0.0.79:%1 within 1 s";
    QTest::newRow("nothing listening, route") << "127.0.0.79" << false << QStringList{"route", "1", "2", "--ir"}
                                              << "orvexctl: no connection to 127.0.0.79:%1 within 1 s";
    QTest::newRow("accepts but never answers") << "127.0.0.78" << true << QStringList{"status"}
                                               << "orvexctl: no answer from 127.0.0.78:%1 within 1 s";
}

void tst_Orvexctl::silentDevice_failsAfterTheDeadlineWithOneLine()
{
    QFETCH(QString, host);
    QFETCH(bool, listening);
    QFETCH(QStringList, command);
    QFETCH(QString, message);

    QTcpServer mute;
    quint16 port = 8000;
    if (listening) {
        QVERIFY(mute.listen(QHostAddress(host), 0));
        port = mute.serverPort();
    }
    QElapsedTimer clock;
    clock.start();
    const Outcome run = runCtl(QStringList{"--host", host, "--port", QString::number(port), "--timeout", "1"} + command);
    QVERIFY2(clock.elapsed() >= 1000, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.out, QByteArray());
    QCOMPARE(run.err, message.arg(port).toUtf8() + '\n');
}

void tst_Orvexctl::badArguments_printUsageAndExit2_data()
{
    QTest::addColumn<QStringList>("arguments");

    const QStringList to{"--host", "127.0.0.71", "--port", "8000"};
    QTest::newRow("no command") << QStringList{};
    QTest::newRow("unknown command") << to + QStringList{"reboot"};
    QTest::newRow("unknown option") << to + QStringList{"--fast", "status"};
    QTest::newRow("status without host") << QStringList{"--port", "8000", "status"};
    QTest::newRow("port not a number") << QStringList{"--host", "127.0.0.71", "--port", "x", "status"};
    QTest::newRow("route input not a number") << to + QStringList{"route", "a", "3"};
    QTest::newRow("route output missing") << to + QStringList{"route", "3"};
    QTest::newRow("route with two kinds") << to + QStringList{"route", "3", "4", "--audio", "--ir"};
}

void tst_Orvexctl::badArguments_printUsageAndExit2()
{
    QFETCH(QStringList, arguments);

    const Outcome run = runCtl(arguments);
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.out, QByteArray());
    QVERIFY2(run.err.startsWith("usage: orvexctl"), run.err.constData());
}

void tst_Orvexctl::parse_stillPrintsOneLinePerFrame()
{
    const Outcome run = runCtl({"parse"}, R"({"type":"ORXM200","FPGA":"V1","MCU":"V2"})");
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.out.count('\n'), 1);
    const QJsonObject line = run.json();
    QCOMPARE(line.value("ok").toBool(), true);
    QCOMPARE(line.value("signals").toVariant().toStringList(), QStringList{"receiveVersionSig"});
    QCOMPARE(line.value("object").toObject().value("type").toString(), QString("ORXM200"));
    QCOMPARE(line.value("object").toObject().value("MCU").toString(), QString("V2"));
}

QTEST_GUILESS_MAIN(tst_Orvexctl)
#include "tst_orvexctl.moc"
