#include "mainwindow/routingpages.h"

#include "device/devicemodel.h"
#include "device/devicerecord.h"
#include "device/devicestate.h"
#include "device/messagedistance.h"
#include "device/routeconfirmer.h"
#include "mainwindow/lazypage.h"
#include "mainwindow/listwidget.h"
#include "mainwindow/tableitemwidget.h"
#include "mainwindow/tablewidget.h"
#include "store/portnames.h"
#include "ui_audiopage.h"
#include "ui_irpage.h"
#include "ui_jointpage.h"

#include <QButtonGroup>
#include <QCoreApplication>
#include <QGraphicsOpacityEffect>
#include <QPushButton>
#include <QTabWidget>

namespace {
const char VideoCellColor[] = "#6988a0";
const char AudioCellColor[] = "#789383";
const char SignalColor[] = "#338c56";
const char NoSignalColor[] = "#2c3e50";
const int AudioPage = 2;

// (columns, rows) of join layouts 0..5; layout 6 depends on the model.
const QSize JoinLayouts[] = {{1, 1}, {2, 1}, {1, 2}, {2, 2}, {3, 2}, {2, 3}, {3, 3}};

QSize wallOfModel(int modelFlag)
{
    return modelFlag == 1 ? QSize(3, 3) : QSize(4, 2);
}

QString portLabel(int port, const QString &name)
{
    return QString("[%1] %2").arg(port).arg(name);
}
} // namespace

RoutingPages::RoutingPages(const Views &views, DeviceModel *model, MessageDistance *link, PortNames *names,
                           QObject *parent)
    : QObject(parent)
    , m_views(views)
    , m_model(model)
    , m_link(link)
    , m_names(names)
    , m_joinGroup(new QButtonGroup(this))
    , m_confirmer(new RouteConfirmer(model, link, this))
{
    for (int id = 0; id < 7; ++id)
        drawJoinFace(id, JoinLayouts[id].width(), JoinLayouts[id].height());
    m_joinGroup->setExclusive(true);
    connect(m_joinGroup, &QButtonGroup::idClicked, this, &RoutingPages::chooseJoinLayout);

    adoptTable(views.video);
    connect(views.list, &QListWidget::currentItemChanged, this, &RoutingPages::currentSignalChanged);
    for (QWidget *page : {views.jointPage, views.audioPage, views.irPage})
        FirstShow::call(page, [this, page] { buildPage(page); });
    connect(m_confirmer, &RouteConfirmer::pendingChanged, this, &RoutingPages::refillAllTables);
    connect(m_confirmer, &RouteConfirmer::failed, this, [this](int, int output, int, int reported) {
        emit notice(tr("Output %1 did not switch: the device shows input %2.").arg(output % 100).arg(reported));
    });

    connect(model, &DeviceModel::modelChanged, this, [this](int modelFlag) {
        const QSize wall = wallOfModel(modelFlag);
        drawJoinFace(6, wall.width(), wall.height());
        reloadNames();  // the number of inputs follows the model
    });
    connect(model, &DeviceModel::joinModeChanged, this, &RoutingPages::showJoinMode);
    for (auto changed : {&DeviceModel::videoMapChanged, &DeviceModel::audioMapChanged, &DeviceModel::irMapChanged})
        connect(model, changed, this, &RoutingPages::refillAllTables);
    for (auto changed : {&DeviceModel::inputSignalsChanged, &DeviceModel::inputResolutionsChanged})
        connect(model, changed, this, &RoutingPages::refreshSignalPresence);

    reloadNames();
    showJoinMode(model->record().joinMode());
}

RoutingPages::~RoutingPages() = default;

void RoutingPages::retranslate()
{
    // The Joint and Infared forms hold no text.
    if (m_audioUi)
        m_audioUi->retranslateUi(m_views.audioPage);
}

void RoutingPages::buildPage(QWidget *page)
{
    if (page == m_views.jointPage) {
        Ui::JointPage form;
        form.setupUi(page);
        m_joinButtons = {form.joinBtn0, form.joinBtn1, form.joinBtn2, form.joinBtn3, form.joinBtn4, form.joinBtn5, form.joinBtn6};
        for (int id = 0; id < m_joinButtons.size(); ++id) {
            m_joinGroup->addButton(m_joinButtons[id], id);
            drawJoinFace(id, m_joinFaces[id].width(), m_joinFaces[id].height());
        }
        if (QAbstractButton *button = m_joinGroup->button(m_wallLayout))
            button->setChecked(true);  // the group's clicks alone tell the device
        m_joint = form.jointTable;
        adoptTable(m_joint);
    } else if (page == m_views.audioPage) {
        m_audioUi = std::make_unique<Ui::AudioPage>();
        m_audioUi->setupUi(page);
        m_audio = m_audioUi->audioTable;
        m_hdmiAudio = m_audioUi->hdmiAudioTable;
        adoptTable(m_audio);
        adoptTable(m_hdmiAudio);
    } else if (page == m_views.irPage) {
        Ui::IrPage form;
        form.setupUi(page);
        m_ir = form.irTable;
        adoptTable(m_ir);
    }
    emit pageBuilt();
}

