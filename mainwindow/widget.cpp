#include "mainwindow/widget.h"
#include "ui_widget.h"

#include "app/appsettings.h"
#include "device/devicemodel.h"
#include "device/devicerecord.h"
#include "device/messagedistance.h"
#include "dialogs/msgdlg.h"
#include "login/logindialog.h"
#include "login/usermanagerdialog.h"
#include "mainwindow/portmenus.h"
#include "mainwindow/sigmanager.h"
#include "mainwindow/tableitemwidget.h"
#include "store/accountstore.h"
#include "store/portnamestore.h"

#include <QApplication>
#include <QButtonGroup>
#include <QRegExpValidator>
#include <QScreen>

namespace {
// Status texts are translation keys: their uneven blanks are kept byte for byte.
const char StatusConnecting[] = QT_TRANSLATE_NOOP("Widget", "OrvexMatrixControl  User:%3  Ip:%1  Port:%2 connecting");
const char StatusConnected[] = QT_TRANSLATE_NOOP("Widget", "OrvexMatrixControl  User:%3   Ip:%1  Port:%2  connected");
const char StatusDisconnected[] = QT_TRANSLATE_NOOP("Widget", "OrvexMatrixControl  User:%3  Ip:%1  Port:%2 disconnected");
// After a language change the evenly spaced variant is shown; both are kept.
const char StatusConnectedEven[] = QT_TRANSLATE_NOOP("Widget", "OrvexMatrixControl  User:%3  Ip:%1  Port:%2 connected");

const char VideoCellColor[] = "#6988a0";
const char AudioCellColor[] = "#789383";
const char SignalColor[] = "#338c56";
const char NoSignalColor[] = "#2c3e50";

// (columns, rows) of join layouts 0..5; layout 6 depends on the model.
const QSize JoinLayouts[] = {{1, 1}, {2, 1}, {1, 2}, {2, 2}, {3, 2}, {2, 3}, {3, 3}};

QString maxButtonStyle(const char *image)
{
    return QString("QPushButton { background-image:url(%1); background-position:center;border:0; "
                   "background-repeat:no-repeat; }"
                   "QPushButton:hover { background-color: rgba(255,255,255,40); border-radius:4px; }")
            .arg(image);
}

QString portLabel(int port, const QString &name)
{
    return QString("[%1] %2").arg(port).arg(name);
}
} // namespace

