#pragma once

#include "device/devicerecord.h"
#include "device/replyparser.h"

#include <QJsonObject>
#include <QObject>

class MessageDistance;

// The application's picture of the device, built on a device record. Every
// reply goes through apply(); a change signal follows only when the record
// really changed, so views repaint nothing for a reply that repeats itself.
class DeviceModel : public QObject
{
    Q_OBJECT

public:
    // Switch kinds as the switch command numbers them.
    enum SwitchKind { Video = 0, Audio = 1, Ir = 2, Wall = 3 };

    // Works on `record`; without one, on a record of its own.
    explicit DeviceModel(DeviceRecord *record = nullptr, QObject *parent = nullptr);
    ~DeviceModel() override;

    const DeviceRecord &record() const { return *m_record; }

    // Applies one decoded reply under the reading rules of its signal; `port`
    // names the input an OSD reply belongs to.
    void apply(ReplySignal signal, const QJsonObject &reply);
    void applyOsd(int port, const QJsonObject &reply);
    // A switch sent from here, shown before the device confirms it.
    void recordSwitch(int input, int output, int kind);
    void recordJoinMode(int mode);

    // Feeds every reply signal of `link` into apply().
    void attach(MessageDistance *link);
    // Asks the device for its whole state: the five queries of a refresh.
    static void requestState(MessageDistance *link);

signals:
    void modelChanged(int modelFlag);
    void versionsChanged();
    void videoMapChanged();
    void audioMapChanged();
    void irMapChanged();
    void joinModeChanged(int mode);
    void inputSignalsChanged();
    void inputResolutionsChanged();
    void outputResolutionsChanged();
    void networkChanged();
    void volumesChanged();
    void osdChanged(int port);
    void captionChanged();
    // After every video, audio or IR map reply (SwitchKind), changed or not: what the
    // device reported is in the record now, before any later switch is recorded locally.
    void mapReported(int kind);

private:
    void setVideoMap(const QMap<int, int> &map);

    DeviceRecord *m_record;
    bool m_ownsRecord;
};