// A grid joins the others: it switches on drops, shows the model and the stored names.
void RoutingPages::adoptTable(TableWidget *table)
{
    table->setPortNames(m_names);
    connect(table, &TableWidget::layoutChangedSig, this, [this, table] { refillTable(table); });
    connect(table, &TableWidget::dropPortToItemSig, this,
            [this, table](int input, int output) { route(table, input, output, kindOf(table)); });
    if (table == m_views.video)
        return;  // configured with the others by reloadNames()
    configureTable(table);  // its grid, once built, fills itself from the model
    if (!m_online)
        setOnline(false);
}

QList<TableWidget *> RoutingPages::tables() const
{
    QList<TableWidget *> built;
    for (TableWidget *table : {m_views.video, m_joint, m_audio, m_hdmiAudio, m_ir}) {
        if (table)
            built.append(table);
    }
    return built;
}

void RoutingPages::showJoinMode(int mode)
{
    setJoinLayout(mode);
    // Show the device's layout without sending a mode command back.
    if (QAbstractButton *button = m_joinGroup->button(mode)) {
        const QSignalBlocker blocker(m_joinGroup);
        button->setChecked(true);
    }
}

QSize RoutingPages::joinFace(int id) const
{
    return id >= 0 && id < 7 ? m_joinFaces[id] : QSize();
}

void RoutingPages::drawJoinFace(int id, int columns, int rows)
{
    m_joinFaces[id] = QSize(columns, rows);
    if (QPushButton *button = m_joinButtons.value(id))
        button->setIcon(TableWidget::layoutPreview(columns, rows));
}

void RoutingPages::chooseJoinLayout(int id)
{
    m_link->sendMode(id);
    m_model->recordJoinMode(id);
}

void RoutingPages::setJoinLayout(int id)
{
    if (id < 0 || id > 6)
        return;
    m_wallLayout = id;
    if (m_joint)
        buildGrid(m_joint);
}

QSize RoutingPages::wallLayout() const
{
    return m_wallLayout == 6 ? wallOfModel(m_model->record().modelFlag()) : JoinLayouts[m_wallLayout];
}

void RoutingPages::reloadNames()
{
    buildOutputGrids();
    rebuildSignalList();
}

void RoutingPages::buildOutputGrids()
{
    const int joinMode = m_model->record().joinMode();
    if (joinMode >= 0 && joinMode <= 6)
        m_wallLayout = joinMode;
    for (TableWidget *table : tables())
        configureTable(table);
}

void RoutingPages::configureTable(TableWidget *table)
{
    const int kind = kindOf(table);
    const bool audio = kind == DeviceModel::Audio;
    const int offset = table == m_hdmiAudio ? 100 : 0;
    const char *label = audio ? QT_TRANSLATE_NOOP("Widget", "Audio %1") : QT_TRANSLATE_NOOP("Widget", "Output %1");
    const QMap<int, QString> names = m_names->names(audio ? PortNames::AudioOutput
                                                    : kind == DeviceModel::Ir ? PortNames::IrOutput
                                                                              : PortNames::VideoOutput);
    table->setCellColor(audio ? AudioCellColor : VideoCellColor);
    table->setIndexOffset(offset);
    table->setIgnoreInputRenames(false);
    table->setEightOutputs(m_model->record().modelFlag() == 0);
    for (int n = 1; n <= 9; ++n) {
        const QString stored = names.value(n + offset);
        table->setOutputName(n + offset, stored.isEmpty() ? QCoreApplication::translate("Widget", label).arg(n) : stored);
    }
    buildGrid(table);
}

bool RoutingPages::isShown(const TableWidget *table) const
{
    const QWidget *page = m_views.tabs->currentWidget();
    return page && page->isAncestorOf(table);
}

void RoutingPages::buildGrid(TableWidget *table)
{
    if (!m_allGridsWelcome && !(m_shownGridsWelcome && isShown(table))) {
        if (!m_unbuilt.contains(table))
            m_unbuilt.append(table);
        return;
    }
    m_unbuilt.removeOne(table);
    if (table == m_joint)
        table->buildGrid(wallLayout().width(), wallLayout().height());
    else
        table->buildGrid(3, 3);  // the ninth cell depends on the model
}

void RoutingPages::startBuildingGrids()
{
    m_shownGridsWelcome = true;
    buildShownGrids();
}

void RoutingPages::buildShownGrids()
{
    const QList<TableWidget *> waiting = m_unbuilt;
    for (TableWidget *table : waiting) {
        if (isShown(table))
            buildGrid(table);
    }
}

void RoutingPages::buildAllGrids()
{
    startBuildingGrids();
    m_allGridsWelcome = true;
    const QList<TableWidget *> waiting = m_unbuilt;
    for (TableWidget *table : waiting)
        buildGrid(table);
}

