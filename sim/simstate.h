#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QVector>

#include <optional>

enum class SimModel { Orxm200, Orxm100 };

// Everything the switcher remembers, and the reply frames that report it.
// The settings are open: CommandInterpreter is their one writer, after its
// checks; everyone else reads.
//
// Every frame is shaped for the application's parser, which routes a frame
// by substring search and repairs bare values only in frames holding "in":
// frames are compact, and values taken from commands are checked before they
// get here, so that they can never carry a trigger word.
class SimState
{
public:
    static constexpr int MaxJoinMode = 6;

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

    explicit SimState(SimModel model = SimModel::Orxm200);

    static std::optional<SimModel> modelFromName(const QString &name);
    static QByteArray modelName(SimModel model);

    SimModel model() const { return m_model; }
    int ports() const { return m_ports; }

    void factoryReset();
    Overlay &selectedOverlay();
    int jointOutputs() const;
    bool isPort(int n) const { return n >= 1 && n <= m_ports; }
    bool isHdmiAudio(int n) const { return isPort(n - 100); }
    int audioIndex(int output) const; // -1 for no audio output
    QByteArray outputEdid(int output) const; // the display on that output; empty for no output

    QByteArray versionFrame() const;
    QByteArray videoFrame() const;
    QByteArray audioFrame() const;
    QByteArray irFrame() const;
    QByteArray inputFrame() const;
    QByteArray outputFrame() const;
    QByteArray networkFrame() const;
    QByteArray volumeFrame() const;
    static QByteArray overlayFrame(const Overlay &overlay);

    Routing routing;
    QVector<int> volumes;   // the level kept while muted
    QVector<bool> muted;
    QVector<int> audioModes;  // outputs 1..ports, then HDMI audio 101..
    QVector<int> inputPatterns;
    QVector<int> outputPatterns;
    QVector<QByteArray> inputEdids;
    QVector<QByteArray> outputResolutions;
    QVector<QByteArray> inputResolutions; // "noinput" when the input has no signal
    QByteArray ip = "192.168.1.188";
    QByteArray gateway = "192.168.1.1";
    QByteArray subnet = "255.255.255.0";
    QByteArray mac = "00:1a:2b:3c:4d:5e";
    Overlay caption;
    QVector<Overlay> osds;  // index 0 is OSD 1
    int selectedOsd = 0;    // 0: the caption, n: OSD n
    QHash<int, Routing> presets;

private:
    SimModel m_model;
    int m_ports;
};
