#include "mainwindow/sigmanager.h"

#include <QMutex>

SigManager *SigManager::instance()
{
    static QMutex mutex;
    static SigManager *hub = nullptr;
    QMutexLocker locker(&mutex);
    if (!hub)
        hub = new SigManager;
    return hub;
}
