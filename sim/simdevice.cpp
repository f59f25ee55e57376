#include "simdevice.h"

#include <QRegularExpression>
#include <QSet>
#include <QStringList>
#include <QtEndian>

#include <limits>

namespace {

using Outcome = SimDevice::Outcome;

constexpr int DefaultVolume = 50;
constexpr int MaxVolume = 100;
constexpr int MaxJoinMode = 6;
constexpr int MaxSpeed = 10;
constexpr int MaxPosition = 4095;   // covers a 4096x2160 picture
constexpr int PresetSlots = 16;
constexpr int JointOutput = 101;    // the whole joined wall as one output
constexpr int MaxPattern = 11;      // 0 passes the picture through
constexpr int MaxTransfer = 16 * 1024 * 1024; // beyond any EDID; bounds a stray upload's memory
const QByteArray DefaultResolution = "1920x1080x60Hz";

// The timings the scaler offers; any other text is refused.
const QSet<QString> OutputResolutions = {
    "800x600x60Hz",   "1024x768x60Hz",  "1280x720x50Hz",  "1280x720x60Hz",  "1280x768x60Hz",  "1280x800x60Hz",
    "1280x960x60Hz",  "1280x1024x60Hz", "1360x768x60Hz",  "1366x768x60Hz",  "1440x900x60Hz",  "1600x900x60Hz",
    "1600x1200x60Hz", "1920x540x50Hz",  "1920x540x60Hz",  "1920x1080x30Hz", "1920x1080x50Hz", "1920x1080x60Hz",
    "1920x1200x60Hz", "3840x2160x30Hz", "4096x2160x30Hz", "3840x2160x60Hz", "4096x2160x60Hz",
};

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

// A plain EDID 1.3 base block (1080p60 preferred, a name, the checksum): the
// switcher only stores and copies EDIDs, so product, serial and name are
// what tell one sink from another.
QByteArray edidBlock(int product, const QByteArray &name)
{
    QByteArray block(128, '\0');
    block.replace(0, 8, QByteArray("\x00\xff\xff\xff\xff\xff\xff\x00", 8));
    const int maker = (('O' - '@') << 10) | (('R' - '@') << 5) | ('X' - '@');
    block[8] = char(maker >> 8);
    block[9] = char(maker);
    block[10] = char(product);
    block[11] = char(product >> 8);
    block[12] = char(product);      // serial
    block[16] = 1;                  // week 1 of 2024
    block[17] = 34;
    block[18] = 1;                  // version 1.3
    block[19] = 3;
    block[20] = char(0x80);         // digital input
    block.replace(38, 16, QByteArray(16, '\x01'));  // no standard timings
    block.replace(54, 18, QByteArray("\x02\x3a\x80\x18\x71\x38\x2d\x40\x58\x2c\x45\x00\xc4\x8e\x21\x00\x00\x1e", 18));
    block.replace(72, 18, QByteArray("\0\0\0\xfc\0", 5) + (name.left(12) + '\n').leftJustified(13, ' '));
    block[93] = block[111] = 0x10;  // two empty descriptors
    char sum = 0;
    for (int i = 0; i < 127; ++i)
        sum = char(sum + block[i]);
    block[127] = char(-sum);
    return block;
}

QByteArray edidNote(int input, const QByteArray &edid)
{
    return "edid " + QByteArray::number(input) + ": " + QByteArray::number(edid.size()) + " bytes, crc32 "
        + QByteArray::number(SimDevice::crc32(edid), 16).rightJustified(8, '0');
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
    m_routing.hdmiAudio = m_routing.video;
    m_routing.ir = m_routing.video;
    m_volumes.fill(DefaultVolume, m_ports);
    m_muted.fill(false, m_ports);
    m_audioModes.fill(0, 2 * m_ports);
    m_inputPatterns.fill(0, m_ports);
    m_outputPatterns.fill(0, m_ports);
    m_inputEdids.fill(edidBlock(0, modelName(m_model)), m_ports);
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
        Outcome outcome = finishTransfer();
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
        // A new level ends the mute: the level the operator just chose is what plays.
        m_volumes[number(match, 1) - 1] = number(match, 2);
        m_muted[number(match, 1) - 1] = false;
        return reply({volumeFrame()});
    }

    // The command carries no state, so it toggles; the level is kept for unmuting.
    static const QRegularExpression mutePattern(QStringLiteral(R"(^Mute(\d{1,5})$)"));
    if (capture(mutePattern, body, &match)) {
        if (!isPort(number(match, 1)))
            return {};
        bool &muted = m_muted[number(match, 1) - 1];
        muted = !muted;
        Outcome outcome = reply({volumeFrame()});
        outcome.note = "mute " + match.captured(1).toLatin1() + (muted ? ": on" : ": off");
        return outcome;
    }

