#include "device/commandtext.h"
#include "device/messagedistance.h"
#include "fakedevice.h"
#include "simprocess.h"

#include <QSignalSpy>
#include <QTest>

// File uploads: pieces of 500 bytes on port 6666, each released by a device
// reply, then "{param=Done}" and the device's "<ACK_1>\r\n".
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
        QVERIFY(m_device->waitForReceived(18));
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

    void replyWithoutAck_showsTheErrorAndKeepsWaitingForIt()
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
        QCOMPARE(m_device->takeReceived(), QByteArray("{param=Done}"));
        QVERIFY(!m_link->isUploading());
        // Still waiting: the next reply is tested for the acknowledgement as well.
        QVERIFY(m_link->isAwaitingAck());
        m_device->replyOnFile("<ACK_1>\r\n");
        QTRY_VERIFY(!m_link->isAwaitingAck());
    }

    void uploadPortDown_refusesTheFileWithAMessage()
    {
        delete m_device;
        m_device = new FakeDevice(QHostAddress("127.0.0.56"), /*withFilePort=*/false);
        connectLink(false);
        m_link->sendFile("{param=Upload_OSD1}", QByteArray(10, 'a'), CommandText::done());
        QCOMPARE(m_messages, QStringList{QString::fromUtf8("NetWork Error: 传输文件端口连接发生错误！")});
        QVERIFY(!m_device->waitForReceived(1, 50));
        QVERIFY(!m_link->isUploading());
        QCOMPARE(m_link->pendingUploads(), 0);
    }

    void emulator_acknowledgesAWholeLogo()
    {
        SimProcess sim;
        QVERIFY(sim.start("127.0.0.57", {"--verbose"}));
        QSignalSpy connected(m_link, &MessageDistance::connectSuccessFulSig);
        m_link->connectToDevice(sim.host(), sim.port());
        QVERIFY(connected.wait(3000));
        QTRY_VERIFY(m_link->isUploadConnected());

        m_link->sendFile(CommandText::uploadOsd(3), QByteArray(4096, 'L'), CommandText::done());
        QVERIFY(sim.waitForCommand("{param=Upload_OSD3}"));
        QVERIFY(sim.waitForCommand("{param=Done}", 5000));
        QTRY_VERIFY(!m_link->isAwaitingAck());
        QVERIFY(!m_link->isUploading());
        QVERIFY(m_messages.isEmpty());
    }

private:
    void connectLink(bool withFilePort = true)
    {
        QSignalSpy connected(m_link, &MessageDistance::connectSuccessFulSig);
        m_link->connectToDevice(m_device->host(), m_device->port());
        QVERIFY(connected.wait(3000));
        QTRY_VERIFY(!withFilePort || (m_link->isUploadConnected() && m_device->hasFileClient()));
    }

    FakeDevice *m_device = nullptr;
    MessageDistance *m_link = nullptr;
    QStringList m_messages;
};

QTEST_GUILESS_MAIN(tst_Upload)
#include "tst_upload.moc"
