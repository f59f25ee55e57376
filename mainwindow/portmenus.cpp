#include "mainwindow/portmenus.h"

#include "device/devicemodel.h"
#include "device/messagedistance.h"
#include "dialogs/edidsettingdilog.h"
#include "dialogs/graphicstestdialog.h"
#include "dialogs/msgdlg.h"
#include "dialogs/resolutionsetdialog.h"
#include "dialogs/titleorosddialog.h"
#include "dialogs/volumnsettingdialog.h"
#include "mainwindow/listwidget.h"
#include "mainwindow/portnaming.h"
#include "mainwindow/renamedialog.h"
#include "mainwindow/tablewidget.h"
#include "store/database.h"
#include "store/portnames.h"

#include <QCoreApplication>
#include <QDir>
#include <QKeyEvent>
#include <QMenu>

#include <functional>

// The menu texts keep the main window's translation context ("Widget").
PortMenus::PortMenus(const DeviceModel *model, MessageDistance *link, PortNames *names, QWidget *window)
    : QObject(window)
    , m_model(model)
    , m_link(link)
    , m_names(names)
    , m_window(window)
{
}

void PortMenus::watch(const Views &views)
{
    m_views = views;
    for (QWidget *view : {static_cast<QWidget *>(views.list), static_cast<QWidget *>(views.video),
                          static_cast<QWidget *>(views.audio), static_cast<QWidget *>(views.hdmiAudio),
                          static_cast<QWidget *>(views.ir), static_cast<QWidget *>(views.joint)}) {
        // Not built yet, or given its menu by an earlier call.
        if (!view || view->contextMenuPolicy() == Qt::CustomContextMenu)
            continue;
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
    const int key = currentPort(view);
    auto *table = qobject_cast<TableWidget *>(view);
    // The port number the cell shows; the HDMI audio grid keys its outputs from 101.
    const int port = table ? key - table->indexOffset() : key;
    MessageDistance *link = m_link;
    const DeviceModel *model = m_model;
    QWidget *window = m_window;
    auto rename = [this, view] { renameCurrentPort(view); };
    // Everything but renaming talks to the device: refused, and said so, while it is away.
    auto sending = [this, link](std::function<void()> action) {
        return [this, link, action] {
            if (link->isConnected())
                action();
            else
                emit notice(QCoreApplication::translate("Widget", "Not connected: the device was not changed."));
        };
    };
    // Clearing removes the output's route on the device: input 0 on the table's
    // layer (on the joined wall, the whole wall, as one picture covers it). The
    // cell is not blanked here: it shows what the device's next map says.
    auto clear = sending([this, view, key, link] {
        const int kind = view == m_views.ir ? DeviceModel::Ir
                         : view == m_views.joint ? DeviceModel::Wall
                                                 : DeviceModel::Audio;
        link->sendSwitch(0, key, kind);
    });
    auto audioMode = [menu, port, link, sending] {
        QMenu *modes = menu->addMenu(QCoreApplication::translate("Widget", "音频模式"));
        modes->addAction(QCoreApplication::translate("Widget", "数字音频"), sending([port, link] { link->sendAnalogSelect(port, 0); }));
        modes->addAction(QCoreApplication::translate("Widget", "模拟音频"), sending([port, link] { link->sendAnalogSelect(port, 1); }));
    };
    auto outputResolution = sending([port, model, link, window] {
        ResolutionSetDialog(port, 0, model, link, window).exec();
    });
    auto outputPatterns = sending([port, link, window] { GraphicsTestDialog(port, false, link, window).exec(); });
    if (view == m_views.list) {
        menu->addAction(QCoreApplication::translate("Widget", "Rename(F2)"), rename);
        menu->addAction(QCoreApplication::translate("Widget", "OSD Setting"), sending([port, model, link, window] {
            link->sendOsdQuery(port);
            TitleOrOsdDialog(port, model, link, window).exec();
        }));
        menu->addAction(QCoreApplication::translate("Widget", "GraphicsTest"), sending([port, link, window] { GraphicsTestDialog(port, true, link, window).exec(); }));
        menu->addAction(QCoreApplication::translate("Widget", "Volume Setting"), sending([port, model, link, window] {
            VolumnSettingDialog(port, model, link, window).exec();
        }));
        menu->addAction(QCoreApplication::translate("Widget", "Edid"), sending([port, model, link, window] { EdidSettingDilog(port, model, link, window).exec(); }));
        menu->addAction(QCoreApplication::translate("Widget", "Resolution"), sending([port, model, link, window] {
            ResolutionSetDialog(-1, port, model, link, window).exec();
        }));
    } else if (view == m_views.video) {
        menu->addAction(QCoreApplication::translate("Widget", "Rename(F2)"), rename);
        menu->addAction(QCoreApplication::translate("Widget", "Resolution"), outputResolution);
        menu->addAction(QCoreApplication::translate("Widget", "Graphics Test"), outputPatterns);
    } else if (view == m_views.audio) {
        menu->addAction(QCoreApplication::translate("Widget", "清除"), clear);
        menu->addAction(QCoreApplication::translate("Widget", "Rename(F2)"), rename);
        audioMode();
    } else if (view == m_views.hdmiAudio) {
        menu->addAction(QCoreApplication::translate("Widget", "清除"), clear);
        menu->addAction(QCoreApplication::translate("Widget", "Rename(F2)"), rename);
        menu->addAction(QCoreApplication::translate("Widget", "Resolution"), outputResolution);
        menu->addAction(QCoreApplication::translate("Widget", "Graphics Test"), outputPatterns);
        audioMode();
    } else if (view == m_views.ir) {
        menu->addAction(QCoreApplication::translate("Widget", "Rename(F2)"), rename);
        menu->addAction(QCoreApplication::translate("Widget", "清除"), clear);
    } else if (view == m_views.joint) {
        menu->addAction(QCoreApplication::translate("Widget", "Rename(F2)"), rename);
        menu->addAction(QCoreApplication::translate("Widget", "清除"), clear);
        menu->addAction(QCoreApplication::translate("Widget", "Resolution"), outputResolution);
        menu->addAction(QCoreApplication::translate("Widget", "Graphics Test"), outputPatterns);
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
    // Told once the rename dialog has closed, so the message stands on its own.
    bool saved = true;
    if (view == m_views.list) {
        const bool audio = m_views.list->currentItem()->data(ListWidget::TypeRole).toInt() == 1;
        const PortNames::Kind kind = audio ? PortNames::AudioInput : PortNames::VideoInput;
        const QString name = m_names->name(kind, port);
        RenameDialog dialog(name, m_window);
        connect(&dialog, &RenameDialog::Sig_SetNewName, this, [this, kind, &saved](const QString &newName) {
            saved = applyPortName(m_views.list, m_names, kind, newName);
            if (saved)
                emit inputRenamed();
        });
        dialog.exec();
        if (!saved)
            reportUnsavedName();
        return;
    }
    auto *table = qobject_cast<TableWidget *>(view);
    if (!table)
        return;
    RenameDialog dialog(table->outputName(port), m_window);
    connect(&dialog, &RenameDialog::Sig_SetNewName, this, [this, table, port, &saved](const QString &newName) {
        const bool audio = table == m_views.audio || table == m_views.hdmiAudio;
        const PortNames::Kind kind = audio ? PortNames::AudioOutput
                                     : table == m_views.ir ? PortNames::IrOutput
                                                           : PortNames::VideoOutput;
        saved = m_names->rename(kind, port, newName);
        if (!saved)
            return;
        if (kind == PortNames::VideoOutput) {
            // Video outputs are the joined wall's outputs too.
            m_views.video->setOutputName(port, newName);
            if (m_views.joint)
                m_views.joint->setOutputName(port, newName);
        }
        table->setOutputName(port, newName);
    });
    dialog.exec();
    if (!saved)
        reportUnsavedName();
}

void PortMenus::reportUnsavedName() const
{
    MsgDlg::showMessage(QCoreApplication::translate("Widget", "The new name could not be saved in %1; the old name is kept.")
                                .arg(QDir::toNativeSeparators(databasePath())),
                        QCoreApplication::translate("Widget", "Database Error"), m_window);
}
