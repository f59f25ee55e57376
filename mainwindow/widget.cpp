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
#include "mainwindow/routingpages.h"
#include "mainwindow/sigmanager.h"
#include "store/accountstore.h"
#include "store/portnamestore.h"

#include <QApplication>
#include <QRegExpValidator>
#include <QScreen>

namespace {
// Status texts are translation keys: their uneven blanks are kept byte for byte.
const char StatusConnecting[] = QT_TRANSLATE_NOOP("Widget", "OrvexMatrixControl  User:%3  Ip:%1  Port:%2 connecting");
const char StatusConnected[] = QT_TRANSLATE_NOOP("Widget", "OrvexMatrixControl  User:%3   Ip:%1  Port:%2  connected");
const char StatusDisconnected[] = QT_TRANSLATE_NOOP("Widget", "OrvexMatrixControl  User:%3  Ip:%1  Port:%2 disconnected");
// After a language change the evenly spaced variant is shown; both are kept.
const char StatusConnectedEven[] = QT_TRANSLATE_NOOP("Widget", "OrvexMatrixControl  User:%3  Ip:%1  Port:%2 connected");

QString maxButtonStyle(const char *image)
{
    return QString("QPushButton { background-image:url(%1); background-position:center;border:0; "
                   "background-repeat:no-repeat; }"
                   "QPushButton:hover { background-color: rgba(255,255,255,40); border-radius:4px; }")
            .arg(image);
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
    ui->buzzerSwitch->setCheckedColor(QColor("#338c56"));
    ui->buzzerSwitch->setBackgroundColor(QColor("#9aa8a0"));
    setWindowTitle("ORVEXMATRIX CONTORL");

    applyStartLanguage();

    connect(ui->tabWidget, &QTabWidget::currentChanged, this, &Widget::tabChanged);

    connect(ui->btn_RestoreOrMax, &QPushButton::clicked, this, &Widget::on_btn_RestoreOrMax_clicked);
    connect(ui->usermanageBtn, &QPushButton::clicked, this, &Widget::on_usermanageBtn_clicked);
    connect(ui->btnClose, &QPushButton::clicked, this, &QWidget::close);
    connect(ui->btnMin, &QPushButton::clicked, this, &QWidget::showMinimized);
    connect(ui->CaptionBtn, &QPushButton::clicked, this, &Widget::on_CaptionBtn_clicked);
    connect(ui->refrenshBtn, &QPushButton::clicked, this, &Widget::on_refrenshBtn_clicked);
    ui->tabWidget->setAttribute(Qt::WA_StyledBackground);

    // The window shows the process-wide record that the login dialogs also use.
    m_model = new DeviceModel(deviceRecord(), this);
    connect(m_model, &DeviceModel::volumesChanged, SigManager::instance(), &SigManager::Sig_UpdateVolumes);
    AppSettings *settings = AppSettings::instance();
    deviceRecord()->setDeviceIp(settings->ip());
    deviceRecord()->setDevicePort(settings->port());
    AccountStore::createTables();
    PortNameStore::createPortNameTables();

    m_pages = new RoutingPages({ui->listWidget, ui->tabWidget, ui->videoTable, ui->jointTable, ui->audioTable,
                                ui->hdmiAudioTable, ui->irTable,
                                {ui->joinBtn0, ui->joinBtn1, ui->joinBtn2, ui->joinBtn3, ui->joinBtn4, ui->joinBtn5, ui->joinBtn6}},
                               m_model, MessageDistance::instance(), this);
    connect(m_model, &DeviceModel::versionsChanged, this, &Widget::showVersions);
    connect(m_model, &DeviceModel::networkChanged, this, &Widget::showNetwork);

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
    return m_pages->joinFace(id);
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
    showVersions();
    // Default port names follow the language.
    m_pages->reloadNames();
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

void Widget::receiveVersionSlot(QJsonObject obj) { m_model->apply(ReplySignal::Version, obj); }
void Widget::receiveCheckStateSlot(QJsonObject obj) { Q_UNUSED(obj) }
void Widget::receiveInputChannelStateSlot(QJsonObject obj) { m_model->apply(ReplySignal::InputState, obj); }
void Widget::receiveVideoMapSlot(QJsonObject obj) { m_model->apply(ReplySignal::VideoMap, obj); }
void Widget::receiveAudioMapSlot(QJsonObject obj) { m_model->apply(ReplySignal::AudioMap, obj); }
void Widget::receiveIrMapSlot(QJsonObject obj) { m_model->apply(ReplySignal::IrMap, obj); }
void Widget::receiveInChannelResolutionSlot(QJsonObject obj) { m_model->apply(ReplySignal::InResolution, obj); }
void Widget::receiveOutChannelResolutionSlot(QJsonObject obj) { m_model->apply(ReplySignal::OutResolution, obj); }
void Widget::receiveOsdImfSlot(int port, QJsonObject obj) { m_model->applyOsd(port, obj); }
void Widget::receiveTitleImfSlot(QJsonObject obj) { m_model->apply(ReplySignal::Title, obj); }
void Widget::receiveVolumeValueSlot(QJsonObject obj) { m_model->apply(ReplySignal::Volume, obj); }

void Widget::receiveNetWorkImforamtionSlot(QJsonObject obj)
{
    m_model->apply(ReplySignal::NetWork, obj);
    // Every answer puts the device's values back, also over unchanged ones the user edited.
    showNetwork();
}

void Widget::showNetwork()
{
    const DeviceRecord &record = m_model->record();
    ui->ipEdit->setText(record.netIp());
    ui->gatewayEdit->setText(record.netGateway());
    ui->subnetEdit->setText(record.netSubnet());
    ui->macEdit->setText(record.netMac());
}

void Widget::showVersions()
{
    ui->fpgaVersionLabel->setText(m_model->record().fpgaVersion());
    ui->mcuVersionLabel->setText(m_model->record().mcuVersion());
    ui->softwareVersionLabel->setText(SoftwareVersion);
}

void Widget::JoinLayoutButtonChangeSlot(int id) { m_pages->chooseJoinLayout(id); }
void Widget::refrenshSignalSlot() { m_pages->rebuildSignalList(); }

void Widget::tabChanged(int index)
{
    m_pages->refreshSignalPresence();
    const bool settingsPage = index == 4 || index == 5;
    ui->tabWidget->setStyleSheet(QString("QTabWidget::tab-bar { left:%1; }").arg(settingsPage ? "200px" : "0"));
    ui->adminLabel->setVisible(settingsPage && AppSettings::instance()->adminFlag() != 0);
}
