#include "simdevice.h"

SimDevice::SimDevice(SimModel model)
    : m_state(model)
{
}

SimDevice::Outcome SimDevice::handle(const QByteArray &command)
{
    return CommandInterpreter(m_state, m_uploads).handle(command);
}
