#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
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
    struct Outcome
    {
        QList<QByteArray> frames; // written back to back, in this order
        bool understood = false;  // a command the device knows, even if silent
        bool uploadDone = false;  // "{param=Done}": acknowledge on the file port
    };

    explicit SimDevice(SimModel model = SimModel::Orxm200);

    static std::optional<SimModel> modelFromName(const QString &name);
    static QByteArray modelName(SimModel model);

    SimModel model() const { return m_model; }
    int ports() const { return m_ports; }

    // command is one whole "{param=...}" text as cut from the stream.
    Outcome handle(const QByteArray &command);

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
        QVector<int> ir;
        int mode = 6;
    };

    void factoryReset();
    Outcome handleBody(const QString &body);
    Outcome handleSwitch(int input, const QString &layer, int output);
    Outcome handleNetwork(const QString &fields);
    Overlay &selectedOverlay();
    int jointOutputs() const;
    bool isPort(int n) const { return n >= 1 && n <= m_ports; }

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
    QVector<int> m_volumes;
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
};
