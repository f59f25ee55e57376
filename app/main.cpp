#include "app/appsettings.h"
#include "app/datafolder.h"
#include "app/logger.h"
#include "app/quitonsignal.h"
#include "device/devicemodel.h"
#include "device/messagedistance.h"
#include "mainwindow/widget.h"
#include "resources/guiresources.h"
#include "store/portnames.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QScreen>
#include <QDir>
#include <QTranslator>

#include <cstdio>
#include <optional>

namespace {

// --help and --version are answered before the QApplication exists, so they
// need no display. Every other argument is left to Qt (-platform, -style, ...).
std::optional<int> answerCommandLine(int argc, char *argv[])
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    QCommandLineParser parser;
    // Qt's one-dash words: "-stylesheet" must not read as -s -t ... -h.
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    const QCommandLineOption help({"h", "help"}, QString());
    const QCommandLineOption version({"v", "version"}, QString());
    parser.addOptions({help, version});
    parser.parse(arguments);  // unknown options are Qt's business
    if (parser.isSet(version)) {
        std::printf("OrvexControl %s\n", ORVEX_VERSION);
        return 0;
    }
    if (!parser.isSet(help))
        return std::nullopt;
    std::printf("usage: OrvexControl [-h|--help] [-v|--version] [Qt options such as -platform NAME]\n"
                "Controls an ORXM100 or ORXM200 matrix switcher over the network (orvex-sim emulates one).\n"
                "  -h, --help     print this help and exit\n"
                "  -v, --version  print the version and exit\n"
                "Files: config.ini, project.db and log/ beside the program when its folder is writable\n"
                "(log/ then in the working directory); otherwise in $XDG_DATA_HOME/OrvexControl\n"
                "(~/.local/share/OrvexControl), where files found beside the program are copied once.\n");
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    if (const std::optional<int> status = answerCommandLine(argc, argv))
        return *status;
    // Fixed, so that the per-user data folder does not follow a renamed binary.
    QCoreApplication::setApplicationName(QStringLiteral("OrvexControl"));
    pinLocalTimeZone();
    QApplication app(argc, argv);
    initGuiResources();
    // Inert on purpose: the main window chooses and installs the language.
    QTranslator translator;

    const QString logs = logFolder();
    QDir().mkpath(logs);
    setLogFolder(logs);
    qInstallMessageHandler(logMessageHandler);
    // A service manager's SIGTERM or a ^C ends the application like its close button.
    QuitOnSignal quitOnSignal;

    // The window shows the process-wide record that the log-in dialogs also use.
    AppSettings *settings = AppSettings::instance();
    deviceRecord()->setDeviceIp(settings->ip());
    deviceRecord()->setDevicePort(settings->port());
    DeviceModel model(deviceRecord());
    PortNames names;

    Widget window({settings, &model, MessageDistance::instance(), &names});
    if (settings->windowGeometry().isEmpty()) {
        // First start: centred; later starts open where the window was left.
        QRect frame = window.frameGeometry();
        frame.moveCenter(QGuiApplication::primaryScreen()->availableGeometry().center());
        window.move(frame.topLeft());
    }

    const int status = app.exec();
    // Joined here, while the window and the model its replies feed still exist;
    // the post routine that would otherwise do it runs after them.
    MessageDistance::instance()->stopWorker();
    return status;
}
