#pragma once

#include <QDialog>

namespace Ui {
class LoginSettingDialog;
}

// Edits the device address and port the next login connects to (in memory only).
class LoginSettingDialog : public QDialog
{
    Q_OBJECT

public:
    explicit LoginSettingDialog(QWidget *parent = nullptr);
    ~LoginSettingDialog() override;

private slots:
    void on_btnOK_clicked();
    void on_btnClose_clicked();

private:
    Ui::LoginSettingDialog *ui;
};
