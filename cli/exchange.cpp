#include "cli/exchange.h"

#include "device/commandtext.h"

#include <QEventLoop>
#include <QJsonDocument>
#include <QSet>
#include <QTextStream>
#include <QTimer>

#include <cstdio>

void printLine(const QJsonObject &object)
{
    QTextStream out(stdout);
    out << QJsonDocument(object).toJson(QJsonDocument::Compact) << '\n';
    out.flush();
    std::fflush(stdout);  // a pipe is block-buffered: watch's reader needs each line as it comes
}

int exitStatus(Exchange::Outcome outcome)
{
    return outcome == Exchange::Interrupted ? 0 : ExitFailure;
}

Exchange::Exchange(const Target &target)
    : m_target(target)
    , m_deadline(target.deadlineSeconds * 1000, Qt::PreciseTimer)
{
    m_model.attach(&m_link);
    // The link's only word on a failed transfer; its text is meant for the window.
    m_link.setMessagePresenter([this](const QString &, const QString &) { m_uploadFailed = true; });
}

void Exchange::reportTimeout(const char *what) const
{
    std::fprintf(stderr, "orvexctl: %s %s:%u within %d s\n", what, qPrintable(m_target.host), unsigned(m_target.port),
                 m_target.deadlineSeconds);
}

Exchange::Outcome Exchange::round(const QList<Reply> &awaited, const std::function<void(MessageDistance &)> &send,
                                  int graceMs)
{
    QEventLoop loop;  // also the context of this round's connections
    QSet<int> missing;
    for (int i = 0; i < awaited.size(); ++i) {
        missing.insert(i);
        // Connected after the model's own connection, so the model has read the reply.
        QObject::connect(&m_link, awaited[i], &loop, [&missing, &loop, i] {
            missing.remove(i);
            if (missing.isEmpty())
                loop.exit(Answered);
        });
    }
    bool sent = false;
    auto sendOnce = [&] {
        // Only once: a reconnect after a dropped line must not switch twice.
        if (!sent) {
            sent = m_sent = true;
            send(m_link);
            // A grace period runs from the sending, not from connecting.
            if (graceMs >= 0 && graceMs < m_deadline.remainingTime())
                QTimer::singleShot(graceMs, Qt::PreciseTimer, &loop, [&loop] { loop.exit(Unanswered); });
            if (awaited.isEmpty())
                loop.exit(Answered);
        }
    };
    QObject::connect(&m_link, &MessageDistance::connectSuccessFulSig, &loop, sendOnce);
    QTimer::singleShot(int(m_deadline.remainingTime()), Qt::PreciseTimer, &loop, [&loop] { loop.exit(TimedOut); });
    if (!m_started) {
        m_started = true;
        m_link.connectToDevice(m_target.host, m_target.port);
    } else if (m_link.isConnected()) {
        QTimer::singleShot(0, &loop, sendOnce);
    }
    const int result = loop.exec();
    if (result == Answered || result == Unanswered)
        return Outcome(result);
    if (result != TimedOut)
        return Interrupted;  // the signal handler's code, or -1 once the application is quitting
    reportTimeout(m_sent ? "no answer from" : "no connection to");
    return TimedOut;
}

Exchange::Outcome Exchange::waitUntil(const std::function<bool()> &done, const char *what)
{
    if (!m_uploadFailed && done())
        return Answered;
    QEventLoop loop;
    // The link has no signal for these states; a short poll is cheap for one run.
    QTimer poll;
    poll.setInterval(10);
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (m_uploadFailed)
            loop.exit(Failed);
        else if (done())
            loop.exit(Answered);
    });
    poll.start();
    QTimer::singleShot(int(m_deadline.remainingTime()), Qt::PreciseTimer, &loop, [&loop] { loop.exit(TimedOut); });
    const int result = loop.exec();
    if (result == Answered || result == Failed)
        return Outcome(result);
    if (result != TimedOut)
        return Interrupted;
    std::fprintf(stderr, "orvexctl: %s %s:%u within %d s\n", what, qPrintable(m_target.host),
                 unsigned(MessageDistance::FilePort), m_target.deadlineSeconds);
    return TimedOut;
}

Exchange::Outcome Exchange::upload(const QString &command, const QByteArray &payload)
{
    // The file connection opens with the command connection, which a round has set up.
    Outcome outcome = waitUntil([this] { return m_link.isUploadConnected(); }, "no connection to");
    if (outcome != Answered)
        return outcome;
    m_uploadFailed = false;
    m_link.sendFile(command, payload, CommandText::done());
    outcome = waitUntil([this] { return !m_link.isUploading() && !m_link.isAwaitingAck() && m_link.pendingUploads() == 0; },
                        "no acknowledgement from");
    if (outcome == Failed)
        std::fprintf(stderr, "orvexctl: the upload to %s:%u failed\n", qPrintable(m_target.host),
                     unsigned(MessageDistance::FilePort));
    return outcome;
}
