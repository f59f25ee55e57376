// Drives the real orvex-sim executable over loopback sockets, the way the
// application and its end-to-end tests will.
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>

#include <memory>

namespace {

// Our own loopback addresses: the file port is fixed, other suites use others.
const QString CommandHost = QStringLiteral("127.0.0.41");
const QString FileHost = QStringLiteral("127.0.0.42");
constexpr quint16 FilePort = 6666;
constexpr int TimeoutMs = 5000;
const QByteArray Ack = "<ACK_1>\r\n";
const QByteArray VersionQuery = "{param=version}";

int portsOf(const QString &model)
{
    return model == QLatin1String("ORXM100") ? 8 : 9;
}

QVector<int> identity(int ports)
{
    QVector<int> values;
    for (int i = 1; i <= ports; ++i)
        values << i;
    return values;
}

QVector<int> with(QVector<int> values, int port, int value)
{
    values[port - 1] = value;
    return values;
}

QByteArray members(const char *key, const QVector<int> &values)
{
    QByteArrayList list;
    for (int i = 0; i < values.size(); ++i)
        list << '"' + QByteArray(key) + QByteArray::number(i + 1) + "\":" + QByteArray::number(values[i]);
    return list.join(',');
}

QByteArray ver(const QString &model)
{
    return "{\"type\":\"" + model.toLatin1() + "\",\"FPGA\":\"V1.0.5\",\"MCU\":\"V2.0.3\"}";
}

QByteArray vid(const QVector<int> &inputs, int mode = 6)
{
    return '{' + members("video", inputs) + ",\"mode\":" + QByteArray::number(mode) + '}';
}

QByteArray aud(const QVector<int> &inputs) { return '{' + members("audio", inputs) + '}'; }
QByteArray irm(const QVector<int> &inputs) { return '{' + members("IR", inputs) + '}'; }
QByteArray vol(const QVector<int> &levels) { return '{' + members("Volume", levels) + '}'; }

QByteArray out(int ports, int changed = 0, const QByteArray &resolution = QByteArray())
{
    QByteArrayList list;
    for (int i = 1; i <= ports; ++i)
        list << "\"out" + QByteArray::number(i) + "\":\"" + (i == changed ? resolution : "1920x1080x60Hz") + '"';
    return '{' + list.join(',') + '}';
}

QByteArray net(const QByteArray &ip = "192.168.1.188", const QByteArray &gateway = "192.168.1.1",
               const QByteArray &subnet = "255.255.255.0", const QByteArray &mac = "00:1a:2b:3c:4d:5e")
{
    return "{\"ip\":\"" + ip + "\",\"gateway\":\"" + gateway + "\",\"subnet\":\"" + subnet + "\",\"mac\":\"" + mac + "\"}";
}

QByteArray inp(int ports)
{
    static const QByteArrayList resolutions = {"1920x1080x60Hz", "1920x1080x60Hz", "1280x720x60Hz",
                                               "noinput",        "3840x2160x30Hz", "1920x1080x60Hz",
                                               "noinput",        "1920x1080x50Hz", "noinput"};
    QByteArrayList list;
    for (int i = 1; i <= ports; ++i)
        list << "\"input-" + QByteArray::number(i) + "\":" + (resolutions[i - 1] == "noinput" ? "false" : "true");
    for (int i = 1; i <= ports; ++i)
        list << "\"in" + QByteArray::number(i) + "\":" + resolutions[i - 1];
    return '{' + list.join(',') + '}';
}

const QByteArray DefaultCaption = "{\"Switch\":false,\"Speed\":5,\"Color\":255,255,255,\"Position_x\":0,"
                                  "\"Position_y\":0,\"Bg_switch\":false,\"Bg_Color\":0,0,0,\"Move_dir\":left}";

QByteArray numbered(const char *format, int n)
{
    return QString::fromLatin1(format).arg(n).toLatin1();
}

// Waits until done() holds, waking on each emission of signal rather than polling.
template <typename Object, typename Signal, typename Predicate>
bool waitFor(Object *object, Signal signal, Predicate done)
{
    QSignalSpy spy(object, signal);
    const QDeadlineTimer deadline(TimeoutMs);
    while (!done()) {
        if (!spy.wait(static_cast<int>(deadline.remainingTime())))
            return done();
    }
    return true;
}

} // namespace

