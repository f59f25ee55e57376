#include "mainwindow/portnaming.h"

#include "mainwindow/sigmanager.h"
#include "store/portnamestore.h"

#include <QListWidget>

void applyPortName(QListWidget *list, PortListKind kind, const QString &name)
{
    QListWidgetItem *item = list->currentItem();
    if (!item)
        return;
    const int port = item->data(Qt::UserRole).toString().toInt();
    switch (kind) {
    case PortListKind::VideoInputs: PortNameStore::savePortName(port, name, PortNameStore::VideoInput); break;
    case PortListKind::VideoOutputs: PortNameStore::savePortName(port, name, PortNameStore::VideoOutput); break;
    case PortListKind::AudioInputs: PortNameStore::savePortName(port, name, PortNameStore::AudioInput); break;
    case PortListKind::AudioOutputs: PortNameStore::saveOutAudioPortName(port, name); break;
    case PortListKind::IrOutputs: PortNameStore::saveOutInfarePortName(port, name); break;
    }
    // The leading blank is part of the label operators know.
    item->setText(QString(" [%1] %2").arg(port).arg(name));

    SigManager *hub = SigManager::instance();
    if (kind == PortListKind::VideoInputs) {
        emit hub->Sig_RenameInputSignals(port);
    } else if (kind == PortListKind::AudioInputs) {
        emit hub->Sig_RenameInputSignals(port);
        emit hub->Sig_RenameInputAudioSignals(port);
    }
}
