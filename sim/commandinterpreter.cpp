#include "commandinterpreter.h"

#include "uploadformats.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QStringList>

namespace {

using Outcome = CommandInterpreter::Outcome;

constexpr int MaxVolume = 100;
constexpr int MaxSpeed = 10;
constexpr int MaxPosition = 4095;   // covers a 4096x2160 picture
constexpr int PresetSlots = 16;
constexpr int JointOutput = 101;    // the whole joined wall as one output
constexpr int MaxPattern = 11;      // 0 passes the picture through

// The timings the scaler offers; any other text is refused.
const QSet<QString> OutputResolutions = {
    "800x600x60Hz",   "1024x768x60Hz",  "1280x720x50Hz",  "1280x720x60Hz",  "1280x768x60Hz",  "1280x800x60Hz",
    "1280x960x60Hz",  "1280x1024x60Hz", "1360x768x60Hz",  "1366x768x60Hz",  "1440x900x60Hz",  "1600x900x60Hz",
    "1600x1200x60Hz", "1920x540x50Hz",  "1920x540x60Hz",  "1920x1080x30Hz", "1920x1080x50Hz", "1920x1080x60Hz",
    "1920x1200x60Hz", "3840x2160x30Hz", "4096x2160x30Hz", "3840x2160x60Hz", "4096x2160x60Hz",
};

Outcome reply(const QList<QByteArray> &frames)
{
    Outcome outcome;
    outcome.frames = frames;
    outcome.understood = true;
    return outcome;
}

Outcome silent(const QByteArray &note = QByteArray())
{
    Outcome outcome = reply({});
    outcome.note = note;
    return outcome;
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

CommandInterpreter::CommandInterpreter(SimState &state, UploadReceiver &uploads)
    : m_state(state)
    , m_uploads(uploads)
{
}

namespace {
const QRegularExpression &switchPattern()
{
    static const QRegularExpression pattern(QStringLiteral(R"(^(\d{1,5})(VIDEO|AUDIO|IR)(\d{1,5})$)"));
    return pattern;
}

// The text between "{param=" and "}", or nothing when the firmware would not
// take the command at all: it reads printable ASCII only, and a blank already
// breaks a command.
std::optional<QString> bodyOf(const QByteArray &command)
{
    static const QByteArray prefix = "{param=";
    if (!command.startsWith(prefix) || !command.endsWith('}'))
        return std::nullopt;
    const QByteArray body = command.mid(prefix.size(), command.size() - prefix.size() - 1);
    for (char c : body) {
        if (c <= ' ' || c > '~')
            return std::nullopt;
    }
    return QString::fromLatin1(body);
}
} // namespace

Outcome CommandInterpreter::handle(const QByteArray &command)
{
    const std::optional<QString> body = bodyOf(command);
    return body ? handleBody(*body) : Outcome{};
}

bool CommandInterpreter::isSwitch(const QByteArray &command)
{
    const std::optional<QString> body = bodyOf(command);
    return body && switchPattern().match(*body).hasMatch();
}

Outcome CommandInterpreter::handleBody(const QString &body)
{
    if (body == QLatin1String("version"))
        return reply({m_state.versionFrame()});
    if (body == QLatin1String("status"))
        return reply({m_state.videoFrame(), m_state.audioFrame(), m_state.irFrame()});
    if (body == QLatin1String("inputinfo"))
        return reply({m_state.inputFrame()});
    if (body == QLatin1String("netInfo"))
        return reply({m_state.networkFrame()});
    if (body == QLatin1String("resolution"))
        return reply({m_state.outputFrame()});
    if (body == QLatin1String("Get_Volume"))
        return reply({m_state.volumeFrame()});
    if (body == QLatin1String("Get_Subtitle")) {
        m_state.selectedOsd = 0;
        return reply({SimState::overlayFrame(m_state.caption)});
    }
    if (body == QLatin1String("Default")) {
        m_state.factoryReset();
        return reply({m_state.videoFrame(), m_state.audioFrame(), m_state.irFrame(), m_state.volumeFrame(),
                      m_state.outputFrame()});
    }
    if (body == QLatin1String("Done")) {
        Outcome outcome = finishTransfer();
        outcome.uploadDone = true;
        return outcome;
    }

    // Overlay settings name no target: they go to the overlay last asked for.
    if (body == QLatin1String("Open") || body == QLatin1String("Close")) {
        m_state.selectedOverlay().on = body == QLatin1String("Open");
        return silent();
    }
    if (body == QLatin1String("Bg_Open") || body == QLatin1String("Bg_Close")) {
        m_state.selectedOverlay().backgroundOn = body == QLatin1String("Bg_Open");
        return silent();
    }
    if (body == QLatin1String("Left") || body == QLatin1String("Right")) {
        m_state.selectedOverlay().right = body == QLatin1String("Right");
        return silent();
    }

    static const QSet<QString> settingsWithoutReport = {
        QStringLiteral("BellOn"), QStringLiteral("BellOff"), QStringLiteral("EraseOSD"),
        QStringLiteral("EraseSubtitle"), QStringLiteral("Set_subtitle"),
    };
    if (settingsWithoutReport.contains(body))
        return silent();

    QRegularExpressionMatch match;

    if (capture(switchPattern(), body, &match))
        return handleSwitch(number(match, 1), match.captured(2), number(match, 3));

    static const QRegularExpression modePattern(QStringLiteral(R"(^mode(\d{1,5})$)"));
    if (capture(modePattern, body, &match)) {
        if (number(match, 1) > SimState::MaxJoinMode)
            return {};
        m_state.routing.mode = number(match, 1);
        return reply({m_state.videoFrame()});
    }

    static const QRegularExpression volumePattern(QStringLiteral(R"(^Volume(\d{1,5})/(\d{1,5})$)"));
    if (capture(volumePattern, body, &match)) {
        if (!m_state.isPort(number(match, 1)) || number(match, 2) > MaxVolume)
            return {};
        // A new level ends the mute: the level the operator just chose is what plays.
        m_state.volumes[number(match, 1) - 1] = number(match, 2);
        m_state.muted[number(match, 1) - 1] = false;
        return reply({m_state.volumeFrame()});
    }

    // The command carries no state, so it toggles; the level is kept for unmuting.
    static const QRegularExpression mutePattern(QStringLiteral(R"(^Mute(\d{1,5})$)"));
    if (capture(mutePattern, body, &match)) {
        if (!m_state.isPort(number(match, 1)))
            return {};
        bool &muted = m_state.muted[number(match, 1) - 1];
        muted = !muted;
        Outcome outcome = reply({m_state.volumeFrame()});
        outcome.note = "mute " + match.captured(1).toLatin1() + (muted ? ": on" : ": off");
        return outcome;
    }

    // Only the scaler's own "WxHxRHz" texts are taken: none can carry a word
    // the application's parser routes on.
    static const QRegularExpression portPattern(QStringLiteral(R"(^Port(\d{1,5})/(.*)!$)"));
    if (capture(portPattern, body, &match)) {
        if (!m_state.isPort(number(match, 1)) || !OutputResolutions.contains(match.captured(2)))
            return {};
        m_state.outputResolutions[number(match, 1) - 1] = match.captured(2).toLatin1();
        return reply({m_state.outputFrame()});
    }

    static const QRegularExpression osdPattern(QStringLiteral(R"(^Get_OSD(\d{1,5})$)"));
    if (capture(osdPattern, body, &match)) {
        if (!m_state.isPort(number(match, 1)))
            return {};
        m_state.selectedOsd = number(match, 1);
        return reply({SimState::overlayFrame(m_state.selectedOverlay())});
    }

    static const QRegularExpression speedPattern(QStringLiteral(R"(^Speed(\d{1,5})$)"));
    if (capture(speedPattern, body, &match)) {
        if (number(match, 1) > MaxSpeed)
            return {};
        m_state.selectedOverlay().speed = number(match, 1);
        return silent();
    }

    static const QRegularExpression positionPattern(QStringLiteral(R"(^POS(\d{1,5})/(\d{1,5})$)"));
    if (capture(positionPattern, body, &match)) {
        if (number(match, 1) > MaxPosition || number(match, 2) > MaxPosition)
            return {};
        m_state.selectedOverlay().x = number(match, 1);
        m_state.selectedOverlay().y = number(match, 2);
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
            m_state.selectedOverlay().colour = triple;
        else
            m_state.selectedOverlay().backgroundColour = triple;
        return silent();
    }

    static const QRegularExpression presetPattern(QStringLiteral(R"(^(Save|Recall)(\d{1,5})$)"));
    if (capture(presetPattern, body, &match)) {
        const int slot = number(match, 2);
        if (slot < 1 || slot > PresetSlots)
            return {};
        if (match.captured(1) == QLatin1String("Save")) {
            m_state.presets.insert(slot, m_state.routing);
            return silent();
        }
        // An empty slot has nothing to recall; the firmware stays silent.
        if (!m_state.presets.contains(slot))
            return {};
        m_state.routing = m_state.presets.value(slot);
        return reply({m_state.videoFrame(), m_state.audioFrame(), m_state.irFrame()});
    }

    static const QRegularExpression networkPattern(QStringLiteral("^&ip,(.*)$"));
    if (capture(networkPattern, body, &match))
        return handleNetwork(match.captured(1));

    return handleSilentSetting(body);
}

Outcome CommandInterpreter::handleSilentSetting(const QString &body)
{
    // Settings the device takes without reporting anything back; the note
    // makes them visible in the verbose log.
    QRegularExpressionMatch match;
    static const QRegularExpression pairSetting(
        QStringLiteral(R"(^(In_Pattern|Out_Pattern|Copy_EDID|Analog_sel)(\d{1,5})/(\d{1,5})$)"));
    if (capture(pairSetting, body, &match)) {
        const QString name = match.captured(1);
        const int port = number(match, 2);
        const int value = number(match, 3);
        const QByteArray portText = QByteArray::number(port), valueText = QByteArray::number(value);
        if (name == QLatin1String("Analog_sel")) {
            // Offered on the HDMI audio outputs (101..) as well as the plain ones.
            if (m_state.audioIndex(port) < 0 || value > 1)
                return {};
            m_state.audioModes[m_state.audioIndex(port)] = value;
            return silent("audio mode " + portText + (value ? ": analog" : ": digital"));
        }
        if (!m_state.isPort(port))
            return {};
        if (name == QLatin1String("Copy_EDID")) {
            if (!m_state.isPort(value))
                return {};
            m_state.inputEdids[port - 1] = m_state.outputEdid(value);
            return silent(UploadFormats::edidNote(port, m_state.inputEdids[port - 1]) + ", copy of output " + valueText);
        }
        if (value > MaxPattern)
            return {};
        const bool input = name == QLatin1String("In_Pattern");
        (input ? m_state.inputPatterns : m_state.outputPatterns)[port - 1] = value;
        return silent("pattern " + QByteArray(input ? "input " : "output ") + portText + ": " + valueText);
    }

    static const QRegularExpression portSetting(
        QStringLiteral(R"(^(Upload_OSD|Upload_Subtitle|Update_EDID|Set_OSD)(\d{1,5})$)"));
    if (!capture(portSetting, body, &match) || !m_state.isPort(number(match, 2)))
        return {};
    // An upload announcement decides what the current transfer is.
    const QString name = match.captured(1);
    if (name != QLatin1String("Set_OSD")) {
        const UploadReceiver::Kind kind = name == QLatin1String("Update_EDID") ? UploadReceiver::Kind::Edid
            : name == QLatin1String("Upload_OSD")                              ? UploadReceiver::Kind::Osd
                                                                               : UploadReceiver::Kind::Caption;
        m_uploads.announce(kind, number(match, 2));
    }
    return silent();
}

Outcome CommandInterpreter::finishTransfer()
{
    const UploadReceiver::Finished finished = m_uploads.finish();
    Outcome outcome = silent(finished.note);
    outcome.upload = finished.upload;
    if (finished.upload && finished.upload->kind == UploadReceiver::Kind::Edid)
        m_state.inputEdids[finished.upload->port - 1] = finished.upload->bytes;
    return outcome;
}

Outcome CommandInterpreter::handleSwitch(int input, const QString &layer, int output)
{
    // Input 0 is "no source": it clears the output.
    if (input != 0 && !m_state.isPort(input))
        return {};
    if (layer == QLatin1String("VIDEO") && output == JointOutput) {
        for (int i = 0; i < m_state.jointOutputs(); ++i)
            m_state.routing.video[i] = input;
        return reply({m_state.videoFrame()});
    }
    if (layer == QLatin1String("AUDIO") && m_state.isHdmiAudio(output)) {
        m_state.routing.hdmiAudio[output - 101] = input;
        return reply({m_state.audioFrame()});
    }
    if (!m_state.isPort(output))
        return {};
    if (layer == QLatin1String("VIDEO")) {
        m_state.routing.video[output - 1] = input;
        return reply({m_state.videoFrame()});
    }
    if (layer == QLatin1String("AUDIO")) {
        m_state.routing.audio[output - 1] = input;
        return reply({m_state.audioFrame()});
    }
    m_state.routing.ir[output - 1] = input;
    return reply({m_state.irFrame()});
}

Outcome CommandInterpreter::handleNetwork(const QString &fields)
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
    m_state.ip = values.value(QStringLiteral("ip")).toLatin1();
    m_state.gateway = values.value(QStringLiteral("gateway")).toLatin1();
    m_state.subnet = values.value(QStringLiteral("subnet")).toLatin1();
    m_state.mac = values.value(QStringLiteral("mac")).toLatin1();
    return reply({m_state.networkFrame()});
}