class tst_Sim : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void command_isAnsweredWithExactFrames_data();
    void command_isAnsweredWithExactFrames();
    void splitOrGluedCommands_areCutOnTheirBraces_data();
    void splitOrGluedCommands_areCutOnTheirBraces();
    void badCommand_getsNoReplyAndChangesNothing_data();
    void badCommand_getsNoReplyAndChangesNothing();
    void twoClients_getTheirOwnRepliesAndShareOneState();
    void uploadBytes_areAcknowledgedPerPieceAndWhenQuiet_data();
    void uploadBytes_areAcknowledgedPerPieceAndWhenQuiet();
    void secondUploadConnection_isClosedUntilTheFirstHangsUp();
    void noFilePortSwitch_refusesUploadConnections();
    void dropAfterSwitch_closesAfterNthCommandAndCountsAfreshPerConnection_data();
    void dropAfterSwitch_closesAfterNthCommandAndCountsAfreshPerConnection();
    void junkSwitch_leavesFramesIntactBetweenStrayBytes();
    void verboseSwitch_logsEachCommandOnItsOwnLine();
    void unusableSetup_exitsWithStatusOneAndOneErrorLine_data();
    void unusableSetup_exitsWithStatusOneAndOneErrorLine();

private:
    QProcess *launch(const QStringList &arguments);
    bool start(const QString &host, const QStringList &extra = {}, const QString &model = QStringLiteral("ORXM200"));
    bool connectTo(QTcpSocket &socket, quint16 port);
    static bool readAtLeast(QTcpSocket &socket, QByteArray *buffer, int size);
    QByteArray replyTo(QTcpSocket &socket, const QByteArray &commands);

    std::unique_ptr<QProcess> m_sim;
    QString m_host;
    quint16 m_port = 0;
    QByteArray m_version;
};

void tst_Sim::cleanup()
{
    if (m_sim) {
        m_sim->kill();
        m_sim->waitForFinished(TimeoutMs);
        m_sim.reset();
    }
}

QProcess *tst_Sim::launch(const QStringList &arguments)
{
    m_sim = std::make_unique<QProcess>();
    m_sim->start(QStringLiteral(ORVEX_SIM_PATH), arguments);
    return m_sim.get();
}

// Starts the emulator on host with an ephemeral command port and waits for its ready line.
bool tst_Sim::start(const QString &host, const QStringList &extra, const QString &model)
{
    QProcess *sim = launch(QStringList{"--host", host, "--port", "0", "--model", model} + extra);
    // Wake on output or on an early exit, which is a failure to report at once.
    QEventLoop loop;
    connect(sim, &QProcess::readyReadStandardOutput, &loop, &QEventLoop::quit);
    connect(sim, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), &loop, &QEventLoop::quit);
    QTimer::singleShot(TimeoutMs, &loop, &QEventLoop::quit);
    const QDeadlineTimer deadline(TimeoutMs);
    while (!sim->canReadLine() && sim->state() != QProcess::NotRunning && !deadline.hasExpired())
        loop.exec();
    if (!sim->canReadLine()) {
        qWarning() << "emulator did not start:" << sim->readAllStandardError();
        return false;
    }
    const QString line = QString::fromLocal8Bit(sim->readLine()).trimmed();
    static const QRegularExpression ready(QStringLiteral(R"(^listening on ([\d.]+):(\d+), (files on \1:6666|no file port)$)"));
    const QRegularExpressionMatch match = ready.match(line);
    if (!match.hasMatch() || match.captured(1) != host || match.captured(2).toInt() == 0) {
        qWarning() << "unexpected ready line:" << line;
        return false;
    }
    m_host = host;
    m_port = static_cast<quint16>(match.captured(2).toInt());
    m_version = ver(model);
    return true;
}

bool tst_Sim::connectTo(QTcpSocket &socket, quint16 port)
{
    socket.connectToHost(m_host, port);
    return socket.waitForConnected(TimeoutMs);
}

bool tst_Sim::readAtLeast(QTcpSocket &socket, QByteArray *buffer, int size)
{
    return waitFor(&socket, &QTcpSocket::readyRead, [&] {
        *buffer += socket.readAll();
        return buffer->size() >= size;
    });
}

