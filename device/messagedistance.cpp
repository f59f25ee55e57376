#include "device/messagedistance.h"

#include "device/commandtext.h"
#include "device/logexcerpt.h"

#include <QCoreApplication>
#include <QDebug>
#include <QMutexLocker>
#include <QTimer>

namespace {
MessageDistance *g_instance = nullptr;

// Bounds on what a device can make the link hold: the socket's own buffer, the
// parser's backlog of cut-but-unannounced bytes, and announced replies the
// receiving thread has not handled yet. Past them reading pauses, and TCP
// makes the device wait.
constexpr qint64 SocketReadBuffer = 256 * 1024;
constexpr int ParserBacklogBytes = 1024 * 1024;
constexpr int UnhandledRepliesLimit = 256;

void stopInstanceWorker()
{
    if (g_instance)
        g_instance->stopWorker();
}
} // namespace

MessageDistance *MessageDistance::instance()
{
    static QMutex mutex;
    QMutexLocker locker(&mutex);
    if (!g_instance) {
        g_instance = new MessageDistance;
        // The link lives for the whole process, but its thread must not
        // outlive the application object.
        qAddPostRoutine(stopInstanceWorker);
    }
    return g_instance;
}

MessageDistance::MessageDistance(QObject *parent)
    : QThread(parent)
{
    setObjectName(QStringLiteral("ReplyParser"));
    m_commandSocket.setSocketOption(QAbstractSocket::KeepAliveOption, 1);

    m_commandSocket.setReadBufferSize(SocketReadBuffer);
    connect(&m_commandSocket, &QTcpSocket::readyRead, this, &MessageDistance::readCommandSocket);
    m_reconnectTimer = new QTimer(this);
    connect(m_reconnectTimer, &QTimer::timeout, this, &MessageDistance::reconnectRound);
    m_upload = new UploadChannel(this);
    connect(m_upload, &UploadChannel::trouble, m_reconnectTimer, QOverload<>::of(&QTimer::start));
    connect(m_upload, &UploadChannel::connected, this, [this] {
        // Only the command connection ends the retries: it may still be down.
        if (isConnected())
            m_reconnectTimer->stop();
    });
    connect(&m_commandSocket, &QTcpSocket::errorOccurred, this, &MessageDistance::onCommandSocketTrouble);
    connect(&m_commandSocket, &QTcpSocket::disconnected, this, &MessageDistance::onCommandSocketTrouble);
    connect(&m_commandSocket, &QTcpSocket::connected, this, [this] {
        m_reconnectTimer->stop();
        // The option only reaches a live socket; keep-alive detects pulled cables.
        m_commandSocket.setSocketOption(QAbstractSocket::KeepAliveOption, 1);
        // Commands are short: waiting to fill a segment only delays them.
        m_commandSocket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    });
    connect(&m_commandSocket, &QTcpSocket::connected, this, &MessageDistance::connectSuccessFulSig);

    m_reconnectTimer->setInterval(ReconnectIntervalMs);
    m_reconnectTimer->setSingleShot(false);

    start();
}

MessageDistance::~MessageDistance()
{
    stopWorker();
    // Sockets go before the timer they would otherwise restart from their signals.
    m_commandSocket.disconnect(this);
    delete m_upload;
}

void MessageDistance::stopWorker()
{
    {
        QMutexLocker locker(&m_bufferMutex);
        m_stop = true;
        m_bufferChanged.wakeAll();
    }
    wait();
}

int MessageDistance::bufferedBytes()
{
    QMutexLocker locker(&m_bufferMutex);
    return m_parser.bufferedBytes();
}

void MessageDistance::connectToDevice(const QString &host, quint16 port)
{
    m_host = host;
    m_port = port;
    m_commandSocket.abort();
    m_upload->abort();
    {
        QMutexLocker locker(&m_bufferMutex);
        m_parser.clear();
    }
    m_commandSocket.connectToHost(host, port, QIODevice::ReadWrite, QAbstractSocket::AnyIPProtocol);
    m_upload->connectToHost();
}

void MessageDistance::closeConnection()
{
    m_commandSocket.close();
    m_upload->close();
}

bool MessageDistance::isUploadConnected() const
{
    return m_upload->isConnected();
}

