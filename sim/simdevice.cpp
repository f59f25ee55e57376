#include "simdevice.h"

#include <QRegularExpression>
#include <QSet>
#include <QStringList>

namespace {

using Outcome = SimDevice::Outcome;

constexpr int DefaultVolume = 50;
constexpr int MaxVolume = 100;
constexpr int MaxJoinMode = 6;
constexpr int MaxSpeed = 10;
constexpr int MaxPosition = 4095;   // covers a 4096x2160 picture
constexpr int PresetSlots = 16;
constexpr int JointOutput = 101;    // the whole joined wall as one output
const QByteArray DefaultResolution = "1920x1080x60Hz";

// A bench setup: most inputs carry a source, a few are left unplugged.
const char *const InputResolutions[] = {
    "1920x1080x60Hz", "1920x1080x60Hz", "1280x720x60Hz",
    "noinput",        "3840x2160x30Hz", "1920x1080x60Hz",
    "noinput",        "1920x1080x50Hz", "noinput",
};

Outcome reply(const QList<QByteArray> &frames)
{
    Outcome outcome;
    outcome.frames = frames;
    outcome.understood = true;
    return outcome;
}

Outcome silent()
{
    return reply({});
}

// Numbers in commands are bounded by the patterns ({1,5} digits), so
// toInt() cannot overflow and every capture converts.
bool capture(const QRegularExpression &pattern, const QString &body, QRegularExpressionMatch *match)
{
    *match = pattern.match(body);
    return match->hasMatch();
}

int number(const QRegularExpressionMatch &match, int group)
{
    return match.captured(group).toInt();
}

QByteArray numberedMap(const char *key, const QVector<int> &values)
{
    QByteArray members;
    for (int i = 0; i < values.size(); ++i) {
        if (i > 0)
            members += ',';
        members += '"' + QByteArray(key) + QByteArray::number(i + 1) + "\":" + QByteArray::number(values[i]);
    }
    return members;
}

QByteArray flag(bool on)
{
    return on ? "true" : "false";
}

bool isIpv4(const QString &text)
{
    static const QRegularExpression quad(QStringLiteral(R"(^(\d{1,3})\.(\d{1,3})\.(\d{1,3})\.(\d{1,3})$)"));
    QRegularExpressionMatch match;
    if (!capture(quad, text, &match))
        return false;
    for (int i = 1; i <= 4; ++i) {
        if (number(match, i) > 255)
            return false;
    }
    return true;
}

bool isMac(const QString &text)
{
    static const QRegularExpression mac(QStringLiteral("^[0-9A-Fa-f]{2}(:[0-9A-Fa-f]{2}){5}$"));
    return mac.match(text).hasMatch();
}

} // namespace

SimDevice::SimDevice(SimModel model)
    : m_model(model)
    , m_ports(model == SimModel::Orxm100 ? 8 : 9)
{
    for (int i = 0; i < m_ports; ++i)
        m_inputResolutions << InputResolutions[i];
    factoryReset();
}

std::optional<SimModel> SimDevice::modelFromName(const QString &name)
{
    if (name == QLatin1String("ORXM200"))
        return SimModel::Orxm200;
    if (name == QLatin1String("ORXM100"))
        return SimModel::Orxm100;
    return std::nullopt;
}

QByteArray SimDevice::modelName(SimModel model)
{
    return model == SimModel::Orxm100 ? "ORXM100" : "ORXM200";
}

void SimDevice::factoryReset()
{
    // The network settings survive a reset, so that the device stays reachable.
    m_routing = Routing();
    m_routing.video.resize(m_ports);
    for (int i = 0; i < m_ports; ++i)
        m_routing.video[i] = i + 1;
    m_routing.audio = m_routing.video;
    m_routing.ir = m_routing.video;
    m_volumes.fill(DefaultVolume, m_ports);
    m_outputResolutions.fill(DefaultResolution, m_ports);
    m_caption = Overlay();
    m_osds.fill(Overlay(), m_ports);
    m_selectedOsd = 0;
    m_presets.clear();
}

