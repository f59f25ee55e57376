#include "signalrecorder.h"

#include "device/messagedistance.h"

#include <QDeadlineTimer>
#include <QTest>

SignalRecorder::SignalRecorder(MessageDistance *link, QObject *parent)
    : QObject(parent)
{
#define ORVEX_RECORD(sig) \
    connect(link, &MessageDistance::sig, this, [this](const QJsonObject &o) { record(#sig, o); })
    ORVEX_RECORD(receiveVersionSig);
    ORVEX_RECORD(receiveInputChannelStateSig);
    ORVEX_RECORD(receiveNetWorkImforamtionSig);
    ORVEX_RECORD(receiveVolumnImformationSig);
    ORVEX_RECORD(receiveVideoMapSig);
    ORVEX_RECORD(receiveAudioMapSig);
    ORVEX_RECORD(receiveIrMapSig);
    ORVEX_RECORD(receiveInChannelResolutionMapSig);
    ORVEX_RECORD(receiveOutChannelResolutionMapSig);
    ORVEX_RECORD(receiveTitleImfSig);
#undef ORVEX_RECORD
    connect(link, &MessageDistance::connectFailureSig, this, [this] { record("connectFailureSig"); });
    connect(link, &MessageDistance::connectSuccessFulSig, this, [this] { record("connectSuccessFulSig"); });
    connect(link, &MessageDistance::connectingSig, this, [this] { record("connectingSig"); });
}

void SignalRecorder::record(const QString &name, const QJsonObject &object)
{
    m_events.append({name, object});
}

QStringList SignalRecorder::names() const
{
    QStringList list;
    for (const auto &event : m_events)
        list << event.first;
    return list;
}

QJsonObject SignalRecorder::lastObject(const QString &name) const
{
    for (auto it = m_events.crbegin(); it != m_events.crend(); ++it) {
        if (it->first == name)
            return it->second;
    }
    return QJsonObject();
}

int SignalRecorder::count(const QString &name) const
{
    return int(std::count_if(m_events.cbegin(), m_events.cend(),
                             [&](const auto &event) { return event.first == name; }));
}

bool SignalRecorder::waitFor(const QString &name, int wanted, int timeoutMs)
{
    return QTest::qWaitFor([&] { return count(name) >= wanted; }, timeoutMs);
}
