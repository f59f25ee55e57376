#include "device/commandtext.h"

namespace CommandText {

QString wrap(const QString &body)
{
    return QStringLiteral("{param=") + body + QLatin1Char('}');
}

QString versionQuery() { return wrap("version"); }
QString resolutionQuery() { return wrap("resolution"); }
QString statusQuery() { return wrap("status"); }
QString inputInfoQuery() { return wrap("inputinfo"); }
QString netInfoQuery() { return wrap("netInfo"); }

QString networkSetting(const QString &ip, const QString &gateway, const QString &subnet, const QString &mac)
{
    return QString("{param=&ip,ip=%1,gateway=%2,subnet=%3,mac=%4}").arg(ip, gateway, subnet, mac);
}

QString switchRoute(int input, int output, int kind)
{
    QString word;
    switch (kind) {
    case Video: word = "VIDEO"; break;
    case Audio: word = "AUDIO"; break;
    case Ir: word = "IR"; break;
    case VideoWall:
        // The whole joined wall is addressed as output 101.
        word = "VIDEO";
        output = 101;
        break;
    default: break;
    }
    return wrap(QString::number(input) + word + QString::number(output));
}

QString mode(int mode) { return wrap("mode" + QString::number(mode)); }
QString factoryDefault() { return wrap("Default"); }
QString inputPattern(int port, int pattern) { return QString("{param=In_Pattern%1/%2}").arg(port).arg(pattern); }
QString outputPattern(int port, int pattern) { return QString("{param=Out_Pattern%1/%2}").arg(port).arg(pattern); }
QString bell(bool on) { return wrap(on ? "BellOn" : "BellOff"); }
QString savePreset(int preset) { return wrap("Save" + QString::number(preset)); }
QString recallPreset(int preset) { return wrap("Recall" + QString::number(preset)); }
QString volume(int port, int level) { return QString("{param=Volume%1/%2}").arg(port).arg(level); }
QString mute(int port) { return wrap("Mute" + QString::number(port)); }
QString uploadSubtitle(int number) { return wrap("Upload_Subtitle" + QString::number(number)); }
QString setOsd(int number) { return wrap("Set_OSD" + QString::number(number)); }
// Lower-case "subtitle" is what the firmware expects for this one command.
QString setSubtitle() { return wrap("Set_subtitle"); }
QString osdSwitch(bool open) { return wrap(open ? "Open" : "Close"); }
QString osdSpeed(int speed) { return wrap("Speed" + QString::number(speed)); }

QString osdDirection(int direction)
{
    if (direction == 0)
        return wrap("Left");
    if (direction == 1)
        return wrap("Right");
    return QString();
}

QString osdPosition(int x, int y) { return QString("{param=POS%1/%2}").arg(x).arg(y); }

QString fontColor(int red, int green, int blue)
{
    return QString("{param=Font_Color%1/%2/%3}").arg(red).arg(green).arg(blue);
}

QString backgroundColor(int red, int green, int blue)
{
    return QString("{param=Bg_Color%1/%2/%3}").arg(red).arg(green).arg(blue);
}

QString backgroundSwitch(bool open) { return wrap(open ? "Bg_Open" : "Bg_Close"); }
QString copyEdid(int input, int source) { return QString("{param=Copy_EDID%1/%2}").arg(input).arg(source); }
QString updateEdid(int port) { return wrap("Update_EDID" + QString::number(port)); }
QString osdQuery(int number) { return wrap("Get_OSD" + QString::number(number)); }
QString subtitleQuery() { return wrap("Get_Subtitle"); }
QString volumeQuery() { return wrap("Get_Volume"); }
QString eraseOsd() { return wrap("EraseOSD"); }
QString eraseSubtitle() { return wrap("EraseSubtitle"); }

const QStringList &resolutions()
{
    static const QStringList list = {
        "800x600x60Hz",   "1024x768x60Hz",  "1280x720x50Hz",  "1280x720x60Hz",  "1280x768x60Hz",  "1280x800x60Hz",
        "1280x960x60Hz",  "1280x1024x60Hz", "1360x768x60Hz",  "1366x768x60Hz",  "1440x900x60Hz",  "1600x900x60Hz",
        "1600x1200x60Hz", "1920x540x50Hz",  "1920x540x60Hz",  "1920x1080x30Hz", "1920x1080x50Hz", "1920x1080x60Hz",
        "1920x1200x60Hz", "3840x2160x30Hz", "4096x2160x30Hz", "3840x2160x60Hz", "4096x2160x60Hz",
    };
    return list;
}

QString portResolution(int port, const QString &resolution)
{
    // The "!" before the brace is part of the command.
    return QString("{param=Port%1/%2!}").arg(port).arg(resolution);
}

QString analogSelect(int port, int source) { return QString("{param=Analog_sel%1/%2}").arg(port).arg(source); }
QString uploadOsd(int target) { return wrap("Upload_OSD" + QString::number(target)); }
QString done() { return wrap("Done"); }

} // namespace CommandText