SimDevice::Outcome SimDevice::handle(const QByteArray &command)
{
    static const QByteArray prefix = "{param=";
    if (!command.startsWith(prefix) || !command.endsWith('}'))
        return {};
    const QByteArray body = command.mid(prefix.size(), command.size() - prefix.size() - 1);
    // The firmware takes printable ASCII only; a blank already breaks a command.
    for (char c : body) {
        if (c <= ' ' || c > '~')
            return {};
    }
    return handleBody(QString::fromLatin1(body));
}

SimDevice::Outcome SimDevice::handleBody(const QString &body)
{
    if (body == QLatin1String("version"))
        return reply({versionFrame()});
    if (body == QLatin1String("status"))
        return reply({videoFrame(), audioFrame(), irFrame()});
    if (body == QLatin1String("inputinfo"))
        return reply({inputFrame()});
    if (body == QLatin1String("netInfo"))
        return reply({networkFrame()});
    if (body == QLatin1String("resolution"))
        return reply({outputFrame()});
    if (body == QLatin1String("Get_Volume"))
        return reply({volumeFrame()});
    if (body == QLatin1String("Get_Subtitle")) {
        m_selectedOsd = 0;
        return reply({overlayFrame(m_caption)});
    }
    if (body == QLatin1String("Default")) {
        factoryReset();
        return reply({videoFrame(), audioFrame(), irFrame(), volumeFrame(), outputFrame()});
    }
    if (body == QLatin1String("Done")) {
        Outcome outcome = silent();
        outcome.uploadDone = true;
        return outcome;
    }

    // Overlay settings name no target: they go to the overlay last asked for.
    if (body == QLatin1String("Open") || body == QLatin1String("Close")) {
        selectedOverlay().on = body == QLatin1String("Open");
        return silent();
    }
    if (body == QLatin1String("Bg_Open") || body == QLatin1String("Bg_Close")) {
        selectedOverlay().backgroundOn = body == QLatin1String("Bg_Open");
        return silent();
    }
    if (body == QLatin1String("Left") || body == QLatin1String("Right")) {
        selectedOverlay().right = body == QLatin1String("Right");
        return silent();
    }

    static const QSet<QString> settingsWithoutReport = {
        QStringLiteral("BellOn"), QStringLiteral("BellOff"), QStringLiteral("EraseOSD"),
        QStringLiteral("EraseSubtitle"), QStringLiteral("Set_subtitle"),
    };
    if (settingsWithoutReport.contains(body))
        return silent();

    QRegularExpressionMatch match;

    static const QRegularExpression switchPattern(QStringLiteral(R"(^(\d{1,5})(VIDEO|AUDIO|IR)(\d{1,5})$)"));
    if (capture(switchPattern, body, &match))
        return handleSwitch(number(match, 1), match.captured(2), number(match, 3));

    static const QRegularExpression modePattern(QStringLiteral(R"(^mode(\d{1,5})$)"));
    if (capture(modePattern, body, &match)) {
        if (number(match, 1) > MaxJoinMode)
            return {};
        m_routing.mode = number(match, 1);
        return reply({videoFrame()});
    }

    static const QRegularExpression volumePattern(QStringLiteral(R"(^Volume(\d{1,5})/(\d{1,5})$)"));
    if (capture(volumePattern, body, &match)) {
        if (!isPort(number(match, 1)) || number(match, 2) > MaxVolume)
            return {};
        m_volumes[number(match, 1) - 1] = number(match, 2);
        return reply({volumeFrame()});
    }

    // Only the "WxHxRHz" spelling is taken: it can never carry a word the
    // application's parser routes on.
    static const QRegularExpression portPattern(QStringLiteral(R"(^Port(\d{1,5})/(\d{3,4}x\d{3,4}x\d{2,3}Hz)!$)"));
    if (capture(portPattern, body, &match)) {
        if (!isPort(number(match, 1)))
            return {};
        m_outputResolutions[number(match, 1) - 1] = match.captured(2).toLatin1();
        return reply({outputFrame()});
    }

    static const QRegularExpression osdPattern(QStringLiteral(R"(^Get_OSD(\d{1,5})$)"));
    if (capture(osdPattern, body, &match)) {
        if (!isPort(number(match, 1)))
            return {};
        m_selectedOsd = number(match, 1);
        return reply({overlayFrame(selectedOverlay())});
    }

    static const QRegularExpression speedPattern(QStringLiteral(R"(^Speed(\d{1,5})$)"));
    if (capture(speedPattern, body, &match)) {
        if (number(match, 1) > MaxSpeed)
            return {};
        selectedOverlay().speed = number(match, 1);
        return silent();
    }

    static const QRegularExpression positionPattern(QStringLiteral(R"(^POS(\d{1,5})/(\d{1,5})$)"));
    if (capture(positionPattern, body, &match)) {
        if (number(match, 1) > MaxPosition || number(match, 2) > MaxPosition)
            return {};
        selectedOverlay().x = number(match, 1);
        selectedOverlay().y = number(match, 2);
        return silent();
    }

    static const QRegularExpression colourPattern(QStringLiteral(R"(^(Font_Color|Bg_Color)(\d{1,5})/(\d{1,5})/(\d{1,5})$)"));
    if (capture(colourPattern, body, &match)) {
        QByteArray triple;
        for (int i = 2; i <= 4; ++i) {
            if (number(match, i) > 255)
                return {};
            triple += (i > 2 ? "," : "") + QByteArray::number(number(match, i));
        }
        if (match.captured(1) == QLatin1String("Font_Color"))
            selectedOverlay().colour = triple;
        else
            selectedOverlay().backgroundColour = triple;
        return silent();
    }

    static const QRegularExpression presetPattern(QStringLiteral(R"(^(Save|Recall)(\d{1,5})$)"));
    if (capture(presetPattern, body, &match)) {
        const int slot = number(match, 2);
        if (slot < 1 || slot > PresetSlots)
            return {};
        if (match.captured(1) == QLatin1String("Save")) {
            m_presets.insert(slot, m_routing);
            return silent();
        }
        // An empty slot has nothing to recall; the firmware stays silent.
        if (!m_presets.contains(slot))
            return {};
        m_routing = m_presets.value(slot);
        return reply({videoFrame(), audioFrame(), irFrame()});
    }

    static const QRegularExpression networkPattern(QStringLiteral("^&ip,(.*)$"));
    if (capture(networkPattern, body, &match))
        return handleNetwork(match.captured(1));

    // Settings the device takes without reporting anything back.
    static const QRegularExpression pairSetting(
        QStringLiteral(R"(^(In_Pattern|Out_Pattern|Copy_EDID|Analog_sel)(\d{1,5})/(\d{1,5})$)"));
    static const QRegularExpression portSetting(
        QStringLiteral(R"(^(Mute|Upload_OSD|Upload_Subtitle|Update_EDID|Set_OSD)(\d{1,5})$)"));
    if ((capture(pairSetting, body, &match) || capture(portSetting, body, &match)) && isPort(number(match, 2)))
        return silent();

    return {};
}