    // Only the scaler's own "WxHxRHz" texts are taken: none can carry a word
    // the application's parser routes on.
    static const QRegularExpression portPattern(QStringLiteral(R"(^Port(\d{1,5})/(.*)!$)"));
    if (capture(portPattern, body, &match)) {
        if (!isPort(number(match, 1)) || !OutputResolutions.contains(match.captured(2)))
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

    return handleSilentSetting(body);
}

SimDevice::Outcome SimDevice::handleSilentSetting(const QString &body)
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
            if (audioIndex(port) < 0 || value > 1)
                return {};
            m_audioModes[audioIndex(port)] = value;
            return silent("audio mode " + portText + (value ? ": analog" : ": digital"));
        }
        if (!isPort(port))
            return {};
        if (name == QLatin1String("Copy_EDID")) {
            if (!isPort(value))
                return {};
            m_inputEdids[port - 1] = outputEdid(value);
            return silent(edidNote(port, m_inputEdids[port - 1]) + ", copy of output " + valueText);
        }
        if (value > MaxPattern)
            return {};
        const bool input = name == QLatin1String("In_Pattern");
        (input ? m_inputPatterns : m_outputPatterns)[port - 1] = value;
        return silent("pattern " + QByteArray(input ? "input " : "output ") + portText + ": " + valueText);
    }

    static const QRegularExpression portSetting(
        QStringLiteral(R"(^(Upload_OSD|Upload_Subtitle|Update_EDID|Set_OSD)(\d{1,5})$)"));
    if (!capture(portSetting, body, &match) || !isPort(number(match, 2)))
        return {};
    // An upload announcement decides what the current transfer is.
    const QString name = match.captured(1);
    if (name != QLatin1String("Set_OSD")) {
        m_uploadKind = name == QLatin1String("Update_EDID") ? UploadKind::Edid
            : name == QLatin1String("Upload_OSD")           ? UploadKind::Osd
                                                            : UploadKind::Caption;
        m_uploadPort = number(match, 2);
    }
    return silent();
}

void SimDevice::receiveFile(const QByteArray &bytes)
{
    // Once over the limit, later pieces would leave a hole: the transfer is lost whole.
    if (m_transferOverflow || m_transfer.size() + qint64(bytes.size()) > MaxTransfer) {
        m_transferOverflow = true;
        return;
    }
    m_transfer += bytes;
}

void SimDevice::startTransfer()
{
    m_transfer.clear();
    m_transferOverflow = false;
}

SimDevice::Outcome SimDevice::finishTransfer()
{
    Outcome outcome = silent();
    const UploadKind kind = m_uploadKind;
    const int port = m_uploadPort;
    const bool overflow = m_transferOverflow;
    const QByteArray bytes = m_transfer;
    m_uploadPort = 0;
    startTransfer();
    // Without an announcement the bytes were only paced.
    if (port == 0)
        return outcome;

    const QByteArray subject = kind == UploadKind::Edid
        ? "edid " + QByteArray::number(port)
        : "upload " + uploadKindName(kind) + ' ' + QByteArray::number(port);
    // A transfer not taken leaves what the port had: a cut-off file is worse than the old one.
    if (overflow) {
        outcome.note = subject + ": over " + QByteArray::number(MaxTransfer) + " bytes, kept";
        return outcome;
    }
    if (bytes.isEmpty()) {
        outcome.note = subject + ": nothing received, kept";
        return outcome;
    }
    m_uploads.insert({kind, port}, bytes);
    outcome.upload = Upload{kind, port, bytes};
    if (kind == UploadKind::Edid) {
        m_inputEdids[port - 1] = bytes;
        outcome.note = edidNote(port, bytes);
        return outcome;
    }
    outcome.note = subject + ": " + QByteArray::number(bytes.size()) + " bytes, ";
    const std::optional<BmpHeader> bmp = bmpHeader(bytes);
    if (!bmp) {
        outcome.note += "not a bmp";
        return outcome;
    }
    outcome.note += "bmp " + QByteArray::number(bmp->width) + 'x' + QByteArray::number(qAbs(bmp->height)) + ", "
        + QByteArray::number(bmp->bitCount) + " bit" + (bmp->height < 0 ? ", top-down" : "");
    return outcome;
}

