// The yardstick for the application's start-up and idle memory: a bare Qt
// Widgets window that shows itself and sends one query to the device, as the
// application does first, then idles.
//   bench_bare_window HOST PORT
#include <QApplication>
#include <QTcpSocket>
#include <QWidget>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    if (argc < 3)
        return 2;
    QWidget window;
    window.resize(1280, 800);
    window.show();
    QTcpSocket socket;
    QObject::connect(&socket, &QTcpSocket::connected, [&] { socket.write("{param=version}"); });
    QObject::connect(&socket, &QTcpSocket::readyRead, [&] { socket.readAll(); });
    socket.connectToHost(QString::fromLatin1(argv[1]), quint16(QByteArray(argv[2]).toUInt()));
    return app.exec();
}
