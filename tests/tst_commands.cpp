#include "device/commandtext.h"
#include "device/messagedistance.h"
#include "fakedevice.h"
#include "logcapture.h"

#include <QSignalSpy>
#include <QTest>

#include <functional>

using Command = std::function<void(MessageDistance &)>;
Q_DECLARE_METATYPE(Command)

class tst_Commands : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void everyCommand_goesOutAsExactText_data();
    void everyCommand_goesOutAsExactText();
    void unknownOsdDirection_sendsNothingButStillLogs();
    void commandWhileDisconnected_isLostSilently();

private:
    FakeDevice *m_device = nullptr;
    MessageDistance *m_link = nullptr;
};

void tst_Commands::initTestCase()
{
    m_device = new FakeDevice(QHostAddress("127.0.0.11"), true, this);
    QVERIFY(m_device->isListening());
    m_link = new MessageDistance(this);
    QSignalSpy connected(m_link, &MessageDistance::connectSuccessFulSig);
    m_link->connectToDevice(m_device->host(), m_device->port());
    QVERIFY(connected.wait(3000));
    qInstallMessageHandler(captureLog);
}

void tst_Commands::cleanupTestCase()
{
    qInstallMessageHandler(nullptr);
    delete m_link;
}

void tst_Commands::everyCommand_goesOutAsExactText_data()
{
    QTest::addColumn<Command>("command");
    QTest::addColumn<QString>("expected");

    auto row = [](const char *name, Command command, const char *expected) {
        QTest::newRow(name) << command << QString::fromUtf8(expected);
    };
    row("version", [](MessageDistance &l) { l.sendVersionQuery(); }, "{param=version}");
    row("resolution", [](MessageDistance &l) { l.sendResolutionQuery(); }, "{param=resolution}");
    row("status", [](MessageDistance &l) { l.sendStatusQuery(); }, "{param=status}");
    row("inputinfo", [](MessageDistance &l) { l.sendInputInfoQuery(); }, "{param=inputinfo}");
    row("netInfo", [](MessageDistance &l) { l.sendNetInfoQuery(); }, "{param=netInfo}");
    row("network setting",
        [](MessageDistance &l) { l.sendNetworkSetting("192.168.1.50", "192.168.1.1", "255.255.255.0", "00:11:22:33:44:55"); },
        "{param=&ip,ip=192.168.1.50,gateway=192.168.1.1,subnet=255.255.255.0,mac=00:11:22:33:44:55}");
    row("network setting, empty gateway",
        [](MessageDistance &l) { l.sendNetworkSetting("192.168.1.50", "", "255.255.255.0", "00:11:22:33:44:55"); },
        "{param=&ip,ip=192.168.1.50,gateway=,subnet=255.255.255.0,mac=00:11:22:33:44:55}");
    row("network setting, percent signs stay literal",
        [](MessageDistance &l) { l.sendNetworkSetting("%2", "%1", "", ""); },
        "{param=&ip,ip=%2,gateway=%1,subnet=,mac=}");
    row("switch video", [](MessageDistance &l) { l.sendSwitch(2, 5, 0); }, "{param=2VIDEO5}");
    row("switch audio", [](MessageDistance &l) { l.sendSwitch(2, 5, 1); }, "{param=2AUDIO5}");
    row("switch ir", [](MessageDistance &l) { l.sendSwitch(2, 5, 2); }, "{param=2IR5}");
    row("switch wall ignores output", [](MessageDistance &l) { l.sendSwitch(1, 7, 3); }, "{param=1VIDEO101}");
    row("switch wall input 4", [](MessageDistance &l) { l.sendSwitch(4, 0, 3); }, "{param=4VIDEO101}");
    row("switch unknown kind has no word", [](MessageDistance &l) { l.sendSwitch(3, 4, 9); }, "{param=34}");
    row("switch numbers unpadded", [](MessageDistance &l) { l.sendSwitch(12, 3, 0); }, "{param=12VIDEO3}");
    row("switch negative sent as is", [](MessageDistance &l) { l.sendSwitch(-1, 2, 0); }, "{param=-1VIDEO2}");
    row("mode", [](MessageDistance &l) { l.sendMode(6); }, "{param=mode6}");
    row("factory default", [](MessageDistance &l) { l.sendFactoryDefault(); }, "{param=Default}");
    row("input pattern", [](MessageDistance &l) { l.sendInputPattern(3, 7); }, "{param=In_Pattern3/7}");
    row("output pattern", [](MessageDistance &l) { l.sendOutputPattern(9, 0); }, "{param=Out_Pattern9/0}");
    row("bell on", [](MessageDistance &l) { l.sendBell(true); }, "{param=BellOn}");
    row("bell off", [](MessageDistance &l) { l.sendBell(false); }, "{param=BellOff}");
    row("save preset", [](MessageDistance &l) { l.sendSavePreset(2); }, "{param=Save2}");
    row("recall preset", [](MessageDistance &l) { l.sendRecallPreset(10); }, "{param=Recall10}");
    row("volume", [](MessageDistance &l) { l.sendVolume(4, 75); }, "{param=Volume4/75}");
    row("mute", [](MessageDistance &l) { l.sendMute(4); }, "{param=Mute4}");
    row("upload subtitle", [](MessageDistance &l) { l.sendUploadSubtitle(1); }, "{param=Upload_Subtitle1}");
    row("set osd", [](MessageDistance &l) { l.sendSetOsd(3); }, "{param=Set_OSD3}");
    row("set subtitle, lower-case s", [](MessageDistance &l) { l.sendSetSubtitle(); }, "{param=Set_subtitle}");
    row("osd open", [](MessageDistance &l) { l.sendOsdSwitch(true); }, "{param=Open}");
    row("osd close", [](MessageDistance &l) { l.sendOsdSwitch(false); }, "{param=Close}");
    row("osd speed", [](MessageDistance &l) { l.sendOsdSpeed(5); }, "{param=Speed5}");
    row("osd left", [](MessageDistance &l) { l.sendOsdDirection(0); }, "{param=Left}");
    row("osd right", [](MessageDistance &l) { l.sendOsdDirection(1); }, "{param=Right}");
    row("osd position", [](MessageDistance &l) { l.sendOsdPosition(120, 40); }, "{param=POS120/40}");
    row("font colour mixed", [](MessageDistance &l) { l.sendFontColor(1, 128, 0); }, "{param=Font_Color1/128/0}");
    row("background colour", [](MessageDistance &l) { l.sendBackgroundColor(10, 20, 30); }, "{param=Bg_Color10/20/30}");
    row("background open", [](MessageDistance &l) { l.sendBackgroundSwitch(true); }, "{param=Bg_Open}");
    row("background close", [](MessageDistance &l) { l.sendBackgroundSwitch(false); }, "{param=Bg_Close}");
    row("copy edid", [](MessageDistance &l) { l.sendCopyEdid(2, 3); }, "{param=Copy_EDID2/3}");
    row("update edid", [](MessageDistance &l) { l.sendUpdateEdid(5); }, "{param=Update_EDID5}");
    row("osd query", [](MessageDistance &l) { l.sendOsdQuery(4); }, "{param=Get_OSD4}");
    row("subtitle query", [](MessageDistance &l) { l.sendSubtitleQuery(); }, "{param=Get_Subtitle}");
    row("volume query", [](MessageDistance &l) { l.sendVolumeQuery(); }, "{param=Get_Volume}");
    row("erase osd", [](MessageDistance &l) { l.sendEraseOsd(); }, "{param=EraseOSD}");
    row("erase subtitle", [](MessageDistance &l) { l.sendEraseSubtitle(); }, "{param=EraseSubtitle}");
    row("port resolution keeps bang", [](MessageDistance &l) { l.sendPortResolution(3, "1920x1080x60Hz"); },
        "{param=Port3/1920x1080x60Hz!}");
    row("port resolution empty text", [](MessageDistance &l) { l.sendPortResolution(1, ""); }, "{param=Port1/!}");
    row("analog select", [](MessageDistance &l) { l.sendAnalogSelect(2, 1); }, "{param=Analog_sel2/1}");
    row("raw command utf-8", [](MessageDistance &l) { l.sendCommand(QString::fromUtf8("{param=名}")); },
        "{param=名}");
}

