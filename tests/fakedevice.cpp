#include "fakedevice.h"

#include <QDeadlineTimer>
#include <QSignalSpy>
#include <QTest>

FakeDevice::FakeDevice(const QHostAddress &address, bool withFilePort, QObject *parent)
    : QObject(parent)
    , m_address(address)
    , m_withFilePort(withFilePort)
{
    connect(&m_command, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *socket = m_command.nextPendingConnection()) {
            if (m_client)
                m_client->deleteLater();
            m_client = socket;
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
                m_received += socket->readAll();
                emit bytesReceived();
            });
            emit clientConnected();
        }
    });
    connect(&m_file, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *socket = m_file.nextPendingConnection()) {
            if (m_fileClient)
                m_fileClient->deleteLater();
            m_fileClient = socket;
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { m_fileReceived += socket->readAll(); });
            emit fileClientConnected();
        }
    });
    listenAgain();
}

bool FakeDevice::listenAgain()
{
    bool ok = m_command.listen(m_address, m_port);
    m_port = m_command.serverPort();
    if (m_withFilePort && !m_file.isListening())
        ok = m_file.listen(m_address, 6666) && ok;
    return ok;
}

QByteArray FakeDevice::takeReceived()
{
    QByteArray bytes = m_received;
    m_received.clear();
    return bytes;
}

bool FakeDevice::waitForReceived(int bytes, int timeoutMs)
{
    return QTest::qWaitFor([&] { return m_received.size() >= bytes; }, timeoutMs);
}

void FakeDevice::reply(const QByteArray &bytes)
{
    if (m_client) {
        m_client->write(bytes);
        m_client->flush();
    }
}

void FakeDevice::replyOnFile(const QByteArray &bytes)
{
    if (m_fileClient) {
        m_fileClient->write(bytes);
        m_fileClient->flush();
    }
}

void FakeDevice::dropClient()
{
    if (m_client)
        m_client->abort();
    if (m_fileClient)
        m_fileClient->abort();
}

void FakeDevice::stopListening()
{
    m_command.close();
    m_file.close();
    dropClient();
}
