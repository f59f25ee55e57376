#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QMap>
#include <QPair>
#include <QString>
#include <QVector>

#include <optional>

enum class SimModel { Orxm200, Orxm100 };

// The switcher as seen through its command port: its state and the reply
// frames each command produces. No sockets here; the servers feed it
// commands and write back what it returns.
//
// Every frame is shaped for the application's parser, which routes a frame
// by substring search and repairs bare values only in frames holding "in":
// frames are compact, values taken from commands are checked so that they
// can never carry a trigger word, and a command that fails any check is
// ignored as a whole, as the firmware does.
class SimDevice
{
public:
    enum class UploadKind { Osd, Caption, Edid };

    // A transfer the device took: the file-port bytes up to "{param=Done}",
    // announced by Upload_OSD<port>, Upload_Subtitle<port> or Update_EDID<port>.
    struct Upload
    {
        UploadKind kind = UploadKind::Osd;
        int port = 0;
        QByteArray bytes;
    };

    struct Outcome
    {
        QList<QByteArray> frames; // written back to back, in this order
        bool understood = false;  // a command the device knows, even if silent
        bool uploadDone = false;  // "{param=Done}": acknowledge on the file port
        QByteArray note;          // state no frame reports, one line for the verbose log
        std::optional<Upload> upload; // the transfer this "{param=Done}" ended, if taken
    };

    // What the verbose log says of an uploaded picture.
    struct BmpHeader
    {
        quint32 pixelOffset = 0;
        qint32 width = 0;
        qint32 height = 0;  // positive: rows stored bottom-up
        int bitCount = 0;
    };

    explicit SimDevice(SimModel model = SimModel::Orxm200);

    static std::optional<SimModel> modelFromName(const QString &name);
    static QByteArray modelName(SimModel model);

    SimModel model() const { return m_model; }
    int ports() const { return m_ports; }

    // command is one whole "{param=...}" text as cut from the stream.
    Outcome handle(const QByteArray &command);

    // The file connection's bytes. A transfer is what arrives after the
    // previous "{param=Done}" or the connection's start: the application
    // sends its announcement and the first piece together, so that piece
    // may arrive before the announcement does.
    void receiveFile(const QByteArray &bytes);
    void startTransfer();

    // State that no reply frame reports, for tests and the verbose log.
    // Out-of-range ports read as 0 / empty.
    int inputPattern(int port) const { return m_inputPatterns.value(port - 1); }
    int outputPattern(int port) const { return m_outputPatterns.value(port - 1); }
    bool isMuted(int port) const { return m_muted.value(port - 1); }
    int audioMode(int output) const { return m_audioModes.value(audioIndex(output)); } // 1: analog
    QByteArray inputEdid(int input) const { return m_inputEdids.value(input - 1); }
    QByteArray outputEdid(int output) const;
    // The last transfer taken for that kind and port, byte for byte; empty
    // when none. Default keeps it: it records what arrived, not what is shown.
    QByteArray lastUpload(UploadKind kind, int port) const { return m_uploads.value({kind, port}); }

    static quint32 crc32(const QByteArray &bytes);
    // Decodes the file and info headers of a BMP; nullopt when the bytes are not one.
    static std::optional<BmpHeader> bmpHeader(const QByteArray &file);
    // The length a file announces in its first bytes: a BMP's bfSize, an EDID's
    // blocks; nullopt when the head is too short to tell or names no length.
    static std::optional<qint64> declaredLength(const QByteArray &head);
    static QByteArray uploadKindName(UploadKind kind); // "osd", "caption", "edid"

private:
    struct Overlay
    {
        bool on = false;
        int speed = 5;
        QByteArray colour = "255,255,255";
        int x = 0;
        int y = 0;
        bool backgroundOn = false;
        QByteArray backgroundColour = "0,0,0";
        bool right = false;
    };

    struct Routing
    {
        QVector<int> video;
        QVector<int> audio;
        QVector<int> hdmiAudio; // audio embedded on HDMI output k, addressed as 100 + k
        QVector<int> ir;
        int mode = 6;
    };

    void factoryReset();
    Outcome handleBody(const QString &body);
    Outcome handleSwitch(int input, const QString &layer, int output);
    Outcome handleNetwork(const QString &fields);
    Outcome handleSilentSetting(const QString &body);
    Outcome finishTransfer();
    Overlay &selectedOverlay();
    int jointOutputs() const;
    bool isPort(int n) const { return n >= 1 && n <= m_ports; }
    bool isHdmiAudio(int n) const { return isPort(n - 100); }
    int audioIndex(int output) const; // -1 for no audio output

    QByteArray versionFrame() const;
    QByteArray videoFrame() const;
    QByteArray audioFrame() const;
    QByteArray irFrame() const;
    QByteArray inputFrame() const;
    QByteArray outputFrame() const;
    QByteArray networkFrame() const;
    QByteArray volumeFrame() const;
    static QByteArray overlayFrame(const Overlay &overlay);

    SimModel m_model;
    int m_ports;
    Routing m_routing;
    QVector<int> m_volumes;   // the level kept while muted
    QVector<bool> m_muted;
    QVector<int> m_audioModes;  // outputs 1..ports, then HDMI audio 101..
    QVector<int> m_inputPatterns;
    QVector<int> m_outputPatterns;
    QVector<QByteArray> m_inputEdids;
    QVector<QByteArray> m_outputResolutions;
    QVector<QByteArray> m_inputResolutions; // "noinput" when the input has no signal
    QByteArray m_ip = "192.168.1.188";
    QByteArray m_gateway = "192.168.1.1";
    QByteArray m_subnet = "255.255.255.0";
    QByteArray m_mac = "00:1a:2b:3c:4d:5e";
    Overlay m_caption;
    QVector<Overlay> m_osds;  // index 0 is OSD 1
    int m_selectedOsd = 0;    // 0: the caption, n: OSD n
    QHash<int, Routing> m_presets;
    QByteArray m_transfer;
    bool m_transferOverflow = false;
    UploadKind m_uploadKind = UploadKind::Osd;
    int m_uploadPort = 0;     // port of the last announcement; 0: none, the bytes are only paced
    QMap<QPair<UploadKind, int>, QByteArray> m_uploads;
};
