#include "device/routeconfirmer.h"

#include "device/devicemodel.h"
#include "device/devicestate.h"
#include "device/messagedistance.h"

#include <QDebug>


namespace {
// How long after the last switch the device is asked for its maps.
constexpr int VerifyDelayMs = 400;

const char *layerName(int kind)
{
    switch (kind) {
    case DeviceModel::Audio: return "audio";
    case DeviceModel::Ir: return "ir";
    default: return "video";
    }
}
} // namespace

RouteConfirmer::RouteConfirmer(DeviceModel *model, MessageDistance *link, QObject *parent)
    : QObject(parent)
    , m_model(model)
    , m_link(link)
{
    m_verifyTimer.setSingleShot(true);
    m_verifyTimer.setInterval(VerifyDelayMs);
    connect(&m_verifyTimer, &QTimer::timeout, this, &RouteConfirmer::sendFence);
    // Straight after the model took a map in: a switch recorded locally later must not
    // be read as the device's answer. The fence's version answer comes after the status
    // answer it follows, in the order the link announced them.
    connect(model, &DeviceModel::mapReported, this, &RouteConfirmer::mapArrived);
    connect(link, &MessageDistance::receiveVersionSig, this, [this] { fenceArrived(); });
}

int RouteConfirmer::reported(int kind, int output) const
{
    return DeviceState::routesOf(m_model->record(), kind).value(output, 0);
}

void RouteConfirmer::switched(int input, int output, int kind)
{
    // The wall's one picture covers every joined output of the video layer.
    const QList<int> outputs = DeviceState::switchedOutputs(m_model->record(), kind, output);
    if (kind == DeviceModel::Wall)
        kind = DeviceModel::Video;
    for (int out : qAsConst(outputs)) {
        const int previous = m_pending.contains(key(kind, out)) ? m_pending.value(key(kind, out)).previous
                                                                : reported(kind, out);
        m_pending.insert(key(kind, out), {input, previous, m_fencesSent, m_undoing});
    }
    m_verifyTimer.start();
    emit pendingChanged();
}

void RouteConfirmer::mapArrived(int kind)
{
    const DeviceRecord &device = m_model->record();
    QMap<int, int> &last = kind == DeviceModel::Audio ? m_lastAudio : kind == DeviceModel::Ir ? m_lastIr : m_lastVideo;
    const QMap<int, int> now = DeviceState::routesOf(device, kind);
    bool changed = false;
    for (auto it = now.begin(); it != now.end(); ++it) {
        const int output = it.key();
        const auto pending = m_pending.find(key(kind, output));
        if (pending != m_pending.end() && pending->input == it.value()) {
            record(kind, output, pending->previous, it.value(), true, !pending->undo);
            m_pending.erase(pending);
            changed = true;
        } else if (pending == m_pending.end() && last.contains(output) && last.value(output) != it.value()) {
            record(kind, output, last.value(output), it.value(), false, false);  // another client, or the device itself
        }
    }
    last = now;
    if (changed)
        emit pendingChanged();
}

void RouteConfirmer::sendFence()
{
    if (m_pending.isEmpty())
        return;
    m_link->sendStatusQuery();
    m_link->sendVersionQuery();
    ++m_fencesSent;
}

void RouteConfirmer::fenceArrived()
{
    if (m_fencesAnswered >= m_fencesSent)
        return;  // a version answer nobody here asked for
    ++m_fencesAnswered;
    bool changed = false;
    for (auto it = m_pending.begin(); it != m_pending.end();) {
        if (it->fence >= m_fencesAnswered) {
            ++it;
            continue;
        }
        const int kind = it.key() / 1000;
        const int output = it.key() % 1000;
        qDebug() << "route not applied:" << layerName(kind) << output << "wanted" << it->input << "device shows"
                 << reported(kind, output);
        emit failed(kind, output, it->input, reported(kind, output));
        it = m_pending.erase(it);
        changed = true;
    }
    if (changed)
        emit pendingChanged();
    if (!m_pending.isEmpty())
        m_verifyTimer.start();
}

void RouteConfirmer::record(int kind, int output, int from, int to, bool local, bool undoable)
{
    qDebug() << "route change:" << layerName(kind) << output << from << "->" << to << (local ? "(here)" : "(device)");
    m_history.append({QDateTime::currentDateTime(), kind, output, from, to, local, undoable});
    if (m_history.size() > HistoryLimit)
        m_history.removeFirst();
    emit historyChanged();
}

bool RouteConfirmer::undo()
{
    for (int i = m_history.size() - 1; i >= 0; --i) {
        Change &change = m_history[i];
        if (!change.undoable)
            continue;
        change.undoable = false;  // undone once: the next undo goes further back
        m_undoing = true;
        m_link->sendSwitch(change.from, change.output, change.kind);
        switched(change.from, change.output, change.kind);
        if (change.kind == DeviceModel::Video)
            m_model->recordSwitch(change.from, change.output, DeviceModel::Video);
        m_undoing = false;
        return true;
    }
    return false;
}