// Sends commands followed by a version query and returns what came back before
// the version frame. The device answers in order, so an empty result proves
// that the commands got no reply at all.
QByteArray tst_Sim::replyTo(QTcpSocket &socket, const QByteArray &commands)
{
    socket.write(commands + VersionQuery);
    QByteArray received;
    const bool answered = waitFor(&socket, &QTcpSocket::readyRead, [&] {
        received += socket.readAll();
        return received.endsWith(m_version);
    });
    // On a time-out the caller's comparison shows what did arrive.
    if (answered)
        received.chop(m_version.size());
    return received;
}

void tst_Sim::command_isAnsweredWithExactFrames_data()
{
    QTest::addColumn<QString>("model");
    QTest::addColumn<QByteArray>("setup");
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QByteArray>("expected");

    for (const QString &model : {QStringLiteral("ORXM200"), QStringLiteral("ORXM100")}) {
        const int n = portsOf(model);
        const QVector<int> factory = identity(n);
        const QVector<int> volumes(n, 50);
        const QByteArray ip = "{param=&ip,ip=10.0.0.5,gateway=10.0.0.1,subnet=255.0.0.0,mac=AA:BB:CC:DD:EE:0F}";
        const QByteArray newNet = net("10.0.0.5", "10.0.0.1", "255.0.0.0", "AA:BB:CC:DD:EE:0F");
        auto row = [&](const char *name, const QByteArray &setup, const QByteArray &command, const QByteArray &expected) {
            QTest::addRow("%s: %s", qPrintable(model), name) << model << setup << command << expected;
        };

        row("version names the model", "", "{param=version}", ver(model));
        row("status lists the factory routing", "", "{param=status}", vid(factory) + aud(factory) + irm(factory));
        row("inputinfo carries signal and resolution in one frame", "", "{param=inputinfo}", inp(n));
        row("netInfo reports the factory network", "", "{param=netInfo}", net());
        row("resolution reports every output", "", "{param=resolution}", out(n));
        row("video switch routes one output", "", "{param=3VIDEO5}", vid(with(factory, 5, 3)));
        row("video switch reaches the last port", "", numbered("{param=%1VIDEO1}", n), vid(with(factory, 1, n)));
        row("audio switch routes one output", "", "{param=2AUDIO4}", aud(with(factory, 4, 2)));
        row("IR switch routes one output", "", "{param=7IR1}", irm(with(factory, 1, 7)));
        row("joint switch in mode 6 fills every output", "", "{param=4VIDEO101}", vid(QVector<int>(n, 4)));
        row("joint switch in mode 3 fills four outputs", "{param=mode3}", "{param=5VIDEO101}",
            vid(QVector<int>{5, 5, 5, 5, 5, 6, 7, 8, 9}.mid(0, n), 3));
        row("joint switch in mode 0 fills one output", "{param=mode0}", "{param=2VIDEO101}", vid(with(factory, 1, 2), 0));
        row("mode change keeps the routing", "{param=3VIDEO2}", "{param=mode2}", vid(with(factory, 2, 3), 2));
        row("Get_Volume reports every volume", "", "{param=Get_Volume}", vol(volumes));
        row("volume change reports every volume", "", "{param=Volume3/80}", vol(with(volumes, 3, 80)));
        row("output resolution change reports every output", "", "{param=Port2/1280x720x60Hz!}",
            out(n, 2, "1280x720x60Hz"));
        row("network setting answers with the new values", "", ip, newNet);
        row("netInfo reports a network setting", ip, "{param=netInfo}", newNet);
        row("caption starts closed", "", "{param=Get_Subtitle}", DefaultCaption);
        row("caption reports Open and Speed", "{param=Get_Subtitle}{param=Open}{param=Speed7}", "{param=Get_Subtitle}",
            "{\"Switch\":true,\"Speed\":7,\"Color\":255,255,255,\"Position_x\":0,\"Position_y\":0,"
            "\"Bg_switch\":false,\"Bg_Color\":0,0,0,\"Move_dir\":left}");
        row("overlay settings go to the overlay last asked for",
            "{param=Get_OSD3}{param=Right}{param=POS100/200}{param=Font_Color255/0/0}{param=Bg_Open}"
            "{param=Bg_Color0/0/255}",
            "{param=Get_OSD3}{param=Get_Subtitle}{param=Get_OSD2}",
            "{\"Switch\":false,\"Speed\":5,\"Color\":255,0,0,\"Position_x\":100,\"Position_y\":200,"
            "\"Bg_switch\":true,\"Bg_Color\":0,0,255,\"Move_dir\":right}" + DefaultCaption + DefaultCaption);
        row("recall restores a saved routing and mode",
            "{param=2VIDEO1}{param=3AUDIO1}{param=mode4}{param=Save1}{param=5VIDEO1}{param=mode6}", "{param=Recall1}",
            vid(with(factory, 1, 2), 4) + aud(with(factory, 1, 3)) + irm(factory));
        row("recall of an empty preset is silent", "", "{param=Recall2}", "");
        row("Default restores the factory state",
            "{param=3VIDEO5}{param=2IR2}{param=Volume1/0}{param=Port1/1280x720x60Hz!}{param=mode2}", "{param=Default}",
            vid(factory) + aud(factory) + irm(factory) + vol(volumes) + out(n));
        row("Default keeps the network", ip + "{param=Default}", "{param=netInfo}", newNet);
        row("settings without a report are silent", "",
            "{param=BellOn}{param=In_Pattern1/2}{param=Out_Pattern1/3}{param=Copy_EDID1/2}{param=Analog_sel1/0}"
            "{param=Save1}{param=Open}{param=EraseOSD}{param=Upload_OSD1}{param=Done}",
            "");
        row("ports past the model's last are ignored", "",
            numbered("{param=%1VIDEO1}", n + 1) + numbered("{param=1AUDIO%1}", n + 1) + "{param=status}",
            vid(factory) + aud(factory) + irm(factory));
    }
}

