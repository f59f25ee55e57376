#include "device/devicerecord.h"

#include <QMutex>

DeviceRecord *deviceRecord()
{
    static QMutex mutex;
    static DeviceRecord *record = nullptr;
    QMutexLocker locker(&mutex);
    if (!record)
        record = new DeviceRecord;
    return record;
}
