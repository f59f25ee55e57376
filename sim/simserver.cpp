#include "simserver.h"

#include "faults.h"

#include <QRandomGenerator>
#include <QTcpSocket>

#include <cstdio>

namespace {

QString endpoint(const QHostAddress &host, quint16 port)
{
    const QString address = host.protocol() == QAbstractSocket::IPv6Protocol
        ? QLatin1Char('[') + host.toString() + QLatin1Char(']')
        : host.toString();
    return address + QLatin1Char(':') + QString::number(port);
}

// One line per command, even when the peer sent control bytes inside braces.
QByteArray printable(const QByteArray &bytes)
{
    QByteArray text;
    for (char c : bytes) {
        if (c >= ' ' && c <= '~')
            text += c;
        else
            text += "\\x" + QByteArray::number(static_cast<uchar>(c), 16).rightJustified(2, '0');
    }
    return text;
}

} // namespace

SimServer::SimServer(const SimOptions &options, QObject *parent)
    : QObject(parent)
    , m_options(options)
    , m_device(options.model)
    , m_saver(options.saveUploadsDir)
{
    connect(&m_commandServer, &QTcpServer::newConnection, this, &SimServer::onNewConnection);
    connect(&m_files, &FileChannel::clientAdopted, this, [this] { m_device.startTransfer(); });
    connect(&m_files, &FileChannel::received, this, [this](const QByteArray &bytes) { m_device.receiveFile(bytes); });
    connect(&m_files, &FileChannel::logged, this, &SimServer::log);
    m_files.setFaults({options.badAck, options.silentFilePort, options.dropFileAfter});
    m_files.setQuietInterval(options.fileQuietMs);
}

bool SimServer::listen()
{
    if (!m_commandServer.listen(m_options.host, m_options.port)) {
        m_error = QStringLiteral("cannot listen for commands on %1: %2")
                      .arg(endpoint(m_options.host, m_options.port), m_commandServer.errorString());
        return false;
    }
    if (m_options.filePort && !m_files.listen(m_options.host)) {
        m_error = QStringLiteral("cannot listen for files on %1: %2")
                      .arg(endpoint(m_options.host, FileChannel::Port), m_files.errorString());
        m_commandServer.close();
        return false;
    }
    const QString files = m_options.filePort
        ? QStringLiteral("files on %1").arg(endpoint(m_options.host, FileChannel::Port))
        : QStringLiteral("no file port");
    const QByteArray line = QStringLiteral("listening on %1, %2\n")
                                .arg(endpoint(m_options.host, commandPort()), files)
                                .toLocal8Bit();
    // stdout is a pipe when a test starts us: flush, or the line sits in the buffer.
    std::fputs(line.constData(), stdout);
    std::fflush(stdout);
    return true;
}

SimServer::~SimServer()
{
    // The sockets belong to the listening server, which outlives the session table:
    // close them first, so their disconnect handlers never see a destroyed table.
    const QList<QTcpSocket *> sockets = m_sessions.keys();
    for (QTcpSocket *socket : sockets) {
        socket->disconnect(this);
        delete socket;
    }
}

void SimServer::onNewConnection()
{
    while (QTcpSocket *socket = m_commandServer.nextPendingConnection()) {
        socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        m_sessions.insert(socket, Session());
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { onReadyRead(socket); });
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
            m_sessions.remove(socket);
            socket->deleteLater();
        });
        if (m_options.floodBytes > 0 || m_options.floodFrames > 0) {
            // Any volume frame will do: the query changes nothing.
            const QByteArray frame = m_options.floodFrames > 0 ? m_device.handle("{param=Get_Volume}").frames.value(0)
                                                               : QByteArray();
            auto *flood = new Flood(socket, m_options.floodFrames > 0 ? m_options.floodFrames : m_options.floodBytes, frame);
            connect(flood, &Flood::finished, this, &SimServer::log);
        }
    }
}

void SimServer::onReadyRead(QTcpSocket *socket)
{
    auto session = m_sessions.find(socket);
    if (session == m_sessions.end() || session->closing) {
        socket->readAll();
        return;
    }
    session->cutter.append(socket->readAll());

    // All replies to one read leave in one write, as the device sends them.
    QByteArray out;
    QByteArray command;
    while (session->cutter.next(&command)) {
        // A switch lost on its way: the device neither applies nor answers it.
        if (m_options.loseEvery > 0 && CommandInterpreter::isSwitch(command) && ++m_switches % m_options.loseEvery == 0) {
            log("cmd: " + printable(command) + " (lost)\n");
            continue;
        }
        const SimDevice::Outcome outcome = m_device.handle(command);
        QByteArray line = "cmd: " + printable(command) + (outcome.understood ? "" : " (not understood)") + '\n';
        if (!outcome.note.isEmpty())
            line += outcome.note + '\n';
        log(line);
        // Saved before the closing acknowledgement: a sender that has it finds the file.
        if (outcome.upload && !m_options.saveUploadsDir.isEmpty())
            m_saver.save(*outcome.upload);
        for (const QByteArray &frame : outcome.frames)
            out += (m_options.junk ? junk() : QByteArray()) + frame;
        if (outcome.uploadDone) {
            m_files.endTransfer();
            if (m_options.finalAck)
                m_files.acknowledgeUpload();
        }
        if (m_options.dropAfter > 0 && ++session->commands >= m_options.dropAfter) {
            session->closing = true;
            break;
        }
    }
    // A failed flush can drop the session on the spot: decide before writing.
    const bool drop = session->closing;
    if (!out.isEmpty()) {
        if (m_options.junk)
            out += junk();
        socket->write(out);
        socket->flush();
        if (m_options.broadcast) {
            for (auto other = m_sessions.begin(); other != m_sessions.end(); ++other) {
                if (other.key() != socket && !other->closing) {
                    other.key()->write(out);
                    other.key()->flush();
                }
            }
        }
    }
    // disconnectFromHost() lets the replies already written go out first.
    if (drop)
        socket->disconnectFromHost();
}

void SimServer::log(const QByteArray &lines)
{
    if (m_options.verbose) {
        std::fputs(lines.constData(), stderr);
        std::fflush(stderr);
    }
    emit logged(lines);
}

QByteArray SimServer::junk() const
{
    // Stray bytes between frames, which the application must skip; never a
    // brace, which would start or end a frame.
    static const QByteArray alphabet = QByteArray("abcxyzXYZ0123456789 \r\n\t", 23) + '\0';
    return randomText(alphabet, QRandomGenerator::global()->bounded(1, 9));
}
