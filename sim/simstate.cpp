#include "simstate.h"

#include "uploadformats.h"

namespace {

constexpr int DefaultVolume = 50;
const QByteArray DefaultResolution = "1920x1080x60Hz";

// A bench setup: most inputs carry a source, a few are left unplugged.
const char *const InputResolutions[] = {
    "1920x1080x60Hz", "1920x1080x60Hz", "1280x720x60Hz",
    "noinput",        "3840x2160x30Hz", "1920x1080x60Hz",
    "noinput",        "1920x1080x50Hz", "noinput",
};

QByteArray numberedMap(const char *key, const QVector<int> &values, int first = 1)
{
    QByteArray members;
    for (int i = 0; i < values.size(); ++i) {
        if (i > 0)
            members += ',';
        members += '"' + QByteArray(key) + QByteArray::number(first + i) + "\":" + QByteArray::number(values[i]);
    }
    return members;
}

QByteArray flag(bool on)
{
    return on ? "true" : "false";
}

} // namespace

SimState::SimState(SimModel model)
    : m_model(model)
    , m_ports(model == SimModel::Orxm100 ? 8 : 9)
{
    for (int i = 0; i < m_ports; ++i)
        inputResolutions << InputResolutions[i];
    factoryReset();
}

std::optional<SimModel> SimState::modelFromName(const QString &name)
{
    if (name == QLatin1String("ORXM200"))
        return SimModel::Orxm200;
    if (name == QLatin1String("ORXM100"))
        return SimModel::Orxm100;
    return std::nullopt;
}

QByteArray SimState::modelName(SimModel model)
{
    return model == SimModel::Orxm100 ? "ORXM100" : "ORXM200";
}

void SimState::factoryReset()
{
    // The network settings survive a reset, so that the device stays reachable.
    routing = Routing();
    routing.video.resize(m_ports);
    for (int i = 0; i < m_ports; ++i)
        routing.video[i] = i + 1;
    routing.audio = routing.video;
    routing.hdmiAudio = routing.video;
    routing.ir = routing.video;
    volumes.fill(DefaultVolume, m_ports);
    muted.fill(false, m_ports);
    audioModes.fill(0, 2 * m_ports);
    inputPatterns.fill(0, m_ports);
    outputPatterns.fill(0, m_ports);
    inputEdids.fill(UploadFormats::edidBlock(0, modelName(m_model)), m_ports);
    outputResolutions.fill(DefaultResolution, m_ports);
    caption = Overlay();
    osds.fill(Overlay(), m_ports);
    selectedOsd = 0;
    presets.clear();
}

QByteArray SimState::outputEdid(int output) const
{
    // The sink on each output is a different display, so copies are told apart.
    return isPort(output) ? UploadFormats::edidBlock(0x100 + output, "ORX OUT " + QByteArray::number(output)) : QByteArray();
}

int SimState::audioIndex(int output) const
{
    if (isPort(output))
        return output - 1;
    return isHdmiAudio(output) ? m_ports + output - 101 : -1;
}

SimState::Overlay &SimState::selectedOverlay()
{
    return selectedOsd == 0 ? caption : osds[selectedOsd - 1];
}

int SimState::jointOutputs() const
{
    // Outputs joined into the wall, per join mode; mode 6 joins every output.
    static const int joined[MaxJoinMode] = {1, 2, 2, 4, 6, 6};
    return routing.mode < MaxJoinMode ? joined[routing.mode] : m_ports;
}

QByteArray SimState::versionFrame() const
{
    return "{\"type\":\"" + modelName(m_model) + "\",\"FPGA\":\"V1.0.5\",\"MCU\":\"V2.0.3\"}";
}

QByteArray SimState::videoFrame() const
{
    // The join mode travels with the video map: the application reads both from one frame.
    return '{' + numberedMap("video", routing.video) + ",\"mode\":" + QByteArray::number(routing.mode) + '}';
}

QByteArray SimState::audioFrame() const
{
    // The HDMI audio outputs follow the plain ones, under their own numbers.
    return '{' + numberedMap("audio", routing.audio) + ',' + numberedMap("audio", routing.hdmiAudio, 101) + '}';
}

QByteArray SimState::irFrame() const
{
    return '{' + numberedMap("IR", routing.ir) + '}';
}

QByteArray SimState::inputFrame() const
{
    // Signal states and input resolutions share one frame: "input" and
    // "noinput" both hold "in", so two separate frames would each reach
    // both of the application's input slots and overwrite each other's map.
    // Values stay bare, as in every frame the parser sees "in" in.
    QByteArray frame = "{";
    for (int i = 0; i < m_ports; ++i)
        frame += "\"input-" + QByteArray::number(i + 1) + "\":" + flag(inputResolutions[i] != "noinput") + ',';
    for (int i = 0; i < m_ports; ++i)
        frame += "\"in" + QByteArray::number(i + 1) + "\":" + inputResolutions[i] + (i + 1 < m_ports ? "," : "}");
    return frame;
}

QByteArray SimState::outputFrame() const
{
    QByteArray frame = "{";
    for (int i = 0; i < m_ports; ++i)
        frame += "\"out" + QByteArray::number(i + 1) + "\":\"" + outputResolutions[i] + (i + 1 < m_ports ? "\"," : "\"}");
    return frame;
}

QByteArray SimState::networkFrame() const
{
    return "{\"ip\":\"" + ip + "\",\"gateway\":\"" + gateway + "\",\"subnet\":\"" + subnet
        + "\",\"mac\":\"" + mac + "\"}";
}

QByteArray SimState::volumeFrame() const
{
    // A muted port reads 0, so a level slider shows the silence; its level is kept.
    QVector<int> levels = volumes;
    for (int i = 0; i < m_ports; ++i) {
        if (muted[i])
            levels[i] = 0;
    }
    return '{' + numberedMap("Volume", levels) + '}';
}

QByteArray SimState::overlayFrame(const Overlay &overlay)
{
    // The firmware writes the switches, colours and direction bare; the
    // application quotes them by position, so key order and spelling are fixed.
    return "{\"Switch\":" + flag(overlay.on) + ",\"Speed\":" + QByteArray::number(overlay.speed)
        + ",\"Color\":" + overlay.colour + ",\"Position_x\":" + QByteArray::number(overlay.x)
        + ",\"Position_y\":" + QByteArray::number(overlay.y) + ",\"Bg_switch\":" + flag(overlay.backgroundOn)
        + ",\"Bg_Color\":" + overlay.backgroundColour + ",\"Move_dir\":" + (overlay.right ? "right" : "left") + '}';
}
