#include "app/logger.h"
#include "mainwindow/widget.h"
#include "resources/guiresources.h"

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

    Widget window;
    QRect frame = window.frameGeometry();
    frame.moveCenter(QGuiApplication::primaryScreen()->availableGeometry().center());
    window.move(frame.topLeft());

    return app.exec();
}
