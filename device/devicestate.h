#pragma once

#include "device/devicerecord.h"

#include <QJsonObject>
#include <QMap>
#include <QString>

// Turns the device's replies into the device record. Every map reply has one
// member per port: a key prefix followed by the port number.
namespace DeviceState {

// The port number of `key`: the last part after splitting at `prefix`; 0 when
// the key carries no number (such members are kept under port 0).
int portOfKey(const QString &key, const QString &prefix);

QMap<int, int> intMap(const QJsonObject &reply, const QString &prefix);
// A video ("video"), audio ("audio") or IR ("IR") map: output -> input. Outputs
// and inputs the model of `modelFlag` does not have (1..9, 1..8 for flag 0; the
// HDMI audio outputs from 101) and values that are no whole number are dropped
// with a log line. Members without a number ("mode") stay under port 0.
QMap<int, int> routeMap(const QJsonObject &reply, const QString &prefix, int modelFlag);
QMap<int, QString> textMap(const QJsonObject &reply, const QString &prefix);
// Only the text "true" counts as a signal.
QMap<int, bool> signalMap(const QJsonObject &reply);

// Stores type and versions; returns the new model flag, or -1 for an unknown type
// (which keeps the previous model).
int storeVersion(DeviceRecord *record, const QJsonObject &reply);
void storeNetwork(DeviceRecord *record, const QJsonObject &reply);
OverlayRecord overlayFromReply(const QJsonObject &reply);

// Ports of each kind on the model: inputs and outputs alike.
int modelPorts(int modelFlag);
// Outputs a joined wall covers in join mode `mode`.
int jointOutputs(int mode, int modelFlag);
// For a switch of `kind` (DeviceModel::SwitchKind): the map it changes (the wall's
// is the video map), and the outputs it covers (the wall covers every joined one).
QMap<int, int> routesOf(const DeviceRecord &record, int kind);
QList<int> switchedOutputs(const DeviceRecord &record, int kind, int output);

// The whole record as one JSON object, for tools.
QJsonObject toJson(const DeviceRecord &record);

} // namespace DeviceState
