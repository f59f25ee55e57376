#include "app/quitonsignal.h"

#include <QCoreApplication>
#include <QDebug>
#include <QSocketNotifier>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

// The self-pipe: written by the handler, read by the notifier.
int g_pipe[2] = {-1, -1};
constexpr int Signals[] = {SIGINT, SIGTERM};

void onSignal(int signalNumber)
{
    const int savedErrno = errno;
    const unsigned char byte = static_cast<unsigned char>(signalNumber);
    // Non-blocking: with the pipe full, a quit is already on its way.
    [[maybe_unused]] const ssize_t written = ::write(g_pipe[1], &byte, 1);
    errno = savedErrno;
}

} // namespace

QuitOnSignal::QuitOnSignal(int exitCode, QObject *parent)
    : QObject(parent)
    , m_exitCode(exitCode)
{
    Q_ASSERT_X(g_pipe[0] < 0, "QuitOnSignal", "one instance at a time");
    if (::pipe2(g_pipe, O_CLOEXEC | O_NONBLOCK) != 0) {
        qWarning() << "QuitOnSignal: no pipe, SIGINT and SIGTERM keep their default action";
        g_pipe[0] = g_pipe[1] = -1;
        return;
    }
    m_notifier = new QSocketNotifier(g_pipe[0], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &QuitOnSignal::onReadable);

    struct sigaction action = {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;  // blocking calls elsewhere carry on; the loop sees the pipe
    for (int signalNumber : Signals)
        sigaction(signalNumber, &action, nullptr);
}

QuitOnSignal::~QuitOnSignal()
{
    if (!m_notifier)
        return;
    for (int signalNumber : Signals)
        std::signal(signalNumber, SIG_DFL);
    delete m_notifier;
    m_notifier = nullptr;
    ::close(g_pipe[0]);
    ::close(g_pipe[1]);
    g_pipe[0] = g_pipe[1] = -1;
}

void QuitOnSignal::onReadable()
{
    unsigned char byte = 0;
    int last = 0;
    while (::read(g_pipe[0], &byte, 1) == 1)
        last = byte;
    if (last == 0)
        return;
    qDebug() << "signal" << last << "received, quitting";
    QCoreApplication::exit(m_exitCode);
}
