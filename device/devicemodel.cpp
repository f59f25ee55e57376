#include "device/devicemodel.h"

#include "device/devicestate.h"
#include "device/messagedistance.h"

namespace {
bool sameOverlay(const OverlayRecord &a, const OverlayRecord &b)
{
    return a.enabled == b.enabled && a.speed == b.speed && a.textColor == b.textColor
            && a.positionX == b.positionX && a.positionY == b.positionY
            && a.backgroundEnabled == b.backgroundEnabled && a.backgroundColor == b.backgroundColor
            && a.direction == b.direction;
}
// Stores `value` through `set` and emits `changed` only when it differs from `get`.
template<typename Value, typename Get, typename Set, typename Changed>
void replaceIfChanged(DeviceRecord *record, DeviceModel *model, const Value &value, Get get, Set set, Changed changed)
{
    if ((record->*get)() == value)
        return;
    (record->*set)(value);
    emit (model->*changed)();
}
} // namespace

DeviceModel::DeviceModel(DeviceRecord *record, QObject *parent)
    : QObject(parent)
    , m_record(record ? record : new DeviceRecord)
    , m_ownsRecord(!record)
{
}

DeviceModel::~DeviceModel()
{
    if (m_ownsRecord)
        delete m_record;
}

void DeviceModel::apply(ReplySignal signal, const QJsonObject &reply)
{
    DeviceRecord *r = m_record;
    switch (signal) {
    case ReplySignal::Version: {
        const int flag = r->modelFlag();
        const QString fpga = r->fpgaVersion(), mcu = r->mcuVersion(), type = r->modelType();
        DeviceState::storeVersion(r, reply);
        if (r->modelFlag() != flag)
            emit modelChanged(r->modelFlag());
        if (r->fpgaVersion() != fpga || r->mcuVersion() != mcu || r->modelType() != type)
            emit versionsChanged();
        break;
    }
    case ReplySignal::VideoMap: {
        const int mode = r->joinMode();
        setVideoMap(DeviceState::routeMap(reply, "video", r->modelFlag()));
        r->setJoinMode(reply.value("mode").toVariant().toInt());
        if (r->joinMode() != mode)
            emit joinModeChanged(r->joinMode());
        emit mapReported(Video);
        break;
    }
    case ReplySignal::AudioMap:
        replaceIfChanged(r, this, DeviceState::routeMap(reply, "audio", r->modelFlag()), &DeviceRecord::audioMap, &DeviceRecord::setAudioMap,
                         &DeviceModel::audioMapChanged);
        emit mapReported(Audio);
        break;
    case ReplySignal::IrMap:
        replaceIfChanged(r, this, DeviceState::routeMap(reply, "IR", r->modelFlag()), &DeviceRecord::irMap, &DeviceRecord::setIrMap,
                         &DeviceModel::irMapChanged);
        emit mapReported(Ir);
        break;
    case ReplySignal::InputState:
        replaceIfChanged(r, this, DeviceState::signalMap(reply), &DeviceRecord::inputSignalMap, &DeviceRecord::setInputSignalMap,
                         &DeviceModel::inputSignalsChanged);
        break;
    case ReplySignal::InResolution:
        // "noinput" stays as the text of an input without signal.
        replaceIfChanged(r, this, DeviceState::textMap(reply, "in"), &DeviceRecord::inputResolutionMap,
                         &DeviceRecord::setInputResolutionMap, &DeviceModel::inputResolutionsChanged);
        break;
    case ReplySignal::OutResolution:
        replaceIfChanged(r, this, DeviceState::textMap(reply, "out"), &DeviceRecord::outputResolutionMap, &DeviceRecord::setOutputResolutionMap,
                         &DeviceModel::outputResolutionsChanged);
        break;
    case ReplySignal::NetWork: {
        const QStringList before{r->netIp(), r->netGateway(), r->netSubnet(), r->netMac()};
        DeviceState::storeNetwork(r, reply);
        if (before != QStringList{r->netIp(), r->netGateway(), r->netSubnet(), r->netMac()})
            emit networkChanged();
        break;
    }
    case ReplySignal::Volume:
        replaceIfChanged(r, this, DeviceState::intMap(reply, "Volume"), &DeviceRecord::volumeMap, &DeviceRecord::setVolumeMap,
                         &DeviceModel::volumesChanged);
        break;
    case ReplySignal::Title: {
        // OSD replies arrive here too and land in the caption record.
        const OverlayRecord overlay = DeviceState::overlayFromReply(reply);
        if (!sameOverlay(overlay, r->captionRecord())) {
            r->setCaptionRecord(overlay);
            emit captionChanged();
        }
        break;
    }
    }
}

void DeviceModel::applyOsd(int port, const QJsonObject &reply)
{
    QMap<int, OverlayRecord> records = m_record->osdRecords();
    const OverlayRecord overlay = DeviceState::overlayFromReply(reply);
    if (records.contains(port) && sameOverlay(records.value(port), overlay))
        return;
    records.insert(port, overlay);
    m_record->setOsdRecords(records);
    emit osdChanged(port);
}

void DeviceModel::recordSwitch(int input, int output, int kind)
{
    if (kind != Video && kind != Wall)
        return;  // audio and IR cells wait for the device's map
    // The whole joined wall shows the one input.
    QMap<int, int> video = m_record->videoMap();
    for (int k : DeviceState::switchedOutputs(*m_record, kind, output))
        video.insert(k, input);
    setVideoMap(video);
}

void DeviceModel::recordJoinMode(int mode)
{
    if (mode < 0 || mode > 6 || mode == m_record->joinMode())
        return;
    m_record->setJoinMode(mode);
    emit joinModeChanged(mode);
}

void DeviceModel::setVideoMap(const QMap<int, int> &map)
{
    replaceIfChanged(m_record, this, map, &DeviceRecord::videoMap, &DeviceRecord::setVideoMap,
                     &DeviceModel::videoMapChanged);
}

void DeviceModel::attach(MessageDistance *link)
{
    const struct { void (MessageDistance::*signal)(QJsonObject); ReplySignal kind; } replies[] = {
        {&MessageDistance::receiveVersionSig, ReplySignal::Version},
        {&MessageDistance::receiveInputChannelStateSig, ReplySignal::InputState},
        {&MessageDistance::receiveNetWorkImforamtionSig, ReplySignal::NetWork},
        {&MessageDistance::receiveVideoMapSig, ReplySignal::VideoMap},
        {&MessageDistance::receiveAudioMapSig, ReplySignal::AudioMap},
        {&MessageDistance::receiveIrMapSig, ReplySignal::IrMap},
        {&MessageDistance::receiveInChannelResolutionMapSig, ReplySignal::InResolution},
        {&MessageDistance::receiveOutChannelResolutionMapSig, ReplySignal::OutResolution},
        {&MessageDistance::receiveTitleImfSig, ReplySignal::Title},
        {&MessageDistance::receiveVolumnImformationSig, ReplySignal::Volume},
    };
    for (const auto &reply : replies) {
        const ReplySignal kind = reply.kind;
        connect(link, reply.signal, this, [this, kind](const QJsonObject &object) { apply(kind, object); });
    }
    connect(link, &MessageDistance::receiveOsdImfSig, this, &DeviceModel::applyOsd);
}

void DeviceModel::requestState(MessageDistance *link)
{
    link->sendVersionQuery();
    link->sendStatusQuery();
    link->sendInputInfoQuery();
    link->sendNetInfoQuery();
    link->sendResolutionQuery();
}
