// orvexctl's argument checks: every verb's arguments are checked before
// anything is sent, and the first wrong one is named. Ports are checked against
// the largest model here, and against the device's own model once connected.
#include "cli/verbs.h"
#include "device/commandtext.h"

#include <QFileInfo>

#include <algorithm>

#include <limits>

std::optional<int> numberIn(const QString &text, int min, int max)
{
    bool ok = false;
    const int value = text.toInt(&ok);
    if (!ok || value < min || value > max)
        return std::nullopt;
    return value;
}

namespace {

// The verb's positional arguments: how many, and their names for the messages.
struct Shape
{
    QString verb;
    QStringList names;
};

const QList<Shape> Shapes = {
    {"status", {}},
    {"watch", {}},
    {"route", {"INPUT", "OUTPUT"}},
    {"preset", {"save|recall", "N"}},
    {"volume", {"PORT", "LEVEL"}},
    {"mute", {"PORT"}},
    {"pattern", {"in|out", "PORT", "N"}},
    {"resolution", {"PORT", "TEXT"}},
    {"edid", {"copy|upload", "IN", "OUT|FILE"}},
    {"caption", {"TEXT"}},
    {"logo", {"OUTPUT", "FILE"}},
};

class Checker
{
public:
    explicit Checker(const QStringList &arguments) : m_arguments(arguments) {}

    // The argument at `index` as a number in min..max; on failure names it (once).
    int value(int index, const QString &name, int min, int max = std::numeric_limits<int>::max())
    {
        const QString text = m_arguments.value(index);
        const std::optional<int> parsed = numberIn(text, min, max);
        if (!parsed && m_error.isEmpty()) {
            bool isNumber = false;
            text.toInt(&isNumber);
            m_notANumber = !isNumber;
            m_error = max == std::numeric_limits<int>::max() ? QStringLiteral("%1 %2 is not a port number").arg(name, text)
                      : max == MaxPorts ? QStringLiteral("%1 %2 is not a port (1..%3)").arg(name, text).arg(max)
                                        : QStringLiteral("%1 %2 is not a number in %3..%4").arg(name, text).arg(min).arg(max);
        }
        return parsed.value_or(0);
    }
    // Text where a number belongs: the usage is shown with the error.
    bool notANumber() const { return m_notANumber; }
    void fail(const QString &error)
    {
        if (m_error.isEmpty())
            m_error = error;
    }
    const QString &error() const { return m_error; }

private:
    QStringList m_arguments;
    QString m_error;
    bool m_notANumber = false;
};

} // namespace

bool isDeviceVerb(const QString &verb)
{
    return std::any_of(Shapes.begin(), Shapes.end(), [&](const Shape &shape) { return shape.verb == verb; });
}

