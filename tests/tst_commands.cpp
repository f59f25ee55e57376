#include "device/commandtext.h"
#include "device/messagedistance.h"
#include "fakedevice.h"
#include "linkup.h"
#include "logcapture.h"

#include <QTest>

class tst_Commands : public QObject
{
    Q_OBJECT

private slots:
    void init() { capturedLog().clear(); qInstallMessageHandler(captureLog); }
    void cleanup() { qInstallMessageHandler(nullptr); }
    void commandText_isExact_data();
    void commandText_isExact() { QFETCH(QString, text); QFETCH(QString, expected); QCOMPARE(text, expected); }
    void commands_goOutOverTheSocketAsUtf8AndAreLogged();
};

void tst_Commands::commandText_isExact_data()
{
    using namespace CommandText;
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    auto row = [](const char *name, const QString &text, const char *expected) { QTest::newRow(name) << text << QString(expected); };
    // Commands without arguments, and both branches of the on/off ones, as one text each.
    row("queries", versionQuery() + resolutionQuery() + statusQuery() + inputInfoQuery() + netInfoQuery(),
        "{param=version}{param=resolution}{param=status}{param=inputinfo}{param=netInfo}");
    row("other fixed texts", factoryDefault() + subtitleQuery() + volumeQuery() + eraseOsd() + eraseSubtitle() + done() + setSubtitle(),
        "{param=Default}{param=Get_Subtitle}{param=Get_Volume}{param=EraseOSD}{param=EraseSubtitle}{param=Done}"
        "{param=Set_subtitle}");
    row("bell", bell(true) + bell(false), "{param=BellOn}{param=BellOff}");
    row("osd switch", osdSwitch(true) + osdSwitch(false), "{param=Open}{param=Close}");
    row("background switch", backgroundSwitch(true) + backgroundSwitch(false), "{param=Bg_Open}{param=Bg_Close}");
    row("osd direction, unknown is empty", osdDirection(0) + osdDirection(1) + osdDirection(2), "{param=Left}{param=Right}");
    row("network setting", networkSetting("192.168.1.50", "192.168.1.1", "255.255.255.0", "00:11:22:33:44:55"),
        "{param=&ip,ip=192.168.1.50,gateway=192.168.1.1,subnet=255.255.255.0,mac=00:11:22:33:44:55}");
    row("network setting, empty and percent fields stay literal", networkSetting("%2", "%1", "", ""),
        "{param=&ip,ip=%2,gateway=%1,subnet=,mac=}");
    row("switch video, numbers unpadded", switchRoute(12, 3, Video), "{param=12VIDEO3}");
    row("switch audio and ir", switchRoute(2, 5, Audio) + switchRoute(2, 5, Ir), "{param=2AUDIO5}{param=2IR5}");
    row("switch wall ignores output", switchRoute(1, 7, VideoWall), "{param=1VIDEO101}");
    row("switch unknown kind has no word", switchRoute(3, 4, 9), "{param=34}");
    row("mode", mode(6), "{param=mode6}");
    row("patterns", inputPattern(3, 7) + outputPattern(9, 0), "{param=In_Pattern3/7}{param=Out_Pattern9/0}");
    row("presets", savePreset(2) + recallPreset(10), "{param=Save2}{param=Recall10}");
    row("volume and mute", volume(4, 75) + mute(4), "{param=Volume4/75}{param=Mute4}");
    row("numbered osd and subtitle", uploadSubtitle(1) + setOsd(3) + osdQuery(4),
        "{param=Upload_Subtitle1}{param=Set_OSD3}{param=Get_OSD4}");
    row("osd speed and position", osdSpeed(5) + osdPosition(120, 40), "{param=Speed5}{param=POS120/40}");
    row("colours", fontColor(1, 128, 0) + backgroundColor(10, 20, 30), "{param=Font_Color1/128/0}{param=Bg_Color10/20/30}");
    row("edid", copyEdid(2, 3) + updateEdid(5), "{param=Copy_EDID2/3}{param=Update_EDID5}");
    row("port resolution keeps bang", portResolution(3, "1920x1080x60Hz"), "{param=Port3/1920x1080x60Hz!}");
    row("analog select and upload osd", analogSelect(2, 1) + uploadOsd(2), "{param=Analog_sel2/1}{param=Upload_OSD2}");
}

void tst_Commands::commands_goOutOverTheSocketAsUtf8AndAreLogged()
{
    FakeDevice device(QHostAddress("127.0.0.11"), false);
    MessageDistance link;
    QVERIFY(!link.sendCommand(CommandText::versionQuery())); // not connected yet: lost, but logged
    QVERIFY(connectLink(link, device.host(), device.port(), false));

    link.sendOsdDirection(2); // empty: nothing on the wire, still logged
    link.sendSwitch(2, 5, 1);
    link.sendCommand(QString::fromUtf8("{param=名}"));
    const QByteArray expected = QByteArray("{param=2AUDIO5}") + QString::fromUtf8("{param=名}").toUtf8();
    // A query sent last fences the take: anything trailing the commands would show before it.
    link.sendVersionQuery();
    const QByteArray fence = CommandText::versionQuery().toUtf8();
    QVERIFY(device.waitForReceived(expected.size() + fence.size()));
    QCOMPARE(device.takeReceived(), expected + fence);
    QCOMPARE(capturedLog().filter("send:"), (QStringList{"send: \"{param=version}\"", "send: \"\"", "send: \"{param=2AUDIO5}\"",
                                                         QString::fromUtf8("send: \"{param=名}\""), "send: \"{param=version}\""}));
}

QTEST_GUILESS_MAIN(tst_Commands)
#include "tst_commands.moc"