Widget::Widget(QWidget *parent)
    : BaseWidget(parent)
    , ui(new Ui::Widget)
{
    ui->setupUi(this);
    loadStyleSheet(this, ":/styles/main.qss");
    applyShadow(ui->frame);
    setDragArea(ui->titleWidget);
    ui->btn_RestoreOrMax->setStyleSheet(maxButtonStyle(":/Images/window/fullscreen.png"));

    const QRegExp ipPattern("((25[0-5]|2[0-4][0-9]|1[0-9][0-9]|[1-9][0-9]|[0-9])[\\.]){3}"
                            "(25[0-5]|2[0-4][0-9]|1[0-9][0-9]|[1-9][0-9]|[0-9])");
    auto *ipValidator = new QRegExpValidator(ipPattern, this);
    ui->ipEdit->setValidator(ipValidator);
    ui->gatewayEdit->setValidator(ipValidator);
    ui->subnetEdit->setValidator(ipValidator);
    ui->macEdit->setValidator(new QRegExpValidator(QRegExp("^([0-9a-fA-F]{2}(:|-)){5}[0-9a-fA-F]{2}$"), this));

    setWindowIcon(QIcon(":/Images/applogo.png"));
    for (int id = 0; id < 7; ++id)
        drawJoinFace(id, JoinLayouts[id].width(), JoinLayouts[id].height());
    ui->buzzerSwitch->setCheckedColor(QColor("#338c56"));
    ui->buzzerSwitch->setBackgroundColor(QColor("#9aa8a0"));
    setWindowTitle("ORVEXMATRIX CONTORL");

    m_joinGroup = new QButtonGroup(this);
    const QList<QPushButton *> joinButtons{ui->joinBtn0, ui->joinBtn1, ui->joinBtn2, ui->joinBtn3,
                                           ui->joinBtn4, ui->joinBtn5, ui->joinBtn6};
    for (int id = 0; id < joinButtons.size(); ++id)
        m_joinGroup->addButton(joinButtons[id], id);
    m_joinGroup->setExclusive(true);

    applyStartLanguage();

    for (TableWidget *table : {ui->videoTable, ui->jointTable, ui->audioTable, ui->hdmiAudioTable, ui->irTable})
        connect(table, &TableWidget::layoutChangedSig, this, [this, table] { refillTable(table); });
    connect(ui->tabWidget, &QTabWidget::currentChanged, this, &Widget::tabChanged);

    connect(ui->btn_RestoreOrMax, &QPushButton::clicked, this, &Widget::on_btn_RestoreOrMax_clicked);
    connect(ui->usermanageBtn, &QPushButton::clicked, this, &Widget::on_usermanageBtn_clicked);
    connect(m_joinGroup, SIGNAL(buttonClicked(int)), this, SLOT(JoinLayoutButtonChangeSlot(int)));
    connect(ui->btnClose, &QPushButton::clicked, this, &QWidget::close);
    connect(ui->btnMin, &QPushButton::clicked, this, &QWidget::showMinimized);
    connect(ui->CaptionBtn, &QPushButton::clicked, this, &Widget::on_CaptionBtn_clicked);
    connect(ui->refrenshBtn, &QPushButton::clicked, this, &Widget::on_refrenshBtn_clicked);
    connect(ui->listWidget, &QListWidget::currentItemChanged, this, &Widget::currentSignalChanged);
    ui->tabWidget->setAttribute(Qt::WA_StyledBackground);

    // The window shows the process-wide record that the login dialogs also use.
    m_model = new DeviceModel(deviceRecord(), this);
    connect(m_model, &DeviceModel::volumesChanged, SigManager::instance(), &SigManager::Sig_UpdateVolumes);
    AppSettings *settings = AppSettings::instance();
    deviceRecord()->setDeviceIp(settings->ip());
    deviceRecord()->setDevicePort(settings->port());
    AccountStore::createTables();
    PortNameStore::createPortNameTables();

    buildOutputGrids();
    refrenshSignalSlot();

    ui->languageComboBox->addItem(QString::fromUtf8("简体中文"));
    ui->languageComboBox->addItem("English");
    ui->languageComboBox->setCurrentIndex(settings->language());

    MessageDistance *link = MessageDistance::instance();
    connect(link, &MessageDistance::receiveVersionSig, this, &Widget::receiveVersionSlot);
    connect(link, &MessageDistance::receiveCheckStateSig, this, &Widget::receiveCheckStateSlot);
    connect(link, &MessageDistance::receiveInputChannelStateSig, this, &Widget::receiveInputChannelStateSlot);
    connect(link, &MessageDistance::receiveNetWorkImforamtionSig, this, &Widget::receiveNetWorkImforamtionSlot);
    connect(link, &MessageDistance::receiveVideoMapSig, this, &Widget::receiveVideoMapSlot);
    connect(link, &MessageDistance::receiveAudioMapSig, this, &Widget::receiveAudioMapSlot);
    connect(link, &MessageDistance::receiveIrMapSig, this, &Widget::receiveIrMapSlot);
    connect(link, &MessageDistance::receiveInChannelResolutionMapSig, this, &Widget::receiveInChannelResolutionSlot);
    connect(link, &MessageDistance::receiveOutChannelResolutionMapSig, this, &Widget::receiveOutChannelResolutionSlot);
    connect(link, &MessageDistance::receiveOsdImfSig, this, &Widget::receiveOsdImfSlot);
    connect(link, &MessageDistance::receiveTitleImfSig, this, &Widget::receiveTitleImfSlot);
    connect(link, &MessageDistance::receiveVolumnImformationSig, this, &Widget::receiveVolumeValueSlot);
    connect(link, &MessageDistance::connectSuccessFulSig, this, &Widget::receiveNetWorkSuccessfulSlot);
    connect(link, &MessageDistance::connectFailureSig, this, &Widget::receivenetWorkFailSlot);
    connect(link, &MessageDistance::connectingSig, this, &Widget::receiveConnectingSlot);

    connect(ui->videoTable, &TableWidget::dropPortToItemSig, this, &Widget::routeVideo);
    connect(ui->audioTable, &TableWidget::dropPortToItemSig, this,
            [](int input, int output) { MessageDistance::instance()->sendSwitch(input, output, 1); });
    connect(ui->hdmiAudioTable, &TableWidget::dropPortToItemSig, this,
            [](int input, int output) { MessageDistance::instance()->sendSwitch(input, output, 1); });
    connect(ui->irTable, &TableWidget::dropPortToItemSig, this,
            [](int input, int output) { MessageDistance::instance()->sendSwitch(input, output, 2); });
    connect(ui->jointTable, &TableWidget::dropPortToItemSig, this, &Widget::routeJoint);
    connect(ui->confirmBtn, &QPushButton::clicked, this, [this] {
        MessageDistance::instance()->sendNetworkSetting(ui->ipEdit->text(), ui->gatewayEdit->text(),
                                                        ui->subnetEdit->text(), ui->macEdit->text());
        MessageDistance::instance()->sendNetInfoQuery();
    });
    connect(ui->factoryResetBtn, &QPushButton::clicked, MessageDistance::instance(), &MessageDistance::sendFactoryDefault);
    connect(ui->buzzerSwitch, &SwitchControl::toggled, MessageDistance::instance(), &MessageDistance::sendBell);
    connect(ui->noLoginCheckBox, &QCheckBox::toggled, this, [](bool checked) { AccountStore::setLoginModel(checked ? 1 : 0); });
    connect(ui->reloginBtn, &QPushButton::clicked, this, &Widget::relogin);
    link->setMessagePresenter([](const QString &text, const QString &title) { MsgDlg::showMessage(text, title); });

    ui->tabWidget->setCurrentIndex(0);

    runLoginDecision();

    receiveConnectingSlot();
    {
        const QSignalBlocker blocker(ui->noLoginCheckBox);
        ui->noLoginCheckBox->setChecked(AccountStore::loginModel() != 0);
    }
    connect(ui->languageComboBox, SIGNAL(currentIndexChanged(int)), this,
            SLOT(on_languageComboBox_currentIndexChanged(int)));
    m_portMenus = new PortMenus({ui->listWidget, ui->videoTable, ui->jointTable, ui->audioTable, ui->hdmiAudioTable, ui->irTable},
                                MessageDistance::instance(), this);
    connect(m_portMenus, &PortMenus::inputRenamed, this, &Widget::refrenshSignalSlot);

    ui->labelAboutLogo->setStyleSheet("background-image: url(:/Images/logo.png); background-position:center;"
                                      "background-repeat:no-repeat;");
    resize(1280, 800);
    show();

    if (settings->adminFlag() == 0) {
        ui->userGroup->hide();
        ui->adminLabel->hide();
    }
    tabChanged(ui->tabWidget->currentIndex());
}

