#pragma once

#include "device/routeconfirmer.h"

#include <QListWidget>

// The route changes since the application started, newest first: from this
// window or seen in the device's reports.
class HistoryPage : public QListWidget
{
    Q_OBJECT

public:
    HistoryPage(RouteConfirmer *confirmer, QWidget *parent = nullptr);

private:
    // Each recorded change adds one line on top; the oldest goes past the limit.
    void addNewest();
    static QString describe(const RouteConfirmer::Change &change);

    RouteConfirmer *m_confirmer;
};
