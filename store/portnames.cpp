#include "store/portnames.h"

#include "store/portnamestore.h"

#include <QCoreApplication>

PortNames::PortNames(QObject *parent)
    : QObject(parent)
{
}

void PortNames::createTables()
{
    PortNameStore::createPortNameTables();
}

void PortNames::loadInputs(int inputs)
{
    m_inputs = PortNameStore::loadPortNames(PortNameStore::VideoInput);
    m_audioInputs = PortNameStore::loadPortNames(PortNameStore::AudioInput);
    // The main window's context, where the translations of these labels live.
    for (int port = 1; port <= inputs; ++port) {
        if (m_inputs.value(port).isEmpty())
            m_inputs.insert(port, QCoreApplication::translate("Widget", "Input %1").arg(port));
        if (m_audioInputs.value(port).isEmpty())
            m_audioInputs.insert(port, QCoreApplication::translate("Widget", "Audio %1").arg(port));
    }
}

QMap<int, QString> PortNames::names(Kind kind) const
{
    switch (kind) {
    case VideoInput: return m_inputs;
    case AudioInput: return m_audioInputs;
    case VideoOutput: return PortNameStore::loadPortNames(PortNameStore::VideoOutput);
    case AudioOutput: return PortNameStore::loadOutAudioPortNames();
    case IrOutput: return PortNameStore::loadOutInfarePortNames();
    }
    return {};
}

bool PortNames::rename(Kind kind, int port, const QString &name)
{
    switch (kind) {
    case VideoInput:
        if (!PortNameStore::savePortName(port, name, PortNameStore::VideoInput))
            return false;
        m_inputs.insert(port, name);
        return true;
    case AudioInput:
        if (!PortNameStore::savePortName(port, name, PortNameStore::AudioInput))
            return false;
        m_audioInputs.insert(port, name);
        return true;
    case VideoOutput: return PortNameStore::savePortName(port, name, PortNameStore::VideoOutput);
    case AudioOutput: return PortNameStore::saveOutAudioPortName(port, name);
    case IrOutput: return PortNameStore::saveOutInfarePortName(port, name);
    }
    return false;
}
