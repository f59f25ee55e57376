#pragma once

#include <QByteArray>
#include <QObject>
#include <QPointer>

class QTcpSocket;

// `size` bytes drawn at random from `alphabet`.
QByteArray randomText(const QByteArray &alphabet, int size);

// A peer that talks faster than the application reads: a fixed amount of bytes
// or of copies of one frame, written as fast as the client takes them. At most
// HighWater bytes wait in the socket at any time, so the emulator's own memory
// stays flat however large the flood. Owned by its socket.
class Flood : public QObject
{
    Q_OBJECT

public:
    static constexpr int ChunkSize = 64 * 1024;
    static constexpr int HighWater = 256 * 1024;

    // count: bytes of random garbage when frame is empty, else copies of frame.
    Flood(QTcpSocket *socket, qint64 count, const QByteArray &frame);

    // Any byte value, braces included: line noise as the parser would meet it.
    static QByteArray randomBytes(int size);

signals:
    // Once the last byte has been handed to the system.
    void finished(const QByteArray &logLine);

private:
    void refill();
    QByteArray nextChunk();

    QPointer<QTcpSocket> m_socket;
    qint64 m_count;
    qint64 m_left;
    QByteArray m_frame;
    bool m_finished = false;
};

// What the file port does wrong, by the emulator's switches.
struct FileFaults
{
    bool badAck = false;       // every acknowledgement replaced by garbage
    bool silent = false;       // no acknowledgement at all
    qint64 dropAfter = 0;      // close a file connection after this many bytes; 0: never

    // The text sent where "<ACK_1>\r\n" belongs; empty: nothing is sent.
    QByteArray acknowledgement(const QByteArray &ack) const;
};
