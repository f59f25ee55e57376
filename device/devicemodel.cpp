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
        setVideoMap(DeviceState::intMap(reply, "video"));
        r->setJoinMode(reply.value("mode").toVariant().toInt());
        if (r->joinMode() != mode)
            emit joinModeChanged(r->joinMode());
        break;
    }
    case ReplySignal::AudioMap: {
        const QMap<int, int> map = DeviceState::intMap(reply, "audio");
        if (map != r->audioMap()) {
            r->setAudioMap(map);
            emit audioMapChanged();
        }
        break;
    }
    case ReplySignal::IrMap: {
        const QMap<int, int> map = DeviceState::intMap(reply, "IR");
        if (map != r->irMap()) {
            r->setIrMap(map);
            emit irMapChanged();
        }
        break;
    }
    case ReplySignal::InputState: {
        const QMap<int, bool> map = DeviceState::signalMap(reply);
        if (map != r->inputSignalMap()) {
            r->setInputSignalMap(map);
            emit inputSignalsChanged();
        }
        break;
    }
    case ReplySignal::InResolution: {
        // "noinput" stays as the text of an input without signal.
        const QMap<int, QString> map = DeviceState::textMap(reply, "in");
        if (map != r->inputResolutionMap()) {
            r->setInputResolutionMap(map);
            emit inputResolutionsChanged();
        }
        break;
    }
    case ReplySignal::OutResolution: {
        const QMap<int, QString> map = DeviceState::textMap(reply, "out");
        if (map != r->outputResolutionMap()) {
            r->setOutputResolutionMap(map);
            emit outputResolutionsChanged();
        }
        break;
    }
    case ReplySignal::NetWork: {
        const QStringList before{r->netIp(), r->netGateway(), r->netSubnet(), r->netMac()};
        DeviceState::storeNetwork(r, reply);
        if (before != QStringList{r->netIp(), r->netGateway(), r->netSubnet(), r->netMac()})
            emit networkChanged();
        break;
    }
    case ReplySignal::Volume: {
        const QMap<int, int> map = DeviceState::intMap(reply, "Volume");
        if (map != r->volumeMap()) {
            r->setVolumeMap(map);
            emit volumesChanged();
        }
        break;
    }
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
    QMap<int, int> video = m_record->videoMap();
    if (kind == Video) {
        video.insert(output, input);
    } else if (kind == Wall) {
        // The whole joined wall shows the one input.
        const int outputs = DeviceState::jointOutputs(m_record->joinMode(), m_record->modelFlag());
        for (int k = 1; k <= outputs; ++k)
            video.insert(k, input);
    } else {
        return;  // audio and IR cells wait for the device's map
    }
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
    if (map == m_record->videoMap())
        return;
    m_record->setVideoMap(map);
    emit videoMapChanged();
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
