#include "device/messagedistance.h"
#include "fakedevice.h"
#include "signalrecorder.h"
#include "logcapture.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

// A link to a fake device, connecting with a short retry interval.
struct Linked
{
    explicit Linked(const char *host, bool withFilePort = true) : device(QHostAddress(host), withFilePort)
    {
        link.setReconnectInterval(100);
        link.connectToDevice(device.host(), device.port());
    }
    FakeDevice device;
    MessageDistance link;
    SignalRecorder recorder{&link};
};

class tst_Link : public QObject
{
    Q_OBJECT

private slots:
    void init() { capturedLog().clear(); qInstallMessageHandler(captureLog); }
    void cleanup() { qInstallMessageHandler(nullptr); }

    void unreachableDevice_failsThenRetriesOnTheInterval()
    {
        MessageDistance link; // nothing listens where it connects: every attempt is refused at once
        link.setReconnectInterval(100);
        SignalRecorder recorder(&link);
        QElapsedTimer clock; clock.start();
        link.connectToDevice("127.0.0.21", 1);
        QVERIFY(recorder.waitFor("connectFailureSig", 1, 1000));
        QCOMPARE(recorder.count("connectingSig"), 0);
        QVERIFY(recorder.waitFor("connectingSig", 2));
        QVERIFY2(clock.elapsed() >= 150, QByteArray::number(clock.elapsed()));
        QCOMPARE(recorder.count("connectSuccessFulSig"), 0);
        QVERIFY(recorder.count("connectFailureSig") >= 2); // each round refuses again and reports it
    }

    void filePortRefused_commandLinkWorksAndRetriesGoOn()
    {
        Linked t("127.0.0.23", /*withFilePort=*/false);
        QVERIFY(t.recorder.waitFor("connectSuccessFulSig"));
        QVERIFY(t.recorder.waitFor("connectingSig", 2));
        QVERIFY(!t.link.isUploadConnected());
        QCOMPARE(t.recorder.count("connectFailureSig"), 0);
        QCOMPARE(t.recorder.count("connectSuccessFulSig"), 1);
        t.link.sendVersionQuery();
        QVERIFY(t.device.waitForReceived(15));
        QCOMPARE(t.device.received(), QByteArray("{param=version}"));
    }

    void repliesInOneRead_arriveAsSignalsInOrderAndAreLogged()
    {
        Linked t("127.0.0.24", false);
        QVERIFY(t.recorder.waitFor("connectSuccessFulSig"));
        t.recorder.clear();
        const QByteArray replies = R"({"video1":3,"mode":6}{"audio1":2}{"IR1":1}{"Switch":true,"Speed":5,"Color":255,255,255,)"
                                   R"("Position_x":0,"Position_y":0,"Bg_switch":false,"Bg_Color":0,0,0,"Move_dir":left})";
        t.device.reply(replies);
        QVERIFY(t.recorder.waitFor("receiveTitleImfSig"));
        QCOMPARE(t.recorder.names(), (QStringList{"receiveVideoMapSig", "receiveAudioMapSig", "receiveIrMapSig", "receiveTitleImfSig"}));
        QCOMPARE(t.recorder.lastObject("receiveTitleImfSig").value("Move_dir").toString(), QString("left"));
        // Logged as received, quoted and escaped.
        QCOMPARE(capturedLog().filter("receive  data:"), QStringList{"receive  data: \"" + QString(replies).replace('"', "\\\"") + '"'});
    }

    void burstOfTheSameSizeAsBefore_isStillParsed()
    {
        // A polling loop that compares buffer sizes would miss the second burst.
        Linked t("127.0.0.25");
        QVERIFY(t.recorder.waitFor("connectSuccessFulSig"));
        t.device.reply(R"({"Volume1":1} )");
        QVERIFY(t.recorder.waitFor("receiveVolumnImformationSig", 1));
        t.device.reply(R"({"Volume1":2} )");
        QVERIFY(t.recorder.waitFor("receiveVolumnImformationSig", 2));
        t.device.reply(R"({"Volume1":)");
        QVERIFY(!t.recorder.waitFor("receiveVolumnImformationSig", 3, 50)); // half a reply is no reply
        t.device.reply(R"(3})");
        QVERIFY(t.recorder.waitFor("receiveVolumnImformationSig", 3));
        QCOMPARE(t.recorder.lastObject("receiveVolumnImformationSig").value("Volume1").toInt(), 3);
    }

    void reconnectToAnotherHost_dropsHalfReceivedReply()
    {
        Linked t("127.0.0.26", false);
        FakeDevice second(QHostAddress("127.0.0.27"), false);
        QVERIFY(t.recorder.waitFor("connectSuccessFulSig"));
        t.device.reply(R"({"video1":1,"mo)");
        QTRY_VERIFY(capturedLog().filter("receive  data:").size() == 1);

        t.link.connectToDevice(second.host(), second.port());
        QVERIFY(t.recorder.waitFor("connectSuccessFulSig", 2));
        QTRY_VERIFY(second.hasClient());
        second.reply(R"(de":6}{"audio1":4})");
        QVERIFY(t.recorder.waitFor("receiveAudioMapSig"));
        QCOMPARE(t.recorder.count("receiveVideoMapSig"), 0);
        QCOMPARE(capturedLog().filter("json format parse error").size(), 0);
    }

    void deviceUp_connectsStopsRetryingAndReconnectsAfterADrop()
    {
        Linked t("127.0.0.22");
        QVERIFY(t.recorder.waitFor("connectSuccessFulSig"));
        QTRY_VERIFY(t.link.isUploadConnected());
        QVERIFY(!t.recorder.waitFor("connectingSig", 1, 500)); // several intervals pass without another attempt
        QCOMPARE(t.recorder.names(), QStringList{"connectSuccessFulSig"});
        t.recorder.clear();
        t.device.dropClient();
        QVERIFY(t.recorder.waitFor("connectFailureSig"));
        QVERIFY(t.recorder.waitFor("connectSuccessFulSig", 1, 5000));
        const QStringList names = t.recorder.names();
        QVERIFY(names.indexOf("connectingSig") > names.indexOf("connectFailureSig"));
        QVERIFY(names.indexOf("connectSuccessFulSig") > names.indexOf("connectingSig"));
    }

    void stopWorker_joinsAnIdleThreadAtOnce()
    {
        MessageDistance link;
        QVERIFY(link.isRunning());
        QElapsedTimer clock; clock.start();
        link.stopWorker();
        QVERIFY(link.isFinished());
        QVERIFY(clock.elapsed() < 1000);
    }

    void queuedUploadItem_isDrainedOnFileConnect()
    {
        FakeDevice device(QHostAddress("127.0.0.30"));
        MessageDistance link;
        link.setReconnectInterval(100);
        link.enqueueUpload({QString(), QByteArray("piece")});
        link.enqueueUpload({QStringLiteral("{param=Done}"), QByteArray()});
        QSignalSpy fileClient(&device, &FakeDevice::fileClientConnected);
        link.connectToDevice(device.host(), device.port());
        QVERIFY(fileClient.wait(3000) || fileClient.count() == 1);
        // One item per connect: the piece goes out, the command waits.
        QTRY_COMPARE(link.pendingUploads(), 1);
        QVERIFY(!device.waitForReceived(1, 50));
    }
};

QTEST_GUILESS_MAIN(tst_Link)
#include "tst_link.moc"