VerbCheck checkVerb(const QString &verb, const QStringList &arguments, const VerbOptions &options)
{
    VerbCheck check;
    check.showUsage = true;
    const auto shape = std::find_if(Shapes.begin(), Shapes.end(), [&](const Shape &s) { return s.verb == verb; });
    if (shape == Shapes.end()) {
        check.error = QStringLiteral("unknown command %1").arg(verb);
        return check;
    }
    const QStringList &names = shape->names;
    if (verb != "route" && !options.kinds.isEmpty()) {
        check.error = QStringLiteral("%1 goes with route, not %2").arg(options.kinds[0], verb);
        return check;
    }
    if (verb != "caption" && options.outputSet) {
        check.error = QStringLiteral("--output goes with caption, not %1").arg(verb);
        return check;
    }
    if (names.isEmpty() && !arguments.isEmpty()) {
        check.error = QStringLiteral("%1 takes no argument, got %2").arg(verb, arguments[0]);
        return check;
    }
    if (arguments.size() < names.size()) {
        check.error = QStringLiteral("%1 needs %2").arg(verb, names.join(" and "));
        return check;
    }
    if (arguments.size() > names.size()) {
        check.error = QStringLiteral("%1 takes %2 only, got %3 too").arg(verb, names.join(" and "), arguments[names.size()]);
        return check;
    }
    if (options.kinds.size() > 1) {
        check.error = QStringLiteral("%1 exclude each other").arg(options.kinds.join(" and "));
        return check;
    }
    // A mode word such as save|recall: one of the two, named when it is neither.
    const QString mode = arguments.value(0);
    const QStringList modes = names.value(0).split('|');
    if (modes.size() == 2 && !modes.contains(mode)) {
        check.error = QStringLiteral("%1 is not %2").arg(mode, modes.join(" or "));
        return check;
    }

    Checker c(arguments);
    if (verb == "status") {
        check.run = [](const Target &target) { return runStatus(target); };
    } else if (verb == "watch") {
        check.run = [](const Target &target) { return runWatch(target); };
    } else if (verb == "route") {
        const int input = c.value(0, "INPUT", 1), output = c.value(1, "OUTPUT", 1);
        if (c.error().isEmpty()) {
            const QString kind = options.kinds.value(0);
            c.fail(routeError(kind, input, output, MaxPorts));
            check.run = [=](const Target &target) { return runRoute(target, kind, input, output); };
        }
    } else if (verb == "preset") {
        const int preset = c.value(1, "N", 1, Presets);
        check.run = [=](const Target &target) { return runPreset(target, mode == "save", preset); };
    } else if (verb == "volume" || verb == "mute") {
        const int port = c.value(0, "PORT", 1, MaxPorts);
        const std::optional<int> level = verb == "volume" ? std::optional<int>(c.value(1, "LEVEL", 0, MaxVolume)) : std::nullopt;
        check.run = [=](const Target &target) { return runVolume(target, port, level); };
    } else if (verb == "pattern") {
        const int port = c.value(1, "PORT", 1, MaxPorts), pattern = c.value(2, "N", 0, MaxPattern);
        check.run = [=](const Target &target) { return runPattern(target, mode == "out", port, pattern); };
    } else if (verb == "resolution") {
        const int port = c.value(0, "PORT", 1, MaxPorts);
        const QString text = arguments[1];
        if (!CommandText::resolutions().contains(text))
            c.fail(QStringLiteral("TEXT %1 is not a resolution the device takes (%2)").arg(text, CommandText::resolutions().join(' ')));
        check.run = [=](const Target &target) { return runResolution(target, port, text); };
    } else if (verb == "edid") {
        const int input = c.value(1, "IN", 1, MaxPorts);
        if (mode == "copy") {
            const int output = c.value(2, "OUT", 1, MaxPorts);
            check.run = [=](const Target &target) { return runEdidCopy(target, input, output); };
        } else {
            const QString path = arguments[2];
            const QFileInfo file(path);
            if (!file.isFile() || !file.isReadable())
                c.fail(QStringLiteral("FILE %1 is not a readable file").arg(path));
            else if (file.size() == 0 || file.size() > 16 * 1024 * 1024)
                c.fail(QStringLiteral("FILE %1 has %2 bytes, not 1..16777216").arg(path).arg(file.size()));
            check.run = [=](const Target &target) { return runEdidUpload(target, input, path); };
        }
    } else if (verb == "caption") {
        const QString text = arguments[0];
        Checker option(QStringList{options.output});
        const int output = options.outputSet ? option.value(0, "--output", 1, MaxPorts) : 1;
        c.fail(option.error());
        if (text.trimmed().isEmpty())
            c.fail(QStringLiteral("TEXT is empty"));
        check.run = [=](const Target &target) { return runPicture(target, true, output, text); };
    } else if (verb == "logo") {
        const int output = c.value(0, "OUTPUT", 1, MaxPorts);
        const QString path = arguments[1];
        if (!QFileInfo(path).isFile() || !QFileInfo(path).isReadable())
            c.fail(QStringLiteral("FILE %1 is not a readable file").arg(path));
        check.run = [=](const Target &target) { return runPicture(target, false, output, path); };
    }
    if (!c.error().isEmpty()) {
        check.run.reset();
        check.error = c.error();
    }
    check.showUsage = c.notANumber();
    return check;
}