Widget::~Widget()
{
    delete ui;
}

QString Widget::statusText() const
{
    return ui->labelStatus->text();
}

QMenu *Widget::createPortMenu(QWidget *view)
{
    return m_portMenus->createMenu(view);
}

QSize Widget::joinFace(int id) const
{
    return id >= 0 && id < 7 ? m_joinFaces[id] : QSize();
}

// ---- language ---------------------------------------------------------------

void Widget::applyStartLanguage()
{
    AppSettings *settings = AppSettings::instance();
    int language = settings->language();
    if (language == -1) {
        // Never chosen: follow the system, and remember the choice.
        language = QLocale::system().language() == QLocale::Chinese ? 0 : 1;
        settings->setLanguage(language);
    }
    installLanguage(language);
}

void Widget::installLanguage(int index)
{
    QCoreApplication::removeTranslator(&m_translator);
    m_translator.load(index == 0 ? ":/Chinese" : ":/English");
    QCoreApplication::installTranslator(&m_translator);
    ui->retranslateUi(this);
}

void Widget::on_languageComboBox_currentIndexChanged(int index)
{
    AppSettings::instance()->setLanguage(index);
    installLanguage(index);
    // Re-translation puts the form's texts back; the versions are the device's.
    ui->fpgaVersionLabel->setText(deviceRecord()->fpgaVersion());
    ui->mcuVersionLabel->setText(deviceRecord()->mcuVersion());
    ui->softwareVersionLabel->setText(SoftwareVersion);
    // Default port names follow the language.
    buildOutputGrids();
    refrenshSignalSlot();
}

