#include "faults.h"

#include <QRandomGenerator>
#include <QTcpSocket>
#include <QTimer>

#include <algorithm>

Flood::Flood(QTcpSocket *socket, qint64 count, const QByteArray &frame)
    : QObject(socket)
    , m_socket(socket)
    , m_count(count)
    , m_left(count)
    , m_frame(frame)
{
    connect(socket, &QTcpSocket::bytesWritten, this, &Flood::refill);
    // After the server has wired up the new connection.
    QTimer::singleShot(0, this, &Flood::refill);
}

QByteArray randomText(const QByteArray &alphabet, int size)
{
    QByteArray text;
    text.reserve(size);
    for (int i = 0; i < size; ++i)
        text += alphabet.at(QRandomGenerator::global()->bounded(alphabet.size()));
    return text;
}

QByteArray Flood::randomBytes(int size)
{
    QByteArray bytes((size + 3) / 4 * 4, Qt::Uninitialized);
    auto *words = reinterpret_cast<quint32 *>(bytes.data());
    QRandomGenerator::global()->fillRange(words, bytes.size() / 4);
    bytes.truncate(size);
    return bytes;
}

QByteArray Flood::nextChunk()
{
    if (m_frame.isEmpty()) {
        const int size = int(std::min<qint64>(m_left, ChunkSize));
        m_left -= size;
        return randomBytes(size);
    }
    const int copies = int(std::min<qint64>(m_left, std::max(1, ChunkSize / m_frame.size())));
    m_left -= copies;
    return m_frame.repeated(copies);
}

void Flood::refill()
{
    if (!m_socket || m_socket->state() != QAbstractSocket::ConnectedState)
        return;
    // Topped up from bytesWritten: the client's reading speed sets the pace.
    while (m_left > 0 && m_socket->bytesToWrite() < HighWater)
        m_socket->write(nextChunk());
    if (m_left > 0 || m_socket->bytesToWrite() > 0 || m_finished)
        return;
    m_finished = true;
    emit finished(m_frame.isEmpty()
                      ? "flood: " + QByteArray::number(m_count) + " random bytes sent\n"
                      : "flood: " + QByteArray::number(m_count) + " frames sent, "
                            + QByteArray::number(m_count * m_frame.size()) + " bytes\n");
}

QByteArray FileFaults::acknowledgement(const QByteArray &ack) const
{
    if (silent)
        return QByteArray();
    if (!badAck)
        return ack;
    // As long as the real answer, and never mistaken for it: no '<'.
    return randomText("abcdefghijklmnopqrstuvwxyz0123456789", ack.size());
}
