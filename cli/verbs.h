#pragma once

#include "cli/exchange.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <limits>
#include <optional>

// Options that belong to one verb only; the command line accepts them anywhere.
struct VerbOptions
{
    QStringList kinds;   // "--audio", "--ir", "--wall": route only
    QString output;      // --output N: caption only
    bool outputSet = false;
};

// A verb with its arguments checked, ready to talk to the device.
using VerbRun = std::function<int(const Target &)>;

struct VerbCheck
{
    std::optional<VerbRun> run;
    QString error;           // names the wrong argument when run is empty
    bool showUsage = false;  // the command line's shape is wrong, not one of its values
};

// The verbs that talk to a device (checks.cpp).
bool isDeviceVerb(const QString &verb);
// `text` as a whole number in min..max, or nothing.
std::optional<int> numberIn(const QString &text, int min, int max = std::numeric_limits<int>::max());
// caption and logo draw pictures, which needs a (display-free) QGuiApplication.
bool needsGui(const QString &verb);
// `arguments` are the ones after the verb (checks.cpp).
VerbCheck checkVerb(const QString &verb, const QStringList &arguments, const VerbOptions &options);

// Asks the device for its model and checks `error(ports)`: empty means go on,
// otherwise it is reported with "nothing sent" and the run ends with ExitFailure.
std::optional<int> refuseOutOfModel(Exchange &exchange, const std::function<QString(int ports)> &error);
// Why a route cannot be made on a device with `ports` ports; empty when it can.
// kindFlag: "", "--audio", "--ir" or "--wall".
QString routeError(const QString &kindFlag, int input, int output, int ports);
QString portError(const char *name, int value, int ports);

// The runs (verbs.cpp, pictures.cpp, watch.cpp); each returns the exit status.
int runStatus(const Target &target);
int runRoute(const Target &target, const QString &kindFlag, int input, int output);
int runPreset(const Target &target, bool save, int preset);
// Without a level: the mute toggle.
int runVolume(const Target &target, int port, std::optional<int> level);
int runPattern(const Target &target, bool output, int port, int pattern);
int runResolution(const Target &target, int port, const QString &resolution);
int runEdidCopy(const Target &target, int input, int output);
int runEdidUpload(const Target &target, int input, const QString &path);
int runPicture(const Target &target, bool caption, int port, const QString &source);
int runWatch(const Target &target);

constexpr int Presets = 16;
constexpr int MaxPattern = 11;
constexpr int MaxVolume = 100;