void Widget::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange && ui) {
        switch (AppSettings::instance()->connectionState()) {
        case AppSettings::Disconnected: ui->labelStatus->setText(formatStatus(StatusDisconnected)); break;
        case AppSettings::Connected: ui->labelStatus->setText(formatStatus(StatusConnectedEven)); break;
        default: ui->labelStatus->setText(formatStatus(StatusConnecting)); break;
        }
    }
    BaseWidget::changeEvent(event);
}

// ---- log-in -----------------------------------------------------------------

void Widget::runLoginDecision()
{
    AppSettings *settings = AppSettings::instance();
    if (AccountStore::loginModel() != 0) {
        settings->setCurrentUser(settings->username());
        MessageDistance::instance()->connectToDevice(settings->ip(), quint16(settings->port()));
        return;
    }
    LoginDialog login;
    if (login.exec() != 1) {
        // Refusing the login at start ends the program before any window shows.
        MessageDistance::instance()->stopWorker();
        ::exit(0);
    }
}

void Widget::relogin()
{
    hide();
    LoginDialog login;
    if (login.exec() != 1) {
        QApplication::quit();
        return;
    }
    receiveConnectingSlot();
    show();
}

void Widget::on_usermanageBtn_clicked()
{
    Usermanagerdialog dialog(this);
    dialog.exec();
}

void Widget::on_CaptionBtn_clicked()
{
    MessageDistance::instance()->sendSubtitleQuery();
}

// ---- title bar and status line ---------------------------------------------------

void Widget::on_btn_RestoreOrMax_clicked()
{
    m_maximized = !m_maximized;
    // A frameless window is also sized by hand: not every window manager (or none
    // at all, on a kiosk display) maximises it.
    if (m_maximized) {
        m_normalGeometry = geometry();
        showMaximized();
        if (QScreen *current = screen())
            setGeometry(current->availableGeometry());
        ui->btn_RestoreOrMax->setStyleSheet(maxButtonStyle(":/Images/window/restore.png"));
    } else {
        showNormal();
        if (m_normalGeometry.isValid())
            setGeometry(m_normalGeometry);
        ui->btn_RestoreOrMax->setStyleSheet(maxButtonStyle(":/Images/window/fullscreen.png"));
    }
}

QString Widget::formatStatus(const char *source) const
{
    const AppSettings *settings = AppSettings::instance();
    return tr(source).arg(settings->ip()).arg(settings->port()).arg(settings->currentUser());
}

void Widget::setStatus(const QString &text, int state)
{
    ui->labelStatus->setText(text);
    static const char *const colours[] = {"#d9534f", "#e0a526", "#338c56"};
    ui->labelStatusLed->setStyleSheet(QString("background:%1; border-radius:5px;").arg(colours[state]));
}

void Widget::on_refrenshBtn_clicked()
{
    DeviceModel::requestState(MessageDistance::instance());
}