void MessageDistance::reconnectRound()
{
    if (!m_upload->isConnected())
        m_upload->reconnect();
    if (m_commandSocket.state() != QAbstractSocket::ConnectedState) {
        m_commandSocket.abort();
        m_commandSocket.connectToHost(m_host, m_port, QIODevice::ReadWrite, QAbstractSocket::AnyIPProtocol);
    }
    emit connectingSig();
}

void MessageDistance::onCommandSocketTrouble()
{
    emit connectFailureSig();
    m_reconnectTimer->start();
}

void MessageDistance::sendFile(const QString &command, const QByteArray &payload, const QString &doneCommand)
{
    m_upload->sendFile(command, payload, doneCommand);
}

void MessageDistance::sendDoneCommand()
{
    if (m_commandSocket.state() != QAbstractSocket::ConnectedState) {
        // Port 6666, not the command port: the firmware's recovery path expects it.
        m_commandSocket.connectToHost(m_host, FilePort, QIODevice::ReadWrite, QAbstractSocket::AnyIPProtocol);
        return;
    }
    const QString text = CommandText::done();
    m_commandSocket.write(text.toUtf8());
    qDebug() << "send" << text;
    m_commandSocket.flush();
}

void MessageDistance::setReconnectInterval(int ms)
{
    m_reconnectTimer->setInterval(ms);
}

void MessageDistance::showMessage(const QString &text, const QString &title)
{
    qDebug() << title << text;
    if (m_presentMessage)
        m_presentMessage(text, title);
}

bool MessageDistance::backlogFull() const
{
    return m_parser.bufferedBytes() > ParserBacklogBytes || m_unhandledReplies.load() > UnhandledRepliesLimit;
}

void MessageDistance::readCommandSocket()
{
    {
        QMutexLocker locker(&m_bufferMutex);
        m_readingPaused = backlogFull();
        if (m_readingPaused)
            return;  // the worker resumes reading once it has caught up
    }
    receiveDataSlot(m_commandSocket.readAll());
}

void MessageDistance::receiveDataSlot(const QByteArray &array)
{
    QMutexLocker locker(&m_bufferMutex);
    qDebug() << "receive  data:" << logExcerpt(array);
    m_parser.append(array);
    if (m_parser.hasCompleteFrame())
        m_bufferChanged.wakeOne();
}

void MessageDistance::sendCacheData()
{
}

void MessageDistance::run()
{
    QMutexLocker locker(&m_bufferMutex);
    while (!m_stop) {
        ParsedReply reply;
        if (!m_parser.next(&reply)) {
            // Sleep until the receive slot brings a complete frame or we are stopped.
            m_bufferChanged.wait(&m_bufferMutex);
            continue;
        }
        // The buffer stays locked while one frame is decoded and announced.
        ++m_unhandledReplies;
        emitReply(reply);
        // Runs on the receiving thread after the reply's own slots: then it is handled.
        QMetaObject::invokeMethod(this, [this] {
            --m_unhandledReplies;
            if (m_readingPaused)
                readCommandSocket();
        }, Qt::QueuedConnection);
        // One frame per pass: let the receiving side append between frames.
        locker.unlock();
        locker.relock();
    }
}

void MessageDistance::emitReply(const ParsedReply &reply)
{
    if (!reply.ok)
        return;
    for (ReplySignal signal : reply.signals_) {
        switch (signal) {
        case ReplySignal::NetWork: emit receiveNetWorkImforamtionSig(reply.object); break;
        case ReplySignal::Volume: emit receiveVolumnImformationSig(reply.object); break;
        case ReplySignal::Version: emit receiveVersionSig(reply.object); break;
        case ReplySignal::VideoMap: emit receiveVideoMapSig(reply.object); break;
        case ReplySignal::InputState: emit receiveInputChannelStateSig(reply.object); break;
        case ReplySignal::AudioMap: emit receiveAudioMapSig(reply.object); break;
        case ReplySignal::IrMap: emit receiveIrMapSig(reply.object); break;
        case ReplySignal::InResolution: emit receiveInChannelResolutionMapSig(reply.object); break;
        case ReplySignal::OutResolution: emit receiveOutChannelResolutionMapSig(reply.object); break;
        case ReplySignal::Title:
            emit receiveTitleImfSig(reply.object);
            m_replyState = 0;
            m_osdIndex = -1;
            break;
        }
    }
}

