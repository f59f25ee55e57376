#include "mainwindow/historypage.h"

#include "device/devicemodel.h"
#include "device/routeconfirmer.h"

HistoryPage::HistoryPage(RouteConfirmer *confirmer, QWidget *parent)
    : QListWidget(parent)
    , m_confirmer(confirmer)
{
    setObjectName("historyList");
    setStyleSheet("QListWidget#historyList { border: 0; padding: 8px; color: #2f3b35; }"
                  "QListWidget#historyList::item { padding: 5px 4px; border-bottom: 1px solid #e3ebe6; }");
    connect(confirmer, &RouteConfirmer::historyChanged, this, &HistoryPage::addNewest);
    const QList<RouteConfirmer::Change> changes = confirmer->history();
    for (int i = changes.size() - 1; i >= 0; --i)
        addItem(describe(changes[i]));
}

void HistoryPage::addNewest()
{
    const QList<RouteConfirmer::Change> changes = m_confirmer->history();
    if (changes.isEmpty())
        return;
    insertItem(0, describe(changes.last()));
    while (count() > changes.size())
        delete takeItem(count() - 1);
}

QString HistoryPage::describe(const RouteConfirmer::Change &change)
{
    const QString layer = change.kind == DeviceModel::Audio ? tr("Audio")
                          : change.kind == DeviceModel::Ir  ? tr("IR")
                                                            : tr("Video");
    return tr("%1  %2 output %3: input %4 -> %5  (%6)")
        .arg(change.time.toString("hh:mm:ss"), layer)
        .arg(change.output)
        .arg(change.from)
        .arg(change.to)
        .arg(change.local ? tr("from here") : tr("reported by the device"));
}
