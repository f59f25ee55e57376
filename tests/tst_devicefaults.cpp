#include "device/commandtext.h"
#include "device/messagedistance.h"
#include "logcapture.h"
#include "signalrecorder.h"
#include "simprocess.h"

#include <QTest>

// The emulator's fault switches: the link must keep running, report what happens
// and recover by itself. A device down at start or dropping the connection, and a
// peer streaming an endless reply, are covered by tst_link and tst_replyparser.
class tst_DeviceFaults : public QObject
{
    Q_OBJECT

private slots:
    void init() { capturedLog().clear(); qInstallMessageHandler(captureLog); }
    void cleanup() { qInstallMessageHandler(nullptr); }

    void emulatorFault_leavesEveryReplyIntact_data()
    {
        QTest::addColumn<QString>("host");
        QTest::addColumn<QStringList>("faults");
        QTest::addColumn<int>("answered");   // of the nine commands sent at once
        QTest::addColumn<bool>("reconnects");
        QTest::addColumn<bool>("filePort");

        QTest::newRow("junk between replies") << "127.0.0.81" << QStringList{"--junk"} << 9 << false << true;
        QTest::newRow("dropped after three commands") << "127.0.0.82" << QStringList{"--drop-after", "3"} << 3 << true << true;
        QTest::newRow("no file port: command link left alone, files refused")
            << "127.0.0.83" << QStringList{"--no-file-port"} << 9 << false << false;
    }

    void emulatorFault_leavesEveryReplyIntact()
    {
        QFETCH(QString, host);
        QFETCH(QStringList, faults);
        QFETCH(int, answered);
        QFETCH(bool, reconnects);
        QFETCH(bool, filePort);

        SimProcess sim;
        MessageDistance link;
        link.setReconnectInterval(100);
        SignalRecorder recorder(&link);
        QStringList messages;
        link.setMessagePresenter([&](const QString &text, const QString &title) { messages << title + ": " + text; });
        QVERIFY(sim.start(host, faults));
        link.connectToDevice(sim.host(), sim.port());
        QVERIFY(recorder.waitFor("connectSuccessFulSig"));
        for (int input = 1; input <= 9; ++input)
            link.sendSwitch(input, input % 9 + 1, 0);
        QVERIFY(recorder.waitFor("receiveVideoMapSig", answered));
        const QJsonObject video = recorder.lastObject("receiveVideoMapSig");
        for (int input = 1; input <= answered; ++input)
            QCOMPARE(video.value(QString("video%1").arg(input % 9 + 1)).toInt(), input);
        if (reconnects) {
            QVERIFY(recorder.waitFor("connectFailureSig"));
            QVERIFY(recorder.waitFor("connectSuccessFulSig", 2));
        }
        if (!filePort) {
            QVERIFY(recorder.waitFor("connectingSig", 2)); // the rounds go on for the file port alone
            // A file is refused with a message: nothing of it is sent or queued.
            link.sendFile(CommandText::uploadOsd(1), QByteArray(10, 'a'), CommandText::done());
            QCOMPARE(messages, QStringList{QString::fromUtf8("NetWork Error: 传输文件端口连接发生错误！")});
            QVERIFY(capturedLog().filter("Upload_OSD").isEmpty() && !link.isUploading() && link.pendingUploads() == 0);
        }
        QTRY_COMPARE(link.isUploadConnected(), filePort);

        link.sendVersionQuery();
        QVERIFY(recorder.waitFor("receiveVersionSig"));
        QCOMPARE(recorder.lastObject("receiveVersionSig").value("type").toString(), QString("ORXM200"));
        QCOMPARE(recorder.count("receiveVideoMapSig"), answered); // nothing stale after a reconnect
        QCOMPARE(recorder.count("connectFailureSig") > 0, reconnects);
        QCOMPARE(recorder.count("connectSuccessFulSig"), reconnects ? 2 : 1);
        QCOMPARE(capturedLog().filter("json format parse error").size(), 0);
    }
};

QTEST_GUILESS_MAIN(tst_DeviceFaults)
#include "tst_devicefaults.moc"
