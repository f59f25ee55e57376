#pragma once

#include "simstate.h"
#include "uploadreceiver.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

// Reads one "{param=...}" command, applies it to the device's state and says
// what the device answers. A command that fails any check is ignored as a
// whole, as the firmware does. Holds no state of its own: one is made for
// each command, over the device's state and its file port.
class CommandInterpreter
{
public:
    struct Outcome
    {
        QList<QByteArray> frames; // written back to back, in this order
        bool understood = false;  // a command the device knows, even if silent
        bool uploadDone = false;  // "{param=Done}": acknowledge on the file port
        QByteArray note;          // state no frame reports, one line for the verbose log
        std::optional<UploadReceiver::Upload> upload; // the transfer this "{param=Done}" ended, if taken
    };

    CommandInterpreter(SimState &state, UploadReceiver &uploads);

    // command is one whole "{param=...}" text as cut from the stream.
    Outcome handle(const QByteArray &command);

    // A routing command as the device reads one: {param=<i>VIDEO<o>}, AUDIO or IR,
    // with port numbers of up to five digits (whether the ports exist is checked later).
    static bool isSwitch(const QByteArray &command);

private:
    Outcome handleBody(const QString &body);
    Outcome handleSwitch(int input, const QString &layer, int output);
    Outcome handleNetwork(const QString &fields);
    Outcome handleSilentSetting(const QString &body);
    Outcome finishTransfer();

    SimState &m_state;
    UploadReceiver &m_uploads;
};
