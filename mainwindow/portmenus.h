#pragma once

#include <QObject>

class DeviceModel;
class ListWidget;
class MessageDistance;
class PortNames;
class QMenu;
class QPoint;
class QWidget;
class TableWidget;

// The context menus of the port views (the signal list and the five grids) and
// their renames, by menu or F2. Names are kept in the port-name store.
class PortMenus : public QObject
{
    Q_OBJECT

public:
    struct Views
    {
        ListWidget *list;
        TableWidget *video;
        TableWidget *joint;
        TableWidget *audio;
        TableWidget *hdmiAudio;
        TableWidget *ir;
    };

    // `window` parents the menus and rename dialogs.
    PortMenus(const DeviceModel *model, MessageDistance *link, PortNames *names, QWidget *window);

    // The views that have menus; null ones do not exist yet and are left out.
    void watch(const Views &views);

    // The menu of `view`, built as it is shown, for the view's current port.
    QMenu *createMenu(QWidget *view);

signals:
    // An input was renamed: the signal list and the grids' input labels are stale.
    void inputRenamed();
    // An action refused while the device is not connected.
    void notice(const QString &text);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    int currentPort(QWidget *view) const;
    void showMenu(QWidget *view, const QPoint &pos);
    void renameCurrentPort(QWidget *view);
    // project.db refused a new name: the old one stays, and the operator is told.
    void reportUnsavedName() const;

    Views m_views = {};
    const DeviceModel *m_model;
    MessageDistance *m_link;
    PortNames *m_names;
    QWidget *m_window;
};