void tst_Commands::everyCommand_goesOutAsExactText()
{
    QFETCH(Command, command);
    QFETCH(QString, expected);

    m_device->takeReceived();
    capturedLog().clear();
    command(*m_link);
    const QByteArray bytes = expected.toUtf8();
    QVERIFY(m_device->waitForReceived(bytes.size()));
    QVERIFY(!m_device->waitForReceived(bytes.size() + 1, 20)); // nothing may trail the command
    QCOMPARE(m_device->takeReceived(), bytes);
    QCOMPARE(capturedLog().filter("send:"), QStringList{QString("send: \"%1\"").arg(expected)});
}

void tst_Commands::unknownOsdDirection_sendsNothingButStillLogs()
{
    m_device->takeReceived();
    capturedLog().clear();
    m_link->sendOsdDirection(2);
    m_link->sendVersionQuery(); // a marker: the next bytes on the wire
    QVERIFY(m_device->waitForReceived(15));
    QCOMPARE(m_device->takeReceived(), QByteArray("{param=version}"));
    QCOMPARE(capturedLog().filter("send:"), (QStringList{"send: \"\"", "send: \"{param=version}\""}));
}

void tst_Commands::commandWhileDisconnected_isLostSilently()
{
    MessageDistance idle;
    capturedLog().clear();
    QVERIFY(!idle.sendCommand(CommandText::versionQuery()));
    QVERIFY(capturedLog().contains("send: \"{param=version}\""));
}

QTEST_GUILESS_MAIN(tst_Commands)
#include "tst_commands.moc"
