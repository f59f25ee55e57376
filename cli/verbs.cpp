// The device verbs of orvexctl: argument checks first (naming the wrong one),
// then one exchange with the device through the same link and model as the window.
#include "cli/verbs.h"

#include "device/commandtext.h"
#include "device/devicestate.h"

#include <QFile>
#include <QJsonObject>

#include <cstdio>

namespace {

constexpr Reply VersionReply = &MessageDistance::receiveVersionSig;
constexpr Reply VideoMapReply = &MessageDistance::receiveVideoMapSig;
constexpr Reply AudioMapReply = &MessageDistance::receiveAudioMapSig;
constexpr Reply IrMapReply = &MessageDistance::receiveIrMapSig;
constexpr Reply VolumeReply = &MessageDistance::receiveVolumnImformationSig;
constexpr Reply OutResolutionReply = &MessageDistance::receiveOutChannelResolutionMapSig;

// How long a switch or a recall may stay unanswered before the maps are read back:
// the device answers within milliseconds, so silence means it did not act.
constexpr int SilenceMs = 1000;

} // namespace

namespace {


// The named parts of the record's JSON, as one line.
QJsonObject part(const DeviceRecord &record, const QStringList &keys)
{
    const QJsonObject state = DeviceState::toJson(record);
    QJsonObject line;
    for (const QString &key : keys)
        line.insert(key, state.value(key));
    return line;
}

// A command the device does not answer, followed by a query it does: its
// answer shows the command went through, the device taking commands in order.
int sendUnanswered(const Target &target, const std::function<QString(int)> &check,
                   const std::function<void(MessageDistance &)> &send, const QJsonObject &line)
{
    Exchange exchange(target);
    if (const std::optional<int> refused = refuseOutOfModel(exchange, check))
        return *refused;
    const Exchange::Outcome outcome = exchange.round({VersionReply}, [&](MessageDistance &link) {
        send(link);
        link.sendVersionQuery();
    });
    if (outcome != Exchange::Answered)
        return exitStatus(outcome);
    printLine(line);
    return 0;
}

} // namespace

int runStatus(const Target &target)
{
    Exchange exchange(target);
    const Exchange::Outcome outcome = exchange.round(
        {VersionReply, VideoMapReply, AudioMapReply, IrMapReply, &MessageDistance::receiveInputChannelStateSig,
         &MessageDistance::receiveInChannelResolutionMapSig, &MessageDistance::receiveNetWorkImforamtionSig,
         OutResolutionReply, VolumeReply},
        [](MessageDistance &link) {
            // The main window's refresh, plus the volumes it asks for separately.
            DeviceModel::requestState(&link);
            link.sendVolumeQuery();
        });
    if (outcome != Exchange::Answered)
        return exitStatus(outcome);
    printLine(DeviceState::toJson(exchange.record()));
    return 0;
}

// ---- route ------------------------------------------------------------------

namespace {

// What a switch kind answers with, and under which name of the record's JSON that map is.
struct RouteKind
{
    int kind;
    Reply reply;
    const char *mapName;
};

const RouteKind VideoRoute{DeviceModel::Video, VideoMapReply, "video"};
const RouteKind AudioRoute{DeviceModel::Audio, AudioMapReply, "audio"};
const RouteKind IrRoute{DeviceModel::Ir, IrMapReply, "ir"};
const RouteKind WallRoute{DeviceModel::Wall, VideoMapReply, "video"};

const RouteKind &routeKind(const QString &flag)
{
    return flag == "--audio" ? AudioRoute : flag == "--ir" ? IrRoute : flag == "--wall" ? WallRoute : VideoRoute;
}

} // namespace

