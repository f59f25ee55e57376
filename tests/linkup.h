#pragma once

#include "device/messagedistance.h"

#include <QSignalSpy>
#include <QTest>

// Connects `link` and waits for its command connection and, when the device has
// one, its file connection.
inline bool connectLink(MessageDistance &link, const QString &host, quint16 port, bool filePort = true)
{
    QSignalSpy connected(&link, &MessageDistance::connectSuccessFulSig);
    link.connectToDevice(host, port);
    return connected.wait(3000) && (!filePort || QTest::qWaitFor([&link] { return link.isUploadConnected(); }));
}
