#include "mainwindow/widget.h"
#include "ui_widget.h"

#include "app/appsettings.h"
#include "device/devicemodel.h"
#include "device/messagedistance.h"
#include "device/routeconfirmer.h"
#include "dialogs/msgdlg.h"
#include "dialogs/titleorosddialog.h"
#include "login/logindialog.h"
#include "login/usermanagerdialog.h"
#include "mainwindow/historypage.h"
#include "mainwindow/lazypage.h"
#include "mainwindow/portmenus.h"
#include "mainwindow/presetspage.h"
#include "mainwindow/routingpages.h"
#include "mainwindow/settingspage.h"
#include "mainwindow/statusline.h"
#include "store/portnames.h"
#include "mainwindow/sigmanager.h"
#include "mainwindow/storecheck.h"
#include "store/accountstore.h"

#include <QApplication>
#include <QCloseEvent>
#include <QBoxLayout>
#include <QShortcut>
#include <QTimer>

namespace {

QString maxButtonStyle(const char *image)
{
    return QString("QPushButton { background-image:url(%1); background-position:center;border:0; "
                   "background-repeat:no-repeat; }"
                   "QPushButton:hover { background-color: rgba(255,255,255,40); border-radius:4px; }")
            .arg(image);
}
} // namespace

Widget::Widget(const WindowContext &context, QWidget *parent)
    : BaseWidget(parent)
    , ui(new Ui::Widget)
    , m_settings(context.settings)
    , m_model(context.model)
    , m_link(context.link)
{
    // Before the form: set on a window with children, a style sheet polishes them all
    // once more; set first, each widget is polished once, as it is shown.
    loadStyleSheet(this, ":/styles/main.qss");
    ui->setupUi(this);
    // The routing pages build the grid of the page on show first.
    ui->tabWidget->setCurrentIndex(0);
    paintShadowAround(ui->frame);
    setDragArea(ui->titleWidget);
    ui->btn_RestoreOrMax->setStyleSheet(maxButtonStyle(":/Images/window/fullscreen.png"));
    setWindowIcon(QIcon(":/Images/applogo.png"));
    setWindowTitle("ORVEXMATRIX CONTORL");

    applyStartLanguage();
    // The form was just translated, and what is built below is built translated:
    // the language change queued for the window would translate every page again.
    QCoreApplication::removePostedEvents(this, QEvent::LanguageChange);
    m_status = new StatusLine(ui->labelStatus, ui->labelStatusLed, m_settings, this);

    connect(ui->tabWidget, &QTabWidget::currentChanged, this, &Widget::tabChanged);
    connect(ui->btn_RestoreOrMax, &QPushButton::clicked, this, &Widget::on_btn_RestoreOrMax_clicked);
    connect(ui->btnClose, &QPushButton::clicked, this, &QWidget::close);
    connect(ui->btnMin, &QPushButton::clicked, this, &QWidget::showMinimized);
    connect(ui->refrenshBtn, &QPushButton::clicked, this, &Widget::on_refrenshBtn_clicked);
    ui->tabWidget->setAttribute(Qt::WA_StyledBackground);

    connect(m_model, &DeviceModel::volumesChanged, SigManager::instance(), &SigManager::Sig_UpdateVolumes);
    // A locked or unreadable file would only make the port-name statements wait and fail.
    if (openAccountStore(this))
        context.names->createTables();

    m_pages = new RoutingPages({ui->listWidget, ui->tabWidget, ui->videoTable, ui->jointPage, ui->audioPage, ui->irPage},
                               m_model, m_link, context.names, this);
    m_settingsPage = new SettingsPage({ui->networkPage, ui->otherPage, ui->aboutPage}, m_settings, m_model, m_link,
                                      SoftwareVersion, this);
    connect(m_settingsPage, &SettingsPage::userManagementClicked, this, &Widget::on_usermanageBtn_clicked);
    connect(m_settingsPage, &SettingsPage::captionClicked, this, &Widget::on_CaptionBtn_clicked);
    connect(m_settingsPage, &SettingsPage::reloginClicked, this, &Widget::relogin);
    // The two settings pages stay last: their tab bar is indented, and the added pages go before them.
    m_settingsTabs = {ui->tabWidget->widget(4), ui->tabWidget->widget(5)};
    m_presetsPage = new LazyPage([this](QWidget *parent) { return new PresetsPage(m_link, parent); }, this);
    ui->tabWidget->insertTab(4, m_presetsPage, PresetsPage::tr("Presets"));

    MessageDistance *link = m_link;
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
    link->setMessagePresenter([](const QString &text, const QString &title) { MsgDlg::showMessage(text, title); });

    runLoginDecision();

    receiveConnectingSlot();
    // The language box is filled and connected when its page is first shown.
    connect(m_settingsPage, &SettingsPage::languageChosen, this, &Widget::on_languageComboBox_currentIndexChanged);
    m_portMenus = new PortMenus(m_model, m_link, context.names, this);
    const auto watchPorts = [this] {
        m_portMenus->watch({ui->listWidget, ui->videoTable, m_pages->joint(), m_pages->audio(), m_pages->hdmiAudio(),
                            m_pages->ir()});
    };
    watchPorts();
    connect(m_pages, &RoutingPages::pageBuilt, this, watchPorts);
    connect(m_portMenus, &PortMenus::inputRenamed, this, &Widget::refrenshSignalSlot);
    setUpNotices();

    resize(1280, 800);
    // Fits a 1366x768 screen with room for a panel; the margin resizes the window.
    setMinimumSize(1024, 640);
    setResizableFromEdges(10);
    // Where the operator left it; a screen that is gone leaves the window where Qt puts it.
    restoreGeometry(m_settings->windowGeometry());
    show();

    if (m_settings->adminFlag() == 0)
        ui->adminLabel->hide();  // and the user management, when its page is built
    tabChanged(ui->tabWidget->currentIndex());
    // The grids are built once the device has been asked for its state, which on a
    // reachable device comes before the first paint; a connection still pending by
    // then does not leave the page empty for long.
    QTimer::singleShot(GridGraceMs, this, [this] { m_pages->startBuildingGrids(); });
}

