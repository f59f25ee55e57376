#pragma once

#include "device/replyparser.h"
#include "device/uploadchannel.h"

#include <QByteArray>
#include <QJsonObject>
#include <QMutex>
#include <QTcpSocket>
#include <QThread>
#include <QWaitCondition>

#include <atomic>
#include <functional>

class QTimer;

// The one link to the switcher: the command connection, the file connection on
// port 6666 (UploadChannel), the reconnect timer, and a worker thread that
// turns received bytes into reply signals. Sockets and timer live on the thread
// that created the object; only the reply loop runs on the worker.
class MessageDistance : public QThread
{
    Q_OBJECT

public:
    static constexpr quint16 FilePort = UploadChannel::FilePort;
    static constexpr int ReconnectIntervalMs = 2000;
    // Time between connection attempts while the command connection is down.
    void setReconnectInterval(int ms);

    static MessageDistance *instance();

    explicit MessageDistance(QObject *parent = nullptr);
    ~MessageDistance() override;

    void connectToDevice(const QString &host, quint16 port);
    void closeConnection();
    bool isUploadConnected() const;
    // The command connection is up: commands reach the device.
    bool isConnected() const { return m_commandSocket.state() == QAbstractSocket::ConnectedState; }
    int osdIndex() const { return m_osdIndex; }
    int replyState() const { return m_replyState; }
    QString host() const { return m_host; }
    quint16 port() const { return m_port; }

    // Received bytes still waiting in the reply parser (for diagnostics and tests).
    int bufferedBytes();

    // Stops and joins the reply loop; safe to call more than once.
    void stopWorker();

    bool sendCommand(const QString &text, int expectReply = 0, int osdIndex = -1);

    void sendVersionQuery();
    void sendResolutionQuery();
    void sendStatusQuery();
    void sendInputInfoQuery();
    void sendNetInfoQuery();
    void sendNetworkSetting(const QString &ip, const QString &gateway, const QString &subnet, const QString &mac);
    void sendSwitch(int input, int output, int kind);
    void sendMode(int mode);
    void sendFactoryDefault();
    void sendInputPattern(int port, int pattern);
    void sendOutputPattern(int port, int pattern);
    void sendBell(bool on);
    void sendSavePreset(int preset);
    void sendRecallPreset(int preset);
    void sendVolume(int port, int level);
    void sendMute(int port);
    void sendUploadSubtitle(int number);
    void sendSetOsd(int number);
    void sendSetSubtitle();
    void sendOsdSwitch(bool open);
    void sendOsdSpeed(int speed);
    void sendOsdDirection(int direction);
    void sendOsdPosition(int x, int y);
    void sendFontColor(int red, int green, int blue);
    void sendBackgroundColor(int red, int green, int blue);
    void sendBackgroundSwitch(bool open);
    void sendCopyEdid(int input, int source);
    void sendUpdateEdid(int port);
    void sendOsdQuery(int number);
    void sendSubtitleQuery();
    void sendVolumeQuery();
    void sendEraseOsd();
    void sendEraseSubtitle();
    void sendPortResolution(int port, const QString &resolution);
    void sendAnalogSelect(int port, int source);

    // File uploads over port 6666, carried out by the upload channel.
    static constexpr int PieceSize = UploadChannel::PieceSize;
    void setUploadReplyTimeout(int ms) { m_upload->setReplyTimeout(ms); }
    void sendFile(const QString &command, const QByteArray &payload, const QString &doneCommand);
    void sendDoneCommand();
    void sendUploadCommand(int target) { m_upload->sendUploadCommand(target); }
    // Writes an already converted bitmap on the file connection.
    void sendImage(const QByteArray &bitmap) { m_upload->sendImage(bitmap); }

    // How errors are shown to the operator; the window installs its message box.
    // Blocks like a modal dialog; without one the message is only logged.
    using MessagePresenter = std::function<void(const QString &text, const QString &title)>;
    void setMessagePresenter(MessagePresenter presenter) { m_presentMessage = std::move(presenter); }
    void showMessage(const QString &text, const QString &title);

    // Items of a transfer not yet sent.
    int pendingUploads() const { return m_upload->pendingItems(); }
    bool isUploading() const { return m_upload->isUploading(); }
    bool isAwaitingAck() const { return m_upload->isAwaitingAck(); }

signals:
    void receiveVersionSig(QJsonObject);
    void receiveCheckStateSig(QJsonObject);
    void receiveInputChannelStateSig(QJsonObject);
    void receiveNetWorkImforamtionSig(QJsonObject);
    void receiveVolumnImformationSig(QJsonObject);
    void receiveVideoMapSig(QJsonObject obj);
    void receiveAudioMapSig(QJsonObject obj);
    void receiveIrMapSig(QJsonObject obj);
    void receiveInChannelResolutionMapSig(QJsonObject obj);
    void receiveOutChannelResolutionMapSig(QJsonObject obj);
    void receiveOsdImfSig(int, QJsonObject);
    void receiveTitleImfSig(QJsonObject obj);
    void connectFailureSig();
    void connectSuccessFulSig();
    void connectingSig();

public slots:
    void receiveDataSlot(const QByteArray &array);
    // Empty on purpose: the upload queue is drained on the file connection's connect.
    void sendCacheData();

protected:
    void run() override;

private:
    void reconnectRound();
    void onCommandSocketTrouble();
    void emitReply(const ParsedReply &reply);
    void readCommandSocket();
    bool backlogFull() const;

    ReplyParser m_parser;        // the receive buffer; guarded by m_bufferMutex
    QTcpSocket m_commandSocket;
    UploadChannel *m_upload = nullptr;  // the file connection, its queue and flags
    QString m_host;
    quint16 m_port = 0;
    QMutex m_bufferMutex;
    QWaitCondition m_bufferChanged;
    QTimer *m_reconnectTimer = nullptr;
    int m_unused1 = 0;
    std::atomic<int> m_replyState{2};
    int m_unused2 = 0;
    std::atomic<int> m_osdIndex{-1};
    bool m_stop = false;         // guarded by m_bufferMutex
    // Backpressure: frames announced but not yet handled by the receiving
    // thread, and whether reading stopped to let the parser or the window catch up.
    std::atomic<int> m_unhandledReplies{0};
    bool m_readingPaused = false;
    MessagePresenter m_presentMessage;
};