void Widget::receiveNetWorkSuccessfulSlot()
{
    on_refrenshBtn_clicked();
    AppSettings::instance()->setConnectionState(AppSettings::Connected);
    setStatus(formatStatus(StatusConnected), AppSettings::Connected);
}

void Widget::receivenetWorkFailSlot()
{
    setStatus(formatStatus(StatusDisconnected), AppSettings::Disconnected);
}

void Widget::receiveConnectingSlot()
{
    AppSettings::instance()->setConnectionState(AppSettings::Connecting);
    setStatus(formatStatus(StatusConnecting), AppSettings::Connecting);
}

void Widget::disConnectedSlot()
{
    receivenetWorkFailSlot();
}

// ---- device replies ---------------------------------------------------------------

void Widget::receiveVersionSlot(QJsonObject obj)
{
    const int previousModel = deviceRecord()->modelFlag();
    m_model->apply(ReplySignal::Version, obj);
    if (obj.value("type").toString() == QLatin1String("ORXM100"))
        drawJoinFace(6, 4, 2);
    buildOutputGrids();
    // The number of inputs follows the model; the same model needs no new list.
    if (deviceRecord()->modelFlag() != previousModel)
        refrenshSignalSlot();
    ui->fpgaVersionLabel->setText(deviceRecord()->fpgaVersion());
    ui->mcuVersionLabel->setText(deviceRecord()->mcuVersion());
    ui->softwareVersionLabel->setText(SoftwareVersion);
}

void Widget::receiveCheckStateSlot(QJsonObject obj)
{
    Q_UNUSED(obj)
}

void Widget::receiveInputChannelStateSlot(QJsonObject obj)
{
    m_model->apply(ReplySignal::InputState, obj);
    refreshSignalPresence(ui->tabWidget->currentIndex() == 2);
}

void Widget::receiveNetWorkImforamtionSlot(QJsonObject obj)
{
    m_model->apply(ReplySignal::NetWork, obj);
    const DeviceRecord *record = &m_model->record();
    ui->ipEdit->setText(record->netIp());
    ui->gatewayEdit->setText(record->netGateway());
    ui->subnetEdit->setText(record->netSubnet());
    ui->macEdit->setText(record->netMac());
}

void Widget::receiveVideoMapSlot(QJsonObject obj)
{
    m_model->apply(ReplySignal::VideoMap, obj);
    const int mode = deviceRecord()->joinMode();
    setJoinLayout(mode);
    // Show the device's layout without sending a mode command back.
    if (QAbstractButton *button = m_joinGroup->button(mode)) {
        const QSignalBlocker blocker(m_joinGroup);
        button->setChecked(true);
    }
    refillAllTables();
}

void Widget::receiveAudioMapSlot(QJsonObject obj)
{
    m_model->apply(ReplySignal::AudioMap, obj);
    refillAllTables();
}

void Widget::receiveIrMapSlot(QJsonObject obj)
{
    m_model->apply(ReplySignal::IrMap, obj);
    refillAllTables();
}

void Widget::receiveInChannelResolutionSlot(QJsonObject obj)
{
    m_model->apply(ReplySignal::InResolution, obj);
    refreshSignalPresence(ui->tabWidget->currentIndex() == 2);
}

void Widget::receiveOutChannelResolutionSlot(QJsonObject obj)
{
    m_model->apply(ReplySignal::OutResolution, obj);
}

void Widget::receiveOsdImfSlot(int port, QJsonObject obj)
{
    m_model->applyOsd(port, obj);
}

void Widget::receiveTitleImfSlot(QJsonObject obj)
{
    m_model->apply(ReplySignal::Title, obj);
}

void Widget::receiveVolumeValueSlot(QJsonObject obj)
{
    m_model->apply(ReplySignal::Volume, obj);
}

// ---- routing tables ------------------------------------------------------------