void Widget::setUpNotices()
{
    connect(m_pages, &RoutingPages::notice, this, &Widget::showNotice);
    connect(m_portMenus, &PortMenus::notice, this, &Widget::showNotice);
    connect(m_settingsPage, &SettingsPage::notice, this, &Widget::showNotice);
    // The confirmer keeps the history from the start; the page shows it once opened.
    m_historyPage = new LazyPage([this](QWidget *parent) { return new HistoryPage(m_pages->confirmer(), parent); }, this);
    ui->tabWidget->insertTab(5, m_historyPage, tr("History"));
    auto *undo = new QShortcut(QKeySequence::Undo, this);
    connect(undo, &QShortcut::activated, this, [this] {
        if (!m_link->isConnected())
            showNotice(tr("Not connected: nothing was undone."));
        else if (!m_pages->confirmer()->undo())
            showNotice(tr("Nothing to undo."));
    });
}

void Widget::showNotice(const QString &text)
{
    m_status->showNotice(text);
}

QString Widget::noticeText() const
{
    return m_status->notice();
}

Widget::~Widget()
{
    delete ui;
}

QString Widget::statusText() const
{
    return m_status->text();
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
    int language = m_settings->language();
    if (language == -1) {
        // Never chosen: follow the system, and remember the choice.
        language = QLocale::system().language() == QLocale::Chinese ? 0 : 1;
        m_settings->setLanguage(language);
    }
    installLanguage(language);
}

void Widget::installLanguage(int index)
{
    QCoreApplication::removeTranslator(&m_translator);
    m_translator.load(index == 0 ? ":/Chinese" : ":/English");
    QCoreApplication::installTranslator(&m_translator);
    ui->retranslateUi(this);
    // The pages built after the start have forms of their own.
    if (m_pages) {
        m_pages->retranslate();
        m_settingsPage->retranslate();
    }
}

