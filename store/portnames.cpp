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

QMap<int, QString> &PortNames::outputs(Kind kind) const
{
    if (!m_outputs.contains(kind)) {
        m_outputs.insert(kind, kind == VideoOutput   ? PortNameStore::loadPortNames(PortNameStore::VideoOutput)
                               : kind == AudioOutput ? PortNameStore::loadOutAudioPortNames()
                                                     : PortNameStore::loadOutInfarePortNames());
    }
    return m_outputs[kind];
}

QMap<int, QString> PortNames::names(Kind kind) const
{
    switch (kind) {
    case VideoInput: return m_inputs;
    case AudioInput: return m_audioInputs;
    case VideoOutput:
    case AudioOutput:
    case IrOutput: return outputs(kind);
    }
    return {};
}

bool PortNames::rename(Kind kind, int port, const QString &name)
{
    const bool stored = kind == AudioOutput ? PortNameStore::saveOutAudioPortName(port, name)
                        : kind == IrOutput  ? PortNameStore::saveOutInfarePortName(port, name)
                        : kind == VideoInput ? PortNameStore::savePortName(port, name, PortNameStore::VideoInput)
                        : kind == AudioInput ? PortNameStore::savePortName(port, name, PortNameStore::AudioInput)
                                             : PortNameStore::savePortName(port, name, PortNameStore::VideoOutput);
    if (!stored)
        return false;
    if (kind == VideoInput)
        m_inputs.insert(port, name);
    else if (kind == AudioInput)
        m_audioInputs.insert(port, name);
    else
        outputs(kind).insert(port, name);
    return true;
}