void RoutingPages::refillTable(TableWidget *table)
{
    const DeviceRecord &record = m_model->record();
    const int kind = kindOf(table) == DeviceModel::Wall ? DeviceModel::Video : kindOf(table);
    const QMap<int, int> routes = DeviceState::routesOf(record, kind);
    const QMap<int, QString> names = m_names->names(kind == DeviceModel::Audio ? PortNames::AudioInput : PortNames::VideoInput);
    const QMap<int, bool> signalMap = record.inputSignalMap();
    for (int r = 0; r < table->rowCount(); ++r) {
        for (int c = 0; c < table->columnCount(); ++c) {
            QTableWidgetItem *item = table->item(r, c);
            auto *cell = qobject_cast<TableItemWidget *>(table->cellWidget(r, c));
            if (!item || !cell)
                continue;
            const int key = item->data(TableWidget::OutputKeyRole).toInt();
            // A switch on its way shows where it goes, marked as not yet confirmed.
            const int pending = m_confirmer->pendingInput(kind, key);
            const int input = pending >= 0 ? pending : routes.value(key, 0);
            cell->setInputText(input > 0 ? portLabel(input, names.value(input)) : QString());
            cell->setPending(pending >= 0);
            // A routed video input without signal is shown dimmed.
            cell->setSignalPresent(input <= 0 || table == m_ir || signalMap.value(input, false));
        }
    }
}

void RoutingPages::refillAllTables()
{
    for (TableWidget *table : tables())
        refillTable(table);
}

int RoutingPages::kindOf(const TableWidget *table) const
{
    if (table == m_joint)
        return DeviceModel::Wall;
    if (table == m_audio || table == m_hdmiAudio)
        return DeviceModel::Audio;
    return table == m_ir ? DeviceModel::Ir : DeviceModel::Video;
}

void RoutingPages::route(TableWidget *table, int input, int output, int kind)
{
    if (!m_link->isConnected()) {
        // Nothing is queued: a switch that cannot go out is not shown as done.
        emit notice(tr("Not connected: output %1 was not switched.").arg(output % 100));
        refillTable(table);
        return;
    }
    m_link->sendSwitch(input, output, kind);
    if (kind == DeviceModel::Wall)
        m_link->sendSwitch(input, output, DeviceModel::Audio);
    m_confirmer->switched(input, output, kind);
    m_model->recordSwitch(input, output, kind);
}

void RoutingPages::setOnline(bool online)
{
    m_online = online;
    for (TableWidget *table : tables()) {
        if (online) {
            table->setGraphicsEffect(nullptr);
        } else if (!table->graphicsEffect()) {
            auto *faded = new QGraphicsOpacityEffect(table);
            faded->setOpacity(0.45);
            table->setGraphicsEffect(faded);
        }
    }
}

void RoutingPages::rebuildSignalList()
{
    // Ports without a stored name are shown as "Input n" / "Audio n" everywhere.
    const int inputs = m_model->record().modelFlag() == 1 ? 9 : 8;
    m_names->loadInputs(inputs);
    const QMap<int, QString> inputNames = m_names->names(PortNames::VideoInput);
    const QMap<int, QString> audioNames = m_names->names(PortNames::AudioInput);

    ListWidget *list = m_views.list;
    const int current = list->currentRow();
    list->clear();
    for (int type = 0; type < 2; ++type) {
        const QMap<int, QString> &names = type == 0 ? inputNames : audioNames;
        for (int port = 1; port <= inputs; ++port) {
            auto *item = new QListWidgetItem(portLabel(port, names.value(port)), list);
            item->setData(ListWidget::PortRole, QString::number(port));
            item->setData(ListWidget::TypeRole, type);
        }
    }
    if (current >= 0 && current < list->count())
        list->setCurrentRow(current);
    // Also re-fills the tables, whose input labels carry the names.
    refreshSignalPresence();
}

void RoutingPages::refreshSignalPresence()
{
    // The audio page lists the audio entries, every other page the inputs.
    m_views.list->updateStateMarks(m_views.tabs->currentIndex() == AudioPage ? 0 : 1, m_model->record().inputSignalMap());
    refillAllTables();
    currentSignalChanged();
}

void RoutingPages::currentSignalChanged()
{
    ListWidget *list = m_views.list;
    QListWidgetItem *current = list->currentItem();
    for (int i = 0; i < list->count(); ++i) {
        QFont font = list->item(i)->font();
        font.setBold(list->item(i) == current);
        list->item(i)->setFont(font);
    }
    if (!current)
        return;
    const bool hasSignal = m_model->record().inputSignalMap().value(current->data(ListWidget::PortRole).toInt(), false);
    list->setStyleSheet(QString("QListWidget::item:selected { color:%1; background:#e3efe7; }")
                                .arg(hasSignal ? SignalColor : NoSignalColor));
}