void Widget::on_languageComboBox_currentIndexChanged(int index)
{
    m_settings->setLanguage(index);
    installLanguage(index);  // the versions stay the device's
    // Default port names follow the language.
    m_pages->reloadNames();
}

void Widget::closeEvent(QCloseEvent *event)
{
    m_settings->setWindowGeometry(saveGeometry());
    BaseWidget::closeEvent(event);
}

void Widget::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange && ui && m_status) {
        m_status->retranslate();
        // The form re-translates only its own tabs; these two were added in code.
        ui->tabWidget->setTabText(ui->tabWidget->indexOf(m_presetsPage), PresetsPage::tr("Presets"));
        ui->tabWidget->setTabText(ui->tabWidget->indexOf(m_historyPage), tr("History"));
    }
    BaseWidget::changeEvent(event);
}

// ---- log-in -----------------------------------------------------------------

void Widget::runLoginDecision()
{
    if (AccountStore::loginModel() != 0) {
        m_settings->setCurrentUser(m_settings->username());
        m_link->connectToDevice(m_settings->ip(), quint16(m_settings->port()));
        return;
    }
    LoginDialog login;
    if (login.exec() != 1) {
        // Refusing the login at start ends the program before any window shows.
        m_link->stopWorker();
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
    if (!m_link->isConnected()) {
        showNotice(tr("Not connected: the caption cannot be set."));
        return;
    }
    m_link->sendSubtitleQuery();
    TitleOrOsdDialog(-1, m_model, m_link, this).exec();
}

// ---- title bar and status line ---------------------------------------------------

void Widget::on_btn_RestoreOrMax_clicked()
{
    const bool maximized = toggleMaximized();
    // Maximised, the shadow margin would be a grey band around the screen.
    const int margin = maximized ? 0 : 12;
    layout()->setContentsMargins(margin, margin, margin, margin);
    ui->btn_RestoreOrMax->setStyleSheet(
        maxButtonStyle(maximized ? ":/Images/window/restore.png" : ":/Images/window/fullscreen.png"));
}

void Widget::setStatus(int state)
{
    m_status->show(state);
    if (m_pages)
        m_pages->setOnline(state == AppSettings::Connected);
}

void Widget::on_refrenshBtn_clicked()
{
    DeviceModel::requestState(m_link);
}

void Widget::receiveNetWorkSuccessfulSlot()
{
    on_refrenshBtn_clicked();
    m_settings->setConnectionState(AppSettings::Connected);
    setStatus(AppSettings::Connected);
    m_pages->buildAllGrids();
}

void Widget::receivenetWorkFailSlot()
{
    setStatus(AppSettings::Disconnected);
    m_pages->buildAllGrids();
}

void Widget::receiveConnectingSlot()
{
    m_settings->setConnectionState(AppSettings::Connecting);
    setStatus(AppSettings::Connecting);
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
    m_settingsPage->showNetwork();
}

void Widget::JoinLayoutButtonChangeSlot(int id) { m_pages->chooseJoinLayout(id); }
void Widget::refrenshSignalSlot() { m_pages->rebuildSignalList(); }

void Widget::tabChanged(int index)
{
    m_pages->buildShownGrids();
    m_pages->refreshSignalPresence();
    const bool settingsPage = m_settingsTabs.contains(ui->tabWidget->widget(index));
    // A style sheet set on the tab widget polishes every page again: only when it changes.
    if (settingsPage != m_tabBarIndented) {
        m_tabBarIndented = settingsPage;
        ui->tabWidget->setStyleSheet(QString("QTabWidget::tab-bar { left:%1; }").arg(settingsPage ? "200px" : "0"));
    }
    ui->adminLabel->setVisible(settingsPage && m_settings->adminFlag() != 0);
}
