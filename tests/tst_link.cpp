#include "device/messagedistance.h"
#include "fakedevice.h"
#include "signalrecorder.h"
#include "logcapture.h"

#include <QElapsedTimer>
#include <QTest>

class tst_Link : public QObject
{
    Q_OBJECT

private slots:
    void init() { capturedLog().clear(); qInstallMessageHandler(captureLog); }
    void cleanup() { qInstallMessageHandler(nullptr); }

    void reconnect_retriesOnTheIntervalUntilTheDeviceIsUpAgain()
    {
        FakeDevice device(QHostAddress("127.0.0.21"));
        device.stopListening(); // down at start: every attempt is refused at once
        MessageDistance link;
        link.setReconnectInterval(100);
        SignalRecorder recorder(&link);
        QElapsedTimer clock; clock.start();
        link.connectToDevice(device.host(), device.port());
        QVERIFY(recorder.waitFor("connectFailureSig", 1, 1000));
        QCOMPARE(recorder.count("connectingSig"), 0); // no retry before the interval
        QVERIFY(recorder.waitFor("connectingSig", 2));
        QVERIFY2(clock.elapsed() >= 150, QByteArray::number(clock.elapsed()));
        QVERIFY(recorder.count("connectFailureSig") >= 2); // each round refuses again and reports it

        QVERIFY(device.listenAgain());
        QVERIFY(recorder.waitFor("connectSuccessFulSig"));
        QTRY_VERIFY(link.isUploadConnected());
        recorder.clear();
        QVERIFY(!recorder.waitFor("connectingSig", 1, 500)); // both up: several intervals pass without an attempt

        device.dropClient();
        QVERIFY(recorder.waitFor("connectSuccessFulSig"));
        const QStringList names = recorder.names();
        QVERIFY(names.indexOf("connectFailureSig") >= 0);
        QVERIFY(names.indexOf("connectingSig") > names.indexOf("connectFailureSig"));
        QVERIFY(names.indexOf("connectSuccessFulSig") > names.indexOf("connectingSig"));
    }

    void replies_arriveAsSignalsInOrderWhateverTheirBurstsAndAreLogged()
    {
        FakeDevice device(QHostAddress("127.0.0.24"), false);
        MessageDistance link;
        SignalRecorder recorder(&link);
        link.connectToDevice(device.host(), device.port());
        QVERIFY(recorder.waitFor("connectSuccessFulSig"));
        recorder.clear();
        // A frame raises one signal per trigger it contains, case-sensitive, in a fixed order.
        const QByteArray replies = R"({"video1":3,"mode":6}{"audio1":2}{"IR1":1}{"VIDEO":1,"Ip":2,"ir":3})"
                                   R"({"switch":IR,"a":out,"b":audio,"c":input,"d":video,"e":type,"f":Volume,"g":ip})"
                                   R"({"Switch":true,"Speed":5,"Color":255,255,255,"Position_x":0,"Position_y":0,)"
                                   R"("Bg_switch":false,"Bg_Color":0,0,0,"Move_dir":left})";
        device.reply(replies);
        QVERIFY(recorder.waitFor("receiveTitleImfSig", 2));
        QCOMPARE(recorder.names(), (QStringList{"receiveVideoMapSig", "receiveAudioMapSig", "receiveIrMapSig",
            "receiveNetWorkImforamtionSig", "receiveVolumnImformationSig", "receiveVersionSig", "receiveVideoMapSig",
            "receiveInputChannelStateSig", "receiveAudioMapSig", "receiveIrMapSig", "receiveInChannelResolutionMapSig",
            "receiveOutChannelResolutionMapSig", "receiveTitleImfSig", "receiveTitleImfSig"}));
        QCOMPARE(recorder.lastObject("receiveTitleImfSig").value("Move_dir").toString(), QString("left"));
        // Logged as received, quoted and escaped.
        QCOMPARE(capturedLog().filter("receive  data:"), QStringList{"receive  data: \"" + QString(replies).replace('"', "\\\"") + '"'});

        // Bursts of one size: a loop that compared buffer sizes would miss the second.
        device.reply(R"({"Volume1":1} )");
        QVERIFY(recorder.waitFor("receiveVolumnImformationSig", 2));
        device.reply(R"({"Volume1":2} )");
        QVERIFY(recorder.waitFor("receiveVolumnImformationSig", 3));
        device.reply(R"({"Volume1":)");
        QTRY_COMPARE(link.bufferedBytes(), 11); // half a reply is held, not taken as a frame
        QCOMPARE(recorder.names().count("receiveVolumnImformationSig"), 3);
        device.reply(R"(3})");
        QVERIFY(recorder.waitFor("receiveVolumnImformationSig", 4));
        QCOMPARE(recorder.lastObject("receiveVolumnImformationSig").value("Volume1").toInt(), 3);

        // Connecting elsewhere forgets a half-received reply.
        FakeDevice second(QHostAddress("127.0.0.27"), false);
        device.reply(R"({"video1":1,"mo)");
        QTRY_COMPARE(link.bufferedBytes(), 15); // held as a partial frame
        link.connectToDevice(second.host(), second.port());
        QVERIFY(recorder.waitFor("connectSuccessFulSig"));
        QTRY_VERIFY(second.hasClient());
        second.reply(R"(de":6}{"audio1":4})");
        QVERIFY(recorder.waitFor("receiveAudioMapSig", 3));
        QCOMPARE(recorder.count("receiveVideoMapSig"), 2);
        QCOMPARE(capturedLog().filter("json format parse error").size(), 0);
    }
};

QTEST_GUILESS_MAIN(tst_Link)
#include "tst_link.moc"
