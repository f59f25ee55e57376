#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QPair>
#include <QString>
#include <QTcpSocket>
#include <QTimer>

#include <optional>

class MessageDistance;

// The file connection to the switcher on port 6666: the opening command, the
// payload in pieces of PieceSize released one per device reply, then the
// closing command, after which the device must acknowledge with "<ACK_1>\r\n".
// Commands go out on the link's command connection; the link owns this channel
// and its reconnect timer covers the file connection too.
class UploadChannel : public QObject
{
    Q_OBJECT

public:
    static constexpr quint16 FilePort = 6666;
    static constexpr int PieceSize = 500;
    // A transfer whose device stays silent this long has failed.
    static constexpr int ReplyTimeoutMs = 10000;

    // (command text, payload): exactly one of the two is in use.
    using Item = QPair<QString, QByteArray>;

    explicit UploadChannel(MessageDistance *link);
    ~UploadChannel() override;

    // Dials the link's device on the file port.
    void connectToHost();
    void abort() { m_socket.abort(); }
    void close() { m_socket.close(); }
    // Drops whatever is left of the connection and dials again.
    void reconnect();
    bool isConnected() const { return m_socket.state() == QAbstractSocket::ConnectedState; }

    void setReplyTimeout(int ms) { m_replyTimeoutMs = ms; }
    void sendFile(const QString &command, const QByteArray &payload, const QString &doneCommand);
    void sendUploadCommand(int target);
    void sendImage(const QByteArray &bitmap);

    int pendingItems() const { return m_queue.size(); }
    bool isUploading() const { return m_uploading; }
    bool isAwaitingAck() const { return m_awaitingAck; }

signals:
    // The file connection failed or could not be made: the link retries it.
    void trouble();
    // Before a held item is resumed on the new connection.
    void connected();

private:
    void onConnected();
    void onReadyRead();
    void failTransfer();
    void logAnswer();
    void endTransfer();
    void armWatchdog();
    void onWatchdog();

    MessageDistance *m_link;
    QTcpSocket m_socket;
    QList<Item> m_queue;
    bool m_uploading = false;
    bool m_awaitingAck = false;
    // An answer's line, held while the piece it releases goes out.
    std::optional<QString> m_unloggedAnswer;
    // One timer per transfer, not one restart per piece: each reply only
    // notes its time, and the timer checks it when it fires.
    QTimer m_watchdog;
    QElapsedTimer m_lastReply;
    int m_replyTimeoutMs = ReplyTimeoutMs;
};
