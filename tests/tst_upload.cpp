#include "device/commandtext.h"
#include "device/messagedistance.h"
#include "fakedevice.h"
#include "simprocess.h"

#include <QSignalSpy>
#include <QTest>

// File uploads: pieces of 500 bytes on port 6666, each released by a device
// reply, then "{param=Done}" and the device's "<ACK_1>\r\n". (A device without
// the file port is tst_devicefaults'.)
class tst_Upload : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_device = new FakeDevice(QHostAddress("127.0.0.55"));
        QVERIFY(m_device->isListening());
        m_link = new MessageDistance;
        m_messages.clear();
        m_link->setMessagePresenter([this](const QString &text, const QString &title) { m_messages << title + ": " + text; });
    }
    void cleanup() { delete m_link; delete m_device; }

    void payload_goesOutInPiecesReleasedByReplies_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<QList<int>>("pieces");
        QTest::newRow("1234 bytes") << 1234 << QList<int>{500, 500, 234};
        QTest::newRow("exactly 1000") << 1000 << QList<int>{500, 500};
        QTest::newRow("empty") << 0 << QList<int>{};
    }

    void payload_goesOutInPiecesReleasedByReplies()
    {
        QFETCH(int, size);
        QFETCH(QList<int>, pieces);
        connectLink();

        QByteArray payload;
        for (int i = 0; i < size; ++i)
            payload += char(i % 251);
        m_link->sendFile(CommandText::uploadOsd(2), payload, CommandText::done());
        QVERIFY(m_device->waitForReceived(19));
        QCOMPARE(m_device->takeReceived(), QByteArray("{param=Upload_OSD2}"));
        int sent = 0;
        for (int piece : pieces) {
            QTRY_COMPARE(m_device->fileReceived().size(), sent + piece);
            sent += piece;
            m_device->replyOnFile("ok");
        }
        if (pieces.isEmpty())
            m_device->replyOnFile("ok"); // the first reply releases the closing command
        QVERIFY(m_device->waitForReceived(12));
        QCOMPARE(m_device->takeReceived(), QByteArray("{param=Done}"));
        QCOMPARE(m_device->fileReceived(), payload);
        QVERIFY(m_link->isAwaitingAck());

        m_device->replyOnFile("<ACK_1>\r\n");
        QTRY_VERIFY(!m_link->isAwaitingAck());
        QVERIFY(!m_link->isUploading());
        QCOMPARE(m_link->pendingUploads(), 0);
        QVERIFY(m_messages.isEmpty());
    }

    void secondFile_waitsBehindTheFirst()
    {
        connectLink();
        m_link->sendFile("{param=Upload_OSD1}", QByteArray(700, 'a'), CommandText::done());
        m_link->sendFile("{param=Update_EDID3}", QByteArray(10, 'b'), CommandText::done());
        QVERIFY(m_device->waitForReceived(19));
        QVERIFY(!m_device->waitForReceived(20, 50));  // the second file waits
        QCOMPARE(m_device->takeReceived(), QByteArray("{param=Upload_OSD1}"));
        m_device->replyOnFile("ok");                 // releases the second piece of the first file
        QTRY_COMPARE(m_device->fileReceived().size(), 700);
        m_device->replyOnFile("ok");                 // releases the first file's Done
        QVERIFY(m_device->waitForReceived(12));
        QCOMPARE(m_device->takeReceived(), QByteArray("{param=Done}"));
        m_device->replyOnFile("<ACK_1>\r\n");        // acknowledged: the second file starts
        QVERIFY(m_device->waitForReceived(20));
        QCOMPARE(m_device->takeReceived(), QByteArray("{param=Update_EDID3}"));
        QTRY_COMPARE(m_device->fileReceived().size(), 710);
    }

    void replyWithoutAck_endsTheUploadOnceWithDoneAndTheError()
    {
        connectLink();
        m_link->sendFile("{param=Upload_OSD1}", QByteArray(10, 'a'), CommandText::done());
        m_device->replyOnFile("ok");
        QVERIFY(m_device->waitForReceived(19 + 12));
        m_device->takeReceived();
        m_device->replyOnFile("<ACK_1>"); // without CR LF it does not count
        QTRY_COMPARE(m_messages.size(), 1);
        QCOMPARE(m_messages[0], QString::fromUtf8("NetWork Error: 传输文件过程网络发生错误！请重新上传"));
        QVERIFY(m_device->waitForReceived(12));
        QVERIFY(!m_device->waitForReceived(13, 50)); // one Done, nothing after it
        QCOMPARE(m_device->takeReceived(), QByteArray("{param=Done}"));
        QVERIFY(!m_link->isUploading());
        QCOMPARE(m_link->pendingUploads(), 0);
        QVERIFY(!m_link->isAwaitingAck());
        // The transfer is over: further answers neither fail it again nor send anything.
        m_device->replyOnFile("garbage");
        m_link->sendVersionQuery();
        QVERIFY(m_device->waitForReceived(15));
        QCOMPARE(m_device->takeReceived(), QByteArray("{param=version}"));
        QCOMPARE(m_messages.size(), 1);
    }

    void silentDevice_endsTheUploadAfterItsTimeout()
    {
        connectLink();
        m_link->setUploadReplyTimeout(200);
        m_link->sendFile("{param=Upload_OSD1}", QByteArray(700, 'a'), CommandText::done());
        QTRY_COMPARE(m_messages.size(), 1);
        QCOMPARE(m_messages[0], QString::fromUtf8("NetWork Error: 传输文件过程网络发生错误！请重新上传"));
        QVERIFY(!m_link->isUploading());
        QCOMPARE(m_link->pendingUploads(), 0);
        QCOMPARE(m_device->fileReceived().size(), 500);
    }

    void fileConnectionDropped_endsTheUploadWithTheError()
    {
        m_link->setReconnectInterval(100);
        connectLink();
        m_link->sendFile(CommandText::uploadOsd(1), QByteArray(1000, 'a'), CommandText::done());
        QTRY_COMPARE(m_device->fileReceived().size(), 500);
        QVERIFY(m_device->waitForReceived(19));
        m_device->takeReceived();
        QSignalSpy reconnected(m_link, &MessageDistance::connectSuccessFulSig);
        m_device->dropClient();
        QTRY_COMPARE(m_messages.size(), 1);
        QVERIFY(reconnected.wait(3000));
        // Nothing of the file is sent again without its opening command.
        QTRY_VERIFY(m_link->isUploadConnected());
        m_link->sendVersionQuery();
        QVERIFY(m_device->waitForReceived(15));
        QCOMPARE(m_device->takeReceived(), QByteArray("{param=version}"));
        QCOMPARE(m_device->fileReceived().size(), 500);
        QCOMPARE(m_link->pendingUploads(), 0);
    }

    void emulator_takesLogosBackToBack_data()
    {
        QTest::addColumn<bool>("withheld");
        QTest::newRow("acknowledged") << false;
        QTest::newRow("final acknowledgement withheld") << true;
    }

    void emulator_takesLogosBackToBack()
    {
        QFETCH(bool, withheld);
        SimProcess sim;
        QVERIFY(sim.start(withheld ? "127.0.0.58" : "127.0.0.57", withheld ? QStringList{"--verbose", "--no-ack"} : QStringList{"--verbose"}));
        QSignalSpy connected(m_link, &MessageDistance::connectSuccessFulSig);
        m_link->connectToDevice(sim.host(), sim.port());
        QVERIFY(connected.wait(3000));
        QTRY_VERIFY(m_link->isUploadConnected());

        // Without the last acknowledgement the next logo still goes through: its
        // first piece's acknowledgement counts.
        for (int target : {3, 4}) {
            m_link->sendFile(CommandText::uploadOsd(target), QByteArray(4096, 'L'), CommandText::done());
            QVERIFY(sim.waitForCommand(CommandText::uploadOsd(target).toLatin1()));
            QTRY_COMPARE(sim.commandLog().count("cmd: {param=Done}"), target - 2);
            QTRY_COMPARE(m_link->isAwaitingAck(), withheld);
        }
        QVERIFY(!m_link->isUploading());
        QVERIFY(m_messages.isEmpty());
    }

private:
    void connectLink()
    {
        QSignalSpy connected(m_link, &MessageDistance::connectSuccessFulSig);
        m_link->connectToDevice(m_device->host(), m_device->port());
        QVERIFY(connected.wait(3000));
        QTRY_VERIFY(m_link->isUploadConnected() && m_device->hasFileClient());
    }

    FakeDevice *m_device = nullptr;
    MessageDistance *m_link = nullptr;
    QStringList m_messages;
};

QTEST_GUILESS_MAIN(tst_Upload)
#include "tst_upload.moc"
