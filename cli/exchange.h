#pragma once

#include "device/devicemodel.h"
#include "device/devicerecord.h"
#include "device/messagedistance.h"

#include <QDeadlineTimer>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <functional>

// Exit statuses shared by every verb.
constexpr int ExitFailure = 2;     // bad arguments, no connection, no answer in time
constexpr int ExitNotApplied = 3;  // the device answered, but its state is not what was asked
constexpr int DefaultDeadlineSeconds = 5;

struct Target
{
    QString host;
    quint16 port = 0;
    int deadlineSeconds = DefaultDeadlineSeconds;
};

// A reply the exchange waits for; the device model reads every reply itself.
using Reply = void (MessageDistance::*)(QJsonObject);

void printLine(const QJsonObject &object);

// Inputs and outputs of each kind; the ORXM100 (model flag 0) has 8, the ORXM200 9.
constexpr int MaxPorts = 9;

// Rounds with the device under one deadline, which also covers connecting (the
// link retries a refused connection every 2 s on its own): each round sends once
// the command connection is up, feeds replies into the device model (the same
// reading as the main window) and waits until each awaited reply has come at
// least once.
class Exchange
{
public:
    // Unanswered: a round with a grace period saw no answer within it (nothing is reported).
    enum Outcome { Answered, Unanswered, TimedOut, Interrupted, Failed };
    // What the loops return when SIGINT or SIGTERM ends the program.
    static constexpr int InterruptedCode = 130;

    explicit Exchange(const Target &target);

    const DeviceRecord &record() const { return m_model.record(); }
    const DeviceModel &model() const { return m_model; }
    MessageDistance &link() { return m_link; }
    const Target &target() const { return m_target; }

    // On a timeout, also reports on stderr. With graceMs >= 0, gives up after
    // that long (within the deadline) with Unanswered and says nothing.
    Outcome round(const QList<Reply> &awaited, const std::function<void(MessageDistance &)> &send, int graceMs = -1);
    // Sends a file on the file port, announced by `command` and closed by
    // "{param=Done}", and waits for the device's closing acknowledgement.
    Outcome upload(const QString &command, const QByteArray &payload);

private:
    // Runs until `done` holds (checked as the event loop turns) or the deadline.
    Outcome waitUntil(const std::function<bool()> &done, const char *what);
    void reportTimeout(const char *what) const;

    Target m_target;
    QDeadlineTimer m_deadline;
    DeviceModel m_model;
    bool m_started = false;
    bool m_sent = false;
    bool m_uploadFailed = false;
    // Last, so that its worker is joined before anything its replies are queued to goes away.
    MessageDistance m_link;
};

// What the program returns for a round that did not end with the answers.
int exitStatus(Exchange::Outcome outcome);
