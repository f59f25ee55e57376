#include "login/loginsettingdialog.h"
#include "ui_loginsettingdialog.h"

#include "device/devicerecord.h"
#include "dialogs/basewidget.h"

LoginSettingDialog::LoginSettingDialog(QWidget *parent)
    : QDialog(parent)
    , ui(new Ui::LoginSettingDialog)
{
    ui->setupUi(this);
    BaseWidget::setUpDialog(this, ui->frame, ui->titleWidget, Qt::Tool);

    ui->DeviceIP->setText(deviceRecord()->deviceIp());
    ui->DevicePort->setText(QString::number(deviceRecord()->devicePort()));
}

LoginSettingDialog::~LoginSettingDialog()
{
    delete ui;
}

void LoginSettingDialog::on_btnOK_clicked()
{
    // No check of the address's form; a port that is not a number becomes 0.
    deviceRecord()->setDeviceIp(ui->DeviceIP->text());
    deviceRecord()->setDevicePort(ui->DevicePort->text().toInt(nullptr, 10));
    done(1);
}

void LoginSettingDialog::on_btnClose_clicked()
{
    done(0);
}
