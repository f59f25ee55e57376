#include "device/commandtext.h"
#include "device/messagedistance.h"
#include "linkup.h"
#include "fakedevice.h"
#include "simprocess.h"

#include <QSignalSpy>
#include <QTest>

const QByteArray Done = "{param=Done}";

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
        QTest::addColumn<bool>("queued"); // a second file sent right behind
        QTest::newRow("1234 bytes") << 1234 << QList<int>{500, 500, 234} << false;
        QTest::newRow("exactly 1000") << 1000 << QList<int>{500, 500} << false;
        QTest::newRow("empty") << 0 << QList<int>{} << false;
        QTest::newRow("second file waits for the acknowledgement") << 700 << QList<int>{500, 200} << true;
    }

    void payload_goesOutInPiecesReleasedByReplies()
    {
        QFETCH(int, size);
        QFETCH(QList<int>, pieces);
        QFETCH(bool, queued);
        connectLink();

        QByteArray payload;
        for (int i = 0; i < size; ++i)
            payload += char(i % 251);
        m_link->sendFile(CommandText::uploadOsd(2), payload, CommandText::done());
        if (queued)
            m_link->sendFile("{param=Update_EDID3}", QByteArray(10, 'b'), CommandText::done());
        // Exact takes: the second file's command sent early would show in one of them.
        QVERIFY(receives("{param=Upload_OSD2}"));
        int sent = 0;
        for (int piece : pieces) {
            QTRY_COMPARE(m_device->fileReceived().size(), sent + piece);
            sent += piece;
            m_device->replyOnFile("ok");
        }
        if (pieces.isEmpty())
            m_device->replyOnFile("ok"); // the first reply releases the closing command
        QVERIFY(receives(Done));
        QCOMPARE(m_device->fileReceived(), payload);
        QVERIFY(m_link->isAwaitingAck());
        m_device->replyOnFile("<ACK_1>\r\n");
        if (queued) { // acknowledged: the second file starts
            QVERIFY(receives("{param=Update_EDID3}"));
            QTRY_COMPARE(m_device->fileReceived(), payload + QByteArray(10, 'b'));
            m_device->replyOnFile("ok");
            QVERIFY(receives(Done));
            m_device->replyOnFile("<ACK_1>\r\n");
        }
        QTRY_VERIFY(!m_link->isAwaitingAck());
        QVERIFY(!m_link->isUploading() && m_link->pendingUploads() == 0 && m_messages.isEmpty());
    }

    void failure_endsTheUploadOnceWithOneMessage_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<int>("size");
        QTest::newRow("acknowledgement without CR LF") << "bad ack" << 500;
        QTest::newRow("silent device") << "silent" << 1000;
        QTest::newRow("file connection dropped mid-file") << "drop" << 1000;
    }

    void failure_endsTheUploadOnceWithOneMessage()
    {
        QFETCH(QString, fault);
        QFETCH(int, size);
        m_link->setReconnectInterval(100);
        m_link->setUploadReplyTimeout(fault == "silent" ? 200 : 60000);
        connectLink();
        m_link->sendFile(CommandText::uploadOsd(1), QByteArray(size, 'a'), CommandText::done());
        QVERIFY(receives("{param=Upload_OSD1}"));
        QTRY_COMPARE(m_device->fileReceived().size(), 500);
        if (fault == "bad ack") {
            m_device->replyOnFile("ok");
            QVERIFY(receives(Done));
            m_device->replyOnFile("<ACK_1>");
        } else if (fault == "drop") {
            QSignalSpy reconnected(m_link, &MessageDistance::connectSuccessFulSig);
            m_device->dropClient();
            QVERIFY(reconnected.wait(3000));
            QTRY_VERIFY(m_link->isUploadConnected() && m_device->hasFileClient());
        }
        QTRY_COMPARE(m_messages, QStringList{QString::fromUtf8("NetWork Error: 传输文件过程网络发生错误！请重新上传")});
        // The transfer is closed with one Done, where a command connection is left to send it on.
        if (fault != "drop")
            QVERIFY(receives(Done));
        QVERIFY(!m_link->isUploading() && !m_link->isAwaitingAck() && m_link->pendingUploads() == 0);
        // Over for good: a late answer fails nothing again and releases nothing. A second
        // Done, or the file's rest without its opening command, would spoil the exact take.
        m_device->replyOnFile("ok");
        m_link->sendVersionQuery();
        QVERIFY(receives("{param=version}"));
        QCOMPARE(m_messages.size(), 1);
        QCOMPARE(m_device->fileReceived().size(), 500);
    }

    // The emulator's acknowledged uploads are tst_dialogs'; here it keeps the final
    // acknowledgement to itself.
    void emulator_takesLogosBackToBackWithoutTheFinalAcknowledgement()
    {
        SimProcess sim;
        QVERIFY(sim.start("127.0.0.58", {"--verbose", "--no-ack"}));
        QVERIFY(::connectLink(*m_link, sim.host(), sim.port()));

        // Without the final acknowledgement the next logo still goes through: the
        // acknowledgement of its first piece counts.
        for (int target : {3, 4}) {
            m_link->sendFile(CommandText::uploadOsd(target), QByteArray(4096, 'L'), CommandText::done());
            QVERIFY(sim.waitForCommand(CommandText::uploadOsd(target).toLatin1()));
            QTRY_COMPARE(sim.commandLog().count("cmd: {param=Done}"), target - 2);
            QTRY_VERIFY(m_link->isAwaitingAck());
        }
        QVERIFY(!m_link->isUploading() && m_messages.isEmpty());
    }

private:
    void connectLink()
    {
        QVERIFY(::connectLink(*m_link, m_device->host(), m_device->port()));
        QTRY_VERIFY(m_device->hasFileClient());
    }

    // True when the command port, once it holds as many bytes, has received exactly `command`.
    bool receives(const QByteArray &command)
    {
        m_device->waitForReceived(command.size());
        const QByteArray got = m_device->takeReceived();
        if (got != command)
            qWarning() << "the command port received" << got;
        return got == command;
    }

    FakeDevice *m_device = nullptr;
    MessageDistance *m_link = nullptr;
    QStringList m_messages;
};

QTEST_GUILESS_MAIN(tst_Upload)
#include "tst_upload.moc"