SimDevice::Outcome SimDevice::handleSwitch(int input, const QString &layer, int output)
{
    if (!isPort(input))
        return {};
    if (layer == QLatin1String("VIDEO") && output == JointOutput) {
        for (int i = 0; i < jointOutputs(); ++i)
            m_routing.video[i] = input;
        return reply({videoFrame()});
    }
    if (!isPort(output))
        return {};
    if (layer == QLatin1String("VIDEO")) {
        m_routing.video[output - 1] = input;
        return reply({videoFrame()});
    }
    if (layer == QLatin1String("AUDIO")) {
        m_routing.audio[output - 1] = input;
        return reply({audioFrame()});
    }
    m_routing.ir[output - 1] = input;
    return reply({irFrame()});
}

SimDevice::Outcome SimDevice::handleNetwork(const QString &fields)
{
    QHash<QString, QString> values;
    for (const QString &field : fields.split(QLatin1Char(','))) {
        const int equals = field.indexOf(QLatin1Char('='));
        if (equals < 0)
            return {};
        const QString key = field.left(equals);
        if (values.contains(key))
            return {};
        values.insert(key, field.mid(equals + 1));
    }
    const QStringList addresses = {QStringLiteral("ip"), QStringLiteral("gateway"), QStringLiteral("subnet")};
    if (values.size() != 4 || !values.contains(QStringLiteral("mac")))
        return {};
    for (const QString &key : addresses) {
        if (!isIpv4(values.value(key)))
            return {};
    }
    if (!isMac(values.value(QStringLiteral("mac"))))
        return {};

    // Only the stored fields change: the emulator keeps listening where it was started.
    m_ip = values.value(QStringLiteral("ip")).toLatin1();
    m_gateway = values.value(QStringLiteral("gateway")).toLatin1();
    m_subnet = values.value(QStringLiteral("subnet")).toLatin1();
    m_mac = values.value(QStringLiteral("mac")).toLatin1();
    return reply({networkFrame()});
}

