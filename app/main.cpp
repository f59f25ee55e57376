#include "app/appsettings.h"
#include "app/logger.h"
#include "app/quitonsignal.h"
#include "device/devicemodel.h"
#include "device/messagedistance.h"
#include "mainwindow/widget.h"
#include "resources/guiresources.h"
#include "store/accountstore.h"
#include "store/portnames.h"

#include <QApplication>
#include <QScreen>
#include <QDir>
#include <QTranslator>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    initGuiResources();
    // Inert on purpose: the main window chooses and installs the language.
    QTranslator translator;

    QDir().mkpath("log");
    qInstallMessageHandler(logMessageHandler);
    // A service manager's SIGTERM or a ^C ends the application like its close button.
    QuitOnSignal quitOnSignal;

    // The window shows the process-wide record that the log-in dialogs also use.
    AppSettings *settings = AppSettings::instance();
    deviceRecord()->setDeviceIp(settings->ip());
    deviceRecord()->setDevicePort(settings->port());
    DeviceModel model(deviceRecord());
    AccountStore::createTables();  // before the port-name tables, as project.db files have them
    PortNames names;

    Widget window({settings, &model, MessageDistance::instance(), &names});
    QRect frame = window.frameGeometry();
    frame.moveCenter(QGuiApplication::primaryScreen()->availableGeometry().center());
    window.move(frame.topLeft());

    const int status = app.exec();
    // Joined here, while the window and the model its replies feed still exist;
    // the post routine that would otherwise do it runs after them.
    MessageDistance::instance()->stopWorker();
    return status;
}
