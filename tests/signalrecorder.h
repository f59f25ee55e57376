#pragma once

#include <QJsonObject>
#include <QObject>
#include <QPair>
#include <QStringList>
#include <QVector>

class MessageDistance;

// Records the link's signals in the order the GUI thread receives them
// (queued, as the application's windows get them).
class SignalRecorder : public QObject
{
    Q_OBJECT

public:
    explicit SignalRecorder(MessageDistance *link, QObject *parent = nullptr);

    QStringList names() const;
    QJsonObject lastObject(const QString &name) const;
    int count(const QString &name) const;
    void clear() { m_events.clear(); }
    bool waitFor(const QString &name, int count = 1, int timeoutMs = 5000);

private:
    void record(const QString &name, const QJsonObject &object = QJsonObject());

    QVector<QPair<QString, QJsonObject>> m_events;
};