std::optional<SimDevice::BmpHeader> SimDevice::bmpHeader(const QByteArray &file)
{
    // Little-endian fields at fixed offsets; every read is bounds-checked first.
    auto field = [&file](int offset, int size) {
        quint32 value = 0;
        for (int i = size - 1; i >= 0; --i)
            value = (value << 8) | static_cast<uchar>(file.at(offset + i));
        return value;
    };
    constexpr int FileHeader = 14;
    if (file.size() < FileHeader + 12 || !file.startsWith("BM"))
        return std::nullopt;
    BmpHeader header;
    header.pixelOffset = field(10, 4);
    const quint32 infoSize = field(14, 4);
    if (infoSize == 12) {
        // The old core header: 16-bit sizes, always bottom-up.
        header.width = qint32(field(18, 2));
        header.height = qint32(field(20, 2));
        header.bitCount = int(field(24, 2));
    } else if (infoSize >= 40 && file.size() >= FileHeader + qint64(infoSize)) {
        header.width = qint32(field(18, 4));
        header.height = qint32(field(22, 4));
        header.bitCount = int(field(28, 2));
    } else {
        return std::nullopt;
    }
    static const QSet<int> bitCounts = {1, 2, 4, 8, 16, 24, 32};
    // INT_MIN has no magnitude to show.
    if (header.width <= 0 || header.height == 0 || header.height == std::numeric_limits<qint32>::min()
        || !bitCounts.contains(header.bitCount) || header.pixelOffset < FileHeader + infoSize
        || header.pixelOffset > quint32(file.size()))
        return std::nullopt;
    return header;
}

std::optional<qint64> SimDevice::declaredLength(const QByteArray &head)
{
    static const QByteArray edidMagic = QByteArray::fromHex("00ffffffffffff00");
    if (head.startsWith(edidMagic)) {
        // Whole 128-byte blocks: the base block counts its extensions in byte 126.
        if (head.size() <= 126)
            return std::nullopt;
        return 128 * (1 + qint64(static_cast<uchar>(head.at(126))));
    }
    // The file header is enough: bfSize, and the pixels' offset past the info header.
    if (head.size() < 18 || !head.startsWith("BM"))
        return std::nullopt;
    const auto field = [&head](int offset) { return qFromLittleEndian<quint32>(head.constData() + offset); };
    const quint32 size = field(2), pixels = field(10), info = field(14);
    // Some writers leave bfSize 0: such a file names no length.
    if ((info != 12 && info < 40) || pixels < 14 + info || size < pixels)
        return std::nullopt;
    return qint64(size);
}

QByteArray SimDevice::uploadKindName(UploadKind kind)
{
    switch (kind) {
    case UploadKind::Osd: return "osd";
    case UploadKind::Caption: return "caption";
    case UploadKind::Edid: return "edid";
    }
    return QByteArray();
}

QByteArray SimDevice::outputEdid(int output) const
{
    // The sink on each output is a different display, so copies are told apart.
    return isPort(output) ? edidBlock(0x100 + output, "ORX OUT " + QByteArray::number(output)) : QByteArray();
}

quint32 SimDevice::crc32(const QByteArray &bytes)
{
    // The zlib / PNG CRC, so a log line can be checked against any crc32 tool.
    quint32 crc = 0xffffffffu;
    for (char c : bytes) {
        crc ^= static_cast<uchar>(c);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (0xedb88320u & (0u - (crc & 1u)));
    }
    return ~crc;
}

int SimDevice::audioIndex(int output) const
{
    if (isPort(output))
        return output - 1;
    return isHdmiAudio(output) ? m_ports + output - 101 : -1;
}

SimDevice::Outcome SimDevice::handleSwitch(int input, const QString &layer, int output)
{
    // Input 0 is "no source": it clears the output.
    if (input != 0 && !isPort(input))
        return {};
    if (layer == QLatin1String("VIDEO") && output == JointOutput) {
        for (int i = 0; i < jointOutputs(); ++i)
            m_routing.video[i] = input;
        return reply({videoFrame()});
    }
    if (layer == QLatin1String("AUDIO") && isHdmiAudio(output)) {
        m_routing.hdmiAudio[output - 101] = input;
        return reply({audioFrame()});
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
    // The HDMI audio outputs follow the plain ones, under their own numbers.
    return '{' + numberedMap("audio", m_routing.audio) + ',' + numberedMap("audio", m_routing.hdmiAudio, 101) + '}';
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
    // A muted port reads 0, so a level slider shows the silence; its level is kept.
    QVector<int> levels = m_volumes;
    for (int i = 0; i < m_ports; ++i) {
        if (m_muted[i])
            levels[i] = 0;
    }
    return '{' + numberedMap("Volume", levels) + '}';
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
