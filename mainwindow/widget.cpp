#include "mainwindow/widget.h"
#include "ui_widget.h"

#include "app/appsettings.h"
#include "device/devicerecord.h"
#include "device/messagedistance.h"
#include "login/logindialog.h"
#include "login/usermanagerdialog.h"
#include "store/accountstore.h"
#include "store/portnamestore.h"

#include <QApplication>


namespace {
// Status texts are translation keys: their uneven blanks are kept byte for byte.
const char StatusConnecting[] = QT_TRANSLATE_NOOP("Widget", "OrvexMatrixControl  User:%3  Ip:%1  Port:%2 connecting");
const char StatusConnected[] = QT_TRANSLATE_NOOP("Widget", "OrvexMatrixControl  User:%3   Ip:%1  Port:%2  connected");
const char StatusDisconnected[] = QT_TRANSLATE_NOOP("Widget", "OrvexMatrixControl  User:%3  Ip:%1  Port:%2 disconnected");

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
    ui->labelLogo->setPixmap(QPixmap(":/Images/logo.png"));
    setDragArea(ui->titleWidget);
    applyShadow(ui->frame);
    setWindowIcon(QIcon(":/Images/applogo.png"));
    setWindowTitle("ORVEXMATRIX CONTORL");
    ui->btn_RestoreOrMax->setStyleSheet(maxButtonStyle(":/Images/window/fullscreen.png"));
    applyStartLanguage();

    connect(ui->btnClose, &QPushButton::clicked, this, &QWidget::close);
    connect(ui->btnMin, &QPushButton::clicked, this, &QWidget::showMinimized);

    AppSettings *settings = AppSettings::instance();
    deviceRecord()->setDeviceIp(settings->ip());
    deviceRecord()->setDevicePort(settings->port());
    AccountStore().createTables();
    PortNameStore().createPortNameTables();

    MessageDistance *link = MessageDistance::instance();
    connect(link, &MessageDistance::connectSuccessFulSig, this, &Widget::receiveNetWorkSuccessfulSlot);
    connect(link, &MessageDistance::connectFailureSig, this, &Widget::receivenetWorkFailSlot);
    connect(link, &MessageDistance::connectingSig, this, &Widget::receiveConnectingSlot);
    connect(ui->reloginBtn, &QPushButton::clicked, this, &Widget::reloginSlot);

    runLoginDecision();
    receiveConnectingSlot();

    resize(1280, 800);
    show();
}

void Widget::applyStartLanguage()
{
    AppSettings *settings = AppSettings::instance();
    int language = settings->language();
    if (language == -1) {
        // Never chosen: follow the system, and remember the choice.
        language = QLocale::system().language() == QLocale::Chinese ? 0 : 1;
        settings->setLanguage(language);
    }
    m_translator.load(language == 0 ? ":/Chinese" : ":/English");
    QCoreApplication::installTranslator(&m_translator);
    ui->retranslateUi(this);
}

void Widget::runLoginDecision()
{
    AppSettings *settings = AppSettings::instance();
    if (AccountStore().loginModel() != 0) {
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

void Widget::reloginSlot()
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

Widget::~Widget()
{
    delete ui;
}

QString Widget::statusText() const
{
    return ui->labelStatus->text();
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

void Widget::on_btn_RestoreOrMax_clicked()
{
    m_maximized = !m_maximized;
    if (m_maximized) {
        showMaximized();
        ui->btn_RestoreOrMax->setStyleSheet(maxButtonStyle(":/Images/window/restore.png"));
    } else {
        showNormal();
        ui->btn_RestoreOrMax->setStyleSheet(maxButtonStyle(":/Images/window/fullscreen.png"));
    applyStartLanguage();
    }
}

void Widget::on_refrenshBtn_clicked()
{
    MessageDistance *link = MessageDistance::instance();
    link->sendVersionQuery();
    link->sendStatusQuery();
    link->sendInputInfoQuery();
    link->sendNetInfoQuery();
    link->sendResolutionQuery();
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
