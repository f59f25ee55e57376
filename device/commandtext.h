#pragma once

#include <QString>
#include <QStringList>

// The texts of the device's command set. Every command is "{param=...}" with
// integers in plain decimal and strings inserted as given, unescaped.
namespace CommandText {

enum SwitchKind { Video = 0, Audio = 1, Ir = 2, VideoWall = 3 };

QString wrap(const QString &body);

QString versionQuery();
QString resolutionQuery();
QString statusQuery();
QString inputInfoQuery();
QString netInfoQuery();
QString networkSetting(const QString &ip, const QString &gateway, const QString &subnet, const QString &mac);
QString switchRoute(int input, int output, int kind);
QString mode(int mode);
QString factoryDefault();
QString inputPattern(int port, int pattern);
QString outputPattern(int port, int pattern);
QString bell(bool on);
QString savePreset(int preset);
QString recallPreset(int preset);
QString volume(int port, int level);
QString mute(int port);
QString uploadSubtitle(int number);
QString setOsd(int number);
QString setSubtitle();
QString osdSwitch(bool open);
QString osdSpeed(int speed);
QString osdDirection(int direction);
QString osdPosition(int x, int y);
QString fontColor(int red, int green, int blue);
QString backgroundColor(int red, int green, int blue);
QString backgroundSwitch(bool open);
QString copyEdid(int input, int source);
QString updateEdid(int port);
QString osdQuery(int number);
QString subtitleQuery();
QString volumeQuery();
QString eraseOsd();
QString eraseSubtitle();
QString portResolution(int port, const QString &resolution);
// The output timings the device takes, in the order the resolution dialog offers them.
const QStringList &resolutions();
QString analogSelect(int port, int source);
QString uploadOsd(int target);
QString done();

} // namespace CommandText