// Why INPUT or OUTPUT cannot be switched on a device with `ports` ports; empty when they can.
QString routeError(const QString &kindFlag, int input, int output, int ports)
{
    const QString range = QStringLiteral("(1..%1)").arg(ports);
    if (input > ports)
        return QStringLiteral("INPUT %1 is not an input %2").arg(input).arg(range);
    const RouteKind &route = routeKind(kindFlag);
    if (&route == &WallRoute)
        return QString();  // the wall is one output, whatever OUTPUT says
    // Audio outputs also address the HDMI audio of output k as 100 + k.
    if (&route == &AudioRoute && output > 100 && output - 100 <= ports)
        return QString();
    if (output > ports)
        return QStringLiteral("OUTPUT %1 is not an output %2%3")
            .arg(output)
            .arg(range, &route == &AudioRoute ? QStringLiteral(" or HDMI audio (101..%1)").arg(100 + ports) : QString());
    return QString();
}

namespace {

// The first output the switch should have changed and did not; 0 when it took.
int unswitchedOutput(const RouteKind &route, int input, int output, const DeviceRecord &record)
{
    const QMap<int, int> map = DeviceState::routesOf(record, route.kind);
    for (int k : DeviceState::switchedOutputs(record, route.kind, output)) {
        if (map.value(k, -1) != input)
            return k;
    }
    return 0;
}

} // namespace

int runRoute(const Target &target, const QString &kindFlag, int input, int output)
{
    const RouteKind &route = routeKind(kindFlag);
    Exchange exchange(target);
    // The model first: an ORXM100 has one port less than the check before connecting allowed.
    if (const std::optional<int> refused =
            refuseOutOfModel(exchange, [&](int ports) { return routeError(kindFlag, input, output, ports); }))
        return *refused;
    Exchange::Outcome outcome =
        exchange.round({route.reply}, [&](MessageDistance &link) { link.sendSwitch(input, output, route.kind); }, SilenceMs);
    // A switch the device ignored: its maps say what it routes instead.
    if (outcome == Exchange::Unanswered)
        outcome = exchange.round({VideoMapReply, AudioMapReply, IrMapReply}, [](MessageDistance &link) { link.sendStatusQuery(); });
    if (outcome != Exchange::Answered)
        return exitStatus(outcome);
    QJsonObject line = part(exchange.record(), {route.mapName});
    // The join mode travels with the video map.
    if (route.reply == VideoMapReply)
        line.insert("mode", exchange.record().joinMode());
    printLine(line);
    if (const int unswitched = unswitchedOutput(route, input, output, exchange.record())) {
        std::fprintf(stderr, "orvexctl: the device did not switch input %d to %s output %d\n", input, route.mapName,
                     unswitched);
        return ExitNotApplied;
    }
    return 0;
}

// ---- settings ---------------------------------------------------------------

QString portError(const char *name, int value, int ports)
{
    return value > ports ? QStringLiteral("%1 %2 is not a port (1..%3)").arg(name).arg(value).arg(ports) : QString();
}

int runPattern(const Target &target, bool output, int port, int pattern)
{
    return sendUnanswered(
        target, [&](int ports) { return portError("PORT", port, ports); },
        [&](MessageDistance &link) { output ? link.sendOutputPattern(port, pattern) : link.sendInputPattern(port, pattern); },
        {{output ? "output" : "input", port}, {"pattern", pattern}});
}

int runEdidCopy(const Target &target, int input, int output)
{
    return sendUnanswered(
        target,
        [&](int ports) {
            const QString wrongInput = portError("IN", input, ports);
            return wrongInput.isEmpty() ? portError("OUT", output, ports) : wrongInput;
        },
        [&](MessageDistance &link) { link.sendCopyEdid(input, output); }, {{"edid", input}, {"copyOf", output}});
}