void tst_Sim::command_isAnsweredWithExactFrames()
{
    QFETCH(QString, model);
    QFETCH(QByteArray, setup);
    QFETCH(QByteArray, command);
    QFETCH(QByteArray, expected);

    QVERIFY(start(CommandHost, {}, model));
    QTcpSocket socket;
    QVERIFY(connectTo(socket, m_port));
    if (!setup.isEmpty())
        replyTo(socket, setup);
    QCOMPARE(replyTo(socket, command), expected);
}

void tst_Sim::splitOrGluedCommands_areCutOnTheirBraces_data()
{
    QTest::addColumn<QByteArray>("first");
    QTest::addColumn<QByteArray>("second");
    QTest::addColumn<QByteArray>("expected");

    const QByteArray status = vid(identity(9)) + aud(identity(9)) + irm(identity(9));
    QTest::newRow("split inside the word") << QByteArray("{param=sta") << QByteArray("tus}") << status;
    QTest::newRow("split after the opening brace") << QByteArray("{") << QByteArray("param=netInfo}") << net();
    QTest::newRow("split before the closing brace") << QByteArray("{param=netInfo") << QByteArray("}") << net();
    QTest::newRow("two commands glued in one write")
        << QByteArray("{param=netInfo}{param=resolution}") << QByteArray() << net() + out(9);
    QTest::newRow("glued commands with the second split")
        << QByteArray("{param=netInfo}{param=reso") << QByteArray("lution}") << net() + out(9);
    QTest::newRow("bytes outside braces are skipped")
        << QByteArray("xx\r\n}{param=netInfo}yy") << QByteArray("zz{param=resolution}\n") << net() + out(9);
    QTest::newRow("a stray opening brace does not swallow the next command")
        << QByteArray("{garbage{param=netInfo}") << QByteArray() << net();
}

void tst_Sim::splitOrGluedCommands_areCutOnTheirBraces()
{
    QFETCH(QByteArray, first);
    QFETCH(QByteArray, second);
    QFETCH(QByteArray, expected);

    QVERIFY(start(CommandHost));
    QTcpSocket socket;
    QVERIFY(connectTo(socket, m_port));
    // The version answer shows that the first write has been read before the second goes out.
    socket.write(VersionQuery + first);
    QByteArray received;
    QVERIFY(readAtLeast(socket, &received, m_version.size()));
    socket.write(second + VersionQuery);
    const QByteArray whole = m_version + expected + m_version;
    QVERIFY(readAtLeast(socket, &received, whole.size()));
    QCOMPARE(received, whole);
}

