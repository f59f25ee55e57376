#include "mainwindow/portnaming.h"

#include "mainwindow/sigmanager.h"

#include <QListWidget>

bool applyPortName(QListWidget *list, PortNames *names, PortNames::Kind kind, const QString &name)
{
    QListWidgetItem *item = list->currentItem();
    if (!item)
        return true;
    const int port = item->data(Qt::UserRole).toString().toInt();
    if (!names->rename(kind, port, name))
        return false;
    // The leading blank is part of the label operators know.
    item->setText(QString(" [%1] %2").arg(port).arg(name));

    SigManager *hub = SigManager::instance();
    if (kind == PortNames::VideoInput) {
        emit hub->Sig_RenameInputSignals(port);
    } else if (kind == PortNames::AudioInput) {
        emit hub->Sig_RenameInputSignals(port);
        emit hub->Sig_RenameInputAudioSignals(port);
    }
    return true;
}
