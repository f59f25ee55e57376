#pragma once

#include <QObject>

class QSocketNotifier;

// SIGINT and SIGTERM end the application the way its own quit does: the event
// loops return and destructors run, so the link's worker thread is stopped and
// joined instead of being killed mid-reply. The handler only writes the signal
// number to a pipe; the rest happens in the event loop of the creating thread.
// One instance at a time; the default dispositions come back with its end.
class QuitOnSignal : public QObject
{
    Q_OBJECT

public:
    // Every running event loop of the application returns exitCode.
    explicit QuitOnSignal(int exitCode = 0, QObject *parent = nullptr);
    ~QuitOnSignal() override;

private:
    void onReadable();

    int m_exitCode;
    QSocketNotifier *m_notifier = nullptr;
};
