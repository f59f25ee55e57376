#pragma once

#include <QList>
#include <QObject>
#include <QSize>

#include <memory>

class DeviceModel;
class ListWidget;
class MessageDistance;
class PortNames;
class RouteConfirmer;
class QButtonGroup;
class QPushButton;
class QTabWidget;
class TableWidget;
namespace Ui {
class AudioPage;
}

// The routing pages: the signal list, the output grids, the wall's layout
// buttons and the drops that switch. They show the device model and redraw
// on its change signals; a drop sends the switch and records it locally.
class RoutingPages : public QObject
{
    Q_OBJECT

public:
    struct Views
    {
        ListWidget *list;
        QTabWidget *tabs;
        TableWidget *video;
        // Empty until first shown: then each gets its form, and its grids once building has started.
        QWidget *jointPage;
        QWidget *audioPage;
        QWidget *irPage;
    };

    RoutingPages(const Views &views, DeviceModel *model, MessageDistance *link, PortNames *names,
                 QObject *parent = nullptr);
    ~RoutingPages() override;

    // Face of join-layout button `id` as last drawn: (columns, rows).
    QSize joinFace(int id) const;
    // A layout button was pressed: the device is told and the wall reshaped.
    void chooseJoinLayout(int id);
    // Re-reads the stored port names (their defaults follow the language).
    void reloadNames();
    // Re-reads only the input names: the list and the grids' input labels.
    void rebuildSignalList();
    // The list marks audio or video signals, as the current page shows.
    void refreshSignalPresence();
    // No grid is built before one of the two calls below, so that building them does
    // not hold up the device's first query. From this one on, the page on show has its
    // grids, and so does each page when it is first shown.
    void startBuildingGrids();
    // Every grid, shown or not: once the device has been asked for its state.
    void buildAllGrids();
    // A page shown for the first time gets its grids, once building has started.
    void buildShownGrids();
    // Offline, the grids look inactive and refuse drops.
    void setOnline(bool online);
    RouteConfirmer *confirmer() const { return m_confirmer; }
    // The grids of the pages built so far; null until their page is first shown.
    TableWidget *joint() const { return m_joint; }
    TableWidget *audio() const { return m_audio; }
    TableWidget *hdmiAudio() const { return m_hdmiAudio; }
    TableWidget *ir() const { return m_ir; }

    // The built pages in the language just installed.
    void retranslate();

signals:
    // A short text for the status line: a refused or failed switch.
    void notice(const QString &text);
    // A page was shown for the first time and its grids now exist.
    void pageBuilt();

private:
    void buildPage(QWidget *page);
    void adoptTable(TableWidget *table);
    void configureTable(TableWidget *table);
    QList<TableWidget *> tables() const;
    void drawJoinFace(int id, int columns, int rows);
    void setJoinLayout(int id);
    void showJoinMode(int mode);
    void buildOutputGrids();
    void buildGrid(TableWidget *table);
    bool isShown(const TableWidget *table) const;
    QSize wallLayout() const;
    void refillTable(TableWidget *table);
    void refillAllTables();
    void currentSignalChanged();
    void route(TableWidget *table, int input, int output, int kind);
    int kindOf(const TableWidget *table) const;

    Views m_views;
    TableWidget *m_joint = nullptr;
    TableWidget *m_audio = nullptr;
    TableWidget *m_hdmiAudio = nullptr;
    TableWidget *m_ir = nullptr;
    QList<QPushButton *> m_joinButtons;  // layouts 0..6
    std::unique_ptr<Ui::AudioPage> m_audioUi;  // kept to re-translate it
    DeviceModel *m_model;
    MessageDistance *m_link;
    PortNames *m_names;
    QButtonGroup *m_joinGroup;
    RouteConfirmer *m_confirmer;
    QSize m_joinFaces[7];
    int m_wallLayout = 0;
    QList<TableWidget *> m_unbuilt;
    bool m_shownGridsWelcome = false;
    bool m_allGridsWelcome = false;
    bool m_online = true;
};