SimDevice::Overlay &SimDevice::selectedOverlay()
{
    return m_selectedOsd == 0 ? m_caption : m_osds[m_selectedOsd - 1];
}

int SimDevice::jointOutputs() const
{
    // Outputs joined into the wall, per join mode; mode 6 joins every output.
    static const int joined[MaxJoinMode] = {1, 2, 2, 4, 6, 6};
    return m_routing.mode < MaxJoinMode ? joined[m_routing.mode] : m_ports;
}

QByteArray SimDevice::versionFrame() const
{
    return "{\"type\":\"" + modelName(m_model) + "\",\"FPGA\":\"V1.0.5\",\"MCU\":\"V2.0.3\"}";
}

QByteArray SimDevice::videoFrame() const
{
    // The join mode travels with the video map: the application reads both from one frame.
    return '{' + numberedMap("video", m_routing.video) + ",\"mode\":" + QByteArray::number(m_routing.mode) + '}';
}

QByteArray SimDevice::audioFrame() const
{
    return '{' + numberedMap("audio", m_routing.audio) + '}';
}

QByteArray SimDevice::irFrame() const
{
    return '{' + numberedMap("IR", m_routing.ir) + '}';
}

QByteArray SimDevice::inputFrame() const
{
    // Signal states and input resolutions share one frame: "input" and
    // "noinput" both hold "in", so two separate frames would each reach
    // both of the application's input slots and overwrite each other's map.
    // Values stay bare, as in every frame the parser sees "in" in.
    QByteArray frame = "{";
    for (int i = 0; i < m_ports; ++i)
        frame += "\"input-" + QByteArray::number(i + 1) + "\":" + flag(m_inputResolutions[i] != "noinput") + ',';
    for (int i = 0; i < m_ports; ++i)
        frame += "\"in" + QByteArray::number(i + 1) + "\":" + m_inputResolutions[i] + (i + 1 < m_ports ? "," : "}");
    return frame;
}

QByteArray SimDevice::outputFrame() const
{
    QByteArray frame = "{";
    for (int i = 0; i < m_ports; ++i)
        frame += "\"out" + QByteArray::number(i + 1) + "\":\"" + m_outputResolutions[i] + (i + 1 < m_ports ? "\"," : "\"}");
    return frame;
}

QByteArray SimDevice::networkFrame() const
{
    return "{\"ip\":\"" + m_ip + "\",\"gateway\":\"" + m_gateway + "\",\"subnet\":\"" + m_subnet
        + "\",\"mac\":\"" + m_mac + "\"}";
}

QByteArray SimDevice::volumeFrame() const
{
    return '{' + numberedMap("Volume", m_volumes) + '}';
}

QByteArray SimDevice::overlayFrame(const Overlay &overlay)
{
    // The firmware writes the switches, colours and direction bare; the
    // application quotes them by position, so key order and spelling are fixed.
    return "{\"Switch\":" + flag(overlay.on) + ",\"Speed\":" + QByteArray::number(overlay.speed)
        + ",\"Color\":" + overlay.colour + ",\"Position_x\":" + QByteArray::number(overlay.x)
        + ",\"Position_y\":" + QByteArray::number(overlay.y) + ",\"Bg_switch\":" + flag(overlay.backgroundOn)
        + ",\"Bg_Color\":" + overlay.backgroundColour + ",\"Move_dir\":" + (overlay.right ? "right" : "left") + '}';
}
