#include "device/messagedistance.h"
#include "fakedevice.h"
#include "signalrecorder.h"
#include "logcapture.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

class tst_Link : public QObject
{
    Q_OBJECT

private slots:
    void init() { capturedLog().clear(); qInstallMessageHandler(captureLog); }
    void cleanup() { qInstallMessageHandler(nullptr); }

    void unreachableDevice_failsThenRetriesOnTheInterval();
    void deviceUp_connectsAndStopsRetrying();
    void filePortRefused_commandLinkWorksAndRetriesGoOn();
    void repliesInOneRead_arriveAsSignalsInOrder();
    void burstOfTheSameSizeAsBefore_isStillParsed();
    void reconnectToAnotherHost_dropsHalfReceivedReply();
    void deviceDropsConnection_reportsFailureAndReconnects();
    void receivedBytes_areLogged();
    void stopWorker_joinsAnIdleThreadAtOnce();
    void queuedUploadItem_isDrainedOnFileConnect();
};

void tst_Link::unreachableDevice_failsThenRetriesOnTheInterval()
{
    // Nothing listens on this address: every connect is refused at once.
    MessageDistance link;
    link.setReconnectInterval(100);
    SignalRecorder recorder(&link);
    QElapsedTimer clock;
    clock.start();
    link.connectToDevice("127.0.0.21", 1);
    QVERIFY(recorder.waitFor("connectFailureSig", 1, 1000));
    QCOMPARE(recorder.count("connectingSig"), 0);
    QVERIFY(recorder.waitFor("connectingSig", 2));
    const qint64 elapsed = clock.elapsed();
    QVERIFY2(elapsed >= 150, QByteArray::number(elapsed));
    QCOMPARE(recorder.count("connectSuccessFulSig"), 0);
    // Each round refuses again and reports it.
    QVERIFY(recorder.count("connectFailureSig") >= 2);
}

void tst_Link::deviceUp_connectsAndStopsRetrying()
{
    FakeDevice device(QHostAddress("127.0.0.22"));
    QVERIFY(device.isListening());
    MessageDistance link;
    link.setReconnectInterval(100);
    SignalRecorder recorder(&link);
    link.connectToDevice(device.host(), device.port());
    QVERIFY(recorder.waitFor("connectSuccessFulSig"));
    QTRY_VERIFY(link.isUploadConnected());
    // Several intervals pass without another attempt.
    QVERIFY(!recorder.waitFor("connectingSig", 1, 500));
    QCOMPARE(recorder.names(), QStringList{"connectSuccessFulSig"});
}

void tst_Link::filePortRefused_commandLinkWorksAndRetriesGoOn()
{
    FakeDevice device(QHostAddress("127.0.0.23"), /*withFilePort=*/false);
    MessageDistance link;
    link.setReconnectInterval(100);
    SignalRecorder recorder(&link);
    link.connectToDevice(device.host(), device.port());
    QVERIFY(recorder.waitFor("connectSuccessFulSig"));
    QVERIFY(recorder.waitFor("connectingSig", 2));
    QVERIFY(!link.isUploadConnected());
    QCOMPARE(recorder.count("connectFailureSig"), 0);
    QCOMPARE(recorder.count("connectSuccessFulSig"), 1);

    link.sendVersionQuery();
    QVERIFY(device.waitForReceived(15));
    QCOMPARE(device.received(), QByteArray("{param=version}"));
}

void tst_Link::repliesInOneRead_arriveAsSignalsInOrder()
{
    FakeDevice device(QHostAddress("127.0.0.24"));
    MessageDistance link;
    link.setReconnectInterval(100);
    SignalRecorder recorder(&link);
    link.connectToDevice(device.host(), device.port());
    QVERIFY(recorder.waitFor("connectSuccessFulSig"));
    recorder.clear();

    device.reply(R"({"video1":3,"mode":6}{"audio1":2}{"IR1":1}{"Switch":true,"Speed":5,"Color":255,255,255,)"
                 R"("Position_x":0,"Position_y":0,"Bg_switch":false,"Bg_Color":0,0,0,"Move_dir":left})");
    QVERIFY(recorder.waitFor("receiveTitleImfSig"));
    QCOMPARE(recorder.names(),
             (QStringList{"receiveVideoMapSig", "receiveAudioMapSig", "receiveIrMapSig", "receiveTitleImfSig"}));
    QCOMPARE(recorder.lastObject("receiveVideoMapSig").value("video1").toInt(), 3);
    QCOMPARE(recorder.lastObject("receiveTitleImfSig").value("Move_dir").toString(), QString("left"));
    QCOMPARE(link.replyState(), 0);
    QCOMPARE(link.osdIndex(), -1);
}

