#pragma once

#include "commandinterpreter.h"
#include "simstate.h"
#include "uploadreceiver.h"

#include <QByteArray>

// The switcher as seen through its command port and its file port: its state,
// the commands it takes and the files it keeps. No sockets here; the servers
// feed it commands and file bytes and write back what it returns.
class SimDevice
{
public:
    using UploadKind = UploadReceiver::Kind;
    using Upload = UploadReceiver::Upload;
    using Outcome = CommandInterpreter::Outcome;

    explicit SimDevice(SimModel model = SimModel::Orxm200);

    SimModel model() const { return m_state.model(); }
    int ports() const { return m_state.ports(); }

    // command is one whole "{param=...}" text as cut from the stream.
    Outcome handle(const QByteArray &command);

    // The file connection's bytes; see UploadReceiver.
    void receiveFile(const QByteArray &bytes) { m_uploads.receive(bytes); }
    void startTransfer() { m_uploads.start(); }

    // State that no reply frame reports, for tests and the verbose log.
    // Out-of-range ports read as 0 / empty.
    int inputPattern(int port) const { return m_state.inputPatterns.value(port - 1); }
    int outputPattern(int port) const { return m_state.outputPatterns.value(port - 1); }
    bool isMuted(int port) const { return m_state.muted.value(port - 1); }
    int audioMode(int output) const { return m_state.audioModes.value(m_state.audioIndex(output)); } // 1: analog
    QByteArray inputEdid(int input) const { return m_state.inputEdids.value(input - 1); }
    QByteArray outputEdid(int output) const { return m_state.outputEdid(output); }
    QByteArray lastUpload(UploadKind kind, int port) const { return m_uploads.lastUpload(kind, port); }

private:
    SimState m_state;
    UploadReceiver m_uploads;
};
