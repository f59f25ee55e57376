#include "mainwindow/portmenus.h"

#include "device/messagedistance.h"
#include "mainwindow/listwidget.h"
#include "mainwindow/portnaming.h"
#include "mainwindow/renamedialog.h"
#include "mainwindow/tablewidget.h"
#include "store/portnames.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMenu>

// The menu texts keep the main window's translation context ("Widget").
PortMenus::PortMenus(const Views &views, MessageDistance *link, PortNames *names, QWidget *window)
    : QObject(window)
    , m_views(views)
    , m_link(link)
    , m_names(names)
    , m_window(window)
{
    for (QWidget *view : {static_cast<QWidget *>(views.list), static_cast<QWidget *>(views.video),
                          static_cast<QWidget *>(views.audio), static_cast<QWidget *>(views.hdmiAudio),
                          static_cast<QWidget *>(views.ir), static_cast<QWidget *>(views.joint)}) {
        view->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(view, &QWidget::customContextMenuRequested, this,
                [this, view](const QPoint &pos) { showMenu(view, pos); });
        view->installEventFilter(this);
    }
}

int PortMenus::currentPort(QWidget *view) const
{
    if (view == m_views.list) {
        const QListWidgetItem *item = m_views.list->currentItem();
        return item ? item->data(ListWidget::PortRole).toInt() : 0;
    }
    const auto *table = qobject_cast<TableWidget *>(view);
    const QTableWidgetItem *item = table ? table->currentItem() : nullptr;
    return item ? item->data(TableWidget::OutputKeyRole).toInt() : 0;
}

QMenu *PortMenus::createMenu(QWidget *view)
{
    auto *menu = new QMenu(m_window);
    const int port = currentPort(view);
    MessageDistance *link = m_link;
    auto rename = [this, view] { renameCurrentPort(view); };
    auto clear = [view, port] {
        if (auto *table = qobject_cast<TableWidget *>(view))
            emit table->dropPortToItemSig(0, port);
    };
    auto audioMode = [menu, port, link] {
        QMenu *modes = menu->addMenu(QCoreApplication::translate("Widget", "音频模式"));
        modes->addAction(QCoreApplication::translate("Widget", "数字音频"), [port, link] { link->sendAnalogSelect(port, 0); });
        modes->addAction(QCoreApplication::translate("Widget", "模拟音频"), [port, link] { link->sendAnalogSelect(port, 1); });
    };
    if (view == m_views.list) {
        menu->addAction(QCoreApplication::translate("Widget", "Rename(F2)"), rename);
        menu->addAction(QCoreApplication::translate("Widget", "OSD Setting"), [port, link] { link->sendOsdQuery(port); });
        menu->addAction(QCoreApplication::translate("Widget", "GraphicsTest"));
        menu->addAction(QCoreApplication::translate("Widget", "Volume Setting"));
        menu->addAction(QCoreApplication::translate("Widget", "Edid"));
        menu->addAction(QCoreApplication::translate("Widget", "Resolution"));
    } else if (view == m_views.video) {
        menu->addAction(QCoreApplication::translate("Widget", "Rename(F2)"), rename);
        menu->addAction(QCoreApplication::translate("Widget", "Resolution"));
        menu->addAction(QCoreApplication::translate("Widget", "Graphics Test"));
    } else if (view == m_views.audio) {
        menu->addAction(QCoreApplication::translate("Widget", "清除"), clear);
        menu->addAction(QCoreApplication::translate("Widget", "Rename(F2)"), rename);
        audioMode();
    } else if (view == m_views.hdmiAudio) {
        menu->addAction(QCoreApplication::translate("Widget", "清除"), clear);
        menu->addAction(QCoreApplication::translate("Widget", "Rename(F2)"), rename);
        menu->addAction(QCoreApplication::translate("Widget", "Resolution"));
        menu->addAction(QCoreApplication::translate("Widget", "Graphics Test"));
        audioMode();
    } else if (view == m_views.ir) {
        menu->addAction(QCoreApplication::translate("Widget", "Rename(F2)"), rename);
        menu->addAction(QCoreApplication::translate("Widget", "清除"), clear);
    } else if (view == m_views.joint) {
        menu->addAction(QCoreApplication::translate("Widget", "Rename(F2)"), rename);
        menu->addAction(QCoreApplication::translate("Widget", "清除"), clear);
        menu->addAction(QCoreApplication::translate("Widget", "Resolution"));
        menu->addAction(QCoreApplication::translate("Widget", "Graphics Test"));
    }
    return menu;
}

void PortMenus::showMenu(QWidget *view, const QPoint &pos)
{
    QMenu *menu = createMenu(view);
    QWidget *anchor = view;
    if (auto *scroll = qobject_cast<QAbstractScrollArea *>(view))
        anchor = scroll->viewport();
    menu->exec(anchor->mapToGlobal(pos));
    menu->deleteLater();
}

bool PortMenus::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent *>(event)->key() == Qt::Key_F2) {
        renameCurrentPort(qobject_cast<QWidget *>(watched));
        return true;
    }
    return QObject::eventFilter(watched, event);
}

void PortMenus::renameCurrentPort(QWidget *view)
{
    const int port = currentPort(view);
    if (!view || port <= 0)
        return;
    if (view == m_views.list) {
        const bool audio = m_views.list->currentItem()->data(ListWidget::TypeRole).toInt() == 1;
        const PortNames::Kind kind = audio ? PortNames::AudioInput : PortNames::VideoInput;
        const QString name = m_names->name(kind, port);
        RenameDialog dialog(name, m_window);
        connect(&dialog, &RenameDialog::Sig_SetNewName, this, [this, kind](const QString &newName) {
            applyPortName(m_views.list, m_names, kind, newName);
            emit inputRenamed();
        });
        dialog.exec();
        return;
    }
    auto *table = qobject_cast<TableWidget *>(view);
    if (!table)
        return;
    RenameDialog dialog(table->outputName(port), m_window);
    connect(&dialog, &RenameDialog::Sig_SetNewName, this, [this, table, port](const QString &newName) {
        if (table == m_views.audio || table == m_views.hdmiAudio) {
            m_names->rename(PortNames::AudioOutput, port, newName);
        } else if (table == m_views.ir) {
            m_names->rename(PortNames::IrOutput, port, newName);
        } else {
            m_names->rename(PortNames::VideoOutput, port, newName);
            // Video outputs are the joined wall's outputs too.
            m_views.video->setOutputName(port, newName);
            m_views.joint->setOutputName(port, newName);
        }
        table->setOutputName(port, newName);
    });
    dialog.exec();
}
