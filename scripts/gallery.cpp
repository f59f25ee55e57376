// Renders the routing widgets in their typical states to PNG files, for a look
// without the whole application: orvex-gallery OUTDIR
#include "device/devicemodel.h"
#include "device/messagedistance.h"
#include "dialogs/edidsettingdilog.h"
#include "dialogs/graphicstestdialog.h"
#include "dialogs/resolutionsetdialog.h"
#include "dialogs/switchcontrol.h"
#include "dialogs/titleorosddialog.h"
#include "dialogs/volumnsettingdialog.h"
#include "login/usermanagerdialog.h"
#include "store/accountstore.h"
#include "store/database.h"
#include "store/portnames.h"
#include "mainwindow/listwidget.h"
#include "mainwindow/renamedialog.h"
#include "mainwindow/tableitemwidget.h"
#include "mainwindow/tablewidget.h"
#include "resources/guiresources.h"

#include <QApplication>
#include <QDir>
#include <QDropEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMimeData>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <QTranslator>
#include <cstdio>

namespace {

void routeByDrop(ListWidget &list, int row, TableWidget &table, int key)
{
    list.setCurrentRow(row);
    std::unique_ptr<QMimeData> data(list.mimeData({list.currentItem()}));
    QTableWidgetItem *cell = table.itemForKey(key);
    const QPoint at = table.visualItemRect(cell).center();
    QDragEnterEvent enter(at, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(table.viewport(), &enter);
    QDropEvent drop(at, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(table.viewport(), &drop);
}

bool save(QWidget *widget, const QString &path)
{
    widget->show();
    QCoreApplication::processEvents();
    const bool ok = widget->grab().save(path);
    std::printf("%s %s\n", ok ? "wrote" : "could not write", qPrintable(path));
    return ok;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    initGuiResources();
    const QString out = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("gallery");
    QDir().mkpath(out);

    const QMap<int, QString> names{{1, "Camera"}, {2, "Lectern PC"}, {5, "Media player"}};
    const QMap<int, bool> signalMap{{1, true}, {2, true}, {3, false}, {4, false}, {5, true}};
    // Unnamed inputs in the grid show their default labels.
    PortNames portNames;
    portNames.createTables();
    portNames.loadInputs(5);

    QWidget routing;
    routing.setObjectName("gallery");
    routing.setStyleSheet("QWidget#gallery{background:#f4f7f5;}");
    auto *layout = new QHBoxLayout(&routing);
    auto *list = new ListWidget;
    list->setFixedWidth(200);
    for (int port = 1; port <= 5; ++port) {
        const QString name = names.value(port);
        auto *item = new QListWidgetItem(name.isEmpty() ? QString("[%1] Input %1").arg(port)
                                                        : QString("[%1] %2").arg(port).arg(name), list);
        item->setData(ListWidget::PortRole, QString::number(port));
        item->setData(ListWidget::TypeRole, 1);
    }
    auto *table = new TableWidget;
    table->setPortNames(&portNames);
    table->setFoldAudioOffset(true);
    table->setOutputName(1, "Projector");
    table->setOutputName(5, "Stage left");
    // Too long for a cell: cut with "…", the port number kept.
    table->setOutputName(9, "Projector above the main entrance of the hall");
    layout->addWidget(list);
    layout->addWidget(table, 1);
    routing.resize(900, 480);
    routing.show();
    table->buildGrid(3, 3);
    list->updateStateMarks(0, signalMap);
    QCoreApplication::processEvents();
    routeByDrop(*list, 0, *table, 1);
    routeByDrop(*list, 1, *table, 5);
    routeByDrop(*list, 4, *table, 9);
    table->setCurrentCell(1, 1);

    bool ok = save(&routing, out + "/routing.png");

    RenameDialog rename("Camera");
    ok &= save(&rename, out + "/rename.png");

    // Accounts of a scratch project.db, one selected.
    QTemporaryDir scratch;
    setDatabasePath(scratch.filePath("project.db"));
    AccountStore::createTables();
    AccountStore().addUser("operator", "secret");
    Usermanagerdialog users;
    users.findChild<QTableWidget *>("tableWidget")->setCurrentCell(1, 1);
    ok &= save(&users, out + "/usermanager.png");

    // The per-port setting dialogs in both languages, over a model that has answers.
    DeviceRecord record;
    record.setModelFlag(1);
    record.setOutputResolutionMap({{5, "1920x1080x60Hz"}});
    record.setInputResolutionMap({{3, "noinput"}});
    record.setVolumeMap({{3, 64}});
    DeviceModel model(&record);
    MessageDistance link;
    for (const char *language : {"English", "Chinese"}) {
        QTranslator translator;
        translator.load(QString(":/") + language);
        QCoreApplication::installTranslator(&translator);
        const QString suffix = QString("-%1.png").arg(QString(language).toLower());
        GraphicsTestDialog patterns(5, false, &link);
        ok &= save(&patterns, out + "/graphicstest" + suffix);
        ResolutionSetDialog outputResolution(5, 0, &model, &link);
        ok &= save(&outputResolution, out + "/resolution-output" + suffix);
        ResolutionSetDialog inputResolution(-1, 3, &model, &link);
        ok &= save(&inputResolution, out + "/resolution-input" + suffix);
        EdidSettingDilog edid(3, &model, &link);
        ok &= save(&edid, out + "/edid" + suffix);
        VolumnSettingDialog volume(3, &model, &link);
        ok &= save(&volume, out + "/volume" + suffix);
        TitleOrOsdDialog logo(3, &model, &link);
        ok &= save(&logo, out + "/osd" + suffix);
        TitleOrOsdDialog caption(-1, &model, &link);
        ok &= save(&caption, out + "/caption" + suffix);
        QCoreApplication::removeTranslator(&translator);
    }

    QWidget switches;
    switches.setObjectName("switches");
    switches.setStyleSheet("QWidget#switches{background:#e9efeb;}");
    auto *row = new QHBoxLayout(&switches);
    auto *off = new SwitchControl;
    auto *on = new SwitchControl;
    auto *disabled = new SwitchControl;
    for (SwitchControl *s : {off, on, disabled})
        s->setCheckedColor(QColor("#338c56"));
    disabled->setEnabled(false);
    row->addWidget(new QLabel("off"));
    row->addWidget(off);
    row->addWidget(new QLabel("on"));
    row->addWidget(on);
    row->addWidget(new QLabel("disabled"));
    row->addWidget(disabled);
    switches.show();
    on->setChecked(true);
    // Let the slide finish before taking the picture.
    QTimer::singleShot(400, &app, [&] {
        ok &= save(&switches, out + "/switches.png");
        app.exit(ok ? 0 : 1);
    });
    return app.exec();
}
