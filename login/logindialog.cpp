#include "login/logindialog.h"
#include "ui_logindialog.h"

#include "app/appsettings.h"
#include "device/devicerecord.h"
#include "device/messagedistance.h"
#include "dialogs/basewidget.h"
#include "login/loginsettingdialog.h"
#include "store/accountstore.h"
#include "store/database.h"

#include <QKeyEvent>

namespace {
const char ShowPassStyle[] =
        "QPushButton{ background:#00000000; border:0; border-radius:5px; border-image: url(://Images/login/Show_Pass.png); } "
        "QPushButton:hover,QPushButton:pressed{ background:#00000000; border:0; border-radius:5px; border-image: "
        "url(:/Images/login/Hide_pass.png); }";
const char HidePassStyle[] =
        "QPushButton{ background:#00000000; border:0; border-radius:5px; border-image: url(://Images/login/Hide_pass.png); } "
        "QPushButton:hover,QPushButton:pressed{ background:#00000000; border:0; border-radius:5px; border-image: "
        "url(:/Images/login/Show_Pass.png); }";
} // namespace

LoginDialog::LoginDialog(QWidget *parent)
    : QDialog(parent)
    , ui(new Ui::LoginDialog)
{
    setWindowIcon(QIcon(":/Images/applogo.png"));
    setWindowFlags(Qt::FramelessWindowHint | Qt::WindowSystemMenuHint | Qt::WindowMinMaxButtonsHint);
    setAttribute(Qt::WA_TranslucentBackground);
    ui->setupUi(this);
    setWindowTitle("ORVEXMATRIX CONTORL");
    BaseWidget::applyShadow(ui->frame);
    BaseWidget::loadStyleSheet(this, ":/styles/login.qss");
    new WindowDragger(this);

    m_tipTimer.setInterval(2000);
    m_tipTimer.setSingleShot(true);

    ui->labelTip->clear();
    ui->usernameEdit->setText(AppSettings::instance()->username());
    AccountStore accounts;
    if (accounts.isRemember()) {
        ui->checkBox_memory->setChecked(true);
        ui->passwordEdit->setText(accounts.rememberedPassword());
    }

    // The name is usually prefilled: let the operator type the password at once.
    if (!ui->usernameEdit->text().isEmpty())
        ui->passwordEdit->setFocus();

    connect(&m_tipTimer, &QTimer::timeout, ui->labelTip, &QLabel::clear);
    connect(MessageDistance::instance(), &MessageDistance::connectSuccessFulSig, this, &LoginDialog::connectSuccessSlot);
    connect(MessageDistance::instance(), &MessageDistance::connectFailureSig, this, &LoginDialog::connectFailureSlot);
    connect(ui->btnPasswordShow, &QPushButton::clicked, this, &LoginDialog::togglePasswordShownSlot);
}

LoginDialog::~LoginDialog()
{
    delete ui;
}

QString LoginDialog::tipText() const
{
    return ui->labelTip->text();
}

void LoginDialog::on_btnLogin_clicked()
{
    AccountStore accounts;
    AppSettings *settings = AppSettings::instance();
    DeviceRecord *device = deviceRecord();
    const QString name = ui->usernameEdit->text();

    accounts.setRemember(ui->checkBox_memory->isChecked());
    if (ui->checkBox_memory->isChecked())
        accounts.savePassword(ui->passwordEdit->text());
    settings->setCurrentUser(name);
    settings->setNetwork(device->deviceIp(), device->devicePort());
    settings->setUsername(name);
    settings->setNetwork(device->deviceIp(), device->devicePort());
    MessageDistance::instance()->connectToDevice(device->deviceIp(), quint16(device->devicePort()));

    // Credentials are checked locally only; the connection attempt goes on either way.
    if (accounts.findUser(name, ui->passwordEdit->text()))
        done(1);
    else if (probeDatabase(databasePath()) != StoreState::Readable)
        showTip(tr("account database unreadable!"));  // not the operator's typing
    else
        showTip(tr("username or password error!"));
}

void LoginDialog::on_btnClose_clicked()
{
    done(0);
}

void LoginDialog::on_mini_clicked()
{
    showMinimized();
}

void LoginDialog::on_settingBtn_clicked()
{
    LoginSettingDialog dialog;
    dialog.exec();
}

void LoginDialog::connectSuccessSlot()
{
    if (!m_accountHandle) {
        showTip(tr("connect successful but software error!"));
        return;
    }
    if (AccountStore().findUser(ui->usernameEdit->text(), ui->passwordEdit->text())) {
        done(1);
        return;
    }
    showTip(tr("username or password error!"));
}

void LoginDialog::connectFailureSlot()
{
    showTip(tr("connect fail!"));
}

void LoginDialog::togglePasswordShownSlot()
{
    if (ui->passwordEdit->echoMode() != QLineEdit::Normal) {
        ui->btnPasswordShow->setStyleSheet(ShowPassStyle);
        ui->passwordEdit->setEchoMode(QLineEdit::Normal);
    } else {
        ui->btnPasswordShow->setStyleSheet(HidePassStyle);
        ui->passwordEdit->setEchoMode(QLineEdit::Password);
    }
}

void LoginDialog::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        on_btnLogin_clicked();
        return;
    }
    // Plain widget handling: Escape must not close the dialog.
    QWidget::keyPressEvent(event);
}

void LoginDialog::showTip(const QString &text)
{
    ui->labelTip->setText(text);
    ui->labelTip->setVisible(true);
    m_tipTimer.start();
}
