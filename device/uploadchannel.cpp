#include "device/uploadchannel.h"

#include "device/commandtext.h"
#include "device/messagedistance.h"

#include <QCoreApplication>
#include <QDebug>

UploadChannel::UploadChannel(MessageDistance *link)
    : QObject(link)
    , m_link(link)
{
    connect(&m_socket, &QTcpSocket::errorOccurred, this, &UploadChannel::trouble);
    connect(&m_socket, &QTcpSocket::connected, this, &UploadChannel::onConnected);
    // A file connection lost in the middle of a file cannot resume it: the
    // device would take the rest without its opening command.
    connect(&m_socket, &QTcpSocket::disconnected, this, [this] {
        if (m_uploading || m_awaitingAck)
            failTransfer();
    });
    connect(&m_socket, &QTcpSocket::readyRead, this, &UploadChannel::onReadyRead);
    m_watchdog.setSingleShot(true);
    connect(&m_watchdog, &QTimer::timeout, this, &UploadChannel::onWatchdog);
}

UploadChannel::~UploadChannel()
{
    // The socket closes after this: its last signals must not fail a transfer
    // through a link that is going away.
    m_socket.disconnect(this);
}

void UploadChannel::connectToHost()
{
    m_socket.connectToHost(m_link->host(), FilePort, QIODevice::ReadWrite, QAbstractSocket::AnyIPProtocol);
}

void UploadChannel::reconnect()
{
    m_socket.abort();
    connectToHost();
}

void UploadChannel::onConnected()
{
    // Each piece waits for the device's answer to the one before: no segment filling.
    m_socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    emit connected();
    if (m_queue.isEmpty())
        return;
    const Item item = m_queue.takeFirst();
    if (!item.first.isEmpty()) {
        m_link->sendCommand(item.first);
    } else {
        m_socket.write(item.second);
        m_socket.flush();
    }
}

void UploadChannel::onReadyRead()
{
    const QByteArray data = m_socket.readAll();
    const int zero = data.indexOf('\0');
    const QString text = QString::fromLatin1(zero < 0 ? data : data.left(zero));
    // An answer that releases a piece and nothing else has the piece leave before its
    // line is written: the log keeps its order, and the device does not wait for the
    // log file, which is opened and closed for every line.
    m_unloggedAnswer = text;
    const bool pieceNext = !m_awaitingAck && !m_queue.isEmpty() && m_queue.first().first.isEmpty() && isConnected();
    if (!pieceNext)
        logAnswer();

    if (!m_uploading && !m_awaitingAck && m_queue.isEmpty())
        return;  // nothing in flight: a late or stray answer changes nothing
    if (m_awaitingAck) {
        if (!text.contains(QLatin1String("<ACK_1>\r\n"))) {
            failTransfer();
            return;
        }
        m_awaitingAck = false;
    }
    if (m_queue.isEmpty()) {
        endTransfer();
        return;
    }
    armWatchdog();
    // One reply releases one piece, together with the commands queued in front of it.
    while (!m_queue.first().first.isEmpty()) {
        const QString command = m_queue.takeFirst().first;
        m_link->sendCommand(command);
        if (command.contains(QLatin1String("Done")))
            m_awaitingAck = true;
        if (m_queue.isEmpty()) {
            m_uploading = false;
            if (!m_awaitingAck)
                m_watchdog.stop();
            return;
        }
        if (m_awaitingAck)
            return; // a file queued behind starts only once this one is acknowledged
    }
    if (!isConnected()) {
        qDebug() << "upload fail! osd upload socket connect fail!";
        failTransfer();
        reconnect();
        return;
    }
    const QByteArray piece = m_queue.takeFirst().second;
    // Set first: a connection that fails while the piece goes out ends the transfer for good.
    m_uploading = true;
    const qint64 written = m_socket.write(piece);
    m_socket.flush();
    logAnswer();
    qDebug() << "OsdUpdateTcpSocket Send byte len:" << written;
}

void UploadChannel::logAnswer()
{
    if (!m_unloggedAnswer)
        return;
    qDebug() << "OsdUploadSocket receive:" << *m_unloggedAnswer;
    m_unloggedAnswer.reset();
}

void UploadChannel::sendFile(const QString &command, const QByteArray &payload, const QString &doneCommand)
{
    if (!isConnected()) {
        // The texts keep the link's translation context, where the catalogue has them.
        m_link->showMessage(QCoreApplication::translate("MessageDistance", "传输文件端口连接发生错误！"),
                            QCoreApplication::translate("MessageDistance", "NetWork Error"));
        m_queue.clear();
        m_uploading = false;
        return;
    }
    QList<QByteArray> pieces;
    for (int offset = 0; offset < payload.size(); offset += PieceSize)
        pieces.append(payload.mid(offset, PieceSize));

    if (m_uploading) {
        // Queued whole behind the transfer in progress.
        if (!command.isEmpty())
            m_queue.append({command, QByteArray()});
        for (const QByteArray &piece : qAsConst(pieces))
            m_queue.append({QString(), piece});
        if (!doneCommand.isEmpty())
            m_queue.append({doneCommand, QByteArray()});
        return;
    }
    // Idle: the opening command and the first piece leave together.
    if (!command.isEmpty())
        m_link->sendCommand(command);
    // The rest is queued before the first piece goes out: a connection that fails
    // while it does ends the whole transfer.
    if (!pieces.isEmpty()) {
        m_uploading = true;
        for (int i = 1; i < pieces.size(); ++i)
            m_queue.append({QString(), pieces[i]});
    }
    if (!doneCommand.isEmpty())
        m_queue.append({doneCommand, QByteArray()});
    if (!pieces.isEmpty()) {
        m_socket.write(pieces.first());
        // The flush result, not a byte count: existing logs read this way.
        qDebug() << "osdUpdateTcpSocket Send byte len" << int(m_socket.flush());
    }
    if (!m_queue.isEmpty())
        armWatchdog();
}

void UploadChannel::armWatchdog()
{
    m_lastReply.start();
    if (!m_watchdog.isActive())
        m_watchdog.start(m_replyTimeoutMs);
}

void UploadChannel::onWatchdog()
{
    // Replies came since the timer was started: wait out the rest from the last one.
    const qint64 left = m_replyTimeoutMs - m_lastReply.elapsed();
    if (left > 0) {
        m_watchdog.start(int(left));
        return;
    }
    failTransfer();
}

void UploadChannel::failTransfer()
{
    logAnswer();  // the answer that ended it comes first in the log
    // Once per transfer: one message, one closing command, nothing left waiting.
    // Without a command connection there is nobody to close the transfer with.
    endTransfer();
    m_link->showMessage(QCoreApplication::translate("MessageDistance", "传输文件过程网络发生错误！请重新上传"),
                        QCoreApplication::translate("MessageDistance", "NetWork Error"));
    if (m_link->isConnected())
        m_link->sendDoneCommand();
}

void UploadChannel::endTransfer()
{
    m_watchdog.stop();
    m_queue.clear();
    m_uploading = false;
    m_awaitingAck = false;
}

void UploadChannel::sendUploadCommand(int target)
{
    if (!isConnected()) {
        connectToHost();
        return;
    }
    const QString text = CommandText::uploadOsd(target);
    m_socket.write(text.toUtf8());
    qDebug() << "sendData" << text;
    m_socket.flush();
}

void UploadChannel::sendImage(const QByteArray &bitmap)
{
    if (!isConnected()) {
        qDebug() << "osd socket disconnected!";
        reconnect();
        return;
    }
    m_socket.write(bitmap);
    m_socket.flush();
}
