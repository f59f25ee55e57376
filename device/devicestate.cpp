#include "device/devicestate.h"

#include "device/devicemodel.h"

#include <QDebug>
#include <QJsonArray>

#include <algorithm>
#include <cmath>

namespace DeviceState {

int portOfKey(const QString &key, const QString &prefix)
{
    const QStringList parts = key.split(prefix, Qt::SkipEmptyParts);
    return parts.isEmpty() ? 0 : parts.last().toInt();
}

QMap<int, int> intMap(const QJsonObject &reply, const QString &prefix)
{
    QMap<int, int> map;
    for (auto it = reply.begin(); it != reply.end(); ++it)
        map.insert(portOfKey(it.key(), prefix), it.value().toVariant().toInt());
    return map;
}

int modelPorts(int modelFlag)
{
    return modelFlag == 0 ? 8 : 9;
}

namespace {
// A JSON number or a decimal text that is a whole number; false for anything
// else, so 2.5 or 4294967298 can never be taken for some smaller port.
bool wholeNumber(const QJsonValue &value, qint64 *number)
{
    if (value.isDouble()) {
        const double d = value.toDouble();
        if (std::floor(d) != d || std::fabs(d) > 1e15)
            return false;
        *number = qint64(d);
        return true;
    }
    bool ok = false;
    if (value.isString())
        *number = value.toString().toLongLong(&ok, 10);
    return ok;
}

void reportIgnored(const QString &key, const QJsonValue &value)
{
    qWarning().noquote() << QString("device reply: %1 = %2 is not a port of this model, ignored")
                                    .arg(key, value.toVariant().toString());
}
} // namespace

QMap<int, int> routeMap(const QJsonObject &reply, const QString &prefix, int modelFlag)
{
    const auto hasDigit = [](const QString &text) {
        return std::any_of(text.begin(), text.end(), [](QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); });
    };
    const int ports = modelPorts(modelFlag);
    QMap<int, int> map;
    for (auto it = reply.begin(); it != reply.end(); ++it) {
        const QStringList parts = it.key().split(prefix, Qt::SkipEmptyParts);
        const QString number = parts.isEmpty() ? QString() : parts.last();
        bool isNumber = false;
        const int output = number.toInt(&isNumber, 10);
        if (!isNumber && !hasDigit(number)) {
            // No number at all: port 0, read as it always was.
            map.insert(0, it.value().toVariant().toInt());
            continue;
        }
        const bool knownOutput = (output >= 1 && output <= ports)
                || (prefix == QLatin1String("audio") && output >= 101 && output <= 100 + ports);
        qint64 input = -1;
        if (!isNumber || !knownOutput || !wholeNumber(it.value(), &input) || input < 0 || input > ports) {
            reportIgnored(it.key(), it.value());
            continue;
        }
        map.insert(output, int(input));
    }
    return map;
}

QMap<int, QString> textMap(const QJsonObject &reply, const QString &prefix)
{
    QMap<int, QString> map;
    for (auto it = reply.begin(); it != reply.end(); ++it)
        map.insert(portOfKey(it.key(), prefix), it.value().toVariant().toString());
    return map;
}

QMap<int, bool> signalMap(const QJsonObject &reply)
{
    QMap<int, bool> map;
    for (auto it = reply.begin(); it != reply.end(); ++it)
        map.insert(portOfKey(it.key(), "-"), it.value().toString() == QLatin1String("true"));
    return map;
}

int storeVersion(DeviceRecord *record, const QJsonObject &reply)
{
    const QString type = reply.value("type").toString();
    int flag = -1;
    if (type == QLatin1String("ORXM200"))
        flag = 1;
    else if (type == QLatin1String("ORXM100"))
        flag = 0;
    if (flag >= 0) {
        record->setModelType(type);
        record->setModelFlag(flag);
    }
    // Both prefixes end in a blank, and "MCU :" has one before the colon.
    record->setFpgaVersion("FPGA: " + reply.value("FPGA").toVariant().toString());
    record->setMcuVersion("MCU : " + reply.value("MCU").toVariant().toString());
    return flag;
}

void storeNetwork(DeviceRecord *record, const QJsonObject &reply)
{
    record->setNetIp(reply.value("ip").toVariant().toString());
    record->setNetGateway(reply.value("gateway").toVariant().toString());
    record->setNetSubnet(reply.value("subnet").toVariant().toString());
    record->setNetMac(reply.value("mac").toVariant().toString());
}

OverlayRecord overlayFromReply(const QJsonObject &reply)
{
    OverlayRecord overlay;
    if (reply.contains("Switch"))
        overlay.enabled = reply.value("Switch").toString() == QLatin1String("true");
    if (reply.contains("Color"))
        overlay.textColor = reply.value("Color").toVariant().toString();
    if (reply.contains("Speed"))
        overlay.speed = reply.value("Speed").toVariant().toInt();
    if (reply.contains("Position_x"))
        overlay.positionX = reply.value("Position_x").toVariant().toInt();
    if (reply.contains("Position_y"))
        overlay.positionY = reply.value("Position_y").toVariant().toInt();
    if (reply.contains("Bg_switch"))
        overlay.backgroundEnabled = reply.value("Bg_switch").toString() == QLatin1String("true");
    if (reply.contains("Bg_Color"))
        overlay.backgroundColor = reply.value("Bg_Color").toVariant().toString();
    if (reply.contains("Move_dir"))
        overlay.direction = reply.value("Move_dir").toVariant().toString();
    return overlay;
}

int jointOutputs(int mode, int modelFlag)
{
    static const int outputs[] = {1, 2, 2, 4, 6, 6};
    if (mode >= 0 && mode < 6)
        return outputs[mode];
    if (mode == 6)
        return modelFlag == 1 ? 9 : 8;
    return 0;
}

QMap<int, int> routesOf(const DeviceRecord &record, int kind)
{
    return kind == DeviceModel::Audio ? record.audioMap() : kind == DeviceModel::Ir ? record.irMap() : record.videoMap();
}

QList<int> switchedOutputs(const DeviceRecord &record, int kind, int output)
{
    if (kind != DeviceModel::Wall)
        return {output};
    QList<int> outputs;
    for (int n = 1; n <= jointOutputs(record.joinMode(), record.modelFlag()); ++n)
        outputs << n;
    return outputs;
}

namespace {
template<typename T>
QJsonObject mapToJson(const QMap<int, T> &map)
{
    QJsonObject object;
    for (auto it = map.begin(); it != map.end(); ++it)
        object.insert(QString::number(it.key()), QJsonValue::fromVariant(QVariant::fromValue(it.value())));
    return object;
}
} // namespace

QJsonObject toJson(const DeviceRecord &record)
{
    return QJsonObject{
        {"model", record.modelType()},
        {"modelFlag", record.modelFlag()},
        {"fpga", record.fpgaVersion()},
        {"mcu", record.mcuVersion()},
        {"joinMode", record.joinMode()},
        {"video", mapToJson(record.videoMap())},
        {"audio", mapToJson(record.audioMap())},
        {"ir", mapToJson(record.irMap())},
        {"inputSignal", mapToJson(record.inputSignalMap())},
        {"inputResolution", mapToJson(record.inputResolutionMap())},
        {"outputResolution", mapToJson(record.outputResolutionMap())},
        {"network", QJsonObject{{"ip", record.netIp()}, {"gateway", record.netGateway()},
                                {"subnet", record.netSubnet()}, {"mac", record.netMac()}}},
        {"volume", mapToJson(record.volumeMap())},
    };
}

} // namespace DeviceState
