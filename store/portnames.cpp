#include "store/portnames.h"

#include "store/portnamestore.h"

#include <QCoreApplication>

PortNames::PortNames(QObject *parent)
    : QObject(parent)
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

void PortNames::rename(Kind kind, int port, const QString &name)
{
    switch (kind) {
    case VideoInput:
        PortNameStore::savePortName(port, name, PortNameStore::VideoInput);
        m_inputs.insert(port, name);
        break;
    case AudioInput:
        PortNameStore::savePortName(port, name, PortNameStore::AudioInput);
        m_audioInputs.insert(port, name);
        break;
    case VideoOutput: PortNameStore::savePortName(port, name, PortNameStore::VideoOutput); break;
    case AudioOutput: PortNameStore::saveOutAudioPortName(port, name); break;
    case IrOutput: PortNameStore::saveOutInfarePortName(port, name); break;
    }
}
