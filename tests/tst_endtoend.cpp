#include "device/messagedistance.h"
#include "signalrecorder.h"
#include "simprocess.h"

#include <QTest>

class tst_EndToEnd : public QObject
{
    Q_OBJECT

private slots:
    void refreshQueries_answeredByTheEmulator_data();
    void refreshQueries_answeredByTheEmulator();
    void switching_isAnsweredWithTheNewMap();
};

void tst_EndToEnd::refreshQueries_answeredByTheEmulator_data()
{
    QTest::addColumn<QString>("host");
    QTest::addColumn<QString>("model");
    QTest::addColumn<int>("outputs");

    QTest::newRow("ORXM200") << "127.0.0.51" << "ORXM200" << 9;
    QTest::newRow("ORXM100") << "127.0.0.52" << "ORXM100" << 8;
}

void tst_EndToEnd::refreshQueries_answeredByTheEmulator()
{
    QFETCH(QString, host);
    QFETCH(QString, model);
    QFETCH(int, outputs);

    SimProcess sim;
    QVERIFY(sim.start(host, {"--model", model}));
    MessageDistance link;
    SignalRecorder recorder(&link);
    link.connectToDevice(sim.host(), sim.port());
    QVERIFY(recorder.waitFor("connectSuccessFulSig"));
    QTRY_VERIFY(link.isUploadConnected());

    link.sendVersionQuery();
    link.sendStatusQuery();
    link.sendInputInfoQuery();
    link.sendNetInfoQuery();
    link.sendResolutionQuery();
    QVERIFY(recorder.waitFor("receiveOutChannelResolutionMapSig"));

    QCOMPARE(recorder.names().mid(1),
             (QStringList{"receiveVersionSig", "receiveVideoMapSig", "receiveAudioMapSig", "receiveIrMapSig",
                          "receiveInputChannelStateSig", "receiveInChannelResolutionMapSig",
                          "receiveNetWorkImforamtionSig", "receiveOutChannelResolutionMapSig"}));

    QCOMPARE(recorder.lastObject("receiveVersionSig").value("type").toString(), model);
    const QJsonObject video = recorder.lastObject("receiveVideoMapSig");
    QVERIFY(video.contains("mode"));
    QVERIFY(video.contains(QString("video%1").arg(outputs)));
    QVERIFY(!video.contains(QString("video%1").arg(outputs + 1)));
    const QJsonObject inputs = recorder.lastObject("receiveInputChannelStateSig");
    for (const QString &key : inputs.keys())
        QVERIFY2(inputs.value(key).isString(), qPrintable(key)); // bare values arrive quoted
    QVERIFY(inputs.contains("input-1"));
    QVERIFY(inputs.contains("in1"));
    QCOMPARE(recorder.lastObject("receiveOutChannelResolutionMapSig").size(), outputs);
    QVERIFY(!recorder.lastObject("receiveNetWorkImforamtionSig").value("ip").toString().isEmpty());
}

void tst_EndToEnd::switching_isAnsweredWithTheNewMap()
{
    SimProcess sim;
    QVERIFY(sim.start("127.0.0.53"));
    MessageDistance link;
    SignalRecorder recorder(&link);
    link.connectToDevice(sim.host(), sim.port());
    QVERIFY(recorder.waitFor("connectSuccessFulSig"));

    link.sendSwitch(2, 5, 0);
    QVERIFY(recorder.waitFor("receiveVideoMapSig"));
    QCOMPARE(recorder.lastObject("receiveVideoMapSig").value("video5").toInt(), 2);
    link.sendSwitch(7, 3, 1);
    QVERIFY(recorder.waitFor("receiveAudioMapSig"));
    QCOMPARE(recorder.lastObject("receiveAudioMapSig").value("audio3").toInt(), 7);
    link.sendSwitch(4, 9, 2);
    QVERIFY(recorder.waitFor("receiveIrMapSig"));
    QCOMPARE(recorder.lastObject("receiveIrMapSig").value("IR9").toInt(), 4);
    link.sendMode(3);
    QVERIFY(recorder.waitFor("receiveVideoMapSig", 2));
    link.sendSwitch(6, 0, 3); // the 2x2 wall: outputs 1..4
    QVERIFY(recorder.waitFor("receiveVideoMapSig", 3));
    const QJsonObject wall = recorder.lastObject("receiveVideoMapSig");
    QCOMPARE(wall.value("mode").toInt(), 3);
    for (int output = 1; output <= 4; ++output)
        QCOMPARE(wall.value(QString("video%1").arg(output)).toInt(), 6);
    QCOMPARE(wall.value("video5").toInt(), 2);
}

QTEST_GUILESS_MAIN(tst_EndToEnd)
#include "tst_endtoend.moc"