void tst_Sim::badCommand_getsNoReplyAndChangesNothing_data()
{
    QTest::addColumn<QByteArray>("command");

    QTest::newRow("binary garbage") << QByteArray("\x01\x02\0\xff\xfe garbage\r\n", 15);
    QTest::newRow("garbage inside braces") << QByteArray("{\0\x01\xff}{hello}", 12);
    QTest::newRow("empty braces") << QByteArray("{}");
    QTest::newRow("empty parameter") << QByteArray("{param=}");
    QTest::newRow("blank inside") << QByteArray("{param= status}");
    QTest::newRow("wrong case") << QByteArray("{param=STATUS}");
    QTest::newRow("no braces") << QByteArray("param=status");
    QTest::newRow("unknown word") << QByteArray("{param=reboot}");
    QTest::newRow("input not a number") << QByteArray("{param=xVIDEO1}");
    QTest::newRow("input zero") << QByteArray("{param=0VIDEO1}");
    QTest::newRow("output ten") << QByteArray("{param=1AUDIO10}");
    QTest::newRow("huge number") << QByteArray("{param=99999999999999999999IR1}");
    QTest::newRow("negative output") << QByteArray("{param=1VIDEO-1}");
    QTest::newRow("join mode seven") << QByteArray("{param=mode7}");
    QTest::newRow("volume above 100") << QByteArray("{param=Volume1/101}");
    QTest::newRow("volume port ten") << QByteArray("{param=Volume10/5}");
    QTest::newRow("resolution carrying a trigger word") << QByteArray("{param=Port1/1080interlaced!}");
    QTest::newRow("resolution without the bang") << QByteArray("{param=Port1/1280x720x60Hz}");
    QTest::newRow("network with a bad address")
        << QByteArray("{param=&ip,ip=10.0.0.300,gateway=10.0.0.1,subnet=255.0.0.0,mac=00:11:22:33:44:55}");
    QTest::newRow("network without mac") << QByteArray("{param=&ip,ip=10.0.0.3,gateway=10.0.0.1,subnet=255.0.0.0}");
    QTest::newRow("network with an empty gateway")
        << QByteArray("{param=&ip,ip=10.0.0.3,gateway=,subnet=255.0.0.0,mac=00:11:22:33:44:55}");
    QTest::newRow("OSD ten") << QByteArray("{param=Get_OSD10}");
    QTest::newRow("colour above 255") << QByteArray("{param=Font_Color256/0/0}");
    QTest::newRow("speed above 10") << QByteArray("{param=Speed11}");
    QTest::newRow("preset seventeen") << QByteArray("{param=Save17}{param=Recall17}");
    QTest::newRow("unclosed brace beyond the buffer limit") << '{' + QByteArray(100 * 1024, 'a');
}

void tst_Sim::badCommand_getsNoReplyAndChangesNothing()
{
    QFETCH(QByteArray, command);

    QVERIFY(start(CommandHost));
    QTcpSocket socket;
    QVERIFY(connectTo(socket, m_port));
    QCOMPARE(replyTo(socket, command), QByteArray());
    const QByteArray state = "{param=status}{param=resolution}{param=Get_Volume}{param=netInfo}{param=Get_Subtitle}";
    QCOMPARE(replyTo(socket, state), vid(identity(9)) + aud(identity(9)) + irm(identity(9)) + out(9)
                                         + vol(QVector<int>(9, 50)) + net() + DefaultCaption);
    QCOMPARE(m_sim->state(), QProcess::Running);
}

void tst_Sim::twoClients_getTheirOwnRepliesAndShareOneState()
{
    QVERIFY(start(CommandHost));
    QTcpSocket first;
    QTcpSocket second;
    QVERIFY(connectTo(first, m_port));
    QVERIFY(connectTo(second, m_port));

    QCOMPARE(replyTo(first, "{param=3VIDEO1}"), vid(with(identity(9), 1, 3)));
    QCOMPARE(replyTo(second, "{param=status}"), vid(with(identity(9), 1, 3)) + aud(identity(9)) + irm(identity(9)));
    QCOMPARE(replyTo(first, QByteArray()), QByteArray());
}

void tst_Sim::uploadBytes_areAcknowledgedPerPieceAndWhenQuiet_data()
{
    QTest::addColumn<QVector<int>>("writes");
    QTest::addColumn<bool>("paced");
    QTest::addColumn<QStringList>("switches");
    QTest::addColumn<int>("pieceAcks");
    QTest::addColumn<bool>("closingAck");

    QTest::newRow("1234 bytes in one write") << QVector<int>{1234} << false << QStringList() << 3 << true;
    QTest::newRow("1234 bytes paced like the application")
        << QVector<int>{500, 500, 234} << true << QStringList() << 3 << true;
    QTest::newRow("exactly 500 bytes") << QVector<int>{500} << false << QStringList() << 1 << true;
    QTest::newRow("one byte, once quiet") << QVector<int>{1} << false << QStringList() << 1 << true;
    QTest::newRow("499 and 1 byte back to back make one piece")
        << QVector<int>{499, 1} << false << QStringList() << 1 << true;
    QTest::newRow("no-ack withholds only the closing acknowledgement")
        << QVector<int>{500, 500, 234} << true << QStringList{"--no-ack"} << 3 << false;
}

