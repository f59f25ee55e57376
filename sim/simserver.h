#pragma once

#include "commandcutter.h"
#include "filechannel.h"
#include "simdevice.h"
#include "uploadsaver.h"

#include <QHash>
#include <QHostAddress>
#include <QObject>
#include <QTcpServer>

class QTcpSocket;

struct SimOptions
{
    QHostAddress host = QHostAddress::LocalHost;
    quint16 port = 8000;
    SimModel model = SimModel::Orxm200;
    bool filePort = true;
    bool finalAck = true;     // answer "{param=Done}" on the file connection
    bool junk = false;        // random non-JSON bytes between reply frames
    int dropAfter = 0;        // close a command connection after this many commands; 0: never
    bool verbose = false;     // log every received command, and the state it changed, to stderr
    bool broadcast = false;   // replies go to every connected client
    QString saveUploadsDir;   // every finished upload is written here as a file; empty: not kept
    // Floods, on every command connection as soon as it is accepted; at most one of the two.
    qint64 floodBytes = 0;    // this many random bytes
    qint64 floodFrames = 0;   // this many volume frames back to back
    bool badAck = false;      // the file port answers with garbage instead of "<ACK_1>\r\n"
    bool silentFilePort = false; // the file port accepts and never answers
    qint64 dropFileAfter = 0; // close a file connection after this many bytes; 0: never
    int loseEvery = 0;        // ignore every n-th switch command, unanswered; 0: never
    int fileQuietMs = 1;      // the wait for more of a file whose length its header does not give
};

// The command port plus the file port, both serving one shared device.
class SimServer : public QObject
{
    Q_OBJECT

public:
    explicit SimServer(const SimOptions &options, QObject *parent = nullptr);
    ~SimServer() override;

    // Opens both ports; on failure errorString() says which and why.
    bool listen();
    QString errorString() const { return m_error; }
    quint16 commandPort() const { return m_commandServer.serverPort(); }
    // The device behind both ports, e.g. for a test to read an uploaded EDID.
    const SimDevice &device() const { return m_device; }

signals:
    // The lines --verbose writes to stderr (one command and its note, a flood's end, a
    // dropped file connection), emitted with or without it.
    void logged(const QByteArray &lines);

private:
    struct Session
    {
        CommandCutter cutter;
        int commands = 0;
        bool closing = false;
    };

    void onNewConnection();
    void onReadyRead(QTcpSocket *socket);
    void log(const QByteArray &lines);
    QByteArray junk() const;

    SimOptions m_options;
    SimDevice m_device;
    QTcpServer m_commandServer;
    FileChannel m_files;
    QHash<QTcpSocket *, Session> m_sessions;
    UploadSaver m_saver;
    QString m_error;
    int m_switches = 0;       // switch commands received, for --lose-every
};
