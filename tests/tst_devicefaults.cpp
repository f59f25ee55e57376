#include "device/commandtext.h"
#include "device/messagedistance.h"
#include "linkup.h"
#include "logcapture.h"
#include "signalrecorder.h"
#include "simprocess.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <atomic>

namespace {
// Bytes of diagnostics, counted on whichever thread writes them.
std::atomic<qint64> g_logBytes{0};
void countLog(QtMsgType, const QMessageLogContext &, const QString &message) { g_logBytes += message.toUtf8().size() + 1; }
} // namespace

// The emulator's fault switches: the link must keep running, report what happens
// and recover by itself, in bounded memory and with a bounded log. A device down at
// start or dropping the connection, and a peer streaming an endless reply, are
// covered by tst_link and tst_replyparser.
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
            QCOMPARE(recorder.count("connectingSig"), 1); // back within one round
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

    void flood_leavesTheLinkAnsweringInBoundedMemoryAndLog_data()
    {
        QTest::addColumn<QString>("host");
        QTest::addColumn<QStringList>("flood");
        QTest::addColumn<int>("frames");
        QTest::newRow("20 MiB of random bytes") << "127.0.0.84" << QStringList{"--flood-bytes", "20971520"} << 0;
        QTest::newRow("20000 volume frames") << "127.0.0.85" << QStringList{"--flood-frames", "20000"} << 20000;
    }

    void flood_leavesTheLinkAnsweringInBoundedMemoryAndLog()
    {
        QFETCH(QString, host);
        QFETCH(QStringList, flood);
        QFETCH(int, frames);
        SimProcess sim;
        QVERIFY(sim.start(host, flood + QStringList{"--verbose"}));
        MessageDistance link;
        SignalRecorder recorder(&link);
        g_logBytes = 0;
        qInstallMessageHandler(countLog);
        int peak = 0;
        QTimer sampler;
        connect(&sampler, &QTimer::timeout, &link, [&] { peak = qMax(peak, link.bufferedBytes()); });
        sampler.start(1);
        link.connectToDevice(sim.host(), sim.port());
        QVERIFY(QTest::qWaitFor([&] { return sim.commandLog().contains("flood:"); }, 60000));
        QVERIFY(recorder.waitFor("receiveVolumnImformationSig", frames, 60000));
        // Asked again now and then: the first answer may end a frame the garbage opened.
        QVERIFY(QTest::qWaitFor([&] { link.sendVersionQuery(); return recorder.waitFor("receiveVersionSig", 1, 500); }, 10000));
        QCOMPARE(recorder.count("receiveVolumnImformationSig"), frames);
        QCOMPARE(recorder.count("connectFailureSig"), 0);
        QVERIFY2(peak < 2 * 1024 * 1024, qPrintable(QString::number(peak))); // the parser's backlog
        QVERIFY2(g_logBytes < 8 * 1024 * 1024, qPrintable(QString::number(g_logBytes)));
    }

    void uploadFault_failsTheTransferOnce_data()
    {
        QTest::addColumn<QString>("host");
        QTest::addColumn<QStringList>("fault");
        QTest::addColumn<int>("timeoutMs"); // of the link's upload watchdog; 0: its default
        QTest::addColumn<int>("dones");     // "{param=Done}": the link's own, then one per failure
        QTest::addColumn<QByteArray>("logged");
        QTest::newRow("garbage for acknowledgements") << "127.0.0.86" << QStringList{"--bad-ack"} << 0 << 2 << QByteArray();
        QTest::newRow("silent file port") << "127.0.0.87" << QStringList{"--silent-file-port"} << 300 << 1 << QByteArray();
        QTest::newRow("file connection dropped mid-file") << "127.0.0.88" << QStringList{"--drop-file-after", "600"} << 0 << 1
                                                          << QByteArray("file connection closed after 600 bytes\ncmd: {param=Done}\nupload osd 1: 600 bytes");
    }

    void uploadFault_failsTheTransferOnce()
    {
        QFETCH(QString, host);
        QFETCH(QStringList, fault);
        QFETCH(int, timeoutMs);
        QFETCH(int, dones);
        QFETCH(QByteArray, logged);
        SimProcess sim;
        QVERIFY(sim.start(host, fault + QStringList{"--verbose"}));
        MessageDistance link;
        link.setReconnectInterval(100);
        if (timeoutMs)
            link.setUploadReplyTimeout(timeoutMs);
        QStringList messages;
        link.setMessagePresenter([&](const QString &text, const QString &title) { messages << title + ": " + text; });
        QVERIFY(connectLink(link, sim.host(), sim.port()));
        QElapsedTimer clock;
        clock.start();
        link.sendFile(CommandText::uploadOsd(1), QByteArray(1500, 'a'), CommandText::done());
        QTRY_COMPARE(messages, QStringList{QString::fromUtf8("NetWork Error: 传输文件过程网络发生错误！请重新上传")});
        QVERIFY(clock.elapsed() >= timeoutMs);
        QVERIFY(!link.isUploading() && !link.isAwaitingAck() && link.pendingUploads() == 0);
        // Back on the file port with nothing to resend; later answers change nothing.
        QTRY_VERIFY(link.isUploadConnected());
        link.sendVersionQuery();
        QVERIFY(sim.waitForCommand("{param=version}"));
        QCOMPARE(sim.commandLog().count("cmd: {param=Done}"), dones);
        QVERIFY2(sim.commandLog().contains(logged), sim.commandLog().constData());
        QCOMPARE(messages.size(), 1);
    }
};

QTEST_GUILESS_MAIN(tst_DeviceFaults)
#include "tst_devicefaults.moc"
