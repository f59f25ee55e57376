#pragma once

#include <QMap>
#include <QString>

// Settings of one caption or OSD overlay as the device last reported them.
struct OverlayRecord
{
    bool enabled = false;
    int speed = 0;
    QString textColor = QStringLiteral("255,255,255");
    int positionX = 0;
    int positionY = 0;
    bool backgroundEnabled = false;
    QString backgroundColor = QStringLiteral("255,255,255");
    QString direction = QStringLiteral("left");
};

// The application's picture of the switcher: what it last reported and where it
// is reached. Filled by the reply slots, read by views and dialogs, all on the
// GUI thread. Nothing is cleared on disconnection, so the last known state
// stays visible. Getters return copies; setters replace a value whole, so a
// reply listing fewer ports than the previous one leaves no stale entries.
class DeviceRecord
{
public:
    DeviceRecord() = default;

    QString modelType() const { return m_modelType; }
    void setModelType(const QString &modelType) { m_modelType = modelType; }
    // Kept with its label, "FPGA: ...".
    QString fpgaVersion() const { return m_fpgaVersion; }
    void setFpgaVersion(const QString &version) { m_fpgaVersion = version; }
    // Kept with its label, "MCU : ...".
    QString mcuVersion() const { return m_mcuVersion; }
    void setMcuVersion(const QString &version) { m_mcuVersion = version; }

    QString deviceIp() const { return m_deviceIp; }
    void setDeviceIp(const QString &ip) { m_deviceIp = ip; }
    int devicePort() const { return m_devicePort; }
    void setDevicePort(int port) { m_devicePort = port; }

    QString netIp() const { return m_netIp; }
    void setNetIp(const QString &ip) { m_netIp = ip; }
    QString netGateway() const { return m_netGateway; }
    void setNetGateway(const QString &gateway) { m_netGateway = gateway; }
    QString netSubnet() const { return m_netSubnet; }
    void setNetSubnet(const QString &subnet) { m_netSubnet = subnet; }
    QString netMac() const { return m_netMac; }
    void setNetMac(const QString &mac) { m_netMac = mac; }

    // 1 for ORXM200, 0 for ORXM100.
    int modelFlag() const { return m_modelFlag; }
    void setModelFlag(int flag) { m_modelFlag = flag; }
    int joinMode() const { return m_joinMode; }
    void setJoinMode(int mode) { m_joinMode = mode; }

    // Output number -> input number.
    QMap<int, int> videoMap() const { return m_videoMap; }
    void setVideoMap(const QMap<int, int> &map) { m_videoMap = map; }
    QMap<int, int> audioMap() const { return m_audioMap; }
    void setAudioMap(const QMap<int, int> &map) { m_audioMap = map; }
    QMap<int, int> irMap() const { return m_irMap; }
    void setIrMap(const QMap<int, int> &map) { m_irMap = map; }

    // Input number -> whether it carries a signal.
    QMap<int, bool> inputSignalMap() const { return m_inputSignalMap; }
    void setInputSignalMap(const QMap<int, bool> &map) { m_inputSignalMap = map; }
    // Port number -> resolution text; "noinput" for an input without signal.
    QMap<int, QString> inputResolutionMap() const { return m_inputResolutionMap; }
    void setInputResolutionMap(const QMap<int, QString> &map) { m_inputResolutionMap = map; }
    QMap<int, QString> outputResolutionMap() const { return m_outputResolutionMap; }
    void setOutputResolutionMap(const QMap<int, QString> &map) { m_outputResolutionMap = map; }
    // Port number -> volume.
    QMap<int, int> volumeMap() const { return m_volumeMap; }
    void setVolumeMap(const QMap<int, int> &map) { m_volumeMap = map; }

    // Input port -> its OSD overlay.
    QMap<int, OverlayRecord> osdRecords() const { return m_osdRecords; }
    void setOsdRecords(const QMap<int, OverlayRecord> &records) { m_osdRecords = records; }
    OverlayRecord captionRecord() const { return m_captionRecord; }
    void setCaptionRecord(const OverlayRecord &record) { m_captionRecord = record; }

private:
    Q_DISABLE_COPY(DeviceRecord)

    QString m_modelType;
    QString m_fpgaVersion;
    QString m_mcuVersion;
    QString m_deviceIp;
    int m_devicePort = 0;
    QString m_netIp;
    QString m_netGateway;
    QString m_netSubnet;
    QString m_netMac;
    // Until the first version reply the application behaves as for the larger
    // ORXM200 (nine outputs), with the largest join layout.
    int m_modelFlag = 1;
    int m_joinMode = 6;
    QMap<int, int> m_videoMap;
    QMap<int, int> m_audioMap;
    QMap<int, int> m_irMap;
    QMap<int, bool> m_inputSignalMap;
    QMap<int, QString> m_inputResolutionMap;
    QMap<int, QString> m_outputResolutionMap;
    QMap<int, int> m_volumeMap;
    QMap<int, OverlayRecord> m_osdRecords;
    OverlayRecord m_captionRecord;
};

// The process-wide record, created on first use and never destroyed.
DeviceRecord *deviceRecord();