void tst_Sim::uploadBytes_areAcknowledgedPerPieceAndWhenQuiet()
{
    QFETCH(QVector<int>, writes);
    QFETCH(bool, paced);
    QFETCH(QStringList, switches);
    QFETCH(int, pieceAcks);
    QFETCH(bool, closingAck);

    QVERIFY(start(FileHost, switches));
    QTcpSocket commands;
    QTcpSocket file;
    QVERIFY(connectTo(commands, m_port));
    QVERIFY(connectTo(file, FilePort));

    QByteArray acks;
    int expectedAcks = 0;
    for (int size : writes) {
        file.write(QByteArray(size, 'x'));
        file.flush();
        if (paced) {
            ++expectedAcks;
            QVERIFY(readAtLeast(file, &acks, expectedAcks * Ack.size()));
        }
    }
    QVERIFY(readAtLeast(file, &acks, pieceAcks * Ack.size()));
    QCOMPARE(acks, Ack.repeated(pieceAcks));

    QCOMPARE(replyTo(commands, "{param=Done}"), QByteArray());
    if (closingAck) {
        QVERIFY(readAtLeast(file, &acks, (pieceAcks + 1) * Ack.size()));
    } else {
        QSignalSpy readyRead(&file, &QTcpSocket::readyRead);
        QVERIFY(!readyRead.wait(300));
    }
    acks += file.readAll();
    QCOMPARE(acks, Ack.repeated(pieceAcks + (closingAck ? 1 : 0)));
}

void tst_Sim::secondUploadConnection_isClosedUntilTheFirstHangsUp()
{
    QVERIFY(start(FileHost));
    QTcpSocket first;
    QTcpSocket second;
    QVERIFY(connectTo(first, FilePort));
    QSignalSpy closed(&second, &QTcpSocket::disconnected);
    second.connectToHost(m_host, FilePort);
    QVERIFY(closed.wait(TimeoutMs));

    first.write(QByteArray(500, 'x'));
    QByteArray acks;
    QVERIFY(readAtLeast(first, &acks, Ack.size()));
    QCOMPARE(acks, Ack);

    // The application aborts a broken upload socket and reconnects at once.
    first.abort();
    QTcpSocket third;
    QVERIFY(connectTo(third, FilePort));
    third.write(QByteArray(500, 'x'));
    acks.clear();
    QVERIFY(readAtLeast(third, &acks, Ack.size()));
    QCOMPARE(acks, Ack);
}

void tst_Sim::noFilePortSwitch_refusesUploadConnections()
{
    QVERIFY(start(FileHost, {"--no-file-port"}));
    QTcpSocket file;
    QSignalSpy failed(&file, &QTcpSocket::errorOccurred);
    file.connectToHost(m_host, FilePort);
    QVERIFY(failed.wait(TimeoutMs));
    QCOMPARE(file.error(), QAbstractSocket::ConnectionRefusedError);

    QTcpSocket commands;
    QVERIFY(connectTo(commands, m_port));
    QCOMPARE(replyTo(commands, "{param=netInfo}"), net());
}

void tst_Sim::dropAfterSwitch_closesAfterNthCommandAndCountsAfreshPerConnection_data()
{
    QTest::addColumn<QString>("dropAfter");
    QTest::addColumn<QByteArrayList>("writes");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("two commands in separate writes")
        << "2" << QByteArrayList{"{param=version}", "{param=netInfo}"} << ver("ORXM200") + net();
    QTest::newRow("three glued commands: the third is never answered")
        << "2" << QByteArrayList{"{param=version}{param=netInfo}{param=resolution}"} << ver("ORXM200") + net();
    QTest::newRow("a bad command counts as well")
        << "2" << QByteArrayList{"{param=bogus}{param=netInfo}{param=resolution}"} << net();
    QTest::newRow("after the first command") << "1" << QByteArrayList{"{param=netInfo}{param=version}"} << net();
}

