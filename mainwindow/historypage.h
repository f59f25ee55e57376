#pragma once

#include <QListWidget>

class RouteConfirmer;

// The route changes since the application started, newest first: from this
// window or seen in the device's reports.
class HistoryPage : public QListWidget
{
    Q_OBJECT

public:
    HistoryPage(RouteConfirmer *confirmer, QWidget *parent = nullptr);

private:
    void refill();

    RouteConfirmer *m_confirmer;
};
