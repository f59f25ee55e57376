// watch: one JSON line per change of the device model, for scripts, until
// SIGINT or SIGTERM. Each line holds the changed part under the names
// `status` uses; the first lines are the device's whole state.
#include "cli/verbs.h"

#include "device/devicestate.h"

#include <QEventLoop>

namespace {

QJsonObject overlayJson(const OverlayRecord &overlay)
{
    return {{"enabled", overlay.enabled},
            {"speed", overlay.speed},
            {"textColor", overlay.textColor},
            {"x", overlay.positionX},
            {"y", overlay.positionY},
            {"background", overlay.backgroundEnabled},
            {"backgroundColor", overlay.backgroundColor},
            {"direction", overlay.direction}};
}

} // namespace

int runWatch(const Target &target)
{
    Exchange exchange(target);
    const DeviceModel &model = exchange.model();
    auto print = [&model](const QStringList &keys) {
        const QJsonObject state = DeviceState::toJson(model.record());
        QJsonObject line;
        for (const QString &key : keys)
            line.insert(key, state.value(key));
        printLine(line);
    };
    QEventLoop loop;  // the context of the connections below
    const QList<QPair<void (DeviceModel::*)(), QStringList>> parts = {
        {&DeviceModel::versionsChanged, {"model", "fpga", "mcu"}},
        {&DeviceModel::videoMapChanged, {"video"}},
        {&DeviceModel::audioMapChanged, {"audio"}},
        {&DeviceModel::irMapChanged, {"ir"}},
        {&DeviceModel::inputSignalsChanged, {"inputSignal"}},
        {&DeviceModel::inputResolutionsChanged, {"inputResolution"}},
        {&DeviceModel::outputResolutionsChanged, {"outputResolution"}},
        {&DeviceModel::networkChanged, {"network"}},
        {&DeviceModel::volumesChanged, {"volume"}},
    };
    for (const auto &changed : parts)
        QObject::connect(&model, changed.first, &loop, [print, keys = changed.second] { print(keys); });
    QObject::connect(&model, &DeviceModel::modelChanged, &loop, [print] { print({"modelFlag"}); });
    QObject::connect(&model, &DeviceModel::joinModeChanged, &loop, [print] { print({"joinMode"}); });
    QObject::connect(&model, &DeviceModel::captionChanged, &loop,
                     [&model] { printLine({{"caption", overlayJson(model.record().captionRecord())}}); });
    QObject::connect(&model, &DeviceModel::osdChanged, &loop, [&model](int port) {
        printLine({{"osd", port}, {"overlay", overlayJson(model.record().osdRecords().value(port))}});
    });
    auto requestState = [](MessageDistance &link) {
        DeviceModel::requestState(&link);
        link.sendVolumeQuery();
    };
    // Connecting is bounded by --timeout; after that only a signal ends the watch.
    const Exchange::Outcome outcome = exchange.round({}, requestState);
    if (outcome != Exchange::Answered)
        return exitStatus(outcome);
    // After a lost connection, the link reconnects by itself: read everything again.
    QObject::connect(&exchange.link(), &MessageDistance::connectSuccessFulSig, &loop,
                     [&exchange, requestState] { requestState(exchange.link()); });
    loop.exec();
    return 0;
}