void Widget::drawJoinFace(int id, int columns, int rows)
{
    m_joinFaces[id] = QSize(columns, rows);
    if (auto *button = findChild<QPushButton *>(QString("joinBtn%1").arg(id)))
        button->setIcon(TableWidget::layoutPreview(columns, rows));
}

void Widget::JoinLayoutButtonChangeSlot(int id)
{
    MessageDistance::instance()->sendMode(id);
    m_model->recordJoinMode(id);
    setJoinLayout(id);
    refillTable(ui->jointTable);
}

void Widget::setJoinLayout(int id)
{
    if (id < 0 || id > 6)
        return;
    QSize layout = JoinLayouts[id];
    if (id == 6 && deviceRecord()->modelFlag() != 1)
        layout = QSize(4, 2);
    // Every video map reply names the mode: only a different wall needs new cells.
    const int model = deviceRecord()->modelFlag();
    if (layout == m_jointLayout && model == m_jointModel) {
        refillTable(ui->jointTable);
        return;
    }
    m_jointLayout = layout;
    m_jointModel = model;
    ui->jointTable->buildGrid(layout.width(), layout.height());
}

void Widget::buildOutputGrids()
{
    const QMap<int, QString> videoNames = PortNameStore::loadPortNames(PortNameStore::VideoOutput);
    const QMap<int, QString> audioNames = PortNameStore::loadOutAudioPortNames();
    const QMap<int, QString> irNames = PortNameStore::loadOutInfarePortNames();
    const struct { TableWidget *table; const char *colour; int offset; const char *label; const QMap<int, QString> *names; } grids[] = {
        {ui->videoTable, VideoCellColor, 0, QT_TR_NOOP("Output %1"), &videoNames},
        {ui->jointTable, VideoCellColor, 0, QT_TR_NOOP("Output %1"), &videoNames},
        {ui->audioTable, AudioCellColor, 0, QT_TR_NOOP("Audio %1"), &audioNames},
        {ui->hdmiAudioTable, AudioCellColor, 100, QT_TR_NOOP("Audio %1"), &audioNames},
        {ui->irTable, VideoCellColor, 0, QT_TR_NOOP("Output %1"), &irNames},
    };
    for (const auto &grid : grids) {
        grid.table->setCellColor(grid.colour);
        grid.table->setIndexOffset(grid.offset);
        grid.table->setIgnoreInputRenames(false);
        for (int n = 1; n <= 9; ++n) {
            const QString stored = grid.names->value(n + grid.offset);
            grid.table->setOutputName(n + grid.offset, stored.isEmpty() ? tr(grid.label).arg(n) : stored);
        }
        if (grid.table == ui->jointTable)
            setJoinLayout(deviceRecord()->joinMode());
        else if (m_gridModel != deviceRecord()->modelFlag())
            grid.table->buildGrid(3, 3);  // the ninth cell depends on the model
    }
    m_gridModel = deviceRecord()->modelFlag();
}

void Widget::refillTable(TableWidget *table)
{
    DeviceRecord *record = deviceRecord();
    QMap<int, int> routes;
    QMap<int, QString> names;
    if (table == ui->audioTable || table == ui->hdmiAudioTable) {
        routes = record->audioMap();
        names = AppSettings::instance()->audioInputNames();
    } else {
        routes = table == ui->irTable ? record->irMap() : record->videoMap();
        names = AppSettings::instance()->inputNames();
    }
    const QMap<int, bool> signalMap = record->inputSignalMap();
    for (int r = 0; r < table->rowCount(); ++r) {
        for (int c = 0; c < table->columnCount(); ++c) {
            QTableWidgetItem *item = table->item(r, c);
            auto *cell = qobject_cast<TableItemWidget *>(table->cellWidget(r, c));
            if (!item || !cell)
                continue;
            const int input = routes.value(item->data(TableWidget::OutputKeyRole).toInt(), 0);
            cell->setInputText(input > 0 ? portLabel(input, names.value(input)) : QString());
            // A routed video input without signal is shown dimmed.
            cell->setSignalPresent(input <= 0 || table == ui->irTable || signalMap.value(input, false));
        }
    }
}