void tst_Sim::dropAfterSwitch_closesAfterNthCommandAndCountsAfreshPerConnection()
{
    QFETCH(QString, dropAfter);
    QFETCH(QByteArrayList, writes);
    QFETCH(QByteArray, expected);

    QVERIFY(start(CommandHost, {"--drop-after", dropAfter}));
    for (int connection = 1; connection <= 2; ++connection) {
        QTcpSocket socket;
        QVERIFY(connectTo(socket, m_port));
        QSignalSpy closed(&socket, &QTcpSocket::disconnected);
        for (const QByteArray &bytes : writes) {
            socket.write(bytes);
            socket.flush();
        }
        QVERIFY(closed.wait(TimeoutMs));
        QCOMPARE(socket.readAll(), expected);
    }
}

void tst_Sim::junkSwitch_leavesFramesIntactBetweenStrayBytes()
{
    QVERIFY(start(CommandHost, {"--junk"}));
    QTcpSocket socket;
    QVERIFY(connectTo(socket, m_port));
    socket.write("{param=status}{param=inputinfo}{param=Get_Subtitle}{param=netInfo}");
    const QByteArrayList frames = {vid(identity(9)), aud(identity(9)), irm(identity(9)), inp(9), DefaultCaption, net()};

    QByteArray received;
    QVERIFY(waitFor(&socket, &QTcpSocket::readyRead, [&] {
        received += socket.readAll();
        return received.count('}') == frames.size();
    }));
    int position = 0;
    for (const QByteArray &frame : frames) {
        const int start = received.indexOf(frame, position);
        QVERIFY2(start > position, "each frame arrives whole, behind some stray bytes");
        const QByteArray junk = received.mid(position, start - position);
        QVERIFY(!junk.contains('{') && !junk.contains('}'));
        position = start + frame.size();
    }
}

void tst_Sim::verboseSwitch_logsEachCommandOnItsOwnLine()
{
    QVERIFY(start(CommandHost, {"--verbose"}));
    QTcpSocket socket;
    QVERIFY(connectTo(socket, m_port));
    QCOMPARE(replyTo(socket, "{param=netInfo}{param=bogus}{param=ab\ncd}"), net());

    const QByteArray expected = "cmd: {param=netInfo}\n"
                                "cmd: {param=bogus} (not understood)\n"
                                "cmd: {param=ab\\x0acd} (not understood)\n"
                                "cmd: {param=version}\n";
    QByteArray log;
    QVERIFY(waitFor(m_sim.get(), &QProcess::readyReadStandardError, [&] {
        log += m_sim->readAllStandardError();
        return log.size() >= expected.size();
    }));
    QCOMPARE(log, expected);
}

void tst_Sim::unusableSetup_exitsWithStatusOneAndOneErrorLine_data()
{
    QTest::addColumn<QString>("blockedHost");
    QTest::addColumn<bool>("blockFilePort");
    QTest::addColumn<QStringList>("arguments");

    QTest::newRow("command port taken") << CommandHost << false << QStringList{"--host", CommandHost};
    QTest::newRow("file port taken") << FileHost << true << QStringList{"--host", FileHost, "--port", "0"};
    QTest::newRow("unknown model") << QString() << false << QStringList{"--host", CommandHost, "--model", "ORXM300"};
    QTest::newRow("port out of range") << QString() << false << QStringList{"--host", CommandHost, "--port", "70000"};
    QTest::newRow("host not an address") << QString() << false << QStringList{"--host", "switcher", "--port", "0"};
}

void tst_Sim::unusableSetup_exitsWithStatusOneAndOneErrorLine()
{
    QFETCH(QString, blockedHost);
    QFETCH(bool, blockFilePort);
    QFETCH(QStringList, arguments);

    QTcpServer blocker;
    if (!blockedHost.isEmpty()) {
        QVERIFY(blocker.listen(QHostAddress(blockedHost), blockFilePort ? FilePort : 0));
        if (!blockFilePort)
            arguments << "--port" << QString::number(blocker.serverPort());
    }
    QProcess *sim = launch(arguments);
    QVERIFY(sim->waitForFinished(TimeoutMs));
    QCOMPARE(sim->exitStatus(), QProcess::NormalExit);
    QCOMPARE(sim->exitCode(), 1);
    QCOMPARE(sim->readAllStandardOutput(), QByteArray());
    const QByteArray error = sim->readAllStandardError();
    QCOMPARE(error.count('\n'), 1);
    QVERIFY(error.endsWith('\n'));
}

QTEST_GUILESS_MAIN(tst_Sim)
#include "tst_sim.moc"