void tst_Link::burstOfTheSameSizeAsBefore_isStillParsed()
{
    // A polling loop that compares buffer sizes would miss the second burst.
    FakeDevice device(QHostAddress("127.0.0.25"));
    MessageDistance link;
    link.setReconnectInterval(100);
    SignalRecorder recorder(&link);
    link.connectToDevice(device.host(), device.port());
    QVERIFY(recorder.waitFor("connectSuccessFulSig"));

    device.reply(R"({"Volume1":1} )");
    QVERIFY(recorder.waitFor("receiveVolumnImformationSig", 1));
    device.reply(R"({"Volume1":2} )");
    QVERIFY(recorder.waitFor("receiveVolumnImformationSig", 2));
    device.reply(R"({"Volume1":)");
    QVERIFY(!recorder.waitFor("receiveVolumnImformationSig", 3, 50));  // half a reply is no reply
    device.reply(R"(3})");
    QVERIFY(recorder.waitFor("receiveVolumnImformationSig", 3));
    QCOMPARE(recorder.lastObject("receiveVolumnImformationSig").value("Volume1").toInt(), 3);
}

void tst_Link::reconnectToAnotherHost_dropsHalfReceivedReply()
{
    FakeDevice first(QHostAddress("127.0.0.26"), false);
    FakeDevice second(QHostAddress("127.0.0.27"), false);
    MessageDistance link;
    link.setReconnectInterval(100);
    SignalRecorder recorder(&link);
    link.connectToDevice(first.host(), first.port());
    QVERIFY(recorder.waitFor("connectSuccessFulSig"));
    first.reply(R"({"video1":1,"mo)");
    QTRY_VERIFY(capturedLog().filter("receive  data:").size() == 1);

    link.connectToDevice(second.host(), second.port());
    QVERIFY(recorder.waitFor("connectSuccessFulSig", 2));
    QTRY_VERIFY(second.hasClient());
    second.reply(R"(de":6}{"audio1":4})");
    QVERIFY(recorder.waitFor("receiveAudioMapSig"));
    QCOMPARE(recorder.count("receiveVideoMapSig"), 0);
    QCOMPARE(capturedLog().filter("json format parse error").size(), 0);
}

void tst_Link::deviceDropsConnection_reportsFailureAndReconnects()
{
    FakeDevice device(QHostAddress("127.0.0.28"));
    MessageDistance link;
    link.setReconnectInterval(100);
    SignalRecorder recorder(&link);
    link.connectToDevice(device.host(), device.port());
    QVERIFY(recorder.waitFor("connectSuccessFulSig"));
    QTRY_VERIFY(link.isUploadConnected());
    recorder.clear();

    device.dropClient();
    QVERIFY(recorder.waitFor("connectFailureSig"));
    QVERIFY(recorder.waitFor("connectSuccessFulSig", 1, 5000));
    const QStringList names = recorder.names();
    QVERIFY(names.indexOf("connectingSig") > names.indexOf("connectFailureSig"));
    QVERIFY(names.indexOf("connectSuccessFulSig") > names.indexOf("connectingSig"));
}

void tst_Link::receivedBytes_areLogged()
{
    FakeDevice device(QHostAddress("127.0.0.29"), false);
    MessageDistance link;
    link.setReconnectInterval(100);
    SignalRecorder recorder(&link);
    link.connectToDevice(device.host(), device.port());
    QVERIFY(recorder.waitFor("connectSuccessFulSig"));
    device.reply(R"({"out1":"720p"})");
    QVERIFY(recorder.waitFor("receiveOutChannelResolutionMapSig"));
    QCOMPARE(capturedLog().filter("receive  data:"), QStringList{R"(receive  data: "{\"out1\":\"720p\"}")"});
}

void tst_Link::stopWorker_joinsAnIdleThreadAtOnce()
{
    auto *link = new MessageDistance;
    QVERIFY(link->isRunning());
    QElapsedTimer clock;
    clock.start();
    link->stopWorker();
    QVERIFY(link->isFinished());
    QVERIFY(clock.elapsed() < 1000);
    delete link;
}

void tst_Link::queuedUploadItem_isDrainedOnFileConnect()
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

QTEST_GUILESS_MAIN(tst_Link)
#include "tst_link.moc"