void Widget::refillAllTables()
{
    for (TableWidget *table : {ui->videoTable, ui->jointTable, ui->audioTable, ui->hdmiAudioTable, ui->irTable})
        refillTable(table);
}

void Widget::routeVideo(int input, int output)
{
    MessageDistance::instance()->sendSwitch(input, output, DeviceModel::Video);
    m_model->recordSwitch(input, output, DeviceModel::Video);
    refillTable(ui->videoTable);
}

void Widget::routeJoint(int input, int output)
{
    MessageDistance::instance()->sendSwitch(input, output, DeviceModel::Wall);
    MessageDistance::instance()->sendSwitch(input, output, DeviceModel::Audio);
    m_model->recordSwitch(input, output, DeviceModel::Wall);
    refillTable(ui->jointTable);
    refillTable(ui->videoTable);
}

// ---- signal list -----------------------------------------------------------------

void Widget::refrenshSignalSlot()
{
    // Ports without a stored name are shown as "Input n" / "Audio n" everywhere.
    const int inputs = deviceRecord()->modelFlag() == 1 ? 9 : 8;
    QMap<int, QString> inputNames = PortNameStore::loadPortNames(PortNameStore::VideoInput);
    QMap<int, QString> audioNames = PortNameStore::loadPortNames(PortNameStore::AudioInput);
    for (int port = 1; port <= inputs; ++port) {
        if (inputNames.value(port).isEmpty())
            inputNames.insert(port, tr("Input %1").arg(port));
        if (audioNames.value(port).isEmpty())
            audioNames.insert(port, tr("Audio %1").arg(port));
    }
    AppSettings::instance()->setInputNames(inputNames);
    AppSettings::instance()->setAudioInputNames(audioNames);

    const int current = ui->listWidget->currentRow();
    ui->listWidget->clear();
    for (int type = 0; type < 2; ++type) {
        const QMap<int, QString> &names = type == 0 ? inputNames : audioNames;
        for (int port = 1; port <= inputs; ++port) {
            auto *item = new QListWidgetItem(portLabel(port, names.value(port)), ui->listWidget);
            item->setData(ListWidget::PortRole, QString::number(port));
            item->setData(ListWidget::TypeRole, type);
        }
    }
    if (current >= 0 && current < ui->listWidget->count())
        ui->listWidget->setCurrentRow(current);
    // Also re-fills the tables, whose input labels carry the names.
    refreshSignalPresence(ui->tabWidget->currentIndex() == 2);
}

void Widget::refreshSignalPresence(bool audioPage)
{
    // The audio page lists the audio entries, every other page the inputs.
    ui->listWidget->updateStateMarks(audioPage ? 0 : 1);
    refillAllTables();
    currentSignalChanged();
}

void Widget::currentSignalChanged()
{
    QListWidgetItem *current = ui->listWidget->currentItem();
    for (int i = 0; i < ui->listWidget->count(); ++i) {
        QFont font = ui->listWidget->item(i)->font();
        font.setBold(ui->listWidget->item(i) == current);
        ui->listWidget->item(i)->setFont(font);
    }
    if (!current)
        return;
    const bool hasSignal = deviceRecord()->inputSignalMap().value(current->data(ListWidget::PortRole).toInt(), false);
    ui->listWidget->setStyleSheet(QString("QListWidget::item:selected { color:%1; background:#e3efe7; }")
                                          .arg(hasSignal ? SignalColor : NoSignalColor));
}

void Widget::tabChanged(int index)
{
    refreshSignalPresence(index == 2);
    const bool settingsPage = index == 4 || index == 5;
    ui->tabWidget->setStyleSheet(QString("QTabWidget::tab-bar { left:%1; }").arg(settingsPage ? "200px" : "0"));
    ui->adminLabel->setVisible(settingsPage && AppSettings::instance()->adminFlag() != 0);
}