bool MessageDistance::sendCommand(const QString &text, int expectReply, int osdIndex)
{
    // Kept in the signature so every caller reads alike; the device needs neither.
    Q_UNUSED(expectReply)
    Q_UNUSED(osdIndex)
    m_commandSocket.write(text.toUtf8());
    // On its way before the log line: the log file is opened and closed for every line.
    const bool flushed = m_commandSocket.flush();
    qDebug() << "send:" << text;
    return flushed;
}

void MessageDistance::sendVersionQuery() { sendCommand(CommandText::versionQuery()); }
void MessageDistance::sendResolutionQuery() { sendCommand(CommandText::resolutionQuery()); }
void MessageDistance::sendStatusQuery() { sendCommand(CommandText::statusQuery()); }
void MessageDistance::sendInputInfoQuery() { sendCommand(CommandText::inputInfoQuery()); }
void MessageDistance::sendNetInfoQuery() { sendCommand(CommandText::netInfoQuery()); }

void MessageDistance::sendNetworkSetting(const QString &ip, const QString &gateway, const QString &subnet,
                                         const QString &mac)
{
    sendCommand(CommandText::networkSetting(ip, gateway, subnet, mac));
}

void MessageDistance::sendSwitch(int input, int output, int kind) { sendCommand(CommandText::switchRoute(input, output, kind)); }
void MessageDistance::sendMode(int mode) { sendCommand(CommandText::mode(mode)); }
void MessageDistance::sendFactoryDefault() { sendCommand(CommandText::factoryDefault()); }
void MessageDistance::sendInputPattern(int port, int pattern) { sendCommand(CommandText::inputPattern(port, pattern)); }
void MessageDistance::sendOutputPattern(int port, int pattern) { sendCommand(CommandText::outputPattern(port, pattern)); }
void MessageDistance::sendBell(bool on) { sendCommand(CommandText::bell(on)); }
void MessageDistance::sendSavePreset(int preset) { sendCommand(CommandText::savePreset(preset)); }
void MessageDistance::sendRecallPreset(int preset) { sendCommand(CommandText::recallPreset(preset)); }
void MessageDistance::sendVolume(int port, int level) { sendCommand(CommandText::volume(port, level)); }
void MessageDistance::sendMute(int port) { sendCommand(CommandText::mute(port)); }
void MessageDistance::sendUploadSubtitle(int number) { sendCommand(CommandText::uploadSubtitle(number)); }
void MessageDistance::sendSetOsd(int number) { sendCommand(CommandText::setOsd(number)); }
void MessageDistance::sendSetSubtitle() { sendCommand(CommandText::setSubtitle()); }
void MessageDistance::sendOsdSwitch(bool open) { sendCommand(CommandText::osdSwitch(open)); }
void MessageDistance::sendOsdSpeed(int speed) { sendCommand(CommandText::osdSpeed(speed)); }
void MessageDistance::sendOsdDirection(int direction) { sendCommand(CommandText::osdDirection(direction)); }
void MessageDistance::sendOsdPosition(int x, int y) { sendCommand(CommandText::osdPosition(x, y)); }
void MessageDistance::sendFontColor(int red, int green, int blue) { sendCommand(CommandText::fontColor(red, green, blue)); }
void MessageDistance::sendBackgroundColor(int red, int green, int blue) { sendCommand(CommandText::backgroundColor(red, green, blue)); }
void MessageDistance::sendBackgroundSwitch(bool open) { sendCommand(CommandText::backgroundSwitch(open)); }
void MessageDistance::sendCopyEdid(int input, int source) { sendCommand(CommandText::copyEdid(input, source)); }
void MessageDistance::sendUpdateEdid(int port) { sendCommand(CommandText::updateEdid(port)); }
void MessageDistance::sendOsdQuery(int number) { sendCommand(CommandText::osdQuery(number), 1, number); }
void MessageDistance::sendSubtitleQuery() { sendCommand(CommandText::subtitleQuery()); }
void MessageDistance::sendVolumeQuery() { sendCommand(CommandText::volumeQuery()); }
void MessageDistance::sendEraseOsd() { sendCommand(CommandText::eraseOsd()); }
void MessageDistance::sendEraseSubtitle() { sendCommand(CommandText::eraseSubtitle()); }
void MessageDistance::sendPortResolution(int port, const QString &resolution) { sendCommand(CommandText::portResolution(port, resolution)); }
void MessageDistance::sendAnalogSelect(int port, int source) { sendCommand(CommandText::analogSelect(port, source)); }