int runPreset(const Target &target, bool save, int preset)
{
    if (save)
        return sendUnanswered(target, [](int) { return QString(); }, [&](MessageDistance &link) { link.sendSavePreset(preset); },
                              {{"preset", preset}, {"saved", true}});
    Exchange exchange(target);
    const Exchange::Outcome outcome = exchange.round(
        {VideoMapReply, AudioMapReply, IrMapReply}, [&](MessageDistance &link) { link.sendRecallPreset(preset); }, SilenceMs);
    if (outcome == Exchange::Unanswered) {
        std::fprintf(stderr, "orvexctl: preset %d recalled nothing (a slot never saved?)\n", preset);
        return ExitNotApplied;
    }
    if (outcome != Exchange::Answered)
        return exitStatus(outcome);
    QJsonObject line = part(exchange.record(), {"video", "audio", "ir"});
    line.insert("preset", preset);
    line.insert("mode", exchange.record().joinMode());
    printLine(line);
    return 0;
}

// Sets or toggles one port's volume; the device answers with all volumes.
int runVolume(const Target &target, int port, std::optional<int> level)
{
    Exchange exchange(target);
    if (const std::optional<int> refused = refuseOutOfModel(exchange, [&](int ports) { return portError("PORT", port, ports); }))
        return *refused;
    const Exchange::Outcome outcome = exchange.round({VolumeReply}, [&](MessageDistance &link) {
        if (level)
            link.sendVolume(port, *level);
        else
            link.sendMute(port);
    });
    if (outcome != Exchange::Answered)
        return exitStatus(outcome);
    QJsonObject line = part(exchange.record(), {"volume"});
    const int now = exchange.record().volumeMap().value(port, -1);
    if (!level)
        line.insert("muted", now == 0);  // a muted port reads 0
    printLine(line);
    if (level && now != *level) {
        std::fprintf(stderr, "orvexctl: port %d reads volume %d, not %d\n", port, now, *level);
        return ExitNotApplied;
    }
    return 0;
}

int runResolution(const Target &target, int port, const QString &resolution)
{
    Exchange exchange(target);
    if (const std::optional<int> refused = refuseOutOfModel(exchange, [&](int ports) { return portError("PORT", port, ports); }))
        return *refused;
    const Exchange::Outcome outcome =
        exchange.round({OutResolutionReply}, [&](MessageDistance &link) { link.sendPortResolution(port, resolution); });
    if (outcome != Exchange::Answered)
        return exitStatus(outcome);
    printLine(part(exchange.record(), {"outputResolution"}));
    const QString now = exchange.record().outputResolutionMap().value(port);
    if (now != resolution) {
        std::fprintf(stderr, "orvexctl: output %d reads %s, not %s\n", port, qPrintable(now), qPrintable(resolution));
        return ExitNotApplied;
    }
    return 0;
}

int runEdidUpload(const Target &target, int input, const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "orvexctl: FILE %s cannot be read: %s\n", qPrintable(path), qPrintable(file.errorString()));
        return ExitFailure;
    }
    const QByteArray edid = file.readAll();
    Exchange exchange(target);
    if (const std::optional<int> refused = refuseOutOfModel(exchange, [&](int ports) { return portError("IN", input, ports); }))
        return *refused;
    const Exchange::Outcome outcome = exchange.upload(CommandText::updateEdid(input), edid);
    if (outcome != Exchange::Answered)
        return exitStatus(outcome);
    printLine({{"edid", input}, {"bytes", edid.size()}});
    return 0;
}

std::optional<int> refuseOutOfModel(Exchange &exchange, const std::function<QString(int ports)> &error)
{
    const Exchange::Outcome outcome = exchange.round({VersionReply}, [](MessageDistance &link) { link.sendVersionQuery(); });
    if (outcome != Exchange::Answered)
        return exitStatus(outcome);
    const QString reason = error(DeviceState::modelPorts(exchange.record().modelFlag()));
    if (reason.isEmpty())
        return std::nullopt;
    std::fprintf(stderr, "orvexctl: %s on this %s, nothing sent\n", qPrintable(reason),
                 qPrintable(exchange.record().modelType()));
    return ExitFailure;
}

bool needsGui(const QString &verb)
{
    return verb == "caption" || verb == "logo";
}
