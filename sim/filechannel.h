#pragma once

#include "faults.h"

#include <QByteArray>
#include <QHostAddress>
#include <QObject>
#include <QPointer>
#include <QTcpServer>
#include <QTimer>

class QTcpSocket;

// The file port: takes one upload connection at a time and paces it the way
// the device does, with one acknowledgement per 500 bytes received and one
// for a shorter last piece as soon as the file is complete: its header (BMP,
// EDID) gives its length. A file that names no length gets the last one once
// the sender has gone quiet.
class FileChannel : public QObject
{
    Q_OBJECT

public:
    static constexpr quint16 Port = 6666;
    static constexpr int PieceSize = 500;
    static const QByteArray Ack;

    explicit FileChannel(QObject *parent = nullptr);
    ~FileChannel() override;

    bool listen(const QHostAddress &host);
    QString errorString() const { return m_server.errorString(); }
    // "{param=Done}" ends a transfer: the next bytes start a file of their own.
    void endTransfer();
    // The closing acknowledgement of a transfer, after "{param=Done}".
    void acknowledgeUpload();
    void setFaults(const FileFaults &faults) { m_faults = faults; }
    void setQuietInterval(int ms) { m_quietTimer.setInterval(ms); }

signals:
    void clientAdopted();
    void received(const QByteArray &bytes);
    void logged(const QByteArray &lines);

private:
    void onNewConnection();
    void adopt(QTcpSocket *socket);
    void onReadyRead();
    void onQuiet();
    void forgetClient();
    void acknowledge();
    void dropClient();
    void learnLength(const QByteArray &bytes);

    QTcpServer m_server;
    QPointer<QTcpSocket> m_client;
    FileFaults m_faults;
    qint64 m_unacknowledged = 0;
    qint64 m_connectionBytes = 0;
    qint64 m_transferBytes = 0;   // of the file in progress
    qint64 m_fileLength = 0;      // as its header gives it; 0: not known
    QByteArray m_head;            // the file's first bytes, until they tell its length or cannot
    QTimer m_quietTimer;
};
