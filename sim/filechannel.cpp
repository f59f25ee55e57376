#include "filechannel.h"

#include "uploadformats.h"

#include <QTcpSocket>

namespace {

// Enough of a file's start for UploadFormats::declaredLength: an EDID counts its
// extensions in byte 126.
constexpr int LengthHead = 127;

} // namespace

const QByteArray FileChannel::Ack = "<ACK_1>\r\n";

FileChannel::FileChannel(QObject *parent)
    : QObject(parent)
{
    m_quietTimer.setSingleShot(true);
    connect(&m_quietTimer, &QTimer::timeout, this, &FileChannel::onQuiet);
    connect(&m_server, &QTcpServer::newConnection, this, &FileChannel::onNewConnection);
}

FileChannel::~FileChannel()
{
    // The client belongs to the listening server: without this, closing it
    // during the server's teardown would call back into a half-destroyed channel.
    if (m_client) {
        m_client->disconnect(this);
        delete m_client;
    }
}

bool FileChannel::listen(const QHostAddress &host)
{
    return m_server.listen(host, Port);
}

void FileChannel::endTransfer()
{
    // Bytes not yet answered belong to the transfer that ends.
    m_quietTimer.stop();
    m_unacknowledged = 0;
    m_transferBytes = 0;
    m_fileLength = 0;
    m_head.clear();
}

void FileChannel::acknowledgeUpload()
{
    acknowledge();
}

void FileChannel::onNewConnection()
{
    // Decide on the next pass of the event loop: a client that has just
    // aborted its connection to reconnect is gone by then and does not
    // block its own new connection.
    while (QTcpSocket *socket = m_server.nextPendingConnection())
        QTimer::singleShot(0, socket, [this, socket] { adopt(socket); });
}

void FileChannel::adopt(QTcpSocket *socket)
{
    if (socket->state() != QAbstractSocket::ConnectedState) {
        socket->deleteLater();
        return;
    }
    // Acknowledgements are tiny and the sender waits for each: send them at once.
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    if (m_client) {
        // The device serves one upload at a time and hangs up on the rest.
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        socket->disconnectFromHost();
        return;
    }
    m_client = socket;
    endTransfer();
    m_connectionBytes = 0;
    emit clientAdopted();
    connect(socket, &QTcpSocket::readyRead, this, &FileChannel::onReadyRead);
    connect(socket, &QTcpSocket::disconnected, this, &FileChannel::forgetClient);
    // Bytes may have come with the connection, before readyRead was connected.
    if (socket->bytesAvailable() > 0)
        onReadyRead();
}

void FileChannel::onReadyRead()
{
    if (!m_client)
        return;
    QByteArray bytes = m_client->readAll();
    const bool drop = m_faults.dropAfter > 0 && m_connectionBytes + bytes.size() >= m_faults.dropAfter;
    if (drop)
        bytes.truncate(int(m_faults.dropAfter - m_connectionBytes));
    m_connectionBytes += bytes.size();
    m_unacknowledged += bytes.size();
    learnLength(bytes);
    emit received(bytes);
    if (drop) {
        dropClient();  // unanswered: the sender sees the line go, not an acknowledgement
        return;
    }
    while (m_unacknowledged >= PieceSize) {
        m_unacknowledged -= PieceSize;
        acknowledge();
    }
    // The file is complete: its short last piece needs no wait.
    if (m_unacknowledged > 0 && m_fileLength > 0 && m_transferBytes == m_fileLength) {
        m_unacknowledged = 0;
        acknowledge();
    }
    if (m_unacknowledged > 0)
        m_quietTimer.start();
    else
        m_quietTimer.stop();
}

void FileChannel::onQuiet()
{
    if (m_unacknowledged == 0)
        return;
    m_unacknowledged = 0;
    acknowledge();
}

void FileChannel::learnLength(const QByteArray &bytes)
{
    m_transferBytes += bytes.size();
    if (m_fileLength > 0 || m_head.size() >= LengthHead)
        return;
    m_head += bytes.left(LengthHead - m_head.size());
    m_fileLength = UploadFormats::declaredLength(m_head).value_or(0);
}

void FileChannel::forgetClient()
{
    endTransfer();
    if (m_client)
        m_client->deleteLater();
    m_client = nullptr;
}

void FileChannel::acknowledge()
{
    if (!m_client || m_client->state() != QAbstractSocket::ConnectedState)
        return;
    const QByteArray answer = m_faults.acknowledgement(Ack);
    if (answer.isEmpty())
        return;
    m_client->write(answer);
    m_client->flush();
}

void FileChannel::dropClient()
{
    emit logged("file connection closed after " + QByteArray::number(m_connectionBytes) + " bytes\n");
    // Forgotten first: its disconnected signal must not forget a successor.
    QTcpSocket *client = m_client;
    client->disconnect(this);
    forgetClient();
    client->disconnectFromHost();
}
