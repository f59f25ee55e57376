#include "simdevice.h"

#include "uploadformats.h"

SimDevice::SimDevice(SimModel model)
    : m_state(model)
{
}

SimDevice::Outcome SimDevice::handle(const QByteArray &command)
{
    return CommandInterpreter(m_state, m_uploads).handle(command);
}

quint32 SimDevice::crc32(const QByteArray &bytes)
{
    return UploadFormats::crc32(bytes);
}
