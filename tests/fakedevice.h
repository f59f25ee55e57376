#pragma once

#include <QByteArray>
#include <QHostAddress>
#include <QObject>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>

// An in-process stand-in for the switcher: a command port on an ephemeral port and,
// optionally, the file port 6666, both on one loopback address of the test's own.
class FakeDevice : public QObject
{
    Q_OBJECT

public:
    explicit FakeDevice(const QHostAddress &address, bool withFilePort = true, QObject *parent = nullptr);

    bool isListening() const { return m_command.isListening(); }
    quint16 port() const { return m_port; }
    QString host() const { return m_address.toString(); }

    // Everything the client wrote on the command port since the last take.
    QByteArray received() const { return m_received; }
    QByteArray takeReceived();
    bool waitForReceived(int bytes, int timeoutMs = 3000);

    void reply(const QByteArray &bytes);
    // The file port (6666): what the client wrote on it, and answers to it.
    QByteArray fileReceived() const { return m_fileReceived; }
    void replyOnFile(const QByteArray &bytes);
    void dropClient();
    void stopListening();
    bool listenAgain();
    bool hasClient() const { return m_client; }
    bool hasFileClient() const { return m_fileClient; }

signals:
    void clientConnected();
    void fileClientConnected();
    void bytesReceived();

private:
    QHostAddress m_address;
    QTcpServer m_command;
    QTcpServer m_file;
    bool m_withFilePort;
    quint16 m_port = 0;
    QPointer<QTcpSocket> m_client;
    QPointer<QTcpSocket> m_fileClient;
    QByteArray m_received;
    QByteArray m_fileReceived;
};
