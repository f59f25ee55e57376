#pragma once

#include <QDateTime>
#include <QList>
#include <QMap>
#include <QObject>
#include <QTimer>

class DeviceModel;
class MessageDistance;

// Follows every switch sent from here until the device's maps show it. A
// switch stays pending until a map confirms it; a short while after the last
// switch the device is asked for its maps, with a version query behind them as
// a fence: once that is answered, every switch sent before it has either been
// confirmed or failed. Also keeps the history of route changes and undoes the
// last one made from here.
class RouteConfirmer : public QObject
{
    Q_OBJECT

public:
    struct Change
    {
        QDateTime time;
        int kind;
        int output;
        int from;
        int to;
        bool local;  // made from this window, not seen in a device report
        bool undoable;
    };
    static constexpr int HistoryLimit = 500;

    RouteConfirmer(DeviceModel *model, MessageDistance *link, QObject *parent = nullptr);

    // A switch was sent: input -> output on a layer (DeviceModel::SwitchKind).
    void switched(int input, int output, int kind);
    bool isPending(int kind, int output) const { return m_pending.contains(key(kind, output)); }
    bool hasPending() const { return !m_pending.isEmpty(); }
    // The input a pending switch routes to the output, or -1.
    int pendingInput(int kind, int output) const { return m_pending.value(key(kind, output), {-1, 0, 0, false}).input; }
    QList<Change> history() const { return m_history; }
    // Sends the reverse of the last change made here; false when there is none.
    bool undo();
    void setVerifyDelay(int ms) { m_verifyTimer.setInterval(ms); }

signals:
    void pendingChanged();
    void failed(int kind, int output, int intended, int reported);
    void historyChanged();

private:
    struct Pending
    {
        int input;
        int previous;
        int fence;  // fences sent when the switch went out
        bool undo;
    };
    static int key(int kind, int output) { return kind * 1000 + output; }
    int reported(int kind, int output) const;
    void mapArrived(int kind);
    void fenceArrived();
    void sendFence();
    void record(int kind, int output, int from, int to, bool local, bool undoable);

    DeviceModel *m_model;
    MessageDistance *m_link;
    QMap<int, Pending> m_pending;
    QList<Change> m_history;
    QMap<int, int> m_lastVideo, m_lastAudio, m_lastIr;
    QTimer m_verifyTimer;
    int m_fencesSent = 0;
    int m_fencesAnswered = 0;
    bool m_undoing = false;
};
